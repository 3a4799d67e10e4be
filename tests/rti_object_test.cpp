// Object management of the embedded RTI, each case run twice: in one process (thread://)
// and through a hub process, which must behave the same. What the standard leaves open is
// pinned down where rti/README.md says what this RTI does.
#include "process.h"
#include "rti_test_federate.h"

#include <csignal>
#include <deque>
#include <set>

namespace rtitest {
namespace {

using namespace rti1516;
using std::chrono::seconds;

// HLAobjectRoot > Entity(pos, vel) > Vehicle(fuel) > Tank(turret); Other(x) beside Entity.
std::string objectFom() {
  return R"(<?xml version="1.0"?>
<objectModel name="Objects" type="FOM">
  <objects>
    <objectClass name="HLAobjectRoot">
      <objectClass name="Entity">
        <attribute name="pos"/><attribute name="vel"/>
        <objectClass name="Vehicle">
          <attribute name="fuel"/>
          <objectClass name="Tank"><attribute name="turret"/></objectClass>
        </objectClass>
      </objectClass>
      <objectClass name="Other"><attribute name="x"/></objectClass>
    </objectClass>
  </objects>
  <interactions><interactionClass name="HLAinteractionRoot"/></interactions>
</objectModel>
)";
}

struct Event {
  enum Kind { Discover, Reflect, Remove, Provide, NameOk, NameFailed } kind;
  ObjectInstanceHandle instance;
  ObjectClassHandle cls;
  std::wstring name;
  std::map<AttributeHandle, Bytes> values;
  std::set<AttributeHandle> requested;
  Bytes tag;
};

class ObjectRecorder : public NullFederateAmbassador {
 public:
  std::vector<Event> events;
  std::function<void(const Event&)> onEvent;

  std::size_t count(Event::Kind k) const {
    std::size_t n = 0;
    for (const Event& e : events) n += e.kind == k;
    return n;
  }
  const Event* last(Event::Kind k) const {
    for (auto it = events.rbegin(); it != events.rend(); ++it)
      if (it->kind == k) return &*it;
    return nullptr;
  }

  void objectInstanceNameReservationSucceeded(std::wstring const& name) override {
    add({Event::NameOk, {}, {}, name, {}, {}, {}});
  }
  void objectInstanceNameReservationFailed(std::wstring const& name) override {
    add({Event::NameFailed, {}, {}, name, {}, {}, {}});
  }
  void discoverObjectInstance(ObjectInstanceHandle h, ObjectClassHandle c,
                              std::wstring const& name) override {
    add({Event::Discover, h, c, name, {}, {}, {}});
  }
  void reflectAttributeValues(ObjectInstanceHandle h, AttributeHandleValueMap const& values,
                              VariableLengthData const& tag, OrderType,
                              TransportationType) override {
    Event e{Event::Reflect, h, {}, {}, {}, {}, bytesOf(tag)};
    for (const auto& [a, v] : values) e.values[a] = bytesOf(v);
    add(std::move(e));
  }
  void removeObjectInstance(ObjectInstanceHandle h, VariableLengthData const& tag,
                            OrderType) override {
    add({Event::Remove, h, {}, {}, {}, {}, bytesOf(tag)});
  }
  void provideAttributeValueUpdate(ObjectInstanceHandle h, AttributeHandleSet const& attributes,
                                   VariableLengthData const& tag) override {
    add({Event::Provide, h, {}, {}, {}, attributes, bytesOf(tag)});
  }

 private:
  void add(Event e) {
    events.push_back(std::move(e));
    if (onEvent) onEvent(events.back());
  }
};

struct Fed {
  std::unique_ptr<RTIambassador> rti;
  std::unique_ptr<ObjectRecorder> rec;
  ObjectClassHandle entity, vehicle, tank, other;
  AttributeHandle pos, vel, fuel, turret, x;

