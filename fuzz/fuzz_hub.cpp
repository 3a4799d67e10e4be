// Bytes -> the hub's handling of its clients: create, destroy, join, resign, subscribe,
// interactions and object management from three greeted clients, routed between them, with a small
// queue limit so that paused senders and stuck readers come into play. The clients are socket pairs
// in this process, so there is no port and no other process.
//
// Input: chunks of [client byte][16-bit little-endian length][bytes]. The client byte's
// low bits pick the client (0..2); 0x80 makes it stop reading, 0x40 makes it hang up,
// 0x20 lets ten minutes pass after the chunk, so that every time limit (frames left
// unfinished, queues left full, federations left empty) comes due. Bounds are small, so
// that a short input reaches them: a queue limit of 4 KiB, a federation budget of 64 KiB.
#include <asio.hpp>

#include <cerrno>
#include <chrono>
#include <cstdlib>

#include <sys/socket.h>
#include <unistd.h>

#include "hub.h"
#include "protocol.h"

namespace {

constexpr int kClients = 3;

struct Client {
  int fd = -1;
  bool reading = true;
};

void drain(Client& c) {
  if (c.fd < 0 || !c.reading) return;
  char buf[65536];
  while (::read(c.fd, buf, sizeof buf) > 0) {
  }
}

// Runs the hub's ready handlers and lets the clients read until nothing moves.
void settle(asio::io_context& io, Client* clients) {
  for (int round = 0; round < 10000; ++round) {
    io.restart();
    const std::size_t ran = io.poll();
    for (int i = 0; i < kClients; ++i) drain(clients[i]);
    if (ran == 0) return;
  }
  std::abort();  // the hub keeps itself busy without input: an endless loop
}

void send(asio::io_context& io, Client* clients, Client& c, const uint8_t* p, size_t n) {
  int stalls = 0;
  while (n > 0 && c.fd >= 0) {
    const ssize_t w = ::send(c.fd, p, n, MSG_NOSIGNAL);
    if (w > 0) {
      p += w;
      n -= static_cast<size_t>(w);
      continue;
    }
    if (w < 0 && errno != EAGAIN && errno != EWOULDBLOCK) return;  // the hub hung up
    // The hub is not taking more: a paused sender. Give up after a while, as a real
    // client's kernel buffer would just stay full.
    if (++stalls > 8) return;
    settle(io, clients);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  asio::io_context io;
  vcrti::hub::Options options;
  options.quiet = true;
  options.logFd = -1;  // the hub logs every dropped client
  options.queueLimit = 4096;
  options.federationMemory = 65536;
  vcrti::hub::Hub hub(io, options);
  Client clients[kClients];
  for (Client& c : clients) {
    int fds[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, fds) != 0)
      std::abort();
    hub.adopt(asio::ip::tcp::socket(io, asio::ip::tcp::v4(), fds[0]));
    c.fd = fds[1];
  }
  // Every client has said hello: the input starts where the protocol does.
  vcrti::ByteBuffer hello;
  vcrti::wire::FrameWriter w(hello, vcrti::wire::MsgType::Hello);
  w.u32(0).u32(vcrti::wire::kProtocolVersion).str("fuzz");
  w.finish();
  for (Client& c : clients) send(io, clients, c, hello.data(), hello.size());
  settle(io, clients);

  size_t pos = 0;
  while (pos + 3 <= size) {
    const uint8_t which = data[pos];
    size_t n = data[pos + 1] | static_cast<size_t>(data[pos + 2]) << 8;
    pos += 3;
    if (n > size - pos) n = size - pos;
    Client& c = clients[(which & 0x1F) % kClients];
    if (which & 0x80) c.reading = false;
    send(io, clients, c, data + pos, n);
    pos += n;
    if ((which & 0x40) && c.fd >= 0) {
      ::close(c.fd);
      c.fd = -1;
    }
    settle(io, clients);
    if (which & 0x20) {
      hub.checkLimits(std::chrono::steady_clock::now() + std::chrono::minutes(10));
      settle(io, clients);
    }
  }

  // Everyone hangs up; the hub must let go of every session and come to rest.
  for (Client& c : clients)
    if (c.fd >= 0) ::close(c.fd);
  io.restart();
  io.run_for(std::chrono::seconds(10));
  if (!io.stopped()) std::abort();  // something still waits: a session was never closed
  return 0;
}
