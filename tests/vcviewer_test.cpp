// The viewer stand-in in-process: a controller and a drawer send through a transport of
// their own, whose bytes are read back as the network would deliver them and handed to
// the viewer. Checked: the state it applies, what it answers, and the SVG it draws.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "viewer.h"
#include "viewerWire.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using vcviewer::Viewer;

using Wire = vctest::ViewerWire;

DtGlobalObjectDesignatorList ids(std::initializer_list<const char*> names) {
  DtGlobalObjectDesignatorList list;
  for (const char* n : names) list.add(n);
  return list;
}

class ViewerTest : public ::testing::Test {
 protected:
  // The last answer, as its bytes and as the PDU the controller would get back.
  std::unique_ptr<DtVistrelControlPdu> askState() {
    answers.clear();
    controller.requestCurrentViewMode("v1");
    EXPECT_EQ(answers.size(), 1u);
    if (answers.empty()) return nullptr;
    return std::unique_ptr<DtVistrelControlPdu>(
        DtVistrelControlPdu::createFromBytes(answers.back().data(), answers.back().size()));
  }
  const std::string& lastLine() const { return lines.back(); }
  void receive(DtVistrelControlPdu& pdu, const char* viewerId = "v1") {
    pdu.setViewerId(viewerId);
    wire.send(pdu.packet(), pdu.length());
  }

  std::vector<std::string> lines;
  std::vector<std::vector<char>> answers;
  Viewer viewer{"v1", "vcviewer-v1",
                [this](const DtVistrelControlPdu& pdu) {
                  answers.emplace_back(pdu.packet(), pdu.packet() + pdu.length());
                },
                [this](const std::string& line) { lines.push_back(line); }};
  Wire wire{viewer};
  DtVistrelRemoteController controller{&wire, DtString("v1")};
  DtVistrelRemoteDrawer drawer{&wire, DtString("drawer-1")};
};

// ---------------------------------------------------------------- eyepoint

TEST_F(ViewerTest, OrbitWithOnlyARadiusKeepsTheRestAndIsReportedAsSuch) {
  DtString entity("1:2:3");
  float radius = 500, heading = 0.5f, pitch = -0.25f, rate = 0.1f;
  controller.setOrbitMode(&entity, &radius, &heading, &pitch, &rate);
  EXPECT_EQ(lastLine(),
            "orbit attach=1:2:3 radius=500 azimuthrate=0.1 heading=0.5 pitch=-0.25 "
            "headingoffset=(kept) pitchoffset=(kept) roll=(kept)");
  float wider = 750;
  controller.setOrbitMode(nullptr, &wider, nullptr, nullptr, nullptr);
  EXPECT_EQ(lastLine(),
            "orbit attach=(kept) radius=750 azimuthrate=(kept) heading=(kept) pitch=(kept) "
            "headingoffset=(kept) pitchoffset=(kept) roll=(kept)");

  auto status = askState();
  ASSERT_TRUE(status);
  EXPECT_EQ(lastLine(), "state -> DtVcOrbitStatus");
  const std::vector<char>& bytes = answers.back();
  ASSERT_EQ(bytes.size(), 312u);
  EXPECT_EQ(wire::u16(bytes.data(), 146), 505u);
  EXPECT_EQ(wire::text(bytes.data(), 12, 64), "v1");
  EXPECT_EQ(wire::text(bytes.data(), 76, 64), "vcviewer-v1");
  // Clear exactly for the fields reported: entity, radius, rate, heading, pitch, offsets, roll.
  EXPECT_EQ(wire::u32(bytes.data(), 152), 0xFFEBE5C7u);
  EXPECT_EQ(wire::f32(bytes.data(), 156), 750.0f);
  EXPECT_EQ(wire::f32(bytes.data(), 160), 0.1f);
  EXPECT_EQ(wire::f32(bytes.data(), 164), 0.5f);
  EXPECT_EQ(wire::text(bytes.data(), 184, 64), "1:2:3");
  EXPECT_TRUE(status->statusCommand());
}

