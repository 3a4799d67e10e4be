// vcctl across processes: against the viewer stand-in through a hub that each test
// starts, checking what the viewer applied and what vcctl printed; the listener; a
// federation that cannot be joined; and the demo script run to its end.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
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

TEST_F(VcctlAgainstViewer, ListenStopsAtItsCountWhenMoreArriveTogether) {
  ChildProcess listener(vctest::binaryPath("vcctl"), {"--federation", url_, "--fdd", VC_FDD_FILE,
                                                      "--name", "ears", "listen", "--count", "3"});
  std::string line;
  ASSERT_TRUE(listener.waitForLine("listening on", line, 10s)) << listener.transcript();
  // One template with 49 attributes: 50 PDUs sent back to back, which arrive together.
  Words panel = {"draw", "template", "--id", "300", "--name", "Many"};
  for (int i = 1; i <= 49; ++i) panel.push_back(std::to_string(i) + ":a" + std::to_string(i));
  VcctlRun sent = vcctl(panel);
  ASSERT_EQ(sent.code, 0) << sent.output;
  EXPECT_EQ(sent.ownLines().size(), 50u);
  EXPECT_EQ(listener.wait(10s), 0) << listener.transcript();
  const std::string heard = listener.transcript();
  size_t reports = 0;
  for (size_t at = heard.find("\n--- "); at != std::string::npos; at = heard.find("\n--- ", at + 1))
    ++reports;
  EXPECT_EQ(reports, 3u) << heard;
  EXPECT_NE(heard.find("--- 3: "), std::string::npos) << heard;
  EXPECT_EQ(heard.find("--- 4: "), std::string::npos) << heard;
}

// A misspelled federation is one nobody is in: vcctl would have to create it. It says
// so and sends nothing, unless told that an empty federation is what is meant.
TEST_F(VcctlAgainstViewer, AFederationNobodyIsInGetsNothingUnlessAsked) {
  const std::string typo = vctest::hubUrl(port_, "VcctlE2eo");
  VcctlRun refused = runVcctl({"--federation", typo, "--fdd", VC_FDD_FILE, "orbit", "1:1:1"});
  EXPECT_EQ(refused.code, 1) << refused.output;
  EXPECT_EQ(refused.ownLines(),
            Words{"vcctl: nothing sent: federation \"" + typo +
                  "\" did not exist, so no viewer is in it and no federate could receive "
                  "anything (check the name, or pass --allow-new-federation)"});

  VcctlRun allowed = runVcctl(
      {"--federation", typo, "--fdd", VC_FDD_FILE, "--allow-new-federation", "orbit", "1:1:1"});
  EXPECT_EQ(allowed.code, 0) << allowed.output;
  EXPECT_EQ(allowed.ownLines(),
            (Words{"vcctl: note: federation \"" + typo +
                       "\" did not exist; vcctl created it, so no federate can receive what it "
                       "sends",
                   "sent DtVcOrbit to 0:0:0"}));
  // The viewer heard neither: the next thing it applies is what comes through its own
  // federation.
  EXPECT_EQ(vcctl({"hide", "8"}).code, 0);
  EXPECT_EQ(viewerNext().rfind("draw hide 8", 0), 0u);
}

// The RTI took the PDUs, but leaving was never confirmed: what was sent last may still
// have been in this process. That is a failure, said within a few seconds.
TEST_F(VcctlAgainstViewer, AHubThatStopsAnsweringBeforeTheResignIsAFailure) {
  // Another RTI's client may not notice its server going (OpenRTI's carries on alone).
  if (!vctest::embeddedRti()) GTEST_SKIP() << "what the embedded RTI says when its hub fails";
  ChildProcess listener(
      vctest::binaryPath("vcctl"),
      {"--federation", url_, "--fdd", VC_FDD_FILE, "--name", "ears", "listen", "--seconds", "1"},
      true);
  std::string line;
  ASSERT_TRUE(listener.waitForLine("listening on", line, 10s)) << listener.transcript();
  hub_->kill(SIGSTOP);
  const int code = listener.wait(30s);
  hub_->kill(SIGCONT);
  EXPECT_EQ(code, 1) << listener.transcript();
  EXPECT_NE(listener.transcript().find(
                "vcctl: leaving federation \"" + url_ +
                "\" failed: connection to the RTI hub at 127.0.0.1:" + std::to_string(port_) +
                " lost: no answer from the RTI hub: what was sent last may not have reached any "
                "federate"),
            std::string::npos)
      << listener.transcript();
}

TEST_F(VcctlAgainstViewer, AHubThatGoesAwayIsAFailure) {
  // Another RTI's client may not notice its server going (OpenRTI's carries on alone).
  if (!vctest::embeddedRti()) GTEST_SKIP() << "what the embedded RTI says when its hub fails";
  ChildProcess listener(vctest::binaryPath("vcctl"),
                        {"--federation", url_, "--fdd", VC_FDD_FILE, "--name", "ears", "listen"},
                        true);
  std::string line;
  ASSERT_TRUE(listener.waitForLine("listening on", line, 10s)) << listener.transcript();
  hub_->kill(SIGKILL);
  EXPECT_EQ(listener.wait(20s), 1) << listener.transcript();
  EXPECT_NE(listener.transcript().find("vcctl: connection lost: "), std::string::npos)
      << listener.transcript();
}

