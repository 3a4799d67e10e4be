// Attribute and attribute-update PDUs: offsets in both layouts, the range flag that owns
// the whole flag byte, trailing texts, text forms and dumps.
#include <gtest/gtest.h>

#include <string>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

template <typename Pdu>
void checkAttribute(size_t flags, size_t group, size_t nameLength) {
  Pdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 408);
  EXPECT_EQ(wire::u16(b, 146), 2570u);
  pdu.setAttributeGroupId(0xBEEFu);
  pdu.setRange(-1.5, 99.25);
  pdu.setName("speed:");
  EXPECT_EQ(wire::u32(b, group), 0xBEEFu);
  EXPECT_EQ(wire::f64(b, 384), -1.5);
  EXPECT_EQ(wire::f64(b, 392), 99.25);
  EXPECT_EQ(wire::u8(b, flags), 1u);
  EXPECT_EQ(wire::u32(b, nameLength), 6u);
  EXPECT_EQ(wire::text(b, 408, 6), "speed:");
  EXPECT_EQ(pdu.length(), 414);
  EXPECT_EQ(pdu.name(), "speed:");
  pdu.setName("");
  EXPECT_EQ(pdu.length(), 414);
  EXPECT_EQ(wire::u32(b, nameLength), 0u);
  EXPECT_EQ(pdu.name(), "");
}

TEST(Attribute, FieldsInBothLayouts) {
  checkAttribute<DtVdcAttributePdu>(158, 400, 404);
  checkAttribute<DtVdcAttributePduV0>(160, 380, 376);
}

TEST(Attribute, RangeOwnsTheWholeFlagByte) {
  DtVdcAttributePdu pdu;
  EXPECT_FALSE(pdu.hasRange());
  pdu.setFlashing(true);
  EXPECT_TRUE(pdu.hasRange());
  pdu.setRange(0, 1);
  EXPECT_FALSE(pdu.flashing());
  EXPECT_EQ(wire::u8(pdu.packet(), 158), 1u);
}

TEST(AttributeText, NameAndRangeTravelAtTheEnd) {
  DtVdcAttributePdu source;
  source.setObjectId(8);
  source.setAttributeGroupId(3);
  source.setName("fuel");
  source.setRange(0, 100);
  std::string line = source.string();
  std::string tail = " 3 1 fuel 1 0.000000 100.000000";
  ASSERT_EQ(line.substr(line.size() - tail.size()), tail) << line;
  DtVdcAttributePdu pdu;
  pdu.setFromString(line.c_str());
  EXPECT_EQ(pdu.objectId(), 8u);
  EXPECT_EQ(pdu.attributeGroupId(), 3u);
  EXPECT_EQ(pdu.name(), "fuel");
  EXPECT_TRUE(pdu.hasRange());
  EXPECT_EQ(pdu.rangeMax(), 100.0);

  DtVdcAttributePdu unnamed;
  unnamed.setAttributeGroupId(4);
  line = unnamed.string();
  tail = " 4 0 0 0 0.000000 0.000000";
  ASSERT_EQ(line.substr(line.size() - tail.size()), tail) << line;
  DtVdcAttributePdu back;
  back.setName("kept");
  back.setFromString(line.c_str());
  EXPECT_EQ(back.name(), "kept");  // the placeholder is not applied
  EXPECT_FALSE(back.hasRange());
  EXPECT_EQ(back.attributeGroupId(), 4u);
}

TEST(AttributeDump, RangeLinesOnlyWithARange) {
  DtVdcAttributePdu pdu;
  pdu.setAttributeGroupId(2);
  pdu.setName("n");
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  EXPECT_NE(cap.text().find("Flashing false\nAttribute group: 2\nName: n\n"), std::string::npos)
      << cap.text();
  cap.clear();
  pdu.setRange(1, 2);
  pdu.printData();
  EXPECT_NE(
      cap.text().find("Attribute group: 2\nRange: \n Min: 1.000000\n Max: 2.000000\nName: n\n"),
      std::string::npos)
      << cap.text();
}

template <typename Pdu>
void checkUpdate(int length, size_t group, size_t textLength, size_t text) {
  Pdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), length);
  EXPECT_EQ(wire::u16(b, 146), 2580u);
  pdu.setValueX(1.25);
  pdu.setValueY(-8.5);
  pdu.setGroupId(0x0A0B0C0Du);
  pdu.setText("on");
  EXPECT_EQ(wire::f64(b, 168), 1.25);
  EXPECT_EQ(wire::f64(b, 176), -8.5);
  EXPECT_EQ(wire::u32(b, group), 0x0A0B0C0Du);
  EXPECT_EQ(wire::u32(b, textLength), 2u);
  EXPECT_EQ(wire::text(b, text, 2), "on");
  EXPECT_EQ(pdu.length(), length + 2);
  EXPECT_EQ(pdu.text(), "on");
  EXPECT_EQ(pdu.groupId(), 0x0A0B0C0Du);
}

TEST(AttributeUpdate, FieldsInBothLayouts) {
  checkUpdate<DtVdcAttributeUpdatePdu>(192, 184, 188, 192);
  checkUpdate<DtVdcAttributeUpdatePduV0>(196, 164, 184, 196);
}

TEST(AttributeUpdateText, FormFollowsTheType) {
  DtVdcAttributeUpdatePdu pdu;
  pdu.setObjectId(9);
  pdu.setGroupId(5);
  pdu.setValueX(1.5);
  pdu.setValueY(2);
  pdu.setText("two words");
  pdu.setType(DtVdcAttributeValueSet);
  EXPECT_STREQ(pdu.string(), "9 2581 1.500000 2.000000");
  pdu.setType(DtVdcAttributeValueReset);
  EXPECT_STREQ(pdu.string(), "9 2582");
  pdu.setType(DtVdcAttributeValueSetText);
  EXPECT_STREQ(pdu.string(), "9 2583 two words");
  pdu.setType(DtVdcAttributeUpdate);
  EXPECT_STREQ(pdu.string(), "9 2583 two words");  // what the buffer held

  DtVdcAttributeUpdatePdu back;
  back.setFromString("9 2583 two words");
  EXPECT_EQ(back.type(), 2583u);
  EXPECT_EQ(back.text(), "two");
  back.setFromString("4 2581 -3.5 7");
  EXPECT_EQ(back.objectId(), 4u);
  EXPECT_EQ(back.valueX(), -3.5);
  EXPECT_EQ(back.valueY(), 7.0);
}

TEST(AttributeUpdateDump, LinesFollowTheType) {
  DtVdcAttributeUpdatePdu pdu;
  pdu.setGroupId(6);
  pdu.setText("t");
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  EXPECT_NE(cap.text().find("Param Version 1\nGroupId: 6\n"), std::string::npos);
  EXPECT_EQ(cap.text().substr(cap.text().size() - 11), "GroupId: 6\n");
  cap.clear();
  pdu.setType(DtVdcAttributeValueSetText);
  pdu.printData();
  EXPECT_NE(cap.text().find("GroupId: 6\nText: t\n"), std::string::npos);
  cap.clear();
  pdu.setType(DtVdcAttributeValueSet);
  pdu.setValueX(3);
  pdu.printData();
  EXPECT_NE(cap.text().find("GroupId: 6\nValueX: 3.000000\nValueY: 0.000000\n"), std::string::npos);
}

}  // namespace
