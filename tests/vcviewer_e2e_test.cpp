// vcviewer as a process of its own behind a hub, steered and drawn into by a controller
// and a drawer in this process.
#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "process.h"
#include "vistrelControl.h"

namespace {

using namespace std::chrono_literals;

struct Reports {
  std::vector<std::vector<char>> pdus;
  static void take(const DtVistrelControlPdu& pdu, void* usr) {
    static_cast<Reports*>(usr)->pdus.emplace_back(pdu.packet(), pdu.packet() + pdu.length());
  }
};

std::string readFile(const std::string& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class ViewerProcess : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
    hub = vctest::startServer(port);
    url = vctest::hubUrl(port, "Viewing");
    svgPath = testing::TempDir() + "vcviewer_e2e_" + std::to_string(::getpid()) + ".svg";
    std::remove(svgPath.c_str());
    viewer = std::make_unique<vctest::ChildProcess>(
        vctest::binaryPath("vcviewer"),
        std::vector<std::string>{"--id", "v-1", "--federation", url, "--fdd", VC_FDD_FILE, "--svg",
                                 svgPath, "--verbose"});
    std::string line;
    ASSERT_TRUE(viewer->waitForLine("vcviewer v-1 ready on " + url, line, 10s))
        << viewer->transcript();
    controller = std::make_unique<DtVistrelRemoteController>(
        url.c_str(), "steering", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE, DtString("v-1"));
    ASSERT_TRUE(controller->exerciseConn()->connected());
    controller->setControllerId("ctl");
    controller->addViewModeChangeCallback(&Reports::take, &reports, "v-1");
  }
  void TearDown() override { std::remove(svgPath.c_str()); }

  // Waits for the viewer's line, giving our connection its turn meanwhile.
  void expectLine(const std::string& text) {
    std::string line;
    EXPECT_TRUE(viewer->waitForLine(text, line, 10s)) << "no '" << text << "' in:\n"
                                                      << viewer->transcript();
  }
  // The viewer's answer to a state request, as the controller receives it.
  std::vector<char> state() {
    reports.pdus.clear();
    controller->requestCurrentViewMode("v-1");
    for (int i = 0; i < 500 && reports.pdus.empty(); ++i)
      controller->exerciseConn()->drainInput(0.02);
    EXPECT_EQ(reports.pdus.size(), 1u) << viewer->transcript();
    return reports.pdus.empty() ? std::vector<char>() : reports.pdus.back();
  }

  std::uint16_t port = 0;
  std::unique_ptr<vctest::ChildProcess> hub;
  std::string url, svgPath;
  std::unique_ptr<vctest::ChildProcess> viewer;
  std::unique_ptr<DtVistrelRemoteController> controller;
  Reports reports;
};

TEST_F(ViewerProcess, StateRequestIsAnsweredWithTheStatusOfTheCurrentMode) {
  DtString entity("1:2:3");
  float radius = 500, rate = 0.25f;
  controller->setOrbitMode(&entity, &radius, nullptr, nullptr, &rate);
  expectLine("orbit attach=1:2:3 radius=500 azimuthrate=0.25");
  std::vector<char> answer = state();
  ASSERT_FALSE(answer.empty());
  std::unique_ptr<DtVistrelControlPdu> pdu(
      DtVistrelControlPdu::createFromBytes(answer.data(), answer.size()));
  auto* orbit = dynamic_cast<DtOrbitVCPdu*>(pdu.get());
  ASSERT_TRUE(orbit);
  EXPECT_EQ(orbit->viewerCommand(), DtVcOrbitStatus);
  EXPECT_EQ(orbit->viewerId(), "v-1");
  EXPECT_EQ(orbit->senderId(), "vcviewer-v-1");
  EXPECT_EQ(orbit->attachId(), "1:2:3");
  EXPECT_EQ(orbit->radius(), 500.0f);
  EXPECT_EQ(orbit->azimuthRate(), 0.25f);
  EXPECT_EQ(orbit->ignoreFlags() & 0xFFFFFFFFul, 0xFFEBE5C7ul);
  expectLine("state -> DtVcOrbitStatus");
}

TEST_F(ViewerProcess, PdusForAnotherViewerAreNotApplied) {
  DtString entity("1:2:3");
  controller->setTargetVistrelId("v-2");
  controller->setTetherMode(&entity, nullptr, nullptr);
  expectLine("ignored DtVcTether for v-2");
  controller->setTargetVistrelId("v-1");
  std::vector<char> answer = state();
  ASSERT_FALSE(answer.empty());
  std::unique_ptr<DtVistrelControlPdu> pdu(
      DtVistrelControlPdu::createFromBytes(answer.data(), answer.size()));
  EXPECT_EQ(pdu->viewerCommand(), DtVcAbsoluteStatus);
  EXPECT_EQ(viewer->transcript().find("\ntether "), std::string::npos) << viewer->transcript();
}

TEST_F(ViewerProcess, ExitCommandStopsItCleanlyWithTheSceneWritten) {
  DtVistrelRemoteDrawer drawer(controller->exerciseConn());
  unsigned int id =
      drawer.add(new DtVdcText2DObject(drawer.nextId(), "Hello & <welcome>",
                                       DtVdcVector2D(0.5, 0.5), DtVdcColor::DtVdcWhite, false));
  expectLine("draw add " + std::to_string(id) + " DtVdc2DText");
  controller->exit();
  expectLine("option exit");
  expectLine("svg written " + svgPath);
  expectLine("vcviewer v-1 stopped: exit command");
  EXPECT_EQ(viewer->wait(10s), 0);
  std::string svg = readFile(svgPath);
  EXPECT_EQ(svg.rfind("<?xml", 0), 0u);
  EXPECT_NE(svg.find("</svg>"), std::string::npos);
  EXPECT_NE(svg.find("Hello &amp; &lt;welcome&gt;"), std::string::npos);
}

TEST_F(ViewerProcess, TerminationAndEndOfInputStopItCleanlyToo) {
  viewer->writeLine("svg");
  expectLine("svg written " + svgPath);
  viewer->kill(SIGTERM);
  expectLine("vcviewer v-1 stopped: terminated");
  EXPECT_EQ(viewer->wait(10s), 0);

  auto second = std::make_unique<vctest::ChildProcess>(
      vctest::binaryPath("vcviewer"),
      std::vector<std::string>{"--id", "v-3", "--federation", url, "--fdd", VC_FDD_FILE});
  std::string line;
  ASSERT_TRUE(second->waitForLine("ready", line, 10s)) << second->transcript();
  second->closeStdin();
  EXPECT_TRUE(second->waitForLine("vcviewer v-3 stopped: end of input", line, 10s))
      << second->transcript();
  EXPECT_EQ(second->wait(10s), 0);
}

}  // namespace
