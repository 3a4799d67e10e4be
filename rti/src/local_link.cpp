#include "local_link.h"

#include "handle_access.h"
#include "protocol.h"

#include <RTI/Exception.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace vcrti {

namespace {

struct Member {
  std::uint64_t handle = 0;
  std::vector<bool> subscribed;  // per interaction class; guarded by the federation's mutex

  std::mutex mu;  // guards the inbox
  std::condition_variable arrived;
  ByteBuffer inbox;
  bool waiting = false;
  // Whether the inbox holds anything, readable without the lock: a federate that polls
  // an empty inbox must not take the lock that every send to it takes.
  std::atomic<bool> hasMail{false};
};

struct Federation {
  std::shared_ptr<const FddModel> model;
  std::mutex mu;
  std::vector<std::shared_ptr<Member>> members;
  // For each class, the members subscribed to it or to an ancestor: rebuilt when a
  // subscription changes so that a send is one lookup.
  std::vector<std::vector<Member*>> interested;
  std::uint64_t nextHandle = 1;

  void rebuildInterest() {
    const auto& classes = model->interactions.classes;
    interested.assign(classes.size(), {});
    for (std::uint32_t c = 0; c < classes.size(); ++c)
      for (const auto& m : members)
        for (std::uint32_t a = c; a != kNoClass; a = classes[a].parent)
          if (m->subscribed[a]) {
            interested[c].push_back(m.get());
            break;
          }
  }
};

struct Registry {
  std::mutex mu;
  std::map<std::wstring, std::shared_ptr<Federation>> federations;
};

Registry& registry() {
  static Registry* r = new Registry;  // never destroyed: ambassadors may outlive statics
  return *r;
}

class LocalLink final : public Link {
 public:
  LocalLink(std::shared_ptr<Federation> fed, std::shared_ptr<Member> self)
      : fed_(std::move(fed)), self_(std::move(self)) {}
  ~LocalLink() override {
    if (fed_) resign();
  }

  std::uint64_t federateHandle() const override { return self_->handle; }
  std::shared_ptr<const FddModel> model() const override { return fed_->model; }

  void subscribe(std::uint32_t cls) override { setSubscribed(cls, true); }
  void unsubscribe(std::uint32_t cls) override { setSubscribed(cls, false); }

  void send(std::uint32_t cls, const rti1516::ParameterHandleValueMap& params,
            const rti1516::VariableLengthData& tag) override {
    std::lock_guard<std::mutex> fedLock(fed_->mu);
    const std::vector<Member*>& targets = fed_->interested[cls];
    Member* only = nullptr;
    std::size_t others = 0;
    for (Member* m : targets)
      if (m != self_.get()) {
        only = m;
        ++others;
      }
    if (others == 1) {
      // The usual case: the frame is encoded straight into the one receiver's inbox.
      std::lock_guard<std::mutex> lock(only->mu);
      encodeInteraction(only->inbox, cls, params, tag);
      deliverTo(*only);
      return;
    }
    scratch_.clear();
    encodeInteraction(scratch_, cls, params, tag);
    for (Member* m : targets) {
      if (m == self_.get()) continue;
      std::lock_guard<std::mutex> lock(m->mu);
      m->inbox.append(scratch_.data(), scratch_.size());
      deliverTo(*m);
    }
  }

