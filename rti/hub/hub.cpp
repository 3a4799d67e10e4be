#include "hub.h"

#include "fdd_model.h"
#include "protocol.h"

#include <algorithm>
#include <iostream>
#include <string_view>
#include <vector>

namespace vcrti::hub {

namespace {
using Clock = std::chrono::steady_clock;
constexpr std::size_t kReadChunk = 64 * 1024;
// Federations outlive the clients that create them, so what they hold is bounded for the
// hub as a whole: names, object models and their indexes together.
constexpr std::size_t kFederationBudget = 256u << 20;
constexpr std::size_t kFederationOverhead = 1024;

// What a federation costs the hub: its name and file name, the model as sent, and the
// tables indexing it (full names and inherited member lists).
std::size_t costOf(const std::string& name, std::string_view file, std::size_t modelBytes,
                   const FddTree& tree) {
  std::size_t cost = kFederationOverhead + name.size() + file.size() + modelBytes;
  for (const FddClass& c : tree.classes)
    cost += sizeof(FddClass) + (c.name.size() + c.qualified.size()) * sizeof(wchar_t) +
            (c.declared.size() + c.all.size()) * sizeof(std::uint32_t);
  for (const FddMember& m : tree.members)
    cost += sizeof(FddMember) + m.name.size() * sizeof(wchar_t);
  return cost;
}
}  // namespace

struct Federation {
  std::size_t cost = 0;  // counted against kFederationBudget
  std::string name;
  std::string fddFile;
  std::vector<unsigned char> model;  // as the creator sent it, passed on to joiners
  FddTree interactions;              // for routing and checking
  std::vector<Session*> members;
  std::uint32_t nextHandle = 1;
  // Per class, the members subscribed to it or to an ancestor. Rebuilt lazily.
  std::vector<std::vector<Session*>> interested;
  bool dirty = true;

  const std::vector<Session*>& interestedIn(std::uint32_t cls);
};

class Session : public std::enable_shared_from_this<Session> {
 public:
  Session(Hub& hub, asio::ip::tcp::socket socket) : hub_(hub), socket_(std::move(socket)) {
    asio::error_code ec;
    auto ep = socket_.remote_endpoint(ec);
    peer_ = ec ? std::string("?") : ep.address().to_string() + ":" + std::to_string(ep.port());
    socket_.set_option(asio::ip::tcp::no_delay(true), ec);
  }

  void start() { read(); }

  const std::string& peer() const { return peer_; }
  bool subscribed(std::uint32_t cls) const { return cls < subscribed_.size() && subscribed_[cls]; }

  std::size_t queued() const { return pending_.size() + (writing_.size() - written_); }

  // Drops the client: resigns it, closes the socket, wakes the senders it held up. An
  // empty reason means the client went away by itself.
  void close(const std::string& why) {
    if (closed_) return;
    closed_ = true;
    if (why.empty())
      hub_.info("client " + peer_ + " disconnected");
    else
      hub_.log("dropped client " + peer_ + ": " + why);
    resign();
    asio::error_code ec;
    socket_.shutdown(asio::ip::tcp::socket::shutdown_both, ec);
    socket_.close(ec);
    wakeWaiters();
    hub_.forget(this);
  }

  void checkStall(Clock::time_point now) {
    if (!closed_ && queued() > hub_.options().queueLimit &&
        now - lastProgress_ > hub_.options().stallTimeout)
      close("not reading: " + std::to_string(queued()) + " bytes queued without progress");
  }

 private:
  void read() {
    if (closed_ || reading_ || paused_) return;
    reading_ = true;
    const std::size_t old = rx_.size();
    rx_.resize(old + kReadChunk);
    socket_.async_read_some(
        asio::buffer(rx_.data() + old, kReadChunk),
        [self = shared_from_this(), old](const asio::error_code& ec, std::size_t n) {
          self->reading_ = false;
          self->rx_.resize(old + (ec ? 0 : n));
          if (self->closed_) return;
          if (ec) {
            const bool orderly = ec == asio::error::eof || ec == asio::error::connection_reset;
            self->close(orderly ? std::string() : "read: " + ec.message());
            return;
          }
          self->process();
          self->read();
        });
  }

