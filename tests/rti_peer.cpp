// A second federate process for the RTI tests. It joins the federation named on its
// command line and, according to its mode, echoes, sends or counts "ViewControl"
// interactions, reporting on stdout one line per step so the test can follow it.
//
//   rti_peer URL FDD echo            send back every interaction received, unchanged
//   rti_peer URL FDD send N SIZE     after a "go" line on stdin, send N numbered
//                                    interactions of SIZE bytes (N = 0: until killed)
//   rti_peer URL FDD count N         receive N numbered interactions and check them
//   rti_peer URL FDD register CLASS ATTR N
//                                    register N instances of the object class CLASS and
//                                    give each attribute ATTR a numbered value of 100 bytes,
//                                    then stay until stdin closes (and delete them)
//
// Numbered payloads: bytes 0..3 hold the sequence number (big-endian), byte k >= 4 holds
// (seq * 31 + k) & 0xFF, so a reader can tell a lost, reordered or damaged one.
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include <poll.h>
#include <unistd.h>

using namespace rti1516;

namespace {

std::wstring widen(const char* s) {
  return std::wstring(s, s + std::char_traits<char>::length(s));
}

std::vector<unsigned char> numbered(std::uint32_t seq, std::size_t size) {
  std::vector<unsigned char> b(size);
  for (std::size_t k = 0; k < size; ++k)
    b[k] = k < 4 ? static_cast<unsigned char>(seq >> (24 - 8 * k))
                 : static_cast<unsigned char>(seq * 31 + k);
  return b;
}

bool stdinClosed() {
  pollfd p{0, POLLIN, 0};
  if (::poll(&p, 1, 0) <= 0) return false;
  char c;
  return ::read(0, &c, 1) <= 0;
}

struct Peer : NullFederateAmbassador {
  RTIambassador* rti = nullptr;
  InteractionClassHandle cls;
  std::string mode;
  std::uint32_t expected = 0;
  std::string error;

  void receiveInteraction(InteractionClassHandle c, ParameterHandleValueMap const& values,
                          VariableLengthData const& tag, OrderType, TransportationType) override {
    if (mode == "echo") {
      rti->sendInteraction(c, values, tag);
      return;
    }
    if (values.size() != 1) {
      error = "parameter count " + std::to_string(values.size());
      return;
    }
    const VariableLengthData& v = values.begin()->second;
    const auto* b = static_cast<const unsigned char*>(v.data());
    if (v.size() < 4) {
      error = "short payload";
      return;
    }
    const std::uint32_t seq =
        std::uint32_t(b[0]) << 24 | std::uint32_t(b[1]) << 16 | std::uint32_t(b[2]) << 8 | b[3];
    if (seq != expected && error.empty())
      error = "expected " + std::to_string(expected) + " got " + std::to_string(seq);
    const auto want = numbered(seq, v.size());
    if (std::memcmp(want.data(), b, v.size()) != 0 && error.empty())
      error = "damaged payload " + std::to_string(seq);
    ++expected;
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::cerr << "usage: rti_peer URL FDD echo | send N SIZE | count N | register CLASS ATTR N\n";
    return 2;
  }
  const std::wstring url = widen(argv[1]);
  const std::wstring fdd = widen(argv[2]);
  Peer peer;
  peer.mode = argv[3];
  try {
    RTIambassadorFactory factory;
    std::vector<std::wstring> noArgs;  // the factory takes them by non-const reference
    auto rti = factory.createRTIambassador(noArgs);
    peer.rti = rti.get();
    try {
      rti->createFederationExecution(url, fdd);
    } catch (const FederationExecutionAlreadyExists&) {
    }
    rti->joinFederationExecution(L"rti_peer", url, peer);
    if (peer.mode == "register" && argc >= 7) {
      const ObjectClassHandle cls = rti->getObjectClassHandle(widen(argv[4]));
      const AttributeHandle attr = rti->getAttributeHandle(cls, widen(argv[5]));
      const unsigned long n = std::stoul(argv[6]);
      rti->publishObjectClassAttributes(cls, {attr});
      AttributeHandleValueMap values;
      for (std::uint32_t i = 0; i < n; ++i) {
        const ObjectInstanceHandle instance = rti->registerObjectInstance(cls);
        const auto payload = numbered(i, 100);
        values[attr].setData(payload.data(), static_cast<unsigned long>(payload.size()));
        rti->updateAttributeValues(instance, values, VariableLengthData("peer", 4));
      }
      rti->evokeCallback(0.0);  // sends what is batched
      std::cout << "registered " << n << std::endl;
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
      while (!stdinClosed() && std::chrono::steady_clock::now() < deadline)
        rti->evokeMultipleCallbacks(0.02, 0.05);
      rti->resignFederationExecution(DELETE_OBJECTS);
      return 0;
    }
    peer.cls = rti->getInteractionClassHandle(L"ViewControl");
    const ParameterHandle param = rti->getParameterHandle(peer.cls, L"ViewControlPdu");
    rti->publishInteractionClass(peer.cls);
    if (peer.mode != "send") rti->subscribeInteractionClass(peer.cls);
    std::cout << "ready" << std::endl;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);

    if (peer.mode == "echo") {
      while (!stdinClosed() && std::chrono::steady_clock::now() < deadline)
        rti->evokeMultipleCallbacks(0.02, 0.05);
    } else if (peer.mode == "send" && argc >= 6) {
      std::string line;
      if (!std::getline(std::cin, line) || line != "go") return 3;
      const unsigned long n = std::stoul(argv[4]);
      const std::size_t size = std::stoul(argv[5]);
      ParameterHandleValueMap values;
      const VariableLengthData tag("peer", 4);
      for (std::uint32_t seq = 0; n == 0 || seq < n; ++seq) {
        const auto payload = numbered(seq, size);
        values[param].setData(payload.data(), static_cast<unsigned long>(payload.size()));
        rti->sendInteraction(peer.cls, values, tag);
        if (seq == 1000) std::cout << "streaming" << std::endl;
      }
      std::cout << "sent " << n << std::endl;
    } else if (peer.mode == "count" && argc >= 5) {
      const std::uint32_t n = static_cast<std::uint32_t>(std::stoul(argv[4]));
      while (peer.expected < n && peer.error.empty() && std::chrono::steady_clock::now() < deadline)
        rti->evokeMultipleCallbacks(0.01, 0.1);
      if (!peer.error.empty()) {
        std::cout << "error " << peer.error << std::endl;
        return 1;
      }
      std::cout << "received " << peer.expected << (peer.expected == n ? " ok" : " short")
                << std::endl;
    } else {
      std::cerr << "rti_peer: bad mode\n";
      return 2;
    }
    rti->resignFederationExecution(NO_ACTION);
  } catch (const Exception& e) {
    std::wcout << L"exception " << e.what() << std::endl;
    return 1;
  }
  return 0;
}
