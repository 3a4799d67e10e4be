#pragma once
// The two ends of a run. The sender streams `count` interactions in batches, never more
// than `window` batches ahead of the receiver's acknowledgements, then sends single
// pings, each only after the previous one came back. The receiver counts, acknowledges
// and answers pings until the sender says it is done.
#include <cstdint>
#include <vector>

#include "endpoint.h"

namespace vcbench {

struct RunSettings {
  std::uint64_t count = 1000000;
  std::uint64_t batch = 256;
  std::uint64_t window = 32;
  std::uint64_t pings = 10000;
  double spinSeconds = 50e-6;         // polling without sleeping after the last message
  double timeout = 60.0;              // seconds without progress before giving up
  bool checkOrder = true;             // the stream carries sequence numbers
  const char* unit = "interactions";  // what the throughput counts
};

struct SenderResult {
  double seconds = 0;               // first send to last acknowledgement
  std::vector<double> oneWayUs;     // ping sent to ping received, per ping
  std::vector<double> roundTripUs;  // ping sent to answer received
};

struct ReceiverResult {
  std::uint64_t received = 0;
  std::uint64_t outOfOrder = 0;
  double seconds = 0;  // first to last interaction of the stream
  std::uint64_t pings = 0;
};

/// One end. While it waits it polls without sleeping as long as messages keep coming
/// (the spin time after the last one), then lets the RTI block until the next one, so
/// that a hub or a build on the same cores still gets the processor.
class Peer : public Handler {
 public:
  explicit Peer(const RunSettings& run) : run_(run) {}
  void attach(Endpoint* endpoint) { endpoint_ = endpoint; }

 protected:
  /// Polls until `done()`; throws std::runtime_error after `timeout` seconds in which
  /// nothing arrived.
  template <typename Done>
  void waitFor(Done done, const char* what);

  RunSettings run_;
  Endpoint* endpoint_ = nullptr;
  std::uint64_t heard_ = 0;  // messages so far
};

class Sender : public Peer {
 public:
  explicit Sender(const RunSettings& run) : Peer(run) {}
  SenderResult run();
  void onMessage(const Message& m) override;

 private:
  bool ready_ = false;
  std::uint64_t acked_ = 0;
  std::uint64_t ping_ = 0;
  bool answered_ = false;
  std::uint64_t receivedAt_ = 0;
};

class Receiver : public Peer {
 public:
  explicit Receiver(const RunSettings& run) : Peer(run) {}
  /// Until Done; throws std::runtime_error after `timeout` seconds of silence.
  ReceiverResult run();
  void onMessage(const Message& m) override;

 private:
  bool done_ = false;
  std::uint64_t total_ = 0;
  std::uint64_t batch_ = 1;
  std::uint64_t expected_ = 0;
  std::uint64_t firstNs_ = 0;
  std::uint64_t lastNs_ = 0;
  ReceiverResult result_;
};

}  // namespace vcbench
