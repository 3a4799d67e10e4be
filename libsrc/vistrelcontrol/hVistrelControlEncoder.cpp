#include "hVistrelControlEncoder.h"

#include <typeinfo>

#include "hVistrelControlInter.h"
#include "vcOutgoingInteraction.h"

DtVistrelControlEncoder::DtVistrelControlEncoder(DtExerciseConn* conn, DtInterClassDesc* classDesc)
    : DtInteractionEncoder(conn, classDesc) {
  addParameterEncoder("ViewControlPdu", &DtVistrelControlEncoder::encodeViewControlPdu);
}

DtVistrelControlEncoder::~DtVistrelControlEncoder() = default;

void DtVistrelControlEncoder::encodeViewControlPdu(const DtInteraction* inter,
                                                   dtrti::ParameterHandleValueMap& values,
                                                   dtrti::ParameterHandle handle) {
  if (!inter) return;
  // The controller and the drawer send exactly these classes: then no cast needs to
  // search.
  const std::type_info& type = typeid(*inter);
  auto* vc = type == typeid(DtVcOutgoingInteraction) || type == typeid(DtVistrelControlInteraction)
                 ? static_cast<const DtVistrelControlInteraction*>(inter)
                 : dynamic_cast<const DtVistrelControlInteraction*>(inter);
  const DtVistrelControlPdu* pdu = vc ? vc->vcPdu() : nullptr;
  if (!pdu) return;
  // The RTI copies the value before sendInteraction returns, so the parameter may point
  // straight at the PDU's bytes.
  values[handle].setDataPointer(const_cast<char*>(pdu->packet()),
                                static_cast<unsigned long>(pdu->length()));
}