// Every mode through the controller, then its status report: the report is the mode's
// class with command + 500 and gives back what was set.
TEST_F(ViewerTest, EveryModeIsReportedWithTheParametersItWasGiven) {
  DtString a("1:1:1"), b("2:2:2");
  DtVector64 v(10, 20, 30);
  DtTaitBryan o(0.5, 0.25, 0.125);
  float r = 100, h = 1, p = 0.5f, az = 0.25f;

  controller.setAbsoluteMode(&v, &o);
  auto s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcAbsoluteStatus);
  EXPECT_EQ(static_cast<DtAbsoluteVCPdu&>(*s).worldLocation(), v);
  EXPECT_EQ(static_cast<DtAbsoluteVCPdu&>(*s).orientation(), o);
  EXPECT_EQ(s->ignoreFlags() & 0xFFFFFFFFul, 0xFFFFFFC0ul);

  controller.setTetherMode(&a, &v, &o);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcTetherStatus);
  EXPECT_EQ(static_cast<DtTetherVCPdu&>(*s).attachId(), "1:1:1");
  EXPECT_EQ(static_cast<DtTetherVCPdu&>(*s).topoUpOffset(), v);

  controller.setCompassMode(&b, &r, &h, &p);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcCompassStatus);
  EXPECT_EQ(static_cast<DtCompassVCPdu&>(*s).attachId(), "2:2:2");
  EXPECT_EQ(static_cast<DtCompassVCPdu&>(*s).bodyHeading(), h);
  EXPECT_EQ(static_cast<DtCompassVCPdu&>(*s).pitch(), p);

  controller.setMimicMode(&a, &v);
  EXPECT_EQ(askState()->viewerCommand(), DtVcMimicStatus);
  controller.setTurretMode(nullptr, nullptr);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcOffsetMimicStatus);
  EXPECT_EQ(static_cast<DtMimicVCPdu&>(*s).attachId(), "1:1:1");
  EXPECT_EQ(static_cast<DtMimicVCPdu&>(*s).offset(), v);

  controller.setTrackMode(&b, &v);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcTrackStatus);
  EXPECT_EQ(static_cast<DtTrackVCPdu&>(*s).trackId(), "2:2:2");

  controller.setTetherTrackMode(&a, &b, &v);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcTetherTrackStatus);
  EXPECT_EQ(static_cast<DtTetherTrackVCPdu&>(*s).trackId(), "2:2:2");
  controller.setMimicTrackMode(nullptr, nullptr, nullptr);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcMimicTrackStatus);
  EXPECT_EQ(static_cast<DtMimicTrackVCPdu&>(*s).attachId(), "1:1:1");
  EXPECT_EQ(static_cast<DtMimicTrackVCPdu&>(*s).trackId(), "2:2:2");

  controller.setOrbitMode(nullptr, nullptr, nullptr, nullptr, &az);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcOrbitStatus);
  EXPECT_EQ(static_cast<DtOrbitVCPdu&>(*s).radius(), r);  // from compass
  EXPECT_EQ(static_cast<DtOrbitVCPdu&>(*s).azimuthRate(), az);

  controller.setPivotMode(&v, nullptr, nullptr, nullptr);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcPivotStatus);
  EXPECT_EQ(static_cast<DtPivotVCPdu&>(*s).pivotPoint(), v);

  DtGlobalObjectDesignatorList members = ids({"7:7:1", "7:7:2"});
  controller.setWideGroupMode(&members, &r, nullptr, nullptr);
  s = askState();
  ASSERT_EQ(s->viewerCommand(), DtVcGroupStatus);
  auto& group = static_cast<DtGroupVCPdu&>(*s);
  EXPECT_EQ(group.groupCmd(), 1u);
  EXPECT_EQ(group.radialOffset(), r);
  EXPECT_EQ(group.numEntitiesToRemove(), -1);
  ASSERT_EQ(group.numEntitiesToAdd(), 2);
  EXPECT_EQ(group.entityToAdd(1), "7:7:2");
}

