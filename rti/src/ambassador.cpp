#include "ambassador.h"

#include "fdd_parser.h"
#include "federation_url.h"
#include "handle_access.h"
#include "hub_link.h"
#include "local_link.h"
#include "protocol.h"

#include <RTI/RTIambassadorFactory.h>

#include <chrono>
#include <thread>

namespace vcrti {

namespace {

using Clock = std::chrono::steady_clock;

FederationUrl parseUrl(const std::wstring& name) {
  FederationUrl url;
  std::wstring why;
  if (!parseFederationUrl(name, url, why))
    throw RTIinternalError(L"invalid federation execution name '" + name + L"': " + why);
  return url;
}

template <class H>
H makeHandle(std::uint64_t v) {
  return HandleAccess::make<H>(v);
}

template <class H>
std::uint64_t valueOf(const H& h) {
  return HandleAccess::value(h);
}

template <class H>
H decodeHandle(VariableLengthData const& data, const wchar_t* kind) {
  if (data.size() != 8 || data.data() == nullptr)
    throw CouldNotDecode(std::wstring(L"an encoded ") + kind + L" has 8 bytes, not " +
                         std::to_wstring(data.size()));
  const auto* b = static_cast<const unsigned char*>(data.data());
  std::uint64_t v = 0;
  for (int i = 0; i < 8; ++i) v = (v << 8) | b[i];
  return makeHandle<H>(v);
}

// Clears a flag when the scope ends, even by exception from a callback.
struct FlagGuard {
  bool& flag;
  explicit FlagGuard(bool& f) : flag(f) { flag = true; }
  ~FlagGuard() { flag = false; }
};

}  // namespace

Ambassador::~Ambassador() {
  if (link_) {
    try {
      link_->resign();
    } catch (const Exception&) {
      // The federation is gone or unreachable: nothing left to leave.
    }
  }
}

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
  const FederationUrl url = parseUrl(federationExecutionName);
  auto model = std::make_shared<FddModel>(parseFddFile(fullPathNameToTheFDDfile));
  if (url.local)
    createLocalFederation(url.name, std::move(model));
  else
    createHubFederation(url, *model);
}

void Ambassador::destroyFederationExecution(std::wstring const& federationExecutionName) {
  const FederationUrl url = parseUrl(federationExecutionName);
  if (url.local)
    destroyLocalFederation(url.name);
  else
    destroyHubFederation(url);
}

FederateHandle Ambassador::joinFederationExecution(std::wstring const& federateType,
                                                   std::wstring const& federationExecutionName,
                                                   FederateAmbassador& federateAmbassador) {
  if (link_)
    throw FederateAlreadyExecutionMember(
        L"this federate has already joined a federation execution");
  const FederationUrl url = parseUrl(federationExecutionName);
  link_ = url.local ? joinLocalFederation(url.name) : joinHubFederation(url, federateType);
  model_ = link_->model();
  federate_ = &federateAmbassador;
  self_ = makeHandle<FederateHandle>(link_->federateHandle());
  published_.assign(model_->interactions.classes.size(), false);
  subscribed_.assign(model_->interactions.classes.size(), false);
  deliver_.clear();
  deliverPos_ = 0;
  return self_;
}

void Ambassador::resignFederationExecution(ResignAction) {
  requireJoined(L"resignFederationExecution");
  std::unique_ptr<Link> link = std::move(link_);
  // Undelivered interactions go with the membership. The buffer keeps its memory, so a
  // callback that resigns still reads valid values until it returns.
  deliver_.clear();
  deliverPos_ = 0;
  federate_ = nullptr;
  link->resign();
}

// --------------------------------------------------------------- Declaration management

void Ambassador::publishInteractionClass(InteractionClassHandle theInteraction) {
  published_[interactionClass(theInteraction, L"publishInteractionClass")] = true;
}

void Ambassador::unpublishInteractionClass(InteractionClassHandle theInteraction) {
  const std::uint32_t cls = interactionClass(theInteraction, L"unpublishInteractionClass");
  if (!published_[cls])
    throw InteractionClassNotPublished(
        L"interaction class " + model_->interactions.classes[cls].qualified + L" is not published");
  published_[cls] = false;
}

void Ambassador::subscribeInteractionClass(InteractionClassHandle theClass, bool) {
  const std::uint32_t cls = interactionClass(theClass, L"subscribeInteractionClass");
  if (subscribed_[cls]) return;
  link_->subscribe(cls);
  subscribed_[cls] = true;
}

