// A federation of both IEEE 1516 APIs through the RTI's own server: vcviewer of one flavour
// of the library steered and drawn into by vcctl of the other, both ways round, each with
// its own flavour's object model (the 1516-2000 FDD and the 1516-2010 FOM module). The
// viewer joins first and so creates the federation; the other API's federate then finds a
// federation made from the other format, which is where the two object models must agree.
// Needs a build with both flavours over one RTI that has a server: the embedded RTI and its
// hub, or OpenRTI and rtinode.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "vcctlRun.h"

namespace {

using namespace std::chrono_literals;
using vctest::ChildProcess;
using vctest::VcctlRun;
using Words = std::vector<std::string>;

struct Flavour {
  const char* suffix;  // of the tools' names
  const char* fom;     // the object model in that API's format
};
const Flavour k2000{"", VC_FDD_FILE};
const Flavour k2010{"-1516e", VC_FOM_MODULE_1516E};
struct Mix {
  const char* name;
  Flavour viewer;
  Flavour controller;
};

// Test names and failure messages name the mix, not its bytes.
void PrintTo(const Mix& mix, std::ostream* os) {
  *os << mix.name;
}

bool built(const std::string& program) {
  return ::access(vctest::programPath(program).c_str(), X_OK) == 0;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class MixedFederation : public testing::TestWithParam<Mix> {
 protected:
  void SetUp() override {
    if (!vctest::serverAvailable() || !built(std::string("vcctl") + k2010.suffix) ||
        !built(std::string("vcviewer") + k2010.suffix))
      GTEST_SKIP() << "needs both flavours built over one RTI with a server process";
    const Mix& mix = GetParam();
    server_ = vctest::startServer(port_);
    url_ = vctest::hubUrl(port_, std::string("Mixed") + mix.name);
    svg_ = testing::TempDir() + "mixed_" + mix.name + "_" + std::to_string(::getpid()) + ".svg";
    viewer_ = std::make_unique<ChildProcess>(
        vctest::programPath(std::string("vcviewer") + mix.viewer.suffix),
        Words{"--id", "viewer-1", "--federation", url_, "--svg", svg_, "--fdd", mix.viewer.fom});
    std::string line;
    ASSERT_TRUE(viewer_->waitForLine("ready on", line, 10s)) << viewer_->transcript();
  }

  VcctlRun vcctl(const Words& args) {
    const Mix& mix = GetParam();
    Words all = {"--federation", url_, "--fdd", mix.controller.fom, "--viewer", "viewer-1"};
    all.insert(all.end(), args.begin(), args.end());
    return vctest::runVcctl(all, "", 20s,
                            vctest::programPath(std::string("vcctl") + mix.controller.suffix));
  }
  std::string viewerSays(const std::string& text) {
    std::string line;
    return viewer_->waitForLine(text, line, 10s) ? line
                                                 : "(not said:\n" + viewer_->transcript() + ")";
  }

  std::uint16_t port_ = 0;
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> viewer_;
  std::string url_;
  std::string svg_;
};

TEST_P(MixedFederation, ControllerSteersTheViewerAndHearsItsAnswer) {
  VcctlRun orbit = vcctl({"orbit", "1:1:1", "--radius", "500", "--rate", "0.1"});
  EXPECT_EQ(orbit.code, 0) << orbit.output;
  EXPECT_EQ(orbit.ownLines(), Words{"sent DtVcOrbit to viewer-1"});
  const std::string applied = viewerSays("orbit ");
  EXPECT_NE(applied.find("attach=1:1:1"), std::string::npos) << applied;
  EXPECT_NE(applied.find("radius=500"), std::string::npos) << applied;

  // The status PDU travels back from the viewer's API to the controller's, whole.
  VcctlRun state = vcctl({"state", "--timeout", "5"});
  EXPECT_EQ(state.code, 0) << state.output;
  EXPECT_EQ(state.lineWith("answer"), "answer from viewer-1: DtVcOrbitStatus");
  EXPECT_EQ(state.lineWith("Command"), "Command DtVcOrbitStatus (505)");
  EXPECT_EQ(state.lineWith("Radius"), "Radius: 500.000000");
  EXPECT_EQ(state.lineWith("AttachTo:"), "AttachTo: 1:1:1");
}

TEST_P(MixedFederation, DrawerDrawsIntoTheViewer) {
  VcctlRun text =
      vcctl({"draw", "text2d", "--id", "3", "--at", "0.1,0.9", "--color", "green", "Hello there"});
  EXPECT_EQ(text.code, 0) << text.output;
  EXPECT_NE(viewerSays("draw add 3 ").find("Hello there"), std::string::npos);
  VcctlRun line = vcctl(
      {"draw", "line3d", "--id", "4", "--color", "red", "--from", "0,0,0", "--to", "100,200,0"});
  EXPECT_EQ(line.code, 0) << line.output;
  EXPECT_NE(viewerSays("draw add 4 ").find("DtVdc3DLine"), std::string::npos);
  VcctlRun remove = vcctl({"remove", "3"});
  EXPECT_EQ(remove.code, 0) << remove.output;
  EXPECT_EQ(viewerSays("draw remove"), "draw remove 3");

  // What the viewer holds when told to stop is what crossed: the line, not the text.
  EXPECT_EQ(vcctl({"option", "exit"}).code, 0);
  viewerSays("svg written");
  EXPECT_EQ(viewer_->wait(10s), 0) << viewer_->transcript();
  const std::string svg = readFile(svg_);
  EXPECT_EQ(svg.find("Hello there"), std::string::npos) << "removed, yet drawn";
  EXPECT_NE(svg.find("stroke=\"#ff0000\""), std::string::npos) << svg;
  std::remove(svg_.c_str());
}

std::string mixName(const testing::TestParamInfo<Mix>& param) {
  return param.param.name;
}

INSTANTIATE_TEST_SUITE_P(Apis, MixedFederation,
                         testing::Values(Mix{"Viewer2000Controller2010", k2000, k2010},
                                         Mix{"Viewer2010Controller2000", k2010, k2000}),
                         mixName);

}  // namespace
