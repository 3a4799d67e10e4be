#include "dtPdu.h"

#include <cstdlib>
#include <new>

#include "dtOutput.h"

// ---------------------------------------------------------------- DtBufferPlaceHolder

DtBufferPlaceHolder::DtBufferPlaceHolder(size_t capacity)
    : data_(nullptr),
      capacity_(capacity < DtBaseMsg::kAllocationFloor ? DtBaseMsg::kAllocationFloor : capacity) {
  data_ = static_cast<unsigned char*>(std::calloc(capacity_, 1));
  if (!data_) throw std::bad_alloc();
}

DtBufferPlaceHolder::~DtBufferPlaceHolder() { std::free(data_); }

// ---------------------------------------------------------------- DtBaseMsg

namespace {
int clampLength(long n) {
  return n < 0 ? 0 : (n > DtBaseMsg::kMaxLength ? DtBaseMsg::kMaxLength : static_cast<int>(n));
}
}  // namespace

DtBaseMsg::DtBaseMsg(const DtBaseMsg& other) : length_(other.length_) {
  if (other.bytes_) {
    reserve(other.capacity_);
    std::memcpy(bytes_, other.bytes_, other.capacity_);
  }
}

DtBaseMsg& DtBaseMsg::operator=(const DtBaseMsg& other) {
  if (this == &other) return *this;
  if (!other.bytes_) {
    release();
    length_ = 0;
    return *this;
  }
  if (!owned_ || capacity_ < other.capacity_) {
    release();
    reserve(other.capacity_);
  }
  std::memcpy(bytes_, other.bytes_, other.capacity_);
  if (capacity_ > other.capacity_) std::memset(bytes_ + other.capacity_, 0, capacity_ - other.capacity_);
  length_ = other.length_;
  return *this;
}

DtBaseMsg::~DtBaseMsg() { release(); }

void DtBaseMsg::release() {
  if (owned_) std::free(bytes_);
  bytes_ = nullptr;
  capacity_ = 0;
  owned_ = false;
}

// Grows the allocation to at least `needed` bytes (and the floor); new memory is zeroed
// and the old bytes are kept.
void DtBaseMsg::reserve(size_t needed) {
  if (needed < kAllocationFloor) needed = kAllocationFloor;
  if (bytes_ && needed <= capacity_) return;
  // Doubling keeps entity lists that grow one slot at a time cheap; nothing grows past
  // the largest length a PDU header can state.
  size_t target = capacity_ * 2;
  if (target < needed) target = needed;
  if (target > static_cast<size_t>(kMaxLength) && needed <= static_cast<size_t>(kMaxLength))
    target = static_cast<size_t>(kMaxLength);
  unsigned char* fresh = static_cast<unsigned char*>(std::malloc(target));
  if (!fresh) throw std::bad_alloc();
  size_t keep = bytes_ ? capacity_ : 0;
  if (keep) std::memcpy(fresh, bytes_, keep);
  std::memset(fresh + keep, 0, target - keep);
  if (owned_) std::free(bytes_);
  bytes_ = fresh;
  capacity_ = target;
  owned_ = true;
}

void DtBaseMsg::allocate(int length, DtBufferPlaceHolder* holder) {
  release();
  int n = clampLength(length);
  if (holder && holder->capacity() >= static_cast<size_t>(n)) {
    bytes_ = holder->data();
    capacity_ = holder->capacity();
    owned_ = false;
  } else {
    reserve(static_cast<size_t>(n));
  }
  length_ = n;
}

void DtBaseMsg::adopt(const void* bytes, size_t available, int length, DtBufferPlaceHolder* holder) {
  int n = clampLength(length);
  size_t copy = available;
  size_t room = static_cast<size_t>(n) > available ? static_cast<size_t>(n) : available;
  allocate(static_cast<int>(room > static_cast<size_t>(kMaxLength) ? kMaxLength : room), holder);
  if (copy > capacity_) copy = capacity_;
  if (copy && bytes) std::memcpy(bytes_, bytes, copy);
  std::memset(bytes_ + copy, 0, capacity_ - copy);
  length_ = n;
}

void DtBaseMsg::changeSize(int newLength) {
  int n = clampLength(newLength);
  reserve(static_cast<size_t>(n));
  length_ = n;
  lengthChanged();
}

void DtBaseMsg::insertBytes(int offset, int count) {
  if (count <= 0) return;
  int at = offset < 0 ? 0 : offset;
  int old = length_;
  int grown = clampLength(static_cast<long>(old) + count);
  if (at > grown) at = grown;
  reserve(static_cast<size_t>(grown));
  int inserted = grown - old;  // what the length limit lets us insert
  if (at < old && inserted > 0) std::memmove(bytes_ + at + inserted, bytes_ + at, static_cast<size_t>(old - at));
  if (inserted > 0) std::memset(bytes_ + at, 0, static_cast<size_t>(at + inserted <= grown ? inserted : grown - at));
  length_ = grown;
  lengthChanged();
}

void DtBaseMsg::deleteBytes(int offset, int count) {
  if (count <= 0 || offset < 0 || offset >= length_) return;
  int n = count > length_ - offset ? length_ - offset : count;
  std::memmove(bytes_ + offset, bytes_ + offset + n, static_cast<size_t>(length_ - offset - n));
  std::memset(bytes_ + length_ - n, 0, static_cast<size_t>(n));
  length_ -= n;
  lengthChanged();
}

