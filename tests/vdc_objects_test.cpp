// The PDU bytes that each drawing object produces: screen percentages, doubled corners
// and sizes, degrees for 2D rotations, truncated bytes, attach points and the order in
// which updatePdu() writes.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

// Offsets of the current layout.
constexpr size_t kFlags = 158, kObjectId = 160, kType = 164, kKind = 168, kRelative = 170,
                 kColor = 172, kEntity1 = 176, kEntity2 = 240, kObject1 = 304, kObject2 = 308,
                 kPosition1 = 312, kPosition2 = 336, kOffset = 360;
constexpr size_t kSegments = 392, kRecord = 16;                  // lines
constexpr size_t kPattern = 384, kScale = 388, kRotation = 400;  // poly-objects
constexpr size_t kTrianglePoints = 416, kAreaPoints = 412;

DtVector64 vec64(const char* b, size_t at) {
  return DtVector64(wire::f64(b, at), wire::f64(b, at + 8), wire::f64(b, at + 16));
}
DtVector64 vec32(const char* b, size_t at) {
  return DtVector64(wire::f32(b, at), wire::f32(b, at + 4), wire::f32(b, at + 8));
}
// A screen position as the percentage form leaves it: byte / 100 in x and y.
void expectScreen(const char* b, size_t at, int xPercent, int yPercent) {
  EXPECT_DOUBLE_EQ(wire::f64(b, at), static_cast<float>(xPercent) / 100.0);
  EXPECT_DOUBLE_EQ(wire::f64(b, at + 8), static_cast<float>(yPercent) / 100.0);
}

const DtVdcColor kRgba(0x12, 0x34, 0x56, 0x78);

// ------------------------------------------------------------------ lines

TEST(LineObjects, ScreenLineSendsPercentagesAndEqualShares) {
  DtVdcLine2DObject line(7, DtVdcVector2D(0, 0), DtVdcVector2D(1, 0.5), 3, kRgba,
                         DtVdcSegmentLightning, DtVdcSegmentArrowEnd, 300, 0xF0F0F0F0u, true);
  const char* b = line.pdu().packet();
  EXPECT_EQ(wire::u32(b, kObjectId), 7u);
  EXPECT_EQ(wire::u32(b, kType), 2521u);
  EXPECT_EQ(wire::u8(b, kKind), 1u);  // two free positions
  expectScreen(b, kPosition1, -100, -100);
  expectScreen(b, kPosition2, 100, 0);
  EXPECT_TRUE(wire::zero(b, kOffset, 24));
  EXPECT_EQ(wire::u8(b, kFlags) & 4u, 4u);
  ASSERT_EQ(line.pdu().length(), 392 + 3 * 16);
  EXPECT_EQ(wire::u32(b, 384), 3u);
  for (size_t i = 0; i < 3; ++i) {
    size_t r = kSegments + i * kRecord;
    EXPECT_EQ(wire::u32(b, r), 0x12345678u);
    EXPECT_EQ(wire::u32(b, r + 4), 0xF0F0F0F0u);
    EXPECT_EQ(wire::u32(b, r + 8), 44u);    // 300 cut to 8 bits
    EXPECT_EQ(wire::u8(b, r + 12), 0x09u);  // lightning (8) and arrow at the end (1)
    EXPECT_EQ(wire::u8(b, r + 13), 33u);    // a third, truncated
  }
  EXPECT_NEAR(line.percentage(2), 1.0 / 3, 1e-15);
}

TEST(LineObjects, SegmentValuesTheWireCannotHoldFallBack) {
  DtVdcLine2DObject line(1, DtVdcVector2D(0.5, 0.5), DtVdcVector2D(0.25, 0.75), 2,
                         DtVdcColor::DtVdcRed, DtVdcSegmentStraight, DtVdcSegmentNoArrow, 1, 1,
                         false);
  line.setArrowStyle(static_cast<DtVdcSegmentArrowStyle>(7), 0);
  line.setLineStyle(static_cast<DtVdcSegmentStyle>(2), 0);
  line.setArrowStyle(DtVdcSegmentArrowDouble, 1);
  line.setLineStyle(DtVdcSegmentLightning, 1);
  line.setPercentage(0.29, 1);  // 28.999... on the way
  line.setColor(DtVdcColor(256 + 9, 511, 1000, 255), 1);
  EXPECT_EQ(line.arrowStyle(0), 7);  // kept as given
  line.updatePdu();
  const char* b = line.pdu().packet();
  expectScreen(b, kPosition1, 0, 0);
  expectScreen(b, kPosition2, -50, 50);
  EXPECT_EQ(wire::u8(b, kSegments + 12), 0u);
  EXPECT_EQ(wire::u8(b, kSegments + kRecord + 12), 0x0Bu);
  EXPECT_EQ(wire::u8(b, kSegments + kRecord + 13), 28u);
  EXPECT_EQ(wire::u32(b, kSegments + kRecord), 0x09FFE8FFu);
}

