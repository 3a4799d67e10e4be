// The embedded RTI inside one process (thread:// federations): delivery byte for byte and
// in order, the HLA delivery rules, class inheritance, callbacks only inside evoke, and
// the exceptions for misuse.
#include "rti_test_federate.h"

#include <atomic>
#include <deque>
#include <thread>

using namespace rti1516;
using namespace rtitest;

namespace {

bool embeddedRti() {
  return ::access((std::string(VC_BINARY_DIR) + "/bin/rtihub").c_str(), X_OK) == 0;
}

// Two or more federates joined to one thread:// federation made from `fom`.
class LocalFederation : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!embeddedRti()) GTEST_SKIP() << "thread:// federations are this RTI's own";
    url_ = L"thread://" + wide(testName());
  }
  void TearDown() override {
    for (auto& f : feds_)
      if (f.rti) {
        try {
          f.rti->resignFederationExecution(NO_ACTION);
        } catch (const Exception&) {
        }
      }
    feds_.clear();
    if (created_) {
      auto rti = makeAmbassador();
      EXPECT_NO_THROW(rti->destroyFederationExecution(url_));
    }
  }

  struct Fed {
    std::unique_ptr<RTIambassador> rti;
    std::unique_ptr<Recorder> rec;
  };

  void create(const std::wstring& fdd) {
    auto rti = makeAmbassador();
    rti->createFederationExecution(url_, fdd);
    created_ = true;
  }

  Fed& join() {
    Fed f{makeAmbassador(), std::make_unique<Recorder>()};
    f.rti->joinFederationExecution(L"test", url_, *f.rec);
    feds_.push_back(std::move(f));
    return feds_.back();
  }

  std::wstring url_;
  bool created_ = false;
  std::deque<Fed> feds_;
};

// ---------------------------------------------------------------- Product FOM, delivery

class ViewControlFederation : public LocalFederation {
 protected:
  void SetUp() override {
    LocalFederation::SetUp();
    if (IsSkipped()) return;
    create(wide(VC_FDD_FILE));
    sender_ = &join();
    receiver_ = &join();
    cls_ = sender_->rti->getInteractionClassHandle(L"ViewControl");
    pdu_ = sender_->rti->getParameterHandle(cls_, L"ViewControlPdu");
    sender_->rti->publishInteractionClass(cls_);
    receiver_->rti->subscribeInteractionClass(cls_);
  }

  void send(const Bytes& payload, const Bytes& tag) {
    ParameterHandleValueMap values;
    values[pdu_] = data(payload);
    sender_->rti->sendInteraction(cls_, values, data(tag));
  }

  Fed* sender_ = nullptr;
  Fed* receiver_ = nullptr;
  InteractionClassHandle cls_;
  ParameterHandle pdu_;
};

TEST_F(ViewControlFederation, DeliversPayloadAndTagByteForByteOnlyInsideEvoke) {
  const Bytes payload = pattern(312, 1);
  const Bytes tag = {0x00, 0xFF, 0x10, 0x00};
  send(payload, tag);

  // Nothing arrives behind the federate's back, however long it waits.
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_TRUE(receiver_->rec->got.empty());

  EXPECT_FALSE(receiver_->rti->evokeCallback(1.0));
  ASSERT_EQ(receiver_->rec->got.size(), 1u);
  const Received& r = receiver_->rec->got[0];
  EXPECT_EQ(r.cls, cls_);
  ASSERT_EQ(r.params.size(), 1u);
  EXPECT_EQ(r.params.at(pdu_), payload);
  EXPECT_EQ(r.tag, tag);
  EXPECT_EQ(r.order, RECEIVE);
  EXPECT_EQ(r.transport, RELIABLE);
}

