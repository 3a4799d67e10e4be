// The eyepoint of each mode, set through the controller as a user would, against places
// worked out by hand on the WGS 84 ellipsoid: local axes at 45 N 0 E are
//   north (-s, 0, s), east (0, 1, 0), up (s, 0, s)   with s = sqrt(2)/2.
// Those axes serve for points a few hundred metres away too; the local horizon there is
// turned by distance / earth radius (some 1e-5 rad per 100 m, and meridians converge as
// much), so angles measured at an eye away from 45 N 0 E are checked to 1e-4 rad.
// Angles that travel in Spatial are 32-bit floats: 1e-6 rad.
#include <gtest/gtest.h>

#include <cmath>

#include "at45North.h"
#include "eyepoint.h"
#include "viewer.h"
#include "viewerWire.h"
#include "vistrelControl.h"

using namespace vcviewer;
using vcgeo::Vec3;

using namespace vctest;

namespace {

class EyepointTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // A northbound, level aircraft 1000 m over 45 N 0 E, and a second one 300 m east of it.
    here = vcgeo::toGeocentric({kPi / 4, 0, 1000});
    add(1, {1, 1, 1}, here, vcgeo::fromLocal(here, {0, 0, 0}));
    add(2, {1, 1, 2}, here + kEast * 300.0, vcgeo::fromLocal(here, {0, 0, 0}));
  }
  void add(DtObjectId object, vcrpr::EntityId id, const Vec3& at, const vcgeo::Euler& o) {
    table.objectDiscovered(object, "BaseEntity.PhysicalEntity.Platform.Aircraft", "");
    vcrpr::Spatial sp;
    sp.algorithm = vcrpr::DrAlgorithm::Static;
    sp.worldLocation = at;
    sp.orientation = o;
    const auto idBytes = vcrpr::encode(id);
    const auto spBytes = vcrpr::encode(sp);
    const DtAttributeValue v[] = {{vcrpr::kEntityIdentifier, idBytes.data(), idBytes.size()},
                                  {vcrpr::kSpatial, spBytes.data(), spBytes.size()}};
    table.objectReflected(object, v, 2);
  }
  const Eyepoint& eye() { return tracker.update(viewer.view(), table, clock); }

  double clock = 10.0;
  Entities table{[this] { return clock; }};
  Vec3 here;
  Viewer viewer{"v1", "v1", nullptr, nullptr};
  vctest::ViewerWire wire{viewer};
  DtVistrelRemoteController controller{&wire, DtString("v1")};
  EyepointTracker tracker;
  DtString first{"1:1:1"}, second{"1:1:2"};
};

}  // namespace

TEST_F(EyepointTest, ATetherFiftyMetresBehindANorthboundAircraftIsSouthOfIt) {
  const DtVector64 behind(0, -50, 10);  // east, north, up
  const DtTaitBryan level(0, 0, 0);
  controller.setTetherMode(&first, &behind, &level);
  const Eyepoint& e = eye();
  ASSERT_TRUE(e.placed) << e.problem;
  EXPECT_EQ(e.entity, "1:1:1");
  // 50 m south and 10 m up: (60 s, 0, -40 s) from the aircraft.
  expectNear(e.position - here, {60 * s, 0, -40 * s}, 1e-4);
  EXPECT_NEAR(e.local.psi, 0.0, 1e-9);
  EXPECT_NEAR(e.local.theta, 0.0, 1e-9);

  // The same place in the body frame of a northbound aircraft: 50 m aft, 10 m up.
  const DtVector64 aft(-50, 0, -10);
  controller.setMimicMode(&first, &aft);
  expectNear(eye().position - here, {60 * s, 0, -40 * s}, 1e-4);
  EXPECT_NEAR(eye().local.psi, 0.0, 1e-6);  // and it looks where the aircraft does
}

