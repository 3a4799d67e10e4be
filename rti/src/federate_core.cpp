#include "federate_core.h"

#include "fdd_parser.h"
#include "federation_core.h"
#include "federation_url.h"
#include "hub_link.h"
#include "local_link.h"
#include "text.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace vcrti {

namespace {

using Clock = std::chrono::steady_clock;

FederationUrl parseUrl(const std::wstring& name) {
  FederationUrl url;
  std::wstring why;
  if (!parseFederationUrl(name, url, why))
    throw RtiError(Fault::RTIinternalError,
                   L"invalid federation execution name '" + name + L"': " + why);
  return url;
}

// Clears a flag when the scope ends, even by exception from a callback.
struct FlagGuard {
  bool& flag;
  explicit FlagGuard(bool& f) : flag(f) { flag = true; }
  ~FlagGuard() { flag = false; }
};

bool contains(const HandleSet& set, std::uint32_t h) {
  return std::binary_search(set.begin(), set.end(), h);
}

std::wstring number(std::uint64_t v) {
  return std::to_wstring(v);
}

}  // namespace

FederateCore::~FederateCore() {
  if (link_) {
    try {
      link_->resign(ResignMode::DeleteInstances);
    } catch (const RtiError&) {
      // The federation is gone or unreachable: nothing left to leave.
    }
  }
}

// ---------------------------------------------------------------- Federation management

void FederateCore::createFederation(const std::wstring& federation, const std::wstring& fddFile) {
  parseUrl(federation);  // a bad name is reported before the file is read
  createFederation(federation, parseFddFile(fddFile));
}

void FederateCore::createFederation(const std::wstring& federation,
                                    const std::vector<std::wstring>& modules) {
  parseUrl(federation);
  createFederation(federation, readFomModules(modules));
}

void FederateCore::createFederation(const std::wstring& federation, FddModel fdd) {
  const FederationUrl url = parseUrl(federation);
  auto model = std::make_shared<FddModel>(std::move(fdd));
  if (url.local)
    createLocalFederation(url.name, std::move(model));
  else
    createHubFederation(url, *model);
}

void FederateCore::destroyFederation(const std::wstring& federation) {
  const FederationUrl url = parseUrl(federation);
  if (url.local)
    destroyLocalFederation(url.name);
  else
    destroyHubFederation(url);
}

std::uint32_t FederateCore::join(const std::wstring& federateType, const std::wstring& federation,
                                 FederateCallbacks& callbacks,
                                 const std::vector<std::wstring>& modules) {
  if (link_)
    throw RtiError(Fault::FederateAlreadyExecutionMember,
                   L"this federate has already joined a federation execution");
  const FederationUrl url = parseUrl(federation);
  const std::vector<FddModel> read = parseFomModules(modules);
  link_ =
      url.local ? joinLocalFederation(url.name, read) : joinHubFederation(url, federateType, read);
  model_ = link_->model();
  callbacks_ = &callbacks;
  self_ = link_->federateHandle();
  publishedInteractions_.assign(model_->interactions.classes.size(), false);
  subscribedInteractions_.assign(model_->interactions.classes.size(), false);
  publishedAttributes_.assign(model_->objects.classes.size(), {});
  subscribedAttributes_.assign(model_->objects.classes.size(), {});
  instances_.clear();
  byName_.clear();
  reserved_.clear();
  nextInstance_ = 1;
  deliver_.clear();
  deliverPos_ = 0;
  return self_;
}

void FederateCore::resign(ResignMode mode) {
  requireJoined(L"resignFederationExecution");
  if (mode == ResignMode::RefuseIfOwning)
    for (const auto& [h, k] : instances_)
      if (k.owned)
        throw RtiError(Fault::FederateOwnsAttributes,
                       L"this federate owns the attributes of instance '" + k.name +
                           L"': delete its instances or resign with an action that does");
  std::unique_ptr<Link> link = std::move(link_);
  // Undelivered callbacks go with the membership. The buffer keeps its memory, so a
  // callback that resigns still reads valid values until it returns.
  deliver_.clear();
  deliverPos_ = 0;
  callbacks_ = nullptr;
  instances_.clear();
  byName_.clear();
  reserved_.clear();
  link->resign(mode);
}

void FederateCore::requireJoined(const wchar_t* operation) const {
  if (!link_)
    throw RtiError(
        Fault::FederateNotExecutionMember,
        std::wstring(operation) + L": this federate has not joined a federation execution");
}

