#include "vdcAttGroup.h"

#include "dtException.h"
#include "vdcObjectPdu.h"

DtVdcAttributeValue::DtVdcAttributeValue() = default;

DtVdcAttributeGroupObject::DtVdcAttributeGroupObject(
    unsigned int id, DtVdcAttributeGroupTemplateObject* groupTemplate,
    const DtVdc3DAttachPoint& attachment, const DtVector64& enuOffset, DtVdcColor color,
    bool flashing)
    : DtVdcObject(id),
      template_(groupTemplate),
      attachment_(attachment),
      enuOffset_(enuOffset),
      color_(color),
      flashing_(flashing) {
  pdu_.setObjectId(DtNetU32(id));
  pdu_.setAttributeGroupId(DtNetU32(groupTemplate ? groupTemplate->id() : 0));
  pdu_.setType(DtNetU32(DtVdcAttributeGroup));
  createAttributes();
  updatePdu();
}

DtVdcAttributeGroupObject::DtVdcAttributeGroupObject(const DtVdcAttributeGroupObject& other)
    : DtVdcObject(other),
      template_(other.template_),
      attachment_(other.attachment_),
      enuOffset_(other.enuOffset_),
      color_(other.color_),
      flashing_(other.flashing_),
      pdu_(other.pdu_) {
  copyValues(other.values_);
}

DtVdcAttributeGroupObject& DtVdcAttributeGroupObject::operator=(
    const DtVdcAttributeGroupObject& other) {
  if (this == &other) return *this;
  DtVdcObject::operator=(other);
  template_ = other.template_;
  attachment_ = other.attachment_;
  enuOffset_ = other.enuOffset_;
  color_ = other.color_;
  flashing_ = other.flashing_;
  pdu_ = other.pdu_;
  deleteValues();
  copyValues(other.values_);
  return *this;
}

DtVdcAttributeGroupObject::~DtVdcAttributeGroupObject() {
  deleteValues();
}

void DtVdcAttributeGroupObject::copyValues(const ValueMap& values) {
  for (const auto& [id, value] : values)
    values_[id] = value ? new DtVdcAttributeValue(*value) : nullptr;
}

void DtVdcAttributeGroupObject::deleteValues() {
  for (auto& entry : values_) delete entry.second;
  values_.clear();
}

// Attribute templates made after the group have no value in it.
void DtVdcAttributeGroupObject::createAttributes() {
  if (!template_) return;
  for (DtVdcAttributeTemplateObject* attribute : template_->attributeTemplates()) {
    DtVdcAttributeValue*& slot = values_[attribute->id()];
    delete slot;  // two templates of one id: the later one wins
    slot = new DtVdcAttributeValue;
    DtVdcAttributeUpdatePdu& update = slot->attributeUpdatePdu();
    update.setObjectId(DtNetU32(attribute->id()));
    update.setGroupId(DtNetU32(id()));
    bool text = attribute->attributeType() == DtVdcAttributeTemplateObject::DtVdcBmpAttribute;
    update.setType(DtNetU32(text ? DtVdcAttributeValueSetText : DtVdcAttributeValueSet));
  }
}

DtVdcAttributeValue* DtVdcAttributeGroupObject::enter(unsigned int id) {
  return values_[id];
}

const DtVdcAttributeValue* DtVdcAttributeGroupObject::find(unsigned int id) const {
  auto found = values_.find(id);
  return found == values_.end() ? nullptr : found->second;
}

DtVdcAttributePdu& DtVdcAttributeGroupObject::pdu() {
  return pdu_;
}
VDC_FIELD(DtVdcAttributeGroupObject, DtVdc3DAttachPoint, attachment, setAttachment, attachment_)
VDC_FIELD(DtVdcAttributeGroupObject, DtVector64, enuOffset, setEnuOffset, enuOffset_)
VDC_COLOR_FLASHING(DtVdcAttributeGroupObject)

DtVdcAttributeGroupTemplateObject* DtVdcAttributeGroupObject::attributeGroupTemplate() const {
  return template_;
}

DtVdcAttributeGroupObject::ValueMap& DtVdcAttributeGroupObject::attributeValueMap() {
  return values_;
}

// Each value operation throws from its own body, so that the exception names it.
#define VDC_VALUE_SETTER(operation, Type, store)                           \
  void DtVdcAttributeGroupObject::operation(unsigned int id, Type value) { \
    DtVdcAttributeValue* entry = enter(id);                                \
    if (!entry) DT_THROW("Invalid attribute ID");                          \
    entry->store(value);                                                   \
    entry->setDirty(true);                                                 \
  }

#define VDC_VALUE_GETTER(operation, Type, read)                      \
  Type DtVdcAttributeGroupObject::operation(unsigned int id) const { \
    const DtVdcAttributeValue* entry = find(id);                     \
    if (!entry) DT_THROW("Invalid attribute ID");                    \
    return entry->read();                                            \
  }

VDC_VALUE_SETTER(setNumericAttributeValue, double, setXValue)
VDC_VALUE_SETTER(setValueBarAttributeValue, double, setXValue)
VDC_VALUE_SETTER(setGraphAttributeValueX, double, setXValue)
VDC_VALUE_SETTER(setGraphAttributeValueY, double, setYValue)
VDC_VALUE_SETTER(setBmpAttributeValue, const DtString&, setTextValue)
VDC_VALUE_GETTER(numericAttributeValue, double, xValue)
VDC_VALUE_GETTER(valueBarAttributeValue, double, xValue)
VDC_VALUE_GETTER(graphAttributeValueX, double, xValue)
VDC_VALUE_GETTER(graphAttributeValueY, double, yValue)
VDC_VALUE_GETTER(bmpAttributeValue, DtString, textValue)

void DtVdcAttributeGroupObject::updateAttributePdu(unsigned int id) {
  DtVdcAttributeValue* entry = enter(id);
  if (!entry) DT_THROW("Invalid attribute ID");
  DtVdcAttributeTemplateObject* attribute = template_ ? template_->attributeTemplate(id) : nullptr;
  if (!attribute) return;
  DtVdcAttributeUpdatePdu& update = entry->attributeUpdatePdu();
  switch (attribute->attributeType()) {
    case DtVdcAttributeTemplateObject::DtVdcNoValueAttribute:
      entry->setDirty(false);  // a label has nothing to send
      return;
    case DtVdcAttributeTemplateObject::DtVdcNumericAttribute:
    case DtVdcAttributeTemplateObject::DtVdcValueBarAttribute:
      if (entry->dirty()) update.setValueX(entry->xValue());
      return;
    case DtVdcAttributeTemplateObject::DtVdcGraphAttribute:
      if (!entry->dirty()) return;
      update.setValueX(entry->xValue());
      update.setValueY(entry->yValue());
      return;
    case DtVdcAttributeTemplateObject::DtVdcBmpAttribute:
      if (entry->dirty()) update.setText(entry->textValue());
      return;
  }
}

// Empty entries are ids that never had a value: nothing to bring up to date.
void DtVdcAttributeGroupObject::updateAllAttributePdus() {
  for (auto& [id, value] : values_)
    if (value) updateAttributePdu(id);
}

void DtVdcAttributeGroupObject::updatePdu() {
  setPduAttach();
  setPduOffset();
  setPduColor();
  setPduFlashing();
}

void DtVdcAttributeGroupObject::setPduAttach() {
  vdcobj::attach(pdu_, attachment_);
}
void DtVdcAttributeGroupObject::setPduOffset() {
  pdu_.setOffset(enuOffset_);
}
