#include "vdc3DAttachPoint.h"

DtVdc3DAttachPoint::DtVdc3DAttachPoint() = default;

DtVdc3DAttachPoint::DtVdc3DAttachPoint(const DtVector64& location)
    : location_(location), attachmentType_(DtVdcAttachLocation) {}

DtVdc3DAttachPoint::DtVdc3DAttachPoint(const DtString& entityId)
    : entityId_(entityId), attachmentType_(DtVdcAttachEntity) {}

DtVdc3DAttachPoint::DtVdc3DAttachPoint(unsigned int drawObjectId, double relativePosition)
    : drawObjectId_(drawObjectId),
      relativePosition_(relativePosition),
      attachmentType_(DtVdcAttachDrawObject) {}

DtVdc3DAttachPoint::~DtVdc3DAttachPoint() = default;

unsigned int DtVdc3DAttachPoint::attachmentType() const {
  return attachmentType_;
}
DtVector64 DtVdc3DAttachPoint::location() const {
  return location_;
}
DtVector64& DtVdc3DAttachPoint::location() {
  return location_;
}
unsigned int DtVdc3DAttachPoint::drawObjectId() const {
  return drawObjectId_;
}
double DtVdc3DAttachPoint::relativePosition() const {
  return relativePosition_;
}
void DtVdc3DAttachPoint::setRelativePosition(double percent) {
  relativePosition_ = percent;
}
DtString DtVdc3DAttachPoint::entityId() const {
  return entityId_;
}

void DtVdc3DAttachPoint::anchorOnly(unsigned int type) {
  attachmentType_ = type;
  location_ = DtVector64();
  entityId_.clear();
  drawObjectId_ = 0;
}

void DtVdc3DAttachPoint::setLocation(DtVector64 location) {
  anchorOnly(DtVdcAttachLocation);
  location_ = location;
}

void DtVdc3DAttachPoint::setDrawObjectId(unsigned int id) {
  anchorOnly(DtVdcAttachDrawObject);
  drawObjectId_ = id;
}

void DtVdc3DAttachPoint::setEntityId(const DtString& id) {
  anchorOnly(DtVdcAttachEntity);
  entityId_ = id;
}
