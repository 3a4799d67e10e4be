// The embedded RTI through the IEEE 1516-2010 API: connecting, FOM modules merged with the
// MIM and refused when they disagree, interactions and objects byte for byte between
// evoked and immediate federates in a thread:// federation and through a hub, what is
// refused by name, and the time library's encodings.
#include <RTI/NullFederateAmbassador.h>
#include <RTI/RTI1516.h>
#include <RTI/time/HLAfloat64Interval.h>
#include <RTI/time/HLAfloat64Time.h>
#include <RTI/time/HLAfloat64TimeFactory.h>
#include <RTI/time/HLAinteger64Interval.h>
#include <RTI/time/HLAinteger64Time.h>
#include <RTI/time/HLAinteger64TimeFactory.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <thread>

#include "process.h"

using namespace rti1516e;

namespace {

using Bytes = std::vector<unsigned char>;
using namespace std::chrono_literals;

const std::wstring kRpr = L"" VC_SOURCE_DIR "/share/fom/rpr-fom-2.0/";
const std::wstring kOurs = L"" VC_SOURCE_DIR "/share/fom/VistrelControl-1516e.xml";
std::vector<std::wstring> rprAndOurs() {
  return {kRpr + L"RPR-Foundation_v2.0.xml", kRpr + L"RPR-Enumerations_v2.0.xml",
          kRpr + L"RPR-Base_v2.0.xml", kRpr + L"RPR-Physical_v2.0.xml", kOurs};
}
const wchar_t kAircraft[] = L"HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.Aircraft";

Bytes bytesOf(VariableLengthData const& v) {
  const auto* p = static_cast<const unsigned char*>(v.data());
  return Bytes(p, p + v.size());
}

std::wstring wide(const std::string& s) {
  return std::wstring(s.begin(), s.end());
}

std::wstring testName() {
  return wide(::testing::UnitTest::GetInstance()->current_test_info()->name());
}

// A module file written for one test, removed with it.
struct TempModule {
  explicit TempModule(const std::string& body) {
    path = ::testing::TempDir() + "module_" + std::to_string(::getpid()) + "_" +
           std::to_string(counter()++) + ".xml";
    std::ofstream(path) << "<?xml version=\"1.0\"?>\n<objectModel>" << body << "</objectModel>\n";
  }
  ~TempModule() { std::remove(path.c_str()); }
  static int& counter() {
    static int n = 0;
    return n;
  }
  std::string path;
};

// What a federate has been told, with a condition to wait on for immediate callbacks.
class Recorder : public NullFederateAmbassador {
 public:
  void receiveInteraction(InteractionClassHandle cls, ParameterHandleValueMap const& values,
                          VariableLengthData const& tag, OrderType, TransportationType,
                          SupplementalReceiveInfo) override {
    std::lock_guard<std::mutex> hold(mu_);
    for (const auto& [h, v] : values) interactions.push_back({cls, h, bytesOf(v), bytesOf(tag)});
    cv_.notify_all();
  }
  void discoverObjectInstance(ObjectInstanceHandle object, ObjectClassHandle cls,
                              std::wstring const& name) override {
    std::lock_guard<std::mutex> hold(mu_);
    discovered.push_back({object, cls, name});
    cv_.notify_all();
  }
  void reflectAttributeValues(ObjectInstanceHandle object, AttributeHandleValueMap const& values,
                              VariableLengthData const&, OrderType, TransportationType,
                              SupplementalReflectInfo) override {
    std::lock_guard<std::mutex> hold(mu_);
    for (const auto& [h, v] : values) reflected.push_back({object, h, bytesOf(v)});
    cv_.notify_all();
  }
  void removeObjectInstance(ObjectInstanceHandle object, VariableLengthData const&, OrderType,
                            SupplementalRemoveInfo) override {
    std::lock_guard<std::mutex> hold(mu_);
    removed.push_back(object);
    cv_.notify_all();
  }