TEST_F(ViewerTest, IgnoreFlagsAreReadBitByBitWithEachModesOwnBits) {
  DtAbsoluteVCPdu absolute;
  absolute.setWorldLocation(DtVector64(1, 2, 3));
  absolute.setIgnoreFlags(0xFFFFFFFF & ~0x2ul);  // y alone
  receive(absolute);
  EXPECT_EQ(lastLine(),
            "absolute location=(kept, 2, kept) heading=(kept) pitch=(kept) roll=(kept)");
  EXPECT_EQ(viewer.view().params().location, DtVector64(0, 2, 0));

  // Mimic-track flags its offset with the position bits, tether-track with 0xE000.
  DtTetherTrackVCPdu tetherTrack;
  tetherTrack.setOffset(DtVector64(5, 5, 5));
  tetherTrack.setIgnoreFlags(0xFFFFFFF8);
  receive(tetherTrack);
  EXPECT_EQ(viewer.view().params().offset, DtVector64());
  DtMimicTrackVCPdu mimicTrack;
  mimicTrack.setOffset(DtVector64(5, 5, 5));
  mimicTrack.setIgnoreFlags(0xFFFFFFF8);
  receive(mimicTrack);
  EXPECT_EQ(viewer.view().params().offset, DtVector64(5, 5, 5));
  EXPECT_EQ(viewer.view().mode(), DtVcMimicTrack);
}

// Mode by mode, the fields no command of the controller reaches, built with the classes'
// own setters and flagged with the bits worked out by hand: a lone roll is left out by
// 0x20, an orientation by 0x8, 0x10 and 0x20 one angle each; marking texts come along
// when the PDU has room for them. The reports give them back with exactly those bits
// clear.
TEST_F(ViewerTest, CompassOrbitAndPivotKeepTheirRollByItsOwnBit) {
  DtCompassVCPdu compass;
  compass.setAttachId("1:2:3");
  compass.setMarkingText("EAGLE 1");
  compass.setRadius(100);
  compass.setBodyHeading(0.5f);
  compass.setPitch(-0.25f);
  compass.setHeadingOffset(0.125f);
  compass.setPitchOffset(0.0625f);
  compass.setRoll(0.75f);
  compass.setIgnoreFlags(0xFFFFFFFF & ~0x101E10ul);  // all but the roll
  receive(compass);
  EXPECT_EQ(lastLine(),
            "compass attach=1:2:3 attachmarking=\"EAGLE 1\" radius=100 bodyheading=0.5 "
            "pitch=-0.25 headingoffset=0.125 pitchoffset=0.0625 roll=(kept)");
  compass.setIgnoreFlags(0xFFFFFFFF & ~0x20ul);  // the roll alone
  receive(compass);
  EXPECT_EQ(lastLine(),
            "compass attach=(kept) radius=(kept) bodyheading=(kept) pitch=(kept) "
            "headingoffset=(kept) pitchoffset=(kept) roll=0.75");
  auto s = askState();
  const auto& c = static_cast<const DtCompassVCPdu&>(*s);
  EXPECT_EQ(s->ignoreFlags() & 0xFFFFFFFFul, 0xFFEFE1CFul);
  EXPECT_EQ(c.markingText(), "EAGLE 1");
  EXPECT_EQ(c.headingOffset(), 0.125f);
  EXPECT_EQ(c.pitchOffset(), 0.0625f);
  EXPECT_EQ(c.roll(), 0.75f);

  // Orbit and pivot share the state's roll and offsets, and report them.
  DtOrbitVCPdu orbit;
  orbit.setIgnoreFlags(0xFFFFFFFF);
  receive(orbit);
  s = askState();
  EXPECT_EQ(s->ignoreFlags() & 0xFFFFFFFFul, 0xFFEBE5C7ul);
  EXPECT_EQ(static_cast<const DtOrbitVCPdu&>(*s).roll(), 0.75f);
  EXPECT_EQ(static_cast<const DtOrbitVCPdu&>(*s).pitchOffset(), 0.0625f);
  DtPivotVCPdu pivot;
  pivot.setRoll(-1.5f);
  pivot.setIgnoreFlags(0xFFFFFFFF & ~0x20ul);
  receive(pivot);
  EXPECT_EQ(lastLine().substr(lastLine().find("roll=")), "roll=-1.5 pivotpoint=(kept)");
  s = askState();
  EXPECT_EQ(s->ignoreFlags() & 0xFFFFFFFFul, 0xFFFFE1C8ul);
  EXPECT_EQ(static_cast<const DtPivotVCPdu&>(*s).roll(), -1.5f);
  EXPECT_EQ(static_cast<const DtPivotVCPdu&>(*s).radius(), 100.0f);
}

