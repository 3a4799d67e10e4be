#pragma once
#include <map>
#include <vector>

#include "dtString.h"
#include "vdcAttributePdu.h"
#include "vdcObject.h"

/// DtVdcAttributeTemplateObject declares one attribute of an attribute panel: its id
/// within the panel, its name and the kind of value it shows. Group templates make
/// them (createAttributeTemplate) and own them.
class DT_EXPORT DtVdcAttributeTemplateObject : public DtVdcObject {
 public:
  /// What the attribute shows; each kind travels as its own draw type (2573 to 2577).
  enum DtVdcAttributeType : int {
    DtVdcNoValueAttribute = 0,   ///< a label only
    DtVdcNumericAttribute = 1,   ///< a number
    DtVdcValueBarAttribute = 2,  ///< a bar over a range
    DtVdcGraphAttribute = 3,     ///< a graph point (x, y)
    DtVdcBmpAttribute = 4        ///< a text naming a bitmap
  };

  DtVdcAttributeTemplateObject(unsigned int id, unsigned int groupTemplateId, const DtString& name,
                               DtVdcAttributeType type);
  ~DtVdcAttributeTemplateObject() override;

  DtVdcAttributePdu& pdu() override;
  /// Everything is written at construction.
  void updatePdu() override;

  /// The id of the group template that made this attribute.
  virtual unsigned int templateId() const;
  virtual DtString name() const;
  virtual DtVdcAttributeType attributeType() const;

 private:
  unsigned int groupTemplateId_;
  DtString name_;
  DtVdcAttributeType attributeType_;
  DtVdcAttributePdu pdu_;
};

/// DtVdcBarAttributeTemplateObject: a value bar over the range min..max.
class DT_EXPORT DtVdcBarAttributeTemplateObject : public DtVdcAttributeTemplateObject {
 public:
  DtVdcBarAttributeTemplateObject(unsigned int id, unsigned int groupTemplateId,
                                  const DtString& name, double min, double max);
  ~DtVdcBarAttributeTemplateObject() override;

  /// Writes the range as well.
  void updatePdu() override;

  virtual double minRange() const;
  virtual double maxRange() const;

 private:
  double minRange_;
  double maxRange_;
};

/// DtVdcAttributeGroupTemplateObject declares an attribute panel once (type 2571): its
/// name and its attributes, which it makes, keeps in creation order and deletes with
/// itself. Attribute groups show it; it must outlive them. Sending it through the
/// remote drawer sends its attributes as well.
class DT_EXPORT DtVdcAttributeGroupTemplateObject : public DtVdcObject {
 public:
  DtVdcAttributeGroupTemplateObject(unsigned int id, const DtString& name);
  ~DtVdcAttributeGroupTemplateObject() override;
  DtVdcAttributeGroupTemplateObject(const DtVdcAttributeGroupTemplateObject&) = delete;
  DtVdcAttributeGroupTemplateObject& operator=(const DtVdcAttributeGroupTemplateObject&) = delete;

  DtVdcAttributePdu& pdu() override;
  /// Everything is written at construction.
  void updatePdu() override;

  virtual DtString name() const;
  /// In creation order.
  virtual const std::vector<DtVdcAttributeTemplateObject*>& attributeTemplates() const;
  /// The attribute of that id, or null.
  virtual DtVdcAttributeTemplateObject* attributeTemplate(unsigned int id) const;
  /// A new attribute of this panel; a later one with the same id replaces it in lookups.
  virtual DtVdcAttributeTemplateObject* createAttributeTemplate(
      unsigned int id, const DtString& name, DtVdcAttributeTemplateObject::DtVdcAttributeType type);
  /// A new value bar over min..max.
  virtual DtVdcAttributeTemplateObject* createAttributeTemplate(unsigned int id,
                                                                const DtString& name, double min,
                                                                double max);

 private:
  DtVdcAttributeTemplateObject* adopt(DtVdcAttributeTemplateObject* attribute);

  DtString name_;
  std::map<unsigned int, DtVdcAttributeTemplateObject*> byId_;
  std::vector<DtVdcAttributeTemplateObject*> templates_;
  DtVdcAttributePdu pdu_;
};
