// A drawer in this process, a viewer stand-in in another, a hub between them: the
// drawing PDUs arrive whole, signed by the drawer, in the order they were sent.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "peerPdu.h"
#include "process.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

TEST(DrawerE2E, DrawingsUpdatesAndRemovalsReachTheViewer) {
  if (!vctest::serverAvailable()) GTEST_SKIP() << "built against an RTI without a server process";
  vctest::HubWithPeer f("Drawing");
  ASSERT_TRUE(f.ready()) << f.viewer.transcript();

  {
    DtVistrelRemoteDrawer drawer(f.url.c_str(), "drawer-process",
                                 static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE, DtString("v-1"),
                                 1);
    ASSERT_TRUE(drawer.exerciseConn()->connected());
    unsigned int layer = drawer.nextId();
    drawer.add(new DtVdcDrawLayerObject(layer, "Routes"));
    unsigned int line3d = drawer.nextId();
    drawer.add(new DtVdcLine3DObject(line3d, DtString("1:1:1"), DtString("1:1:2"), 2, DtVector64(),
                                     DtVdcColor::DtVdcOrange, DtVdcSegmentStraight,
                                     DtVdcSegmentArrowEnd, 3, 0xFFFFFFFFu, false, false, false));
    drawer.addToLayer(line3d, layer);
    auto* panel = new DtVdcAttributeGroupTemplateObject(drawer.nextId(), "Status");
    panel->createAttributeTemplate(10, "Speed",
                                   DtVdcAttributeTemplateObject::DtVdcNumericAttribute);
    drawer.add(panel);
    auto* group =
        new DtVdcAttributeGroupObject(drawer.nextId(), panel, DtVdc3DAttachPoint(DtString("1:1:1")),
                                      DtVector64(0, 0, 10), DtVdcColor::DtVdcWhite, false);
    drawer.add(group);
    group->setNumericAttributeValue(10, 88.5);
    drawer.update(group->id());
  }  // removes everything, lowest id first

  std::vector<vctest::PeerPdu> got = vctest::peerPdus(f.viewer, 12);
  ASSERT_EQ(got.size(), 12u) << f.viewer.transcript();
  std::vector<unsigned int> commands, types, ids;
  for (const vctest::PeerPdu& r : got) {
    commands.push_back(r.command);
    types.push_back(wire::u32(r.b(), 164));
    ids.push_back(wire::u32(r.b(), 160));
    EXPECT_EQ(wire::text(r.b(), 76, 64), "drawer-process");
    EXPECT_EQ(wire::u16(r.b(), 8), r.bytes.size());
  }
  EXPECT_EQ(commands, (std::vector<unsigned int>{2590, 2520, 2510, 2570, 2570, 2570, 2570, 2580,
                                                 2510, 2510, 2510, 2510}));
  EXPECT_EQ(types, (std::vector<unsigned int>{2590, 2522, 2514, 2571, 2574, 2572, 2572, 2581, 2511,
                                              2511, 2511, 2511}));
  EXPECT_EQ(ids, (std::vector<unsigned int>{1, 2, 2, 3, 10, 4, 4, 10, 1, 2, 3, 4}));

  EXPECT_EQ(std::string(got[0].b() + 172, got[0].b() + got[0].bytes.size()), "Routes");
  const unsigned char* l = got[1].b();
  EXPECT_EQ(wire::u8(l, 168), 10u);  // entity to entity
  EXPECT_EQ(wire::text(l, 176, 64), "1:1:1");
  EXPECT_EQ(wire::text(l, 240, 64), "1:1:2");
  EXPECT_EQ(wire::u32(l, 384), 2u);
  EXPECT_EQ(wire::u32(l, 392), 0xFF8000FFu);
  EXPECT_EQ(wire::u8(l, 392 + 12), 1u);
  EXPECT_EQ(wire::u8(l, 392 + 16 + 13), 50u);
  EXPECT_EQ(wire::u32(got[2].b(), 168), 1u);  // into layer 1
  EXPECT_EQ(wire::u32(got[4].b(), 400), 3u);  // the attribute's group template
  EXPECT_EQ(wire::f64(got[7].b(), 168), 88.5);
  EXPECT_EQ(wire::u32(got[7].b(), 184), 4u);
}

}  // namespace
