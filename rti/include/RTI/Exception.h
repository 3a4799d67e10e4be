#ifndef RTI_Exception_h
#define RTI_Exception_h

#include <RTI/SpecificConfig.h>
#include <iosfwd>
#include <string>

namespace rti1516 {
// Base of everything the RTI throws. what() carries the human-readable reason.
class RTI_EXPORT Exception {
 public:
  Exception();
  Exception(Exception const& rhs);
  Exception& operator=(Exception const& rhs);
  virtual ~Exception();
  virtual std::wstring what() const noexcept = 0;
};

RTI_EXPORT std::wostream& operator<<(std::wostream&, Exception const&);
}  // namespace rti1516

// One list, expanded both here (declarations) and in the library (definitions), so that
// the two can never drift apart. Every exception of the API, including those only the
// time library or other RTIs throw, so that code catching them compiles everywhere.
#define RTI1516_EXCEPTION_LIST(X)                     \
  X(AsynchronousDeliveryAlreadyDisabled)              \
  X(AsynchronousDeliveryAlreadyEnabled)               \
  X(AttributeAcquisitionWasNotCanceled)               \
  X(AttributeAcquisitionWasNotRequested)              \
  X(AttributeAlreadyBeingAcquired)                    \
  X(AttributeAlreadyBeingDivested)                    \
  X(AttributeAlreadyOwned)                            \
  X(AttributeDivestitureWasNotRequested)              \
  X(AttributeNotDefined)                              \
  X(AttributeNotOwned)                                \
  X(AttributeNotPublished)                            \
  X(AttributeNotRecognized)                           \
  X(AttributeNotSubscribed)                           \
  X(AttributeRelevanceAdvisorySwitchIsOff)            \
  X(AttributeRelevanceAdvisorySwitchIsOn)             \
  X(AttributeScopeAdvisorySwitchIsOff)                \
  X(AttributeScopeAdvisorySwitchIsOn)                 \
  X(BadInitializationParameter)                       \
  X(CouldNotCreateLogicalTimeFactory)                 \
  X(CouldNotDecode)                                   \
  X(CouldNotDiscover)                                 \
  X(CouldNotEncode)                                   \
  X(CouldNotInitiateRestore)                          \
  X(CouldNotOpenFDD)                                  \
  X(DeletePrivilegeNotHeld)                           \
  X(ErrorReadingFDD)                                  \
  X(FederateAlreadyExecutionMember)                   \
  X(FederateHasNotBegunSave)                          \
  X(FederateInternalError)                            \
  X(FederateNotExecutionMember)                       \
  X(FederateOwnsAttributes)                           \
  X(FederateServiceInvocationsAreBeingReportedViaMOM) \
  X(FederateUnableToUseTime)                          \
  X(FederatesCurrentlyJoined)                         \
  X(FederationExecutionAlreadyExists)                 \
  X(FederationExecutionDoesNotExist)                  \
  X(IllegalName)                                      \
  X(IllegalTimeArithmetic)                            \
  X(InTimeAdvancingState)                             \
  X(InteractionClassNotDefined)                       \
  X(InteractionClassNotPublished)                     \
  X(InteractionClassNotRecognized)                    \
  X(InteractionClassNotSubscribed)                    \
  X(InteractionParameterNotDefined)                   \
  X(InteractionParameterNotRecognized)                \
  X(InteractionRelevanceAdvisorySwitchIsOff)          \
  X(InteractionRelevanceAdvisorySwitchIsOn)           \
  X(InternalError)                                    \
  X(InvalidAttributeHandle)                           \
  X(InvalidDimensionHandle)                           \
  X(InvalidFederateHandle)                            \
  X(InvalidInteractionClassHandle)                    \
  X(InvalidLogicalTime)                               \
  X(InvalidLogicalTimeInterval)                       \
  X(InvalidLookahead)                                 \
  X(InvalidObjectClassHandle)                         \
  X(InvalidOrderName)                                 \
  X(InvalidOrderType)                                 \
  X(InvalidParameterHandle)                           \
  X(InvalidRangeBound)                                \
  X(InvalidRegion)                                    \
  X(InvalidRegionContext)                             \
  X(InvalidRetractionHandle)                          \
  X(InvalidServiceGroup)                              \
  X(InvalidTransportationName)                        \
  X(InvalidTransportationType)                        \
  X(JoinedFederateIsNotInTimeAdvancingState)          \
  X(LogicalTimeAlreadyPassed)                         \
  X(MessageCanNoLongerBeRetracted)                    \
  X(NameNotFound)                                     \
  X(NoAcquisitionPending)                             \
  X(NoRequestToEnableTimeConstrainedWasPending)       \
  X(NoRequestToEnableTimeRegulationWasPending)        \
  X(ObjectClassNotDefined)                            \
  X(ObjectClassNotKnown)                              \
  X(ObjectClassNotPublished)                          \
  X(ObjectClassRelevanceAdvisorySwitchIsOff)          \
  X(ObjectClassRelevanceAdvisorySwitchIsOn)           \
  X(ObjectInstanceNameInUse)                          \
  X(ObjectInstanceNameNotReserved)                    \
  X(ObjectInstanceNotKnown)                           \
  X(OwnershipAcquisitionPending)                      \
  X(RTIinternalError)                                 \
  X(RegionDoesNotContainSpecifiedDimension)           \
  X(RegionInUseForUpdateOrSubscription)               \
  X(RegionNotCreatedByThisFederate)                   \
  X(RequestForTimeConstrainedPending)                 \
  X(RequestForTimeRegulationPending)                  \
  X(RestoreInProgress)                                \
  X(RestoreNotRequested)                              \
  X(SaveInProgress)                                   \
  X(SaveNotInitiated)                                 \
  X(SpecifiedSaveLabelDoesNotExist)                   \
  X(SynchronizationPointLabelNotAnnounced)            \
  X(TimeConstrainedAlreadyEnabled)                    \
  X(TimeConstrainedIsNotEnabled)                      \
  X(TimeRegulationAlreadyEnabled)                     \
  X(TimeRegulationIsNotEnabled)                       \
  X(UnableToPerformSave)                              \
  X(UnknownName)

// The message is copied when the exception is made; like the API's own declaration, the
// constructor promises not to throw, so a failing copy ends the program rather than
// replacing the exception being thrown.
#define RTI1516_DECLARE_EXCEPTION(A)             \
  class RTI_EXPORT A : public Exception {        \
   public:                                       \
    A(std::wstring const& message) noexcept;     \
    std::wstring what() const noexcept override; \
                                                 \
   private:                                      \
    std::wstring _msg;                           \
  };

namespace rti1516 {
RTI1516_EXCEPTION_LIST(RTI1516_DECLARE_EXCEPTION)
}
#undef RTI1516_DECLARE_EXCEPTION

#endif
