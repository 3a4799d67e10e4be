// The basic types of the HLA's encoding: each a value (ours or the caller's variable)
// and a codec that knows its octets.
#include <RTI/encoding/BasicDataElements.h>

#include <climits>
#include <cstring>
#include <limits>
#include <type_traits>

#include "encoding_detail.h"

namespace rti1516e {
namespace {

using encoding::fail;
using encoding::need;

template <typename U>
void putBytes(std::vector<Octet>& buffer, U value, bool bigEndian) {
  static_assert(std::is_unsigned<U>::value, "unsigned only");
  size_t at = buffer.size();
  buffer.resize(at + sizeof(U));
  for (size_t i = 0; i < sizeof(U); ++i) {
    size_t shift = 8 * (bigEndian ? sizeof(U) - 1 - i : i);
    buffer[at + i] = static_cast<Octet>(static_cast<unsigned char>(value >> shift));
  }
}

template <typename U>
U getBytes(std::vector<Octet> const& buffer, size_t index, bool bigEndian) {
  U value = 0;
  for (size_t i = 0; i < sizeof(U); ++i) {
    size_t shift = 8 * (bigEndian ? sizeof(U) - 1 - i : i);
    value |= static_cast<U>(static_cast<unsigned char>(buffer[index + i])) << shift;
  }
  return value;
}

// The unsigned integer as wide as T, whose bits travel.
template <typename T>
using UnsignedOf = std::conditional_t<sizeof(T) == 2, uint16_t,
                                      std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>;

// Integers and IEEE 754 floats in either byte order: the value's bits, as they are.
template <typename T, bool BigEndian>
struct FixedCodec {
  using U = UnsignedOf<T>;
  static constexpr unsigned boundary = sizeof(T);
  static size_t length(T) { return sizeof(T); }
  static void put(std::vector<Octet>& buffer, T value) {
    U bits;
    std::memcpy(&bits, &value, sizeof bits);
    putBytes<U>(buffer, bits, BigEndian);
  }
  static size_t get(std::vector<Octet> const& buffer, size_t index, T& value, wchar_t const* what) {
    need(buffer, index, sizeof(T), what);
    U bits = getBytes<U>(buffer, index, BigEndian);
    std::memcpy(&value, &bits, sizeof bits);
    return index + sizeof(T);
  }
};

template <typename T>
struct OctetCodec {
  static constexpr unsigned boundary = 1;
  static size_t length(T) { return 1; }
  static void put(std::vector<Octet>& buffer, T value) {
    buffer.push_back(static_cast<Octet>(value));
  }
  static size_t get(std::vector<Octet> const& buffer, size_t index, T& value, wchar_t const* what) {
    need(buffer, index, 1, what);
    value = static_cast<T>(buffer[index]);
    return index + 1;
  }
};

// The pair's first octet is the more significant one.
template <bool BigEndian>
struct OctetPairCodec {
  static constexpr unsigned boundary = 2;
  static size_t length(OctetPair const&) { return 2; }
  static void put(std::vector<Octet>& buffer, OctetPair const& value) {
    buffer.push_back(BigEndian ? value.first : value.second);
    buffer.push_back(BigEndian ? value.second : value.first);
  }
  static size_t get(std::vector<Octet> const& buffer, size_t index, OctetPair& value,
                    wchar_t const* what) {
    need(buffer, index, 2, what);
    value.first = buffer[index + (BigEndian ? 0 : 1)];
    value.second = buffer[index + (BigEndian ? 1 : 0)];
    return index + 2;
  }
};

// An enumeration on HLAinteger32BE with HLAfalse = 0 and HLAtrue = 1; other values are
// not booleans and are refused rather than guessed at.
struct BooleanCodec {
  static constexpr unsigned boundary = 4;
  static size_t length(bool) { return 4; }
  static void put(std::vector<Octet>& buffer, bool value) {
    encoding::putUint32BE(buffer, value ? 1 : 0);
  }
  static size_t get(std::vector<Octet> const& buffer, size_t index, bool& value,
                    wchar_t const* what) {
    need(buffer, index, 4, what);
    uint32_t raw = encoding::getUint32BE(buffer, index);
    if (raw > 1)
      fail(L"HLAboolean: " + std::to_wstring(raw) + L" is neither HLAfalse (0) nor HLAtrue (1)");
    value = raw == 1;
    return index + 4;
  }
};

// One UTF-16 code unit, big-endian: a character beyond U+FFFF does not fit in one.
struct UnicodeCharCodec {
  static constexpr unsigned boundary = 2;
  static size_t length(wchar_t) { return 2; }
  static void put(std::vector<Octet>& buffer, wchar_t value) {
    if (static_cast<unsigned long>(value) > 0xFFFF)
      fail(L"HLAunicodeChar: a character beyond U+FFFF needs two UTF-16 code units");
    putBytes<uint16_t>(buffer, static_cast<uint16_t>(value), true);
  }
  static size_t get(std::vector<Octet> const& buffer, size_t index, wchar_t& value,
                    wchar_t const* what) {
    need(buffer, index, 2, what);
    value = static_cast<wchar_t>(getBytes<uint16_t>(buffer, index, true));
    return index + 2;
  }
};

uint32_t checkedCount(size_t count, wchar_t const* what) {
  if (count > std::numeric_limits<uint32_t>::max())
    fail(std::wstring(what) + L": more than 2^32-1 elements cannot be counted");
  return static_cast<uint32_t>(count);
}

struct ASCIIstringCodec {
  static constexpr unsigned boundary = 4;
  static size_t length(std::string const& value) { return 4 + value.size(); }
  static void put(std::vector<Octet>& buffer, std::string const& value) {
    encoding::putUint32BE(buffer, checkedCount(value.size(), L"HLAASCIIstring"));
    buffer.insert(buffer.end(), value.begin(), value.end());
  }
  static size_t get(std::vector<Octet> const& buffer, size_t index, std::string& value,
                    wchar_t const* what) {
    uint32_t count = encoding::readCount(buffer, index, what);
    auto first = buffer.begin() + static_cast<std::ptrdiff_t>(index + 4);
    value.assign(first, first + count);
    return index + 4 + count;
  }
};

// UTF-16 code units; wchar_t holds whole characters, so those beyond U+FFFF travel as
// surrogate pairs and pairs decode back into one character. A lone surrogate is kept as
// it came.
struct UnicodeStringCodec {
  static constexpr unsigned boundary = 4;
  static bool wide(wchar_t c) { return static_cast<unsigned long>(c) > 0xFFFF; }
  static size_t units(std::wstring const& value) {
    size_t n = 0;
    for (wchar_t c : value) n += wide(c) ? 2 : 1;
    return n;
  }
  static size_t length(std::wstring const& value) { return 4 + 2 * units(value); }
  static void put(std::vector<Octet>& buffer, std::wstring const& value) {
    encoding::putUint32BE(buffer, checkedCount(units(value), L"HLAunicodeString"));
    for (wchar_t c : value) {
      unsigned long code = static_cast<unsigned long>(c);
      if (code > 0x10FFFF) fail(L"HLAunicodeString: a character beyond U+10FFFF");
      if (code > 0xFFFF) {
        code -= 0x10000;
        putBytes<uint16_t>(buffer, static_cast<uint16_t>(0xD800 + (code >> 10)), true);
        putBytes<uint16_t>(buffer, static_cast<uint16_t>(0xDC00 + (code & 0x3FF)), true);
      } else {
        putBytes<uint16_t>(buffer, static_cast<uint16_t>(code), true);
      }
    }
  }
  static size_t get(std::vector<Octet> const& buffer, size_t index, std::wstring& value,
                    wchar_t const* what) {
    uint32_t count = encoding::readCount(buffer, index, what);
    need(buffer, index + 4, 2 * static_cast<size_t>(count), what);
    std::wstring text;
    text.reserve(count);
    size_t at = index + 4;
    for (uint32_t i = 0; i < count; ++i, at += 2) {
      uint16_t unit = getBytes<uint16_t>(buffer, at, true);
      if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < count) {
        uint16_t low = getBytes<uint16_t>(buffer, at + 2, true);
        if (low >= 0xDC00 && low < 0xE000) {
          text.push_back(static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00)));
          ++i;
          at += 2;
          continue;
        }
      }
      text.push_back(static_cast<wchar_t>(unit));
    }
    value.swap(text);
    return at;
  }
};

