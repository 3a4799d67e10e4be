// The hub: serves federations to federates in other processes (and hosts) over TCP.
//
// Single-threaded: every client is handled on the io_context's thread, so federation
// state needs no locks. Each frame from a client is checked in full before it has any
// effect; a client that sends anything malformed, oversized or out of protocol is
// dropped alone (and resigned), everyone else carries on.
#ifndef VCRTI_HUB_H
#define VCRTI_HUB_H

#include <asio.hpp>

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace vcrti::hub {

struct Options {
  std::string host = "127.0.0.1";
  std::uint16_t port = 15160;
  // Above this many bytes queued for a client, the senders feeding it are paused until
  // it drains below a quarter of it.
  std::size_t queueLimit = 8u << 20;
  // A client whose queue stays above the limit without taking a byte for this long is
  // dropped, so that one stuck federate cannot hold up a federation for ever.
  std::chrono::seconds stallTimeout{10};
  bool quiet = false;
};

class Session;
struct Federation;

class Hub {
 public:
  Hub(asio::io_context& io, const Options& options);
  ~Hub();

  // Binds and starts accepting; throws std::system_error when the address is unusable.
  void start();
  asio::ip::tcp::endpoint localEndpoint() const { return acceptor_.local_endpoint(); }
  // Closes every connection and the listener; run() returns once they are gone.
  void stop();
  // Serves a client on a socket that is already connected. The listener hands every
  // accepted connection here; a test can hand in one end of a socket pair.
  void adopt(asio::ip::tcp::socket socket);

  // Used by sessions.
  const Options& options() const { return options_; }
  void log(const std::string& line) const;
  void info(const std::string& line) const;
  void forget(Session* s);
  std::map<std::string, std::unique_ptr<Federation>>& federations() { return federations_; }

 private:
  void accept();
  void tick();

  asio::io_context& io_;
  Options options_;
  asio::ip::tcp::acceptor acceptor_;
  asio::steady_timer ticker_;
  asio::steady_timer acceptRetry_;
  bool acceptFailing_ = false;
  std::map<Session*, std::shared_ptr<Session>> sessions_;
  std::map<std::string, std::unique_ptr<Federation>> federations_;
  bool stopped_ = false;
};

}  // namespace vcrti::hub

#endif
