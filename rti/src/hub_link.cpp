#include "hub_link.h"

#include "fom_modules.h"

#include "protocol.h"
#include "text.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vcrti {

namespace {

using Clock = std::chrono::steady_clock;

// Sends are gathered and written in batches: at this size at once, otherwise by the
// flusher thread shortly after the first unsent byte, or by the next evoke or request.
constexpr std::size_t kFlushThreshold = 64 * 1024;
constexpr auto kFlushDelay = std::chrono::microseconds(500);
constexpr std::size_t kReadChunk = 64 * 1024;
constexpr int kReadBurst = 16;
// How long a request waits for its reply, and a write for the hub to take bytes.
constexpr auto kReplyTimeout = std::chrono::seconds(15);
// Leaving waits less: a federate that leaves has nothing left to do but report that the
// hub no longer answers, and a tool should not sit silent for long before saying so.
constexpr auto kResignTimeout = std::chrono::seconds(5);
constexpr auto kWriteStallTimeout = std::chrono::seconds(60);
// While a send waits for the hub to take bytes, what the hub sends is read so that
// neither side blocks the other; but only this much, or a hub that floods a stalled
// sender would grow its buffer without end. Past it the bytes wait in the kernel, the hub
// finds this client not reading, and drops it within its own time limit.
constexpr std::size_t kStalledReadCap = 16 * std::size_t{wire::kMaxFrameBody};

// What the hub sends a federate besides the replies to its requests: delivered on evoke.
bool isCallback(wire::MsgType t) {
  switch (t) {
    case wire::MsgType::Interaction:
    case wire::MsgType::NameReserved:
    case wire::MsgType::Discover:
    case wire::MsgType::Update:
    case wire::MsgType::Delete:
    case wire::MsgType::RequestUpdate:
    case wire::MsgType::ModelGrown:
      return true;
    default:
      return false;
  }
}

struct Reply {
  wire::Status status = wire::Status::Internal;
  std::wstring text;
  std::string payload;
};

// One TCP connection to the hub, used by one federate. Every socket operation happens
// under mu_, from the application's thread or from the flusher.
class HubConnection {
 public:
  explicit HubConnection(const FederationUrl& url) : endpoint_(url.endpoint()) {
    connect(url);
    try {
      hello();
    } catch (...) {
      // No destructor runs for a connection that failed to come about.
      ::close(fd_);
      throw;
    }
  }
  ~HubConnection() {
    stopFlusher();
    if (fd_ >= 0) {
      std::lock_guard<std::mutex> lock(mu_);
      try {
        flushLocked();
      } catch (const RtiError&) {
        // Best effort: the process is letting go of the connection anyway.
      }
      ::close(fd_);
    }
  }

  void startFlusher() {
    flusher_ = std::thread([this] { flushLoop(); });
  }

  void stopFlusher() {
    if (!flusher_.joinable()) return;
    {
      std::lock_guard<std::mutex> lock(mu_);
      stop_ = true;
    }
    pending_.notify_one();
    flusher_.join();
  }

  template <class Fill>
  Reply request(wire::MsgType type, Fill fill, Clock::duration timeout = kReplyTimeout) {
    std::unique_lock<std::mutex> lock(mu_);
    checkBroken();
    const std::uint32_t id = nextRequest_++;
    wire::FrameWriter w(out_, type);
    w.u32(id);
    fill(w);
    if (!w.finish())
      throw RtiError(Fault::RTIinternalError,
                     L"request to the RTI hub exceeds the frame size limit");
    flushLocked();
    const auto deadline = Clock::now() + timeout;
    for (;;) {
      Reply r;
      if (takeReplyLocked(id, r)) return r;
      const auto left =
          std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
      if (left.count() <= 0) fail("no answer from the RTI hub");
      waitReadableLocked(static_cast<int>(left.count()) + 1);
      readAvailableLocked();
    }
  }

  // Hot path: frames are appended under the lock and flushed in batches.
  template <class Encode>
  void post(Encode encode) {
    std::lock_guard<std::mutex> lock(mu_);
    checkBroken();
    const bool wasEmpty = out_.empty();
    encode(out_);
    if (out_.size() >= kFlushThreshold) {
      flushLocked();
    } else if (wasEmpty) {
      pending_.notify_one();
    }
  }