void Ambassador::unsubscribeInteractionClass(InteractionClassHandle theClass) {
  const std::uint32_t cls = interactionClass(theClass, L"unsubscribeInteractionClass");
  if (!subscribed_[cls]) return;
  link_->unsubscribe(cls);
  subscribed_[cls] = false;
}

// -------------------------------------------------------------------- Object management

void Ambassador::sendInteraction(InteractionClassHandle theInteraction,
                                 ParameterHandleValueMap const& theParameterValues,
                                 VariableLengthData const& theUserSuppliedTag) {
  const std::uint32_t cls = interactionClass(theInteraction, L"sendInteraction");
  if (!published_[cls])
    throw InteractionClassNotPublished(
        L"interaction class " + model_->interactions.classes[cls].qualified + L" is not published");
  const FddTree& tree = model_->interactions;
  for (const auto& entry : theParameterValues) {
    const std::uint64_t p = valueOf(entry.first);
    if (p > kNoClass || !tree.memberAvailable(cls, static_cast<std::uint32_t>(p)))
      throw InteractionParameterNotDefined(entry.first.toString() +
                                           L" is not a parameter of interaction class " +
                                           tree.classes[cls].qualified);
  }
  link_->send(cls, theParameterValues, theUserSuppliedTag);
}

// --------------------------------------------------------------------- Support services

ObjectClassHandle Ambassador::getObjectClassHandle(std::wstring const& theName) {
  requireJoined(L"getObjectClassHandle");
  const std::uint32_t cls = model_->objects.findClass(theName);
  if (cls == kNoClass) throw NameNotFound(L"no object class named '" + theName + L"'");
  return makeHandle<ObjectClassHandle>(cls);
}

std::wstring Ambassador::getObjectClassName(ObjectClassHandle theHandle) {
  return model_->objects.classes[objectClass(theHandle)].qualified;
}

AttributeHandle Ambassador::getAttributeHandle(ObjectClassHandle whichClass,
                                               std::wstring const& theAttributeName) {
  const std::uint32_t cls = objectClass(whichClass);
  const std::uint32_t a = model_->objects.findMember(cls, theAttributeName);
  if (a == kNoClass)
    throw NameNotFound(L"object class " + model_->objects.classes[cls].qualified +
                       L" has no attribute '" + theAttributeName + L"'");
  return makeHandle<AttributeHandle>(a);
}

std::wstring Ambassador::getAttributeName(ObjectClassHandle whichClass, AttributeHandle theHandle) {
  const std::uint32_t cls = objectClass(whichClass);
  const std::uint64_t a = valueOf(theHandle);
  if (a >= model_->objects.members.size())
    throw InvalidAttributeHandle(theHandle.toString() + L" is not valid");
  if (!model_->objects.memberAvailable(cls, static_cast<std::uint32_t>(a)))
    throw AttributeNotDefined(theHandle.toString() + L" is not an attribute of " +
                              model_->objects.classes[cls].qualified);
  return model_->objects.members[a].name;
}

InteractionClassHandle Ambassador::getInteractionClassHandle(std::wstring const& theName) {
  requireJoined(L"getInteractionClassHandle");
  const std::uint32_t cls = model_->interactions.findClass(theName);
  if (cls == kNoClass) throw NameNotFound(L"no interaction class named '" + theName + L"'");
  return makeHandle<InteractionClassHandle>(cls);
}

std::wstring Ambassador::getInteractionClassName(InteractionClassHandle theHandle) {
  requireJoined(L"getInteractionClassName");
  const std::uint64_t cls = valueOf(theHandle);
  if (cls >= model_->interactions.classes.size())
    throw InvalidInteractionClassHandle(theHandle.toString() +
                                        L" is not an interaction class of this federation");
  return model_->interactions.classes[cls].qualified;
}

ParameterHandle Ambassador::getParameterHandle(InteractionClassHandle whichClass,
                                               std::wstring const& theName) {
  requireJoined(L"getParameterHandle");
  const std::uint64_t cls = valueOf(whichClass);
  if (cls >= model_->interactions.classes.size())
    throw InvalidInteractionClassHandle(whichClass.toString() +
                                        L" is not an interaction class of this federation");
  const std::uint32_t p = model_->interactions.findMember(static_cast<std::uint32_t>(cls), theName);
  if (p == kNoClass)
    throw NameNotFound(L"interaction class " + model_->interactions.classes[cls].qualified +
                       L" has no parameter '" + theName + L"'");
  return makeHandle<ParameterHandle>(p);
}