TEST_F(ViewControlFederation, KeepsOrderAndBytesOverManyInteractionsOfEverySize) {
  const unsigned n = 20000;
  for (unsigned i = 0; i < n; ++i) send(pattern(i % 1500, i), pattern(i % 7, i + 1));
  ASSERT_TRUE(pumpUntil(*receiver_->rti, *receiver_->rec, n));
  for (unsigned i = 0; i < n; ++i) {
    const Received& r = receiver_->rec->got[i];
    ASSERT_EQ(r.params.at(pdu_), pattern(i % 1500, i)) << "interaction " << i;
    ASSERT_EQ(r.tag, pattern(i % 7, i + 1)) << "interaction " << i;
  }
  receiver_->rti->evokeMultipleCallbacks(0.01, 0.01);
  EXPECT_EQ(receiver_->rec->got.size(), n);
}

TEST_F(ViewControlFederation, SendsAnInteractionWithoutParametersOrTag) {
  sender_->rti->sendInteraction(cls_, ParameterHandleValueMap(), VariableLengthData());
  ASSERT_TRUE(pumpUntil(*receiver_->rti, *receiver_->rec, 1));
  EXPECT_TRUE(receiver_->rec->got[0].params.empty());
  EXPECT_TRUE(receiver_->rec->got[0].tag.empty());
}

TEST_F(ViewControlFederation, SenderDoesNotHearItselfButEveryOtherSubscriberDoes) {
  sender_->rti->subscribeInteractionClass(cls_);
  Fed& third = join();
  third.rti->subscribeInteractionClass(cls_);
  Fed& deaf = join();  // joined, not subscribed
  send(pattern(10, 3), {});

  ASSERT_TRUE(pumpUntil(*receiver_->rti, *receiver_->rec, 1));
  ASSERT_TRUE(pumpUntil(*third.rti, *third.rec, 1));
  sender_->rti->evokeMultipleCallbacks(0.05, 0.05);
  deaf.rti->evokeMultipleCallbacks(0.05, 0.05);
  EXPECT_TRUE(sender_->rec->got.empty());
  EXPECT_TRUE(deaf.rec->got.empty());
  EXPECT_EQ(third.rec->got[0].params.at(pdu_), pattern(10, 3));
}

TEST_F(ViewControlFederation, EvokeCallbackDeliversOneAtATimeAndReportsWhatIsLeft) {
  for (unsigned i = 0; i < 3; ++i) send(pattern(4, i), {});
  EXPECT_TRUE(receiver_->rti->evokeCallback(0.5));
  EXPECT_EQ(receiver_->rec->got.size(), 1u);
  EXPECT_TRUE(receiver_->rti->evokeCallback(0.5));
  EXPECT_FALSE(receiver_->rti->evokeCallback(0.5));
  ASSERT_EQ(receiver_->rec->got.size(), 3u);
  EXPECT_EQ(receiver_->rec->got[2].params.at(pdu_), pattern(4, 2));
  // Nothing left: waits about the minimum time and returns.
  const auto t0 = std::chrono::steady_clock::now();
  EXPECT_FALSE(receiver_->rti->evokeCallback(0.05));
  EXPECT_GE(std::chrono::steady_clock::now() - t0, std::chrono::milliseconds(40));
}

TEST_F(ViewControlFederation, DisabledCallbacksHoldInteractionsUntilEnabled) {
  receiver_->rti->disableCallbacks();
  send(pattern(8, 8), {});
  receiver_->rti->evokeMultipleCallbacks(0.02, 0.02);
  EXPECT_TRUE(receiver_->rec->got.empty());
  receiver_->rti->enableCallbacks();
  EXPECT_TRUE(pumpUntil(*receiver_->rti, *receiver_->rec, 1));
}

TEST_F(ViewControlFederation, WaitingEvokeWakesWhenAnotherThreadSends) {
  std::thread sender([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    send(pattern(5, 5), {});
  });
  const auto t0 = std::chrono::steady_clock::now();
  receiver_->rti->evokeCallback(5.0);
  const auto waited = std::chrono::steady_clock::now() - t0;
  sender.join();
  ASSERT_EQ(receiver_->rec->got.size(), 1u);
  EXPECT_LT(waited, std::chrono::seconds(2));
}

