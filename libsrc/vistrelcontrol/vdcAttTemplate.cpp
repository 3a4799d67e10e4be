#include "vdcAttTemplate.h"

namespace {
DtVdcDrawType drawTypeOf(DtVdcAttributeTemplateObject::DtVdcAttributeType type) {
  return static_cast<DtVdcDrawType>(DtVdcAttributeNoValue + static_cast<int>(type));
}
}  // namespace

// ------------------------------------------------------------------ attribute templates

DtVdcAttributeTemplateObject::DtVdcAttributeTemplateObject(unsigned int id,
                                                           unsigned int groupTemplateId,
                                                           const DtString& name,
                                                           DtVdcAttributeType type)
    : DtVdcObject(id), groupTemplateId_(groupTemplateId), name_(name), attributeType_(type) {
  pdu_.setType(DtNetU32(drawTypeOf(type)));
  pdu_.setName(name);
  pdu_.setObjectId(DtNetU32(id));
  pdu_.setAttributeGroupId(DtNetU32(groupTemplateId));
}

DtVdcAttributeTemplateObject::~DtVdcAttributeTemplateObject() = default;

DtVdcAttributePdu& DtVdcAttributeTemplateObject::pdu() {
  return pdu_;
}
void DtVdcAttributeTemplateObject::updatePdu() {}
unsigned int DtVdcAttributeTemplateObject::templateId() const {
  return groupTemplateId_;
}
DtString DtVdcAttributeTemplateObject::name() const {
  return name_;
}

DtVdcAttributeTemplateObject::DtVdcAttributeType DtVdcAttributeTemplateObject::attributeType()
    const {
  return attributeType_;
}

DtVdcBarAttributeTemplateObject::DtVdcBarAttributeTemplateObject(unsigned int id,
                                                                 unsigned int groupTemplateId,
                                                                 const DtString& name, double min,
                                                                 double max)
    : DtVdcAttributeTemplateObject(id, groupTemplateId, name, DtVdcValueBarAttribute),
      minRange_(min),
      maxRange_(max) {
  updatePdu();
}

DtVdcBarAttributeTemplateObject::~DtVdcBarAttributeTemplateObject() = default;

void DtVdcBarAttributeTemplateObject::updatePdu() {
  DtVdcAttributeTemplateObject::updatePdu();
  pdu().setRange(minRange_, maxRange_);
}

double DtVdcBarAttributeTemplateObject::minRange() const {
  return minRange_;
}
double DtVdcBarAttributeTemplateObject::maxRange() const {
  return maxRange_;
}

// ------------------------------------------------------------------ group templates

DtVdcAttributeGroupTemplateObject::DtVdcAttributeGroupTemplateObject(unsigned int id,
                                                                     const DtString& name)
    : DtVdcObject(id), name_(name) {
  pdu_.setType(DtNetU32(DtVdcAttributeGroupTemplate));
  pdu_.setName(name);
  pdu_.setObjectId(DtNetU32(id));
}

// The list holds every attribute ever made, also those a later one replaced in the map.
DtVdcAttributeGroupTemplateObject::~DtVdcAttributeGroupTemplateObject() {
  for (DtVdcAttributeTemplateObject* attribute : templates_) delete attribute;
}

DtVdcAttributePdu& DtVdcAttributeGroupTemplateObject::pdu() {
  return pdu_;
}
void DtVdcAttributeGroupTemplateObject::updatePdu() {}
DtString DtVdcAttributeGroupTemplateObject::name() const {
  return name_;
}

const std::vector<DtVdcAttributeTemplateObject*>&
DtVdcAttributeGroupTemplateObject::attributeTemplates() const {
  return templates_;
}

DtVdcAttributeTemplateObject* DtVdcAttributeGroupTemplateObject::attributeTemplate(
    unsigned int id) const {
  auto found = byId_.find(id);
  return found == byId_.end() ? nullptr : found->second;
}

DtVdcAttributeTemplateObject* DtVdcAttributeGroupTemplateObject::adopt(
    DtVdcAttributeTemplateObject* attribute) {
  byId_[attribute->id()] = attribute;
  templates_.push_back(attribute);
  return attribute;
}

DtVdcAttributeTemplateObject* DtVdcAttributeGroupTemplateObject::createAttributeTemplate(
    unsigned int id, const DtString& name, DtVdcAttributeTemplateObject::DtVdcAttributeType type) {
  return adopt(new DtVdcAttributeTemplateObject(id, this->id(), name, type));
}

DtVdcAttributeTemplateObject* DtVdcAttributeGroupTemplateObject::createAttributeTemplate(
    unsigned int id, const DtString& name, double min, double max) {
  return adopt(new DtVdcBarAttributeTemplateObject(id, this->id(), name, min, max));
}
