// A drawer update of an attribute panel with 20 values, all changed since the last
// update: the panel's PDU and 20 value updates leave per update() call. Measured
// through a custom sender and through a thread:// connection with a subscriber that is
// drained every 16 updates. items/s is updates per second (21 PDUs each).
#include <benchmark/benchmark.h>

#include <memory>

#include "vistrelControl.h"

namespace {

const unsigned int kValues = 20;

class NullSender : public DtCustomRemoteControlSender {
 public:
  void send(const char* pdu, int length) override {
    benchmark::DoNotOptimize(static_cast<const void*>(pdu));
    bytes += length;
    ++pdus;
  }
  long long bytes = 0;
  long long pdus = 0;
};

struct Panel {
  Panel() : groupTemplate(100, "Engine") {
    for (unsigned int i = 1; i <= kValues; ++i)
      groupTemplate.createAttributeTemplate(i, "value",
                                            DtVdcAttributeTemplateObject::DtVdcNumericAttribute);
  }
  DtVdcAttributeGroupObject* makeGroup() {
    return new DtVdcAttributeGroupObject(101, &groupTemplate, DtVdc3DAttachPoint(),
                                         DtVector64(0, 0, 10), DtVdcColor::DtVdcGreen, false);
  }
  DtVdcAttributeGroupTemplateObject groupTemplate;
};

void changeAll(DtVdcAttributeGroupObject* group, double v) {
  for (unsigned int i = 1; i <= kValues; ++i) group->setNumericAttributeValue(i, v + i);
}

void BM_DrawerUpdate20_CustomSender(benchmark::State& state) {
  Panel panel;
  NullSender sender;
  {
    DtVistrelRemoteDrawer drawer(&sender, "drawer-1");
    DtVdcAttributeGroupObject* group = panel.makeGroup();
    drawer.add(group);
    double v = 0;
    sender.pdus = 0;
    for (auto _ : state) {
      changeAll(group, v += 1.0);
      drawer.update(group);
    }
    if (sender.pdus != static_cast<long long>(state.iterations()) * (kValues + 1))
      state.SkipWithError("unexpected PDU count");
    delete drawer.remove(101);
  }
  state.SetItemsProcessed(state.iterations());
  state.counters["PDUs/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * (kValues + 1), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_DrawerUpdate20_CustomSender);

long long received = 0;
void countInteraction(DtVistrelControlInteraction*, void*) {
  ++received;
}

void BM_DrawerUpdate20_ThreadConnection(benchmark::State& state) {
  Panel panel;
  auto viewer = std::make_unique<DtExerciseConn>("thread://bench-drawer", "viewer",
                                                 static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  auto conn = std::make_unique<DtExerciseConn>("thread://bench-drawer", "drawer",
                                               static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  DtVistrelControlInteraction::addCallback(viewer.get(), &countInteraction, nullptr);
  {
    DtVistrelRemoteDrawer drawer(conn.get());
    DtVdcAttributeGroupObject* group = panel.makeGroup();
    drawer.add(group);
    viewer->drainInput();
    received = 0;
    double v = 0;
    long long n = 0;
    for (auto _ : state) {
      changeAll(group, v += 1.0);
      drawer.update(group);
      if ((++n & 15) == 0) viewer->drainInput();
    }
    viewer->drainInput();
    if (received != static_cast<long long>(state.iterations()) * (kValues + 1))
      state.SkipWithError("lost PDUs");
    delete drawer.remove(101);
  }
  conn.reset();
  viewer.reset();
  state.SetItemsProcessed(state.iterations());
  state.counters["PDUs/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * (kValues + 1), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_DrawerUpdate20_ThreadConnection);

}  // namespace

BENCHMARK_MAIN();
