#ifndef RTI_RTIambassador_h
#define RTI_RTIambassador_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <RTI/Typedefs.h>
#include <string>

namespace rti1516 {
class FederateAmbassador;
class LogicalTime;
class LogicalTimeFactory;
class LogicalTimeInterval;
class RangeBounds;

// The federate's entry to the RTI. One object is one federate connection; its
// operations are meant to be called from one thread at a time.
//
// Each operation reports misuse by throwing one of the classes of RTI/Exception.h (the
// list a conforming RTI may throw is given per operation in the comments). This RTI
// throws RTIinternalError, with "<operation> is not supported by this RTI", from the
// operations it does not implement.
class RTI_EXPORT RTIambassador {
 protected:
  RTIambassador();

 public:
  virtual ~RTIambassador();

  // ---------------------------------------------------------------- Federation management

  // The time implementation name chooses the federation's time representation from the
  // time library ("" for its default).
  // FederationExecutionAlreadyExists, CouldNotOpenFDD, ErrorReadingFDD,
  // CouldNotCreateLogicalTimeFactory, RTIinternalError
  virtual void createFederationExecution(
      std::wstring const& federationExecutionName, std::wstring const& fullPathNameToTheFDDfile,
      std::wstring const& logicalTimeImplementationName = L"") = 0;
  // FederatesCurrentlyJoined, FederationExecutionDoesNotExist, RTIinternalError
  virtual void destroyFederationExecution(std::wstring const& federationExecutionName) = 0;
  // FederateAlreadyExecutionMember, FederationExecutionDoesNotExist, SaveInProgress,
  // RestoreInProgress, RTIinternalError
  virtual FederateHandle joinFederationExecution(std::wstring const& federateType,
                                                 std::wstring const& federationExecutionName,
                                                 FederateAmbassador& federateAmbassador) = 0;
  // OwnershipAcquisitionPending, FederateOwnsAttributes, FederateNotExecutionMember,
  // RTIinternalError
  virtual void resignFederationExecution(ResignAction resignAction) = 0;

  virtual void registerFederationSynchronizationPoint(
      std::wstring const& label, VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void registerFederationSynchronizationPoint(
      std::wstring const& label, VariableLengthData const& theUserSuppliedTag,
      FederateHandleSet const& synchronizationSet) = 0;
  virtual void synchronizationPointAchieved(std::wstring const& label) = 0;

  virtual void requestFederationSave(std::wstring const& label) = 0;
  virtual void requestFederationSave(std::wstring const& label, LogicalTime const& theTime) = 0;
  virtual void federateSaveBegun() = 0;
  virtual void federateSaveComplete() = 0;
  virtual void federateSaveNotComplete() = 0;
  virtual void queryFederationSaveStatus() = 0;
  virtual void requestFederationRestore(std::wstring const& label) = 0;
  virtual void federateRestoreComplete() = 0;
  virtual void federateRestoreNotComplete() = 0;
  virtual void queryFederationRestoreStatus() = 0;

  // --------------------------------------------------------------- Declaration management

  virtual void publishObjectClassAttributes(ObjectClassHandle theClass,
                                            AttributeHandleSet const& attributeList) = 0;
  virtual void unpublishObjectClass(ObjectClassHandle theClass) = 0;
  virtual void unpublishObjectClassAttributes(ObjectClassHandle theClass,
                                              AttributeHandleSet const& attributeList) = 0;

  // InteractionClassNotDefined, FederateNotExecutionMember, SaveInProgress,
  // RestoreInProgress, RTIinternalError
  virtual void publishInteractionClass(InteractionClassHandle theInteraction) = 0;
  // InteractionClassNotDefined, InteractionClassNotPublished, FederateNotExecutionMember,
  // SaveInProgress, RestoreInProgress, RTIinternalError
  virtual void unpublishInteractionClass(InteractionClassHandle theInteraction) = 0;

  virtual void subscribeObjectClassAttributes(ObjectClassHandle theClass,
                                              AttributeHandleSet const& attributeList,
                                              bool active = true) = 0;
  virtual void unsubscribeObjectClass(ObjectClassHandle theClass) = 0;
  virtual void unsubscribeObjectClassAttributes(ObjectClassHandle theClass,
                                                AttributeHandleSet const& attributeList) = 0;

  // InteractionClassNotDefined, FederateServiceInvocationsAreBeingReportedViaMOM,
  // FederateNotExecutionMember, SaveInProgress, RestoreInProgress, RTIinternalError
  virtual void subscribeInteractionClass(InteractionClassHandle theClass, bool active = true) = 0;
  // InteractionClassNotDefined, FederateNotExecutionMember, SaveInProgress,
  // RestoreInProgress, RTIinternalError
  virtual void unsubscribeInteractionClass(InteractionClassHandle theClass) = 0;

  // -------------------------------------------------------------------- Object management

  virtual void reserveObjectInstanceName(std::wstring const& theObjectInstanceName) = 0;
  virtual ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass) = 0;
  virtual ObjectInstanceHandle registerObjectInstance(
      ObjectClassHandle theClass, std::wstring const& theObjectInstanceName) = 0;
  virtual void updateAttributeValues(ObjectInstanceHandle theObject,
                                     AttributeHandleValueMap const& theAttributeValues,
                                     VariableLengthData const& theUserSuppliedTag) = 0;
  virtual MessageRetractionHandle updateAttributeValues(
      ObjectInstanceHandle theObject, AttributeHandleValueMap const& theAttributeValues,
      VariableLengthData const& theUserSuppliedTag, LogicalTime const& theTime) = 0;

