#pragma once
#include "dtString.h"
#include "dtVector.h"
#include "vdc3DAttachPoint.h"
#include "vdcColor.h"
#include "vdcObject.h"
#include "vdcTextPdu.h"
#include "vdcVector2D.h"

/// DtVdcText2DObject writes a text on the screen (type 2561) at a position given as
/// fractions 0..1 of the screen.
class DT_EXPORT DtVdcText2DObject : public DtVdcObject {
 public:
  DtVdcText2DObject(unsigned int id, const DtString& text, const DtVdcVector2D& position,
                    DtVdcColor color, bool flashing);
  ~DtVdcText2DObject() override;

  DtVdcTextPdu& pdu() override;
  /// Text, attach, colour, flashing.
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtString, text, setText)
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, position, setPosition)
  DT_VDC_COLOR_ACCESSORS
  DT_VDC_FLASHING_ACCESSORS

  virtual void setPduAttach();
  virtual void setPduColor();
  virtual void setPduFlashing();
  virtual void setPduText();

 private:
  DtVdcVector2D position_;
  DtVdcColor color_;
  bool flashing_;
  DtString text_;
  DtVdcTextPdu pdu_;
};

/// DtVdcText3DObject writes a text in the scene (type 2562) at an attach point, moved
/// by an east-north-up offset.
class DT_EXPORT DtVdcText3DObject : public DtVdcObject {
 public:
  DtVdcText3DObject(unsigned int id, const DtString& text, const DtVdc3DAttachPoint& attachment,
                    const DtVector64& enuOffset, DtVdcColor color, bool flashing);
  ~DtVdcText3DObject() override;

  DtVdcTextPdu& pdu() override;
  /// Text, attach, offset, colour, flashing.
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtString, text, setText)
  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, attachment, setAttachment)
  DT_VDC_FIELD_ACCESSORS(DtVector64, enuOffset, setEnuOffset)
  DT_VDC_COLOR_ACCESSORS
  DT_VDC_FLASHING_ACCESSORS

  virtual void setPduAttach();
  virtual void setPduOffset();
  virtual void setPduColor();
  virtual void setPduFlashing();
  virtual void setPduText();

 private:
  DtVdc3DAttachPoint attachment_;
  DtVector64 enuOffset_;
  DtVdcColor color_;
  bool flashing_;
  DtString text_;
  DtVdcTextPdu pdu_;
};