TEST(LineObjects, SegmentCountChangesKeepOrAddRecords) {
  DtVdcLine2DObject line(1, DtVdcVector2D(), DtVdcVector2D(), 3, DtVdcColor::DtVdcBlue,
                         DtVdcSegmentStraight, DtVdcSegmentArrowStart, 5, 0xAAAA, false);
  line.setThickness(9, 1);
  line.setNumSegments(2);
  EXPECT_EQ(line.numSegments(), 2);
  EXPECT_EQ(line.thickness(1), 9u);
  line.setNumSegments(4);
  EXPECT_EQ(line.color(3), DtVdcColor::DtVdcWhite);
  EXPECT_EQ(line.percentage(3), 1.0);  // not rebalanced
  EXPECT_EQ(line.percentage(0), 1.0 / 3);
  line.updatePdu();
  const char* b = line.pdu().packet();
  ASSERT_EQ(line.pdu().length(), 392 + 4 * 16);
  size_t last = kSegments + 3 * kRecord;
  EXPECT_EQ(wire::u32(b, last), 0xFFFFFFFFu);
  EXPECT_EQ(wire::u32(b, last + 4), 0xFFFFFFFFu);
  EXPECT_EQ(wire::u32(b, last + 8), 1u);
  EXPECT_EQ(wire::u8(b, last + 13), 100u);
  EXPECT_EQ(wire::u8(b, kSegments + 12), 2u);
  // Indices beyond the segments read defaults and write nowhere.
  line.setThickness(77, 9);
  EXPECT_EQ(line.thickness(9), 1u);
  line.setNumSegments(1);
  line.updatePdu();
  EXPECT_EQ(line.pdu().length(), 392 + 16);
}

TEST(LineObjects, SceneLineAttachesBothEndsByKind) {
  DtVdc3DAttachPoint entity(DtString("1:2:3"));
  DtVdc3DAttachPoint object(12, 50.9);
  DtVdcLine3DObject line(4, entity, object, 1, DtVector64(1, -2, 3), kRgba, DtVdcSegmentStraight,
                         DtVdcSegmentNoArrow, 2, 0xFF00FF00u, false, true, true);
  const char* b = line.pdu().packet();
  EXPECT_EQ(wire::u32(b, kType), 2522u);
  EXPECT_EQ(wire::u8(b, kKind), 8u);  // entity, then drawing object
  EXPECT_EQ(wire::text(b, kEntity1, 64), "1:2:3");
  EXPECT_EQ(wire::u32(b, kObject2), 12u);
  EXPECT_EQ(wire::u8(b, kRelative + 1), 50u);
  EXPECT_EQ(wire::u8(b, kRelative), 50u);  // the PDU's own default, untouched
  EXPECT_EQ(vec64(b, kOffset), DtVector64(1, -2, 3));
  EXPECT_EQ(wire::u8(b, 388), 1u);
  EXPECT_EQ(wire::u8(b, 389), 1u);
  EXPECT_EQ(wire::u8(b, kSegments + 13), 100u);

  line.setStartAttachment(DtVdc3DAttachPoint(3, 20));
  line.setEndAttachment(DtVdc3DAttachPoint(DtVector64(5, 6, 7)));
  line.setCheckLos(false);
  line.updatePdu();
  EXPECT_EQ(wire::u8(b, kKind), 5u);  // drawing object, then position
  EXPECT_EQ(wire::u8(b, kRelative), 20u);
  EXPECT_EQ(vec64(b, kPosition2), DtVector64(5, 6, 7));
  EXPECT_EQ(wire::u8(b, 388), 0u);

  line.setStartAttachment(DtVdc3DAttachPoint());
  line.setEndAttachment(DtVdc3DAttachPoint(DtString("9:9:9")));
  line.updatePdu();
  EXPECT_EQ(wire::u8(b, kKind), 6u);  // no anchor is the origin
  EXPECT_EQ(vec64(b, kPosition1), DtVector64());
  EXPECT_EQ(wire::text(b, kEntity2, 64), "9:9:9");
}

