// Building draw-control PDU classes from received bytes and from draw types. Each family
// adds its rows here when its classes exist; until then its commands are unknown.
#include "rawPdu.h"
#include "vistrelControlPdu.h"

DtVistrelControlPdu* DtVistrelControlPdu::createDrawControlCurrent(DtNetViewControlPdu* bytes,
                                                                   DtBufferPlaceHolder*,
                                                                   DtPduFactory*) {
  if (!bytes) return nullptr;
  return nullptr;
}

DtVistrelControlPdu* DtVistrelControlPdu::createDrawControlV0(DtNetViewControlPdu* bytes,
                                                              DtBufferPlaceHolder*,
                                                              DtPduFactory*) {
  if (!bytes) return nullptr;
  return nullptr;
}

DtVistrelControlPdu* DtNewDrawControlPdu(DtViewerCommand) { return nullptr; }

DtVistrelControlPdu* DtNewDrawControlPduV0(DtViewerCommand) { return nullptr; }
