#include "link.h"

namespace vcrti {

namespace {

// Classes travel as 32 bits, instances as 64.
bool wideHandle(wire::MsgType type) {
  return type == wire::MsgType::Update || type == wire::MsgType::RequestUpdate;
}

template <class Entries, class SizeOf, class Write>
void encodeEntries(ByteBuffer& out, wire::MsgType type, std::uint64_t handle,
                   const Entries& entries, ValueView tag, SizeOf sizeOf, Write write) {
  const std::size_t handleBytes = wideHandle(type) ? 8 : 4;
  std::size_t total = wire::kLengthPrefix + 1 + handleBytes + 8 + tag.size;
  for (const auto& e : entries) total += wire::kParamFixed + sizeOf(e);
  if (total - wire::kLengthPrefix > wire::kMaxFrameBody)
    throw RtiError(Fault::RTIinternalError, L"a message of " + std::to_wstring(total) +
                                                L" bytes exceeds the limit of " +
                                                std::to_wstring(wire::kMaxFrameBody) + L" bytes");
  unsigned char* p = out.grow(total);
  wire::storeU32(p, static_cast<std::uint32_t>(total - wire::kLengthPrefix));
  p[4] = static_cast<unsigned char>(type);
  p += 5;
  if (handleBytes == 8)
    wire::storeU64(p, handle);
  else
    wire::storeU32(p, static_cast<std::uint32_t>(handle));
  p += handleBytes;
  wire::storeU32(p, static_cast<std::uint32_t>(tag.size));
  p += 4;
  if (tag.size) std::memcpy(p, tag.data, tag.size);
  p += tag.size;
  wire::storeU32(p, static_cast<std::uint32_t>(entries.size()));
  p += 4;
  for (const auto& e : entries) p = write(p, e);
}

}  // namespace

void encodeValues(ByteBuffer& out, wire::MsgType type, std::uint64_t handle,
                  const HandleValues& values, ValueView tag) {
  encodeEntries(
      out, type, handle, values, tag,
      [](const std::pair<std::uint32_t, ValueView>& e) { return e.second.size; },
      [](unsigned char* p, const std::pair<std::uint32_t, ValueView>& e) {
        wire::storeU32(p, e.first);
        wire::storeU32(p + 4, static_cast<std::uint32_t>(e.second.size));
        if (e.second.size) std::memcpy(p + 8, e.second.data, e.second.size);
        return p + wire::kParamFixed + e.second.size;
      });
}

void encodeHandles(ByteBuffer& out, wire::MsgType type, std::uint64_t handle,
                   const HandleSet& handles, ValueView tag) {
  encodeEntries(
      out, type, handle, handles, tag, [](std::uint32_t) { return std::size_t{0}; },
      [](unsigned char* p, std::uint32_t h) {
        wire::storeU32(p, h);
        wire::storeU32(p + 4, 0);
        return p + wire::kParamFixed;
      });
}

}  // namespace vcrti
