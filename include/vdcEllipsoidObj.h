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

  DT_VDC_FIELD_ACCESSORS(DtVector64, diameters, setDiameters)
};