// --------------------------------------------------------------- Declaration management

void FederateCore::publishInteraction(std::uint64_t cls) {
  publishedInteractions_[interactionCls(cls, L"publishInteractionClass")] = true;
}

void FederateCore::unpublishInteraction(std::uint64_t h) {
  const std::uint32_t cls = interactionCls(h, L"unpublishInteractionClass");
  if (!publishedInteractions_[cls])
    throw RtiError(
        Fault::InteractionClassNotPublished,
        L"interaction class " + model_->interactions.classes[cls].qualified + L" is not published");
  publishedInteractions_[cls] = false;
}

void FederateCore::subscribeInteraction(std::uint64_t h) {
  const std::uint32_t cls = interactionCls(h, L"subscribeInteractionClass");
  if (subscribedInteractions_[cls]) return;
  link_->subscribeInteractions(cls, true);
  subscribedInteractions_[cls] = true;
}

void FederateCore::unsubscribeInteraction(std::uint64_t h) {
  const std::uint32_t cls = interactionCls(h, L"unsubscribeInteractionClass");
  if (!subscribedInteractions_[cls]) return;
  link_->subscribeInteractions(cls, false);
  subscribedInteractions_[cls] = false;
}

void FederateCore::publishObject(std::uint64_t h, const HandleSet& attributes) {
  const std::uint32_t cls = objectCls(h, L"publishObjectClassAttributes");
  checkAttributes(cls, attributes);
  // A publication replaces the one before; an empty one publishes nothing.
  publishedAttributes_[cls] = attributes;
}

void FederateCore::unpublishObject(std::uint64_t h, const HandleSet* attributes) {
  const std::uint32_t cls = objectCls(h, L"unpublishObjectClass");
  HandleSet& mine = publishedAttributes_[cls];
  if (!attributes) {
    mine.clear();
    return;
  }
  checkAttributes(cls, *attributes);
  HandleSet left;
  std::set_difference(mine.begin(), mine.end(), attributes->begin(), attributes->end(),
                      std::back_inserter(left));
  mine.swap(left);
}

void FederateCore::subscribeObject(std::uint64_t h, const HandleSet& attributes) {
  const std::uint32_t cls = objectCls(h, L"subscribeObjectClassAttributes");
  checkAttributes(cls, attributes);
  if (attributes.empty()) return unsubscribeObject(h, nullptr);
  // The federation needs to hear only of the first: which attributes pass is decided here.
  if (subscribedAttributes_[cls].empty()) link_->subscribeObjects(cls, true);
  subscribedAttributes_[cls] = attributes;
}

void FederateCore::unsubscribeObject(std::uint64_t h, const HandleSet* attributes) {
  const std::uint32_t cls = objectCls(h, L"unsubscribeObjectClass");
  HandleSet& mine = subscribedAttributes_[cls];
  if (mine.empty()) return;
  HandleSet left;
  if (attributes) {
    checkAttributes(cls, *attributes);
    std::set_difference(mine.begin(), mine.end(), attributes->begin(), attributes->end(),
                        std::back_inserter(left));
  }
  if (left.empty()) link_->subscribeObjects(cls, false);
  mine.swap(left);
}

// -------------------------------------------------------------------- Object management

void FederateCore::sendInteraction(std::uint64_t h, const HandleValues& params, ValueView tag) {
  const std::uint32_t cls = interactionCls(h, L"sendInteraction");
  const FddTree& tree = model_->interactions;
  if (!publishedInteractions_[cls])
    throw RtiError(Fault::InteractionClassNotPublished,
                   L"interaction class " + tree.classes[cls].qualified + L" is not published");
  for (const auto& entry : params)
    if (!tree.memberAvailable(cls, entry.first))
      throw RtiError(Fault::InteractionParameterNotDefined,
                     L"ParameterHandle(" + number(entry.first) +
                         L") is not a parameter of interaction class " +
                         tree.classes[cls].qualified);
  link_->sendInteraction(cls, params, tag);
}

