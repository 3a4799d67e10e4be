// One joined federate's side of the RTI, whatever API it is used through: what it
// publishes and subscribes, the instances it knows and owns, the names it reserved, and
// the delivery of what arrives (as the nearest class it subscribes to, with only what it
// subscribed) to its FederateCallbacks on evoke. Handles are plain numbers, values views
// of bytes, faults RtiError: an API facade translates each.
#ifndef VCRTI_FEDERATE_CORE_H
#define VCRTI_FEDERATE_CORE_H

#include "link.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vcrti {

class FederateCore {
 public:
  FederateCore() = default;
  ~FederateCore();
  FederateCore(const FederateCore&) = delete;
  FederateCore& operator=(const FederateCore&) = delete;

  // Federation management. `federation` is the execution's name as the application gives
  // it (thread://Name, rti://host:port/Name or Name).
  static void createFederation(const std::wstring& federation, const std::wstring& fddFile);
  // The same from a model already read (a facade that merges several modules into one).
  static void createFederation(const std::wstring& federation, FddModel model);
  // The federation's model, once joined.
  const FddModel& model() const { return *model_; }
  // From FOM modules (the 2010 API), merged in order after the standard MIM.
  static void createFederation(const std::wstring& federation,
                               const std::vector<std::wstring>& modules);
  static void destroyFederation(const std::wstring& federation);
  // `modules` (the 2010 API's additional FOM modules) are merged into the federation's
  // model, all or none: InconsistentFDD when they conflict with it. Members already
  // joined learn the new classes on their next evoke, before any callback that needs them.
  std::uint32_t join(const std::wstring& federateType, const std::wstring& federation,
                     FederateCallbacks& callbacks, const std::vector<std::wstring>& modules = {});
  void resign(ResignMode mode);
  bool joined() const { return link_ != nullptr; }
  void requireJoined(const wchar_t* operation) const;

  // Declaration management.
  void publishInteraction(std::uint64_t cls);
  void unpublishInteraction(std::uint64_t cls);
  void subscribeInteraction(std::uint64_t cls);
  void unsubscribeInteraction(std::uint64_t cls);
  void publishObject(std::uint64_t cls, const HandleSet& attributes);
  void unpublishObject(std::uint64_t cls, const HandleSet* attributes);  // null: all
  void subscribeObject(std::uint64_t cls, const HandleSet& attributes);
  void unsubscribeObject(std::uint64_t cls, const HandleSet* attributes);  // null: all

  // Object management.
  void sendInteraction(std::uint64_t cls, const HandleValues& params, ValueView tag);
  void reserveName(const std::wstring& name);
  InstanceHandle registerInstance(std::uint64_t cls, const std::wstring* name);
  void updateAttributes(InstanceHandle instance, const HandleValues& values, ValueView tag);
  void deleteInstance(InstanceHandle instance, ValueView tag);
  void localDeleteInstance(InstanceHandle instance);
  void requestInstanceUpdate(InstanceHandle instance, const HandleSet& attributes, ValueView tag);
  void requestClassUpdate(std::uint64_t cls, const HandleSet& attributes, ValueView tag);

  // Support services: names and handles. `attribute` checks that the handle names an
  // attribute of the class (for the services that take one).
  std::uint32_t objectClass(const std::wstring& name) const;
  const std::wstring& objectClassName(std::uint64_t cls) const;
  std::uint32_t attribute(std::uint64_t cls, const std::wstring& name) const;
  const std::wstring& attributeName(std::uint64_t cls, std::uint64_t attribute) const;
  std::uint32_t interactionClass(const std::wstring& name) const;
  const std::wstring& interactionClassName(std::uint64_t cls) const;
  std::uint32_t parameter(std::uint64_t cls, const std::wstring& name) const;
  const std::wstring& parameterName(std::uint64_t cls, std::uint64_t parameter) const;
  InstanceHandle instance(const std::wstring& name) const;
  const std::wstring& instanceName(InstanceHandle instance) const;
  std::uint32_t knownClass(InstanceHandle instance) const;

  // Callback delivery: runs callbacks on the caller's thread for at least `minSeconds`
  // (or until one is delivered when `single`), at most about `maxSeconds`. Returns whether
  // more are pending.
  bool evoke(double minSeconds, double maxSeconds, bool single);
  void enableCallbacks(bool on);

 private:
  struct Known {
    std::uint32_t cls = 0;  // as registered
    std::uint32_t as = 0;   // the class it was discovered as (its own, for our own)
    bool owned = false;
    HandleSet ownedAttributes;  // published when it was registered
    std::wstring name;
  };

  std::uint32_t interactionCls(std::uint64_t h, const wchar_t* operation) const;
  std::uint32_t objectCls(std::uint64_t h, const wchar_t* operation) const;
  void checkAttributes(std::uint32_t cls, const HandleSet& attributes) const;
  Known& known(InstanceHandle h, const wchar_t* operation);
  const Known& known(InstanceHandle h) const;
  // The nearest class at or above `cls` that this federate subscribes to, or kNoClass.
  std::uint32_t nearestSubscribed(std::uint32_t cls) const;
  void post(const ByteBuffer& frame);
  void forget(InstanceHandle h);

  // Takes the grown model of a ModelGrown frame.
  void growModel(const wire::Message& m);

  bool pending() const { return deliverPos_ < deliver_.size(); }
  bool refill(double seconds);
  bool deliverOne();

  std::unique_ptr<Link> link_;
  std::shared_ptr<const FddModel> model_;
  FederateCallbacks* callbacks_ = nullptr;
  std::uint32_t self_ = 0;
  std::vector<bool> publishedInteractions_;
  std::vector<bool> subscribedInteractions_;
  std::vector<HandleSet> publishedAttributes_;   // per object class
  std::vector<HandleSet> subscribedAttributes_;  // per object class; empty: not subscribed
  std::unordered_map<InstanceHandle, Known> instances_;
  std::unordered_map<std::wstring, InstanceHandle> byName_;
  std::unordered_set<std::wstring> reserved_;  // reserved and not yet used
  std::uint32_t nextInstance_ = 1;
  bool callbacksEnabled_ = true;
  bool inEvoke_ = false;

  // Received frames awaiting delivery; values handed to callbacks point into it.
  ByteBuffer deliver_;
  std::size_t deliverPos_ = 0;
  // Reused from one callback to the next so that a steady stream does not allocate (and
  // the message is not cleared twice: decoding clears it).
  wire::Message rxMessage_;
  HandleValues rxValues_;
  HandleSet rxHandles_;
  ByteBuffer tx_;
};

}  // namespace vcrti

#endif
