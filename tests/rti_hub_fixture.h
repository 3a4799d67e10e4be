#pragma once
// Shared by the tests against a real hub process: a hub of its own for every test with
// the test's federation already created on it, federates of this process joined to it,
// rti_peer processes, raw connections that speak to the hub outside the protocol, and
// the numbered payloads rti_peer writes and checks.
#include "process.h"
#include "rti_test_federate.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace rtitest {

// The sequence number big-endian in the first four bytes, then bytes that depend on it and
// on their position, so a lost, reordered or damaged payload shows.
inline Bytes numbered(std::uint32_t seq, std::size_t size) {
  Bytes b(size);
  for (std::size_t k = 0; k < size; ++k)
    b[k] = k < 4 ? static_cast<unsigned char>(seq >> (24 - 8 * k))
                 : static_cast<unsigned char>(seq * 31 + k);
  return b;
}

inline std::uint32_t seqOf(const Bytes& b) {
  return b.size() < 4 ? ~0u
                      : std::uint32_t(b[0]) << 24 | std::uint32_t(b[1]) << 16 |
                            std::uint32_t(b[2]) << 8 | b[3];
}

// The number a handle stands for on the wire, for frames written by hand.
template <typename Handle>
std::uint32_t handleValue(const Handle& h) {
  const rti1516::VariableLengthData d = h.encode();
  const auto* p = static_cast<const unsigned char*>(d.data());
  return std::uint32_t(p[4]) << 24 | std::uint32_t(p[5]) << 16 | std::uint32_t(p[6]) << 8 | p[7];
}

// ------------------------------------------------------------------ raw connections

// A TCP connection to 127.0.0.1:port, or -1.
inline int connectTo(std::uint16_t port) {
  int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in a{};
  a.sin_family = AF_INET;
  a.sin_port = htons(port);
  a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) {
    ::close(fd);
    return -1;
  }
  return fd;
}

