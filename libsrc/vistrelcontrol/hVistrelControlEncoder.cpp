#include "hVistrelControlEncoder.h"

#include "hVistrelControlInter.h"

DtVistrelControlEncoder::DtVistrelControlEncoder(DtExerciseConn* conn, DtInterClassDesc* classDesc)
    : DtInteractionEncoder(conn, classDesc) {
  addParameterEncoder("ViewControlPdu", &DtVistrelControlEncoder::encodeViewControlPdu);
}

DtVistrelControlEncoder::~DtVistrelControlEncoder() = default;

void DtVistrelControlEncoder::encodeViewControlPdu(const DtInteraction* inter,
                                                   rti1516::ParameterHandleValueMap& values,
                                                   rti1516::ParameterHandle handle) {
  auto* vc = dynamic_cast<const DtVistrelControlInteraction*>(inter);
  const DtVistrelControlPdu* pdu = vc ? vc->vcPdu() : nullptr;
  if (!pdu) return;
  // The RTI copies the value before sendInteraction returns, so the parameter may point
  // straight at the PDU's bytes.
  values[handle].setDataPointer(const_cast<char*>(pdu->packet()),
                                static_cast<unsigned long>(pdu->length()));
}