void FederateCore::reserveName(const std::wstring& name) {
  requireJoined(L"reserveObjectInstanceName");
  if (name.empty()) throw RtiError(Fault::IllegalName, L"an object instance name cannot be empty");
  if (name.compare(0, 3, L"HLA") == 0)
    throw RtiError(Fault::IllegalName,
                   L"object instance name '" + name + L"': names beginning with HLA are the RTI's");
  const std::string wireName = toUtf8(name);
  if (wireName.size() > wire::kMaxFrameBody / 2)
    throw RtiError(Fault::IllegalName, L"an object instance name of " + number(wireName.size()) +
                                           L" bytes is too long");
  tx_.clear();
  wire::FrameWriter w(tx_, wire::MsgType::ReserveName, 4 + wireName.size());
  w.str(wireName);
  w.finish();
  post(tx_);
}

InstanceHandle FederateCore::registerInstance(std::uint64_t h, const std::wstring* name) {
  const std::uint32_t cls = objectCls(h, L"registerObjectInstance");
  if (publishedAttributes_[cls].empty())
    throw RtiError(
        Fault::ObjectClassNotPublished,
        L"object class " + model_->objects.classes[cls].qualified + L" is not published");
  if (name && !reserved_.count(*name)) {
    if (byName_.count(*name))
      throw RtiError(Fault::ObjectInstanceNameInUse,
                     L"object instance name '" + *name + L"' is in use");
    throw RtiError(Fault::ObjectInstanceNameNotReserved,
                   L"object instance name '" + *name + L"' has not been reserved by this federate");
  }
  const InstanceHandle instance = (InstanceHandle{self_} << 32) | nextInstance_;
  const std::string wireName = name ? toUtf8(*name) : generatedInstanceName(instance);
  tx_.clear();
  wire::FrameWriter w(tx_, wire::MsgType::Register, 16 + wireName.size());
  w.u64(instance).u32(cls).str(wireName);
  w.finish();
  post(tx_);
  ++nextInstance_;
  Known& k = instances_[instance];
  k.cls = k.as = cls;
  k.owned = true;
  k.ownedAttributes = publishedAttributes_[cls];
  k.name = name ? *name : fromUtf8(wireName);
  byName_[k.name] = instance;
  if (name) reserved_.erase(*name);
  return instance;
}

void FederateCore::updateAttributes(InstanceHandle h, const HandleValues& values, ValueView tag) {
  const Known& k = known(h, L"updateAttributeValues");
  for (const auto& entry : values) {
    // What it owns it published, so the class has it: the usual case needs no other look.
    if (k.owned && contains(k.ownedAttributes, entry.first)) continue;
    if (!model_->objects.memberAvailable(k.cls, entry.first))
      throw RtiError(Fault::AttributeNotDefined, L"AttributeHandle(" + number(entry.first) +
                                                     L") is not an attribute of " +
                                                     model_->objects.classes[k.cls].qualified);
    throw RtiError(Fault::AttributeNotOwned, L"AttributeHandle(" + number(entry.first) +
                                                 L") of instance '" + k.name +
                                                 L"' is not owned by this federate");
  }
  link_->updateAttributes(h, values, tag);
}

void FederateCore::deleteInstance(InstanceHandle h, ValueView tag) {
  const Known& k = known(h, L"deleteObjectInstance");
  if (!k.owned)
    throw RtiError(Fault::DeletePrivilegeNotHeld,
                   L"instance '" + k.name + L"' is not this federate's to delete");
  tx_.clear();
  wire::FrameWriter w(tx_, wire::MsgType::Delete, 16 + tag.size);
  w.u64(h).bytes(tag.data, tag.size);
  if (!w.finish())
    throw RtiError(Fault::RTIinternalError, L"the tag exceeds the limit of a message");
  post(tx_);
  forget(h);
}

void FederateCore::localDeleteInstance(InstanceHandle h) {
  const Known& k = known(h, L"localDeleteObjectInstance");
  if (k.owned)
    throw RtiError(Fault::FederateOwnsAttributes,
                   L"this federate owns the attributes of instance '" + k.name + L"'");
  tx_.clear();
  wire::FrameWriter w(tx_, wire::MsgType::LocalDelete, 8);
  w.u64(h);
  w.finish();
  post(tx_);
  forget(h);
}

void FederateCore::requestInstanceUpdate(InstanceHandle h, const HandleSet& attributes,
                                         ValueView tag) {
  const Known& k = known(h, L"requestAttributeValueUpdate");
  checkAttributes(k.cls, attributes);
  tx_.clear();
  encodeHandles(tx_, wire::MsgType::RequestUpdate, h, attributes, tag);
  post(tx_);
}