TEST_F(ViewControlFederation, ConcurrentSenderThreadLosesAndReordersNothing) {
  const unsigned n = 50000;
  std::thread sender([&] {
    for (unsigned i = 0; i < n; ++i) send(pattern(64, i), {});
  });
  const bool all = pumpUntil(*receiver_->rti, *receiver_->rec, n, std::chrono::seconds(30));
  sender.join();
  ASSERT_TRUE(all) << receiver_->rec->got.size();
  for (unsigned i = 0; i < n; ++i)
    ASSERT_EQ(receiver_->rec->got[i].params.at(pdu_), pattern(64, i)) << i;
}

TEST_F(ViewControlFederation, UnsubscribedFederateReceivesNothingMore) {
  send(pattern(4, 1), {});
  ASSERT_TRUE(pumpUntil(*receiver_->rti, *receiver_->rec, 1));
  receiver_->rti->unsubscribeInteractionClass(cls_);
  send(pattern(4, 2), {});
  receiver_->rti->evokeMultipleCallbacks(0.05, 0.05);
  EXPECT_EQ(receiver_->rec->got.size(), 1u);
  receiver_->rti->subscribeInteractionClass(cls_);
  send(pattern(4, 3), {});
  ASSERT_TRUE(pumpUntil(*receiver_->rti, *receiver_->rec, 2));
  EXPECT_EQ(receiver_->rec->got[1].params.at(pdu_), pattern(4, 3));
}

TEST_F(ViewControlFederation, CallbackMayResignAndLaterInteractionsAreDropped) {
  for (unsigned i = 0; i < 5; ++i) send(pattern(4, i), {});
  RTIambassador* rti = receiver_->rti.get();
  receiver_->rec->onReceive = [rti](const Received&) { rti->resignFederationExecution(NO_ACTION); };
  receiver_->rti->evokeMultipleCallbacks(0.0, 0.5);
  EXPECT_EQ(receiver_->rec->got.size(), 1u);
  EXPECT_THROW(receiver_->rti->evokeCallback(0.0), FederateNotExecutionMember);
  receiver_->rti.reset();
}

TEST_F(ViewControlFederation, EvokeFromInsideACallbackIsRefused) {
  send(pattern(4, 1), {});
  RTIambassador* rti = receiver_->rti.get();
  bool refused = false;
  receiver_->rec->onReceive = [&](const Received&) {
    try {
      rti->evokeCallback(0.0);
    } catch (const RTIinternalError&) {
      refused = true;
    }
  };
  ASSERT_TRUE(pumpUntil(*receiver_->rti, *receiver_->rec, 1));
  EXPECT_TRUE(refused);
}

// --------------------------------------------------------------------- Class inheritance

class HierarchyFederation : public LocalFederation {
 protected:
  void SetUp() override {
    LocalFederation::SetUp();
    if (IsSkipped()) return;
    fom_ = std::make_unique<TempFile>("hierarchy", hierarchyFom());
    create(fom_->wpath());
    a_ = &join();
    b_ = &join();
    RTIambassador& r = *a_->rti;
    base_ = r.getInteractionClassHandle(L"Base");
    derived_ = r.getInteractionClassHandle(L"HLAinteractionRoot.Base.Derived");
    leaf_ = r.getInteractionClassHandle(L"Leaf");
    other_ = r.getInteractionClassHandle(L"Other");
    p1_ = r.getParameterHandle(base_, L"p1");
    p2_ = r.getParameterHandle(derived_, L"p2");
    p3_ = r.getParameterHandle(leaf_, L"p3");
    for (auto c : {base_, derived_, leaf_, other_}) r.publishInteractionClass(c);
  }

