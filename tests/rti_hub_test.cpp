// The hub and federates in separate processes: delivery byte for byte in both directions,
// inheritance across the hub, federation state shared between processes, and the hub's
// robustness: a federate killed mid-stream, garbage and oversized frames, a subscriber
// that stops reading, and a clean stop.
#include "rti_hub_fixture.h"

#include <csignal>
#include <cstring>
#include <deque>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

using namespace rti1516;
using namespace rtitest;
using std::chrono::milliseconds;
using std::chrono::seconds;
using vctest::ChildProcess;

namespace {

bool hubBuilt() {
  return vctest::hubAvailable();
}

// A raw TCP client, for speaking to the hub outside the protocol.
class Hub : public HubTest {
 protected:
  std::vector<std::string> hubArgs() const override { return {"--quiet"}; }
};

// ------------------------------------------------------------------------------ Delivery

TEST_F(Hub, TwoFederatesOfOneProcessExchangeThroughTheHubInOrder) {
  Fed& a = join();
  Fed& b = join();
  const unsigned n = 5000;
  for (unsigned i = 0; i < n; ++i) a.send(pattern(i % 700, i), pattern(i % 5, i));
  ASSERT_TRUE(pumpUntil(*b.rti, *b.rec, n));
  for (unsigned i = 0; i < n; ++i) {
    ASSERT_EQ(b.payload(i), pattern(i % 700, i)) << i;
    ASSERT_EQ(b.rec->got[i].tag, pattern(i % 5, i)) << i;
  }
  a.rti->evokeMultipleCallbacks(0.05, 0.05);
  EXPECT_TRUE(a.rec->got.empty()) << "a federate heard itself";
}

TEST_F(Hub, AnotherProcessEchoesEveryInteractionByteForByte) {
  auto echo = peer({"echo"});
  Fed& me = join();
  std::vector<Bytes> sent;
  for (unsigned i = 0; i < 2000; ++i) sent.push_back(pattern(i * 37 % 4000, i));
  sent.push_back(pattern(300000, 99));  // one large value, many TCP segments
  sent.push_back({});
  for (std::size_t i = 0; i < sent.size(); ++i) me.send(sent[i], pattern(i % 3, i));
  ASSERT_TRUE(pumpUntil(*me.rti, *me.rec, sent.size(), seconds(20))) << me.rec->got.size();
  for (std::size_t i = 0; i < sent.size(); ++i) {
    ASSERT_EQ(me.payload(i), sent[i]) << i;
    ASSERT_EQ(me.rec->got[i].tag, pattern(i % 3, i)) << i;
  }
  echo->closeStdin();
  EXPECT_EQ(echo->wait(seconds(10)), 0) << echo->transcript();
}

TEST_F(Hub, StreamsBetweenProcessesInBothDirectionsLoseNothing) {
  const std::uint32_t n = 50000;
  Fed& me = join();
  {
    auto counter = peer({"count", std::to_string(n)});
    for (std::uint32_t i = 0; i < n; ++i) me.send(numbered(i, 312));
    me.rti->evokeCallback(0.0);  // flushes what is batched
    std::string line;
    ASSERT_TRUE(counter->waitForLine("received", line, seconds(30))) << counter->transcript();
    EXPECT_EQ(line, "received " + std::to_string(n) + " ok");
    EXPECT_EQ(counter->wait(seconds(10)), 0);
  }
  auto sender = peer({"send", std::to_string(n), "312"});
  sender->writeLine("go");
  ASSERT_TRUE(pumpUntil(*me.rti, *me.rec, n, seconds(30))) << me.rec->got.size();
  for (std::uint32_t i = 0; i < n; ++i) ASSERT_EQ(me.payload(i), numbered(i, 312)) << i;
  EXPECT_EQ(sender->wait(seconds(10)), 0) << sender->transcript();
}

TEST_F(Hub, SendingWhileAnotherThreadWaitsInEvokeIsNotHeldUp) {
  Fed& a = join();
  Fed& b = join();
  std::thread waiter([&] { a.rti->evokeCallback(2.0); });  // nothing will come for a
  std::this_thread::sleep_for(milliseconds(100));
  const auto t0 = std::chrono::steady_clock::now();
  a.send(numbered(0, 312));
  const bool arrived = pumpUntil(*b.rti, *b.rec, 1);
  const auto took = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - t0);
  waiter.join();
  ASSERT_TRUE(arrived);
  EXPECT_LT(took.count(), 1000) << "ms for one interaction";
}

