// The 1516-2010 API's plain classes: exceptions and VariableLengthData.
#include <RTI/Exception.h>
#include <RTI/VariableLengthData.h>
#include <RTI/encoding/EncodingExceptions.h>

#include <cstring>
#include <ostream>
#include <utility>

namespace rti1516e {

Exception::Exception() = default;
Exception::Exception(Exception const&) = default;
Exception& Exception::operator=(Exception const&) = default;
Exception::~Exception() = default;

std::wostream& operator<<(std::wostream& out, Exception const& e) {
  return out << e.what();
}

#define RTI1516E_DEFINE_EXCEPTION(Name)                               \
  Name::Name(std::wstring const& message) noexcept : _msg(message) {} \
  std::wstring Name::what() const noexcept {                          \
    return _msg;                                                      \
  }
RTI1516E_EXCEPTION_LIST(RTI1516E_DEFINE_EXCEPTION)
RTI1516E_DEFINE_EXCEPTION(EncoderException)
#undef RTI1516E_DEFINE_EXCEPTION

// ----------------------------------------------------------------- VariableLengthData

VariableLengthData::VariableLengthData()
    : _data(nullptr), _size(0), _capacity(0), _adopted(false), _deleter(nullptr) {}

VariableLengthData::VariableLengthData(void const* inData, size_t inSize) : VariableLengthData() {
  setData(inData, inSize);
}

VariableLengthData::VariableLengthData(VariableLengthData const& rhs) : VariableLengthData() {
  setData(rhs._data, rhs._size);
}

VariableLengthData::VariableLengthData(VariableLengthData&& rhs) noexcept
    : _data(rhs._data),
      _size(rhs._size),
      _capacity(rhs._capacity),
      _adopted(rhs._adopted),
      _deleter(rhs._deleter) {
  rhs._data = nullptr;
  rhs._size = rhs._capacity = 0;
  rhs._adopted = false;
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
    std::swap(_data, rhs._data);
    std::swap(_size, rhs._size);
    std::swap(_capacity, rhs._capacity);
    std::swap(_adopted, rhs._adopted);
    std::swap(_deleter, rhs._deleter);
  }
  return *this;
}

void const* VariableLengthData::data() const {
  return _data;
}

size_t VariableLengthData::size() const {
  return _size;
}

void VariableLengthData::setData(void const* inData, size_t inSize) {
  if (inSize == 0 || inData == nullptr) {
    if (_capacity == 0 && !_adopted) _data = nullptr;
    _size = 0;
    return;
  }
  if (_capacity < inSize) {
    // Allocated before the old bytes go, so that copying from them still works.
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

void VariableLengthData::setDataPointer(void* inData, size_t inSize) {
  release();
  _data = static_cast<char*>(inData);
  _size = inSize;
}

void VariableLengthData::takeDataPointer(void* inData, size_t inSize,
                                         VariableLengthDataDeleteFunction func) {
  release();
  _data = static_cast<char*>(inData);
  _size = inSize;
  _adopted = true;
  _deleter = func;
}

void VariableLengthData::release() noexcept {
  if (_adopted) {
    if (_deleter)
      _deleter(_data);
    else
      delete[] _data;
  } else if (_capacity) {
    delete[] _data;
  }
  _data = nullptr;
  _size = _capacity = 0;
  _adopted = false;
  _deleter = nullptr;
}

}  // namespace rti1516e
