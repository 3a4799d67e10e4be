// Entity-attached view PDUs: tether, mimic, offset mimic, track, tether-track and
// mimic-track. Layouts are checked with independent big-endian reads.
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

std::string dumpOf(const DtVistrelControlPdu& pdu) {
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  return cap.text();
}

// The body as it follows the header's four lines.
std::string bodyDumpOf(const DtVistrelControlPdu& pdu) {
  std::string all = dumpOf(pdu);
  size_t flags = all.find("IgnoreFlags");
  return all.substr(all.find('\n', flags) + 1);
}

const std::string k70(70, 'm');

TEST(Tether, LayoutLengthAndCommand) {
  DtTetherVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 308);
  EXPECT_EQ(wire::u16(b, 8), 308u);
  EXPECT_EQ(wire::u16(b, 146), 1u);
  EXPECT_TRUE(wire::zero(b, 152, 156));

  pdu.setTopoUpOffset(DtVector64(0.1, -2.5, 30));
  pdu.setOrientation(DtTaitBryan(0.5, -0.25, 3));
  pdu.setAttachId("1:2:3");
  pdu.setMarkingText("Red 1");
  EXPECT_EQ(wire::f32(b, 156), 0.1f);
  EXPECT_EQ(wire::f32(b, 160), -2.5f);
  EXPECT_EQ(wire::f32(b, 164), 30.0f);
  EXPECT_EQ(wire::f32(b, 168), 0.5f);
  EXPECT_EQ(wire::f32(b, 172), -0.25f);
  EXPECT_EQ(wire::f32(b, 176), 3.0f);
  EXPECT_EQ(wire::text(b, 180, 64), "1:2:3");
  EXPECT_EQ(wire::text(b, 244, 64), "Red 1");
  EXPECT_TRUE(wire::zero(b, 249, 59));
  EXPECT_EQ(pdu.topoUpOffset()[0], static_cast<double>(0.1f));  // narrowed, then widened
  EXPECT_EQ(pdu.orientation(), DtTaitBryan(0.5, -0.25, 3));
  EXPECT_EQ(pdu.attachId(), "1:2:3");
  EXPECT_EQ(pdu.markingText(), "Red 1");
}

TEST(Tether, MarkingTextFillsSixtyFourBytesWithoutTerminator) {
  DtTetherVCPdu pdu;
  pdu.setMarkingText(k70.c_str());
  EXPECT_EQ(wire::text(pdu.packet(), 244, 64), k70.substr(0, 64));
  EXPECT_EQ(pdu.markingText(), k70.substr(0, 64).c_str());
  pdu.setMarkingText("ab");  // a shorter text pads with NULs
  EXPECT_TRUE(wire::zero(pdu.packet(), 246, 62));
}

TEST(Tether, MarkingIsReadOnlyAtFullLength) {
  DtTetherVCPdu pdu;
  pdu.setAttachId("e1");
  pdu.setMarkingText("stale");
  pdu.changeSize(244);  // as from a sender that leaves the marking off
  EXPECT_EQ(wire::text(pdu.packet(), 244, 64), "stale");
  EXPECT_EQ(pdu.markingText(), "");
  EXPECT_STREQ(pdu.string(), "e1 0.000000 0.000000 0.000000 0.000000 0.000000 0.000000 ");
  pdu.changeSize(309);
  EXPECT_EQ(pdu.markingText(), "");
  pdu.changeSize(308);
  EXPECT_EQ(pdu.markingText(), "stale");

  std::vector<unsigned char> bytes = wire::controlPdu(1, 308);
  wire::putText(bytes, 244, "received");
  EXPECT_EQ(DtTetherVCPdu(raw(bytes), nullptr, nullptr).markingText(), "received");
}

