// Poly-object, triangle, area and text PDUs: offsets in both layouts, defaults, the
// nested text forms and their fixed blank counts.
#include <gtest/gtest.h>

#include <string>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

template <typename Pdu>
void checkPoly(size_t pattern, size_t scale, size_t rotation, size_t flags) {
  Pdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 412);
  EXPECT_EQ(wire::u16(b, 146), 2540u);
  pdu.setPattern(0x12345678u);
  pdu.setScale(DtVector64(0.1, 2, 3));
  pdu.setRotation(DtTaitBryan(0.5, -0.25, 1.0));
  pdu.setFill(true);
  pdu.setFlashing(true);
  EXPECT_EQ(wire::u32(b, pattern), 0x12345678u);
  EXPECT_EQ(wire::f32(b, scale), 0.1f);
  EXPECT_EQ(wire::f32(b, scale + 8), 3.0f);
  EXPECT_EQ(wire::f32(b, rotation), 0.5f);
  EXPECT_EQ(wire::f32(b, rotation + 4), -0.25f);
  EXPECT_EQ(wire::f32(b, rotation + 8), 1.0f);
  EXPECT_EQ(wire::u8(b, flags), 0x44u);
  EXPECT_EQ(pdu.scale().x(), static_cast<double>(0.1f));
  EXPECT_EQ(pdu.rotation(), DtTaitBryan(0.5, -0.25, 1.0));
  pdu.setFill(false);
  EXPECT_EQ(wire::u8(b, flags), 0x04u);
}

TEST(PolyObject, FieldsInBothLayouts) {
  checkPoly<DtVdcPolyObjectPdu>(384, 388, 400, 158);
  checkPoly<DtVdcPolyObjectPduV0>(376, 380, 392, 160);
}

TEST(PolyObject, DefaultsDifferByLayout) {
  DtVdcPolyObjectPdu current;
  EXPECT_EQ(wire::u32(current.packet(), 384), 0x00FFFFFFu);
  EXPECT_EQ(wire::u16(current.packet(), 170), 0x6464u);
  DtVdcPolyObjectPduV0 v0;
  EXPECT_EQ(wire::u8(v0.packet(), 162), 50u);
  EXPECT_EQ(v0.pattern(), 0u);
  DtBufferPlaceHolder holder;  // lent bytes get no defaults
  DtVdcPolyObjectPdu lent(&holder);
  EXPECT_EQ(lent.pattern(), 0u);
  EXPECT_EQ(lent.paramVersion(), 1u);
}

TEST(PolyObjectText, ReaderSkipsTwentyBlanksAndStartsAtThePattern) {
  DtVdcPolyObjectPdu source;
  source.setObjectId(4);
  source.setFill(true);
  source.setPattern(77);
  source.setScale(DtVector64(2, 3, 4));
  source.setRotation(DtTaitBryan(5, 6, 7));
  std::string line = source.string();
  std::string tail = " 1 77 2.000000 3.000000 4.000000 5.000000 6.000000 7.000000";
  ASSERT_EQ(line.substr(line.size() - tail.size()), tail);
  DtVdcPolyObjectPdu pdu;
  pdu.setFromString(line.c_str());
  EXPECT_EQ(pdu.objectId(), 4u);
  EXPECT_TRUE(pdu.fill());       // 77: non-zero
  EXPECT_EQ(pdu.pattern(), 2u);  // "2" of "2.000000"; the rest, ".000000", is scale x
  EXPECT_EQ(pdu.scale(), DtVector64(0, 3, 4));
  EXPECT_EQ(pdu.rotation(), DtTaitBryan(5, 6, 7));
}

TEST(Triangle, CornersInBothLayouts) {
  DtVdcTrianglePdu current;
  DtVdcTrianglePduV0 v0;
  EXPECT_EQ(current.length(), 488);
  EXPECT_EQ(v0.length(), 484);
  EXPECT_EQ(wire::u16(v0.packet(), 146), 2550u);
  for (int i = 0; i < 3; ++i) {
    current.setPoint(i, DtVector64(i, 10 + i, 20 + i));
    v0.setPoint(i, DtVector64(i, 10 + i, 20 + i));
  }
  EXPECT_EQ(wire::f64(current.packet(), 416 + 48 + 16), 22.0);
  EXPECT_EQ(wire::f64(v0.packet(), 404 + 24 + 8), 11.0);
  EXPECT_TRUE(wire::zero(current.packet(), 412, 4));
  current.setPoint(3, DtVector64(1, 1, 1));
  EXPECT_TRUE(wire::zero(current.packet(), 488, 24));
  EXPECT_EQ(current.point(3), DtVector64());
  EXPECT_EQ(current.point(-1), DtVector64());
  EXPECT_EQ(wire::u16(current.packet(), 170), 0x3232u);
  EXPECT_EQ(wire::u8(v0.packet(), 162), 50u);
}

TEST(TriangleText, ReaderLinesUpWithTheWriter) {
  DtVdcTrianglePdu source;
  source.setPattern(3);
  for (int i = 0; i < 3; ++i) source.setPoint(i, DtVector64(i + 0.5, i + 1.5, i + 2.5));
  std::string line = source.string();
  DtVdcTrianglePdu pdu;
  pdu.setFromString(line.c_str());
  for (int i = 0; i < 3; ++i) EXPECT_EQ(pdu.point(i), source.point(i)) << i;
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  // The poly-object reader started one field late: the pattern 3 became the fill.
  EXPECT_NE(cap.text().find("Fill 0x00000001\nPattern 0x00000000\nScale "), std::string::npos);
  EXPECT_NE(cap.text().find("Point: 3\nlocation: {2.500000, 3.500000, 4.500000}\n"),
            std::string::npos);
}

