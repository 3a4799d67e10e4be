// The 1516-2010 API over the federate core, as the 1516-2000 ambassador is: it translates
// handles, values, callbacks and exceptions, and adds what only this API has (connecting,
// FOM modules, callbacks from a thread of the RTI's). No rule of the RTI lives here.
#ifndef VCRTI_EVOLVED_AMBASSADOR_H
#define VCRTI_EVOLVED_AMBASSADOR_H

#include "federate_core.h"
#include "unsupported_services.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace vcrti::evolved {

class Ambassador final : public UnsupportedServices, private FederateCallbacks {
 public:
  Ambassador() = default;
  ~Ambassador() override;

  void connect(FederateAmbassador& federateAmbassador, CallbackModel theCallbackModel,
               std::wstring const& localSettingsDesignator) override;
  void disconnect() override;
  void createFederationExecution(std::wstring const& federationExecutionName,
                                 std::wstring const& fomModule,
                                 std::wstring const& logicalTimeImplementationName) override;
  void createFederationExecution(std::wstring const& federationExecutionName,
                                 std::vector<std::wstring> const& fomModules,
                                 std::wstring const& logicalTimeImplementationName) override;
  void createFederationExecutionWithMIM(std::wstring const& federationExecutionName,
                                        std::vector<std::wstring> const& fomModules,
                                        std::wstring const& mimModule,
                                        std::wstring const& logicalTimeImplementationName) override;
  void destroyFederationExecution(std::wstring const& federationExecutionName) override;
  FederateHandle joinFederationExecution(
      std::wstring const& federateType, std::wstring const& federationExecutionName,
      std::vector<std::wstring> const& additionalFomModules) override;
  FederateHandle joinFederationExecution(
      std::wstring const& federateName, std::wstring const& federateType,
      std::wstring const& federationExecutionName,
      std::vector<std::wstring> const& additionalFomModules) override;
  void resignFederationExecution(ResignAction resignAction) override;

  void publishObjectClassAttributes(ObjectClassHandle theClass,
                                    AttributeHandleSet const& attributeList) override;
  void unpublishObjectClass(ObjectClassHandle theClass) override;
  void unpublishObjectClassAttributes(ObjectClassHandle theClass,
                                      AttributeHandleSet const& attributeList) override;
  void publishInteractionClass(InteractionClassHandle theInteraction) override;
  void unpublishInteractionClass(InteractionClassHandle theInteraction) override;
  void subscribeObjectClassAttributes(ObjectClassHandle theClass,
                                      AttributeHandleSet const& attributeList, bool active,
                                      std::wstring const& updateRateDesignator) override;
  void unsubscribeObjectClass(ObjectClassHandle theClass) override;
  void unsubscribeObjectClassAttributes(ObjectClassHandle theClass,
                                        AttributeHandleSet const& attributeList) override;
  void subscribeInteractionClass(InteractionClassHandle theClass, bool active) override;
  void unsubscribeInteractionClass(InteractionClassHandle theClass) override;