TEST(Tether, DumpLabels) {
  DtTetherVCPdu pdu;
  pdu.setAttachId("e1");
  pdu.setMarkingText("Red 1");
  pdu.setTopoUpOffset(DtVector64(1, 2, 3));
  pdu.setOrientation(DtTaitBryan(0.5, 0.25, 0.125));
  EXPECT_EQ(bodyDumpOf(pdu),
            "AttachTo: e1\n"
            "AttachTo (MarkingText): Red 1\n"
            "TopoUpOffset: {1.000000, 2.000000, 3.000000}\n"
            "Orientation: {0.500000, 0.250000, 0.125000}\n");
}

TEST(TetherText, BlankFormUnlessANameHoldsABlank) {
  DtTetherVCPdu pdu;
  pdu.setAttachId("e1");
  pdu.setTopoUpOffset(DtVector64(1, 2, 3));
  pdu.setOrientation(DtTaitBryan(0.5, 0.25, 0.125));
  pdu.setMarkingText("T72");
  EXPECT_STREQ(pdu.string(), "e1 1.000000 2.000000 3.000000 0.500000 0.250000 0.125000 T72");
  pdu.setMarkingText("Red one");
  EXPECT_STREQ(pdu.string(), "e1,1.000000,2.000000,3.000000,0.500000,0.250000,0.125000,Red one");
  pdu.setMarkingText("");
  pdu.setAttachId("my tank");
  EXPECT_STREQ(pdu.string(), "my tank,1.000000,2.000000,3.000000,0.500000,0.250000,0.125000,");
}

TEST(TetherText, ParsesBothFormsAndDropsNumericMarkings) {
  DtTetherVCPdu pdu;
  pdu.setFromString("e2 1 2 3 0.5 0.25 0.125 T72");
  EXPECT_EQ(pdu.attachId(), "e2");
  EXPECT_EQ(pdu.topoUpOffset(), DtVector64(1, 2, 3));
  EXPECT_EQ(pdu.orientation(), DtTaitBryan(0.5, 0.25, 0.125));
  EXPECT_EQ(pdu.markingText(), "T72");

  pdu.setFromString("e2 1 2 3 0.5 0.25 0.125");  // seven fields: the roll is no marking
  EXPECT_EQ(pdu.markingText(), "");
  EXPECT_EQ(pdu.orientation().phi(), 0.125);
  pdu.setFromString("e2 1 2 3 0.5 0.25 0.125 101");
  EXPECT_EQ(pdu.markingText(), "");

  pdu.setFromString("my tank,4,5,6,0,0,0.5,Red one");
  EXPECT_EQ(pdu.attachId(), "my tank");
  EXPECT_EQ(pdu.topoUpOffset(), DtVector64(4, 5, 6));
  EXPECT_EQ(pdu.orientation().phi(), 0.5);
  EXPECT_EQ(pdu.markingText(), "Red one");

  std::string text = pdu.string();
  DtTetherVCPdu copy;
  copy.setFromString(text.c_str());
  EXPECT_STREQ(copy.string(), text.c_str());

  pdu.setFromString("x");  // what cannot be read is set to zero, the marking cleared
  EXPECT_EQ(pdu.attachId(), "x");
  EXPECT_EQ(pdu.topoUpOffset(), DtVector64(0, 0, 0));
  EXPECT_EQ(pdu.markingText(), "");
}

TEST(TetherText, HostileTextStaysInBounds) {
  DtTetherVCPdu pdu;
  std::string huge(5000, 'w');
  pdu.setFromString((huge + " 1e38 1e38 1e38 1e38 1e38 1e38 " + huge).c_str());
  EXPECT_EQ(pdu.attachId().length(), 63u);  // the designator keeps 63 bytes
  EXPECT_EQ(pdu.markingText().length(), 64u);
  EXPECT_EQ(std::string(pdu.string()).size(), 399u);  // cut to the text area
  pdu.setFromString(nullptr);
  EXPECT_EQ(pdu.attachId(), "");
}

