#include "requestGate.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <thread>

namespace vcviewer {

namespace {

using Clock = std::chrono::steady_clock;

// After a refusal the client may still be sending: what it sent is read and dropped for a
// little while, so that it gets to read the refusal instead of a reset, but no longer.
constexpr auto kLinger = std::chrono::milliseconds(500);
constexpr size_t kLingerBytes = 256 * 1024;
constexpr size_t kReadChunk = 16 * 1024;

Refusal refusal(int status, const char* reason, std::string text) {
  Refusal r;
  r.status = status;
  r.reason = reason;
  r.text = std::move(text);
  return r;
}

bool startsWithNoCase(const std::string& s, size_t at, const char* prefix) {
  for (size_t i = 0; prefix[i]; ++i) {
    if (at + i >= s.size()) return false;
    char c = s[at + i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != prefix[i]) return false;
  }
  return true;
}

void setBlocking(int fd, bool blocking) {
  int flags = ::fcntl(fd, F_GETFL);
  if (flags >= 0) ::fcntl(fd, F_SETFL, blocking ? flags & ~O_NONBLOCK : flags | O_NONBLOCK);
}

}  // namespace

HeadCheck checkRequest(const std::string& bytes, const GateLimits& limits) {
  HeadCheck check;
  auto refuse = [&](Refusal r) {
    check.state = HeadCheck::State::Refused;
    check.refusal = std::move(r);
    return check;
  };
  const std::string tooLong = "request head over " + std::to_string(limits.maxHeadBytes) + " bytes";
  size_t lines = 0, pos = 0, headEnd = std::string::npos;
  long long contentLength = -1;
  bool chunked = false;
  for (;;) {
    const size_t nl = bytes.find('\n', pos);
    if (nl == std::string::npos) break;
    const size_t end = nl > pos && bytes[nl - 1] == '\r' ? nl - 1 : nl;
    if (end == pos) {  // the empty line that ends the head
      headEnd = nl + 1;
      break;
    }
    if (lines == 0) {
      const size_t sp = bytes.find(' ', pos);
      if (sp != std::string::npos && sp < end) {
        const size_t sp2 = bytes.find(' ', sp + 1);
        check.target = bytes.substr(sp + 1, std::min(sp2, end) - sp - 1);
      }
    } else if (startsWithNoCase(bytes, pos, "content-length:")) {
      size_t at = pos + 15;
      while (at < end && (bytes[at] == ' ' || bytes[at] == '\t')) ++at;
      const size_t digits = at;
      long long value = 0;
      // Saturates: any length that large is refused as too large, not as malformed.
      for (; at < end && bytes[at] >= '0' && bytes[at] <= '9'; ++at)
        value = std::min(value * 10 + (bytes[at] - '0'), 1LL << 40);
      while (at < end && (bytes[at] == ' ' || bytes[at] == '\t')) ++at;
      if (at == digits || at != end)
        return refuse(refusal(400, "Bad Request", "bad Content-Length"));
      contentLength = value;
    } else if (startsWithNoCase(bytes, pos, "transfer-encoding:")) {
      chunked = true;
    }
    ++lines;
    if (lines > limits.maxHeaders + 1)
      return refuse(refusal(431, "Request Header Fields Too Large",
                            "more than " + std::to_string(limits.maxHeaders) + " request headers"));
    pos = nl + 1;
  }
  if (headEnd == std::string::npos) {
    if (bytes.size() > limits.maxHeadBytes)
      return refuse(refusal(431, "Request Header Fields Too Large", tooLong));
    return check;
  }
  if (headEnd > limits.maxHeadBytes)
    return refuse(refusal(431, "Request Header Fields Too Large", tooLong));
  if (chunked)
    return refuse(refusal(411, "Length Required", "a request body needs a Content-Length"));
  const size_t body = contentLength < 0 ? 0 : static_cast<size_t>(contentLength);
  if (body > limits.maxBody)
    return refuse(refusal(413, "Payload Too Large",
                          "request body over " + std::to_string(limits.maxBody) + " bytes"));
  if (bytes.size() < headEnd + body) return check;
  check.state = HeadCheck::State::Complete;
  check.length = headEnd + body;
  return check;
}

std::string refusalResponse(const Refusal& r) {
  const std::string body = r.text + "\n";
  return "HTTP/1.1 " + std::to_string(r.status) + " " + r.reason +
         "\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Length: " +
         std::to_string(body.size()) + "\r\nConnection: close\r\n" + r.extraHeaders + "\r\n" + body;
}

struct RequestGate::Impl {
  struct Conn {
    int fd;
    Clock::time_point since;  // accepted, or refused when lingering
    std::string bytes;
    bool lingering = false;
    size_t drained = 0;
  };

  GateLimits limits;
  Dispatch dispatch;
  std::mutex mutex;
  std::vector<int> inbox;  // guarded by mutex
  bool stopping = false;   // guarded by mutex
  int wake[2] = {-1, -1};
  std::vector<Conn> conns;  // the gate's thread only
  std::thread thread;

