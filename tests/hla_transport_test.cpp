// Control PDUs carried as "ViewControl" interactions: in one process over thread://,
// across processes through a hub, and what happens when the object model lacks the class.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <RTI/Exception.h>

#include "dtRtiSession.h"
#include "outputCapture.h"
#include "peerPdu.h"
#include "process.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using namespace std::chrono_literals;

std::string hex(const char* bytes, int length) {
  std::string out;
  char two[3];
  for (int i = 0; i < length; ++i) {
    std::snprintf(two, sizeof two, "%02x", static_cast<unsigned char>(bytes[i]));
    out += two;
  }
  return out;
}

struct Inbox {
  std::vector<std::vector<char>> pdus;
  int empty = 0;
  static void take(DtVistrelControlInteraction* inter, void* usr) {
    auto* box = static_cast<Inbox*>(usr);
    if (const DtVistrelControlPdu* pdu = inter->vcPdu())
      box->pdus.emplace_back(pdu->packet(), pdu->packet() + pdu->length());
    else
      ++box->empty;
  }
};

bool sendPdu(DtExerciseConn& conn, const DtVistrelControlPdu& pdu) {
  DtVistrelControlInteraction inter;
  inter.setVcPdu(pdu);
  return conn.sendInteraction(inter);
}

DtOrbitVCPdu sampleOrbit() {
  DtOrbitVCPdu pdu;
  pdu.setViewerId("viewer-1");
  pdu.setSenderId("ctl");
  pdu.setAttachId("1:2:3");
  pdu.setRadius(250.5f);
  pdu.setIgnoreFlags(0xFFEBFDE7);
  return pdu;
}

