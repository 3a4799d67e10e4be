// The stand-in's entity table fed as the connection feeds it: encoded attribute values by
// index. Lookups by identifier, instance name and marking; bad values counted and kept
// out; positions dead-reckoned on the table's clock and reported in the page's document.
#include <gtest/gtest.h>

#include <string>

#include "entities.h"
#include "viewer.h"

using vcviewer::Entities;

namespace {

struct Feed {
  double clock = 100.0;
  Entities table{[this] { return clock; }};

  void reflect(DtObjectId id, int index, const vcrpr::Bytes& bytes) {
    const DtAttributeValue v{index, bytes.data(), bytes.size()};
    table.objectReflected(id, &v, 1);
  }
  void entity(DtObjectId id, const std::string& name, vcrpr::EntityId eid,
              const std::string& marking) {
    table.objectDiscovered(id, "BaseEntity.PhysicalEntity.Platform.Aircraft", name);
    reflect(id, vcrpr::kEntityIdentifier, vcrpr::encode(eid));
    reflect(id, vcrpr::kMarking, vcrpr::encodeMarking(marking));
  }
};

vcrpr::Spatial flying(double x, double vx) {
  vcrpr::Spatial s;
  s.algorithm = vcrpr::DrAlgorithm::FPW;
  s.worldLocation = {x, 0.0, 6356752.0};
  s.velocity = {vx, 0.0, 0.0};
  return s;
}

}  // namespace

TEST(ViewerEntities, DesignatorsFindByIdentifierThenNameThenMarking) {
  Feed f;
  f.entity(1, "HLAobject_1", {1, 2, 3}, "EAGLE1");
  f.entity(2, "Viper", {1, 2, 4}, "EAGLE1");
  f.entity(3, "1:2:3", {7, 7, 7}, "HAWK");  // a name that looks like an identifier

  auto m = f.table.find("1:2:3", "");
  ASSERT_TRUE(m.entity);
  EXPECT_EQ(m.entity->object, 1u);
  EXPECT_EQ(m.by, "identifier");
  m = f.table.find("Viper", "");
  ASSERT_TRUE(m.entity);
  EXPECT_EQ(m.entity->object, 2u);
  EXPECT_EQ(m.by, "instance name");
  // Two share the marking: the first discovered is taken and both are counted.
  m = f.table.find("", "EAGLE1");
  ASSERT_TRUE(m.entity);
  EXPECT_EQ(m.entity->object, 1u);
  EXPECT_EQ(m.count, 2);
  EXPECT_EQ(m.by, "marking");
  // The designator wins over the marking when it matches; the marking is the fallback.
  EXPECT_EQ(f.table.find("Viper", "HAWK").entity->object, 2u);
  EXPECT_EQ(f.table.find("9:9:9", "HAWK").entity->object, 3u);
  EXPECT_EQ(f.table.find("0:0:0", "HAWK").entity->object, 3u);
  m = f.table.find("9:9:9", "");
  EXPECT_FALSE(m.entity);
  EXPECT_EQ(m.count, 0);

  f.table.objectRemoved(1);
  EXPECT_EQ(f.table.find("1:2:3", "").entity, nullptr);
  EXPECT_EQ(f.table.find("", "EAGLE1").count, 1);
}

TEST(ViewerEntities, BadValuesAreCountedAndTheGoodOnesKept) {
  Feed f;
  f.entity(5, "a", {1, 1, 5}, "OK");
  f.reflect(5, vcrpr::kSpatial, vcrpr::encode(flying(1000.0, 0.0)));
  const std::uint64_t revision = f.table.revision();

  vcrpr::Bytes truncated = vcrpr::encode(flying(9.0, 0.0));
  truncated.pop_back();
  f.reflect(5, vcrpr::kSpatial, truncated);
  vcrpr::Bytes unknown = vcrpr::encode(flying(9.0, 0.0));
  unknown[0] = 42;
  f.reflect(5, vcrpr::kSpatial, unknown);
  f.reflect(5, vcrpr::kMarking, vcrpr::Bytes{1, 'A', 7, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  f.reflect(5, vcrpr::kEntityIdentifier, vcrpr::Bytes{0, 1});

  const vcviewer::Entity& e = f.table.all().at(5);
  EXPECT_EQ(e.spatial.worldLocation.x, 1000.0);
  EXPECT_EQ(e.marking, "OK");
  EXPECT_EQ(e.id.text(), "1:1:5");
  EXPECT_EQ(f.table.faults()[vcrpr::kSpatial], 2u);
  EXPECT_EQ(f.table.faults()[vcrpr::kMarking], 1u);
  EXPECT_EQ(f.table.faults()[vcrpr::kEntityIdentifier], 1u);
  EXPECT_EQ(f.table.faultCount(), 4u);
  EXPECT_EQ(f.table.lastFault(), "EntityIdentifier of 1:1:5: wrong length");
  EXPECT_EQ(f.table.revision(), revision);  // nothing a person sees has changed

  // Values for an instance never discovered, or an attribute not asked for, are dropped.
  f.reflect(99, vcrpr::kSpatial, vcrpr::encode(flying(1.0, 0.0)));
  f.reflect(5, 17, vcrpr::encode(flying(1.0, 0.0)));
  EXPECT_EQ(f.table.size(), 1u);
  EXPECT_EQ(f.table.faultCount(), 4u);
}

TEST(ViewerEntities, PositionsAreDeadReckonedToTheTimeTheyAreShown) {
  Feed f;
  f.entity(7, "mover", {1, 1, 7}, "M7");
  f.reflect(7, vcrpr::kSpatial, vcrpr::encode(flying(6378137.0, 25.0)));
  f.clock += 4.0;
  EXPECT_NEAR(f.table.all().at(7).at(f.table.now()).position.x, 6378237.0, 1e-9);

  vcviewer::Viewer viewer("v", "v", nullptr, nullptr);
  viewer.entities().objectDiscovered(1, "BaseEntity.PhysicalEntity.Platform.Aircraft", "Eagle");
  const auto id = vcrpr::encode(vcrpr::EntityId{3, 4, 5});
  const auto marking = vcrpr::encodeMarking("EAGLE\"1");
  vcrpr::Spatial s = flying(6378137.5, 0.0);
  s.algorithm = vcrpr::DrAlgorithm::Static;
  const auto spatial = vcrpr::encode(s);
  const DtAttributeValue values[] = {{vcrpr::kEntityIdentifier, id.data(), id.size()},
                                     {vcrpr::kMarking, marking.data(), marking.size()},
                                     {vcrpr::kSpatial, spatial.data(), spatial.size()}};
  viewer.entities().objectReflected(1, values, 3);
  const std::string json = viewer.json();
  EXPECT_NE(json.find("\"entities\":{\"count\":1,\"faults\":0"), std::string::npos) << json;
  EXPECT_NE(json.find("\"id\":\"3:4:5\",\"instance\":\"Eagle\",\"class\":\"Aircraft\","
                      "\"marking\":\"EAGLE\\\"1\",\"algorithm\":\"Static\","
                      "\"position\":[6378137.5,0,6356752]"),
            std::string::npos)
      << json;
}