inline bool sendAll(int fd, const Bytes& b) {
  size_t done = 0;
  while (done < b.size()) {
    ssize_t n = ::send(fd, b.data() + done, b.size() - done, MSG_NOSIGNAL);
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

// True when the peer closes the connection within the timeout (what it sent is read and
// dropped on the way).
inline bool closedByPeer(int fd, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  char buf[4096];
  while (std::chrono::steady_clock::now() < deadline) {
    pollfd p{fd, POLLIN, 0};
    if (::poll(&p, 1, 50) > 0 && ::recv(fd, buf, sizeof buf, 0) <= 0) return true;
  }
  return false;
}

// Frames as rti/src/protocol.h lays them out, written here byte by byte so that the
// tests do not share the encoder they check: a 32-bit little-endian body length, the
// type byte, then little-endian integers and length-prefixed strings.
class Frame {
 public:
  explicit Frame(std::uint8_t type) : b_{0, 0, 0, 0, type} {}
  Frame& u32(std::uint32_t v) {
    for (int i = 0; i < 4; ++i) b_.push_back(static_cast<unsigned char>(v >> (8 * i)));
    return *this;
  }
  Frame& str(const std::string& s) {
    u32(static_cast<std::uint32_t>(s.size()));
    b_.insert(b_.end(), s.begin(), s.end());
    return *this;
  }
  Frame& raw(const Bytes& b) {
    b_.insert(b_.end(), b.begin(), b.end());
    return *this;
  }
  Bytes done() {
    const auto body = static_cast<std::uint32_t>(b_.size() - 4);
    for (int i = 0; i < 4; ++i) b_[i] = static_cast<unsigned char>(body >> (8 * i));
    return b_;
  }

 private:
  Bytes b_;
};

constexpr std::uint8_t kCreate = 1, kJoin = 3, kResign = 4, kSubscribe = 5, kUnsubscribe = 6,
                       kInteraction = 7, kHello = 9, kSubscribeObjects = 10, kReserveName = 12,
                       kRegister = 14, kUpdate = 16, kDelete = 17;
// The protocol version the hub speaks; a client names it in its first frame.
constexpr std::uint32_t kVersion = 3;

inline Bytes hello(std::uint32_t version = kVersion) {
  return Frame(kHello).u32(0).u32(version).str("test").done();
}

// An interaction frame of class `cls` with no tag and no parameters.
inline Bytes bareInteraction(std::uint32_t cls) {
  return Frame(kInteraction).u32(cls).u32(0).u32(0).done();
}

// A client that speaks to the hub frame by frame, outside the RTI: to send what no
// federate would, and to read (or not read) what the hub answers. It greets the hub
// first unless told not to; the hub's answer to that is not among the frames it reads.
class RawClient {
 public:
  explicit RawClient(std::uint16_t port, bool greet = true) : fd_(connectTo(port)) {
    // A hub that stops reading must not hang the test in a send.
    timeval limit{10, 0};
    if (fd_ >= 0) ::setsockopt(fd_, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    if (fd_ >= 0 && greet) greeting_ = send(hello());
  }
  ~RawClient() {
    if (fd_ >= 0) ::close(fd_);
  }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;
  bool connected() const { return fd_ >= 0; }
  bool send(const Bytes& b) { return sendAll(fd_, b); }
  // True when the hub closes the connection within the timeout.
  bool closedByPeer(std::chrono::milliseconds timeout) {
    return rtitest::closedByPeer(fd_, timeout);
  }
  // The body of the next frame from the hub (type byte first); false on timeout or loss.
  bool readFrame(Bytes& body, std::chrono::milliseconds timeout) {
    if (greeting_) {
      greeting_ = false;
      if (!readFrame(body, timeout)) return false;
    }
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
      if (in_.size() >= 4) {
        const std::size_t len = in_[0] | in_[1] << 8 | in_[2] << 16 | std::size_t(in_[3]) << 24;
        if (in_.size() >= 4 + len) {
          body.assign(in_.begin() + 4, in_.begin() + 4 + static_cast<std::ptrdiff_t>(len));
          in_.erase(in_.begin(), in_.begin() + 4 + static_cast<std::ptrdiff_t>(len));
          return true;
        }
      }
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          deadline - std::chrono::steady_clock::now());
      pollfd p{fd_, POLLIN, 0};
      if (::poll(&p, 1, static_cast<int>(std::max<long>(0, left.count()))) <= 0) return false;
      unsigned char buf[65536];
      const ssize_t n = ::recv(fd_, buf, sizeof buf, 0);
      if (n <= 0) return false;
      in_.insert(in_.end(), buf, buf + n);
    }
  }
  int fd() const { return fd_; }

 private:
  int fd_;
  bool greeting_ = false;  // the hub's answer to the hello is still to be skipped
  Bytes in_;
};

// The fields of a reply body: type, request id, status, text, payload.
struct Reply {
  std::uint32_t id = 0, status = ~0u;
  std::string text;
  Bytes payload;
};

inline bool parseReply(const Bytes& body, Reply& r) {
  std::size_t at = 1;
  auto u32 = [&](std::uint32_t& v) {
    if (at + 4 > body.size()) return false;
    v = body[at] | body[at + 1] << 8 | body[at + 2] << 16 | std::uint32_t(body[at + 3]) << 24;
    at += 4;
    return true;
  };
  std::uint32_t textLen = 0, payloadLen = 0;
  if (body.empty() || body[0] != 8 || !u32(r.id) || !u32(r.status) || !u32(textLen) ||
      textLen > body.size() - at)
    return false;
  r.text.assign(body.begin() + static_cast<std::ptrdiff_t>(at),
                body.begin() + static_cast<std::ptrdiff_t>(at + textLen));
  at += textLen;
  if (!u32(payloadLen) || payloadLen != body.size() - at) return false;
  r.payload.assign(body.begin() + static_cast<std::ptrdiff_t>(at), body.end());
  return true;
}

// A socket listening on 127.0.0.1 at a port the system picks, which is set; -1 on failure.
inline int listenOnLoopback(std::uint16_t& port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in a{};
  a.sin_family = AF_INET;
  a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof a;
  if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 ||
      ::listen(fd, 4) != 0 || ::getsockname(fd, reinterpret_cast<sockaddr*>(&a), &len) != 0) {
    if (fd >= 0) ::close(fd);
    return -1;
  }
  port = ntohs(a.sin_port);
  return fd;
}

// A stand-in hub on a port of its own that greets each connection as a hub of this
// release does (or with the greeting given) and answers its first request after the hello
// with the given reply frame (request id 2: every connection numbers its requests from 1,
// the hello first).
class FakeHub {
 public:
  explicit FakeHub(std::vector<Bytes> replies,
                   Bytes greeting = answer(1, 0, "", {kVersion, 0, 0, 0})) {
    listener_ = listenOnLoopback(port_);
    thread_ = std::thread([this, replies, greeting] {
      for (const Bytes& reply : replies) {
        pollfd p{listener_, POLLIN, 0};
        if (::poll(&p, 1, 10000) != 1) return;
        const int fd = ::accept(listener_, nullptr, nullptr);
        char request[4096];
        (void)!::recv(fd, request, sizeof request, 0);
        sendAll(fd, greeting);
        (void)!::recv(fd, request, sizeof request, 0);
        sendAll(fd, reply);
        closedByPeer(fd, std::chrono::seconds(10));
        ::close(fd);
      }
    });
  }
  ~FakeHub() {
    thread_.join();
    ::close(listener_);
  }
  std::uint16_t port() const { return port_; }

