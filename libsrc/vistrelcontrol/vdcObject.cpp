#include "vdcObject.h"

DtVdcObject::DtVdcObject(unsigned int id) : id_(id) {}

DtVdcObject::~DtVdcObject() = default;

unsigned int DtVdcObject::id() const {
  return id_;
}

void DtVdcObject::setId(unsigned int id) {
  id_ = id;
  pdu().setObjectId(DtNetU32(id));
}
