// Faults across processes, against the real hub: a federate killed halfway through a
// frame, frames over the size cap in both directions, federates joining and leaving
// while traffic flows (every interaction must reach every subscriber that was connected
// when it was sent), a subscriber whose process stops reading (the hub's memory stays
// bounded and the others go on, as rti/README.md says), and the hub restarted under
// running connections, which must report the loss through the toolkit.
#include "outputCapture.h"
#include "rti_hub_fixture.h"
#include "vistrelControl.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <deque>
#include <fstream>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace rti1516;
using namespace rtitest;
using std::chrono::milliseconds;
using std::chrono::seconds;
using vctest::ChildProcess;
using Clock = std::chrono::steady_clock;

namespace {

using vctest::residentKiB;

using Faults = HubTest;

// ------------------------------------------------------------------ out of descriptors

// A hub whose process may hold only a few files: a flood of connections takes them all.
class StarvedHub : public Faults {
 protected:
  int hubFileLimit() const override { return 24; }
};

TEST_F(StarvedHub, OutOfDescriptorsItServesItsClientsSaysSoOnceAndRecovers) {
  Fed& a = join(true, false);
  Fed& b = join(false, true);
  std::vector<int> flood;
  for (int i = 0; i < 40; ++i)
    if (const int fd = connectTo(port_); fd >= 0) flood.push_back(fd);
  std::string line;
  ASSERT_TRUE(hub_->waitForLine("accept: ", line, seconds(5))) << hub_->transcript();
  EXPECT_NE(line.find("Too many open files"), std::string::npos) << line;

  // The federates it already serves do not notice.
  for (std::uint32_t i = 0; i < 100; ++i) a.send(numbered(i, 312));
  ASSERT_TRUE(pumpUntil(*b.rti, *b.rec, 100));
  for (std::uint32_t i = 0; i < 100; ++i) ASSERT_EQ(b.payload(i), numbered(i, 312));

  // Retrying at once would write this line hundreds of thousands of times a second.
  std::this_thread::sleep_for(milliseconds(300));
  const std::string log = hub_->transcript();
  std::size_t failures = 0;
  for (auto at = log.find("accept: "); at != std::string::npos; at = log.find("accept: ", at + 1))
    ++failures;
  EXPECT_EQ(failures, 1u) << log.substr(0, 2000);

  for (const int fd : flood) ::close(fd);
  EXPECT_TRUE(hub_->waitForLine("accepting connections again", line, seconds(5)))
      << hub_->transcript();
  expectFederationWorks("after the flood");
}

// ------------------------------------------------------------------ killed mid-frame

TEST_F(Faults, FederateKilledHalfwayThroughAFrameIsResignedAndNothingOfItArrives) {
  Fed& listener = join(false, true);
  const std::uint32_t cls = handleValue(listener.cls), param = handleValue(listener.pdu);
  Bytes joined = Frame(kJoin).u32(1).str(name_).str("doomed").done();
  Bytes subscribe = Frame(kSubscribe).u32(2).u32(cls).done();
  joined.insert(joined.end(), subscribe.begin(), subscribe.end());
  // An interaction of 4000 bytes, of which the process gets to send the first 1500.
  Bytes value = numbered(0xDEAD, 4000);
  const Bytes interaction = Frame(kInteraction)
                                .u32(cls)
                                .u32(0)
                                .u32(1)
                                .u32(param)
                                .u32(static_cast<std::uint32_t>(value.size()))
                                .raw(value)
                                .done();
  const Bytes half(interaction.begin(), interaction.begin() + 1500);

  const Bytes greeting = hello();
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    // Only async-signal-safe calls from here on: a real federate process, dying as
    // abruptly as a process can.
    const int fd = connectTo(port_);
    if (fd < 0 || !sendAll(fd, greeting)) ::_exit(3);
    char reply[512];
    if (::recv(fd, reply, sizeof reply, 0) <= 0) ::_exit(4);  // greeted
    if (!sendAll(fd, joined)) ::_exit(3);
    if (::recv(fd, reply, sizeof reply, 0) <= 0) ::_exit(4);  // joined
    if (!sendAll(fd, half)) ::_exit(5);
    (void)!::write(ready[1], "x", 1);
    for (;;) ::pause();
  }
  ::close(ready[1]);
  pollfd p{ready[0], POLLIN, 0};
  ASSERT_EQ(::poll(&p, 1, 10000), 1) << "the child did not get to send half a frame";
  ::close(ready[0]);
  std::this_thread::sleep_for(milliseconds(100));  // the hub has the half frame by now
  ::kill(child, SIGKILL);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));

  std::string line;
  EXPECT_TRUE(hub_->waitForLine("resigned from '" + name_ + "'", line, seconds(5)))
      << hub_->transcript();
  EXPECT_TRUE(hub_->running());
  listener.rti->evokeMultipleCallbacks(0.2, 0.5);
  EXPECT_TRUE(listener.rec->got.empty()) << "part of a frame was delivered";
  expectFederationWorks("after the kill");
  // The killed federate no longer counts as joined.
  feds_.clear();
  EXPECT_NO_THROW(makeAmbassador()->destroyFederationExecution(url_));
}

