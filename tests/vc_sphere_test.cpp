// Compass, orbit and pivot view PDUs: the eyepoint on a sphere around an entity or a point.
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

TEST(Compass, LayoutDumpAndText) {
  DtCompassVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 308);
  EXPECT_EQ(wire::u16(b, 8), 308u);
  EXPECT_EQ(wire::u16(b, 146), 2u);
  pdu.setRadius(100.5f);
  pdu.setBodyHeading(1);
  pdu.setPitch(-0.5f);
  pdu.setHeadingOffset(0.25f);
  pdu.setPitchOffset(0.125f);
  pdu.setRoll(2);
  pdu.setAttachId("e1");
  pdu.setMarkingText("C1");
  float expected[] = {100.5f, 1, -0.5f, 0.25f, 0.125f, 2};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(wire::f32(b, 156 + 4 * i), expected[i]) << i;
  EXPECT_EQ(wire::text(b, 180, 64), "e1");
  EXPECT_EQ(wire::text(b, 244, 64), "C1");
  EXPECT_EQ(pdu.pitch(), -0.5f);
  EXPECT_EQ(bodyDumpOf(pdu),
            "AttachTo: e1\n"
            "AttachTo (MarkingText): C1\n"
            "Radius: 100.500000\n"
            "BodyHeading: 1.000000\n"
            "pitch: -0.500000\n"
            "HeadingOff: 0.250000\n"
            "PitchOff: 0.125000\n"
            "Roll: 2.000000\n");
  EXPECT_STREQ(pdu.string(), "e1 100.500000 1.000000 -0.500000 0.250000 0.125000 2.000000 C1");
  pdu.setMarkingText("C 1");
  EXPECT_STREQ(pdu.string(), "e1,100.500000,1.000000,-0.500000,0.250000,0.125000,2.000000,C 1");

  pdu.setFromString("e2 1 2 3 4 5 6 42");  // a numeric marking is dropped
  EXPECT_EQ(pdu.attachId(), "e2");
  EXPECT_EQ(pdu.roll(), 6.0f);
  EXPECT_EQ(pdu.markingText(), "");
  pdu.setFromString("e 3,7,0.1,0,0,0,0,Blue 3");
  EXPECT_EQ(pdu.attachId(), "e 3");
  EXPECT_EQ(pdu.radius(), 7.0f);
  EXPECT_EQ(pdu.bodyHeading(), 0.1f);
  EXPECT_EQ(pdu.markingText(), "Blue 3");
}

TEST(Orbit, LayoutDumpAndText) {
  DtOrbitVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 312);
  EXPECT_EQ(wire::u16(b, 146), 5u);
  pdu.setRadius(50);
  pdu.setAzimuthRate(0.1f);
  pdu.setHeading(1);
  pdu.setPitch(-1);
  pdu.setHeadingOffset(2);
  pdu.setPitchOffset(3);
  pdu.setRoll(4);
  pdu.setAttachId("e1");
  pdu.setMarkingText("O1");
  float expected[] = {50, 0.1f, 1, -1, 2, 3, 4};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(wire::f32(b, 156 + 4 * i), expected[i]) << i;
  EXPECT_EQ(wire::text(b, 184, 64), "e1");
  EXPECT_EQ(wire::text(b, 248, 64), "O1");
  EXPECT_EQ(bodyDumpOf(pdu),
            "AttachTo: e1\n"
            "AttachTo (MarkingText): O1\n"
            "Radius: 50.000000\n"
            "AzimuthRate: 0.100000\n"
            "Heading: 1.000000\n"
            "Pitch: -1.000000\n"
            "HeadingOff: 2.000000\n"
            "PitchOff: 3.000000\n"
            "Roll: 4.000000\n");
  EXPECT_STREQ(pdu.string(),
               "e1 50.000000 0.100000 1.000000 -1.000000 2.000000 3.000000 4.000000 O1");
  pdu.setFromString("my e,1,2,3,4,5,6,7,");
  EXPECT_EQ(pdu.attachId(), "my e");
  EXPECT_EQ(pdu.azimuthRate(), 2.0f);
  EXPECT_EQ(pdu.roll(), 7.0f);
  EXPECT_EQ(pdu.markingText(), "");
}

