#include "dtPdu.h"

#include <cstdlib>
#include <new>

// GCC says so with __SANITIZE_ADDRESS__, clang through __has_feature.
#if defined(__SANITIZE_ADDRESS__)
#define DT_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define DT_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(DT_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

#include "dtOutput.h"

// ---------------------------------------------------------------- DtBufferPlaceHolder

DtBufferPlaceHolder::DtBufferPlaceHolder(size_t capacity)
    : data_(nullptr),
      capacity_(capacity < DtBaseMsg::kAllocationFloor ? DtBaseMsg::kAllocationFloor : capacity) {
  data_ = static_cast<unsigned char*>(std::calloc(capacity_, 1));
  if (!data_) throw std::bad_alloc();
}

DtBufferPlaceHolder::~DtBufferPlaceHolder() {
  std::free(data_);
}

// ---------------------------------------------------------------- spare blocks

namespace {

#if defined(DT_ADDRESS_SANITIZER)
#define DT_POISON(p, n) ASAN_POISON_MEMORY_REGION(p, n)
#define DT_UNPOISON(p, n) ASAN_UNPOISON_MEMORY_REGION(p, n)
#else
#define DT_POISON(p, n) ((void)(p), (void)(n))
#define DT_UNPOISON(p, n) ((void)(p), (void)(n))
#endif

constexpr size_t kFloor = DtBaseMsg::kAllocationFloor;

// Every received interaction makes a PDU and drops it again, and so does every command
// built for sending. An allocation of the floor size is a slow path of malloc and 1.5 KB
// of zeroes, of which a 312-byte PDU uses a fifth. So each thread keeps a few blocks of
// the floor size that messages gave back, each with how far it may hold non-zero bytes,
// and the next message clears only that much. Trivially destructible, so that it is
// still there for messages that go after the thread's destructors have run.
struct SpareBlocks {
  static constexpr int kMax = 32;
  unsigned char* block[kMax];
  size_t dirty[kMax];
  int count;
  bool registered;
  bool closed;
};
thread_local SpareBlocks spares;

// Returns the thread's blocks to the heap when the thread ends.
struct SpareBlocksCloser {
  ~SpareBlocksCloser() {
    spares.closed = true;
    while (spares.count > 0) {
      --spares.count;
      DT_UNPOISON(spares.block[spares.count], kFloor);
      std::free(spares.block[spares.count]);
    }
  }
};

// A block of the floor size of which the bytes from `dirty` on are zero.
unsigned char* takeBlock(size_t& dirty) {
  SpareBlocks& s = spares;
  if (s.count == 0) {
    auto* fresh = static_cast<unsigned char*>(std::malloc(kFloor));
    if (!fresh) throw std::bad_alloc();
    dirty = kFloor;
    return fresh;
  }
  --s.count;
  dirty = s.dirty[s.count];
  DT_UNPOISON(s.block[s.count], kFloor);
  return s.block[s.count];
}

void giveBlock(unsigned char* block, size_t dirty) {
  SpareBlocks& s = spares;
  if (s.closed || s.count == SpareBlocks::kMax) {
    std::free(block);
    return;
  }
  if (!s.registered) {
    static thread_local SpareBlocksCloser closer;
    (void)closer;
    s.registered = true;
  }
  DT_POISON(block, kFloor);
  s.block[s.count] = block;
  s.dirty[s.count] = dirty;
  ++s.count;
}

// Hands back an owned allocation: one of the floor size goes to the thread's spares.
void dropBlock(unsigned char* block, size_t capacity, size_t dirty) {
  if (capacity == kFloor)
    giveBlock(block, dirty);
  else
    std::free(block);
}

int clampLength(long n) {
  return n < 0 ? 0 : (n > DtBaseMsg::kMaxLength ? DtBaseMsg::kMaxLength : static_cast<int>(n));
}

}  // namespace

// ---------------------------------------------------------------- DtBaseMsg

DtBaseMsg::DtBaseMsg(const DtBaseMsg& other) : length_(other.length_) {
  if (other.bytes_) acquire(other.capacity_, other.bytes_, other.cleanFrom_);
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
    acquire(other.capacity_, other.bytes_, other.cleanFrom_);
  } else {
    // Whatever lies behind the other's written part, here as there, reads as zero.
    size_t keep = other.cleanFrom_;
    std::memcpy(bytes_, other.bytes_, keep);
    if (cleanFrom_ > keep) std::memset(bytes_ + keep, 0, cleanFrom_ - keep);
    cleanFrom_ = keep;
  }
  length_ = other.length_;
  return *this;
}

DtBaseMsg::~DtBaseMsg() {
  release();
}

void DtBaseMsg::release() {
  if (owned_) dropBlock(bytes_, capacity_, cleanFrom_);
  bytes_ = nullptr;
  capacity_ = 0;
  cleanFrom_ = 0;
  owned_ = false;
}

