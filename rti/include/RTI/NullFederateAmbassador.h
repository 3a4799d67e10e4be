#ifndef RTI_NullFederateAmbassador_h
#define RTI_NullFederateAmbassador_h

#include <RTI/Exception.h>
#include <RTI/FederateAmbassador.h>

namespace rti1516 {
// Ignores every callback: derive from it and override only what the federate needs.
class RTI_EXPORT NullFederateAmbassador : public FederateAmbassador {
 public:
  NullFederateAmbassador() {}
  ~NullFederateAmbassador() noexcept override {}

  // Federation management
  virtual void synchronizationPointRegistrationSucceeded(std::wstring const& label) override {}
  virtual void synchronizationPointRegistrationFailed(
      std::wstring const& label, SynchronizationFailureReason reason) override {}
  virtual void announceSynchronizationPoint(std::wstring const& label,
                                            VariableLengthData const& theUserSuppliedTag) override {
  }
  virtual void federationSynchronized(std::wstring const& label) override {}
  virtual void initiateFederateSave(std::wstring const& label) override {}
  virtual void initiateFederateSave(std::wstring const& label,
                                    LogicalTime const& theTime) override {}
  virtual void federationSaved() override {}
  virtual void federationNotSaved(SaveFailureReason theSaveFailureReason) override {}
  virtual void federationSaveStatusResponse(
      FederateHandleSaveStatusPairVector const& theFederateStatusVector) override {}
  virtual void requestFederationRestoreSucceeded(std::wstring const& label) override {}
  virtual void requestFederationRestoreFailed(std::wstring const& label) override {}
  virtual void federationRestoreBegun() override {}
  virtual void initiateFederateRestore(std::wstring const& label, FederateHandle handle) override {}
  virtual void federationRestored() override {}
  virtual void federationNotRestored(RestoreFailureReason theRestoreFailureReason) override {}
  virtual void federationRestoreStatusResponse(
      FederateHandleRestoreStatusPairVector const& theFederateStatusVector) override {}

  // Declaration management
  virtual void startRegistrationForObjectClass(ObjectClassHandle theClass) override {}
  virtual void stopRegistrationForObjectClass(ObjectClassHandle theClass) override {}
  virtual void turnInteractionsOn(InteractionClassHandle theHandle) override {}
  virtual void turnInteractionsOff(InteractionClassHandle theHandle) override {}

  // Object management
  virtual void objectInstanceNameReservationSucceeded(
      std::wstring const& theObjectInstanceName) override {}
  virtual void objectInstanceNameReservationFailed(
      std::wstring const& theObjectInstanceName) override {}
  virtual void discoverObjectInstance(ObjectInstanceHandle theObject,
                                      ObjectClassHandle theObjectClass,
                                      std::wstring const& theObjectInstanceName) override {}

  virtual void reflectAttributeValues(ObjectInstanceHandle theObject,
                                      AttributeHandleValueMap const& theAttributeValues,
                                      VariableLengthData const& theUserSuppliedTag,
                                      OrderType sentOrder, TransportationType theType) override {}
  virtual void reflectAttributeValues(ObjectInstanceHandle theObject,
                                      AttributeHandleValueMap const& theAttributeValues,
                                      VariableLengthData const& theUserSuppliedTag,
                                      OrderType sentOrder, TransportationType theType,
                                      RegionHandleSet const& theSentRegionSet) override {}
  virtual void reflectAttributeValues(ObjectInstanceHandle theObject,
                                      AttributeHandleValueMap const& theAttributeValues,
                                      VariableLengthData const& theUserSuppliedTag,
                                      OrderType sentOrder, TransportationType theType,
                                      LogicalTime const& theTime,
                                      OrderType receivedOrder) override {}
  virtual void reflectAttributeValues(ObjectInstanceHandle theObject,
                                      AttributeHandleValueMap const& theAttributeValues,
                                      VariableLengthData const& theUserSuppliedTag,
                                      OrderType sentOrder, TransportationType theType,
                                      LogicalTime const& theTime, OrderType receivedOrder,
                                      RegionHandleSet const& theSentRegionSet) override {}
  virtual void reflectAttributeValues(ObjectInstanceHandle theObject,
                                      AttributeHandleValueMap const& theAttributeValues,
                                      VariableLengthData const& theUserSuppliedTag,
                                      OrderType sentOrder, TransportationType theType,
                                      LogicalTime const& theTime, OrderType receivedOrder,
                                      MessageRetractionHandle theHandle) override {}
  virtual void reflectAttributeValues(ObjectInstanceHandle theObject,
                                      AttributeHandleValueMap const& theAttributeValues,
                                      VariableLengthData const& theUserSuppliedTag,
                                      OrderType sentOrder, TransportationType theType,
                                      LogicalTime const& theTime, OrderType receivedOrder,
                                      MessageRetractionHandle theHandle,
                                      RegionHandleSet const& theSentRegionSet) override {}

