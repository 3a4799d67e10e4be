#include "hub.h"

#include "fdd_model.h"
#include "federation_core.h"
#include "fom_modules.h"
#include "log_sink.h"
#include "protocol.h"

#include <algorithm>
#include <string_view>

#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <vector>

namespace vcrti::hub {

namespace {
using Clock = std::chrono::steady_clock;
constexpr std::size_t kReadChunk = 64 * 1024;
// Reads from one client in a row before the others get their turn.
constexpr int kReadsPerTurn = 8;
// The work one client's frames may cause in a row (classes, members, instances and
// receivers looked at, see FederationCore::work) before the others get their turn: a few
// milliseconds' worth, so that a turn stays far below the 50 ms another federation may
// be made to wait. A frame that costs more is let through alone; nothing a client can
// send costs more than a bounded multiple of this.
constexpr std::size_t kWorkPerTurn = 200000;
// Buffers larger than this are given back when found empty, so that an idle client costs
// its socket and little else.
constexpr std::size_t kKeptBuffer = 256 * 1024;
// Incomplete frames of all clients together. Past it the client whose frame has waited
// longest is dropped: a federate sends a frame in one go, so the oldest one is the
// likeliest to be stuck.
constexpr std::size_t kPartialBudget = 32u << 20;
constexpr std::size_t kFederationOverhead = 1024;
// How often the time limits are checked; each may be passed by at most this much.
constexpr auto kTick = std::chrono::milliseconds(100);

// What a federation costs the hub: its name and file name, the model as sent (kept for
// joiners) and its tables.
std::size_t costOf(const std::string& name, std::string_view file, std::size_t modelBytes,
                   const FddModel& model) {
  return kFederationOverhead + name.size() + file.size() + modelBytes +
         FederationCore::tableBytes(model);
}

std::string ms(std::chrono::milliseconds d) {
  return std::to_string(d.count()) + " ms";
}
}  // namespace

std::string escapeForLog(const std::string& text) {
  static const char* const kHex = "0123456789abcdef";
  std::string out;
  out.reserve(text.size());
  for (const char ch : text) {
    const auto c = static_cast<unsigned char>(ch);
    if (c >= 0x20 && c < 0x7f && c != '\\') {
      out += ch;
    } else {
      out += "\\x";
      out += kHex[c >> 4];
      out += kHex[c & 15];
    }
  }
  return out;
}

void sayGoodbye(asio::ip::tcp::socket& socket, const std::string& why) {
  asio::error_code ec;
  socket.non_blocking(true, ec);
  unsigned char sink[4096];
  // Bounded: a client that keeps sending must not keep the hub here.
  for (int i = 0; i < 64; ++i) {
    socket.read_some(asio::buffer(sink), ec);
    if (ec) break;
  }
  ByteBuffer frame;
  wire::FrameWriter w(frame, wire::MsgType::Goodbye, 8 + why.size());
  w.str(why.substr(0, 4096));
  // One attempt, never waiting: a client whose socket buffer is full is not reading and
  // would not see the reason anyway.
  if (w.finish()) socket.write_some(asio::buffer(frame.data(), frame.size()), ec);
  socket.shutdown(asio::ip::tcp::socket::shutdown_both, ec);
  socket.close(ec);
}

struct Federation {
  Federation(std::shared_ptr<const FddModel> m, MemoryBudget& b, std::size_t c)
      : cost(c), budget(b), core(std::move(m), &b) {}
  ~Federation() {
    if (cost) budget.give(cost);
  }
  void leaveBudget() {
    budget.give(cost);
    cost = 0;
    core.leaveBudget();
  }
  // The model's (costOf), counted against Options::federationMemory; a model that grows
  // while the federation lives is counted anew, grown.
  std::size_t cost = 0;
  MemoryBudget& budget;  // which the core charges for instances and names
  std::string name;
  std::string fddFile;
  std::string creator;               // the address it was created from
  std::vector<unsigned char> model;  // as the creator sent it, passed on to joiners
  FederationCore core;
  Clock::time_point emptySince = Clock::now();
  // What the hub would get back by destroying it.
  std::size_t held() const { return cost + core.heldBytes(); }
};

namespace {
// Frames that flow from one federate to others without an answer: the hot path, never
// held back as requests are.
bool isStream(wire::MsgType t) {
  return t == wire::MsgType::Interaction || t == wire::MsgType::Update;
}
}  // namespace

// A create on its way through the decoder: what the client sent, and what became of it.
struct CreateJob {
  std::uint32_t requestId = 0;
  std::string name;
  std::string file;
  std::vector<unsigned char> blob;
  bool ok = false;
  std::string error;
  FddModel model;
  std::size_t cost = 0;
};

class Session : public std::enable_shared_from_this<Session>, public FederationMember {
 public:
  Session(Hub& hub, asio::ip::tcp::socket socket, std::string address)
      : hub_(hub), socket_(std::move(socket)), address_(std::move(address)) {
    asio::error_code ec;
    auto ep = socket_.remote_endpoint(ec);
    peer_ = ec ? std::string("?") : ep.address().to_string() + ":" + std::to_string(ep.port());
    socket_.set_option(asio::ip::tcp::no_delay(true), ec);
    socket_.non_blocking(true, ec);
  }

