#pragma once
// A viewer stand-in (tests/peers/vc_peer) on a hub of its own, and the control PDUs it
// reports, one "PDU <command> <hex>" line each, turned back into bytes.
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "process.h"

namespace vctest {

struct PeerPdu {
  unsigned int command = 0;
  std::vector<unsigned char> bytes;
  const unsigned char* b() const { return bytes.data(); }
};

/// The peer's next PDU line; false when none comes within `timeout`.
inline bool nextPeerPdu(ChildProcess& peer, PeerPdu& out,
                        std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
  std::string line;
  if (!peer.waitForLine("PDU ", line, timeout)) return false;
  size_t space = line.find(' ', 4);
  if (space == std::string::npos) return false;
  out.command = static_cast<unsigned int>(std::stoul(line.substr(4, space - 4)));
  std::string hex = line.substr(space + 1);
  out.bytes.clear();
  for (size_t i = 0; i + 1 < hex.size(); i += 2)
    out.bytes.push_back(static_cast<unsigned char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  return true;
}

/// A hub on loopback with a vc_peer joined to it under `viewerId`; ready() waits until
/// the peer listens.
struct HubWithPeer {
  explicit HubWithPeer(const std::string& federation, const std::string& viewerId = "v-1")
      : hub(startServer(port)),
        url(hubUrl(port, federation)),
        viewer(binaryPath("vc_peer"), {url, VC_FDD_FILE, "viewer", viewerId}) {}
  bool ready() {
    std::string line;
    return viewer.waitForLine("READY", line, std::chrono::seconds(10));
  }
  std::uint16_t port = 0;
  std::unique_ptr<ChildProcess> hub;
  std::string url;
  ChildProcess viewer;
};

/// The next `count` PDUs; fewer when the peer falls silent.
inline std::vector<PeerPdu> peerPdus(ChildProcess& peer, size_t count) {
  std::vector<PeerPdu> out;
  PeerPdu pdu;
  while (out.size() < count && nextPeerPdu(peer, pdu)) out.push_back(pdu);
  return out;
}

}  // namespace vctest