  // The time-stamped forms stay the refusing ones.
  using UnsupportedServices::deleteObjectInstance;
  using UnsupportedServices::sendInteraction;
  using UnsupportedServices::updateAttributeValues;
  void reserveObjectInstanceName(std::wstring const& theObjectInstanceName) override;
  ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass) override;
  ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass,
                                              std::wstring const& theObjectInstanceName) override;
  void updateAttributeValues(ObjectInstanceHandle theObject,
                             AttributeHandleValueMap const& theAttributeValues,
                             VariableLengthData const& theUserSuppliedTag) override;
  void sendInteraction(InteractionClassHandle theInteraction,
                       ParameterHandleValueMap const& theParameterValues,
                       VariableLengthData const& theUserSuppliedTag) override;
  void deleteObjectInstance(ObjectInstanceHandle theObject,
                            VariableLengthData const& theUserSuppliedTag) override;
  void localDeleteObjectInstance(ObjectInstanceHandle theObject) override;
  void requestAttributeValueUpdate(ObjectInstanceHandle theObject,
                                   AttributeHandleSet const& theAttributes,
                                   VariableLengthData const& theUserSuppliedTag) override;
  void requestAttributeValueUpdate(ObjectClassHandle theClass,
                                   AttributeHandleSet const& theAttributes,
                                   VariableLengthData const& theUserSuppliedTag) override;

  ResignAction getAutomaticResignDirective() override;
  void setAutomaticResignDirective(ResignAction resignAction) override;
  ObjectClassHandle getObjectClassHandle(std::wstring const& theName) override;
  std::wstring getObjectClassName(ObjectClassHandle theHandle) override;
  ObjectClassHandle getKnownObjectClassHandle(ObjectInstanceHandle theObject) override;
  ObjectInstanceHandle getObjectInstanceHandle(std::wstring const& theName) override;
  std::wstring getObjectInstanceName(ObjectInstanceHandle theHandle) override;
  AttributeHandle getAttributeHandle(ObjectClassHandle whichClass,
                                     std::wstring const& theAttributeName) override;
  std::wstring getAttributeName(ObjectClassHandle whichClass, AttributeHandle theHandle) override;
  InteractionClassHandle getInteractionClassHandle(std::wstring const& theName) override;
  std::wstring getInteractionClassName(InteractionClassHandle theHandle) override;
  ParameterHandle getParameterHandle(InteractionClassHandle whichClass,
                                     std::wstring const& theName) override;
  std::wstring getParameterName(InteractionClassHandle whichClass,
                                ParameterHandle theHandle) override;
  OrderType getOrderType(std::wstring const& orderName) override;
  std::wstring getOrderName(OrderType orderType) override;
  TransportationType getTransportationType(std::wstring const& transportationName) override;
  std::wstring getTransportationName(TransportationType transportationType) override;
  unsigned long normalizeFederateHandle(FederateHandle theFederateHandle) override;
  unsigned long normalizeServiceGroup(ServiceGroup theServiceGroup) override;

  bool evokeCallback(double approximateMinimumTimeInSeconds) override;
  bool evokeMultipleCallbacks(double approximateMinimumTimeInSeconds,
                              double approximateMaximumTimeInSeconds) override;
  void enableCallbacks() override;
  void disableCallbacks() override;

  FederateHandle decodeFederateHandle(VariableLengthData const& encodedValue) const override;
  ObjectClassHandle decodeObjectClassHandle(VariableLengthData const& encodedValue) const override;
  InteractionClassHandle decodeInteractionClassHandle(
      VariableLengthData const& encodedValue) const override;
  ObjectInstanceHandle decodeObjectInstanceHandle(
      VariableLengthData const& encodedValue) const override;
  AttributeHandle decodeAttributeHandle(VariableLengthData const& encodedValue) const override;
  ParameterHandle decodeParameterHandle(VariableLengthData const& encodedValue) const override;
  DimensionHandle decodeDimensionHandle(VariableLengthData const& encodedValue) const override;
  MessageRetractionHandle decodeMessageRetractionHandle(
      VariableLengthData const& encodedValue) const override;
  RegionHandle decodeRegionHandle(VariableLengthData const& encodedValue) const override;

 private:
  // FederateCallbacks: the core's callbacks, passed on in the API's types.
  void receiveInteraction(std::uint32_t cls, const HandleValues& params, ValueView tag) override;
  void nameReservation(const std::wstring& name, bool succeeded) override;
  void discoverInstance(InstanceHandle instance, std::uint32_t cls,
                        const std::wstring& name) override;
  void reflectAttributes(InstanceHandle instance, const HandleValues& attributes,
                         ValueView tag) override;
  void removeInstance(InstanceHandle instance, ValueView tag) override;
  void provideAttributes(InstanceHandle instance, const HandleSet& attributes,
                         ValueView tag) override;

  // Runs a core service with its faults turned into the API's exceptions; with
  // HLA_IMMEDIATE under the lock the callback thread holds while it delivers.
  template <class F>
  auto call(const wchar_t* operation, F&& f) -> decltype(f());
  // The name the core understands: the federation's name placed where connect said.
  std::wstring federationUrl(std::wstring const& name) const;
  void create(std::wstring const& name, FddModel model, std::wstring const& timeName);
  FederateHandle join(std::wstring const& federateType, std::wstring const& federation,
                      std::vector<std::wstring> const& modules);
  void startCallbackThread();
  void stopCallbackThread();

  FederateCore core_;
  FederateAmbassador* federate_ = nullptr;
  std::wstring place_;  // "", "thread://" or "rti://host:port"
  ResignAction automaticResign_ = CANCEL_THEN_DELETE_THEN_DIVEST;
  bool immediate_ = false;
  std::recursive_mutex lock_;  // taken only with HLA_IMMEDIATE
  std::thread callbackThread_;
  std::atomic<unsigned> generation_{0};

  HandleValues txParams_;
  HandleValues txAttributes_;
  HandleSet txHandles_;
  ParameterHandleValueMap rxParams_;
  AttributeHandleValueMap rxAttributes_;
  AttributeHandleSet rxHandles_;
  VariableLengthData rxTag_;
};

}  // namespace vcrti::evolved

#endif
