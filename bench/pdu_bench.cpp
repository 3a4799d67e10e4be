// Turning received bytes into a PDU object: createFromNet (and the create() copy that
// loading a PDU into an interaction makes) for one PDU of every family, then deleting
// it, as the receive path does for every interaction. items/s is PDUs per second.
#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

#include "vistrelControl.h"

namespace {

struct Sample {
  std::string name;
  std::vector<char> bytes;
};

Sample sampleOf(const std::string& name, DtVistrelControlPdu* pdu) {
  pdu->setViewerId("viewer-1");
  pdu->setSenderId("controller-1");
  Sample s{name, std::vector<char>(pdu->packet(), pdu->packet() + pdu->length())};
  delete pdu;
  return s;
}

std::vector<Sample> samples() {
  std::vector<Sample> out;
  const std::pair<const char*, int> viewControl[] = {{"orbit", DtVcOrbit},
                                                     {"absolute", DtVcAbsolute},
                                                     {"tether", DtVcTether},
                                                     {"compass", DtVcCompass},
                                                     {"mimic", DtVcMimic},
                                                     {"offsetMimic", DtVcOffsetMimic},
                                                     {"track", DtVcTrack},
                                                     {"tetherTrack", DtVcTetherTrack},
                                                     {"mimicTrack", DtVcMimicTrack},
                                                     {"group", DtVcGroup},
                                                     {"options", DtVcOptions},
                                                     {"pivot", DtVcPivot},
                                                     {"move", DtVcMove},
                                                     {"requestState", DtVcRequestState},
                                                     {"orbitStatus", DtVcOrbitStatus}};
  for (const auto& [name, command] : viewControl)
    out.push_back(sampleOf(name, DtNewViewControlPdu(static_cast<DtViewerCommand>(command))));
  out.push_back(sampleOf("modeless", new DtModelessVCPdu));
  const std::pair<const char*, int> drawControl[] = {
      {"vdc.command", DtVdcCommandShow},
      {"vdc.line", DtVdc3DLine},
      {"vdc.polyObject", DtVdcSphere},
      {"vdc.triangle", DtVdc3DTriangle},
      {"vdc.area", DtVdc3DArea},
      {"vdc.text", DtVdc2DText},
      {"vdc.attribute", DtVdcAttributeGroup},
      {"vdc.attributeUpdate", DtVdcAttributeValueSet},
      {"vdc.layer", DtVdcLayer}};
  for (const auto& [name, type] : drawControl)
    out.push_back(sampleOf(name, DtNewDrawControlPdu(static_cast<DtViewerCommand>(type))));
  // A command this library does not know still becomes a PDU.
  DtOrbitVCPdu unknown;
  unknown.setViewerCommand(static_cast<DtViewerCommand>(400));
  out.push_back(
      sampleOf("unknown", DtVistrelControlPdu::createFromNet(
                              reinterpret_cast<const DtNetPduHeader*>(unknown.packet()))));
  return out;
}

void createFromNet(benchmark::State& state, const Sample& sample) {
  const auto* header = reinterpret_cast<const DtNetPduHeader*>(sample.bytes.data());
  for (auto _ : state) {
    DtVistrelControlPdu* pdu = DtVistrelControlPdu::createFromNet(header);
    benchmark::DoNotOptimize(static_cast<const void*>(pdu));
    delete pdu;
  }
  state.SetItemsProcessed(state.iterations());
  state.counters["bytes"] = static_cast<double>(sample.bytes.size());
}

void create(benchmark::State& state, const Sample& sample) {
  const auto* header = reinterpret_cast<const DtNetPduHeader*>(sample.bytes.data());
  for (auto _ : state) {
    DtVistrelControlPdu* pdu = DtVistrelControlPdu::create(header);
    benchmark::DoNotOptimize(static_cast<const void*>(pdu));
    delete pdu;
  }
  state.SetItemsProcessed(state.iterations());
}

// Received bytes, then the reads a view-mode callback typically makes.
void BM_CreateFromNetAndRead_Orbit(benchmark::State& state) {
  DtOrbitVCPdu orbit;
  orbit.setViewerId("viewer-1");
  orbit.setSenderId("controller-1");
  orbit.setAttachId("1:2:3");
  orbit.setRadius(120.0f);
  const auto* header = reinterpret_cast<const DtNetPduHeader*>(orbit.packet());
  for (auto _ : state) {
    DtVistrelControlPdu* pdu = DtVistrelControlPdu::createFromNet(header);
    auto* typed = static_cast<DtOrbitVCPdu*>(pdu);
    benchmark::DoNotOptimize(typed->senderId().length());
    benchmark::DoNotOptimize(typed->viewerId().length());
    benchmark::DoNotOptimize(typed->radius());
    benchmark::DoNotOptimize(typed->attachId().length());
    delete pdu;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CreateFromNetAndRead_Orbit);

// Building a PDU for sending and filling it, without sending it.
void BM_BuildOrbit(benchmark::State& state) {
  for (auto _ : state) {
    DtOrbitVCPdu pdu;
    pdu.setRadius(120.0f);
    pdu.setHeading(0.5f);
    pdu.setPitch(-0.3f);
    pdu.setAzimuthRate(0.1f);
    pdu.setAttachId("1:2:3");
    pdu.setIgnoreFlags(0xFFFBFDE7ul);
    benchmark::DoNotOptimize(static_cast<const void*>(static_cast<const DtPdu&>(pdu).packet()));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BuildOrbit);

}  // namespace

int main(int argc, char** argv) {
  static const std::vector<Sample> all = samples();
  for (const Sample& s : all) {
    const Sample* p = &s;
    benchmark::RegisterBenchmark(("BM_CreateFromNet/" + s.name).c_str(),
                                 [p](benchmark::State& st) { createFromNet(st, *p); });
  }
  for (const Sample& s : all) {
    if (s.name != "orbit" && s.name != "vdc.line" && s.name != "options") continue;
    const Sample* p = &s;
    benchmark::RegisterBenchmark(("BM_CreateCopy/" + s.name).c_str(),
                                 [p](benchmark::State& st) { create(st, *p); });
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