  void process() {
    std::size_t pos = 0;
    while (!closed_) {
      wire::Message m;
      const wire::DecodeResult d = wire::decodeFrame(rx_.data() + pos, rx_.size() - pos, m);
      if (d.status == wire::DecodeStatus::Incomplete) break;
      if (d.status == wire::DecodeStatus::Malformed) {
        close(std::string("malformed frame: ") + d.error);
        return;
      }
      handle(m, rx_.data() + pos, d.frameSize);
      pos += d.frameSize;
    }
    if (!closed_) rx_.consume(pos);
  }

  void handle(const wire::Message& m, const unsigned char* frame, std::size_t frameSize) {
    switch (m.type) {
      case wire::MsgType::Create:
        return onCreate(m);
      case wire::MsgType::Destroy:
        return onDestroy(m);
      case wire::MsgType::Join:
        return onJoin(m);
      case wire::MsgType::Resign:
        if (!fed_)
          return reply(m.requestId, wire::Status::NotJoined,
                       "not joined to a federation execution");
        resign();
        return reply(m.requestId, wire::Status::Ok, "");
      case wire::MsgType::Subscribe:
      case wire::MsgType::Unsubscribe:
        if (!fed_) return close("subscription before joining");
        if (m.handle >= subscribed_.size())
          return close("subscription to unknown class " + std::to_string(m.handle));
        subscribed_[m.handle] = m.type == wire::MsgType::Subscribe;
        fed_->dirty = true;
        return reply(m.requestId, wire::Status::Ok, "");
      case wire::MsgType::Interaction:
        return onInteraction(m, frame, frameSize);
      default:
        return close("unexpected message type " + std::to_string(static_cast<int>(m.type)));
    }
  }

  void onCreate(const wire::Message& m) {
    auto& feds = hub_.federations();
    const std::string name(m.name);
    if (name.empty()) return reply(m.requestId, wire::Status::Internal, "empty federation name");
    if (feds.count(name))
      return reply(m.requestId, wire::Status::FederationExists,
                   "federation execution '" + name + "' already exists");
    FddModel model;
    std::string err;
    if (!decodeFdd(m.blob.data, m.blob.size, model, err))
      return reply(m.requestId, wire::Status::Internal, "unusable object model: " + err);
    const std::size_t cost = costOf(name, m.text, m.blob.size, model.interactions);
    std::size_t held = 0;
    for (const auto& [other, f] : feds) held += f->cost;
    if (cost > kFederationBudget - std::min(held, kFederationBudget))
      return reply(m.requestId, wire::Status::Internal,
                   "the RTI hub holds as many federation executions as it can: destroy one first");
    auto fed = std::make_unique<Federation>();
    fed->cost = cost;
    fed->name = name;
    fed->fddFile = std::string(m.text);
    fed->model.assign(m.blob.data, m.blob.data + m.blob.size);
    fed->interactions = std::move(model.interactions);
    feds.emplace(name, std::move(fed));
    hub_.info("federation execution '" + name + "' created by " + peer_);
    reply(m.requestId, wire::Status::Ok, "");
  }

  void onDestroy(const wire::Message& m) {
    auto& feds = hub_.federations();
    const std::string name(m.name);
    auto it = feds.find(name);
    if (it == feds.end())
      return reply(m.requestId, wire::Status::FederationMissing,
                   "federation execution '" + name + "' does not exist");
    if (!it->second->members.empty())
      return reply(m.requestId, wire::Status::FederatesJoined,
                   "federation execution '" + name + "' still has " +
                       std::to_string(it->second->members.size()) + " joined federate(s)");
    feds.erase(it);
    hub_.info("federation execution '" + name + "' destroyed by " + peer_);
    reply(m.requestId, wire::Status::Ok, "");
  }