  void sendLeaf() {
    ParameterHandleValueMap v;
    v[p1_] = data({1});
    v[p2_] = data({2, 2});
    v[p3_] = data({3, 3, 3});
    a_->rti->sendInteraction(leaf_, v, data({9}));
  }

  std::unique_ptr<TempFile> fom_;
  Fed* a_ = nullptr;
  Fed* b_ = nullptr;
  InteractionClassHandle base_, derived_, leaf_, other_;
  ParameterHandle p1_, p2_, p3_;
};

TEST_F(HierarchyFederation, NamesResolveShortQualifiedAndWithoutRoot) {
  RTIambassador& r = *b_->rti;
  EXPECT_EQ(r.getInteractionClassHandle(L"Derived"), derived_);
  EXPECT_EQ(r.getInteractionClassHandle(L"Base.Derived"), derived_);
  EXPECT_EQ(r.getInteractionClassHandle(L"HLAinteractionRoot.Base.Derived.Leaf"), leaf_);
  EXPECT_EQ(r.getInteractionClassName(leaf_), L"HLAinteractionRoot.Base.Derived.Leaf");
  EXPECT_THROW(r.getInteractionClassHandle(L"Derived.Base"), NameNotFound);
  EXPECT_THROW(r.getInteractionClassHandle(L"base"), NameNotFound);
  // An inherited parameter is the same parameter in every subclass.
  EXPECT_EQ(r.getParameterHandle(leaf_, L"p1"), p1_);
  EXPECT_EQ(r.getParameterName(leaf_, p1_), L"p1");
  EXPECT_THROW(r.getParameterHandle(base_, L"p2"), NameNotFound);
  EXPECT_THROW(r.getParameterName(base_, p3_), InteractionParameterNotDefined);
  EXPECT_THROW(r.getParameterHandle(other_, L"p1"), NameNotFound);
}

TEST_F(HierarchyFederation, SubscriberOfAnAncestorReceivesAsThatClassWithItsParametersOnly) {
  b_->rti->subscribeInteractionClass(base_);
  sendLeaf();
  ASSERT_TRUE(pumpUntil(*b_->rti, *b_->rec, 1));
  const Received& r = b_->rec->got[0];
  EXPECT_EQ(r.cls, base_);
  ASSERT_EQ(r.params.size(), 1u);
  EXPECT_EQ(r.params.at(p1_), Bytes{1});
  EXPECT_EQ(r.tag, Bytes{9});
}

TEST_F(HierarchyFederation, NearestSubscribedClassWinsAndEachInteractionArrivesOnce) {
  b_->rti->subscribeInteractionClass(base_);
  b_->rti->subscribeInteractionClass(derived_);
  sendLeaf();
  ParameterHandleValueMap v;
  v[p1_] = data({7});
  a_->rti->sendInteraction(base_, v, VariableLengthData());
  ASSERT_TRUE(pumpUntil(*b_->rti, *b_->rec, 2));
  b_->rti->evokeMultipleCallbacks(0.05, 0.05);
  ASSERT_EQ(b_->rec->got.size(), 2u);
  EXPECT_EQ(b_->rec->got[0].cls, derived_);
  EXPECT_EQ(b_->rec->got[0].params.size(), 2u);
  EXPECT_EQ(b_->rec->got[0].params.at(p2_), (Bytes{2, 2}));
  EXPECT_EQ(b_->rec->got[1].cls, base_);
  EXPECT_EQ(b_->rec->got[1].params.at(p1_), Bytes{7});
}

TEST_F(HierarchyFederation, SubclassSubscriberDoesNotReceiveTheParentOrASibling) {
  b_->rti->subscribeInteractionClass(leaf_);
  ParameterHandleValueMap v;
  v[p1_] = data({1});
  a_->rti->sendInteraction(base_, v, VariableLengthData());
  a_->rti->sendInteraction(other_, ParameterHandleValueMap(), VariableLengthData());
  b_->rti->evokeMultipleCallbacks(0.05, 0.05);
  EXPECT_TRUE(b_->rec->got.empty());
}

