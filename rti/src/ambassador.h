// The 1516-2000 API over the federate core: translates the API's handles, values and
// callbacks to the core's and back, and the core's faults to the API's exceptions. No
// rule of the RTI lives here.
#ifndef VCRTI_AMBASSADOR_H
#define VCRTI_AMBASSADOR_H

#include "federate_core.h"
#include "unsupported_services.h"

namespace vcrti {

class Ambassador final : public UnsupportedServices, private FederateCallbacks {
 public:
  Ambassador() = default;
  ~Ambassador() override = default;

  void createFederationExecution(std::wstring const& federationExecutionName,
                                 std::wstring const& fullPathNameToTheFDDfile,
                                 std::wstring const& logicalTimeImplementationName = L"") override;
  void destroyFederationExecution(std::wstring const& federationExecutionName) override;
  FederateHandle joinFederationExecution(std::wstring const& federateType,
                                         std::wstring const& federationExecutionName,
                                         FederateAmbassador& federateAmbassador) override;
  void resignFederationExecution(ResignAction resignAction) override;

  void publishInteractionClass(InteractionClassHandle theInteraction) override;
  void unpublishInteractionClass(InteractionClassHandle theInteraction) override;
  void subscribeInteractionClass(InteractionClassHandle theClass, bool active) override;
  void unsubscribeInteractionClass(InteractionClassHandle theClass) override;
  void publishObjectClassAttributes(ObjectClassHandle theClass,
                                    AttributeHandleSet const& attributeList) override;
  void unpublishObjectClass(ObjectClassHandle theClass) override;
  void unpublishObjectClassAttributes(ObjectClassHandle theClass,
                                      AttributeHandleSet const& attributeList) override;
  void subscribeObjectClassAttributes(ObjectClassHandle theClass,
                                      AttributeHandleSet const& attributeList,
                                      bool active) override;
  void unsubscribeObjectClass(ObjectClassHandle theClass) override;
  void unsubscribeObjectClassAttributes(ObjectClassHandle theClass,
                                        AttributeHandleSet const& attributeList) override;

  // The time-stamped forms stay the refusing ones.
  using UnsupportedServices::deleteObjectInstance;
  using UnsupportedServices::sendInteraction;
  using UnsupportedServices::updateAttributeValues;
  void sendInteraction(InteractionClassHandle theInteraction,
                       ParameterHandleValueMap const& theParameterValues,
                       VariableLengthData const& theUserSuppliedTag) override;
  void reserveObjectInstanceName(std::wstring const& theObjectInstanceName) override;
  ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass) override;
  ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass,
                                              std::wstring const& theObjectInstanceName) override;
  void updateAttributeValues(ObjectInstanceHandle theObject,
                             AttributeHandleValueMap const& theAttributeValues,
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

  ObjectClassHandle getObjectClassHandle(std::wstring const& theName) override;
  std::wstring getObjectClassName(ObjectClassHandle theHandle) override;
  AttributeHandle getAttributeHandle(ObjectClassHandle whichClass,
                                     std::wstring const& theAttributeName) override;
  std::wstring getAttributeName(ObjectClassHandle whichClass, AttributeHandle theHandle) override;
  InteractionClassHandle getInteractionClassHandle(std::wstring const& theName) override;
  std::wstring getInteractionClassName(InteractionClassHandle theHandle) override;
  ParameterHandle getParameterHandle(InteractionClassHandle whichClass,
                                     std::wstring const& theName) override;
  std::wstring getParameterName(InteractionClassHandle whichClass,
                                ParameterHandle theHandle) override;
  ObjectInstanceHandle getObjectInstanceHandle(std::wstring const& theName) override;
  std::wstring getObjectInstanceName(ObjectInstanceHandle theHandle) override;
  ObjectClassHandle getKnownObjectClassHandle(ObjectInstanceHandle theObject) override;
  TransportationType getTransportationType(std::wstring const& transportationName) override;
  std::wstring getTransportationName(TransportationType transportationType) override;
  OrderType getOrderType(std::wstring const& orderName) override;
  std::wstring getOrderName(OrderType orderType) override;
  unsigned long normalizeFederateHandle(FederateHandle theFederateHandle) override;
  unsigned long normalizeServiceGroup(ServiceGroupIndicator theServiceGroup) override;

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

  FederateCore core_;
  FederateAmbassador* federate_ = nullptr;
  // Reused from one call to the next so that a steady stream does not allocate; the
  // send side's is apart from the update side's, as one thread may send interactions
  // while another evokes.
  HandleValues txParams_;
  HandleValues txAttributes_;
  HandleSet txHandles_;
  ParameterHandleValueMap rxParams_;
  AttributeHandleValueMap rxAttributes_;
  AttributeHandleSet rxHandles_;
  VariableLengthData rxTag_;
};

}  // namespace vcrti

#endif