  bool fetch(ByteBuffer& into, double waitSeconds) {
    std::unique_lock<std::mutex> lock(mu_);
    checkBroken();
    flushLocked();
    readAvailableLocked();
    if (moveCompleteFramesLocked(into)) return true;
    if (waitSeconds <= 0) return false;
    const auto deadline = Clock::now() + std::chrono::duration<double>(waitSeconds);
    for (;;) {
      const auto left =
          std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
      if (left.count() <= 0) return false;
      // Wait unlocked, so that another thread can send meanwhile. Whoever reads first
      // (this thread or a blocked writer) leaves the frames in rx_ for us.
      lock.unlock();
      pollfd p{fd_, POLLIN, 0};
      ::poll(&p, 1, static_cast<int>((left.count() + 999) / 1000));
      lock.lock();
      checkBroken();
      flushLocked();
      readAvailableLocked();
      if (moveCompleteFramesLocked(into)) return true;
    }
  }

 private:
  [[noreturn]] void fail(const std::string& why) {
    broken_ = true;
    brokenWhy_ = L"connection to the RTI hub at " + endpoint_ + L" lost: " + fromUtf8(why);
    throw RtiError(Fault::RTIinternalError, brokenWhy_);
  }

  void checkBroken() const {
    if (broken_) throw RtiError(Fault::RTIinternalError, brokenWhy_);
  }

  // Both sides name their protocol version before anything else, so that a hub and a
  // federate of different releases part with a reason instead of misreading frames.
  void hello() {
    Reply r;
    try {
      r = request(wire::MsgType::Hello,
                  [](wire::FrameWriter& w) { w.u32(wire::kProtocolVersion).str("vcrti"); });
    } catch (const RtiError& e) {
      // A hub that gave its reason is of this release; the hint would only mislead.
      if (told_) throw;
      throw RtiError(Fault::RTIinternalError,
                     e.message() + L" (at the first message: is it an RTI hub of this release?)");
    }
    std::uint32_t version = 0;
    if (r.payload.size() >= 4)
      version = wire::loadU32(reinterpret_cast<const unsigned char*>(r.payload.data()));
    if (r.status != wire::Status::Ok || version != wire::kProtocolVersion)
      throw RtiError(Fault::RTIinternalError,
                     L"the RTI hub at " + endpoint_ + L" speaks protocol version " +
                         std::to_wstring(version) + L", this federate's RTI version " +
                         std::to_wstring(wire::kProtocolVersion) +
                         L": use a hub and an RTI library of the same release" +
                         (r.text.empty() ? L"" : L" (" + r.text + L")"));
  }

  void connect(const FederationUrl& url) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* res = nullptr;
    const std::string port = std::to_string(url.port);
    int rc = ::getaddrinfo(url.host.c_str(), port.c_str(), &hints, &res);
    if (rc != 0)
      throw RtiError(Fault::RTIinternalError, L"cannot resolve RTI hub host '" +
                                                  fromUtf8(url.host) + L"': " +
                                                  fromUtf8(::gai_strerror(rc)));
    std::string lastError = "no address";
    for (addrinfo* ai = res; ai; ai = ai->ai_next) {
      int fd = ::socket(ai->ai_family, ai->ai_socktype | SOCK_CLOEXEC, ai->ai_protocol);
      if (fd < 0) {
        lastError = std::strerror(errno);
        continue;
      }
      if (::connect(fd, ai->ai_addr, ai->ai_addrlen) == 0) {
        fd_ = fd;
        break;
      }
      lastError = std::strerror(errno);
      ::close(fd);
    }
    ::freeaddrinfo(res);
    if (fd_ < 0)
      throw RtiError(Fault::RTIinternalError, L"cannot connect to the RTI hub at " + endpoint_ +
                                                  L": " + fromUtf8(lastError));
    // Batching is done here, so the kernel should not hold segments back as well.
    int one = 1;
    ::setsockopt(fd_, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    ::fcntl(fd_, F_SETFL, ::fcntl(fd_, F_GETFL) | O_NONBLOCK);
  }

