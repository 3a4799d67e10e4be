#include "vdcTextObj.h"

#include "vdcObjectPdu.h"

// ------------------------------------------------------------------ 2D text

DtVdcText2DObject::DtVdcText2DObject(unsigned int id, const DtString& text,
                                     const DtVdcVector2D& position, DtVdcColor color, bool flashing)
    : DtVdcObject(id), position_(position), color_(color), flashing_(flashing), text_(text) {
  vdcobj::identify(pdu_, id, DtVdc2DText);
  updatePdu();
  // Placed on the screen: no scene offset.
  pdu_.setOffset(DtVector64());
}

DtVdcText2DObject::~DtVdcText2DObject() = default;

DtVdcTextPdu& DtVdcText2DObject::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcText2DObject, DtString, text, setText, text_)
VDC_FIELD(DtVdcText2DObject, DtVdcVector2D, position, setPosition, position_)
VDC_COLOR_FLASHING(DtVdcText2DObject)

void DtVdcText2DObject::updatePdu() {
  setPduText();
  setPduAttach();
  setPduColor();
  setPduFlashing();
}

void DtVdcText2DObject::setPduAttach() {
  vdcobj::attachToScreen(pdu_, position_);
}
void DtVdcText2DObject::setPduText() {
  pdu_.setText(text_);
}

// ------------------------------------------------------------------ 3D text

DtVdcText3DObject::DtVdcText3DObject(unsigned int id, const DtString& text,
                                     const DtVdc3DAttachPoint& attachment,
                                     const DtVector64& enuOffset, DtVdcColor color, bool flashing)
    : DtVdcObject(id),
      attachment_(attachment),
      enuOffset_(enuOffset),
      color_(color),
      flashing_(flashing),
      text_(text) {
  vdcobj::identify(pdu_, id, DtVdc3DText);
  updatePdu();
}

DtVdcText3DObject::~DtVdcText3DObject() = default;

DtVdcTextPdu& DtVdcText3DObject::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcText3DObject, DtString, text, setText, text_)
VDC_FIELD(DtVdcText3DObject, DtVdc3DAttachPoint, attachment, setAttachment, attachment_)
VDC_FIELD(DtVdcText3DObject, DtVector64, enuOffset, setEnuOffset, enuOffset_)
VDC_COLOR_FLASHING(DtVdcText3DObject)

void DtVdcText3DObject::updatePdu() {
  setPduText();
  setPduAttach();
  setPduOffset();
  setPduColor();
  setPduFlashing();
}

void DtVdcText3DObject::setPduAttach() {
  vdcobj::attach(pdu_, attachment_);
}
void DtVdcText3DObject::setPduOffset() {
  pdu_.setOffset(enuOffset_);
}
void DtVdcText3DObject::setPduText() {
  pdu_.setText(text_);
}
