#include "unsupported_services.h"

#include "core_types.h"

namespace vcrti::evolved {

void UnsupportedServices::requireConnected(const wchar_t* operation) const {
  if (!connected_)
    throw NotConnected(std::wstring(operation) + L": this ambassador is not connected");
}

void UnsupportedServices::notSupported(const wchar_t* operation) const {
  requireConnected(operation);
  throw RTIinternalError(unsupportedService(operation));
}

void UnsupportedServices::listFederationExecutions() {
  notSupported(L"listFederationExecutions");
}

void UnsupportedServices::registerFederationSynchronizationPoint(std::wstring const&,
                                                                 VariableLengthData const&) {
  notSupported(L"registerFederationSynchronizationPoint");
}

void UnsupportedServices::registerFederationSynchronizationPoint(std::wstring const&,
                                                                 VariableLengthData const&,
                                                                 FederateHandleSet const&) {
  notSupported(L"registerFederationSynchronizationPoint");
}

void UnsupportedServices::synchronizationPointAchieved(std::wstring const&, bool) {
  notSupported(L"synchronizationPointAchieved");
}

void UnsupportedServices::requestFederationSave(std::wstring const&) {
  notSupported(L"requestFederationSave");
}

void UnsupportedServices::requestFederationSave(std::wstring const&, LogicalTime const&) {
  notSupported(L"requestFederationSave");
}

void UnsupportedServices::federateSaveBegun() {
  notSupported(L"federateSaveBegun");
}

void UnsupportedServices::federateSaveComplete() {
  notSupported(L"federateSaveComplete");
}

void UnsupportedServices::federateSaveNotComplete() {
  notSupported(L"federateSaveNotComplete");
}

void UnsupportedServices::abortFederationSave() {
  notSupported(L"abortFederationSave");
}

void UnsupportedServices::queryFederationSaveStatus() {
  notSupported(L"queryFederationSaveStatus");
}

void UnsupportedServices::requestFederationRestore(std::wstring const&) {
  notSupported(L"requestFederationRestore");
}

void UnsupportedServices::federateRestoreComplete() {
  notSupported(L"federateRestoreComplete");
}

void UnsupportedServices::federateRestoreNotComplete() {
  notSupported(L"federateRestoreNotComplete");
}

void UnsupportedServices::abortFederationRestore() {
  notSupported(L"abortFederationRestore");
}

void UnsupportedServices::queryFederationRestoreStatus() {
  notSupported(L"queryFederationRestoreStatus");
}

void UnsupportedServices::releaseObjectInstanceName(std::wstring const&) {
  notSupported(L"releaseObjectInstanceName");
}

void UnsupportedServices::reserveMultipleObjectInstanceName(std::set<std::wstring> const&) {
  notSupported(L"reserveMultipleObjectInstanceName");
}

void UnsupportedServices::releaseMultipleObjectInstanceName(std::set<std::wstring> const&) {
  notSupported(L"releaseMultipleObjectInstanceName");
}

MessageRetractionHandle UnsupportedServices::updateAttributeValues(ObjectInstanceHandle,
                                                                   AttributeHandleValueMap const&,
                                                                   VariableLengthData const&,
                                                                   LogicalTime const&) {
  notSupported(L"updateAttributeValues");
}

MessageRetractionHandle UnsupportedServices::sendInteraction(InteractionClassHandle,
                                                             ParameterHandleValueMap const&,
                                                             VariableLengthData const&,
                                                             LogicalTime const&) {
  notSupported(L"sendInteraction");
}

MessageRetractionHandle UnsupportedServices::deleteObjectInstance(ObjectInstanceHandle,
                                                                  VariableLengthData const&,
                                                                  LogicalTime const&) {
  notSupported(L"deleteObjectInstance");
}

void UnsupportedServices::requestAttributeTransportationTypeChange(ObjectInstanceHandle,
                                                                   AttributeHandleSet const&,
                                                                   TransportationType) {
  notSupported(L"requestAttributeTransportationTypeChange");
}

void UnsupportedServices::queryAttributeTransportationType(ObjectInstanceHandle, AttributeHandle) {
  notSupported(L"queryAttributeTransportationType");
}

void UnsupportedServices::requestInteractionTransportationTypeChange(InteractionClassHandle,
                                                                     TransportationType) {
  notSupported(L"requestInteractionTransportationTypeChange");
}

void UnsupportedServices::queryInteractionTransportationType(FederateHandle,
                                                             InteractionClassHandle) {
  notSupported(L"queryInteractionTransportationType");
}

void UnsupportedServices::unconditionalAttributeOwnershipDivestiture(ObjectInstanceHandle,
                                                                     AttributeHandleSet const&) {
  notSupported(L"unconditionalAttributeOwnershipDivestiture");
}

void UnsupportedServices::negotiatedAttributeOwnershipDivestiture(ObjectInstanceHandle,
                                                                  AttributeHandleSet const&,
                                                                  VariableLengthData const&) {
  notSupported(L"negotiatedAttributeOwnershipDivestiture");
}

void UnsupportedServices::confirmDivestiture(ObjectInstanceHandle, AttributeHandleSet const&,
                                             VariableLengthData const&) {
  notSupported(L"confirmDivestiture");
}

void UnsupportedServices::attributeOwnershipAcquisition(ObjectInstanceHandle,
                                                        AttributeHandleSet const&,
                                                        VariableLengthData const&) {
  notSupported(L"attributeOwnershipAcquisition");
}

void UnsupportedServices::attributeOwnershipAcquisitionIfAvailable(ObjectInstanceHandle,
                                                                   AttributeHandleSet const&) {
  notSupported(L"attributeOwnershipAcquisitionIfAvailable");
}

void UnsupportedServices::attributeOwnershipReleaseDenied(ObjectInstanceHandle,
                                                          AttributeHandleSet const&) {
  notSupported(L"attributeOwnershipReleaseDenied");
}

void UnsupportedServices::attributeOwnershipDivestitureIfWanted(ObjectInstanceHandle,
                                                                AttributeHandleSet const&,
                                                                AttributeHandleSet&) {
  notSupported(L"attributeOwnershipDivestitureIfWanted");
}

void UnsupportedServices::cancelNegotiatedAttributeOwnershipDivestiture(ObjectInstanceHandle,
                                                                        AttributeHandleSet const&) {
  notSupported(L"cancelNegotiatedAttributeOwnershipDivestiture");
}

void UnsupportedServices::cancelAttributeOwnershipAcquisition(ObjectInstanceHandle,
                                                              AttributeHandleSet const&) {
  notSupported(L"cancelAttributeOwnershipAcquisition");
}

void UnsupportedServices::queryAttributeOwnership(ObjectInstanceHandle, AttributeHandle) {
  notSupported(L"queryAttributeOwnership");
}

bool UnsupportedServices::isAttributeOwnedByFederate(ObjectInstanceHandle, AttributeHandle) {
  notSupported(L"isAttributeOwnedByFederate");
}

void UnsupportedServices::enableTimeRegulation(LogicalTimeInterval const&) {
  notSupported(L"enableTimeRegulation");
}

void UnsupportedServices::disableTimeRegulation() {
  notSupported(L"disableTimeRegulation");
}

void UnsupportedServices::enableTimeConstrained() {
  notSupported(L"enableTimeConstrained");
}

void UnsupportedServices::disableTimeConstrained() {
  notSupported(L"disableTimeConstrained");
}

void UnsupportedServices::timeAdvanceRequest(LogicalTime const&) {
  notSupported(L"timeAdvanceRequest");
}

void UnsupportedServices::timeAdvanceRequestAvailable(LogicalTime const&) {
  notSupported(L"timeAdvanceRequestAvailable");
}

void UnsupportedServices::nextMessageRequest(LogicalTime const&) {
  notSupported(L"nextMessageRequest");
}

void UnsupportedServices::nextMessageRequestAvailable(LogicalTime const&) {
  notSupported(L"nextMessageRequestAvailable");
}

void UnsupportedServices::flushQueueRequest(LogicalTime const&) {
  notSupported(L"flushQueueRequest");
}

void UnsupportedServices::enableAsynchronousDelivery() {
  notSupported(L"enableAsynchronousDelivery");
}

void UnsupportedServices::disableAsynchronousDelivery() {
  notSupported(L"disableAsynchronousDelivery");
}

bool UnsupportedServices::queryGALT(LogicalTime&) {
  notSupported(L"queryGALT");
}

void UnsupportedServices::queryLogicalTime(LogicalTime&) {
  notSupported(L"queryLogicalTime");
}

bool UnsupportedServices::queryLITS(LogicalTime&) {
  notSupported(L"queryLITS");
}

void UnsupportedServices::modifyLookahead(LogicalTimeInterval const&) {
  notSupported(L"modifyLookahead");
}

void UnsupportedServices::queryLookahead(LogicalTimeInterval&) {
  notSupported(L"queryLookahead");
}

void UnsupportedServices::retract(MessageRetractionHandle) {
  notSupported(L"retract");
}

void UnsupportedServices::changeAttributeOrderType(ObjectInstanceHandle, AttributeHandleSet const&,
                                                   OrderType) {
  notSupported(L"changeAttributeOrderType");
}

void UnsupportedServices::changeInteractionOrderType(InteractionClassHandle, OrderType) {
  notSupported(L"changeInteractionOrderType");
}

RegionHandle UnsupportedServices::createRegion(DimensionHandleSet const&) {
  notSupported(L"createRegion");
}

void UnsupportedServices::commitRegionModifications(RegionHandleSet const&) {
  notSupported(L"commitRegionModifications");
}

void UnsupportedServices::deleteRegion(RegionHandle const&) {
  notSupported(L"deleteRegion");
}

ObjectInstanceHandle UnsupportedServices::registerObjectInstanceWithRegions(
    ObjectClassHandle, AttributeHandleSetRegionHandleSetPairVector const&) {
  notSupported(L"registerObjectInstanceWithRegions");
}

ObjectInstanceHandle UnsupportedServices::registerObjectInstanceWithRegions(
    ObjectClassHandle, AttributeHandleSetRegionHandleSetPairVector const&, std::wstring const&) {
  notSupported(L"registerObjectInstanceWithRegions");
}

void UnsupportedServices::associateRegionsForUpdates(
    ObjectInstanceHandle, AttributeHandleSetRegionHandleSetPairVector const&) {
  notSupported(L"associateRegionsForUpdates");
}

void UnsupportedServices::unassociateRegionsForUpdates(
    ObjectInstanceHandle, AttributeHandleSetRegionHandleSetPairVector const&) {
  notSupported(L"unassociateRegionsForUpdates");
}

void UnsupportedServices::subscribeObjectClassAttributesWithRegions(
    ObjectClassHandle, AttributeHandleSetRegionHandleSetPairVector const&, bool,
    std::wstring const&) {
  notSupported(L"subscribeObjectClassAttributesWithRegions");
}

void UnsupportedServices::unsubscribeObjectClassAttributesWithRegions(
    ObjectClassHandle, AttributeHandleSetRegionHandleSetPairVector const&) {
  notSupported(L"unsubscribeObjectClassAttributesWithRegions");
}

void UnsupportedServices::subscribeInteractionClassWithRegions(InteractionClassHandle,
                                                               RegionHandleSet const&, bool) {
  notSupported(L"subscribeInteractionClassWithRegions");
}

void UnsupportedServices::unsubscribeInteractionClassWithRegions(InteractionClassHandle,
                                                                 RegionHandleSet const&) {
  notSupported(L"unsubscribeInteractionClassWithRegions");
}

void UnsupportedServices::sendInteractionWithRegions(InteractionClassHandle,
                                                     ParameterHandleValueMap const&,
                                                     RegionHandleSet const&,
                                                     VariableLengthData const&) {
  notSupported(L"sendInteractionWithRegions");
}

MessageRetractionHandle UnsupportedServices::sendInteractionWithRegions(
    InteractionClassHandle, ParameterHandleValueMap const&, RegionHandleSet const&,
    VariableLengthData const&, LogicalTime const&) {
  notSupported(L"sendInteractionWithRegions");
}

void UnsupportedServices::requestAttributeValueUpdateWithRegions(
    ObjectClassHandle, AttributeHandleSetRegionHandleSetPairVector const&,
    VariableLengthData const&) {
  notSupported(L"requestAttributeValueUpdateWithRegions");
}

FederateHandle UnsupportedServices::getFederateHandle(std::wstring const&) {
  notSupported(L"getFederateHandle");
}

std::wstring UnsupportedServices::getFederateName(FederateHandle) {
  notSupported(L"getFederateName");
}

double UnsupportedServices::getUpdateRateValue(std::wstring const&) {
  notSupported(L"getUpdateRateValue");
}

double UnsupportedServices::getUpdateRateValueForAttribute(ObjectInstanceHandle, AttributeHandle) {
  notSupported(L"getUpdateRateValueForAttribute");
}

DimensionHandleSet UnsupportedServices::getAvailableDimensionsForClassAttribute(ObjectClassHandle,
                                                                                AttributeHandle) {
  notSupported(L"getAvailableDimensionsForClassAttribute");
}

DimensionHandleSet UnsupportedServices::getAvailableDimensionsForInteractionClass(
    InteractionClassHandle) {
  notSupported(L"getAvailableDimensionsForInteractionClass");
}

DimensionHandle UnsupportedServices::getDimensionHandle(std::wstring const&) {
  notSupported(L"getDimensionHandle");
}

std::wstring UnsupportedServices::getDimensionName(DimensionHandle) {
  notSupported(L"getDimensionName");
}

unsigned long UnsupportedServices::getDimensionUpperBound(DimensionHandle) {
  notSupported(L"getDimensionUpperBound");
}

DimensionHandleSet UnsupportedServices::getDimensionHandleSet(RegionHandle) {
  notSupported(L"getDimensionHandleSet");
}

RangeBounds UnsupportedServices::getRangeBounds(RegionHandle, DimensionHandle) {
  notSupported(L"getRangeBounds");
}

void UnsupportedServices::setRangeBounds(RegionHandle, DimensionHandle, RangeBounds const&) {
  notSupported(L"setRangeBounds");
}

void UnsupportedServices::enableObjectClassRelevanceAdvisorySwitch() {
  notSupported(L"enableObjectClassRelevanceAdvisorySwitch");
}

void UnsupportedServices::disableObjectClassRelevanceAdvisorySwitch() {
  notSupported(L"disableObjectClassRelevanceAdvisorySwitch");
}

void UnsupportedServices::enableAttributeRelevanceAdvisorySwitch() {
  notSupported(L"enableAttributeRelevanceAdvisorySwitch");
}

void UnsupportedServices::disableAttributeRelevanceAdvisorySwitch() {
  notSupported(L"disableAttributeRelevanceAdvisorySwitch");
}

void UnsupportedServices::enableAttributeScopeAdvisorySwitch() {
  notSupported(L"enableAttributeScopeAdvisorySwitch");
}

void UnsupportedServices::disableAttributeScopeAdvisorySwitch() {
  notSupported(L"disableAttributeScopeAdvisorySwitch");
}

void UnsupportedServices::enableInteractionRelevanceAdvisorySwitch() {
  notSupported(L"enableInteractionRelevanceAdvisorySwitch");
}

void UnsupportedServices::disableInteractionRelevanceAdvisorySwitch() {
  notSupported(L"disableInteractionRelevanceAdvisorySwitch");
}

RTI_UNIQUE_PTR<LogicalTimeFactory> UnsupportedServices::getTimeFactory() const {
  notSupported(L"getTimeFactory");
}

}  // namespace vcrti::evolved
