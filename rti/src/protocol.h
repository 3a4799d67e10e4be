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

enum class MsgType : std::uint8_t {
  Create = 1,       // requestId, federation, fdd file name, fdd model -> Reply
  Destroy = 2,      // requestId, federation -> Reply
  Join = 3,         // requestId, federation, federate type -> Reply(handle; fdd name, model)
  Resign = 4,       // requestId -> Reply
  Subscribe = 5,    // requestId, interaction class -> Reply
  Unsubscribe = 6,  // requestId, interaction class -> Reply
  Interaction = 7,  // class, tag, parameters
  Reply = 8,        // requestId, status, text, payload
};

enum class Status : std::uint32_t {
  Ok = 0,
  FederationExists = 1,
  FederationMissing = 2,
  FederatesJoined = 3,
  AlreadyJoined = 4,
  NotJoined = 5,
  Internal = 6,
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
  std::uint32_t handle = 0;  // class (Subscribe, Unsubscribe, Interaction), status (Reply)
  std::string_view name;     // federation (Create, Destroy, Join)
  std::string_view text;     // fdd file name (Create), federate type (Join), message (Reply)
  Bytes blob;                // fdd model (Create), payload (Reply)
  Bytes tag;                 // Interaction
  std::uint32_t paramCount = 0;
  Bytes params;  // Interaction: paramCount checked entries
};

// Walks the checked parameter entries of an Interaction.
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

// Bytes of an Interaction frame's fixed part: prefix, type, class, tag length, count.
constexpr std::size_t kInteractionFixed = kLengthPrefix + 1 + 4 + 4 + 4;
constexpr std::size_t kParamFixed = 8;

}  // namespace vcrti::wire

#endif
