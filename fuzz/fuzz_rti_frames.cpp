// Bytes -> the frame codec that the hub and every federate run on what they receive: the
// stream is cut into frames as the hub cuts it, every interaction's parameters are
// walked as the RTI walks them on delivery, object models inside create frames and join
// replies are decoded, and whatever decodes is written again and must decode to the same.
#include <cstdlib>
#include <cstring>
#include <string>

#include "fdd_model.h"
#include "protocol.h"

using namespace vcrti;

namespace {

volatile std::size_t sink;

bool sameBytes(const wire::Bytes& a, const wire::Bytes& b) {
  return a.size == b.size && (a.size == 0 || std::memcmp(a.data, b.data, a.size) == 0);
}

void walkParameters(const wire::Message& m) {
  wire::ParamReader reader(m);
  std::uint32_t handle;
  wire::Bytes value;
  std::size_t total = 0;
  std::uint32_t seen = 0;
  while (reader.next(handle, value)) {
    // Every value lies inside the checked parameter block.
    if (value.data < m.params.data || value.data + value.size > m.params.data + m.params.size)
      std::abort();
    for (std::size_t i = 0; i < value.size; ++i) total += value.data[i];
    ++seen;
  }
  if (seen != m.paramCount) std::abort();
  sink = total + handle;
}

void decodeModel(const unsigned char* data, std::size_t size) {
  FddModel model;
  std::string error;
  if (!decodeFdd(data, size, model, error)) return;
  // A model that decodes encodes to a blob that decodes to the same tables.
  ByteBuffer again;
  encodeFdd(model, again);
  FddModel second;
  if (!decodeFdd(again.data(), again.size(), second, error)) std::abort();
  if (second.interactions.classes.size() != model.interactions.classes.size() ||
      second.objects.members.size() != model.objects.members.size())
    std::abort();
  for (std::uint32_t c = 0; c < model.interactions.classes.size(); ++c) {
    const FddClass& cls = model.interactions.classes[c];
    if (model.interactions.findClass(cls.qualified) != c) std::abort();
    for (std::uint32_t m : cls.all)
      if (!model.interactions.memberAvailable(c, m)) std::abort();
  }
}

// Writes the message again with the frame writer and checks it decodes to the same.
void reencode(const wire::Message& m) {
  ByteBuffer out;
  wire::FrameWriter w(out, m.type);
  switch (m.type) {
    case wire::MsgType::Create:
      w.u32(m.requestId).str(m.name).str(m.text).bytes(m.blob.data, m.blob.size);
      break;
    case wire::MsgType::Destroy:
      w.u32(m.requestId).str(m.name);
      break;
    case wire::MsgType::Join:
      w.u32(m.requestId).str(m.name).str(m.text);
      if (m.blob.size != 0) w.bytes(m.blob.data, m.blob.size);
      break;
    case wire::MsgType::Resign:
    case wire::MsgType::Subscribe:
    case wire::MsgType::Unsubscribe:
    case wire::MsgType::SubscribeObjects:
    case wire::MsgType::UnsubscribeObjects:
      w.u32(m.requestId).u32(m.handle);
      break;
    case wire::MsgType::Hello:
      w.u32(m.requestId).u32(m.handle).str(m.text);
      break;
    case wire::MsgType::ReserveName:
      w.str(m.name);
      break;
    case wire::MsgType::Goodbye:
      w.str(m.text);
      break;
    case wire::MsgType::ModelGrown:
      w.bytes(m.blob.data, m.blob.size);
      break;
    case wire::MsgType::NameReserved:
      w.u32(m.handle).str(m.name);
      break;
    case wire::MsgType::Register:
    case wire::MsgType::Discover:
      w.u64(m.instance).u32(m.handle).str(m.name);
      break;
    case wire::MsgType::Update:
    case wire::MsgType::RequestUpdate:
      w.u64(m.instance)
          .bytes(m.tag.data, m.tag.size)
          .u32(m.paramCount)
          .raw(m.params.data, m.params.size);
      break;
    case wire::MsgType::Delete:
      w.u64(m.instance).bytes(m.tag.data, m.tag.size);
      break;
    case wire::MsgType::LocalDelete:
      w.u64(m.instance);
      break;
    case wire::MsgType::RequestClassUpdate:
      w.u32(m.handle)
          .bytes(m.tag.data, m.tag.size)
          .u32(m.paramCount)
          .raw(m.params.data, m.params.size);
      break;
    case wire::MsgType::Interaction:
      w.u32(m.handle)
          .bytes(m.tag.data, m.tag.size)
          .u32(m.paramCount)
          .raw(m.params.data, m.params.size);
      break;
    case wire::MsgType::Reply:
      w.u32(m.requestId).u32(m.handle).str(m.text).bytes(m.blob.data, m.blob.size);
      break;
  }
  if (!w.finish()) std::abort();  // it fitted when it came in
  wire::Message back;
  const wire::DecodeResult d = wire::decodeFrame(out.data(), out.size(), back);
  if (d.status != wire::DecodeStatus::Complete || d.frameSize != out.size()) std::abort();
  if (back.type != m.type || back.requestId != m.requestId || back.handle != m.handle ||
      back.instance != m.instance || back.name != m.name || back.text != m.text ||
      !sameBytes(back.blob, m.blob) || !sameBytes(back.tag, m.tag) ||
      back.paramCount != m.paramCount || !sameBytes(back.params, m.params))
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // The hub's loop: frames one after the other until one is incomplete or malformed.
  std::size_t pos = 0;
  while (pos < size) {
    wire::Message m;
    const wire::DecodeResult d = wire::decodeFrame(data + pos, size - pos, m);
    if (d.status != wire::DecodeStatus::Complete) break;
    if (d.frameSize < wire::kLengthPrefix + 1 || d.frameSize > size - pos) std::abort();
    if (m.type == wire::MsgType::Interaction || m.type == wire::MsgType::Update ||
        m.type == wire::MsgType::RequestUpdate || m.type == wire::MsgType::RequestClassUpdate)
      walkParameters(m);
    if (m.type == wire::MsgType::Create) decodeModel(m.blob.data, m.blob.size);
    // A join reply: the federate handle, then the model.
    if (m.type == wire::MsgType::Reply && m.blob.size >= 4)
      decodeModel(m.blob.data + 4, m.blob.size - 4);
    reencode(m);
    pos += d.frameSize;
  }
  // The same bytes as a bare model, as a federate reads the one the hub hands out.
  decodeModel(data, size);
  return 0;
}
