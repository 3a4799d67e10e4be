// vcmover, vcviewer and vcctl as processes of their own on the RTI's server: the viewer
// sees the mover's entities (of a class it did not subscribe by name alone), places them
// where the track says, follows their removal, and a command names one of them.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "geo.h"
#include "process.h"

namespace {

using namespace std::chrono_literals;
constexpr double kPi = 3.14159265358979323846;

struct Seen {
  std::string id, marking, instance, cls, algorithm;
  vcgeo::Vec3 position;
};

class MoverAndViewer : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
    server = vctest::startServer(port);
    url = vctest::hubUrl(port, "Moving");
    viewer = std::make_unique<vctest::ChildProcess>(
        vctest::binaryPath("vcviewer"),
        std::vector<std::string>{"--id", "v-1", "--federation", url, "--fdd", VC_FDD_FILE});
    std::string line;
    ASSERT_TRUE(viewer->waitForLine("vcviewer v-1 ready on " + url, line, 20s))
        << viewer->transcript();
  }
  void TearDown() override {
    if (viewer) viewer->writeLine("quit");
  }

  // The viewer's table, asked for on its standard input.
  std::vector<Seen> entities() {
    std::vector<Seen> out;
    if (!viewer->writeLine("entities")) return out;
    std::string line;
    while (viewer->readLine(line, 10s)) {
      if (line.rfind("entities ", 0) == 0) break;
      if (line.rfind("entity ", 0) != 0) continue;
      std::istringstream words(line.substr(7));
      Seen s;
      words >> s.id >> s.marking >> s.instance >> s.cls >> s.algorithm >> s.position.x >>
          s.position.y >> s.position.z;
      out.push_back(s);
    }
    return out;
  }
  std::vector<Seen> waitForEntities(std::size_t count) {
    std::vector<Seen> seen;
    for (int i = 0; i < 200; ++i) {
      seen = entities();
      if (seen.size() == count && (count == 0 || seen.back().algorithm != "-")) break;
      std::this_thread::sleep_for(50ms);
    }
    return seen;
  }

  std::uint16_t port = 0;
  std::unique_ptr<vctest::ChildProcess> server;
  std::string url;
  std::unique_ptr<vctest::ChildProcess> viewer;
};

}  // namespace

TEST_F(MoverAndViewer, TheViewerSeesTheEntitiesOnTheirTrackAndTheirRemoval) {
  const std::string missing = vctest::objectManagementMissing(url);
  if (!missing.empty()) GTEST_SKIP() << missing;
  // A circle of 1500 m at 800 m over 47 N 8 E; the entities are spread a third apart.
  vctest::ChildProcess mover(
      vctest::binaryPath("vcmover"),
      {"--federation", url,      "--fdd",  VC_FDD_FILE, "--count",  "3",       "--track",
       "circle",       "--size", "1500",   "--at",      "47,8,800", "--speed", "60",
       "--marking",    "EAGLE",  "--site", "7",         "--app",    "9"},
      true);
  std::string line;
  ASSERT_TRUE(mover.waitForLine("ready", line, 20s)) << mover.transcript();
  const std::vector<Seen> seen = waitForEntities(3);
  ASSERT_EQ(seen.size(), 3u) << viewer->transcript() << mover.transcript();

  const vcgeo::Vec3 centre = vcgeo::toGeocentric({47 * kPi / 180, 8 * kPi / 180, 800});
  const vcgeo::Mat3 toEnu = vcgeo::worldToEnu(centre);
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    const Seen& s = seen[static_cast<std::size_t>(i)];
    EXPECT_EQ(s.id, "7:9:" + std::to_string(i + 1));
    EXPECT_EQ(s.marking, "\"EAGLE" + std::to_string(i + 1) + "\"");
    EXPECT_EQ(s.instance, "EAGLE" + std::to_string(i + 1));
    EXPECT_EQ(s.cls, "Aircraft");
    EXPECT_EQ(s.algorithm, "DRM_FPW");
    // On the circle, at its height: dead reckoning between updates strays under a metre.
    const vcgeo::Vec3 local = toEnu * (s.position - centre);
    EXPECT_NEAR(std::hypot(local.x, local.y), 1500.0, 3.0);
    EXPECT_NEAR(local.z, 0.0, 3.0);
  }

  // The designator names an entity the viewer knows; the eyepoint takes it.
  const std::string vcctl = vctest::binaryPath("vcctl");
  vctest::ChildProcess tether(
      vcctl, {"--federation", url, "--fdd", VC_FDD_FILE, "--viewer", "v-1", "tether", "7:9:2"},
      true);
  EXPECT_EQ(tether.wait(30s), 0) << tether.transcript();
  EXPECT_TRUE(viewer->waitForLine("7:9:2", line, 10s)) << viewer->transcript();

  mover.kill(SIGINT);
  EXPECT_TRUE(mover.waitForLine("3 entities deleted", line, 20s)) << mover.transcript();
  EXPECT_EQ(mover.wait(20s), 0) << mover.transcript();
  EXPECT_EQ(waitForEntities(0).size(), 0u) << viewer->transcript();
}

TEST_F(MoverAndViewer, MistakesOnTheCommandLineSayWhatIsWrong) {
  struct Case {
    std::vector<std::string> args;
    const char* says;
  };
  const Case cases[] = {
      {{"--track", "waypoints"}, "needs '--waypoints FILE'"},
      {{"--track", "waypoints", "--waypoints", "/nonexistent/path"}, "cannot read"},
      {{"--marking", "ABCDEFGHIJ", "--count", "12"}, "fit 11 characters"},
      {{"--at", "91,0,0"}, "latitude"},
      {{"--count", "0"}, "--count"},
      {{"--federation", "thread://Here"}, "--federation"},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args = {"--federation", url, "--fdd", VC_FDD_FILE};
    args.insert(args.end(), c.args.begin(), c.args.end());
    vctest::ChildProcess mover(vctest::binaryPath("vcmover"), args, true);
    EXPECT_EQ(mover.wait(20s), 2) << mover.transcript();
    EXPECT_NE(mover.transcript().find(c.says), std::string::npos) << mover.transcript();
  }
}
