#ifndef VCRTI_FEDERATION_URL_H
#define VCRTI_FEDERATION_URL_H

#include <cstdint>
#include <string>

namespace vcrti {

// Where a federation execution lives, from the name the application gives:
//   thread://Name          inside this process
//   rti://host:port/Name   at the hub on host:port (port optional)
//   Name                   at the hub on this host, default port
struct FederationUrl {
  bool local = false;
  std::string host;               // hub mode
  std::uint16_t port = 0;         // hub mode
  std::wstring name;              // the federation's own name
  std::wstring endpoint() const;  // "host:port", for messages
};

// Returns false, with the reason, when the name cannot be used.
bool parseFederationUrl(const std::wstring& text, FederationUrl& out, std::wstring& why);

}  // namespace vcrti

#endif
