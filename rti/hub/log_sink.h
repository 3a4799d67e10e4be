// The hub's log path. Whoever reads the hub's stderr may be slow, stopped or gone (a pipe
// nobody reads fills after some 64 KiB): serving clients must never wait for it. Lines are
// handed to a writer thread through a bounded buffer; when the buffer is full they are
// dropped and counted, and a flood of lines of one kind is thinned before it gets there.
#ifndef VCRTI_HUB_LOG_SINK_H
#define VCRTI_HUB_LOG_SINK_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace vcrti::hub {

// Thins repeated lines: at most `perKindPerSecond` lines of one kind go out in a second,
// the rest are counted and summed up in one line once the second is over. Two lines are
// of one kind when they differ only in numbers and in text between quotes or parentheses
// (addresses, handles, names), so a client cannot make a kind of its own per line; and
// beyond `kinds` kinds at once, every new one shares a single allowance.
class LogLimiter {
 public:
  using Clock = std::chrono::steady_clock;
  struct Limits {
    std::size_t perKindPerSecond = 50;
    std::size_t kinds = 256;
  };

  explicit LogLimiter(Limits limits) : limits_(limits) {}

  // Whether `line` may go out at `now`; a line held back is counted for the summary.
  bool admit(std::string_view line, Clock::time_point now);
  // The summaries of the seconds that ended by `now` in which lines were held back:
  // "held back N more lines like '<kind>' (over M a second)".
  std::vector<std::string> summaries(Clock::time_point now);

  // What makes two lines one kind: digits runs become '#', quoted and parenthesised text
  // becomes '*', and the whole is cut to a bounded length.
  static std::string kindOf(std::string_view line);

 private:
  struct Window {
    Clock::time_point start;
    std::size_t passed = 0;
    std::size_t held = 0;
  };

  std::string summary(const std::string& kind, std::size_t held) const;

  Limits limits_;
  std::map<std::string, Window> windows_;
  std::vector<std::string> due_;  // summaries of seconds that ended
};

// Writes lines to a file descriptor from a thread of its own. write() only appends to a
// buffer of at most `bufferBytes`: past that, lines are dropped and, once the descriptor
// takes data again, one line says how many ("N log lines dropped ..."). Each line is
// prefixed with `prefix`.
class LogSink {
 public:
  struct Limits {
    std::size_t bufferBytes = 256 * 1024;
    LogLimiter::Limits lines;
  };

  // Writes to a duplicate of `fd`, so the caller may close its own; -1 discards every line.
  LogSink(int fd, std::string prefix, Limits limits);
  // Waits a bounded time for what is buffered to go out; a writer still stuck on a full
  // descriptor after that is left to finish on its own, holding its own state.
  ~LogSink();
  LogSink(const LogSink&) = delete;
  LogSink& operator=(const LogSink&) = delete;

  // `line` without a newline. Never waits for the descriptor.
  void write(std::string_view line);
  // Waits up to `timeout` until every line given so far is written (or dropped); true
  // when that happened in time.
  bool flush(std::chrono::milliseconds timeout);
  // Lines dropped so far because the buffer was full.
  std::uint64_t dropped() const;

  // How long the destructor waits for the descriptor.
  static constexpr std::chrono::milliseconds kCloseWait{1000};

 private:
  struct State;
  static void run(std::shared_ptr<State> state);

  std::shared_ptr<State> state_;
  std::thread writer_;
};

}  // namespace vcrti::hub

#endif
