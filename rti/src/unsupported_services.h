// Every service of the API, each refusing with RTIinternalError. The ambassador derives
// from this and overrides the services that this RTI provides, so an operation it lacks
// fails loudly and by name instead of silently doing nothing.
#ifndef VCRTI_UNSUPPORTED_SERVICES_H
#define VCRTI_UNSUPPORTED_SERVICES_H

#include <RTI/RTIambassador.h>

namespace vcrti {

using namespace rti1516;

class UnsupportedServices : public RTIambassador {
 public:
  void createFederationExecution(std::wstring const& federationExecutionName,
                                 std::wstring const& fullPathNameToTheFDDfile) override;
  void destroyFederationExecution(std::wstring const& federationExecutionName) override;
  FederateHandle joinFederationExecution(std::wstring const& federateType,
                                         std::wstring const& federationExecutionName,
                                         FederateAmbassador& federateAmbassador) override;
  void resignFederationExecution(ResignAction resignAction) override;
  void registerFederationSynchronizationPoint(
      std::wstring const& label, VariableLengthData const& theUserSuppliedTag) override;
  void registerFederationSynchronizationPoint(std::wstring const& label,
                                              VariableLengthData const& theUserSuppliedTag,
                                              FederateHandleSet const& synchronizationSet) override;
  void synchronizationPointAchieved(std::wstring const& label) override;
  void requestFederationSave(std::wstring const& label) override;
  void requestFederationSave(std::wstring const& label, LogicalTime const& theTime) override;
  void federateSaveBegun() override;
  void federateSaveComplete() override;
  void federateSaveNotComplete() override;
  void queryFederationSaveStatus() override;
  void requestFederationRestore(std::wstring const& label) override;
  void federateRestoreComplete() override;
  void federateRestoreNotComplete() override;
  void queryFederationRestoreStatus() override;
  void publishObjectClassAttributes(ObjectClassHandle theClass,
                                    AttributeHandleSet const& attributeList) override;
  void unpublishObjectClass(ObjectClassHandle theClass) override;
  void unpublishObjectClassAttributes(ObjectClassHandle theClass,
                                      AttributeHandleSet const& attributeList) override;
  void publishInteractionClass(InteractionClassHandle theInteraction) override;
  void unpublishInteractionClass(InteractionClassHandle theInteraction) override;
  void subscribeObjectClassAttributes(ObjectClassHandle theClass,
                                      AttributeHandleSet const& attributeList,
                                      bool active) override;
  void unsubscribeObjectClass(ObjectClassHandle theClass) override;
  void unsubscribeObjectClassAttributes(ObjectClassHandle theClass,
                                        AttributeHandleSet const& attributeList) override;
  void subscribeInteractionClass(InteractionClassHandle theClass, bool active) override;
  void unsubscribeInteractionClass(InteractionClassHandle theClass) override;
  void reserveObjectInstanceName(std::wstring const& theObjectInstanceName) override;
  ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass) override;
  ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass,
                                              std::wstring const& theObjectInstanceName) override;
  void updateAttributeValues(ObjectInstanceHandle theObject,
                             AttributeHandleValueMap const& theAttributeValues,
                             VariableLengthData const& theUserSuppliedTag) override;
  MessageRetractionHandle updateAttributeValues(ObjectInstanceHandle theObject,
                                                AttributeHandleValueMap const& theAttributeValues,
                                                VariableLengthData const& theUserSuppliedTag,
                                                LogicalTime const& theTime) override;
  void sendInteraction(InteractionClassHandle theInteraction,
                       ParameterHandleValueMap const& theParameterValues,
                       VariableLengthData const& theUserSuppliedTag) override;
  MessageRetractionHandle sendInteraction(InteractionClassHandle theInteraction,
                                          ParameterHandleValueMap const& theParameterValues,
                                          VariableLengthData const& theUserSuppliedTag,
                                          LogicalTime const& theTime) override;
  void deleteObjectInstance(ObjectInstanceHandle theObject,
                            VariableLengthData const& theUserSuppliedTag) override;
  MessageRetractionHandle deleteObjectInstance(ObjectInstanceHandle theObject,
                                               VariableLengthData const& theUserSuppliedTag,
                                               LogicalTime const& theTime) override;
  void localDeleteObjectInstance(ObjectInstanceHandle theObject) override;
  void changeAttributeTransportationType(ObjectInstanceHandle theObject,
                                         AttributeHandleSet const& theAttributes,
                                         TransportationType theType) override;
  void changeInteractionTransportationType(InteractionClassHandle theClass,
                                           TransportationType theType) override;
  void requestAttributeValueUpdate(ObjectInstanceHandle theObject,
                                   AttributeHandleSet const& theAttributes,
                                   VariableLengthData const& theUserSuppliedTag) override;
  void requestAttributeValueUpdate(ObjectClassHandle theClass,
                                   AttributeHandleSet const& theAttributes,
                                   VariableLengthData const& theUserSuppliedTag) override;
  void unconditionalAttributeOwnershipDivestiture(ObjectInstanceHandle theObject,
                                                  AttributeHandleSet const& theAttributes) override;
  void negotiatedAttributeOwnershipDivestiture(
      ObjectInstanceHandle theObject, AttributeHandleSet const& theAttributes,
      VariableLengthData const& theUserSuppliedTag) override;
  void confirmDivestiture(ObjectInstanceHandle theObject,
                          AttributeHandleSet const& confirmedAttributes,
                          VariableLengthData const& theUserSuppliedTag) override;
  void attributeOwnershipAcquisition(ObjectInstanceHandle theObject,
                                     AttributeHandleSet const& desiredAttributes,
                                     VariableLengthData const& theUserSuppliedTag) override;
  void attributeOwnershipAcquisitionIfAvailable(
      ObjectInstanceHandle theObject, AttributeHandleSet const& desiredAttributes) override;
  void attributeOwnershipDivestitureIfWanted(ObjectInstanceHandle theObject,
                                             AttributeHandleSet const& theAttributes,
                                             AttributeHandleSet& theDivestedAttributes) override;
  void cancelNegotiatedAttributeOwnershipDivestiture(
      ObjectInstanceHandle theObject, AttributeHandleSet const& theAttributes) override;
  void cancelAttributeOwnershipAcquisition(ObjectInstanceHandle theObject,
                                           AttributeHandleSet const& theAttributes) override;
  void queryAttributeOwnership(ObjectInstanceHandle theObject,
                               AttributeHandle theAttribute) override;
  bool isAttributeOwnedByFederate(ObjectInstanceHandle theObject,
                                  AttributeHandle theAttribute) override;
  void enableTimeRegulation(LogicalTimeInterval const& theLookahead) override;
  void disableTimeRegulation() override;
  void enableTimeConstrained() override;
  void disableTimeConstrained() override;
  void timeAdvanceRequest(LogicalTime const& theTime) override;
  void timeAdvanceRequestAvailable(LogicalTime const& theTime) override;
  void nextMessageRequest(LogicalTime const& theTime) override;
  void nextMessageRequestAvailable(LogicalTime const& theTime) override;
  void flushQueueRequest(LogicalTime const& theTime) override;
  void enableAsynchronousDelivery() override;
  void disableAsynchronousDelivery() override;
  bool queryGALT(LogicalTime& theTime) override;
  void queryLogicalTime(LogicalTime& theTime) override;
  bool queryLITS(LogicalTime& theTime) override;
  void modifyLookahead(LogicalTimeInterval const& theLookahead) override;
  void queryLookahead(LogicalTimeInterval& interval) override;
  void retract(MessageRetractionHandle theHandle) override;
  void changeAttributeOrderType(ObjectInstanceHandle theObject,
                                AttributeHandleSet const& theAttributes,
                                OrderType theType) override;
  void changeInteractionOrderType(InteractionClassHandle theClass, OrderType theType) override;
  RegionHandle createRegion(DimensionHandleSet const& theDimensions) override;
  void commitRegionModifications(RegionHandleSet const& theRegionHandleSet) override;
  void deleteRegion(RegionHandle theRegion) override;
  ObjectInstanceHandle registerObjectInstanceWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const&
                                      theAttributeHandleSetRegionHandleSetPairVector) override;
  ObjectInstanceHandle registerObjectInstanceWithRegions(
      ObjectClassHandle theClass,
      AttributeHandleSetRegionHandleSetPairVector const&
          theAttributeHandleSetRegionHandleSetPairVector,
      std::wstring const& theObjectInstanceName) override;
  void associateRegionsForUpdates(ObjectInstanceHandle theObject,
                                  AttributeHandleSetRegionHandleSetPairVector const&
                                      theAttributeHandleSetRegionHandleSetPairVector) override;
  void unassociateRegionsForUpdates(ObjectInstanceHandle theObject,
                                    AttributeHandleSetRegionHandleSetPairVector const&
                                        theAttributeHandleSetRegionHandleSetPairVector) override;
  void subscribeObjectClassAttributesWithRegions(ObjectClassHandle theClass,
                                                 AttributeHandleSetRegionHandleSetPairVector const&
                                                     theAttributeHandleSetRegionHandleSetPairVector,
                                                 bool active) override;
  void unsubscribeObjectClassAttributesWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const&
                                      theAttributeHandleSetRegionHandleSetPairVector) override;
  void subscribeInteractionClassWithRegions(InteractionClassHandle theClass,
                                            RegionHandleSet const& theRegionSet,
                                            bool active) override;
  void unsubscribeInteractionClassWithRegions(InteractionClassHandle theClass,
                                              RegionHandleSet const& theRegionSet) override;
  void sendInteractionWithRegions(InteractionClassHandle theInteraction,
                                  ParameterHandleValueMap const& theParameterValues,
                                  RegionHandleSet const& theRegionHandleSet,
                                  VariableLengthData const& theUserSuppliedTag) override;
  MessageRetractionHandle sendInteractionWithRegions(
      InteractionClassHandle theInteraction, ParameterHandleValueMap const& theParameterValues,
      RegionHandleSet const& theRegionHandleSet, VariableLengthData const& theUserSuppliedTag,
      LogicalTime const& theTime) override;
  void requestAttributeValueUpdateWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const& theSet,
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
  DimensionHandle getDimensionHandle(std::wstring const& theName) override;
  std::wstring getDimensionName(DimensionHandle theHandle) override;
  unsigned long getDimensionUpperBound(DimensionHandle theHandle) override;
  DimensionHandleSet getAvailableDimensionsForClassAttribute(ObjectClassHandle theClass,
                                                             AttributeHandle theHandle) override;
  ObjectClassHandle getKnownObjectClassHandle(ObjectInstanceHandle theObject) override;
  DimensionHandleSet getAvailableDimensionsForInteractionClass(
      InteractionClassHandle theClass) override;
  TransportationType getTransportationType(std::wstring const& transportationName) override;
  std::wstring getTransportationName(TransportationType transportationType) override;
  OrderType getOrderType(std::wstring const& orderName) override;
  std::wstring getOrderName(OrderType orderType) override;
  void enableObjectClassRelevanceAdvisorySwitch() override;
  void disableObjectClassRelevanceAdvisorySwitch() override;
  void enableAttributeRelevanceAdvisorySwitch() override;
  void disableAttributeRelevanceAdvisorySwitch() override;
  void enableAttributeScopeAdvisorySwitch() override;
  void disableAttributeScopeAdvisorySwitch() override;
  void enableInteractionRelevanceAdvisorySwitch() override;
  void disableInteractionRelevanceAdvisorySwitch() override;
  DimensionHandleSet getDimensionHandleSet(RegionHandle theRegionHandle) override;
  RangeBounds getRangeBounds(RegionHandle theRegionHandle,
                             DimensionHandle theDimensionHandle) override;
  void setRangeBounds(RegionHandle theRegionHandle, DimensionHandle theDimensionHandle,
                      RangeBounds const& theRangeBounds) override;
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

 protected:
  [[noreturn]] static void notSupported(const wchar_t* operation);
};

}  // namespace vcrti

#endif
