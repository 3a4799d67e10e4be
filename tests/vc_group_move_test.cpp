// Group, modeless and move PDUs: the counted entity lists and their resizing, the group
// text form, and the move PDU's double-precision body.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

const DtNetViewControlPdu* raw(const std::vector<unsigned char>& bytes) {
  return reinterpret_cast<const DtNetViewControlPdu*>(bytes.data());
}

std::string bodyDumpOf(const DtVistrelControlPdu& pdu) {
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  const std::string& all = cap.text();
  return all.substr(all.find('\n', all.find("IgnoreFlags")) + 1);
}

TEST(Group, FixedLayout) {
  DtGroupVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 188);
  EXPECT_EQ(wire::u16(b, 146), 9u);
  EXPECT_EQ(pdu.numEntitiesToRemove(), 0);
  EXPECT_EQ(pdu.numEntitiesToAdd(), 0);
  pdu.setRadialOffset(1.5f);
  pdu.setHeading(0.1f);
  pdu.setPitch(-1);
  pdu.setHeadingOffset(2);
  pdu.setPitchOffset(3);
  pdu.setGroupCmd(-1);
  EXPECT_EQ(wire::f32(b, 156), 1.5f);
  EXPECT_EQ(wire::f32(b, 160), 0.1f);
  EXPECT_EQ(wire::f32(b, 172), 3.0f);
  EXPECT_EQ(wire::u32(b, 176), 0xFFFFFFFFu);
  EXPECT_EQ(pdu.groupCmd(), 0xFFFFFFFFu);
}

TEST(GroupLists, GrowAndShrinkInPlace) {
  DtGroupVCPdu pdu;
  pdu.setNumEntitiesToRemove(2);
  pdu.setNumEntitiesToAdd(3);
  EXPECT_EQ(pdu.length(), 508);
  EXPECT_EQ(wire::u16(pdu.packet(), 8), 508u);
  EXPECT_EQ(wire::i32(pdu.packet(), 180), 2);
  EXPECT_EQ(wire::i32(pdu.packet(), 184), 3);
  pdu.setEntityToRemove(0, "a");
  pdu.setEntityToRemove(1, "b");
  for (int j = 0; j < 3; ++j) pdu.setEntityToAdd(j, std::string(1, char('x' + j)).c_str());
  EXPECT_EQ(wire::text(pdu.packet(), 188, 64), "a");
  EXPECT_EQ(wire::text(pdu.packet(), 252, 64), "b");
  EXPECT_EQ(wire::text(pdu.packet(), 316, 64), "x");
  EXPECT_EQ(wire::text(pdu.packet(), 444, 64), "z");

  // Growing the remove list puts the new slot first and moves the add entries back.
  DtGroupVCPdu grown(pdu);
  grown.setNumEntitiesToRemove(3);
  const char* g = grown.packet();
  EXPECT_EQ(grown.length(), 572);
  EXPECT_TRUE(wire::zero(g, 188, 64));
  EXPECT_EQ(wire::text(g, 252, 64), "a");
  EXPECT_EQ(wire::text(g, 316, 64), "b");
  EXPECT_EQ(wire::text(g, 380, 64), "x");
  EXPECT_EQ(grown.entityToRemove(1), "a");
  EXPECT_EQ(grown.entityToAdd(2), "z");

  // Shrinking it keeps the first entries.
  DtGroupVCPdu shrunk(pdu);
  shrunk.setNumEntitiesToRemove(1);
  EXPECT_EQ(shrunk.length(), 444);
  EXPECT_EQ(shrunk.entityToRemove(0), "a");
  EXPECT_EQ(shrunk.entityToRemove(1), "");
  EXPECT_EQ(wire::text(shrunk.packet(), 252, 64), "x");

  // The add list changes at its end.
  pdu.setNumEntitiesToAdd(1);
  EXPECT_EQ(pdu.length(), 380);
  EXPECT_EQ(pdu.entityToAdd(0), "x");
  EXPECT_EQ(pdu.entityToAdd(1), "");
  pdu.setEntityToAdd(1, "ignored");
  pdu.setEntityToAdd(-1, "ignored");
  EXPECT_EQ(pdu.length(), 380);
}

TEST(GroupLists, MinusOneMeansNoEntries) {
  DtGroupVCPdu pdu;
  EXPECT_EQ(pdu.entityToAdd(0), "");
  pdu.setNumEntitiesToRemove(-1);
  pdu.setNumEntitiesToAdd(2);
  EXPECT_EQ(wire::i32(pdu.packet(), 180), -1);
  EXPECT_EQ(pdu.numEntitiesToRemove(), -1);
  EXPECT_EQ(pdu.length(), 316);
  pdu.setEntityToRemove(0, "r");
  pdu.setEntityToAdd(0, "a0");
  pdu.setEntityToAdd(1, "a1");
  EXPECT_EQ(wire::text(pdu.packet(), 188, 64), "a0");  // add slots start right after
  EXPECT_EQ(pdu.entityToRemove(0), "");
  EXPECT_EQ(pdu.entityToAdd(1), "a1");
  pdu.setNumEntitiesToAdd(-1);
  EXPECT_EQ(pdu.length(), 188);
}

