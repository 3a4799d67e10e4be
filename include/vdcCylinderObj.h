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
  virtual DtVdc3DAttachPoint attachment() const;
  virtual DtVdc3DAttachPoint& attachment();
  virtual void setAttachment(const DtVdc3DAttachPoint& attachment);
  virtual DtVdc3DAttachPoint startAttachment() const;
  virtual DtVdc3DAttachPoint& startAttachment();
  virtual void setStartAttachment(const DtVdc3DAttachPoint& attachment);
  virtual DtVdc3DAttachPoint endAttachment() const;
  virtual DtVdc3DAttachPoint& endAttachment();
  virtual void setEndAttachment(const DtVdc3DAttachPoint& attachment);
  virtual DtVector64 enuOffset() const;
  virtual DtVector64& enuOffset();
  virtual void setEnuOffset(const DtVector64& offset);
  virtual double length() const;
  virtual void setLength(double length);
  virtual DtVdcVector2D diameters() const;
  virtual DtVdcVector2D& diameters();
  virtual void setDiameters(const DtVdcVector2D& diameters);
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
