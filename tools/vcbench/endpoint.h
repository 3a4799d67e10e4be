#pragma once
// One vcbench federate: what it sends and how it hears back, whatever carries it. The
// raw endpoint talks to the RTI through the standard API only, so that vcbench built
// against another RTI measures that RTI; the library endpoint sends controller commands
// and hears them in view-mode callbacks, on both ends.
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace vcbench {

/// What travels besides the stream itself. The sender opens with Hello (a: count, b:
/// batch) until the receiver answers Ready; the receiver acknowledges with Ack (a:
/// interactions received so far) every batch; Ping (a: number) is answered with Pong
/// (a: number, b: time of receipt); Done ends the receiver.
enum class Kind : std::uint8_t { Data = 1, Hello, Ready, Ack, Ping, Pong, Done };

struct Message {
  Kind kind;
  std::uint64_t a;
  std::uint64_t b;
};

/// Called for each message that arrives, from inside poll().
class Handler {
 public:
  virtual ~Handler() = default;
  virtual void onMessage(const Message& m) = 0;
};

struct Settings {
  std::string federation;
  std::string fdd;
  std::string federate;  // federate name (and controller id in library mode)
  int size = 312;        // bytes of each data interaction and ping (raw mode)
  bool library = false;
  // Above zero, the stream is attribute updates of this many object instances, which the
  // sender registers and updates in turn, instead of interactions.
  int objects = 0;
};

class Endpoint {
 public:
  virtual ~Endpoint() = default;
  /// Called once by the sender, before the stream, once the receiver is ready.
  virtual void begin() {}
  /// One message of the stream; `seq` counts from 0.
  virtual void sendData(std::uint64_t seq) = 0;
  /// A message of any other kind.
  virtual void send(Kind kind, std::uint64_t a, std::uint64_t b) = 0;
  /// Delivers what has arrived to the handler, waiting up to `waitSeconds` for the
  /// first message when there is none yet.
  virtual void poll(double waitSeconds) = 0;
};

/// Joins the federation (creating it when it does not exist yet). Throws
/// std::runtime_error when it cannot.
std::unique_ptr<Endpoint> makeEndpoint(const Settings& settings, Handler& handler);

/// Nanoseconds of the system's monotonic clock, comparable between processes of a host.
std::uint64_t nowNs();

}  // namespace vcbench