  bool fetch(ByteBuffer& into, double waitSeconds) override {
    if (waitSeconds <= 0 && !self_->hasMail.load(std::memory_order_acquire)) return false;
    std::unique_lock<std::mutex> lock(self_->mu);
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

  void resign() override {
    std::lock_guard<std::mutex> lock(fed_->mu);
    auto& ms = fed_->members;
    ms.erase(std::remove(ms.begin(), ms.end(), self_), ms.end());
    fed_->rebuildInterest();
    fed_.reset();
  }

 private:
  // With the receiver's inbox lock held, after appending.
  static void deliverTo(Member& m) {
    m.hasMail.store(true, std::memory_order_release);
    if (m.waiting) m.arrived.notify_one();
  }

  void setSubscribed(std::uint32_t cls, bool on) {
    std::lock_guard<std::mutex> lock(fed_->mu);
    if (self_->subscribed[cls] == on) return;
    self_->subscribed[cls] = on;
    fed_->rebuildInterest();
  }

  std::shared_ptr<Federation> fed_;
  std::shared_ptr<Member> self_;
  ByteBuffer scratch_;
};

}  // namespace

void createLocalFederation(const std::wstring& name, std::shared_ptr<const FddModel> model) {
  auto fed = std::make_shared<Federation>();
  fed->model = std::move(model);
  fed->rebuildInterest();
  Registry& r = registry();
  std::lock_guard<std::mutex> lock(r.mu);
  if (!r.federations.emplace(name, std::move(fed)).second)
    throw rti1516::FederationExecutionAlreadyExists(L"federation execution '" + name +
                                                    L"' already exists");
}

void destroyLocalFederation(const std::wstring& name) {
  Registry& r = registry();
  std::lock_guard<std::mutex> lock(r.mu);
  auto it = r.federations.find(name);
  if (it == r.federations.end())
    throw rti1516::FederationExecutionDoesNotExist(L"federation execution '" + name +
                                                   L"' does not exist");
  // Erasing may free the federation, mutex and all: it must outlive the lock held on it.
  const std::shared_ptr<Federation> doomed = it->second;
  std::lock_guard<std::mutex> fedLock(doomed->mu);
  if (!doomed->members.empty())
    throw rti1516::FederatesCurrentlyJoined(L"federation execution '" + name + L"' still has " +
                                            std::to_wstring(doomed->members.size()) +
                                            L" joined federate(s)");
  r.federations.erase(it);
}

std::unique_ptr<Link> joinLocalFederation(const std::wstring& name) {
  std::shared_ptr<Federation> fed;
  {
    Registry& r = registry();
    std::lock_guard<std::mutex> lock(r.mu);
    auto it = r.federations.find(name);
    if (it == r.federations.end())
      throw rti1516::FederationExecutionDoesNotExist(L"federation execution '" + name +
                                                     L"' does not exist");
    fed = it->second;
  }
  auto self = std::make_shared<Member>();
  {
    std::lock_guard<std::mutex> lock(fed->mu);
    self->handle = fed->nextHandle++;
    self->subscribed.assign(fed->model->interactions.classes.size(), false);
    fed->members.push_back(self);
  }
  return std::make_unique<LocalLink>(std::move(fed), std::move(self));
}

void encodeInteraction(ByteBuffer& out, std::uint32_t cls,
                       const rti1516::ParameterHandleValueMap& params,
                       const rti1516::VariableLengthData& tag) {
  std::size_t total = wire::kInteractionFixed + tag.size();
  for (const auto& [handle, value] : params) total += wire::kParamFixed + value.size();
  if (total - wire::kLengthPrefix > wire::kMaxFrameBody)
    throw rti1516::RTIinternalError(L"interaction of " + std::to_wstring(total) +
                                    L" bytes exceeds the limit of " +
                                    std::to_wstring(wire::kMaxFrameBody) + L" bytes");
  unsigned char* p = out.grow(total);
  wire::storeU32(p, static_cast<std::uint32_t>(total - wire::kLengthPrefix));
  p[4] = static_cast<unsigned char>(wire::MsgType::Interaction);
  wire::storeU32(p + 5, cls);
  wire::storeU32(p + 9, static_cast<std::uint32_t>(tag.size()));
  p += 13;
  if (tag.size()) std::memcpy(p, tag.data(), tag.size());
  p += tag.size();
  wire::storeU32(p, static_cast<std::uint32_t>(params.size()));
  p += 4;
  for (const auto& [handle, value] : params) {
    wire::storeU32(p, static_cast<std::uint32_t>(rti1516::HandleAccess::value(handle)));
    wire::storeU32(p + 4, static_cast<std::uint32_t>(value.size()));
    if (value.size()) std::memcpy(p + 8, value.data(), value.size());
    p += wire::kParamFixed + value.size();
  }
}

}  // namespace vcrti