TEST_F(EyepointTest, MimicTurnsTheOffsetWithTheEntity) {
  // The aircraft heads east now: 50 m aft is 50 m west, its right wing points south.
  add(3, {1, 1, 3}, here, vcgeo::fromLocal(here, {kPi / 2, 0, 0}));
  const DtString third("1:1:3");
  const DtVector64 offset(-50, 20, 0);  // aft and off the right wing
  controller.setMimicMode(&third, &offset);
  expectNear(eye().position - here, kEast * -50.0 + kNorth * -20.0, 1e-4);
  EXPECT_NEAR(eye().local.psi, kPi / 2, 1e-4);
}

TEST_F(EyepointTest, TrackModesLookAtTheTrackedEntity) {
  const DtVector64 west(here.x, here.y - 300.0, here.z);  // 300 m west of the first
  controller.setTrackMode(&second, &west);
  const Eyepoint& e = eye();
  expectNear(e.position, {here.x, here.y - 300, here.z}, 1e-6);
  EXPECT_NEAR(e.local.psi, kPi / 2, 1e-4);  // due east, 600 m away
  EXPECT_NEAR(e.local.theta, 0.0, 1e-3);    // level but for the earth's curve

  const DtVector64 above(0, 0, 100);
  controller.setTetherTrackMode(&first, &second, &above);
  expectNear(eye().position - here, kUp * 100.0, 1e-4);
  EXPECT_NEAR(eye().local.psi, kPi / 2, 1e-9);
  EXPECT_NEAR(eye().local.theta, -std::atan2(100.0, 300.0), 1e-4);  // looking down at it

  // Mimic-track counts its offset in the aircraft's body axes, whose z points down.
  const DtVector64 overhead(0, 0, -100);
  controller.setMimicTrackMode(&first, &second, &overhead);
  expectNear(eye().position - here, kUp * 100.0, 1e-4);
}

TEST_F(EyepointTest, SpheresAroundEntitiesAndPoints) {
  float r = 100, heading = 0, pitch = -0.5f, rate = 0.1f;
  controller.setCompassMode(&first, &r, &heading, &pitch);
  // Looking north and 0.5 rad down from 100 m: the eye is south of it and above it.
  const double horizontal = 100 * std::cos(0.5), height = 100 * std::sin(0.5);
  expectNear(eye().position - here, kNorth * -horizontal + kUp * height, 1e-4);
  EXPECT_NEAR(eye().local.theta, -0.5, 1e-4);

  pitch = 0;
  controller.setOrbitMode(&first, &r, &heading, &pitch, &rate);
  expectNear(eye().position - here, kNorth * -100.0, 1e-4);
  clock += 5;  // half a radian round, looking north-east of north
  expectNear(eye().position - here, (kNorth * std::cos(0.5) + kEast * std::sin(0.5)) * -100.0,
             1e-4);
  EXPECT_NEAR(eye().local.psi, 0.5, 1e-4);

  const DtVector64 point(here.x, here.y, here.z);
  float bearing = kPi / 2;
  controller.setPivotMode(&point, &r, &bearing, &pitch);
  expectNear(eye().position - here, kEast * -100.0, 1e-4);
}

// What the cases above leave out: absolute, offset mimic, and the offsets and roll of a
// sphere, which only a PDU of the class itself carries.
TEST_F(EyepointTest, AbsoluteOffsetMimicAndTheOffsetsAndRollOfASphere) {
  const DtVector64 at(here.x, here.y, here.z);
  const DtTaitBryan look(0.5, 0.25, 0.125);
  controller.setAbsoluteMode(&at, &look);
  expectNear(eye().position, here, 1e-6);
  EXPECT_NEAR(eye().local.psi, 0.5, 1e-6);  // relative to the eye's own horizon
  EXPECT_NEAR(eye().local.theta, 0.25, 1e-6);
  EXPECT_NEAR(eye().local.phi, 0.125, 1e-6);

  const DtVector64 aft(-50, 0, -10);  // placed as mimic places it
  controller.setTurretMode(&first, &aft);
  expectNear(eye().position - here, {60 * s, 0, -40 * s}, 1e-4);

  // Looking north turned a quarter turn by the heading offset looks east, so the eye is
  // west of the aircraft; the pitch offset tips the look down, the roll turns it.
  DtCompassVCPdu compass;
  compass.setAttachId("1:1:1");
  compass.setRadius(100);
  compass.setHeadingOffset(static_cast<float>(kPi / 2));
  compass.setPitchOffset(-0.5f);
  compass.setRoll(0.25f);
  compass.setIgnoreFlags(0);
  compass.setViewerId("v1");
  wire.send(compass.packet(), compass.length());
  expectNear(eye().position - here, kEast * -(100 * std::cos(0.5)) + kUp * (100 * std::sin(0.5)),
             1e-3);
  EXPECT_NEAR(eye().local.psi, kPi / 2, 1e-4);
  EXPECT_NEAR(eye().local.theta, -0.5, 1e-4);
  EXPECT_NEAR(eye().local.phi, 0.25, 1e-4);
}

