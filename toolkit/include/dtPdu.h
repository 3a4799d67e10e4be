#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "dtExport.h"
#include "dtNetTypes.h"
#include "dtString.h"
#include "dtVector.h"

/// The 12-byte header in front of every PDU, in wire layout.
struct DtNetPduHeader {
  uint8_t protocolVersion;
  uint8_t exerciseId;
  uint8_t kind;
  uint8_t family;
  DtNetU32 timeStamp;
  DtNetU16 length;
  uint8_t padding[2];
};
static_assert(sizeof(DtNetPduHeader) == 12, "the PDU header is 12 bytes on the wire");

/// A block of memory that an application lends to PDUs so that building one does not
/// allocate. A PDU built on a place holder works in its block for as long as it fits
/// and moves to memory of its own when it must grow beyond it; the place holder must
/// outlive every PDU built on it. Its block starts zero-filled.
class DT_EXPORT DtBufferPlaceHolder {
 public:
  explicit DtBufferPlaceHolder(size_t capacity = 0);
  ~DtBufferPlaceHolder();
  DtBufferPlaceHolder(const DtBufferPlaceHolder&) = delete;
  DtBufferPlaceHolder& operator=(const DtBufferPlaceHolder&) = delete;

  unsigned char* data() { return data_; }
  size_t capacity() const { return capacity_; }

 private:
  unsigned char* data_;
  size_t capacity_;
};

/// DtBaseMsg owns (or borrows from a place holder) the bytes of one message and gives
/// bounds-checked access to them. Every field read and write of the toolkit and the
/// library goes through the read/write helpers below: a read past the allocation
/// yields zero and a write past it is dropped, so no input, however short or whatever
/// its counts say, reaches memory the message does not own. The allocation is
/// zero-filled and never smaller than kAllocationFloor, which covers the largest fixed
/// layout, so a field written beyond a PDU's length still lands and reads back.
class DT_EXPORT DtBaseMsg {
 public:
  /// Smallest allocation of any message; covers the largest fixed PDU layout.
  static constexpr size_t kAllocationFloor = 1544;
  /// Largest length a message can have: the header's length field is 16 bits.
  static constexpr int kMaxLength = 65535;

  DtBaseMsg() = default;
  DtBaseMsg(const DtBaseMsg& other);
  DtBaseMsg& operator=(const DtBaseMsg& other);
  virtual ~DtBaseMsg();

  /// The message bytes (null before the message is initialised). Whoever holds the
  /// pointer may write anywhere in the allocation.
  virtual char* packet() {
    cleanFrom_ = capacity_;
    return reinterpret_cast<char*>(bytes_);
  }
  virtual const char* packet() const { return reinterpret_cast<const char*>(bytes_); }
  /// The message's own length in bytes (never the allocation's).
  virtual int length() const { return length_; }
  /// Sets the length to exactly `newLength` (0..kMaxLength), growing the allocation when
  /// needed. Bytes beyond the old length keep what was written there.
  virtual void changeSize(int newLength);
  /// Inserts `count` zero bytes at `offset`, moving the bytes behind it back.
  virtual void insertBytes(int offset, int count);
  /// Removes `count` bytes at `offset`, moving the bytes behind it forward.
  virtual void deleteBytes(int offset, int count);

  /// Size of the memory behind packet().
  size_t capacity() const { return capacity_; }

