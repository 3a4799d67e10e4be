#include "evolved_peer.h"

#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>

#include <chrono>

namespace evolvedtest {

using namespace rti1516e;

namespace {
Bytes bytesOf(VariableLengthData const& v) {
  const auto* p = static_cast<const unsigned char*>(v.data());
  return Bytes(p, p + v.size());
}
}  // namespace

struct EvolvedPeer::Impl : NullFederateAmbassador {
  std::unique_ptr<RTIambassador> rti;
  std::vector<std::pair<ParameterHandleValueMap, InteractionClassHandle>> interactions;
  std::vector<std::pair<ObjectInstanceHandle, AttributeHandleValueMap>> reflections;

  void receiveInteraction(InteractionClassHandle cls, ParameterHandleValueMap const& values,
                          VariableLengthData const&, OrderType, TransportationType,
                          SupplementalReceiveInfo) override {
    interactions.emplace_back(values, cls);
  }
  void reflectAttributeValues(ObjectInstanceHandle object, AttributeHandleValueMap const& values,
                              VariableLengthData const&, OrderType, TransportationType,
                              SupplementalReflectInfo) override {
    reflections.emplace_back(object, values);
  }
  template <class Pred>
  bool await(Pred done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
      if (std::chrono::steady_clock::now() > end) return false;
      rti->evokeMultipleCallbacks(0.01, 0.05);
    }
    return true;
  }
};

EvolvedPeer::EvolvedPeer(const std::wstring& place) : impl_(std::make_unique<Impl>()) {
  RTIambassadorFactory factory;
  impl_->rti = factory.createRTIambassador();
  impl_->rti->connect(*impl_, HLA_EVOKED, place);
}

EvolvedPeer::~EvolvedPeer() {
  try {
    resignAndDisconnect();
  } catch (const Exception&) {
  }
}

void EvolvedPeer::create(const std::wstring& federation, const std::vector<std::wstring>& modules) {
  impl_->rti->createFederationExecution(federation, modules);
}

void EvolvedPeer::join(const std::wstring& federation, const std::vector<std::wstring>& modules) {
  impl_->rti->joinFederationExecution(L"evolved", federation, modules);
}

void EvolvedPeer::resignAndDisconnect() {
  impl_->rti->resignFederationExecution(DELETE_OBJECTS);
  impl_->rti->disconnect();
}

void EvolvedPeer::publishAndSend(const std::wstring& cls, const std::wstring& param,
                                 const Bytes& value) {
  const InteractionClassHandle c = impl_->rti->getInteractionClassHandle(cls);
  impl_->rti->publishInteractionClass(c);
  ParameterHandleValueMap values;
  values[impl_->rti->getParameterHandle(c, param)] = VariableLengthData(value.data(), value.size());
  impl_->rti->sendInteraction(c, values, VariableLengthData());
}

void EvolvedPeer::subscribeInteraction(const std::wstring& cls) {
  impl_->rti->subscribeInteractionClass(impl_->rti->getInteractionClassHandle(cls));
}

bool EvolvedPeer::awaitInteraction(const std::wstring& param, Bytes& value) {
  if (!impl_->await([&] { return !impl_->interactions.empty(); })) return false;
  const auto& [values, cls] = impl_->interactions.front();
  const auto it = values.find(impl_->rti->getParameterHandle(cls, param));
  if (it == values.end()) return false;
  value = bytesOf(it->second);
  return true;
}

void EvolvedPeer::registerAndUpdate(const std::wstring& cls, const std::wstring& name,
                                    const std::wstring& attr, const Bytes& value) {
  RTIambassador& rti = *impl_->rti;
  const ObjectClassHandle c = rti.getObjectClassHandle(cls);
  const AttributeHandle a = rti.getAttributeHandle(c, attr);
  rti.publishObjectClassAttributes(c, {a});
  rti.reserveObjectInstanceName(name);
  for (int round = 0; round < 1000; ++round) {
    try {
      const ObjectInstanceHandle object = rti.registerObjectInstance(c, name);
      AttributeHandleValueMap values;
      values[a] = VariableLengthData(value.data(), value.size());
      rti.updateAttributeValues(object, values, VariableLengthData());
      return;
    } catch (const ObjectInstanceNameNotReserved&) {
      rti.evokeMultipleCallbacks(0.01, 0.05);  // the reservation's answer
    }
  }
  throw RTIinternalError(L"no answer to the reservation of " + name);
}

void EvolvedPeer::subscribeObjects(const std::wstring& cls, const std::wstring& attr) {
  const ObjectClassHandle c = impl_->rti->getObjectClassHandle(cls);
  impl_->rti->subscribeObjectClassAttributes(c, {impl_->rti->getAttributeHandle(c, attr)});
}

bool EvolvedPeer::awaitReflection(std::wstring& name, Bytes& value) {
  if (!impl_->await([&] { return !impl_->reflections.empty(); })) return false;
  const auto& [object, values] = impl_->reflections.front();
  if (values.empty()) return false;
  name = impl_->rti->getObjectInstanceName(object);
  value = bytesOf(values.begin()->second);
  return true;
}

}  // namespace evolvedtest
