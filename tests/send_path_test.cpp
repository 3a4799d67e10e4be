// What the controller and the drawer put on the wire is what an interaction loaded with
// a copy of their PDU carries, byte for byte, whatever the PDU holds: the send path
// lends the PDU to the encoder instead of copying it only where no one can tell.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "dtRtiSession.h"
#include "process.h"
#include "vistrelControl.h"

namespace {

// What arrives as the ViewControlPdu parameter, raw, at the RTI; "none" when an
// interaction arrives without it.
class Wire : public DtRtiReceiver {
 public:
  void interactionReceived(dtrti::InteractionClassHandle,
                           dtrti::ParameterHandleValueMap const& values) override {
    if (values.empty()) {
      got.push_back("none");
      return;
    }
    const auto& v = values.begin()->second;
    got.emplace_back(static_cast<const char*>(v.data()), v.size());
  }
  std::vector<std::string> got;
};

class SendPath : public ::testing::Test {
 protected:
  void SetUp() override {
    conn = std::make_unique<DtExerciseConn>(kFederation, "sender",
                                            static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
    listener = DtRtiJoin(kFederation, "listener", VC_FDD_FILE, wire);
    listener->subscribeInteractionClass(listener->getInteractionClassHandle(L"ViewControl"));
  }
  void TearDown() override {
    DtRtiLeave(*listener, kFederation);
    conn.reset();
  }

  // The one interaction the last call put on the wire.
  std::string heard() {
    while (listener->evokeCallback(0.0)) {
    }
    if (!vctest::embeddedRti()) {
      // Other RTIs may hand an interaction over through a thread of their own, so it can
      // still be on its way; and they may drop one without the parameter altogether,
      // where ours delivers it without.
      for (int i = 0; i < 40 && wire.got.empty(); ++i) listener->evokeCallback(0.05);
      if (wire.got.empty()) return "none";
    }
    EXPECT_EQ(wire.got.size(), 1u);
    std::string last = wire.got.empty() ? std::string() : wire.got.back();
    wire.got.clear();
    return last;
  }

  // The controller's send against an interaction loaded with a copy of the same PDU,
  // stamped with the same ids.
  void expectSameAsCopy(DtVistrelControlPdu& pdu, const std::string& what) {
    DtVistrelRemoteController controller(conn.get(), "viewer-9");
    controller.setControllerId("controller-9");
    controller.send(pdu);
    std::string lent = heard();
    DtString viewer = pdu.viewerId();
    DtString sender = pdu.senderId();
    pdu.setViewerId("viewer-9");
    pdu.setSenderId("controller-9");
    DtVistrelControlInteraction copy;
    copy.setVcPdu(pdu);
    conn->sendInteraction(copy);
    EXPECT_EQ(lent, heard()) << what;
    pdu.setViewerId(viewer);
    pdu.setSenderId(sender);
  }

  static constexpr const char* kFederation = "thread://send-path";
  Wire wire;
  std::unique_ptr<dtrti::RTIambassador> listener;
  std::unique_ptr<DtExerciseConn> conn;
};

TEST_F(SendPath, EveryViewControlClass) {
  for (int command : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 500, 504, 505, 512}) {
    std::unique_ptr<DtVistrelControlPdu> pdu(
        DtNewViewControlPdu(static_cast<DtViewerCommand>(command)));
    ASSERT_NE(pdu, nullptr) << command;
    expectSameAsCopy(*pdu, "command " + std::to_string(command));
  }
  DtModelessVCPdu modeless;
  expectSameAsCopy(modeless, "modeless");
}

TEST_F(SendPath, EveryDrawControlFamilyInBothLayouts) {
  for (int type : {2511, 2521, 2522, 2531, 2532, 2541, 2542, 2551, 2555, 2561, 2571, 2572, 2573,
                   2581, 2583, 2590}) {
    std::unique_ptr<DtVistrelControlPdu> current(
        DtNewDrawControlPdu(static_cast<DtViewerCommand>(type)));
    if (current) expectSameAsCopy(*current, "current type " + std::to_string(type));
    std::unique_ptr<DtVistrelControlPdu> v0(
        DtNewDrawControlPduV0(static_cast<DtViewerCommand>(type)));
    if (v0) expectSameAsCopy(*v0, "version 0 type " + std::to_string(type));
  }
}

TEST_F(SendPath, PdusWhoseCopyDiffers) {
  // A current-layout line that says "segmented line": its copy is a plain line.
  std::unique_ptr<DtVistrelControlPdu> line(
      DtNewDrawControlPdu(static_cast<DtViewerCommand>(2521)));
  line->setViewerCommand(static_cast<DtViewerCommand>(2530));
  expectSameAsCopy(*line, "current line with command 2530");
  // Commands no class is chosen by, and status forms that do not exist.
  for (int command : {10, 15, 400, 499, 510, 511, 513, 514, 600, 2500, 2600, 65535}) {
    DtOrbitVCPdu orbit;
    orbit.setViewerCommand(static_cast<DtViewerCommand>(command));
    expectSameAsCopy(orbit, "orbit bytes with command " + std::to_string(command));
  }
  // Not a control PDU any more: the copy holds nothing.
  DtOrbitVCPdu otherKind;
  otherKind.writeU8(2, 99);
  expectSameAsCopy(otherKind, "kind 99");
  // A header that states another length than the PDU has.
  DtOrbitVCPdu shortHeader;
  shortHeader.writeU16(8, 200);
  expectSameAsCopy(shortHeader, "header length 200 of 312");
}

TEST_F(SendPath, TheDrawerSendsWhatItsCopyWould) {
  DtVistrelRemoteDrawer drawer(conn.get());
  std::unique_ptr<DtVistrelControlPdu> made(
      DtNewDrawControlPdu(static_cast<DtViewerCommand>(2521)));
  auto* line = static_cast<DtVistrelDrawControlPdu*>(made.get());
  for (int command : {2520, 2530}) {
    line->setViewerCommand(static_cast<DtViewerCommand>(command));
    drawer.sendDrawControlPdu(*line);
    std::string lent = heard();
    DtVistrelControlInteraction copy;
    copy.setVcPdu(*line);
    conn->sendInteraction(copy);
    EXPECT_EQ(lent, heard()) << command;
  }
}

}  // namespace