TEST_F(Hub, ParentSubscriberReceivesTheSubclassFromAnotherConnection) {
  TempFile fom("hierarchy", hierarchyFom());
  const std::wstring url = wide(vctest::hubUrl(port_, name_ + "_tree"));
  auto creator = makeAmbassador();
  creator->createFederationExecution(url, fom.wpath());
  Recorder ra, rb;
  auto a = makeAmbassador(), b = makeAmbassador();
  a->joinFederationExecution(L"a", url, ra);
  b->joinFederationExecution(L"b", url, rb);
  // Handles agree between connections: they come from the model the hub hands out.
  const InteractionClassHandle leaf = a->getInteractionClassHandle(L"Leaf");
  EXPECT_EQ(b->getInteractionClassHandle(L"HLAinteractionRoot.Base.Derived.Leaf"), leaf);
  const InteractionClassHandle base = b->getInteractionClassHandle(L"Base");
  a->publishInteractionClass(leaf);
  b->subscribeInteractionClass(base);
  ParameterHandleValueMap v;
  v[a->getParameterHandle(leaf, L"p1")] = data({1, 1});
  v[a->getParameterHandle(leaf, L"p3")] = data({3});
  a->sendInteraction(leaf, v, data({7}));
  ASSERT_TRUE(pumpUntil(*b, rb, 1));
  EXPECT_EQ(rb.got[0].cls, base);
  ASSERT_EQ(rb.got[0].params.size(), 1u);
  EXPECT_EQ(rb.got[0].params.at(b->getParameterHandle(base, L"p1")), (Bytes{1, 1}));
  a->resignFederationExecution(NO_ACTION);
  b->resignFederationExecution(NO_ACTION);
  creator->destroyFederationExecution(url);
}

// ---------------------------------------------------------------------- Federation state

TEST_F(Hub, FederationStateIsSharedBetweenProcesses) {
  auto rti = makeAmbassador();
  EXPECT_THROW(rti->createFederationExecution(url_, wide(VC_FDD_FILE)),
               FederationExecutionAlreadyExists);
  {
    auto echo = peer({"echo"});
    EXPECT_THROW(rti->destroyFederationExecution(url_), FederatesCurrentlyJoined);
    echo->closeStdin();
    ASSERT_EQ(echo->wait(seconds(10)), 0);
  }
  rti->destroyFederationExecution(url_);
  Recorder rec;
  EXPECT_THROW(rti->joinFederationExecution(L"t", url_, rec), FederationExecutionDoesNotExist);
  EXPECT_THROW(rti->destroyFederationExecution(url_), FederationExecutionDoesNotExist);
  // The FDD is read by the creating process, which reports its faults itself.
  EXPECT_THROW(rti->createFederationExecution(url_, L"/no/such/fom.xml"), CouldNotOpenFDD);
  rti->createFederationExecution(url_, wide(VC_FDD_FILE));
}

TEST_F(Hub, UnreachableHubIsAnInternalErrorNamingTheAddress) {
  // A port held bound but not listening refuses, and no other process can take it while
  // it is held.
  int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in a{};
  a.sin_family = AF_INET;
  a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ::bind(fd, reinterpret_cast<sockaddr*>(&a), sizeof a);
  socklen_t len = sizeof a;
  ::getsockname(fd, reinterpret_cast<sockaddr*>(&a), &len);
  const std::uint16_t port = ntohs(a.sin_port);
  auto rti = makeAmbassador();
  try {
    rti->createFederationExecution(wide(vctest::hubUrl(port, "X")), wide(VC_FDD_FILE));
    ADD_FAILURE() << "connected to nothing";
  } catch (const RTIinternalError& e) {
    EXPECT_NE(narrow(e.what()).find("127.0.0.1:" + std::to_string(port)), std::string::npos)
        << narrow(e.what());
  }
  ::close(fd);
}