TEST(Area, PointsAndFixedTextureFields) {
  DtVdcAreaPdu current;
  DtVdcAreaPduV0 v0;
  EXPECT_EQ(current.length(), 1312);
  EXPECT_EQ(v0.length(), 796);
  EXPECT_EQ(wire::u16(v0.packet(), 146), 2553u);
  current.setPoint(15, DtVector64(1, 2, 3));
  v0.setPoint(15, DtVector64(1, 2, 3));
  EXPECT_EQ(wire::f64(current.packet(), 412 + 360 + 16), 3.0);
  EXPECT_EQ(wire::f64(v0.packet(), 404 + 360), 1.0);
  current.setPoint(16, DtVector64(9, 9, 9));
  EXPECT_TRUE(wire::zero(current.packet(), 796, 24));
  EXPECT_EQ(current.point(16), DtVector64());

  // The same offsets in version 0, past its length.
  v0.setNumPoints(0x105);
  v0.setNumTextureTiles(3);
  v0.setTextureFilename("grass.png");
  v0.setTextureDirectory("/tex");
  EXPECT_EQ(v0.length(), 796);
  EXPECT_EQ(wire::u8(v0.packet(), 1308), 5u);
  EXPECT_EQ(wire::u8(v0.packet(), 1309), 3u);
  EXPECT_EQ(wire::text(v0.packet(), 796, 256), "grass.png");
  EXPECT_EQ(wire::text(v0.packet(), 1052, 256), "/tex");
  EXPECT_EQ(v0.textureDirectory(), "/tex");

  std::string name(300, 'x');
  current.setTextureFilename(name.c_str());
  EXPECT_EQ(current.textureFilename(), std::string(256, 'x'));
  EXPECT_EQ(wire::u8(current.packet(), 1052), 0u);
  current.setTextureFilename("a");
  EXPECT_TRUE(wire::zero(current.packet(), 797, 255));
}

TEST(AreaText, CarriesAllSixteenPointsAndReadsFromTheFiftiethBlank) {
  DtVdcAreaPdu source;
  source.setNumPoints(3);
  source.setPoint(0, DtVector64(1.5, 2, 3));
  source.setTextureDirectory("dir");
  source.setTextureFilename("file");
  source.setNumTextureTiles(4);
  std::string line = source.string();
  std::string points = " 3 1.5 2 3";
  for (int i = 0; i < 45; ++i) points += " 0";
  EXPECT_NE(line.find(points + " dir file 4"), std::string::npos) << line;

  // Hand-made line: 50 blanks, then the count, 48 coordinates, names and tiles.
  std::string text;
  for (int i = 0; i < 50; ++i) text += "x ";
  text += "2";
  for (int i = 0; i < 48; ++i) text += " " + std::to_string(i);
  text += " d f 7";
  DtVdcAreaPdu pdu;
  pdu.setFromString(text.c_str());
  EXPECT_EQ(pdu.numPoints(), 2);
  EXPECT_EQ(pdu.point(15), DtVector64(45, 46, 47));
  EXPECT_EQ(pdu.textureDirectory(), "d");
  EXPECT_EQ(pdu.textureFilename(), "f");
  EXPECT_EQ(pdu.numTextureTiles(), 7);
  pdu.setFromString("");  // short lines read as zeros, nothing else
  EXPECT_EQ(pdu.numPoints(), 0);
  EXPECT_EQ(pdu.textureFilename(), "");
}

TEST(AreaDump, ListsCountedPointsThenTexture) {
  DtVdcAreaPdu pdu;
  pdu.setNumPoints(1);
  pdu.setPoint(0, DtVector64(1, 2, 3));
  pdu.setTextureFilename("f");
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  EXPECT_NE(cap.text().find("\nPoint 1\nlocation {1.000000, 2.000000, 3.000000}\n"
                            "texture filename f\ntexture directory \ntiling factor 0\n"),
            std::string::npos)
      << cap.text();
  EXPECT_EQ(cap.text().find("Point 2"), std::string::npos);
}

TEST(Text, TextEndsThePduAt388InBothLayouts) {
  DtVdcTextPdu current;
  DtVdcTextPduV0 v0;
  current.setText("hello");
  v0.setText("hello");
  EXPECT_EQ(current.length(), 393);
  EXPECT_EQ(v0.length(), 393);
  EXPECT_EQ(wire::u32(current.packet(), 384), 5u);
  EXPECT_EQ(wire::u32(v0.packet(), 376), 5u);
  EXPECT_TRUE(wire::zero(v0.packet(), 380, 8));
  EXPECT_EQ(wire::text(v0.packet(), 388, 5), "hello");
  EXPECT_EQ(v0.text(), "hello");
  current.setText("");
  EXPECT_EQ(current.length(), 393);
  EXPECT_EQ(wire::u32(current.packet(), 384), 0u);
  EXPECT_EQ(current.text(), "");
}

TEST(TextText, ReaderKeepsTheLastWord) {
  DtVdcTextPdu source;
  source.setObjectId(5);
  source.setText("two words");
  std::string line = source.string();
  EXPECT_EQ(line.substr(line.size() - 12), " 0 two words");
  DtVdcTextPdu pdu;
  pdu.setFromString(line.c_str());
  EXPECT_EQ(pdu.objectId(), 5u);
  EXPECT_EQ(pdu.text(), "words");
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  EXPECT_NE(cap.text().find("Flashing false\nText: words\n"), std::string::npos);
}

}  // namespace
