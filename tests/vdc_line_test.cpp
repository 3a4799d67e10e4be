// Line PDUs: segment records in the current layout, the two version-0 forms, the style
// byte, the segment-0 setters and the dump.
#include <gtest/gtest.h>

#include <string>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using L = DtVdcLinePdu;

TEST(Line, FreshCurrentLineHasOneFullSegment) {
  DtVdcLinePdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 408);
  EXPECT_EQ(wire::u16(b, 146), 2520u);
  EXPECT_EQ(wire::u32(b, 152), 0x600DF00Du);
  EXPECT_EQ(wire::u32(b, 384), 1u);
  EXPECT_EQ(wire::u8(b, 170), 50u);
  EXPECT_EQ(wire::u8(b, 171), 50u);
  EXPECT_EQ(wire::u8(b, 392 + 13), 100u);
  EXPECT_EQ(pdu.numSegments(), 1u);
  EXPECT_EQ(pdu.percentage(0), 100);
  EXPECT_EQ(pdu.type(), 0u);
}

TEST(Line, SegmentRecordsAreSixteenBytesFrom392) {
  DtVdcLinePdu pdu;
  pdu.setNumSegments(3);
  EXPECT_EQ(pdu.length(), 440);
  unsigned char rgba[4] = {0xDE, 0xAD, 0xBE, 0xEF};
  pdu.setColor(2, rgba);
  pdu.setPattern(2, 0x0F0F00FFu);
  pdu.setThickness(2, 200);
  pdu.setPercentage(2, 33);
  pdu.setAppearance(2, L::DtVdcLineAppearanceLightning);
  pdu.setArrowStyle(2, L::DtVdcStyleArrowDouble);
  const char* b = pdu.packet();
  size_t r = 392 + 32;
  EXPECT_EQ(wire::u32(b, r), 0xDEADBEEFu);
  EXPECT_EQ(wire::u32(b, r + 4), 0x0F0F00FFu);
  EXPECT_EQ(wire::u32(b, r + 8), 200u);
  EXPECT_EQ(wire::u8(b, r + 12), 0x0Bu);
  EXPECT_EQ(wire::u8(b, r + 13), 33u);
  EXPECT_EQ(pdu.appearance(2), L::DtVdcLineAppearanceLightning);
  EXPECT_EQ(pdu.arrowStyle(2), L::DtVdcStyleArrowDouble);
  pdu.setArrowStyle(2, L::DtVdcStyleArrowEnd);  // replaces bits 0-1 only
  EXPECT_EQ(wire::u8(b, r + 12), 0x09u);
  EXPECT_EQ(pdu.color(2)[3], 0xEF);

  pdu.setThickness(3, 9);  // beyond the count: nothing
  EXPECT_EQ(wire::u32(b, 392 + 48 + 8), 0u);
  EXPECT_EQ(pdu.thickness(3), 0u);
  EXPECT_EQ(pdu.color(3), nullptr);

  pdu.setCheckLos(true);
  pdu.setProjected(true);
  EXPECT_EQ(wire::u16(b, 388), 0x0101u);
  EXPECT_TRUE(pdu.checkLos() && pdu.projected());
}

TEST(Line, SegmentZeroSettersIgnoreTheCount) {
  DtVdcLinePdu pdu;
  pdu.setNumSegments(0);
  EXPECT_EQ(pdu.length(), 392);
  EXPECT_EQ(pdu.arrowStyle(0), L::DtVdcStyleNoArrow);
  EXPECT_EQ(pdu.color(0), nullptr);
  pdu.setArrowStyle(L::DtVdcStyleArrowStart);
  pdu.setThickness(4);
  unsigned char rgba[4] = {1, 2, 3, 4};
  pdu.setColor(rgba);
  EXPECT_EQ(pdu.length(), 392);
  EXPECT_EQ(wire::u8(pdu.packet(), 404), 2u);  // beyond the PDU's length
  EXPECT_EQ(wire::u32(pdu.packet(), 400), 4u);
  EXPECT_EQ(wire::u32(pdu.packet(), 392), 0x01020304u);
  EXPECT_EQ(wire::u32(pdu.packet(), 172), 0u);  // not the attachable colour
  EXPECT_EQ(pdu.color(), reinterpret_cast<const unsigned char*>(pdu.packet()) + 392);
}

