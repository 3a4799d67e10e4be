#include "hVistrelControlDecoder.h"

#include <typeinfo>

#include "hVistrelControlInter.h"

DtVistrelControlDecoder::DtVistrelControlDecoder(DtExerciseConn* conn, DtInterClassDesc* classDesc)
    : DtInteractionDecoder(conn, classDesc) {
  addParameterDecoder("ViewControlPdu", &DtVistrelControlDecoder::decodeViewControlPdu);
}

DtVistrelControlDecoder::~DtVistrelControlDecoder() = default;

void DtVistrelControlDecoder::decodeViewControlPdu(DtInteraction* inter,
                                                   const dtrti::ParameterHandleValueMap& values,
                                                   dtrti::ParameterHandle handle) {
  if (!inter) return;
  // The connection's creator makes exactly this class: then no cast needs to search.
  auto* vc = typeid(*inter) == typeid(DtVistrelControlInteraction)
                 ? static_cast<DtVistrelControlInteraction*>(inter)
                 : dynamic_cast<DtVistrelControlInteraction*>(inter);
  auto it = values.find(handle);
  if (!vc || it == values.end()) return;
  // The PDU made from the shared buffer takes its own copy, so the buffer is free again
  // for the next decode.
  if (char* bytes = DtInteractionDecoder::pduBuffer(it->second))
    vc->setFromNetPacket(reinterpret_cast<const DtNetPduHeader*>(bytes));
}
