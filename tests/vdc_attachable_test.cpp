// The attachable part: anchors in both layouts, relative locations, colour and flags,
// the 19-field text form with its asymmetries, and the dump.
#include <gtest/gtest.h>

#include <string>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

struct Offsets {
  size_t flags, kind, rel1, rel2, color, entity1, entity2, object1, object2, pos1, pos2, offset;
};
constexpr Offsets kCurrent = {158, 168, 170, 171, 172, 176, 240, 304, 308, 312, 336, 360};
constexpr Offsets kV0 = {160, 161, 162, 162, 164, 168, 232, 296, 300, 304, 328, 352};

template <typename Pdu>
void checkAnchors(const Offsets& o) {
  Pdu pdu;
  const char* b = pdu.packet();
  using A = DtVdcAttachablePdu;
  pdu.attachTo(DtVector64(1.5, -2.25, 3.0), DtVector64(4, 5, 6));
  EXPECT_EQ(wire::u8(b, o.kind), 1u);
  EXPECT_EQ(wire::f64(b, o.pos1), 1.5);
  EXPECT_EQ(wire::f64(b, o.pos1 + 8), -2.25);
  EXPECT_EQ(wire::f64(b, o.pos2 + 16), 6.0);
  pdu.attachTo(DtString("tank:1"), DtNetU32(77));
  EXPECT_EQ(pdu.attachmentType(), A::DtVcObjectAttachedToEntityObject);
  EXPECT_EQ(wire::text(b, o.entity1, 64), "tank:1");
  EXPECT_EQ(wire::u32(b, o.object2), 77u);
  pdu.attachTo(DtNetU32(9));  // only the kind and object id 1 change
  EXPECT_EQ(wire::u8(b, o.kind), 3u);
  EXPECT_EQ(wire::u32(b, o.object1), 9u);
  EXPECT_EQ(wire::f64(b, o.pos1), 1.5);
  EXPECT_EQ(wire::text(b, o.entity1, 64), "tank:1");
  pdu.attachTo(DtVector64(7, 8, 9), DtString("ship"));
  EXPECT_EQ(wire::u8(b, o.kind), 6u);
  EXPECT_EQ(wire::text(b, o.entity2, 64), "ship");
  pdu.attachTo(DtNetU32(5), DtVector64(1, 2, 3));
  EXPECT_EQ(wire::u8(b, o.kind), 5u);
  pdu.attachTo(DtString("e"), DtVector64(1, 2, 3));
  EXPECT_EQ(wire::u8(b, o.kind), 4u);
  pdu.attachTo(DtVector64(1, 2, 3), DtNetU32(5));
  EXPECT_EQ(wire::u8(b, o.kind), 7u);
  pdu.attachTo(DtNetU32(5), DtString("f"));
  EXPECT_EQ(wire::u8(b, o.kind), 9u);
  pdu.attachTo(DtString("a"), DtString("b"));
  EXPECT_EQ(wire::u8(b, o.kind), 10u);
  pdu.attachTo(DtNetU32(1), DtNetU32(2));
  EXPECT_EQ(wire::u8(b, o.kind), 11u);
  pdu.attachTo(DtString("solo"));
  EXPECT_EQ(wire::u8(b, o.kind), 2u);
  pdu.attachTo(DtVector64(0.5, 0.5, 0.5));
  EXPECT_EQ(wire::u8(b, o.kind), 0u);
  EXPECT_EQ(pdu.attachEntityId(1), "b");
  EXPECT_EQ(pdu.attachObjectId(0), 1u);
  EXPECT_EQ(pdu.position(1), DtVector64(1, 2, 3));

  pdu.setOffset(DtVector64(-1, -2, -3));
  EXPECT_EQ(wire::f64(b, o.offset + 8), -2.0);
  EXPECT_EQ(pdu.offset(), DtVector64(-1, -2, -3));
  unsigned char rgba[4] = {10, 20, 30, 40};
  pdu.setColor(rgba);
  EXPECT_EQ(wire::u32(b, o.color), 0x0A141E28u);
  EXPECT_EQ(pdu.color(), reinterpret_cast<const unsigned char*>(b) + o.color);
  pdu.setRelativeLocation(30, 0);
  pdu.setRelativeLocation(70, 1);
  EXPECT_EQ(wire::u8(b, o.rel1), o.rel1 == o.rel2 ? 70u : 30u);
  EXPECT_EQ(wire::u8(b, o.rel2), 70u);
  EXPECT_EQ(pdu.relativeLocation(0), o.rel1 == o.rel2 ? 70 : 30);
}

