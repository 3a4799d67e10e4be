// Received bytes -> control PDU objects, by every way the library takes them in: the sized
// entry point in both layouts, the header-trusting creators on the decoder's padded copy,
// and the interaction that a connection hands to its callbacks. Whatever class comes out
// is read through every accessor, printed, turned into text, copied, assigned, changed
// through its setters with values from the input, and read back from its own bytes.
#include <fuzzer/FuzzedDataProvider.h>

#include <RTI/VariableLengthData.h>

#include <cstdlib>
#include <memory>

#include "fuzzSupport.h"
#include "pduVisitors.h"
#include "vistrelControl.h"

namespace {

void exercise(DtVistrelControlPdu* raw, FuzzedDataProvider& input, bool copies) {
  std::unique_ptr<DtVistrelControlPdu> pdu(raw);
  if (!pdu) return;
  pduvisit::Values values(input);
  pduvisit::readAll(*pdu, values);
  if (copies && !pduvisit::copyAndAssign(*pdu, values) &&
      !dynamic_cast<DtUnknownVistrelControlPdu*>(pdu.get()))
    std::abort();  // a class the visitors do not know: extend pduVisitors.h

  pduvisit::setAll(*pdu, values);
  pduvisit::readAll(*pdu, values);
  // What a sender would put on the wire reads back through the receiving side.
  std::unique_ptr<DtVistrelControlPdu> again(
      DtVistrelControlPdu::createFromBytes(pdu->packet(), static_cast<size_t>(pdu->length())));
  if (again) pduvisit::readAll(*again, values, false);
}

// The controller's receiving side: callbacks for every viewer and for one named viewer.
class NullSender : public DtCustomRemoteControlSender {
 public:
  void send(const char* pdu, int length) override {
    fuzzsupport::useBytes(pdu, static_cast<size_t>(length));
  }
};

void heard(const DtVistrelControlPdu& pdu, void*) {
  fuzzsupport::use(pdu.viewerId());
  fuzzsupport::use(pdu.string());
}

DtVistrelRemoteController& controller() {
  static NullSender sender;
  static DtVistrelRemoteController* c = [] {
    auto* made = new DtVistrelRemoteController(&sender, "viewer-1");
    made->setControllerId("ctl");
    made->addViewModeChangeCallback(&heard, nullptr, DtVistrelRemoteController::SEND_TO_ALL);
    made->addViewModeChangeCallback(&heard, nullptr, "viewer-1");
    return made;
  }();
  return *c;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzsupport::silenceOutput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  exercise(DtVistrelControlPdu::createFromBytes(data, size, true), input, true);
  exercise(DtVistrelControlPdu::createFromBytes(data, size, false), input, true);

  // The decoder's path: the parameter value copied and padded to its stated length,
  // then handed to the creators that trust the header.
  rti1516::VariableLengthData value(data, static_cast<unsigned long>(size));
  if (const char* padded = DtInteractionDecoder::pduBuffer(value)) {
    const auto* header = reinterpret_cast<const DtNetPduHeader*>(padded);
    exercise(DtVistrelControlPdu::createFromNet(header), input, false);
    exercise(DtVistrelControlPdu::create(header), input, false);

    DtVistrelControlInteraction inter;
    inter.setFromNetPacket(
        reinterpret_cast<const DtNetPduHeader*>(DtInteractionDecoder::pduBuffer(value)));
    DtVistrelControlInteraction copy(inter);
    DtVistrelControlInteraction assigned;
    assigned = copy;
    assigned.printData();
    controller().setIgnoreCommandsSentFromUs(size % 2 == 0);
    controller().processVistrelControl(&assigned);
    if (const DtVistrelControlPdu* held = assigned.vcPdu()) {
      pduvisit::Values values(input);
      pduvisit::readAll(*held, values, false);
    }
  }
  return 0;
}