  // Evokes until `done` holds or ten seconds pass.
  bool pumpUntil(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + seconds(10);
    while (!done() && std::chrono::steady_clock::now() < deadline)
      rti->evokeMultipleCallbacks(0.001, 0.02);
    return done();
  }
  bool pumpUntil(Event::Kind k, std::size_t n) {
    return pumpUntil([&] { return rec->count(k) >= n; });
  }
  // Returns once the federation has dealt with everything this federate sent before: a
  // name reservation is answered in order behind it. Across the hub, what two federates
  // send reaches the federation in no particular order otherwise.
  void sync() {
    static int n = 0;
    const std::size_t before = rec->count(Event::NameOk);
    rti->reserveObjectInstanceName(L"sync" + std::to_wstring(++n));
    pumpUntil(Event::NameOk, before + 1);
  }
  // Evokes for a moment, for what must not arrive.
  void settle() {
    for (int i = 0; i < 20; ++i) rti->evokeMultipleCallbacks(0.005, 0.01);
  }
  ObjectInstanceHandle registerTank() {
    rti->publishObjectClassAttributes(tank, {pos, vel, fuel, turret});
    return rti->registerObjectInstance(tank);
  }
  void update(ObjectInstanceHandle h, const std::map<AttributeHandle, Bytes>& values,
              const Bytes& tag = {}) {
    AttributeHandleValueMap v;
    for (const auto& [a, b] : values) v[a] = data(b);
    rti->updateAttributeValues(h, v, data(tag));
  }
};

class Objects : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    if (GetParam() == "hub") {
      if (!vctest::hubAvailable()) GTEST_SKIP() << "the hub is built with the embedded RTI only";
      hub_ = vctest::startHub(port_);
      url_ = wide(vctest::hubUrl(port_, testName()));
    } else {
      url_ = L"thread://" + wide(testName());
    }
    makeAmbassador()->createFederationExecution(url_, fom_.wpath());
  }
  void TearDown() override {
    feds_.clear();
    if (hub_) {
      hub_->kill(SIGTERM);
      EXPECT_EQ(hub_->wait(seconds(10)), 0) << hub_->transcript();
    }
  }

  Fed& join() {
    Fed f{makeAmbassador(), std::make_unique<ObjectRecorder>(), {}, {}, {}, {}, {}, {}, {}, {}, {}};
    f.rti->joinFederationExecution(L"objects", url_, *f.rec);
    f.entity = f.rti->getObjectClassHandle(L"Entity");
    f.vehicle = f.rti->getObjectClassHandle(L"Vehicle");
    f.tank = f.rti->getObjectClassHandle(L"HLAobjectRoot.Entity.Vehicle.Tank");
    f.other = f.rti->getObjectClassHandle(L"Other");
    f.pos = f.rti->getAttributeHandle(f.tank, L"pos");
    f.vel = f.rti->getAttributeHandle(f.tank, L"vel");
    f.fuel = f.rti->getAttributeHandle(f.tank, L"fuel");
    f.turret = f.rti->getAttributeHandle(f.tank, L"turret");
    f.x = f.rti->getAttributeHandle(f.other, L"x");
    feds_.push_back(std::move(f));
    return feds_.back();
  }

  TempFile fom_{"objects", objectFom()};
  std::unique_ptr<vctest::ChildProcess> hub_;
  std::uint16_t port_ = 0;
  std::wstring url_;
  std::deque<Fed> feds_;
};

