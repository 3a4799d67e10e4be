// Command and layer PDUs in both layouts: lengths, defaults, trailing names, text forms
// and dumps.
#include <gtest/gtest.h>

#include <string>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

TEST(Command, FreshPdusInBothLayouts) {
  DtVdcCommandPdu current;
  EXPECT_EQ(current.length(), 172);
  EXPECT_EQ(wire::u16(current.packet(), 146), 2510u);
  EXPECT_EQ(wire::u32(current.packet(), 164), 2489u);
  current.setLayerId(0x01020304u);
  EXPECT_EQ(wire::u32(current.packet(), 168), 0x01020304u);

  DtVdcCommandPduV0 v0;
  EXPECT_EQ(v0.length(), 176);
  EXPECT_EQ(wire::u32(v0.packet(), 152), 0u);
  EXPECT_EQ(wire::u32(v0.packet(), 156), 2489u);
  v0.setLayerId(12);
  EXPECT_EQ(wire::u32(v0.packet(), 164), 12u);
  EXPECT_TRUE(wire::zero(v0.packet(), 160, 4));
  EXPECT_TRUE(wire::zero(v0.packet(), 168, 8));
  OutputCapture cap(DtDumpOut);
  v0.printData();
  EXPECT_EQ(cap.text().find("Param Version"), std::string::npos);

  DtBufferPlaceHolder holder;
  DtVdcCommandPdu lent(&holder);
  EXPECT_EQ(lent.type(), 0u);  // no default on lent bytes
}

TEST(CommandText, LayerIdOnlyForLayerCommands) {
  DtVdcCommandPdu pdu;
  pdu.setObjectId(7);
  pdu.setType(DtVdcCommandRemove);
  pdu.setLayerId(9);
  EXPECT_STREQ(pdu.string(), "7 2511");
  pdu.setType(DtVdcCommandRemoveFromLayer);
  EXPECT_STREQ(pdu.string(), "7 2515 9");

  DtVdcCommandPdu back;
  back.setFromString("7 2514 9");
  EXPECT_EQ(back.objectId(), 7u);
  EXPECT_EQ(back.type(), 2514u);
  EXPECT_EQ(back.layerId(), 9u);
  back.setFromString("8 2512 5");
  EXPECT_EQ(back.layerId(), 9u);
}

TEST(CommandDump, LayerIdLine) {
  DtVdcCommandPdu pdu;
  pdu.setLayerId(4);
  pdu.setType(DtVdcCommandHide);
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  EXPECT_EQ(cap.text().find("LayerId:"), std::string::npos);
  pdu.setType(DtVdcCommandAddToLayer);
  pdu.printData();
  EXPECT_NE(cap.text().find("Type DtVdcCommandAddToLayer (2514)\nParam Version 1\nLayerId: 4\n"),
            std::string::npos)
      << cap.text();
}

TEST(Layer, NameEndsThePduInBothLayouts) {
  DtVdcLayerPdu current;
  EXPECT_EQ(current.length(), 172);
  EXPECT_EQ(wire::u16(current.packet(), 146), 2590u);
  EXPECT_EQ(current.type(), 0u);
  current.setName("0123456789");
  EXPECT_EQ(current.length(), 182);
  EXPECT_EQ(wire::u32(current.packet(), 168), 10u);
  EXPECT_EQ(wire::text(current.packet(), 172, 10), "0123456789");
  EXPECT_EQ(current.name(), "0123456789");
  current.setName("abcd");
  EXPECT_EQ(current.length(), 176);
  current.setName("");
  EXPECT_EQ(current.length(), 176);
  EXPECT_EQ(current.name(), "");

  DtVdcLayerPduV0 v0;
  EXPECT_EQ(v0.length(), 176);
  v0.setName("roads");
  EXPECT_EQ(v0.length(), 181);
  EXPECT_EQ(wire::u32(v0.packet(), 164), 5u);
  EXPECT_EQ(wire::text(v0.packet(), 176, 5), "roads");
  EXPECT_TRUE(wire::zero(v0.packet(), 168, 8));
  EXPECT_EQ(v0.name(), "roads");
}

TEST(LayerText, FirstWordOnlyComesBack) {
  DtVdcLayerPdu pdu;
  pdu.setObjectId(3);
  pdu.setName("two words");
  EXPECT_STREQ(pdu.string(), "3 two words");
  DtVdcLayerPdu back;
  back.setFromString(pdu.string());
  EXPECT_EQ(back.objectId(), 3u);
  EXPECT_EQ(back.name(), "two");
  EXPECT_EQ(back.length(), 175);
  OutputCapture cap(DtDumpOut);
  back.printData();
  EXPECT_NE(cap.text().find("\nName: two\n"), std::string::npos);
}

TEST(Layer, ClaimedNameLengthBeyondThePduStaysBounded) {
  DtVdcLayerPdu source;
  source.setName("ok");
  std::string bytes(source.packet(), source.packet() + source.length());
  DtVdcLayerPdu pdu(reinterpret_cast<const DtNetViewControlPdu*>(bytes.data()), nullptr, nullptr);
  pdu.writeU32(168, 0xFFFFFFFFu);
  EXPECT_EQ(pdu.name(), "ok");
}

}  // namespace
