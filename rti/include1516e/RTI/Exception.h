#ifndef RTI_Exception_h
#define RTI_Exception_h

#include <RTI/SpecificConfig.h>
#include <iosfwd>
#include <string>

namespace rti1516e {
// Base of everything the RTI throws; what() is the human-readable reason alone.
class RTI_EXPORT Exception {
 public:
  Exception();
  Exception(Exception const& rhs);
  Exception& operator=(Exception const& rhs);
  virtual ~Exception();
  virtual std::wstring what() const noexcept = 0;
};

RTI_EXPORT std::wostream& operator<<(std::wostream&, Exception const&);
}  // namespace rti1516e

// One list, expanded here into declarations and in the library into definitions, so the
// two cannot drift apart. It holds every exception of the API, also those this RTI never
// throws, so that code catching them compiles.
// clang-format off
#define RTI1516E_EXCEPTION_LIST(X) \
  X(AlreadyConnected) \
  X(AsynchronousDeliveryAlreadyDisabled) \
  X(AsynchronousDeliveryAlreadyEnabled) \
  X(AttributeAcquisitionWasNotCanceled) \
  X(AttributeAcquisitionWasNotRequested) \
  X(AttributeAlreadyBeingAcquired) \
  X(AttributeAlreadyBeingChanged) \
  X(AttributeAlreadyBeingDivested) \
  X(AttributeAlreadyOwned) \
  X(AttributeDivestitureWasNotRequested) \
  X(AttributeNotDefined) \
  X(AttributeNotOwned) \
  X(AttributeNotPublished) \
  X(AttributeNotRecognized) \
  X(AttributeNotSubscribed) \
  X(AttributeRelevanceAdvisorySwitchIsOff) \
  X(AttributeRelevanceAdvisorySwitchIsOn) \
  X(AttributeScopeAdvisorySwitchIsOff) \
  X(AttributeScopeAdvisorySwitchIsOn) \
  X(BadInitializationParameter) \
  X(CallNotAllowedFromWithinCallback) \
  X(ConnectionFailed) \
  X(CouldNotCreateLogicalTimeFactory) \
  X(CouldNotDecode) \
  X(CouldNotDiscover) \
  X(CouldNotEncode) \
  X(CouldNotOpenFDD) \
  X(CouldNotOpenMIM) \
  X(CouldNotInitiateRestore) \
  X(DeletePrivilegeNotHeld) \
  X(DesignatorIsHLAstandardMIM) \
  X(RequestForTimeConstrainedPending) \
  X(NoRequestToEnableTimeConstrainedWasPending) \
  X(RequestForTimeRegulationPending) \
  X(NoRequestToEnableTimeRegulationWasPending) \
  X(NoFederateWillingToAcquireAttribute) \
  X(ErrorReadingFDD) \
  X(ErrorReadingMIM) \
  X(FederateAlreadyExecutionMember) \
  X(FederateHandleNotKnown) \
  X(FederateHasNotBegunSave) \
  X(FederateInternalError) \
  X(FederateIsExecutionMember) \
  X(FederateNameAlreadyInUse) \
  X(FederateNotExecutionMember) \
  X(FederateOwnsAttributes) \
  X(FederateServiceInvocationsAreBeingReportedViaMOM) \
  X(FederateUnableToUseTime) \
  X(FederatesCurrentlyJoined) \
  X(FederationExecutionAlreadyExists) \
  X(FederationExecutionDoesNotExist) \
  X(IllegalName) \
  X(IllegalTimeArithmetic) \
  X(InconsistentFDD) \
  X(InteractionClassAlreadyBeingChanged) \
  X(InteractionClassNotDefined) \
  X(InteractionClassNotPublished) \
  X(InteractionClassNotRecognized) \
  X(InteractionClassNotSubscribed) \
  X(InteractionParameterNotDefined) \
  X(InteractionParameterNotRecognized) \
  X(InteractionRelevanceAdvisorySwitchIsOff) \
  X(InteractionRelevanceAdvisorySwitchIsOn) \
  X(InTimeAdvancingState) \
  X(InvalidAttributeHandle) \
  X(InvalidDimensionHandle) \
  X(InvalidFederateHandle) \
  X(InvalidInteractionClassHandle) \
  X(InvalidLocalSettingsDesignator) \
  X(InvalidLogicalTime) \
  X(InvalidLogicalTimeInterval) \
  X(InvalidLookahead) \
  X(InvalidObjectClassHandle) \
  X(InvalidOrderName) \
  X(InvalidOrderType) \
  X(InvalidParameterHandle) \
  X(InvalidRangeBound) \
  X(InvalidRegion) \
  X(InvalidResignAction) \
  X(InvalidRegionContext) \
  X(InvalidMessageRetractionHandle) \
  X(InvalidServiceGroup) \
  X(InvalidTransportationName) \
  X(InvalidTransportationType) \
  X(InvalidUpdateRateDesignator) \
  X(JoinedFederateIsNotInTimeAdvancingState) \
  X(LogicalTimeAlreadyPassed) \
  X(MessageCanNoLongerBeRetracted) \
  X(NameNotFound) \
  X(NameSetWasEmpty) \
  X(NoAcquisitionPending) \
  X(NotConnected) \
  X(ObjectClassNotDefined) \
  X(ObjectClassNotKnown) \
  X(ObjectClassNotPublished) \
  X(ObjectClassRelevanceAdvisorySwitchIsOff) \
  X(ObjectClassRelevanceAdvisorySwitchIsOn) \
  X(ObjectInstanceNameInUse) \
  X(ObjectInstanceNameNotReserved) \
  X(ObjectInstanceNotKnown) \
  X(OwnershipAcquisitionPending) \
  X(RTIinternalError) \
  X(RegionDoesNotContainSpecifiedDimension) \
  X(RegionInUseForUpdateOrSubscription) \
  X(RegionNotCreatedByThisFederate) \
  X(RestoreInProgress) \
  X(RestoreNotInProgress) \
  X(RestoreNotRequested) \
  X(SaveInProgress) \
  X(SaveNotInProgress) \
  X(SaveNotInitiated) \
  X(SpecifiedSaveLabelDoesNotExist) \
  X(SynchronizationPointLabelNotAnnounced) \
  X(TimeConstrainedAlreadyEnabled) \
  X(TimeConstrainedIsNotEnabled) \
  X(TimeRegulationAlreadyEnabled) \
  X(TimeRegulationIsNotEnabled) \
  X(UnableToPerformSave) \
  X(UnknownName) \
  X(UnsupportedCallbackModel) \
  X(InternalError)
// clang-format on

#define RTI1516E_DECLARE_EXCEPTION(Name)                 \
  namespace rti1516e {                                   \
  class RTI_EXPORT Name : public Exception {             \
   public:                                               \
    explicit Name(std::wstring const& message) noexcept; \
    std::wstring what() const noexcept override;         \
                                                         \
   private:                                              \
    std::wstring _msg;                                   \
  };                                                     \
  }
RTI1516E_EXCEPTION_LIST(RTI1516E_DECLARE_EXCEPTION)
#undef RTI1516E_DECLARE_EXCEPTION

#endif
