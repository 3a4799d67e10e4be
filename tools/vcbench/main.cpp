// vcbench: throughput and latency of control interactions through a federation. Run
// 'vcbench --help'.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

#include "dtCmdLine.h"
#include "dtOutput.h"
#include "endpoint.h"
#include "installedFdd.h"
#include "roles.h"
#include "toolSupport.h"

namespace {

using DtCmdLine::Type;
using namespace vcbench;

// The library's banner and notes would mix with the figures on stdout.
void toStderr(void*, const char* text, size_t length) {
  std::fwrite(text, 1, length, stderr);
}

double percentile(std::vector<double> values, double p) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  size_t i = static_cast<size_t>(p * static_cast<double>(values.size()));
  return values[std::min(i, values.size() - 1)];
}

void printSender(const RunSettings& run, const SenderResult& r) {
  if (run.count > 0)
    std::printf("throughput=%.0f %s/s\n", static_cast<double>(run.count) / r.seconds, run.unit);
  if (!r.oneWayUs.empty()) {
    std::printf("latency p50=%.2f us p99=%.2f us (one-way, %zu single pings)\n",
                percentile(r.oneWayUs, 0.50), percentile(r.oneWayUs, 0.99), r.oneWayUs.size());
    std::printf("round-trip p50=%.2f us p99=%.2f us\n", percentile(r.roundTripUs, 0.50),
                percentile(r.roundTripUs, 0.99));
  }
  std::fflush(stdout);
}

void printReceiver(const ReceiverResult& r, bool alone, const char* unit) {
  if (alone && r.seconds > 0)
    std::printf("received=%llu in %.3f s: throughput=%.0f %s/s\n",
                static_cast<unsigned long long>(r.received), r.seconds,
                static_cast<double>(r.received) / r.seconds, unit);
  if (r.outOfOrder)
    std::printf("out of order: %llu\n", static_cast<unsigned long long>(r.outOfOrder));
  std::fflush(stdout);
}

// The two ends always have different names: in library mode the name is also the
// controller id, and a controller ignores what carries its own id.
Settings asEnd(const Settings& settings, const char* end) {
  Settings s = settings;
  s.federate = settings.federate + end;
  return s;
}

int runSender(const Settings& settings, const RunSettings& run) {
  Sender sender(run);
  auto endpoint = makeEndpoint(asEnd(settings, "-send"), sender);
  sender.attach(endpoint.get());
  SenderResult r = sender.run();
  // Leaving destroys the federation when this end was the last in it.
  endpoint.reset();
  printSender(run, r);
  return 0;
}

int runReceiver(const Settings& settings, const RunSettings& run) {
  Receiver receiver(run);
  auto endpoint = makeEndpoint(asEnd(settings, "-recv"), receiver);
  receiver.attach(endpoint.get());
  std::printf("receiver ready\n");
  std::fflush(stdout);
  ReceiverResult r = receiver.run();
  // Leaving destroys the federation when this end was the last in it.
  endpoint.reset();
  printReceiver(r, true, run.unit);
  return r.outOfOrder ? 1 : 0;
}

