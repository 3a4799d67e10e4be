// The HLA carriage of a control PDU on one thread: encoding and decoding a ViewControl
// interaction, and whole round trips through a thread:// federation in which this
// thread is both the sending and the receiving federate (so the figure is the sum of
// both sides' work, with no thread hand-off). items/s is interactions per second.
#include <benchmark/benchmark.h>

#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>

#include <memory>
#include <string>
#include <vector>

#include "vistrelControl.h"

namespace {

const int kBatch = 256;

std::wstring wide(const std::string& s) {
  return std::wstring(s.begin(), s.end());
}

DtOrbitVCPdu& orbit() {
  static DtOrbitVCPdu pdu;
  static bool filled = false;
  if (!filled) {
    pdu.setViewerId("viewer-1");
    pdu.setSenderId("controller-1");
    pdu.setAttachId("1:2:3");
    pdu.setRadius(120.0f);
    filled = true;
  }
  return pdu;
}

struct Connection {
  explicit Connection(const std::string& federation, const char* name = "bench")
      : conn(federation.c_str(), name, static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE) {
    desc = conn.fomMapper()->interClassDesc("ViewControl");
    desc->parameterHandle("ViewControlPdu", &param);
  }
  DtExerciseConn conn;
  DtInterClassDesc* desc = nullptr;
  rti1516::ParameterHandle param;
};

void BM_Encode(benchmark::State& state) {
  Connection c("thread://bench-encode");
  DtVistrelControlEncoder encoder(&c.conn, c.desc);
  DtVistrelControlInteraction inter;
  inter.setVcPdu(orbit());
  rti1516::ParameterHandleValueMap values;
  for (auto _ : state) {
    values.clear();
    encoder.encode(&inter, values);
    benchmark::DoNotOptimize(values);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Encode);

// What sending used to cost before the encoder: loading (copying) the PDU, then encoding.
void BM_LoadAndEncode(benchmark::State& state) {
  Connection c("thread://bench-load-encode");
  DtVistrelControlEncoder encoder(&c.conn, c.desc);
  rti1516::ParameterHandleValueMap values;
  for (auto _ : state) {
    DtVistrelControlInteraction inter;
    inter.setVcPdu(orbit());
    values.clear();
    encoder.encode(&inter, values);
    benchmark::DoNotOptimize(values);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LoadAndEncode);

// As the connection decodes each received interaction: a new interaction from the
// creator, the decoder, and the PDU object it ends up holding.
void BM_Decode(benchmark::State& state) {
  Connection c("thread://bench-decode");
  DtVistrelControlDecoder decoder(&c.conn, c.desc);
  rti1516::ParameterHandleValueMap values;
  values[c.param].setDataPointer(orbit().packet(), static_cast<unsigned long>(orbit().length()));
  for (auto _ : state) {
    std::unique_ptr<DtInteraction> inter(DtVistrelControlInteraction::create());
    decoder.decode(inter.get(), values);
    benchmark::DoNotOptimize(static_cast<DtVistrelControlInteraction*>(inter.get())->vcPdu());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Decode);

// ------------------------------------------------------------------ whole round trips

class Counter : public rti1516::NullFederateAmbassador {
 public:
  void receiveInteraction(rti1516::InteractionClassHandle,
                          rti1516::ParameterHandleValueMap const& values,
                          rti1516::VariableLengthData const&, rti1516::OrderType,
                          rti1516::TransportationType) override {
    ++count;
    benchmark::DoNotOptimize(values.begin()->second.data());
  }
  long long count = 0;
};

// The bare RTI: one federate sends raw 312-byte values, the other receives them.
void BM_RtiThreadLoopback(benchmark::State& state) {
  const std::wstring fed = L"thread://bench-rti-loopback";
  rti1516::RTIambassadorFactory factory;
  std::vector<std::wstring> noArgs;  // the factory takes them by non-const reference
  auto sender = factory.createRTIambassador(noArgs);
  auto receiver = factory.createRTIambassador(noArgs);
  sender->createFederationExecution(fed, wide(VC_FDD_FILE));
  Counter senderAmb, receiverAmb;
  sender->joinFederationExecution(L"sender", fed, senderAmb);
  receiver->joinFederationExecution(L"receiver", fed, receiverAmb);
  auto cls = sender->getInteractionClassHandle(L"ViewControl");
  auto param = sender->getParameterHandle(cls, L"ViewControlPdu");
  sender->publishInteractionClass(cls);
  receiver->subscribeInteractionClass(cls);
  std::vector<char> payload(static_cast<size_t>(state.range(0)), 'x');
  rti1516::ParameterHandleValueMap values;
  values[param].setData(payload.data(), static_cast<unsigned long>(payload.size()));
  rti1516::VariableLengthData tag;
  for (auto _ : state) {
    for (int i = 0; i < kBatch; ++i) sender->sendInteraction(cls, values, tag);
    while (receiver->evokeCallback(0.0)) {
    }
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
  if (receiverAmb.count != static_cast<long long>(state.iterations()) * kBatch)
    state.SkipWithError("lost interactions");
  receiver->resignFederationExecution(rti1516::NO_ACTION);
  sender->resignFederationExecution(rti1516::NO_ACTION);
  sender->destroyFederationExecution(fed);
}
BENCHMARK(BM_RtiThreadLoopback)->Arg(312)->Arg(64)->Arg(1500);

long long received = 0;
void countInteraction(DtVistrelControlInteraction*, void*) {
  ++received;
}

// The exercise connections on both ends: the interaction, its encoder and decoder.
void BM_ConnThreadLoopback(benchmark::State& state) {
  auto sender = std::make_unique<Connection>("thread://bench-conn-loopback", "sender");
  auto receiver = std::make_unique<Connection>("thread://bench-conn-loopback", "receiver");
  DtVistrelControlInteraction::addCallback(&receiver->conn, &countInteraction, nullptr);
  DtVistrelControlInteraction inter;
  inter.setVcPdu(orbit());
  received = 0;
  for (auto _ : state) {
    for (int i = 0; i < kBatch; ++i) sender->conn.sendInteraction(inter);
    receiver->conn.drainInput();
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
  if (received != static_cast<long long>(state.iterations()) * kBatch)
    state.SkipWithError("lost interactions");
  receiver.reset();
  sender.reset();
}
BENCHMARK(BM_ConnThreadLoopback);

void countPdu(const DtVistrelControlPdu& pdu, void*) {
  ++received;
  benchmark::DoNotOptimize(pdu.length());
}

// The --library path: a controller's command in, a view-mode callback out.
void BM_ControllerThreadLoopback(benchmark::State& state) {
  auto senderConn = std::make_unique<Connection>("thread://bench-controller-loopback", "sender");
  auto receiverConn =
      std::make_unique<Connection>("thread://bench-controller-loopback", "receiver");
  auto sender = std::make_unique<DtVistrelRemoteController>(&senderConn->conn, "viewer-1");
  sender->setControllerId("controller-1");
  auto receiver = std::make_unique<DtVistrelRemoteController>(&receiverConn->conn, "viewer-1");
  receiver->setControllerId("viewer-1");
  receiver->addViewModeChangeCallback(&countPdu, nullptr, DtVistrelRemoteController::SEND_TO_ALL);
  DtString entity("1:2:3");
  float radius = 120.0f;
  received = 0;
  for (auto _ : state) {
    for (int i = 0; i < kBatch; ++i)
      sender->setOrbitMode(&entity, &radius, nullptr, nullptr, nullptr);
    receiverConn->conn.drainInput();
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
  if (received != static_cast<long long>(state.iterations()) * kBatch)
    state.SkipWithError("lost commands");
  receiver.reset();
  sender.reset();
  receiverConn.reset();
  senderConn.reset();
}
BENCHMARK(BM_ControllerThreadLoopback);

}  // namespace

BENCHMARK_MAIN();