TEST_P(Objects, UpdatesReachSubscribersAsTheirNearestClassWithOnlyTheirAttributes) {
  Fed& owner = join();
  Fed& entities = join();
  Fed& vehicles = join();
  Fed& others = join();
  entities.rti->subscribeObjectClassAttributes(entities.entity, {entities.pos});
  vehicles.rti->subscribeObjectClassAttributes(vehicles.vehicle, {vehicles.pos, vehicles.fuel});
  others.rti->subscribeObjectClassAttributes(others.other, {others.x});

  const ObjectInstanceHandle tank = owner.registerTank();
  const std::wstring name = owner.rti->getObjectInstanceName(tank);
  const Bytes p = pattern(100, 1), v = pattern(37, 2), f = pattern(8, 3), t = pattern(1, 4);
  owner.update(tank, {{owner.pos, p}, {owner.vel, v}, {owner.fuel, f}, {owner.turret, t}},
               {'u', 0, 'x'});

  ASSERT_TRUE(entities.pumpUntil(Event::Reflect, 1));
  ASSERT_TRUE(vehicles.pumpUntil(Event::Reflect, 1));
  for (Fed* s : {&entities, &vehicles}) {
    ASSERT_EQ(s->rec->events.size(), 2u);
    const Event& d = s->rec->events[0];
    EXPECT_EQ(d.kind, Event::Discover) << "discovery comes before the first values";
    EXPECT_EQ(d.instance, tank);
    EXPECT_EQ(d.name, name);
    EXPECT_EQ(s->rti->getObjectInstanceHandle(name), tank);
    EXPECT_EQ(s->rti->getObjectInstanceName(tank), name);
    EXPECT_EQ(s->rec->events[1].tag, Bytes({'u', 0, 'x'}));
  }
  EXPECT_EQ(entities.rec->events[0].cls, entities.entity);
  EXPECT_EQ(entities.rti->getKnownObjectClassHandle(tank), entities.entity);
  EXPECT_EQ(entities.rec->events[1].values, (std::map<AttributeHandle, Bytes>{{entities.pos, p}}));
  EXPECT_EQ(vehicles.rec->events[0].cls, vehicles.vehicle);
  EXPECT_EQ(vehicles.rec->events[1].values,
            (std::map<AttributeHandle, Bytes>{{vehicles.pos, p}, {vehicles.fuel, f}}));

  // An update with none of a subscriber's attributes is nothing to it.
  owner.update(tank, {{owner.turret, t}});
  owner.update(tank, {{owner.vel, v}, {owner.fuel, f}});
  ASSERT_TRUE(vehicles.pumpUntil(Event::Reflect, 2));
  EXPECT_EQ(vehicles.rec->events.back().values,
            (std::map<AttributeHandle, Bytes>{{vehicles.fuel, f}}));
  entities.settle();
  others.settle();
  owner.settle();
  EXPECT_EQ(entities.rec->events.size(), 2u);
  EXPECT_TRUE(others.rec->events.empty());
  EXPECT_TRUE(owner.rec->events.empty()) << "an owner is not told of its own instance";
}

TEST_P(Objects, LateJoinersAndLateSubscribersDiscoverWhatExistsAndCanAskForItsValues) {
  Fed& owner = join();
  std::vector<ObjectInstanceHandle> tanks;
  for (int i = 0; i < 3; ++i) tanks.push_back(owner.registerTank());
  owner.update(tanks[0], {{owner.pos, pattern(100, 9)}});
  owner.sync();

  Fed& late = join();
  late.rti->subscribeObjectClassAttributes(late.vehicle, {late.pos, late.fuel});
  ASSERT_TRUE(late.pumpUntil(Event::Discover, 3));
  std::set<ObjectInstanceHandle> seen;
  for (const Event& e : late.rec->events) {
    EXPECT_EQ(e.kind, Event::Discover) << "values sent before it subscribed are not replayed";
    EXPECT_EQ(e.cls, late.vehicle);
    seen.insert(e.instance);
  }
  EXPECT_EQ(seen, std::set<ObjectInstanceHandle>(tanks.begin(), tanks.end()));

  // Asked for a class, the owner provides each instance's values, and they come back as
  // reflections; asked for one instance, only that one.
  owner.rec->onEvent = [&](const Event& e) {
    if (e.kind != Event::Provide) return;
    std::map<AttributeHandle, Bytes> values;
    for (const AttributeHandle& a : e.requested) values[a] = pattern(20, 5);
    owner.update(e.instance, values, e.tag);
  };
  late.rti->requestAttributeValueUpdate(late.entity, {late.pos}, data({'c'}));
  ASSERT_TRUE(owner.pumpUntil(Event::Provide, 3));
  for (const Event& e : owner.rec->events) {
    if (e.kind != Event::Provide) continue;
    EXPECT_EQ(e.requested, std::set<AttributeHandle>{owner.pos});
    EXPECT_EQ(e.tag, Bytes{'c'});
  }
  ASSERT_TRUE(late.pumpUntil(Event::Reflect, 3));
  late.rti->requestAttributeValueUpdate(tanks[1], {late.pos, late.fuel}, data({'i'}));
  ASSERT_TRUE(owner.pumpUntil(Event::Provide, 4));
  EXPECT_EQ(owner.rec->events.back().instance, tanks[1]);
  EXPECT_EQ(owner.rec->events.back().requested, (std::set<AttributeHandle>{owner.pos, owner.fuel}));
  ASSERT_TRUE(late.pumpUntil(Event::Reflect, 4));
  EXPECT_EQ(late.rec->events.back().instance, tanks[1]);
  EXPECT_EQ(late.rec->events.back().tag, Bytes{'i'});
}