  void flushLoop() {
    std::unique_lock<std::mutex> lock(mu_);
    while (!stop_) {
      pending_.wait(lock, [&] { return stop_ || !out_.empty(); });
      if (stop_) break;
      // Give a burst the chance to fill the batch before writing it.
      pending_.wait_for(lock, kFlushDelay, [&] { return stop_; });
      if (stop_ || broken_) continue;
      try {
        flushLocked();
      } catch (const RtiError&) {
        // Recorded in broken_: the application sees it on its next call.
      }
    }
  }

  // Writes everything queued. While the hub does not take bytes, keeps reading what it
  // sends so that neither side can block the other.
  void flushLocked() {
    std::size_t done = 0;
    auto lastProgress = Clock::now();
    while (done < out_.size()) {
      ssize_t n = ::send(fd_, out_.data() + done, out_.size() - done, MSG_NOSIGNAL);
      if (n > 0) {
        done += static_cast<std::size_t>(n);
        lastProgress = Clock::now();
        continue;
      }
      if (n < 0 && errno == EINTR) continue;
      if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
        if (Clock::now() - lastProgress > kWriteStallTimeout) fail("the hub stopped taking data");
        const bool mayRead = rx_.size() < kStalledReadCap;
        pollfd p{fd_, static_cast<short>(mayRead ? POLLIN | POLLOUT : POLLOUT), 0};
        int rc = ::poll(&p, 1, 1000);
        if (rc < 0 && errno != EINTR) fail(std::strerror(errno));
        if (rc > 0 && mayRead && (p.revents & (POLLIN | POLLHUP | POLLERR))) readAvailableLocked();
        continue;
      }
      // A hub that let this federate go said why before it closed; that reads better
      // than the broken pipe it left.
      const int err = errno;
      readAvailableLocked();
      fail(n == 0 ? "connection closed" : std::strerror(err));
    }
    out_.clear();
  }

  // Reads what the socket holds, but at most kReadBurst chunks: a sender that keeps the
  // socket full would otherwise keep a slower reader here, its buffer growing without end,
  // instead of letting it deliver and the hub hold the sender back.
  void readAvailableLocked() {
    for (int chunks = 0; chunks < kReadBurst; ++chunks) {
      const std::size_t old = rx_.size();
      rx_.resize(old + kReadChunk);
      ssize_t n = ::recv(fd_, rx_.data() + old, kReadChunk, 0);
      rx_.resize(old + (n > 0 ? static_cast<std::size_t>(n) : 0));
      if (n > 0) {
        if (static_cast<std::size_t>(n) < kReadChunk) return;
        continue;
      }
      if (n < 0 && errno == EINTR) continue;
      if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
      // The reason the hub gave, if any, came just before the close.
      const int err = errno;
      failWithGoodbyeLocked(0);
      fail(n == 0 ? "the hub closed the connection" : std::strerror(err));
    }
  }

  // Fails with the reason of the hub's goodbye when one is among the frames from `pos` on.
  void failWithGoodbyeLocked(std::size_t pos) {
    while (rx_.size() - pos >= wire::kLengthPrefix) {
      wire::Message m;
      const wire::DecodeResult d = wire::decodeFrame(rx_.data() + pos, rx_.size() - pos, m);
      if (d.status != wire::DecodeStatus::Complete) return;
      if (m.type == wire::MsgType::Goodbye) {
        told_ = true;
        // The hub's words end up on the user's terminal: its control characters must not.
        fail("the hub let this federate go: " + toUtf8(printable(fromUtf8(m.text))));
      }
      pos += d.frameSize;
    }
  }

  void waitReadableLocked(int timeoutMs) {
    pollfd p{fd_, POLLIN, 0};
    int rc = ::poll(&p, 1, timeoutMs);
    if (rc < 0 && errno != EINTR) fail(std::strerror(errno));
  }

  // Moves the leading complete frames of rx_ to `into`. Only their length and type are
  // looked at here; the ambassador decodes each one fully when it delivers it.
  bool moveCompleteFramesLocked(ByteBuffer& into) {
    std::size_t end = 0;
    while (rx_.size() - end >= wire::kLengthPrefix) {
      const std::uint32_t body = wire::loadU32(rx_.data() + end);
      if (body == 0 || body > wire::kMaxFrameBody) fail("corrupt frame from the hub");
      if (rx_.size() - end - wire::kLengthPrefix < body) break;
      if (!isCallback(static_cast<wire::MsgType>(rx_.data()[end + wire::kLengthPrefix]))) {
        failWithGoodbyeLocked(end);
        fail("unexpected message from the hub");
      }
      end += wire::kLengthPrefix + body;
    }
    if (end == 0) return false;
    if (into.empty()) {
      // The usual case: the buffers trade places and only a frame begun at the end of
      // the last read is copied back, instead of every frame read being copied out.
      into.swap(rx_);
      rx_.clear();
      rx_.append(into.data() + end, into.size() - end);
      into.resize(end);
    } else {
      into.append(rx_.data(), end);
      rx_.consume(end);
    }
    return true;
  }

