#include "toolSupport.h"

#include "dtExerciseConn.h"

namespace vctools {

std::string versionLines(const std::string& tool) {
  return tool + " " + VC_PACKAGE_VERSION + "\nRTI: " + VC_RTI_DESCRIPTION + "\n";
}

std::string federationUrlProblem(const std::string& url, bool inProcessAllowed) {
  static const std::string kThread = "thread://";
  static const std::string kHub = "rti://";
  if (url.compare(0, kThread.size(), kThread) == 0) {
    if (inProcessAllowed)
      return url.size() > kThread.size() ? "" : "'" + url + "' names no federation";
    return "'" + url +
           "' is a federation inside this one process, where no other federate can join: use "
           "rti://HOST:PORT/NAME or NAME";
  }
  if (url.compare(0, kHub.size(), kHub) == 0) {
    const std::string rest = url.substr(kHub.size());
    const size_t slash = rest.find('/');
    const std::string shape = "'" + url + "' is not rti://HOST[:PORT]/NAME: ";
    if (slash == std::string::npos) return shape + "no '/' before the federation name";
    const std::string authority = rest.substr(0, slash);
    const std::string name = rest.substr(slash + 1);
    std::string host = authority, port;
    if (!authority.empty() && authority[0] == '[') {
      const size_t close = authority.find(']');
      if (close == std::string::npos) return shape + "no ']' after the IPv6 address";
      host = authority.substr(1, close - 1);
      if (close + 1 < authority.size()) {
        if (authority[close + 1] != ':') return shape + "no ':' after ']'";
        port = authority.substr(close + 2);
        if (port.empty()) return shape + "empty port";
      }
    } else if (const size_t colon = authority.rfind(':'); colon != std::string::npos) {
      host = authority.substr(0, colon);
      port = authority.substr(colon + 1);
      if (port.empty()) return shape + "empty port";
    }
    if (host.empty()) return shape + "no host";
    if (!port.empty()) {
      unsigned long value = 0;
      for (char c : port) {
        if (c < '0' || c > '9' || value > 65535) return shape + "port '" + port + "'";
        value = value * 10 + static_cast<unsigned long>(c - '0');
      }
      if (value == 0 || value > 65535) return shape + "port '" + port + "' (1 to 65535)";
    }
    if (name.empty()) return shape + "no federation name";
    if (name.find('/') != std::string::npos) return shape + "'/' in the federation name";
    return "";
  }
  if (url.find("://") != std::string::npos)
    return "'" + url + "' has an unknown scheme: use rti://HOST:PORT/NAME or NAME";
  if (url.empty()) return "the federation name is empty";
  if (url.find('/') != std::string::npos) return "'" + url + "': '/' in the federation name";
  return "";
}

std::string viewControlProblem(DtExerciseConn& conn, const std::string& fdd) {
  DtFomMapper* mapper = conn.fomMapper();
  DtInterClassDesc* desc = mapper ? mapper->interClassDesc("ViewControl") : nullptr;
  const std::string where = "the object model of federation \"" + std::string(conn.execName()) +
                            "\" (this process named " + fdd + ")";
  if (!desc) return where + " has no interaction class ViewControl: no control PDU can travel";
  dtrti::ParameterHandle handle;
  if (!desc->parameterHandle("ViewControlPdu", &handle))
    return where +
           " has no parameter ViewControlPdu in the interaction class ViewControl: no control "
           "PDU can travel";
  return "";
}

}  // namespace vctools