// ------------------------------------------------------------------ size cap

TEST_F(Faults, FrameOverTheCapFromAJoinedFederateDropsItWithoutBufferingIt) {
  Fed& a = join(true, false);
  Fed& b = join(false, true);
  const long before = residentKiB(hub_->pid());
  const int fd = connectTo(port_);
  ASSERT_GE(fd, 0);
  ASSERT_TRUE(sendAll(fd, hello()));
  ASSERT_TRUE(sendAll(fd, Frame(kJoin).u32(1).str(name_).str("big").done()));
  // Announces 64 MiB and starts sending them: the hub must not wait for, nor keep, the body.
  Bytes huge = {0x00, 0x00, 0x00, 0x04, kInteraction};
  huge.resize(1 << 20, 0x5A);
  (void)sendAll(fd, huge);
  EXPECT_TRUE(closedByPeer(fd, seconds(5)));
  ::close(fd);
  std::string line;
  EXPECT_TRUE(hub_->waitForLine("frame exceeds size cap", line, seconds(5))) << hub_->transcript();
  EXPECT_LT(residentKiB(hub_->pid()) - before, 16 * 1024) << "KiB the hub took for a refused frame";
  a.send(numbered(1, 312));
  ASSERT_TRUE(pumpUntil(*b.rti, *b.rec, 1));
  expectFederationWorks("after the oversized frame");
}

TEST_F(Faults, FrameOverTheCapFromTheHubSideIsALossNotAnAllocation) {
  // Something answers on the hub's address with a frame announcing 4 GiB.
  std::uint16_t fakePort = 0;
  const int listener = listenOnLoopback(fakePort);
  ASSERT_GE(listener, 0);
  std::thread fake([listener] {
    pollfd p{listener, POLLIN, 0};
    if (::poll(&p, 1, 10000) != 1) return;
    const int fd = ::accept(listener, nullptr, nullptr);
    char request[4096];
    (void)!::recv(fd, request, sizeof request, 0);
    const Bytes answer = {0xFF, 0xFF, 0xFF, 0xFF, 8, 1, 0, 0, 0};
    sendAll(fd, answer);
    closedByPeer(fd, seconds(10));
    ::close(fd);
  });
  DtExerciseConnStatus status;
  OutputCapture warn(DtWarn);
  const std::string url = vctest::hubUrl(fakePort, "Fake");
  const auto t0 = Clock::now();
  DtExerciseConn conn(url.c_str(), "victim", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE,
                      &status);
  EXPECT_LT(Clock::now() - t0, seconds(5));
  EXPECT_FALSE(status.ok);
  EXPECT_FALSE(conn.connected());
  EXPECT_NE(std::string(conn.errorText().c_str()).find("corrupt frame"), std::string::npos)
      << conn.errorText();
  EXPECT_NE(std::string(status.message.c_str()).find(url), std::string::npos) << status.message;
  // Reported once, through the status the caller asked for.
  EXPECT_EQ(warn.text(), "");
  fake.join();
  ::close(listener);
}

