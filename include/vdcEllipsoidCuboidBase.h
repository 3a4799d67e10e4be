#pragma once
#include "dtVector.h"
#include "vdc3DAttachPoint.h"
#include "vdcColor.h"
#include "vdcObject.h"
#include "vdcPolyObjectPdu.h"

/// DtVdcEllipsoidCuboidBase holds what the ellipsoid and the cuboid share: an attach
/// point for the centre, three extents (the dimensions), an east-north-up offset, an
/// orientation, colour and flashing. The viewer builds the solid from the kind (the draw
/// type that the derived class sets) and reads the extents doubled.
class DT_EXPORT DtVdcEllipsoidCuboidBase : public DtVdcObject {
 public:
  /// No rotation.
  static const DtTaitBryan zeros;

  DtVdcEllipsoidCuboidBase(unsigned int id, const DtVdc3DAttachPoint& attachment,
                           const DtVector64& dimensions, const DtVector64& enuOffset,
                           const DtTaitBryan& rotation, DtVdcColor color, bool flashing);
  ~DtVdcEllipsoidCuboidBase() override;

  DtVdcPolyObjectPdu& pdu() override;
  /// Attach, scale, offset, colour, flashing, rotation.
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, attachment, setAttachment)
  DT_VDC_FIELD_ACCESSORS(DtVector64, enuOffset, setEnuOffset)
  DT_VDC_3D_STYLE_ACCESSORS

 protected:
  DtVector64 dimensions_;

 private:
  DtVdc3DAttachPoint attachment_;
  DtVector64 enuOffset_;
  DtVdcColor color_;
  DtTaitBryan rotation_;
  bool flashing_;
  DtVdcPolyObjectPdu pdu_;
};
