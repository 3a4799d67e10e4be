#include <RTI/HLAfloat64Interval.h>
#include <RTI/HLAfloat64Time.h>
#include <RTI/HLAfloat64TimeFactory.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/VariableLengthData.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <sstream>

using rti1516::LogicalTime;
using rti1516::LogicalTimeInterval;
using rti1516::VariableLengthData;

namespace {

// Both times and intervals carry this name: it chooses the representation as a whole.
const wchar_t kName[] = L"HLAfloat64Time";

// Times and intervals are exchanged as IEEE doubles, most significant byte first.
constexpr unsigned long kEncodedLength = 8;

void put(double v, void* buffer, unsigned long size) {
  if (size < kEncodedLength || buffer == nullptr)
    throw rti1516::CouldNotEncode(L"an encoded time value takes 8 bytes");
  std::uint64_t bits;
  std::memcpy(&bits, &v, 8);
  auto* b = static_cast<unsigned char*>(buffer);
  for (int i = 0; i < 8; ++i) b[i] = static_cast<unsigned char>(bits >> (56 - 8 * i));
}

double get(const void* buffer, unsigned long size) {
  if (size != kEncodedLength || buffer == nullptr)
    throw rti1516::CouldNotDecode(L"an encoded time value has 8 bytes, not " +
                                  std::to_wstring(size));
  const auto* b = static_cast<const unsigned char*>(buffer);
  std::uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = (bits << 8) | b[i];
  double v;
  std::memcpy(&v, &bits, 8);
  return v;
}

VariableLengthData encoded(double v) {
  unsigned char b[kEncodedLength];
  put(v, b, sizeof b);
  return VariableLengthData(b, sizeof b);
}

double timeOf(LogicalTime const& t) {
  const auto* p = dynamic_cast<const HLAfloat64Time*>(&t);
  if (!p) throw rti1516::InvalidLogicalTime(L"not an HLAfloat64Time: " + t.implementationName());
  return p->getTime();
}

double intervalOf(LogicalTimeInterval const& i) {
  const auto* p = dynamic_cast<const HLAfloat64Interval*>(&i);
  if (!p)
    throw rti1516::InvalidLogicalTimeInterval(L"not an HLAfloat64Interval: " +
                                              i.implementationName());
  return p->getInterval();
}

std::wstring text(double v) {
  std::wostringstream os;
  os << v;
  return os.str();
}

constexpr double kEpsilon = std::numeric_limits<double>::denorm_min();
constexpr double kFinal = std::numeric_limits<double>::max();

}  // namespace

// ------------------------------------------------------------------------- Interval

