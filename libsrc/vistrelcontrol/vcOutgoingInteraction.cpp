#include "vcOutgoingInteraction.h"

#include "rawPdu.h"
#include "vistrelDrawControlPdu.h"

DtVcOutgoingInteraction::DtVcOutgoingInteraction(const DtVistrelControlPdu& pdu) {
  if (copyKeepsBytes(pdu))
    lent_ = &pdu;
  else
    setVcPdu(pdu);
}

DtVcOutgoingInteraction::~DtVcOutgoingInteraction() = default;

const DtVistrelControlPdu* DtVcOutgoingInteraction::vcPdu() const {
  return lent_ ? lent_ : DtVistrelControlInteraction::vcPdu();
}

void DtVcOutgoingInteraction::printData() const {
  if (lent_)
    lent_->print();
  else
    DtVistrelControlInteraction::printData();
}

// The copy is DtVistrelControlPdu::create() of the PDU's bytes. It has as many bytes as
// the header's length field states, holds nothing when byte 2 is not the control PDU
// kind, and keeps every byte as it is except in one case: a current-layout segmented
// line (command 2530) becomes the plain line class, which writes its own command 2520.
// Every other class the creation tables pick writes back the command it was chosen by.
bool DtVcOutgoingInteraction::copyKeepsBytes(const DtVistrelControlPdu& pdu) {
  const char* bytes = pdu.packet();
  if (!bytes || pdu.length() < DtPdu::kHeaderSize) return false;
  if (static_cast<unsigned char>(bytes[2]) != DtVistrelControlPdu::kPduKind) return false;
  if (DtPdu::headerLength(bytes) != pdu.length()) return false;
  if (rawpdu::command(bytes) == static_cast<unsigned int>(DtVdcSegmentedLine) &&
      DtVistrelControlPdu::drawControlParamVersion(
          reinterpret_cast<const DtNetViewControlPdu*>(bytes)) != 0)
    return false;
  return true;
}
