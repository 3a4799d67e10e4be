#include "ambassador.h"

#include "handle_access.h"

#include <algorithm>

#include <RTI/RTIambassadorFactory.h>

namespace vcrti {

namespace {

[[noreturn]] void rethrow(const RtiError& e) {
  switch (e.fault()) {
#define VCRTI_THROW_FAULT(name) \
  case Fault::name:             \
    throw rti1516::name(e.message());
    VCRTI_FAULTS(VCRTI_THROW_FAULT)
#undef VCRTI_THROW_FAULT
    case Fault::InconsistentFDD:
      throw ErrorReadingFDD(e.message());
  }
  throw RTIinternalError(e.message());
}

// Runs a core service, its faults turned into the API's exceptions.
template <class F>
auto call(F&& f) -> decltype(f()) {
  try {
    return f();
  } catch (const RtiError& e) {
    rethrow(e);
  }
}

ValueView view(VariableLengthData const& v) {
  return {static_cast<const unsigned char*>(v.data()), v.size()};
}

template <class Map>
const HandleValues& values(const Map& map, HandleValues& into) {
  into.clear();
  for (const auto& [h, v] : map) into.emplace_back(memberOf(h), view(v));
  return into;
}

const HandleSet& handles(AttributeHandleSet const& set, HandleSet& into) {
  into.clear();
  for (const auto& h : set) into.push_back(memberOf(h));
  std::sort(into.begin(), into.end());
  into.erase(std::unique(into.begin(), into.end()), into.end());
  return into;
}

// Fills a reused map in place: a stream of one shape keeps the map's nodes and only
// re-points their values at the receive buffer.
template <class Handle, class Map>
const Map& fillMap(Map& map, const HandleValues& from) {
  auto it = map.begin();
  for (const auto& [h, v] : from) {
    void* bytes = const_cast<unsigned char*>(v.data);
    const auto handle = makeHandle<Handle>(h);
    if (it != map.end() && it->first == handle) {
      it->second.setDataPointer(bytes, static_cast<unsigned long>(v.size));
      ++it;
    } else {
      map.erase(it, map.end());
      map[handle].setDataPointer(bytes, static_cast<unsigned long>(v.size));
      it = map.end();
    }
  }
  map.erase(it, map.end());
  return map;
}

ResignMode modeOf(ResignAction action) {
  switch (action) {
    case DELETE_OBJECTS:
    case DELETE_OBJECTS_THEN_DIVEST:
    case CANCEL_THEN_DELETE_THEN_DIVEST:
      return ResignMode::DeleteInstances;
    case UNCONDITIONALLY_DIVEST_ATTRIBUTES:
      return ResignMode::KeepInstances;
    default:
      return ResignMode::RefuseIfOwning;
  }
}

}  // namespace

// ---------------------------------------------------------------- Federation management

void Ambassador::createFederationExecution(std::wstring const& federationExecutionName,
                                           std::wstring const& fullPathNameToTheFDDfile,
                                           std::wstring const& logicalTimeImplementationName) {
  // The time library (libfedtime1516_64) has one representation; a federation asking for
  // another could not agree with its members on what a time is.
  if (!logicalTimeImplementationName.empty() && logicalTimeImplementationName != L"HLAfloat64Time")
    throw CouldNotCreateLogicalTimeFactory(L"no time implementation named '" +
                                           logicalTimeImplementationName +
                                           L"' (this RTI has HLAfloat64Time)");
  call([&] { FederateCore::createFederation(federationExecutionName, fullPathNameToTheFDDfile); });
}

void Ambassador::destroyFederationExecution(std::wstring const& federationExecutionName) {
  call([&] { FederateCore::destroyFederation(federationExecutionName); });
}

FederateHandle Ambassador::joinFederationExecution(std::wstring const& federateType,
                                                   std::wstring const& federationExecutionName,
                                                   FederateAmbassador& federateAmbassador) {
  const std::uint32_t self =
      call([&] { return core_.join(federateType, federationExecutionName, *this); });
  federate_ = &federateAmbassador;
  return makeHandle<FederateHandle>(self);
}

void Ambassador::resignFederationExecution(ResignAction resignAction) {
  call([&] { core_.resign(modeOf(resignAction)); });
  federate_ = nullptr;
}

// --------------------------------------------------------------- Declaration management

void Ambassador::publishInteractionClass(InteractionClassHandle theInteraction) {
  call([&] { core_.publishInteraction(valueOf(theInteraction)); });
}

void Ambassador::unpublishInteractionClass(InteractionClassHandle theInteraction) {
  call([&] { core_.unpublishInteraction(valueOf(theInteraction)); });
}

void Ambassador::subscribeInteractionClass(InteractionClassHandle theClass, bool) {
  call([&] { core_.subscribeInteraction(valueOf(theClass)); });
}

void Ambassador::unsubscribeInteractionClass(InteractionClassHandle theClass) {
  call([&] { core_.unsubscribeInteraction(valueOf(theClass)); });
}

void Ambassador::publishObjectClassAttributes(ObjectClassHandle theClass,
                                              AttributeHandleSet const& attributeList) {
  call([&] { core_.publishObject(valueOf(theClass), handles(attributeList, txHandles_)); });
}

void Ambassador::unpublishObjectClass(ObjectClassHandle theClass) {
  call([&] { core_.unpublishObject(valueOf(theClass), nullptr); });
}

void Ambassador::unpublishObjectClassAttributes(ObjectClassHandle theClass,
                                                AttributeHandleSet const& attributeList) {
  call([&] { core_.unpublishObject(valueOf(theClass), &handles(attributeList, txHandles_)); });
}

void Ambassador::subscribeObjectClassAttributes(ObjectClassHandle theClass,
                                                AttributeHandleSet const& attributeList, bool) {
  call([&] { core_.subscribeObject(valueOf(theClass), handles(attributeList, txHandles_)); });
}

void Ambassador::unsubscribeObjectClass(ObjectClassHandle theClass) {
  call([&] { core_.unsubscribeObject(valueOf(theClass), nullptr); });
}

void Ambassador::unsubscribeObjectClassAttributes(ObjectClassHandle theClass,
                                                  AttributeHandleSet const& attributeList) {
  call([&] { core_.unsubscribeObject(valueOf(theClass), &handles(attributeList, txHandles_)); });
}

// -------------------------------------------------------------------- Object management

void Ambassador::sendInteraction(InteractionClassHandle theInteraction,
                                 ParameterHandleValueMap const& theParameterValues,
                                 VariableLengthData const& theUserSuppliedTag) {
  call([&] {
    core_.sendInteraction(valueOf(theInteraction), values(theParameterValues, txParams_),
                          view(theUserSuppliedTag));
  });
}

void Ambassador::reserveObjectInstanceName(std::wstring const& theObjectInstanceName) {
  call([&] { core_.reserveName(theObjectInstanceName); });
}

ObjectInstanceHandle Ambassador::registerObjectInstance(ObjectClassHandle theClass) {
  return makeHandle<ObjectInstanceHandle>(
      call([&] { return core_.registerInstance(valueOf(theClass), nullptr); }));
}

ObjectInstanceHandle Ambassador::registerObjectInstance(ObjectClassHandle theClass,
                                                        std::wstring const& theObjectInstanceName) {
  return makeHandle<ObjectInstanceHandle>(
      call([&] { return core_.registerInstance(valueOf(theClass), &theObjectInstanceName); }));
}

void Ambassador::updateAttributeValues(ObjectInstanceHandle theObject,
                                       AttributeHandleValueMap const& theAttributeValues,
                                       VariableLengthData const& theUserSuppliedTag) {
  call([&] {
    core_.updateAttributes(valueOf(theObject), values(theAttributeValues, txAttributes_),
                           view(theUserSuppliedTag));
  });
}

void Ambassador::deleteObjectInstance(ObjectInstanceHandle theObject,
                                      VariableLengthData const& theUserSuppliedTag) {
  call([&] { core_.deleteInstance(valueOf(theObject), view(theUserSuppliedTag)); });
}

void Ambassador::localDeleteObjectInstance(ObjectInstanceHandle theObject) {
  call([&] { core_.localDeleteInstance(valueOf(theObject)); });
}

void Ambassador::requestAttributeValueUpdate(ObjectInstanceHandle theObject,
                                             AttributeHandleSet const& theAttributes,
                                             VariableLengthData const& theUserSuppliedTag) {
  call([&] {
    core_.requestInstanceUpdate(valueOf(theObject), handles(theAttributes, txHandles_),
                                view(theUserSuppliedTag));
  });
}

void Ambassador::requestAttributeValueUpdate(ObjectClassHandle theClass,
                                             AttributeHandleSet const& theAttributes,
                                             VariableLengthData const& theUserSuppliedTag) {
  call([&] {
    core_.requestClassUpdate(valueOf(theClass), handles(theAttributes, txHandles_),
                             view(theUserSuppliedTag));
  });
}

// --------------------------------------------------------------------- Support services

ObjectClassHandle Ambassador::getObjectClassHandle(std::wstring const& theName) {
  return makeHandle<ObjectClassHandle>(call([&] { return core_.objectClass(theName); }));
}

std::wstring Ambassador::getObjectClassName(ObjectClassHandle theHandle) {
  return call([&] { return core_.objectClassName(valueOf(theHandle)); });
}

AttributeHandle Ambassador::getAttributeHandle(ObjectClassHandle whichClass,
                                               std::wstring const& theAttributeName) {
  return makeHandle<AttributeHandle>(
      call([&] { return core_.attribute(valueOf(whichClass), theAttributeName); }));
}

std::wstring Ambassador::getAttributeName(ObjectClassHandle whichClass, AttributeHandle theHandle) {
  return call([&] { return core_.attributeName(valueOf(whichClass), valueOf(theHandle)); });
}

InteractionClassHandle Ambassador::getInteractionClassHandle(std::wstring const& theName) {
  return makeHandle<InteractionClassHandle>(call([&] { return core_.interactionClass(theName); }));
}

std::wstring Ambassador::getInteractionClassName(InteractionClassHandle theHandle) {
  return call([&] { return core_.interactionClassName(valueOf(theHandle)); });
}

ParameterHandle Ambassador::getParameterHandle(InteractionClassHandle whichClass,
                                               std::wstring const& theName) {
  return makeHandle<ParameterHandle>(
      call([&] { return core_.parameter(valueOf(whichClass), theName); }));
}

std::wstring Ambassador::getParameterName(InteractionClassHandle whichClass,
                                          ParameterHandle theHandle) {
  return call([&] { return core_.parameterName(valueOf(whichClass), valueOf(theHandle)); });
}

ObjectInstanceHandle Ambassador::getObjectInstanceHandle(std::wstring const& theName) {
  return makeHandle<ObjectInstanceHandle>(call([&] { return core_.instance(theName); }));
}

std::wstring Ambassador::getObjectInstanceName(ObjectInstanceHandle theHandle) {
  return call([&] { return core_.instanceName(valueOf(theHandle)); });
}

ObjectClassHandle Ambassador::getKnownObjectClassHandle(ObjectInstanceHandle theObject) {
  return makeHandle<ObjectClassHandle>(call([&] { return core_.knownClass(valueOf(theObject)); }));
}

TransportationType Ambassador::getTransportationType(std::wstring const& transportationName) {
  call([&] { core_.requireJoined(L"getTransportationType"); });
  if (transportationName == L"HLAreliable") return RELIABLE;
  if (transportationName == L"HLAbestEffort") return BEST_EFFORT;
  throw InvalidTransportationName(L"unknown transportation '" + transportationName + L"'");
}

std::wstring Ambassador::getTransportationName(TransportationType transportationType) {
  call([&] { core_.requireJoined(L"getTransportationName"); });
  if (transportationType == RELIABLE) return L"HLAreliable";
  if (transportationType == BEST_EFFORT) return L"HLAbestEffort";
  throw InvalidTransportationType(L"unknown transportation type " +
                                  std::to_wstring(transportationType));
}

OrderType Ambassador::getOrderType(std::wstring const& orderName) {
  call([&] { core_.requireJoined(L"getOrderType"); });
  if (orderName == L"Receive") return RECEIVE;
  if (orderName == L"TimeStamp") return TIMESTAMP;
  throw InvalidOrderName(L"unknown order '" + orderName + L"'");
}

std::wstring Ambassador::getOrderName(OrderType orderType) {
  call([&] { core_.requireJoined(L"getOrderName"); });
  if (orderType == RECEIVE) return L"Receive";
  if (orderType == TIMESTAMP) return L"TimeStamp";
  throw InvalidOrderType(L"unknown order type " + std::to_wstring(orderType));
}

unsigned long Ambassador::normalizeFederateHandle(FederateHandle theFederateHandle) {
  call([&] { core_.requireJoined(L"normalizeFederateHandle"); });
  if (!theFederateHandle.isValid()) throw InvalidFederateHandle(L"invalid federate handle");
  return static_cast<unsigned long>(valueOf(theFederateHandle));
}

unsigned long Ambassador::normalizeServiceGroup(ServiceGroupIndicator theServiceGroup) {
  call([&] { core_.requireJoined(L"normalizeServiceGroup"); });
  return static_cast<unsigned long>(theServiceGroup);
}

// ------------------------------------------------------------------- Callback delivery

bool Ambassador::evokeCallback(double approximateMinimumTimeInSeconds) {
  return call([&] {
    return core_.evoke(approximateMinimumTimeInSeconds, approximateMinimumTimeInSeconds, true);
  });
}

bool Ambassador::evokeMultipleCallbacks(double approximateMinimumTimeInSeconds,
                                        double approximateMaximumTimeInSeconds) {
  return call([&] {
    return core_.evoke(approximateMinimumTimeInSeconds, approximateMaximumTimeInSeconds, false);
  });
}

void Ambassador::enableCallbacks() {
  call([&] { core_.enableCallbacks(true); });
}

void Ambassador::disableCallbacks() {
  call([&] { core_.enableCallbacks(false); });
}

void Ambassador::receiveInteraction(std::uint32_t cls, const HandleValues& params, ValueView tag) {
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), static_cast<unsigned long>(tag.size));
  federate_->receiveInteraction(makeHandle<InteractionClassHandle>(cls),
                                fillMap<ParameterHandle>(rxParams_, params), rxTag_, RECEIVE,
                                RELIABLE);
}

