#include "vdcObjectPdu.h"

#include <climits>
#include <cmath>
#include <variant>

namespace vdcobj {

void identify(DtVistrelDrawControlPdu& pdu, unsigned int id, DtVdcDrawType type) {
  pdu.setObjectId(DtNetU32(id));
  pdu.setType(DtNetU32(static_cast<unsigned int>(type)));
}

int truncated(double v) {
  if (std::isnan(v)) return 0;
  if (v >= static_cast<double>(INT_MAX)) return INT_MAX;
  if (v <= static_cast<double>(INT_MIN)) return INT_MIN;
  return static_cast<int>(v);
}

std::array<char, 2> screenPercent(const DtVdcVector2D& position) {
  return {static_cast<char>(lowByte(truncated(200.0 * position.x() - 100.0))),
          static_cast<char>(lowByte(truncated(200.0 * position.y() - 100.0)))};
}

void attachToScreen(DtVdcAttachablePdu& pdu, const DtVdcVector2D& position) {
  std::array<char, 2> percent = screenPercent(position);
  pdu.attachTo(percent.data());
}

std::array<unsigned char, 4> colorBytes(const DtVdcColor& color) {
  return {lowByte(color.red()), lowByte(color.green()), lowByte(color.blue()),
          lowByte(color.alpha())};
}

void setColor(DtVdcAttachablePdu& pdu, const DtVdcColor& color) {
  std::array<unsigned char, 4> rgba = colorBytes(color);
  pdu.setColor(rgba.data());
}

double rad2Deg(double radians) {
  return radians * (180.0 / M_PI);
}

DtTaitBryan screenRotation(double radians) {
  return DtTaitBryan(0.0, 0.0, rad2Deg(radians));
}

DtVector64 doubled(const DtVdcVector2D& extent) {
  DtVdcVector2D twice;
  DtVecScale(extent, 2.0, twice);
  return twice.vector3D();
}

namespace {
// An attach point as the argument of the attachTo overload of its kind.
using Anchor = std::variant<DtVector64, DtString, DtNetU32>;

// False for an attachment type that names no anchor.
bool anchorOf(const DtVdc3DAttachPoint& point, Anchor& anchor) {
  switch (point.attachmentType()) {
    case DtVdc3DAttachPoint::DtVdcAttachNone:
      anchor = DtVector64();
      return true;
    case DtVdc3DAttachPoint::DtVdcAttachLocation:
      anchor = point.location();
      return true;
    case DtVdc3DAttachPoint::DtVdcAttachEntity:
      anchor = point.entityId();
      return true;
    case DtVdc3DAttachPoint::DtVdcAttachDrawObject:
      anchor = DtNetU32(point.drawObjectId());
      return true;
  }
  return false;
}

// A drawing-object anchor also says how far along that object it sits.
void setRelativeLocation(DtVdcAttachablePdu& pdu, const DtVdc3DAttachPoint& point, int which) {
  if (point.attachmentType() == DtVdc3DAttachPoint::DtVdcAttachDrawObject)
    pdu.setRelativeLocation(lowByte(truncated(point.relativePosition())), which);
}
}  // namespace

void attach(DtVdcAttachablePdu& pdu, const DtVdc3DAttachPoint& point) {
  Anchor anchor;
  if (!anchorOf(point, anchor)) return;
  std::visit([&](const auto& a) { pdu.attachTo(a); }, anchor);
  setRelativeLocation(pdu, point, 0);
}

void attach(DtVdcAttachablePdu& pdu, const DtVdc3DAttachPoint& start,
            const DtVdc3DAttachPoint& end) {
  Anchor first, second;
  if (!anchorOf(start, first) || !anchorOf(end, second)) return;
  std::visit([&](const auto& a, const auto& b) { pdu.attachTo(a, b); }, first, second);
  setRelativeLocation(pdu, start, 0);
  setRelativeLocation(pdu, end, 1);
}

}  // namespace vdcobj