  // Evokes (or, for an immediate federate, waits) until `done` holds, for at most 10 s.
  template <class Pred>
  bool await(RTIambassador* evoke, Pred done) {
    const auto end = std::chrono::steady_clock::now() + 10s;
    std::unique_lock<std::mutex> hold(mu_);
    while (!done()) {
      if (std::chrono::steady_clock::now() > end) return false;
      if (evoke) {
        hold.unlock();
        evoke->evokeMultipleCallbacks(0.01, 0.05);
        hold.lock();
      } else {
        cv_.wait_for(hold, 20ms);
      }
    }
    return true;
  }

  struct Interaction {
    InteractionClassHandle cls;
    ParameterHandle param;
    Bytes value, tag;
  };
  struct Discovery {
    ObjectInstanceHandle object;
    ObjectClassHandle cls;
    std::wstring name;
  };
  struct Reflection {
    ObjectInstanceHandle object;
    AttributeHandle attribute;
    Bytes value;
  };
  std::vector<Interaction> interactions;
  std::vector<Discovery> discovered;
  std::vector<Reflection> reflected;
  std::vector<ObjectInstanceHandle> removed;

 private:
  std::mutex mu_;
  std::condition_variable cv_;
};

std::unique_ptr<RTIambassador> ambassador() {
  RTIambassadorFactory factory;
  return factory.createRTIambassador();
}

template <class E, class F>
std::wstring thrown(F&& f) {
  try {
    f();
  } catch (const E& e) {
    return e.what();
  } catch (const Exception& e) {
    return L"another exception: " + e.what();
  }
  return L"nothing thrown";
}

bool says(const std::wstring& text, const std::wstring& part) {
  return text.find(part) != std::wstring::npos;
}

// ---------------------------------------------------------------- Connecting, refusals

TEST(EvolvedConnection, ServicesNeedAConnectionAndRefuseByName) {
  auto rti = ambassador();
  Recorder fed;
  EXPECT_TRUE(says(thrown<NotConnected>([&] { rti->createFederationExecution(L"x", kOurs); }),
                   L"createFederationExecution"));
  EXPECT_TRUE(says(thrown<NotConnected>([&] { rti->listFederationExecutions(); }),
                   L"listFederationExecutions"));
  EXPECT_TRUE(says(thrown<NotConnected>([&] { rti->disconnect(); }), L"disconnect"));
  EXPECT_TRUE(says(thrown<InvalidLocalSettingsDesignator>(
                       [&] { rti->connect(fed, HLA_EVOKED, L"tcp://host:1"); }),
                   L"tcp://host:1"));
  rti->connect(fed, HLA_EVOKED, L"thread://");
  EXPECT_FALSE(says(thrown<AlreadyConnected>([&] { rti->connect(fed, HLA_EVOKED); }), L"another"));
  // The words are those the 1516-2000 API uses for what it lacks.
  EXPECT_EQ(thrown<RTIinternalError>([&] { rti->listFederationExecutions(); }),
            L"listFederationExecutions is not supported by this RTI");
  HLAfloat64Interval lookahead(1.0);
  EXPECT_EQ(thrown<RTIinternalError>([&] { rti->enableTimeRegulation(lookahead); }),
            L"enableTimeRegulation is not supported by this RTI");
  EXPECT_TRUE(
      says(thrown<FederateNotExecutionMember>([&] { rti->getObjectClassHandle(kAircraft); }),
           L"getObjectClassHandle"));
  EXPECT_NO_THROW(rti->disconnect());
}

TEST(EvolvedConnection, DisconnectWaitsForTheResign) {
  const std::wstring name = testName();
  auto rti = ambassador();
  Recorder fed;
  rti->connect(fed, HLA_EVOKED, L"thread://");
  rti->createFederationExecution(name, kOurs, L"HLAinteger64Time");
  rti->joinFederationExecution(L"t", name);
  EXPECT_FALSE(says(thrown<FederateIsExecutionMember>([&] { rti->disconnect(); }), L"another"));
  rti->resignFederationExecution(NO_ACTION);
  rti->destroyFederationExecution(name);
  rti->disconnect();
  rti->connect(fed, HLA_EVOKED, L"thread://");
  EXPECT_TRUE(says(thrown<CouldNotCreateLogicalTimeFactory>(
                       [&] { rti->createFederationExecution(name, kOurs, L"MyTime"); }),
                   L"MyTime"));
}

// ------------------------------------------------------------------------ FOM modules

class EvolvedModules : public ::testing::Test {
 protected:
  void SetUp() override {
    rti_->connect(fed_, HLA_EVOKED, L"thread://");
    name_ = testName();
  }
  void TearDown() override {
    try {
      rti_->resignFederationExecution(NO_ACTION);
    } catch (const Exception&) {
    }
    try {
      rti_->destroyFederationExecution(name_);
    } catch (const Exception&) {
    }
  }
  std::unique_ptr<RTIambassador> rti_ = ambassador();
  Recorder fed_;
  std::wstring name_;
};

TEST_F(EvolvedModules, PublishedRprModulesMergeWithTheMim) {
  rti_->createFederationExecution(name_, rprAndOurs());
  rti_->joinFederationExecution(L"t", name_);
  // Aircraft is declared by the physical module below the base module's BaseEntity, which
  // the physical module repeats without attributes.
  const ObjectClassHandle aircraft = rti_->getObjectClassHandle(kAircraft);
  EXPECT_EQ(rti_->getObjectClassName(aircraft), kAircraft);
  const AttributeHandle spatial = rti_->getAttributeHandle(aircraft, L"Spatial");
  EXPECT_EQ(rti_->getAttributeName(rti_->getObjectClassHandle(L"BaseEntity"), spatial), L"Spatial");
  // The MIM's attribute, inherited by every class though no module declares it.
  EXPECT_NO_THROW(rti_->getAttributeHandle(aircraft, L"HLAprivilegeToDeleteObject"));
  EXPECT_NO_THROW(
      rti_->getParameterHandle(rti_->getInteractionClassHandle(L"ViewControl"), L"ViewControlPdu"));
}

TEST_F(EvolvedModules, ConflictingModulesAreRefusedNamingTheClassAndBothModules) {
  TempModule other(
      "<objects><objectClass><name>HLAobjectRoot</name><objectClass><name>BaseEntity</name>"
      "<attribute><name>Something</name></attribute></objectClass></objectClass></objects>");
  std::vector<std::wstring> modules = rprAndOurs();
  modules.push_back(wide(other.path));
  const std::wstring why =
      thrown<InconsistentFDD>([&] { rti_->createFederationExecution(name_, modules); });
  EXPECT_TRUE(says(why, L"HLAobjectRoot.BaseEntity")) << why;
  EXPECT_TRUE(says(why, L"RPR-Base_v2.0.xml")) << why;
  EXPECT_TRUE(says(why, wide(other.path))) << why;
  // Nothing was created.
  EXPECT_TRUE(says(
      thrown<FederationExecutionDoesNotExist>([&] { rti_->joinFederationExecution(L"t", name_); }),
      name_));
  // The same class restated the same way is the same definition, not a conflict.
  TempModule twice(
      "<interactions><interactionClass><name>HLAinteractionRoot</name><interactionClass>"
      "<name>ViewControl</name><transportation>HLAreliable</transportation><order>Receive</order>"
      "<parameter><name>ViewControlPdu</name><dataType>HLAopaqueData</dataType></parameter>"
      "</interactionClass></interactionClass></interactions>");
  EXPECT_NO_THROW(rti_->createFederationExecution(name_, {kOurs, wide(twice.path)}));
}

TEST_F(EvolvedModules, AJoinersModulesMergeIntoTheFederationOrTheJoinIsRefused) {
  rti_->createFederationExecution(name_, std::vector<std::wstring>{kOurs});
  TempModule unknown(
      "<interactions><interactionClass><name>HLAinteractionRoot</name><interactionClass>"
      "<name>Unheard</name></interactionClass></interactionClass></interactions>");
  const std::wstring why = thrown<InconsistentFDD>([&] {
    rti_->joinFederationExecution(L"t", name_, std::vector<std::wstring>{wide(unknown.path)});
  });
  EXPECT_TRUE(says(why, L"HLAinteractionRoot.Unheard")) << why;
  EXPECT_TRUE(says(why, wide(unknown.path))) << why;
  // Refused means not joined; a module the federation has is welcome, and one that defines
  // a class of its own adds it.
  TempModule heard(
      "<interactions><interactionClass><name>HLAinteractionRoot</name><interactionClass>"
      "<name>Heard</name><sharing>PublishSubscribe</sharing></interactionClass>"
      "</interactionClass></interactions>");
  EXPECT_NO_THROW(rti_->joinFederationExecution(
      L"t", name_, std::vector<std::wstring>{kOurs, wide(heard.path)}));
  EXPECT_EQ(rti_->getInteractionClassName(rti_->getInteractionClassHandle(L"Heard")),
            L"HLAinteractionRoot.Heard");
  EXPECT_TRUE(says(thrown<CouldNotOpenFDD>([&] {
                     rti_->createFederationExecution(
                         L"other", std::vector<std::wstring>{L"/nonexistent.xml"});
                   }),
                   L"/nonexistent.xml"));
}

// ------------------------------------------------- Exchange, in-process and through a hub

class EvolvedExchange : public ::testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    std::wstring place = L"thread://";
    if (GetParam()) {
      if (!vctest::hubAvailable()) GTEST_SKIP() << "needs the hub";
      hub_ = vctest::startHub(port_);
      place = L"rti://127.0.0.1:" + std::to_wstring(port_);
    }
    name_ = GetParam() ? L"ExchangeHub" : L"ExchangeLocal";
    try {
      evoked_->connect(a_, HLA_EVOKED, place);
      immediate_->connect(b_, HLA_IMMEDIATE, place);
      evoked_->createFederationExecution(name_, rprAndOurs());
      evoked_->joinFederationExecution(L"evoked", name_);
      immediate_->joinFederationExecution(L"immediate", name_, std::vector<std::wstring>{kOurs});
    } catch (const Exception& e) {
      FAIL() << e.what();
    }
  }
  void TearDown() override {
    for (auto* rti : {immediate_.get(), evoked_.get()}) {
      try {
        rti->resignFederationExecution(DELETE_OBJECTS);
      } catch (const Exception&) {
      }
    }
    try {
      evoked_->destroyFederationExecution(name_);
    } catch (const Exception&) {
    }
  }
  std::unique_ptr<vctest::ChildProcess> hub_;
  std::uint16_t port_ = 0;
  std::wstring name_;
  std::unique_ptr<RTIambassador> evoked_ = ambassador();
  std::unique_ptr<RTIambassador> immediate_ = ambassador();
  Recorder a_, b_;
};