// ------------------------------------------------------------------ triangles, areas, text

TEST(TriangleObjects, ScreenTriangleDoublesCornersAndSendsDegrees) {
  DtVdcTriangle2DObject tri(8, DtVdcVector2D(0, 0), DtVdcVector2D(0.1, 0), DtVdcVector2D(0, 0.1),
                            DtVdcVector2D(0.5, 0.5), DtVdcVector2D(2, 3), M_PI / 2, kRgba, true,
                            0x0F0F0F0Fu, true);
  const char* b = tri.pdu().packet();
  EXPECT_EQ(wire::u32(b, kType), 2551u);
  EXPECT_EQ(wire::u8(b, kKind), 0u);
  expectScreen(b, kPosition1, 0, 0);
  EXPECT_EQ(vec64(b, kTrianglePoints), DtVector64(0, 0, 0));
  EXPECT_EQ(vec64(b, kTrianglePoints + 24), DtVector64(0.2, 0, 0));
  EXPECT_EQ(vec64(b, kTrianglePoints + 48), DtVector64(0, 0.2, 0));
  EXPECT_EQ(vec32(b, kScale), DtVector64(2, 3, 0));  // the scale itself is not doubled
  EXPECT_EQ(vec32(b, kRotation), DtVector64(0, 0, 90));
  EXPECT_EQ(wire::u32(b, kColor), 0x12345678u);
  EXPECT_EQ(wire::u8(b, kFlags), 0x44u);  // fill and flashing
  EXPECT_EQ(wire::u32(b, kPattern), 0x0F0F0F0Fu);
  EXPECT_TRUE(wire::zero(b, kOffset, 24));

  tri.setFill(false);
  tri.setRotation(-M_PI);
  tri.setOffset(DtVdcVector2D(1, 0));
  tri.updatePdu();
  EXPECT_EQ(wire::u8(b, kFlags), 0x04u);
  EXPECT_FLOAT_EQ(wire::f32(b, kRotation + 8), -180.0f);
  expectScreen(b, kPosition1, 100, -100);
}

TEST(TriangleObjects, SceneTriangleSendsItsCornersAsGiven) {
  DtVdcTriangle3DObject tri(9, DtVector64(1, 2, 3), DtVector64(-4, 5, 6), DtVector64(7, 8, -9),
                            DtVdcColor::DtVdcGreen, false);
  const char* b = tri.pdu().packet();
  EXPECT_EQ(wire::u32(b, kType), 2552u);
  EXPECT_EQ(vec64(b, kTrianglePoints + 24), DtVector64(-4, 5, 6));
  EXPECT_EQ(vec64(b, kTrianglePoints + 48), DtVector64(7, 8, -9));
  EXPECT_EQ(wire::u32(b, kColor), 0x00FF00FFu);
  tri.setFlashing(true);
  tri.vertex1() = DtVector64(0, 0, 1);
  tri.updatePdu();
  EXPECT_EQ(vec64(b, kTrianglePoints), DtVector64(0, 0, 1));
  EXPECT_EQ(wire::u8(b, kFlags), 4u);
}

TEST(AreaObjects, PointsAreFixedAtConstructionAndTextureFollows) {
  std::vector<DtVector64> points;
  for (int i = 0; i < 5; ++i) points.emplace_back(i, -i, 10 * i);
  DtVdcArea3DObject area(10, points, kRgba, "/textures", "grass.png", 300, true);
  const char* b = area.pdu().packet();
  EXPECT_EQ(wire::u32(b, kType), 2555u);
  EXPECT_EQ(wire::u8(b, 1308), 5u);
  EXPECT_EQ(vec64(b, kAreaPoints + 4 * 24), DtVector64(4, -4, 40));
  EXPECT_TRUE(wire::zero(b, kAreaPoints + 5 * 24, 24));
  EXPECT_EQ(wire::text(b, 796, 256), "grass.png");
  EXPECT_EQ(wire::text(b, 1052, 256), "/textures");
  EXPECT_EQ(wire::u8(b, 1309), 44u);  // 300 in one byte
  EXPECT_EQ(wire::u8(b, kFlags), 4u);

  area.setVertex(5, DtVector64(9, 9, 9));
  area.setVertex(-1, DtVector64(9, 9, 9));
  area.setVertex(2, DtVector64(7, 7, 7));
  EXPECT_EQ(area.vertex(7), DtVector64());
  EXPECT_EQ(area.vertex(5), DtVector64());
  EXPECT_EQ(area.vertex(-1), DtVector64());
  area.setTextureFilename("sand.png");
  area.updatePdu();
  EXPECT_EQ(vec64(b, kAreaPoints + 2 * 24), DtVector64(7, 7, 7));
  EXPECT_TRUE(wire::zero(b, kAreaPoints + 5 * 24, 24));
  EXPECT_EQ(wire::text(b, 796, 256), "sand.png");
}

