// Building view-control PDU classes from received bytes and from command numbers.
#include "absoluteVcPdu.h"
#include "compassVcPdu.h"
#include "groupVcPdu.h"
#include "mimicTrackVcPdu.h"
#include "mimicVcPdu.h"
#include "modelessVcPdu.h"
#include "moveVcPdu.h"
#include "optionsPdu.h"
#include "orbitVcPdu.h"
#include "pduCreators.h"
#include "pivotVcPdu.h"
#include "rawPdu.h"
#include "tetherTrackVcPdu.h"
#include "tetherVcPdu.h"
#include "trackVcPdu.h"
#include "vistrelControlPdu.h"

namespace {
// One row per view-control class: the wrapping constructor and the constructor from
// scratch. A class that does not exist yet has no row, so its commands are unknown.
using pducreators::wrap;
template <typename Pdu>
constexpr DtVistrelControlPdu* (*fresh)() = &pducreators::fresh<DtVistrelControlPdu, Pdu>;

struct ViewControlRow {
  DtVistrelControlPdu* (*wrap)(DtNetViewControlPdu*, DtBufferPlaceHolder*, DtPduFactory*);
  DtVistrelControlPdu* (*fresh)();  // null: not made by command
  bool hasStatusForm;
};

// Indexed by command 0..14.
const ViewControlRow kRows[] = {
    {wrap<DtAbsoluteVCPdu>, fresh<DtAbsoluteVCPdu>, true},           // 0 absolute
    {wrap<DtTetherVCPdu>, fresh<DtTetherVCPdu>, true},               // 1 tether
    {wrap<DtCompassVCPdu>, fresh<DtCompassVCPdu>, true},             // 2 compass
    {wrap<DtMimicVCPdu>, fresh<DtMimicVCPdu>, true},                 // 3 mimic
    {wrap<DtOffsetMimicVCPdu>, fresh<DtOffsetMimicVCPdu>, true},     // 4 offset mimic
    {wrap<DtOrbitVCPdu>, fresh<DtOrbitVCPdu>, true},                 // 5 orbit
    {wrap<DtTrackVCPdu>, fresh<DtTrackVCPdu>, true},                 // 6 track
    {wrap<DtTetherTrackVCPdu>, fresh<DtTetherTrackVCPdu>, true},     // 7 tether-track
    {wrap<DtMimicTrackVCPdu>, fresh<DtMimicTrackVCPdu>, true},       // 8 mimic-track
    {wrap<DtGroupVCPdu>, fresh<DtGroupVCPdu>, true},                 // 9 group
    {wrap<DtModelessVCPdu>, nullptr, true},                          // 10 modeless
    {wrap<DtOptionsPdu>, fresh<DtOptionsPdu>, false},                // 11 options
    {wrap<DtPivotVCPdu>, fresh<DtPivotVCPdu>, true},                 // 12 pivot
    {wrap<DtMoveVCPdu>, fresh<DtMoveVCPdu>, false},                  // 13 move
    {wrap<DtRequestStateVCPdu>, fresh<DtRequestStateVCPdu>, false},  // 14 request state
};
constexpr int kRowCount = sizeof(kRows) / sizeof(kRows[0]);
}  // namespace

DtVistrelControlPdu* DtVistrelControlPdu::createViewControl(DtNetViewControlPdu* bytes,
                                                            DtBufferPlaceHolder* holder,
                                                            DtPduFactory* factory) {
  if (!bytes) return nullptr;
  int command = static_cast<int>(rawpdu::command(bytes));
  bool status = command >= 500;
  int plain = status ? command - 500 : command;
  if (plain < 0 || plain >= kRowCount || !kRows[plain].wrap) return nullptr;
  if (status && !kRows[plain].hasStatusForm) return nullptr;
  DtVistrelControlPdu* pdu = kRows[plain].wrap(bytes, holder, factory);
  if (status) pdu->setStatusCommand(true);
  return pdu;
}

DtVistrelControlPdu* DtNewViewControlPdu(DtViewerCommand command) {
  int c = static_cast<int>(command);
  bool status = c >= 500;
  int plain = status ? c - 500 : c;
  if (plain < 0 || plain >= kRowCount || !kRows[plain].fresh) return nullptr;
  if (status && !kRows[plain].hasStatusForm) return nullptr;
  DtVistrelControlPdu* pdu = kRows[plain].fresh();
  if (status) pdu->setStatusCommand(true);
  return pdu;
}