TEST_P(Objects, NamesAreUniqueInTheFederationReservedOrGenerated) {
  Fed& a = join();
  Fed& b = join();
  a.rti->reserveObjectInstanceName(L"alpha");
  ASSERT_TRUE(a.pumpUntil(Event::NameOk, 1));
  EXPECT_EQ(a.rec->last(Event::NameOk)->name, L"alpha");
  b.rti->reserveObjectInstanceName(L"alpha");
  ASSERT_TRUE(b.pumpUntil(Event::NameFailed, 1));
  EXPECT_EQ(b.rec->last(Event::NameFailed)->name, L"alpha");
  EXPECT_THROW(a.rti->reserveObjectInstanceName(L"HLAmine"), IllegalName);
  EXPECT_THROW(a.rti->reserveObjectInstanceName(L""), IllegalName);

  a.rti->publishObjectClassAttributes(a.entity, {a.pos});
  b.rti->publishObjectClassAttributes(b.entity, {b.pos});
  EXPECT_THROW(b.rti->registerObjectInstance(b.entity, L"alpha"), ObjectInstanceNameNotReserved);
  const ObjectInstanceHandle named = a.rti->registerObjectInstance(a.entity, L"alpha");
  EXPECT_EQ(a.rti->getObjectInstanceName(named), L"alpha");
  EXPECT_THROW(a.rti->registerObjectInstance(a.entity, L"alpha"), ObjectInstanceNameInUse);

  const ObjectInstanceHandle ga = a.rti->registerObjectInstance(a.entity);
  const ObjectInstanceHandle gb = b.rti->registerObjectInstance(b.entity);
  const std::wstring na = a.rti->getObjectInstanceName(ga), nb = b.rti->getObjectInstanceName(gb);
  EXPECT_NE(ga, gb);
  EXPECT_NE(na, nb);
  EXPECT_EQ(na.rfind(L"HLA", 0), 0u) << narrow(na);
  EXPECT_EQ(nb.rfind(L"HLA", 0), 0u) << narrow(nb);

  // A deleted instance's name is free again.
  a.rti->deleteObjectInstance(named, {});
  a.sync();
  b.rti->reserveObjectInstanceName(L"alpha");
  ASSERT_TRUE(b.pumpUntil(Event::NameOk, 1));
}

TEST_P(Objects, DeleteRemovesForThoseWhoKnowAndALocalDeleteIsDiscoveredAgain) {
  Fed& owner = join();
  Fed& sub = join();
  sub.rti->subscribeObjectClassAttributes(sub.entity, {sub.pos});
  const ObjectInstanceHandle first = owner.registerTank();
  const ObjectInstanceHandle second = owner.registerTank();
  ASSERT_TRUE(sub.pumpUntil(Event::Discover, 2));

  owner.rti->deleteObjectInstance(first, data({'b', 'y', 'e'}));
  ASSERT_TRUE(sub.pumpUntil(Event::Remove, 1));
  EXPECT_EQ(sub.rec->last(Event::Remove)->instance, first);
  EXPECT_EQ(sub.rec->last(Event::Remove)->tag, Bytes({'b', 'y', 'e'}));
  EXPECT_THROW(sub.rti->getObjectInstanceName(first), ObjectInstanceNotKnown);
  EXPECT_THROW(owner.rti->deleteObjectInstance(first, {}), ObjectInstanceNotKnown);

  sub.rti->localDeleteObjectInstance(second);
  EXPECT_THROW(sub.rti->getKnownObjectClassHandle(second), ObjectInstanceNotKnown);
  owner.update(second, {{owner.pos, pattern(100, 7)}});
  ASSERT_TRUE(sub.pumpUntil(Event::Reflect, 1));
  const auto& ev = sub.rec->events;
  ASSERT_GE(ev.size(), 2u);
  EXPECT_EQ(ev[ev.size() - 2].kind, Event::Discover) << "discovered again before its values";
  EXPECT_EQ(ev[ev.size() - 2].instance, second);
  EXPECT_EQ(ev.back().values.at(sub.pos), pattern(100, 7));
}

