// Records and arrays of the HLA's encoding, over encoding::ElementList.
#include <RTI/encoding/HLAfixedArray.h>
#include <RTI/encoding/HLAfixedRecord.h>
#include <RTI/encoding/HLAopaqueData.h>
#include <RTI/encoding/HLAvariableArray.h>
#include <RTI/encoding/HLAvariantRecord.h>

#include <algorithm>
#include <cstring>
#include <typeinfo>

#include "encoding_detail.h"

namespace rti1516e {

using encoding::checkIndex;
using encoding::checkPointer;
using encoding::checkType;
using encoding::ElementList;

// --------------------------------------------------------------------- HLAfixedRecord

class HLAfixedRecordImplementation {
 public:
  ElementList fields;
};

HLAfixedRecord::HLAfixedRecord() : _impl(new HLAfixedRecordImplementation) {}
HLAfixedRecord::HLAfixedRecord(HLAfixedRecord const& rhs)
    : _impl(new HLAfixedRecordImplementation(*rhs._impl)) {}
HLAfixedRecord::~HLAfixedRecord() {
  delete _impl;
}
RTI1516E_WHOLE_ELEMENT_CODING(HLAfixedRecord)

void HLAfixedRecord::encodeInto(std::vector<Octet>& buffer) const {
  encoding::pad(buffer, getOctetBoundary());
  _impl->fields.encodeInto(buffer);
}

size_t HLAfixedRecord::decodeFrom(std::vector<Octet> const& buffer, size_t index) {
  index = encoding::align(buffer, index, getOctetBoundary());
  return _impl->fields.decodeFrom(buffer, index);
}

size_t HLAfixedRecord::getEncodedLength() const {
  return _impl->fields.encodedLength(0);
}

unsigned int HLAfixedRecord::getOctetBoundary() const {
  return _impl->fields.maxBoundary();
}

bool HLAfixedRecord::isSameTypeAs(DataElement const& inData) const {
  if (!DataElement::isSameTypeAs(inData)) return false;
  auto const& other = static_cast<HLAfixedRecord const&>(inData);
  if (other.size() != size()) return false;
  for (size_t i = 0; i < size(); ++i)
    if (!get(i).isSameTypeAs(other.get(i))) return false;
  return true;
}

bool HLAfixedRecord::hasElementSameTypeAs(size_t index, DataElement const& inData) const {
  return index < size() && get(index).isSameTypeAs(inData);
}

size_t HLAfixedRecord::size() const {
  return _impl->fields.size();
}

void HLAfixedRecord::appendElement(const DataElement& dataElement) {
  _impl->fields.append(dataElement);
}

void HLAfixedRecord::appendElementPointer(DataElement* dataElement) {
  checkPointer(dataElement, L"HLAfixedRecord");
  _impl->fields.appendPointer(dataElement);
}

void HLAfixedRecord::set(size_t index, const DataElement& dataElement) {
  checkIndex(index, size(), L"HLAfixedRecord");
  checkType(get(index), dataElement, L"HLAfixedRecord");
  _impl->fields.set(index, dataElement);
}

void HLAfixedRecord::setElementPointer(size_t index, DataElement* dataElement) {
  checkIndex(index, size(), L"HLAfixedRecord");
  checkPointer(dataElement, L"HLAfixedRecord");
  checkType(get(index), *dataElement, L"HLAfixedRecord");
  _impl->fields.setPointer(index, dataElement);
}

const DataElement& HLAfixedRecord::get(size_t index) const {
  checkIndex(index, size(), L"HLAfixedRecord");
  return _impl->fields.at(index);
}

DataElement const& HLAfixedRecord::operator[](size_t index) const {
  return get(index);
}

// ---------------------------------------------------------------------- HLAfixedArray

class HLAfixedArrayImplementation {
 public:
  HLAfixedArrayImplementation(DataElement const& proto, size_t length) : prototype(proto.clone()) {
    elements.reserve(length);
    for (size_t i = 0; i < length; ++i) elements.append(proto);
  }
  HLAfixedArrayImplementation(HLAfixedArrayImplementation const& rhs)
      : prototype(rhs.prototype->clone()), elements(rhs.elements) {}
  std::unique_ptr<DataElement> prototype;
  ElementList elements;
};

HLAfixedArray::HLAfixedArray(const DataElement& protoType, size_t length)
    : _impl(new HLAfixedArrayImplementation(protoType, length)) {}
HLAfixedArray::HLAfixedArray(HLAfixedArray const& rhs)
    : _impl(new HLAfixedArrayImplementation(*rhs._impl)) {}
HLAfixedArray::~HLAfixedArray() {
  delete _impl;
}
RTI1516E_WHOLE_ELEMENT_CODING(HLAfixedArray)

void HLAfixedArray::encodeInto(std::vector<Octet>& buffer) const {
  encoding::pad(buffer, getOctetBoundary());
  _impl->elements.encodeInto(buffer);
}

size_t HLAfixedArray::decodeFrom(std::vector<Octet> const& buffer, size_t index) {
  index = encoding::align(buffer, index, getOctetBoundary());
  return _impl->elements.decodeFrom(buffer, index);
}

size_t HLAfixedArray::getEncodedLength() const {
  return _impl->elements.encodedLength(0);
}

unsigned int HLAfixedArray::getOctetBoundary() const {
  return _impl->prototype->getOctetBoundary();
}

bool HLAfixedArray::isSameTypeAs(DataElement const& inData) const {
  if (!DataElement::isSameTypeAs(inData)) return false;
  auto const& other = static_cast<HLAfixedArray const&>(inData);
  return other.size() == size() && hasPrototypeSameTypeAs(*other._impl->prototype);
}

bool HLAfixedArray::hasPrototypeSameTypeAs(DataElement const& dataElement) const {
  return _impl->prototype->isSameTypeAs(dataElement);
}

size_t HLAfixedArray::size() const {
  return _impl->elements.size();
}

void HLAfixedArray::set(size_t index, const DataElement& dataElement) {
  checkIndex(index, size(), L"HLAfixedArray");
  checkType(*_impl->prototype, dataElement, L"HLAfixedArray");
  _impl->elements.set(index, dataElement);
}

void HLAfixedArray::setElementPointer(size_t index, DataElement* dataElement) {
  checkIndex(index, size(), L"HLAfixedArray");
  checkPointer(dataElement, L"HLAfixedArray");
  checkType(*_impl->prototype, *dataElement, L"HLAfixedArray");
  _impl->elements.setPointer(index, dataElement);
}

const DataElement& HLAfixedArray::get(size_t index) const {
  checkIndex(index, size(), L"HLAfixedArray");
  return _impl->elements.at(index);
}

DataElement const& HLAfixedArray::operator[](size_t index) const {
  return get(index);
}

// ------------------------------------------------------------------- HLAvariableArray

class HLAvariableArrayImplementation {
 public:
  explicit HLAvariableArrayImplementation(DataElement const& proto) : prototype(proto.clone()) {}
  HLAvariableArrayImplementation(HLAvariableArrayImplementation const& rhs)
      : prototype(rhs.prototype->clone()), elements(rhs.elements) {}
  std::unique_ptr<DataElement> prototype;
  ElementList elements;
};

HLAvariableArray::HLAvariableArray(const DataElement& prototype)
    : _impl(new HLAvariableArrayImplementation(prototype)) {}
HLAvariableArray::HLAvariableArray(HLAvariableArray const& rhs)
    : _impl(new HLAvariableArrayImplementation(*rhs._impl)) {}
HLAvariableArray::~HLAvariableArray() {
  delete _impl;
}
RTI1516E_WHOLE_ELEMENT_CODING(HLAvariableArray)

void HLAvariableArray::encodeInto(std::vector<Octet>& buffer) const {
  if (size() > 0xFFFFFFFFu)
    encoding::fail(L"HLAvariableArray: more than 2^32-1 elements cannot be counted");
  encoding::pad(buffer, getOctetBoundary());
  encoding::putUint32BE(buffer, static_cast<uint32_t>(size()));
  _impl->elements.encodeInto(buffer);
}

size_t HLAvariableArray::decodeFrom(std::vector<Octet> const& buffer, size_t index) {
  index = encoding::align(buffer, index, getOctetBoundary());
  uint32_t count = encoding::readCount(buffer, index, L"HLAvariableArray");
  index += 4;
  if (count == size()) return _impl->elements.decodeFrom(buffer, index);
  // Elements are made one at a time as their octets arrive, so a count the data cannot
  // back fails before it has cost more than the data itself; the array changes only when
  // all of them decoded.
  ElementList fresh;
  for (uint32_t i = 0; i < count; ++i) {
    std::unique_ptr<DataElement> element = _impl->prototype->clone();
    index = element->decodeFrom(buffer, index);
    fresh.appendOwned(std::move(element));
  }
  _impl->elements.swap(fresh);
  return index;
}

size_t HLAvariableArray::getEncodedLength() const {
  return _impl->elements.encodedLength(4);
}

unsigned int HLAvariableArray::getOctetBoundary() const {
  return std::max(4u, _impl->prototype->getOctetBoundary());
}

size_t HLAvariableArray::size() const {
  return _impl->elements.size();
}

bool HLAvariableArray::isSameTypeAs(DataElement const& inData) const {
  return DataElement::isSameTypeAs(inData) &&
         hasPrototypeSameTypeAs(*static_cast<HLAvariableArray const&>(inData)._impl->prototype);
}

bool HLAvariableArray::hasPrototypeSameTypeAs(DataElement const& dataElement) const {
  return _impl->prototype->isSameTypeAs(dataElement);
}

void HLAvariableArray::addElement(const DataElement& dataElement) {
  checkType(*_impl->prototype, dataElement, L"HLAvariableArray");
  _impl->elements.append(dataElement);
}

void HLAvariableArray::addElementPointer(DataElement* dataElement) {
  checkPointer(dataElement, L"HLAvariableArray");
  checkType(*_impl->prototype, *dataElement, L"HLAvariableArray");
  _impl->elements.appendPointer(dataElement);
}

void HLAvariableArray::set(size_t index, const DataElement& dataElement) {
  checkIndex(index, size(), L"HLAvariableArray");
  checkType(*_impl->prototype, dataElement, L"HLAvariableArray");
  _impl->elements.set(index, dataElement);
}

void HLAvariableArray::setElementPointer(size_t index, DataElement* dataElement) {
  checkIndex(index, size(), L"HLAvariableArray");
  checkPointer(dataElement, L"HLAvariableArray");
  checkType(*_impl->prototype, *dataElement, L"HLAvariableArray");
  _impl->elements.setPointer(index, dataElement);
}

const DataElement& HLAvariableArray::get(size_t index) const {
  checkIndex(index, size(), L"HLAvariableArray");
  return _impl->elements.at(index);
}

DataElement const& HLAvariableArray::operator[](size_t index) const {
  return get(index);
}

// ------------------------------------------------------------------- HLAvariantRecord

class HLAvariantRecordImplementation {
 public:
  struct Alternative {
    std::vector<Octet> discriminant;  // as encoded: discriminants match by their octets
    ElementList value;                // exactly one element
  };

