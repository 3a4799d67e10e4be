#include "vdcCylinderObj.h"

#include "vdcObjectPdu.h"

const DtTaitBryan DtVdcCylinderObject::zeros(0.0, 0.0, 0.0);

DtVdcCylinderObject::DtVdcCylinderObject(unsigned int id, const DtVdc3DAttachPoint& start,
                                         const DtVdc3DAttachPoint& end,
                                         const DtVdcVector2D& diameters,
                                         const DtVector64& enuOffset, DtVdcColor color,
                                         bool flashing)
    : DtVdcObject(id),
      startAttachment_(start),
      endAttachment_(end),
      length_(0.0),
      diameters_(diameters),
      enuOffset_(enuOffset),
      rotation_(zeros),
      color_(color),
      flashing_(flashing) {
  vdcobj::identify(pdu_, id, DtVdcCylinder);
  updatePdu();
}

DtVdcCylinderObject::~DtVdcCylinderObject() = default;

DtVdcPolyObjectPdu& DtVdcCylinderObject::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcCylinderObject, DtVdc3DAttachPoint, attachment, setAttachment, startAttachment_)
VDC_FIELD(DtVdcCylinderObject, DtVdc3DAttachPoint, startAttachment, setStartAttachment,
          startAttachment_)
VDC_FIELD(DtVdcCylinderObject, DtVdc3DAttachPoint, endAttachment, setEndAttachment, endAttachment_)
VDC_VALUE(DtVdcCylinderObject, double, length, setLength, length_)
VDC_FIELD(DtVdcCylinderObject, DtVdcVector2D, diameters, setDiameters, diameters_)
VDC_3D_STYLE(DtVdcCylinderObject)

void DtVdcCylinderObject::updatePdu() {
  setPduAttach();
  setPduScale();
  setPduOffset();
  setPduColor();
  setPduFlashing();
  setPduRotation();
}

// An unused end leaves a cylinder standing on its start alone.
void DtVdcCylinderObject::setPduAttach() {
  if (endAttachment_.attachmentType() == DtVdc3DAttachPoint::DtVdcAttachNone)
    vdcobj::attach(pdu_, startAttachment_);
  else
    vdcobj::attach(pdu_, startAttachment_, endAttachment_);
}

void DtVdcCylinderObject::setPduScale() {
  pdu_.setScale(DtVector64(length_, diameters_.x(), diameters_.y()));
}