TEST_P(Objects, BadInputIsRefusedWithTheStandardExceptionAndHarmsNobody) {
  Fed& owner = join();
  Fed& sub = join();
  sub.rti->subscribeObjectClassAttributes(sub.entity, {sub.pos});
  owner.rti->publishObjectClassAttributes(owner.entity, {owner.pos});
  const ObjectInstanceHandle e = owner.rti->registerObjectInstance(owner.entity);
  ASSERT_TRUE(sub.pumpUntil(Event::Discover, 1));

  EXPECT_THROW(owner.rti->registerObjectInstance(owner.vehicle), ObjectClassNotPublished);
  EXPECT_THROW(owner.rti->publishObjectClassAttributes(owner.other, {owner.pos}),
               AttributeNotDefined);
  EXPECT_THROW(sub.rti->subscribeObjectClassAttributes(sub.entity, {sub.fuel}),
               AttributeNotDefined);
  const ObjectClassHandle bogus =
      owner.rti->decodeObjectClassHandle(data({0, 0, 0, 0, 0, 0, 0, 99}));
  EXPECT_THROW(owner.rti->publishObjectClassAttributes(bogus, {owner.pos}), ObjectClassNotDefined);
  EXPECT_THROW(owner.rti->getObjectClassName(bogus), InvalidObjectClassHandle);
  EXPECT_THROW(owner.update(e, {{owner.fuel, {1}}}), AttributeNotDefined);
  EXPECT_THROW(owner.update(e, {{owner.vel, {1}}}), AttributeNotOwned);
  EXPECT_THROW(sub.update(e, {{sub.pos, {1}}}), AttributeNotOwned);
  const ObjectInstanceHandle unknown =
      owner.rti->decodeObjectInstanceHandle(data({0, 0, 0, 9, 0, 0, 0, 9}));
  EXPECT_THROW(owner.update(unknown, {{owner.pos, {1}}}), ObjectInstanceNotKnown);
  EXPECT_THROW(owner.rti->requestAttributeValueUpdate(unknown, {owner.pos}, {}),
               ObjectInstanceNotKnown);
  EXPECT_THROW(sub.rti->deleteObjectInstance(e, {}), DeletePrivilegeNotHeld);
  EXPECT_THROW(owner.rti->localDeleteObjectInstance(e), FederateOwnsAttributes);
  EXPECT_THROW(owner.rti->resignFederationExecution(NO_ACTION), FederateOwnsAttributes);
  EXPECT_THROW(owner.rti->getObjectInstanceHandle(L"nobody"), ObjectInstanceNotKnown);
  EXPECT_THROW(owner.rti->changeAttributeTransportationType(e, {owner.pos}, RELIABLE),
               RTIinternalError);
  try {
    owner.rti->attributeOwnershipAcquisition(e, {owner.pos}, {});
    ADD_FAILURE() << "ownership services are not provided";
  } catch (const RTIinternalError& err) {
    EXPECT_NE(std::wstring(err.what()).find(L"not supported"), std::wstring::npos);
  }

  // Still a member, still the owner, still heard.
  owner.update(e, {{owner.pos, pattern(50, 1)}});
  ASSERT_TRUE(sub.pumpUntil(Event::Reflect, 1));
  EXPECT_EQ(sub.rec->last(Event::Reflect)->values.at(sub.pos), pattern(50, 1));
}

