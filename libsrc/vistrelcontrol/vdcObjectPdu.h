#pragma once
// What the drawing objects share when they fill their PDUs: the conversions of the
// wire format (screen fractions to signed percentages, channels and counts cut to
// bytes, radians to the degrees a 2D shape's rotation carries) and the attach-point
// rules. Kept in one place so that every object converts the same way.
#include <array>

#include "dtVector.h"
#include "vdc3DAttachPoint.h"
#include "vdcAttachablePdu.h"
#include "vdcColor.h"
#include "vdcVector2D.h"

namespace vdcobj {

/// A new object's PDU takes the object's identifier and its draw type.
void identify(DtVistrelDrawControlPdu& pdu, unsigned int id, DtVdcDrawType type);

/// Towards zero, as a C cast would; values beyond the int range (and NaN) saturate
/// instead of being undefined.
int truncated(double v);

/// The low 8 bits, as the one-byte wire fields keep them (300 becomes 44).
inline unsigned char lowByte(long long v) {
  return static_cast<unsigned char>(v);
}

/// A screen fraction 0..1 as the signed percentage -100..100 the wire carries:
/// truncate(200 c - 100), kept to 8 bits.
std::array<char, 2> screenPercent(const DtVdcVector2D& position);

/// Anchors a 2D drawing at a screen position (one-point percentage form).
void attachToScreen(DtVdcAttachablePdu& pdu, const DtVdcVector2D& position);

/// Red, green, blue, alpha, each cut to 8 bits.
std::array<unsigned char, 4> colorBytes(const DtVdcColor& color);
void setColor(DtVdcAttachablePdu& pdu, const DtVdcColor& color);

/// Radians to degrees.
double rad2Deg(double radians);
/// A 2D shape's rotation: degrees in the third angle, the other two zero.
DtTaitBryan screenRotation(double radians);
/// A 2D extent doubled and widened to (2x, 2y, 0), as the wire carries screen sizes.
DtVector64 doubled(const DtVdcVector2D& extent);

/// One attach point: its anchor written with the one-point attachTo, and for a drawing
/// object the percentage along it as relative location 0. An unknown attachment type
/// leaves the PDU's anchoring as it was.
void attach(DtVdcAttachablePdu& pdu, const DtVdc3DAttachPoint& point);
/// Two attach points with the two-point attachTo that fits their kinds; a drawing-object
/// end sets its relative location (0 start, 1 end). Either end of unknown type leaves
/// the PDU's anchoring as it was.
void attach(DtVdcAttachablePdu& pdu, const DtVdc3DAttachPoint& start,
            const DtVdc3DAttachPoint& end);

}  // namespace vdcobj

// Accessor definitions that most drawing objects repeat field by field.

/// A copy getter, a reference getter and a setter.
#define VDC_FIELD(Class, Type, get, set, member) \
  Type Class::get() const {                      \
    return member;                               \
  }                                              \
  Type& Class::get() {                           \
    return member;                               \
  }                                              \
  void Class::set(const Type& value) {           \
    member = value;                              \
  }

/// A getter and a setter of a value field.
#define VDC_VALUE(Class, Type, get, set, member) \
  Type Class::get() const {                      \
    return member;                               \
  }                                              \
  void Class::set(Type value) {                  \
    member = value;                              \
  }

/// The colour and flashing accessors that every placed drawing has, with the two PDU
/// writers that go with them.
#define VDC_COLOR_FLASHING(Class)                          \
  VDC_FIELD(Class, DtVdcColor, color, setColor, color_)    \
  VDC_VALUE(Class, bool, flashing, setFlashing, flashing_) \
  void Class::setPduColor() {                              \
    vdcobj::setColor(pdu_, color_);                        \
  }                                                        \
  void Class::setPduFlashing() {                           \
    pdu_.setFlashing(flashing_);                           \
  }

/// The accessors and PDU writers of DT_VDC_2D_STYLE_ACCESSORS.
#define VDC_2D_STYLE(Class)                                     \
  VDC_VALUE(Class, double, rotation, setRotation, rotation_)    \
  VDC_VALUE(Class, bool, fill, setFill, fill_)                  \
  VDC_VALUE(Class, unsigned int, pattern, setPattern, pattern_) \
  VDC_COLOR_FLASHING(Class)                                     \
  void Class::setPduFill() {                                    \
    pdu_.setFill(fill_);                                        \
  }                                                             \
  void Class::setPduRotation() {                                \
    pdu_.setRotation(vdcobj::screenRotation(rotation_));        \
  }                                                             \
  void Class::setPduPattern() {                                 \
    pdu_.setPattern(DtNetU32(pattern_));                        \
  }

/// The accessors and the shared PDU writers of DT_VDC_3D_STYLE_ACCESSORS, with the
/// east-north-up offset that every scene shape declares before them; attach and scale
/// are each shape's own.
#define VDC_3D_STYLE(Class)                                         \
  VDC_FIELD(Class, DtTaitBryan, rotation, setRotation, rotation_)   \
  VDC_FIELD(Class, DtVector64, enuOffset, setEnuOffset, enuOffset_) \
  VDC_COLOR_FLASHING(Class)                                         \
  void Class::setPduOffset() {                                      \
    pdu_.setOffset(enuOffset_);                                     \
  }                                                                 \
  void Class::setPduRotation() {                                    \
    pdu_.setRotation(rotation_);                                    \
  }
