#include "dtExerciseConn.h"

#include <RTI/Exception.h>
#include <RTI/RTIambassador.h>

#include <algorithm>
#include <chrono>

#include "dtOutput.h"
#include "dtRtiSession.h"
#include "wideText.h"

// The federate ambassador hands every received interaction to the connection, which
// decodes it and calls the callbacks; the RTI calls it only inside drainInput().
class DtExerciseConn::Ambassador : public DtRtiReceiver {
 public:
  explicit Ambassador(DtExerciseConn* conn) : conn_(conn) {}
  void interactionReceived(dtrti::InteractionClassHandle cls,
                           dtrti::ParameterHandleValueMap const& values) override {
    conn_->received(cls, values);
  }
  // Either answer to the reservation awaitRti() waits for will do: what matters is that
  // the federation's central node has sent it. An answer to an earlier one, whose wait
  // ran out, says nothing about what was sent since. Both APIs call these alike. A name
  // an instance is to have (registerObject()) is told apart by the answer itself.
  void objectInstanceNameReservationSucceeded(std::wstring const& name) override {
    conn_->reservationAnswered(name);
    if (name == conn_->pendingName_) conn_->pendingNameResult_ = 1;
  }
  void objectInstanceNameReservationFailed(std::wstring const& name) override {
    conn_->reservationAnswered(name);
    if (name == conn_->pendingName_) conn_->pendingNameResult_ = -1;
  }
  void objectDiscovered(dtrti::ObjectInstanceHandle object, dtrti::ObjectClassHandle cls,
                        const std::wstring& name) override {
    conn_->objectDiscovered(object, cls, name);
  }
  void objectReflected(dtrti::ObjectInstanceHandle object,
                       const dtrti::AttributeHandleValueMap& values) override {
    conn_->objectReflected(object, values);
  }
  void objectRemoved(dtrti::ObjectInstanceHandle object) override { conn_->objectRemoved(object); }

 private:
  DtExerciseConn* conn_;
};

namespace {
std::string text(const char* s) {
  return s ? s : "";
}
std::string what(const dtrti::Exception& e) {
  return dtwide::narrow(e.what());
}
}  // namespace

DtExerciseConn::Queued DtExerciseConn::queued(dtrti::InteractionClassHandle handle,
                                              const dtrti::ParameterHandleValueMap& values) {
  // The encoder's values point into the interaction's own PDU, and an RTI may hand over
  // values that point into its receive buffer: a copy that waits owns its bytes.
  Queued q{handle, {}};
  for (const auto& value : values)
    q.values[value.first] = dtrti::VariableLengthData(value.second.data(), value.second.size());
  return q;
}

DtExerciseConn::DtExerciseConn(const char* execName, const char* federateName, DtFomMapper* mapper,
                               const char* fedFileName, DtExerciseConnStatus* status)
    : execName_(text(execName)), federateName_(text(federateName)), mapper_(mapper) {
  join(fedFileName, status);
}

DtExerciseConn::DtExerciseConn(const char* execName, const char* federateName,
                               const char* fomMapperName, const char* fedFileName, void*,
                               DtExerciseConnStatus* status)
    : execName_(text(execName)), federateName_(text(federateName)) {
  // The toolkit has one mapper, the default; any other name is reported and the default
  // used, so the connection still works with the object model's own names.
  if (fomMapperName && *fomMapperName && std::string(fomMapperName) != "default")
    DtWarn("DtExerciseConn: unknown FOM mapper \"%s\", using the default one.\n", fomMapperName);
  join(fedFileName, status);
}