TEST_P(Objects, ResignActionsDecideWhetherInstancesGoOrStay) {
  Fed& sub = join();
  sub.rti->subscribeObjectClassAttributes(sub.entity, {sub.pos});
  Fed& deleter = join();
  const ObjectInstanceHandle gone = deleter.registerTank();
  Fed& divester = join();
  const ObjectInstanceHandle kept = divester.registerTank();
  ASSERT_TRUE(sub.pumpUntil(Event::Discover, 2));

  deleter.rti->resignFederationExecution(DELETE_OBJECTS);
  divester.rti->resignFederationExecution(UNCONDITIONALLY_DIVEST_ATTRIBUTES);
  ASSERT_TRUE(sub.pumpUntil(Event::Remove, 1));
  sub.settle();
  EXPECT_EQ(sub.rec->count(Event::Remove), 1u);
  EXPECT_EQ(sub.rec->last(Event::Remove)->instance, gone);
  EXPECT_EQ(sub.rti->getObjectInstanceName(kept).rfind(L"HLA", 0), 0u);

  // What nobody owns any longer is still there for those who come later.
  Fed& late = join();
  late.rti->subscribeObjectClassAttributes(late.entity, {late.pos});
  ASSERT_TRUE(late.pumpUntil(Event::Discover, 1));
  EXPECT_EQ(late.rec->events[0].instance, kept);
}

INSTANTIATE_TEST_SUITE_P(Paths, Objects, ::testing::Values("thread", "hub"),
                         [](const ::testing::TestParamInfo<std::string>& p) { return p.param; });

// A federate process that dies has its instances removed for everyone else, and the
// federation carries on.
TEST(ObjectsAcrossProcesses, AKilledOwnersInstancesAreRemovedForEveryone) {
  if (!vctest::hubAvailable()) GTEST_SKIP() << "the hub is built with the embedded RTI only";
  std::uint16_t port = 0;
  auto hub = vctest::startHub(port);
  TempFile fom("objects", objectFom());
  const std::string url = vctest::hubUrl(port, "Killed");
  makeAmbassador()->createFederationExecution(wide(url), fom.wpath());
  auto rti = makeAmbassador();
  ObjectRecorder rec;
  rti->joinFederationExecution(L"watcher", wide(url), rec);
  const ObjectClassHandle entity = rti->getObjectClassHandle(L"Entity");
  const AttributeHandle pos = rti->getAttributeHandle(entity, L"pos");
  rti->subscribeObjectClassAttributes(entity, {pos});

  vctest::ChildProcess peer(vctest::programPath("rti_peer"),
                            {url, fom.path(), "register", "Vehicle", "fuel", "5"});
  std::string line;
  ASSERT_TRUE(peer.waitForLine("registered 5", line, seconds(10))) << peer.transcript();
  const auto deadline = std::chrono::steady_clock::now() + seconds(10);
  while (rec.count(Event::Discover) < 5 && std::chrono::steady_clock::now() < deadline)
    rti->evokeMultipleCallbacks(0.001, 0.02);
  ASSERT_EQ(rec.count(Event::Discover), 5u);
  EXPECT_EQ(rec.count(Event::Reflect), 0u) << "fuel is not among what the watcher subscribes";
  EXPECT_EQ(rec.events[0].cls, entity);

  peer.kill(SIGKILL);
  peer.wait(seconds(10));
  while (rec.count(Event::Remove) < 5 && std::chrono::steady_clock::now() < deadline + seconds(5))
    rti->evokeMultipleCallbacks(0.001, 0.02);
  EXPECT_EQ(rec.count(Event::Remove), 5u);
  rti->resignFederationExecution(NO_ACTION);
  hub->kill(SIGTERM);
  EXPECT_EQ(hub->wait(seconds(10)), 0) << hub->transcript();
}

}  // namespace
}  // namespace rtitest
