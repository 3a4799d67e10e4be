#pragma once
#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "dtExport.h"
#include "dtInteraction.h"
#include "dtObjects.h"
#include "dtString.h"

/// How building a connection went.
struct DT_EXPORT DtExerciseConnStatus {
  bool ok = false;
  DtString message;
};

/// DtExerciseConn is the application's connection to one federation execution: it
/// creates or joins the federation (by URL: "thread://Name" inside the process,
/// "rti://host:port/Name" through a hub, or a plain name for the hub on this host), maps
/// interaction classes through its FOM mapper, keeps the decoder, encoder and
/// interaction-creator tables and the callbacks per class, sends interactions, and,
/// when the application calls drainInput(), decodes what arrived and calls the
/// callbacks. It starts no thread: everything happens inside the application's calls.
/// Built over the IEEE 1516-2010 API, it connects to what the URL names before its last
/// '/' and creates the federation from (or joins it with) FOM modules in that API's
/// format, named in the FDD argument and separated by commas, such as the RPR modules in
/// share/vistrelcontrol/fom/rpr-fom-2.0/ followed by VistrelControl-1516e.xml.
class DT_EXPORT DtExerciseConn {
 public:
  using Callback = void (*)(DtInteraction* inter, void* usr);
  using Creator = DtInteraction* (*)();
  /// Most RTI callbacks that one drainInput() call processes.
  static constexpr int kMaxCallbacksPerDrain = 100000;
  /// Longest wait, after publishing or subscribing to a class, for the RTI to confirm
  /// that the federation knows of it.
  static constexpr std::chrono::milliseconds kRtiWait{2000};
  /// Least time a new publisher gives the federation to tell it of its subscribers.
  static constexpr std::chrono::milliseconds kSettleTime{100};

  /// Joins `execName` as `federateName` with the given FDD file. A null mapper means the
  /// connection's own default mapper.
  DtExerciseConn(const char* execName, const char* federateName, DtFomMapper* mapper,
                 const char* fedFileName, DtExerciseConnStatus* status = nullptr);
  /// The same with the mapper named by `fomMapperName` ("" or null: the default one) and
  /// its initialisation data.
  DtExerciseConn(const char* execName, const char* federateName, const char* fomMapperName,
                 const char* fedFileName, void* fomMapperData,
                 DtExerciseConnStatus* status = nullptr);
  /// Resigns from the federation (and destroys it when this was the last federate).
  virtual ~DtExerciseConn();
  DtExerciseConn(const DtExerciseConn&) = delete;
  DtExerciseConn& operator=(const DtExerciseConn&) = delete;

  /// True while joined; false after a failed join, after resign() or once the connection
  /// was lost.
  bool connected() const { return joined_ && !lost_ && !resigned_; }
  /// True when this connection created the federation execution rather than finding it:
  /// no other federate was in it when this one joined.
  bool createdFederation() const { return created_; }
  /// Leaves the federation (and destroys it when this was the last federate). False when
  /// the RTI did not confirm leaving, with the reason in errorText(): whatever was sent
  /// shortly before may not have left this process. Later calls do nothing; the
  /// destructor calls it when the application did not.
  bool resign();
  /// The reason the connection failed or was lost, or why the RTI last refused to
  /// subscribe to a class (tried again at each drainInput()); empty while all is well.
  /// The library prints none of these itself: this is where they are reported.
  const DtString& errorText() const { return error_; }
  /// Whether the federation confirmed this connection's latest publication or
  /// subscription before the connection went on. Always true on an RTI that routes at its
  /// centre; false on one that routes at a node in each process (see kRtiWait) when the
  /// confirmation did not come in time, so that others may miss the first interactions.
  bool confirmedByFederation() const { return confirmed_; }
  /// The connection's identity: its federate name.
  const char* identity() const { return federateName_.c_str(); }
  const char* execName() const { return execName_.c_str(); }