  // Reply: type 8, request id, status, text, payload; numbers little-endian.
  static Bytes reply(std::uint32_t status, const std::string& text, const Bytes& payload) {
    return answer(2, status, text, payload);
  }
  static Bytes answer(std::uint32_t id, std::uint32_t status, const std::string& text,
                      const Bytes& payload) {
    Bytes body = {8};
    auto u32 = [&](std::uint32_t v) {
      for (int k = 0; k < 4; ++k) body.push_back(static_cast<unsigned char>(v >> (8 * k)));
    };
    u32(id);
    u32(status);
    u32(static_cast<std::uint32_t>(text.size()));
    body.insert(body.end(), text.begin(), text.end());
    u32(static_cast<std::uint32_t>(payload.size()));
    body.insert(body.end(), payload.begin(), payload.end());
    Bytes frame;
    for (int k = 0; k < 4; ++k) frame.push_back(static_cast<unsigned char>(body.size() >> (8 * k)));
    frame.insert(frame.end(), body.begin(), body.end());
    return frame;
  }

 private:
  int listener_ = -1;
  std::uint16_t port_ = 0;
  std::thread thread_;
};

// ------------------------------------------------------------------ fixture

class HubTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!vctest::hubAvailable()) GTEST_SKIP() << "the hub is built with the embedded RTI only";
    hub_ = vctest::startHub(port_, hubArgs(), hubFileLimit());
    name_ = testName();
    url_ = wide(vctest::hubUrl(port_, name_));
    makeAmbassador()->createFederationExecution(url_, wide(VC_FDD_FILE));
  }
  void TearDown() override {
    feds_.clear();
    if (hub_) {
      hub_->kill(SIGTERM);
      EXPECT_EQ(hub_->wait(std::chrono::seconds(10)), 0) << hub_->transcript();
    }
  }
  virtual std::vector<std::string> hubArgs() const { return {}; }
  virtual int hubFileLimit() const { return 0; }

  struct Fed {
    std::unique_ptr<rti1516::RTIambassador> rti;
    std::unique_ptr<Recorder> rec;
    rti1516::InteractionClassHandle cls;
    rti1516::ParameterHandle pdu;

    void send(const Bytes& payload, const Bytes& tag = {}) {
      rti1516::ParameterHandleValueMap v;
      v[pdu] = data(payload);
      rti->sendInteraction(cls, v, data(tag));
    }
    Bytes payload(std::size_t i) const { return rec->got.at(i).params.at(pdu); }
  };

  Fed& join(bool publish = true, bool subscribe = true) {
    Fed f{makeAmbassador(), std::make_unique<Recorder>(), {}, {}};
    f.rti->joinFederationExecution(L"test", url_, *f.rec);
    f.cls = f.rti->getInteractionClassHandle(L"ViewControl");
    f.pdu = f.rti->getParameterHandle(f.cls, L"ViewControlPdu");
    if (publish) f.rti->publishInteractionClass(f.cls);
    if (subscribe) f.rti->subscribeInteractionClass(f.cls);
    feds_.push_back(std::move(f));
    return feds_.back();
  }

  // An rti_peer process in the test's federation, once it says it is ready.
  std::unique_ptr<vctest::ChildProcess> peer(const std::vector<std::string>& modeArgs) {
    std::vector<std::string> args{vctest::hubUrl(port_, name_), VC_FDD_FILE};
    args.insert(args.end(), modeArgs.begin(), modeArgs.end());
    auto p = std::make_unique<vctest::ChildProcess>(vctest::programPath("rti_peer"), args);
    std::string line;
    EXPECT_TRUE(p->waitForLine("ready", line, std::chrono::seconds(10))) << p->transcript();
    return p;
  }

  // The hub still serves the federation: two fresh federates exchange interactions.
  void expectFederationWorks(const char* when) {
    Fed& a = join(true, false);
    Fed& b = join(false, true);
    for (std::uint32_t i = 0; i < 200; ++i) a.send(numbered(i, 312));
    ASSERT_TRUE(pumpUntil(*b.rti, *b.rec, 200)) << when;
    for (std::uint32_t i = 0; i < 200; ++i) ASSERT_EQ(b.payload(i), numbered(i, 312)) << when;
  }

  std::unique_ptr<vctest::ChildProcess> hub_;
  std::uint16_t port_ = 0;
  std::string name_;
  std::wstring url_;
  std::deque<Fed> feds_;
};

}  // namespace rtitest