TEST_F(EyepointTest, AGroupIsFramedFromItsCentre) {
  DtGlobalObjectDesignatorList both;
  both.add("1:1:1");
  both.add("1:1:2");
  float radial = 0, headingOffset = 0, pitchOffset = 0;
  controller.setGroupMode(&both, &radial, &headingOffset, &pitchOffset);
  // Centre 150 m east of the first; spread 150 m; 150 / tan(30 deg) back to the south.
  const double back = 150 / std::tan(kPi / 6);
  expectNear(eye().position - here, kEast * 150.0 + kNorth * -back, 0.01);
}

TEST_F(EyepointTest, WhatCannotBeFoundLeavesTheEyeWhereItWasAndSaysSo) {
  const DtString nobody("9:9:9");
  const DtVector64 none(0, 0, 0);
  controller.setTetherMode(&nobody, &none, nullptr);
  EXPECT_FALSE(eye().placed);
  EXPECT_EQ(eye().problem, "entity 9:9:9 not found");

  controller.setTetherMode(&first, &none, nullptr);
  expectNear(eye().position, here, 1e-6);
  controller.setTetherMode(&nobody, nullptr, nullptr);
  expectNear(eye().position, here, 1e-6);  // still where it was
  EXPECT_EQ(eye().problem, "entity 9:9:9 not found");

  // The marking names an entity when the designator does not.
  table.objectReflected(2, nullptr, 0);
  const auto marking = vcrpr::encodeMarking("VIPER");
  const DtAttributeValue v{vcrpr::kMarking, marking.data(), marking.size()};
  table.objectReflected(2, &v, 1);
  DtTetherVCPdu pdu;
  pdu.setIgnoreFlags(0);
  pdu.setAttachId("");
  pdu.setMarkingText("VIPER");
  pdu.setViewerId("v1");
  wire.send(pdu.packet(), pdu.length());
  expectNear(eye().position - here, kEast * 300.0, 1e-4);
  EXPECT_EQ(eye().problem, "");
}

TEST_F(EyepointTest, ThePagesDocumentGivesTheEyeInGeocentricMetres) {
  // The viewer's own table this time, as the connection fills it.
  viewer.entities().objectDiscovered(1, "BaseEntity.PhysicalEntity.Platform.Aircraft", "Eagle");
  vcrpr::Spatial sp;
  sp.algorithm = vcrpr::DrAlgorithm::Static;
  sp.worldLocation = {6378137.0, 0, 0};  // on the equator at 0 E: up is +X
  const auto bytes = vcrpr::encode(sp);
  const DtAttributeValue v{vcrpr::kSpatial, bytes.data(), bytes.size()};
  viewer.entities().objectReflected(1, &v, 1);

  const DtString eagle("Eagle");
  const DtVector64 up(0, 0, 10);
  const DtTaitBryan level(0, 0, 0);
  controller.setTetherMode(&eagle, &up, &level);
  const std::string json = viewer.json();
  EXPECT_NE(json.find("\"eyepoint\":{\"placed\":true,\"position\":[6378147,0,0]"),
            std::string::npos)
      << json.substr(json.find("\"eyepoint\""), 200);
  EXPECT_NE(json.find("\"entity\":\"Eagle\",\"problem\":\"\"}"), std::string::npos);
}
