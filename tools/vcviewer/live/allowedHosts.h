#pragma once
// Which names a request's Host header may give. A page of some web site can get its
// browser to send requests here through a name of its own that it points at this
// machine (DNS rebinding); the Host header then carries that name. So only names the
// viewer is known by are served, however it is bound: the loopback names, the address it
// listens on, and when that is every address, the machine's own addresses and its name;
// plus whatever names the user allows.
#include <set>
#include <string>
#include <vector>

namespace vcviewer {

class AllowedHosts {
 public:
  /// For a server bound to `bindHost` ("127.0.0.1", "0.0.0.0", "::", "192.0.2.7", a
  /// name), with `extra` names or addresses the user allows.
  AllowedHosts(const std::string& bindHost, const std::vector<std::string>& extra);

  /// Whether a request with this Host header value ("name", "name:port", "[v6]:port")
  /// is served. A request without one comes from no browser and is served.
  bool allows(const std::string& hostHeader) const;

  /// The name a Host header value stands for: no port, no brackets, lower case, without
  /// a trailing dot.
  static std::string nameOf(const std::string& hostHeader);

 private:
  void add(const std::string& name) { names_.insert(nameOf(name)); }
  std::set<std::string> names_;
};

}  // namespace vcviewer
