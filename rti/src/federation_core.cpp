#include "federation_core.h"

#include <algorithm>

namespace vcrti {

namespace {

// What an instance or a name costs beyond its characters: the map nodes, the instance's
// record and its list of who knows it.
constexpr std::size_t kInstanceOverhead = 192;
constexpr std::size_t kNameOverhead = 96;

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

void FederationCore::Routes::init(const FddTree& tree) {
  children.assign(tree.classes.size(), {});
  for (std::uint32_t c = 1; c < tree.classes.size(); ++c)
    children[tree.classes[c].parent].push_back(c);
  interested.assign(tree.classes.size(), {});
}

void FederationCore::Routes::route(FederationMember* m, std::uint32_t cls, bool add,
                                   const std::vector<bool>& subs) {
  std::vector<std::uint32_t> todo{cls};
  while (!todo.empty()) {
    const std::uint32_t c = todo.back();
    todo.pop_back();
    if (c != cls && subs[c]) continue;
    auto& list = interested[c];
    if (add)
      list.push_back(m);
    else
      list.erase(std::remove(list.begin(), list.end(), m), list.end());
    todo.insert(todo.end(), children[c].begin(), children[c].end());
  }
}

void FederationCore::Routes::removeAll(FederationMember* m, const FddTree& tree,
                                       const std::vector<bool>& subs) {
  // The topmost subscriptions' subtrees hold the member once in every class.
  const std::vector<bool> none(subs.size(), false);
  for (std::uint32_t c = 0; c < subs.size(); ++c) {
    if (!subs[c]) continue;
    bool above = false;
    for (auto a = tree.classes[c].parent; a != kNoClass && !above; a = tree.classes[a].parent)
      above = subs[a];
    if (!above) route(m, c, false, none);
  }
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
  return m.handle_;
}

void FederationCore::resign(FederationMember& m, ResignMode mode) {
  const std::uint32_t slot = m.slot_;
  Slot& s = slots_[slot];
  if (s.member != &m) return;
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
      bytes_ -= it->second.cost;
      if (budget_) budget_->give(it->second.cost);
      it = names_.erase(it);
    } else {
      ++it;
    }
  }
  interactions_.removeAll(&m, model_->interactions, s.interactions);
  objects_.removeAll(&m, model_->objects, s.objects);
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
  if (mine[cls] == on) return {};
  mine[cls] = on;
  // Whether a class above is subscribed, which routes `cls` here already.
  for (std::uint32_t a = tree.classes[cls].parent; a != kNoClass; a = tree.classes[a].parent)
    if (mine[a]) return {};
  routes.route(&m, cls, on, mine);
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
  for (FederationMember* target : interactions_.interested[m.handle])
    if (target != from.member) target->deliver(frame, size);
  return {};
}

void FederationCore::onReserveName(Slot& from, const wire::Message& m) {
  const std::string name(m.name);
  const std::size_t cost = kNameOverhead + name.size();
  // Names beginning with HLA are the RTI's; an empty name names nothing.
  const bool ok = !name.empty() && name.compare(0, 3, "HLA") != 0 && !names_.count(name) &&
                  (!budget_ || budget_->take(cost));
  if (ok) {
    names_.emplace(name, NameEntry{from.member->slot_, 0, cost});
    bytes_ += cost;
  }
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
    if (budget_ && !budget_->take(nameCost)) return full;
    named = names_.emplace(name, NameEntry{slot, 0, nameCost}).first;
    bytes_ += nameCost;
  }
  if (budget_ && !budget_->take(kInstanceOverhead)) {
    if (name.compare(0, 3, "HLA") == 0) releaseName(name);
    return full;
  }
  named->second.instance = m.instance;
  const std::size_t cost = kInstanceOverhead;
  bytes_ += cost;
  Instance& inst = instances_[m.instance];
  inst.cls = m.handle;
  inst.owner = slot;
  inst.name = name;
  inst.cost = cost;
  inst.known.assign(slots_.size(), false);
  inst.known[slot] = true;
  for (FederationMember* target : objects_.interested[m.handle])
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

std::string FederationCore::onUpdate(Slot& from, const wire::Message& m, const unsigned char* frame,
                                     std::size_t size) {
  auto it = instances_.find(m.instance);
  if (it == instances_.end() || it->second.owner != from.member->slot_)
    return "update of instance " + std::to_string(m.instance) + " it does not own";
  Instance& inst = it->second;
  if (std::string err = checkMembers(model_->objects, inst.cls, m); !err.empty()) return err;
  for (FederationMember* target : objects_.interested[inst.cls]) {
    if (target == from.member) continue;
    // A subscriber is told of an instance before its first values, whenever it came.
    const std::uint32_t slot = target->slot_;
    if (slot >= inst.known.size() || !inst.known[slot]) discover(slot, m.instance, inst);
    target->deliver(frame, size);
  }
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
  bytes_ -= inst.cost;
  if (budget_) budget_->give(inst.cost);
  instances_.erase(it);
}

void FederationCore::releaseName(const std::string& name) {
  auto it = names_.find(name);
  if (it == names_.end()) return;
  bytes_ -= it->second.cost;
  if (budget_) budget_->give(it->second.cost);
  names_.erase(it);
}

std::string FederationCore::onRequestClassUpdate(Slot& from, const wire::Message& m) {
  const FddTree& tree = model_->objects;
  if (m.handle >= tree.classes.size())
    return "update request for unknown object class " + std::to_string(m.handle);
  if (std::string err = checkMembers(tree, m.handle, m); !err.empty()) return err;
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
