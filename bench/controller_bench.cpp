// Building and sending each kind of controller command through a custom sender: the
// whole cost of one command call on the application's thread, without any transport.
// One benchmark per command; items/s is commands per second.
#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "vistrelControl.h"

namespace {

// Touches what a real transport would read: the pointer and the length.
class NullSender : public DtCustomRemoteControlSender {
 public:
  void send(const char* pdu, int length) override {
    benchmark::DoNotOptimize(static_cast<const void*>(pdu));
    bytes += length;
  }
  long long bytes = 0;
};

using Command = std::function<void(DtVistrelRemoteController&)>;

struct Fixture {
  DtString entity{"1:2:3"};
  DtString track{"1:2:4"};
  DtVector64 position{1000.0, 2000.0, 30.0};
  DtVector64 offset{0.0, -20.0, 5.0};
  DtTaitBryan orientation{0.1, -0.2, 0.0};
  float radius = 120.0f, heading = 0.5f, pitch = -0.3f, rate = 0.1f;
  DtGlobalObjectDesignatorList three{"1:2:3", "1:2:4", "1:2:5"};
};

Fixture& fx() {
  static Fixture f;
  return f;
}

const std::vector<std::pair<std::string, Command>>& commands() {
  static const std::vector<std::pair<std::string, Command>> list = {
      {"orbit",
       [](DtVistrelRemoteController& c) {
         c.setOrbitMode(&fx().entity, &fx().radius, &fx().heading, &fx().pitch, &fx().rate);
       }},
      {"absolute",
       [](DtVistrelRemoteController& c) { c.setAbsoluteMode(&fx().position, &fx().orientation); }},
      {"tether",
       [](DtVistrelRemoteController& c) {
         c.setTetherMode(&fx().entity, &fx().offset, &fx().orientation);
       }},
      {"compass",
       [](DtVistrelRemoteController& c) {
         c.setCompassMode(&fx().entity, &fx().radius, &fx().heading, &fx().pitch);
       }},
      {"mimic", [](DtVistrelRemoteController& c) { c.setMimicMode(&fx().entity, &fx().offset); }},
      {"turret", [](DtVistrelRemoteController& c) { c.setTurretMode(&fx().entity, &fx().offset); }},
      {"pivot",
       [](DtVistrelRemoteController& c) {
         c.setPivotMode(&fx().position, &fx().radius, &fx().heading, &fx().pitch);
       }},
      {"track", [](DtVistrelRemoteController& c) { c.setTrackMode(&fx().track, &fx().position); }},
      {"mimicTrack",
       [](DtVistrelRemoteController& c) {
         c.setMimicTrackMode(&fx().entity, &fx().track, &fx().offset);
       }},
      {"tetherTrack",
       [](DtVistrelRemoteController& c) {
         c.setTetherTrackMode(&fx().entity, &fx().track, &fx().offset);
       }},
      {"group3",
       [](DtVistrelRemoteController& c) {
         c.setGroupMode(&fx().three, &fx().radius, &fx().heading, &fx().pitch);
       }},
      {"setPrimary", [](DtVistrelRemoteController& c) { c.setPrimary(fx().entity); }},
      {"setGroup3", [](DtVistrelRemoteController& c) { c.setGroup(fx().three); }},
      {"moveEyepoint",
       [](DtVistrelRemoteController& c) { c.moveEyepoint(DtMoveVCPdu::Direction(1)); }},
      {"set", [](DtVistrelRemoteController& c) { c.set(&fx().position, &fx().orientation); }},
      {"option.stepsize", [](DtVistrelRemoteController& c) { c.setStepsize(2.5f); }},
      {"option.timeOfDay", [](DtVistrelRemoteController& c) { c.setTimeOfDay(13.5); }},
      {"option.database",
       [](DtVistrelRemoteController& c) { c.setDatabaseToLoad("terrain/coast.db"); }},
      {"requestState", [](DtVistrelRemoteController& c) { c.requestCurrentViewMode(""); }},
  };
  return list;
}

void runCommand(benchmark::State& state, const Command& command) {
  NullSender sender;
  DtVistrelRemoteController controller(&sender, "viewer-1");
  controller.setControllerId("controller-1");
  for (auto _ : state) command(controller);
  state.SetItemsProcessed(state.iterations());
  state.counters["bytes/cmd"] = state.iterations() ? static_cast<double>(sender.bytes) /
                                                         static_cast<double>(state.iterations())
                                                   : 0;
}

// A PDU the application built once and sends again and again: send() alone.
void BM_SendPrebuiltOrbit(benchmark::State& state) {
  NullSender sender;
  DtVistrelRemoteController controller(&sender, "viewer-1");
  controller.setControllerId("controller-1");
  DtOrbitVCPdu pdu;
  pdu.setRadius(100.0f);
  pdu.setAttachId("1:2:3");
  for (auto _ : state) controller.send(pdu);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SendPrebuiltOrbit);

}  // namespace

int main(int argc, char** argv) {
  for (const auto& [name, command] : commands()) {
    const Command* c = &command;
    benchmark::RegisterBenchmark(("BM_Command/" + name).c_str(),
                                 [c](benchmark::State& s) { runCommand(s, *c); });
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