  void onJoin(const wire::Message& m) {
    if (fed_)
      return reply(m.requestId, wire::Status::AlreadyJoined,
                   "already joined to a federation execution");
    auto& feds = hub_.federations();
    const std::string name(m.name);
    auto it = feds.find(name);
    if (it == feds.end())
      return reply(m.requestId, wire::Status::FederationMissing,
                   "federation execution '" + name + "' does not exist");
    fed_ = it->second.get();
    handle_ = fed_->nextHandle++;
    subscribed_.assign(fed_->interactions.classes.size(), false);
    fed_->members.push_back(this);
    fed_->dirty = true;
    std::vector<unsigned char> payload(4 + fed_->model.size());
    wire::storeU32(payload.data(), handle_);
    std::copy(fed_->model.begin(), fed_->model.end(), payload.begin() + 4);
    hub_.info("federate " + std::to_string(handle_) + " (" + std::string(m.text) + ") from " +
              peer_ + " joined '" + name + "'");
    reply(m.requestId, wire::Status::Ok, fed_->fddFile, payload.data(), payload.size());
  }

  void onInteraction(const wire::Message& m, const unsigned char* frame, std::size_t frameSize) {
    if (!fed_) return close("interaction before joining");
    const FddTree& tree = fed_->interactions;
    if (m.handle >= tree.classes.size())
      return close("interaction of unknown class " + std::to_string(m.handle));
    wire::ParamReader r(m);
    std::uint32_t p;
    wire::Bytes v;
    while (r.next(p, v))
      if (!tree.memberAvailable(m.handle, p))
        return close("parameter " + std::to_string(p) + " not in class " +
                     std::to_string(m.handle));
    for (Session* target : fed_->interestedIn(m.handle)) {
      if (target == this) continue;
      target->enqueue(frame, frameSize);
      if (target->queued() > hub_.options().queueLimit) {
        // Stop reading from this sender until the receiver catches up. Nothing is
        // dropped: the sender's own writes block in its kernel buffers meanwhile.
        paused_ = true;
        auto& w = target->waiters_;
        if (w.empty() || w.back().lock().get() != this) w.push_back(weak_from_this());
      }
    }
  }

  void reply(std::uint32_t id, wire::Status status, const std::string& text,
             const unsigned char* payload = nullptr, std::size_t size = 0) {
    ByteBuffer frame;
    wire::FrameWriter w(frame, wire::MsgType::Reply, 16 + text.size() + size);
    w.u32(id).u32(static_cast<std::uint32_t>(status)).str(text).bytes(payload, size);
    if (!w.finish()) return close("reply too large");
    enqueue(frame.data(), frame.size());
  }

  void enqueue(const unsigned char* p, std::size_t n) {
    if (closed_) return;
    pending_.append(p, n);
    if (!writingNow_) write();
  }

  void write() {
    if (closed_) return;
    if (written_ == writing_.size()) {
      if (pending_.empty()) {
        writingNow_ = false;
        return;
      }
      writing_.swap(pending_);
      pending_.clear();
      written_ = 0;
      if (!writingNow_) lastProgress_ = Clock::now();
    }
    writingNow_ = true;
    socket_.async_write_some(
        asio::buffer(writing_.data() + written_, writing_.size() - written_),
        [self = shared_from_this()](const asio::error_code& ec, std::size_t n) {
          if (self->closed_) return;
          if (ec) return self->close("write: " + ec.message());
          self->written_ += n;
          self->lastProgress_ = Clock::now();
          if (self->queued() <= self->hub_.options().queueLimit / 4) self->wakeWaiters();
          self->write();
        });
  }

  void wakeWaiters() {
    std::vector<std::weak_ptr<Session>> waiters;
    waiters.swap(waiters_);
    for (auto& w : waiters)
      if (auto s = w.lock()) {
        if (s->paused_) {
          s->paused_ = false;
          s->read();
        }
      }
  }

  void resign() {
    if (!fed_) return;
    auto& ms = fed_->members;
    ms.erase(std::remove(ms.begin(), ms.end(), this), ms.end());
    fed_->dirty = true;
    hub_.info("federate " + std::to_string(handle_) + " resigned from '" + fed_->name + "'");
    fed_ = nullptr;
    subscribed_.clear();
  }

