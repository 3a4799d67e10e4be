#pragma once
// Bytes in, PDU out: hands a viewer stand-in each PDU a controller or drawer sends, decoded
// from its bytes as the network would deliver it. For tests that link vcviewercore.
//   vcviewer::Viewer viewer{...};
//   vctest::ViewerWire wire{viewer};
//   DtVistrelRemoteController controller{&wire, DtString("v1")};
#include <gtest/gtest.h>

#include <memory>

#include "viewer.h"
#include "vistrelControl.h"

namespace vctest {

struct ViewerWire : DtCustomRemoteControlSender {
  explicit ViewerWire(vcviewer::Viewer& v) : viewer(v) {}
  void send(const char* pdu, int length) override {
    std::unique_ptr<DtVistrelControlPdu> received(
        DtVistrelControlPdu::createFromBytes(pdu, static_cast<size_t>(length)));
    ASSERT_TRUE(received);
    viewer.receive(*received);
  }
  vcviewer::Viewer& viewer;
};

}  // namespace vctest