  void start() { read(); }

  const std::string& peer() const { return peer_; }
  const std::string& address() const { return address_; }

  std::size_t queued() const { return pending_.size() + (writing_.size() - written_); }

  // Drops the client: resigns it, closes the socket, wakes the senders it held up. An
  // empty reason means the client went away by itself.
  void close(const std::string& why) {
    if (closed_) return;
    closed_ = true;
    closing_ = false;
    if (why.empty())
      hub_.info("client " + peer_ + " disconnected");
    else
      hub_.log("dropped client " + peer_ + ": " + why);
    resign();
    // The reason goes out only between frames: with a write in flight it would land in
    // the middle of one.
    if (!why.empty() && !writingNow_) {
      sayGoodbye(socket_, why);
    } else {
      asio::error_code ec;
      socket_.shutdown(asio::ip::tcp::socket::shutdown_both, ec);
      socket_.close(ec);
    }
    hub_.partialBytes(-static_cast<std::ptrdiff_t>(rxCounted_));
    rxCounted_ = 0;
    hub_.bufferBytes(-static_cast<std::ptrdiff_t>(buffersCounted_));
    buffersCounted_ = 0;
    wakeWaiters();
    hub_.forget(this);
  }

  // The time limits: how long the queue may stay full and a frame unfinished.
  void checkLimits(Clock::time_point now) {
    const Options& o = hub_.options();
    if (closed_) return;
    if (closing_ && now - closingSince_ > o.maxDelay) return close(closingWhy_);
    if (over_ && now - overSince_ > o.maxDelay)
      return close("not reading: " + std::to_string(peakQueued_) +
                   " bytes queued, over the limit of " + std::to_string(o.queueLimit) +
                   ", and not drained to " + std::to_string(o.queueLimit / 4) + " for more than " +
                   ms(o.maxDelay) + " (" + std::to_string(queued()) + " still queued)");
    if (!rx_.empty() && !held_ && !paused_ && now - partialSince_ > o.frameTimeout)
      return close("frame not finished within " + ms(o.frameTimeout) + ": " +
                   std::to_string(rx_.size()) + " of " + std::to_string(announced()) + " bytes");
    if (!fed_ && !closing_ && now - unjoinedSince_ > o.joinTimeout)
      return close("did not join a federation execution within " + ms(o.joinTimeout));
  }

  // Gives back large buffers that are empty. Done now and then rather than each time one
  // empties: a busy client empties them many times a second and would otherwise pay for
  // fresh pages each time.
  // With `keep` zero, every empty buffer goes: the hub is short of memory.
  void trim(std::size_t keep = kKeptBuffer) {
    if (closed_) return;
    if (rx_.empty() && rx_.capacity() > keep) {
      rx_ = ByteBuffer();
      account();
    }
    if (!writingNow_ && pending_.empty()) {
      if (writing_.capacity() > keep) writing_ = ByteBuffer();
      if (pending_.capacity() > keep) pending_ = ByteBuffer();
      account();
    }
  }

  bool holdsPartial() const { return !closed_ && rxCounted_ > 0; }
  std::size_t buffered() const { return closed_ ? 0 : buffersCounted_; }
  Clock::time_point partialSince() const { return partialSince_; }
  std::size_t partialSize() const { return rx_.size(); }

 private:
  // The length the frame in rx_ announces, prefix included.
  std::size_t announced() const {
    if (rx_.size() < wire::kLengthPrefix) return wire::kLengthPrefix;
    return wire::kLengthPrefix + (std::size_t(rx_.data()[0]) | std::size_t(rx_.data()[1]) << 8 |
                                  std::size_t(rx_.data()[2]) << 16 |
                                  std::size_t(rx_.data()[3]) << 24);
  }

