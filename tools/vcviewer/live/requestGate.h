#pragma once
// What stands between a connection and the page server's workers: one thread that reads
// every request up to its end, for all connections at once, under bounds of time and size.
// A worker only ever sees a request that is complete and within them, so a client that
// sends slowly, or sends headers without end, costs a slot here and a few KiB, never a
// worker; and when the slots run out, the connection that has waited longest goes.
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vcviewer {

struct GateLimits {
  std::chrono::milliseconds deadline{5000};  // from accept to the request's last byte
  size_t maxHeaders = 64;
  size_t maxHeadBytes = 16384;  // request line and headers together
  size_t maxBody = 4096;
  size_t maxWaiting = 128;  // connections whose request is not complete yet
};

/// A reply the gate writes itself, for a request it will not pass on.
struct Refusal {
  int status = 0;
  std::string reason;        // "Request Header Fields Too Large"
  std::string text;          // says which bound was passed
  std::string extraHeaders;  // whole lines, each ending in \r\n
};

/// Where a request stands once `bytes` of it have arrived.
struct HeadCheck {
  enum class State { Incomplete, Complete, Refused } state = State::Incomplete;
  size_t length = 0;   // Complete: the request's bytes, head and body
  std::string target;  // Complete: the request target as sent ("/page.js?v=2")
  Refusal refusal;
};

/// Checks what has arrived of a request against the bounds; pure, for the gate and tests.
HeadCheck checkRequest(const std::string& bytes, const GateLimits& limits);

/// The whole reply to a refusal, closing the connection.
std::string refusalResponse(const Refusal& refusal);

class RequestGate {
 public:
  /// Given each complete request with its socket, which it then owns. Returns a refusal
  /// (status 0: none) when the request cannot be taken now; the gate then answers it.
  using Dispatch = std::function<Refusal(int fd, std::string request, const std::string& target)>;

  RequestGate(GateLimits limits, Dispatch dispatch);
  ~RequestGate();  // stops, closing every connection it holds
  RequestGate(const RequestGate&) = delete;
  RequestGate& operator=(const RequestGate&) = delete;

  /// Takes a freshly accepted connection; never waits for it.
  void adopt(int fd);
  void stop();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace vcviewer