TEST(GroupLists, HostileCountsStayBounded) {
  std::vector<unsigned char> bytes = wire::controlPdu(9, 252);
  wire::put32(bytes, 180, 0x7FFFFFFF);
  wire::put32(bytes, 184, 0x7FFFFFFF);
  wire::putText(bytes, 188, "only");
  DtGroupVCPdu pdu(raw(bytes), nullptr, nullptr);
  std::string dump = bodyDumpOf(pdu);
  EXPECT_NE(dump.find("NumToRemove: 2147483647\n only\nNumToAdd: 2147483647\n"), std::string::npos);
  EXPECT_LE(std::string(pdu.string()).size(), 399u);
  EXPECT_EQ(pdu.entityToAdd(1000000), "");
  pdu.setNumEntitiesToAdd(0x7FFFFFFF);
  EXPECT_EQ(pdu.length(), 65535);
  pdu.setNumEntitiesToRemove(1);
  EXPECT_EQ(pdu.entityToRemove(0), "only");
}

TEST(Group, DumpLabels) {
  DtGroupVCPdu pdu;
  pdu.setRadialOffset(1);
  pdu.setGroupCmd(1);
  pdu.setNumEntitiesToRemove(1);
  pdu.setNumEntitiesToAdd(2);
  pdu.setEntityToRemove(0, "r1");
  pdu.setEntityToAdd(0, "a1");
  pdu.setEntityToAdd(1, "a2");
  EXPECT_EQ(bodyDumpOf(pdu),
            "RadOffset 1.000000\n"
            "Heading: 0.000000\n"
            "Pitch: 0.000000\n"
            "HeadingOff: 0.000000\n"
            "PitchOff: 0.000000\n"
            "GroupCmd: WideGroup (1)\n"
            "NumToRemove: 1\n"
            " r1\n"
            "NumToAdd: 2\n"
            " a1\n"
            " a2\n");
  pdu.setGroupCmd(0);
  EXPECT_NE(bodyDumpOf(pdu).find("GroupCmd: Group (0)\n"), std::string::npos);
}

TEST(GroupText, WritesNumbersThenNames) {
  DtGroupVCPdu pdu;
  pdu.setGroupCmd(1);
  pdu.setRadialOffset(2.5f);
  pdu.setNumEntitiesToRemove(1);
  pdu.setNumEntitiesToAdd(2);
  pdu.setEntityToRemove(0, "r1");
  pdu.setEntityToAdd(0, "a1");
  pdu.setEntityToAdd(1, "a2");
  EXPECT_STREQ(pdu.string(), "1 1 2 2.500000 0.000000 0.000000 0.000000 0.000000  r1 a1 a2");
  pdu.setEntityToAdd(1, "a 2");
  EXPECT_STREQ(pdu.string(), "1 1 2 2.500000 0.000000 0.000000 0.000000 0.000000 ,r1,a1,a 2");
}

TEST(GroupText, ReadsNamesButNeverTheGroupCommand) {
  DtGroupVCPdu pdu;
  pdu.setFromString("1 1 2 0.5 1 2 3 4 r1 a1  a2");
  EXPECT_EQ(pdu.groupCmd(), 0u);
  EXPECT_EQ(pdu.radialOffset(), 0.5f);
  EXPECT_EQ(pdu.pitchOffset(), 4.0f);
  EXPECT_EQ(pdu.length(), 188 + 3 * 64);
  EXPECT_EQ(pdu.entityToRemove(0), "r1");
  EXPECT_EQ(pdu.entityToAdd(0), "a1");
  EXPECT_EQ(pdu.entityToAdd(1), "a2");

  pdu.setGroupCmd(1);
  pdu.setFromString("0 1 1 0 0 0 0 0 ,my r,,my a");
  EXPECT_EQ(pdu.groupCmd(), 1u);
  EXPECT_EQ(pdu.entityToRemove(0), "my r");
  EXPECT_EQ(pdu.entityToAdd(0), "my a");

  DtGroupVCPdu fresh;
  fresh.setFromString("0 2 1 0 0 0 0 0 only");  // names run out: later slots stay empty
  EXPECT_EQ(fresh.entityToRemove(0), "only");
  EXPECT_EQ(fresh.entityToRemove(1), "");
  EXPECT_EQ(fresh.entityToAdd(0), "");

  std::string text = "0 1 1 0 0 0 0 0 keep this";
  pdu.setFromString(text.c_str());
  EXPECT_EQ(text, "0 1 1 0 0 0 0 0 keep this");  // the caller's text is not cut up
}

