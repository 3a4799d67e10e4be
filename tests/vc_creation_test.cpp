// Creation of every view-control class and the options PDU: from received bytes (plain
// and status forms) and by command number.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using PduPtr = std::unique_ptr<DtVistrelControlPdu>;

const DtNetPduHeader* header(const std::vector<unsigned char>& bytes) {
  return reinterpret_cast<const DtNetPduHeader*>(bytes.data());
}

struct ClassCase {
  int command;
  int length;
  std::function<bool(DtVistrelControlPdu*)> isClass;
  std::function<DtVistrelControlPdu*()> make;  // a filled PDU of the class
};

template <typename Pdu>
std::function<bool(DtVistrelControlPdu*)> is() {
  return [](DtVistrelControlPdu* p) { return dynamic_cast<Pdu*>(p) != nullptr; };
}

// Exact class, not a subclass: an offset mimic is also a mimic.
std::function<bool(DtVistrelControlPdu*)> isPlainMimic() {
  return [](DtVistrelControlPdu* p) {
    return dynamic_cast<DtMimicVCPdu*>(p) && !dynamic_cast<DtOffsetMimicVCPdu*>(p);
  };
}

std::vector<ClassCase> classes() {
  return {
      {1, 308, is<DtTetherVCPdu>(),
       [] {
         auto* p = new DtTetherVCPdu;
         p->setFromString("e1,1,2,3,0.5,0,0,Red one");
         return p;
       }},
      {2, 308, is<DtCompassVCPdu>(),
       [] {
         auto* p = new DtCompassVCPdu;
         p->setFromString("e1 5 1 2 3 4 6 C1");
         return p;
       }},
      {3, 308, isPlainMimic(),
       [] {
         auto* p = new DtMimicVCPdu;
         p->setFromString("e1 1 2 3 0 0 0 M1");
         return p;
       }},
      {4, 308, is<DtOffsetMimicVCPdu>(),
       [] {
         auto* p = new DtOffsetMimicVCPdu;
         p->setFromString("e1 1 2 3 0 0 0 M1");
         return p;
       }},
      {5, 312, is<DtOrbitVCPdu>(),
       [] {
         auto* p = new DtOrbitVCPdu;
         p->setFromString("e1 5 1 2 3 4 6 7 O1");
         return p;
       }},
      {6, 312, is<DtTrackVCPdu>(),
       [] {
         auto* p = new DtTrackVCPdu;
         p->setFromString("t1 1 2 3 T1");
         return p;
       }},
      {7, 424, is<DtTetherTrackVCPdu>(),
       [] {
         auto* p = new DtTetherTrackVCPdu;
         p->setFromString("a1 t1 1 2 3 A T");
         return p;
       }},
      {8, 424, is<DtMimicTrackVCPdu>(),
       [] {
         auto* p = new DtMimicTrackVCPdu;
         p->setFromString("a1 t1 1 2 3 A T");
         return p;
       }},
      {9, 188, is<DtGroupVCPdu>(),
       [] {
         auto* p = new DtGroupVCPdu;
         p->setFromString("0 1 2 1 2 3 4 5 r1 a1 a2");
         return p;
       }},
      {10, 292, is<DtModelessVCPdu>(),
       [] {
         auto* p = new DtModelessVCPdu;
         p->setPrimary("p1");
         p->setNumEntitiesToAdd(1);
         p->setEntityToAdd(0, "a1");
         return p;
       }},
      {11, 1539, is<DtOptionsPdu>(),
       [] {
         auto* p = new DtOptionsPdu;
         p->setFov(30);
         p->setExit(true);
         return p;
       }},
      {12, 204, is<DtPivotVCPdu>(),
       [] {
         auto* p = new DtPivotVCPdu;
         p->setFromString("1 2 3 4 5 6 7 8 9");
         return p;
       }},
      {13, 208, is<DtMoveVCPdu>(),
       [] {
         auto* p = new DtMoveVCPdu;
         p->setFromString("1 4 1 2 3");
         return p;
       }},
  };
}

std::vector<unsigned char> bytesOf(const DtVistrelControlPdu& pdu) {
  return std::vector<unsigned char>(pdu.packet(), pdu.packet() + pdu.length());
}

TEST(CreationRoundTrip, EveryClassComesBackWithItsBytes) {
  for (const ClassCase& c : classes()) {
    SCOPED_TRACE(c.command);
    PduPtr sent(c.make());
    EXPECT_EQ(wire::u16(sent->packet(), 146), static_cast<unsigned>(c.command));
    std::vector<unsigned char> bytes = bytesOf(*sent);
    for (auto create : {&DtVistrelControlPdu::createFromNet, &DtVistrelControlPdu::create}) {
      PduPtr got(create(header(bytes), nullptr, nullptr));
      ASSERT_TRUE(got);
      EXPECT_TRUE(c.isClass(got.get()));
      EXPECT_EQ(bytesOf(*got), bytes);
      EXPECT_STREQ(got->string(), sent->string());
      EXPECT_FALSE(got->statusCommand());
    }
  }
}

