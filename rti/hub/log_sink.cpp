#include "log_sink.h"

#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <mutex>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

namespace vcrti::hub {

namespace {
using Clock = std::chrono::steady_clock;
constexpr auto kWindow = std::chrono::seconds(1);
// Long enough for any kind of line the hub writes to stay apart from the others.
constexpr std::size_t kKindLength = 96;
// A line may carry a client's name of up to a frame's size. Its start and its end say
// what happened; the middle is left out, so one such line cannot fill the buffer.
constexpr std::size_t kLineHead = 2048;
constexpr std::size_t kLineTail = 1024;
// How often held-back lines are summed up when nothing else is written.
constexpr auto kSummaryPoll = std::chrono::milliseconds(200);
// The kind that every kind beyond the limit shares.
const char* const kOtherKinds = "*";
}  // namespace

std::string LogLimiter::kindOf(std::string_view line) {
  std::string kind;
  bool quoted = false;
  int depth = 0;
  bool inDigits = false;
  for (const char c : line) {
    if (kind.size() >= kKindLength) break;
    const bool digit = c >= '0' && c <= '9';
    if (c == '\'' && depth == 0) {
      kind += quoted ? "'" : "'*";
      quoted = !quoted;
    } else if (quoted) {
      continue;
    } else if (c == '(') {
      if (depth++ == 0) kind += "(*";
    } else if (c == ')' && depth > 0) {
      if (--depth == 0) kind += ')';
    } else if (depth > 0) {
      continue;
    } else if (digit) {
      if (!inDigits) kind += '#';
    } else {
      kind += c;
    }
    inDigits = digit && !quoted && depth == 0;
  }
  return kind;
}

bool LogLimiter::admit(std::string_view line, Clock::time_point now) {
  std::string kind = kindOf(line);
  auto it = windows_.find(kind);
  if (it == windows_.end()) {
    if (windows_.size() >= limits_.kinds) kind = kOtherKinds;
    it = windows_.emplace(std::move(kind), Window{now}).first;
  }
  Window& w = it->second;
  if (now - w.start >= kWindow) {
    // A second of this kind has ended: its summary waits for summaries() in due_.
    if (w.held > 0) due_.push_back(summary(it->first, w.held));
    w = Window{now};
  }
  if (w.passed < limits_.perKindPerSecond) {
    ++w.passed;
    return true;
  }
  ++w.held;
  return false;
}

std::vector<std::string> LogLimiter::summaries(Clock::time_point now) {
  for (auto it = windows_.begin(); it != windows_.end();) {
    if (now - it->second.start < kWindow) {
      ++it;
      continue;
    }
    if (it->second.held > 0) due_.push_back(summary(it->first, it->second.held));
    it = windows_.erase(it);
  }
  std::vector<std::string> out;
  out.swap(due_);
  return out;
}

std::string LogLimiter::summary(const std::string& kind, std::size_t held) const {
  return "held back " + std::to_string(held) + " more lines like \"" + kind + "\" (over " +
         std::to_string(limits_.perKindPerSecond) + " a second)";
}

struct LogSink::State {
  State(int descriptor, std::string linePrefix, Limits sinkLimits)
      : fd(descriptor), prefix(std::move(linePrefix)), limits(sinkLimits), limiter(limits.lines) {}

  const int fd;
  const std::string prefix;
  const Limits limits;
  std::mutex mutex;
  std::condition_variable wake;  // lines to write, or stop
  std::condition_variable idle;  // a batch went out
  LogLimiter limiter;
  std::string pending;
  std::uint64_t dropped = 0;
  std::uint64_t unreported = 0;  // dropped since the last line that said so
  bool writing = false;
  bool broken = false;  // the descriptor refuses data for good
  bool stop = false;