  // Reads what the socket has, a few times over, then waits for more. A client that is
  // held back (or holds itself back) is not read at all: its bytes stay in the kernel,
  // which slows it down without costing the hub memory.
  void read() {
    if (closed_ || closing_ || reading_ || paused_ || held_) return;
    turnWork_ = 0;
    for (int turn = 0; turn < kReadsPerTurn; ++turn) {
      // Bytes that start afresh land in the hub's scratch buffer and are handled where
      // they lie; bytes that continue a frame go straight behind it.
      const std::size_t old = rx_.size();
      unsigned char* buf = hub_.scratch_.data();
      if (old > 0) buf = rx_.grow(kReadChunk);
      asio::error_code ec;
      const std::size_t n = socket_.read_some(asio::buffer(buf, kReadChunk), ec);
      if (old > 0) rx_.resize(old + (ec ? 0 : n));
      if (ec == asio::error::would_block || ec == asio::error::try_again) {
        reading_ = true;
        socket_.async_wait(asio::socket_base::wait_read,
                           [self = shared_from_this()](const asio::error_code& waited) {
                             self->reading_ = false;
                             if (self->closed_) return;
                             if (waited) return self->close("read: " + waited.message());
                             self->read();
                           });
        return;
      }
      if (ec) {
        const bool orderly = ec == asio::error::eof || ec == asio::error::connection_reset;
        return close(orderly ? std::string() : "read: " + ec.message());
      }
      received(old == 0 ? buf : nullptr, n);
      if (closed_ || closing_ || paused_ || held_) return;
    }
    // More may be waiting; the other clients go first.
    reading_ = true;
    asio::post(socket_.get_executor(), [self = shared_from_this()] {
      self->reading_ = false;
      self->read();
    });
  }

  // Handles the complete frames among the bytes read and keeps the rest: `p` holds `n`
  // fresh bytes, or is null when they were read into rx_ behind a frame begun earlier.
  void received(const unsigned char* p, std::size_t n) {
    std::size_t used = 0;
    if (p) {
      used = process(p, n);
      if (!closed_ && used < n) rx_.append(p + used, n - used);
    } else {
      used = process(rx_.data(), rx_.size());
      if (!closed_) rx_.consume(used);
    }
    if (closed_) return;
    if (p || used > 0) partialSince_ = Clock::now();
    account();
  }

  // Brings the hub's counts of what the client's buffers hold up to date: incomplete
  // frames on one side; on the other, the frames queued for it and the complete frames
  // it sent that wait for their turn or for its queue to drain. Those are not incomplete
  // frames: a client waiting on its own queue is not a client stuck mid-frame.
  void account() {
    const std::size_t partial = rx_.empty() || held_ ? 0 : rx_.capacity();
    if (partial != rxCounted_) {
      hub_.partialBytes(static_cast<std::ptrdiff_t>(partial) -
                        static_cast<std::ptrdiff_t>(rxCounted_));
      rxCounted_ = partial;
    }
    const std::size_t buffers =
        pending_.capacity() + writing_.capacity() + (held_ ? rx_.capacity() : 0);
    if (buffers != buffersCounted_) {
      hub_.bufferBytes(static_cast<std::ptrdiff_t>(buffers) -
                       static_cast<std::ptrdiff_t>(buffersCounted_));
      buffersCounted_ = buffers;
    }
  }

  // Handles frames until the bytes run out; returns how many bytes it handled.
  std::size_t process(const unsigned char* p, std::size_t n) {
    const std::size_t limit = hub_.options().queueLimit;
    std::size_t pos = 0;
    while (!closed_ && !closing_) {
      wire::Message m;
      const wire::DecodeResult d = wire::decodeFrame(p + pos, n - pos, m);
      if (d.status == wire::DecodeStatus::Incomplete) break;
      if (d.status == wire::DecodeStatus::Malformed) {
        close(std::string("malformed frame: ") + d.error);
        break;
      }
      // Every request is answered; a client that does not take its answers has its
      // further requests wait, so its queue grows by one answer at most.
      if (!isStream(m.type) && queued() > limit) {
        held_ = true;
        break;
      }
      // What is left once the turn's work is spent waits for the client's next turn,
      // behind every other client that has something to do.
      if (turnWork_ >= kWorkPerTurn) {
        held_ = true;
        asio::post(socket_.get_executor(), [self = shared_from_this()] { self->resume(); });
        break;
      }
      const std::size_t before = fed_ ? fed_->core.work() : 0;
      Federation* const in = fed_;
      handle(m, p + pos, d.frameSize);
      turnWork_ += 1 + (in ? in->core.work() - before : 0) + extraWork_;
      extraWork_ = 0;
      pos += d.frameSize;
      if (creating_) break;
    }
    return pos;
  }

