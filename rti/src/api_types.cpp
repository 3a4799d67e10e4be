// Out-of-line parts of the API's value types. Keeping the key functions here anchors the
// type information in the library, so exceptions cross the library boundary by type.
#include "handle_access.h"

#include <RTI/Exception.h>
#include <RTI/FederateAmbassador.h>
#include <RTI/LogicalTime.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/LogicalTimeIntervalFactory.h>
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>
#include <RTI/RTIambassador.h>
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

#define RTI1516_DEFINE_EXCEPTION(A)                    \
  A::A(std::wstring const& message) : _msg(message) {} \
  std::wstring A::what() const noexcept {              \
    return _msg;                                       \
  }

RTI1516_EXCEPTION_LIST(RTI1516_DEFINE_EXCEPTION)

// ----------------------------------------------------------------- VariableLengthData

VariableLengthData::VariableLengthData() noexcept : _data(nullptr), _size(0), _capacity(0) {}

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

void VariableLengthData::takeDataPointer(void* inData, unsigned long inSize) noexcept {
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

#define RTI1516_DEFINE_HANDLE_MEMBERS(HandleKind)                                               \
  VariableLengthData HandleKind::encode() const {                                               \
    unsigned char b[8];                                                                         \
    encode(b, sizeof b);                                                                        \
    return VariableLengthData(b, sizeof b);                                                     \
  }                                                                                             \
  unsigned long HandleKind::encode(void* buffer, unsigned long bufferSize) const {              \
    if (bufferSize < 8) throw CouldNotDecode(L"buffer too small to encode a " L## #HandleKind); \
    auto* b = static_cast<unsigned char*>(buffer);                                              \
    for (int i = 0; i < 8; ++i) b[i] = static_cast<unsigned char>(_value >> (56 - 8 * i));      \
    return 8;                                                                                   \
  }                                                                                             \
  std::wstring HandleKind::toString() const {                                                   \
    if (!isValid()) return L## #HandleKind L"(invalid)";                                        \
    std::wostringstream os;                                                                     \
    os << L## #HandleKind << L'(' << _value << L')';                                            \
    return os.str();                                                                            \
  }                                                                                             \
  std::wostream& operator<<(std::wostream& os, HandleKind const& h) {                           \
    return os << h.toString();                                                                  \
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

LogicalTime::~LogicalTime() = default;
std::wstring LogicalTime::toString() const {
  return L"LogicalTime";
}
std::wostream& operator<<(std::wostream& os, LogicalTime const& t) {
  return os << t.toString();
}

LogicalTimeInterval::~LogicalTimeInterval() = default;
std::wstring LogicalTimeInterval::toString() const {
  return L"LogicalTimeInterval";
}
std::wostream& operator<<(std::wostream& os, LogicalTimeInterval const& t) {
  return os << t.toString();
}

LogicalTimeFactory::~LogicalTimeFactory() = default;
LogicalTimeIntervalFactory::~LogicalTimeIntervalFactory() = default;

FederateAmbassador::FederateAmbassador() = default;
FederateAmbassador::~FederateAmbassador() = default;
NullFederateAmbassador::~NullFederateAmbassador() = default;

RTIambassador::RTIambassador() = default;
RTIambassador::~RTIambassador() = default;

}  // namespace rti1516