  explicit HLAvariantRecordImplementation(DataElement const& proto)
      : prototype(proto.clone()), discriminant(proto.clone()) {}
  HLAvariantRecordImplementation(HLAvariantRecordImplementation const& rhs)
      : prototype(rhs.prototype->clone()),
        discriminant(rhs.discriminant->clone()),
        alternatives(rhs.alternatives) {}

  Alternative* find(std::vector<Octet> const& key) {
    for (Alternative& a : alternatives)
      if (a.discriminant == key) return &a;
    return nullptr;
  }
  Alternative& require(DataElement const& d) {
    checkType(*prototype, d, L"HLAvariantRecord discriminant");
    Alternative* a = find(encoding::bytesOf(d));
    if (!a) encoding::fail(L"HLAvariantRecord: the discriminant selects no alternative");
    return *a;
  }
  void add(DataElement const& d, std::unique_ptr<DataElement> owned, DataElement* pointer) {
    checkType(*prototype, d, L"HLAvariantRecord discriminant");
    std::vector<Octet> key = encoding::bytesOf(d);
    if (find(key)) encoding::fail(L"HLAvariantRecord: the discriminant already has an alternative");
    alternatives.push_back(Alternative{std::move(key), ElementList()});
    if (owned)
      alternatives.back().value.appendOwned(std::move(owned));
    else
      alternatives.back().value.appendPointer(pointer);
  }