  // Finds the reply to `id` among the received frames and removes it; interactions that
  // arrived before it stay queued in order.
  bool takeReplyLocked(std::uint32_t id, Reply& r) {
    std::size_t pos = 0;
    while (rx_.size() - pos >= wire::kLengthPrefix) {
      wire::Message m;
      wire::DecodeResult d = wire::decodeFrame(rx_.data() + pos, rx_.size() - pos, m);
      if (d.status == wire::DecodeStatus::Incomplete) return false;
      if (d.status == wire::DecodeStatus::Malformed)
        fail(std::string("corrupt frame from the hub: ") + d.error);
      if (m.type == wire::MsgType::Goodbye) failWithGoodbyeLocked(pos);
      if (m.type == wire::MsgType::Reply) {
        if (m.requestId != id) fail("reply out of order");
        r.status = static_cast<wire::Status>(m.handle);
        // The hub's words end up on the user's terminal: its control characters must not.
        r.text = printable(fromUtf8(m.text));
        r.payload.assign(reinterpret_cast<const char*>(m.blob.data), m.blob.size);
        std::memmove(rx_.data() + pos, rx_.data() + pos + d.frameSize,
                     rx_.size() - pos - d.frameSize);
        rx_.resize(rx_.size() - d.frameSize);
        return true;
      }
      pos += d.frameSize;
    }
    return false;
  }

  std::wstring endpoint_;
  int fd_ = -1;
  std::mutex mu_;
  std::condition_variable pending_;
  std::thread flusher_;
  bool stop_ = false;
  bool broken_ = false;
  bool told_ = false;  // the hub said why it let this federate go
  std::wstring brokenWhy_;
  std::uint32_t nextRequest_ = 1;
  ByteBuffer out_;
  ByteBuffer rx_;
};

[[noreturn]] void throwFor(const Reply& r) {
  switch (r.status) {
    case wire::Status::FederationExists:
      throw RtiError(Fault::FederationExecutionAlreadyExists, r.text);
    case wire::Status::FederationMissing:
      throw RtiError(Fault::FederationExecutionDoesNotExist, r.text);
    case wire::Status::FederatesJoined:
      throw RtiError(Fault::FederatesCurrentlyJoined, r.text);
    case wire::Status::AlreadyJoined:
      throw RtiError(Fault::FederateAlreadyExecutionMember, r.text);
    case wire::Status::NotJoined:
      throw RtiError(Fault::FederateNotExecutionMember, r.text);
    case wire::Status::InconsistentFdd:
      throw RtiError(Fault::InconsistentFDD, r.text);
    default:
      throw RtiError(Fault::RTIinternalError, L"RTI hub: " + r.text);
  }
}

class HubLink final : public Link {
 public:
  HubLink(std::unique_ptr<HubConnection> conn, std::uint32_t handle,
          std::shared_ptr<const FddModel> model)
      : conn_(std::move(conn)), handle_(handle), model_(std::move(model)) {
    conn_->startFlusher();
  }

  std::uint32_t federateHandle() const override { return handle_; }
  std::shared_ptr<const FddModel> model() const override { return model_; }

  // Round trips, so that a subscription is in force at the hub when the call returns:
  // whatever anyone sends afterwards reaches this federate.
  void subscribeInteractions(std::uint32_t cls, bool on) override {
    requestClass(on ? wire::MsgType::Subscribe : wire::MsgType::Unsubscribe, cls);
  }
  void subscribeObjects(std::uint32_t cls, bool on) override {
    requestClass(on ? wire::MsgType::SubscribeObjects : wire::MsgType::UnsubscribeObjects, cls);
  }

