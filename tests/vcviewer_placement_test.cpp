// Where the viewer's pictures put things: drawings hung on entities (by identifier, name
// or marking; unknown and ambiguous ones), along other drawings, the local frame the
// pictures are drawn in, the trails, and what the page's document and the SVG say of it.
// Places are worked out by hand at 45 N 0 E (at45North.h).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "at45North.h"
#include "placement.h"
#include "viewer.h"
#include "viewerWire.h"
#include "vistrelControl.h"

using namespace vcviewer;
using vcgeo::Vec3;

using namespace vctest;

namespace {

class PlacementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    here = vcgeo::toGeocentric({kPi / 4, 0, 1000});
    // Northbound at 100 m/s; a second one 300 m east, parked; both marked as a pair.
    add(1, {1, 1, 1}, "LEAD", here, kNorth * 100.0);
    add(2, {1, 1, 2}, "WING", here + kEast * 300.0, Vec3());
  }
  void add(DtObjectId object, vcrpr::EntityId id, const std::string& marking, const Vec3& at,
           const Vec3& velocity) {
    Entities& table = viewer.entities();
    table.objectDiscovered(object, "BaseEntity.PhysicalEntity.Platform.Aircraft",
                           "plane" + std::to_string(object));
    vcrpr::Spatial sp;
    sp.algorithm = vcrpr::DrAlgorithm::FPW;
    sp.worldLocation = at;
    sp.velocity = velocity;
    sp.orientation = vcgeo::fromLocal(here, {0, 0, 0});
    const auto idBytes = vcrpr::encode(id);
    const auto spBytes = vcrpr::encode(sp);
    const auto markBytes = vcrpr::encodeMarking(marking);
    const DtAttributeValue v[] = {{vcrpr::kEntityIdentifier, idBytes.data(), idBytes.size()},
                                  {vcrpr::kSpatial, spBytes.data(), spBytes.size()},
                                  {vcrpr::kMarking, markBytes.data(), markBytes.size()}};
    table.objectReflected(object, v, 3);
  }
  unsigned int text(const DtString& entity, const DtVector64& offset) {
    return drawer.add(new DtVdcText3DObject(drawer.nextId(), "label", DtVdc3DAttachPoint(entity),
                                            offset, DtVdcColor::DtVdcWhite, false));
  }
  unsigned int line(const DtVdc3DAttachPoint& from, const DtVdc3DAttachPoint& to) {
    return drawer.add(new DtVdcLine3DObject(
        drawer.nextId(), from, to, 1, DtVector64(), DtVdcColor::DtVdcRed, DtVdcSegmentStraight,
        DtVdcSegmentNoArrow, 1, 0xFFFFFFFF, false, false, false));
  }
  // When the lead's Spatial value came: times are counted from there, so that no time
  // passing while the test runs moves it.
  double sent() const { return viewer.entities().all().at(1).spatialTime; }
  Placed place(unsigned int id, int end = 0) {
    return placeEnd(viewer.scene(), viewer.entities(), *viewer.scene().find(id), end, now);
  }

  Vec3 here;
  double now = 0;
  Viewer viewer{"v1", "v1", nullptr, nullptr};
  vctest::ViewerWire wire{viewer};
  DtVistrelRemoteDrawer drawer{&wire, DtString("drawer")};
};

TEST_F(PlacementTest, AnEndOnAnEntityMovesWithItAtItsEastNorthUpOffset) {
  const unsigned int id = text(DtString("1:1:1"), DtVector64(10, 0, 30));
  now = sent() + 2.0;  // two seconds on: 200 m north
  const Placed p = place(id);
  ASSERT_TRUE(p.placed) << p.problem;
  EXPECT_EQ(p.entity, "1:1:1");
  EXPECT_EQ(p.matches, 1);
  EXPECT_EQ(p.problem, "");
  expectNear(p.world, here + kNorth * 200.0 + kEast * 10.0 + kUp * 30.0, 0.05);

  // By instance name and by marking too; the entity's own label is given either way.
  const Placed byName = place(text(DtString("plane2"), DtVector64()));
  const Placed byMarking = place(text(DtString("WING"), DtVector64()));
  ASSERT_TRUE(byName.placed && byMarking.placed);
  EXPECT_EQ(byName.entity, "1:1:2");
  EXPECT_EQ(byMarking.entity, "1:1:2");
  expectNear(byMarking.world, here + kEast * 300.0, 1e-6);
}