std::wstring Ambassador::getParameterName(InteractionClassHandle whichClass,
                                          ParameterHandle theHandle) {
  requireJoined(L"getParameterName");
  const std::uint64_t cls = valueOf(whichClass);
  const FddTree& tree = model_->interactions;
  if (cls >= tree.classes.size())
    throw InvalidInteractionClassHandle(whichClass.toString() +
                                        L" is not an interaction class of this federation");
  const std::uint64_t p = valueOf(theHandle);
  if (p >= tree.members.size())
    throw InvalidParameterHandle(theHandle.toString() + L" is not valid");
  if (!tree.memberAvailable(static_cast<std::uint32_t>(cls), static_cast<std::uint32_t>(p)))
    throw InteractionParameterNotDefined(theHandle.toString() + L" is not a parameter of " +
                                         tree.classes[cls].qualified);
  return tree.members[p].name;
}

TransportationType Ambassador::getTransportationType(std::wstring const& transportationName) {
  requireJoined(L"getTransportationType");
  if (transportationName == L"HLAreliable") return RELIABLE;
  if (transportationName == L"HLAbestEffort") return BEST_EFFORT;
  throw InvalidTransportationName(L"unknown transportation '" + transportationName + L"'");
}

std::wstring Ambassador::getTransportationName(TransportationType transportationType) {
  requireJoined(L"getTransportationName");
  if (transportationType == RELIABLE) return L"HLAreliable";
  if (transportationType == BEST_EFFORT) return L"HLAbestEffort";
  throw InvalidTransportationType(L"unknown transportation type " +
                                  std::to_wstring(transportationType));
}

OrderType Ambassador::getOrderType(std::wstring const& orderName) {
  requireJoined(L"getOrderType");
  if (orderName == L"Receive") return RECEIVE;
  if (orderName == L"TimeStamp") return TIMESTAMP;
  throw InvalidOrderName(L"unknown order '" + orderName + L"'");
}

std::wstring Ambassador::getOrderName(OrderType orderType) {
  requireJoined(L"getOrderName");
  if (orderType == RECEIVE) return L"Receive";
  if (orderType == TIMESTAMP) return L"TimeStamp";
  throw InvalidOrderType(L"unknown order type " + std::to_wstring(orderType));
}

unsigned long Ambassador::normalizeFederateHandle(FederateHandle theFederateHandle) {
  requireJoined(L"normalizeFederateHandle");
  if (!theFederateHandle.isValid()) throw InvalidFederateHandle(L"invalid federate handle");
  return static_cast<unsigned long>(valueOf(theFederateHandle));
}

unsigned long Ambassador::normalizeServiceGroup(ServiceGroupIndicator theServiceGroup) {
  requireJoined(L"normalizeServiceGroup");
  return static_cast<unsigned long>(theServiceGroup);
}

// ------------------------------------------------------------------- Callback delivery

bool Ambassador::evokeCallback(double approximateMinimumTimeInSeconds) {
  return evoke(approximateMinimumTimeInSeconds, approximateMinimumTimeInSeconds, true);
}

bool Ambassador::evokeMultipleCallbacks(double approximateMinimumTimeInSeconds,
                                        double approximateMaximumTimeInSeconds) {
  return evoke(approximateMinimumTimeInSeconds, approximateMaximumTimeInSeconds, false);
}

void Ambassador::enableCallbacks() {
  requireJoined(L"enableCallbacks");
  callbacksEnabled_ = true;
}

void Ambassador::disableCallbacks() {
  requireJoined(L"disableCallbacks");
  callbacksEnabled_ = false;
}

bool Ambassador::refill(double seconds) {
  if (pending()) return true;
  deliver_.clear();
  deliverPos_ = 0;
  return link_->fetch(deliver_, seconds);
}

