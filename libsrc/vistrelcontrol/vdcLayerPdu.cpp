#include "vdcLayerPdu.h"

#include <cstdio>

#include "dtOutput.h"
#include "vdcLayout.h"
#include "vdcTextForm.h"

namespace {
struct LayerLayout {
  size_t nameLength;
  size_t name;
};
constexpr vdclayout::Versions<LayerLayout> kLayer = {{168, 172}, {164, 176}};

const LayerLayout& layout(const DtVdcLayerPduBase& pdu) {
  return vdclayout::of(kLayer, pdu);
}
}  // namespace

DtVdcLayerPduBase::DtVdcLayerPduBase() = default;
DtVdcLayerPduBase::~DtVdcLayerPduBase() = default;

void DtVdcLayerPduBase::setName(DtString name) {
  const LayerLayout& l = layout(*this);
  setCountedText(l.nameLength, l.name, name);
}

DtString DtVdcLayerPduBase::name() const {
  const LayerLayout& l = layout(*this);
  return countedText(l.nameLength, l.name);
}

void DtVdcLayerPduBase::printData() const {
  DtVistrelDrawControlPdu::printData();
  DtDumpString("Name:", name());
}

const char* DtVdcLayerPduBase::string() const {
  DtString shown = name();
  return formatText("%u %s", static_cast<unsigned int>(objectId()), shown.c_str());
}

void DtVdcLayerPduBase::setFromString(const char* text) {
  unsigned int id = 0;
  vdctext::Word word;
  std::sscanf(text ? text : "", "%u " VDC_WORD, &id, word.text);
  setObjectId(id);
  setName(word.text);
}

DtVdcLayerPdu::DtVdcLayerPdu(DtBufferPlaceHolder* holder) {
  initFresh(kLength, holder, DtVdcLayer, 1);
}

DtVdcLayerPdu::DtVdcLayerPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                             DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcLayer);
}

DtVdcLayerPdu::~DtVdcLayerPdu() = default;

DtVdcLayerPduV0::DtVdcLayerPduV0(DtBufferPlaceHolder* holder) {
  initFresh(kLength, holder, DtVdcLayer, 0);
}

DtVdcLayerPduV0::DtVdcLayerPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                 DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcLayer);
}

DtVdcLayerPduV0::~DtVdcLayerPduV0() = default;