  Hub& hub_;
  asio::ip::tcp::socket socket_;
  std::string peer_;
  ByteBuffer rx_;
  ByteBuffer pending_;  // frames not yet handed to the socket
  ByteBuffer writing_;  // the batch being written
  std::size_t written_ = 0;
  bool writingNow_ = false;
  bool reading_ = false;
  bool paused_ = false;
  bool closed_ = false;
  Clock::time_point lastProgress_ = Clock::now();
  std::vector<std::weak_ptr<Session>> waiters_;  // senders paused because of this queue

  Federation* fed_ = nullptr;
  std::uint32_t handle_ = 0;
  std::vector<bool> subscribed_;
};

const std::vector<Session*>& Federation::interestedIn(std::uint32_t cls) {
  if (dirty) {
    interested.assign(interactions.classes.size(), {});
    for (std::uint32_t c = 0; c < interactions.classes.size(); ++c)
      for (Session* s : members)
        for (std::uint32_t a = c; a != kNoClass; a = interactions.classes[a].parent)
          if (s->subscribed(a)) {
            interested[c].push_back(s);
            break;
          }
    dirty = false;
  }
  return interested[cls];
}

Hub::Hub(asio::io_context& io, const Options& options)
    : io_(io), options_(options), acceptor_(io), ticker_(io), acceptRetry_(io) {}

Hub::~Hub() = default;

void Hub::start() {
  asio::ip::tcp::endpoint ep(asio::ip::make_address(options_.host), options_.port);
  acceptor_.open(ep.protocol());
  acceptor_.set_option(asio::ip::tcp::acceptor::reuse_address(true));
  acceptor_.bind(ep);
  acceptor_.listen();
  accept();
  tick();
}

void Hub::stop() {
  if (stopped_) return;
  stopped_ = true;
  asio::error_code ec;
  acceptor_.close(ec);
  ticker_.cancel();
  acceptRetry_.cancel();
  auto sessions = sessions_;
  for (auto& [raw, s] : sessions) s->close("hub stopping");
}

void Hub::log(const std::string& line) const {
  std::cerr << "rtihub: " << line << std::endl;
}

void Hub::info(const std::string& line) const {
  if (!options_.quiet) log(line);
}

void Hub::forget(Session* s) {
  // Deferred: the session may be deep in its own handler.
  asio::post(io_, [this, s] { sessions_.erase(s); });
}

void Hub::adopt(asio::ip::tcp::socket socket) {
  auto s = std::make_shared<Session>(*this, std::move(socket));
  sessions_.emplace(s.get(), s);
  info("client " + s->peer() + " connected");
  s->start();
}

void Hub::accept() {
  acceptor_.async_accept([this](const asio::error_code& ec, asio::ip::tcp::socket socket) {
    if (stopped_) return;
    if (!ec) {
      if (acceptFailing_) log("accepting connections again");
      acceptFailing_ = false;
      adopt(std::move(socket));
      accept();
      return;
    }
    // Out of descriptors or memory, the connection stays queued and every new attempt
    // fails at once: retrying straight away would spin and flood the log while the
    // clients already connected wait. They keep the hub; the queue is tried again later.
    if (!acceptFailing_) log("accept: " + ec.message() + "; trying again every 100 ms");
    acceptFailing_ = true;
    acceptRetry_.expires_after(std::chrono::milliseconds(100));
    acceptRetry_.async_wait([this](const asio::error_code& waited) {
      if (!waited && !stopped_) accept();
    });
  });
}

void Hub::tick() {
  ticker_.expires_after(std::chrono::seconds(1));
  ticker_.async_wait([this](const asio::error_code& ec) {
    if (ec || stopped_) return;
    const auto now = Clock::now();
    auto sessions = sessions_;
    for (auto& [raw, s] : sessions) s->checkStall(now);
    tick();
  });
}

}  // namespace vcrti::hub
