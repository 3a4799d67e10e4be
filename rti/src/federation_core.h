// A federation execution's state and rules, the same inside a process (thread://) and
// inside the hub: its members, their subscriptions and the routes they make, the object
// instances with their names and owners, and who knows which instance. Members receive
// frames through FederationMember::deliver, in the order the federation produces them.
//
// Not thread-safe: the in-process federation calls it under its lock, the hub from its
// one thread. Frames from members are trusted only as far as they are checked here: a
// frame that breaks the rules is refused with a reason, and its sender is to be dropped.
#ifndef VCRTI_FEDERATION_CORE_H
#define VCRTI_FEDERATION_CORE_H

#include "core_types.h"
#include "fdd_model.h"
#include "protocol.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vcrti {

// Memory that several federations share (the hub's --federation-memory): what their
// instances and names hold is taken from it and given back when they go.
struct MemoryBudget {
  std::size_t limit = ~std::size_t{0};
  std::size_t used = 0;
  bool take(std::size_t n) {
    if (n > limit || used > limit - n) return false;
    used += n;
    return true;
  }
  void give(std::size_t n) { used -= n < used ? n : used; }
};

// One joined federate as the federation sees it.
class FederationMember {
 public:
  virtual ~FederationMember() = default;
  // Appends one complete frame to what the member receives.
  virtual void deliver(const unsigned char* frame, std::size_t size) = 0;
  // Whether the member may be sent more of what the federation paces (the discoveries of
  // instances that existed before it subscribed); when false, pump() is called again later.
  virtual bool hasRoom() const { return true; }
  std::uint32_t federateHandle() const { return handle_; }

 private:
  friend class FederationCore;
  std::uint32_t handle_ = 0;
  std::uint32_t slot_ = 0;
};

// The name an instance registered without one gets: the reserved prefix keeps it apart
// from every name a federate may reserve.
std::string generatedInstanceName(InstanceHandle instance);

class FederationCore {
 public:
  // `budget` may be null: then instances and names are limited by nothing but memory.
  FederationCore(std::shared_ptr<const FddModel> model, MemoryBudget* budget = nullptr);
  ~FederationCore();
  FederationCore(const FederationCore&) = delete;
  FederationCore& operator=(const FederationCore&) = delete;

  // What a federation of `model` holds before anyone joins: the model's tables as
  // indexed (names, member lists, name lookups) and the core's routes over them, with
  // what the allocator adds to each block, estimated on the high side.
  static std::size_t tableBytes(const FddModel& model);

  const std::shared_ptr<const FddModel>& model() const { return model_; }
  std::size_t memberCount() const { return members_; }
  std::size_t instanceCount() const { return instances_.size(); }
  // Bytes taken from the budget: instances and names, members, subscriptions and the
  // receiver lists made from them.
  std::size_t heldBytes() const { return bytes_; }
  // Gives the budget back what the federation holds and lets go of it, so that the
  // federation may be freed later, on another thread, without touching the budget.
  void leaveBudget() {
    if (budget_) budget_->give(bytes_);
    budget_ = nullptr;
  }
  // Classes, members, instances and receivers looked at so far: what the requests handled
  // have cost, for whoever hands them in to share the federation's time fairly.
  std::size_t work() const { return work_; }

  // Returns the member's federate handle.
  std::uint32_t join(FederationMember& m);
  // Takes a model that extends the current one (modules merged in: mergeModules), and
  // sends it to every member as ModelGrown. Members subscribed to a class also receive
  // its new subclasses. Returns an empty string, or why not (too large for a frame),
  // leaving the model as it was.
  std::string extendModel(std::shared_ptr<const FddModel> grown);
  // What becomes of its instances follows `mode` (RefuseIfOwning is the federate's to
  // check; here it keeps them). Its reservations go, and its subscriptions.
  void resign(FederationMember& m, ResignMode mode);

  // Subscription changes; an empty string, or why the request breaks the rules.
  std::string subscribeInteractions(FederationMember& m, std::uint32_t cls, bool on);
  std::string subscribeObjects(FederationMember& m, std::uint32_t cls, bool on);
  // The members that receive an interaction of `cls` (the sender among them, if it
  // subscribes), each once. Valid until the next call into the core.
  const std::vector<FederationMember*>& interactionReceivers(std::uint32_t cls) {
    return receivers(interactions_, model_->interactions, cls);
  }

  // The members an update of `instance` from `from` reaches (the sender among them if it
  // subscribes: it is not to receive it), each told of the instance first if it did not
  // know it yet; null when `from` does not own the instance. The caller delivers the update to
  // each, in order: in one process the values go straight into their inboxes, unencoded until then.
  // Valid until the next call into the core.
  const std::vector<FederationMember*>* updateTargets(FederationMember& from,
                                                      InstanceHandle instance);

  // Acts on a frame from a member: an interaction or an object-management request.
  // Returns an empty string, or why the frame breaks the rules.
  std::string handle(FederationMember& from, const wire::Message& m, const unsigned char* frame,
                     std::size_t size);