// Who receives a class is worked out once and kept until a subscription changes anywhere
// in the federation: each change below must show in the very next send, and a federate
// that resigns while it is among the kept receivers must not be sent to afterwards.
TEST_F(HierarchyFederation, ReceiversFollowEverySubscriptionChangeBetweenSends) {
  Fed& c = join();
  std::vector<InteractionClassHandle> got;  // b's classes, then c's, per step
  auto step = [&](const char* what) {
    sendLeaf();
    // A marker that everyone subscribed at the root's child Other receives tells when
    // the leaf, if it was delivered, has been delivered too.
    a_->rti->sendInteraction(other_, ParameterHandleValueMap(), VariableLengthData());
    got.clear();
    for (Fed* f : {b_, &c}) {
      f->rec->got.clear();
      EXPECT_TRUE(pumpUntil(*f->rti, *f->rec, 1)) << what;
      f->rti->evokeMultipleCallbacks(0.0, 0.0);
      ASSERT_FALSE(f->rec->got.empty()) << what;
      EXPECT_EQ(f->rec->got.back().cls, other_) << what;
      EXPECT_LE(f->rec->got.size(), 2u) << what << ": a leaf arrived more than once";
      got.push_back(f->rec->got.size() == 2 ? f->rec->got[0].cls : InteractionClassHandle());
    }
  };
  const InteractionClassHandle none;
  b_->rti->subscribeInteractionClass(other_);
  c.rti->subscribeInteractionClass(other_);
  step("nobody subscribed");
  EXPECT_EQ(got, (std::vector<InteractionClassHandle>{none, none}));
  b_->rti->subscribeInteractionClass(base_);
  step("b at Base");
  EXPECT_EQ(got, (std::vector<InteractionClassHandle>{base_, none}));
  b_->rti->subscribeInteractionClass(derived_);
  c.rti->subscribeInteractionClass(leaf_);
  step("b at Base and Derived, c at Leaf");
  EXPECT_EQ(got, (std::vector<InteractionClassHandle>{derived_, leaf_}));
  b_->rti->unsubscribeInteractionClass(derived_);
  step("b back at Base only");
  EXPECT_EQ(got, (std::vector<InteractionClassHandle>{base_, leaf_}));
  c.rti->subscribeInteractionClass(base_);
  c.rti->unsubscribeInteractionClass(leaf_);
  step("c moved up to Base");
  EXPECT_EQ(got, (std::vector<InteractionClassHandle>{base_, base_}));
  b_->rti->unsubscribeInteractionClass(base_);
  step("b gone from Base");
  EXPECT_EQ(got, (std::vector<InteractionClassHandle>{none, base_}));

  // A federate among the kept receivers of the leaf resigns; the next sends reach the
  // others only, and one joining in its place starts with nothing.
  b_->rti->subscribeInteractionClass(leaf_);
  step("both at the leaf's line");
  EXPECT_EQ(got, (std::vector<InteractionClassHandle>{leaf_, base_}));
  c.rti->resignFederationExecution(NO_ACTION);
  c.rti.reset();
  Fed& d = join();
  d.rti->subscribeInteractionClass(other_);
  sendLeaf();
  a_->rti->sendInteraction(other_, ParameterHandleValueMap(), VariableLengthData());
  b_->rec->got.clear();
  ASSERT_TRUE(pumpUntil(*b_->rti, *b_->rec, 2));
  EXPECT_EQ(b_->rec->got[0].cls, leaf_);
  ASSERT_TRUE(pumpUntil(*d.rti, *d.rec, 1));
  d.rti->evokeMultipleCallbacks(0.0, 0.0);
  ASSERT_EQ(d.rec->got.size(), 1u);
  EXPECT_EQ(d.rec->got[0].cls, other_);
}

