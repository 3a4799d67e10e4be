#include "ambassador.h"

#include "fdd_parser.h"
#include "handle_access.h"

#include <RTI/RTIambassadorFactory.h>

#include <algorithm>
#include <chrono>

namespace vcrti::evolved {

namespace {

[[noreturn]] void rethrow(const RtiError& e) {
  switch (e.fault()) {
#define VCRTI_THROW_FAULT(name) \
  case Fault::name:             \
    throw rti1516e::name(e.message());
    VCRTI_FAULTS(VCRTI_THROW_FAULT)
    VCRTI_FAULTS_2010(VCRTI_THROW_FAULT)
#undef VCRTI_THROW_FAULT
  }
  throw RTIinternalError(e.message());
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
      it->second.setDataPointer(bytes, v.size);
      ++it;
    } else {
      map.erase(it, map.end());
      map[handle].setDataPointer(bytes, v.size);
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

// The standard's names for its own MIM.
bool isStandardMim(std::wstring const& designator) {
  return designator == L"HLAstandardMIM";
}

template <class F>
FddModel readModules(F&& read) {
  try {
    return read();
  } catch (const RtiError& e) {
    rethrow(e);
  }
}

}  // namespace

template <class F>
auto Ambassador::call(const wchar_t* operation, F&& f) -> decltype(f()) {
  requireConnected(operation);
  std::unique_lock<std::recursive_mutex> hold(lock_, std::defer_lock);
  if (immediate_) hold.lock();
  try {
    return f();
  } catch (const RtiError& e) {
    rethrow(e);
  }
}

Ambassador::~Ambassador() {
  stopCallbackThread();
  if (core_.joined()) {
    try {
      core_.resign(modeOf(automaticResign_));
    } catch (const RtiError&) {
      // The federation is gone or unreachable: nothing left to leave.
    }
  }
}

// ------------------------------------------------------------------------ Connection

void Ambassador::connect(FederateAmbassador& federateAmbassador, CallbackModel theCallbackModel,
                         std::wstring const& localSettingsDesignator) {
  if (connected_) throw AlreadyConnected(L"this ambassador is connected already");
  if (theCallbackModel != HLA_EVOKED && theCallbackModel != HLA_IMMEDIATE)
    throw UnsupportedCallbackModel(L"callback model " + std::to_wstring(theCallbackModel));
  std::wstring place = localSettingsDesignator;
  if (place == L"thread:" || place == L"thread:/") place = L"thread://";
  if (!place.empty() && place != L"thread://") {
    // Anything else names a hub, checked as the federations placed there will be.
    if (place.compare(0, 6, L"rti://") != 0 || place.find(L'/', 6) != std::wstring::npos)
      throw InvalidLocalSettingsDesignator(
          L"'" + localSettingsDesignator +
          L"': this RTI takes thread:// or rti://host:port (or nothing, for its default hub)");
  }
  place_ = place;
  federate_ = &federateAmbassador;
  immediate_ = theCallbackModel == HLA_IMMEDIATE;
  connected_ = true;
}

void Ambassador::disconnect() {
  requireConnected(L"disconnect");
  if (core_.joined())
    throw FederateIsExecutionMember(L"disconnect: resign from the federation execution first");
  stopCallbackThread();
  connected_ = false;
  federate_ = nullptr;
}

std::wstring Ambassador::federationUrl(std::wstring const& name) const {
  if (name.find(L"://") != std::wstring::npos || place_.empty()) return name;
  if (place_ == L"thread://") return place_ + name;
  return place_ + L"/" + name;
}

// ------------------------------------------------------------------ Federation management

void Ambassador::create(std::wstring const& name, FddModel model, std::wstring const& timeName) {
  // The time library has these two representations; a federation asking for another could
  // not agree with its members on what a time is.
  if (!timeName.empty() && timeName != L"HLAfloat64Time" && timeName != L"HLAinteger64Time")
    throw CouldNotCreateLogicalTimeFactory(L"no time implementation named '" + timeName +
                                           L"' (this RTI has HLAfloat64Time and HLAinteger64Time)");
  call(L"createFederationExecution",
       [&] { FederateCore::createFederation(federationUrl(name), std::move(model)); });
}

void Ambassador::createFederationExecution(std::wstring const& federationExecutionName,
                                           std::wstring const& fomModule,
                                           std::wstring const& logicalTimeImplementationName) {
  createFederationExecution(federationExecutionName, std::vector<std::wstring>{fomModule},
                            logicalTimeImplementationName);
}

void Ambassador::createFederationExecution(std::wstring const& federationExecutionName,
                                           std::vector<std::wstring> const& fomModules,
                                           std::wstring const& logicalTimeImplementationName) {
  requireConnected(L"createFederationExecution");
  create(federationExecutionName, readModules([&] { return readFomModules(fomModules); }),
         logicalTimeImplementationName);
}

void Ambassador::createFederationExecutionWithMIM(
    std::wstring const& federationExecutionName, std::vector<std::wstring> const& fomModules,
    std::wstring const& mimModule, std::wstring const& logicalTimeImplementationName) {
  requireConnected(L"createFederationExecutionWithMIM");
  if (isStandardMim(mimModule))
    throw DesignatorIsHLAstandardMIM(L"'" + mimModule + L"' is the standard MIM: name no MIM");
  // The MIM given is merged after the standard one, which it may only extend.
  FddModel model = readModules([&] {
    std::vector<std::wstring> all{mimModule};
    all.insert(all.end(), fomModules.begin(), fomModules.end());
    return readFomModules(all);
  });
  create(federationExecutionName, std::move(model), logicalTimeImplementationName);
}

void Ambassador::destroyFederationExecution(std::wstring const& federationExecutionName) {
  call(L"destroyFederationExecution",
       [&] { FederateCore::destroyFederation(federationUrl(federationExecutionName)); });
}

FederateHandle Ambassador::join(std::wstring const& federateType, std::wstring const& federation,
                                std::vector<std::wstring> const& modules) {
  // The modules are merged into the federation's model, or the join is refused whole.
  const std::uint32_t self = call(L"joinFederationExecution", [&] {
    return core_.join(federateType, federationUrl(federation), *this, modules);
  });
  if (immediate_) startCallbackThread();
  return makeHandle<FederateHandle>(self);
}

FederateHandle Ambassador::joinFederationExecution(
    std::wstring const& federateType, std::wstring const& federationExecutionName,
    std::vector<std::wstring> const& additionalFomModules) {
  return join(federateType, federationExecutionName, additionalFomModules);
}

FederateHandle Ambassador::joinFederationExecution(
    std::wstring const& federateName, std::wstring const& federateType,
    std::wstring const& federationExecutionName,
    std::vector<std::wstring> const& additionalFomModules) {
  // Federates are not told apart by name here; the name is accepted and not kept.
  (void)federateName;
  return join(federateType, federationExecutionName, additionalFomModules);
}

void Ambassador::resignFederationExecution(ResignAction resignAction) {
  if (resignAction < UNCONDITIONALLY_DIVEST_ATTRIBUTES || resignAction > NO_ACTION)
    throw InvalidResignAction(L"resign action " + std::to_wstring(resignAction));
  // The callback thread stops first: a resign under it would leave it evoking nothing.
  if (immediate_) stopCallbackThread();
  call(L"resignFederationExecution", [&] { core_.resign(modeOf(resignAction)); });
}

ResignAction Ambassador::getAutomaticResignDirective() {
  call(L"getAutomaticResignDirective",
       [&] { core_.requireJoined(L"getAutomaticResignDirective"); });
  return automaticResign_;
}

void Ambassador::setAutomaticResignDirective(ResignAction resignAction) {
  call(L"setAutomaticResignDirective",
       [&] { core_.requireJoined(L"setAutomaticResignDirective"); });
  if (resignAction < UNCONDITIONALLY_DIVEST_ATTRIBUTES || resignAction > NO_ACTION)
    throw InvalidResignAction(L"resign action " + std::to_wstring(resignAction));
  automaticResign_ = resignAction;
}

// --------------------------------------------------------------- Declaration management

void Ambassador::publishObjectClassAttributes(ObjectClassHandle theClass,
                                              AttributeHandleSet const& attributeList) {
  call(L"publishObjectClassAttributes",
       [&] { core_.publishObject(valueOf(theClass), handles(attributeList, txHandles_)); });
}

void Ambassador::unpublishObjectClass(ObjectClassHandle theClass) {
  call(L"unpublishObjectClass", [&] { core_.unpublishObject(valueOf(theClass), nullptr); });
}

void Ambassador::unpublishObjectClassAttributes(ObjectClassHandle theClass,
                                                AttributeHandleSet const& attributeList) {
  call(L"unpublishObjectClassAttributes",
       [&] { core_.unpublishObject(valueOf(theClass), &handles(attributeList, txHandles_)); });
}

void Ambassador::publishInteractionClass(InteractionClassHandle theInteraction) {
  call(L"publishInteractionClass", [&] { core_.publishInteraction(valueOf(theInteraction)); });
}

void Ambassador::unpublishInteractionClass(InteractionClassHandle theInteraction) {
  call(L"unpublishInteractionClass", [&] { core_.unpublishInteraction(valueOf(theInteraction)); });
}

void Ambassador::subscribeObjectClassAttributes(ObjectClassHandle theClass,
                                                AttributeHandleSet const& attributeList, bool,
                                                std::wstring const& updateRateDesignator) {
  if (!updateRateDesignator.empty())
    throw InvalidUpdateRateDesignator(L"'" + updateRateDesignator +
                                      L"': this RTI has no update rates");
  call(L"subscribeObjectClassAttributes",
       [&] { core_.subscribeObject(valueOf(theClass), handles(attributeList, txHandles_)); });
}

void Ambassador::unsubscribeObjectClass(ObjectClassHandle theClass) {
  call(L"unsubscribeObjectClass", [&] { core_.unsubscribeObject(valueOf(theClass), nullptr); });
}

void Ambassador::unsubscribeObjectClassAttributes(ObjectClassHandle theClass,
                                                  AttributeHandleSet const& attributeList) {
  call(L"unsubscribeObjectClassAttributes",
       [&] { core_.unsubscribeObject(valueOf(theClass), &handles(attributeList, txHandles_)); });
}

void Ambassador::subscribeInteractionClass(InteractionClassHandle theClass, bool) {
  call(L"subscribeInteractionClass", [&] { core_.subscribeInteraction(valueOf(theClass)); });
}

void Ambassador::unsubscribeInteractionClass(InteractionClassHandle theClass) {
  call(L"unsubscribeInteractionClass", [&] { core_.unsubscribeInteraction(valueOf(theClass)); });
}

// -------------------------------------------------------------------- Object management

void Ambassador::sendInteraction(InteractionClassHandle theInteraction,
                                 ParameterHandleValueMap const& theParameterValues,
                                 VariableLengthData const& theUserSuppliedTag) {
  call(L"sendInteraction", [&] {
    core_.sendInteraction(valueOf(theInteraction), values(theParameterValues, txParams_),
                          view(theUserSuppliedTag));
  });
}

void Ambassador::reserveObjectInstanceName(std::wstring const& theObjectInstanceName) {
  call(L"reserveObjectInstanceName", [&] { core_.reserveName(theObjectInstanceName); });
}

ObjectInstanceHandle Ambassador::registerObjectInstance(ObjectClassHandle theClass) {
  return makeHandle<ObjectInstanceHandle>(call(L"registerObjectInstance", [&] {
    return core_.registerInstance(valueOf(theClass), nullptr);
  }));
}

ObjectInstanceHandle Ambassador::registerObjectInstance(ObjectClassHandle theClass,
                                                        std::wstring const& theObjectInstanceName) {
  return makeHandle<ObjectInstanceHandle>(call(L"registerObjectInstance", [&] {
    return core_.registerInstance(valueOf(theClass), &theObjectInstanceName);
  }));
}

void Ambassador::updateAttributeValues(ObjectInstanceHandle theObject,
                                       AttributeHandleValueMap const& theAttributeValues,
                                       VariableLengthData const& theUserSuppliedTag) {
  call(L"updateAttributeValues", [&] {
    core_.updateAttributes(valueOf(theObject), values(theAttributeValues, txAttributes_),
                           view(theUserSuppliedTag));
  });
}

void Ambassador::deleteObjectInstance(ObjectInstanceHandle theObject,
                                      VariableLengthData const& theUserSuppliedTag) {
  call(L"deleteObjectInstance",
       [&] { core_.deleteInstance(valueOf(theObject), view(theUserSuppliedTag)); });
}

void Ambassador::localDeleteObjectInstance(ObjectInstanceHandle theObject) {
  call(L"localDeleteObjectInstance", [&] { core_.localDeleteInstance(valueOf(theObject)); });
}

void Ambassador::requestAttributeValueUpdate(ObjectInstanceHandle theObject,
                                             AttributeHandleSet const& theAttributes,
                                             VariableLengthData const& theUserSuppliedTag) {
  call(L"requestAttributeValueUpdate", [&] {
    core_.requestInstanceUpdate(valueOf(theObject), handles(theAttributes, txHandles_),
                                view(theUserSuppliedTag));
  });
}

void Ambassador::requestAttributeValueUpdate(ObjectClassHandle theClass,
                                             AttributeHandleSet const& theAttributes,
                                             VariableLengthData const& theUserSuppliedTag) {
  call(L"requestAttributeValueUpdate", [&] {
    core_.requestClassUpdate(valueOf(theClass), handles(theAttributes, txHandles_),
                             view(theUserSuppliedTag));
  });
}

// --------------------------------------------------------------------- Support services

ObjectClassHandle Ambassador::getObjectClassHandle(std::wstring const& theName) {
  return makeHandle<ObjectClassHandle>(
      call(L"getObjectClassHandle", [&] { return core_.objectClass(theName); }));
}

std::wstring Ambassador::getObjectClassName(ObjectClassHandle theHandle) {
  return call(L"getObjectClassName", [&] { return core_.objectClassName(valueOf(theHandle)); });
}

ObjectClassHandle Ambassador::getKnownObjectClassHandle(ObjectInstanceHandle theObject) {
  return makeHandle<ObjectClassHandle>(call(L"getKnownObjectClassHandle", [&] {
    core_.requireJoined(L"getKnownObjectClassHandle");
    return core_.knownClass(valueOf(theObject));
  }));
}

ObjectInstanceHandle Ambassador::getObjectInstanceHandle(std::wstring const& theName) {
  return makeHandle<ObjectInstanceHandle>(
      call(L"getObjectInstanceHandle", [&] { return core_.instance(theName); }));
}

std::wstring Ambassador::getObjectInstanceName(ObjectInstanceHandle theHandle) {
  return call(L"getObjectInstanceName", [&] {
    core_.requireJoined(L"getObjectInstanceName");
    return core_.instanceName(valueOf(theHandle));
  });
}

AttributeHandle Ambassador::getAttributeHandle(ObjectClassHandle whichClass,
                                               std::wstring const& theAttributeName) {
  return makeHandle<AttributeHandle>(call(L"getAttributeHandle", [&] {
    return core_.attribute(valueOf(whichClass), theAttributeName);
  }));
}

std::wstring Ambassador::getAttributeName(ObjectClassHandle whichClass, AttributeHandle theHandle) {
  return call(L"getAttributeName",
              [&] { return core_.attributeName(valueOf(whichClass), valueOf(theHandle)); });
}

InteractionClassHandle Ambassador::getInteractionClassHandle(std::wstring const& theName) {
  return makeHandle<InteractionClassHandle>(
      call(L"getInteractionClassHandle", [&] { return core_.interactionClass(theName); }));
}

std::wstring Ambassador::getInteractionClassName(InteractionClassHandle theHandle) {
  return call(L"getInteractionClassName",
              [&] { return core_.interactionClassName(valueOf(theHandle)); });
}

ParameterHandle Ambassador::getParameterHandle(InteractionClassHandle whichClass,
                                               std::wstring const& theName) {
  return makeHandle<ParameterHandle>(
      call(L"getParameterHandle", [&] { return core_.parameter(valueOf(whichClass), theName); }));
}

std::wstring Ambassador::getParameterName(InteractionClassHandle whichClass,
                                          ParameterHandle theHandle) {
  return call(L"getParameterName",
              [&] { return core_.parameterName(valueOf(whichClass), valueOf(theHandle)); });
}

OrderType Ambassador::getOrderType(std::wstring const& orderName) {
  call(L"getOrderType", [&] { core_.requireJoined(L"getOrderType"); });
  if (orderName == L"Receive") return RECEIVE;
  if (orderName == L"TimeStamp") return TIMESTAMP;
  throw InvalidOrderName(L"unknown order '" + orderName + L"'");
}

std::wstring Ambassador::getOrderName(OrderType orderType) {
  call(L"getOrderName", [&] { core_.requireJoined(L"getOrderName"); });
  if (orderType == RECEIVE) return L"Receive";
  if (orderType == TIMESTAMP) return L"TimeStamp";
  throw InvalidOrderType(L"unknown order type " + std::to_wstring(orderType));
}

TransportationType Ambassador::getTransportationType(std::wstring const& transportationName) {
  call(L"getTransportationType", [&] { core_.requireJoined(L"getTransportationType"); });
  if (transportationName == L"HLAreliable") return RELIABLE;
  if (transportationName == L"HLAbestEffort") return BEST_EFFORT;
  throw InvalidTransportationName(L"unknown transportation '" + transportationName + L"'");
}

std::wstring Ambassador::getTransportationName(TransportationType transportationType) {
  call(L"getTransportationName", [&] { core_.requireJoined(L"getTransportationName"); });
  if (transportationType == RELIABLE) return L"HLAreliable";
  if (transportationType == BEST_EFFORT) return L"HLAbestEffort";
  throw InvalidTransportationType(L"unknown transportation type " +
                                  std::to_wstring(transportationType));
}

unsigned long Ambassador::normalizeFederateHandle(FederateHandle theFederateHandle) {
  call(L"normalizeFederateHandle", [&] { core_.requireJoined(L"normalizeFederateHandle"); });
  if (!theFederateHandle.isValid()) throw InvalidFederateHandle(L"invalid federate handle");
  return static_cast<unsigned long>(valueOf(theFederateHandle));
}

unsigned long Ambassador::normalizeServiceGroup(ServiceGroup theServiceGroup) {
  call(L"normalizeServiceGroup", [&] { core_.requireJoined(L"normalizeServiceGroup"); });
  if (theServiceGroup < FEDERATION_MANAGEMENT || theServiceGroup > SUPPORT_SERVICES)
    throw InvalidServiceGroup(L"service group " + std::to_wstring(theServiceGroup));
  return static_cast<unsigned long>(theServiceGroup);
}

// ------------------------------------------------------------------- Callback delivery

bool Ambassador::evokeCallback(double approximateMinimumTimeInSeconds) {
  if (immediate_) {
    requireConnected(L"evokeCallback");
    throw RTIinternalError(L"evokeCallback: callbacks are immediate on this connection");
  }
  return call(L"evokeCallback", [&] {
    return core_.evoke(approximateMinimumTimeInSeconds, approximateMinimumTimeInSeconds, true);
  });
}

bool Ambassador::evokeMultipleCallbacks(double approximateMinimumTimeInSeconds,
                                        double approximateMaximumTimeInSeconds) {
  if (immediate_) {
    requireConnected(L"evokeMultipleCallbacks");
    throw RTIinternalError(L"evokeMultipleCallbacks: callbacks are immediate on this connection");
  }
  return call(L"evokeMultipleCallbacks", [&] {
    return core_.evoke(approximateMinimumTimeInSeconds, approximateMaximumTimeInSeconds, false);
  });
}

void Ambassador::enableCallbacks() {
  call(L"enableCallbacks", [&] { core_.enableCallbacks(true); });
}

void Ambassador::disableCallbacks() {
  call(L"disableCallbacks", [&] { core_.enableCallbacks(false); });
}

// HLA_IMMEDIATE: a thread delivers what arrives, under the lock every service takes, so
// the federate sees one callback at a time and never one in the middle of its own call.
// It polls rather than waits in the core, since waiting there would hold the lock.
void Ambassador::startCallbackThread() {
  stopCallbackThread();
  // Each thread serves one membership: a thread whose generation has passed ends, even one
  // left running because it was the one that resigned (from a callback).
  const unsigned generation = ++generation_;
  callbackThread_ = std::thread([this, generation] {
    while (generation_ == generation) {
      bool more = false;
      {
        std::lock_guard<std::recursive_mutex> hold(lock_);
        if (generation_ != generation || !core_.joined()) break;
        try {
          more = core_.evoke(0, 0, false);
        } catch (const RtiError& e) {
          if (federate_) federate_->connectionLost(e.message());
          break;
        } catch (const Exception&) {
          // The federate's own callback failed: nobody to report to but the federate.
        }
      }
      if (!more) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
}

void Ambassador::stopCallbackThread() {
  if (!callbackThread_.joinable()) return;
  ++generation_;
  if (std::this_thread::get_id() == callbackThread_.get_id())
    callbackThread_.detach();  // it ends once the callback it is in returns
  else
    callbackThread_.join();
}

void Ambassador::receiveInteraction(std::uint32_t cls, const HandleValues& params, ValueView tag) {
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), tag.size);
  federate_->receiveInteraction(makeHandle<InteractionClassHandle>(cls),
                                fillMap<ParameterHandle>(rxParams_, params), rxTag_, RECEIVE,
                                RELIABLE, SupplementalReceiveInfo());
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
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), tag.size);
  federate_->reflectAttributeValues(makeHandle<ObjectInstanceHandle>(instance),
                                    fillMap<AttributeHandle>(rxAttributes_, attributes), rxTag_,
                                    RECEIVE, RELIABLE, SupplementalReflectInfo());
}

void Ambassador::removeInstance(InstanceHandle instance, ValueView tag) {
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), tag.size);
  federate_->removeObjectInstance(makeHandle<ObjectInstanceHandle>(instance), rxTag_, RECEIVE,
                                  SupplementalRemoveInfo());
}

void Ambassador::provideAttributes(InstanceHandle instance, const HandleSet& attributes,
                                   ValueView tag) {
  rxHandles_.clear();
  for (std::uint32_t a : attributes)
    rxHandles_.insert(rxHandles_.end(), makeHandle<AttributeHandle>(a));
  rxTag_.setDataPointer(const_cast<unsigned char*>(tag.data), tag.size);
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

}  // namespace vcrti::evolved

// ------------------------------------------------------------------------------ Factory

namespace rti1516e {

RTIambassadorFactory::RTIambassadorFactory() = default;
RTIambassadorFactory::~RTIambassadorFactory() noexcept = default;

RTI_UNIQUE_PTR<RTIambassador> RTIambassadorFactory::createRTIambassador() {
  return std::make_unique<vcrti::evolved::Ambassador>();
}

}  // namespace rti1516e