TEST_F(ViewerTest, MimicTakesItsBodyOrientationAngleByAngle) {
  DtMimicVCPdu mimic;
  mimic.setAttachId("1:2:3");
  mimic.setBodyOrientation(DtTaitBryan(0.5, 0.25, 0.125));
  mimic.setIgnoreFlags(0xFFFFFFFF & ~0x10ul);  // the pitch alone
  receive(mimic);
  EXPECT_EQ(lastLine(), "mimic attach=(kept) offset=(kept) heading=(kept) pitch=0.25 roll=(kept)");
  mimic.setIgnoreFlags(0xFFFFFFFF & ~0x28ul);  // heading and roll
  receive(mimic);
  EXPECT_EQ(lastLine(), "mimic attach=(kept) offset=(kept) heading=0.5 pitch=(kept) roll=0.125");
  auto s = askState();
  EXPECT_EQ(s->ignoreFlags() & 0xFFFFFFFFul, 0xFFEF1FC7ul);
  EXPECT_EQ(static_cast<const DtMimicVCPdu&>(*s).bodyOrientation(), DtTaitBryan(0.5, 0.25, 0.125));
}

TEST_F(ViewerTest, MarkingTextsComeOnlyWithAPduLongEnoughForThem) {
  DtTetherTrackVCPdu both;
  both.setAttachId("1:1:1");
  both.setAttachMarkingText("EAGLE 1");
  both.setTrackId("2:2:2");
  both.setTrackMarkingText("EAGLE 2");
  both.setOffset(DtVector64(1, 2, 3));
  both.setIgnoreFlags(0xFFCF1FFF);
  receive(both);
  EXPECT_EQ(lastLine(),
            "tether-track attach=1:1:1 attachmarking=\"EAGLE 1\" track=2:2:2 "
            "trackmarking=\"EAGLE 2\" offset=(1, 2, 3)");
  auto s = askState();
  EXPECT_EQ(static_cast<const DtTetherTrackVCPdu&>(*s).attachMarkingText(), "EAGLE 1");
  EXPECT_EQ(static_cast<const DtTetherTrackVCPdu&>(*s).trackMarkingText(), "EAGLE 2");

  // A sender that leaves the marking texts off: whatever lies behind is no marking.
  DtTetherVCPdu tether;
  tether.setAttachId("3:3:3");
  tether.setMarkingText("stale");
  tether.setIgnoreFlags(0xFFEFFFFF);
  tether.changeSize(244);
  receive(tether);
  EXPECT_EQ(lastLine(),
            "tether attach=3:3:3 topoupoffset=(kept) heading=(kept) pitch=(kept) "
            "roll=(kept)");
  EXPECT_EQ(viewer.view().params().primary.marking, "");
}

TEST_F(ViewerTest, AGroupsOwnHeadingAndPitchAreNotItsOffsets) {
  DtGroupVCPdu group;
  group.setHeading(0.5f);
  group.setPitch(-0.25f);
  group.setHeadingOffset(0.125f);
  group.setIgnoreFlags(0xFFFFFFFF & ~0x8ul);  // the heading alone
  receive(group);
  EXPECT_EQ(lastLine(),
            "group radialoffset=(kept) heading=0.5 pitch=(kept) headingoffset=(kept) "
            "pitchoffset=(kept) remove=[] add=[] members=[]");
  EXPECT_EQ(viewer.view().params().headingOffset, 0);
  auto s = askState();
  EXPECT_EQ(s->ignoreFlags() & 0xFFFFFFFFul, 0xFFF7E7E7ul);
  EXPECT_EQ(static_cast<const DtGroupVCPdu&>(*s).heading(), 0.5f);
  EXPECT_EQ(static_cast<const DtGroupVCPdu&>(*s).groupCmd(), 0u);
}