  std::unique_ptr<DataElement> prototype;
  std::unique_ptr<DataElement> discriminant;
  std::vector<Alternative> alternatives;
};

HLAvariantRecord::HLAvariantRecord(DataElement const& discriminantPrototype)
    : _impl(new HLAvariantRecordImplementation(discriminantPrototype)) {}
HLAvariantRecord::HLAvariantRecord(HLAvariantRecord const& rhs)
    : _impl(new HLAvariantRecordImplementation(*rhs._impl)) {}
HLAvariantRecord::~HLAvariantRecord() {
  delete _impl;
}
RTI1516E_WHOLE_ELEMENT_CODING(HLAvariantRecord)

void HLAvariantRecord::encodeInto(std::vector<Octet>& buffer) const {
  DataElement const& value = getVariant();
  encoding::pad(buffer, getOctetBoundary());
  _impl->discriminant->encodeInto(buffer);
  value.encodeInto(buffer);
}

size_t HLAvariantRecord::decodeFrom(std::vector<Octet> const& buffer, size_t index) {
  std::unique_ptr<DataElement> d = _impl->prototype->clone();
  index = d->decodeFrom(buffer, encoding::align(buffer, index, getOctetBoundary()));
  auto* a = _impl->find(encoding::bytesOf(*d));
  if (!a) encoding::fail(L"HLAvariantRecord: the discriminant decoded selects no alternative");
  DataElement& value = a->value.at(0);
  index = value.decodeFrom(buffer, index);
  _impl->discriminant = std::move(d);
  return index;
}

size_t HLAvariantRecord::getEncodedLength() const {
  DataElement const& value = getVariant();
  return encoding::padded(_impl->discriminant->getEncodedLength(), value.getOctetBoundary()) +
         value.getEncodedLength();
}

unsigned int HLAvariantRecord::getOctetBoundary() const {
  unsigned b = _impl->prototype->getOctetBoundary();
  for (auto const& a : _impl->alternatives) b = std::max(b, a.value.maxBoundary());
  return b;
}

bool HLAvariantRecord::isSameTypeAs(DataElement const& inData) const {
  if (!DataElement::isSameTypeAs(inData)) return false;
  auto const& other = *static_cast<HLAvariantRecord const&>(inData)._impl;
  if (!_impl->prototype->isSameTypeAs(*other.prototype) ||
      other.alternatives.size() != _impl->alternatives.size())
    return false;
  for (auto const& a : _impl->alternatives) {
    auto* b = const_cast<HLAvariantRecordImplementation&>(other).find(a.discriminant);
    if (!b || !a.value.at(0).isSameTypeAs(b->value.at(0))) return false;
  }
  return true;
}

bool HLAvariantRecord::isSameTypeAs(DataElement const& discriminant,
                                    DataElement const& inData) const {
  if (!hasMatchingDiscriminantTypeAs(discriminant)) return false;
  auto* a = _impl->find(encoding::bytesOf(discriminant));
  return a && a->value.at(0).isSameTypeAs(inData);
}

bool HLAvariantRecord::hasMatchingDiscriminantTypeAs(DataElement const& dataElement) const {
  return _impl->prototype->isSameTypeAs(dataElement);
}

void HLAvariantRecord::addVariant(const DataElement& discriminant,
                                  const DataElement& valuePrototype) {
  _impl->add(discriminant, valuePrototype.clone(), nullptr);
}

void HLAvariantRecord::addVariantPointer(const DataElement& discriminant, DataElement* valuePtr) {
  checkPointer(valuePtr, L"HLAvariantRecord");
  _impl->add(discriminant, nullptr, valuePtr);
}

void HLAvariantRecord::setDiscriminant(const DataElement& discriminant) {
  _impl->require(discriminant);
  _impl->discriminant = discriminant.clone();
}

void HLAvariantRecord::setVariant(const DataElement& discriminant, DataElement const& value) {
  auto& a = _impl->require(discriminant);
  checkType(a.value.at(0), value, L"HLAvariantRecord");
  a.value.set(0, value);
  _impl->discriminant = discriminant.clone();
}

void HLAvariantRecord::setVariantPointer(const DataElement& discriminant, DataElement* valuePtr) {
  checkPointer(valuePtr, L"HLAvariantRecord");
  auto& a = _impl->require(discriminant);
  checkType(a.value.at(0), *valuePtr, L"HLAvariantRecord");
  a.value.setPointer(0, valuePtr);
  _impl->discriminant = discriminant.clone();
}

const DataElement& HLAvariantRecord::getDiscriminant() const {
  return *_impl->discriminant;
}

const DataElement& HLAvariantRecord::getVariant() const {
  return _impl->require(*_impl->discriminant).value.at(0);
}

// ---------------------------------------------------------------------- HLAopaqueData

class HLAopaqueDataImplementation {
 public:
  std::vector<Octet> own;
  // The caller's buffer, when given one: *external holds `capacity` octets.
  Octet** external = nullptr;
  size_t capacity = 0;
  size_t length = 0;

