#include "vdcAttributeUpdatePdu.h"

#include <cstdio>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
struct UpdateLayout {
  size_t valueX;
  size_t valueY;
  size_t groupId;
  size_t textLength;
  size_t text;
};
// The values stayed where they were; version 0 kept the group id in the header's gap.
constexpr vdclayout::Versions<UpdateLayout> kUpdate = {{168, 176, 184, 188, 192},
                                                       {168, 176, 164, 184, 196}};

const UpdateLayout& layout(const DtVdcAttributeUpdatePduBase& pdu) {
  return vdclayout::of(kUpdate, pdu);
}
}  // namespace

DtVdcAttributeUpdatePduBase::DtVdcAttributeUpdatePduBase() = default;
DtVdcAttributeUpdatePduBase::~DtVdcAttributeUpdatePduBase() = default;

void DtVdcAttributeUpdatePduBase::setText(DtString text) {
  const UpdateLayout& l = layout(*this);
  setCountedText(l.textLength, l.text, text);
}

DtString DtVdcAttributeUpdatePduBase::text() const {
  const UpdateLayout& l = layout(*this);
  return countedText(l.textLength, l.text);
}

DtNetU32 DtVdcAttributeUpdatePduBase::groupId() const {
  return readU32(layout(*this).groupId);
}

void DtVdcAttributeUpdatePduBase::setGroupId(DtNetU32 id) {
  writeU32(layout(*this).groupId, id);
}

double DtVdcAttributeUpdatePduBase::valueX() const {
  return readFloat64(layout(*this).valueX);
}

double DtVdcAttributeUpdatePduBase::valueY() const {
  return readFloat64(layout(*this).valueY);
}

void DtVdcAttributeUpdatePduBase::setValueX(double x) {
  writeFloat64(layout(*this).valueX, x);
}

void DtVdcAttributeUpdatePduBase::setValueY(double y) {
  writeFloat64(layout(*this).valueY, y);
}

void DtVdcAttributeUpdatePduBase::printData() const {
  DtVistrelDrawControlPdu::printData();
  DtDumpInteger("GroupId:", groupId());
  unsigned int kind = type();
  if (kind == DtVdcAttributeValueSet) {
    DtDumpFloat("ValueX:", valueX());
    DtDumpFloat("ValueY:", valueY());
  } else if (kind == DtVdcAttributeValueSetText) {
    DtDumpString("Text:", text());
  }
}

const char* DtVdcAttributeUpdatePduBase::string() const {
  unsigned int id = objectId();
  int kind = static_cast<int>(static_cast<unsigned int>(type()));
  switch (kind) {
    case DtVdcAttributeValueSet:
      return formatText("%u %d %lf %lf", id, kind, valueX(), valueY());
    case DtVdcAttributeValueReset:
      return formatText("%u %d", id, kind);
    case DtVdcAttributeValueSetText: {
      DtString shown = text();
      return formatText("%u %d %s", id, kind, shown.c_str());
    }
    default:
      return textArea();
  }
}

void DtVdcAttributeUpdatePduBase::setFromString(const char* text) {
  const char* line = text ? text : "";
  unsigned int id = 0;
  int kind = 0;
  std::sscanf(line, "%u %d", &id, &kind);
  setObjectId(id);
  setType(static_cast<unsigned int>(kind));
  if (kind == DtVdcAttributeValueSet) {
    double x = 0.0, y = 0.0;
    std::sscanf(line, "%u %d %lf %lf", &id, &kind, &x, &y);
    setValueX(x);
    setValueY(y);
  } else if (kind == DtVdcAttributeValueSetText) {
    vdctext::Word word;
    std::sscanf(line, "%u %d " VDC_WORD, &id, &kind, word.text);
    setText(word.text);
  }
}

DtVdcAttributeUpdatePdu::DtVdcAttributeUpdatePdu(DtBufferPlaceHolder* holder) {
  initFresh(kLength, holder, DtVdcAttributeUpdate, 1);
}

DtVdcAttributeUpdatePdu::DtVdcAttributeUpdatePdu(const DtNetViewControlPdu* bytes,
                                                 DtBufferPlaceHolder* holder,
                                                 DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcAttributeUpdate);
}

DtVdcAttributeUpdatePdu::~DtVdcAttributeUpdatePdu() = default;

DtVdcAttributeUpdatePduV0::DtVdcAttributeUpdatePduV0(DtBufferPlaceHolder* holder) {
  initFresh(kLength, holder, DtVdcAttributeUpdate, 0);
}

DtVdcAttributeUpdatePduV0::DtVdcAttributeUpdatePduV0(const DtNetViewControlPdu* bytes,
                                                     DtBufferPlaceHolder* holder,
                                                     DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcAttributeUpdate);
}

DtVdcAttributeUpdatePduV0::~DtVdcAttributeUpdatePduV0() = default;