TEST(TextObjects, ScreenAndSceneTextAnchorAndEndThePdu) {
  DtVdcText2DObject label(11, "Alpha", DtVdcVector2D(1, 0), kRgba, false);
  const char* b = label.pdu().packet();
  EXPECT_EQ(wire::u32(b, kType), 2561u);
  expectScreen(b, kPosition1, 100, -100);
  EXPECT_EQ(label.pdu().length(), 388 + 5);
  EXPECT_EQ(wire::u32(b, 384), 5u);
  EXPECT_EQ(std::string(b + 388, 5), "Alpha");
  EXPECT_TRUE(wire::zero(b, kOffset, 24));

  DtVdcText3DObject tag(13, "Bravo two", DtVdc3DAttachPoint(12, 30.7), DtVector64(0, 0, 15), kRgba,
                        true);
  const char* t = tag.pdu().packet();
  EXPECT_EQ(wire::u32(t, kType), 2562u);
  EXPECT_EQ(wire::u8(t, kKind), 3u);
  EXPECT_EQ(wire::u32(t, kObject1), 12u);
  EXPECT_EQ(wire::u8(t, kRelative), 30u);
  EXPECT_EQ(vec64(t, kOffset), DtVector64(0, 0, 15));
  EXPECT_EQ(std::string(t + 388, 9), "Bravo two");
  EXPECT_EQ(wire::u8(t, kFlags), 4u);
  tag.text() = "Hi";
  tag.setAttachment(DtVdc3DAttachPoint(DtVector64(1, 2, 3)));
  tag.updatePdu();
  EXPECT_EQ(tag.pdu().length(), 390);
  EXPECT_EQ(wire::u8(t = tag.pdu().packet(), kKind), 0u);
  EXPECT_EQ(vec64(t, kPosition1), DtVector64(1, 2, 3));
}

// ------------------------------------------------------------------ shapes

TEST(ShapeObjects, ScreenShapesDoubleTheirSizeAndDifferOnlyInType) {
  DtVdcEllipseObject ellipse(20, DtVdcVector2D(0.25, 0.75), DtVdcVector2D(0.1, 0.2), M_PI, kRgba,
                             true, 0x1234u, false);
  DtVdcRectangleObject rectangle(20, DtVdcVector2D(0.25, 0.75), DtVdcVector2D(0.1, 0.2), M_PI,
                                 kRgba, true, 0x1234u, false);
  const char* e = ellipse.pdu().packet();
  const char* r = rectangle.pdu().packet();
  EXPECT_EQ(wire::u32(e, kType), 2541u);
  EXPECT_EQ(wire::u32(r, kType), 2543u);
  expectScreen(e, kPosition1, -50, 50);
  EXPECT_FLOAT_EQ(wire::f32(e, kScale), 0.2f);
  EXPECT_FLOAT_EQ(wire::f32(e, kScale + 4), 0.4f);
  EXPECT_EQ(wire::f32(e, kScale + 8), 0.0f);
  EXPECT_EQ(vec32(e, kRotation), DtVector64(0, 0, 180));
  EXPECT_EQ(wire::u32(e, kPattern), 0x1234u);
  EXPECT_EQ(wire::u8(e, kFlags), 0x40u);
  ASSERT_EQ(ellipse.pdu().length(), rectangle.pdu().length());
  for (int i = 0; i < ellipse.pdu().length(); ++i) {
    bool typeByte = i >= static_cast<int>(kType) && i < static_cast<int>(kType) + 4;
    if (!typeByte) {
      ASSERT_EQ(e[i], r[i]) << "byte " << i;
    }
  }
}

