#include "vdcEllipsoidObj.h"

#include "vdcObjectPdu.h"

const DtTaitBryan DtVdcEllipsoidObject::zeros(0.0, 0.0, 0.0);

DtVdcEllipsoidObject::DtVdcEllipsoidObject(unsigned int id, const DtVdc3DAttachPoint& attachment,
                                           const DtVector64& diameters, const DtVector64& enuOffset,
                                           const DtTaitBryan& rotation, DtVdcColor color,
                                           bool flashing)
    : DtVdcEllipsoidCuboidBase(id, attachment, diameters, enuOffset, rotation, color, flashing) {
  pdu().setType(DtNetU32(DtVdcSphere));
}

DtVdcEllipsoidObject::~DtVdcEllipsoidObject() = default;

VDC_FIELD(DtVdcEllipsoidObject, DtVector64, diameters, setDiameters, dimensions_)