void FederateCore::requestClassUpdate(std::uint64_t h, const HandleSet& attributes, ValueView tag) {
  const std::uint32_t cls = objectCls(h, L"requestAttributeValueUpdate");
  checkAttributes(cls, attributes);
  tx_.clear();
  encodeHandles(tx_, wire::MsgType::RequestClassUpdate, cls, attributes, tag);
  post(tx_);
}

void FederateCore::post(const ByteBuffer& frame) {
  link_->post(frame.data(), frame.size());
}

void FederateCore::forget(InstanceHandle h) {
  auto it = instances_.find(h);
  if (it == instances_.end()) return;
  byName_.erase(it->second.name);
  instances_.erase(it);
}

// --------------------------------------------------------------------- Support services

std::uint32_t FederateCore::objectClass(const std::wstring& name) const {
  requireJoined(L"getObjectClassHandle");
  const std::uint32_t cls = model_->objects.findClass(name);
  if (cls == kNoClass)
    throw RtiError(Fault::NameNotFound, L"no object class named '" + name + L"'");
  return cls;
}

const std::wstring& FederateCore::objectClassName(std::uint64_t h) const {
  requireJoined(L"getObjectClassName");
  if (h >= model_->objects.classes.size())
    throw RtiError(
        Fault::InvalidObjectClassHandle,
        L"ObjectClassHandle(" + number(h) + L") is not an object class of this federation");
  return model_->objects.classes[h].qualified;
}

std::uint32_t FederateCore::attribute(std::uint64_t h, const std::wstring& name) const {
  objectClassName(h);  // checks the handle
  const auto cls = static_cast<std::uint32_t>(h);
  const std::uint32_t a = model_->objects.findMember(cls, name);
  if (a == kNoClass)
    throw RtiError(Fault::NameNotFound, L"object class " + model_->objects.classes[cls].qualified +
                                            L" has no attribute '" + name + L"'");
  return a;
}

const std::wstring& FederateCore::attributeName(std::uint64_t h, std::uint64_t a) const {
  objectClassName(h);  // checks the handle
  const auto cls = static_cast<std::uint32_t>(h);
  const FddTree& tree = model_->objects;
  if (a >= tree.members.size())
    throw RtiError(Fault::InvalidAttributeHandle,
                   L"AttributeHandle(" + number(a) + L") is not valid");
  if (!tree.memberAvailable(cls, static_cast<std::uint32_t>(a)))
    throw RtiError(Fault::AttributeNotDefined, L"AttributeHandle(" + number(a) +
                                                   L") is not an attribute of " +
                                                   tree.classes[cls].qualified);
  return tree.members[a].name;
}

std::uint32_t FederateCore::interactionClass(const std::wstring& name) const {
  requireJoined(L"getInteractionClassHandle");
  const std::uint32_t cls = model_->interactions.findClass(name);
  if (cls == kNoClass)
    throw RtiError(Fault::NameNotFound, L"no interaction class named '" + name + L"'");
  return cls;
}

const std::wstring& FederateCore::interactionClassName(std::uint64_t h) const {
  requireJoined(L"getInteractionClassName");
  if (h >= model_->interactions.classes.size())
    throw RtiError(Fault::InvalidInteractionClassHandle,
                   L"InteractionClassHandle(" + number(h) +
                       L") is not an interaction class of this federation");
  return model_->interactions.classes[h].qualified;
}

std::uint32_t FederateCore::parameter(std::uint64_t h, const std::wstring& name) const {
  interactionClassName(h);  // checks the handle
  const auto cls = static_cast<std::uint32_t>(h);
  const std::uint32_t p = model_->interactions.findMember(cls, name);
  if (p == kNoClass)
    throw RtiError(Fault::NameNotFound, L"interaction class " +
                                            model_->interactions.classes[cls].qualified +
                                            L" has no parameter '" + name + L"'");
  return p;
}

const std::wstring& FederateCore::parameterName(std::uint64_t h, std::uint64_t p) const {
  interactionClassName(h);  // checks the handle
  const auto cls = static_cast<std::uint32_t>(h);
  const FddTree& tree = model_->interactions;
  if (p >= tree.members.size())
    throw RtiError(Fault::InvalidParameterHandle,
                   L"ParameterHandle(" + number(p) + L") is not valid");
  if (!tree.memberAvailable(cls, static_cast<std::uint32_t>(p)))
    throw RtiError(Fault::InteractionParameterNotDefined, L"ParameterHandle(" + number(p) +
                                                              L") is not a parameter of " +
                                                              tree.classes[cls].qualified);
  return tree.members[p].name;
}