// An object model with a name longer than the hub's frames is refused for what it is,
// not later as a corrupt model.
TEST(HubReplies, AModelWithANameTooLongForTheHubIsRefusedAsSuch) {
  if (!vctest::hubAvailable()) GTEST_SKIP() << "built against another RTI: no hub here";
  std::uint16_t port = 0;
  auto hub = vctest::startHub(port);
  std::ifstream in(VC_FDD_FILE);
  std::string fdd((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const std::string param = "name=\"ViewControlPdu\"";
  fdd.replace(fdd.find(param), param.size(), "name=\"" + std::string((1u << 20) + 1, 'P') + "\"");
  const std::string path = testing::TempDir() + "long_name_" + std::to_string(::getpid()) + ".xml";
  std::ofstream(path) << fdd;
  DtExerciseConnStatus status;
  DtExerciseConn conn(vctest::hubUrl(port, "LongName").c_str(), "f",
                      static_cast<DtFomMapper*>(nullptr), path.c_str(), &status);
  std::remove(path.c_str());
  EXPECT_FALSE(status.ok);
  const std::string message = status.message.c_str();
  EXPECT_NE(message.find("holds a name longer than the hub carries (1048576 bytes)"),
            std::string::npos)
      << message.substr(0, 300);
  EXPECT_EQ(message.find("corrupt"), std::string::npos) << message.substr(0, 300);
}

// What a hub says reaches the user's terminal: it must say what is wrong, and must not
// be able to drive the terminal.
TEST(HubReplies, ShortJoinRepliesAndControlCharactersAreReportedPlainly) {
  if (!vctest::hubAvailable()) GTEST_SKIP() << "built against another RTI: no hub here";
  const Bytes exists = FakeHub::reply(1, "exists", {});
  {
    FakeHub hub({exists, FakeHub::reply(0, "fdd.xml", {1, 2})});
    DtExerciseConnStatus status;
    const std::string url = vctest::hubUrl(hub.port(), "Short");
    DtExerciseConn conn(url.c_str(), "f", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE, &status);
    EXPECT_FALSE(status.ok);
    EXPECT_NE(std::string(status.message.c_str())
                  .find("RTI hub answered the join with 2 bytes, too few for a federate handle"),
              std::string::npos)
        << status.message;
  }
  {
    // An internal error: "does not exist" would have the join make the federation again.
    FakeHub hub({exists, FakeHub::reply(6, "gone\x1b[2J\x07\x7f\xc2\x9b!", {})});
    DtExerciseConnStatus status;
    const std::string url = vctest::hubUrl(hub.port(), "Escapes");
    DtExerciseConn conn(url.c_str(), "f", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE, &status);
    EXPECT_FALSE(status.ok);
    const std::string message = status.message.c_str();
    EXPECT_NE(message.find("gone\\x1b[2J\\x07\\x7f\\x9b!"), std::string::npos) << message;
    for (char c : message) EXPECT_GE(static_cast<unsigned char>(c), 0x20) << message;
  }
}

// ------------------------------------------------------------------ churn

class Churn : public Faults {
 protected:
  std::vector<std::string> hubArgs() const override { return {"--quiet"}; }
};

TEST_F(Churn, FederatesComingAndGoingDoNotCostAConnectedSubscriberAnything) {
  const std::uint32_t n = 20000;
  auto counterA = peer({"count", std::to_string(n)});
  auto counterB = peer({"count", std::to_string(n)});
  Fed& sender = join(true, false);
  Fed& steady = join(false, true);

  // Federates that join, subscribe and leave while the traffic flows. Each must see a
  // gapless run of the sequence from the moment its subscription returned.
  struct Visitor {
    std::unique_ptr<RTIambassador> rti;
    std::unique_ptr<Recorder> rec;
  };
  std::deque<Visitor> visitors;
  std::vector<std::unique_ptr<ChildProcess>> passing;
  std::size_t visits = 0;
  auto checkRun = [&](const Recorder& rec, const char* who) {
    for (std::size_t i = 1; i < rec.got.size(); ++i) {
      const Bytes& prev = rec.got[i - 1].params.begin()->second;
      const Bytes& cur = rec.got[i].params.begin()->second;
      ASSERT_EQ(seqOf(cur), seqOf(prev) + 1) << who << " lost or reordered an interaction";
    }
  };
  for (std::uint32_t i = 0; i < n; ++i) {
    sender.send(numbered(i, 312));
    if (i % 400 == 0) {
      Visitor v{makeAmbassador(), std::make_unique<Recorder>()};
      v.rti->joinFederationExecution(L"visitor", url_, *v.rec);
      v.rti->subscribeInteractionClass(v.rti->getInteractionClassHandle(L"ViewControl"));
      visitors.push_back(std::move(v));
      ++visits;
    }
    if (i % 400 == 200 && visitors.size() > 3) {
      Visitor& old = visitors.front();
      old.rti->evokeMultipleCallbacks(0.0, 0.2);
      checkRun(*old.rec, "a visitor");
      old.rti->resignFederationExecution(NO_ACTION);
      visitors.pop_front();
    }
    if (i % 4000 == 1000)
      passing.push_back(peer({"count", "0"}));  // a process that joins and leaves
    if (i % 100 == 0) {
      steady.rti->evokeMultipleCallbacks(0.0, 0.01);
      for (Visitor& v : visitors) v.rti->evokeMultipleCallbacks(0.0, 0.001);
    }
  }
  sender.rti->evokeCallback(0.0);  // flushes what is batched
  ASSERT_TRUE(pumpUntil(*steady.rti, *steady.rec, n, seconds(60)))
      << steady.rec->got.size() << " of " << n;
  for (std::uint32_t i = 0; i < n; ++i) ASSERT_EQ(seqOf(steady.payload(i)), i);
  for (Visitor& v : visitors) {
    v.rti->evokeMultipleCallbacks(0.2, 1.0);
    checkRun(*v.rec, "a visitor still there");
    ASSERT_FALSE(v.rec->got.empty());
    EXPECT_EQ(seqOf(v.rec->got.back().params.begin()->second), n - 1)
        << "a visitor still there missed the end";
  }
  std::string line;
  for (auto* counter : {counterA.get(), counterB.get()}) {
    ASSERT_TRUE(counter->waitForLine("received", line, seconds(60))) << counter->transcript();
    EXPECT_EQ(line, "received " + std::to_string(n) + " ok");
    EXPECT_EQ(counter->wait(seconds(10)), 0);
  }
  for (auto& p : passing) EXPECT_EQ(p->wait(seconds(10)), 0) << p->transcript();
  EXPECT_GE(visits, n / 400);
}

// ------------------------------------------------------------------ stopped subscriber

class StoppedSubscriber : public Faults {
 protected:
  static constexpr long kQueueLimit = 1 << 20;
  std::vector<std::string> hubArgs() const override {
    return {"--queue-limit", std::to_string(kQueueLimit), "--max-delay", "2000"};
  }
};

TEST_F(StoppedSubscriber, HubMemoryStaysBoundedAndTheOthersGoOn) {
  auto stuck = peer({"count", "100000000"});
  ::kill(stuck->pid(), SIGSTOP);  // still connected, reads nothing from now on
  Fed& sender = join(true, false);
  Fed& healthy = join(false, true);
  const long baseline = residentKiB(hub_->pid());

  // 64 MiB for the others, far beyond the queue limit of the stopped one. The healthy
  // subscriber reads on its own thread: the sender may block while the hub holds it back.
  const std::uint32_t n = 64 * 1024;
  std::atomic<bool> done{false};
  std::thread reader([&] {
    const auto deadline = Clock::now() + seconds(90);
    while (healthy.rec->got.size() < n && Clock::now() < deadline)
      healthy.rti->evokeMultipleCallbacks(0.001, 0.05);
    done = true;
  });
  std::atomic<long> peak{0};
  std::thread watcher([&] {
    while (!done) {
      peak = std::max(peak.load(), residentKiB(hub_->pid()));
      std::this_thread::sleep_for(milliseconds(20));
    }
  });
  const auto t0 = Clock::now();
  for (std::uint32_t i = 0; i < n; ++i) sender.send(numbered(i, 1024));
  sender.rti->evokeCallback(0.0);
  reader.join();
  watcher.join();
  const auto took = Clock::now() - t0;

  ASSERT_EQ(healthy.rec->got.size(), n);
  for (std::uint32_t i = 0; i < n; i += 997) ASSERT_EQ(healthy.payload(i), numbered(i, 1024)) << i;
  std::string line;
  EXPECT_TRUE(hub_->waitForLine("not reading", line, seconds(5))) << hub_->transcript();
  // The stopped client cost the others its stall timeout, not the whole transfer.
  EXPECT_LT(took, seconds(60));
  if (vctest::kResidentMemoryTells) {
    EXPECT_LT(peak - baseline, 24 * kQueueLimit / 1024)
        << "KiB the hub grew by for one stopped client";
  }

  // Woken up, the stopped federate finds itself disconnected.
  ::kill(stuck->pid(), SIGCONT);
  EXPECT_TRUE(stuck->waitForLine("exception", line, seconds(10))) << stuck->transcript();
  EXPECT_EQ(stuck->wait(seconds(10)), 1);
  expectFederationWorks("after the stopped client was dropped");
}

// ------------------------------------------------------------------ hub restart

struct Inbox {
  int pdus = 0;
  static void take(DtVistrelControlInteraction* inter, void* usr) {
    if (inter->vcPdu()) ++static_cast<Inbox*>(usr)->pdus;
  }
};

TEST_F(Faults, HubRestartedUnderRunningConnectionsIsReportedAndANewConnectionWorks) {
  const std::string url = vctest::hubUrl(port_, name_);
  DtExerciseConn tx(url.c_str(), "tx", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  DtExerciseConn rx(url.c_str(), "rx", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  ASSERT_TRUE(tx.connected()) << tx.errorText();
  ASSERT_TRUE(rx.connected()) << rx.errorText();
  DtVistrelControlRegister(&tx);
  DtVistrelControlRegister(&rx);
  Inbox inbox;
  DtVistrelControlInteraction::addCallback(&rx, &Inbox::take, &inbox);
  DtVistrelRemoteController controller(&tx);
  controller.requestCurrentViewMode("v");
  for (int i = 0; i < 200 && inbox.pdus == 0; ++i) rx.drainInput(0.02);
  ASSERT_EQ(inbox.pdus, 1);

  hub_->kill(SIGKILL);
  ASSERT_EQ(hub_->wait(seconds(5)), 128 + SIGKILL);
  hub_.reset();

  OutputCapture warn(DtWarn);
  const auto t0 = Clock::now();
  while (rx.connected() && Clock::now() - t0 < seconds(5)) rx.drainInput(0.05);
  EXPECT_FALSE(rx.connected());
  const std::string hubAddress = "127.0.0.1:" + std::to_string(port_);
  EXPECT_NE(std::string(rx.errorText().c_str()).find("lost"), std::string::npos) << rx.errorText();
  EXPECT_NE(std::string(rx.errorText().c_str()).find(hubAddress), std::string::npos)
      << rx.errorText();
  EXPECT_NE(
      std::string(rx.errorText().c_str()).find("connection to federation \"" + url + "\" lost"),
      std::string::npos)
      << rx.errorText();
  // errorText() is the one report; the library prints nothing of it.
  EXPECT_EQ(warn.text(), "");

  // The sender learns it on its next sends, and says which federation it lost.
  DtOrbitVCPdu orbit;
  DtVistrelControlInteraction inter;
  inter.setVcPdu(orbit);
  for (int i = 0; i < 100 && tx.connected(); ++i) {
    tx.sendInteraction(inter);
    tx.drainInput(0.02);
  }
  EXPECT_FALSE(tx.connected());
  EXPECT_FALSE(tx.sendInteraction(inter));
  EXPECT_NE(std::string(tx.errorText().c_str()).find(url), std::string::npos) << tx.errorText();
  EXPECT_EQ(rx.drainInput(0.0), 0);
  controller.requestCurrentViewMode("v");  // a lost connection sends nothing and throws nothing

  // A hub started again on the same address serves new connections; the lost ones stay
  // lost (their federation went with the old hub) and let go without hanging.
  hub_ = vctest::startHub(port_, {"--listen", hubAddress});
  DtExerciseConn again(url.c_str(), "again", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  DtExerciseConn other(url.c_str(), "other", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  ASSERT_TRUE(again.connected()) << again.errorText();
  ASSERT_TRUE(other.connected()) << other.errorText();
  DtVistrelControlRegister(&again);
  DtVistrelControlRegister(&other);
  Inbox fresh;
  DtVistrelControlInteraction::addCallback(&other, &Inbox::take, &fresh);
  ASSERT_TRUE(again.sendInteraction(inter));
  for (int i = 0; i < 200 && fresh.pdus == 0; ++i) other.drainInput(0.02);
  EXPECT_EQ(fresh.pdus, 1);
  EXPECT_FALSE(rx.connected());
  DtVistrelControlInteraction::removeCallback(&other, &Inbox::take, &fresh);
  DtVistrelControlInteraction::removeCallback(&rx, &Inbox::take, &inbox);
}

}  // namespace
