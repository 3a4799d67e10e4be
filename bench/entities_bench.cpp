// What the viewer stand-in spends on a large exercise: 10,000 entities each updated five
// times a second is 50,000 reflections a second to decode, and every frame dead-reckons
// them all; a page snapshot lists them all.
#include <benchmark/benchmark.h>

#include <vector>

#include "entities.h"
#include "viewer.h"

namespace {

constexpr int kEntities = 10000;

struct Encoded {
  vcrpr::Bytes id, type, spatial, marking;
};

std::vector<Encoded> exercise(vcrpr::DrAlgorithm algorithm) {
  std::vector<Encoded> out;
  for (int i = 0; i < kEntities; ++i) {
    vcrpr::Spatial s;
    s.algorithm = algorithm;
    s.worldLocation = {4000000.0 + i, 300000.0 - i, 4900000.0};
    s.orientation = {0.001 * i, 0.1, 0.0};
    s.velocity = {100, 5, 0};
    s.acceleration = {1, 0, 0};
    s.angularVelocity = {0, 0, 0.05};
    out.push_back({vcrpr::encode(vcrpr::EntityId{1, 1, static_cast<std::uint16_t>(i + 1)}),
                   vcrpr::encode(vcrpr::EntityType{1, 2, 225, 1, 1, 0, 0}), vcrpr::encode(s),
                   vcrpr::encodeMarking("E" + std::to_string(i))});
  }
  return out;
}

void reflect(vcviewer::Entities& table, DtObjectId id, const Encoded& e, bool all) {
  const DtAttributeValue values[] = {{vcrpr::kSpatial, e.spatial.data(), e.spatial.size()},
                                     {vcrpr::kEntityIdentifier, e.id.data(), e.id.size()},
                                     {vcrpr::kEntityType, e.type.data(), e.type.size()},
                                     {vcrpr::kMarking, e.marking.data(), e.marking.size()}};
  table.objectReflected(id, values, all ? 4 : 1);
}

void fill(vcviewer::Entities& table, const std::vector<Encoded>& encoded) {
  for (int i = 0; i < kEntities; ++i) {
    table.objectDiscovered(static_cast<DtObjectId>(i + 1),
                           "BaseEntity.PhysicalEntity.Platform.Aircraft", "E" + std::to_string(i));
    reflect(table, static_cast<DtObjectId>(i + 1), encoded[static_cast<std::size_t>(i)], true);
  }
}

// One update of one entity as most come: Spatial alone (1 is the heartbeat with all four).
void BM_ReflectOneUpdate(benchmark::State& state) {
  const auto encoded = exercise(vcrpr::DrAlgorithm::RVB);
  vcviewer::Entities table;
  fill(table, encoded);
  const bool all = state.range(0) != 0;
  int i = 0;
  for (auto _ : state) {
    reflect(table, static_cast<DtObjectId>(i + 1), encoded[static_cast<std::size_t>(i)], all);
    i = (i + 1) % kEntities;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ReflectOneUpdate)->Arg(0)->Arg(1);

// One frame: every entity dead-reckoned to now.
void BM_DeadReckonEveryEntity(benchmark::State& state) {
  const auto algorithm = static_cast<vcrpr::DrAlgorithm>(state.range(0));
  const auto encoded = exercise(algorithm);
  vcviewer::Entities table;
  fill(table, encoded);
  double sum = 0;
  for (auto _ : state) {
    const double now = table.now() + 0.1;
    for (const auto& kv : table.all()) sum += kv.second.at(now).position.x;
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(state.iterations() * kEntities);
}
BENCHMARK(BM_DeadReckonEveryEntity)
    ->Arg(static_cast<int>(vcrpr::DrAlgorithm::FPW))
    ->Arg(static_cast<int>(vcrpr::DrAlgorithm::RVB))
    ->Unit(benchmark::kMillisecond);

// One snapshot of the page's document with every entity in it.
void BM_SceneDocumentWithEveryEntity(benchmark::State& state) {
  const auto encoded = exercise(vcrpr::DrAlgorithm::FPW);
  vcviewer::Viewer viewer("v", "v", nullptr, nullptr);
  fill(viewer.entities(), encoded);
  for (auto _ : state) benchmark::DoNotOptimize(viewer.json());
}
BENCHMARK(BM_SceneDocumentWithEveryEntity)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
