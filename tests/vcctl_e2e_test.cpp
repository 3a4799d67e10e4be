// vcctl across processes: against the viewer stand-in through a hub that each test
// starts, checking what the viewer applied and what vcctl printed; the listener; a
// federation that cannot be joined; and the demo script run to its end.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "vcctlRun.h"

namespace {

using namespace std::chrono_literals;
using vctest::ChildProcess;
using vctest::runVcctl;
using vctest::VcctlRun;
using Words = std::vector<std::string>;

bool built(const std::string& program) {
  return ::access(vctest::binaryPath(program).c_str(), X_OK) == 0;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// A hub and viewer-1 on it, and vcctl pointed at both.
class VcctlAgainstViewer : public testing::Test {
 protected:
  void SetUp() override {
    if (!vctest::serverAvailable() || !built("vcviewer"))
      GTEST_SKIP() << "needs a server process and vcviewer";
    hub_ = vctest::startServer(port_);
    url_ = vctest::hubUrl(port_, "VcctlE2e");
    svg_ = testing::TempDir() + "vcctl_e2e_" + std::to_string(::getpid()) + ".svg";
    viewer_ = std::make_unique<ChildProcess>(
        vctest::binaryPath("vcviewer"),
        Words{"--id", "viewer-1", "--federation", url_, "--svg", svg_, "--fdd", VC_FDD_FILE});
    std::string line;
    ASSERT_TRUE(viewer_->waitForLine("ready on", line, 10s)) << viewer_->transcript();
  }

  VcctlRun vcctl(const Words& args, const std::string& viewer = "viewer-1") {
    return vcctlWith({"--viewer", viewer}, args);
  }
  VcctlRun vcctlWith(const Words& globals, const Words& args) {
    Words all = {"--federation", url_, "--fdd", VC_FDD_FILE};
    all.insert(all.end(), globals.begin(), globals.end());
    all.insert(all.end(), args.begin(), args.end());
    return runVcctl(all);
  }
  // The viewer's next line that contains `text`.
  std::string viewerSays(const std::string& text) {
    std::string line;
    return viewer_->waitForLine(text, line, 5s) ? line
                                                : "(not said:\n" + viewer_->transcript() + ")";
  }
  // The viewer's very next line, whatever it is.
  std::string viewerNext() {
    std::string line;
    return viewer_->readLine(line, 5s) ? line : "(nothing)";
  }

  std::uint16_t port_ = 0;
  std::unique_ptr<ChildProcess> hub_;
  std::unique_ptr<ChildProcess> viewer_;
  std::string url_;
  std::string svg_;
};

TEST_F(VcctlAgainstViewer, ViewCommandsAreAppliedAndStateIsAnswered) {
  VcctlRun orbit = vcctl({"orbit", "1:1:1", "--radius", "500", "--rate", "0.1"});
  EXPECT_EQ(orbit.code, 0) << orbit.output;
  EXPECT_EQ(orbit.ownLines(), Words{"sent DtVcOrbit to viewer-1"});
  std::string applied = viewerSays("orbit ");
  EXPECT_NE(applied.find("attach=1:1:1"), std::string::npos) << applied;
  EXPECT_NE(applied.find("radius=500"), std::string::npos) << applied;

  // The answer is the status form of the mode just set, with its parameters.
  VcctlRun state = vcctl({"state", "--timeout", "5"});
  EXPECT_EQ(state.code, 0) << state.output;
  EXPECT_EQ(state.lineWith("answer"), "answer from viewer-1: DtVcOrbitStatus");
  EXPECT_EQ(state.lineWith("Command"), "Command DtVcOrbitStatus (505)");
  EXPECT_EQ(state.lineWith("Radius"), "Radius: 500.000000");
  EXPECT_EQ(state.lineWith("AttachTo:"), "AttachTo: 1:1:1");

  // A viewer that is not there does not answer, and vcctl says so.
  VcctlRun nobody = vcctl({"state", "--timeout", "0.5"}, "viewer-9");
  EXPECT_EQ(nobody.code, 1) << nobody.output;
  EXPECT_EQ(nobody.ownLines(), (Words{"sent DtVcRequestState to viewer-9",
                                      "vcctl: no answer from viewer viewer-9 within 0.5 s"}));
}

TEST_F(VcctlAgainstViewer, DrawingsOutliveVcctlUntilRemoved) {
  VcctlRun text =
      vcctl({"draw", "text2d", "--id", "3", "--at", "0.1,0.9", "--color", "green", "Hello there"});
  EXPECT_EQ(text.code, 0) << text.output;
  EXPECT_EQ(text.ownLines(), Words{"sent DtVdc2DText object 3 to viewer-1"});
  EXPECT_NE(viewerSays("draw add 3 ").find("Hello there"), std::string::npos);

  // vcctl has exited; had its drawer taken the text back, a remove would come next.
  VcctlRun hide = vcctl({"hide", "3"});
  EXPECT_EQ(hide.code, 0) << hide.output;
  EXPECT_EQ(viewerNext(), "draw hide 3");
  VcctlRun remove = vcctl({"remove", "3"});
  EXPECT_EQ(remove.code, 0) << remove.output;
  EXPECT_EQ(viewerNext(), "draw remove 3");

  // An attribute panel made over three runs, whose value then changes.
  EXPECT_EQ(
      vcctl({"draw", "template", "--id", "20", "--name", "Status", "1:Speed", "2:Fuel:bar:0:100"})
          .code,
      0);
  EXPECT_EQ(vcctl({"draw", "panel", "--id", "21", "--template", "20", "--attach", "100,50,0"}).code,
            0);
  EXPECT_EQ(vcctl({"value", "21", "2", "--number", "35"}).code, 0);
  EXPECT_NE(viewerSays("draw add 21 ").find("template=20"), std::string::npos);
  EXPECT_NE(viewerSays("draw value 21/2").find("x=35"), std::string::npos);

  // The options exit command stops the viewer, which writes what it holds.
  VcctlRun exit = vcctl({"option", "exit"});
  EXPECT_EQ(exit.code, 0) << exit.output;
  viewerSays("svg written");
  EXPECT_EQ(viewer_->wait(10s), 0) << viewer_->transcript();
  std::string svg = readFile(svg_);
  EXPECT_NE(svg.find("Status"), std::string::npos);
  EXPECT_EQ(svg.find("Hello there"), std::string::npos) << "removed, yet drawn";
  std::remove(svg_.c_str());
}

TEST_F(VcctlAgainstViewer, ListenPrintsEveryPduThatArrives) {
  ChildProcess listener(vctest::binaryPath("vcctl"), {"--federation", url_, "--fdd", VC_FDD_FILE,
                                                      "--name", "ears", "listen", "--count", "3"});
  std::string line;
  ASSERT_TRUE(listener.waitForLine("listening on " + url_ + " as ears", line, 10s))
      << listener.transcript();

  EXPECT_EQ(vcctlWith({"--name", "ctl-2", "--viewer", "viewer-1"}, {"orbit", "2:2:2"}).code, 0);
  EXPECT_EQ(vcctlWith({"--name", "ctl-2"}, {"hide", "5"}).code, 0);
  // The viewer's answer to a state request is the third PDU heard.
  EXPECT_EQ(vcctlWith({"--name", "ctl-2", "--viewer", "viewer-1"}, {"state"}).code, 0);

  EXPECT_EQ(listener.wait(10s), 0) << listener.transcript();
  const std::string heard = listener.transcript();
  EXPECT_NE(heard.find("--- 1: DtVcOrbit from ctl-2 to viewer-1, 312 bytes\n"), std::string::npos)
      << heard;
  EXPECT_NE(heard.find("AttachTo: 2:2:2\n"), std::string::npos) << heard;
  EXPECT_NE(heard.find("--- 2: DtVdcCommandHide object 5 from ctl-2 to 0:0:0, 172 bytes\n"),
            std::string::npos)
      << heard;
  EXPECT_NE(heard.find("--- 3: DtVcRequestState from ctl-2 to viewer-1, 152 bytes\n"),
            std::string::npos)
      << heard;
}

TEST(Vcctl, AFederationThatCannotBeJoinedIsReported) {
  // Port 1 on loopback: nothing listens there.
  VcctlRun run = runVcctl(
      {"--federation", "rti://127.0.0.1:1/Nowhere", "--fdd", VC_FDD_FILE, "orbit", "1:1:1"});
  EXPECT_EQ(run.code, 1) << run.output;
  ASSERT_EQ(run.ownLines().size(), 1u) << run.output;
  EXPECT_EQ(run.ownLines()[0].rfind(
                "vcctl: cannot join federation \"rti://127.0.0.1:1/Nowhere\" as \"vcctl\": ", 0),
            0u)
      << run.output;
}

TEST(Demo, RunsItsScenarioAndLeavesTheSvg) {
  if (!vctest::hubAvailable() || !built("vcviewer") || !built("vcctl"))
    GTEST_SKIP() << "needs rtihub, vcviewer and vcctl";
  const std::string out = testing::TempDir() + "vcctl_demo_" + std::to_string(::getpid());
  ChildProcess demo("/usr/bin/env",
                    {"BUILD_DIR=" VC_BINARY_DIR, "OUT_DIR=" + out, VC_SOURCE_DIR "/scripts/demo.sh",
                     "--no-build"},
                    true);
  std::string line;
  EXPECT_TRUE(demo.waitForLine("== Done. The viewer's picture of the scene: " + out + "/scene.svg",
                               line, 30s))
      << demo.transcript();
  EXPECT_EQ(demo.wait(10s), 0) << demo.transcript();
  const std::string said = demo.transcript();
  EXPECT_NE(said.find("answer from viewer-1: DtVcOrbitStatus"), std::string::npos) << said;
  EXPECT_NE(said.find("viewer-1 | draw value 21/1 x=88"), std::string::npos) << said;
  std::string svg = readFile(out + "/scene.svg");
  EXPECT_NE(svg.find("Orbiting 1:1:1"), std::string::npos);
  EXPECT_NE(svg.find("</svg>"), std::string::npos);
}

}  // namespace
