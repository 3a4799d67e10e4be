// Out-of-line parts of the API's value types. Keeping the key functions here anchors the
// type information in the library, so exceptions cross the library boundary by type.
#include "handle_access.h"

#include <RTI/Exception.h>
#include <RTI/FederateAmbassador.h>
#include <RTI/LogicalTime.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>
#include <RTI/RTIambassador.h>
#include <RTI/RangeBounds.h>
#include <RTI/VariableLengthData.h>

#include <cstring>
#include <ostream>
#include <sstream>

namespace rti1516 {

// What an application prints to say which RTI it runs on.
std::wstring RTIname() {
  return L"vistrel embedded rti1516";
}
std::wstring RTIversion() {
  return L"1.0.0";
}

// ------------------------------------------------------------------------ Exceptions

Exception::Exception() = default;
Exception::Exception(Exception const&) = default;
Exception& Exception::operator=(Exception const&) = default;
Exception::~Exception() = default;

std::wostream& operator<<(std::wostream& os, Exception const& e) {
  return os << e.what();
}

#define RTI1516_DEFINE_EXCEPTION(A)                             \
  A::A(std::wstring const& message) noexcept : _msg(message) {} \
  std::wstring A::what() const noexcept {                       \
    return _msg;                                                \
  }

RTI1516_EXCEPTION_LIST(RTI1516_DEFINE_EXCEPTION)

// ----------------------------------------------------------------- VariableLengthData

VariableLengthData::VariableLengthData() : _data(nullptr), _size(0), _capacity(0) {}

VariableLengthData::VariableLengthData(void const* inData, unsigned long inSize)
    : _data(nullptr), _size(0), _capacity(0) {
  setData(inData, inSize);
}

VariableLengthData::VariableLengthData(VariableLengthData const& rhs)
    : _data(nullptr), _size(0), _capacity(0) {
  setData(rhs._data, rhs._size);
}

VariableLengthData::VariableLengthData(VariableLengthData&& rhs) noexcept
    : _data(rhs._data), _size(rhs._size), _capacity(rhs._capacity) {
  rhs._data = nullptr;
  rhs._size = 0;
  rhs._capacity = 0;
}

VariableLengthData::~VariableLengthData() {
  release();
}

VariableLengthData& VariableLengthData::operator=(VariableLengthData const& rhs) {
  if (this != &rhs) setData(rhs._data, rhs._size);
  return *this;
}

VariableLengthData& VariableLengthData::operator=(VariableLengthData&& rhs) noexcept {
  if (this != &rhs) {
    release();
    _data = rhs._data;
    _size = rhs._size;
    _capacity = rhs._capacity;
    rhs._data = nullptr;
    rhs._size = 0;
    rhs._capacity = 0;
  }
  return *this;
}

void VariableLengthData::setData(void const* inData, unsigned long inSize) {
  if (inSize == 0 || inData == nullptr) {
    if (_capacity == 0) _data = nullptr;
    _size = 0;
    return;
  }
  if (_capacity < inSize) {  // the copy is made before the old bytes go: inData may point into them
    char* fresh = new char[inSize];
    std::memcpy(fresh, inData, inSize);
    release();
    _data = fresh;
    _capacity = inSize;
  } else {
    std::memmove(_data, inData, inSize);
  }
  _size = inSize;
}

void const* VariableLengthData::data() const {
  return _data;
}

unsigned long VariableLengthData::size() const {
  return _size;
}

void VariableLengthData::setDataPointer(void* inData, unsigned long inSize) {
  release();
  _data = static_cast<char*>(inData);
  _size = inSize;
}

void VariableLengthData::takeDataPointer(void* inData, unsigned long inSize) {
  release();
  _data = static_cast<char*>(inData);
  _size = inSize;
  _capacity = inData ? (inSize ? inSize : 1) : 0;
}

void VariableLengthData::release() noexcept {
  if (_capacity) delete[] _data;
  _data = nullptr;
  _size = 0;
  _capacity = 0;
}

// -------------------------------------------------------------------------- Handles

// An invalid handle holds the one value no FDD table position or federate number takes.
constexpr unsigned long long kInvalidHandle = ~0ull;
constexpr unsigned long kEncodedHandleLength = 8;

#define RTI1516_DEFINE_HANDLE_MEMBERS(HandleKind)                                          \
  HandleKind::HandleKind() : _value(kInvalidHandle) {}                                     \
  HandleKind::~HandleKind() noexcept = default;                                            \
  HandleKind::HandleKind(HandleKind const& rhs) = default;                                 \
  HandleKind& HandleKind::operator=(HandleKind const& rhs) = default;                      \
  bool HandleKind::isValid() const {                                                       \
    return _value != kInvalidHandle;                                                       \
  }                                                                                        \
  bool HandleKind::operator==(HandleKind const& rhs) const {                               \
    return _value == rhs._value;                                                           \
  }                                                                                        \
  bool HandleKind::operator!=(HandleKind const& rhs) const {                               \
    return _value != rhs._value;                                                           \
  }                                                                                        \
  bool HandleKind::operator<(HandleKind const& rhs) const {                                \
    return _value < rhs._value;                                                            \
  }                                                                                        \
  VariableLengthData HandleKind::encode() const {                                          \
    unsigned char b[kEncodedHandleLength];                                                 \
    encode(b, sizeof b);                                                                   \
    return VariableLengthData(b, sizeof b);                                                \
  }                                                                                        \
  unsigned long HandleKind::encodedLength() const {                                        \
    return kEncodedHandleLength;                                                           \
  }                                                                                        \
  unsigned long HandleKind::encode(void* buffer, unsigned long bufferSize) const {         \
    if (bufferSize < kEncodedHandleLength || buffer == nullptr)                            \
      throw CouldNotEncode(L"an encoded " L## #HandleKind L" takes 8 bytes, not " +        \
                           std::to_wstring(bufferSize));                                   \
    auto* b = static_cast<unsigned char*>(buffer);                                         \
    for (int i = 0; i < 8; ++i) b[i] = static_cast<unsigned char>(_value >> (56 - 8 * i)); \
    return kEncodedHandleLength;                                                           \
  }                                                                                        \
  std::wstring HandleKind::toString() const {                                              \
    if (!isValid()) return L## #HandleKind L"(invalid)";                                   \
    std::wostringstream os;                                                                \
    os << L## #HandleKind << L'(' << _value << L')';                                       \
    return os.str();                                                                       \
  }                                                                                        \
  std::wostream& operator<<(std::wostream& os, HandleKind const& h) {                      \
    return os << h.toString();                                                             \
  }

RTI1516_DEFINE_HANDLE_MEMBERS(FederateHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(ObjectClassHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(InteractionClassHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(ObjectInstanceHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(AttributeHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(ParameterHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(DimensionHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(MessageRetractionHandle)
RTI1516_DEFINE_HANDLE_MEMBERS(RegionHandle)

// ------------------------------------------------------------------- Abstract bases

LogicalTime::~LogicalTime() noexcept = default;
std::wostream& operator<<(std::wostream& os, LogicalTime const& t) {
  return os << t.toString();
}

LogicalTimeInterval::~LogicalTimeInterval() noexcept = default;
std::wostream& operator<<(std::wostream& os, LogicalTimeInterval const& t) {
  return os << t.toString();
}

LogicalTimeFactory::~LogicalTimeFactory() noexcept = default;

FederateAmbassador::FederateAmbassador() = default;
FederateAmbassador::~FederateAmbassador() = default;

RTIambassador::RTIambassador() = default;
RTIambassador::~RTIambassador() = default;

// -------------------------------------------------------------------- RangeBounds

RangeBounds::RangeBounds() : _lowerBound(0), _upperBound(0) {}
RangeBounds::RangeBounds(unsigned long lowerBound, unsigned long upperBound)
    : _lowerBound(lowerBound), _upperBound(upperBound) {}
RangeBounds::~RangeBounds() noexcept = default;
RangeBounds::RangeBounds(RangeBounds const&) = default;
RangeBounds& RangeBounds::operator=(RangeBounds const&) = default;
unsigned long RangeBounds::getLowerBound() const {
  return _lowerBound;
}
unsigned long RangeBounds::getUpperBound() const {
  return _upperBound;
}
void RangeBounds::setLowerBound(unsigned long lowerBound) {
  _lowerBound = lowerBound;
}
void RangeBounds::setUpperBound(unsigned long upperBound) {
  _upperBound = upperBound;
}

}  // namespace rti1516