TEST(ThreadFederation, PduArrivesByteForByte) {
  DtExerciseConn a("thread://Carriage", "a", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  DtExerciseConn b("thread://Carriage", "b", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  ASSERT_TRUE(a.connected()) << a.errorText();
  ASSERT_TRUE(b.connected()) << b.errorText();
  EXPECT_STREQ(a.identity(), "a");
  DtVistrelControlRegister(&a);
  DtVistrelControlRegister(&b);
  Inbox inbox;
  DtVistrelControlInteraction::addCallback(&b, &Inbox::take, &inbox);
  DtOrbitVCPdu orbit = sampleOrbit();
  ASSERT_TRUE(sendPdu(a, orbit));
  DtGroupVCPdu group;  // variable length
  group.setNumEntitiesToAdd(3);
  group.setEntityToAdd(2, "last");
  ASSERT_TRUE(sendPdu(a, group));
  for (int i = 0; i < 50 && inbox.pdus.size() < 2; ++i) b.drainInput(0.02);
  ASSERT_EQ(inbox.pdus.size(), 2u);
  EXPECT_EQ(inbox.pdus[0], std::vector<char>(orbit.packet(), orbit.packet() + 312));
  EXPECT_EQ(inbox.pdus[1].size(), 188u + 3 * 64);
  EXPECT_EQ(wire::text(inbox.pdus[1].data(), 188 + 128, 64), "last");
  // The sender hears nothing of its own interactions.
  Inbox own;
  DtVistrelControlInteraction::addCallback(&a, &Inbox::take, &own);
  a.drainInput(0.01);
  EXPECT_TRUE(own.pdus.empty());
  DtVistrelControlInteraction::removeCallback(&b, &Inbox::take, &inbox);
  DtVistrelControlInteraction::removeCallback(&a, &Inbox::take, &own);
  sendPdu(a, orbit);
  b.drainInput(0.01);
  EXPECT_EQ(inbox.pdus.size(), 2u);  // removed callbacks are no longer called
}

TEST(ThreadFederation, ReceivedBytesOfAnotherKindGiveAnEmptyInteraction) {
  DtExerciseConn a("thread://Kinds", "a", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  DtExerciseConn b("thread://Kinds", "b", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  DtVistrelControlRegister(&b);
  Inbox inbox;
  DtVistrelControlInteraction::addCallback(&b, &Inbox::take, &inbox);
  // Raw parameter values straight through the RTI: a foreign PDU kind, a zero-length
  // value, and a PDU whose header claims more bytes than were sent.
  dtrti::RTIambassador* rti = a.rtiAmb();
  DtInterClassDesc* desc = a.fomMapper()->interClassDesc("ViewControl");
  ASSERT_NE(desc, nullptr);
  dtrti::ParameterHandle param;
  ASSERT_TRUE(desc->parameterHandle("ViewControlPdu", &param));
  rti->publishInteractionClass(desc->handle());
  std::vector<unsigned char> foreign = wire::controlPdu(0, 196);
  foreign[2] = 1;
  std::vector<unsigned char> shortOne = wire::controlPdu(5, 312, 160);
  for (const std::vector<unsigned char>& value :
       {foreign, std::vector<unsigned char>(), shortOne}) {
    dtrti::ParameterHandleValueMap values;
    values[param] = dtrti::VariableLengthData(value.data(), value.size());
    rti->sendInteraction(desc->handle(), values, dtrti::VariableLengthData());
  }
  for (int i = 0; i < 50 && inbox.pdus.size() + static_cast<size_t>(inbox.empty) < 3; ++i)
    b.drainInput(0.02);
  EXPECT_EQ(inbox.empty, 2);
  ASSERT_EQ(inbox.pdus.size(), 1u);
  EXPECT_EQ(inbox.pdus[0].size(), 312u);  // padded with zeros up to the stated length
  EXPECT_TRUE(wire::zero(inbox.pdus[0].data(), 160, 152));
  DtVistrelControlInteraction::removeCallback(&b, &Inbox::take, &inbox);
}

// A viewer's first answers, sent from inside the callback that delivers the request:
// the class is published there, and what is sent must leave in the order of the calls,
// each with its own bytes, by the time drainInput() returns.
struct Answerer {
  DtExerciseConn* conn = nullptr;
  int requests = 0;
  bool sent = true;
  static void take(DtVistrelControlInteraction* inter, void* usr) {
    auto* self = static_cast<Answerer*>(usr);
    if (!inter->vcPdu() || inter->vcPdu()->viewerCommand() != DtVcOrbit) return;
    ++self->requests;
    DtAbsoluteVCPdu first;
    first.setViewerId("answer-1");
    DtTetherVCPdu second;
    second.setViewerId("answer-2");
    self->sent = sendPdu(*self->conn, first) && self->sent;
    first.setViewerId("changed after sending");  // what went out was a copy
    self->sent = sendPdu(*self->conn, second) && self->sent;
  }
};

TEST(ThreadFederation, AnswersSentFromACallbackLeaveInOrderBeforeTheDrainReturns) {
  DtExerciseConn ctl("thread://Answers", "ctl", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  DtExerciseConn viewer("thread://Answers", "viewer", static_cast<DtFomMapper*>(nullptr),
                        VC_FDD_FILE);
  ASSERT_TRUE(ctl.connected() && viewer.connected()) << ctl.errorText() << viewer.errorText();
  DtVistrelControlRegister(&ctl);
  DtVistrelControlRegister(&viewer);
  Answerer answerer;
  answerer.conn = &viewer;
  DtVistrelControlInteraction::addCallback(&viewer, &Answerer::take, &answerer);
  Inbox answers;
  DtVistrelControlInteraction::addCallback(&ctl, &Inbox::take, &answers);

  ASSERT_TRUE(sendPdu(ctl, sampleOrbit()));
  for (int i = 0; i < 100 && answerer.requests == 0; ++i) viewer.drainInput(0.02);
  ASSERT_EQ(answerer.requests, 1);
  EXPECT_TRUE(answerer.sent);
  // The viewer drains no more: both answers left within the drain that called back.
  for (int i = 0; i < 100 && answers.pdus.size() < 2; ++i) ctl.drainInput(0.02);
  ASSERT_EQ(answers.pdus.size(), 2u);
  EXPECT_EQ(wire::u16(answers.pdus[0].data(), 146), static_cast<uint32_t>(DtVcAbsolute));
  EXPECT_EQ(wire::text(answers.pdus[0].data(), 12, 64), "answer-1");
  EXPECT_EQ(wire::u16(answers.pdus[1].data(), 146), static_cast<uint32_t>(DtVcTether));
  EXPECT_EQ(wire::text(answers.pdus[1].data(), 12, 64), "answer-2");
  DtVistrelControlInteraction::removeCallback(&viewer, &Answerer::take, &answerer);
  DtVistrelControlInteraction::removeCallback(&ctl, &Inbox::take, &answers);
}

TEST(Interaction, HoldsItsOwnCopyOfThePdu) {
  DtOrbitVCPdu orbit = sampleOrbit();
  DtVistrelControlInteraction inter;
  {
    OutputCapture dump(DtDumpOut);
    inter.printData();  // empty: prints nothing
    EXPECT_EQ(dump.text(), "");
  }
  inter.setVcPdu(orbit);
  orbit.setRadius(1.0f);
  auto* held = dynamic_cast<const DtOrbitVCPdu*>(inter.vcPdu());
  ASSERT_NE(held, nullptr);
  EXPECT_EQ(held->radius(), 250.5f);
  DtVistrelControlInteraction copy(inter);
  DtVistrelControlInteraction assigned;
  assigned = inter;
  EXPECT_NE(copy.vcPdu(), inter.vcPdu());
  EXPECT_NE(dynamic_cast<const DtOrbitVCPdu*>(assigned.vcPdu()), nullptr);
  EXPECT_STREQ(inter.name(), "DtVistrelControlInteraction");
  EXPECT_STREQ(inter.interactionClassToUse(nullptr), "ViewControl");
  // Received draw-control bytes without the version marker are read in the current layout.
  std::vector<unsigned char> line = wire::controlPdu(2520, 392);
  inter.setFromNetPacket(reinterpret_cast<const DtNetPduHeader*>(line.data()));
  EXPECT_NE(dynamic_cast<const DtVdcLinePdu*>(inter.vcPdu()), nullptr);
  EXPECT_EQ(dynamic_cast<const DtVdcLinePduV0*>(inter.vcPdu()), nullptr);
}

TEST(Interaction, ReloadingItsOwnPduKeepsItsBytes) {
  // The argument is the held PDU itself (or its bytes): it must be read before it goes.
  DtGroupVCPdu group;  // variable length: a stale length would show
  group.setNumEntitiesToAdd(2);
  group.setEntityToAdd(1, "second");
  group.setSenderId("self");
  const std::vector<char> bytes(group.packet(), group.packet() + group.length());
  DtVistrelControlInteraction inter;
  inter.setVcPdu(group);
  inter.setVcPdu(*inter.vcPdu());
  ASSERT_NE(dynamic_cast<const DtGroupVCPdu*>(inter.vcPdu()), nullptr);
  EXPECT_EQ(
      std::vector<char>(inter.vcPdu()->packet(), inter.vcPdu()->packet() + inter.vcPdu()->length()),
      bytes);
  inter.setFromNetPacket(reinterpret_cast<const DtNetPduHeader*>(inter.vcPdu()->packet()));
  ASSERT_NE(inter.vcPdu(), nullptr);
  EXPECT_EQ(
      std::vector<char>(inter.vcPdu()->packet(), inter.vcPdu()->packet() + inter.vcPdu()->length()),
      bytes);
}

TEST(ObjectModel, RegisteringWithoutAnObjectModelSaysWhy) {
  OutputCapture warn(DtWarn);
  DtVistrelControlRegister(nullptr);
  EXPECT_EQ(warn.text(),
            "Can't add decoders and encoders for interaction class ViewControl: "
            "no exercise connection given.\n");
  warn.clear();
  DtExerciseConn unjoined("thread://NeverJoined", "a", static_cast<DtFomMapper*>(nullptr),
                          "/nonexistent/fdd.xml");
  warn.clear();
  DtVistrelControlRegister(&unjoined);
  EXPECT_EQ(warn.text(),
            "Can't add decoders and encoders for interaction class ViewControl: "
            "the connection has not joined a federation.\n");
  EXPECT_EQ(unjoined.interactionCreator("ViewControl"), nullptr);  // nothing registered
}

#if defined(VC_HLA_EVOLVED) && VC_HLA_EVOLVED
constexpr bool kEvolved = true;
#else
constexpr bool kEvolved = false;
#endif

// An object model with one class, Chat, and no ViewControl, in the format of the API this
// flavour speaks.
std::string chatFdd() {
  std::string fdd = std::string(VC_BINARY_DIR) + "/no_viewcontrol_fdd" VC_TOOL_SUFFIX ".xml";
#if defined(VC_HLA_EVOLVED) && VC_HLA_EVOLVED
  std::ofstream(fdd) << R"(<?xml version="1.0"?>
<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010">
  <modelIdentification><name>Chat</name><type>FOM</type></modelIdentification>
  <interactions>
    <interactionClass>
      <name>HLAinteractionRoot</name>
      <interactionClass>
        <name>Chat</name><sharing>PublishSubscribe</sharing>
        <transportation>HLAreliable</transportation><order>Receive</order>
        <parameter><name>Text</name><dataType>HLAopaqueData</dataType></parameter>
      </interactionClass>
    </interactionClass>
  </interactions>
</objectModel>
)";
#else
  std::ofstream(fdd) << R"(<?xml version="1.0"?>
<objectModel DTDversion="1516.2" name="Chat" type="FOM">
  <interactions>
    <interactionClass name="HLAinteractionRoot" sharing="Neither" transportation="HLAreliable" order="Receive">
      <interactionClass name="Chat" sharing="PublishSubscribe" transportation="HLAreliable" order="Receive">
        <parameter name="Text" dataType="HLAopaqueData"/>
      </interactionClass>
    </interactionClass>
  </interactions>
</objectModel>
)";
#endif
  return fdd;
}

TEST(ObjectModel, WithoutViewControlRegistrationWarnsAndNothingIsSent) {
  const std::string fdd = chatFdd();
  DtExerciseConn conn("thread://NoViewControl", "a", static_cast<DtFomMapper*>(nullptr),
                      fdd.c_str());
  ASSERT_TRUE(conn.connected()) << conn.errorText();
  OutputCapture warn(DtWarn);
  DtVistrelControlRegister(&conn);
  EXPECT_EQ(warn.text(),
            "Can't add decoders and encoders for interaction class ViewControl: Not in FOM.\n");
  warn.clear();
  DtVistrelControlInteraction inter;
  EXPECT_EQ(inter.createDecoder(&conn), nullptr);
  EXPECT_EQ(inter.createEncoder(&conn), nullptr);
  EXPECT_EQ(warn.text(),
            "Cannot add decoder for FOM class ViewControl\n"
            "Cannot add encoder for FOM class ViewControl\n");
  warn.clear();
  inter.setVcPdu(sampleOrbit());
  EXPECT_FALSE(conn.sendInteraction(inter));
  // A controller on such a connection sends nothing and says nothing.
  DtVistrelRemoteController controller(&conn);
  controller.requestCurrentViewMode("x");
  EXPECT_EQ(warn.text(), "");
}

// A 1516-2010 federate brings its FOM module along when it joins a federation made from
// another model, and the RTI merges the two; a 1516-2000 federate takes the federation's
// model as it finds it.
TEST(ObjectModel, AFederationOfAnotherModelGainsViewControlOnlyFromAModuleBroughtAlong) {
  const std::string fdd = chatFdd();
  DtExerciseConn chat("thread://OtherModel", "chat", static_cast<DtFomMapper*>(nullptr),
                      fdd.c_str());
  DtExerciseConn vc("thread://OtherModel", "vc", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  ASSERT_TRUE(chat.connected() && vc.connected()) << chat.errorText() << vc.errorText();
  EXPECT_TRUE(chat.createdFederation());
  EXPECT_NE(chat.fomMapper()->interClassDesc("Chat"), nullptr);
  EXPECT_NE(vc.fomMapper()->interClassDesc("Chat"), nullptr);
  DtInterClassDesc* merged = vc.fomMapper()->interClassDesc("ViewControl");
  if (kEvolved) {
    ASSERT_NE(merged, nullptr);
    EXPECT_STREQ(merged->name(), "ViewControl");
    EXPECT_TRUE(merged->parameterHandle("ViewControlPdu", nullptr));
  } else {
    EXPECT_EQ(merged, nullptr);
  }
}

// How a federation URL is taken apart for an API that connects before it names the
// federation: the last part is the federation, what comes before it the connection.
TEST(Connection, FederationUrlsSplitAtTheirLastSlash) {
  const auto split = [](const std::string& url) {
    const DtRtiFederationUrl u = DtRtiFederationUrl::parse(url);
    return u.connectDesignator + "|" + u.federationName;
  };
  EXPECT_EQ(split("rti://127.0.0.1:14321/Demo"), "rti://127.0.0.1:14321|Demo");
  EXPECT_EQ(split("rti://[::1]:14321/Demo"), "rti://[::1]:14321|Demo");
  EXPECT_EQ(split("rti://host/a/b"), "rti://host/a|b");
  EXPECT_EQ(split("thread://Demo"), "thread://|Demo");
  EXPECT_EQ(split("Demo"), "|Demo");
  EXPECT_EQ(split("rti://host:1/"), "rti://host:1|");
  EXPECT_EQ(split("thread://"), "thread://|");
  EXPECT_EQ(split(""), "|");
  // The library linked speaks the API these headers were compiled for.
  EXPECT_STREQ(DtRtiApiName(), kEvolved ? "IEEE 1516-2010" : "IEEE 1516-2000");
}

TEST(Connection, BadFederationsFailWithAReason) {
  DtExerciseConnStatus status;
  OutputCapture warn(DtWarn);
  DtExerciseConn missingFdd("thread://MissingFdd", "a", static_cast<DtFomMapper*>(nullptr),
                            "/nonexistent/fdd.xml", &status);
  EXPECT_FALSE(status.ok);
  EXPECT_FALSE(missingFdd.connected());
  EXPECT_NE(std::string(status.message.c_str()).find("/nonexistent/fdd.xml"), std::string::npos);
  EXPECT_EQ(std::string(missingFdd.errorText().c_str()), std::string(status.message.c_str()));
  // The status carries the reason to a caller that asked for it; a warning as well would
  // make the caller's report the second one.
  EXPECT_EQ(warn.text(), "");
  DtVistrelControlInteraction inter;
  inter.setVcPdu(sampleOrbit());
  EXPECT_FALSE(missingFdd.sendInteraction(inter));
  EXPECT_EQ(missingFdd.drainInput(0.0), 0);
  EXPECT_FALSE(missingFdd.createdFederation());

  // Without a status too, errorText() is the only report.
  DtExerciseConn unreported("thread://MissingFdd", "b", static_cast<DtFomMapper*>(nullptr),
                            "/nonexistent/fdd.xml");
  EXPECT_NE(std::string(unreported.errorText().c_str()).find("/nonexistent/fdd.xml"),
            std::string::npos);
  EXPECT_EQ(warn.text(), "");
}

// Whether a connection found its federation or made it is what tells a tool that nobody
// can be listening; leaving is confirmed once, and a connection that left sends nothing.
TEST(Connection, SaysWhetherItCreatedTheFederationAndLeavesOnce) {
  DtExerciseConn first("thread://CreatedOrFound", "first", static_cast<DtFomMapper*>(nullptr),
                       VC_FDD_FILE);
  DtExerciseConn second("thread://CreatedOrFound", "second", static_cast<DtFomMapper*>(nullptr),
                        VC_FDD_FILE);
  ASSERT_TRUE(first.connected() && second.connected()) << first.errorText() << second.errorText();
  EXPECT_TRUE(first.createdFederation());
  EXPECT_FALSE(second.createdFederation());
  EXPECT_TRUE(second.resign());
  EXPECT_FALSE(second.connected());
  EXPECT_EQ(std::string(second.errorText().c_str()), "");
  EXPECT_TRUE(second.resign());
  DtVistrelControlInteraction inter;
  inter.setVcPdu(sampleOrbit());
  EXPECT_FALSE(second.sendInteraction(inter));
  EXPECT_TRUE(first.connected());
}

TEST(HubFederation, PduCrossesProcessesByteForByte) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  vctest::HubWithPeer f("Carriage", "v-2");
  vctest::ChildProcess& peer = f.viewer;
  ASSERT_TRUE(f.ready()) << peer.transcript();
  std::string line;

  DtExerciseConn conn(f.url.c_str(), "local", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  ASSERT_TRUE(conn.connected()) << conn.errorText();
  DtVistrelControlRegister(&conn);
  DtOrbitVCPdu orbit = sampleOrbit();
  ASSERT_TRUE(sendPdu(conn, orbit));
  ASSERT_TRUE(peer.waitForLine("PDU 5 ", line, 10s)) << peer.transcript();
  EXPECT_EQ(line, "PDU 5 " + hex(orbit.packet(), orbit.length()));

  // And back: the peer sends bytes we give it; they arrive here unchanged.
  Inbox inbox;
  DtVistrelControlInteraction::addCallback(&conn, &Inbox::take, &inbox);
  DtAbsoluteVCPdu absolute;
  absolute.setWorldLocation(DtVector64(1, 2, 3));
  absolute.setViewerId("v-1");
  peer.writeLine("send " + hex(absolute.packet(), absolute.length()));
  ASSERT_TRUE(peer.waitForLine("SENT", line, 10s)) << peer.transcript();
  for (int i = 0; i < 200 && inbox.pdus.empty(); ++i) conn.drainInput(0.02);
  ASSERT_EQ(inbox.pdus.size(), 1u);
  EXPECT_EQ(inbox.pdus[0], std::vector<char>(absolute.packet(), absolute.packet() + 196));
  DtVistrelControlInteraction::removeCallback(&conn, &Inbox::take, &inbox);
}

// A federate that starts sending right after it joins, and one that answers from inside
// its callback: through a server whose local nodes learn of subscribers late, the first
// PDU must not be lost, and what arrives while the answer waits to go out is delivered
// afterwards, in order, never inside the callback that is still running.
struct Replier {
  DtExerciseConn* conn = nullptr;
  std::vector<float> radii;
  int depth = 0;
  int nested = 0;
  static void take(DtVistrelControlInteraction* inter, void* usr) {
    auto* self = static_cast<Replier*>(usr);
    if (++self->depth > 1) ++self->nested;
    if (auto* orbit = dynamic_cast<const DtOrbitVCPdu*>(inter->vcPdu())) {
      self->radii.push_back(orbit->radius());
      if (self->radii.size() == 1) {
        DtAbsoluteVCPdu answer;
        answer.setViewerId("ctl");
        sendPdu(*self->conn, answer);
      }
    }
    --self->depth;
  }
};

TEST(HubFederation, FirstSendsArriveAndAnswersFromCallbacksKeepTheOrder) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  std::uint16_t port = 0;
  auto server = vctest::startServer(port);
  const std::string url = vctest::hubUrl(port, "Answers");
  DtExerciseConn viewer(url.c_str(), "viewer", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  ASSERT_TRUE(viewer.connected()) << viewer.errorText();
  DtVistrelControlRegister(&viewer);
  Replier replier;
  replier.conn = &viewer;
  DtVistrelControlInteraction::addCallback(&viewer, &Replier::take, &replier);

  DtExerciseConn ctl(url.c_str(), "ctl", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE);
  ASSERT_TRUE(ctl.connected()) << ctl.errorText();
  DtVistrelControlRegister(&ctl);
  Inbox answers;
  DtVistrelControlInteraction::addCallback(&ctl, &Inbox::take, &answers);
  constexpr int kSent = 30;
  for (int i = 0; i < kSent; ++i) {
    DtOrbitVCPdu orbit = sampleOrbit();
    orbit.setRadius(static_cast<float>(i));
    ASSERT_TRUE(sendPdu(ctl, orbit)) << ctl.errorText();
  }
  for (int i = 0; i < 500 && replier.radii.size() < kSent; ++i) viewer.drainInput(0.02);
  for (int i = 0; i < 500 && answers.pdus.empty(); ++i) ctl.drainInput(0.02);

  ASSERT_EQ(replier.radii.size(), static_cast<size_t>(kSent));
  for (int i = 0; i < kSent; ++i) EXPECT_EQ(replier.radii[i], static_cast<float>(i)) << i;
  EXPECT_EQ(replier.nested, 0);
  ASSERT_EQ(answers.pdus.size(), 1u);
  std::unique_ptr<DtVistrelControlPdu> answer(
      DtVistrelControlPdu::createFromBytes(answers.pdus[0].data(), answers.pdus[0].size()));
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->viewerCommand(), DtVcAbsolute);
  DtVistrelControlInteraction::removeCallback(&viewer, &Replier::take, &replier);
  DtVistrelControlInteraction::removeCallback(&ctl, &Inbox::take, &answers);
}

}  // namespace
