#pragma once
#include <map>

#include "dtException.h"
#include "dtString.h"
#include "dtVector.h"
#include "vdc3DAttachPoint.h"
#include "vdcAttTemplate.h"
#include "vdcAttributePdu.h"
#include "vdcAttributeUpdatePdu.h"
#include "vdcColor.h"
#include "vdcObject.h"

/// DtVdcAttributeValue is the current value of one attribute in one attribute group,
/// with the update PDU that carries it. A setter of the group marks it dirty; the
/// remote drawer sends the update PDU of a dirty value and clears the mark.
class DT_EXPORT DtVdcAttributeValue {
 public:
  DtVdcAttributeValue();

  const DtString& textValue() const { return textValue_; }
  void setTextValue(const DtString& text) { textValue_ = text; }
  double xValue() const { return xValue_; }
  void setXValue(double x) { xValue_ = x; }
  double yValue() const { return yValue_; }
  void setYValue(double y) { yValue_ = y; }
  bool dirty() const { return dirty_; }
  void setDirty(bool dirty) { dirty_ = dirty; }
  DtVdcAttributeUpdatePdu& attributeUpdatePdu() { return pdu_; }
  const DtVdcAttributeUpdatePdu& attributeUpdatePdu() const { return pdu_; }

 private:
  DtString textValue_;
  double xValue_ = 0.0;
  double yValue_ = 0.0;
  bool dirty_ = false;
  DtVdcAttributeUpdatePdu pdu_;
};

/// DtVdcAttributeGroupObject shows one attribute panel (type 2572) of a group template
/// at an attach point, with one value per attribute the template had when the group was
/// made. Values are set by attribute id; an id without a value throws DtException
/// "Invalid attribute ID" (and stays in the value table as an empty entry). Copying a
/// group copies its values; the template is shared, never owned.
class DT_EXPORT DtVdcAttributeGroupObject : public DtVdcObject {
 public:
  typedef std::map<unsigned int, DtVdcAttributeValue*> ValueMap;

  DtVdcAttributeGroupObject(unsigned int id, DtVdcAttributeGroupTemplateObject* groupTemplate,
                            const DtVdc3DAttachPoint& attachment, const DtVector64& enuOffset,
                            DtVdcColor color, bool flashing);
  DtVdcAttributeGroupObject(const DtVdcAttributeGroupObject& other);
  DtVdcAttributeGroupObject& operator=(const DtVdcAttributeGroupObject& other);
  ~DtVdcAttributeGroupObject() override;

  DtVdcAttributePdu& pdu() override;
  /// Attachment, offset, colour, flashing.
  void updatePdu() override;

  DT_VDC_FIELD_ACCESSORS(DtVdc3DAttachPoint, attachment, setAttachment)
  DT_VDC_FIELD_ACCESSORS(DtVector64, enuOffset, setEnuOffset)
  DT_VDC_COLOR_ACCESSORS
  DT_VDC_FLASHING_ACCESSORS
  virtual DtVdcAttributeGroupTemplateObject* attributeGroupTemplate() const;

  // Value setters store x (numeric, bar, graph x), y (graph y) or the text (bitmap)
  // whatever the attribute's kind, and mark the value dirty.
  virtual void setNumericAttributeValue(unsigned int id, double value);
  virtual void setValueBarAttributeValue(unsigned int id, double value);
  virtual void setGraphAttributeValueX(unsigned int id, double x);
  virtual void setGraphAttributeValueY(unsigned int id, double y);
  virtual void setBmpAttributeValue(unsigned int id, const DtString& name);
  virtual double numericAttributeValue(unsigned int id) const;
  virtual double valueBarAttributeValue(unsigned int id) const;
  virtual double graphAttributeValueX(unsigned int id) const;
  virtual double graphAttributeValueY(unsigned int id) const;
  virtual DtString bmpAttributeValue(unsigned int id) const;

  /// Writes a dirty value into its update PDU as its attribute's kind says, leaving the
  /// mark for the sender to clear; a label (no value) is never dirty afterwards.
  virtual void updateAttributePdu(unsigned int id);
  /// updateAttributePdu for every value, in ascending id.
  virtual void updateAllAttributePdus();
  /// By attribute id, ascending; may hold empty entries for ids that had no value.
  virtual ValueMap& attributeValueMap();

  virtual void setPduAttach();
  virtual void setPduOffset();
  virtual void setPduColor();
  virtual void setPduFlashing();

 private:
  void createAttributes();
  void copyValues(const ValueMap& values);
  void deleteValues();
  /// The value of `id`; an unknown id is entered empty, which callers then see.
  DtVdcAttributeValue* enter(unsigned int id);
  const DtVdcAttributeValue* find(unsigned int id) const;

  DtVdcAttributeGroupTemplateObject* template_;
  DtVdc3DAttachPoint attachment_;
  DtVector64 enuOffset_;
  DtVdcColor color_;
  bool flashing_;
  ValueMap values_;
  DtVdcAttributePdu pdu_;
};
