// Building draw-control PDU classes from received bytes and from draw types.
#include "pduCreators.h"
#include "rawPdu.h"
#include "vdcAreaPdu.h"
#include "vdcAttributePdu.h"
#include "vdcAttributeUpdatePdu.h"
#include "vdcCommandPdu.h"
#include "vdcLayerPdu.h"
#include "vdcLinePdu.h"
#include "vdcPolyObjectPdu.h"
#include "vdcTextPdu.h"
#include "vdcTrianglePdu.h"
#include "vistrelControlPdu.h"

namespace {
using pducreators::Wrap;
using pducreators::wrap;
using Fresh = DtVistrelDrawControlPdu* (*)();
template <typename Pdu>
constexpr Fresh fresh = &pducreators::fresh<DtVistrelDrawControlPdu, Pdu>;

// Received bytes, by viewer command (the family's general draw type).
struct ReceivedRow {
  int command;
  Wrap current;
  Wrap v0;
};
const ReceivedRow kReceived[] = {
    {DtVdcCommand, wrap<DtVdcCommandPdu>, wrap<DtVdcCommandPduV0>},
    {DtVdcLine, wrap<DtVdcLinePdu>, wrap<DtVdcLinePduV0>},
    // The current layout has one line PDU for single and segmented lines alike.
    {DtVdcSegmentedLine, wrap<DtVdcLinePdu>, wrap<DtVdcSegmentedLinePduV0>},
    {DtVdcPolyObject, wrap<DtVdcPolyObjectPdu>, wrap<DtVdcPolyObjectPduV0>},
    {DtVdcTriangle, wrap<DtVdcTrianglePdu>, wrap<DtVdcTrianglePduV0>},
    {DtVdcArea, wrap<DtVdcAreaPdu>, wrap<DtVdcAreaPduV0>},
    {DtVdcText, wrap<DtVdcTextPdu>, wrap<DtVdcTextPduV0>},
    {DtVdcAttribute, wrap<DtVdcAttributePdu>, wrap<DtVdcAttributePduV0>},
    {DtVdcAttributeUpdate, wrap<DtVdcAttributeUpdatePdu>, wrap<DtVdcAttributeUpdatePduV0>},
    {DtVdcLayer, wrap<DtVdcLayerPdu>, wrap<DtVdcLayerPduV0>},
};

DtVistrelControlPdu* wrapReceived(DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                                  DtPduFactory* factory, bool current) {
  if (!bytes) return nullptr;
  int command = static_cast<int>(rawpdu::command(bytes));
  for (const ReceivedRow& row : kReceived)
    if (row.command == command) return (current ? row.current : row.v0)(bytes, holder, factory);
  return nullptr;
}

// New PDUs, by draw type: the types from `first` to `last` belong to one family.
struct TypeRow {
  int first;
  int last;
  Fresh current;
  Fresh v0;         // null: version 0 has no such PDU
  int currentFold;  // taken off the type in the current layout
};
const TypeRow kTypes[] = {
    {DtVdcCommandRemove, DtVdcCommandRemoveFromLayer, fresh<DtVdcCommandPdu>,
     fresh<DtVdcCommandPduV0>, 0},
    {DtVdc2DLine, DtVdc3DLine, fresh<DtVdcLinePdu>, fresh<DtVdcLinePduV0>, 0},
    // A current line holds any number of segments, so the segmented kinds become the
    // plain line of the same dimension.
    {DtVdc2DSegmentedLine, DtVdc3DSegmentedLine, fresh<DtVdcLinePdu>,
     fresh<DtVdcSegmentedLinePduV0>, DtVdcSegmentedLine - DtVdcLine},
    {DtVdcCircle, DtVdcCylinder, fresh<DtVdcPolyObjectPdu>, fresh<DtVdcPolyObjectPduV0>, 0},
    {DtVdc2DTriangle, DtVdc3DTriangle, fresh<DtVdcTrianglePdu>, fresh<DtVdcTrianglePduV0>, 0},
    // Version-0 viewers never drew areas made this way.
    {DtVdc3DArea, DtVdc3DArea, fresh<DtVdcAreaPdu>, nullptr, 0},
    {DtVdc2DText, DtVdc3DText, fresh<DtVdcTextPdu>, fresh<DtVdcTextPduV0>, 0},
    {DtVdcAttributeGroupTemplate, DtVdcAttributeBitmap, fresh<DtVdcAttributePdu>,
     fresh<DtVdcAttributePduV0>, 0},
    {DtVdcAttributeValueSet, DtVdcAttributeValueSetText, fresh<DtVdcAttributeUpdatePdu>,
     fresh<DtVdcAttributeUpdatePduV0>, 0},
    {DtVdcLayer, DtVdcLayer, fresh<DtVdcLayerPdu>, fresh<DtVdcLayerPduV0>, 0},
};

DtVistrelControlPdu* newByType(DtViewerCommand drawType, bool current) {
  int type = static_cast<int>(drawType);
  for (const TypeRow& row : kTypes) {
    if (type < row.first || type > row.last) continue;
    Fresh make = current ? row.current : row.v0;
    if (!make) return nullptr;
    DtVistrelDrawControlPdu* pdu = make();
    pdu->setType(static_cast<unsigned int>(current ? type - row.currentFold : type));
    return pdu;
  }
  return nullptr;
}
}  // namespace

DtVistrelControlPdu* DtVistrelControlPdu::createDrawControlCurrent(DtNetViewControlPdu* bytes,
                                                                   DtBufferPlaceHolder* holder,
                                                                   DtPduFactory* factory) {
  return wrapReceived(bytes, holder, factory, true);
}

DtVistrelControlPdu* DtVistrelControlPdu::createDrawControlV0(DtNetViewControlPdu* bytes,
                                                              DtBufferPlaceHolder* holder,
                                                              DtPduFactory* factory) {
  return wrapReceived(bytes, holder, factory, false);
}

DtVistrelControlPdu* DtNewDrawControlPdu(DtViewerCommand drawType) {
  return newByType(drawType, true);
}

DtVistrelControlPdu* DtNewDrawControlPduV0(DtViewerCommand drawType) {
  return newByType(drawType, false);
}