// -------------------------------------------------------------------------- Robustness

// A hub that reports connections and resignations, for tests that wait for them.
class HubLogging : public Hub {
 protected:
  std::vector<std::string> hubArgs() const override { return {}; }
};

TEST_F(HubLogging, FederateKilledMidStreamLeavesHubAndOthersWorking) {
  Fed& me = join(false, true);
  auto sender = peer({"send", "0", "312"});
  sender->writeLine("go");
  std::string line;
  ASSERT_TRUE(sender->waitForLine("streaming", line, seconds(10))) << sender->transcript();
  // A few hundred are enough to be mid-stream; the receiver may run under memcheck.
  ASSERT_TRUE(pumpUntil(*me.rti, *me.rec, 300, seconds(60)));
  sender->kill(SIGKILL);
  EXPECT_EQ(sender->wait(seconds(5)), 128 + SIGKILL);
  // The hub may still hold the dead sender's last bytes, unread while it waited for us to
  // catch up; it resigns the sender once it has read them all. Until then a newcomer could
  // still be handed some of them, so the federation is only checked afterwards.
  const auto deadline = std::chrono::steady_clock::now() + seconds(60);
  bool resigned = false;
  while (!resigned && std::chrono::steady_clock::now() < deadline) {
    me.rti->evokeMultipleCallbacks(0.05, 0.5);
    resigned = hub_->waitForLine("resigned from '" + name_ + "'", line, milliseconds(1));
  }
  ASSERT_TRUE(resigned) << hub_->transcript();
  for (std::size_t before = 0; before != me.rec->got.size();) {
    before = me.rec->got.size();
    me.rti->evokeMultipleCallbacks(0.2, 1.0);
  }
  // Whatever was in flight arrives whole, in sequence, or not at all.
  for (std::size_t i = 0; i < me.rec->got.size(); ++i) {
    ASSERT_EQ(seqOf(me.payload(i)), i);
    ASSERT_EQ(me.payload(i), numbered(static_cast<std::uint32_t>(i), 312)) << i;
  }
  EXPECT_TRUE(hub_->running());
  expectFederationWorks("after the kill");
  // The killed federate was resigned: the federation can be destroyed once the others go.
  feds_.clear();
  EXPECT_NO_THROW(makeAmbassador()->destroyFederationExecution(url_));
}

struct Garbage {
  const char* what;
  Bytes bytes;
  bool afterJoin = false;  // sent by a client that joined the test's federation first
};

void PrintTo(const Garbage& g, std::ostream* os) {
  *os << g.what;
}

Bytes joinThen(const std::string& federation, const Bytes& after) {
  Bytes b = Frame(kJoin).u32(1).str(federation).str("raw").done();
  b.insert(b.end(), after.begin(), after.end());
  return b;
}

class HubGarbage : public HubLogging, public ::testing::WithParamInterface<Garbage> {};

TEST_P(HubGarbage, DropsOnlyTheClientThatSentIt) {
  Fed& a = join();
  Fed& b = join();
  a.send(numbered(0, 312));
  RawClient raw(port_);
  ASSERT_TRUE(raw.connected());
  raw.send(GetParam().afterJoin ? joinThen(name_, GetParam().bytes) : GetParam().bytes);
  EXPECT_TRUE(raw.closedByPeer(seconds(5))) << GetParam().what;
  std::string line;
  EXPECT_TRUE(hub_->waitForLine("dropped client", line, seconds(5))) << hub_->transcript();
  // The joined federates did not notice.
  a.send(numbered(1, 312));
  ASSERT_TRUE(pumpUntil(*b.rti, *b.rec, 2));
  EXPECT_EQ(b.payload(1), numbered(1, 312));
  expectFederationWorks(GetParam().what);
}