void Ambassador::nameReservation(const std::wstring& name, bool succeeded) {
  if (succeeded)
    federate_->objectInstanceNameReservationSucceeded(name);
  else
    federate_->objectInstanceNameReservationFailed(name);
}

void Ambassador::discoverInstance(InstanceHandle instance, std::uint32_t cls,
                                  const std::wstring& name) {
  federate_->discoverObjectInstance(makeHandle<ObjectInstanceHandle>(instance),
                                    makeHandle<ObjectClassHandle>(cls), name);
}

void Ambassador::reflectAttributes(InstanceHandle instance, const HandleValues& attributes,
                                   ValueView tag) {
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), static_cast<unsigned long>(tag.size));
  federate_->reflectAttributeValues(makeHandle<ObjectInstanceHandle>(instance),
                                    fillMap<AttributeHandle>(rxAttributes_, attributes), rxTag_,
                                    RECEIVE, RELIABLE);
}

void Ambassador::removeInstance(InstanceHandle instance, ValueView tag) {
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), static_cast<unsigned long>(tag.size));
  federate_->removeObjectInstance(makeHandle<ObjectInstanceHandle>(instance), rxTag_, RECEIVE);
}

void Ambassador::provideAttributes(InstanceHandle instance, const HandleSet& attributes,
                                   ValueView tag) {
  rxHandles_.clear();
  for (std::uint32_t a : attributes)
    rxHandles_.insert(rxHandles_.end(), makeHandle<AttributeHandle>(a));
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), static_cast<unsigned long>(tag.size));
  federate_->provideAttributeValueUpdate(makeHandle<ObjectInstanceHandle>(instance), rxHandles_,
                                         rxTag_);
}

