// The hub's log path on its own: which lines count as one kind, how many of a kind pass
// in a second and what the summary says, and the sink over a real pipe that nobody reads,
// whose reader goes away, or that is only read after the sink is gone.
#if __has_include("log_sink.h")
#include "log_sink.h"
#include "process.h"

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

using vcrti::hub::LogLimiter;
using vcrti::hub::LogSink;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

// ------------------------------------------------------------------ kinds and allowances

TEST(LogKinds, LinesThatDifferInNumbersNamesOrAddressesAreOneKind) {
  EXPECT_EQ(LogLimiter::kindOf("client 127.0.0.1:40112 connected"), "client #.#.#.#:# connected");
  EXPECT_EQ(LogLimiter::kindOf("client 10.1.2.3:9 connected"), "client #.#.#.#:# connected");
  EXPECT_EQ(LogLimiter::kindOf("federate 12 (vcviewer 1:2:3) from 127.0.0.1:5 joined 'Fed 7'"),
            "federate # (*) from #.#.#.#:# joined '*'");
  EXPECT_EQ(LogLimiter::kindOf("x (a (b) c) y 'q(1)' z"), "x (*) y '*' z");
  // What differs in words is another kind.
  EXPECT_NE(LogLimiter::kindOf("client 1 connected"), LogLimiter::kindOf("client 1 disconnected"));
  // An unclosed quote swallows the rest rather than let its text make new kinds.
  EXPECT_EQ(LogLimiter::kindOf("federation execution 'a\\x0a created"), "federation execution '*");
  EXPECT_LE(LogLimiter::kindOf(std::string(5000, 'w')).size(), 96u);
}

TEST(LogLimits, AKindPassesItsAllowanceEachSecondAndTheRestIsSummedUpAfter) {
  LogLimiter limiter(LogLimiter::Limits{3, 16});
  const auto t0 = Clock::now();
  int passed = 0;
  for (int i = 0; i < 10; ++i) passed += limiter.admit("client " + std::to_string(i) + " gone", t0);
  EXPECT_EQ(passed, 3);
  // Another kind has an allowance of its own.
  EXPECT_TRUE(limiter.admit("federate 1 resigned", t0));
  EXPECT_TRUE(limiter.summaries(t0 + milliseconds(999)).empty());
  EXPECT_EQ(
      limiter.summaries(t0 + seconds(1)),
      std::vector<std::string>{"held back 7 more lines like \"client # gone\" (over 3 a second)"});
  EXPECT_TRUE(limiter.summaries(t0 + seconds(2)).empty()) << "said twice";

  // A second that ends with a line of its kind is summed up all the same.
  const auto t1 = t0 + seconds(5);
  for (int i = 0; i < 5; ++i) limiter.admit("client 1 gone", t1);
  EXPECT_TRUE(limiter.admit("client 1 gone", t1 + milliseconds(1500)));
  EXPECT_EQ(
      limiter.summaries(t1 + milliseconds(1500)),
      std::vector<std::string>{"held back 2 more lines like \"client # gone\" (over 3 a second)"});
}

TEST(LogLimits, KindsBeyondTheLimitShareOneAllowance) {
  LogLimiter limiter(LogLimiter::Limits{2, 3});
  const auto t0 = Clock::now();
  for (const char* kind : {"a", "b", "c"}) EXPECT_TRUE(limiter.admit(kind, t0)) << kind;
  // A client that makes every line a kind of its own gets two lines through in all.
  int passed = 0;
  for (int i = 0; i < 100; ++i)
    passed += limiter.admit("name '" + std::to_string(i) + "' word" + std::to_string(i % 7) + "x" +
                                std::string(static_cast<std::size_t>(i), 'y'),
                            t0);
  EXPECT_EQ(passed, 2);
  EXPECT_EQ(limiter.summaries(t0 + seconds(1)),
            std::vector<std::string>{"held back 98 more lines like \"*\" (over 2 a second)"});
}

// ------------------------------------------------------------------ the sink over a pipe

struct Pipe {
  int read = -1, write = -1;
  explicit Pipe(int size = 4096) {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) == 0) {
      read = fds[0];
      write = fds[1];
      (void)::fcntl(read, F_SETPIPE_SZ, size);
    }
  }
  ~Pipe() {
    closeRead();
    closeWrite();
  }
  void closeRead() {
    if (read >= 0) ::close(read);
    read = -1;
  }
  void closeWrite() {
    if (write >= 0) ::close(write);
    write = -1;
  }
};

LogSink::Limits unthinned(std::size_t bufferBytes) {
  LogSink::Limits l;
  l.bufferBytes = bufferBytes;
  l.lines.perKindPerSecond = 1u << 30;
  return l;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t at = 0;
  for (std::size_t end; (end = text.find('\n', at)) != std::string::npos; at = end + 1)
    lines.push_back(text.substr(at, end - at));
  if (at < text.size()) lines.push_back("TORN:" + text.substr(at));
  return lines;
}