TEST(ShapeObjects, SolidsDoubleTheirDimensionsExceptTheCylinder) {
  DtTaitBryan turn(0.5, -0.25, 1);
  DtVdcCuboidObject box(21, DtVdc3DAttachPoint(DtString("5:5:5")), 2, 3, 4, DtVector64(1, 1, 1),
                        turn, kRgba, false);
  const char* b = box.pdu().packet();
  EXPECT_EQ(wire::u32(b, kType), 2544u);
  EXPECT_EQ(wire::u8(b, kKind), 2u);
  EXPECT_EQ(vec32(b, kScale), DtVector64(4, 6, 8));
  EXPECT_EQ(vec32(b, kRotation), DtVector64(0.5, -0.25, 1));  // radians, as given
  EXPECT_EQ(vec64(b, kOffset), DtVector64(1, 1, 1));
  box.setWidth(5);
  EXPECT_EQ(box.length(), 2.0);
  EXPECT_EQ(box.height(), 4.0);
  box.updatePdu();
  EXPECT_EQ(vec32(b, kScale), DtVector64(4, 10, 8));

  DtVdcEllipsoidObject ball(22, DtVdc3DAttachPoint(DtVector64(7, 8, 9)), DtVector64(1, 2, 3),
                            DtVector64(), DtVdcEllipsoidObject::zeros, kRgba, true);
  EXPECT_EQ(wire::u32(ball.pdu().packet(), kType), 2542u);
  EXPECT_EQ(vec32(ball.pdu().packet(), kScale), DtVector64(2, 4, 6));
  EXPECT_EQ(vec64(ball.pdu().packet(), kPosition1), DtVector64(7, 8, 9));

  DtVdcCylinderObject pipe(23, DtVdc3DAttachPoint(4, 10), DtVdc3DAttachPoint(),
                           DtVdcVector2D(0.5, 0.75), DtVector64(), kRgba, false);
  const char* c = pipe.pdu().packet();
  EXPECT_EQ(wire::u32(c, kType), 2545u);
  EXPECT_EQ(wire::u8(c, kKind), 3u);  // by its start only
  EXPECT_EQ(wire::u8(c, kRelative), 10u);
  EXPECT_EQ(vec32(c, kScale), DtVector64(0, 0.5, 0.75));
  EXPECT_EQ(vec32(c, kRotation), DtVector64());
  pipe.setLength(12);
  pipe.setEndAttachment(DtVdc3DAttachPoint(DtString("6:6:6")));
  pipe.setRotation(turn);
  pipe.updatePdu();
  EXPECT_EQ(wire::u8(c, kKind), 9u);  // drawing object, then entity
  EXPECT_EQ(wire::text(c, kEntity2, 64), "6:6:6");
  EXPECT_EQ(vec32(c, kScale), DtVector64(12, 0.5, 0.75));
  EXPECT_EQ(vec32(c, kRotation), DtVector64(0.5, -0.25, 1));
  EXPECT_EQ(pipe.attachment().drawObjectId(), 4u);
}

// ------------------------------------------------------------------ layers and ids

TEST(LayerObjects, NameTypeAndId) {
  DtVdcDrawLayerObject routes(40, "Routes");
  const char* b = routes.pdu().packet();
  EXPECT_EQ(wire::u32(b, kObjectId), 40u);
  EXPECT_EQ(wire::u32(b, kType), 2590u);
  EXPECT_EQ(wire::u32(b, 168), 6u);
  EXPECT_EQ(routes.pdu().length(), 172 + 6);
  EXPECT_EQ(std::string(b + 172, 6), "Routes");

  DtVdcDrawLayerObject unnamed(41, "");
  EXPECT_EQ(unnamed.pdu().length(), 172);
  EXPECT_EQ(wire::u32(unnamed.pdu().packet(), 168), 0u);

  DtVdcDrawLayerObject copy(routes);
  copy.setId(99);  // the PDU follows at once
  EXPECT_EQ(wire::u32(copy.pdu().packet(), kObjectId), 99u);
  EXPECT_EQ(wire::u32(routes.pdu().packet(), kObjectId), 40u);
  EXPECT_EQ(copy.layerName(), "Routes");
}

}  // namespace