InstanceHandle FederateCore::instance(const std::wstring& name) const {
  requireJoined(L"getObjectInstanceHandle");
  auto it = byName_.find(name);
  if (it == byName_.end())
    throw RtiError(Fault::ObjectInstanceNotKnown,
                   L"no object instance named '" + name + L"' is known to this federate");
  return it->second;
}

const std::wstring& FederateCore::instanceName(InstanceHandle h) const {
  return known(h).name;
}

std::uint32_t FederateCore::knownClass(InstanceHandle h) const {
  return known(h).as;
}

// ---------------------------------------------------------------------------- Helpers

std::uint32_t FederateCore::interactionCls(std::uint64_t h, const wchar_t* operation) const {
  requireJoined(operation);
  if (h >= model_->interactions.classes.size())
    throw RtiError(Fault::InteractionClassNotDefined,
                   std::wstring(operation) + L": InteractionClassHandle(" + number(h) +
                       L") is not an interaction class of this federation");
  return static_cast<std::uint32_t>(h);
}

std::uint32_t FederateCore::objectCls(std::uint64_t h, const wchar_t* operation) const {
  requireJoined(operation);
  if (h >= model_->objects.classes.size())
    throw RtiError(Fault::ObjectClassNotDefined,
                   std::wstring(operation) + L": ObjectClassHandle(" + number(h) +
                       L") is not an object class of this federation");
  return static_cast<std::uint32_t>(h);
}

void FederateCore::checkAttributes(std::uint32_t cls, const HandleSet& attributes) const {
  for (std::uint32_t a : attributes)
    if (!model_->objects.memberAvailable(cls, a))
      throw RtiError(Fault::AttributeNotDefined, L"AttributeHandle(" + number(a) +
                                                     L") is not an attribute of " +
                                                     model_->objects.classes[cls].qualified);
}

FederateCore::Known& FederateCore::known(InstanceHandle h, const wchar_t* operation) {
  requireJoined(operation);
  auto it = instances_.find(h);
  if (it == instances_.end())
    throw RtiError(Fault::ObjectInstanceNotKnown, std::wstring(operation) +
                                                      L": ObjectInstanceHandle(" + number(h) +
                                                      L") is not known to this federate");
  return it->second;
}

const FederateCore::Known& FederateCore::known(InstanceHandle h) const {
  return const_cast<FederateCore*>(this)->known(h, L"object instance lookup");
}

std::uint32_t FederateCore::nearestSubscribed(std::uint32_t cls) const {
  while (cls != kNoClass && subscribedAttributes_[cls].empty())
    cls = model_->objects.classes[cls].parent;
  return cls;
}

// ------------------------------------------------------------------- Callback delivery

void FederateCore::enableCallbacks(bool on) {
  requireJoined(on ? L"enableCallbacks" : L"disableCallbacks");
  callbacksEnabled_ = on;
}

bool FederateCore::refill(double seconds) {
  if (pending()) return true;
  deliver_.clear();
  deliverPos_ = 0;
  return link_->fetch(deliver_, seconds);
}