  // Bounds-checked field access in network byte order.
  void readBytes(size_t offset, void* out, size_t count) const {
    size_t have = offset < capacity_ ? capacity_ - offset : 0;
    size_t n = count < have ? count : have;
    if (n) std::memcpy(out, bytes_ + offset, n);
    if (n < count) std::memset(static_cast<unsigned char*>(out) + n, 0, count - n);
  }
  void writeBytes(size_t offset, const void* in, size_t count) {
    size_t have = offset < capacity_ ? capacity_ - offset : 0;
    size_t n = count < have ? count : have;
    if (n) {
      std::memcpy(bytes_ + offset, in, n);
      written(offset + n);
    }
  }
  unsigned int readU8(size_t offset) const { return offset < capacity_ ? bytes_[offset] : 0; }
  void writeU8(size_t offset, unsigned int v) {
    if (offset < capacity_) {
      bytes_[offset] = static_cast<unsigned char>(v);
      written(offset + 1);
    }
  }
  unsigned int readU16(size_t offset) const { return readNet<DtNetU16>(offset); }
  void writeU16(size_t offset, unsigned int v) { writeNet(offset, DtNetU16(v)); }
  unsigned int readU32(size_t offset) const { return readNet<DtNetU32>(offset); }
  void writeU32(size_t offset, unsigned int v) { writeNet(offset, DtNetU32(v)); }
  int readInt32(size_t offset) const { return readNet<DtNetInt32>(offset); }
  void writeInt32(size_t offset, int v) { writeNet(offset, DtNetInt32(v)); }
  float readFloat32(size_t offset) const { return readNet<DtNetFloat32>(offset); }
  void writeFloat32(size_t offset, float v) { writeNet(offset, DtNetFloat32(v)); }
  double readFloat64(size_t offset) const { return readNet<DtNetFloat64>(offset); }
  void writeFloat64(size_t offset, double v) { writeNet(offset, DtNetFloat64(v)); }

  /// Three doubles.
  DtVector64 readVector64(size_t offset) const;
  void writeVector64(size_t offset, const DtVector64& v);
  /// Three singles, widened on reading and narrowed on writing.
  DtVector64 readVector32(size_t offset) const;
  void writeVector32(size_t offset, const DtVector64& v);
  /// Heading, pitch, roll as three singles (the Euler-angle wire form).
  DtTaitBryan readEulerAngles(size_t offset) const;
  void writeEulerAngles(size_t offset, const DtTaitBryan& a);
  /// A 64-byte object identifier.
  DtString readDesignator(size_t offset) const;
  void writeDesignator(size_t offset, const DtString& id);
  /// A fixed-width character field: reading stops at the first NUL or at the width;
  /// writing copies at most `width` bytes and pads a shorter text with NULs, so a text
  /// that fills the field has no terminator.
  DtString readChars(size_t offset, size_t width) const;
  void writeChars(size_t offset, size_t width, const char* text);

 protected:
  /// Gives the message `length` bytes, zero-filled unless they come from `holder`.
  void allocate(int length, DtBufferPlaceHolder* holder);
  /// Gives the message a copy of `available` received bytes and the length `length`;
  /// bytes the sender did not provide read as zero.
  void adopt(const void* bytes, size_t available, int length, DtBufferPlaceHolder* holder);
  /// Called whenever the length changes, so a header can record it.
  virtual void lengthChanged() {}
  /// Records a new length without touching the bytes.
  void setLengthValue(int length) { length_ = length; }
  /// `count` writable bytes at `offset` for accessors that hand out pointers into the
  /// message, or null when they do not lie inside the allocation.
  unsigned char* writableBytes(size_t offset, size_t count) const;

 private:
  // Fields that lie inside the allocation, which is nearly always, take the direct path.
  template <typename T>
  T readNet(size_t offset) const {
    T v;
    if (offset < capacity_ && capacity_ - offset >= sizeof(T))
      std::memcpy(static_cast<void*>(&v), bytes_ + offset, sizeof(T));
    else
      readBytes(offset, &v, sizeof(T));
    return v;
  }
  template <typename T>
  void writeNet(size_t offset, const T& v) {
    if (offset < capacity_ && capacity_ - offset >= sizeof(T)) {
      std::memcpy(bytes_ + offset, static_cast<const void*>(&v), sizeof(T));
      written(offset + sizeof(T));
    } else {
      writeBytes(offset, &v, sizeof(T));
    }
  }
  void written(size_t end) const {
    if (end > cleanFrom_) cleanFrom_ = end;
  }
  /// Gives the message an owned allocation of `capacity` bytes (at least the floor)
  /// holding the first `keep` bytes of `from` and zero behind them.
  void acquire(size_t capacity, const void* from, size_t keep);
  void reserve(size_t needed);
  void release();

