#pragma once
// Independent big-endian reads of raw PDU bytes, so tests check the wire format without
// going through the accessors under test.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace wire {

inline const unsigned char* at(const void* p, size_t offset) {
  return static_cast<const unsigned char*>(p) + offset;
}
inline uint32_t u8(const void* p, size_t o) {
  return *at(p, o);
}
inline uint32_t u16(const void* p, size_t o) {
  return (uint32_t(*at(p, o)) << 8) | *at(p, o + 1);
}
inline uint32_t u32(const void* p, size_t o) {
  return (u16(p, o) << 16) | u16(p, o + 2);
}
inline int32_t i32(const void* p, size_t o) {
  return static_cast<int32_t>(u32(p, o));
}
inline uint64_t u64(const void* p, size_t o) {
  return (uint64_t(u32(p, o)) << 32) | u32(p, o + 4);
}
inline float f32(const void* p, size_t o) {
  uint32_t b = u32(p, o);
  float f;
  std::memcpy(&f, &b, 4);
  return f;
}
inline double f64(const void* p, size_t o) {
  uint64_t b = u64(p, o);
  double d;
  std::memcpy(&d, &b, 8);
  return d;
}
/// Text of a fixed-width field, up to the first NUL or the width.
inline std::string text(const void* p, size_t o, size_t width) {
  const char* s = reinterpret_cast<const char*>(at(p, o));
  return std::string(s, strnlen(s, width));
}
/// True when every byte of [o, o + n) is zero.
inline bool zero(const void* p, size_t o, size_t n) {
  for (size_t i = 0; i < n; ++i)
    if (*at(p, o + i)) return false;
  return true;
}

/// Big-endian writers, for building received bytes by hand.
inline void put8(std::vector<unsigned char>& b, size_t o, uint32_t v) {
  b.at(o) = uint8_t(v);
}
inline void put16(std::vector<unsigned char>& b, size_t o, uint32_t v) {
  b.at(o) = uint8_t(v >> 8);
  b.at(o + 1) = uint8_t(v);
}
inline void put32(std::vector<unsigned char>& b, size_t o, uint32_t v) {
  put16(b, o, v >> 16);
  put16(b, o + 2, v & 0xFFFF);
}
inline void putF32(std::vector<unsigned char>& b, size_t o, float f) {
  uint32_t v;
  std::memcpy(&v, &f, 4);
  put32(b, o, v);
}
inline void putF64(std::vector<unsigned char>& b, size_t o, double d) {
  uint64_t v;
  std::memcpy(&v, &d, 8);
  put32(b, o, uint32_t(v >> 32));
  put32(b, o + 4, uint32_t(v));
}
inline void putText(std::vector<unsigned char>& b, size_t o, const std::string& s) {
  for (size_t i = 0; i < s.size(); ++i) b.at(o + i) = static_cast<unsigned char>(s[i]);
}

/// Raw bytes of a control PDU as a sender would put them on the wire: a 12-byte header
/// of kind 202 whose length field says `length`, the command at 146, the rest zero.
/// `allocated` (default: `length`) is how many bytes the vector really has.
inline std::vector<unsigned char> controlPdu(uint32_t command, size_t length,
                                             size_t allocated = 0) {
  std::vector<unsigned char> b(allocated ? allocated : length, 0);
  if (b.size() >= 12) {
    b[0] = 6;
    b[1] = 1;
    b[2] = 202;
    b[3] = 129;
    put16(b, 8, uint32_t(length));
  }
  if (b.size() >= 148) put16(b, 146, command);
  return b;
}

}  // namespace wire
