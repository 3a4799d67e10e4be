// The time library of the 1516-2010 API (libfedtime1516e): HLAfloat64Time and
// HLAinteger64Time with their intervals and factories. Both are exchanged as eight bytes,
// most significant first (an IEEE double, a two's complement count). The two
// representations differ only in their value type and limits, so their members are
// written once, below, for both.
#include <RTI/LogicalTimeFactory.h>
#include <RTI/VariableLengthData.h>
#include <RTI/time/HLAfloat64Interval.h>
#include <RTI/time/HLAfloat64Time.h>
#include <RTI/time/HLAfloat64TimeFactory.h>
#include <RTI/time/HLAinteger64Interval.h>
#include <RTI/time/HLAinteger64Time.h>
#include <RTI/time/HLAinteger64TimeFactory.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <sstream>

namespace rti1516e {

namespace {

constexpr size_t kEncodedLength = 8;

template <class V>
void put(V v, void* buffer, size_t size) {
  if (size < kEncodedLength || buffer == nullptr)
    throw CouldNotEncode(L"an encoded time value takes 8 bytes, not " + std::to_wstring(size));
  std::uint64_t bits;
  std::memcpy(&bits, &v, 8);
  auto* b = static_cast<unsigned char*>(buffer);
  for (int i = 0; i < 8; ++i) b[i] = static_cast<unsigned char>(bits >> (56 - 8 * i));
}

template <class V>
V get(const void* buffer, size_t size) {
  if (size != kEncodedLength || buffer == nullptr)
    throw CouldNotDecode(L"an encoded time value has 8 bytes, not " + std::to_wstring(size));
  const auto* b = static_cast<const unsigned char*>(buffer);
  std::uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = (bits << 8) | b[i];
  V v;
  std::memcpy(&v, &bits, 8);
  return v;
}

template <class V>
VariableLengthData encoded(V v) {
  unsigned char b[kEncodedLength];
  put(v, b, sizeof b);
  return VariableLengthData(b, sizeof b);
}

template <class V>
std::wstring text(V v) {
  std::wostringstream os;
  os << v;
  return os.str();
}

// Sums and differences: a double saturates by itself; a count that would leave its range
// is refused.
double add(double a, double b) {
  return a + b;
}
Integer64 add(Integer64 a, Integer64 b) {
  Integer64 r;
  if (__builtin_add_overflow(a, b, &r))
    throw IllegalTimeArithmetic(text(a) + L" + " + text(b) + L" leaves the 64-bit range");
  return r;
}
double sub(double a, double b) {
  return a - b;
}
Integer64 sub(Integer64 a, Integer64 b) {
  Integer64 r;
  if (__builtin_sub_overflow(a, b, &r))
    throw IllegalTimeArithmetic(text(a) + L" - " + text(b) + L" leaves the 64-bit range");
  return r;
}

}  // namespace

// clang-format off
#define VC_DEFINE_TIME(Time, Interval, Factory, V, Epsilon, Final)                        \
  namespace {                                                                             \
  V timeOf(Time*, LogicalTime const& t) {                                                 \
    const auto* p = dynamic_cast<const Time*>(&t);                                        \
    if (!p) throw InvalidLogicalTime(L"not an " L## #Time L": " + t.implementationName());  \
    return p->getTime();                                                                  \
  }                                                                                       \
  V intervalOf(Interval*, LogicalTimeInterval const& i) {                                 \
    const auto* p = dynamic_cast<const Interval*>(&i);                                    \
    if (!p)                                                                               \
      throw InvalidLogicalTimeInterval(L"not an " L## #Interval L": " +                   \
                                       i.implementationName());                           \
    return p->getInterval();                                                              \
  }                                                                                       \
  }                                                                                       \
  Interval::Interval() : _value(0) {}                                                     \
  Interval::Interval(V value) : _value(value) {}                                          \
  Interval::Interval(LogicalTimeInterval const& v) : _value(intervalOf(this, v)) {}       \
  Interval::Interval(Interval const& v) : LogicalTimeInterval(), _value(v._value) {}      \
  Interval::~Interval() noexcept = default;                                               \
  void Interval::setZero() { _value = 0; }                                                \
  bool Interval::isZero() const { return _value == 0; }                                   \
  void Interval::setEpsilon() { _value = Epsilon; }                                       \
  bool Interval::isEpsilon() const { return _value == Epsilon; }                          \
  LogicalTimeInterval& Interval::operator=(LogicalTimeInterval const& v) {                \
    _value = intervalOf(this, v);                                                         \
    return *this;                                                                         \
  }                                                                                       \
  Interval& Interval::operator=(Interval const& v) {                                      \
    _value = v._value;                                                                    \
    return *this;                                                                         \
  }                                                                                       \
  LogicalTimeInterval& Interval::operator+=(LogicalTimeInterval const& v) {               \
    _value = add(_value, intervalOf(this, v));                                            \
    return *this;                                                                         \
  }                                                                                       \
  LogicalTimeInterval& Interval::operator-=(LogicalTimeInterval const& v) {               \
    _value = sub(_value, intervalOf(this, v));                                            \
    return *this;                                                                         \
  }                                                                                       \
  bool Interval::operator>(LogicalTimeInterval const& v) const { return _value > intervalOf(static_cast<Interval*>(nullptr), v); }   \
  bool Interval::operator<(LogicalTimeInterval const& v) const { return _value < intervalOf(static_cast<Interval*>(nullptr), v); }   \
  bool Interval::operator==(LogicalTimeInterval const& v) const { return _value == intervalOf(static_cast<Interval*>(nullptr), v); } \
  bool Interval::operator>=(LogicalTimeInterval const& v) const { return _value >= intervalOf(static_cast<Interval*>(nullptr), v); } \
  bool Interval::operator<=(LogicalTimeInterval const& v) const { return _value <= intervalOf(static_cast<Interval*>(nullptr), v); } \
  void Interval::setToDifference(LogicalTime const& minuend, LogicalTime const& subtrahend) { \
    _value = sub(timeOf(static_cast<Time*>(nullptr), minuend), timeOf(static_cast<Time*>(nullptr), subtrahend));                  \
  }                                                                                       \
  VariableLengthData Interval::encode() const { return encoded(_value); }                 \
  size_t Interval::encode(void* buffer, size_t size) const {                              \
    put(_value, buffer, size);                                                            \
    return kEncodedLength;                                                                \
  }                                                                                       \
  size_t Interval::encodedLength() const { return kEncodedLength; }                       \
  void Interval::decode(VariableLengthData const& v) { _value = get<V>(v.data(), v.size()); } \
  void Interval::decode(void* buffer, size_t size) { _value = get<V>(buffer, size); }     \
  std::wstring Interval::toString() const { return text(_value); }                        \
  std::wstring Interval::implementationName() const { return L## #Time; }                 \
  V Interval::getInterval() const { return _value; }                                      \
  void Interval::setInterval(V value) { _value = value; }                                 \
  Interval::operator V() const { return _value; }                                         \
                                                                                          \
  Time::Time() : _value(0) {}                                                             \
  Time::Time(V value) : _value(value) {}                                                  \
  Time::Time(LogicalTime const& t) : _value(timeOf(this, t)) {}                           \
  Time::Time(Time const& t) : LogicalTime(), _value(t._value) {}                          \
  Time::~Time() noexcept = default;                                                       \
  void Time::setInitial() { _value = 0; }                                                 \
  bool Time::isInitial() const { return _value == 0; }                                    \
  void Time::setFinal() { _value = Final; }                                               \
  bool Time::isFinal() const { return _value == Final; }                                  \
  LogicalTime& Time::operator=(LogicalTime const& v) {                                    \
    _value = timeOf(this, v);                                                             \
    return *this;                                                                         \
  }                                                                                       \
  Time& Time::operator=(Time const& v) {                                                  \
    _value = v._value;                                                                    \
    return *this;                                                                         \
  }                                                                                       \
  LogicalTime& Time::operator+=(LogicalTimeInterval const& v) {                           \
    _value = add(_value, intervalOf(static_cast<Interval*>(nullptr), v));                                         \
    return *this;                                                                         \
  }                                                                                       \
  LogicalTime& Time::operator-=(LogicalTimeInterval const& v) {                           \
    _value = sub(_value, intervalOf(static_cast<Interval*>(nullptr), v));                                         \
    return *this;                                                                         \
  }                                                                                       \
  bool Time::operator>(LogicalTime const& v) const { return _value > timeOf(static_cast<Time*>(nullptr), v); }   \
  bool Time::operator<(LogicalTime const& v) const { return _value < timeOf(static_cast<Time*>(nullptr), v); }   \
  bool Time::operator==(LogicalTime const& v) const { return _value == timeOf(static_cast<Time*>(nullptr), v); } \
  bool Time::operator>=(LogicalTime const& v) const { return _value >= timeOf(static_cast<Time*>(nullptr), v); } \
  bool Time::operator<=(LogicalTime const& v) const { return _value <= timeOf(static_cast<Time*>(nullptr), v); } \
  VariableLengthData Time::encode() const { return encoded(_value); }                     \
  size_t Time::encode(void* buffer, size_t size) const {                                  \
    put(_value, buffer, size);                                                            \
    return kEncodedLength;                                                                \
  }                                                                                       \
  size_t Time::encodedLength() const { return kEncodedLength; }                           \
  void Time::decode(VariableLengthData const& v) { _value = get<V>(v.data(), v.size()); } \
  void Time::decode(void* buffer, size_t size) { _value = get<V>(buffer, size); }         \
  std::wstring Time::toString() const { return text(_value); }                            \
  std::wstring Time::implementationName() const { return L## #Time; }                     \
  V Time::getTime() const { return _value; }                                              \
  void Time::setTime(V value) { _value = value; }                                         \
  Time::operator V() const { return _value; }                                             \
                                                                                          \
  Factory::Factory() = default;                                                           \
  Factory::~Factory() noexcept = default;                                                 \
  RTI_UNIQUE_PTR<Time> Factory::makeLogicalTime(V value) { return std::make_unique<Time>(value); } \
  RTI_UNIQUE_PTR<LogicalTime> Factory::makeInitial() { return std::make_unique<Time>(0); } \
  RTI_UNIQUE_PTR<LogicalTime> Factory::makeFinal() { return std::make_unique<Time>(Final); } \
  RTI_UNIQUE_PTR<Interval> Factory::makeLogicalTimeInterval(V value) {                    \
    return std::make_unique<Interval>(value);                                             \
  }                                                                                       \
  RTI_UNIQUE_PTR<LogicalTimeInterval> Factory::makeZero() { return std::make_unique<Interval>(0); } \
  RTI_UNIQUE_PTR<LogicalTimeInterval> Factory::makeEpsilon() {                            \
    return std::make_unique<Interval>(Epsilon);                                           \
  }                                                                                       \
  RTI_UNIQUE_PTR<LogicalTime> Factory::decodeLogicalTime(VariableLengthData const& v) {   \
    return std::make_unique<Time>(get<V>(v.data(), v.size()));                            \
  }                                                                                       \
  RTI_UNIQUE_PTR<LogicalTime> Factory::decodeLogicalTime(void* buffer, size_t size) {     \
    return std::make_unique<Time>(get<V>(buffer, size));                                  \
  }                                                                                       \
  RTI_UNIQUE_PTR<LogicalTimeInterval> Factory::decodeLogicalTimeInterval(                 \
      VariableLengthData const& v) {                                                      \
    return std::make_unique<Interval>(get<V>(v.data(), v.size()));                        \
  }                                                                                       \
  RTI_UNIQUE_PTR<LogicalTimeInterval> Factory::decodeLogicalTimeInterval(void* buffer,    \
                                                                         size_t size) {   \
    return std::make_unique<Interval>(get<V>(buffer, size));                              \
  }                                                                                       \
  std::wstring Factory::getName() const { return L## #Time; }
// clang-format on

VC_DEFINE_TIME(HLAfloat64Time, HLAfloat64Interval, HLAfloat64TimeFactory, double,
               std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::max())
VC_DEFINE_TIME(HLAinteger64Time, HLAinteger64Interval, HLAinteger64TimeFactory, Integer64,
               Integer64{1}, std::numeric_limits<Integer64>::max())
#undef VC_DEFINE_TIME

RTI_UNIQUE_PTR<LogicalTimeFactory> HLAlogicalTimeFactoryFactory::makeLogicalTimeFactory(
    std::wstring const& implementationName) {
  if (implementationName == HLAfloat64TimeName) return std::make_unique<HLAfloat64TimeFactory>();
  if (implementationName == HLAinteger64TimeName)
    return std::make_unique<HLAinteger64TimeFactory>();
  return nullptr;
}

RTI_UNIQUE_PTR<LogicalTimeFactory> LogicalTimeFactoryFactory::makeLogicalTimeFactory(
    std::wstring const& implementationName) {
  if (implementationName.empty()) return std::make_unique<HLAfloat64TimeFactory>();
  return HLAlogicalTimeFactoryFactory::makeLogicalTimeFactory(implementationName);
}

}  // namespace rti1516e