TEST_F(HierarchyFederation, SendRejectsParametersTheClassDoesNotHave) {
  ParameterHandleValueMap v;
  v[p3_] = data({3});
  EXPECT_THROW(a_->rti->sendInteraction(derived_, v, VariableLengthData()),
               InteractionParameterNotDefined);
  ParameterHandleValueMap bogus;
  bogus[ParameterHandle()] = data({1});
  EXPECT_THROW(a_->rti->sendInteraction(base_, bogus, VariableLengthData()),
               InteractionParameterNotDefined);
}

// --------------------------------------------------------------------------------- Misuse

TEST_F(LocalFederation, ServicesNeedAJoinedFederate) {
  auto rti = makeAmbassador();
  EXPECT_THROW(rti->getInteractionClassHandle(L"ViewControl"), FederateNotExecutionMember);
  EXPECT_THROW(rti->publishInteractionClass(InteractionClassHandle()), FederateNotExecutionMember);
  EXPECT_THROW(rti->sendInteraction(InteractionClassHandle(), {}, {}), FederateNotExecutionMember);
  EXPECT_THROW(rti->evokeCallback(0.0), FederateNotExecutionMember);
  EXPECT_THROW(rti->resignFederationExecution(NO_ACTION), FederateNotExecutionMember);
}

TEST_F(LocalFederation, FederationLifecycleErrors) {
  Recorder rec;
  auto rti = makeAmbassador();
  EXPECT_THROW(rti->joinFederationExecution(L"t", url_, rec), FederationExecutionDoesNotExist);
  EXPECT_THROW(rti->destroyFederationExecution(url_), FederationExecutionDoesNotExist);
  // A time representation the time library does not have creates nothing; its own does.
  EXPECT_THROW(rti->createFederationExecution(url_, wide(VC_FDD_FILE), L"HLAinteger64Time"),
               CouldNotCreateLogicalTimeFactory);
  EXPECT_THROW(rti->joinFederationExecution(L"t", url_, rec), FederationExecutionDoesNotExist);
  rti->createFederationExecution(url_, wide(VC_FDD_FILE), L"HLAfloat64Time");
  rti->destroyFederationExecution(url_);
  create(wide(VC_FDD_FILE));
  EXPECT_THROW(rti->createFederationExecution(url_, wide(VC_FDD_FILE)),
               FederationExecutionAlreadyExists);
  rti->joinFederationExecution(L"t", url_, rec);
  EXPECT_THROW(rti->joinFederationExecution(L"t", url_, rec), FederateAlreadyExecutionMember);
  EXPECT_THROW(makeAmbassador()->destroyFederationExecution(url_), FederatesCurrentlyJoined);
  rti->resignFederationExecution(NO_ACTION);
  // Rejoining after resigning is a fresh membership.
  rti->joinFederationExecution(L"t", url_, rec);
  rti->resignFederationExecution(NO_ACTION);
}

TEST_F(LocalFederation, MisusedHandlesAndNamesGiveTheirOwnExceptions) {
  create(wide(VC_FDD_FILE));
  Fed& f = join();
  RTIambassador& r = *f.rti;
  const InteractionClassHandle cls = r.getInteractionClassHandle(L"ViewControl");
  EXPECT_THROW(r.getInteractionClassHandle(L"NoSuchClass"), NameNotFound);
  EXPECT_THROW(r.getParameterHandle(cls, L"NoSuchParameter"), NameNotFound);
  EXPECT_THROW(r.getInteractionClassName(InteractionClassHandle()), InvalidInteractionClassHandle);
  EXPECT_THROW(r.publishInteractionClass(InteractionClassHandle()), InteractionClassNotDefined);
  EXPECT_THROW(r.subscribeInteractionClass(InteractionClassHandle()), InteractionClassNotDefined);
  EXPECT_THROW(r.sendInteraction(cls, {}, {}), InteractionClassNotPublished);
  EXPECT_THROW(r.unpublishInteractionClass(cls), InteractionClassNotPublished);
  r.publishInteractionClass(cls);
  r.unpublishInteractionClass(cls);
  EXPECT_THROW(r.sendInteraction(cls, {}, {}), InteractionClassNotPublished);
}