  unsigned char* bytes_ = nullptr;
  size_t capacity_ = 0;
  // Every byte of the allocation from here on is zero. Allocations of the floor size
  // are reused from one message to the next, and only this much of one needs clearing
  // before the next message may have it. Borrowed memory counts as written throughout.
  mutable size_t cleanFrom_ = 0;
  int length_ = 0;
  bool owned_ = false;
};

class DtPduFactory;

/// DtPdu is a message with the 12-byte PDU header: protocol version, exercise id, PDU
/// kind (byte 2), protocol family, time stamp, length (16 bits at byte 8), two padding
/// bytes. Subclasses give their kind through internalGetPduKind() and their body
/// through printData().
class DT_EXPORT DtPdu : public DtBaseMsg {
 public:
  static constexpr int kHeaderSize = 12;
  static constexpr unsigned int kProtocolVersion = 6;  // IEEE 1278.1a-1998
  static constexpr unsigned int kDefaultExerciseId = 1;
  static constexpr unsigned int kProtocolFamily = 129;  // experimental

  DtPdu() = default;
  DtPdu(const DtPdu&) = default;
  DtPdu& operator=(const DtPdu&) = default;
  ~DtPdu() override;

  /// Makes a PDU of `length` bytes with a fresh header of this class's kind.
  void initPdu(int length, DtBufferPlaceHolder* holder = nullptr);
  /// Takes a copy of received bytes; the length comes from their header, and the caller
  /// promises that many bytes (at least the 12 of the header) are readable.
  void initPdu(const void* bytes, DtBufferPlaceHolder* holder, DtPduFactory* factory);
  /// The same for bytes of which only `available` are readable: the rest read as zero.
  void initPdu(const void* bytes, size_t available, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  /// Writes the header of a fresh PDU of the current length.
  virtual void initHeader();

  unsigned int protocolVersion() const { return readU8(0); }
  void setProtocolVersion(unsigned int v) { writeU8(0, v); }
  unsigned int exerciseId() const { return readU8(1); }
  void setExerciseId(unsigned int v) { writeU8(1, v); }
  unsigned int pduKind() const { return readU8(2); }
  unsigned int protocolFamily() const { return readU8(3); }
  void setProtocolFamily(unsigned int v) { writeU8(3, v); }
  unsigned int timeStamp() const { return readU32(4); }
  void setTimeStamp(unsigned int v) { writeU32(4, v); }

  /// The header's dump, then printData().
  virtual void print() const;
  virtual void printHeaderToStream() const;
  /// The body's dump; the base prints nothing.
  virtual void printData() const;
  /// The PDU kind that initHeader() writes into byte 2.
  virtual int internalGetPduKind() const { return 0; }

  /// Reads the PDU kind (byte 2) of raw PDU bytes. Received bytes may sit at any
  /// address, so neither this nor any other read of raw bytes goes through a
  /// DtNetPduHeader, whose 32-bit field makes it need 4-byte alignment.
  static unsigned int headerKind(const void* bytes);
  /// Reads the length field of raw PDU bytes (12 readable bytes assumed).
  static int headerLength(const void* bytes);
  /// The same for `size` received bytes, which may end inside the header: what is
  /// missing of it reads as zero, as it does once the bytes are padded.
  static int headerLength(const void* bytes, size_t size);

 protected:
  void lengthChanged() override;
};

/// DtPduFactory builds PDU objects from received bytes, by PDU kind, through creator
/// functions registered with it.
class DT_EXPORT DtPduFactory {
 public:
  using Creator = DtPdu* (*)(const DtNetPduHeader*, DtBufferPlaceHolder*, DtPduFactory*);

  DtPduFactory();
  void addCreator(unsigned int kind, Creator creator);
  void removeCreator(unsigned int kind);
  /// A new PDU for the bytes, or null when no creator knows their kind (or it declines).
  DtPdu* createPdu(const DtNetPduHeader* bytes, DtBufferPlaceHolder* holder = nullptr);

 private:
  Creator creators_[256];
};