  virtual void receiveInteraction(InteractionClassHandle theInteraction,
                                  ParameterHandleValueMap const& theParameterValues,
                                  VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                                  TransportationType theType) override {}
  virtual void receiveInteraction(InteractionClassHandle theInteraction,
                                  ParameterHandleValueMap const& theParameterValues,
                                  VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                                  TransportationType theType,
                                  RegionHandleSet const& theSentRegionSet) override {}
  virtual void receiveInteraction(InteractionClassHandle theInteraction,
                                  ParameterHandleValueMap const& theParameterValues,
                                  VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                                  TransportationType theType, LogicalTime const& theTime,
                                  OrderType receivedOrder) override {}
  virtual void receiveInteraction(InteractionClassHandle theInteraction,
                                  ParameterHandleValueMap const& theParameterValues,
                                  VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                                  TransportationType theType, LogicalTime const& theTime,
                                  OrderType receivedOrder,
                                  RegionHandleSet const& theSentRegionSet) override {}
  virtual void receiveInteraction(InteractionClassHandle theInteraction,
                                  ParameterHandleValueMap const& theParameterValues,
                                  VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                                  TransportationType theType, LogicalTime const& theTime,
                                  OrderType receivedOrder,
                                  MessageRetractionHandle theHandle) override {}
  virtual void receiveInteraction(InteractionClassHandle theInteraction,
                                  ParameterHandleValueMap const& theParameterValues,
                                  VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                                  TransportationType theType, LogicalTime const& theTime,
                                  OrderType receivedOrder, MessageRetractionHandle theHandle,
                                  RegionHandleSet const& theSentRegionSet) override {}

  virtual void removeObjectInstance(ObjectInstanceHandle theObject,
                                    VariableLengthData const& theUserSuppliedTag,
                                    OrderType sentOrder) override {}
  virtual void removeObjectInstance(ObjectInstanceHandle theObject,
                                    VariableLengthData const& theUserSuppliedTag,
                                    OrderType sentOrder, LogicalTime const& theTime,
                                    OrderType receivedOrder) override {}
  virtual void removeObjectInstance(ObjectInstanceHandle theObject,
                                    VariableLengthData const& theUserSuppliedTag,
                                    OrderType sentOrder, LogicalTime const& theTime,
                                    OrderType receivedOrder,
                                    MessageRetractionHandle theHandle) override {}

  virtual void attributesInScope(ObjectInstanceHandle theObject,
                                 AttributeHandleSet const& theAttributes) override {}
  virtual void attributesOutOfScope(ObjectInstanceHandle theObject,
                                    AttributeHandleSet const& theAttributes) override {}
  virtual void provideAttributeValueUpdate(ObjectInstanceHandle theObject,
                                           AttributeHandleSet const& theAttributes,
                                           VariableLengthData const& theUserSuppliedTag) override {}
  virtual void turnUpdatesOnForObjectInstance(ObjectInstanceHandle theObject,
                                              AttributeHandleSet const& theAttributes) override {}
  virtual void turnUpdatesOffForObjectInstance(ObjectInstanceHandle theObject,
                                               AttributeHandleSet const& theAttributes) override {}

  // Ownership management
  virtual void requestAttributeOwnershipAssumption(
      ObjectInstanceHandle theObject, AttributeHandleSet const& offeredAttributes,
      VariableLengthData const& theUserSuppliedTag) override {}
  virtual void requestDivestitureConfirmation(
      ObjectInstanceHandle theObject, AttributeHandleSet const& releasedAttributes) override {}
  virtual void attributeOwnershipAcquisitionNotification(
      ObjectInstanceHandle theObject, AttributeHandleSet const& securedAttributes,
      VariableLengthData const& theUserSuppliedTag) override {}
  virtual void attributeOwnershipUnavailable(ObjectInstanceHandle theObject,
                                             AttributeHandleSet const& theAttributes) override {}
  virtual void requestAttributeOwnershipRelease(
      ObjectInstanceHandle theObject, AttributeHandleSet const& candidateAttributes,
      VariableLengthData const& theUserSuppliedTag) override {}
  virtual void confirmAttributeOwnershipAcquisitionCancellation(
      ObjectInstanceHandle theObject, AttributeHandleSet const& theAttributes) override {}
  virtual void informAttributeOwnership(ObjectInstanceHandle theObject,
                                        AttributeHandle theAttribute,
                                        FederateHandle theOwner) override {}
  virtual void attributeIsNotOwned(ObjectInstanceHandle theObject,
                                   AttributeHandle theAttribute) override {}
  virtual void attributeIsOwnedByRTI(ObjectInstanceHandle theObject,
                                     AttributeHandle theAttribute) override {}

  // Time management
  virtual void timeRegulationEnabled(LogicalTime const& theFederateTime) override {}
  virtual void timeConstrainedEnabled(LogicalTime const& theFederateTime) override {}
  virtual void timeAdvanceGrant(LogicalTime const& theTime) override {}
  virtual void requestRetraction(MessageRetractionHandle theHandle) override {}
};
}  // namespace rti1516

#endif
