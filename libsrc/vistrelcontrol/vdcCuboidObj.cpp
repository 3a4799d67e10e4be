#include "vdcCuboidObj.h"

const DtTaitBryan DtVdcCuboidObject::zeros(0.0, 0.0, 0.0);

DtVdcCuboidObject::DtVdcCuboidObject(unsigned int id, const DtVdc3DAttachPoint& attachment,
                                     double length, double width, double height,
                                     const DtVector64& enuOffset, const DtTaitBryan& rotation,
                                     DtVdcColor color, bool flashing)
    : DtVdcEllipsoidCuboidBase(id, attachment, DtVector64(length, width, height), enuOffset,
                               rotation, color, flashing) {
  pdu().setType(DtNetU32(DtVdcCube));
}

DtVdcCuboidObject::~DtVdcCuboidObject() = default;

double DtVdcCuboidObject::length() const {
  return dimensions_.x();
}
void DtVdcCuboidObject::setLength(double length) {
  dimensions_.setX(length);
}
double DtVdcCuboidObject::width() const {
  return dimensions_.y();
}
void DtVdcCuboidObject::setWidth(double width) {
  dimensions_.setY(width);
}
double DtVdcCuboidObject::height() const {
  return dimensions_.z();
}
void DtVdcCuboidObject::setHeight(double height) {
  dimensions_.setZ(height);
}