INSTANTIATE_TEST_SUITE_P(
    Frames, HubGarbage,
    ::testing::Values(Garbage{"text", Bytes{'G', 'E', 'T', ' ', '/', ' ', 'H', 'T', 'T', 'P', '/',
                                            '1', '.', '1', '\r', '\n', '\r', '\n'}},
                      Garbage{"over the size cap", Bytes{0x00, 0x00, 0x20, 0x00, 0x07}},
                      Garbage{"zero length", Bytes{0, 0, 0, 0, 7, 7, 7, 7}},
                      Garbage{"unknown type", Bytes{1, 0, 0, 0, 0x55}},
                      Garbage{"truncated fields", Bytes{3, 0, 0, 0, 0x07, 1, 2}},
                      Garbage{"interaction before join", Bytes{17, 0, 0, 0, 7, 1, 0, 0, 0, 0, 0,
                                                               0,  0, 0, 0, 0, 0, 0, 0, 0, 0}},
                      Garbage{"reply from a client", Bytes{9, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0}},
                      Garbage{"a second hello", hello()},
                      Garbage{"registration before join",
                              Frame(kRegister).u32(1).u32(1).u32(0).str("HLAobject_1_1").done()},
                      Garbage{"registration under another federate's handle",
                              Frame(kRegister).u32(1).u32(99).u32(0).str("x").done(), true},
                      Garbage{"update of an instance nobody registered",
                              Frame(kUpdate).u32(5).u32(1).u32(0).u32(0).done(), true},
                      Garbage{"delete of an instance nobody registered",
                              Frame(kDelete).u32(5).u32(1).u32(0).done(), true}),
    [](const ::testing::TestParamInfo<Garbage>& param) {
      std::string n = param.param.what;
      for (char& c : n)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
      return n;
    });

// A client of another release is told which version the hub speaks and let go, whether
// it names an older version or starts without a hello at all; the federates joined
// meanwhile carry on.
TEST_F(HubLogging, ClientsOfAnotherReleaseAreToldTheVersionAndLetGo) {
  const Bytes hubVersion = {kVersion, 0, 0, 0};
  for (const Bytes& first : {hello(1), Frame(kJoin).u32(7).str(name_).str("old").done()}) {
    RawClient old(port_, false);
    ASSERT_TRUE(old.send(first));
    Bytes body;
    ASSERT_TRUE(old.readFrame(body, seconds(5)));
    Reply r;
    ASSERT_TRUE(parseReply(body, r));
    EXPECT_EQ(r.status, 6u) << r.text;
    EXPECT_EQ(r.payload, hubVersion);
    EXPECT_NE(r.text.find("this RTI hub speaks protocol version " + std::to_string(kVersion)),
              std::string::npos)
        << r.text;
    EXPECT_TRUE(old.closedByPeer(seconds(5)));
  }
  std::string line;
  EXPECT_TRUE(
      hub_->waitForLine("protocol version 1, not " + std::to_string(kVersion), line, seconds(5)));
  EXPECT_TRUE(hub_->waitForLine("no hello", line, seconds(5))) << hub_->transcript();
  expectFederationWorks("after clients of another release");
}

// The other way round: a federate that meets a hub of another release says so, naming
// both versions, instead of misreading what the hub sends.
TEST(HubVersion, AFederateRefusesAHubOfAnotherReleaseNamingBothVersions) {
  const auto next = static_cast<unsigned char>(kVersion + 1);
  FakeHub newer({Bytes()}, FakeHub::answer(1, 6, "too new", {next, 0, 0, 0}));
  auto rti = makeAmbassador();
  try {
    rti->createFederationExecution(wide(vctest::hubUrl(newer.port(), "Newer")), wide(VC_FDD_FILE));
    ADD_FAILURE() << "a hub of another release was taken for ours";
  } catch (const RTIinternalError& e) {
    const std::string what = narrow(e.what());
    EXPECT_NE(what.find("speaks protocol version " + std::to_string(next) +
                        ", this federate's RTI version " + std::to_string(kVersion)),
              std::string::npos)
        << what;
    EXPECT_NE(what.find("too new"), std::string::npos) << what;
  }
}

