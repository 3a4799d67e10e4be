#pragma once
// The RPR FOM 2.0 attribute values a viewer needs, encoded and decoded by the HLA
// encoding rules exactly as the modules declare them: big-endian numbers, each field of
// a fixed record starting at a multiple of its own octet boundary counted from the start
// of the record, no padding after the last field, and a variant record as its
// discriminant followed by padding up to the octet boundary of its alternatives.
//
//   EntityIdentifierStruct  6 bytes: SiteID, ApplicationID, EntityNumber (16 bits each)
//   EntityTypeStruct        8 bytes: Kind, Domain (8), CountryCode (16), Category,
//                                    Subcategory, Specific, Extra (8 each)
//   MarkingStruct          12 bytes: MarkingEncodingType (8), MarkingData (11 octets)
//   SpatialVariantStruct   DeadReckoningAlgorithm (8), 7 bytes of padding, then at 8:
//     WorldLocation X, Y, Z (float 64)          8..31
//     IsFrozen (8), 3 bytes of padding          32..35
//     Orientation psi, theta, phi (float 32)    36..47     Static ends here: 48 bytes
//     VelocityVector (3 x float 32)             48..59     FPW, FPB: 60 bytes
//     then AngularVelocity (RPW, RPB: 72), AccelerationVector (FVW, FVB: 72) or both,
//     acceleration first (RVW, RVB: 84).
//
// Decoders never trust what they are given: a wrong length, an unknown algorithm or a
// number that is not finite is reported, and the value is left as it was.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "geo.h"

namespace vcrpr {

using Bytes = std::vector<std::uint8_t>;

/// The entity attributes the tools exchange (of BaseEntity and PhysicalEntity), in the
/// order these indices give them.
enum EntityAttribute { kEntityIdentifier = 0, kEntityType = 1, kSpatial = 2, kMarking = 3 };
const std::vector<std::string>& entityAttributeNames();

/// Why a received value was not taken.
enum class Fault { None, WrongLength, UnknownAlgorithm, NotFinite, BadText };
const char* faultName(Fault f);

struct EntityId {
  std::uint16_t site = 0, application = 0, entity = 0;
  /// "site:app:entity", the form designators use.
  std::string text() const;
  /// Parses "site:app:entity" (three decimal numbers below 65536 and nothing else).
  static bool parse(const std::string& text, EntityId* out);
  friend bool operator==(const EntityId& a, const EntityId& b) {
    return a.site == b.site && a.application == b.application && a.entity == b.entity;
  }
};

struct EntityType {
  std::uint8_t kind = 0, domain = 0;
  std::uint16_t country = 0;
  std::uint8_t category = 0, subcategory = 0, specific = 0, extra = 0;
  std::string text() const;  // "kind.domain.country.category.subcategory.specific.extra"
};

/// The DeadReckoningAlgorithmEnum8 values; only Static to FVB have a Spatial alternative.
enum class DrAlgorithm : std::uint8_t {
  Other = 0,
  Static = 1,
  FPW = 2,
  RPW = 3,
  RVW = 4,
  FVW = 5,
  FPB = 6,
  RPB = 7,
  RVB = 8,
  FVB = 9
};
const char* algorithmName(DrAlgorithm a);  // "DRM_FPW" etc., "Static", "Other"
bool isBodyAxis(DrAlgorithm a);

/// One Spatial value. Which of velocity, acceleration and angular velocity travel depends
/// on the algorithm; the others are encoded by no one and decode as zero.
struct Spatial {
  DrAlgorithm algorithm = DrAlgorithm::Static;
  vcgeo::Vec3 worldLocation;  // geocentric metres
  bool isFrozen = false;
  vcgeo::Euler orientation;     // psi, theta, phi (32-bit floats on the wire)
  vcgeo::Vec3 velocity;         // m/s: world axes (xxW), body axes (xxB)
  vcgeo::Vec3 acceleration;     // m/s^2, same axes as the velocity
  vcgeo::Vec3 angularVelocity;  // rad/s, body axes
};

/// Length of the encoded Spatial for an algorithm; 0 for one without an alternative.
std::size_t spatialLength(DrAlgorithm a);

Bytes encode(const EntityId& v);
Bytes encode(const EntityType& v);
Bytes encode(const Spatial& v);
/// Marking text as ASCII (encoding type 1), cut at 11 characters, NUL-padded.
Bytes encodeMarking(const std::string& text);

Fault decode(const std::uint8_t* data, std::size_t size, EntityId* out);
Fault decode(const std::uint8_t* data, std::size_t size, EntityType* out);
Fault decode(const std::uint8_t* data, std::size_t size, Spatial* out);
/// The marking's text up to its first NUL. Characters outside printable ASCII are a
/// BadText: a viewer shows markings, and control bytes would garble what it shows.
Fault decodeMarking(const std::uint8_t* data, std::size_t size, std::string* out);

}  // namespace vcrpr