TEST(CreationRoundTrip, StatusFormsKeepTheirCommand) {
  for (const ClassCase& c : classes()) {
    SCOPED_TRACE(c.command);
    std::vector<unsigned char> bytes =
        wire::controlPdu(static_cast<uint32_t>(c.command + 500), static_cast<size_t>(c.length));
    PduPtr got(DtVistrelControlPdu::createFromNet(header(bytes)));
    ASSERT_TRUE(got);
    bool hasStatusForm = c.command != 11 && c.command != 13;
    if (hasStatusForm) {
      EXPECT_TRUE(c.isClass(got.get()));
      EXPECT_TRUE(got->statusCommand());
      EXPECT_EQ(got->viewerCommand(), c.command + 500);
    } else {
      EXPECT_NE(dynamic_cast<DtUnknownVistrelControlPdu*>(got.get()), nullptr);
    }
  }
}

TEST(CreationByCommand, FreshPdusAndTheirStatusForms) {
  for (const ClassCase& c : classes()) {
    SCOPED_TRACE(c.command);
    PduPtr fresh(DtNewViewControlPdu(static_cast<DtViewerCommand>(c.command)));
    PduPtr status(DtNewViewControlPdu(static_cast<DtViewerCommand>(c.command + 500)));
    if (c.command == 10) {  // modeless PDUs are never made by command
      EXPECT_FALSE(fresh);
      EXPECT_FALSE(status);
      continue;
    }
    ASSERT_TRUE(fresh);
    EXPECT_TRUE(c.isClass(fresh.get()));
    EXPECT_EQ(fresh->length(), c.length);
    EXPECT_EQ(wire::u16(fresh->packet(), 146), static_cast<unsigned>(c.command));
    PduPtr viaAll(DtNewVistrelControlPdu(static_cast<DtViewerCommand>(c.command)));
    EXPECT_TRUE(viaAll && c.isClass(viaAll.get()));
    if (c.command == 11 || c.command == 13) {
      EXPECT_FALSE(status);
    } else {
      ASSERT_TRUE(status);
      EXPECT_TRUE(c.isClass(status.get()));
      EXPECT_EQ(wire::u16(status->packet(), 146), static_cast<unsigned>(c.command + 500));
    }
  }
  for (int none : {10, 15, 510, 511, 513, 514})
    EXPECT_EQ(DtNewViewControlPdu(static_cast<DtViewerCommand>(none)), nullptr) << none;
  EXPECT_EQ(DtNewVistrelControlPdu(static_cast<DtViewerCommand>(15)), nullptr);
}

TEST(CreationFromBytes, ShortAndHostilePdusOfEveryClass) {
  for (const ClassCase& c : classes()) {
    SCOPED_TRACE(c.command);
    std::vector<unsigned char> bytes = wire::controlPdu(static_cast<uint32_t>(c.command), 152);
    PduPtr got(DtVistrelControlPdu::createFromNet(header(bytes)));
    ASSERT_TRUE(got);
    EXPECT_EQ(got->length(), 152);
    EXPECT_NE(got->string(), nullptr);
    got->setFromString(got->string());
  }
  std::vector<unsigned char> group = wire::controlPdu(509, 188);
  wire::put32(group, 180, 0xFFFFFFFFu);
  wire::put32(group, 184, 3);
  PduPtr g(DtVistrelControlPdu::createFromNet(header(group)));
  auto* groupPdu = dynamic_cast<DtGroupVCPdu*>(g.get());
  ASSERT_NE(groupPdu, nullptr);
  EXPECT_EQ(groupPdu->numEntitiesToRemove(), -1);
  EXPECT_EQ(groupPdu->entityToAdd(0), "");
}

// Random bodies and lengths for every command: every operation stays inside the PDU's
// memory (the sanitizer run checks this) and no count makes it loop or grow unbounded.
TEST(CreationFromBytes, RandomBytesOfEveryClass) {
  std::mt19937 random(2024);
  OutputCapture quiet(DtDumpOut);
  for (int round = 0; round < 400; ++round) {
    int command = round % 14 + (round % 3 == 0 ? 500 : 0);
    size_t length = 152 + random() % 1500;
    std::vector<unsigned char> bytes = wire::controlPdu(static_cast<uint32_t>(command), length);
    for (size_t i = 152; i < length; ++i) bytes[i] = static_cast<unsigned char>(random());
    PduPtr pdu(DtVistrelControlPdu::createFromNet(header(bytes)));
    ASSERT_TRUE(pdu);
    pdu->printData();
    std::string text = pdu->string();
    pdu->setFromString(text.c_str());
    if (auto* group = dynamic_cast<DtGroupVCPdu*>(pdu.get())) {
      group->setNumEntitiesToRemove(group->numEntitiesToRemove());
      group->setNumEntitiesToAdd(group->numEntitiesToAdd());
      EXPECT_LE(group->length(), 65535);
    }
  }
}

}  // namespace