TEST_F(PlacementTest, UnknownAndAmbiguousEntitiesAreSaidSo) {
  const Placed none = place(text(DtString("9:9:9"), DtVector64()));
  EXPECT_FALSE(none.placed);
  EXPECT_EQ(none.problem, "entity 9:9:9 not found");
  EXPECT_EQ(none.matches, 0);

  add(3, {1, 1, 3}, "WING", here, Vec3());  // a second WING, discovered later
  const Placed two = place(text(DtString("WING"), DtVector64()));
  ASSERT_TRUE(two.placed);
  EXPECT_EQ(two.entity, "1:1:2");  // the first discovered
  EXPECT_EQ(two.matches, 2);
  EXPECT_EQ(two.problem, "2 entities match WING, attached to 1:1:2");

  viewer.entities().objectDiscovered(4, "BaseEntity.PhysicalEntity.Platform.Aircraft", "quiet");
  EXPECT_EQ(place(text(DtString("quiet"), DtVector64())).problem,
            "entity quiet has no position yet");
}

TEST_F(PlacementTest, EndsAlongOtherDrawingsFollowTheirEntitiesAndCyclesEnd) {
  // A line from one aircraft to the other, and a text a quarter of the way along it.
  const unsigned int between =
      line(DtVdc3DAttachPoint(DtString("1:1:1")), DtVdc3DAttachPoint(DtString("1:1:2")));
  const unsigned int along =
      drawer.add(new DtVdcText3DObject(drawer.nextId(), "q", DtVdc3DAttachPoint(between, 25),
                                       DtVector64(), DtVdcColor::DtVdcWhite, false));
  now = sent() + 1.0;
  const Vec3 lead = here + kNorth * 100.0, wing = here + kEast * 300.0;
  ASSERT_TRUE(place(between, 1).placed);
  expectNear(place(between, 1).world, wing, 1e-6);
  const Placed q = place(along);
  ASSERT_TRUE(q.placed) << q.problem;
  expectNear(q.world, lead + (wing - lead) * 0.25, 0.02);
  EXPECT_EQ(q.entity, "1:1:1");

  // Two lines each hung on the other have no place, and finding that out ends.
  const unsigned int a = line(DtVdc3DAttachPoint(1000u, 50), DtVdc3DAttachPoint(DtVector64()));
  const unsigned int b = line(DtVdc3DAttachPoint(a, 50), DtVdc3DAttachPoint(DtVector64()));
  auto* again =
      new DtVdcLine3DObject(a, DtVdc3DAttachPoint(b, 50), DtVdc3DAttachPoint(DtVector64()), 1,
                            DtVector64(), DtVdcColor::DtVdcRed, DtVdcSegmentStraight,
                            DtVdcSegmentNoArrow, 1, 0xFFFFFFFF, false, false, false);
  drawer.update(again);
  EXPECT_FALSE(place(b).placed);
  EXPECT_EQ(place(line(DtVdc3DAttachPoint(77777u, 0), DtVdc3DAttachPoint(DtVector64()))).problem,
            "drawing 77777 not found");
  delete again;
}

TEST(LocalFrame, StaysUntilTheWantedOriginIsFarAndIsEastNorthUpOnlyNearTheEarth) {
  FrameKeeper keeper;
  Entities none;
  Eyepoint eye;
  eye.placed = true;
  // A sketch around the earth's centre: the geocentric axes, not moved.
  eye.position = {300, -200, 10};
  EXPECT_EQ(keeper.update(eye, none, 0).serial, 0u);
  EXPECT_FALSE(keeper.current().geographic);

  const Vec3 here = vcgeo::toGeocentric({kPi / 4, 0, 1000});
  eye.position = here;
  const LocalFrame& f = keeper.update(eye, none, 0);
  EXPECT_EQ(f.serial, 1u);
  EXPECT_TRUE(f.geographic);
  expectNear(f.local(here + kNorth * 20.0 + kUp * 5.0), {0, 20, 5}, 1e-6);
  // 40 km away the picture keeps its origin; 60 km away it moves there.
  eye.position = here + kEast * 40000.0;
  EXPECT_EQ(keeper.update(eye, none, 0).serial, 1u);
  expectNear(keeper.current().origin, here, 0);
  eye.position = here + kEast * 60000.0;
  EXPECT_EQ(keeper.update(eye, none, 0).serial, 2u);
  // A position no picture can be drawn around is not taken.
  eye.position = {std::nan(""), 0, 0};
  EXPECT_EQ(keeper.update(eye, none, 0).serial, 2u);
}