TEST(SphereMarkings, ReadOnlyAtFullLength) {
  std::vector<unsigned char> compassBytes = wire::controlPdu(2, 308);
  wire::putText(compassBytes, 244, "C");
  DtCompassVCPdu compass(raw(compassBytes), nullptr, nullptr);
  EXPECT_EQ(compass.markingText(), "C");
  compass.changeSize(244);
  EXPECT_EQ(compass.markingText(), "");

  std::vector<unsigned char> orbitBytes = wire::controlPdu(5, 312);
  wire::putText(orbitBytes, 248, "O");
  DtOrbitVCPdu orbit(raw(orbitBytes), nullptr, nullptr);
  EXPECT_EQ(orbit.markingText(), "O");
  orbit.changeSize(248);
  EXPECT_EQ(orbit.markingText(), "");
  EXPECT_EQ(wire::text(orbit.packet(), 248, 64), "O");
}

TEST(Pivot, PackedLayoutAndDump) {
  DtPivotVCPdu pdu;
  const char* b = pdu.packet();
  EXPECT_EQ(pdu.length(), 204);
  EXPECT_EQ(wire::u16(b, 146), 12u);
  pdu.setRadius(10);
  pdu.setBodyHeading(0.5f);
  pdu.setPitch(-0.25f);
  pdu.setHeadingOffset(1);
  pdu.setPitchOffset(2);
  pdu.setRoll(3);
  pdu.setPivotPoint(DtVector64(6378137.25, -1.5, 0.1));
  float expected[] = {10, 0.5f, -0.25f, 1, 2, 3};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(wire::f32(b, 156 + 4 * i), expected[i]) << i;
  EXPECT_EQ(wire::f64(b, 180), 6378137.25);  // no padding before the doubles
  EXPECT_EQ(wire::f64(b, 188), -1.5);
  EXPECT_EQ(wire::f64(b, 196), 0.1);
  EXPECT_EQ(pdu.pivotPoint(), DtVector64(6378137.25, -1.5, 0.1));
  EXPECT_EQ(bodyDumpOf(pdu),
            "Pivot point: {6378137.250000, -1.500000, 0.100000}\n"
            "Radius: 10.000000\n"
            "BodyHeading: 0.500000\n"
            "pitch: -0.250000\n"
            "HeadingOff: 1.000000\n"
            "PitchOff: 2.000000\n"
            "Roll: 3.000000\n");
  EXPECT_STREQ(pdu.string(),
               "10.000000 0.500000 -0.250000 1.000000 2.000000 3.000000 6378137.250000 "
               "-1.500000 0.100000");
}

TEST(Pivot, TextNarrowsThePointToSinglePrecision) {
  DtPivotVCPdu pdu;
  pdu.setFromString("1 2 3 4 5 6 6378137.25 0.1 -2");
  EXPECT_EQ(wire::f64(pdu.packet(), 180), 6378137.0);
  EXPECT_EQ(pdu.pivotPoint(), DtVector64(6378137.0, static_cast<double>(0.1f), -2));
  EXPECT_EQ(pdu.roll(), 6.0f);
  pdu.setFromString("7");
  EXPECT_EQ(pdu.radius(), 7.0f);
  EXPECT_EQ(pdu.bodyHeading(), 0.0f);
  EXPECT_EQ(pdu.pivotPoint(), DtVector64(0, 0, 0));
}

// A derived class sees every field that a text sets, through the virtual setters.
class WatchedPivot : public DtPivotVCPdu {
 public:
  void setRadius(float r) override {
    calls += "radius ";
    DtPivotVCPdu::setRadius(r * 2);
  }
  void setRoll(float r) override {
    calls += "roll ";
    DtPivotVCPdu::setRoll(r);
  }
  void setPivotPoint(const DtVector64& p) override {
    calls += "point";
    DtPivotVCPdu::setPivotPoint(p);
  }
  std::string calls;
};

TEST(Pivot, TextGoesThroughTheVirtualSetters) {
  WatchedPivot pdu;
  DtVistrelControlPdu& base = pdu;
  base.setFromString("1 0 0 0 0 0 1 2 3");
  EXPECT_EQ(pdu.calls, "radius roll point");
  EXPECT_EQ(wire::f32(pdu.packet(), 156), 2.0f);
}

}  // namespace
