// The example programs run as a user would run them: against a hub, with a viewer
// stand-in on the other end.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "process.h"

namespace {

using namespace std::chrono_literals;

TEST(Examples, OrbitControllerGetsItsAnswer) {
  std::uint16_t port = 0;
  auto hub = vctest::startHub(port);
  std::string url = vctest::hubUrl(port, "Examples");
  vctest::ChildProcess viewer(vctest::binaryPath("vc_peer"), {url, VC_FDD_FILE, "viewer", "v-1"});
  std::string line;
  ASSERT_TRUE(viewer.waitForLine("READY", line, 10s)) << viewer.transcript();
  vctest::ChildProcess example(vctest::binaryPath("orbitController"),
                               {url, VC_FDD_FILE, "v-1", "2:2:2"}, true);
  ASSERT_TRUE(example.waitForLine("reports DtVcOrbitStatus", line, 10s)) << example.transcript();
  EXPECT_EQ(example.wait(10s), 0) << example.transcript();
  // The orbit command arrived first, with the entity and radius the example asked for.
  ASSERT_TRUE(viewer.waitForLine("PDU 5 ", line, 5s));
  EXPECT_NE(line.find("323a323a32"), std::string::npos);  // "2:2:2" as hex
}

}  // namespace