void DtExerciseConn::join(const char* fedFileName, DtExerciseConnStatus* status) {
  if (!mapper_) {
    ownMapper_.reset(new DtFomMapper);
    mapper_ = ownMapper_.get();
  }
  ambassador_.reset(new Ambassador(this));
  const std::string cannot =
      "cannot join federation \"" + execName_ + "\" as \"" + federateName_ + "\": ";
  // What is wrong with the address itself is said before the RTI is asked, in the same
  // words whichever RTI this is.
  std::string problem = DtRtiFederationUrl::shapeProblem(execName_);
  if (problem.empty()) problem = DtRtiFederationUrl::reachProblem(execName_, false);
  if (!problem.empty()) {
    fail(cannot + problem);
  } else {
    try {
      rti_ = DtRtiJoin(execName_, federateName_, text(fedFileName), *ambassador_, &created_);
      joined_ = true;
      mapper_->attach(rti_.get());
    } catch (const dtrti::Exception& e) {
      // Some RTIs say only that connecting failed: a port nobody listens on is told apart.
      const std::string unreachable = DtRtiFederationUrl::reachProblem(execName_, true);
      fail(cannot + (unreachable.empty() ? what(e) : unreachable));
    }
  }
  if (status) {
    status->ok = joined_;
    status->message = error_;
  }
}

DtExerciseConn::~DtExerciseConn() {
  if (mapper_) mapper_->attach(nullptr);
  // A destructor has no one to tell: an application that must know whether leaving
  // worked calls resign() itself first.
  resign();
}

bool DtExerciseConn::resign() {
  if (!rti_ || !joined_ || lost_ || resigned_) return !lost_;
  // An answer sent from a callback of the last drainInput() still goes out.
  sendDeferred();
  if (lost_) return false;
  resigned_ = true;
  try {
    DtRtiLeave(*rti_, execName_);
  } catch (const dtrti::Exception& e) {
    // What was sent just before may still have been queued when the connection went.
    lost_ = true;
    error_ = DtString("leaving federation \"" + execName_ + "\" failed: " + what(e));
    return false;
  }
  return true;
}

void DtExerciseConn::fail(const std::string& why) {
  // errorText() is the one report: an application that shows it would otherwise see the
  // same failure twice.
  error_ = DtString(why);
}

void DtExerciseConn::reservationAnswered(const std::wstring& name) {
  if (!awaitedReservation_.empty() && name == awaitedReservation_) reservationAnswered_ = true;
}

// ------------------------------------------------------------------ tables

void DtExerciseConn::addDecoder(dtrti::InteractionClassHandle handle,
                                DtInteractionDecoder* decoder) {
  decoders_[handle].reset(decoder);
}

void DtExerciseConn::addEncoder(dtrti::InteractionClassHandle handle,
                                DtInteractionEncoder* encoder) {
  encoders_[handle].reset(encoder);
}

DtInteractionDecoder* DtExerciseConn::decoder(dtrti::InteractionClassHandle handle) const {
  auto it = decoders_.find(handle);
  return it == decoders_.end() ? nullptr : it->second.get();
}

DtInteractionEncoder* DtExerciseConn::encoder(dtrti::InteractionClassHandle handle) const {
  auto it = encoders_.find(handle);
  return it == encoders_.end() ? nullptr : it->second.get();
}

void DtExerciseConn::addInteractionCreator(const char* className, Creator creator) {
  creators_[text(className)] = creator;
  routesStale_ = true;
}

DtExerciseConn::Creator DtExerciseConn::interactionCreator(const char* className) const {
  auto it = creators_.find(text(className));
  return it == creators_.end() ? nullptr : it->second;
}

// ------------------------------------------------------------------ sending

