// A controller in this process, a viewer stand-in in another, a hub between them.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "process.h"
#include "vistrelControl.h"

namespace {

using namespace std::chrono_literals;

struct Reports {
  std::vector<int> commands;
  std::vector<std::string> viewers;
  static void take(const DtVistrelControlPdu& pdu, void* usr) {
    auto* r = static_cast<Reports*>(usr);
    r->commands.push_back(pdu.viewerCommand());
    r->viewers.push_back(pdu.viewerId().c_str());
  }
};

class ControllerE2E : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
    hub = vctest::startServer(port);
    url = vctest::hubUrl(port, "Steering");
  }
  std::unique_ptr<vctest::ChildProcess> startViewer(const std::string& id, bool echo = false) {
    std::vector<std::string> args{url, VC_FDD_FILE, "viewer-process-" + id, id};
    if (echo) args.push_back("--echo");
    auto viewer = std::make_unique<vctest::ChildProcess>(vctest::binaryPath("vc_peer"), args);
    std::string line;
    EXPECT_TRUE(viewer->waitForLine("READY", line, 10s)) << viewer->transcript();
    return viewer;
  }
  // Drives the controller's connection until `done` or about five seconds.
  template <typename Done>
  void pump(DtVistrelRemoteController& controller, Done done) {
    for (int i = 0; i < 250 && !done(); ++i) controller.exerciseConn()->drainInput(0.02);
  }
  std::uint16_t port = 0;
  std::unique_ptr<vctest::ChildProcess> hub;
  std::string url;
};

TEST_F(ControllerE2E, StateRequestIsAnsweredToTheRightCallbacks) {
  auto viewer = startViewer("v-7");
  DtVistrelRemoteController controller(url.c_str(), "controller-process",
                                       static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE,
                                       DtString("v-7"));
  ASSERT_TRUE(controller.exerciseConn()->connected());
  controller.setControllerId("ctl-A");
  Reports forViewer, forAll, forOther;
  controller.addViewModeChangeCallback(&Reports::take, &forViewer, "v-7");
  controller.addViewModeChangeCallback(&Reports::take, &forAll,
                                       DtVistrelRemoteController::SEND_TO_ALL);
  controller.addViewModeChangeCallback(&Reports::take, &forOther, "v-8");
  controller.requestCurrentViewMode("v-7");
  std::string line;
  ASSERT_TRUE(viewer->waitForLine("PDU 14 ", line, 10s)) << viewer->transcript();
  // Header only: 152 bytes, our ids stamped in.
  EXPECT_EQ(line.size(), std::string("PDU 14 ").size() + 2 * 152);
  ASSERT_TRUE(viewer->waitForLine("ANSWERED 505", line, 10s)) << viewer->transcript();
  pump(controller, [&] { return !forViewer.commands.empty() && !forAll.commands.empty(); });
  ASSERT_EQ(forViewer.commands, std::vector<int>{505});
  EXPECT_EQ(forViewer.viewers, std::vector<std::string>{"v-7"});
  EXPECT_EQ(forAll.commands, std::vector<int>{505});
  EXPECT_TRUE(forOther.commands.empty());
}

TEST_F(ControllerE2E, EchoesOfOwnCommandsAreFilteredByDefault) {
  auto viewer = startViewer("v-7", true);
  DtVistrelRemoteController controller(url.c_str(), "controller-process", "", VC_FDD_FILE, nullptr,
                                       DtString("v-7"));
  controller.setControllerId("ctl-B");
  Reports all;
  controller.addViewModeChangeCallback(&Reports::take, &all, "0:0:0");
  float radius = 100;
  std::string line;
  controller.setOrbitMode(nullptr, &radius, nullptr, nullptr, nullptr);
  ASSERT_TRUE(viewer->waitForLine("PDU 5 ", line, 10s)) << viewer->transcript();
  // The echo comes back with our sender id: dropped. Then a marker answer proves the
  // connection was drained past it.
  controller.requestCurrentViewMode("v-7");
  ASSERT_TRUE(viewer->waitForLine("ANSWERED", line, 10s));
  pump(controller, [&] { return !all.commands.empty(); });
  EXPECT_EQ(all.commands, std::vector<int>{505});

  controller.setIgnoreCommandsSentFromUs(false);
  all.commands.clear();
  controller.setOrbitMode(nullptr, &radius, nullptr, nullptr, nullptr);
  ASSERT_TRUE(viewer->waitForLine("PDU 5 ", line, 10s));
  pump(controller, [&] { return !all.commands.empty(); });
  EXPECT_EQ(all.commands, std::vector<int>{5});
}

}  // namespace
