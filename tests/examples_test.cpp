// The example programs run as a user would run them: against a hub, with a viewer
// stand-in on the other end.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "peerPdu.h"
#include "process.h"
#include "wireBytes.h"

namespace {

using namespace std::chrono_literals;

TEST(Examples, OrbitControllerGetsItsAnswer) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  vctest::HubWithPeer f("Examples");
  ASSERT_TRUE(f.ready()) << f.viewer.transcript();
  std::string line;
  vctest::ChildProcess example(vctest::binaryPath("orbitController"),
                               {f.url, VC_FDD_FILE, "v-1", "2:2:2"}, true);
  ASSERT_TRUE(example.waitForLine("reports DtVcOrbitStatus", line, 10s)) << example.transcript();
  EXPECT_EQ(example.wait(10s), 0) << example.transcript();
  // The orbit command arrived first, with the entity and radius the example asked for.
  ASSERT_TRUE(f.viewer.waitForLine("PDU 5 ", line, 5s));
  EXPECT_NE(line.find("323a323a32"), std::string::npos);  // "2:2:2" as hex
}

TEST(Examples, DrawSceneDrawsUpdatesAndCleansUp) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  vctest::HubWithPeer f("Examples");
  ASSERT_TRUE(f.ready()) << f.viewer.transcript();
  std::string line;
  vctest::ChildProcess drawScene(vctest::binaryPath("drawScene"),
                                 {f.url, VC_FDD_FILE, "2:2:2", "2:2:3", "0"}, true);
  ASSERT_TRUE(drawScene.waitForLine("fuel now 65", line, 10s)) << drawScene.transcript();
  EXPECT_EQ(drawScene.wait(10s), 0) << drawScene.transcript();

  // Ids: layer 1, line 2, label 3, group 4, its template 5, the template's attributes 6, 7.
  std::vector<vctest::PeerPdu> got = vctest::peerPdus(f.viewer, 19);
  ASSERT_EQ(got.size(), 19u) << f.viewer.transcript();
  std::vector<unsigned int> types, ids;
  for (const vctest::PeerPdu& p : got) {
    types.push_back(wire::u32(p.b(), 164));
    ids.push_back(wire::u32(p.b(), 160));
    EXPECT_EQ(wire::text(p.b(), 76, 64), "draw-example");
  }
  EXPECT_EQ(types,
            (std::vector<unsigned int>{2590, 2522, 2562, 2571, 2574, 2575, 2572, 2581, 2581, 2514,
                                       2514, 2514, 2572, 2581, 2511, 2511, 2511, 2511, 2511}));
  EXPECT_EQ(ids,
            (std::vector<unsigned int>{1, 2, 3, 5, 6, 7, 4, 6, 7, 2, 3, 4, 4, 7, 1, 2, 3, 4, 5}));
  EXPECT_EQ(std::string(got[0].b() + 172, got[0].b() + got[0].bytes.size()), "Formation");
  EXPECT_EQ(wire::text(got[1].b(), 176, 64), "2:2:2");  // the line joins the two entities
  EXPECT_EQ(wire::text(got[1].b(), 240, 64), "2:2:3");
  EXPECT_EQ(std::string(got[2].b() + 388, got[2].b() + got[2].bytes.size()), "Lead");
  EXPECT_EQ(wire::f64(got[5].b(), 392), 100.0);         // the fuel bar's range
  EXPECT_EQ(wire::text(got[6].b(), 176, 64), "2:2:3");  // the panel beside the wingman
  EXPECT_EQ(wire::f64(got[7].b(), 168), 210.0);
  EXPECT_EQ(wire::f64(got[8].b(), 168), 80.0);
  EXPECT_EQ(wire::u32(got[9].b(), 168), 1u);  // into the layer
  EXPECT_EQ(wire::f64(got[13].b(), 168), 65.0);
}

// The guide explains the program it shows; the program it shows is the one built and run.
TEST(Examples, TheGuideShowsFirstApplicationAsItIs) {
  const auto read = [](const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
  };
  const std::string guide = read(VC_SOURCE_DIR "/docs/writing-an-application.md");
  const std::string program = read(VC_SOURCE_DIR "/examples/firstApplication.cpp");
  ASSERT_FALSE(program.empty());
  const size_t start = guide.find("```cpp\n");
  ASSERT_NE(start, std::string::npos);
  const size_t end = guide.find("```\n", start + 7);
  ASSERT_NE(end, std::string::npos);
  EXPECT_EQ(guide.substr(start + 7, end - start - 7), program);
}

// The guide's program against the viewer stand-in, as a reader of the guide runs it: the
// viewer is tethered, shows the text while the program runs, and the program prints the
// viewer's report that its callback received.
TEST(Examples, FirstApplicationTethersDrawsAndHearsTheReport) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  std::uint16_t port = 0;
  std::unique_ptr<vctest::ChildProcess> server = vctest::startServer(port);
  const std::string url = vctest::hubUrl(port, "Guide");
  vctest::ChildProcess viewer(vctest::binaryPath("vcviewer"),
                              {"--id", "viewer-1", "--federation", url, "--fdd", VC_FDD_FILE});
  std::string line;
  ASSERT_TRUE(viewer.waitForLine("ready on", line, 10s)) << viewer.transcript();

  vctest::ChildProcess app(vctest::binaryPath("firstApplication"),
                           {url, VC_FDD_FILE, "viewer-1", "2:2:2"}, true);
  EXPECT_EQ(app.wait(20s), 0) << app.transcript();
  const std::string said = app.transcript();
  EXPECT_NE(said.find("viewer viewer-1 reports DtVcTetherStatus\n  tethered to 2:2:2\n"),
            std::string::npos)
      << said;
  ASSERT_TRUE(viewer.waitForLine("text=\"Hello from first-app\"", line, 10s))
      << viewer.transcript();
  EXPECT_NE(line.find("draw add 1 "), std::string::npos) << line;
  // The drawer takes its text away again when the program ends.
  EXPECT_TRUE(viewer.waitForLine("remove 1", line, 10s)) << viewer.transcript();
}

// What the guide says happens on the usual mistakes: each stops the program with one line
// that says which, before anything is sent.
TEST(Examples, FirstApplicationStopsOnAMisspeltFederationOrABadAddress) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  std::uint16_t port = 0;
  std::unique_ptr<vctest::ChildProcess> server = vctest::startServer(port);
  const std::string misspelt = vctest::hubUrl(port, "Gide");
  vctest::ChildProcess app(vctest::binaryPath("firstApplication"),
                           {misspelt, VC_FDD_FILE, "viewer-1"}, true);
  EXPECT_EQ(app.wait(20s), 1);
  EXPECT_EQ(app.transcript(), "federation " + misspelt + " did not exist: no viewer is in it\n");

  const std::string noName = "rti://127.0.0.1:" + std::to_string(port);
  vctest::ChildProcess bad(vctest::binaryPath("firstApplication"),
                           {noName, VC_FDD_FILE, "viewer-1"}, true);
  EXPECT_EQ(bad.wait(20s), 1);
  // Said once: the library reports through errorText() and prints nothing of its own.
  EXPECT_EQ(bad.transcript(), "cannot join: cannot join federation \"" + noName +
                                  "\" as \"first-app\": '" + noName +
                                  "' is not rti://HOST[:PORT]/NAME: no '/' before the "
                                  "federation name\n");
}

}  // namespace