bool DtExerciseConn::sendInteraction(const DtInteraction& inter) {
  if (!connected()) return false;
  DtInterClassDesc* desc = inter.classDesc(this);
  if (!desc) return false;
  dtrti::InteractionClassHandle handle = desc->handle();
  DtInteractionEncoder* enc = encoder(handle);
  if (!enc) {
    // An interaction that knows its encoder installs it on first use.
    auto* withEncDec = dynamic_cast<const DtInteractionWithEncDec*>(&inter);
    enc = withEncDec ? withEncDec->createEncoder(this) : nullptr;
    if (!enc) return false;
    addEncoder(handle, enc);
  }
  try {
    // Once something waits to go out, what is sent after it waits behind it: the order of
    // sending is the order of calls.
    bool later = !deferred_.empty();
    bool& published = published_[handle];
    if (!published) {
      rti_->publishInteractionClass(handle);
      published = true;
      // Inside the RTI's callback the wait cannot evoke anything (the 1516-2010 API
      // forbids it): what is sent goes out at the end of this drainInput(), after the wait.
      if (inRtiCallback_)
        later = true;
      else
        awaitRti(true);
    }
    sendValues_.clear();
    enc->encode(&inter, sendValues_);
    if (later)
      deferred_.push_back(queued(handle, sendValues_));
    else
      rti_->sendInteraction(handle, sendValues_, dtrti::VariableLengthData());
    sendValues_.clear();
    return true;
  } catch (const dtrti::Exception& e) {
    sendValues_.clear();
    lost_ = true;
    fail("sending " + std::string(desc->name()) + " to federation \"" + execName_ +
         "\" failed: " + what(e));
    return false;
  }
}

void DtExerciseConn::sendDeferred() {
  if (deferred_.empty() || inRtiCallback_ || !connected()) return;
  awaitRti(true);
  try {
    while (!deferred_.empty()) {
      rti_->sendInteraction(deferred_.front().handle, deferred_.front().values,
                            dtrti::VariableLengthData());
      deferred_.pop_front();
    }
  } catch (const dtrti::Exception& e) {
    deferred_.clear();
    lost_ = true;
    fail("sending to federation \"" + execName_ + "\" failed: " + what(e));
  }
}

void DtExerciseConn::awaitRti(bool publishing) {
  // Evoking from inside the RTI's callback is refused (1516-2010) or re-enters it: a
  // subscription made there is not waited for. The embedded RTI routes at the federation,
  // where a subscription is in force when the call returns: nothing to wait for there.
  if (inRtiCallback_ || VC_RTI_ROUTES_AT_ONCE) return;
  // An RTI may route at nodes of its own, one in each federate's process, that learn of
  // publications and subscriptions through the federation's central node: a publisher's
  // node drops what it sends before it has heard of the subscribers, and a subscription
  // still on its way misses what others send meanwhile. A one-shot command would reach
  // nobody. A name reservation is answered by the central node after it has dealt with
  // what we sent before it on the same path, so once its answer is here the centre knows
  // of our publication or subscription. A subscriber's node may tell the centre of its
  // subscription only on hearing of a publisher, so a new publisher waits a little longer
  // for those answers to come round: several times the reservation's round trip, and at
  // least kSettleTime. An RTI that does not reserve names routes at its centre and needs
  // no wait.
  reservationAnswered_ = false;
  awaitedReservation_ =
      L"VistrelControl." + dtwide::widen(federateName_) + L"." + std::to_wstring(++reservations_);
  try {
    rti_->reserveObjectInstanceName(awaitedReservation_);
  } catch (const dtrti::Exception&) {
    awaitedReservation_.clear();
    return;
  }
  confirmed_ = false;
  // What arrives meanwhile waits for the application's next drainInput(): callbacks are
  // only ever called from there.
  holding_ = true;
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  Clock::time_point until = start + kRtiWait;
  bool answered = false;
  try {
    for (;;) {
      const std::chrono::duration<double> left = until - Clock::now();
      if (left.count() <= 0.0) break;
      rti_->evokeCallback(std::min(left.count(), 0.01));
      if (reservationAnswered_ && !answered) {
        answered = true;
        if (!publishing) break;
        const Clock::time_point now = Clock::now();
        until = std::min(until, now + std::max<Clock::duration>(kSettleTime, 10 * (now - start)));
      }
    }
  } catch (const dtrti::Exception&) {
    // The send that follows finds the connection gone and says so.
  }
  holding_ = false;
  confirmed_ = answered;
  awaitedReservation_.clear();
}

// ------------------------------------------------------------------ receiving