TEST(Attachable, AnchorsInTheCurrentLayout) {
  checkAnchors<DtVdcTextPdu>(kCurrent);
}
TEST(Attachable, AnchorsInVersionZero) {
  checkAnchors<DtVdcTextPduV0>(kV0);
}

TEST(Attachable, ScreenPercentagesAreSignedBytes) {
  DtVdcTextPdu pdu;
  pdu.attachTo(DtVector64(9, 9, 9));
  const char p[2] = {50, 20};
  pdu.attachTo(p);
  EXPECT_EQ(pdu.attachmentType(), DtVdcAttachablePdu::DtVcObjectNoAttach);
  EXPECT_EQ(pdu.position(0), DtVector64(0.5, 0.2, 9));  // z stays
  const char q[2] = {static_cast<char>(200), -100};
  pdu.attachTo(p, q);
  EXPECT_EQ(pdu.attachmentType(), DtVdcAttachablePdu::DtVcObjectNoAttachNoAttach);
  EXPECT_EQ(pdu.position(1).x(), -0.56);
  EXPECT_EQ(pdu.position(1).y(), -1.0);
}

TEST(Attachable, OutOfRangeAnchorsAndKindNames) {
  DtVdcTextPdu pdu;
  pdu.attachTo(DtString("x"), DtString("y"));
  EXPECT_EQ(pdu.attachEntityId(2), "");
  EXPECT_EQ(pdu.position(-1), DtVector64());
  EXPECT_EQ(pdu.attachObjectId(5), 0u);
  using A = DtVdcAttachablePdu;
  EXPECT_STREQ(A::typeString(A::DtVcObjectAttachedToObjectObject),
               "DtVcObjectAttachedToObjectObject");
  EXPECT_STREQ(A::typeString(A::DtVcObjectNoAttach), "DtVcObjectNoAttach");
  EXPECT_STREQ(A::typeString(static_cast<A::DtVcObjectAttachment>(12)), "UnknownEnum");
  EXPECT_STREQ(A::typeString(2561), "DtVdc2DText");  // the draw-type names stay visible
}

TEST(Attachable, FlashingIsBitTwoOfTheFlagByte) {
  DtVdcTextPdu current;
  current.setFlashing(true);
  EXPECT_EQ(wire::u8(current.packet(), 158), 0x04u);
  EXPECT_TRUE(current.flashing());
  current.setFlashing(false);
  EXPECT_EQ(wire::u8(current.packet(), 158), 0u);
  DtVdcTextPduV0 v0;
  v0.setFlashing(true);
  EXPECT_EQ(wire::u8(v0.packet(), 160), 0x04u);
  EXPECT_EQ(wire::u8(v0.packet(), 158), 0u);
}

// A text PDU with every attachable field set; its attachable text is checked alone.
void fill(DtVdcTextPdu& pdu) {
  pdu.setObjectId(7);
  pdu.setType(DtVdc3DText);
  pdu.attachTo(DtString("tank-1"), DtString("tank-2"));
  pdu.attachTo(DtVector64(1.5, 2, 3), DtVector64(4, 5, 6));
  pdu.attachTo(DtNetU32(11), DtNetU32(12));
  unsigned char rgba[4] = {1, 2, 3, 4};
  pdu.setColor(rgba);
  pdu.setFlashing(true);
  pdu.setOffset(DtVector64(8, 8, 8));
}

