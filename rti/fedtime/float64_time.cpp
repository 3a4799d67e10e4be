#include <RTI/HLAfloat64Time.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sstream>

namespace rti1516 {

namespace {

// Times and intervals are exchanged as IEEE doubles, most significant byte first.
void put(double v, void* buffer, unsigned long size) {
  if (size < 8) throw CouldNotDecode(L"buffer too small for an 8-byte time value");
  std::uint64_t bits;
  std::memcpy(&bits, &v, 8);
  auto* b = static_cast<unsigned char*>(buffer);
  for (int i = 0; i < 8; ++i) b[i] = static_cast<unsigned char>(bits >> (56 - 8 * i));
}

double get(const void* buffer, unsigned long size) {
  if (size != 8 || buffer == nullptr) throw CouldNotDecode(L"an encoded time value has 8 bytes");
  const auto* b = static_cast<const unsigned char*>(buffer);
  std::uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = (bits << 8) | b[i];
  double v;
  std::memcpy(&v, &bits, 8);
  return v;
}

template <class T, class Base>
const T& as(const Base& v) {
  const T* p = dynamic_cast<const T*>(&v);
  if (!p) throw InvalidLogicalTime(L"time value of another representation");
  return *p;
}

std::wstring text(double v) {
  std::wostringstream os;
  os << v;
  return os.str();
}

constexpr double kEpsilon = std::numeric_limits<double>::denorm_min();

class Float64TimeFactory : public LogicalTimeFactory {
 public:
  RTI_UNIQUE_PTR<LogicalTime> makeLogicalTime() override {
    return std::make_unique<HLAfloat64Time>();
  }
};

class Float64IntervalFactory : public LogicalTimeIntervalFactory {
 public:
  RTI_UNIQUE_PTR<LogicalTimeInterval> makeLogicalTimeInterval() override {
    return std::make_unique<HLAfloat64Interval>();
  }
};

bool knownName(std::wstring const& name) {
  return name.empty() || name == L"HLAfloat64Time" || name == L"HLAfloat64Interval";
}

}  // namespace

// ------------------------------------------------------------------------- Interval

void HLAfloat64Interval::setZero() {
  _value = 0;
}
bool HLAfloat64Interval::isZero() const {
  return _value == 0;
}
void HLAfloat64Interval::setEpsilon() {
  _value = kEpsilon;
}
bool HLAfloat64Interval::isEpsilon() const {
  return _value == kEpsilon;
}
LogicalTimeInterval& HLAfloat64Interval::operator=(LogicalTimeInterval const& v) {
  _value = as<HLAfloat64Interval>(v)._value;
  return *this;
}
void HLAfloat64Interval::setToDifference(LogicalTime const& minuend,
                                         LogicalTime const& subtrahend) {
  _value = as<HLAfloat64Time>(minuend).getTime() - as<HLAfloat64Time>(subtrahend).getTime();
}
LogicalTimeInterval& HLAfloat64Interval::operator+=(LogicalTimeInterval const& v) {
  _value += as<HLAfloat64Interval>(v)._value;
  return *this;
}
LogicalTimeInterval& HLAfloat64Interval::operator-=(LogicalTimeInterval const& v) {
  _value -= as<HLAfloat64Interval>(v)._value;
  return *this;
}
bool HLAfloat64Interval::operator>(LogicalTimeInterval const& v) const {
  return _value > as<HLAfloat64Interval>(v)._value;
}
bool HLAfloat64Interval::operator<(LogicalTimeInterval const& v) const {
  return _value < as<HLAfloat64Interval>(v)._value;
}
bool HLAfloat64Interval::operator==(LogicalTimeInterval const& v) const {
  return _value == as<HLAfloat64Interval>(v)._value;
}
bool HLAfloat64Interval::operator>=(LogicalTimeInterval const& v) const {
  return _value >= as<HLAfloat64Interval>(v)._value;
}
bool HLAfloat64Interval::operator<=(LogicalTimeInterval const& v) const {
  return _value <= as<HLAfloat64Interval>(v)._value;
}
VariableLengthData HLAfloat64Interval::encode() const {
  unsigned char b[8];
  put(_value, b, 8);
  return VariableLengthData(b, 8);
}
unsigned long HLAfloat64Interval::encodedLength() const {
  return 8;
}
unsigned long HLAfloat64Interval::encode(void* buffer, unsigned long size) const {
  put(_value, buffer, size);
  return 8;
}
void HLAfloat64Interval::decode(VariableLengthData const& v) {
  _value = get(v.data(), v.size());
}
void HLAfloat64Interval::decode(void* buffer, unsigned long size) {
  _value = get(buffer, size);
}
std::wstring HLAfloat64Interval::toString() const {
  return text(_value);
}

// ----------------------------------------------------------------------------- Time

void HLAfloat64Time::setInitial() {
  _value = 0;
}
bool HLAfloat64Time::isInitial() const {
  return _value == 0;
}
void HLAfloat64Time::setFinal() {
  _value = std::numeric_limits<double>::max();
}
bool HLAfloat64Time::isFinal() const {
  return _value == std::numeric_limits<double>::max();
}
LogicalTime& HLAfloat64Time::operator=(LogicalTime const& v) {
  _value = as<HLAfloat64Time>(v)._value;
  return *this;
}
LogicalTime& HLAfloat64Time::operator+=(LogicalTimeInterval const& v) {
  _value += as<HLAfloat64Interval>(v).getInterval();
  return *this;
}
LogicalTime& HLAfloat64Time::operator-=(LogicalTimeInterval const& v) {
  _value -= as<HLAfloat64Interval>(v).getInterval();
  return *this;
}
bool HLAfloat64Time::operator>(LogicalTime const& v) const {
  return _value > as<HLAfloat64Time>(v)._value;
}
bool HLAfloat64Time::operator<(LogicalTime const& v) const {
  return _value < as<HLAfloat64Time>(v)._value;
}
bool HLAfloat64Time::operator==(LogicalTime const& v) const {
  return _value == as<HLAfloat64Time>(v)._value;
}
bool HLAfloat64Time::operator>=(LogicalTime const& v) const {
  return _value >= as<HLAfloat64Time>(v)._value;
}
bool HLAfloat64Time::operator<=(LogicalTime const& v) const {
  return _value <= as<HLAfloat64Time>(v)._value;
}
VariableLengthData HLAfloat64Time::encode() const {
  unsigned char b[8];
  put(_value, b, 8);
  return VariableLengthData(b, 8);
}
unsigned long HLAfloat64Time::encodedLength() const {
  return 8;
}
unsigned long HLAfloat64Time::encode(void* buffer, unsigned long size) const {
  put(_value, buffer, size);
  return 8;
}
void HLAfloat64Time::decode(VariableLengthData const& v) {
  _value = get(v.data(), v.size());
}
void HLAfloat64Time::decode(void* buffer, unsigned long size) {
  _value = get(buffer, size);
}
std::wstring HLAfloat64Time::toString() const {
  return text(_value);
}

// ------------------------------------------------------------------------ Factories

RTI_UNIQUE_PTR<LogicalTimeFactory> LogicalTimeFactoryFactory::makeLogicalTimeFactory(
    std::wstring const& name) {
  if (!knownName(name)) return nullptr;
  return std::make_unique<Float64TimeFactory>();
}

RTI_UNIQUE_PTR<LogicalTimeIntervalFactory>
LogicalTimeIntervalFactoryFactory::makeLogicalTimeIntervalFactory(std::wstring const& name) {
  if (!knownName(name)) return nullptr;
  return std::make_unique<Float64IntervalFactory>();
}

}  // namespace rti1516
