#include "roles.h"

#include <stdexcept>
#include <string>

namespace vcbench {

namespace {
// How often the sender repeats Hello while nobody answers.
constexpr double kHelloInterval = 0.02;
// The longest a blocking poll waits before the loop looks at the clock again.
constexpr double kBlockSeconds = 0.001;

double secondsBetween(std::uint64_t from, std::uint64_t to) {
  return static_cast<double>(to - from) * 1e-9;
}
}  // namespace

template <typename Done>
void Peer::waitFor(Done done, const char* what) {
  const bool spins = run_.spinSeconds > 0;
  bool spinning = spins;
  std::uint64_t lastHeard = heard_;
  std::uint64_t quietSince = 0;
  unsigned polls = 0;
  while (!done()) {
    endpoint_->poll(spinning ? 0.0 : kBlockSeconds);
    if (heard_ != lastHeard) {
      lastHeard = heard_;
      spinning = spins;
      quietSince = 0;
      continue;
    }
    // Reading the clock costs more than an empty poll: look every so often.
    if (spinning && (++polls & 31) != 0) continue;
    std::uint64_t now = nowNs();
    if (quietSince == 0) quietSince = now;
    double quiet = secondsBetween(quietSince, now);
    if (spinning && quiet > run_.spinSeconds) spinning = false;
    if (quiet > run_.timeout)
      throw std::runtime_error(std::string("nothing heard for too long while ") + what);
  }
}

// ------------------------------------------------------------------ sender

void Sender::onMessage(const Message& m) {
  ++heard_;
  switch (m.kind) {
    case Kind::Ready:
      ready_ = true;
      break;
    case Kind::Ack:
      if (m.a > acked_) acked_ = m.a;
      break;
    case Kind::Pong:
      if (m.a == ping_ && !answered_) {
        answered_ = true;
        receivedAt_ = m.b;
      }
      break;
    default:
      break;
  }
}

SenderResult Sender::run() {
  SenderResult result;
  // Hello until the receiver has joined and subscribed: only then is nothing lost.
  std::uint64_t start = nowNs();
  while (!ready_) {
    endpoint_->send(Kind::Hello, run_.count, run_.batch);
    std::uint64_t until = nowNs() + static_cast<std::uint64_t>(kHelloInterval * 1e9);
    while (!ready_ && nowNs() < until) endpoint_->poll(kBlockSeconds);
    if (secondsBetween(start, nowNs()) > run_.timeout)
      throw std::runtime_error("no receiver answered within the timeout");
  }

  endpoint_->begin();
  if (run_.count > 0) {
    const std::uint64_t ahead = run_.window * run_.batch;
    std::uint64_t t0 = nowNs();
    for (std::uint64_t seq = 0; seq < run_.count;) {
      std::uint64_t end = seq + run_.batch < run_.count ? seq + run_.batch : run_.count;
      for (; seq < end; ++seq) endpoint_->sendData(seq);
      endpoint_->poll(0.0);
      if (seq - acked_ > ahead) waitFor([&] { return seq - acked_ <= ahead; }, "streaming");
    }
    waitFor([&] { return acked_ >= run_.count; }, "waiting for the last acknowledgement");
    result.seconds = secondsBetween(t0, nowNs());
  }

  result.oneWayUs.reserve(run_.pings);
  result.roundTripUs.reserve(run_.pings);
  for (std::uint64_t i = 0; i < run_.pings; ++i) {
    ping_ = i;
    answered_ = false;
    std::uint64_t sentAt = nowNs();
    endpoint_->send(Kind::Ping, i, sentAt);
    waitFor([&] { return answered_; }, "pinging");
    std::uint64_t back = nowNs();
    result.oneWayUs.push_back(static_cast<double>(static_cast<std::int64_t>(receivedAt_ - sentAt)) *
                              1e-3);
    result.roundTripUs.push_back(static_cast<double>(back - sentAt) * 1e-3);
  }
  endpoint_->send(Kind::Done, 0, 0);
  return result;
}

// ------------------------------------------------------------------ receiver

void Receiver::onMessage(const Message& m) {
  ++heard_;
  switch (m.kind) {
    case Kind::Hello:
      // Repeated until our Ready arrives; only the first one of a run counts.
      if (result_.received == 0) {
        total_ = m.a;
        batch_ = m.b ? m.b : 1;
      }
      endpoint_->send(Kind::Ready, 0, 0);
      break;
    case Kind::Data: {
      if (result_.received == 0) firstNs_ = nowNs();
      if (run_.checkOrder && m.a != expected_) ++result_.outOfOrder;
      expected_ = m.a + 1;
      std::uint64_t n = ++result_.received;
      if (n == total_) lastNs_ = nowNs();
      if (n % batch_ == 0 || n == total_) endpoint_->send(Kind::Ack, n, 0);
      break;
    }
    case Kind::Ping:
      endpoint_->send(Kind::Pong, m.a, nowNs());
      ++result_.pings;
      break;
    case Kind::Done:
      done_ = true;
      break;
    default:
      break;
  }
}

ReceiverResult Receiver::run() {
  waitFor([&] { return done_; }, "receiving");
  if (lastNs_ > firstNs_) result_.seconds = secondsBetween(firstNs_, lastNs_);
  return result_;
}

}  // namespace vcbench