  // Carries on after the client's queue drained: first what it sent meanwhile.
  void resume() {
    if (closed_ || creating_) return;
    held_ = false;
    turnWork_ = 0;
    partialSince_ = Clock::now();
    if (!rx_.empty()) received(nullptr, 0);
    read();
  }

  void handle(const wire::Message& m, const unsigned char* frame, std::size_t frameSize) {
    if (!greeted_) return greet(m);
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
        if (m.handle > static_cast<std::uint32_t>(ResignMode::RefuseIfOwning))
          return close("unknown resign mode " + std::to_string(m.handle));
        resign(static_cast<ResignMode>(m.handle));
        return reply(m.requestId, wire::Status::Ok, "");
      case wire::MsgType::Subscribe:
      case wire::MsgType::Unsubscribe:
      case wire::MsgType::SubscribeObjects:
      case wire::MsgType::UnsubscribeObjects: {
        if (!fed_) return close("subscription before joining");
        const bool on =
            m.type == wire::MsgType::Subscribe || m.type == wire::MsgType::SubscribeObjects;
        const std::string err =
            m.type == wire::MsgType::Subscribe || m.type == wire::MsgType::Unsubscribe
                ? fed_->core.subscribeInteractions(*this, m.handle, on)
                : fed_->core.subscribeObjects(*this, m.handle, on);
        if (!err.empty()) return close(err);
        return reply(m.requestId, wire::Status::Ok, "");
      }
      case wire::MsgType::Interaction:
      case wire::MsgType::ReserveName:
      case wire::MsgType::Register:
      case wire::MsgType::Update:
      case wire::MsgType::Delete:
      case wire::MsgType::LocalDelete:
      case wire::MsgType::RequestUpdate:
      case wire::MsgType::RequestClassUpdate: {
        if (!fed_) return close("object or interaction message before joining");
        hub_.sender_ = this;
        const std::string err = fed_->core.handle(*this, m, frame, frameSize);
        hub_.sender_ = nullptr;
        if (!err.empty()) return close(err);
        return;
      }
      default:
        return close("unexpected message type " + std::to_string(static_cast<int>(m.type)));
    }
  }

  // The first frame of a connection says which protocol the client speaks. A client of
  // another release is told so, in words it can show, and let go.
  void greet(const wire::Message& m) {
    const std::string ours = std::to_string(wire::kProtocolVersion);
    unsigned char version[4];
    wire::storeU32(version, wire::kProtocolVersion);
    if (m.type != wire::MsgType::Hello) {
      reply(m.requestId, wire::Status::Internal,
            "this RTI hub speaks protocol version " + ours +
                ", which begins with a hello: the federate's RTI is of another release",
            version, sizeof version);
      return finish("no hello: a client of another release");
    }
    if (m.handle != wire::kProtocolVersion) {
      reply(m.requestId, wire::Status::Internal,
            "this RTI hub speaks protocol version " + ours + ", the federate's RTI version " +
                std::to_string(m.handle),
            version, sizeof version);
      return finish("protocol version " + std::to_string(m.handle) + ", not " + ours);
    }
    greeted_ = true;
    reply(m.requestId, wire::Status::Ok, "", version, sizeof version);
  }

  // Closes once what is queued for the client has gone out (or the time for it is up),
  // reading nothing more meanwhile.
  void finish(const std::string& why) {
    closing_ = true;
    closingWhy_ = why;
    closingSince_ = Clock::now();
    if (!writingNow_) close(why);
  }

  // FederationMember: what the federation sends this client.
  void deliver(const unsigned char* frame, std::size_t size) override {
    enqueue(frame, size);
    Session* sender = hub_.sender_;
    if (over_ && sender && sender != this && !closed_) {
      // Stop reading from the sender until this receiver catches up. Nothing is
      // dropped: the sender's own writes block in its kernel buffers meanwhile, and the
      // receiver either drains in time or is dropped, which ends the wait.
      sender->paused_ = true;
      auto& w = waiters_;
      if (w.empty() || w.back().lock().get() != sender) w.push_back(sender->weak_from_this());
    }
  }

  // Discoveries owed to a late subscriber go out a quarter of the queue limit at a time.
  bool hasRoom() const override { return !closed_ && queued() < hub_.options().queueLimit / 4; }

  void pumpDiscoveries() {
    if (fed_ && !closed_ && fed_->core.owesDiscoveries(*this) && hasRoom()) fed_->core.pump(*this);
  }