// A federate whose sends the hub has stopped taking keeps reading what the hub sends, so
// that neither waits for the other, but only up to its cap: past it the bytes stay in the
// kernel for the hub to notice. A stand-in hub that never reads and sends without end
// gets no more than the cap and the kernels' buffers into the federate.
TEST(HubLink, ASenderTheHubHoldsUpReadsNoMoreThanItsCap) {
  if (!hubBuilt()) GTEST_SKIP() << "the hub is built with the embedded RTI only";
  // The stand-in answers the join as a real hub does.
  std::uint16_t port = 0;
  auto hub = vctest::startHub(port, {"--quiet"});
  const std::wstring realUrl = wide(vctest::hubUrl(port, "Stall"));
  makeAmbassador()->createFederationExecution(realUrl, wide(VC_FDD_FILE));
  RawClient raw(port);
  Bytes joined;
  ASSERT_TRUE(raw.send(Frame(kJoin).u32(2).str("Stall").str("victim").done()));
  ASSERT_TRUE(raw.readFrame(joined, seconds(10)));
  Bytes joinAnswer;
  for (int k = 0; k < 4; ++k)
    joinAnswer.push_back(static_cast<unsigned char>(joined.size() >> (8 * k)));
  for (unsigned char b : joined) joinAnswer.push_back(b);
  Recorder probeRec;
  auto probe = makeAmbassador();
  probe->joinFederationExecution(L"probe", realUrl, probeRec);
  const InteractionClassHandle cls = probe->getInteractionClassHandle(L"ViewControl");
  const ParameterHandle pdu = probe->getParameterHandle(cls, L"ViewControlPdu");
  const Bytes big = Frame(kInteraction)
                        .u32(handleValue(cls))
                        .u32(0)
                        .u32(1)
                        .u32(handleValue(pdu))
                        .u32(65536)
                        .raw(Bytes(65536, 0x33))
                        .done();

  std::uint16_t stallPort = 0;
  const int listener = listenOnLoopback(stallPort);
  ASSERT_GE(listener, 0);
  constexpr std::size_t kFlood = 96u << 20;
  std::size_t written = 0;
  std::thread stalling([&] {
    pollfd l{listener, POLLIN, 0};
    if (::poll(&l, 1, 10000) != 1) return;
    const int fd = ::accept(listener, nullptr, nullptr);
    char request[4096];
    (void)!::recv(fd, request, sizeof request, 0);
    sendAll(fd, FakeHub::answer(1, 0, "", {kVersion, 0, 0, 0}));
    (void)!::recv(fd, request, sizeof request, 0);
    sendAll(fd, joinAnswer);
    // From here on nothing is read: the federate's sends stall.
    while (written < kFlood) {
      pollfd w{fd, POLLOUT, 0};
      if (::poll(&w, 1, 2000) != 1) break;  // it no longer reads either
      const ssize_t n = ::send(fd, big.data(), big.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (n <= 0) break;
      written += static_cast<std::size_t>(n);
    }
    ::close(fd);
  });

  auto victim = makeAmbassador();
  Recorder rec;
  victim->joinFederationExecution(L"victim", wide(vctest::hubUrl(stallPort, "Stall")), rec);
  victim->publishInteractionClass(cls);
  ParameterHandleValueMap v;
  const Bytes payload(65536, 0x44);
  v[pdu] = data(payload);
  EXPECT_THROW(for (;;) victim->sendInteraction(cls, v, VariableLengthData()), RTIinternalError);
  stalling.join();
  ::close(listener);
  // 16 MiB of its own, and what the kernels' socket buffers hold.
  EXPECT_LT(written, std::size_t{48} << 20) << "bytes the stalled federate took in";
  EXPECT_GT(written, std::size_t{16} << 20) << "it stopped reading before its cap";
  probe->resignFederationExecution(NO_ACTION);
}

TEST_F(Hub, JoinedClientSendingAnUnknownClassIsDroppedAndResigned) {
  Fed& a = join();
  Fed& b = join();
  RawClient raw(port_);
  const Bytes badInteraction = {17, 0, 0, 0, 7, 0xEE, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  raw.send(joinThen(name_, badInteraction));
  EXPECT_TRUE(raw.closedByPeer(seconds(5)));
  a.send(numbered(5, 10));
  ASSERT_TRUE(pumpUntil(*b.rti, *b.rec, 1));
  feds_.clear();
  EXPECT_NO_THROW(makeAmbassador()->destroyFederationExecution(url_))
      << "the dropped client was not resigned";
}

class SlowSubscriber : public Hub {
 protected:
  std::vector<std::string> hubArgs() const override {
    return {"--queue-limit", "65536", "--max-delay", "1000"};
  }
};

TEST_F(SlowSubscriber, IsDisconnectedWhileReadingSubscribersGetEverything) {
  const std::uint32_t n = 20000;
  auto counter = peer({"count", std::to_string(n)});
  Fed& stuck = join(false, true);  // subscribes, never evokes
  Fed& me = join(true, false);
  const auto t0 = std::chrono::steady_clock::now();
  for (std::uint32_t i = 0; i < n; ++i) me.send(numbered(i, 1024));
  me.rti->evokeCallback(0.0);
  std::string line;
  ASSERT_TRUE(counter->waitForLine("received", line, seconds(30))) << counter->transcript();
  EXPECT_EQ(line, "received " + std::to_string(n) + " ok");
  EXPECT_LT(std::chrono::steady_clock::now() - t0, seconds(20));
  EXPECT_TRUE(hub_->waitForLine("not reading", line, seconds(5))) << hub_->transcript();
  EXPECT_THROW(stuck.rti->evokeMultipleCallbacks(0.5, 1.0 * 60), RTIinternalError);
}

TEST_F(Hub, StopsCleanlyOnSigtermAndFederatesSeeTheLoss) {
  Fed& a = join();
  hub_->kill(SIGTERM);
  EXPECT_EQ(hub_->wait(seconds(10)), 0) << hub_->transcript();
  hub_.reset();
  const auto t0 = std::chrono::steady_clock::now();
  EXPECT_THROW(
      {
        for (int i = 0; i < 100; ++i) a.rti->evokeMultipleCallbacks(0.01, 0.05);
      },
      RTIinternalError);
  EXPECT_LT(std::chrono::steady_clock::now() - t0, seconds(5));
  feds_.clear();  // resigning from a lost hub must not hang or throw out of a destructor
}

TEST(HubCommandLine, HelpNamesTheOptionsAndDefaultPort) {
  if (!hubBuilt()) GTEST_SKIP();
  ChildProcess help(vctest::programPath("rtihub"), {"--help"});
  std::string all, line;
  while (help.readLine(line, seconds(5))) all += line + "\n";
  EXPECT_EQ(help.wait(seconds(5)), 0);
  for (const char* word : {"--listen", "15160", "--queue-limit", "--max-delay", "--frame-timeout",
                           "--join-timeout", "--max-clients", "--max-per-address",
                           "--federation-memory", "--federation-expiry", "SIGTERM", "127.0.0.1"})
    EXPECT_NE(all.find(word), std::string::npos) << word;
}

TEST(HubCommandLine, RefusesBadArgumentsAndBusyPorts) {
  if (!hubBuilt()) GTEST_SKIP();
  for (std::vector<std::string> args : {std::vector<std::string>{"--listen", "nohostport"},
                                        {"--listen", "127.0.0.1:70000"},
                                        {"--bogus"},
                                        {"--queue-limit", "12"},
                                        {"--max-delay", "0"},
                                        {"--frame-timeout", "3600001"},
                                        {"--join-timeout", "0"},
                                        {"--max-clients", "0"},
                                        {"--max-per-address", "-1"},
                                        {"--federation-memory", "65535"},
                                        {"--federation-expiry", "1s"}}) {
    ChildProcess p(vctest::programPath("rtihub"), args, true);
    EXPECT_EQ(p.wait(seconds(5)), 2) << args[0];
  }
  std::uint16_t port = 0;
  auto first = vctest::startHub(port);
  ChildProcess second(vctest::programPath("rtihub"),
                      {"--listen", "127.0.0.1:" + std::to_string(port)}, true);
  EXPECT_EQ(second.wait(seconds(5)), 1) << second.transcript();
}

}  // namespace