  DtFomMapper* fomMapper() const { return mapper_; }
  dtrti::RTIambassador* rtiAmb() const { return rti_.get(); }

  // ------------------------------------------------------------------ tables
  /// Installs `decoder` (owned from now on) for the class `handle`, replacing any.
  void addDecoder(dtrti::InteractionClassHandle handle, DtInteractionDecoder* decoder);
  void addEncoder(dtrti::InteractionClassHandle handle, DtInteractionEncoder* encoder);
  DtInteractionDecoder* decoder(dtrti::InteractionClassHandle handle) const;
  DtInteractionEncoder* encoder(dtrti::InteractionClassHandle handle) const;
  /// Registers the function that makes empty interactions of the named class.
  void addInteractionCreator(const char* className, Creator creator);
  Creator interactionCreator(const char* className) const;

  // ------------------------------------------------------------------ sending
  /// Encodes and sends the interaction as its class; publishes the class on first use.
  /// Returns false (and sends nothing) when the object model lacks the class or the
  /// connection is down. A class first sent from inside a callback of drainInput() goes
  /// out, with whatever is sent after it, as that drainInput() returns (or at resign()):
  /// its publication is waited for there, where the RTI may be asked for callbacks.
  bool sendInteraction(const DtInteraction& inter);

  // ------------------------------------------------------------------ receiving
  /// Calls `cb` with every received interaction of the named class (subscribing to it
  /// on first use). The interaction passed is of the type the class's creator makes;
  /// typed callbacks (taking a subclass pointer) are skipped for other types.
  void addInteractionCallback(const char* className, Callback cb, void* usr);
  void removeInteractionCallback(const char* className, Callback cb, void* usr);
  template <typename Inter>
  void addInteractionCallback(const char* className, void (*cb)(Inter*, void*), void* usr) {
    addTypedCallback(className, reinterpret_cast<void (*)()>(cb), &invokeAs<Inter>, usr);
  }
  template <typename Inter>
  void removeInteractionCallback(const char* className, void (*cb)(Inter*, void*), void* usr) {
    removeTypedCallback(className, reinterpret_cast<void (*)()>(cb), usr);
  }

  // ------------------------------------------------------------------ objects
  /// Subscribes `listener` to the named attributes of each named object class. A class
  /// the object model lacks is left out, and so, class by class, is an attribute the class
  /// does not have. The listener (one per connection, kept by the caller) hears of
  /// instances from the next drainInput() on. Returns how many classes were subscribed;
  /// when the RTI refuses (one without object management, say) `problem` says why and the
  /// connection carries on with its interactions.
  int subscribeObjects(const std::vector<std::string>& classNames,
                       const std::vector<std::string>& attributeNames, DtObjectListener* listener,
                       std::string* problem = nullptr);
  /// Registers an instance of `className` that will update the named attributes
  /// (publishing them on first use). It is called `instanceName` when the federation lets
  /// it have that name, else the RTI names it. 0 when the connection is down, or the class
  /// or an attribute is not in the object model or the RTI refuses (`problem` says why).
  DtObjectId registerObject(const std::string& className,
                            const std::vector<std::string>& attributeNames,
                            const std::string& instanceName, std::string* problem = nullptr);
  /// Sends new values of an instance registered here; an index outside its attribute
  /// list is ignored. False when the instance is not ours or the RTI refused.
  bool updateObject(DtObjectId id, const DtAttributeValue* values, int count);
  /// Deletes an instance registered here.
  bool deleteObject(DtObjectId id);
  /// The RTI's name of an instance known here (registered or discovered); empty if none.
  std::string objectName(DtObjectId id) const;

  /// Processes incoming traffic: delivers what has arrived (at most
  /// kMaxCallbacksPerDrain callbacks), waiting up to `waitSeconds` for the first one when
  /// none is there yet. Returns the number of interactions delivered to callbacks.
  int drainInput(double waitSeconds = 0.0);

