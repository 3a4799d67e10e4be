#pragma once
// The two ways a creation table makes a PDU object: around received bytes, or fresh.
#include "vistrelControlPdu.h"

namespace pducreators {

using Wrap = DtVistrelControlPdu* (*)(DtNetViewControlPdu*, DtBufferPlaceHolder*, DtPduFactory*);

template <typename Pdu>
DtVistrelControlPdu* wrap(DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                          DtPduFactory* factory) {
  return new Pdu(bytes, holder, factory);
}

/// A new PDU of class Pdu, returned as its family's base class.
template <typename Base, typename Pdu>
Base* fresh() {
  return new Pdu();
}

}  // namespace pducreators