void DtBaseMsg::acquire(size_t capacity, const void* from, size_t keep) {
  if (capacity < kFloor) capacity = kFloor;
  if (keep > capacity) keep = capacity;
  size_t dirty = capacity;
  unsigned char* block;
  if (capacity == kFloor) {
    block = takeBlock(dirty);
  } else {
    block = static_cast<unsigned char*>(std::malloc(capacity));
    if (!block) throw std::bad_alloc();
  }
  if (keep) std::memcpy(block, from, keep);
  if (dirty > keep) std::memset(block + keep, 0, dirty - keep);
  bytes_ = block;
  capacity_ = capacity;
  cleanFrom_ = keep;
  owned_ = true;
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
  if (!bytes_) {
    acquire(target, nullptr, 0);
    return;
  }
  unsigned char* old = bytes_;
  size_t oldCapacity = capacity_;
  size_t oldClean = cleanFrom_;
  bool oldOwned = owned_;
  acquire(target, old, oldClean);
  if (oldOwned) dropBlock(old, oldCapacity, oldClean);
}

unsigned char* DtBaseMsg::writableBytes(size_t offset, size_t count) const {
  if (offset > capacity_ || count > capacity_ - offset) return nullptr;
  written(offset + count);
  return bytes_ + offset;
}

void DtBaseMsg::allocate(int length, DtBufferPlaceHolder* holder) {
  release();
  int n = clampLength(length);
  if (holder && holder->capacity() >= static_cast<size_t>(n)) {
    bytes_ = holder->data();
    capacity_ = holder->capacity();
    cleanFrom_ = capacity_;  // shared with the place holder's other PDUs
    owned_ = false;
  } else {
    acquire(static_cast<size_t>(n), nullptr, 0);
  }
  length_ = n;
}

void DtBaseMsg::adopt(const void* bytes, size_t available, int length,
                      DtBufferPlaceHolder* holder) {
  int n = clampLength(length);
  size_t copy = bytes ? available : 0;
  size_t room = static_cast<size_t>(n) > available ? static_cast<size_t>(n) : available;
  if (room > static_cast<size_t>(kMaxLength)) room = kMaxLength;
  release();
  if (holder && holder->capacity() >= room) {
    bytes_ = holder->data();
    capacity_ = holder->capacity();
    owned_ = false;
    if (copy > capacity_) copy = capacity_;
    if (copy) std::memcpy(bytes_, bytes, copy);
    std::memset(bytes_ + copy, 0, capacity_ - copy);
    cleanFrom_ = capacity_;  // shared with the place holder's other PDUs
  } else {
    acquire(room, bytes, copy);
  }
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
  if (at < old && inserted > 0)
    std::memmove(bytes_ + at + inserted, bytes_ + at, static_cast<size_t>(old - at));
  if (inserted > 0)
    std::memset(bytes_ + at, 0,
                static_cast<size_t>(at + inserted <= grown ? inserted : grown - at));
  written(static_cast<size_t>(grown));
  length_ = grown;
  lengthChanged();
}

// Only moves bytes within the length forward and zeroes its tail: nothing non-zero
// lands where there was none before.
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
  if (offset < capacity_ && capacity_ - offset >= DtNetGlobalObjectDesignator::kSize)
    return DtNetGlobalObjectDesignator::decode(bytes_ + offset);
  unsigned char raw[DtNetGlobalObjectDesignator::kSize];
  readBytes(offset, raw, sizeof raw);
  return DtNetGlobalObjectDesignator::decode(raw);
}
void DtBaseMsg::writeDesignator(size_t offset, const DtString& id) {
  if (offset < capacity_ && capacity_ - offset >= DtNetGlobalObjectDesignator::kSize) {
    DtNetGlobalObjectDesignator::encode(id.c_str(), bytes_ + offset);
    written(offset + DtNetGlobalObjectDesignator::kSize);
    return;
  }
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
  written(offset + n);
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
  adopt(bytes, bytes ? available : 0, headerLength(bytes, bytes ? available : 0), holder);
}

void DtPdu::initHeader() {
  setProtocolVersion(kProtocolVersion);
  setExerciseId(kDefaultExerciseId);
  writeU8(2, static_cast<unsigned int>(internalGetPduKind()));
  setProtocolFamily(kProtocolFamily);
  setTimeStamp(0);
  lengthChanged();
}

void DtPdu::lengthChanged() {
  writeU16(8, static_cast<unsigned int>(length()));
}

unsigned int DtPdu::headerKind(const void* bytes) {
  return static_cast<const unsigned char*>(bytes)[2];
}

int DtPdu::headerLength(const void* bytes) {
  const unsigned char* b = static_cast<const unsigned char*>(bytes);
  return (b[8] << 8) | b[9];
}

int DtPdu::headerLength(const void* bytes, size_t size) {
  const unsigned char* b = static_cast<const unsigned char*>(bytes);
  if (!b) return 0;
  unsigned int high = size > 8 ? b[8] : 0;
  unsigned int low = size > 9 ? b[9] : 0;
  return static_cast<int>((high << 8) | low);
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
  Creator c = creators_[DtPdu::headerKind(bytes)];
  return c ? c(bytes, holder, this) : nullptr;
}
