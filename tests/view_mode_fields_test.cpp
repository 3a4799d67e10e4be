// The one description of the modes' fields against the PDU classes, which lay their
// bodies out on their own: every row must lie where the class keeps that field, marking
// texts where the class writes them, and no two rows may share a byte or a bit. What the
// controller, vcctl and the viewer make of the rows is checked mode by mode in their own
// tests, against hand-worked numbers.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "viewModeFields.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using vcmodes::Field;
using vcmodes::Kind;
using vcmodes::Mode;

std::vector<const Mode*> everyDescription() {
  std::vector<const Mode*> all;
  for (const Mode& m : vcmodes::kModes) all.push_back(&m);
  all.push_back(&vcmodes::kModeless);
  all.push_back(&vcmodes::kMove);
  return all;
}

TEST(ViewModeFields, RowsAreInWireOrderInsideTheBodyWithDisjointBits) {
  for (const Mode* mode : everyDescription()) {
    SCOPED_TRACE(mode->name);
    EXPECT_EQ(vcmodes::find(mode->command, mode->wide), mode);
    std::unique_ptr<DtVistrelControlPdu> pdu(vcmodes::newPdu(*mode));
    EXPECT_EQ(pdu->viewerCommand(), mode->command);
    EXPECT_EQ(pdu->length(), mode->length);
    EXPECT_EQ(vcmodes::find(*pdu), mode);
    size_t end = 156;  // right behind the ignore flags
    unsigned long seen = 0;
    for (size_t i = 0; i < mode->count; ++i) {
      const Field& f = mode->fields[i];
      SCOPED_TRACE(f.name);
      EXPECT_GE(f.offset, end) << "overlaps or precedes the field before it";
      end = f.offset + vcmodes::width(f.kind);
      EXPECT_LE(end, static_cast<size_t>(mode->length));
      EXPECT_EQ(seen & f.bit, 0ul) << "bit shared with another field";
      seen |= f.bit;
      // What the viewer keeps component by component has one bit per component.
      const bool triple = f.kind == Kind::Vector32 || f.kind == Kind::Vector64 ||
                          f.kind == Kind::Angles || f.kind == Kind::Angles64;
      if (f.bit != vcmodes::kNoBit) {
        EXPECT_EQ(__builtin_popcountl(f.bit), triple ? 3 : 1);
      }
      if (f.option) {
        EXPECT_EQ(vcmodes::field(*mode, f.option), &f) << "option named twice";
      }
    }
  }
  EXPECT_EQ(vcmodes::find(DtVcRequestState), nullptr);
  EXPECT_EQ(vcmodes::find(DtVcGroup)->wide, false);
  EXPECT_EQ(vcmodes::find(DtVcGroup, true)->wide, true);
  EXPECT_EQ(vcmodes::find(DtVcOrbit, true), vcmodes::find(DtVcOrbit));
}