TEST(LogSinkPipe, NobodyReadingCostsDroppedLinesNeverAWaitAndTheCountIsExact) {
  Pipe pipe;
  ASSERT_GE(pipe.write, 0);
  LogSink sink(pipe.write, "hub: ", unthinned(8192));
  pipe.closeWrite();  // the sink has its own copy
  constexpr int kLines = 5000;
  auto writing = std::async(std::launch::async, [&] {
    for (int i = 0; i < kLines; ++i) sink.write("line " + std::to_string(i));
  });
  ASSERT_EQ(writing.wait_for(seconds(60)), std::future_status::ready) << "write() waited";
  EXPECT_FALSE(sink.flush(milliseconds(50))) << "flushed into a pipe nobody reads";
  const std::uint64_t dropped = sink.dropped();
  EXPECT_GT(dropped, 0u);

  // Read at last: the flush completes once the pipe has taken the rest.
  std::string text;
  auto flushing = std::async(std::launch::async, [&] { return sink.flush(seconds(20)); });
  while (flushing.wait_for(milliseconds(0)) != std::future_status::ready)
    vctest::readUntil(pipe.read, text, "\x01", milliseconds(20));
  EXPECT_TRUE(flushing.get());
  vctest::readUntil(pipe.read, text, "\x01", milliseconds(100));
  // Every line that went out is whole and in order, and where lines are missing, the
  // lines just before the gap say how many.
  const std::string report = " log lines dropped: more than 8192 bytes were waiting to be written";
  std::uint64_t next = 0, reported = 0, reportedInAll = 0;
  for (const std::string& line : linesOf(text)) {
    ASSERT_EQ(line.rfind("hub: ", 0), 0u) << line;
    const std::size_t at = line.find(report);
    if (at != std::string::npos && at + report.size() == line.size()) {
      const std::uint64_t n = std::stoull(line.substr(5, at - 5));
      reported += n;
      reportedInAll += n;
      continue;
    }
    ASSERT_EQ(line.rfind("hub: line ", 0), 0u) << line;
    const std::uint64_t seq = std::stoull(line.substr(10));
    ASSERT_EQ(seq - next, reported) << "before line " << seq;
    reported = 0;
    next = seq + 1;
  }
  EXPECT_EQ(kLines - next, reported) << "after the last line";
  EXPECT_EQ(reportedInAll, dropped);

  // Read again, the pipe takes lines as before.
  sink.write("after");
  EXPECT_TRUE(sink.flush(seconds(20)));
  ASSERT_TRUE(vctest::readUntil(pipe.read, text, "hub: after\n", seconds(20)))
      << text.substr(text.size() - 200);
}

TEST(LogSinkPipe, AReaderThatWentAwayIsAnErrorNotASignalAndLaterLinesAreCounted) {
  Pipe pipe;
  LogSink sink(pipe.write, "", unthinned(1 << 16));
  pipe.closeRead();
  sink.write("into the void");  // SIGPIPE would end the test here
  EXPECT_TRUE(sink.flush(seconds(20)));
  for (int i = 0; i < 10; ++i) sink.write("more");
  EXPECT_EQ(sink.dropped(), 10u);
}

TEST(LogSinkPipe, ASinkStuckOnAFullPipeIsLetGoOfAndFinishesOnceItIsRead) {
  Pipe pipe;
  std::vector<std::string> given;
  {
    auto sink = std::make_unique<LogSink>(pipe.write, "", unthinned(1 << 16));
    for (int i = 0; i < 2000; ++i) sink->write("stuck " + std::to_string(i));
    auto closing = std::async(std::launch::async, [&] { sink.reset(); });
    ASSERT_EQ(closing.wait_for(LogSink::kCloseWait + seconds(30)), std::future_status::ready);
  }
  pipe.closeWrite();
  // The end of the pipe comes once the writer has written what it held and closed its copy.
  std::string text;
  ASSERT_TRUE(vctest::readUntil(pipe.read, text, "", seconds(20)))
      << "the writer never let go of the pipe";
  const std::vector<std::string> lines = linesOf(text);
  ASSERT_EQ(lines.size(), 2000u);
  EXPECT_EQ(lines.front(), "stuck 0");
  EXPECT_EQ(lines.back(), "stuck 1999");
}

TEST(LogSinkPipe, ALongLineKeepsItsStartAndItsEnd) {
  Pipe pipe(1 << 16);
  LogSink sink(pipe.write, "> ", unthinned(1 << 16));
  const std::string line = "federation execution '" + std::string(100000, 'n') + "' created by x";
  sink.write(line);
  sink.write(std::string(3072, 'e'));  // as long as may be, kept whole
  std::string text;
  ASSERT_TRUE(vctest::readUntil(pipe.read, text, std::string(3072, 'e') + "\n", seconds(20)));
  const std::vector<std::string> lines = linesOf(text);
  ASSERT_EQ(lines.size(), 2u);
  const std::size_t leftOut = line.size() - 2048 - 1024;
  EXPECT_EQ(lines[0], "> " + line.substr(0, 2048) + "...(" + std::to_string(leftOut) +
                          " bytes left out)..." + line.substr(line.size() - 1024));
  EXPECT_EQ(lines[1], "> " + std::string(3072, 'e'));
}

TEST(LogSinkPipe, WithoutADescriptorEveryLineIsDiscarded) {
  LogSink sink(-1, "", LogSink::Limits{});
  sink.write("nowhere");
  EXPECT_TRUE(sink.flush(milliseconds(0)));
  EXPECT_EQ(sink.dropped(), 0u);
}

}  // namespace
#endif
