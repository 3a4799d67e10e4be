// rtihub: the RTI hub daemon. See --help.
#include "hub.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

const char* kUsage =
    "usage: rtihub [--listen HOST:PORT] [--queue-limit BYTES] [--max-delay MS]\n"
    "              [--frame-timeout MS] [--join-timeout MS] [--max-clients N]\n"
    "              [--max-per-address N]\n"
    "              [--federation-memory BYTES] [--federation-expiry SECONDS]\n"
    "              [--memory BYTES] [--create-burst N] [--create-interval MS] [--quiet]\n"
    "\n"
    "Serves HLA federation executions to federates in other processes and on other hosts.\n"
    "Federates reach it with the federation execution name rti://HOST:PORT/Name, or with a\n"
    "plain Name for the hub on 127.0.0.1 at the default port 15160.\n"
    "\n"
    "  --listen HOST:PORT       address to listen on (default 127.0.0.1:15160; port 0 picks a\n"
    "                           free port; use [ADDR]:PORT for IPv6). Listening on anything\n"
    "                           but loopback exposes the hub to the network: there is no\n"
    "                           authentication.\n"
    "  --queue-limit BYTES      bytes queued for one client above which the clients sending to\n"
    "                           it are paused, and its own requests wait, until it drains to a\n"
    "                           quarter of it (default 8388608)\n"
    "  --max-delay MS           a client may stay above its queue limit this long, which is\n"
    "                           all it may hold up the others; then it is disconnected and\n"
    "                           resigned (default 1000)\n"
    "  --frame-timeout MS       time a client has to finish a frame it started (default 5000)\n"
    "  --join-timeout MS        time a connection has to join a federation execution, from\n"
    "                           its start or its last resign (default 5000)\n"
    "  --max-clients N          connections served at once, joined or not (default 512)\n"
    "  --max-per-address N      connections served at once from one address (default 128)\n"
    "  --federation-memory BYTES  what all federation executions together may hold: object\n"
    "                           models and their tables, members, subscriptions, instances\n"
    "                           and names (default 268435456)\n"
    "  --federation-expiry SECONDS  a federation execution with no federate joined for this\n"
    "                           long is destroyed (default 60)\n"
    "  --memory BYTES           what the hub may hold in all: the federations and the frames\n"
    "                           queued for clients or waiting from them (default 402653184,\n"
    "                           or --federation-memory plus 128 MiB if that is more); past it\n"
    "                           the client holding the most frames is disconnected\n"
    "  --create-burst N         federation executions one address may create at once\n"
    "                           (default 8), then one each --create-interval MS (default 500);\n"
    "                           a create beyond that is refused with the time to wait;\n"
    "                           creates that make nothing, and federations a federate\n"
    "                           destroys again, do not count\n"

    "  --quiet                  log only dropped clients and errors\n"
    "  --help                   this text\n"
    "  --version                the versions of the hub, its package and its RTI\n"
    "\n"
    "On start it prints \"rtihub listening on HOST:PORT\" with the port actually bound.\n"
    "Frames are length-prefixed and capped at 1 MiB; a client that sends a malformed or\n"
    "oversized frame is disconnected and resigned, others are not affected. SIGINT or\n"
    "SIGTERM stops it cleanly.\n"
    "\n"
    "A federation execution is destroyed only when nobody is joined to it: by a federate's\n"
    "destroy; once nobody has been joined to it for --federation-expiry seconds; or when a\n"
    "create needs its room, the longest empty first. A create that would need the room of\n"
    "joined federations is refused instead. They all end with the hub.\n"
    "\n"
    "Log lines go to stderr and never hold the hub up: when stderr does not keep up, lines\n"
    "beyond 256 KiB waiting are dropped and counted (\"N log lines dropped\"), and at most\n"
    "50 lines of one kind go out a second (\"held back N more lines like ...\").\n"
    "\n"
    "Exit status: 0 stopped by a signal; 1 cannot listen or failed while running; 2 a bad\n"
    "command line.\n";

bool parseListen(const std::string& s, std::string& host, std::uint16_t& port) {
  std::string h, p;
  if (!s.empty() && s[0] == '[') {
    const auto close = s.find(']');
    if (close == std::string::npos || close + 1 >= s.size() || s[close + 1] != ':') return false;
    h = s.substr(1, close - 1);
    p = s.substr(close + 2);
  } else {
    const auto colon = s.rfind(':');
    if (colon == std::string::npos) return false;
    h = s.substr(0, colon);
    p = s.substr(colon + 1);
  }
  if (h.empty() || p.empty() || p.size() > 5 ||
      p.find_first_not_of("0123456789") != std::string::npos)
    return false;
  const unsigned long v = std::stoul(p);
  if (v > 65535) return false;
  host = h;
  port = static_cast<std::uint16_t>(v);
  return true;
}

