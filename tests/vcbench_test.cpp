// vcbench runs to the end in each of its set-ups and prints its figures: two federates
// in one process, and sender and receiver as two processes through a hub, each raw and
// through the controllers. Only that it works is checked here, never how fast.
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "process.h"

namespace {

using std::chrono::seconds;

// Every line vcbench prints, once it has exited with status 0.
std::vector<std::string> run(const std::vector<std::string>& args) {
  vctest::ChildProcess bench(vctest::binaryPath("vcbench"), args);
  std::vector<std::string> lines;
  std::string line;
  while (bench.readLine(line, seconds(60))) lines.push_back(line);
  EXPECT_EQ(bench.wait(seconds(10)), 0) << bench.transcript();
  return lines;
}

bool has(const std::vector<std::string>& lines, const std::string& start) {
  for (const std::string& l : lines)
    if (l.compare(0, start.size(), start) == 0) return true;
  return false;
}

TEST(Vcbench, TwoFederatesInOneProcess) {
  auto lines = run({"--federation", "thread://vcbench-test", "--count", "20000", "--size", "100",
                    "--batch", "64", "--pings", "50"});
  EXPECT_TRUE(has(lines, "throughput=")) << ::testing::PrintToString(lines);
  EXPECT_TRUE(has(lines, "latency p50=")) << ::testing::PrintToString(lines);
  EXPECT_FALSE(has(lines, "out of order")) << ::testing::PrintToString(lines);
}

TEST(Vcbench, ThroughTheControllers) {
  auto lines = run({"--federation", "thread://vcbench-library-test", "--library", "--count", "5000",
                    "--pings", "20"});
  EXPECT_TRUE(has(lines, "throughput=")) << ::testing::PrintToString(lines);
  EXPECT_TRUE(has(lines, "latency p50=")) << ::testing::PrintToString(lines);
}

TEST(Vcbench, SenderAndReceiverThroughAHub) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  std::uint16_t port = 0;
  auto hub = vctest::startServer(port);
  const std::string url = vctest::hubUrl(port, "VcbenchTest");
  vctest::ChildProcess receiver(vctest::binaryPath("vcbench"),
                                {"--federation", url, "--role", "recv"});
  std::string line;
  ASSERT_TRUE(receiver.waitForLine("receiver ready", line, seconds(20))) << receiver.transcript();
  auto lines = run(
      {"--federation", url, "--role", "send", "--count", "20000", "--pings", "20", "--spin", "0"});
  EXPECT_TRUE(has(lines, "throughput=")) << ::testing::PrintToString(lines);
  EXPECT_TRUE(has(lines, "latency p50=")) << ::testing::PrintToString(lines);
  ASSERT_TRUE(receiver.waitForLine("received=20000", line, seconds(20))) << receiver.transcript();
  EXPECT_EQ(receiver.wait(seconds(10)), 0) << receiver.transcript();
}

TEST(Vcbench, ControllersInTwoProcessesThroughAHub) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  std::uint16_t port = 0;
  auto hub = vctest::startServer(port);
  const std::string url = vctest::hubUrl(port, "VcbenchLibraryTest");
  vctest::ChildProcess receiver(vctest::binaryPath("vcbench"),
                                {"--federation", url, "--role", "recv", "--library"});
  std::string line;
  ASSERT_TRUE(receiver.waitForLine("receiver ready", line, seconds(20))) << receiver.transcript();
  auto lines =
      run({"--federation", url, "--role", "send", "--library", "--count", "5000", "--pings", "20"});
  EXPECT_TRUE(has(lines, "throughput=")) << ::testing::PrintToString(lines);
  ASSERT_TRUE(receiver.waitForLine("received=5000", line, seconds(20))) << receiver.transcript();
  EXPECT_EQ(receiver.wait(seconds(10)), 0) << receiver.transcript();
}

// Raw mode talks to the RTI directly: a hub that goes away is a failure it reports, not
// an exception that ends the process.
TEST(Vcbench, AHubThatGoesAwayIsReported) {
  if (!vctest::hubAvailable()) GTEST_SKIP() << "no hub in this build";
  std::uint16_t port = 0;
  auto hub = vctest::startHub(port);
  const std::string url = vctest::hubUrl(port, "VcbenchLost");
  vctest::ChildProcess receiver(vctest::binaryPath("vcbench"),
                                {"--federation", url, "--role", "recv"}, true);
  std::string line;
  ASSERT_TRUE(receiver.waitForLine("receiver ready", line, seconds(20))) << receiver.transcript();
  hub->kill(SIGKILL);
  EXPECT_EQ(receiver.wait(seconds(30)), 1) << receiver.transcript();
  EXPECT_TRUE(receiver.waitForLine("vcbench: connection to " + url + " lost: ", line, seconds(1)))
      << receiver.transcript();
  EXPECT_EQ(receiver.transcript().find("terminate"), std::string::npos) << receiver.transcript();
}

TEST(Vcbench, BadCommandLinesAreRefused) {
  vctest::ChildProcess bench(vctest::binaryPath("vcbench"), {"--library", "--size", "100"}, true);
  std::string line;
  ASSERT_TRUE(bench.waitForLine("--size does not apply", line, seconds(10))) << bench.transcript();
  EXPECT_EQ(bench.wait(seconds(10)), 2);
}

}  // namespace
