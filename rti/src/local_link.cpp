#include "local_link.h"

#include "federation_core.h"
#include "fom_modules.h"
#include "text.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

namespace vcrti {

namespace {

// The inbox is guarded by the federation's lock, which every send holds anyway: a send
// takes one lock, not one for the federation and another for the receiver.
struct Member final : FederationMember {
  std::condition_variable arrived;
  ByteBuffer inbox;
  bool waiting = false;
  // Whether the inbox holds anything, readable without the lock: a federate that polls
  // an empty inbox must not take the lock that every send takes.
  std::atomic<bool> hasMail{false};

  void deliver(const unsigned char* frame, std::size_t size) override {
    inbox.append(frame, size);
    delivered();
  }
  // With the federation's lock held, after appending.
  void delivered() {
    hasMail.store(true, std::memory_order_release);
    if (waiting) arrived.notify_one();
  }
};

struct Federation {
  explicit Federation(std::shared_ptr<const FddModel> model) : core(std::move(model)) {}
  std::mutex mu;  // guards the core and the members' inboxes
  FederationCore core;
};

struct Registry {
  std::mutex mu;
  std::map<std::wstring, std::shared_ptr<Federation>> federations;
};

Registry& registry() {
  static Registry* r = new Registry;  // never destroyed: ambassadors may outlive statics
  return *r;
}

[[noreturn]] void refused(const std::string& why) {
  throw RtiError(Fault::RTIinternalError,
                 L"the federation refused a message: " + std::wstring(why.begin(), why.end()));
}

class LocalLink final : public Link {
 public:
  LocalLink(std::shared_ptr<Federation> fed, std::unique_ptr<Member> self,
            std::shared_ptr<const FddModel> model)
      : fed_(std::move(fed)), self_(std::move(self)), model_(std::move(model)) {}
  ~LocalLink() override {
    if (fed_) resign(ResignMode::DeleteInstances);
  }

  std::uint32_t federateHandle() const override { return self_->federateHandle(); }
  // The model as it was when this federate joined; later growth arrives as frames.
  std::shared_ptr<const FddModel> model() const override { return model_; }

  void subscribeInteractions(std::uint32_t cls, bool on) override {
    std::lock_guard<std::mutex> lock(fed_->mu);
    const std::string err = fed_->core.subscribeInteractions(*self_, cls, on);
    if (!err.empty()) refused(err);
  }

  void subscribeObjects(std::uint32_t cls, bool on) override {
    std::lock_guard<std::mutex> lock(fed_->mu);
    const std::string err = fed_->core.subscribeObjects(*self_, cls, on);
    if (!err.empty()) refused(err);
  }

  // The hot paths: no decoding, and in the usual case of one receiver the frame is encoded
  // straight into its inbox.
  void sendInteraction(std::uint32_t cls, const HandleValues& params, ValueView tag) override {
    std::lock_guard<std::mutex> fedLock(fed_->mu);
    toEach(fed_->core.interactionReceivers(cls), [&](ByteBuffer& out) {
      encodeValues(out, wire::MsgType::Interaction, cls, params, tag);
    });
  }

  void updateAttributes(InstanceHandle instance, const HandleValues& values,
                        ValueView tag) override {
    std::lock_guard<std::mutex> fedLock(fed_->mu);
    const std::vector<FederationMember*>* targets = fed_->core.updateTargets(*self_, instance);
    if (!targets) refused("update of an instance this federate does not own");
    toEach(*targets, [&](ByteBuffer& out) {
      encodeValues(out, wire::MsgType::Update, instance, values, tag);
    });
  }

  void post(const unsigned char* frame, std::size_t size) override {
    wire::Message m;
    if (wire::decodeFrame(frame, size, m).status != wire::DecodeStatus::Complete)
      refused("malformed frame");
    std::lock_guard<std::mutex> lock(fed_->mu);
    const std::string err = fed_->core.handle(*self_, m, frame, size);
    if (!err.empty()) refused(err);
  }

