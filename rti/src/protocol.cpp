#include "protocol.h"

namespace vcrti::wire {

namespace {

// Bounds-checked cursor over one frame body: every read either fits or fails.
class Cursor {
 public:
  Cursor(const unsigned char* p, std::size_t n) : p_(p), end_(p + n) {}
  bool u8(std::uint8_t& v) {
    if (left() < 1) return false;
    v = *p_++;
    return true;
  }
  bool u32(std::uint32_t& v) {
    if (left() < 4) return false;
    v = loadU32(p_);
    p_ += 4;
    return true;
  }
  bool u64(std::uint64_t& v) {
    if (left() < 8) return false;
    v = loadU64(p_);
    p_ += 8;
    return true;
  }
  bool bytes(Bytes& b) {
    std::uint32_t n;
    if (!u32(n) || left() < n) return false;
    b.data = p_;
    b.size = n;
    p_ += n;
    return true;
  }
  bool str(std::string_view& s) {
    Bytes b;
    if (!bytes(b)) return false;
    s = b.str();
    return true;
  }
  std::size_t left() const { return static_cast<std::size_t>(end_ - p_); }
  const unsigned char* pos() const { return p_; }
  void skip(std::size_t n) { p_ += n; }

 private:
  const unsigned char* p_;
  const unsigned char* end_;
};

// The checked entries of a parameter or attribute list.
bool entries(Cursor& c, Message& m) {
  if (!c.u32(m.paramCount)) return false;
  // Each entry takes at least 8 bytes: a count that cannot fit is rejected before the
  // walk, so a hostile count costs nothing.
  if (m.paramCount > c.left() / kParamFixed) return false;
  const unsigned char* start = c.pos();
  for (std::uint32_t i = 0; i < m.paramCount; ++i) {
    std::uint32_t handle;
    Bytes value;
    if (!c.u32(handle) || !c.bytes(value)) return false;
  }
  m.params.data = start;
  m.params.size = static_cast<std::size_t>(c.pos() - start);
  return true;
}

const char* decodeBody(Cursor& c, Message& m) {
  std::uint8_t type;
  if (!c.u8(type)) return "empty frame";
  m = Message{};
  m.type = static_cast<MsgType>(type);
  switch (m.type) {
    case MsgType::Create:
      if (!c.u32(m.requestId) || !c.str(m.name) || !c.str(m.text) || !c.bytes(m.blob))
        return "truncated create";
      break;
    case MsgType::Destroy:
      if (!c.u32(m.requestId) || !c.str(m.name)) return "truncated destroy";
      break;
    case MsgType::Join:
      // A join without modules may end after the federate type.
      if (!c.u32(m.requestId) || !c.str(m.name) || !c.str(m.text) ||
          (c.left() != 0 && !c.bytes(m.blob)))
        return "truncated join";
      break;
    case MsgType::Resign:
      if (!c.u32(m.requestId) || !c.u32(m.handle)) return "truncated resign";
      break;
    case MsgType::Subscribe:
    case MsgType::Unsubscribe:
    case MsgType::SubscribeObjects:
    case MsgType::UnsubscribeObjects:
      if (!c.u32(m.requestId) || !c.u32(m.handle)) return "truncated subscription";
      break;
    case MsgType::Interaction:
      if (!c.u32(m.handle) || !c.bytes(m.tag) || !entries(c, m)) return "truncated interaction";
      break;
    case MsgType::Hello:
      if (!c.u32(m.requestId) || !c.u32(m.handle) || !c.str(m.text)) return "truncated hello";
      break;
    case MsgType::ReserveName:
      if (!c.str(m.name)) return "truncated name reservation";
      break;
    case MsgType::NameReserved:
      if (!c.u32(m.handle) || !c.str(m.name)) return "truncated name reservation";
      break;
    case MsgType::Register:
    case MsgType::Discover:
      if (!c.u64(m.instance) || !c.u32(m.handle) || !c.str(m.name)) return "truncated instance";
      break;
    case MsgType::Update:
    case MsgType::RequestUpdate:
      if (!c.u64(m.instance) || !c.bytes(m.tag) || !entries(c, m)) return "truncated update";
      break;
    case MsgType::Delete:
      if (!c.u64(m.instance) || !c.bytes(m.tag)) return "truncated delete";
      break;
    case MsgType::LocalDelete:
      if (!c.u64(m.instance)) return "truncated local delete";
      break;
    case MsgType::RequestClassUpdate:
      if (!c.u32(m.handle) || !c.bytes(m.tag) || !entries(c, m)) return "truncated update request";
      break;
    case MsgType::Reply:
      if (!c.u32(m.requestId) || !c.u32(m.handle) || !c.str(m.text) || !c.bytes(m.blob))
        return "truncated reply";
      break;
    case MsgType::Goodbye:
      if (!c.str(m.text)) return "truncated goodbye";
      break;
    case MsgType::ModelGrown:
      if (!c.bytes(m.blob)) return "truncated model";
      break;
    default:
      return "unknown message type";
  }
  if (c.left() != 0) return "trailing bytes in frame";
  return nullptr;
}

}  // namespace

DecodeResult decodeFrame(const unsigned char* data, std::size_t size, Message& out) {
  if (size < kLengthPrefix) return {DecodeStatus::Incomplete, 0, nullptr};
  const std::uint32_t body = loadU32(data);
  if (body == 0) return {DecodeStatus::Malformed, 0, "empty frame"};
  if (body > kMaxFrameBody) return {DecodeStatus::Malformed, 0, "frame exceeds size cap"};
  if (size - kLengthPrefix < body) return {DecodeStatus::Incomplete, 0, nullptr};
  Cursor c(data + kLengthPrefix, body);
  if (const char* err = decodeBody(c, out)) return {DecodeStatus::Malformed, 0, err};
  return {DecodeStatus::Complete, kLengthPrefix + body, nullptr};
}

FrameWriter::FrameWriter(ByteBuffer& out, MsgType type, std::size_t expectedBody)
    : out_(out), start_(out.size()) {
  out_.reserve(out_.size() + kLengthPrefix + expectedBody);
  unsigned char* p = out_.grow(kLengthPrefix + 1);
  p[kLengthPrefix] = static_cast<unsigned char>(type);
}

FrameWriter& FrameWriter::u32(std::uint32_t v) {
  storeU32(out_.grow(4), v);
  return *this;
}

FrameWriter& FrameWriter::u64(std::uint64_t v) {
  storeU64(out_.grow(8), v);
  return *this;
}

FrameWriter& FrameWriter::bytes(const void* p, std::size_t n) {
  u32(static_cast<std::uint32_t>(n > kMaxFrameBody ? kMaxFrameBody + 1 : n));
  if (n > kMaxFrameBody) {
    // Cannot fit anyway: leave a frame that finish() will refuse, without copying.
    overflow_ = true;
    return *this;
  }
  out_.append(p, n);
  return *this;
}

FrameWriter& FrameWriter::raw(const void* p, std::size_t n) {
  out_.append(p, n);
  return *this;
}

bool FrameWriter::finish() {
  const std::size_t body = out_.size() - start_ - kLengthPrefix;
  if (overflow_ || body > kMaxFrameBody) {
    out_.resize(start_);
    return false;
  }
  storeU32(out_.data() + start_, static_cast<std::uint32_t>(body));
  return true;
}

}  // namespace vcrti::wire