DtVector64 DtBaseMsg::readVector64(size_t offset) const {
  return DtVector64(readFloat64(offset), readFloat64(offset + 8), readFloat64(offset + 16));
}
void DtBaseMsg::writeVector64(size_t offset, const DtVector64& v) {
  writeFloat64(offset, v[0]);
  writeFloat64(offset + 8, v[1]);
  writeFloat64(offset + 16, v[2]);
}
DtVector64 DtBaseMsg::readVector32(size_t offset) const {
  return DtVector64(readFloat32(offset), readFloat32(offset + 4), readFloat32(offset + 8));
}
void DtBaseMsg::writeVector32(size_t offset, const DtVector64& v) {
  writeFloat32(offset, static_cast<float>(v[0]));
  writeFloat32(offset + 4, static_cast<float>(v[1]));
  writeFloat32(offset + 8, static_cast<float>(v[2]));
}
DtTaitBryan DtBaseMsg::readEulerAngles(size_t offset) const {
  DtNetEulerAngles a;
  readBytes(offset, &a, sizeof a);
  return a;
}
void DtBaseMsg::writeEulerAngles(size_t offset, const DtTaitBryan& a) {
  DtNetEulerAngles net(a);
  writeBytes(offset, &net, sizeof net);
}
DtString DtBaseMsg::readDesignator(size_t offset) const {
  unsigned char raw[DtNetGlobalObjectDesignator::kSize];
  readBytes(offset, raw, sizeof raw);
  return DtNetGlobalObjectDesignator::decode(raw);
}
void DtBaseMsg::writeDesignator(size_t offset, const DtString& id) {
  unsigned char raw[DtNetGlobalObjectDesignator::kSize];
  DtNetGlobalObjectDesignator::encode(id.c_str(), raw);
  writeBytes(offset, raw, sizeof raw);
}
DtString DtBaseMsg::readChars(size_t offset, size_t width) const {
  if (offset >= capacity_ || width == 0) return DtString();
  size_t have = capacity_ - offset;
  const char* text = reinterpret_cast<const char*>(bytes_ + offset);
  return DtString(text, strnlen(text, width < have ? width : have));
}
void DtBaseMsg::writeChars(size_t offset, size_t width, const char* text) {
  if (offset >= capacity_ || width == 0) return;
  size_t n = width < capacity_ - offset ? width : capacity_ - offset;
  std::strncpy(reinterpret_cast<char*>(bytes_ + offset), text ? text : "", n);
}

// ---------------------------------------------------------------- DtPdu

DtPdu::~DtPdu() = default;

void DtPdu::initPdu(int length, DtBufferPlaceHolder* holder) {
  allocate(length, holder);
  initHeader();
}

void DtPdu::initPdu(const void* bytes, DtBufferPlaceHolder* holder, DtPduFactory* factory) {
  int n = bytes ? headerLength(bytes) : 0;
  initPdu(bytes, static_cast<size_t>(n < kHeaderSize ? kHeaderSize : n), holder, factory);
}

void DtPdu::initPdu(const void* bytes, size_t available, DtBufferPlaceHolder* holder,
                    DtPduFactory*) {
  unsigned char header[kHeaderSize] = {0};
  if (bytes) std::memcpy(header, bytes, available < sizeof header ? available : sizeof header);
  adopt(bytes, bytes ? available : 0, headerLength(header), holder);
}

void DtPdu::initHeader() {
  setProtocolVersion(kProtocolVersion);
  setExerciseId(kDefaultExerciseId);
  writeU8(2, static_cast<unsigned int>(internalGetPduKind()));
  setProtocolFamily(kProtocolFamily);
  setTimeStamp(0);
  lengthChanged();
}

void DtPdu::lengthChanged() { writeU16(8, static_cast<unsigned int>(length())); }

int DtPdu::headerLength(const void* bytes) {
  const unsigned char* b = static_cast<const unsigned char*>(bytes);
  return (b[8] << 8) | b[9];
}

void DtPdu::print() const {
  printHeaderToStream();
  printData();
}

void DtPdu::printHeaderToStream() const {
  DtDumpInteger("Protocol Version", protocolVersion());
  DtDumpInteger("Exercise", exerciseId());
  DtDumpInteger("Kind", pduKind());
  DtDumpInteger("Family", protocolFamily());
  DtDumpInteger("Timestamp", timeStamp());
  DtDumpInteger("Length", length());
}

void DtPdu::printData() const {}

// ---------------------------------------------------------------- DtPduFactory

DtPduFactory::DtPduFactory() {
  for (auto& c : creators_) c = nullptr;
}

void DtPduFactory::addCreator(unsigned int kind, Creator creator) {
  if (kind < 256) creators_[kind] = creator;
}

void DtPduFactory::removeCreator(unsigned int kind) {
  if (kind < 256) creators_[kind] = nullptr;
}

DtPdu* DtPduFactory::createPdu(const DtNetPduHeader* bytes, DtBufferPlaceHolder* holder) {
  if (!bytes) return nullptr;
  Creator c = creators_[bytes->kind];
  return c ? c(bytes, holder, this) : nullptr;
}