  bool fetch(ByteBuffer& into, double waitSeconds) override {
    if (waitSeconds <= 0 && !self_->hasMail.load(std::memory_order_acquire)) return false;
    std::unique_lock<std::mutex> lock(fed_->mu);
    if (self_->inbox.empty() && waitSeconds > 0) {
      const auto deadline =
          std::chrono::steady_clock::now() + std::chrono::duration<double>(waitSeconds);
      self_->waiting = true;
      self_->arrived.wait_until(lock, deadline, [&] { return !self_->inbox.empty(); });
      self_->waiting = false;
    }
    if (self_->inbox.empty()) return false;
    if (into.empty()) {
      into.swap(self_->inbox);  // the usual case: no copy, capacities trade places
    } else {
      into.append(self_->inbox.data(), self_->inbox.size());
    }
    self_->inbox.clear();
    self_->hasMail.store(false, std::memory_order_relaxed);
    return true;
  }

  void resign(ResignMode mode) override {
    {
      std::lock_guard<std::mutex> lock(fed_->mu);
      fed_->core.resign(*self_, mode);
    }
    fed_.reset();
  }

 private:
  // Delivers the frame `encode` appends to every target but this federate, with the
  // federation's lock held.
  template <class Encode>
  void toEach(const std::vector<FederationMember*>& targets, Encode encode) {
    Member* only = nullptr;
    std::size_t others = 0;
    for (FederationMember* m : targets)
      if (m != self_.get()) {
        only = static_cast<Member*>(m);
        ++others;
      }
    if (others == 1) {
      encode(only->inbox);
      only->delivered();
      return;
    }
    scratch_.clear();
    encode(scratch_);
    for (FederationMember* m : targets)
      if (m != self_.get()) m->deliver(scratch_.data(), scratch_.size());
  }

  std::shared_ptr<Federation> fed_;
  std::unique_ptr<Member> self_;
  std::shared_ptr<const FddModel> model_;
  ByteBuffer scratch_;
};

[[noreturn]] void missing(const std::wstring& name) {
  throw RtiError(Fault::FederationExecutionDoesNotExist,
                 L"federation execution '" + name + L"' does not exist");
}

}  // namespace

void createLocalFederation(const std::wstring& name, std::shared_ptr<const FddModel> model) {
  auto fed = std::make_shared<Federation>(std::move(model));
  Registry& r = registry();
  std::lock_guard<std::mutex> lock(r.mu);
  if (!r.federations.emplace(name, std::move(fed)).second)
    throw RtiError(Fault::FederationExecutionAlreadyExists,
                   L"federation execution '" + name + L"' already exists");
}

void destroyLocalFederation(const std::wstring& name) {
  Registry& r = registry();
  std::lock_guard<std::mutex> lock(r.mu);
  auto it = r.federations.find(name);
  if (it == r.federations.end()) missing(name);
  // Erasing may free the federation, mutex and all: it must outlive the lock held on it.
  const std::shared_ptr<Federation> doomed = it->second;
  std::lock_guard<std::mutex> fedLock(doomed->mu);
  if (doomed->core.memberCount() != 0)
    throw RtiError(Fault::FederatesCurrentlyJoined,
                   L"federation execution '" + name + L"' still has " +
                       std::to_wstring(doomed->core.memberCount()) + L" joined federate(s)");
  r.federations.erase(it);
}

std::unique_ptr<Link> joinLocalFederation(const std::wstring& name,
                                          const std::vector<FddModel>& modules) {
  std::shared_ptr<Federation> fed;
  {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mu);
    auto it = r.federations.find(name);
    if (it == r.federations.end()) missing(name);
    fed = it->second;
  }
  auto self = std::make_unique<Member>();
  std::shared_ptr<const FddModel> model;
  {
    std::lock_guard<std::mutex> lock(fed->mu);
    if (!modules.empty()) {
      FddModel grown = *fed->core.model();
      std::string err = mergeModules(grown, modules);
      if (!err.empty()) throw RtiError(Fault::InconsistentFDD, fromUtf8(err));
      err = fed->core.extendModel(std::make_shared<const FddModel>(std::move(grown)));
      if (!err.empty()) throw RtiError(Fault::InconsistentFDD, fromUtf8(err));
    }
    fed->core.join(*self);
    model = fed->core.model();
  }
  return std::make_unique<LocalLink>(std::move(fed), std::move(self), std::move(model));
}

}  // namespace vcrti