TEST(AttachableText, WritesPositionOnesYAndZForPositionTwo) {
  DtVdcTextPdu pdu;
  fill(pdu);
  EXPECT_STREQ(pdu.DtVdcAttachablePdu::string(),
               "7 2562 11 1.500000 2.000000 3.000000 4.000000 2.000000 3.000000 tank-1 tank-2 "
               "11 12 50 1 2 3 4 1");
}

TEST(AttachableText, ReadingBackLosesWhatTheLineDoesNotCarry) {
  DtVdcTextPdu source;
  fill(source);
  source.setRelativeLocation(20, 0);
  std::string line = source.DtVdcAttachablePdu::string();
  DtVdcTextPdu pdu;
  pdu.DtVdcAttachablePdu::setFromString(line.c_str());
  EXPECT_EQ(pdu.objectId(), 7u);
  EXPECT_EQ(pdu.type(), 2562u);
  EXPECT_EQ(pdu.attachmentType(), DtVdcAttachablePdu::DtVcObjectAttachedToObjectObject);
  EXPECT_EQ(pdu.position(0), DtVector64(1.5, 2, 3));
  EXPECT_EQ(pdu.position(1), DtVector64(4, 2, 3));
  EXPECT_EQ(pdu.attachEntityId(1), "tank-2");
  EXPECT_EQ(pdu.attachObjectId(1), 12u);
  EXPECT_EQ(pdu.relativeLocation(0), 50);  // not applied
  EXPECT_EQ(pdu.offset(), DtVector64());
  EXPECT_EQ(wire::u32(pdu.packet(), 172), 0x01020304u);
  EXPECT_TRUE(pdu.flashing());

  // Single precision on the way in.
  pdu.DtVdcAttachablePdu::setFromString("1 2 0 0.1 0 0 0 0 0 a b 0 0 0 0 0 0 0 2");
  EXPECT_EQ(pdu.position(0).x(), static_cast<double>(0.1f));
  EXPECT_FALSE(pdu.flashing());  // only 1 means flashing
}

TEST(AttachableText, EmptyEntityShiftsTheLaterFieldsAndLongNamesAreCut) {
  DtVdcTextPdu source;
  source.setObjectId(3);
  source.attachTo(DtNetU32(21), DtNetU32(22));
  std::string line = source.DtVdcAttachablePdu::string();
  EXPECT_NE(line.find("0.000000   21 22"), std::string::npos) << line;
  DtVdcTextPdu pdu;
  pdu.DtVdcAttachablePdu::setFromString(line.c_str());
  EXPECT_EQ(pdu.attachEntityId(0), "21");
  EXPECT_EQ(pdu.attachEntityId(1), "22");

  std::string longName(100, 'n');
  std::string text = "1 2 10 0 0 0 0 0 0 " + longName + " b 5 6 0 9 9 9 9 1";
  pdu.DtVdcAttachablePdu::setFromString(text.c_str());
  EXPECT_EQ(pdu.attachEntityId(0), std::string(63, 'n'));
}

TEST(AttachableDump, LabelsInOrder) {
  DtVdcTextPdu pdu;
  fill(pdu);
  OutputCapture cap(DtDumpOut);
  pdu.DtVdcAttachablePdu::printData();
  EXPECT_NE(cap.text().find("Param Version 1\n"
                            "Attachment type DtVcObjectAttachedToObjectObject (11)\n"
                            "pos1 {1.500000, 2.000000, 3.000000}\n"
                            "pos2 {4.000000, 5.000000, 6.000000}\n"
                            "AttachEntityId1 tank-1\nAttachEntityId2 tank-2\n"
                            "AttachObjectId1 11\nAttachObjectId2 12\n"
                            "RelativeLocation(percent) 50\n"
                            "Offset {8.000000, 8.000000, 8.000000}\n"
                            "Color \n r 1\n g 2\n b 3\n a 4\nFlashing true\n"),
            std::string::npos)
      << cap.text();
}

}  // namespace