// ------------------------------------------------------------------------ Handle decode

FederateHandle Ambassador::decodeFederateHandle(VariableLengthData const& v) const {
  return decodeHandle<FederateHandle>(v, L"FederateHandle");
}
ObjectClassHandle Ambassador::decodeObjectClassHandle(VariableLengthData const& v) const {
  return decodeHandle<ObjectClassHandle>(v, L"ObjectClassHandle");
}
InteractionClassHandle Ambassador::decodeInteractionClassHandle(VariableLengthData const& v) const {
  return decodeHandle<InteractionClassHandle>(v, L"InteractionClassHandle");
}
ObjectInstanceHandle Ambassador::decodeObjectInstanceHandle(VariableLengthData const& v) const {
  return decodeHandle<ObjectInstanceHandle>(v, L"ObjectInstanceHandle");
}
AttributeHandle Ambassador::decodeAttributeHandle(VariableLengthData const& v) const {
  return decodeHandle<AttributeHandle>(v, L"AttributeHandle");
}
ParameterHandle Ambassador::decodeParameterHandle(VariableLengthData const& v) const {
  return decodeHandle<ParameterHandle>(v, L"ParameterHandle");
}
DimensionHandle Ambassador::decodeDimensionHandle(VariableLengthData const& v) const {
  return decodeHandle<DimensionHandle>(v, L"DimensionHandle");
}
MessageRetractionHandle Ambassador::decodeMessageRetractionHandle(
    VariableLengthData const& v) const {
  return decodeHandle<MessageRetractionHandle>(v, L"MessageRetractionHandle");
}
RegionHandle Ambassador::decodeRegionHandle(VariableLengthData const& v) const {
  return decodeHandle<RegionHandle>(v, L"RegionHandle");
}

}  // namespace vcrti

// ------------------------------------------------------------------------------ Factory

namespace rti1516 {

RTIambassadorFactory::RTIambassadorFactory() = default;
RTIambassadorFactory::~RTIambassadorFactory() = default;

RTI_UNIQUE_PTR<RTIambassador> RTIambassadorFactory::createRTIambassador(
    std::vector<std::wstring>&) {
  // Nothing to configure: where a federation lives is part of its name.
  return std::make_unique<vcrti::Ambassador>();
}

}  // namespace rti1516