  void onCreate(const wire::Message& m) {
    auto& feds = hub_.federations();
    const std::string name(m.name);
    if (name.empty()) return reply(m.requestId, wire::Status::Internal, "empty federation name");
    if (feds.count(name))
      return reply(m.requestId, wire::Status::FederationExists,
                   "federation execution '" + name + "' already exists");
    if (std::string why = hub_.createRefusal(address_, Clock::now()); !why.empty()) {
      hub_.log("refused a create from " + peer_ + ": " + why.substr(9));
      return reply(m.requestId, wire::Status::Internal, why);
    }
    // Decoding and indexing a large model takes longer than a turn, so it is done beside
    // the clients' turns; the creator's further frames wait for its answer.
    auto job = std::make_shared<CreateJob>();
    job->requestId = m.requestId;
    job->name = name;
    job->file = std::string(m.text);
    job->blob.assign(m.blob.data, m.blob.data + m.blob.size);
    hub_.bufferBytes(static_cast<std::ptrdiff_t>(job->blob.capacity()));
    held_ = creating_ = true;
    asio::post(hub_.decoder(), [self = shared_from_this(), job, back = socket_.get_executor()] {
      job->ok = decodeFdd(job->blob.data(), job->blob.size(), job->model, job->error);
      if (job->ok) job->cost = costOf(job->name, job->file, job->blob.size(), job->model);
      asio::post(back, [self, job] { self->created(*job); });
    });
  }

  void created(CreateJob& job) {
    hub_.bufferBytes(-static_cast<std::ptrdiff_t>(job.blob.capacity()));
    creating_ = false;
    if (closed_) return;
    auto& feds = hub_.federations();
    // Only a federation made counts against the address.
    if (!job.ok || feds.count(job.name)) hub_.createUndone(address_);
    if (!job.ok) {
      reply(job.requestId, wire::Status::Internal, "unusable object model: " + job.error);
    } else if (feds.count(job.name)) {
      reply(job.requestId, wire::Status::FederationExists,
            "federation execution '" + job.name + "' already exists");
    } else if (!hub_.roomForFederation(job.cost)) {
      hub_.createUndone(address_);
      reply(job.requestId, wire::Status::Internal,
            "the RTI hub holds as many federation executions as it can: destroy one first");
    } else {
      hub_.budget_.used += job.cost;
      auto fed = std::make_unique<Federation>(
          std::make_shared<const FddModel>(std::move(job.model)), hub_.budget_, job.cost);
      fed->name = job.name;
      fed->fddFile = job.file;
      fed->creator = address_;
      fed->model = std::move(job.blob);
      feds.emplace(job.name, std::move(fed));
      hub_.info("federation execution '" + job.name + "' created by " + peer_);
      reply(job.requestId, wire::Status::Ok, "");
    }
    resume();
  }

  void onDestroy(const wire::Message& m) {
    auto& feds = hub_.federations();
    const std::string name(m.name);
    auto it = feds.find(name);
    if (it == feds.end())
      return reply(m.requestId, wire::Status::FederationMissing,
                   "federation execution '" + name + "' does not exist");
    if (it->second->core.memberCount() != 0)
      return reply(m.requestId, wire::Status::FederatesJoined,
                   "federation execution '" + name + "' still has " +
                       std::to_string(it->second->core.memberCount()) + " joined federate(s)");
    hub_.createUndone(it->second->creator);
    hub_.retire(std::move(it->second));
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
    if (m.blob.size != 0) {
      std::string err = mergeJoinersModules(*it->second, m.blob);
      if (!err.empty()) return reply(m.requestId, wire::Status::InconsistentFdd, err);
    }
    fed_ = it->second.get();
    handle_ = fed_->core.join(*this);
    std::vector<unsigned char> payload(4 + fed_->model.size());
    wire::storeU32(payload.data(), handle_);
    std::copy(fed_->model.begin(), fed_->model.end(), payload.begin() + 4);
    extraWork_ = payload.size() / 64 + fed_->core.memberCount();
    hub_.info("federate " + std::to_string(handle_) + " (" + std::string(m.text) + ") from " +
              peer_ + " joined '" + name + "'");
    reply(m.requestId, wire::Status::Ok, fed_->fddFile, payload.data(), payload.size());
  }

