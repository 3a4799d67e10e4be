#pragma once
#include <cstdint>
#include <cstring>

#include "dtExport.h"
#include "dtString.h"
#include "dtVector.h"

// Network (big-endian) field types. Each holds its value in wire order and converts to
// and from the host value, so a struct of them has the exact layout of the wire.

namespace DtByteOrder {
inline uint16_t toNet16(uint16_t v) {
  return __builtin_bswap16(v);
}
inline uint32_t toNet32(uint32_t v) {
  return __builtin_bswap32(v);
}
inline uint64_t toNet64(uint64_t v) {
  return __builtin_bswap64(v);
}
inline uint32_t floatBits(float f) {
  uint32_t b;
  std::memcpy(&b, &f, 4);
  return b;
}
inline float bitsFloat(uint32_t b) {
  float f;
  std::memcpy(&f, &b, 4);
  return f;
}
inline uint64_t doubleBits(double d) {
  uint64_t b;
  std::memcpy(&b, &d, 8);
  return b;
}
inline double bitsDouble(uint64_t b) {
  double d;
  std::memcpy(&d, &b, 8);
  return d;
}
}  // namespace DtByteOrder

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "the network field types assume a little-endian host");

/// Unsigned 16-bit field in network order.
class DtNetU16 {
 public:
  DtNetU16(unsigned int v = 0) : net_(DtByteOrder::toNet16(static_cast<uint16_t>(v))) {}
  operator unsigned int() const { return DtByteOrder::toNet16(net_); }
  unsigned int value() const { return DtByteOrder::toNet16(net_); }

 private:
  uint16_t net_;
};

/// Unsigned 32-bit field in network order.
class DtNetU32 {
 public:
  DtNetU32(unsigned int v = 0) : net_(DtByteOrder::toNet32(v)) {}
  operator unsigned int() const { return DtByteOrder::toNet32(net_); }
  unsigned int value() const { return DtByteOrder::toNet32(net_); }

 private:
  uint32_t net_;
};

/// Signed 32-bit field in network order.
class DtNetInt32 {
 public:
  DtNetInt32(int v = 0) : net_(DtByteOrder::toNet32(static_cast<uint32_t>(v))) {}
  operator int() const { return static_cast<int>(DtByteOrder::toNet32(net_)); }
  int value() const { return static_cast<int>(DtByteOrder::toNet32(net_)); }

 private:
  uint32_t net_;
};

/// IEEE 754 single-precision field in network order.
class DtNetFloat32 {
 public:
  DtNetFloat32(float v = 0.0f) : net_(DtByteOrder::toNet32(DtByteOrder::floatBits(v))) {}
  operator float() const { return DtByteOrder::bitsFloat(DtByteOrder::toNet32(net_)); }
  float value() const { return DtByteOrder::bitsFloat(DtByteOrder::toNet32(net_)); }

 private:
  uint32_t net_;
};

/// IEEE 754 double-precision field in network order.
class DtNetFloat64 {
 public:
  DtNetFloat64(double v = 0.0) : net_(DtByteOrder::toNet64(DtByteOrder::doubleBits(v))) {}
  operator double() const { return DtByteOrder::bitsDouble(DtByteOrder::toNet64(net_)); }
  double value() const { return DtByteOrder::bitsDouble(DtByteOrder::toNet64(net_)); }

 private:
  uint64_t net_;
};

/// Orientation on the wire: heading (psi), pitch (theta), roll (phi) as three
/// single-precision floats. Building it from a DtTaitBryan narrows each angle.
class DtNetEulerAngles {
 public:
  DtNetEulerAngles() = default;
  DtNetEulerAngles(const DtTaitBryan& a)  // NOLINT: implicit by design
      : psi_(static_cast<float>(a.psi())),
        theta_(static_cast<float>(a.theta())),
        phi_(static_cast<float>(a.phi())) {}
  operator DtTaitBryan() const { return DtTaitBryan(float(psi_), float(theta_), float(phi_)); }
  float psi() const { return psi_; }
  float theta() const { return theta_; }
  float phi() const { return phi_; }

 private:
  DtNetFloat32 psi_, theta_, phi_;
};

/// An object identifier on the wire: 64 bytes holding the text, NUL-terminated and
/// zero-padded. A text of more than 63 bytes is cut at 63 so the terminator always fits;
/// reading stops at the first NUL or after 64 bytes, whichever comes first.
class DT_EXPORT DtNetGlobalObjectDesignator {
 public:
  static constexpr size_t kSize = 64;

  DtNetGlobalObjectDesignator() { std::memset(bytes_, 0, kSize); }
  DtNetGlobalObjectDesignator(const DtString& text) { *this = text; }  // NOLINT
  DtNetGlobalObjectDesignator& operator=(const DtString& text);
  DtString string() const;
  operator DtString() const { return string(); }
  const unsigned char* bytes() const { return bytes_; }

  /// Encodes `text` into the 64 bytes at `out`.
  static void encode(const char* text, unsigned char* out);
  /// Decodes the 64 bytes at `in`.
  static DtString decode(const unsigned char* in);

 private:
  unsigned char bytes_[kSize];
};

static_assert(sizeof(DtNetU16) == 2 && sizeof(DtNetU32) == 4 && sizeof(DtNetFloat64) == 8,
              "network field types must have their wire size");
static_assert(sizeof(DtNetEulerAngles) == 12, "Euler angles are three floats on the wire");
static_assert(sizeof(DtNetGlobalObjectDesignator) == 64, "designators are 64 bytes");