  void run();
  void take(int fd, Clock::time_point now);
  // Reads what `c` has sent; false when the connection is to be closed.
  bool readFrom(Conn& c, Clock::time_point now);
  void refuse(Conn& c, const Refusal& r, Clock::time_point now);
  static void close(Conn& c) { ::close(c.fd); }
};

RequestGate::RequestGate(GateLimits limits, Dispatch dispatch) : impl_(new Impl) {
  impl_->limits = limits;
  impl_->dispatch = std::move(dispatch);
  if (::pipe2(impl_->wake, O_NONBLOCK | O_CLOEXEC) != 0) impl_->wake[0] = impl_->wake[1] = -1;
  impl_->thread = std::thread([this] { impl_->run(); });
}

RequestGate::~RequestGate() {
  stop();
  for (int fd : impl_->wake)
    if (fd >= 0) ::close(fd);
}

void RequestGate::stop() {
  {
    std::lock_guard<std::mutex> lock(impl_->mutex);
    impl_->stopping = true;
  }
  if (impl_->wake[1] >= 0) (void)!::write(impl_->wake[1], "s", 1);
  if (impl_->thread.joinable()) impl_->thread.join();
}

void RequestGate::adopt(int fd) {
  setBlocking(fd, false);
  {
    std::lock_guard<std::mutex> lock(impl_->mutex);
    if (impl_->stopping) {
      ::close(fd);
      return;
    }
    impl_->inbox.push_back(fd);
  }
  (void)!::write(impl_->wake[1], "a", 1);
}

void RequestGate::Impl::take(int fd, Clock::time_point now) {
  if (conns.size() >= limits.maxWaiting) {
    // Full: the one that has waited longest goes, refused ones first. A browser sends its
    // request in one go, so the oldest is the likeliest to be stalling on purpose.
    auto oldest = std::min_element(conns.begin(), conns.end(), [](const Conn& a, const Conn& b) {
      if (a.lingering != b.lingering) return a.lingering;
      return a.since < b.since;
    });
    close(*oldest);
    conns.erase(oldest);
  }
  conns.push_back(Conn{fd, now, {}});
}

bool RequestGate::Impl::readFrom(Conn& c, Clock::time_point now) {
  char buffer[kReadChunk];
  if (c.lingering) {
    const ssize_t n = ::recv(c.fd, buffer, sizeof buffer, 0);
    if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) return true;
    if (n <= 0) return false;
    c.drained += static_cast<size_t>(n);
    return c.drained < kLingerBytes;
  }
  // Never more than one byte past what the bounds allow: that byte tells it was passed.
  const size_t room = limits.maxHeadBytes + limits.maxBody + 1 - c.bytes.size();
  const ssize_t n = ::recv(c.fd, buffer, std::min(room, sizeof buffer), 0);
  if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) return true;
  if (n <= 0) return false;
  c.bytes.append(buffer, static_cast<size_t>(n));
  const HeadCheck check = checkRequest(c.bytes, limits);
  if (check.state == HeadCheck::State::Refused) {
    refuse(c, check.refusal, now);
  } else if (check.state == HeadCheck::State::Complete) {
    c.bytes.resize(check.length);
    setBlocking(c.fd, true);
    const Refusal busy = dispatch(c.fd, std::move(c.bytes), check.target);
    if (busy.status == 0) {
      c.fd = -1;  // the worker's now
      return false;
    }
    setBlocking(c.fd, false);
    refuse(c, busy, now);
  }
  return true;
}

void RequestGate::Impl::refuse(Conn& c, const Refusal& r, Clock::time_point now) {
  const std::string reply = refusalResponse(r);
  // A few hundred bytes into an empty socket buffer: this does not wait.
  (void)::send(c.fd, reply.data(), reply.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  ::shutdown(c.fd, SHUT_WR);
  c.lingering = true;
  c.since = now;
  std::string().swap(c.bytes);
}

void RequestGate::Impl::run() {
  std::vector<pollfd> polled;
  for (;;) {
    auto now = Clock::now();
    {
      std::lock_guard<std::mutex> lock(mutex);
      if (stopping) break;
      for (int fd : inbox) take(fd, now);
      inbox.clear();
    }
    // Time limits first: a refusal for a request that took too long, the end of lingering.
    for (size_t i = 0; i < conns.size();) {
      Conn& c = conns[i];
      if (c.lingering && now - c.since >= kLinger) {
        close(c);
        conns.erase(conns.begin() + static_cast<std::ptrdiff_t>(i));
        continue;
      }
      if (!c.lingering && now - c.since >= limits.deadline)
        refuse(c,
               refusal(408, "Request Timeout",
                       "request not complete within " + std::to_string(limits.deadline.count()) +
                           " ms"),
               now);
      ++i;
    }
    auto next = now + limits.deadline;
    for (const Conn& c : conns)
      next = std::min(next, c.since + (c.lingering ? kLinger : limits.deadline));
    polled.assign(1, pollfd{wake[0], POLLIN, 0});
    for (const Conn& c : conns) polled.push_back(pollfd{c.fd, POLLIN, 0});
    const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(next - now).count() + 1;
    if (::poll(polled.data(), polled.size(), static_cast<int>(std::max<long long>(wait, 1))) < 0 &&
        errno != EINTR)
      break;
    now = Clock::now();
    if (polled[0].revents) {
      char drain[64];
      while (::read(wake[0], drain, sizeof drain) > 0) {
      }
    }
    // The entries of `polled` match `conns` as they were; closed ones are swept after.
    std::vector<bool> gone(conns.size(), false);
    for (size_t i = 0; i < conns.size(); ++i)
      if (polled[i + 1].revents && !readFrom(conns[i], now)) gone[i] = true;
    size_t kept = 0;
    for (size_t i = 0; i < conns.size(); ++i) {
      if (gone[i]) {
        if (conns[i].fd >= 0) close(conns[i]);
      } else {
        conns[kept++] = std::move(conns[i]);
      }
    }
    conns.resize(kept);
  }
  for (Conn& c : conns) close(c);
  conns.clear();
  std::lock_guard<std::mutex> lock(mutex);
  for (int fd : inbox) ::close(fd);
  inbox.clear();
}

}  // namespace vcviewer