TEST_F(ViewerTest, GroupAndModelessEditsChangeMembersAndEntitiesOnly) {
  DtGlobalObjectDesignatorList ab = ids({"a", "b"});
  float radial = 40;
  controller.setGroupMode(&ab, &radial, nullptr, nullptr);
  controller.addToGroup(ids({"c", "a"}));
  controller.removeFromGroup(ids({"a"}));
  EXPECT_EQ(viewer.view().group(), (std::vector<std::string>{"b", "c"}));
  EXPECT_EQ(lastLine(),
            "modeless primary=(kept) secondary=(kept) remove=[a] add=[] members=[b, c]");
  controller.setGroup(ids({"x"}));
  EXPECT_EQ(viewer.view().group(), std::vector<std::string>{"x"});

  controller.setPrimarySecondary("p1", "s1");
  controller.setSecondary("s2");
  EXPECT_EQ(lastLine(), "modeless primary=(kept) secondary=s2 group=(kept)");
  EXPECT_EQ(viewer.view().params().primary.id, "p1");
  EXPECT_EQ(viewer.view().mode(), DtVcGroup);  // modeless edits do not change the mode
  EXPECT_EQ(viewer.view().params().radialOffset, 40);
}

TEST_F(ViewerTest, MovesStepAndTurnByTheCurrentStepSizeAndTurnRate) {
  DtVector64 start(100, 200, 0);
  controller.set(&start, nullptr);
  controller.setStepsize(5);
  controller.increaseStepsize();  // 10
  controller.setTurnrate(90);
  controller.moveEyepoint(DtVistrelRemoteController::Direction::FORWARDS);  // heading 0: north
  controller.turnEyepoint(DtVistrelRemoteController::Direction::RIGHT);
  controller.moveEyepoint(DtVistrelRemoteController::Direction::FORWARDS);  // now east
  const vcviewer::EyeParams& e = viewer.view().params();
  EXPECT_NEAR(e.location.x(), 110, 1e-9);
  EXPECT_NEAR(e.location.y(), 210, 1e-9);
  EXPECT_NEAR(e.heading, M_PI / 2, 1e-9);
  EXPECT_EQ(lastLine().rfind("move step=FORWARDS -> location=(110, 210, 0)", 0), 0u) << lastLine();
  controller.reset();
  EXPECT_EQ(viewer.view().params().location, DtVector64());
  EXPECT_EQ(viewer.view().params().heading, 0);
}

// ---------------------------------------------------------------- options and addressing

TEST_F(ViewerTest, OptionsApplyOnlyWhatIsPresentAndOneShotsStep) {
  controller.setFogEnabled(true);
  EXPECT_EQ(lastLine(), "option fog=on");
  controller.setNearClippingPlane(2.5);
  EXPECT_EQ(viewer.settings().value("fog"), "on");  // absent, so kept
  EXPECT_EQ(viewer.settings().value("nearclip"), "2.5");
  controller.setBroadcasting(true);
  EXPECT_EQ(lastLine(), "option mirrormessageeveryframe=off broadcasting=on");
  controller.setCurrentModelSet("desert");
  controller.setNextModelSet();
  controller.setNextModelSet();
  controller.setPrevTextureSet();
  EXPECT_EQ(viewer.settings().modelSetStep(), 2);
  EXPECT_EQ(viewer.settings().textureSetStep(), -1);
  controller.decreaseTurnrate();
  EXPECT_EQ(lastLine(), "option decrementturnrate turnrate=0.5");

  DtOptionsPdu empty;
  receive(empty);
  EXPECT_EQ(lastLine(), "option none");
  EXPECT_FALSE(viewer.exitRequested());
  controller.exit();
  EXPECT_EQ(lastLine(), "option exit");
  EXPECT_TRUE(viewer.exitRequested());
}

