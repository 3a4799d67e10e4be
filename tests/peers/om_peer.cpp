// A federate in a process of its own for the object-management tests: the command-driven
// federate of tests/object_federate.h, read from stdin and written to stdout.
//
//   om_peer URL FDD FEDERATE_NAME
//
//   READY                after it has joined (or "FAILED <exception class>" and exit 1)
//   = <answer>           one per command line read from stdin
//   ! <event>            one per callback, as they arrive
//
// Between commands it keeps evoking callbacks, so a test waiting for an event needs no
// command to get it. End of input (or "exit") resigns with DELETE_OBJECTS and ends it.
#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>
#include <string>

#include "../object_federate.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: om_peer URL FDD FEDERATE_NAME\n");
    return 2;
  }
  std::unique_ptr<omtest::ObjectFederate> federate;
  try {
    federate = std::make_unique<omtest::ObjectFederate>(argv[1], argv[2], argv[3]);
  } catch (const rti1516::Exception& e) {
    std::printf("FAILED %s %s\n", omtest::exceptionName(e).c_str(),
                omtest::narrowed(e.what()).c_str());
    return 1;
  }
  std::printf("READY\n");
  std::fflush(stdout);

  std::string pending;
  for (;;) {
    pollfd p{0, POLLIN, 0};
    if (::poll(&p, 1, 5) > 0) {
      char buf[4096];
      const ssize_t n = ::read(0, buf, sizeof buf);
      if (n <= 0) break;
      pending.append(buf, static_cast<std::size_t>(n));
    }
    bool done = false;
    for (std::size_t nl; (nl = pending.find('\n')) != std::string::npos;) {
      const std::string line = pending.substr(0, nl);
      pending.erase(0, nl + 1);
      if (line == "exit") {
        done = true;
        break;
      }
      // Events before the answer: whatever arrived before the command was carried out.
      try {
        for (const auto& e : federate->poll()) std::printf("! %s\n", e.c_str());
      } catch (const rti1516::Exception& e) {
        std::printf("! POLL-FAILED %s\n", omtest::exceptionName(e).c_str());
      }
      std::printf("= %s\n", federate->execute(line).c_str());
      std::fflush(stdout);
    }
    if (done) break;
    try {
      const auto events = federate->poll();
      for (const auto& e : events) std::printf("! %s\n", e.c_str());
      if (!events.empty()) std::fflush(stdout);
    } catch (const rti1516::Exception& e) {
      std::printf("! POLL-FAILED %s %s\n", omtest::exceptionName(e).c_str(),
                  omtest::narrowed(e.what()).c_str());
      std::fflush(stdout);
      return 1;
    }
  }
  return 0;
}