TEST_P(EvolvedExchange, InteractionsAndObjectsArriveByteForByte) {
  const InteractionClassHandle vc = evoked_->getInteractionClassHandle(L"ViewControl");
  const ParameterHandle pdu = evoked_->getParameterHandle(vc, L"ViewControlPdu");
  immediate_->subscribeInteractionClass(vc);
  evoked_->publishInteractionClass(vc);
  ParameterHandleValueMap values;
  const Bytes payload{0x00, 0x01, 0xFE, 0xFF, 0x80, 0x7F, 0x00};
  values[pdu] = VariableLengthData(payload.data(), payload.size());
  const Bytes tag{'t', 0};
  evoked_->sendInteraction(vc, values, VariableLengthData(tag.data(), tag.size()));
  ASSERT_TRUE(b_.await(nullptr, [&] { return !b_.interactions.empty(); }));
  EXPECT_EQ(b_.interactions[0].cls, vc);
  EXPECT_EQ(b_.interactions[0].param, pdu);
  EXPECT_EQ(b_.interactions[0].value, payload);
  EXPECT_EQ(b_.interactions[0].tag, tag);

  // The immediate federate registers; the evoked one discovers it as the class it
  // subscribes to (a superclass), then reflects what it subscribed to only.
  const ObjectClassHandle aircraft = immediate_->getObjectClassHandle(kAircraft);
  const ObjectClassHandle platform = evoked_->getObjectClassHandle(L"Platform");
  const AttributeHandle location = immediate_->getAttributeHandle(aircraft, L"Spatial");
  const AttributeHandle marking = immediate_->getAttributeHandle(aircraft, L"Marking");
  evoked_->subscribeObjectClassAttributes(platform, {location});
  immediate_->publishObjectClassAttributes(aircraft, {location, marking});
  immediate_->reserveObjectInstanceName(L"Plane1");
  // Immediate: the reservation's answer needs no evoke.
  const auto reserved = std::chrono::steady_clock::now();
  ObjectInstanceHandle plane;
  for (;;) {
    try {
      plane = immediate_->registerObjectInstance(aircraft, L"Plane1");
      break;
    } catch (const ObjectInstanceNameNotReserved&) {
      ASSERT_LT(std::chrono::steady_clock::now() - reserved, 10s) << "no reservation answer";
      std::this_thread::sleep_for(5ms);
    }
  }
  AttributeHandleValueMap update;
  const Bytes where(24, 0x42);
  update[location] = VariableLengthData(where.data(), where.size());
  update[marking] = VariableLengthData("xx", 2);
  immediate_->updateAttributeValues(plane, update, VariableLengthData());
  ASSERT_TRUE(a_.await(evoked_.get(), [&] { return !a_.reflected.empty(); }));
  ASSERT_EQ(a_.discovered.size(), 1u);
  EXPECT_EQ(a_.discovered[0].object, plane);
  EXPECT_EQ(a_.discovered[0].cls, platform);
  EXPECT_EQ(a_.discovered[0].name, L"Plane1");
  ASSERT_EQ(a_.reflected.size(), 1u);
  EXPECT_EQ(a_.reflected[0].attribute, location);
  EXPECT_EQ(a_.reflected[0].value, where);
  EXPECT_EQ(evoked_->getObjectInstanceName(plane), L"Plane1");
  EXPECT_EQ(evoked_->getKnownObjectClassHandle(plane), platform);
  EXPECT_THROW(evoked_->updateAttributeValues(plane, update, VariableLengthData()),
               AttributeNotOwned);

  immediate_->deleteObjectInstance(plane, VariableLengthData());
  ASSERT_TRUE(a_.await(evoked_.get(), [&] { return !a_.removed.empty(); }));
  EXPECT_EQ(a_.removed[0], plane);
  EXPECT_THROW(evoked_->getObjectInstanceName(plane), ObjectInstanceNotKnown);
  // Evoking is the evoked federate's way only.
  EXPECT_THROW(immediate_->evokeCallback(0), RTIinternalError);
}

