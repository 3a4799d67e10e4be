#pragma once
#include "vdcEllipsoidCuboidBase.h"

/// DtVdcCuboidObject: a box in the scene (type 2544), `length` along x, `width` along y
/// and `height` along z before rotation.
class DT_EXPORT DtVdcCuboidObject : public DtVdcEllipsoidCuboidBase {
 public:
  static const DtTaitBryan zeros;

  DtVdcCuboidObject(unsigned int id, const DtVdc3DAttachPoint& attachment, double length,
                    double width, double height, const DtVector64& enuOffset,
                    const DtTaitBryan& rotation, DtVdcColor color, bool flashing);
  ~DtVdcCuboidObject() override;

  virtual double length() const;
  virtual void setLength(double length);
  virtual double width() const;
  virtual void setWidth(double width);
  virtual double height() const;
  virtual void setHeight(double height);
};