TEST(LineV0, SingleFormMapsItsSegmentOntoTheAttachableFields) {
  DtVdcLinePduV0 pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 392);
  EXPECT_EQ(wire::u16(b, 146), 2520u);
  EXPECT_EQ(wire::u8(b, 162), 100u);
  EXPECT_EQ(pdu.paramVersion(), 0u);
  EXPECT_EQ(pdu.numSegments(), 1u);
  pdu.setNumSegments(4);
  EXPECT_EQ(pdu.length(), 392);
  EXPECT_EQ(pdu.numSegments(), 1u);

  pdu.setFlashing(true);
  pdu.setArrowStyle(L::DtVdcStyleArrowDouble);
  pdu.setAppearance(L::DtVdcLineAppearanceLightning);
  pdu.setPattern(0xCAFEu);
  pdu.setThickness(7);
  unsigned char rgba[4] = {9, 8, 7, 6};
  pdu.setColor(rgba);
  EXPECT_EQ(wire::u8(b, 160), 0x0Fu);
  EXPECT_EQ(wire::u32(b, 376), 0xCAFEu);
  EXPECT_EQ(wire::u32(b, 380), 7u);
  EXPECT_EQ(wire::u32(b, 164), 0x09080706u);
  // Getters ignore the index; per-segment setters do nothing.
  EXPECT_EQ(pdu.thickness(5), 7u);
  EXPECT_EQ(pdu.arrowStyle(9), L::DtVdcStyleArrowDouble);
  EXPECT_EQ(pdu.color(3)[0], 9);
  pdu.setThickness(0, 99);
  pdu.setPercentage(0, 10);
  EXPECT_EQ(wire::u32(b, 380), 7u);
  EXPECT_EQ(wire::u8(b, 162), 100u);
  pdu.setRelativeLocation(40, 1);
  EXPECT_EQ(pdu.percentage(0), 40);
  EXPECT_EQ(pdu.relativeLocation(0), 40);
  pdu.setCheckLos(true);
  EXPECT_FALSE(pdu.checkLos());
  EXPECT_TRUE(wire::zero(b, 384, 8));
}

TEST(LineV0, SegmentedFormFollowsTheDrawType) {
  DtVdcSegmentedLinePduV0 pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 388);
  EXPECT_EQ(wire::u16(b, 146), 2530u);
  EXPECT_EQ(pdu.numSegments(), 1u);  // type 0 reads as a single line
  pdu.setNumSegments(4);
  EXPECT_EQ(pdu.length(), 388);
  pdu.setType(DtVdc3DSegmentedLine);
  EXPECT_EQ(pdu.numSegments(), 0u);
  pdu.setType(DtVdc2DSegmentedLine);
  pdu.setNumSegments(4);
  EXPECT_EQ(pdu.length(), 452);
  EXPECT_EQ(wire::u32(b, 376), 4u);
  pdu.setThickness(1, 3);
  pdu.setPercentage(3, 25);
  EXPECT_EQ(wire::u32(b, 388 + 16 + 8), 3u);
  EXPECT_EQ(wire::u8(b, 388 + 48 + 13), 25u);

  unsigned char attachable[4] = {1, 1, 1, 1};
  pdu.DtVdcAttachablePdu::setColor(attachable);
  unsigned char rgba[4] = {5, 5, 5, 5};
  pdu.setColor(rgba);  // nothing at all
  EXPECT_EQ(wire::u32(b, 388), 0u);
  EXPECT_EQ(wire::u32(b, 164), 0x01010101u);
  EXPECT_EQ(pdu.color()[0], 1);
  pdu.setColor(0, rgba);
  EXPECT_EQ(wire::u32(b, 388), 0x05050505u);
  pdu.setPattern(0xABCDu);  // segment 0, unlike the colour
  EXPECT_EQ(wire::u32(b, 392), 0xABCDu);
}

TEST(Line, StyleNamesAndDump) {
  DtVdcLinePdu pdu;
  EXPECT_STREQ(pdu.typeString(L::DtVdcStyleArrowStart), "DtVdcStyleArrowStart");
  EXPECT_STREQ(pdu.typeString(L::DtVdcLineAppearanceLightning), "DtVdcLineAppearanceLightning");
  EXPECT_STREQ(pdu.typeString(static_cast<L::DtVdcLineAppearance>(1)), "UnknownEnum");
  EXPECT_STREQ(pdu.typeString(2521), "DtVdc2DLine");
  pdu.setNumSegments(2);
  pdu.setThickness(1, 0xFF);
  pdu.setPattern(1, 0xF0F0u);
  pdu.setAppearance(1, L::DtVdcLineAppearanceLightning);
  unsigned char rgba[4] = {1, 2, 3, 4};
  pdu.setColor(1, rgba);
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  EXPECT_NE(cap.text().find("Flashing false\nSegments: 2\nSegment: 1\nPercentage: 100\n"),
            std::string::npos)
      << cap.text();
  EXPECT_NE(cap.text().find("Segment: 2\nPercentage: 0\nThickness: 255\nPattern: 0x0000f0f0\n"
                            "LineArrowStyle: DtVdcStyleNoArrow (0)\n"
                            "LineAppearance: DtVdcLineAppearanceLightning (8)\n"
                            "Color: \n r: 1\n g: 2\n b: 3\n a: 4\n"),
            std::string::npos)
      << cap.text();
}

TEST(Line, HugeReceivedCountStaysBounded) {
  DtVdcLinePdu source;
  std::string bytes(source.packet(), source.packet() + source.length());
  DtVdcLinePdu pdu(reinterpret_cast<const DtNetViewControlPdu*>(bytes.data()), nullptr, nullptr);
  pdu.writeU32(384, 0xFFFFFFF0u);
  EXPECT_EQ(pdu.numSegments(), 0xFFFFFFF0u);
  EXPECT_EQ(pdu.color(0x0FFFFFFFu), nullptr);
  EXPECT_EQ(pdu.thickness(0x0FFFFFFFu), 0u);
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  EXPECT_NE(cap.text().find("Segments: 240\n"), std::string::npos);
}

}  // namespace