 private:
  class Ambassador;
  using Invoker = void (*)(void (*fn)(), DtInteraction* inter, void* usr);
  // Each registration has its own serial, never reused: a delivery under way tells by it
  // whether a callback it is about to call is still registered, even when the same
  // function and user data were removed and registered again in the meantime.
  struct CallbackEntry {
    std::string className;
    void (*fn)();
    Invoker invoke;
    void* usr;
    unsigned long long serial;
  };
  // What deliver() does with the interactions of one class, worked out on the first
  // one: the creator and the callbacks whose class names the object model maps to the
  // class. Any change to the creators or callbacks makes every route stale.
  struct Target {
    void (*fn)();
    Invoker invoke;
    void* usr;
    unsigned long long serial;
  };
  struct Route {
    dtrti::InteractionClassHandle handle;
    Creator creator = nullptr;
    std::vector<Target> targets;
  };

  // The class's creator usually makes exactly Inter: then no cast needs to search the
  // hierarchy. A plain static_cast only where the language allows one (no virtual base).
  template <typename Inter, typename = void>
  struct Downcast {
    static Inter* from(DtInteraction* inter) { return dynamic_cast<Inter*>(inter); }
  };
  template <typename Inter>
  struct Downcast<Inter,
                  std::void_t<decltype(static_cast<Inter*>(std::declval<DtInteraction*>()))>> {
    static Inter* from(DtInteraction* inter) {
      return typeid(*inter) == typeid(Inter) ? static_cast<Inter*>(inter)
                                             : dynamic_cast<Inter*>(inter);
    }
  };
  template <typename Inter>
  static void invokeAs(void (*fn)(), DtInteraction* inter, void* usr) {
    if (!inter) return;
    if (Inter* typed = Downcast<Inter>::from(inter))
      reinterpret_cast<void (*)(Inter*, void*)>(fn)(typed, usr);
  }
  static void invokePlain(void (*fn)(), DtInteraction* inter, void* usr);

  void join(const char* fedFileName, DtExerciseConnStatus* status);
  void addTypedCallback(const char* className, void (*fn)(), Invoker invoke, void* usr);
  void removeTypedCallback(const char* className, void (*fn)(), void* usr);
  void received(dtrti::InteractionClassHandle handle, const dtrti::ParameterHandleValueMap& values);
  void deliver(dtrti::InteractionClassHandle handle, const dtrti::ParameterHandleValueMap& values);
  void awaitRti(bool publishing);
  // Marks the time the RTI is calling us back (see inRtiCallback_).
  struct InRtiCallback {
    bool& flag;
    const bool was;
    explicit InRtiCallback(bool& f) : flag(f), was(f) { flag = true; }
    ~InRtiCallback() { flag = was; }
  };
  // Objects (dtExerciseConnObjects.cpp).
  // Something that happened to an instance, kept (with copies of its values) while the
  // connection waits for the RTI, like held_.
  struct ObjectEvent {
    enum Kind { Discovered, Reflected, Removed } kind;
    dtrti::ObjectInstanceHandle object;
    dtrti::ObjectClassHandle cls;
    std::wstring name;
    dtrti::AttributeHandleValueMap values;
  };
  struct Instance {
    DtObjectId id = 0;
    dtrti::ObjectClassHandle cls;
    std::wstring name;
    bool own = false;
    std::vector<dtrti::AttributeHandle> attributes;  // own instances: by index
  };
  void objectDiscovered(dtrti::ObjectInstanceHandle object, dtrti::ObjectClassHandle cls,
                        const std::wstring& name);
  void objectReflected(dtrti::ObjectInstanceHandle object,
                       const dtrti::AttributeHandleValueMap& values);
  void objectRemoved(dtrti::ObjectInstanceHandle object);
  void reflectNow(dtrti::ObjectInstanceHandle object, const dtrti::AttributeHandleValueMap& values);
  void deliverObject(const ObjectEvent& event);
  const std::vector<std::pair<dtrti::AttributeHandle, int>>& listenedAttributes(
      dtrti::ObjectClassHandle cls);
  bool reserveName(const std::wstring& name);
  Instance* ownInstance(DtObjectId id, dtrti::ObjectInstanceHandle* handle);
  void sendDeferred();
  void deliverHeld();
  /// False when the object model has no description for the class.
  bool buildRoute(dtrti::InteractionClassHandle handle, Route& route);
  bool stillRegistered(unsigned long long serial) const;
  void fail(const std::string& why);
  void reservationAnswered(const std::wstring& name);
  void subscribeOnRti(dtrti::InteractionClassHandle handle);
  /// Subscribes again to the classes with callbacks that the RTI refused before.
  void subscribeRefused();

