#ifndef RTI_NullFederateAmbassador_h
#define RTI_NullFederateAmbassador_h

#include <RTI/Exception.h>
#include <RTI/FederateAmbassador.h>

namespace rti1516e {
// Ignores every callback: derive from it and override only what the federate needs.
class RTI_EXPORT NullFederateAmbassador : public FederateAmbassador {
 public:
  NullFederateAmbassador() {}
  ~NullFederateAmbassador() noexcept override {}

  // Federation management
  void connectionLost(std::wstring const& faultDescription) override {}
  void reportFederationExecutions(
      FederationExecutionInformationVector const& theFederationExecutionInformationList) override {}
  void synchronizationPointRegistrationSucceeded(std::wstring const& label) override {}
  void synchronizationPointRegistrationFailed(std::wstring const& label,
                                              SynchronizationPointFailureReason reason) override {}
  void announceSynchronizationPoint(std::wstring const& label,
                                    VariableLengthData const& theUserSuppliedTag) override {}
  void federationSynchronized(std::wstring const& label,
                              FederateHandleSet const& failedToSyncSet) override {}
  void initiateFederateSave(std::wstring const& label) override {}
  void initiateFederateSave(std::wstring const& label, LogicalTime const& theTime) override {}
  void federationSaved() override {}
  void federationNotSaved(SaveFailureReason theSaveFailureReason) override {}
  void federationSaveStatusResponse(
      FederateHandleSaveStatusPairVector const& theFederateStatusVector) override {}
  void requestFederationRestoreSucceeded(std::wstring const& label) override {}
  void requestFederationRestoreFailed(std::wstring const& label) override {}
  void federationRestoreBegun() override {}
  void initiateFederateRestore(std::wstring const& label, std::wstring const& federateName,
                               FederateHandle handle) override {}
  void federationRestored() override {}
  void federationNotRestored(RestoreFailureReason theRestoreFailureReason) override {}
  void federationRestoreStatusResponse(
      FederateRestoreStatusVector const& theFederateRestoreStatusVector) override {}

  // Declaration management
  void startRegistrationForObjectClass(ObjectClassHandle theClass) override {}
  void stopRegistrationForObjectClass(ObjectClassHandle theClass) override {}
  void turnInteractionsOn(InteractionClassHandle theHandle) override {}
  void turnInteractionsOff(InteractionClassHandle theHandle) override {}

