#include "vdcEllipsoidCuboidBase.h"

#include "vdcObjectPdu.h"

const DtTaitBryan DtVdcEllipsoidCuboidBase::zeros(0.0, 0.0, 0.0);

DtVdcEllipsoidCuboidBase::DtVdcEllipsoidCuboidBase(
    unsigned int id, const DtVdc3DAttachPoint& attachment, const DtVector64& dimensions,
    const DtVector64& enuOffset, const DtTaitBryan& rotation, DtVdcColor color, bool flashing)
    : DtVdcObject(id),
      dimensions_(dimensions),
      attachment_(attachment),
      enuOffset_(enuOffset),
      color_(color),
      rotation_(rotation),
      flashing_(flashing) {
  pdu_.setObjectId(DtNetU32(id));
  updatePdu();
}

DtVdcEllipsoidCuboidBase::~DtVdcEllipsoidCuboidBase() = default;

DtVdcPolyObjectPdu& DtVdcEllipsoidCuboidBase::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcEllipsoidCuboidBase, DtVdc3DAttachPoint, attachment, setAttachment, attachment_)
VDC_3D_STYLE(DtVdcEllipsoidCuboidBase)

void DtVdcEllipsoidCuboidBase::updatePdu() {
  setPduAttach();
  setPduScale();
  setPduOffset();
  setPduColor();
  setPduFlashing();
  setPduRotation();
}

void DtVdcEllipsoidCuboidBase::setPduAttach() {
  vdcobj::attach(pdu_, attachment_);
}

// The wire carries these solids' dimensions doubled (the cylinder's as they are).
void DtVdcEllipsoidCuboidBase::setPduScale() {
  pdu_.setScale(dimensions_ * 2.0);
}
