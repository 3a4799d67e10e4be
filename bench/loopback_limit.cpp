// What the machine's loopback carries at most along the path a federation through a hub
// takes: a sender, a relay process and a receiver, two TCP hops on 127.0.0.1. Messages
// are framed as the hub frames them (a 32-bit length, then the body) and sent in 64 KiB
// writes, as a federate batches them; the relay copies bytes without looking at them and
// the receiver walks the frames. No RTI is involved, so this is the ceiling the hub's
// figures are measured against (scripts/bench_rti.sh prints the ratio).
//
//   loopback_limit [--count N] [--size BYTES]
//   -> throughput=N messages/s
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kWriteSize = 64 * 1024;
constexpr std::size_t kReadSize = 256 * 1024;

[[noreturn]] void die(const char* what) {
  std::perror(what);
  std::_Exit(1);
}

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in a{};
  a.sin_family = AF_INET;
  a.sin_port = htons(port);
  a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return a;
}

int listenAny(std::uint16_t& port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in a = loopback(0);
  socklen_t len = sizeof a;
  if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 ||
      ::listen(fd, 1) != 0 || ::getsockname(fd, reinterpret_cast<sockaddr*>(&a), &len) != 0)
    die("listen");
  port = ntohs(a.sin_port);
  return fd;
}

int connectTo(std::uint16_t port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in a = loopback(port);
  if (fd < 0 || ::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) die("connect");
  int one = 1;
  ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
  return fd;
}

void writeAll(int fd, const unsigned char* p, std::size_t n) {
  while (n > 0) {
    const ssize_t w = ::write(fd, p, n);
    if (w <= 0) die("write");
    p += w;
    n -= static_cast<std::size_t>(w);
  }
}

void relay(int in, int out) {
  std::vector<unsigned char> buf(kReadSize);
  for (;;) {
    const ssize_t r = ::read(in, buf.data(), buf.size());
    if (r <= 0) return;
    writeAll(out, buf.data(), static_cast<std::size_t>(r));
  }
}

// Walks the frames as they come, however the reads cut them.
void receive(int in, std::uint64_t count, int done) {
  std::vector<unsigned char> buf(kReadSize);
  std::uint64_t frames = 0;
  std::uint32_t need = 0;   // bytes of the current frame's body still to come
  unsigned headerHave = 0;  // bytes of the current length read so far
  std::uint32_t length = 0;
  while (frames < count) {
    const ssize_t r = ::read(in, buf.data(), buf.size());
    if (r <= 0) die("read");
    for (std::size_t i = 0; i < static_cast<std::size_t>(r);) {
      if (need == 0 && headerHave < 4) {
        length |= static_cast<std::uint32_t>(buf[i++]) << (8 * headerHave);
        if (++headerHave == 4) {
          need = length;
          if (need == 0) ++frames;
        }
        continue;
      }
      const std::size_t take = std::min<std::size_t>(need, static_cast<std::size_t>(r) - i);
      i += take;
      need -= static_cast<std::uint32_t>(take);
      if (need == 0) {
        ++frames;
        headerHave = 0;
        length = 0;
      }
    }
  }
  const char byte = 1;
  if (::write(done, &byte, 1) != 1) die("write");
}

}  // namespace

int main(int argc, char** argv) {
  std::uint64_t count = 2000000;
  std::uint32_t size = 312;
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string opt = argv[i];
    if (opt == "--count")
      count = std::strtoull(argv[i + 1], nullptr, 10);
    else if (opt == "--size")
      size = static_cast<std::uint32_t>(std::strtoul(argv[i + 1], nullptr, 10));
    else {
      std::fprintf(stderr, "usage: loopback_limit [--count N] [--size BYTES]\n");
      return 2;
    }
  }
  if ((argc - 1) % 2 != 0 || count == 0) {
    std::fprintf(stderr, "usage: loopback_limit [--count N] [--size BYTES]\n");
    return 2;
  }

  std::uint16_t relayPort = 0, receiverPort = 0;
  const int relayListen = listenAny(relayPort);
  const int receiverListen = listenAny(receiverPort);
  int done[2];
  if (::pipe(done) != 0) die("pipe");

  const pid_t receiver = ::fork();
  if (receiver == 0) {
    const int in = ::accept(receiverListen, nullptr, nullptr);
    if (in < 0) die("accept");
    receive(in, count, done[1]);
    std::_Exit(0);
  }
  const pid_t relayPid = ::fork();
  if (relayPid == 0) {
    const int in = ::accept(relayListen, nullptr, nullptr);
    if (in < 0) die("accept");
    relay(in, connectTo(receiverPort));
    std::_Exit(0);
  }
  ::close(relayListen);
  ::close(receiverListen);
  const int out = connectTo(relayPort);

  // One 64 KiB batch of whole frames, written again and again; the last one is cut to
  // the frames still due.
  const std::size_t frameSize = 4 + size;
  const std::size_t perBatch = std::max<std::size_t>(1, kWriteSize / frameSize);
  std::vector<unsigned char> batch(perBatch * frameSize);
  for (std::size_t f = 0; f < perBatch; ++f) {
    unsigned char* p = batch.data() + f * frameSize;
    for (int k = 0; k < 4; ++k) p[k] = static_cast<unsigned char>(size >> (8 * k));
    std::memset(p + 4, static_cast<int>(f), size);
  }
  const auto t0 = std::chrono::steady_clock::now();
  for (std::uint64_t sent = 0; sent < count;) {
    const std::size_t n = static_cast<std::size_t>(std::min<std::uint64_t>(perBatch, count - sent));
    writeAll(out, batch.data(), n * frameSize);
    sent += n;
  }
  char byte;
  if (::read(done[0], &byte, 1) != 1) die("receiver");
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  ::close(out);
  ::waitpid(relayPid, nullptr, 0);
  ::waitpid(receiver, nullptr, 0);
  std::printf("throughput=%.0f messages/s\n", static_cast<double>(count) / seconds);
  return 0;
}