TEST_F(LocalFederation, ExceptionsCarryTheirReasonThroughTheBaseClass) {
  create(wide(VC_FDD_FILE));
  Fed& f = join();
  try {
    f.rti->getInteractionClassHandle(L"Nope");
    FAIL() << "no exception";
  } catch (const Exception& e) {
    EXPECT_NE(e.what().find(L"Nope"), std::wstring::npos) << narrow(e.what());
  }
  try {
    f.rti->enableAsynchronousDelivery();
    FAIL() << "no exception";
  } catch (const RTIinternalError& e) {
    EXPECT_EQ(e.what(), L"enableAsynchronousDelivery is not supported by this RTI");
  }
}

TEST_F(LocalFederation, MalformedFederationNamesAreRefused) {
  auto rti = makeAmbassador();
  for (const wchar_t* name : {L"thread://", L"tcp://host/Fed", L"rti://127.0.0.1:99999/Fed",
                              L"rti://127.0.0.1:1", L"rti://:15160/Fed", L"thread://a/b"}) {
    EXPECT_THROW(rti->createFederationExecution(name, wide(VC_FDD_FILE)), RTIinternalError)
        << narrow(name);
  }
}

TEST_F(LocalFederation, HandlesEncodeAsEightBigEndianBytesAndDecodeBack) {
  create(wide(VC_FDD_FILE));
  Fed& f = join();
  const InteractionClassHandle cls = f.rti->getInteractionClassHandle(L"ViewControl");
  const VariableLengthData enc = cls.encode();
  ASSERT_EQ(enc.size(), 8u);
  EXPECT_EQ(bytesOf(enc), (Bytes{0, 0, 0, 0, 0, 0, 0, 1}));  // class 0 is the root
  EXPECT_EQ(f.rti->decodeInteractionClassHandle(enc), cls);
  EXPECT_THROW(f.rti->decodeParameterHandle(data({1, 2, 3})), CouldNotDecode);
  EXPECT_FALSE(InteractionClassHandle().isValid());
  EXPECT_NE(cls.toString(), InteractionClassHandle().toString());
}

// ------------------------------------------------------------------- VariableLengthData

TEST(VariableLengthData, CopiesOwnTheirBytesWhateverTheSourceDid) {
  Bytes b = pattern(100, 4);
  VariableLengthData borrowed;
  borrowed.setDataPointer(b.data(), 100);
  EXPECT_EQ(borrowed.data(), b.data());
  VariableLengthData copy(borrowed);
  VariableLengthData assigned;
  assigned = borrowed;
  b.assign(100, 0);  // the borrowed bytes change; the copies must not
  EXPECT_EQ(bytesOf(copy), pattern(100, 4));
  EXPECT_EQ(bytesOf(assigned), pattern(100, 4));
  EXPECT_EQ(bytesOf(borrowed), Bytes(100, 0));
}

TEST(VariableLengthData, SetDataFromItsOwnBytesAndTakeOwnership) {
  const Bytes source = pattern(64, 2);
  VariableLengthData v(source.data(), 64);
  v.setData(static_cast<const unsigned char*>(v.data()) + 16, 32);
  EXPECT_EQ(bytesOf(v), Bytes(source.begin() + 16, source.begin() + 48));
  v.setData(nullptr, 0);
  EXPECT_EQ(v.size(), 0u);
  char* owned = new char[3]{'a', 'b', 'c'};
  v.takeDataPointer(owned, 3);
  VariableLengthData moved(std::move(v));
  EXPECT_EQ(moved.size(), 3u);
  EXPECT_EQ(v.size(), 0u);  // NOLINT(bugprone-use-after-move): a moved-from value is left empty
}

}  // namespace
