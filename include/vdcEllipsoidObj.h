#pragma once
#include "vdcEllipsoidCuboidBase.h"

/// DtVdcEllipsoidObject: an ellipsoid in the scene (type 2542) with three diameters.
class DT_EXPORT DtVdcEllipsoidObject : public DtVdcEllipsoidCuboidBase {
 public:
  static const DtTaitBryan zeros;

  DtVdcEllipsoidObject(unsigned int id, const DtVdc3DAttachPoint& attachment,
                       const DtVector64& diameters, const DtVector64& enuOffset,
                       const DtTaitBryan& rotation, DtVdcColor color, bool flashing);
  ~DtVdcEllipsoidObject() override;

  virtual DtVector64 diameters() const;
  virtual DtVector64& diameters();
  virtual void setDiameters(const DtVector64& diameters);
};
