// What the encoding helpers share: bounds-checked reads, padding, and the list of
// elements (owned copies or the caller's) behind records and arrays.
#ifndef VC_RTI1516E_ENCODING_DETAIL_H
#define VC_RTI1516E_ENCODING_DETAIL_H

#include <RTI/VariableLengthData.h>
#include <RTI/encoding/DataElement.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace rti1516e {
namespace encoding {

[[noreturn]] void fail(std::wstring const& message);

// The offset rounded up to the boundary (a power of two, 1 to 8).
inline size_t padded(size_t offset, unsigned boundary) {
  return (offset + boundary - 1) & ~static_cast<size_t>(boundary - 1);
}

// Appends zero octets until the buffer ends on the boundary.
inline void pad(std::vector<Octet>& buffer, unsigned boundary) {
  buffer.resize(padded(buffer.size(), boundary), 0);
}

// Throws unless `count` octets lie in the buffer at `index`; `what` names the type.
void need(std::vector<Octet> const& buffer, size_t index, size_t count, wchar_t const* what);

// The index rounded up to the boundary; throws when it is already past the buffer (so
// that the rounding cannot wrap around).
size_t align(std::vector<Octet> const& buffer, size_t index, unsigned boundary);

// A 32-bit big-endian count: a length prefix or an enumerator.
void putUint32BE(std::vector<Octet>& buffer, uint32_t value);
uint32_t getUint32BE(std::vector<Octet> const& buffer, size_t index);

// Reads an element count at `index` and refuses one larger than the octets after it, so
// that no hostile count makes a decoder allocate more than the data could hold.
uint32_t readCount(std::vector<Octet> const& buffer, size_t index, wchar_t const* what);

// encode() / decode() of every element, through encodeInto() / decodeFrom().
VariableLengthData encodeElement(DataElement const& element);
void encodeElement(DataElement const& element, VariableLengthData& out);
void decodeElement(DataElement& element, VariableLengthData const& in);

// The element's encoding (equal encodings make equal discriminants and hashes).
std::vector<Octet> bytesOf(DataElement const& element);

// The elements of a record or array, each either an owned copy or the caller's object,
// laid out one after the other at each element's boundary.
class ElementList {
 public:
  ElementList() = default;
  // Copies hold copies, even of the caller's elements.
  ElementList(ElementList const& rhs);
  ElementList& operator=(ElementList const&) = delete;

  size_t size() const { return slots_.size(); }
  void append(DataElement const& element);
  void appendPointer(DataElement* element);
  void appendOwned(std::unique_ptr<DataElement> element);
  void set(size_t index, DataElement const& element);
  void setPointer(size_t index, DataElement* element);
  DataElement& at(size_t index) const;
  void swap(ElementList& other) noexcept { slots_.swap(other.slots_); }
  void reserve(size_t n) { slots_.reserve(n); }

  void encodeInto(std::vector<Octet>& buffer) const;
  size_t decodeFrom(std::vector<Octet> const& buffer, size_t index);
  // The length when the first element starts at `offset` (relative to its boundary).
  size_t encodedLength(size_t offset) const;
  unsigned maxBoundary() const;

 private:
  struct Slot {
    std::unique_ptr<DataElement> owned;
    DataElement* element;
  };
  std::vector<Slot> slots_;
};

// Throws unless index < size; `what` names the type.
void checkIndex(size_t index, size_t size, wchar_t const* what);
// Throws unless the element is of the expected type.
void checkType(DataElement const& expected, DataElement const& given, wchar_t const* what);
// Throws on a null element pointer.
void checkPointer(void const* element, wchar_t const* what);

}  // namespace encoding
}  // namespace rti1516e

// Every element class encodes and decodes through encodeInto / decodeFrom.
#define RTI1516E_WHOLE_ELEMENT_CODING(Type)               \
  VariableLengthData Type::encode() const {               \
    return encoding::encodeElement(*this);                \
  }                                                       \
  void Type::encode(VariableLengthData& inData) const {   \
    encoding::encodeElement(*this, inData);               \
  }                                                       \
  void Type::decode(VariableLengthData const& inData) {   \
    encoding::decodeElement(*this, inData);               \
  }                                                       \
  std::unique_ptr<DataElement> Type::clone() const {      \
    return std::unique_ptr<DataElement>(new Type(*this)); \
  }

#endif
