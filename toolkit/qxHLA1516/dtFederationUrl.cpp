#include <cerrno>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "dtRtiSession.h"

namespace {

const std::string kThread = "thread://";
const std::string kHub = "rti://";

bool startsWith(const std::string& s, const std::string& prefix) {
  return s.compare(0, prefix.size(), prefix) == 0;
}

// The parts of "rti://HOST[:PORT]/NAME", or the reason there are none.
struct HubAddress {
  std::string host, port, name;
  std::string problem;
};

HubAddress splitHub(const std::string& url) {
  HubAddress a;
  const std::string rest = url.substr(kHub.size());
  const size_t slash = rest.find('/');
  const std::string shape = "'" + url + "' is not rti://HOST[:PORT]/NAME: ";
  if (slash == std::string::npos) {
    a.problem = shape + "no '/' before the federation name";
    return a;
  }
  const std::string authority = rest.substr(0, slash);
  a.name = rest.substr(slash + 1);
  a.host = authority;
  if (!authority.empty() && authority[0] == '[') {
    const size_t close = authority.find(']');
    if (close == std::string::npos) {
      a.problem = shape + "no ']' after the IPv6 address";
      return a;
    }
    a.host = authority.substr(1, close - 1);
    if (close + 1 < authority.size()) {
      if (authority[close + 1] != ':') {
        a.problem = shape + "no ':' after ']'";
        return a;
      }
      a.port = authority.substr(close + 2);
      if (a.port.empty()) a.problem = shape + "empty port";
    }
  } else if (const size_t colon = authority.rfind(':'); colon != std::string::npos) {
    a.host = authority.substr(0, colon);
    a.port = authority.substr(colon + 1);
    if (a.port.empty()) a.problem = shape + "empty port";
  }
  if (!a.problem.empty()) return a;
  if (a.host.empty()) {
    a.problem = shape + "no host";
    return a;
  }
  if (!a.port.empty()) {
    unsigned long value = 0;
    for (char c : a.port) {
      // Digits only, and no more of them than it takes to pass 65535.
      if (c < '0' || c > '9' || value > 65535) {
        a.problem = shape + "port '" + a.port + "'";
        return a;
      }
      value = value * 10 + static_cast<unsigned long>(c - '0');
    }
    if (value == 0 || value > 65535) {
      a.problem = shape + "port '" + a.port + "' (1 to 65535)";
      return a;
    }
  }
  if (a.name.empty())
    a.problem = shape + "no federation name";
  else if (a.name.find('/') != std::string::npos)
    a.problem = shape + "'/' in the federation name";
  return a;
}

// Outcome of one connection attempt, bounded so that a host that drops packets cannot
// keep a failed join waiting long.
enum class Probe { Accepted, Refused, Silent, Other };

Probe probe(const addrinfo* ai, int& error) {
  const int fd =
      ::socket(ai->ai_family, ai->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, ai->ai_protocol);
  if (fd < 0) {
    error = errno;
    return Probe::Other;
  }
  Probe result = Probe::Accepted;
  if (::connect(fd, ai->ai_addr, ai->ai_addrlen) != 0) {
    error = errno;
    if (error == EINPROGRESS) {
      pollfd p{fd, POLLOUT, 0};
      if (::poll(&p, 1, 2000) <= 0) {
        result = Probe::Silent;
      } else {
        socklen_t len = sizeof error;
        ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &len);
      }
    }
    if (result != Probe::Silent && error != 0 && error != EINPROGRESS)
      result = error == ECONNREFUSED ? Probe::Refused : Probe::Other;
  }
  ::close(fd);
  return result;
}

}  // namespace

DtRtiFederationUrl DtRtiFederationUrl::parse(const std::string& url) {
  DtRtiFederationUrl out;
  const auto scheme = url.find("://");
  if (scheme == std::string::npos) {
    out.federationName = url;
    return out;
  }
  const auto authority = scheme + 3;
  const auto slash = url.rfind('/');
  if (slash < authority) {
    // "thread://Name": nothing but the scheme to connect through.
    out.connectDesignator = url.substr(0, authority);
    out.federationName = url.substr(authority);
  } else {
    out.connectDesignator = url.substr(0, slash);
    out.federationName = url.substr(slash + 1);
  }
  return out;
}

std::string DtRtiFederationUrl::shapeProblem(const std::string& url) {
  if (startsWith(url, kThread))
    return url.size() > kThread.size() ? "" : "'" + url + "' names no federation";
  if (startsWith(url, kHub)) return splitHub(url).problem;
  // Another scheme is the RTI's to understand.
  if (url.find("://") != std::string::npos) return "";
  if (url.empty()) return "the federation name is empty";
  if (url.find('/') != std::string::npos) return "'" + url + "': '/' in the federation name";
  return "";
}

std::string DtRtiFederationUrl::reachProblem(const std::string& url, bool probePort) {
  if (!startsWith(url, kHub)) return "";
  const HubAddress a = splitHub(url);
  if (!a.problem.empty()) return a.problem;
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const int gai =
      ::getaddrinfo(a.host.c_str(), a.port.empty() ? nullptr : a.port.c_str(), &hints, &found);
  if (gai != 0) {
    if (gai == EAI_NONAME || gai == EAI_FAIL
#ifdef EAI_NODATA
        || gai == EAI_NODATA
#endif
    )
      return "unknown host '" + a.host + "'";
    return "host '" + a.host + "' could not be looked up: " + ::gai_strerror(gai);
  }
  std::string why;
  if (probePort && !a.port.empty()) {
    // Any address that accepts clears the port; the report names the first failure.
    bool refused = false, silent = false;
    int error = 0, firstError = 0;
    bool accepted = false;
    for (const addrinfo* ai = found; ai && !accepted; ai = ai->ai_next) {
      switch (probe(ai, error)) {
        case Probe::Accepted:
          accepted = true;
          break;
        case Probe::Refused:
          refused = true;
          break;
        case Probe::Silent:
          silent = true;
          break;
        case Probe::Other:
          if (!firstError) firstError = error;
          break;
      }
    }
    const std::string where = a.host + ":" + a.port;
    if (accepted)
      why = "";
    else if (refused)
      why = "nothing accepts connections at " + where + " (connection refused)";
    else if (silent)
      why = where + " does not answer";
    else if (firstError)
      why = "cannot connect to " + where + ": " + std::strerror(firstError);
  }
  ::freeaddrinfo(found);
  return why;
}
