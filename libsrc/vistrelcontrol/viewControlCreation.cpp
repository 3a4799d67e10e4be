// Building view-control PDU classes from received bytes and from command numbers.
#include "absoluteVcPdu.h"
#include "rawPdu.h"
#include "vistrelControlPdu.h"

namespace {
// One row per view-control class: the wrapping constructor and the constructor from
// scratch. A class that does not exist yet has no row, so its commands are unknown.
template <typename Pdu>
DtVistrelControlPdu* wrap(DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                          DtPduFactory* factory) {
  return new Pdu(bytes, holder, factory);
}
template <typename Pdu>
DtVistrelControlPdu* fresh() {
  return new Pdu();
}

struct ViewControlRow {
  DtVistrelControlPdu* (*wrap)(DtNetViewControlPdu*, DtBufferPlaceHolder*, DtPduFactory*);
  DtVistrelControlPdu* (*fresh)();  // null: not made by command
  bool hasStatusForm;
};

// Indexed by command 0..14.
const ViewControlRow kRows[] = {
    {wrap<DtAbsoluteVCPdu>, fresh<DtAbsoluteVCPdu>, true},  // 0 absolute
    {nullptr, nullptr, false},                             // 1 tether
    {nullptr, nullptr, false},                             // 2 compass
    {nullptr, nullptr, false},                             // 3 mimic
    {nullptr, nullptr, false},                             // 4 offset mimic
    {nullptr, nullptr, false},                             // 5 orbit
    {nullptr, nullptr, false},                             // 6 track
    {nullptr, nullptr, false},                             // 7 tether-track
    {nullptr, nullptr, false},                             // 8 mimic-track
    {nullptr, nullptr, false},                             // 9 group
    {nullptr, nullptr, false},                             // 10 modeless
    {nullptr, nullptr, false},                             // 11 options
    {nullptr, nullptr, false},                             // 12 pivot
    {nullptr, nullptr, false},                             // 13 move
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
