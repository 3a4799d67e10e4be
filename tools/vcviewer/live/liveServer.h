#pragma once
// The viewer's live page over HTTP: serves the page's own files from memory and an event
// stream that pushes every new snapshot of the viewer's state to each open page. The
// viewer's thread hands snapshots over with publish(); the server's threads only ever see
// those finished texts, never the viewer or the library behind it, which stay
// single-threaded. Anything but its own files and its stream is refused.
//
// Every request is read whole by a gate (requestGate.h) under a deadline and caps on its
// headers before a worker sees it; the page's files and the event streams have workers
// of their own, so open pages cannot starve the page that loads.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vcviewer {

/// One file of the page, served as it is under `path` ("/", "/page.js").
struct WebFile {
  std::string path;
  std::string contentType;
  std::string_view body;
};

class LiveServer {
 public:
  struct Limits {
    size_t maxStreams = 16;        // open pages at once; more are told to come back later
    int writeTimeoutMs = 3000;     // a page that reads nothing for this long is dropped
    int heartbeatMs = 1000;        // how soon a page that went away is noticed
    size_t maxRequestBody = 4096;  // nothing we serve takes a body
    // A request must be complete this long after its connection was accepted.
    std::chrono::milliseconds requestDeadline{5000};
    size_t maxHeaders = 64;
    size_t maxHeadBytes = 16384;  // request line and headers together
    size_t maxWaiting = 128;      // connections whose request has not all arrived
    size_t pageWorkers = 4;       // threads for everything but the event streams
    size_t maxQueued = 64;        // complete requests waiting for one of those
  };

  explicit LiveServer(std::vector<WebFile> files);
  LiveServer(std::vector<WebFile> files, Limits limits);
  ~LiveServer();
  LiveServer(const LiveServer&) = delete;
  LiveServer& operator=(const LiveServer&) = delete;

  /// Names or addresses a request's Host header may give besides the viewer's own ones
  /// (see allowedHosts.h). Before start().
  void allowHosts(std::vector<std::string> names);

  /// Binds `host`:`port` (port 0: one the system picks) and starts serving in threads of
  /// its own. False, with the reason in `error`, when it cannot bind.
  bool start(const std::string& host, int port, std::string& error);
  /// The port it listens on, once started.
  int port() const;
  /// Stops serving and closes every stream; waits for the server's threads.
  void stop();

  /// The latest state, a JSON document without line breaks. Never waits for a page:
  /// each stream sends the newest snapshot when it can and skips those it missed.
  void publish(std::string snapshot);

  /// Event streams open now.
  size_t streams() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Splits "HOST:PORT", "[V6]:PORT" or a bare "PORT" (loopback then). False when the port
/// is not a number from 0 to 65535.
bool parseListenAddress(const std::string& text, std::string& host, int& port);

}  // namespace vcviewer