void DtExerciseConn::received(dtrti::InteractionClassHandle handle,
                              const dtrti::ParameterHandleValueMap& values) {
  // Once anything is held, what comes after it waits behind it: the order of arrival is
  // the order of delivery.
  if (holding_ || !held_.empty()) {
    held_.push_back(queued(handle, values));
    return;
  }
  InRtiCallback inCallback(inRtiCallback_);
  deliver(handle, values);
}

void DtExerciseConn::deliverHeld() {
  // What objects did while we waited goes first: a command that names an entity then
  // finds it.
  while (!heldObjects_.empty()) {
    ObjectEvent next = std::move(heldObjects_.front());
    heldObjects_.pop_front();
    deliverObject(next);
  }
  // A callback may send, and so hold more, while we walk: one at a time from the front.
  while (!held_.empty()) {
    Queued next = std::move(held_.front());
    held_.pop_front();
    deliver(next.handle, next.values);
  }
}

void DtExerciseConn::invokePlain(void (*fn)(), DtInteraction* inter, void* usr) {
  reinterpret_cast<Callback>(fn)(inter, usr);
}

void DtExerciseConn::addInteractionCallback(const char* className, Callback cb, void* usr) {
  addTypedCallback(className, reinterpret_cast<void (*)()>(cb), &invokePlain, usr);
}

void DtExerciseConn::removeInteractionCallback(const char* className, Callback cb, void* usr) {
  removeTypedCallback(className, reinterpret_cast<void (*)()>(cb), usr);
}

void DtExerciseConn::addTypedCallback(const char* className, void (*fn)(), Invoker invoke,
                                      void* usr) {
  callbacks_.push_back(CallbackEntry{text(className), fn, invoke, usr, nextSerial_++});
  routesStale_ = true;
  DtInterClassDesc* desc = mapper_ ? mapper_->interClassDesc(className) : nullptr;
  if (!desc || !connected()) return;
  ++subscribed_[desc->handle()];
  subscribeOnRti(desc->handle());
}

void DtExerciseConn::subscribeOnRti(dtrti::InteractionClassHandle handle) {
  if (onRti_.count(handle)) return;
  try {
    rti_->subscribeInteractionClass(handle, true);
  } catch (const dtrti::Exception& e) {
    // Refused for now (a federation save under way, say): tried again at each
    // drainInput(), so the callbacks are not left deaf for good.
    DtInterClassDesc* desc = mapper_->interClassDesc(handle);
    fail("subscribing to " + std::string(desc ? desc->name() : "an interaction class") +
         " in federation \"" + execName_ + "\" failed: " + what(e));
    return;
  }
  onRti_.insert(handle);
  awaitRti(false);
}

void DtExerciseConn::subscribeRefused() {
  for (const auto& sub : subscribed_)
    if (sub.second > 0 && !onRti_.count(sub.first) && connected()) subscribeOnRti(sub.first);
}

void DtExerciseConn::removeTypedCallback(const char* className, void (*fn)(), void* usr) {
  std::string name = text(className);
  auto it = std::find_if(callbacks_.begin(), callbacks_.end(), [&](const CallbackEntry& e) {
    return e.className == name && e.fn == fn && e.usr == usr;
  });
  if (it == callbacks_.end()) return;
  callbacks_.erase(it);
  ++removals_;
  routesStale_ = true;
  DtInterClassDesc* desc = mapper_ ? mapper_->interClassDesc(className) : nullptr;
  if (!desc) return;
  auto sub = subscribed_.find(desc->handle());
  if (sub == subscribed_.end() || --sub->second > 0) return;
  subscribed_.erase(sub);
  if (!onRti_.erase(desc->handle()) || !connected()) return;
  try {
    rti_->unsubscribeInteractionClass(desc->handle());
  } catch (const dtrti::Exception&) {
    // Already gone on the RTI's side: nothing left to undo.
  }
}