bool FederateCore::evoke(double minSeconds, double maxSeconds, bool single) {
  requireJoined(single ? L"evokeCallback" : L"evokeMultipleCallbacks");
  if (inEvoke_)
    throw RtiError(Fault::RTIinternalError, L"callbacks cannot be evoked from within a callback");
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

void FederateCore::growModel(const wire::Message& m) {
  auto grown = std::make_shared<FddModel>();
  std::string err;
  if (!decodeFdd(m.blob.data, m.blob.size, *grown, err))
    throw RtiError(Fault::RTIinternalError,
                   L"the federation sent an unusable object model: " + fromUtf8(err));
  // Handles given before keep their meaning: the model only grows.
  if (grown->interactions.classes.size() < model_->interactions.classes.size() ||
      grown->objects.classes.size() < model_->objects.classes.size() ||
      grown->interactions.members.size() < model_->interactions.members.size() ||
      grown->objects.members.size() < model_->objects.members.size())
    throw RtiError(Fault::RTIinternalError, L"the federation sent a smaller object model");
  grown->fileName = model_->fileName;
  model_ = std::move(grown);
  publishedInteractions_.resize(model_->interactions.classes.size(), false);
  subscribedInteractions_.resize(model_->interactions.classes.size(), false);
  publishedAttributes_.resize(model_->objects.classes.size());
  subscribedAttributes_.resize(model_->objects.classes.size());
}

bool FederateCore::deliverOne() {
  wire::Message& m = rxMessage_;
  while (pending()) {
    const wire::DecodeResult d =
        wire::decodeFrame(deliver_.data() + deliverPos_, deliver_.size() - deliverPos_, m);
    if (d.status != wire::DecodeStatus::Complete) {
      deliver_.clear();
      deliverPos_ = 0;
      throw RtiError(Fault::RTIinternalError, L"corrupt message in the receive queue");
    }
    deliverPos_ += d.frameSize;
    const ValueView tag{m.tag.data, m.tag.size};
    switch (m.type) {
      case wire::MsgType::Interaction: {
        const FddTree& tree = model_->interactions;
        if (m.handle >= tree.classes.size()) continue;
        // Received as the nearest class this federate subscribes to, with only the
        // parameters that class knows.
        std::uint32_t as = m.handle;
        while (as != kNoClass && !subscribedInteractions_[as]) as = tree.classes[as].parent;
        if (as == kNoClass) continue;  // unsubscribed since it was sent
        rxValues_.clear();
        wire::ParamReader reader(m);
        std::uint32_t p;
        wire::Bytes value;
        while (reader.next(p, value))
          if (tree.memberAvailable(as, p))
            rxValues_.emplace_back(p, ValueView{value.data, value.size});
        callbacks_->receiveInteraction(as, rxValues_, tag);
        return true;
      }
      case wire::MsgType::Update: {
        auto it = instances_.find(m.instance);
        if (it == instances_.end()) continue;  // deleted locally while it travelled
        const std::uint32_t as = nearestSubscribed(it->second.cls);
        if (as == kNoClass) continue;
        const HandleSet& wanted = subscribedAttributes_[as];
        rxValues_.clear();
        wire::ParamReader reader(m);
        std::uint32_t a;
        wire::Bytes value;
        while (reader.next(a, value))
          if (contains(wanted, a)) rxValues_.emplace_back(a, ValueView{value.data, value.size});
        if (rxValues_.empty()) continue;
        callbacks_->reflectAttributes(m.instance, rxValues_, tag);
        return true;
      }
      case wire::MsgType::Discover: {
        if (m.handle >= model_->objects.classes.size() || instances_.count(m.instance)) continue;
        const std::uint32_t as = nearestSubscribed(m.handle);
        Known& k = instances_[m.instance];
        k.cls = m.handle;
        // Unsubscribed meanwhile: known all the same, so that the federation and this
        // federate agree, but there is nobody to tell.
        k.as = as == kNoClass ? m.handle : as;
        k.name = fromUtf8(m.name);
        byName_[k.name] = m.instance;
        if (as == kNoClass) continue;
        callbacks_->discoverInstance(m.instance, as, k.name);
        return true;
      }
      case wire::MsgType::ModelGrown:
        growModel(m);
        continue;
      case wire::MsgType::Delete: {
        if (!instances_.count(m.instance)) continue;
        forget(m.instance);
        callbacks_->removeInstance(m.instance, tag);
        return true;
      }
      case wire::MsgType::RequestUpdate: {
        auto it = instances_.find(m.instance);
        if (it == instances_.end() || !it->second.owned) continue;
        rxHandles_.clear();
        wire::ParamReader reader(m);
        std::uint32_t a;
        wire::Bytes value;
        while (reader.next(a, value))
          if (contains(it->second.ownedAttributes, a)) rxHandles_.push_back(a);
        if (rxHandles_.empty()) continue;
        std::sort(rxHandles_.begin(), rxHandles_.end());
        rxHandles_.erase(std::unique(rxHandles_.begin(), rxHandles_.end()), rxHandles_.end());
        callbacks_->provideAttributes(m.instance, rxHandles_, tag);
        return true;
      }
      case wire::MsgType::NameReserved: {
        const std::wstring name = fromUtf8(m.name);
        const bool ok = m.handle == 0;
        if (ok) reserved_.insert(name);
        callbacks_->nameReservation(name, ok);
        return true;
      }
      default:
        continue;
    }
  }
  return false;
}

}  // namespace vcrti
