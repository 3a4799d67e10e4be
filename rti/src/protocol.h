// The frames that federates and the hub exchange over TCP, and that federates of one
// process queue for each other.
//
// Every frame is a 32-bit little-endian body length followed by the body; the body's
// first byte is the message type. Integers are little-endian; a string or a blob is a
// 32-bit length followed by its bytes. decodeFrame() checks every length against the
// bytes it was given, so a frame from an untrusted peer can be rejected without reading
// past it.
#ifndef VCRTI_PROTOCOL_H
#define VCRTI_PROTOCOL_H

#include "byte_buffer.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vcrti::wire {

constexpr std::size_t kLengthPrefix = 4;
// Large enough for any interaction the product sends (a few hundred bytes) and for an
// FDD; small enough that a hostile length cannot make the hub allocate without bound.
constexpr std::uint32_t kMaxFrameBody = 1u << 20;
constexpr std::uint16_t kDefaultHubPort = 15160;
// Bumped whenever a frame changes meaning: a client and a hub of different versions
// refuse each other at the first frame instead of misreading the rest.
constexpr std::uint32_t kProtocolVersion = 3;

enum class MsgType : std::uint8_t {
  Create = 1,   // requestId, federation, fdd file name, fdd model -> Reply
  Destroy = 2,  // requestId, federation -> Reply
  // The modules are those a federate of the 2010 API brings (fom_modules.h); a join
  // without them may leave the field out.
  Join = 3,       // requestId, federation, federate type, modules -> Reply(handle; fdd name, model)
  Resign = 4,     // requestId, resign mode -> Reply
  Subscribe = 5,  // requestId, interaction class -> Reply
  Unsubscribe = 6,  // requestId, interaction class -> Reply
  Interaction = 7,  // class, tag, parameters
  Reply = 8,        // requestId, status, text, payload
  // The first frame of every connection; the hub answers with its own version.
  Hello = 9,  // requestId, protocol version, software -> Reply(payload: version)
  // Object management. The hub forwards Update, Delete and RequestUpdate as they came,
  // so a federate receives the very frame its peer sent.
  SubscribeObjects = 10,    // requestId, object class -> Reply
  UnsubscribeObjects = 11,  // requestId, object class -> Reply
  ReserveName = 12,         // name -> NameReserved
  NameReserved = 13,        // status (0 reserved), name
  Register = 14,            // instance, class, name
  Discover = 15,            // instance, class, name
  Update = 16,              // instance, tag, attributes
  Delete = 17,              // instance, tag
  LocalDelete = 18,         // instance
  RequestUpdate = 19,       // instance, tag, attributes (empty values)
  RequestClassUpdate = 20,  // class, tag, attributes (empty values)
  // The hub's last frame to a client it refuses or drops, so that the federate can say
  // why instead of only that the connection closed.
  Goodbye = 21,  // reason
  // To every member when a joiner's modules grew the federation's object model: the whole
  // grown model, in which every class and member it had keeps its handle. It comes before
  // anything of the new classes.
  ModelGrown = 22,  // model
};

enum class Status : std::uint32_t {
  Ok = 0,
  FederationExists = 1,
  FederationMissing = 2,
  FederatesJoined = 3,
  AlreadyJoined = 4,
  NotJoined = 5,
  Internal = 6,
  InconsistentFdd = 7,  // a joiner's module conflicts with the federation's model
};

struct Bytes {
  const unsigned char* data = nullptr;
  std::size_t size = 0;
  std::string_view str() const { return {reinterpret_cast<const char*>(data), size}; }
};

// A decoded frame. Views point into the decoded bytes.
struct Message {
  MsgType type{};
  std::uint32_t requestId = 0;
  // Class (subscriptions, Interaction, Register, Discover, RequestClassUpdate), status
  // (Reply, NameReserved), protocol version (Hello), resign mode (Resign).
  std::uint32_t handle = 0;
  std::uint64_t instance = 0;
  std::string_view name;  // federation (Create, Destroy, Join), object instance
  std::string_view text;  // fdd file name (Create), federate type (Join), message (Reply)
  Bytes blob;             // fdd model (Create, ModelGrown), modules (Join), payload (Reply)
  Bytes tag;              // Interaction, Update, Delete, RequestUpdate, RequestClassUpdate
  std::uint32_t paramCount = 0;
  Bytes params;  // parameters or attributes: paramCount checked entries
};