TEST(Mimic, SameBodyAsTetherWithItsOwnLabels) {
  DtMimicVCPdu pdu;
  EXPECT_EQ(pdu.length(), 308);
  EXPECT_EQ(wire::u16(pdu.packet(), 146), 3u);
  pdu.setOffset(DtVector64(0.1, 2, 3));
  pdu.setBodyOrientation(DtTaitBryan(0.5, 0.25, 0.125));
  pdu.setAttachId("e1");
  pdu.setMarkingText("M1");
  const char* b = pdu.packet();
  EXPECT_EQ(wire::f32(b, 156), 0.1f);
  EXPECT_EQ(wire::f32(b, 176), 0.125f);
  EXPECT_EQ(wire::text(b, 180, 64), "e1");
  EXPECT_EQ(wire::text(b, 244, 64), "M1");
  EXPECT_EQ(bodyDumpOf(pdu),
            "AttachTo: e1\n"
            "AttachTo (MarkingText): M1\n"
            "Offset: {0.100000, 2.000000, 3.000000}\n"
            "Orientation: {0.500000, 0.250000, 0.125000}\n");
  EXPECT_STREQ(pdu.string(), "e1 0.100000 2.000000 3.000000 0.500000 0.250000 0.125000 M1");
}

TEST(Mimic, OffsetMimicDiffersOnlyInItsCommand) {
  DtOffsetMimicVCPdu offset;
  DtMimicVCPdu mimic;
  EXPECT_EQ(offset.length(), 308);
  EXPECT_EQ(wire::u16(offset.packet(), 146), 4u);
  for (DtMimicVCPdu* p : {static_cast<DtMimicVCPdu*>(&offset), &mimic}) {
    p->setFromString("e9,1,2,3,0,0,0,Blue two");
    p->setViewerCommand(DtVcMimic);
  }
  EXPECT_STREQ(offset.string(), mimic.string());
  EXPECT_EQ(dumpOf(offset), dumpOf(mimic));
  std::vector<unsigned char> bytes = wire::controlPdu(3, 244);
  DtOffsetMimicVCPdu received(raw(bytes), nullptr, nullptr);
  EXPECT_EQ(wire::u16(received.packet(), 146), 4u);
  EXPECT_EQ(received.length(), 244);
  wire::put16(bytes, 146, 504);
  EXPECT_EQ(DtOffsetMimicVCPdu(raw(bytes), nullptr, nullptr).viewerCommand(), 504);
}

TEST(Track, LayoutDumpAndText) {
  DtTrackVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 312);
  EXPECT_EQ(wire::u16(b, 146), 6u);
  pdu.setWorldLocation(DtVector64(6378137.125, -2, 0.1));
  pdu.setTrackId("t1");
  pdu.setMarkingText("Tgt");
  EXPECT_TRUE(wire::zero(b, 156, 4));
  EXPECT_EQ(wire::f64(b, 160), 6378137.125);
  EXPECT_EQ(wire::f64(b, 176), 0.1);  // doubles keep full precision
  EXPECT_EQ(wire::text(b, 184, 64), "t1");
  EXPECT_EQ(wire::text(b, 248, 64), "Tgt");
  EXPECT_EQ(bodyDumpOf(pdu),
            "TrackId: t1\n"
            "TrackId (MarkingText): Tgt\n"
            "WorldLocation: {6378137.125000, -2.000000, 0.100000}\n");
  EXPECT_STREQ(pdu.string(), "t1 6378137.125000 -2.000000 0.100000 Tgt");
  pdu.setFromString("a b,1,2,3,c d");
  EXPECT_EQ(pdu.trackId(), "a b");
  EXPECT_EQ(pdu.markingText(), "c d");
  pdu.setFromString("t2 1 2 3.5");
  EXPECT_EQ(pdu.worldLocation(), DtVector64(1, 2, 3.5));
  EXPECT_EQ(pdu.markingText(), "");

  std::vector<unsigned char> bytes = wire::controlPdu(6, 248, 312);
  wire::putText(bytes, 248, "beyond");
  DtTrackVCPdu shortPdu(raw(bytes), nullptr, nullptr);
  EXPECT_EQ(shortPdu.markingText(), "");
}