TEST_F(PlacementTest, TrailsKeepTheLastPlacesOfEachEntityAndForgetRemovedOnes) {
  Trails trails;
  const double t0 = sent();
  for (int i = 0; i < 20; ++i) trails.sample(viewer.entities(), t0 + i * 0.25);
  const auto* lead = trails.of(1);
  ASSERT_TRUE(lead);
  ASSERT_EQ(lead->size(), Trails::kPoints);
  // One sample every half second: the last at 4.5 s, 450 m north; the first 3.5 s before.
  expectNear(lead->back(), here + kNorth * 450.0, 0.1);
  expectNear(lead->front(), here + kNorth * 100.0, 0.1);
  viewer.entities().objectRemoved(1);
  trails.sample(viewer.entities(), t0 + 10);
  EXPECT_EQ(trails.of(1), nullptr);
  EXPECT_EQ(trails.of(2)->size(), Trails::kPoints);
}

TEST_F(PlacementTest, TheDocumentAndTheSvgShowEntitiesAndWhatHangsOnThem) {
  const unsigned int onLead = text(DtString("LEAD"), DtVector64());
  const unsigned int waiting = text(DtString("7:7:7"), DtVector64());
  const std::string json = viewer.json();
  EXPECT_NE(json.find("\"on\":\"1:1:1\",\"matches\":1"), std::string::npos);
  EXPECT_NE(
      json.find("\"at\":null,\"on\":\"\",\"matches\":0,\"problem\":\"entity 7:7:7 not found\""),
      std::string::npos);
  EXPECT_NE(json.find("\"frame\":{\"origin\":["), std::string::npos);
  EXPECT_NE(json.find("\"geographic\":true"), std::string::npos);
  // The velocity is the dead-reckoned one, geocentric: 100 m/s north is (-70.71, 0, 70.71).
  EXPECT_NE(json.find("\"velocity\":[-70.71"), std::string::npos) << json.substr(0, 1500);

  const std::string svg = viewer.svg();
  EXPECT_NE(svg.find("id=\"entity-1\""), std::string::npos);
  EXPECT_NE(svg.find(">LEAD<"), std::string::npos);
  EXPECT_NE(svg.find("id=\"object-" + std::to_string(onLead) + "\""), std::string::npos);
  // Only what is not known goes to the tray, with what hangs on it.
  EXPECT_NE(svg.find(">7:7:7<"), std::string::npos);
  EXPECT_NE(svg.find("id=\"object-" + std::to_string(waiting) + "\""), std::string::npos);
  EXPECT_EQ(svg.find(">1:1:1<"), std::string::npos);
  EXPECT_NE(svg.find("entities: 2 of 2 shown"), std::string::npos);

  // A panel's template carries no place (its PDU says 0,0,0, the earth's centre): the plan
  // is fitted to the aircraft, some hundreds of metres across, not to it.
  auto* status = new DtVdcAttributeGroupTemplateObject(drawer.nextId(), "Status");
  status->createAttributeTemplate(1, "Fuel", 0, 100);
  drawer.add(status);
  drawer.add(new DtVdcAttributeGroupObject(drawer.nextId(), status,
                                           DtVdc3DAttachPoint(DtString("1:1:1")), DtVector64(),
                                           DtVdcColor::DtVdcGreen, false));
  const std::string plan = viewer.svg();
  const size_t centre = plan.find("centre (");
  ASSERT_NE(centre, std::string::npos);
  double east = 1e9, north = 1e9;
  ASSERT_EQ(std::sscanf(plan.c_str() + centre, "centre (%lf, %lf)", &east, &north), 2);
  EXPECT_LT(std::hypot(east, north), 1000) << plan.substr(centre, 60);

  // A crowd is capped in the plan, and the plan says so.
  for (DtObjectId i = 10; i < 410; ++i)
    add(i, {2, 2, static_cast<unsigned short>(i)}, "", here, Vec3());
  EXPECT_NE(viewer.svg().find("entities: 300 of 402 shown"), std::string::npos);
}

}  // namespace
