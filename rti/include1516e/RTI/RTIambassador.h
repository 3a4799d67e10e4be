#ifndef RTI_RTIambassador_h
#define RTI_RTIambassador_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <RTI/Typedefs.h>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace rti1516e {
class FederateAmbassador;
class LogicalTime;
class LogicalTimeFactory;
class LogicalTimeInterval;
class RangeBounds;

// The federate's entry to the RTI. One object is one connection, and joined, one
// federate; its operations are meant to be called from one thread at a time.
//
// Each operation reports misuse by throwing one of the classes of RTI/Exception.h. Every
// operation but connect throws NotConnected before connect and after disconnect; this
// RTI throws RTIinternalError, with "<operation> is not supported by this RTI", from the
// operations it does not implement.
class RTI_EXPORT RTIambassador {
 protected:
  RTIambassador() noexcept;

 public:
  virtual ~RTIambassador();

  // ---------------------------------------------------------------- Federation management

  // The local settings designator says where federations live: for this RTI
  // "thread://" (in this process) or "rti://host:port" (a hub); "" is the hub on this
  // host at its default port. A federation name given later may also be a whole
  // thread://Name or rti://host:port/Name, which then wins.
  // ConnectionFailed, InvalidLocalSettingsDesignator, UnsupportedCallbackModel,
  // AlreadyConnected, CallNotAllowedFromWithinCallback, RTIinternalError
  virtual void connect(FederateAmbassador& federateAmbassador, CallbackModel theCallbackModel,
                       std::wstring const& localSettingsDesignator = L"") = 0;
  // FederateIsExecutionMember, CallNotAllowedFromWithinCallback, RTIinternalError
  virtual void disconnect() = 0;

  // The modules are read in order and merged into one object model, together with the
  // standard MIM (or the one given).
  // CouldNotCreateLogicalTimeFactory, InconsistentFDD, ErrorReadingFDD, CouldNotOpenFDD,
  // FederationExecutionAlreadyExists, NotConnected, RTIinternalError
  virtual void createFederationExecution(
      std::wstring const& federationExecutionName, std::wstring const& fomModule,
      std::wstring const& logicalTimeImplementationName = L"") = 0;
  virtual void createFederationExecution(
      std::wstring const& federationExecutionName, std::vector<std::wstring> const& fomModules,
      std::wstring const& logicalTimeImplementationName = L"") = 0;
  // Also DesignatorIsHLAstandardMIM, ErrorReadingMIM, CouldNotOpenMIM
  virtual void createFederationExecutionWithMIM(
      std::wstring const& federationExecutionName, std::vector<std::wstring> const& fomModules,
      std::wstring const& mimModule, std::wstring const& logicalTimeImplementationName = L"") = 0;
  // FederatesCurrentlyJoined, FederationExecutionDoesNotExist, NotConnected, RTIinternalError
  virtual void destroyFederationExecution(std::wstring const& federationExecutionName) = 0;
  // Answered by FederateAmbassador::reportFederationExecutions.
  virtual void listFederationExecutions() = 0;
  // The additional modules must agree with the federation's object model.
  // CouldNotCreateLogicalTimeFactory, FederationExecutionDoesNotExist, InconsistentFDD,
  // ErrorReadingFDD, CouldNotOpenFDD, SaveInProgress, RestoreInProgress,
  // FederateAlreadyExecutionMember, NotConnected, CallNotAllowedFromWithinCallback,
  // RTIinternalError (and FederateNameAlreadyInUse for the named form)
  virtual FederateHandle joinFederationExecution(
      std::wstring const& federateType, std::wstring const& federationExecutionName,
      std::vector<std::wstring> const& additionalFomModules = std::vector<std::wstring>()) = 0;
  virtual FederateHandle joinFederationExecution(
      std::wstring const& federateName, std::wstring const& federateType,
      std::wstring const& federationExecutionName,
      std::vector<std::wstring> const& additionalFomModules = std::vector<std::wstring>()) = 0;
  // InvalidResignAction, OwnershipAcquisitionPending, FederateOwnsAttributes,
  // FederateNotExecutionMember, NotConnected, CallNotAllowedFromWithinCallback,
  // RTIinternalError
  virtual void resignFederationExecution(ResignAction resignAction) = 0;