HLAfloat64Interval::HLAfloat64Interval() : _value(0) {}
HLAfloat64Interval::HLAfloat64Interval(double value) : _value(value) {}
HLAfloat64Interval::HLAfloat64Interval(LogicalTimeInterval const& v) : _value(intervalOf(v)) {}
HLAfloat64Interval::HLAfloat64Interval(HLAfloat64Interval const& v) : _value(v._value) {}
HLAfloat64Interval::~HLAfloat64Interval() noexcept = default;

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
HLAfloat64Interval& HLAfloat64Interval::operator=(LogicalTimeInterval const& v) {
  _value = intervalOf(v);
  return *this;
}
HLAfloat64Interval& HLAfloat64Interval::operator=(HLAfloat64Interval const& v) {
  _value = v._value;
  return *this;
}
void HLAfloat64Interval::setToDifference(LogicalTime const& minuend,
                                         LogicalTime const& subtrahend) {
  _value = timeOf(minuend) - timeOf(subtrahend);
}
HLAfloat64Interval& HLAfloat64Interval::operator+=(LogicalTimeInterval const& v) {
  _value += intervalOf(v);
  return *this;
}
HLAfloat64Interval& HLAfloat64Interval::operator-=(LogicalTimeInterval const& v) {
  _value -= intervalOf(v);
  return *this;
}
bool HLAfloat64Interval::operator>(LogicalTimeInterval const& v) const {
  return _value > intervalOf(v);
}
bool HLAfloat64Interval::operator<(LogicalTimeInterval const& v) const {
  return _value < intervalOf(v);
}
bool HLAfloat64Interval::operator==(LogicalTimeInterval const& v) const {
  return _value == intervalOf(v);
}
bool HLAfloat64Interval::operator>=(LogicalTimeInterval const& v) const {
  return _value >= intervalOf(v);
}
bool HLAfloat64Interval::operator<=(LogicalTimeInterval const& v) const {
  return _value <= intervalOf(v);
}
VariableLengthData HLAfloat64Interval::encode() const {
  return encoded(_value);
}
unsigned long HLAfloat64Interval::encodedLength() const {
  return kEncodedLength;
}
unsigned long HLAfloat64Interval::encode(void* buffer, unsigned long size) const {
  put(_value, buffer, size);
  return kEncodedLength;
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
std::wstring HLAfloat64Interval::implementationName() const {
  return kName;
}
double HLAfloat64Interval::getInterval() const {
  return _value;
}
void HLAfloat64Interval::setInterval(double value) {
  _value = value;
}
HLAfloat64Interval::operator double() const {
  return _value;
}

// ----------------------------------------------------------------------------- Time

HLAfloat64Time::HLAfloat64Time() : _value(0) {}
HLAfloat64Time::HLAfloat64Time(double value) : _value(value) {}
HLAfloat64Time::HLAfloat64Time(LogicalTime const& t) : _value(timeOf(t)) {}
HLAfloat64Time::HLAfloat64Time(HLAfloat64Time const& t) : _value(t._value) {}
HLAfloat64Time::~HLAfloat64Time() noexcept = default;

void HLAfloat64Time::setInitial() {
  _value = 0;
}
bool HLAfloat64Time::isInitial() const {
  return _value == 0;
}
void HLAfloat64Time::setFinal() {
  _value = kFinal;
}
bool HLAfloat64Time::isFinal() const {
  return _value == kFinal;
}
HLAfloat64Time& HLAfloat64Time::operator=(LogicalTime const& v) {
  _value = timeOf(v);
  return *this;
}
HLAfloat64Time& HLAfloat64Time::operator=(HLAfloat64Time const& v) {
  _value = v._value;
  return *this;
}
HLAfloat64Time& HLAfloat64Time::operator+=(LogicalTimeInterval const& v) {
  _value += intervalOf(v);
  return *this;
}
HLAfloat64Time& HLAfloat64Time::operator-=(LogicalTimeInterval const& v) {
  _value -= intervalOf(v);
  return *this;
}
bool HLAfloat64Time::operator>(LogicalTime const& v) const {
  return _value > timeOf(v);
}
bool HLAfloat64Time::operator<(LogicalTime const& v) const {
  return _value < timeOf(v);
}
bool HLAfloat64Time::operator==(LogicalTime const& v) const {
  return _value == timeOf(v);
}
bool HLAfloat64Time::operator>=(LogicalTime const& v) const {
  return _value >= timeOf(v);
}
bool HLAfloat64Time::operator<=(LogicalTime const& v) const {
  return _value <= timeOf(v);
}
VariableLengthData HLAfloat64Time::encode() const {
  return encoded(_value);
}
unsigned long HLAfloat64Time::encodedLength() const {
  return kEncodedLength;
}
unsigned long HLAfloat64Time::encode(void* buffer, unsigned long size) const {
  put(_value, buffer, size);
  return kEncodedLength;
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
std::wstring HLAfloat64Time::implementationName() const {
  return kName;
}
double HLAfloat64Time::getTime() const {
  return _value;
}
void HLAfloat64Time::setTime(double value) {
  _value = value;
}
HLAfloat64Time::operator double() const {
  return _value;
}

// ------------------------------------------------------------------------ Factories

HLAfloat64TimeFactory::HLAfloat64TimeFactory() = default;
HLAfloat64TimeFactory::~HLAfloat64TimeFactory() noexcept = default;

RTI_UNIQUE_PTR<LogicalTime> HLAfloat64TimeFactory::makeLogicalTime() {
  return std::make_unique<HLAfloat64Time>();
}
RTI_UNIQUE_PTR<LogicalTimeInterval> HLAfloat64TimeFactory::makeLogicalTimeInterval() {
  return std::make_unique<HLAfloat64Interval>();
}

namespace rti1516 {
RTI_UNIQUE_PTR<LogicalTimeFactory> LogicalTimeFactoryFactory::makeLogicalTimeFactory(
    std::wstring const& implementationName) {
  if (!implementationName.empty() && implementationName != kName) return nullptr;
  return std::make_unique<HLAfloat64TimeFactory>();
}
}  // namespace rti1516