  // Object management
  void objectInstanceNameReservationSucceeded(std::wstring const& theObjectInstanceName) override {}
  void objectInstanceNameReservationFailed(std::wstring const& theObjectInstanceName) override {}
  void multipleObjectInstanceNameReservationSucceeded(
      std::set<std::wstring> const& theObjectInstanceNames) override {}
  void multipleObjectInstanceNameReservationFailed(
      std::set<std::wstring> const& theObjectInstanceNames) override {}
  void discoverObjectInstance(ObjectInstanceHandle theObject, ObjectClassHandle theObjectClass,
                              std::wstring const& theObjectInstanceName) override {}
  void discoverObjectInstance(ObjectInstanceHandle theObject, ObjectClassHandle theObjectClass,
                              std::wstring const& theObjectInstanceName,
                              FederateHandle producingFederate) override {}
  void reflectAttributeValues(ObjectInstanceHandle theObject,
                              AttributeHandleValueMap const& theAttributeValues,
                              VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                              TransportationType theType,
                              SupplementalReflectInfo theReflectInfo) override {}
  void reflectAttributeValues(ObjectInstanceHandle theObject,
                              AttributeHandleValueMap const& theAttributeValues,
                              VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                              TransportationType theType, LogicalTime const& theTime,
                              OrderType receivedOrder,
                              SupplementalReflectInfo theReflectInfo) override {}
  void reflectAttributeValues(ObjectInstanceHandle theObject,
                              AttributeHandleValueMap const& theAttributeValues,
                              VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                              TransportationType theType, LogicalTime const& theTime,
                              OrderType receivedOrder, MessageRetractionHandle theHandle,
                              SupplementalReflectInfo theReflectInfo) override {}
  void receiveInteraction(InteractionClassHandle theInteraction,
                          ParameterHandleValueMap const& theParameterValues,
                          VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                          TransportationType theType,
                          SupplementalReceiveInfo theReceiveInfo) override {}
  void receiveInteraction(InteractionClassHandle theInteraction,
                          ParameterHandleValueMap const& theParameterValues,
                          VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                          TransportationType theType, LogicalTime const& theTime,
                          OrderType receivedOrder,
                          SupplementalReceiveInfo theReceiveInfo) override {}
  void receiveInteraction(InteractionClassHandle theInteraction,
                          ParameterHandleValueMap const& theParameterValues,
                          VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                          TransportationType theType, LogicalTime const& theTime,
                          OrderType receivedOrder, MessageRetractionHandle theHandle,
                          SupplementalReceiveInfo theReceiveInfo) override {}
  void removeObjectInstance(ObjectInstanceHandle theObject,
                            VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                            SupplementalRemoveInfo theRemoveInfo) override {}
  void removeObjectInstance(ObjectInstanceHandle theObject,
                            VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                            LogicalTime const& theTime, OrderType receivedOrder,
                            SupplementalRemoveInfo theRemoveInfo) override {}
  void removeObjectInstance(ObjectInstanceHandle theObject,
                            VariableLengthData const& theUserSuppliedTag, OrderType sentOrder,
                            LogicalTime const& theTime, OrderType receivedOrder,
                            MessageRetractionHandle theHandle,
                            SupplementalRemoveInfo theRemoveInfo) override {}
  void attributesInScope(ObjectInstanceHandle theObject,
                         AttributeHandleSet const& theAttributes) override {}
  void attributesOutOfScope(ObjectInstanceHandle theObject,
                            AttributeHandleSet const& theAttributes) override {}
  void provideAttributeValueUpdate(ObjectInstanceHandle theObject,
                                   AttributeHandleSet const& theAttributes,
                                   VariableLengthData const& theUserSuppliedTag) override {}
  void turnUpdatesOnForObjectInstance(ObjectInstanceHandle theObject,
                                      AttributeHandleSet const& theAttributes) override {}
  void turnUpdatesOnForObjectInstance(ObjectInstanceHandle theObject,
                                      AttributeHandleSet const& theAttributes,
                                      std::wstring const& updateRateDesignator) override {}
  void turnUpdatesOffForObjectInstance(ObjectInstanceHandle theObject,
                                       AttributeHandleSet const& theAttributes) override {}
  void confirmAttributeTransportationTypeChange(ObjectInstanceHandle theObject,
                                                AttributeHandleSet theAttributes,
                                                TransportationType theTransportation) override {}
  void reportAttributeTransportationType(ObjectInstanceHandle theObject,
                                         AttributeHandle theAttribute,
                                         TransportationType theTransportation) override {}
  void confirmInteractionTransportationTypeChange(InteractionClassHandle theInteraction,
                                                  TransportationType theTransportation) override {}
  void reportInteractionTransportationType(FederateHandle federateHandle,
                                           InteractionClassHandle theInteraction,
                                           TransportationType theTransportation) override {}

  // Ownership management
  void requestAttributeOwnershipAssumption(ObjectInstanceHandle theObject,
                                           AttributeHandleSet const& offeredAttributes,
                                           VariableLengthData const& theUserSuppliedTag) override {}
  void requestDivestitureConfirmation(ObjectInstanceHandle theObject,
                                      AttributeHandleSet const& releasedAttributes) override {}
  void attributeOwnershipAcquisitionNotification(
      ObjectInstanceHandle theObject, AttributeHandleSet const& securedAttributes,
      VariableLengthData const& theUserSuppliedTag) override {}
  void attributeOwnershipUnavailable(ObjectInstanceHandle theObject,
                                     AttributeHandleSet const& theAttributes) override {}
  void requestAttributeOwnershipRelease(ObjectInstanceHandle theObject,
                                        AttributeHandleSet const& candidateAttributes,
                                        VariableLengthData const& theUserSuppliedTag) override {}
  void confirmAttributeOwnershipAcquisitionCancellation(
      ObjectInstanceHandle theObject, AttributeHandleSet const& theAttributes) override {}
  void informAttributeOwnership(ObjectInstanceHandle theObject, AttributeHandle theAttribute,
                                FederateHandle theOwner) override {}
  void attributeIsNotOwned(ObjectInstanceHandle theObject, AttributeHandle theAttribute) override {}
  void attributeIsOwnedByRTI(ObjectInstanceHandle theObject,
                             AttributeHandle theAttribute) override {}

  // Time management
  void timeRegulationEnabled(LogicalTime const& theFederateTime) override {}
  void timeConstrainedEnabled(LogicalTime const& theFederateTime) override {}
  void timeAdvanceGrant(LogicalTime const& theTime) override {}
  void requestRetraction(MessageRetractionHandle theHandle) override {}
};
}  // namespace rti1516e

#endif
