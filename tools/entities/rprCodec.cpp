#include "rprCodec.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace vcrpr {

namespace {

// Writes big-endian fields, padding each to its octet boundary from the start of the
// value: every record here starts at offset 0 of the attribute, so the value's own
// offsets are the alignment the encoding rules ask for.
class Writer {
 public:
  void align(std::size_t boundary) {
    while (out_.size() % boundary) out_.push_back(0);
  }
  void u8(std::uint8_t v) { out_.push_back(v); }
  void u16(std::uint16_t v) {
    align(2);
    put(v, 2);
  }
  void f32(double v) {
    align(4);
    const float f = static_cast<float>(v);
    std::uint32_t bits;
    std::memcpy(&bits, &f, 4);
    put(bits, 4);
  }
  void f64(double v) {
    align(8);
    std::uint64_t bits;
    std::memcpy(&bits, &v, 8);
    put(bits, 8);
  }
  void vec32(const vcgeo::Vec3& v) { f32(v.x), f32(v.y), f32(v.z); }
  Bytes take() { return std::move(out_); }

 private:
  void put(std::uint64_t v, int n) {
    for (int i = n - 1; i >= 0; --i) out_.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
  }
  Bytes out_;
};

// Reads what Writer wrote; the caller has checked the length first, so reads stay inside.
class Reader {
 public:
  explicit Reader(const std::uint8_t* p) : p_(p) {}
  void align(std::size_t boundary) { at_ = (at_ + boundary - 1) / boundary * boundary; }
  std::uint8_t u8() { return p_[at_++]; }
  std::uint16_t u16() {
    align(2);
    return static_cast<std::uint16_t>(get(2));
  }
  double f32() {
    align(4);
    const auto bits = static_cast<std::uint32_t>(get(4));
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
  }
  double f64() {
    align(8);
    const std::uint64_t bits = get(8);
    double d;
    std::memcpy(&d, &bits, 8);
    return d;
  }
  vcgeo::Vec3 vec32() {
    const double x = f32(), y = f32();
    return {x, y, f32()};
  }

 private:
  std::uint64_t get(int n) {
    std::uint64_t v = 0;
    for (int i = 0; i < n; ++i) v = (v << 8) | p_[at_++];
    return v;
  }
  const std::uint8_t* p_;
  std::size_t at_ = 0;
};

bool hasVelocity(DrAlgorithm a) {
  return a >= DrAlgorithm::FPW && a <= DrAlgorithm::FVB;
}
bool hasAcceleration(DrAlgorithm a) {
  return a == DrAlgorithm::RVW || a == DrAlgorithm::FVW || a == DrAlgorithm::RVB ||
         a == DrAlgorithm::FVB;
}
bool hasAngularVelocity(DrAlgorithm a) {
  return a == DrAlgorithm::RPW || a == DrAlgorithm::RVW || a == DrAlgorithm::RPB ||
         a == DrAlgorithm::RVB;
}
bool known(std::uint8_t a) {
  return a >= 1 && a <= 9;
}

constexpr std::size_t kMarkingChars = 11;

}  // namespace

const std::vector<std::string>& entityAttributeNames() {
  static const std::vector<std::string> names = {"EntityIdentifier", "EntityType", "Spatial",
                                                 "Marking"};
  return names;
}

const char* faultName(Fault f) {
  switch (f) {
    case Fault::None:
      return "none";
    case Fault::WrongLength:
      return "wrong length";
    case Fault::UnknownAlgorithm:
      return "unknown dead-reckoning algorithm";
    case Fault::NotFinite:
      return "number not finite";
    case Fault::BadText:
      return "unprintable marking";
  }
  return "?";
}

std::string EntityId::text() const {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%u:%u:%u", unsigned(site), unsigned(application),
                unsigned(entity));
  return buf;
}

bool EntityId::parse(const std::string& text, EntityId* out) {
  unsigned long parts[3];
  const char* p = text.c_str();
  for (int i = 0; i < 3; ++i) {
    if (*p < '0' || *p > '9') return false;
    unsigned long v = 0;
    while (*p >= '0' && *p <= '9') {
      v = v * 10 + static_cast<unsigned long>(*p++ - '0');
      if (v > 65535) return false;
    }
    parts[i] = v;
    if (i < 2 && *p++ != ':') return false;
  }
  if (*p) return false;
  out->site = static_cast<std::uint16_t>(parts[0]);
  out->application = static_cast<std::uint16_t>(parts[1]);
  out->entity = static_cast<std::uint16_t>(parts[2]);
  return true;
}

std::string EntityType::text() const {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%u.%u.%u.%u.%u.%u.%u", unsigned(kind), unsigned(domain),
                unsigned(country), unsigned(category), unsigned(subcategory), unsigned(specific),
                unsigned(extra));
  return buf;
}

