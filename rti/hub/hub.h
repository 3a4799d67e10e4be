// The hub: serves federations to federates in other processes (and hosts) over TCP.
//
// Single-threaded: every client is handled on the io_context's thread, so federation
// state needs no locks. Each frame from a client is checked in full before it has any
// effect; a client that sends anything malformed, oversized or out of protocol is
// dropped alone (and resigned), everyone else carries on. What one client may cost the
// hub (queued bytes, incomplete frames, time, connections) is bounded, so that no client
// can exhaust it or hold up the others for long.
#ifndef VCRTI_HUB_H
#define VCRTI_HUB_H

#include "federation_core.h"

#include <asio.hpp>

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace vcrti::hub {

struct Options {
  std::string host = "127.0.0.1";
  std::uint16_t port = 15160;
  // Above this many bytes queued for a client, the senders feeding it are paused, and its
  // own requests wait, until it drains below a quarter of it.
  std::size_t queueLimit = 8u << 20;
  // The longest a client may stay above its queue limit. Past it the client is dropped:
  // this is all the delay a slow reader may impose on the senders it holds up.
  std::chrono::milliseconds maxDelay{1000};
  // Time from the first byte of a frame to its last; a client that stalls mid-frame
  // holds a buffer, so it is dropped once this has passed.
  std::chrono::milliseconds frameTimeout{5000};
  // Time a connection has to join a federation execution, from its start or from its
  // last resign: one that only holds a socket would keep joiners out at the caps below.
  std::chrono::milliseconds joinTimeout{5000};
  // Connections served at once, in all and from one address, joined or not.
  std::size_t maxClients = 512;
  std::size_t maxClientsPerAddress = 128;
  // What all federation executions together may hold: their object models with the
  // tables that index them, members, subscriptions, instances and names.
  std::size_t federationMemory = 256u << 20;
  // What the hub may hold in all: the federations, and the frames queued for clients or
  // received from them (complete or not). Past it the client holding the most is dropped.
  std::size_t memory = 384u << 20;
  // Federation executions one address may create: this many at once, then one per
  // createInterval. Creating one costs the hub its model's decoding and room. Those that
  // a federate destroys again do not count: only those left behind.
  std::size_t createBurst = 8;
  std::chrono::milliseconds createInterval{500};
  // A federation execution nobody has been joined to for this long is destroyed.
  std::chrono::seconds emptyFederationExpiry{60};
  bool quiet = false;
  // Where log lines go (stderr unless told otherwise); -1 discards them.
  int logFd = 2;
};

class LogSink;
class Session;
struct Federation;

// The hub's listener, its clients and the federation executions they share. Runs on the
// io_context it is given; stop() ends it.
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
  // accepted connection here; a test can hand in one end of a socket pair. Returns false
  // (and closes the socket) when the hub serves as many clients as it may.
  bool adopt(asio::ip::tcp::socket socket);

  // Runs the periodic checks (stalled frames, full queues, expired federations) for the
  // given time; the hub's own timer calls it, a test may too.
  void checkLimits(std::chrono::steady_clock::time_point now);

  // Used by sessions.
  const Options& options() const { return options_; }
  // Hands a line to the log (see log_sink.h), never waiting for whoever reads it; bytes
  // that came from clients are escaped on the way, so no client text can start a line of
  // its own or steer a terminal.
  void log(const std::string& line) const;
  void info(const std::string& line) const;
  void forget(Session* s);
  std::map<std::string, std::unique_ptr<Federation>>& federations() { return federations_; }
  // Bytes of incomplete frames the clients hold together; a change of `delta`.
  void partialBytes(std::ptrdiff_t delta);
  // Bytes of the frames queued for clients, and of complete ones received from them that
  // wait; a change of `delta`.
  void bufferBytes(std::ptrdiff_t delta) { buffers_ += delta; }
  // Why `address` may not create a federation execution now, or "" (and then it is
  // counted as one more).
  std::string createRefusal(const std::string& address, std::chrono::steady_clock::time_point now);
  // A create from `address` made nothing, or what it made a federate destroyed: it no
  // longer counts against the address, as one left behind would.
  void createUndone(const std::string& address);
  // Destroys a federation execution taken out of federations(): its memory counts as
  // given back at once, while freeing it (a large model takes longer than a client's turn
  // may last) and giving the memory back to the system happen on the decoder's thread.
  void retire(std::unique_ptr<Federation> federation);
  // The thread that decodes the object models of creates, away from the clients' turns.
  asio::thread_pool& decoder();
  // Makes room for a federation execution of `cost`, destroying empty ones, the longest
  // empty first; false when even that would not do.
  bool roomForFederation(std::size_t cost);

 private:
  void accept();
  void tick();
  void shedPartialFrames();
  void shedBuffers();

  asio::io_context& io_;
  Options options_;
  std::unique_ptr<LogSink> log_;
  asio::ip::tcp::acceptor acceptor_;
  asio::steady_timer ticker_;
  asio::steady_timer acceptRetry_;
  bool acceptFailing_ = false;
  std::map<Session*, std::shared_ptr<Session>> sessions_;
  std::map<std::string, std::size_t> perAddress_;  // live connections by address
  std::size_t live_ = 0;
  std::size_t refusedUnlogged_ = 0;
  std::chrono::steady_clock::time_point lastRefusalLog_{};
  std::size_t partialBytes_ = 0;
  std::ptrdiff_t buffers_ = 0;
  // Creates by address: when the address's allowance is full again. The allowance is
  // createBurst creates, one more each createInterval.
  std::map<std::string, std::chrono::steady_clock::time_point> createsFullAt_;
  std::vector<unsigned char> scratch_;          // every read lands here first
  std::unique_ptr<asio::thread_pool> decoder_;  // made at the first create
  // Everything the federations hold: their models and tables, their instances and names.
  // Declared before them: each gives its share back as it goes.
  MemoryBudget budget_;
  std::map<std::string, std::unique_ptr<Federation>> federations_;
  // The client whose frame the federation is handling: a receiver that falls behind
  // pauses it.
  Session* sender_ = nullptr;
  bool stopped_ = false;
  friend class Session;
};

// Tells the client on `socket` why it is let go, in a frame it decodes, and closes the
// socket. Whatever the client sent that the hub has not read is discarded first: closing
// over unread bytes would reset the connection and could lose the reason on the way.
void sayGoodbye(asio::ip::tcp::socket& socket, const std::string& why);

// `text` with every byte outside printable ASCII, and the backslash, written as \xHH.
std::string escapeForLog(const std::string& text);

}  // namespace vcrti::hub

#endif