  // Merges the modules a joiner brings into the federation's model, all or none; the
  // members already joined are sent the grown model. The growth is charged to the hub's
  // federation memory like the model the creator sent.
  std::string mergeJoinersModules(Federation& fed, const wire::Bytes& blob) {
    std::vector<FddModel> modules;
    std::string err;
    if (!decodeModules(blob.data, blob.size, modules, err)) return "unusable modules: " + err;
    FddModel grown = *fed.core.model();
    err = mergeModules(grown, modules);
    if (!err.empty()) return err;
    ByteBuffer encoded;
    if (!encodeFdd(grown, encoded) || encoded.size() > kMaxModelBytes)
      return "the federation's object model would grow too large to share";
    if (encoded.size() == fed.model.size() &&
        std::equal(fed.model.begin(), fed.model.end(), encoded.data()))
      return {};  // nothing new
    const std::size_t cost = costOf(fed.name, fed.fddFile, encoded.size(), grown);
    const std::size_t more = cost > fed.cost ? cost - fed.cost : 0;
    if (!hub_.budget_.take(more))
      return "the RTI hub's memory for federation executions cannot hold the grown object model";
    err = fed.core.extendModel(std::make_shared<const FddModel>(std::move(grown)));
    if (!err.empty()) {
      hub_.budget_.give(more);
      return err;
    }
    fed.cost += more;
    fed.model.assign(encoded.data(), encoded.data() + encoded.size());
    hub_.info("federation execution '" + fed.name + "' grew by the modules of a joiner from " +
              peer_);
    return {};
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
    account();
    const std::size_t q = queued();
    if (!over_ && q > hub_.options().queueLimit) {
      over_ = true;
      overSince_ = Clock::now();
      peakQueued_ = 0;
    }
    if (over_) peakQueued_ = std::max(peakQueued_, q);
    if (!writingNow_) write();
  }

  void write() {
    if (closed_) return;
    if (written_ == writing_.size()) {
      if (pending_.empty()) {
        writingNow_ = false;
        if (closing_) return close(closingWhy_);
        // An answer carrying an object model leaves a large buffer behind.
        written_ = 0;
        writing_.clear();
        return;
      }
      writing_.swap(pending_);
      pending_.clear();
      written_ = 0;
      account();
    }
    writingNow_ = true;
    socket_.async_write_some(
        asio::buffer(writing_.data() + written_, writing_.size() - written_),
        [self = shared_from_this()](const asio::error_code& ec, std::size_t n) {
          if (self->closed_) return;
          if (ec) return self->close("write: " + ec.message());
          self->written_ += n;
          self->drained();
          self->pumpDiscoveries();
          self->write();
        });
  }

  // Below a quarter of the limit the client is no longer behind: the senders it held and
  // its own requests go on.
  void drained() {
    if (!over_ || queued() > hub_.options().queueLimit / 4) return;
    over_ = false;
    wakeWaiters();
    if (held_) asio::post(socket_.get_executor(), [self = shared_from_this()] { self->resume(); });
  }

  // Resumed from the event loop, not from here: this may run inside another session's
  // handling, which the resumed reader must not re-enter.
  void wakeWaiters() {
    std::vector<std::weak_ptr<Session>> waiters;
    waiters.swap(waiters_);
    for (auto& w : waiters)
      if (auto s = w.lock()) {
        if (s->paused_)
          asio::post(s->socket_.get_executor(), [s] {
            if (!s->paused_) return;
            s->paused_ = false;
            s->partialSince_ = Clock::now();
            s->read();
          });
      }
  }

  // A client that goes away, or is dropped, takes its instances with it.
  void resign(ResignMode mode = ResignMode::DeleteInstances) {
    if (!fed_) return;
    fed_->core.resign(*this, mode);
    if (fed_->core.memberCount() == 0) fed_->emptySince = Clock::now();
    hub_.info("federate " + std::to_string(handle_) + " resigned from '" + fed_->name + "'");
    fed_ = nullptr;
    unjoinedSince_ = Clock::now();
  }

  Hub& hub_;
  asio::ip::tcp::socket socket_;
  std::string address_;
  std::string peer_;
  ByteBuffer rx_;  // an incomplete frame, or frames held while the client is behind
  std::size_t rxCounted_ = 0;
  std::size_t buffersCounted_ = 0;
  Clock::time_point partialSince_ = Clock::now();
  ByteBuffer pending_;  // frames not yet handed to the socket
  ByteBuffer writing_;  // the batch being written
  std::size_t written_ = 0;
  bool writingNow_ = false;
  bool reading_ = false;
  bool paused_ = false;  // a receiver of this sender is behind
  bool held_ = false;    // this client is behind: its requests wait
  bool over_ = false;    // queued() went above the limit and has not drained yet
  Clock::time_point overSince_{};
  std::size_t peakQueued_ = 0;  // the most queued since it went over: why it is dropped
  Clock::time_point unjoinedSince_ = Clock::now();
  bool closed_ = false;
  bool greeted_ = false;
  bool creating_ = false;  // a model it sent is being decoded: its frames wait
  bool closing_ = false;   // closes once its queue has gone out
  std::string closingWhy_;
  Clock::time_point closingSince_{};
  std::vector<std::weak_ptr<Session>> waiters_;  // senders paused because of this queue

