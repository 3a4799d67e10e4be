#include "vdcCommandPdu.h"

#include <cstdio>

#include "dtOutput.h"
#include "vdcLayout.h"

namespace {
struct CommandLayout {
  size_t layerId;
};
constexpr vdclayout::Versions<CommandLayout> kCommand = {{168}, {164}};

const CommandLayout& layout(const DtVdcCommandPduBase& pdu) {
  return vdclayout::of(kCommand, pdu);
}

bool namesLayer(int type) {
  return type == DtVdcCommandAddToLayer || type == DtVdcCommandRemoveFromLayer;
}
}  // namespace

DtVdcCommandPduBase::DtVdcCommandPduBase() = default;
DtVdcCommandPduBase::~DtVdcCommandPduBase() = default;

DtNetU32 DtVdcCommandPduBase::layerId() const {
  return readU32(layout(*this).layerId);
}

void DtVdcCommandPduBase::setLayerId(DtNetU32 id) {
  writeU32(layout(*this).layerId, id);
}

void DtVdcCommandPduBase::printData() const {
  DtVistrelDrawControlPdu::printData();
  if (namesLayer(static_cast<int>(static_cast<unsigned int>(type()))))
    DtDumpInteger("LayerId:", layerId());
}

const char* DtVdcCommandPduBase::string() const {
  unsigned int id = objectId();
  int kind = static_cast<int>(static_cast<unsigned int>(type()));
  if (namesLayer(kind))
    return formatText("%u %d %u", id, kind, static_cast<unsigned int>(layerId()));
  return formatText("%u %d", id, kind);
}

void DtVdcCommandPduBase::setFromString(const char* text) {
  const char* line = text ? text : "";
  unsigned int id = 0, layer = 0;
  int kind = 0;
  std::sscanf(line, "%u %d", &id, &kind);
  setObjectId(id);
  setType(static_cast<unsigned int>(kind));
  if (namesLayer(kind)) {
    std::sscanf(line, "%u %d %u", &id, &kind, &layer);
    setLayerId(layer);
  }
}

DtVdcCommandPdu::DtVdcCommandPdu(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcCommand, 1)) setType(DtVdcUndefined);
}

DtVdcCommandPdu::DtVdcCommandPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                 DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcCommand);
}

DtVdcCommandPdu::~DtVdcCommandPdu() = default;

DtVdcCommandPduV0::DtVdcCommandPduV0(DtBufferPlaceHolder* holder) {
  if (initFresh(kLength, holder, DtVdcCommand, 0)) setType(DtVdcUndefined);
}

DtVdcCommandPduV0::DtVdcCommandPduV0(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                     DtPduFactory* factory) {
  initReceived(bytes, holder, factory, DtVdcCommand);
}

DtVdcCommandPduV0::~DtVdcCommandPduV0() = default;