// Walks the checked parameter (or attribute) entries of a frame.
class ParamReader {
 public:
  explicit ParamReader(const Message& m) : p_(m.params.data), left_(m.paramCount) {}
  bool next(std::uint32_t& handle, Bytes& value) {
    if (left_ == 0) return false;
    --left_;
    std::uint32_t len;
    std::memcpy(&handle, p_, 4);
    std::memcpy(&len, p_ + 4, 4);
    handle = le(handle);
    value.size = le(len);
    value.data = p_ + 8;
    p_ += 8 + value.size;
    return true;
  }

 private:
  static std::uint32_t le(std::uint32_t v) {
    const auto* b = reinterpret_cast<const unsigned char*>(&v);
    return std::uint32_t(b[0]) | std::uint32_t(b[1]) << 8 | std::uint32_t(b[2]) << 16 |
           std::uint32_t(b[3]) << 24;
  }
  const unsigned char* p_;
  std::uint32_t left_;
};

enum class DecodeStatus { Complete, Incomplete, Malformed };

struct DecodeResult {
  DecodeStatus status;
  std::size_t frameSize;  // bytes the frame occupies (prefix included) when Complete
  const char* error;      // why, when Malformed
};

// Decodes the frame at the start of [data, data + size). Incomplete means more bytes are
// needed (and the announced length is acceptable); Malformed means the stream is corrupt.
DecodeResult decodeFrame(const unsigned char* data, std::size_t size, Message& out);

// Appends one frame to a buffer. Fields are written in the order of MsgType's comments.
class FrameWriter {
 public:
  FrameWriter(ByteBuffer& out, MsgType type, std::size_t expectedBody = 64);
  FrameWriter& u32(std::uint32_t v);
  FrameWriter& u64(std::uint64_t v);
  FrameWriter& bytes(const void* p, std::size_t n);  // length-prefixed
  FrameWriter& str(std::string_view s) { return bytes(s.data(), s.size()); }
  FrameWriter& raw(const void* p, std::size_t n);  // no length
  // Patches the length. Returns false, and removes the frame, when it exceeds the cap.
  bool finish();

 private:
  ByteBuffer& out_;
  std::size_t start_;
  bool overflow_ = false;
};

inline void storeU32(unsigned char* p, std::uint32_t v) {
  p[0] = static_cast<unsigned char>(v);
  p[1] = static_cast<unsigned char>(v >> 8);
  p[2] = static_cast<unsigned char>(v >> 16);
  p[3] = static_cast<unsigned char>(v >> 24);
}

inline std::uint32_t loadU32(const unsigned char* p) {
  return std::uint32_t(p[0]) | std::uint32_t(p[1]) << 8 | std::uint32_t(p[2]) << 16 |
         std::uint32_t(p[3]) << 24;
}

inline void storeU64(unsigned char* p, std::uint64_t v) {
  storeU32(p, static_cast<std::uint32_t>(v));
  storeU32(p + 4, static_cast<std::uint32_t>(v >> 32));
}

inline std::uint64_t loadU64(const unsigned char* p) {
  return std::uint64_t(loadU32(p)) | std::uint64_t(loadU32(p + 4)) << 32;
}

// Bytes of an Interaction frame's fixed part: prefix, type, class, tag length, count.
constexpr std::size_t kInteractionFixed = kLengthPrefix + 1 + 4 + 4 + 4;
constexpr std::size_t kParamFixed = 8;
// The same for an Update: prefix, type, instance, tag length, count.
constexpr std::size_t kUpdateFixed = kLengthPrefix + 1 + 8 + 4 + 4;

}  // namespace vcrti::wire

#endif