TEST(Modeless, LayoutListsAndNoText) {
  DtModelessVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 292);
  EXPECT_EQ(wire::u16(b, 146), 10u);
  pdu.setPrimary("p1");
  pdu.setSecondary("s1");
  pdu.setNumEntitiesToRemove(1);
  pdu.setNumEntitiesToAdd(1);
  pdu.setEntityToRemove(0, "r1");
  pdu.setEntityToAdd(0, "a1");
  b = pdu.packet();
  EXPECT_EQ(pdu.length(), 420);
  EXPECT_EQ(wire::text(b, 156, 64), "p1");
  EXPECT_EQ(wire::text(b, 220, 64), "s1");
  EXPECT_EQ(wire::i32(b, 284), 1);
  EXPECT_EQ(wire::i32(b, 288), 1);
  EXPECT_EQ(wire::text(b, 292, 64), "r1");
  EXPECT_EQ(wire::text(b, 356, 64), "a1");
  pdu.setNumEntitiesToRemove(2);
  EXPECT_EQ(pdu.entityToRemove(1), "r1");
  EXPECT_EQ(pdu.entityToAdd(0), "a1");
  EXPECT_EQ(bodyDumpOf(pdu),
            "Primary: p1\n"
            "Secondary: s1\n"
            "NumToRemove: 2\n"
            " \n"
            " r1\n"
            "NumToAdd: 1\n"
            " a1\n");
  pdu.setFromString("anything");
  EXPECT_STREQ(pdu.string(), "");
  EXPECT_EQ(pdu.primary(), "p1");
}

TEST(Move, LayoutWithDoubleOrientation) {
  DtMoveVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 208);
  EXPECT_EQ(wire::u16(b, 146), 13u);
  pdu.setTurn(DtMoveVCPdu::RIGHT);
  pdu.setMove(DtMoveVCPdu::BACKWARDS);
  pdu.setReset(true);
  pdu.setPosition(DtVector64(1.5, -2, 6378137.125));
  pdu.setOrientation(DtTaitBryan(0.1, 0.2, 0.3));
  EXPECT_EQ(wire::u8(b, 156), 1u);
  EXPECT_EQ(wire::u8(b, 157), 5u);
  EXPECT_EQ(wire::u8(b, 158), 1u);
  EXPECT_EQ(wire::u8(b, 159), 0u);
  EXPECT_EQ(wire::f64(b, 160), 1.5);
  EXPECT_EQ(wire::f64(b, 176), 6378137.125);
  EXPECT_EQ(wire::f64(b, 184), 0.1);  // doubles: no narrowing
  EXPECT_EQ(wire::f64(b, 200), 0.3);
  EXPECT_EQ(pdu.orientation(), DtTaitBryan(0.1, 0.2, 0.3));
  EXPECT_TRUE(pdu.reset());
  std::vector<unsigned char> bytes = wire::controlPdu(13, 208);
  bytes[156] = 200;
  bytes[158] = 7;
  DtMoveVCPdu received(raw(bytes), nullptr, nullptr);
  EXPECT_EQ(received.turn(), 200);
  EXPECT_TRUE(received.reset());
}

TEST(Move, DumpAndText) {
  DtMoveVCPdu pdu;
  pdu.setTurn(DtMoveVCPdu::LEFT);
  pdu.setMove(DtMoveVCPdu::FORWARDS);
  pdu.setPosition(DtVector64(1, 2, 3));
  EXPECT_EQ(bodyDumpOf(pdu),
            "Turn Direction: LEFT\n"
            "Move Direction: FORWARDS\n"
            "Position: {1.000000, 2.000000, 3.000000}\n");
  pdu.setTurn(static_cast<DtMoveVCPdu::Direction>(7));
  EXPECT_EQ(bodyDumpOf(pdu),
            "Move Direction: FORWARDS\nPosition: {1.000000, 2.000000, 3.000000}\n");

  EXPECT_STREQ(pdu.string(), "7 4 1.000000 2.000000 3.000000");
  pdu.setOrientation(DtTaitBryan(1, 1, 1));
  pdu.setReset(true);
  pdu.setFromString("3 2 6378137.25 0.5 -1");
  EXPECT_EQ(pdu.turn(), DtMoveVCPdu::DOWN);
  EXPECT_EQ(pdu.move(), DtMoveVCPdu::UP);
  EXPECT_EQ(pdu.position(), DtVector64(6378137.0, 0.5, -1));  // read at single precision
  EXPECT_EQ(pdu.orientation(), DtTaitBryan(1, 1, 1));
  EXPECT_TRUE(pdu.reset());
}

}  // namespace
