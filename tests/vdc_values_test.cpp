// The value types of the drawing objects: colours kept in RGB and HSV, 2D vectors and
// their free functions, attach points.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "dtExceptionCheck.h"
#include "vistrelControl.h"

namespace {

void expectRgba(const DtVdcColor& c, unsigned r, unsigned g, unsigned b, unsigned a) {
  EXPECT_EQ(c.red(), r);
  EXPECT_EQ(c.green(), g);
  EXPECT_EQ(c.blue(), b);
  EXPECT_EQ(c.alpha(), a);
}

TEST(Color, RgbAndHsvFollowEachOther) {
  DtVdcColor orange(255, 128, 0, 255);
  EXPECT_EQ(orange.hue(), 30u);
  EXPECT_DOUBLE_EQ(orange.saturation(), 1.0);
  EXPECT_DOUBLE_EQ(orange.value(), 1.0);
  orange.setHue(360);  // counts as 0: red
  expectRgba(orange, 255, 0, 0, 255);

  // Hues fall in each sector of the conversion; channels are truncated, not rounded.
  DtVdcColor c;
  c.setHSV(200, 0.5, 0.5, 77);
  expectRgba(c, 63, 106, 127, 77);
  c.setHSV(100, 1.0, 1.0, 255);  // 84.99999... for red: truncated, not rounded
  expectRgba(c, 84, 255, 0, 255);
  c.setHSV(300, 1.0, 1.0, 255);
  expectRgba(c, 255, 0, 255, 255);

  // Green and blue as the largest channel, and a negative hue wrapped to 0..359.
  EXPECT_EQ(DtVdcColor(0, 255, 128, 255).hue(), 150u);
  EXPECT_EQ(DtVdcColor(128, 0, 255, 255).hue(), 270u);
  EXPECT_EQ(DtVdcColor(255, 0, 1, 255).hue(), 359u);

  DtVdcColor grey(100, 100, 100, 10);
  EXPECT_EQ(grey.hue(), 0u);
  EXPECT_EQ(grey.saturation(), 0.0);
  grey.setValue(0.5);  // 127.5 truncated
  expectRgba(grey, 127, 127, 127, 10);
  grey.setBlue(255);
  EXPECT_EQ(grey.hue(), 240u);
  grey.setAlpha(3);  // alpha touches neither model
  EXPECT_EQ(grey.hue(), 240u);
}

TEST(Color, DefaultsConstantsAndEquality) {
  expectRgba(DtVdcColor(), 0, 0, 0, 255);
  expectRgba(DtVdcColor::DtVdcWhite, 255, 255, 255, 255);
  expectRgba(DtVdcColor::DtVdcBlack, 0, 0, 0, 255);
  expectRgba(DtVdcColor::DtVdcRed, 255, 0, 0, 255);
  expectRgba(DtVdcColor::DtVdcGreen, 0, 255, 0, 255);
  expectRgba(DtVdcColor::DtVdcBlue, 0, 0, 255, 255);
  expectRgba(DtVdcColor::DtVdcYellow, 255, 255, 0, 255);
  expectRgba(DtVdcColor::DtVdcPurple, 255, 0, 255, 255);
  expectRgba(DtVdcColor::DtVdcOrange, 255, 128, 0, 255);

  // Equal RGBA, different HSV: still equal.
  DtVdcColor a(10, 20, 30, 40);
  DtVdcColor b;
  b.setHSV(0, 0.0, 0.0, 40);
  b[0] = 10;  // the subscript leaves HSV alone
  b[1] = 20;
  b[2] = 30;
  EXPECT_NE(a.value(), b.value());
  EXPECT_TRUE(a == b);
  b[3] = 41;
  EXPECT_TRUE(a != b);
}

TEST(Color, SubscriptReachesChannelsAndRejectsOtherIndices) {
  DtVdcColor c(1, 2, 3, 4);
  const DtVdcColor& k = c;
  EXPECT_EQ(k[0] + k[1] + k[2] + k[3], 10u);
  c[2] = 99;
  EXPECT_EQ(c.blue(), 99u);
  EXPECT_EQ(c.hue(), 210u);  // still the HSV of (1, 2, 3)
  for (int bad : {-1, 4}) {
    EXPECT_TRUE(vctest::throwsDtException([&] { c[bad]; }, "Invalid index (should be 0..3)",
                                          "DtVdcColor::operator[]", "vdcColor"));
    EXPECT_TRUE(vctest::throwsDtException([&] { k[bad]; }, "Invalid index (should be 0..3)",
                                          "DtVdcColor::operator[]", "vdcColor"));
  }
}

TEST(Vector2D, NormalizingAndZeroTests) {
  DtVdcVector2D zero, unit(1, 0), v(3, 4);
  zero.normalize();
  unit.normalize();
  v.normalize();
  EXPECT_EQ(zero.x(), 0.0);
  EXPECT_EQ(unit.x(), 1.0);
  EXPECT_DOUBLE_EQ(v.x(), 0.6);
  EXPECT_DOUBLE_EQ(v.y(), 0.8);
  EXPECT_TRUE(v.isNormalized());
  EXPECT_FALSE(DtVdcVector2D(1.01, 0).isNormalized());

  DtVdcVector2D half(0.5, -0.5), big(0.9, -1.5);
  EXPECT_TRUE(half.magnitudeIsZero(0.0));  // components cut to 0
  EXPECT_FALSE(half.magnitudeIsZero());
  EXPECT_FALSE(big.magnitudeIsZero(0.5));  // -1.5 cuts to -1
  EXPECT_TRUE(big.magnitudeIsZero(1.0));
  EXPECT_FALSE(DtVdcVector2D(1e12, 0).magnitudeIsZero(1e6));

  DtVdcVector2D out(7, 7);
  DtVecNormalize(DtVdcVector2D(1e-5, 0), out);  // squared length 1e-10: untouched
  EXPECT_EQ(out.x(), 7.0);
  DtVecNormalize(DtVdcVector2D(0, 2), out);
  EXPECT_EQ(out.y(), 1.0);
}

TEST(Vector2D, ArithmeticFreeFunctionsAndText) {
  DtVdcVector2D a(1, 2), b(4, 6), out;
  DtVecSub(b, a, out);
  EXPECT_EQ(out[0], 3.0);
  EXPECT_EQ(out[1], 4.0);
  DtVecScale(a, -2, out);
  EXPECT_EQ(out.y(), -4.0);
  DtVecNeg(a, out);
  EXPECT_EQ(out.x(), -1.0);
  EXPECT_DOUBLE_EQ(DtDistance(a, b), 5.0);
  EXPECT_DOUBLE_EQ(DtDistSqr(a, b), 25.0);
  EXPECT_DOUBLE_EQ(DtVecInfNorm(DtVdcVector2D(-7, 3)), 7.0);
  EXPECT_NEAR(DtVecCosProd(DtVdcVector2D(1, 0), DtVdcVector2D(1, 1)), std::sqrt(0.5), 1e-12);
  EXPECT_TRUE((a + b).approxEq(DtVdcVector2D(5, 8), 0.0));
  EXPECT_FALSE((b - a).approxEq(DtVdcVector2D(3, 4.2), 0.1));
  EXPECT_EQ(a.dotProduct(b), 16.0);

  const double* p = a;
  EXPECT_EQ(p[1], 2.0);
  const DtVdcVector2D& k = a;
  EXPECT_EQ(k[DtVdcVector2DOffset(1)], 2.0);
  EXPECT_EQ(a.vector3D(), DtVector64(1, 2, 0));
  EXPECT_STREQ(DtVdcVector2D(0.5, -2).string(), "{0.5, -2}");
  std::ostringstream text;
  text << DtVdcVector2D(1.25, 3);
  EXPECT_EQ(text.str(), "[ x= 1.25 y= 3 ]");
  EXPECT_EQ(DtVdcVector2D::ones().x() + DtVdcVector2D::j().y() + DtVdcVector2D::i().y(), 2.0);
}

TEST(AttachPoint, EachKindClearsTheOthers) {
  DtVdc3DAttachPoint none;
  EXPECT_EQ(none.attachmentType(), 0u);
  DtVdc3DAttachPoint at(DtVector64(1, 2, 3));
  EXPECT_EQ(at.attachmentType(), 1u);
  DtVdc3DAttachPoint onObject(9, 40.0);
  EXPECT_EQ(onObject.attachmentType(), 3u);
  EXPECT_EQ(onObject.relativePosition(), 40.0);

  DtVdc3DAttachPoint p(DtString("1:2:3"));
  EXPECT_EQ(p.attachmentType(), 2u);
  p.setDrawObjectId(7);
  EXPECT_EQ(p.attachmentType(), 3u);
  EXPECT_TRUE(p.entityId().isNull());
  EXPECT_EQ(p.location(), DtVector64());
  p.setRelativePosition(25);  // the percentage alone
  EXPECT_EQ(p.attachmentType(), 3u);
  p.setLocation(DtVector64(5, 5, 5));
  EXPECT_EQ(p.drawObjectId(), 0u);
  EXPECT_EQ(p.relativePosition(), 25.0);
  p.setEntityId("4:5:6");
  EXPECT_EQ(p.location(), DtVector64());
  EXPECT_EQ(p.entityId(), "4:5:6");
}

TEST(LineSegment, DefaultsAndFullConstructor) {
  DtVdcLineSegment s;
  EXPECT_EQ(s.color(), DtVdcColor::DtVdcWhite);
  EXPECT_EQ(s.pattern(), 0xFFFFFFFFu);
  EXPECT_EQ(s.thickness(), 1u);
  EXPECT_EQ(s.percentage(), 1.0);
  EXPECT_EQ(s.style(), 0);
  EXPECT_EQ(s.arrowStyle(), 0);
  DtVdcLineSegment t(0.25, DtVdcColor::DtVdcRed, 0xF0F0, 3, DtVdcSegmentLightning,
                     DtVdcSegmentArrowDouble);
  EXPECT_EQ(t.percentage(), 0.25);
  EXPECT_EQ(t.color(), DtVdcColor::DtVdcRed);
  EXPECT_EQ(t.pattern(), 0xF0F0u);
  EXPECT_EQ(t.thickness(), 3u);
  EXPECT_EQ(t.style(), DtVdcSegmentLightning);
  EXPECT_EQ(t.arrowStyle(), DtVdcSegmentArrowDouble);
}

}  // namespace