  Octet const* data() const { return external ? *external : own.data(); }
  void assign(Octet const* bytes, size_t n) {
    if (external) {
      if (n > capacity)
        encoding::fail(L"HLAopaqueData: " + std::to_wstring(n) +
                       L" octets do not fit the buffer of " + std::to_wstring(capacity));
      if (n) std::memmove(*external, bytes, n);
    } else {
      own.assign(bytes, bytes + n);
    }
    length = n;
  }
};

HLAopaqueData::HLAopaqueData() : _impl(new HLAopaqueDataImplementation) {}
HLAopaqueData::HLAopaqueData(const Octet* inData, size_t dataSize) : HLAopaqueData() {
  set(inData, dataSize);
}
// Delegating: once the default constructor has run, a throw here still runs the destructor.
HLAopaqueData::HLAopaqueData(Octet** inData, size_t bufferSize, size_t dataSize) : HLAopaqueData() {
  setDataPointer(inData, bufferSize, dataSize);
}
HLAopaqueData::HLAopaqueData(HLAopaqueData const& rhs) : HLAopaqueData() {
  set(rhs.get(), rhs.dataLength());
}
HLAopaqueData::~HLAopaqueData() {
  delete _impl;
}
RTI1516E_WHOLE_ELEMENT_CODING(HLAopaqueData)

void HLAopaqueData::encodeInto(std::vector<Octet>& buffer) const {
  if (dataLength() > 0xFFFFFFFFu)
    encoding::fail(L"HLAopaqueData: more than 2^32-1 octets cannot be counted");
  encoding::pad(buffer, 4);
  encoding::putUint32BE(buffer, static_cast<uint32_t>(dataLength()));
  buffer.insert(buffer.end(), get(), get() + dataLength());
}

size_t HLAopaqueData::decodeFrom(std::vector<Octet> const& buffer, size_t index) {
  index = encoding::align(buffer, index, 4);
  uint32_t count = encoding::readCount(buffer, index, L"HLAopaqueData");
  _impl->assign(buffer.data() + index + 4, count);
  return index + 4 + count;
}

size_t HLAopaqueData::getEncodedLength() const {
  return 4 + dataLength();
}

unsigned int HLAopaqueData::getOctetBoundary() const {
  return 4;
}

size_t HLAopaqueData::bufferLength() const {
  return _impl->external ? _impl->capacity : _impl->own.size();
}

size_t HLAopaqueData::dataLength() const {
  return _impl->length;
}

void HLAopaqueData::setDataPointer(Octet** inData, size_t bufferSize, size_t dataSize) {
  if (!inData || !*inData) encoding::fail(L"HLAopaqueData: null buffer");
  if (dataSize > bufferSize) encoding::fail(L"HLAopaqueData: more data than the buffer holds");
  _impl->external = inData;
  _impl->capacity = bufferSize;
  _impl->length = dataSize;
  _impl->own.clear();
}

void HLAopaqueData::set(const Octet* inData, size_t dataSize) {
  if (!inData && dataSize) encoding::fail(L"HLAopaqueData: null data");
  _impl->assign(inData, dataSize);
}

const Octet* HLAopaqueData::get() const {
  return _impl->data();
}

HLAopaqueData::operator const Octet*() const {
  return get();
}

}  // namespace rti1516e