TEST_P(EvolvedExchange, ImmediateCallbacksFollowTheFederateIntoItsNextMembership) {
  immediate_->resignFederationExecution(NO_ACTION);
  immediate_->joinFederationExecution(L"again", name_);
  const InteractionClassHandle vc = immediate_->getInteractionClassHandle(L"ViewControl");
  immediate_->subscribeInteractionClass(vc);
  evoked_->publishInteractionClass(vc);
  ParameterHandleValueMap values;
  values[evoked_->getParameterHandle(vc, L"ViewControlPdu")] = VariableLengthData("ab", 2);
  evoked_->sendInteraction(vc, values, VariableLengthData());
  ASSERT_TRUE(b_.await(nullptr, [&] { return !b_.interactions.empty(); }));
  EXPECT_EQ(b_.interactions[0].value, (Bytes{'a', 'b'}));
}

INSTANTIATE_TEST_SUITE_P(Place, EvolvedExchange, ::testing::Values(false, true),
                         [](const auto& p) { return p.param ? "Hub" : "Local"; });

// ---------------------------------------------------------------------- Handles, time

Bytes octets(std::initializer_list<int> v) {
  Bytes b;
  for (int x : v) b.push_back(static_cast<unsigned char>(x));
  return b;
}

TEST(EvolvedValues, HandlesAndTimesAreEightOctetsMostSignificantFirst) {
  auto rti = ambassador();
  Recorder fed;
  rti->connect(fed, HLA_EVOKED, L"thread://");
  const std::wstring name = testName();
  rti->createFederationExecution(name, kOurs);
  rti->joinFederationExecution(L"t", name);
  const InteractionClassHandle vc = rti->getInteractionClassHandle(L"ViewControl");
  const VariableLengthData encoded = vc.encode();
  ASSERT_EQ(encoded.size(), 8u);
  // After the root and the MIM's ten management classes.
  EXPECT_EQ(bytesOf(encoded), octets({0, 0, 0, 0, 0, 0, 0, 11}));
  EXPECT_EQ(rti->decodeInteractionClassHandle(encoded), vc);
  EXPECT_THROW(rti->decodeInteractionClassHandle(VariableLengthData("1234567", 7)), CouldNotDecode);
  char small[7];
  EXPECT_THROW(vc.encode(small, sizeof small), CouldNotEncode);
  rti->resignFederationExecution(NO_ACTION);
  rti->destroyFederationExecution(name);

  EXPECT_EQ(bytesOf(HLAfloat64Time(1.5).encode()), octets({0x3F, 0xF8, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(bytesOf(HLAinteger64Time(-2).encode()),
            octets({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}));
  EXPECT_EQ(bytesOf(HLAinteger64Interval(0x0102030405060708LL).encode()),
            octets({1, 2, 3, 4, 5, 6, 7, 8}));
  HLAinteger64TimeFactory integers;
  const Bytes t = octets({0, 0, 0, 0, 0, 0, 1, 0});
  EXPECT_EQ(static_cast<HLAinteger64Time&>(
                *integers.decodeLogicalTime(VariableLengthData(t.data(), t.size())))
                .getTime(),
            256);
  EXPECT_THROW(integers.decodeLogicalTime(VariableLengthData(t.data(), 7)), CouldNotDecode);
  HLAinteger64Time last;
  last.setFinal();
  EXPECT_THROW(last += HLAinteger64Interval(1), IllegalTimeArithmetic);
  HLAinteger64Time start(10);
  start += HLAinteger64Interval(5);
  EXPECT_EQ(start.getTime(), 15);
  EXPECT_THROW(HLAfloat64Time(1.0) < HLAinteger64Time(1), InvalidLogicalTime);
  HLAfloat64Interval between;
  between.setToDifference(HLAfloat64Time(4.5), HLAfloat64Time(1.0));
  EXPECT_EQ(between.getInterval(), 3.5);
  EXPECT_EQ(LogicalTimeFactoryFactory::makeLogicalTimeFactory(L"")->getName(), L"HLAfloat64Time");
  EXPECT_EQ(HLAlogicalTimeFactoryFactory::makeLogicalTimeFactory(L"HLAinteger64Time")->getName(),
            L"HLAinteger64Time");
  EXPECT_EQ(HLAlogicalTimeFactoryFactory::makeLogicalTimeFactory(L"Other"), nullptr);
}

}  // namespace