using Float32BE = FixedCodec<float, true>;
using Float32LE = FixedCodec<float, false>;
using Float64BE = FixedCodec<double, true>;
using Float64LE = FixedCodec<double, false>;
using Int16LE = FixedCodec<Integer16, false>;
using Int16BE = FixedCodec<Integer16, true>;
using Int32BE = FixedCodec<Integer32, true>;
using Int32LE = FixedCodec<Integer32, false>;
using Int64BE = FixedCodec<Integer64, true>;
using Int64LE = FixedCodec<Integer64, false>;

// A basic element's value: its own, or the caller's variable it was pointed at.
template <typename T>
struct BasicValue {
  T own{};
  T* value = &own;
  BasicValue() = default;
  explicit BasicValue(T const& v) : own(v) {}
  BasicValue(BasicValue const&) = delete;
  BasicValue& operator=(BasicValue const&) = delete;
};

}  // namespace

#define RTI1516E_BASIC_ELEMENT(Type, Simple, Codec)                                   \
  class Type##Implementation : public BasicValue<Simple> {                            \
   public:                                                                            \
    using BasicValue<Simple>::BasicValue;                                             \
  };                                                                                  \
  Type::Type() : _impl(new Type##Implementation) {}                                   \
  Type::Type(Simple const& inData) : _impl(new Type##Implementation(inData)) {}       \
  Type::Type(Simple* inData) : _impl(new Type##Implementation) {                      \
    if (inData) _impl->value = inData;                                                \
  }                                                                                   \
  Type::Type(Type const& rhs) : _impl(new Type##Implementation(*rhs._impl->value)) {} \
  Type::~Type() {                                                                     \
    delete _impl;                                                                     \
  }                                                                                   \
  Type& Type::operator=(Type const& rhs) {                                            \
    *_impl->value = *rhs._impl->value;                                                \
    return *this;                                                                     \
  }                                                                                   \
  RTI1516E_WHOLE_ELEMENT_CODING(Type)                                                 \
  void Type::encodeInto(std::vector<Octet>& buffer) const {                           \
    encoding::pad(buffer, Codec::boundary);                                           \
    Codec::put(buffer, *_impl->value);                                                \
  }                                                                                   \
  size_t Type::decodeFrom(std::vector<Octet> const& buffer, size_t index) {           \
    index = encoding::align(buffer, index, Codec::boundary);                          \
    return Codec::get(buffer, index, *_impl->value, L## #Type);                       \
  }                                                                                   \
  size_t Type::getEncodedLength() const {                                             \
    return Codec::length(*_impl->value);                                              \
  }                                                                                   \
  unsigned int Type::getOctetBoundary() const {                                       \
    return Codec::boundary;                                                           \
  }                                                                                   \
  Integer64 Type::hash() const {                                                      \
    return DataElement::hash();                                                       \
  }                                                                                   \
  void Type::setDataPointer(Simple* inData) {                                         \
    encoding::checkPointer(inData, L## #Type);                                        \
    _impl->value = inData;                                                            \
  }                                                                                   \
  void Type::set(Simple inData) {                                                     \
    *_impl->value = std::move(inData);                                                \
  }                                                                                   \
  Simple Type::get() const {                                                          \
    return *_impl->value;                                                             \
  }                                                                                   \
  Type& Type::operator=(Simple rhs) {                                                 \
    *_impl->value = std::move(rhs);                                                   \
    return *this;                                                                     \
  }                                                                                   \
  Type::operator Simple() const {                                                     \
    return *_impl->value;                                                             \
  }

RTI1516E_BASIC_ELEMENT(HLAASCIIchar, char, OctetCodec<char>)
RTI1516E_BASIC_ELEMENT(HLAASCIIstring, std::string, ASCIIstringCodec)
RTI1516E_BASIC_ELEMENT(HLAboolean, bool, BooleanCodec)
RTI1516E_BASIC_ELEMENT(HLAbyte, Octet, OctetCodec<Octet>)
RTI1516E_BASIC_ELEMENT(HLAfloat32BE, float, Float32BE)
RTI1516E_BASIC_ELEMENT(HLAfloat32LE, float, Float32LE)
RTI1516E_BASIC_ELEMENT(HLAfloat64BE, double, Float64BE)
RTI1516E_BASIC_ELEMENT(HLAfloat64LE, double, Float64LE)
RTI1516E_BASIC_ELEMENT(HLAinteger16LE, Integer16, Int16LE)
RTI1516E_BASIC_ELEMENT(HLAinteger16BE, Integer16, Int16BE)
RTI1516E_BASIC_ELEMENT(HLAinteger32BE, Integer32, Int32BE)
RTI1516E_BASIC_ELEMENT(HLAinteger32LE, Integer32, Int32LE)
RTI1516E_BASIC_ELEMENT(HLAinteger64BE, Integer64, Int64BE)
RTI1516E_BASIC_ELEMENT(HLAinteger64LE, Integer64, Int64LE)
RTI1516E_BASIC_ELEMENT(HLAoctet, Octet, OctetCodec<Octet>)
RTI1516E_BASIC_ELEMENT(HLAoctetPairBE, OctetPair, OctetPairCodec<true>)
RTI1516E_BASIC_ELEMENT(HLAoctetPairLE, OctetPair, OctetPairCodec<false>)
RTI1516E_BASIC_ELEMENT(HLAunicodeChar, wchar_t, UnicodeCharCodec)
RTI1516E_BASIC_ELEMENT(HLAunicodeString, std::wstring, UnicodeStringCodec)

}  // namespace rti1516e
