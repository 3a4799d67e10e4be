#include "vdcAttributePdu.h"

#include <cstdio>
#include <string>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
struct AttributeLayout {
  size_t groupId;
  size_t nameLength;
  size_t name;
  size_t rangeMin;
  size_t rangeMax;
};
// Version 0 moved the group id and the name length but kept the range and the name.
constexpr vdclayout::Versions<AttributeLayout> kAttribute = {
    {400, 404, DtVdcAttributePduBase::kNameOffset, 384, 392},
    {380, 376, DtVdcAttributePduBase::kNameOffset, 384, 392}};

const AttributeLayout& layout(const DtVdcAttributePduBase& pdu) {
  return vdclayout::of(kAttribute, pdu);
}

// Group id, name flag, name, range flag, minimum, maximum.
constexpr int kFieldsAtEnd = 6;
}  // namespace

DtVdcAttributePduBase::DtVdcAttributePduBase() = default;
DtVdcAttributePduBase::~DtVdcAttributePduBase() = default;

void DtVdcAttributePduBase::setName(DtString name) {
  const AttributeLayout& l = layout(*this);
  setCountedText(l.nameLength, l.name, name);
}

DtString DtVdcAttributePduBase::name() const {
  const AttributeLayout& l = layout(*this);
  return countedText(l.nameLength, l.name);
}

DtNetU32 DtVdcAttributePduBase::attributeGroupId() const {
  return readU32(layout(*this).groupId);
}

void DtVdcAttributePduBase::setAttributeGroupId(DtNetU32 id) {
  writeU32(layout(*this).groupId, id);
}

bool DtVdcAttributePduBase::hasRange() const {
  return readU8(flagByteOffset()) != 0;
}

double DtVdcAttributePduBase::rangeMin() const {
  return readFloat64(layout(*this).rangeMin);
}

double DtVdcAttributePduBase::rangeMax() const {
  return readFloat64(layout(*this).rangeMax);
}

void DtVdcAttributePduBase::setRange(double minimum, double maximum) {
  const AttributeLayout& l = layout(*this);
  writeFloat64(l.rangeMin, minimum);
  writeFloat64(l.rangeMax, maximum);
  writeU8(flagByteOffset(), 1);
}

void DtVdcAttributePduBase::printData() const {
  DtVdcAttachablePdu::printData();
  DtDumpInteger("Attribute group:", attributeGroupId());
  if (hasRange()) {
    DtDumpString("Range:", "");
    DtDumpFloat(" Min:", rangeMin());
    DtDumpFloat(" Max:", rangeMax());
  }
  DtDumpString("Name:", name());
}

const char* DtVdcAttributePduBase::string() const {
  std::string base = DtVdcAttachablePdu::string();
  DtString shown = name();
  unsigned int group = attributeGroupId();
  int range = hasRange() ? 1 : 0;
  // Without a name the line still has six fields at its end: "0 0" stands for the flag
  // and the name.
  if (!shown.isNull())
    return formatText("%s %u 1 %s %d %lf %lf", base.c_str(), group, shown.c_str(), range,
                      rangeMin(), rangeMax());
  return formatText("%s %u 0 0 %d %lf %lf", base.c_str(), group, range, rangeMin(), rangeMax());
}

void DtVdcAttributePduBase::setFromString(const char* text) {
  const char* line = text ? text : "";
  DtVdcAttachablePdu::setFromString(line);
  const char* fields = vdctext::atBlankFromEnd(line, kFieldsAtEnd);
  unsigned int group = 0;
  int named = 0, range = 0;
  double minimum = 0.0, maximum = 0.0;
  vdctext::Word word;
  std::sscanf(fields, "%u %d " VDC_WORD " %d %lf %lf", &group, &named, word.text, &range, &minimum,
              &maximum);
  if (named) setName(word.text);
  setAttributeGroupId(group);
  if (range) setRange(minimum, maximum);
}

DtVdcAttributePdu::DtVdcAttributePdu(DtBufferPlaceHolder* holder) {
  initFresh(kLength, holder, DtVdcAttribute, 1);
}

DtVdcAttributePdu::DtVdcAttributePdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                     DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcAttribute);
}

DtVdcAttributePdu::~DtVdcAttributePdu() = default;

DtVdcAttributePduV0::DtVdcAttributePduV0(DtBufferPlaceHolder* holder) {
  initFresh(kLength, holder, DtVdcAttribute, 0);
}

DtVdcAttributePduV0::DtVdcAttributePduV0(const DtNetViewControlPdu* bytes,
                                         DtBufferPlaceHolder* holder, DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcAttribute);
}

DtVdcAttributePduV0::~DtVdcAttributePduV0() = default;