// Tether-track and mimic-track share one body; each check runs on both.
template <typename Pdu>
void checkTwoEntityPdu(int command) {
  SCOPED_TRACE(command);
  Pdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 424);
  EXPECT_EQ(wire::u16(b, 8), 424u);
  EXPECT_EQ(wire::u16(b, 146), static_cast<unsigned>(command));
  pdu.setOffset(DtVector64(0.1, 2, -3));
  pdu.setAttachId("a1");
  pdu.setTrackId("t1");
  pdu.setAttachMarkingText("AM");
  pdu.setTrackMarkingText("TM");
  EXPECT_EQ(wire::f32(b, 156), 0.1f);
  EXPECT_EQ(wire::f32(b, 164), -3.0f);
  EXPECT_EQ(wire::text(b, 168, 64), "a1");
  EXPECT_EQ(wire::text(b, 232, 64), "t1");
  EXPECT_EQ(wire::text(b, 296, 64), "AM");
  EXPECT_EQ(wire::text(b, 360, 64), "TM");
  EXPECT_EQ(bodyDumpOf(pdu),
            "AttachId: a1\n"
            "AttachId (MarkingText): AM\n"
            "TrackId: t1\n"
            "TrackId (MarkingText): TM\n"
            "Offset: {0.100000, 2.000000, -3.000000}\n");
  EXPECT_STREQ(pdu.string(), "a1 t1 0.100000 2.000000 -3.000000 AM TM");
  pdu.setTrackMarkingText("");
  EXPECT_STREQ(pdu.string(), "a1 t1 0.100000 2.000000 -3.000000 AM ");
  pdu.setAttachId("a 1");
  EXPECT_STREQ(pdu.string(), "a 1,t1,0.100000,2.000000,-3.000000,AM,");

  pdu.setFromString("x y 1 2 3 P 7");  // the numeric track marking is dropped
  EXPECT_EQ(pdu.attachId(), "x");
  EXPECT_EQ(pdu.trackId(), "y");
  EXPECT_EQ(pdu.offset(), DtVector64(1, 2, 3));
  EXPECT_EQ(pdu.attachMarkingText(), "P");
  EXPECT_EQ(pdu.trackMarkingText(), "");
  pdu.setFromString("x y 1 2 3");
  EXPECT_EQ(pdu.attachMarkingText(), "");
  pdu.setFromString("my a,my t,4,5,6,Mark A,Mark T");
  EXPECT_EQ(pdu.attachId(), "my a");
  EXPECT_EQ(pdu.trackId(), "my t");
  EXPECT_EQ(pdu.offset(), DtVector64(4, 5, 6));
  EXPECT_EQ(pdu.attachMarkingText(), "Mark A");
  EXPECT_EQ(pdu.trackMarkingText(), "Mark T");
  // The round trip keeps an empty attach marking in its place.
  pdu.setAttachMarkingText("");
  std::string text = pdu.string();
  pdu.setFromString(text.c_str());
  EXPECT_EQ(pdu.attachMarkingText(), "");
  EXPECT_EQ(pdu.trackMarkingText(), "Mark T");

  std::vector<unsigned char> bytes = wire::controlPdu(static_cast<uint32_t>(command), 360, 424);
  wire::putText(bytes, 296, "A");
  wire::putText(bytes, 360, "T");
  Pdu shortPdu(raw(bytes), nullptr, nullptr);
  EXPECT_EQ(shortPdu.attachMarkingText(), "");
  EXPECT_EQ(shortPdu.trackMarkingText(), "");
}

TEST(TwoEntity, TetherTrack) {
  checkTwoEntityPdu<DtTetherTrackVCPdu>(7);
}
TEST(TwoEntity, MimicTrack) {
  checkTwoEntityPdu<DtMimicTrackVCPdu>(8);
}

}  // namespace