bool parseCount(const std::string& s, unsigned long long& out) {
  if (s.empty() || s.size() > 18 || s.find_first_not_of("0123456789") != std::string::npos)
    return false;
  out = std::stoull(s);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  vcrti::hub::Options options;
  bool memoryGiven = false;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    auto value = [&](std::string& out) {
      if (i + 1 >= argc) {
        std::cerr << "rtihub: " << arg << " needs a value\n" << kUsage;
        std::exit(2);
      }
      out = argv[++i];
    };
    std::string v;
    unsigned long long n = 0;
    if (arg == "--help" || arg == "-h") {
      std::cout << kUsage;
      return 0;
    } else if (arg == "--version") {
      // The hub is part of the package: the library of the same build has its version.
      std::cout << "rtihub " VC_PACKAGE_VERSION "\nlibrary libvistrelControlToolkitHLA1516.so."
                << VC_LIBRARY_SOVERSION ", version " VC_PACKAGE_VERSION " (same package)\nRTI: "
                << VC_RTI_DESCRIPTION "\n";
      return 0;
    } else if (arg == "--listen") {
      value(v);
      if (!parseListen(v, options.host, options.port)) {
        std::cerr << "rtihub: invalid --listen address '" << v << "' (expected HOST:PORT)\n";
        return 2;
      }
    } else if (arg == "--queue-limit") {
      value(v);
      if (!parseCount(v, n) || n < 65536) {
        std::cerr << "rtihub: --queue-limit needs a number of bytes of at least 65536\n";
        return 2;
      }
      options.queueLimit = static_cast<std::size_t>(n);
    } else if (arg == "--max-delay" || arg == "--frame-timeout" || arg == "--join-timeout") {
      value(v);
      if (!parseCount(v, n) || n == 0 || n > 3600000) {
        std::cerr << "rtihub: " << arg << " needs a number of milliseconds from 1 to 3600000\n";
        return 2;
      }
      (arg == "--max-delay"       ? options.maxDelay
       : arg == "--frame-timeout" ? options.frameTimeout
                                  : options.joinTimeout) = std::chrono::milliseconds(n);
    } else if (arg == "--max-clients" || arg == "--max-per-address") {
      value(v);
      if (!parseCount(v, n) || n == 0) {
        std::cerr << "rtihub: " << arg << " needs a positive number of connections\n";
        return 2;
      }
      (arg == "--max-clients" ? options.maxClients : options.maxClientsPerAddress) =
          static_cast<std::size_t>(n);
    } else if (arg == "--federation-memory") {
      value(v);
      if (!parseCount(v, n) || n < 65536) {
        std::cerr << "rtihub: --federation-memory needs a number of bytes of at least 65536\n";
        return 2;
      }
      options.federationMemory = static_cast<std::size_t>(n);
    } else if (arg == "--memory") {
      value(v);
      if (!parseCount(v, n) || n < (1u << 20)) {
        std::cerr << "rtihub: --memory needs a number of bytes of at least 1048576\n";
        return 2;
      }
      options.memory = static_cast<std::size_t>(n);
      memoryGiven = true;
    } else if (arg == "--create-burst") {
      value(v);
      if (!parseCount(v, n) || n == 0 || n > 1000000) {
        std::cerr << "rtihub: --create-burst needs a number from 1 to 1000000\n";
        return 2;
      }
      options.createBurst = static_cast<std::size_t>(n);
    } else if (arg == "--create-interval") {
      value(v);
      if (!parseCount(v, n) || n > 3600000) {
        std::cerr << "rtihub: --create-interval needs a number of milliseconds up to 3600000\n";
        return 2;
      }
      options.createInterval = std::chrono::milliseconds(n);
    } else if (arg == "--federation-expiry") {
      value(v);
      if (!parseCount(v, n) || n == 0 || n > 31536000) {
        std::cerr << "rtihub: --federation-expiry needs a number of seconds from 1 to 31536000\n";
        return 2;
      }
      options.emptyFederationExpiry = std::chrono::seconds(n);
    } else if (arg == "--quiet") {
      options.quiet = true;
    } else {
      std::cerr << "rtihub: unknown option '" << arg << "'\n" << kUsage;
      return 2;
    }
  }

  if (!memoryGiven)
    options.memory = std::max(options.memory, options.federationMemory + (128u << 20));
  if (options.memory < options.federationMemory) {
    std::cerr << "rtihub: --memory must be at least --federation-memory\n";
    return 2;
  }

  // A vanished client must surface as a write error, not kill the hub.
  std::signal(SIGPIPE, SIG_IGN);

  asio::io_context io;
  vcrti::hub::Hub hub(io, options);
  try {
    hub.start();
  } catch (const std::exception& e) {
    std::cerr << "rtihub: cannot listen on " << options.host << ":" << options.port << ": "
              << e.what() << "\n";
    return 1;
  }
  asio::signal_set signals(io, SIGINT, SIGTERM);
  signals.async_wait([&](const asio::error_code& ec, int sig) {
    if (ec) return;
    hub.log(std::string("stopping on ") + (sig == SIGINT ? "SIGINT" : "SIGTERM"));
    hub.stop();
  });

  const auto ep = hub.localEndpoint();
  const std::string addr =
      ep.address().is_v6() ? "[" + ep.address().to_string() + "]" : ep.address().to_string();
  std::cout << "rtihub listening on " << addr << ":" << ep.port() << std::endl;

  io.run();
  return 0;
}