// Two federates of one process: the receiver on a thread of its own.
int runBoth(const Settings& settings, const RunSettings& run) {
  const Settings recvSettings = asEnd(settings, "-recv");
  const Settings sendSettings = asEnd(settings, "-send");

  ReceiverResult received;
  std::exception_ptr receiverError;
  Receiver receiver(run);
  std::unique_ptr<Endpoint> recvEndpoint = makeEndpoint(recvSettings, receiver);
  receiver.attach(recvEndpoint.get());
  std::thread thread([&] {
    try {
      received = receiver.run();
    } catch (...) {
      receiverError = std::current_exception();
    }
  });
  SenderResult sent;
  try {
    Sender sender(run);
    auto endpoint = makeEndpoint(sendSettings, sender);
    sender.attach(endpoint.get());
    sent = sender.run();
  } catch (const std::exception& e) {
    // The receiver thread would wait for the timeout and still use what is on this stack.
    std::fprintf(stderr, "vcbench: %s\n", e.what());
    std::fflush(stderr);
    std::_Exit(1);
  }
  thread.join();
  recvEndpoint.reset();
  if (receiverError) std::rethrow_exception(receiverError);
  printSender(run, sent);
  printReceiver(received, false, run.unit);
  return received.outOfOrder ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  DtInfo.setSink(&toStderr, nullptr);

  DtCmdLine::Command cli(
      "vcbench",
      "Measures the throughput and the latency of control interactions through a federation.");
  cli.option("federation", Type::Text,
             "federation: thread://NAME in this process, rti://HOST:PORT/NAME through a hub, or "
             "what the RTI "
             "vcbench was built against understands")
      .shortName('f')
      .placeholder("URL")
      .defaultValue("thread://vcbench");
  cli.option("fdd", Type::Text,
             "object model file that defines ViewControl (and, with --objects, the object class "
             "Entity with the attribute State; vcbench brings such a model of its own)")
      .placeholder("FILE")
      .defaultValue(vctools::installedFdd());
  cli.option("role", Type::Text,
             "both: two federates in this process; send or recv: one end each, in two processes")
      .choices({"both", "send", "recv"})
      .defaultValue("both");
  cli.option("name", Type::Text,
             "federate name, to which the sender adds -send and the receiver -recv")
      .placeholder("NAME")
      .defaultValue("vcbench");
  cli.option("count", Type::Integer, "interactions in the throughput run (0: none)")
      .shortName('n')
      .range(0, 1e12)
      .defaultValue("1000000");
  cli.option("size", Type::Integer,
             "bytes of each interaction's value; 312 is an orbit PDU (default), 100 an entity's "
             "state (default with --objects)")
      .shortName('s')
      .range(36, 65535);
  cli.option("objects", Type::Integer,
             "stream attribute updates of N object instances, updated in turn, instead of "
             "interactions; the figure is reflects per second")
      .shortName('o')
      .placeholder("N")
      .range(1, 1e6);
  cli.option("batch", Type::Integer,
             "interactions sent back to back; the receiver acknowledges each batch")
      .shortName('b')
      .range(1, 1e9)
      .defaultValue("256");
  cli.option("window", Type::Integer, "batches the sender may be ahead of the acknowledgements")
      .range(1, 1e6)
      .defaultValue("32");
  cli.option("pings", Type::Integer, "single pings for the latency figures (0: none)")
      .shortName('p')
      .range(0, 1e9)
      .defaultValue("10000");
  cli.option("library", Type::Flag,
             "go through DtVistrelRemoteController on both ends (orbit commands, 312 bytes) "
             "instead of raw "
             "interactions")
      .shortName('l');
  cli.option(
         "spin", Type::Real,
         "microseconds to go on polling without sleeping after the last message before waiting in "
         "the RTI (0: wait at once); by default 50 in a thread:// federation, where each end has a "
         "core of its own, and 0 otherwise, so that a hub on the same cores gets its turn")
      .placeholder("US")
      .range(0, 1e9);
  cli.option("timeout", Type::Real, "seconds of silence from the other end before giving up")
      .range(0.1, 1e6)
      .defaultValue("60");
  cli.details(
      "Prints throughput=N interactions/s (first send to last acknowledgement), then the one-way\n"
      "latency percentiles of single pings (the receiver's clock minus the sender's: one host)\n"
      "and their round trips.\n"
      "\n"
      "  vcbench                                        two federates, thread://vcbench\n"
      "  vcbench --library --count 200000               the same through the controllers\n"
      "  rtihub --port 15160 &\n"
      "  vcbench -f rti://127.0.0.1:15160/Bench --role recv &\n"
      "  vcbench -f rti://127.0.0.1:15160/Bench --role send\n"
      "\n"
      "Exit status: 0 done; 1 failed at run time (no join, the other end or the connection\n"
      "lost, PDUs out of order), and the figures are not printed; 2 a bad command line.");
  cli.version(vctools::versionLines("vcbench"));

  DtCmdLine::Args args = cli.parseOrExit(argc, argv);
  Settings settings;
  settings.federation = args.text("federation");
  std::string problem = vctools::federationUrlProblem(settings.federation, true);
  if (!problem.empty()) args.fail("option '--federation': " + problem);
  settings.fdd = args.text("fdd");
  settings.federate = args.text("name");
  settings.objects = args.has("objects") ? static_cast<int>(args.integer("objects")) : 0;
  settings.size = args.has("size") ? static_cast<int>(args.integer("size"))
                                   : (settings.objects > 0 ? 100 : 312);
  if (settings.objects > 0 && !args.has("fdd")) settings.fdd.clear();
  settings.library = args.flag("library");
  if (settings.library && settings.objects > 0)
    args.fail("--objects does not apply to --library: the controllers send interactions");
  if (settings.library && args.has("size") && settings.size != 312)
    args.fail("--size does not apply to --library: its commands are 312-byte orbit PDUs");
  RunSettings run;
  run.count = static_cast<std::uint64_t>(args.integer("count"));
  run.batch = static_cast<std::uint64_t>(args.integer("batch"));
  run.window = static_cast<std::uint64_t>(args.integer("window"));
  run.pings = static_cast<std::uint64_t>(args.integer("pings"));
  const bool inProcess = settings.federation.compare(0, 9, "thread://") == 0;
  run.spinSeconds = (args.has("spin") ? args.real("spin") : (inProcess ? 50.0 : 0.0)) * 1e-6;
  run.timeout = args.real("timeout");
  run.checkOrder = !settings.library;
  run.unit = settings.objects > 0 ? "reflects" : "interactions";

  std::string role = args.text("role");
  if (inProcess && role != "both")
    args.fail("--role " + role +
              " needs the other end in another process, which cannot join a "
              "thread:// federation: use rti://HOST:PORT/NAME");
  if (role == "recv")  // the sender says how many and in what batches
    std::fprintf(stderr, "vcbench: recv %s%s\n", settings.library ? "library " : "raw ",
                 settings.federation.c_str());
  else
    std::fprintf(stderr, "vcbench: %s %s%s, %d-byte %s, %llu in batches of %llu, %llu pings\n",
                 role.c_str(), settings.library ? "library " : "raw ", settings.federation.c_str(),
                 settings.library ? 312 : settings.size,
                 settings.objects > 0 ? "attribute updates" : "interactions",
                 static_cast<unsigned long long>(run.count),
                 static_cast<unsigned long long>(run.batch),
                 static_cast<unsigned long long>(run.pings));
  try {
    if (role == "send") return runSender(settings, run);
    if (role == "recv") return runReceiver(settings, run);
    return runBoth(settings, run);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "vcbench: %s\n", e.what());
    return 1;
  }
}