  bool settled() const { return pending.empty() && !writing && unreported == 0; }
};

namespace {

// Writes all of `data`, waiting as long as the descriptor makes it wait. False when it
// refuses data for good (closed, no reader left, or not writable at all).
bool writeAll(int fd, const std::string& data) {
  std::size_t done = 0;
  while (done < data.size()) {
    const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
    if (n > 0) {
      done += static_cast<std::size_t>(n);
    } else if (n < 0 && errno == EINTR) {
      continue;
    } else if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
      // Someone made the descriptor non-blocking; waiting here is the writer's job.
      pollfd p{fd, POLLOUT, 0};
      ::poll(&p, 1, -1);
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace

LogSink::LogSink(int fd, std::string prefix, Limits limits) {
  if (fd < 0) return;
  const int own = ::fcntl(fd, F_DUPFD_CLOEXEC, 3);
  if (own < 0) return;
  state_ = std::make_shared<State>(own, std::move(prefix), limits);
  // The writer takes no signals: they stay with the threads that wait for them, and a
  // reader that went away shows as an error from write(), not as SIGPIPE.
  sigset_t all, old;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &old);
  writer_ = std::thread(run, state_);
  pthread_sigmask(SIG_SETMASK, &old, nullptr);
}

LogSink::~LogSink() {
  if (!state_) return;
  const bool flushed = flush(kCloseWait);
  {
    std::lock_guard<std::mutex> lock(state_->mutex);
    state_->stop = true;
  }
  state_->wake.notify_all();
  if (flushed)
    writer_.join();
  else
    writer_.detach();
}

void LogSink::write(std::string_view line) {
  if (!state_) return;
  State& s = *state_;
  std::string cut;
  if (line.size() > kLineHead + kLineTail) {
    cut.reserve(kLineHead + kLineTail + 40);
    cut.append(line.substr(0, kLineHead));
    cut += "...(" + std::to_string(line.size() - kLineHead - kLineTail) + " bytes left out)...";
    cut.append(line.substr(line.size() - kLineTail));
    line = cut;
  }
  {
    std::lock_guard<std::mutex> lock(s.mutex);
    if (s.broken) {
      ++s.dropped;
      return;
    }
    if (!s.limiter.admit(line, Clock::now())) return;
    if (s.pending.size() + s.prefix.size() + line.size() + 1 > s.limits.bufferBytes) {
      ++s.dropped;
      ++s.unreported;
      return;
    }
    s.pending += s.prefix;
    s.pending += line;
    s.pending += '\n';
  }
  s.wake.notify_one();
}

bool LogSink::flush(std::chrono::milliseconds timeout) {
  if (!state_) return true;
  std::unique_lock<std::mutex> lock(state_->mutex);
  return state_->idle.wait_for(lock, timeout, [&] { return state_->broken || state_->settled(); });
}

std::uint64_t LogSink::dropped() const {
  if (!state_) return 0;
  std::lock_guard<std::mutex> lock(state_->mutex);
  return state_->dropped;
}

void LogSink::run(std::shared_ptr<State> state) {
  State& s = *state;
  std::unique_lock<std::mutex> lock(s.mutex);
  for (;;) {
    s.wake.wait_for(lock, kSummaryPoll,
                    [&] { return s.stop || !s.pending.empty() || s.unreported > 0; });
    std::string batch;
    batch.swap(s.pending);
    // Lines are dropped only while the buffer is full, that is after every line in it
    // and before any line buffered from now on: the count goes right behind them.
    if (s.unreported > 0) {
      batch += s.prefix + std::to_string(s.unreported) + " log lines dropped: more than " +
               std::to_string(s.limits.bufferBytes) + " bytes were waiting to be written\n";
      s.unreported = 0;
    }
    // Stopping, every second still open is summed up now.
    const auto now = s.stop ? Clock::now() + kWindow : Clock::now();
    for (const std::string& line : s.limiter.summaries(now)) batch += s.prefix + line + '\n';
    if (!batch.empty()) {
      s.writing = true;
      lock.unlock();
      const bool ok = writeAll(s.fd, batch);
      lock.lock();
      s.writing = false;
      if (!ok) {
        s.broken = true;
        s.pending.clear();
        s.unreported = 0;
      }
      s.idle.notify_all();
    }
    if (s.broken || (s.stop && s.settled())) break;
  }
  s.idle.notify_all();
  lock.unlock();
  ::close(s.fd);
}

}  // namespace vcrti::hub