  Federation* fed_ = nullptr;
  std::uint32_t handle_ = 0;
  std::size_t turnWork_ = 0;   // spent in this turn
  std::size_t extraWork_ = 0;  // the hub's own share of the frame being handled
};

Hub::Hub(asio::io_context& io, const Options& options)
    : io_(io),
      options_(options),
      log_(std::make_unique<LogSink>(options.logFd, "rtihub: ", LogSink::Limits{})),
      acceptor_(io),
      ticker_(io),
      acceptRetry_(io),
      scratch_(kReadChunk) {
  budget_.limit = options_.federationMemory;
}

Hub::~Hub() {
  // A decode in progress finishes first; its answer finds its client gone.
  if (decoder_) decoder_->join();
}

asio::thread_pool& Hub::decoder() {
  if (!decoder_) decoder_ = std::make_unique<asio::thread_pool>(1);
  return *decoder_;
}

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
  log_->write(escapeForLog(line));
}

void Hub::info(const std::string& line) const {
  if (!options_.quiet) log(line);
}

void Hub::forget(Session* s) {
  --live_;
  auto it = perAddress_.find(s->address());
  if (it != perAddress_.end() && --it->second == 0) perAddress_.erase(it);
  // Deferred: the session may be deep in its own handler.
  asio::post(io_, [this, s] { sessions_.erase(s); });
}

bool Hub::adopt(asio::ip::tcp::socket socket) {
  asio::error_code ec;
  const auto ep = socket.remote_endpoint(ec);
  const std::string address = ec ? std::string("?") : ep.address().to_string();
  std::string refusal;
  // The limits may be set as low as one.
  const auto clients = [](std::size_t n) {
    return std::to_string(n) + (n == 1 ? " client" : " clients");
  };
  if (live_ >= options_.maxClients)
    refusal = "the hub serves " + clients(live_) + ", the most it may";
  else if (perAddress_[address] >= options_.maxClientsPerAddress)
    refusal = clients(perAddress_[address]) + " from " + address +
              (perAddress_[address] == 1 ? " is" : " are") +
              " connected, the most one address may have";
  if (!refusal.empty()) {
    if (perAddress_[address] == 0) perAddress_.erase(address);
    // A flood of connections must not become a flood of log lines.
    const auto now = Clock::now();
    if (now - lastRefusalLog_ >= std::chrono::seconds(1)) {
      log("refused client " + (ec ? std::string("?") : address + ":" + std::to_string(ep.port())) +
          ": " + refusal +
          (refusedUnlogged_ ? " (and " + std::to_string(refusedUnlogged_) + " more refused)"
                            : std::string()));
      lastRefusalLog_ = now;
      refusedUnlogged_ = 0;
    } else {
      ++refusedUnlogged_;
    }
    sayGoodbye(socket, "refused: " + refusal);
    return false;
  }
  auto s = std::make_shared<Session>(*this, std::move(socket), address);
  ++live_;
  ++perAddress_[address];
  sessions_.emplace(s.get(), s);
  info("client " + s->peer() + " connected");
  s->start();
  return true;
}

void Hub::partialBytes(std::ptrdiff_t delta) {
  partialBytes_ = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(partialBytes_) + delta);
  if (delta > 0 && partialBytes_ > kPartialBudget) shedPartialFrames();
}

void Hub::shedPartialFrames() {
  while (partialBytes_ > kPartialBudget) {
    Session* oldest = nullptr;
    for (auto& [raw, s] : sessions_)
      if (s->holdsPartial() && (!oldest || s->partialSince() < oldest->partialSince()))
        oldest = raw;
    if (!oldest) return;
    oldest->close("holds " + std::to_string(oldest->partialSize()) +
                  " bytes of an incomplete frame, the oldest while incomplete frames took " +
                  std::to_string(partialBytes_) + " bytes, over the hub's " +
                  std::to_string(kPartialBudget));
  }
}

