// The draw-control header in both layouts, the parameter-version rules, trailing texts,
// draw-type names and the header's dump.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

// Received bytes: a current-layout header whose version field says `version`.
std::vector<unsigned char> markedBytes(unsigned version) {
  std::vector<unsigned char> b = wire::controlPdu(2510, 176);
  wire::put32(b, 152, 0x600DF00Du);
  wire::put16(b, 156, version);
  wire::put32(b, 152 + 8, 0x11111111u);  // current object id (160)
  wire::put32(b, 164, 2512);             // current type
  return b;
}

const DtNetViewControlPdu* raw(const std::vector<unsigned char>& b) {
  return reinterpret_cast<const DtNetViewControlPdu*>(b.data());
}

TEST(DrawHeader, CurrentLayoutHasMarkerVersionThenIdAndType) {
  DtVdcCommandPdu pdu;
  pdu.setObjectId(0x01020304u);
  pdu.setType(DtVdcCommandShow);
  const char* b = pdu.packet();
  EXPECT_EQ(wire::u8(b, 2), 202u);
  EXPECT_EQ(wire::u16(b, 146), 2510u);
  EXPECT_EQ(wire::u32(b, 152), 0x600DF00Du);
  EXPECT_EQ(wire::u16(b, 156), 1u);
  EXPECT_EQ(wire::u16(b, 158), 0u);
  EXPECT_EQ(wire::u32(b, 160), 0x01020304u);
  EXPECT_EQ(wire::u32(b, 164), 2513u);
  EXPECT_EQ(pdu.paramVersion(), 1u);
  EXPECT_EQ(pdu.objectId(), 0x01020304u);
}

TEST(DrawHeader, VersionZeroHasIdAndTypeAt152) {
  DtVdcCommandPduV0 pdu;
  pdu.setObjectId(0xA1B2C3D4u);
  pdu.setType(DtVdcCommandHide);
  const char* b = pdu.packet();
  EXPECT_EQ(wire::u32(b, 152), 0xA1B2C3D4u);
  EXPECT_EQ(wire::u32(b, 156), 2512u);
  EXPECT_TRUE(wire::zero(b, 160, 16));
  EXPECT_EQ(pdu.paramVersion(), 0u);
}

TEST(DrawHeader, ParamVersionRules) {
  DtVdcCommandPdu current;
  current.setParamVersion(0);  // writes nothing: the marker stays
  EXPECT_EQ(current.paramVersion(), 1u);
  current.setParamVersion(0x12345);
  EXPECT_EQ(wire::u16(current.packet(), 156), 0x2345u);

  DtVdcCommandPduV0 v0;
  v0.setObjectId(7);
  v0.setParamVersion(3);
  EXPECT_EQ(wire::u32(v0.packet(), 152), 0x600DF00Du);  // overwrites the version-0 id

  // Version 2 is reported but read with version-0 offsets.
  std::vector<unsigned char> b = markedBytes(2);
  DtVdcCommandPdu two(raw(b), nullptr, nullptr);
  EXPECT_EQ(two.paramVersion(), 2u);
  EXPECT_EQ(two.objectId(), 0x600DF00Du);
  EXPECT_EQ(two.type(), 0x00020000u);
  EXPECT_EQ(two.layerId(), 2512u);  // version-0 layer id at 164
  OutputCapture cap(DtDumpOut);
  two.printData();
  EXPECT_NE(cap.text().find("\nParam Version 2\n"), std::string::npos);

  std::vector<unsigned char> one = markedBytes(1);
  DtVdcCommandPduV0 wrapped(raw(one), nullptr, nullptr);  // the bytes, not the class, decide
  EXPECT_EQ(wrapped.objectId(), 0x11111111u);
  EXPECT_EQ(wrapped.type(), 2512u);
}

TEST(DrawHeader, InternalTextEndsThePdu) {
  DtVdcLayerPdu pdu;
  EXPECT_EQ(pdu.setInternalText("", 300), 0);
  EXPECT_EQ(pdu.length(), 172);
  EXPECT_EQ(pdu.setInternalText("abc", 300), 3);
  EXPECT_EQ(pdu.length(), 303);
  EXPECT_EQ(wire::u16(pdu.packet(), 8), 303u);
  EXPECT_EQ(wire::text(pdu.packet(), 300, 3), "abc");
  EXPECT_EQ(pdu.internalText(3, 300), "abc");
  EXPECT_EQ(pdu.internalText(2, 300), "ab");
  EXPECT_EQ(pdu.internalText(0, 300), "");
  EXPECT_EQ(pdu.internalText(-5, 300), "");
  EXPECT_EQ(pdu.setInternalText("z", 200), 1);  // shrinks as well
  EXPECT_EQ(pdu.length(), 201);
  // A length from the wire far beyond the PDU reads what is there and stops.
  EXPECT_EQ(pdu.internalText(0x7FFFFFFF, 200), "z");
}

TEST(DrawHeader, CopiesOwnTheirBytes) {
  DtVdcLayerPdu original;
  original.setName("first");
  DtVdcLayerPdu copy(original);
  original.setName("second");
  EXPECT_EQ(copy.name(), "first");
  EXPECT_EQ(copy.length(), 177);
  copy = original;
  EXPECT_EQ(copy.name(), "second");
}

TEST(DrawHeader, TypeNames) {
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(2489), "DtVdcUndefined");
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(2515), "DtVdcCommandRemoveFromLayer");
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(2532), "DtVdc3DSegmentedLine");
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(2555), "DtVdc3DArea");
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(2575), "DtVdcAttributeGraphicSingleValue");
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(2583), "DtVdcAttributeValueSetText");
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(2554), "UnknownEnum");
  EXPECT_STREQ(DtVistrelDrawControlPdu::typeString(0), "UnknownEnum");
  EXPECT_STREQ(DtVdcLinePdu::typeString(2590), "DtVdcLayer");
}

TEST(DrawHeader, DumpLinesFollowTheCommonHeader) {
  DtVdcLayerPdu current;
  current.setObjectId(42);
  current.setType(DtVdcLayer);
  OutputCapture cap(DtDumpOut);
  current.printData();
  EXPECT_NE(cap.text().find("Command DtVdcLayer (2590)\n"), std::string::npos);
  EXPECT_NE(cap.text().find("\nObjectId 42\nType DtVdcLayer (2590)\nParam Version 1\nName: \n"),
            std::string::npos)
      << cap.text();
  cap.clear();
  DtVdcLayerPduV0 v0;
  v0.printData();
  EXPECT_NE(cap.text().find("\nObjectId 0\nType UnknownEnum (0)\nName: \n"), std::string::npos);
  EXPECT_EQ(cap.text().find("Param Version"), std::string::npos);
}

}  // namespace