  // Sends the member the discoveries it is owed while it has room.
  void pump(FederationMember& m);
  bool owesDiscoveries(const FederationMember& m) const { return slots_[m.slot_].scanning; }

 private:
  static constexpr std::uint32_t kNobody = ~0u;

  // A subscription is kept at the class it names only, so that changing one costs that
  // class's list and nothing below it. Who receives a class is worked out when something
  // is first sent to it after a change, by walking up its (at most kMaxClassDepth)
  // ancestors, and kept until the next change: a sender that sends to the same classes
  // over and over finds its receivers ready each time.
  struct Routes {
    std::vector<std::vector<FederationMember*>> direct;    // by class
    std::vector<std::vector<FederationMember*>> resolved;  // by class, as of resolvedAt
    std::vector<std::uint64_t> resolvedAt;
    std::uint64_t generation = 1;             // bumped by every subscription change
    std::vector<FederationMember*> uncached;  // resolved, when the budget holds no more
    void init(const FddTree& tree);
    // New classes after the old ones; nobody subscribes to them yet.
    void grow(const FddTree& tree);
  };
  struct Slot {
    FederationMember* member = nullptr;
    std::vector<bool> interactions;
    std::vector<bool> objects;
    // Discoveries owed after a subscription: instances from scanFrom on are still to be
    // looked at. Paced, so that subscribing to a crowded federation is not one burst.
    bool scanning = false;
    InstanceHandle scanFrom = 0;
  };
  struct Instance {
    std::uint32_t cls = 0;
    std::uint32_t owner = kNobody;  // a slot
    std::string name;
    std::vector<bool> known;  // by slot
    std::size_t cost = 0;
  };
  struct NameEntry {
    std::uint32_t slot = kNobody;  // who reserved it
    InstanceHandle instance = 0;   // 0 while only reserved
    std::size_t cost = 0;
  };

  const std::vector<FederationMember*>& receivers(Routes& r, const FddTree& tree,
                                                  std::uint32_t cls) {
    return r.resolvedAt[cls] == r.generation ? r.resolved[cls] : resolve(r, tree, cls);
  }
  const std::vector<FederationMember*>& resolve(Routes& r, const FddTree& tree, std::uint32_t cls);
  void unsubscribeAll(Routes& r, FederationMember& m, std::vector<bool>& subs);
  // Takes `n` bytes from the budget, or says there is no room.
  bool reserve(std::size_t n) {
    if (budget_ && !budget_->take(n)) return false;
    bytes_ += n;
    return true;
  }
  // Takes them whatever the budget says: for what a member must have to be served at all.
  void charge(std::size_t n) {
    bytes_ += n;
    if (budget_) budget_->used += n;
  }
  void refund(std::size_t n) {
    bytes_ -= n;
    if (budget_) budget_->give(n);
  }
  std::string setSubscribed(Routes& routes, const FddTree& tree, std::vector<bool> Slot::*subs,
                            FederationMember& m, std::uint32_t cls, bool on);
  std::string onInteraction(Slot& from, const wire::Message& m, const unsigned char* frame,
                            std::size_t size);
  void onReserveName(Slot& from, const wire::Message& m);
  std::string onRegister(Slot& from, const wire::Message& m);
  std::string onUpdate(Slot& from, const wire::Message& m, const unsigned char* frame,
                       std::size_t size);
  Instance* owned(const Slot& from, InstanceHandle h);
  const std::vector<FederationMember*>& reach(const Slot& from, InstanceHandle h, Instance& inst);
  std::string onDelete(Slot& from, const wire::Message& m, const unsigned char* frame,
                       std::size_t size);
  std::string onRequestClassUpdate(Slot& from, const wire::Message& m);
  std::string checkMembers(const FddTree& tree, std::uint32_t cls, const wire::Message& m) const;
  bool sees(const Slot& s, std::uint32_t cls) const;
  void discover(std::uint32_t slot, InstanceHandle h, Instance& inst);
  // Removes the instance for everyone who knows it, with the Delete frame given (or one
  // made here when null).
  void removeInstance(std::map<InstanceHandle, Instance>::iterator it, const unsigned char* frame,
                      std::size_t size);
  void releaseName(const std::string& name);

  std::shared_ptr<const FddModel> model_;
  MemoryBudget* budget_;
  std::vector<Slot> slots_;
  std::size_t members_ = 0;
  std::uint32_t nextHandle_ = 1;
  Routes interactions_;
  Routes objects_;
  // Ordered, so that a paced scan can resume where it stopped whatever came and went.
  std::map<InstanceHandle, Instance> instances_;
  // The same instances by handle, for the lookup every update makes.
  std::unordered_map<InstanceHandle, Instance*> byHandle_;
  std::unordered_map<std::string, NameEntry> names_;
  std::size_t bytes_ = 0;
  std::size_t work_ = 0;
  // Marks the members already among the receivers being worked out, by slot.
  std::vector<std::uint32_t> seen_;
  std::uint32_t stamp_ = 0;
  ByteBuffer scratch_;
};

}  // namespace vcrti

#endif