std::string Hub::createRefusal(const std::string& address, Clock::time_point now) {
  const auto step = options_.createInterval;
  const auto burst = static_cast<int>(options_.createBurst);
  auto& fullAt = createsFullAt_[address];
  // Empty allowance is `burst` steps before full; each create moves "full" one step on.
  const auto emptyAt = fullAt - burst * step;
  if (now < emptyAt + step) {
    const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(emptyAt + step - now);
    return "refused: " + std::to_string(burst) + " federation executions were created from " +
           address + " within " + ms(burst * step) +
           ", the most one address may create (one more every " + ms(step) + "): try again in " +
           ms(wait);
  }
  fullAt = std::max(fullAt, now) + step;
  return {};
}

void Hub::createUndone(const std::string& address) {
  auto it = createsFullAt_.find(address);
  if (it != createsFullAt_.end()) it->second -= options_.createInterval;
}

void Hub::retire(std::unique_ptr<Federation> federation) {
  federation->leaveBudget();
  asio::post(decoder(), [doomed = std::shared_ptr<Federation>(std::move(federation))]() mutable {
    doomed.reset();
#ifdef __GLIBC__
    // The allocator keeps freed blocks for reuse; the hub's memory stays within its budget
    // only when what a destroyed federation held goes back.
    malloc_trim(0);
#endif
  });
}

bool Hub::roomForFederation(std::size_t cost) {
  // The clients' buffers take from the same memory.
  const std::size_t clients =
      static_cast<std::size_t>(std::max<std::ptrdiff_t>(buffers_, 0)) + partialBytes_;
  const std::size_t budget = std::min(options_.federationMemory,
                                      options_.memory > clients ? options_.memory - clients : 0);
  std::size_t idle = 0;
  std::vector<Federation*> empty;
  for (const auto& [name, f] : federations_) {
    if (f->core.memberCount() == 0) {
      idle += f->held();
      empty.push_back(f.get());
    }
  }
  std::size_t held = budget_.used;
  if (cost > budget) return false;
  if (held <= budget - cost) return true;
  if (held - idle > budget - cost) return false;
  // Federations with federates joined stay; empty ones go, the longest empty first, so
  // that whoever left them behind cannot keep others from creating theirs.
  std::sort(empty.begin(), empty.end(),
            [](const Federation* a, const Federation* b) { return a->emptySince < b->emptySince; });
  for (Federation* f : empty) {
    if (held <= budget - cost) break;
    held -= f->held();
    const std::string name = f->name;
    log("federation execution '" + name + "' destroyed to make room: no federate was joined");
    retire(std::move(federations_.extract(name).mapped()));
  }
  return true;
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

void Hub::checkLimits(Clock::time_point now) {
  std::vector<std::shared_ptr<Session>> sessions;
  sessions.reserve(sessions_.size());
  for (auto& [raw, s] : sessions_) sessions.push_back(s);
  for (auto& s : sessions) {
    s->checkLimits(now);
    s->trim();
  }
  shedBuffers();
  for (auto it = createsFullAt_.begin(); it != createsFullAt_.end();)
    it = it->second <= now ? createsFullAt_.erase(it) : std::next(it);
  for (auto it = federations_.begin(); it != federations_.end();) {
    const Federation& f = *it->second;
    if (f.core.memberCount() == 0 && now - f.emptySince > options_.emptyFederationExpiry) {
      log("federation execution '" + f.name + "' expired: no federate joined for " +
          std::to_string(options_.emptyFederationExpiry.count()) + " s");
      retire(std::move(it->second));
      it = federations_.erase(it);
    } else {
      ++it;
    }
  }
}

void Hub::shedBuffers() {
  for (bool trimmed = false;;) {
    const std::size_t held = budget_.used + partialBytes_ +
                             static_cast<std::size_t>(std::max<std::ptrdiff_t>(buffers_, 0));
    if (held <= options_.memory) return;
    // Buffers kept for reuse go before any client does.
    if (!trimmed) {
      trimmed = true;
      for (auto& [raw, s] : sessions_) s->trim(0);
      continue;
    }
    Session* most = nullptr;
    for (auto& [raw, s] : sessions_)
      if (s->buffered() > 0 && (!most || s->buffered() > most->buffered())) most = raw;
    if (!most) return;
    most->close("holds " + std::to_string(most->buffered()) +
                " bytes of frames queued for it or waiting to be handled, the most of any client, "
                "while the hub held " +
                std::to_string(held) + " bytes in all, over its total of " +
                std::to_string(options_.memory));
  }
}

void Hub::tick() {
  ticker_.expires_after(kTick);
  ticker_.async_wait([this](const asio::error_code& ec) {
    if (ec || stopped_) return;
    checkLimits(Clock::now());
    tick();
  });
}

}  // namespace vcrti::hub