const char* algorithmName(DrAlgorithm a) {
  static const char* const names[] = {"Other",   "Static",  "DRM_FPW", "DRM_RPW", "DRM_RVW",
                                      "DRM_FVW", "DRM_FPB", "DRM_RPB", "DRM_RVB", "DRM_FVB"};
  const auto i = static_cast<unsigned>(a);
  return i < 10 ? names[i] : "unknown";
}

bool isBodyAxis(DrAlgorithm a) {
  return a >= DrAlgorithm::FPB && a <= DrAlgorithm::FVB;
}

std::size_t spatialLength(DrAlgorithm a) {
  if (!known(static_cast<std::uint8_t>(a))) return 0;
  std::size_t n = 48;
  if (hasVelocity(a)) n += 12;
  if (hasAcceleration(a)) n += 12;
  if (hasAngularVelocity(a)) n += 12;
  return n;
}

Bytes encode(const EntityId& v) {
  Writer w;
  w.u16(v.site), w.u16(v.application), w.u16(v.entity);
  return w.take();
}

Bytes encode(const EntityType& v) {
  Writer w;
  w.u8(v.kind), w.u8(v.domain), w.u16(v.country);
  w.u8(v.category), w.u8(v.subcategory), w.u8(v.specific), w.u8(v.extra);
  return w.take();
}

Bytes encode(const Spatial& v) {
  Writer w;
  w.u8(static_cast<std::uint8_t>(v.algorithm));
  if (!known(static_cast<std::uint8_t>(v.algorithm))) return w.take();
  w.align(8);  // every alternative holds 64-bit floats
  w.f64(v.worldLocation.x), w.f64(v.worldLocation.y), w.f64(v.worldLocation.z);
  w.u8(v.isFrozen ? 1 : 0);
  w.f32(v.orientation.psi), w.f32(v.orientation.theta), w.f32(v.orientation.phi);
  if (hasVelocity(v.algorithm)) w.vec32(v.velocity);
  if (hasAcceleration(v.algorithm)) w.vec32(v.acceleration);
  if (hasAngularVelocity(v.algorithm)) w.vec32(v.angularVelocity);
  return w.take();
}

Bytes encodeMarking(const std::string& text) {
  Bytes out(1 + kMarkingChars, 0);
  out[0] = 1;  // ASCII
  for (std::size_t i = 0; i < kMarkingChars && i < text.size(); ++i)
    out[1 + i] = static_cast<std::uint8_t>(text[i]);
  return out;
}

Fault decode(const std::uint8_t* data, std::size_t size, EntityId* out) {
  if (size != 6) return Fault::WrongLength;
  Reader r(data);
  out->site = r.u16(), out->application = r.u16(), out->entity = r.u16();
  return Fault::None;
}

Fault decode(const std::uint8_t* data, std::size_t size, EntityType* out) {
  if (size != 8) return Fault::WrongLength;
  Reader r(data);
  out->kind = r.u8(), out->domain = r.u8(), out->country = r.u16();
  out->category = r.u8(), out->subcategory = r.u8(), out->specific = r.u8();
  out->extra = r.u8();
  return Fault::None;
}

Fault decode(const std::uint8_t* data, std::size_t size, Spatial* out) {
  if (size < 1) return Fault::WrongLength;
  const auto algorithm = static_cast<DrAlgorithm>(data[0]);
  if (!known(data[0])) return Fault::UnknownAlgorithm;
  if (size != spatialLength(algorithm)) return Fault::WrongLength;
  Reader r(data);
  Spatial s;
  s.algorithm = static_cast<DrAlgorithm>(r.u8());
  {
    const double x = r.f64(), y = r.f64();
    s.worldLocation = {x, y, r.f64()};
  }
  // RPRboolean: any value but 0 is taken as true, as a receiver of a bool would.
  s.isFrozen = r.u8() != 0;
  {
    const double psi = r.f32(), theta = r.f32();
    s.orientation = {psi, theta, r.f32()};
  }
  if (hasVelocity(algorithm)) s.velocity = r.vec32();
  if (hasAcceleration(algorithm)) s.acceleration = r.vec32();
  if (hasAngularVelocity(algorithm)) s.angularVelocity = r.vec32();
  const vcgeo::Vec3 angles{s.orientation.psi, s.orientation.theta, s.orientation.phi};
  if (!vcgeo::finite(s.worldLocation) || !vcgeo::finite(angles) || !vcgeo::finite(s.velocity) ||
      !vcgeo::finite(s.acceleration) || !vcgeo::finite(s.angularVelocity))
    return Fault::NotFinite;
  *out = s;
  return Fault::None;
}

Fault decodeMarking(const std::uint8_t* data, std::size_t size, std::string* out) {
  if (size != 1 + kMarkingChars) return Fault::WrongLength;
  std::string text;
  for (std::size_t i = 1; i < size && data[i]; ++i) {
    if (data[i] < 0x20 || data[i] > 0x7e) return Fault::BadText;
    text.push_back(static_cast<char>(data[i]));
  }
  *out = text;
  return Fault::None;
}

}  // namespace vcrpr
