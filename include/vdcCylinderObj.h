#pragma once
#include "dtVector.h"
#include "vdc3DAttachPoint.h"
#include "vdcColor.h"
#include "vdcObject.h"
#include "vdcPolyObjectPdu.h"
#include "vdcVector2D.h"

/// DtVdcCylinderObject: a cylinder in the scene (type 2545) with two cross-section
/// diameters, anchored by one end or by both (an end attachment of type 0 is unused).
/// Its length and orientation start at zero and are the application's to set; the
/// library does not derive them from the ends. Unlike the other solids, its extents go
/// to the viewer as they are.
class DT_EXPORT DtVdcCylinderObject : public DtVdcObject {
 public:
  static const DtTaitBryan zeros;

  DtVdcCylinderObject(unsigned int id, const DtVdc3DAttachPoint& start,
                      const DtVdc3DAttachPoint& end, const DtVdcVector2D& diameters,
                      const DtVector64& enuOffset, DtVdcColor color, bool flashing);
  ~DtVdcCylinderObject() override;

  DtVdcPolyObjectPdu& pdu() override;
  /// Attach, scale, offset, colour, flashing, rotation.
  void updatePdu() override;

  /// The start attachment under its other name.
  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, attachment, setAttachment)
  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, startAttachment, setStartAttachment)
  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, endAttachment, setEndAttachment)
  DT_VDC_FIELD_ACCESSORS(DtVector64, enuOffset, setEnuOffset)
  virtual double length() const;
  virtual void setLength(double length);
  DT_VDC_FIELD_ACCESSORS(DtVdcVector2D, diameters, setDiameters)
  DT_VDC_3D_STYLE_ACCESSORS

 private:
  DtVdc3DAttachPoint startAttachment_;
  DtVdc3DAttachPoint endAttachment_;
  double length_;
  DtVdcVector2D diameters_;
  DtVector64 enuOffset_;
  DtTaitBryan rotation_;
  DtVdcColor color_;
  bool flashing_;
  DtVdcPolyObjectPdu pdu_;
};