bool Ambassador::evoke(double minSeconds, double maxSeconds, bool single) {
  requireJoined(single ? L"evokeCallback" : L"evokeMultipleCallbacks");
  if (inEvoke_) throw RTIinternalError(L"callbacks cannot be evoked from within a callback");
  FlagGuard guard(inEvoke_);
  if (!(minSeconds > 0)) minSeconds = 0;
  if (!(maxSeconds > minSeconds)) maxSeconds = minSeconds;
  // A poll that may not wait (the common evokeCallback(0) of a drain loop) never needs
  // the clock: its deadlines have passed as it starts.
  const bool timed = maxSeconds > 0;
  const auto start = timed ? Clock::now() : Clock::time_point();
  const auto minEnd = start + std::chrono::duration_cast<Clock::duration>(
                                  std::chrono::duration<double>(minSeconds));
  const auto maxEnd = start + std::chrono::duration_cast<Clock::duration>(
                                  std::chrono::duration<double>(maxSeconds));

  if (!callbacksEnabled_) {
    refill(0);
    std::this_thread::sleep_until(minEnd);
    return link_ && pending();
  }

  const Link* link = link_.get();
  unsigned delivered = 0;
  unsigned rounds = 0;
  for (;;) {
    if (pending() || refill(0)) {
      if (deliverOne()) {
        ++delivered;
        // A callback may have resigned (or resigned and joined elsewhere).
        if (single || link_.get() != link) break;
      }
      // Reading the clock costs more than a delivery: look every so often.
      if ((++rounds & 63) == 0 && (!timed || Clock::now() >= maxEnd)) break;
      continue;
    }
    if (single && delivered) break;
    if (!timed) break;
    const auto now = Clock::now();
    if (now >= minEnd) break;
    refill(std::chrono::duration<double>(minEnd - now).count());
  }
  return link_.get() == link && link_ && (pending() || refill(0));
}

bool Ambassador::deliverOne() {
  const FddTree& tree = model_->interactions;
  while (pending()) {
    wire::Message m;
    const wire::DecodeResult d =
        wire::decodeFrame(deliver_.data() + deliverPos_, deliver_.size() - deliverPos_, m);
    if (d.status != wire::DecodeStatus::Complete) {
      deliver_.clear();
      deliverPos_ = 0;
      throw RTIinternalError(L"corrupt message in the receive queue");
    }
    deliverPos_ += d.frameSize;
    if (m.type != wire::MsgType::Interaction || m.handle >= tree.classes.size()) continue;

    // Received as the nearest class this federate subscribes to, with only the
    // parameters that class knows.
    std::uint32_t as = m.handle;
    while (as != kNoClass && !subscribed_[as]) as = tree.classes[as].parent;
    if (as == kNoClass) continue;  // unsubscribed since it was sent

    auto it = rxParams_.begin();
    wire::ParamReader reader(m);
    std::uint32_t p;
    wire::Bytes value;
    while (reader.next(p, value)) {
      if (!tree.memberAvailable(as, p)) continue;
      void* bytes = const_cast<unsigned char*>(value.data);
      const auto handle = makeHandle<ParameterHandle>(p);
      if (it != rxParams_.end() && it->first == handle) {
        it->second.setDataPointer(bytes, static_cast<unsigned long>(value.size));
        ++it;
      } else {
        rxParams_.erase(it, rxParams_.end());
        rxParams_[handle].setDataPointer(bytes, static_cast<unsigned long>(value.size));
        it = rxParams_.end();
      }
    }
    rxParams_.erase(it, rxParams_.end());
    rxTag_.setDataPointer(const_cast<unsigned char*>(m.tag.data),
                          static_cast<unsigned long>(m.tag.size));
    federate_->receiveInteraction(makeHandle<InteractionClassHandle>(as), rxParams_, rxTag_,
                                  RECEIVE, RELIABLE);
    return true;
  }
  return false;
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

// ---------------------------------------------------------------------------- Helpers

void Ambassador::requireJoined(const wchar_t* operation) const {
  if (!link_)
    throw FederateNotExecutionMember(std::wstring(operation) +
                                     L": this federate has not joined a federation execution");
}

std::uint32_t Ambassador::interactionClass(InteractionClassHandle h,
                                           const wchar_t* operation) const {
  requireJoined(operation);
  const std::uint64_t cls = valueOf(h);
  if (cls >= model_->interactions.classes.size())
    throw InteractionClassNotDefined(std::wstring(operation) + L": " + h.toString() +
                                     L" is not an interaction class of this federation");
  return static_cast<std::uint32_t>(cls);
}

std::uint32_t Ambassador::objectClass(ObjectClassHandle h) const {
  requireJoined(L"object class lookup");
  const std::uint64_t cls = valueOf(h);
  if (cls >= model_->objects.classes.size())
    throw InvalidObjectClassHandle(h.toString() + L" is not an object class of this federation");
  return static_cast<std::uint32_t>(cls);
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
