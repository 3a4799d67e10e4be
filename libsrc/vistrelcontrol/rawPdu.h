#pragma once
// Reads of raw received PDU bytes before they are wrapped in an object. Only the bytes
// that the header's length claims (and always the 12 of the header) belong to the PDU;
// anything beyond reads as zero, so a short PDU can never make us read past its end.
#include <cstddef>
#include <cstdint>

#include "dtPdu.h"

namespace rawpdu {

inline size_t extent(const void* bytes) {
  size_t n = static_cast<size_t>(DtPdu::headerLength(bytes));
  return n < static_cast<size_t>(DtPdu::kHeaderSize) ? static_cast<size_t>(DtPdu::kHeaderSize) : n;
}

inline unsigned int u8(const void* bytes, size_t offset) {
  return offset < extent(bytes) ? static_cast<const unsigned char*>(bytes)[offset] : 0u;
}

inline unsigned int u16(const void* bytes, size_t offset) {
  return (u8(bytes, offset) << 8) | u8(bytes, offset + 1);
}

inline uint32_t u32(const void* bytes, size_t offset) {
  return (uint32_t(u16(bytes, offset)) << 16) | u16(bytes, offset + 2);
}

/// The viewer command of raw control PDU bytes.
inline unsigned int command(const void* bytes) {
  return u16(bytes, 146);
}

}  // namespace rawpdu