  virtual void registerFederationSynchronizationPoint(
      std::wstring const& label, VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void registerFederationSynchronizationPoint(
      std::wstring const& label, VariableLengthData const& theUserSuppliedTag,
      FederateHandleSet const& synchronizationSet) = 0;
  virtual void synchronizationPointAchieved(std::wstring const& label,
                                            bool successfully = true) = 0;
  virtual void requestFederationSave(std::wstring const& label) = 0;
  virtual void requestFederationSave(std::wstring const& label, LogicalTime const& theTime) = 0;
  virtual void federateSaveBegun() = 0;
  virtual void federateSaveComplete() = 0;
  virtual void federateSaveNotComplete() = 0;
  virtual void abortFederationSave() = 0;
  virtual void queryFederationSaveStatus() = 0;
  virtual void requestFederationRestore(std::wstring const& label) = 0;
  virtual void federateRestoreComplete() = 0;
  virtual void federateRestoreNotComplete() = 0;
  virtual void abortFederationRestore() = 0;
  virtual void queryFederationRestoreStatus() = 0;

  // --------------------------------------------------------------- Declaration management
  // ObjectClassNotDefined / InteractionClassNotDefined, AttributeNotDefined,
  // FederateNotExecutionMember, NotConnected, RTIinternalError

  virtual void publishObjectClassAttributes(ObjectClassHandle theClass,
                                            AttributeHandleSet const& attributeList) = 0;
  virtual void unpublishObjectClass(ObjectClassHandle theClass) = 0;
  virtual void unpublishObjectClassAttributes(ObjectClassHandle theClass,
                                              AttributeHandleSet const& attributeList) = 0;
  virtual void publishInteractionClass(InteractionClassHandle theInteraction) = 0;
  virtual void unpublishInteractionClass(InteractionClassHandle theInteraction) = 0;
  virtual void subscribeObjectClassAttributes(ObjectClassHandle theClass,
                                              AttributeHandleSet const& attributeList,
                                              bool active = true,
                                              std::wstring const& updateRateDesignator = L"") = 0;
  virtual void unsubscribeObjectClass(ObjectClassHandle theClass) = 0;
  virtual void unsubscribeObjectClassAttributes(ObjectClassHandle theClass,
                                                AttributeHandleSet const& attributeList) = 0;
  virtual void subscribeInteractionClass(InteractionClassHandle theClass, bool active = true) = 0;
  virtual void unsubscribeInteractionClass(InteractionClassHandle theClass) = 0;

  // -------------------------------------------------------------------- Object management

  // IllegalName, FederateNotExecutionMember, NotConnected, RTIinternalError
  virtual void reserveObjectInstanceName(std::wstring const& theObjectInstanceName) = 0;
  virtual void releaseObjectInstanceName(std::wstring const& theObjectInstanceName) = 0;
  virtual void reserveMultipleObjectInstanceName(
      std::set<std::wstring> const& theObjectInstanceNames) = 0;
  virtual void releaseMultipleObjectInstanceName(
      std::set<std::wstring> const& theObjectInstanceNames) = 0;
  // ObjectClassNotPublished, ObjectClassNotDefined, ObjectInstanceNameNotReserved,
  // ObjectInstanceNameInUse, FederateNotExecutionMember, NotConnected, RTIinternalError
  virtual ObjectInstanceHandle registerObjectInstance(ObjectClassHandle theClass) = 0;
  virtual ObjectInstanceHandle registerObjectInstance(
      ObjectClassHandle theClass, std::wstring const& theObjectInstanceName) = 0;
  // AttributeNotOwned, AttributeNotDefined, ObjectInstanceNotKnown,
  // FederateNotExecutionMember, NotConnected, RTIinternalError
  virtual void updateAttributeValues(ObjectInstanceHandle theObject,
                                     AttributeHandleValueMap const& theAttributeValues,
                                     VariableLengthData const& theUserSuppliedTag) = 0;
  virtual MessageRetractionHandle updateAttributeValues(
      ObjectInstanceHandle theObject, AttributeHandleValueMap const& theAttributeValues,
      VariableLengthData const& theUserSuppliedTag, LogicalTime const& theTime) = 0;
  // InteractionClassNotPublished, InteractionParameterNotDefined,
  // InteractionClassNotDefined, FederateNotExecutionMember, NotConnected, RTIinternalError
  virtual void sendInteraction(InteractionClassHandle theInteraction,
                               ParameterHandleValueMap const& theParameterValues,
                               VariableLengthData const& theUserSuppliedTag) = 0;
  virtual MessageRetractionHandle sendInteraction(InteractionClassHandle theInteraction,
                                                  ParameterHandleValueMap const& theParameterValues,
                                                  VariableLengthData const& theUserSuppliedTag,
                                                  LogicalTime const& theTime) = 0;
  // DeletePrivilegeNotHeld, ObjectInstanceNotKnown, FederateNotExecutionMember,
  // NotConnected, RTIinternalError
  virtual void deleteObjectInstance(ObjectInstanceHandle theObject,
                                    VariableLengthData const& theUserSuppliedTag) = 0;
  virtual MessageRetractionHandle deleteObjectInstance(ObjectInstanceHandle theObject,
                                                       VariableLengthData const& theUserSuppliedTag,
                                                       LogicalTime const& theTime) = 0;
  virtual void localDeleteObjectInstance(ObjectInstanceHandle theObject) = 0;
  virtual void requestAttributeValueUpdate(ObjectInstanceHandle theObject,
                                           AttributeHandleSet const& theAttributes,
                                           VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void requestAttributeValueUpdate(ObjectClassHandle theClass,
                                           AttributeHandleSet const& theAttributes,
                                           VariableLengthData const& theUserSuppliedTag) = 0;
  virtual void requestAttributeTransportationTypeChange(ObjectInstanceHandle theObject,
                                                        AttributeHandleSet const& theAttributes,
                                                        TransportationType theType) = 0;
  virtual void queryAttributeTransportationType(ObjectInstanceHandle theObject,
                                                AttributeHandle theAttribute) = 0;
  virtual void requestInteractionTransportationTypeChange(InteractionClassHandle theClass,
                                                          TransportationType theType) = 0;
  virtual void queryInteractionTransportationType(FederateHandle theFederate,
                                                  InteractionClassHandle theInteraction) = 0;

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
  virtual void attributeOwnershipReleaseDenied(ObjectInstanceHandle theObject,
                                               AttributeHandleSet const& theAttributes) = 0;
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
  virtual void deleteRegion(RegionHandle const& theRegion) = 0;
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
      bool active = true, std::wstring const& updateRateDesignator = L"") = 0;
  virtual void unsubscribeObjectClassAttributesWithRegions(
      ObjectClassHandle theClass, AttributeHandleSetRegionHandleSetPairVector const&
                                      theAttributeHandleSetRegionHandleSetPairVector) = 0;
  virtual void subscribeInteractionClassWithRegions(InteractionClassHandle theClass,
                                                    RegionHandleSet const& theRegionHandleSet,
                                                    bool active = true) = 0;
  virtual void unsubscribeInteractionClassWithRegions(
      InteractionClassHandle theClass, RegionHandleSet const& theRegionHandleSet) = 0;
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
  // NameNotFound, Invalid*Handle, *NotDefined, ObjectInstanceNotKnown,
  // FederateNotExecutionMember, NotConnected, RTIinternalError

  virtual ResignAction getAutomaticResignDirective() = 0;
  virtual void setAutomaticResignDirective(ResignAction resignAction) = 0;
  virtual FederateHandle getFederateHandle(std::wstring const& theName) = 0;
  virtual std::wstring getFederateName(FederateHandle theHandle) = 0;
  virtual ObjectClassHandle getObjectClassHandle(std::wstring const& theName) = 0;
  virtual std::wstring getObjectClassName(ObjectClassHandle theHandle) = 0;
  virtual ObjectClassHandle getKnownObjectClassHandle(ObjectInstanceHandle theObject) = 0;
  virtual ObjectInstanceHandle getObjectInstanceHandle(std::wstring const& theName) = 0;
  virtual std::wstring getObjectInstanceName(ObjectInstanceHandle theHandle) = 0;
  virtual AttributeHandle getAttributeHandle(ObjectClassHandle whichClass,
                                             std::wstring const& theAttributeName) = 0;
  virtual std::wstring getAttributeName(ObjectClassHandle whichClass,
                                        AttributeHandle theHandle) = 0;
  virtual double getUpdateRateValue(std::wstring const& updateRateDesignator) = 0;
  virtual double getUpdateRateValueForAttribute(ObjectInstanceHandle theObject,
                                                AttributeHandle theAttribute) = 0;
  virtual InteractionClassHandle getInteractionClassHandle(std::wstring const& theName) = 0;
  virtual std::wstring getInteractionClassName(InteractionClassHandle theHandle) = 0;
  virtual ParameterHandle getParameterHandle(InteractionClassHandle whichClass,
                                             std::wstring const& theName) = 0;
  virtual std::wstring getParameterName(InteractionClassHandle whichClass,
                                        ParameterHandle theHandle) = 0;
  virtual OrderType getOrderType(std::wstring const& orderName) = 0;
  virtual std::wstring getOrderName(OrderType orderType) = 0;
  virtual TransportationType getTransportationType(std::wstring const& transportationName) = 0;
  virtual std::wstring getTransportationName(TransportationType transportationType) = 0;
  virtual DimensionHandleSet getAvailableDimensionsForClassAttribute(ObjectClassHandle theClass,
                                                                     AttributeHandle theHandle) = 0;
  virtual DimensionHandleSet getAvailableDimensionsForInteractionClass(
      InteractionClassHandle theClass) = 0;
  virtual DimensionHandle getDimensionHandle(std::wstring const& theName) = 0;
  virtual std::wstring getDimensionName(DimensionHandle theHandle) = 0;
  virtual unsigned long getDimensionUpperBound(DimensionHandle theHandle) = 0;
  virtual DimensionHandleSet getDimensionHandleSet(RegionHandle theRegionHandle) = 0;
  virtual RangeBounds getRangeBounds(RegionHandle theRegionHandle,
                                     DimensionHandle theDimensionHandle) = 0;
  virtual void setRangeBounds(RegionHandle theRegionHandle, DimensionHandle theDimensionHandle,
                              RangeBounds const& theRangeBounds) = 0;
  virtual unsigned long normalizeFederateHandle(FederateHandle theFederateHandle) = 0;
  virtual unsigned long normalizeServiceGroup(ServiceGroup theServiceGroup) = 0;
  virtual void enableObjectClassRelevanceAdvisorySwitch() = 0;
  virtual void disableObjectClassRelevanceAdvisorySwitch() = 0;
  virtual void enableAttributeRelevanceAdvisorySwitch() = 0;
  virtual void disableAttributeRelevanceAdvisorySwitch() = 0;
  virtual void enableAttributeScopeAdvisorySwitch() = 0;
  virtual void disableAttributeScopeAdvisorySwitch() = 0;
  virtual void enableInteractionRelevanceAdvisorySwitch() = 0;
  virtual void disableInteractionRelevanceAdvisorySwitch() = 0;

  // With HLA_EVOKED: delivers callbacks on the caller's thread; returns whether more are
  // pending. CallNotAllowedFromWithinCallback, RTIinternalError
  virtual bool evokeCallback(double approximateMinimumTimeInSeconds) = 0;
  virtual bool evokeMultipleCallbacks(double approximateMinimumTimeInSeconds,
                                      double approximateMaximumTimeInSeconds) = 0;
  virtual void enableCallbacks() = 0;
  virtual void disableCallbacks() = 0;

  // The factory of the joined federation's time representation.
  // FederateNotExecutionMember, NotConnected, RTIinternalError
  virtual RTI_UNIQUE_PTR<LogicalTimeFactory> getTimeFactory() const = 0;

  // Handles from the eight bytes their encode() writes. CouldNotDecode,
  // FederateNotExecutionMember, NotConnected, RTIinternalError
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
}  // namespace rti1516e

#endif
