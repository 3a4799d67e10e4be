#include "allowedHosts.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <unistd.h>

namespace vcviewer {

namespace {

bool wildcard(const std::string& host) {
  return host.empty() || host == "0.0.0.0" || host == "::" || host == "[::]" || host == "*";
}

bool loopback(const std::string& host) {
  return host == "127.0.0.1" || host == "localhost" || host == "::1" || host == "[::1]";
}

}  // namespace

std::string AllowedHosts::nameOf(const std::string& header) {
  std::string name = header;
  if (!name.empty() && name.front() == '[') {
    const size_t close = name.find(']');
    name = close == std::string::npos ? name.substr(1) : name.substr(1, close - 1);
  } else {
    const size_t colon = name.find(':');
    // One colon is a port; more are a bare IPv6 address, kept whole.
    if (colon != std::string::npos && name.find(':', colon + 1) == std::string::npos)
      name.resize(colon);
  }
  for (char& c : name)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  if (!name.empty() && name.back() == '.') name.pop_back();
  return name;
}

AllowedHosts::AllowedHosts(const std::string& bindHost, const std::vector<std::string>& extra) {
  for (const char* name : {"localhost", "127.0.0.1", "::1"}) add(name);
  if (!wildcard(bindHost)) add(bindHost);
  if (!loopback(bindHost)) {
    // Reached from other machines, the viewer is named by its host name too, which no
    // outside web site can point elsewhere.
    char host[256] = {};
    if (::gethostname(host, sizeof host - 1) == 0 && host[0]) add(host);
  }
  if (wildcard(bindHost)) {
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) == 0) {
      for (ifaddrs* i = list; i; i = i->ifa_next) {
        if (!i->ifa_addr) continue;
        char text[INET6_ADDRSTRLEN] = {};
        const int family = i->ifa_addr->sa_family;
        const void* addr = nullptr;
        if (family == AF_INET)
          addr = &reinterpret_cast<const sockaddr_in*>(i->ifa_addr)->sin_addr;
        else if (family == AF_INET6)
          addr = &reinterpret_cast<const sockaddr_in6*>(i->ifa_addr)->sin6_addr;
        if (addr && ::inet_ntop(family, addr, text, sizeof text)) add(text);
      }
      ::freeifaddrs(list);
    }
  }
  for (const std::string& name : extra)
    if (!name.empty()) add(name);
}

bool AllowedHosts::allows(const std::string& hostHeader) const {
  return hostHeader.empty() || names_.count(nameOf(hostHeader)) > 0;
}

}  // namespace vcviewer
