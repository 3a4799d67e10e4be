#include "unsupported_services.h"

#include "core_types.h"

namespace vcrti {

void UnsupportedServices::notSupported(const wchar_t* operation) {
  throw RTIinternalError(unsupportedService(operation));
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

void UnsupportedServices::synchronizationPointAchieved(std::wstring const&) {
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

void UnsupportedServices::queryFederationRestoreStatus() {
  notSupported(L"queryFederationRestoreStatus");
}

void UnsupportedServices::publishObjectClassAttributes(ObjectClassHandle,
                                                       AttributeHandleSet const&) {
  notSupported(L"publishObjectClassAttributes");
}

void UnsupportedServices::unpublishObjectClass(ObjectClassHandle) {
  notSupported(L"unpublishObjectClass");
}

void UnsupportedServices::unpublishObjectClassAttributes(ObjectClassHandle,
                                                         AttributeHandleSet const&) {
  notSupported(L"unpublishObjectClassAttributes");
}

void UnsupportedServices::subscribeObjectClassAttributes(ObjectClassHandle,
                                                         AttributeHandleSet const&, bool) {
  notSupported(L"subscribeObjectClassAttributes");
}

void UnsupportedServices::unsubscribeObjectClass(ObjectClassHandle) {
  notSupported(L"unsubscribeObjectClass");
}

void UnsupportedServices::unsubscribeObjectClassAttributes(ObjectClassHandle,
                                                           AttributeHandleSet const&) {
  notSupported(L"unsubscribeObjectClassAttributes");
}

void UnsupportedServices::reserveObjectInstanceName(std::wstring const&) {
  notSupported(L"reserveObjectInstanceName");
}

ObjectInstanceHandle UnsupportedServices::registerObjectInstance(ObjectClassHandle) {
  notSupported(L"registerObjectInstance");
}

ObjectInstanceHandle UnsupportedServices::registerObjectInstance(ObjectClassHandle,
                                                                 std::wstring const&) {
  notSupported(L"registerObjectInstance");
}

void UnsupportedServices::updateAttributeValues(ObjectInstanceHandle,
                                                AttributeHandleValueMap const&,
                                                VariableLengthData const&) {
  notSupported(L"updateAttributeValues");
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

void UnsupportedServices::deleteObjectInstance(ObjectInstanceHandle, VariableLengthData const&) {
  notSupported(L"deleteObjectInstance");
}

MessageRetractionHandle UnsupportedServices::deleteObjectInstance(ObjectInstanceHandle,
                                                                  VariableLengthData const&,
                                                                  LogicalTime const&) {
  notSupported(L"deleteObjectInstance");
}

void UnsupportedServices::localDeleteObjectInstance(ObjectInstanceHandle) {
  notSupported(L"localDeleteObjectInstance");
}

void UnsupportedServices::changeAttributeTransportationType(ObjectInstanceHandle,
                                                            AttributeHandleSet const&,
                                                            TransportationType) {
  notSupported(L"changeAttributeTransportationType");
}

void UnsupportedServices::changeInteractionTransportationType(InteractionClassHandle,
                                                              TransportationType) {
  notSupported(L"changeInteractionTransportationType");
}

void UnsupportedServices::requestAttributeValueUpdate(ObjectInstanceHandle,
                                                      AttributeHandleSet const&,
                                                      VariableLengthData const&) {
  notSupported(L"requestAttributeValueUpdate");
}

void UnsupportedServices::requestAttributeValueUpdate(ObjectClassHandle, AttributeHandleSet const&,
                                                      VariableLengthData const&) {
  notSupported(L"requestAttributeValueUpdate");
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

void UnsupportedServices::deleteRegion(RegionHandle) {
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
    ObjectClassHandle, AttributeHandleSetRegionHandleSetPairVector const&, bool) {
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

ObjectInstanceHandle UnsupportedServices::getObjectInstanceHandle(std::wstring const&) {
  notSupported(L"getObjectInstanceHandle");
}

std::wstring UnsupportedServices::getObjectInstanceName(ObjectInstanceHandle) {
  notSupported(L"getObjectInstanceName");
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

DimensionHandleSet UnsupportedServices::getAvailableDimensionsForClassAttribute(ObjectClassHandle,
                                                                                AttributeHandle) {
  notSupported(L"getAvailableDimensionsForClassAttribute");
}

ObjectClassHandle UnsupportedServices::getKnownObjectClassHandle(ObjectInstanceHandle) {
  notSupported(L"getKnownObjectClassHandle");
}

DimensionHandleSet UnsupportedServices::getAvailableDimensionsForInteractionClass(
    InteractionClassHandle) {
  notSupported(L"getAvailableDimensionsForInteractionClass");
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

DimensionHandleSet UnsupportedServices::getDimensionHandleSet(RegionHandle) {
  notSupported(L"getDimensionHandleSet");
}

RangeBounds UnsupportedServices::getRangeBounds(RegionHandle, DimensionHandle) {
  notSupported(L"getRangeBounds");
}

void UnsupportedServices::setRangeBounds(RegionHandle, DimensionHandle, RangeBounds const&) {
  notSupported(L"setRangeBounds");
}

}  // namespace vcrti