  // InteractionClassNotPublished, InteractionClassNotDefined, InteractionParameterNotDefined,
  // FederateNotExecutionMember, SaveInProgress, RestoreInProgress, RTIinternalError
  virtual void sendInteraction(InteractionClassHandle theInteraction,
                               ParameterHandleValueMap const& theParameterValues,
                               VariableLengthData const& theUserSuppliedTag) = 0;
  virtual MessageRetractionHandle sendInteraction(InteractionClassHandle theInteraction,
                                                  ParameterHandleValueMap const& theParameterValues,
                                                  VariableLengthData const& theUserSuppliedTag,
                                                  LogicalTime const& theTime) = 0;

  virtual void deleteObjectInstance(ObjectInstanceHandle theObject,
                                    VariableLengthData const& theUserSuppliedTag) = 0;
  virtual MessageRetractionHandle deleteObjectInstance(ObjectInstanceHandle theObject,
                                                       VariableLengthData const& theUserSuppliedTag,
                                                       LogicalTime const& theTime) = 0;
  virtual void localDeleteObjectInstance(ObjectInstanceHandle theObject) = 0;
  virtual void changeAttributeTransportationType(ObjectInstanceHandle theObject,
                                                 AttributeHandleSet const& theAttributes,
                                                 TransportationType theType) = 0;
  virtual void changeInteractionTransportationType(InteractionClassHandle theClass,
                                                   TransportationType theType) = 0;
  virtual void requestAttributeValueUpdate(ObjectInstanceHandle theObject,
                                           AttributeHandleSet const& theAttributes,
                                           VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void requestAttributeValueUpdate(ObjectClassHandle theClass,
                                           AttributeHandleSet const& theAttributes,
                                           VariableLengthData const& theUserSuppliedTag) = 0;

  // ----------------------------------------------------------------- Ownership management

  virtual void unconditionalAttributeOwnershipDivestiture(
      ObjectInstanceHandle theObject, AttributeHandleSet const& theAttributes) = 0;
  virtual void negotiatedAttributeOwnershipDivestiture(
      ObjectInstanceHandle theObject, AttributeHandleSet const& theAttributes,
      VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void confirmDivestiture(ObjectInstanceHandle theObject,
                                  AttributeHandleSet const& confirmedAttributes,
                                  VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void attributeOwnershipAcquisition(ObjectInstanceHandle theObject,
                                             AttributeHandleSet const& desiredAttributes,
                                             VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void attributeOwnershipAcquisitionIfAvailable(
      ObjectInstanceHandle theObject, AttributeHandleSet const& desiredAttributes) = 0;
  virtual void attributeOwnershipDivestitureIfWanted(ObjectInstanceHandle theObject,
                                                     AttributeHandleSet const& theAttributes,
                                                     AttributeHandleSet& theDivestedAttributes) = 0;
  virtual void cancelNegotiatedAttributeOwnershipDivestiture(
      ObjectInstanceHandle theObject, AttributeHandleSet const& theAttributes) = 0;
  virtual void cancelAttributeOwnershipAcquisition(ObjectInstanceHandle theObject,
                                                   AttributeHandleSet const& theAttributes) = 0;
  virtual void queryAttributeOwnership(ObjectInstanceHandle theObject,
                                       AttributeHandle theAttribute) = 0;
  virtual bool isAttributeOwnedByFederate(ObjectInstanceHandle theObject,
                                          AttributeHandle theAttribute) = 0;

  // ---------------------------------------------------------------------- Time management

  virtual void enableTimeRegulation(LogicalTimeInterval const& theLookahead) = 0;
  virtual void disableTimeRegulation() = 0;
  virtual void enableTimeConstrained() = 0;
  virtual void disableTimeConstrained() = 0;
  virtual void timeAdvanceRequest(LogicalTime const& theTime) = 0;
  virtual void timeAdvanceRequestAvailable(LogicalTime const& theTime) = 0;
  virtual void nextMessageRequest(LogicalTime const& theTime) = 0;
  virtual void nextMessageRequestAvailable(LogicalTime const& theTime) = 0;
  virtual void flushQueueRequest(LogicalTime const& theTime) = 0;
  virtual void enableAsynchronousDelivery() = 0;
  virtual void disableAsynchronousDelivery() = 0;
  virtual bool queryGALT(LogicalTime& theTime) = 0;
  virtual void queryLogicalTime(LogicalTime& theTime) = 0;
  virtual bool queryLITS(LogicalTime& theTime) = 0;
  virtual void modifyLookahead(LogicalTimeInterval const& theLookahead) = 0;
  virtual void queryLookahead(LogicalTimeInterval& interval) = 0;
  virtual void retract(MessageRetractionHandle theHandle) = 0;
  virtual void changeAttributeOrderType(ObjectInstanceHandle theObject,
                                        AttributeHandleSet const& theAttributes,
                                        OrderType theType) = 0;
  virtual void changeInteractionOrderType(InteractionClassHandle theClass, OrderType theType) = 0;

  // ---------------------------------------------------------- Data distribution management

  virtual RegionHandle createRegion(DimensionHandleSet const& theDimensions) = 0;
  virtual void commitRegionModifications(RegionHandleSet const& theRegionHandleSet) = 0;
  virtual void deleteRegion(RegionHandle theRegion) = 0;
  virtual ObjectInstanceHandle registerObjectInstanceWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const&
                                      theAttributeHandleSetRegionHandleSetPairVector) = 0;
  virtual ObjectInstanceHandle registerObjectInstanceWithRegions(
      ObjectClassHandle theClass,
      AttributeHandleSetRegionHandleSetPairVector const&
          theAttributeHandleSetRegionHandleSetPairVector,
      std::wstring const& theObjectInstanceName) = 0;
  virtual void associateRegionsForUpdates(ObjectInstanceHandle theObject,
                                          AttributeHandleSetRegionHandleSetPairVector const&
                                              theAttributeHandleSetRegionHandleSetPairVector) = 0;
  virtual void unassociateRegionsForUpdates(ObjectInstanceHandle theObject,
                                            AttributeHandleSetRegionHandleSetPairVector const&
                                                theAttributeHandleSetRegionHandleSetPairVector) = 0;
  virtual void subscribeObjectClassAttributesWithRegions(
      ObjectClassHandle theClass,
      AttributeHandleSetRegionHandleSetPairVector const&
          theAttributeHandleSetRegionHandleSetPairVector,
      bool active = true) = 0;
  virtual void unsubscribeObjectClassAttributesWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const&
                                      theAttributeHandleSetRegionHandleSetPairVector) = 0;
  virtual void subscribeInteractionClassWithRegions(InteractionClassHandle theClass,
                                                    RegionHandleSet const& theRegionSet,
                                                    bool active = true) = 0;
  virtual void unsubscribeInteractionClassWithRegions(InteractionClassHandle theClass,
                                                      RegionHandleSet const& theRegionSet) = 0;
  virtual void sendInteractionWithRegions(InteractionClassHandle theInteraction,
                                          ParameterHandleValueMap const& theParameterValues,
                                          RegionHandleSet const& theRegionHandleSet,
                                          VariableLengthData const& theUserSuppliedTag) = 0;
  virtual MessageRetractionHandle sendInteractionWithRegions(
      InteractionClassHandle theInteraction, ParameterHandleValueMap const& theParameterValues,
      RegionHandleSet const& theRegionHandleSet, VariableLengthData const& theUserSuppliedTag,
      LogicalTime const& theTime) = 0;
  virtual void requestAttributeValueUpdateWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const& theSet,
      VariableLengthData const& theUserSuppliedTag) = 0;

  // --------------------------------------------------------------------- Support services

  // NameNotFound, FederateNotExecutionMember, RTIinternalError
  virtual ObjectClassHandle getObjectClassHandle(std::wstring const& theName) = 0;
  // InvalidObjectClassHandle, FederateNotExecutionMember, RTIinternalError
  virtual std::wstring getObjectClassName(ObjectClassHandle theHandle) = 0;
  // InvalidObjectClassHandle, NameNotFound, FederateNotExecutionMember, RTIinternalError
  virtual AttributeHandle getAttributeHandle(ObjectClassHandle whichClass,
                                             std::wstring const& theAttributeName) = 0;
  // InvalidObjectClassHandle, InvalidAttributeHandle, AttributeNotDefined,
  // FederateNotExecutionMember, RTIinternalError
  virtual std::wstring getAttributeName(ObjectClassHandle whichClass,
                                        AttributeHandle theHandle) = 0;

  // NameNotFound, FederateNotExecutionMember, RTIinternalError
  virtual InteractionClassHandle getInteractionClassHandle(std::wstring const& theName) = 0;
  // InvalidInteractionClassHandle, FederateNotExecutionMember, RTIinternalError
  virtual std::wstring getInteractionClassName(InteractionClassHandle theHandle) = 0;
  // InvalidInteractionClassHandle, NameNotFound, FederateNotExecutionMember, RTIinternalError
  virtual ParameterHandle getParameterHandle(InteractionClassHandle whichClass,
                                             std::wstring const& theName) = 0;
  // InvalidInteractionClassHandle, InvalidParameterHandle, InteractionParameterNotDefined,
  // FederateNotExecutionMember, RTIinternalError
  virtual std::wstring getParameterName(InteractionClassHandle whichClass,
                                        ParameterHandle theHandle) = 0;

  virtual ObjectInstanceHandle getObjectInstanceHandle(std::wstring const& theName) = 0;
  virtual std::wstring getObjectInstanceName(ObjectInstanceHandle theHandle) = 0;
  virtual DimensionHandle getDimensionHandle(std::wstring const& theName) = 0;
  virtual std::wstring getDimensionName(DimensionHandle theHandle) = 0;
  virtual unsigned long getDimensionUpperBound(DimensionHandle theHandle) = 0;
  virtual DimensionHandleSet getAvailableDimensionsForClassAttribute(ObjectClassHandle theClass,
                                                                     AttributeHandle theHandle) = 0;
  virtual ObjectClassHandle getKnownObjectClassHandle(ObjectInstanceHandle theObject) = 0;
  virtual DimensionHandleSet getAvailableDimensionsForInteractionClass(
      InteractionClassHandle theClass) = 0;

  // InvalidTransportationName / InvalidTransportationType, InvalidOrderName / InvalidOrderType,
  // FederateNotExecutionMember, RTIinternalError
  virtual TransportationType getTransportationType(std::wstring const& transportationName) = 0;
  virtual std::wstring getTransportationName(TransportationType transportationType) = 0;
  virtual OrderType getOrderType(std::wstring const& orderName) = 0;
  virtual std::wstring getOrderName(OrderType orderType) = 0;

  virtual void enableObjectClassRelevanceAdvisorySwitch() = 0;
  virtual void disableObjectClassRelevanceAdvisorySwitch() = 0;
  virtual void enableAttributeRelevanceAdvisorySwitch() = 0;
  virtual void disableAttributeRelevanceAdvisorySwitch() = 0;
  virtual void enableAttributeScopeAdvisorySwitch() = 0;
  virtual void disableAttributeScopeAdvisorySwitch() = 0;
  virtual void enableInteractionRelevanceAdvisorySwitch() = 0;
  virtual void disableInteractionRelevanceAdvisorySwitch() = 0;

  virtual DimensionHandleSet getDimensionHandleSet(RegionHandle theRegionHandle) = 0;
  virtual RangeBounds getRangeBounds(RegionHandle theRegionHandle,
                                     DimensionHandle theDimensionHandle) = 0;
  virtual void setRangeBounds(RegionHandle theRegionHandle, DimensionHandle theDimensionHandle,
                              RangeBounds const& theRangeBounds) = 0;
  virtual unsigned long normalizeFederateHandle(FederateHandle theFederateHandle) = 0;
  virtual unsigned long normalizeServiceGroup(ServiceGroupIndicator theServiceGroup) = 0;

  // Delivers at most one callback, waiting up to the given time for one to arrive.
  // Returns whether more callbacks are pending. FederateNotExecutionMember, RTIinternalError
  virtual bool evokeCallback(double approximateMinimumTimeInSeconds) = 0;
  // Delivers callbacks for at least the minimum time (waiting for them if there are
  // none) and at most the maximum time. Returns whether more callbacks are pending.
  virtual bool evokeMultipleCallbacks(double approximateMinimumTimeInSeconds,
                                      double approximateMaximumTimeInSeconds) = 0;
  virtual void enableCallbacks() = 0;
  virtual void disableCallbacks() = 0;

  // CouldNotDecode, FederateNotExecutionMember, RTIinternalError
  virtual FederateHandle decodeFederateHandle(VariableLengthData const& encodedValue) const = 0;
  virtual ObjectClassHandle decodeObjectClassHandle(
      VariableLengthData const& encodedValue) const = 0;
  virtual InteractionClassHandle decodeInteractionClassHandle(
      VariableLengthData const& encodedValue) const = 0;
  virtual ObjectInstanceHandle decodeObjectInstanceHandle(
      VariableLengthData const& encodedValue) const = 0;
  virtual AttributeHandle decodeAttributeHandle(VariableLengthData const& encodedValue) const = 0;
  virtual ParameterHandle decodeParameterHandle(VariableLengthData const& encodedValue) const = 0;
  virtual DimensionHandle decodeDimensionHandle(VariableLengthData const& encodedValue) const = 0;
  virtual MessageRetractionHandle decodeMessageRetractionHandle(
      VariableLengthData const& encodedValue) const = 0;
  virtual RegionHandle decodeRegionHandle(VariableLengthData const& encodedValue) const = 0;
};
}  // namespace rti1516

#endif
