#include "encoding_detail.h"

#include <algorithm>
#include <typeinfo>

namespace rti1516e {

DataElement::~DataElement() = default;

bool DataElement::isSameTypeAs(DataElement const& inData) const {
  return typeid(*this) == typeid(inData);
}

Integer64 DataElement::hash() const {
  // FNV-1a: cheap, and spreads the short encodings discriminants have.
  uint64_t h = 14695981039346656037ull;
  for (Octet o : encoding::bytesOf(*this)) {
    h ^= static_cast<unsigned char>(o);
    h *= 1099511628211ull;
  }
  return static_cast<Integer64>(h);
}

namespace encoding {

void fail(std::wstring const& message) {
  throw EncoderException(message);
}

void need(std::vector<Octet> const& buffer, size_t index, size_t count, wchar_t const* what) {
  if (index > buffer.size() || buffer.size() - index < count)
    fail(std::wstring(what) + L": " + std::to_wstring(count) + L" octets needed at offset " +
         std::to_wstring(index) + L" of " + std::to_wstring(buffer.size()));
}

void putUint32BE(std::vector<Octet>& buffer, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8)
    buffer.push_back(static_cast<Octet>(static_cast<unsigned char>(value >> shift)));
}

uint32_t getUint32BE(std::vector<Octet> const& buffer, size_t index) {
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(buffer[index + i]);
  return value;
}

uint32_t readCount(std::vector<Octet> const& buffer, size_t index, wchar_t const* what) {
  need(buffer, index, 4, what);
  uint32_t count = getUint32BE(buffer, index);
  if (count > buffer.size() - index - 4)
    fail(std::wstring(what) + L": a count of " + std::to_wstring(count) + L" with only " +
         std::to_wstring(buffer.size() - index - 4) + L" octets after it");
  return count;
}

size_t align(std::vector<Octet> const& buffer, size_t index, unsigned boundary) {
  need(buffer, index, 0, L"decoding");
  return padded(index, boundary);
}

std::vector<Octet> bytesOf(DataElement const& element) {
  std::vector<Octet> buffer;
  buffer.reserve(element.getEncodedLength());
  element.encodeInto(buffer);
  return buffer;
}

VariableLengthData encodeElement(DataElement const& element) {
  std::vector<Octet> bytes = bytesOf(element);
  return VariableLengthData(bytes.data(), bytes.size());
}

void encodeElement(DataElement const& element, VariableLengthData& out) {
  std::vector<Octet> bytes = bytesOf(element);
  out.setData(bytes.data(), bytes.size());
}

void decodeElement(DataElement& element, VariableLengthData const& in) {
  auto first = static_cast<Octet const*>(in.data());
  std::vector<Octet> bytes(first, first + in.size());
  element.decodeFrom(bytes, 0);
}

void checkIndex(size_t index, size_t size, wchar_t const* what) {
  if (index >= size)
    fail(std::wstring(what) + L": index " + std::to_wstring(index) + L" is out of range (size " +
         std::to_wstring(size) + L")");
}

void checkType(DataElement const& expected, DataElement const& given, wchar_t const* what) {
  if (!expected.isSameTypeAs(given)) fail(std::wstring(what) + L": the element is of another type");
}

void checkPointer(void const* element, wchar_t const* what) {
  if (!element) fail(std::wstring(what) + L": null pointer");
}

// ------------------------------------------------------------------------ ElementList

ElementList::ElementList(ElementList const& rhs) {
  slots_.reserve(rhs.slots_.size());
  for (Slot const& s : rhs.slots_) append(*s.element);
}

void ElementList::append(DataElement const& element) {
  appendOwned(element.clone());
}

void ElementList::appendOwned(std::unique_ptr<DataElement> element) {
  DataElement* raw = element.get();
  slots_.push_back(Slot{std::move(element), raw});
}

void ElementList::appendPointer(DataElement* element) {
  slots_.push_back(Slot{nullptr, element});
}

void ElementList::set(size_t index, DataElement const& element) {
  std::unique_ptr<DataElement> copy = element.clone();
  slots_[index].element = copy.get();
  slots_[index].owned = std::move(copy);
}

void ElementList::setPointer(size_t index, DataElement* element) {
  slots_[index].owned.reset();
  slots_[index].element = element;
}

DataElement& ElementList::at(size_t index) const {
  return *slots_[index].element;
}

void ElementList::encodeInto(std::vector<Octet>& buffer) const {
  // Each element pads itself to its boundary.
  for (Slot const& s : slots_) s.element->encodeInto(buffer);
}

size_t ElementList::decodeFrom(std::vector<Octet> const& buffer, size_t index) {
  for (Slot& s : slots_) index = s.element->decodeFrom(buffer, index);
  return index;
}

size_t ElementList::encodedLength(size_t offset) const {
  for (Slot const& s : slots_)
    offset = padded(offset, s.element->getOctetBoundary()) + s.element->getEncodedLength();
  return offset;
}

unsigned ElementList::maxBoundary() const {
  unsigned b = 1;
  for (Slot const& s : slots_) b = std::max(b, s.element->getOctetBoundary());
  return b;
}

}  // namespace encoding
}  // namespace rti1516e
