#include "single_headers.h"

#include <RTI/NullFederateAmbassador.h>

namespace {
class Quiet : public rti1516::NullFederateAmbassador {
 public:
  int received = 0;
  void receiveInteraction(rti1516::InteractionClassHandle, rti1516::ParameterHandleValueMap const&,
                          rti1516::VariableLengthData const&, rti1516::OrderType,
                          rti1516::TransportationType) override {
    ++received;
  }
};
}  // namespace

bool onlyNullFederateAmbassadorMade() {
  Quiet q;
  rti1516::FederateAmbassador& base = q;
  base.receiveInteraction(rti1516::InteractionClassHandle(), {}, {}, rti1516::RECEIVE,
                          rti1516::RELIABLE);
  return q.received == 1;
}
