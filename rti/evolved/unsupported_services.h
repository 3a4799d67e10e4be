// The services of the 1516-2010 API that this RTI does not provide, each refusing by name
// (NotConnected before connect, RTIinternalError after), so that an operation it lacks
// fails loudly instead of silently doing nothing. The ambassador derives from this and
// provides all the others.
#ifndef VCRTI_EVOLVED_UNSUPPORTED_SERVICES_H
#define VCRTI_EVOLVED_UNSUPPORTED_SERVICES_H

#include <RTI/FederateAmbassador.h>
#include <RTI/LogicalTime.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/RTIambassador.h>
#include <RTI/RangeBounds.h>

namespace vcrti::evolved {

using namespace rti1516e;

class UnsupportedServices : public RTIambassador {
 public:
  void listFederationExecutions() override;
  void registerFederationSynchronizationPoint(
      std::wstring const& label, VariableLengthData const& theUserSuppliedTag) override;
  void registerFederationSynchronizationPoint(std::wstring const& label,
                                              VariableLengthData const& theUserSuppliedTag,
                                              FederateHandleSet const& synchronizationSet) override;
  void synchronizationPointAchieved(std::wstring const& label, bool successfully) override;
  void requestFederationSave(std::wstring const& label) override;
  void requestFederationSave(std::wstring const& label, LogicalTime const& theTime) override;
  void federateSaveBegun() override;
  void federateSaveComplete() override;
  void federateSaveNotComplete() override;
  void abortFederationSave() override;
  void queryFederationSaveStatus() override;
  void requestFederationRestore(std::wstring const& label) override;
  void federateRestoreComplete() override;
  void federateRestoreNotComplete() override;
  void abortFederationRestore() override;
  void queryFederationRestoreStatus() override;
  void releaseObjectInstanceName(std::wstring const& theObjectInstanceName) override;
  void reserveMultipleObjectInstanceName(
      std::set<std::wstring> const& theObjectInstanceNames) override;
  void releaseMultipleObjectInstanceName(
      std::set<std::wstring> const& theObjectInstanceNames) override;
  MessageRetractionHandle updateAttributeValues(ObjectInstanceHandle theObject,
                                                AttributeHandleValueMap const& theAttributeValues,
                                                VariableLengthData const& theUserSuppliedTag,
                                                LogicalTime const& theTime) override;
  MessageRetractionHandle sendInteraction(InteractionClassHandle theInteraction,
                                          ParameterHandleValueMap const& theParameterValues,
                                          VariableLengthData const& theUserSuppliedTag,
                                          LogicalTime const& theTime) override;
  MessageRetractionHandle deleteObjectInstance(ObjectInstanceHandle theObject,
                                               VariableLengthData const& theUserSuppliedTag,
                                               LogicalTime const& theTime) override;
  void requestAttributeTransportationTypeChange(ObjectInstanceHandle theObject,
                                                AttributeHandleSet const& theAttributes,
                                                TransportationType theType) override;
  void queryAttributeTransportationType(ObjectInstanceHandle theObject,
                                        AttributeHandle theAttribute) override;
  void requestInteractionTransportationTypeChange(InteractionClassHandle theClass,
                                                  TransportationType theType) override;
  void queryInteractionTransportationType(FederateHandle theFederate,
                                          InteractionClassHandle theInteraction) override;
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
  void attributeOwnershipReleaseDenied(ObjectInstanceHandle theObject,
                                       AttributeHandleSet const& theAttributes) override;
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
  void deleteRegion(RegionHandle const& theRegion) override;
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
                                                 bool active,
                                                 std::wstring const& updateRateDesignator) override;
  void unsubscribeObjectClassAttributesWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const&
                                      theAttributeHandleSetRegionHandleSetPairVector) override;
  void subscribeInteractionClassWithRegions(InteractionClassHandle theClass,
                                            RegionHandleSet const& theRegionHandleSet,
                                            bool active) override;
  void unsubscribeInteractionClassWithRegions(InteractionClassHandle theClass,
                                              RegionHandleSet const& theRegionHandleSet) override;
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
  FederateHandle getFederateHandle(std::wstring const& theName) override;
  std::wstring getFederateName(FederateHandle theHandle) override;
  double getUpdateRateValue(std::wstring const& updateRateDesignator) override;
  double getUpdateRateValueForAttribute(ObjectInstanceHandle theObject,
                                        AttributeHandle theAttribute) override;
  DimensionHandleSet getAvailableDimensionsForClassAttribute(ObjectClassHandle theClass,
                                                             AttributeHandle theHandle) override;
  DimensionHandleSet getAvailableDimensionsForInteractionClass(
      InteractionClassHandle theClass) override;
  DimensionHandle getDimensionHandle(std::wstring const& theName) override;
  std::wstring getDimensionName(DimensionHandle theHandle) override;
  unsigned long getDimensionUpperBound(DimensionHandle theHandle) override;
  DimensionHandleSet getDimensionHandleSet(RegionHandle theRegionHandle) override;
  RangeBounds getRangeBounds(RegionHandle theRegionHandle,
                             DimensionHandle theDimensionHandle) override;
  void setRangeBounds(RegionHandle theRegionHandle, DimensionHandle theDimensionHandle,
                      RangeBounds const& theRangeBounds) override;
  void enableObjectClassRelevanceAdvisorySwitch() override;
  void disableObjectClassRelevanceAdvisorySwitch() override;
  void enableAttributeRelevanceAdvisorySwitch() override;
  void disableAttributeRelevanceAdvisorySwitch() override;
  void enableAttributeScopeAdvisorySwitch() override;
  void disableAttributeScopeAdvisorySwitch() override;
  void enableInteractionRelevanceAdvisorySwitch() override;
  void disableInteractionRelevanceAdvisorySwitch() override;
  RTI_UNIQUE_PTR<LogicalTimeFactory> getTimeFactory() const override;

 protected:
  // Throws NotConnected when not connected, RTIinternalError naming the operation otherwise.
  [[noreturn]] void notSupported(const wchar_t* operation) const;
  void requireConnected(const wchar_t* operation) const;
  bool connected_ = false;
};

}  // namespace vcrti::evolved

#endif
