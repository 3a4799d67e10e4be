#include "vdcDrawLayerObj.h"

#include "vdcObjectPdu.h"

DtVdcDrawLayerObject::DtVdcDrawLayerObject(unsigned int id, const DtString& layerName)
    : DtVdcObject(id), layerName_(layerName) {
  vdcobj::identify(pdu_, id, DtVdcLayer);
  updatePdu();
}

DtVdcDrawLayerObject::~DtVdcDrawLayerObject() = default;

DtVdcLayerPdu& DtVdcDrawLayerObject::pdu() {
  return pdu_;
}
void DtVdcDrawLayerObject::updatePdu() {
  pdu_.setName(layerName_);
}
DtString DtVdcDrawLayerObject::layerName() const {
  return layerName_;
}
