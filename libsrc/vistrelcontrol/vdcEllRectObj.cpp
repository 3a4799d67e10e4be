#include "vdcEllRectObj.h"

#include "vdcObjectPdu.h"

DtVdcEllRectBase::DtVdcEllRectBase(unsigned int id, const DtVdcVector2D& position,
                                   const DtVdcVector2D& size, double rotation, DtVdcColor color,
                                   bool fill, unsigned int pattern, bool flashing)
    : DtVdcObject(id),
      position_(position),
      size_(size),
      color_(color),
      pattern_(pattern),
      fill_(fill),
      rotation_(rotation),
      flashing_(flashing) {
  pdu_.setObjectId(DtNetU32(id));
  updatePdu();
  // Placed on the screen: no scene offset.
  pdu_.setOffset(DtVector64());
}

DtVdcEllRectBase::~DtVdcEllRectBase() = default;

DtVdcPolyObjectPdu& DtVdcEllRectBase::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcEllRectBase, DtVdcVector2D, position, setPosition, position_)
VDC_FIELD(DtVdcEllRectBase, DtVdcVector2D, size, setSize, size_)
VDC_2D_STYLE(DtVdcEllRectBase)

void DtVdcEllRectBase::updatePdu() {
  setPduAttach();
  setPduScale();
  setPduColor();
  setPduFlashing();
  setPduPattern();
  setPduRotation();
  setPduFill();
}

void DtVdcEllRectBase::setPduAttach() {
  vdcobj::attachToScreen(pdu_, position_);
}
void DtVdcEllRectBase::setPduScale() {
  pdu_.setScale(vdcobj::doubled(size_));
}

// The two screen shapes differ only in the kind the viewer draws.
#define VDC_ELL_RECT(Class, type)                                                                 \
  Class::Class(unsigned int id, const DtVdcVector2D& position, const DtVdcVector2D& size,         \
               double rotation, DtVdcColor color, bool fill, unsigned int pattern, bool flashing) \
      : DtVdcEllRectBase(id, position, size, rotation, color, fill, pattern, flashing) {          \
    pdu().setType(DtNetU32(type));                                                                \
  }                                                                                               \
  Class::~Class() = default;

VDC_ELL_RECT(DtVdcEllipseObject, DtVdcCircle)
VDC_ELL_RECT(DtVdcRectangleObject, DtVdcSquare)