  void sendInteraction(std::uint32_t cls, const HandleValues& params, ValueView tag) override {
    conn_->post(
        [&](ByteBuffer& out) { encodeValues(out, wire::MsgType::Interaction, cls, params, tag); });
  }

  void updateAttributes(InstanceHandle instance, const HandleValues& values,
                        ValueView tag) override {
    conn_->post(
        [&](ByteBuffer& out) { encodeValues(out, wire::MsgType::Update, instance, values, tag); });
  }

  void post(const unsigned char* frame, std::size_t size) override {
    conn_->post([&](ByteBuffer& out) { out.append(frame, size); });
  }

  bool fetch(ByteBuffer& into, double waitSeconds) override {
    return conn_->fetch(into, waitSeconds);
  }

  void resign(ResignMode mode) override {
    Reply r = conn_->request(
        wire::MsgType::Resign,
        [&](wire::FrameWriter& w) { w.u32(static_cast<std::uint32_t>(mode)); }, kResignTimeout);
    conn_.reset();
    if (r.status != wire::Status::Ok) throwFor(r);
  }

 private:
  void requestClass(wire::MsgType type, std::uint32_t cls) {
    Reply r = conn_->request(type, [&](wire::FrameWriter& w) { w.u32(cls); });
    if (r.status != wire::Status::Ok) throwFor(r);
  }

  std::unique_ptr<HubConnection> conn_;
  std::uint32_t handle_;
  std::shared_ptr<const FddModel> model_;
};

}  // namespace

void createHubFederation(const FederationUrl& url, const FddModel& model) {
  ByteBuffer blob;
  if (!encodeFdd(model, blob))
    throw RtiError(Fault::ErrorReadingFDD, L"FDD file '" + model.fileName +
                                               L"' holds a name longer than the hub carries (" +
                                               std::to_wstring(wire::kMaxFrameBody) + L" bytes)");
  if (blob.size() > kMaxModelBytes)
    throw RtiError(Fault::ErrorReadingFDD,
                   L"FDD file '" + model.fileName + L"' is too large to share through the hub");
  HubConnection conn(url);
  const std::string name = toUtf8(url.name), file = toUtf8(model.fileName);
  Reply r = conn.request(wire::MsgType::Create, [&](wire::FrameWriter& w) {
    w.str(name).str(file).bytes(blob.data(), blob.size());
  });
  if (r.status != wire::Status::Ok) throwFor(r);
}

void destroyHubFederation(const FederationUrl& url) {
  HubConnection conn(url);
  const std::string name = toUtf8(url.name);
  Reply r = conn.request(wire::MsgType::Destroy, [&](wire::FrameWriter& w) { w.str(name); });
  if (r.status != wire::Status::Ok) throwFor(r);
}

std::unique_ptr<Link> joinHubFederation(const FederationUrl& url, const std::wstring& federateType,
                                        const std::vector<FddModel>& modules) {
  ByteBuffer blob;
  if (!modules.empty() && (!encodeModules(modules, blob) || blob.size() > kMaxModelBytes))
    throw RtiError(Fault::ErrorReadingFDD,
                   L"the FOM modules are too large to share through the hub");
  auto conn = std::make_unique<HubConnection>(url);
  const std::string name = toUtf8(url.name), type = toUtf8(federateType);
  Reply r = conn->request(wire::MsgType::Join, [&](wire::FrameWriter& w) {
    w.str(name).str(type);
    if (!modules.empty()) w.bytes(blob.data(), blob.size());
  });
  if (r.status != wire::Status::Ok) throwFor(r);
  // Payload: the federate's handle, then the federation's object model.
  const auto* p = reinterpret_cast<const unsigned char*>(r.payload.data());
  auto model = std::make_shared<FddModel>();
  std::string err;
  if (r.payload.size() < 4)
    throw RtiError(Fault::RTIinternalError, L"RTI hub answered the join with " +
                                                std::to_wstring(r.payload.size()) +
                                                L" bytes, too few for a federate handle");
  if (!decodeFdd(p + 4, r.payload.size() - 4, *model, err))
    throw RtiError(Fault::RTIinternalError,
                   L"RTI hub sent an unusable object model: " + fromUtf8(err));
  model->fileName = r.text;
  return std::make_unique<HubLink>(std::move(conn), wire::loadU32(p), std::move(model));
}

}  // namespace vcrti
