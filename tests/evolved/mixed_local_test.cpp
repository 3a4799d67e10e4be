// A 1516-2000 and a 1516-2010 federate of one federation on the embedded RTI, in one
// process (thread://) and through a hub: each sees the other's interactions and objects
// byte for byte, whichever of them created the federation from its own object model (the
// 1516-2000 FDD, or the published RPR modules with ours and the MIM).
#include "evolved_peer.h"
#include "process.h"
#include "rti_test_federate.h"

using namespace rti1516;
using namespace rtitest;
using evolvedtest::EvolvedPeer;

namespace {

const std::wstring kFdd = L"" VC_SOURCE_DIR "/share/fom/VistrelControl.xml";
const std::wstring kRpr = L"" VC_SOURCE_DIR "/share/fom/rpr-fom-2.0/";
const std::wstring kOurs = L"" VC_SOURCE_DIR "/share/fom/VistrelControl-1516e.xml";
const wchar_t kAircraft[] = L"HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.Aircraft";

// A 1516-2000 federate that records reflections too.
class ObjectRecorder : public Recorder {
 public:
  void reflectAttributeValues(ObjectInstanceHandle object, AttributeHandleValueMap const& values,
                              VariableLengthData const&, OrderType, TransportationType) override {
    for (const auto& [h, v] : values) reflected.emplace_back(object, bytesOf(v));
  }
  std::vector<std::pair<ObjectInstanceHandle, Bytes>> reflected;
};

struct Mix {
  bool hub;
  bool evolvedCreates;
};

class MixedLocal : public ::testing::TestWithParam<Mix> {
 protected:
  void SetUp() override {
    if (!vctest::hubAvailable()) GTEST_SKIP() << "the embedded RTI's own";
    std::wstring place = L"thread://";
    if (GetParam().hub) {
      hub_ = vctest::startHub(port_);
      place = L"rti://127.0.0.1:" + std::to_wstring(port_);
    }
    const std::wstring name = wide(testName());
    url_ = GetParam().hub ? place + L"/" + name : place + name;
    evolved_ = std::make_unique<EvolvedPeer>(place);
    if (GetParam().evolvedCreates) {
      evolved_->create(name,
                       {kRpr + L"RPR-Foundation_v2.0.xml", kRpr + L"RPR-Enumerations_v2.0.xml",
                        kRpr + L"RPR-Base_v2.0.xml", kRpr + L"RPR-Physical_v2.0.xml", kOurs});
      evolved_->join(name, std::vector<std::wstring>{});
      classic_->joinFederationExecution(L"classic", url_, rec_);
    } else {
      classic_->createFederationExecution(url_, kFdd);
      classic_->joinFederationExecution(L"classic", url_, rec_);
      evolved_->join(name, {kOurs});
    }
  }
  void TearDown() override {
    evolved_.reset();
    try {
      classic_->resignFederationExecution(DELETE_OBJECTS);
      classic_->destroyFederationExecution(url_);
    } catch (const Exception&) {
    }
  }
  std::unique_ptr<vctest::ChildProcess> hub_;
  std::uint16_t port_ = 0;
  std::wstring url_;
  std::unique_ptr<RTIambassador> classic_ = makeAmbassador();
  ObjectRecorder rec_;
  std::unique_ptr<EvolvedPeer> evolved_;
};

TEST_P(MixedLocal, EachSeesTheOthersInteractionsAndObjects) {
  const InteractionClassHandle vc = classic_->getInteractionClassHandle(L"ViewControl");
  const ParameterHandle pdu = classic_->getParameterHandle(vc, L"ViewControlPdu");
  classic_->subscribeInteractionClass(vc, true);
  evolved_->subscribeInteraction(L"ViewControl");
  const Bytes fromEvolved{0x10, 0x00, 0xFF, 0x7F};
  evolved_->publishAndSend(L"ViewControl", L"ViewControlPdu", fromEvolved);
  ASSERT_TRUE(pumpUntil(*classic_, rec_, 1));
  EXPECT_EQ(rec_.got[0].cls, vc);
  EXPECT_EQ(rec_.got[0].params[pdu], fromEvolved);

  classic_->publishInteractionClass(vc);
  ParameterHandleValueMap values;
  const Bytes fromClassic{0xAB, 0x00, 0x01};
  values[pdu] = data(fromClassic);
  classic_->sendInteraction(vc, values, VariableLengthData());
  Bytes got;
  ASSERT_TRUE(evolved_->awaitInteraction(L"ViewControlPdu", got));
  EXPECT_EQ(got, fromClassic);

  // Objects: the 2010 federate registers an aircraft that the 2000 one follows.
  const ObjectClassHandle aircraft = classic_->getObjectClassHandle(kAircraft);
  AttributeHandleSet wanted{classic_->getAttributeHandle(aircraft, L"Spatial")};
  classic_->subscribeObjectClassAttributes(aircraft, wanted, true);
  const Bytes where(24, 0x3C);
  evolved_->registerAndUpdate(kAircraft, L"Plane", L"Spatial", where);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (rec_.reflected.empty() && std::chrono::steady_clock::now() < end)
    classic_->evokeMultipleCallbacks(0.01, 0.05);
  ASSERT_EQ(rec_.reflected.size(), 1u);
  EXPECT_EQ(classic_->getObjectInstanceName(rec_.reflected[0].first), L"Plane");
  EXPECT_EQ(rec_.reflected[0].second, where);

  // And the other way round.
  evolved_->subscribeObjects(L"Aircraft", L"Spatial");
  classic_->publishObjectClassAttributes(aircraft, wanted);
  const ObjectInstanceHandle mine = classic_->registerObjectInstance(aircraft);
  AttributeHandleValueMap update;
  const Bytes there(24, 0x5A);
  update[*wanted.begin()] = data(there);
  classic_->updateAttributeValues(mine, update, VariableLengthData());
  std::wstring name;
  ASSERT_TRUE(evolved_->awaitReflection(name, got));
  EXPECT_EQ(name, classic_->getObjectInstanceName(mine));
  EXPECT_EQ(got, there);
}

INSTANTIATE_TEST_SUITE_P(Place, MixedLocal,
                         ::testing::Values(Mix{false, false}, Mix{false, true}, Mix{true, false},
                                           Mix{true, true}),
                         [](const auto& p) {
                           return std::string(p.param.hub ? "Hub" : "Local") +
                                  (p.param.evolvedCreates ? "Created1516e" : "Created1516");
                         });

}  // namespace