// An object model without ViewControl, or without its parameter, carries nothing: the
// viewer never says ready and vcctl never says sent.
TEST(Tools, AnObjectModelWithoutViewControlIsAFailure) {
  if (!vctest::serverAvailable() || !built("vcviewer"))
    GTEST_SKIP() << "needs a server process and vcviewer";
  std::uint16_t port = 0;
  auto hub = vctest::startServer(port);
  // The object model may be several modules (the 1516-2010 flavour names the RPR modules
  // before ours): ours is the last, and the one changed here.
  const std::string models = VC_FDD_FILE;
  const std::string fdd = readFile(models.substr(models.rfind(',') + 1));
  auto variant = [&](const std::string& from, const std::string& to, const std::string& tag) {
    std::string text = fdd;
    text.replace(text.find(from), from.size(), to);
    const std::string path =
        testing::TempDir() + "fdd_" + tag + "_" + std::to_string(::getpid()) + ".xml";
    std::ofstream(path) << text;
    return path;
  };
  // Names as the model's format writes them: attributes in the 1516-2000 FDD, elements in
  // the 1516-2010 FOM module.
  const bool elements = fdd.find("<name>ViewControl</name>") != std::string::npos;
  auto named = [&](const std::string& name) {
    return elements ? "<name>" + name + "</name>" : "name=\"" + name + "\"";
  };
  const std::string noClass = variant(named("ViewControl"), named("OtherControl"), "class");
  const std::string noParameter = variant(named("ViewControlPdu"), named("Payload"), "parameter");

  const std::string url1 = vctest::hubUrl(port, "NoClass");
  ChildProcess viewer(vctest::binaryPath("vcviewer"),
                      {"--id", "v", "--federation", url1, "--fdd", noClass}, true);
  EXPECT_EQ(viewer.wait(20s), 1) << viewer.transcript();
  EXPECT_EQ(viewer.transcript(),
            "vcviewer: the object model of federation \"" + url1 + "\" (this process named " +
                noClass + ") has no interaction class ViewControl: no control PDU can travel\n");

  const std::string url2 = vctest::hubUrl(port, "NoParameter");
  VcctlRun draw = runVcctl({"--federation", url2, "--fdd", noParameter, "--allow-new-federation",
                            "draw", "text2d", "--id", "1", "--at", "0,0", "T"});
  EXPECT_EQ(draw.code, 1) << draw.output;
  EXPECT_EQ(draw.ownLines(),
            Words{"vcctl: the object model of federation \"" + url2 + "\" (this process named " +
                  noParameter +
                  ") has no parameter ViewControlPdu in the interaction class ViewControl: no "
                  "control PDU can travel"});

  // A federation that cannot be joined is reported once, by the tool.
  ChildProcess lone(vctest::binaryPath("vcviewer"),
                    {"--id", "v", "--federation", "rti://127.0.0.1:1/Nowhere"}, true);
  EXPECT_EQ(lone.wait(20s), 1);
  const std::string said = lone.transcript();
  EXPECT_EQ(said.rfind("vcviewer: cannot join federation "
                       "\"rti://127.0.0.1:1/Nowhere\" as \"vcviewer-v\": ",
                       0),
            0u)
      << said;
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  std::remove(noClass.c_str());
  std::remove(noParameter.c_str());
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
  if (!vctest::serverAvailable() || !built("vcviewer") || !built("vcctl"))
    GTEST_SKIP() << "needs a server process, vcviewer and vcctl";
  const std::string out = testing::TempDir() + "vcctl_demo_" + std::to_string(::getpid());
  std::vector<std::string> args{"BUILD_DIR=" VC_BINARY_DIR, "OUT_DIR=" + out,
                                VC_SOURCE_DIR "/scripts/demo.sh", "--no-build"};
  // Built against OpenRTI, the same scenario runs through its rtinode.
  if (!vctest::embeddedRti()) args.push_back("--openrti");
  ChildProcess demo("/usr/bin/env", args, true);
  std::string line;
  EXPECT_TRUE(demo.waitForLine("== Done. The viewer's picture of the scene: " + out + "/scene.svg",
                               line, 30s))
      << demo.transcript();
  EXPECT_EQ(demo.wait(10s), 0) << demo.transcript();
  const std::string said = demo.transcript();
  EXPECT_NE(said.find("answer from viewer-1: DtVcTetherStatus"), std::string::npos) << said;
  EXPECT_NE(said.find("viewer-1 | track track=1:1:3"), std::string::npos) << said;
  EXPECT_NE(said.find("viewer-1 | draw value 21/1 x=88"), std::string::npos) << said;
  std::string svg = readFile(out + "/scene.svg");
  EXPECT_NE(svg.find("Tether, orbit, track"), std::string::npos);
  // The aircraft are in the plan, and what hangs on them with them, not in the tray of
  // entities not known.
  EXPECT_NE(svg.find(">EAGLE2<"), std::string::npos);
  EXPECT_NE(svg.find("EAGLE2, orbited"), std::string::npos);
  EXPECT_EQ(svg.find(">1:1:2<"), std::string::npos);
  EXPECT_NE(svg.find("</svg>"), std::string::npos);
}

}  // namespace
