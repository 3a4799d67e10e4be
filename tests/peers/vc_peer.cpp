// A second party for the library's end-to-end tests: it joins a federation through the
// library's own connection and plays a small viewer. One line on stdout per event:
//
//   vc_peer URL FDD FEDERATE VIEWER_ID [--echo]
//
//   READY                      joined and listening
//   PDU <command> <hex bytes>  every control PDU received
//   ANSWERED <command>         a state request for us (or "0:0:0") was answered
//
// It answers a state request with an orbit status report (command 505) whose viewer id
// is VIEWER_ID and whose sender id is "viewer-" VIEWER_ID. With --echo it also sends back
// every other PDU it receives, unchanged. A line "send <hex>" on stdin sends those bytes
// as a control PDU; end of input stops it.
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "vistrelControl.h"

namespace {

struct Peer {
  DtExerciseConn* conn;
  DtString id;
  bool echo;
};

std::string hex(const char* bytes, int length) {
  static const char digits[] = "0123456789abcdef";
  std::string out;
  for (int i = 0; i < length; ++i) {
    unsigned char b = static_cast<unsigned char>(bytes[i]);
    out += digits[b >> 4];
    out += digits[b & 15];
  }
  return out;
}

void sendPdu(DtExerciseConn* conn, const DtVistrelControlPdu& pdu) {
  DtVistrelControlInteraction inter;
  inter.setVcPdu(pdu);
  conn->sendInteraction(inter);
}

void received(DtVistrelControlInteraction* inter, void* usr) {
  Peer* peer = static_cast<Peer*>(usr);
  const DtVistrelControlPdu* pdu = inter->vcPdu();
  if (!pdu) {
    std::printf("EMPTY\n");
    std::fflush(stdout);
    return;
  }
  std::printf("PDU %d %s\n", static_cast<int>(pdu->viewerCommand()),
              hex(pdu->packet(), pdu->length()).c_str());
  DtString viewer = pdu->viewerId();
  bool forUs = viewer == peer->id || viewer == "0:0:0";
  if (pdu->viewerCommand() == DtVcRequestState && forUs) {
    DtOrbitVCPdu answer;
    answer.setStatusCommand(true);
    answer.setViewerId(peer->id);
    answer.setSenderId(DtString("viewer-") + peer->id);
    float radius = 250.0f;
    answer.setRadius(radius);
    answer.setAttachId("1:1:1");
    answer.setIgnoreFlags(0xFFEFFDFF);
    sendPdu(peer->conn, answer);
    std::printf("ANSWERED %d\n", static_cast<int>(answer.viewerCommand()));
  } else if (peer->echo) {
    sendPdu(peer->conn, *pdu);
  }
  std::fflush(stdout);
}

std::vector<unsigned char> unhex(const std::string& text) {
  std::vector<unsigned char> bytes;
  for (size_t i = 0; i + 1 < text.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(std::stoi(text.substr(i, 2), nullptr, 16)));
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fprintf(stderr, "usage: vc_peer URL FDD FEDERATE VIEWER_ID [--echo]\n");
    return 2;
  }
  DtExerciseConnStatus status;
  DtExerciseConn conn(argv[1], argv[3], static_cast<DtFomMapper*>(nullptr), argv[2], &status);
  if (!status.ok) {
    std::fprintf(stderr, "vc_peer: %s\n", status.message.c_str());
    return 1;
  }
  DtVistrelControlRegister(&conn);
  Peer peer{&conn, argv[4], argc > 5 && std::strcmp(argv[5], "--echo") == 0};
  DtVistrelControlInteraction::addCallback(&conn, &received, &peer);
  std::printf("READY\n");
  std::fflush(stdout);

  std::string pending;
  for (;;) {
    conn.drainInput(0.005);
    if (!conn.connected()) {
      std::printf("LOST %s\n", conn.errorText().c_str());
      return 1;
    }
    pollfd p{0, POLLIN, 0};
    if (::poll(&p, 1, 0) <= 0) continue;
    char buffer[4096];
    ssize_t n = ::read(0, buffer, sizeof buffer);
    if (n <= 0) break;
    pending.append(buffer, static_cast<size_t>(n));
    size_t newline;
    while ((newline = pending.find('\n')) != std::string::npos) {
      std::string line = pending.substr(0, newline);
      pending.erase(0, newline + 1);
      if (line.rfind("send ", 0) == 0) {
        std::vector<unsigned char> bytes = unhex(line.substr(5));
        std::unique_ptr<DtVistrelControlPdu> pdu(
            DtVistrelControlPdu::createFromBytes(bytes.data(), bytes.size()));
        if (pdu) sendPdu(&conn, *pdu);
        std::printf("SENT\n");
        std::fflush(stdout);
      }
    }
  }
  DtVistrelControlInteraction::removeCallback(&conn, &received, &peer);
  return 0;
}
