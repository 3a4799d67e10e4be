#include "federation_core.h"

#include <algorithm>

namespace vcrti {

namespace {

// What an instance or a name costs beyond its characters: the map nodes, the instance's
// record, its list of who knows it and its entry in the index by handle.
constexpr std::size_t kInstanceOverhead = 232;
constexpr std::size_t kNameOverhead = 96;
// A subscription's place in its class's list, allowing for the list's spare capacity.
constexpr std::size_t kSubscriptionBytes = 2 * sizeof(void*) + 16;
// A member's record and what it is tracked by, besides a bit per class.
constexpr std::size_t kMemberOverhead = 256;

// A list of receivers as the allocator holds it.
std::size_t listBytes(std::size_t capacity) {
  return capacity ? capacity * sizeof(void*) + 32 : 0;
}

// A heap block of `n` bytes as the allocator holds it: a header, and rounded up to its
// granule.
std::size_t block(std::size_t n) {
  return n ? (n + 8 + 15) / 16 * 16 : 0;
}

// A string of `n` wide characters, beyond the string object: short ones live inside it.
// Built by concatenation, one may hold up to half again as many as it shows.
std::size_t wideChars(std::size_t n) {
  return n <= 3 ? 0 : block((n + n / 2 + 1) * sizeof(wchar_t));
}

std::size_t memberBytes(const FddModel& model) {
  return kMemberOverhead + (model.interactions.classes.size() + model.objects.classes.size()) / 4;
}

void writeNameReserved(ByteBuffer& out, bool ok, const std::string& name) {
  wire::FrameWriter w(out, wire::MsgType::NameReserved, 8 + name.size());
  w.u32(ok ? 0 : 1).str(name);
  w.finish();
}

}  // namespace

std::string generatedInstanceName(InstanceHandle instance) {
  return "HLAobject_" + std::to_string(instance >> 32) + "_" +
         std::to_string(instance & 0xFFFFFFFFu);
}

std::size_t FederationCore::tableBytes(const FddModel& model) {
  std::size_t n = sizeof(FddModel) + 2 * block(sizeof(FederationCore));
  for (const FddTree* tree : {&model.interactions, &model.objects}) {
    n += block(tree->classes.size() * sizeof(FddClass)) +
         block(tree->members.size() * sizeof(FddMember));
    for (const FddClass& c : tree->classes)
      n += wideChars(c.name.size()) + wideChars(c.qualified.size()) +
           block(c.declared.size() * sizeof(std::uint32_t)) +
           block(c.all.size() * sizeof(std::uint32_t));
    for (const FddMember& m : tree->members)
      n += wideChars(m.name.size()) + wideChars(m.dataType.size()) +
           wideChars(m.transportation.size()) + wideChars(m.order.size());
    for (const FddClass& c : tree->classes)
      n += wideChars(c.transportation.size()) + wideChars(c.order.size());
    // A lookup entry is a node holding its key and value, and a bucket pointer or two.
    for (const auto& entry : tree->byName)
      n += block(sizeof(entry) + 2 * sizeof(void*)) + wideChars(entry.first.size()) +
           2 * sizeof(void*);
    // The routes: a list of members and one of receivers per class, and a generation.
    n += 3 * block(tree->classes.size() * sizeof(std::vector<FederationMember*>));
  }
  // Datatypes: each with its name in the lookup too, its properties and its items.
  n += block(model.dataTypes.size() * sizeof(FddDataType));
  for (const FddDataType& d : model.dataTypes) {
    n += 2 * wideChars(d.name.size()) + block(sizeof(d.name) + 3 * sizeof(void*)) +
         block(d.properties.size() * sizeof(std::wstring)) +
         block(d.items.size() * sizeof(FddItem));
    for (const std::wstring& p : d.properties) n += wideChars(p.size());
    for (const FddItem& i : d.items)
      n += wideChars(i.name.size()) + wideChars(i.dataType.size()) + wideChars(i.value.size());
  }
  for (const std::wstring& module : model.modules) n += wideChars(module.size());
  return n;
}

void FederationCore::Routes::init(const FddTree& tree) {
  direct.assign(tree.classes.size(), {});
  resolved.assign(tree.classes.size(), {});
  resolvedAt.assign(tree.classes.size(), 0);
}

void FederationCore::Routes::grow(const FddTree& tree) {
  direct.resize(tree.classes.size());
  resolved.resize(tree.classes.size());
  resolvedAt.resize(tree.classes.size(), 0);
}

const std::vector<FederationMember*>& FederationCore::resolve(Routes& r, const FddTree& tree,
                                                              std::uint32_t cls) {
  if (seen_.size() < slots_.size()) seen_.resize(slots_.size(), 0);
  if (++stamp_ == 0) {
    std::fill(seen_.begin(), seen_.end(), 0);
    stamp_ = 1;
  }
  std::vector<FederationMember*>& found = r.uncached;
  found.clear();
  // Nearest class first; a member subscribed at several of them is taken once.
  for (std::uint32_t a = cls; a != kNoClass; a = tree.classes[a].parent) {
    const auto& here = r.direct[a];
    work_ += 1 + here.size();
    for (FederationMember* m : here) {
      if (seen_[m->slot_] == stamp_) continue;
      seen_[m->slot_] = stamp_;
      found.push_back(m);
    }
  }
  // Kept for the next send while the budget has room; otherwise worked out each time,
  // which costs about what delivering to them does.
  std::vector<FederationMember*>& kept = r.resolved[cls];
  const std::size_t had = listBytes(kept.capacity());
  const std::size_t needs = listBytes(std::max(kept.capacity(), found.size()));
  if (needs > had && !reserve(needs - had)) return found;
  kept.assign(found.begin(), found.end());
  r.resolvedAt[cls] = r.generation;
  return kept;
}

void FederationCore::unsubscribeAll(Routes& r, FederationMember& m, std::vector<bool>& subs) {
  work_ += subs.size() / 64;
  for (std::uint32_t c = 0; c < subs.size(); ++c) {
    if (!subs[c]) continue;
    auto& list = r.direct[c];
    work_ += list.size();
    list.erase(std::find(list.begin(), list.end(), &m));
    refund(kSubscriptionBytes);
    subs[c] = false;
  }
  ++r.generation;
}

FederationCore::FederationCore(std::shared_ptr<const FddModel> model, MemoryBudget* budget)
    : model_(std::move(model)), budget_(budget) {
  interactions_.init(model_->interactions);
  objects_.init(model_->objects);
}

FederationCore::~FederationCore() {
  if (budget_) budget_->give(bytes_);
}

std::uint32_t FederationCore::join(FederationMember& m) {
  std::uint32_t slot = 0;
  while (slot < slots_.size() && slots_[slot].member) ++slot;
  if (slot == slots_.size()) slots_.emplace_back();
  Slot& s = slots_[slot];
  s = Slot();
  s.member = &m;
  s.interactions.assign(model_->interactions.classes.size(), false);
  s.objects.assign(model_->objects.classes.size(), false);
  m.slot_ = slot;
  m.handle_ = nextHandle_++;
  ++members_;
  work_ += 1 + slots_.size() + memberBytes(*model_) / 64;
  charge(memberBytes(*model_));
  return m.handle_;
}

std::string FederationCore::extendModel(std::shared_ptr<const FddModel> grown) {
  ByteBuffer blob;
  ByteBuffer frame;
  if (!encodeFdd(*grown, blob)) return "the object model holds a name longer than a frame";
  wire::FrameWriter w(frame, wire::MsgType::ModelGrown, 8 + blob.size());
  w.bytes(blob.data(), blob.size());
  if (!w.finish()) return "the object model grew too large for a frame";
  // Each member's share of the tables grows with them, as it would have had it joined now.
  const std::size_t before = memberBytes(*model_), after = memberBytes(*grown);
  if (after > before) charge((after - before) * members_);
  model_ = std::move(grown);
  interactions_.grow(model_->interactions);
  objects_.grow(model_->objects);
  work_ += 1 + slots_.size() + after / 64;
  for (Slot& s : slots_) {
    if (!s.member) continue;
    s.interactions.resize(model_->interactions.classes.size(), false);
    s.objects.resize(model_->objects.classes.size(), false);
    s.member->deliver(frame.data(), frame.size());
  }
  return {};
}

void FederationCore::resign(FederationMember& m, ResignMode mode) {
  const std::uint32_t slot = m.slot_;
  Slot& s = slots_[slot];
  if (s.member != &m) return;
  work_ += 1 + instances_.size() + names_.size();
  for (auto it = instances_.begin(); it != instances_.end();) {
    auto next = std::next(it);
    Instance& inst = it->second;
    if (inst.owner == slot) {
      if (mode == ResignMode::DeleteInstances) {
        removeInstance(it, nullptr, 0);
      } else {
        inst.owner = kNobody;
        if (slot < inst.known.size()) inst.known[slot] = false;
      }
    } else if (slot < inst.known.size()) {
      inst.known[slot] = false;
    }
    it = next;
  }
  for (auto it = names_.begin(); it != names_.end();) {
    if (it->second.slot == slot && it->second.instance == 0) {
      refund(it->second.cost);
      it = names_.erase(it);
    } else {
      ++it;
    }
  }
  unsubscribeAll(interactions_, m, s.interactions);
  unsubscribeAll(objects_, m, s.objects);
  refund(memberBytes(*model_));
  s = Slot();
  --members_;
}

std::string FederationCore::subscribeInteractions(FederationMember& m, std::uint32_t cls, bool on) {
  return setSubscribed(interactions_, model_->interactions, &Slot::interactions, m, cls, on);
}

std::string FederationCore::subscribeObjects(FederationMember& m, std::uint32_t cls, bool on) {
  std::string err = setSubscribed(objects_, model_->objects, &Slot::objects, m, cls, on);
  if (err.empty() && on && !instances_.empty()) {
    Slot& s = slots_[m.slot_];
    s.scanning = true;
    s.scanFrom = 0;
    pump(m);
  }
  return err;
}

std::string FederationCore::setSubscribed(Routes& routes, const FddTree& tree,
                                          std::vector<bool> Slot::*subs, FederationMember& m,
                                          std::uint32_t cls, bool on) {
  if (cls >= tree.classes.size()) return "subscription to unknown class " + std::to_string(cls);
  std::vector<bool>& mine = slots_[m.slot_].*subs;
  ++work_;
  if (mine[cls] == on) return {};
  auto& list = routes.direct[cls];
  if (on) {
    if (!reserve(kSubscriptionBytes))
      return "the federation's subscriptions fill the RTI's memory budget";
    list.push_back(&m);
  } else {
    work_ += list.size();
    list.erase(std::find(list.begin(), list.end(), &m));
    refund(kSubscriptionBytes);
  }
  mine[cls] = on;
  ++routes.generation;
  return {};
}

bool FederationCore::sees(const Slot& s, std::uint32_t cls) const {
  if (cls == kNobody) return false;
  for (std::uint32_t a = cls; a != kNoClass; a = model_->objects.classes[a].parent)
    if (s.objects[a]) return true;
  return false;
}

std::string FederationCore::handle(FederationMember& fromMember, const wire::Message& m,
                                   const unsigned char* frame, std::size_t size) {
  Slot& from = slots_[fromMember.slot_];
  switch (m.type) {
    case wire::MsgType::Interaction:
      return onInteraction(from, m, frame, size);
    case wire::MsgType::ReserveName:
      onReserveName(from, m);
      return {};
    case wire::MsgType::Register:
      return onRegister(from, m);
    case wire::MsgType::Update:
      return onUpdate(from, m, frame, size);
    case wire::MsgType::Delete:
      return onDelete(from, m, frame, size);
    case wire::MsgType::LocalDelete: {
      // The instance may have been deleted meanwhile: nothing left to forget.
      auto it = instances_.find(m.instance);
      if (it != instances_.end() && it->second.owner != fromMember.slot_ &&
          fromMember.slot_ < it->second.known.size())
        it->second.known[fromMember.slot_] = false;
      return {};
    }
    case wire::MsgType::RequestUpdate: {
      auto it = instances_.find(m.instance);
      if (it == instances_.end()) return {};  // deleted while the request travelled
      const Instance& inst = it->second;
      if (std::string err = checkMembers(model_->objects, inst.cls, m); !err.empty()) return err;
      if (inst.owner != kNobody && inst.owner != fromMember.slot_)
        slots_[inst.owner].member->deliver(frame, size);
      return {};
    }
    case wire::MsgType::RequestClassUpdate:
      return onRequestClassUpdate(from, m);
    default:
      return "message of type " + std::to_string(static_cast<int>(m.type)) +
             " is not for the federation";
  }
}

std::string FederationCore::checkMembers(const FddTree& tree, std::uint32_t cls,
                                         const wire::Message& m) const {
  wire::ParamReader r(m);
  std::uint32_t p;
  wire::Bytes v;
  while (r.next(p, v))
    if (!tree.memberAvailable(cls, p))
      return "member " + std::to_string(p) + " not in class " + std::to_string(cls);
  return {};
}

std::string FederationCore::onInteraction(Slot& from, const wire::Message& m,
                                          const unsigned char* frame, std::size_t size) {
  const FddTree& tree = model_->interactions;
  if (m.handle >= tree.classes.size())
    return "interaction of unknown class " + std::to_string(m.handle);
  if (std::string err = checkMembers(tree, m.handle, m); !err.empty()) return err;
  const auto& targets = receivers(interactions_, tree, m.handle);
  work_ += targets.size();
  for (FederationMember* target : targets)
    if (target != from.member) target->deliver(frame, size);
  return {};
}

void FederationCore::onReserveName(Slot& from, const wire::Message& m) {
  const std::string name(m.name);
  const std::size_t cost = kNameOverhead + name.size();
  // Names beginning with HLA are the RTI's; an empty name names nothing.
  const bool ok =
      !name.empty() && name.compare(0, 3, "HLA") != 0 && !names_.count(name) && reserve(cost);
  if (ok) names_.emplace(name, NameEntry{from.member->slot_, 0, cost});
  scratch_.clear();
  writeNameReserved(scratch_, ok, name);
  from.member->deliver(scratch_.data(), scratch_.size());
}

std::string FederationCore::onRegister(Slot& from, const wire::Message& m) {
  const std::uint32_t slot = from.member->slot_;
  if (m.handle >= model_->objects.classes.size())
    return "registration of unknown object class " + std::to_string(m.handle);
  if ((m.instance >> 32) != from.member->handle_ || (m.instance & 0xFFFFFFFFu) == 0)
    return "instance handle " + std::to_string(m.instance) + " is not the registrant's to give";
  if (instances_.count(m.instance))
    return "instance " + std::to_string(m.instance) + " registered twice";
  const std::string name(m.name);
  auto named = names_.find(name);
  const char* const full = "the federation's instances and names fill the RTI's memory budget";
  if (named != names_.end()) {
    if (named->second.slot != slot || named->second.instance != 0)
      return "instance name '" + name + "' is not reserved by its registrant";
  } else {
    if (name != generatedInstanceName(m.instance))
      return "instance name '" + name + "' was not reserved";
    const std::size_t nameCost = kNameOverhead + name.size();
    if (!reserve(nameCost)) return full;
    named = names_.emplace(name, NameEntry{slot, 0, nameCost}).first;
  }
  if (!reserve(kInstanceOverhead)) {
    if (name.compare(0, 3, "HLA") == 0) releaseName(name);
    return full;
  }
  named->second.instance = m.instance;
  const std::size_t cost = kInstanceOverhead;
  Instance& inst = instances_[m.instance];
  byHandle_[m.instance] = &inst;
  inst.cls = m.handle;
  inst.owner = slot;
  inst.name = name;
  inst.cost = cost;
  inst.known.assign(slots_.size(), false);
  inst.known[slot] = true;
  const auto& targets = receivers(objects_, model_->objects, m.handle);
  work_ += targets.size();
  for (FederationMember* target : targets)
    if (target != from.member) discover(target->slot_, m.instance, inst);
  return {};
}

void FederationCore::discover(std::uint32_t slot, InstanceHandle h, Instance& inst) {
  if (inst.known.size() <= slot) inst.known.resize(slot + 1, false);
  inst.known[slot] = true;
  scratch_.clear();
  wire::FrameWriter w(scratch_, wire::MsgType::Discover, 16 + inst.name.size());
  w.u64(h).u32(inst.cls).str(inst.name);
  w.finish();
  slots_[slot].member->deliver(scratch_.data(), scratch_.size());
}

FederationCore::Instance* FederationCore::owned(const Slot& from, InstanceHandle h) {
  auto it = byHandle_.find(h);
  return it == byHandle_.end() || it->second->owner != from.member->slot_ ? nullptr : it->second;
}

const std::vector<FederationMember*>& FederationCore::reach(const Slot& from, InstanceHandle h,
                                                            Instance& inst) {
  const auto& targets = receivers(objects_, model_->objects, inst.cls);
  work_ += targets.size();
  for (FederationMember* target : targets) {
    if (target == from.member) continue;
    // A subscriber is told of an instance before its first values, whenever it came.
    const std::uint32_t slot = target->slot_;
    if (slot >= inst.known.size() || !inst.known[slot]) discover(slot, h, inst);
  }
  return targets;
}

const std::vector<FederationMember*>* FederationCore::updateTargets(FederationMember& fromMember,
                                                                    InstanceHandle h) {
  const Slot& from = slots_[fromMember.slot_];
  Instance* inst = owned(from, h);
  return inst ? &reach(from, h, *inst) : nullptr;
}

std::string FederationCore::onUpdate(Slot& from, const wire::Message& m, const unsigned char* frame,
                                     std::size_t size) {
  Instance* inst = owned(from, m.instance);
  if (!inst) return "update of instance " + std::to_string(m.instance) + " it does not own";
  if (std::string err = checkMembers(model_->objects, inst->cls, m); !err.empty()) return err;
  for (FederationMember* target : reach(from, m.instance, *inst))
    if (target != from.member) target->deliver(frame, size);
  return {};
}

std::string FederationCore::onDelete(Slot& from, const wire::Message& m, const unsigned char* frame,
                                     std::size_t size) {
  auto it = instances_.find(m.instance);
  if (it == instances_.end() || it->second.owner != from.member->slot_)
    return "deletion of instance " + std::to_string(m.instance) + " it does not own";
  removeInstance(it, frame, size);
  return {};
}

void FederationCore::removeInstance(std::map<InstanceHandle, Instance>::iterator it,
                                    const unsigned char* frame, std::size_t size) {
  Instance& inst = it->second;
  ByteBuffer made;
  if (!frame) {
    wire::FrameWriter w(made, wire::MsgType::Delete, 16);
    w.u64(it->first).bytes(nullptr, 0);
    w.finish();
    frame = made.data();
    size = made.size();
  }
  for (std::uint32_t slot = 0; slot < inst.known.size(); ++slot)
    if (inst.known[slot] && slot != inst.owner && slots_[slot].member)
      slots_[slot].member->deliver(frame, size);
  releaseName(inst.name);
  refund(inst.cost);
  byHandle_.erase(it->first);
  instances_.erase(it);
}

void FederationCore::releaseName(const std::string& name) {
  auto it = names_.find(name);
  if (it == names_.end()) return;
  refund(it->second.cost);
  names_.erase(it);
}

std::string FederationCore::onRequestClassUpdate(Slot& from, const wire::Message& m) {
  const FddTree& tree = model_->objects;
  if (m.handle >= tree.classes.size())
    return "update request for unknown object class " + std::to_string(m.handle);
  if (std::string err = checkMembers(tree, m.handle, m); !err.empty()) return err;
  work_ += instances_.size();
  for (auto& [h, inst] : instances_) {
    if (inst.owner == kNobody || inst.owner == from.member->slot_ ||
        !tree.isSameOrDescendant(inst.cls, m.handle))
      continue;
    scratch_.clear();
    wire::FrameWriter w(scratch_, wire::MsgType::RequestUpdate, 24 + m.tag.size + m.params.size);
    w.u64(h).bytes(m.tag.data, m.tag.size).u32(m.paramCount).raw(m.params.data, m.params.size);
    if (w.finish()) slots_[inst.owner].member->deliver(scratch_.data(), scratch_.size());
  }
  return {};
}

void FederationCore::pump(FederationMember& m) {
  Slot& s = slots_[m.slot_];
  const std::uint32_t slot = m.slot_;
  if (!s.scanning) return;
  auto it = instances_.lower_bound(s.scanFrom);
  for (; it != instances_.end(); ++it) {
    ++work_;
    Instance& inst = it->second;
    if (inst.owner == slot || (slot < inst.known.size() && inst.known[slot]) || !sees(s, inst.cls))
      continue;
    if (!m.hasRoom()) {
      s.scanFrom = it->first;
      return;
    }
    discover(slot, it->first, inst);
  }
  s.scanning = false;
}

}  // namespace vcrti