int DtExerciseConn::drainInput(double waitSeconds) {
  if (!connected()) return 0;
  delivered_ = 0;
  if (!held_.empty() || !heldObjects_.empty()) {
    // What arrived while this connection waited for the RTI goes first.
    deliverHeld();
    if (delivered_ > 0) waitSeconds = 0.0;
  }
  subscribeRefused();
  try {
    // One call delivers what has arrived, but never more than a bounded batch, so a
    // sender faster than this process cannot keep the application inside this call.
    bool more = rti_->evokeCallback(waitSeconds > 0.0 ? waitSeconds : 0.0);
    for (int n = 1; more && n < kMaxCallbacksPerDrain; ++n) more = rti_->evokeCallback(0.0);
  } catch (const dtrti::Exception& e) {
    lost_ = true;
    fail("connection to federation \"" + execName_ + "\" lost: " + what(e));
  }
  sendDeferred();
  deliverHeld();
  return delivered_;
}

bool DtExerciseConn::buildRoute(dtrti::InteractionClassHandle handle, Route& route) {
  DtInterClassDesc* desc = mapper_->interClassDesc(handle);
  if (!desc) {
    try {
      desc = mapper_->interClassDesc(dtwide::narrow(rti_->getInteractionClassName(handle)).c_str());
    } catch (const dtrti::Exception&) {
      return false;
    }
    if (!desc) return false;
  }
  route.handle = handle;
  // The interaction is made by the creator registered under the name the callbacks use.
  route.creator = nullptr;
  for (const auto& c : creators_) {
    DtInterClassDesc* d = mapper_->interClassDesc(c.first.c_str());
    if (d && d->handle() == handle) {
      route.creator = c.second;
      break;
    }
  }
  route.targets.clear();
  for (const CallbackEntry& e : callbacks_) {
    DtInterClassDesc* d = mapper_->interClassDesc(e.className.c_str());
    if (d && d->handle() == handle)
      route.targets.push_back(Target{e.fn, e.invoke, e.usr, e.serial});
  }
  return true;
}

bool DtExerciseConn::stillRegistered(unsigned long long serial) const {
  return std::any_of(callbacks_.begin(), callbacks_.end(),
                     [serial](const CallbackEntry& e) { return e.serial == serial; });
}

void DtExerciseConn::deliver(dtrti::InteractionClassHandle handle,
                             const dtrti::ParameterHandleValueMap& values) {
  struct Depth {
    int& n;
    explicit Depth(int& count) : n(count) { ++n; }
    ~Depth() { --n; }
  } depth(delivering_);
  // A callback may add or remove callbacks (itself included) while we walk: what it
  // changes only marks the routes stale, so the walk goes on over the callbacks that
  // were registered when the interaction came, minus those removed since. Removal is
  // how an object that goes away (a controller deleted by another one's callback) tells
  // us never to call it again: its user data may already be freed.
  const Route* route = nullptr;
  Route own;
  if (delivering_ == 1) {
    if (routesStale_) {
      routes_.clear();
      routesStale_ = false;
    }
    for (const Route& r : routes_)
      if (r.handle == handle) route = &r;
    if (!route) {
      if (!buildRoute(handle, own)) return;
      routes_.push_back(std::move(own));
      route = &routes_.back();
    }
  } else {
    if (!buildRoute(handle, own)) return;
    route = &own;
  }
  std::unique_ptr<DtInteraction> inter(route->creator ? route->creator() : new DtInteraction);
  if (!inter) return;
  DtInteractionDecoder* dec = decoder(handle);
  if (!dec) {
    auto* withEncDec = dynamic_cast<DtInteractionWithEncDec*>(inter.get());
    dec = withEncDec ? withEncDec->createDecoder(this) : nullptr;
    if (dec) addDecoder(handle, dec);
  }
  if (dec) dec->decode(inter.get(), values);
  const unsigned long long removalsBefore = removals_;
  for (const Target& t : route->targets) {
    if (removals_ != removalsBefore && !stillRegistered(t.serial)) continue;
    t.invoke(t.fn, inter.get(), t.usr);
  }
  if (!route->targets.empty()) ++delivered_;
}
