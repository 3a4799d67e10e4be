// The example programs run as a user would run them: against a hub, with a viewer
// stand-in on the other end.
#include <gtest/gtest.h>

#include <chrono>
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

}  // namespace
