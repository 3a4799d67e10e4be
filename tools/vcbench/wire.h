#pragma once
// vcbench's messages inside a raw interaction's value: the 12-byte header of a control
// PDU (so that a listener sees a well-formed PDU of kind 202 and the value's length),
// then a marker, the message kind and its two numbers.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "endpoint.h"

namespace vcbench::wire {

constexpr size_t kMarkerOffset = 12;
constexpr size_t kKindOffset = 16;
constexpr size_t kAOffset = 20;
constexpr size_t kBOffset = 28;
/// The smallest value that holds a message; control messages are this long.
constexpr size_t kMessageSize = 36;
constexpr unsigned char kMarker[4] = {'V', 'C', 'B', 'N'};

/// `size` bytes with the PDU header filled in and the rest zero.
inline std::vector<unsigned char> buffer(size_t size) {
  std::vector<unsigned char> b(size < kMessageSize ? kMessageSize : size, 0);
  b[0] = 6;    // protocol version
  b[1] = 1;    // exercise
  b[2] = 202;  // control PDU
  b[3] = 129;  // experimental family
  size_t length = b.size() > 65535 ? 65535 : b.size();
  b[8] = static_cast<unsigned char>(length >> 8);
  b[9] = static_cast<unsigned char>(length);
  std::memcpy(b.data() + kMarkerOffset, kMarker, sizeof kMarker);
  return b;
}

inline void setA(unsigned char* p, std::uint64_t a) {
  std::memcpy(p + kAOffset, &a, 8);
}

inline void mark(unsigned char* p, Kind kind, std::uint64_t a, std::uint64_t b) {
  p[kKindOffset] = static_cast<unsigned char>(kind);
  std::memcpy(p + kAOffset, &a, 8);
  std::memcpy(p + kBOffset, &b, 8);
}

/// False for values that are not vcbench messages.
inline bool read(const void* data, size_t size, Message& m) {
  const auto* p = static_cast<const unsigned char*>(data);
  if (!p || size < kMessageSize || std::memcmp(p + kMarkerOffset, kMarker, sizeof kMarker) != 0)
    return false;
  m.kind = static_cast<Kind>(p[kKindOffset]);
  std::memcpy(&m.a, p + kAOffset, 8);
  std::memcpy(&m.b, p + kBOffset, 8);
  return true;
}

}  // namespace vcbench::wire