  std::string execName_;
  std::string federateName_;
  std::unique_ptr<dtrti::RTIambassador> rti_;
  std::unique_ptr<Ambassador> ambassador_;
  std::unique_ptr<DtFomMapper> ownMapper_;
  DtFomMapper* mapper_ = nullptr;
  bool joined_ = false;
  bool lost_ = false;
  bool created_ = false;
  bool resigned_ = false;
  DtString error_;

  std::map<dtrti::InteractionClassHandle, std::unique_ptr<DtInteractionDecoder>> decoders_;
  std::map<dtrti::InteractionClassHandle, std::unique_ptr<DtInteractionEncoder>> encoders_;
  std::map<std::string, Creator> creators_;
  std::vector<CallbackEntry> callbacks_;
  unsigned long long nextSerial_ = 0;
  // Counts removals, so that a delivery looks its callbacks up again only when one of
  // them (or anything it called) removed a callback.
  unsigned long long removals_ = 0;
  std::map<dtrti::InteractionClassHandle, bool> published_;
  std::map<dtrti::InteractionClassHandle, int> subscribed_;  // callbacks per class
  // The classes the RTI has accepted a subscription to.
  std::set<dtrti::InteractionClassHandle> onRti_;
  dtrti::ParameterHandleValueMap sendValues_;
  int delivered_ = 0;
  // An interaction that waits, with copies of its values.
  struct Queued {
    dtrti::InteractionClassHandle handle;
    dtrti::ParameterHandleValueMap values;
  };
  static Queued queued(dtrti::InteractionClassHandle handle,
                       const dtrti::ParameterHandleValueMap& values);
  // While a publication or subscription waits to be confirmed, interactions that arrive
  // are kept here for the next drainInput().
  std::deque<Queued> held_;
  bool holding_ = false;
  bool reservationAnswered_ = false;
  std::wstring awaitedReservation_;
  bool confirmed_ = true;
  // True while the RTI is calling us back with an interaction.
  bool inRtiCallback_ = false;
  // A class first published inside the RTI's callback is waited for once that callback
  // is over; until then what is sent waits here, in order.
  std::deque<Queued> deferred_;
  unsigned reservations_ = 0;
  std::vector<Route> routes_;
  DtObjectListener* objectListener_ = nullptr;
  std::vector<std::string> listenedNames_;
  std::map<dtrti::ObjectClassHandle, std::vector<std::pair<dtrti::AttributeHandle, int>>> listened_;
  std::map<dtrti::ObjectInstanceHandle, Instance> instances_;
  std::map<DtObjectId, dtrti::ObjectInstanceHandle> objectIds_;
  DtObjectId nextObjectId_ = 0;
  std::map<dtrti::ObjectClassHandle, dtrti::AttributeHandleSet> objectPublished_;
  std::deque<ObjectEvent> heldObjects_;
  std::vector<DtAttributeValue> reflected_;
  std::wstring pendingName_;
  int pendingNameResult_ = 0;  // 1 reserved, -1 refused, 0 no answer yet
  bool routesStale_ = false;
  // Deliveries under way: a nested one (an RTI that lets a callback evoke more) works
  // without the routes, which the outer one may be walking.
  int delivering_ = 0;
};