// The classes' own marking setters against where the description says each entity's
// marking text lies: behind every designator, in their order.
TEST(ViewModeFields, MarkingTextsLieWhereTheClassesWriteThem) {
  DtTetherVCPdu tether;
  tether.setMarkingText("tether");
  DtCompassVCPdu compass;
  compass.setMarkingText("compass");
  DtMimicVCPdu mimic;
  mimic.setMarkingText("mimic");
  DtOffsetMimicVCPdu turret;
  turret.setMarkingText("turret");
  DtOrbitVCPdu orbit;
  orbit.setMarkingText("orbit");
  DtTrackVCPdu track;
  track.setMarkingText("track");
  DtTetherTrackVCPdu tetherTrack;
  tetherTrack.setAttachMarkingText("tt-attach");
  tetherTrack.setTrackMarkingText("tt-track");
  DtMimicTrackVCPdu mimicTrack;
  mimicTrack.setAttachMarkingText("mt-attach");
  mimicTrack.setTrackMarkingText("mt-track");
  const std::map<std::string, const DtVistrelControlPdu*> pdus = {{"tether", &tether},
                                                                  {"compass", &compass},
                                                                  {"mimic", &mimic},
                                                                  {"turret", &turret},
                                                                  {"orbit", &orbit},
                                                                  {"track", &track},
                                                                  {"tether-track", &tetherTrack},
                                                                  {"mimic-track", &mimicTrack}};
  const std::map<std::string, std::string> wanted = {{"tether attach", "tether"},
                                                     {"compass attach", "compass"},
                                                     {"mimic attach", "mimic"},
                                                     {"turret attach", "turret"},
                                                     {"orbit attach", "orbit"},
                                                     {"track track", "track"},
                                                     {"tether-track attach", "tt-attach"},
                                                     {"tether-track track", "tt-track"},
                                                     {"mimic-track attach", "mt-attach"},
                                                     {"mimic-track track", "mt-track"}};
  size_t checked = 0;
  for (const Mode* mode : everyDescription()) {
    for (size_t i = 0; i < mode->count; ++i) {
      const Field& f = mode->fields[i];
      const size_t at = vcmodes::marking(*mode, f);
      if (f.kind != Kind::Entity) {
        EXPECT_EQ(at, 0u) << mode->name << " " << f.name;
        continue;
      }
      const std::string key = std::string(mode->name) + " " + f.name;
      SCOPED_TRACE(key);
      ASSERT_EQ(pdus.count(mode->name), 1u);
      ASSERT_EQ(wanted.count(key), 1u);
      EXPECT_EQ(wire::text(pdus.at(mode->name)->packet(), at, 64), wanted.at(key));
      ++checked;
    }
  }
  EXPECT_EQ(checked, wanted.size());
}

// Fields the command line does not reach still have their rows right: the classes'
// own setters write them where the rows say.
TEST(ViewModeFields, RowsWithoutAnOptionMatchTheClassesSetters) {
  DtOrbitVCPdu orbit;
  orbit.setHeadingOffset(1.5f);
  orbit.setPitchOffset(2.5f);
  orbit.setRoll(3.5f);
  DtCompassVCPdu compass;
  compass.setHeadingOffset(1.5f);
  compass.setPitchOffset(2.5f);
  compass.setRoll(3.5f);
  DtPivotVCPdu pivot;
  pivot.setHeadingOffset(1.5f);
  pivot.setPitchOffset(2.5f);
  pivot.setRoll(3.5f);
  DtGroupVCPdu group;
  group.setHeading(1.5f);
  group.setPitch(2.5f);
  DtMimicVCPdu mimic;
  mimic.setBodyOrientation(DtTaitBryan(1.5, 2.5, 3.5));
  DtMoveVCPdu move;
  move.setReset(true);
  const std::map<std::string, float> wanted = {{"headingoffset", 1.5f}, {"pitchoffset", 2.5f},
                                               {"roll", 3.5f},          {"heading", 1.5f},
                                               {"pitch", 2.5f},         {"orientation", 1.5f}};
  const std::map<DtViewerCommand, const DtVistrelControlPdu*> pdus = {
      {DtVcOrbit, &orbit}, {DtVcCompass, &compass}, {DtVcPivot, &pivot},
      {DtVcGroup, &group}, {DtVcMimic, &mimic},     {DtVcMove, &move}};
  int checked = 0;
  for (const auto& [command, pdu] : pdus) {
    const Mode* mode = vcmodes::find(command);
    ASSERT_NE(mode, nullptr);
    SCOPED_TRACE(mode->name);
    for (size_t i = 0; i < mode->count; ++i) {
      const Field& f = mode->fields[i];
      if (f.option) continue;
      SCOPED_TRACE(f.name);
      if (f.kind == Kind::Flag) {
        EXPECT_EQ(wire::u8(pdu->packet(), f.offset), 1u);
      } else {
        ASSERT_EQ(wanted.count(f.name), 1u);
        EXPECT_EQ(wire::f32(pdu->packet(), f.offset), wanted.at(f.name));
      }
      ++checked;
    }
  }
  EXPECT_EQ(checked, 3 + 3 + 3 + 2 + 1 + 1);
}

}  // namespace
