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
  bool spin = true;        // poll without sleeping while waiting
  double timeout = 60.0;   // seconds without progress before giving up
  bool checkOrder = true;  // the stream carries sequence numbers
};

struct SenderResult {
  double seconds = 0;                  // first send to last acknowledgement
  std::vector<double> oneWayUs;        // ping sent to ping received, per ping
  std::vector<double> roundTripUs;     // ping sent to answer received
};

struct ReceiverResult {
  std::uint64_t received = 0;
  std::uint64_t outOfOrder = 0;
  double seconds = 0;  // first to last interaction of the stream
  std::uint64_t pings = 0;
};

/// Throws std::runtime_error when the other end does not answer within the timeout.
class Sender : public Handler {
 public:
  explicit Sender(const RunSettings& run) : run_(run) {}
  void attach(Endpoint* endpoint) { endpoint_ = endpoint; }
  SenderResult run();
  void onMessage(const Message& m) override;

 private:
  template <typename Done>
  void waitUntil(Done done, const char* what);

  RunSettings run_;
  Endpoint* endpoint_ = nullptr;
  bool ready_ = false;
  std::uint64_t acked_ = 0;
  std::uint64_t ping_ = 0;
  bool answered_ = false;
  std::uint64_t receivedAt_ = 0;
};

class Receiver : public Handler {
 public:
  explicit Receiver(const RunSettings& run) : run_(run) {}
  void attach(Endpoint* endpoint) { endpoint_ = endpoint; }
  /// Until Done; throws std::runtime_error after `timeout` seconds of silence.
  ReceiverResult run();
  void onMessage(const Message& m) override;

 private:
  RunSettings run_;
  Endpoint* endpoint_ = nullptr;
  bool done_ = false;
  bool activity_ = false;
  std::uint64_t total_ = 0;
  std::uint64_t batch_ = 1;
  std::uint64_t expected_ = 0;
  std::uint64_t firstNs_ = 0;
  std::uint64_t lastNs_ = 0;
  ReceiverResult result_;
};

}  // namespace vcbench