TEST_F(ViewerTest, OnlyPdusForThisViewerOrForAllAreApplied) {
  DtString entity("9:9:9");
  controller.setTargetVistrelId("v2");
  controller.setOrbitMode(&entity, nullptr, nullptr, nullptr, nullptr);
  controller.requestCurrentViewMode("v2");
  EXPECT_TRUE(lines.empty());
  EXPECT_TRUE(answers.empty());
  EXPECT_EQ(viewer.view().mode(), DtVcAbsolute);
  viewer.setVerbose(true);
  controller.setFogEnabled(true);
  EXPECT_EQ(lastLine(), "ignored DtVcOptions for v2");
  EXPECT_EQ(viewer.settings().value("fog"), "");

  controller.setTargetVistrelId(DtVistrelRemoteController::SEND_TO_ALL);
  controller.setOrbitMode(&entity, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(viewer.view().mode(), DtVcOrbit);

  // Another viewer's report names us as nobody, and is not a command either.
  DtTetherVCPdu report;
  report.setStatusCommand(true);
  receive(report, "0:0:0");
  EXPECT_EQ(viewer.view().mode(), DtVcOrbit);
}

// ---------------------------------------------------------------- scene

class SceneTest : public ViewerTest {
 protected:
  void SetUp() override {
    layer = drawer.add(new DtVdcDrawLayerObject(drawer.nextId(), "Routes"));
    DtVdc3DAttachPoint from(DtVector64(0, 0, 0)), to(DtVector64(1000, 500, 0));
    line = drawer.add(new DtVdcLine3DObject(
        drawer.nextId(), from, to, 2, DtVector64(), DtVdcColor::DtVdcRed, DtVdcSegmentStraight,
        DtVdcSegmentArrowEnd, 3, 0xFFFFFFFF, false, false, false));
    drawer.addToLayer(line, layer);
    label = drawer.add(new DtVdcText2DObject(
        drawer.nextId(), "Convoy <A&B>", DtVdcVector2D(0.5, 0.9), DtVdcColor::DtVdcYellow, false));
    auto* panelTemplate = new DtVdcAttributeGroupTemplateObject(drawer.nextId(), "Fuel");
    panelTemplate->createAttributeTemplate(1, "Level", 0, 100);
    panelTemplate->createAttributeTemplate(2, "Range",
                                           DtVdcAttributeTemplateObject::DtVdcNumericAttribute);
    templateId = drawer.add(panelTemplate);
    group = new DtVdcAttributeGroupObject(drawer.nextId(), panelTemplate,
                                          DtVdc3DAttachPoint(DtVector64(500, 0, 0)), DtVector64(),
                                          DtVdcColor::DtVdcGreen, false);
    drawer.add(group);
  }
  unsigned int layer = 0, line = 0, label = 0, templateId = 0;
  DtVdcAttributeGroupObject* group = nullptr;
};

TEST_F(SceneTest, DrawingsAreKeptByIdWithTheirCommandsAndValues) {
  const vcviewer::Scene& scene = viewer.scene();
  const vcviewer::Drawing* l = scene.find(line);
  ASSERT_TRUE(l);
  EXPECT_EQ(l->type, DtVdc3DLine);
  ASSERT_EQ(l->segments.size(), 2u);
  EXPECT_EQ(l->segments[0].arrow, 1);
  EXPECT_EQ(l->anchors[1].position, DtVector64(1000, 500, 0));
  EXPECT_EQ(l->layers, std::set<unsigned int>{layer});
  EXPECT_EQ(scene.find(label)->text, "Convoy <A&B>");
  EXPECT_EQ(scene.attributes(templateId).size(), 2u);

  group->setValueBarAttributeValue(1, 75);
  drawer.update(group);
  EXPECT_EQ(lastLine(), "draw value " + std::to_string(group->id()) + "/1 x=75 y=0");
  ASSERT_TRUE(scene.value(group->id(), 1));
  EXPECT_EQ(scene.value(group->id(), 1)->x, 75);
  EXPECT_FALSE(scene.value(group->id(), 2));

  drawer.hide(label);
  EXPECT_FALSE(scene.visible(*scene.find(label)));
  drawer.update(label);  // a new description keeps it hidden
  EXPECT_EQ(lastLine(),
            "draw update " + std::to_string(label) + " DtVdc2DText layer=- text=\"Convoy <A&B>\"");
  EXPECT_FALSE(scene.visible(*scene.find(label)));
  drawer.show(label);
  EXPECT_TRUE(scene.visible(*scene.find(label)));

  drawer.hide(layer);
  EXPECT_FALSE(scene.visible(*scene.find(line)));
  drawer.removeFromLayer(line, layer);
  EXPECT_TRUE(scene.visible(*scene.find(line)));

  delete drawer.remove(label);
  EXPECT_EQ(lastLine(), "draw remove " + std::to_string(label));
  EXPECT_FALSE(scene.find(label));
}

TEST_F(SceneTest, VersionZeroPdusAreReadInTheirOwnLayout) {
  DtVdcTextPduV0 text;
  text.setObjectId(77);
  text.setType(DtVdc3DText);
  text.attachTo(DtVector64(5, 6, 7));
  text.setText("old");
  receive(text, "");
  const vcviewer::Drawing* d = viewer.scene().find(77);
  ASSERT_TRUE(d);
  EXPECT_TRUE(d->layout0);
  EXPECT_EQ(d->text, "old");
  EXPECT_EQ(d->anchors[0].position, DtVector64(5, 6, 7));

  DtVdcCommandPduV0 hide;
  hide.setObjectId(77);
  hide.setType(DtVdcCommandHide);
  receive(hide, "");
  EXPECT_TRUE(viewer.scene().find(77)->hidden);
}

// ---------------------------------------------------------------- SVG

// Enough of an XML reader to tell a well-formed document: one root, nested tags that
// close in order, quoted attributes, and no bare '<' or '&' in text.
bool wellFormed(const std::string& xml, std::string& why) {
  std::vector<std::string> open;
  size_t i = 0;
  bool rootSeen = false;
  auto entityOk = [&](size_t at) {
    size_t end = xml.find(';', at);
    if (end == std::string::npos) return false;
    std::string name = xml.substr(at + 1, end - at - 1);
    return name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos" ||
           (!name.empty() && name[0] == '#');
  };
  while (i < xml.size()) {
    if (xml[i] == '&' && !entityOk(i)) return why = "bad entity at " + std::to_string(i), false;
    if (xml[i] != '<') {
      if (open.empty() && !std::isspace(static_cast<unsigned char>(xml[i])))
        return why = "text outside the root", false;
      ++i;
      continue;
    }
    size_t end = xml.find('>', i);
    if (end == std::string::npos) return why = "unclosed tag", false;
    std::string tag = xml.substr(i + 1, end - i - 1);
    i = end + 1;
    if (tag[0] == '?' || tag.rfind("!--", 0) == 0) continue;
    if (tag[0] == '/') {
      if (open.empty() || open.back() != tag.substr(1))
        return why = "mismatched </" + tag.substr(1) + ">", false;
      open.pop_back();
      continue;
    }
    bool selfClosing = tag.back() == '/';
    std::string name = tag.substr(0, tag.find_first_of(" \t\n/"));
    // Attributes: name="value" pairs without '<' inside values.
    size_t quotes = 0;
    for (char c : tag) quotes += c == '"';
    if (quotes % 2) return why = "unbalanced quotes in <" + name + ">", false;
    if (tag.find('<') != std::string::npos) return why = "'<' inside <" + name + ">", false;
    if (open.empty()) {
      if (rootSeen) return why = "second root", false;
      rootSeen = true;
    }
    if (!selfClosing) open.push_back(name);
  }
  if (!open.empty()) return why = "unclosed <" + open.back() + ">", false;
  return rootSeen || (why = "no root", false);
}

TEST(WellFormedCheck, RejectsBrokenDocuments) {
  std::string why;
  EXPECT_TRUE(
      wellFormed("<?xml version=\"1.0\"?>\n<svg><g a=\"1\"><text>a &amp; b</text></g></svg>", why))
      << why;
  EXPECT_FALSE(wellFormed("<svg><g></svg></g>", why));
  EXPECT_FALSE(wellFormed("<svg><text>a & b</text></svg>", why));
  EXPECT_FALSE(wellFormed("<svg><text a=\"x>y</text></svg>", why));
  EXPECT_FALSE(wellFormed("<svg></svg><svg></svg>", why));
}

TEST_F(SceneTest, SvgShowsVisibleDrawingsWithEscapedLabelsAndOmitsHiddenOnes) {
  DtString entity("1:2:3");
  float radius = 500;
  controller.setOrbitMode(&entity, &radius, nullptr, nullptr, nullptr);
  group->setValueBarAttributeValue(1, 40);
  group->setNumericAttributeValue(2, 321);
  drawer.update(group);
  auto* bad =
      new DtVdcText3DObject(drawer.nextId(), "bad\xff\x01", DtVdc3DAttachPoint(DtString("4:4:4")),
                            DtVector64(), DtVdcColor::DtVdcBlue, true);
  drawer.add(bad);

  std::string svg = viewer.svg();
  std::string why;
  EXPECT_TRUE(wellFormed(svg, why)) << why;
  EXPECT_NE(svg.find("Convoy &lt;A&amp;B&gt;"), std::string::npos);
  EXPECT_NE(svg.find("id=\"object-" + std::to_string(line) + "\""), std::string::npos);
  EXPECT_NE(svg.find(">Fuel<"), std::string::npos);  // the panel, titled by its template
  EXPECT_NE(svg.find(">Level<"), std::string::npos);
  EXPECT_NE(svg.find(">321<"), std::string::npos);
  EXPECT_NE(svg.find("orbit attach=1:2:3 radius=500"), std::string::npos);  // caption
  EXPECT_NE(svg.find(">4:4:4<"), std::string::npos);                      // the entity, in the tray
  EXPECT_NE(svg.find("bad\xEF\xBF\xBD\xEF\xBF\xBD"), std::string::npos);  // invalid bytes replaced
  EXPECT_NE(svg.find("<animate"), std::string::npos);                     // the flashing text

  drawer.hide(label);
  drawer.hide(layer);
  svg = viewer.svg();
  EXPECT_TRUE(wellFormed(svg, why)) << why;
  EXPECT_EQ(svg.find("Convoy"), std::string::npos);
  EXPECT_EQ(svg.find("id=\"object-" + std::to_string(line) + "\""), std::string::npos);
  EXPECT_NE(svg.find(">Fuel<"), std::string::npos);
}

// Positions come from the network: far from the origin a grid step no longer moves a
// double, and a zigzag between far points would want billions of teeth. Either used to
// hang the viewer; the picture must come back, well-formed.
TEST_F(ViewerTest, FarAwayAndEndlessDrawingsAreDrawnInBoundedTime) {
  // On an entity, the eyepoint has no place on the plan: only the drawings span it.
  DtString entity("1:2:3");
  float radius = 10;
  controller.setOrbitMode(&entity, &radius, nullptr, nullptr, nullptr);
  for (double far : {1e17, -3e18, 1e300}) {
    DtVdc3DAttachPoint a(DtVector64(far, far, 0)), b(DtVector64(far + 5, far, 0));
    unsigned int id = drawer.add(new DtVdcLine3DObject(
        drawer.nextId(), a, b, 1, DtVector64(), DtVdcColor::DtVdcRed, DtVdcSegmentLightning,
        DtVdcSegmentArrowEnd, 2, 0xFFFFFFFF, false, false, false));
    std::string svg = viewer.svg(), why;
    EXPECT_TRUE(wellFormed(svg, why)) << far << ": " << why;
    EXPECT_LT(svg.size(), 2000000u) << far;
    delete drawer.remove(id);
  }
  // A lightning line from one end of the world to the other, seen from close by.
  DtVdc3DAttachPoint a(DtVector64(-1e300, 0, 0)), b(DtVector64(1e300, 0, 0));
  drawer.add(new DtVdcLine3DObject(drawer.nextId(), a, b, 1, DtVector64(), DtVdcColor::DtVdcRed,
                                   DtVdcSegmentLightning, DtVdcSegmentArrowEnd, 2, 0xFFFFFFFF,
                                   false, false, false));
  std::string svg = viewer.svg(), why;
  EXPECT_TRUE(wellFormed(svg, why)) << why;
  EXPECT_LT(svg.size(), 2000000u);
}

}  // namespace

namespace {

// Ids come from the network: a sender that keeps inventing new ones meets a full scene,
// not an ever-growing viewer; removing makes room again.
TEST(VcviewerScene, NewIdsBeyondTheLimitAreRefused) {
  vcviewer::Scene scene;
  DtVdcLayerPdu layer;
  for (unsigned int id = 1; id <= vcviewer::Scene::kMaxEntries; ++id) {
    layer.setObjectId(id);
    scene.apply(layer);
  }
  layer.setObjectId(vcviewer::Scene::kMaxEntries + 1);
  EXPECT_NE(scene.apply(layer).find("refused"), std::string::npos);
  EXPECT_EQ(scene.drawings().size(), vcviewer::Scene::kMaxEntries);
  layer.setObjectId(5);  // an update of a held id still goes through
  EXPECT_NE(scene.apply(layer).find("draw update 5"), std::string::npos);
  DtVdcCommandPdu remove;
  remove.setType(DtVdcCommandRemove);
  remove.setObjectId(7);
  scene.apply(remove);
  layer.setObjectId(vcviewer::Scene::kMaxEntries + 1);
  EXPECT_NE(scene.apply(layer).find("draw add"), std::string::npos);
}

}  // namespace
