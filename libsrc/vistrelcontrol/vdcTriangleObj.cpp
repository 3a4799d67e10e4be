#include "vdcTriangleObj.h"

#include "vdcObjectPdu.h"

// ------------------------------------------------------------------ 2D triangle

DtVdcTriangle2DObject::DtVdcTriangle2DObject(
    unsigned int id, const DtVdcVector2D& vertex1, const DtVdcVector2D& vertex2,
    const DtVdcVector2D& vertex3, const DtVdcVector2D& offset, const DtVdcVector2D& scale,
    double rotation, DtVdcColor color, bool fill, unsigned int pattern, bool flashing)
    : DtVdcObject(id),
      vertex1_(vertex1),
      vertex2_(vertex2),
      vertex3_(vertex3),
      offset_(offset),
      scale_(scale),
      color_(color),
      pattern_(pattern),
      fill_(fill),
      rotation_(rotation),
      flashing_(flashing) {
  vdcobj::identify(pdu_, id, DtVdc2DTriangle);
  updatePdu();
  // The screen origin is the anchor; there is no scene offset.
  pdu_.setOffset(DtVector64());
}

DtVdcTriangle2DObject::~DtVdcTriangle2DObject() = default;

DtVdcTrianglePdu& DtVdcTriangle2DObject::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcTriangle2DObject, DtVdcVector2D, vertex1, setVertex1, vertex1_)
VDC_FIELD(DtVdcTriangle2DObject, DtVdcVector2D, vertex2, setVertex2, vertex2_)
VDC_FIELD(DtVdcTriangle2DObject, DtVdcVector2D, vertex3, setVertex3, vertex3_)
VDC_FIELD(DtVdcTriangle2DObject, DtVdcVector2D, offset, setOffset, offset_)
VDC_FIELD(DtVdcTriangle2DObject, DtVdcVector2D, scale, setScale, scale_)
VDC_2D_STYLE(DtVdcTriangle2DObject)

void DtVdcTriangle2DObject::updatePdu() {
  setPduAttach();
  setPduVertices();
  setPduScale();
  setPduColor();
  setPduFlashing();
  setPduPattern();
  setPduRotation();
  setPduFill();
}

void DtVdcTriangle2DObject::setPduAttach() {
  vdcobj::attachToScreen(pdu_, offset_);
}

void DtVdcTriangle2DObject::setPduVertices() {
  pdu_.setPoint(0, vdcobj::doubled(vertex1_));
  pdu_.setPoint(1, vdcobj::doubled(vertex2_));
  pdu_.setPoint(2, vdcobj::doubled(vertex3_));
}

void DtVdcTriangle2DObject::setPduScale() {
  pdu_.setScale(scale_.vector3D());
}

// ------------------------------------------------------------------ 3D triangle

DtVdcTriangle3DObject::DtVdcTriangle3DObject(unsigned int id, const DtVector64& vertex1,
                                             const DtVector64& vertex2, const DtVector64& vertex3,
                                             DtVdcColor color, bool flashing)
    : DtVdcObject(id),
      vertex1_(vertex1),
      vertex2_(vertex2),
      vertex3_(vertex3),
      color_(color),
      flashing_(flashing) {
  vdcobj::identify(pdu_, id, DtVdc3DTriangle);
  updatePdu();
}

DtVdcTriangle3DObject::~DtVdcTriangle3DObject() = default;

DtVdcTrianglePdu& DtVdcTriangle3DObject::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcTriangle3DObject, DtVector64, vertex1, setVertex1, vertex1_)
VDC_FIELD(DtVdcTriangle3DObject, DtVector64, vertex2, setVertex2, vertex2_)
VDC_FIELD(DtVdcTriangle3DObject, DtVector64, vertex3, setVertex3, vertex3_)
VDC_COLOR_FLASHING(DtVdcTriangle3DObject)

void DtVdcTriangle3DObject::updatePdu() {
  setPduPoints();
  setPduColor();
  setPduFlashing();
}

void DtVdcTriangle3DObject::setPduPoints() {
  pdu_.setPoint(0, vertex1_);
  pdu_.setPoint(1, vertex2_);
  pdu_.setPoint(2, vertex3_);
}
