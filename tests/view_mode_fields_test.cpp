// The one description of the modes' fields against the classes and the controller that
// really build the PDUs: every field the command line can give must land at the offset
// the description names and clear exactly its bits, so a row with a wrong offset, kind,
// bit or order fails here before a tool trusts it.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "viewModeFields.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

using vcmodes::Field;
using vcmodes::Kind;
using vcmodes::Mode;

class Recorder : public DtCustomRemoteControlSender {
 public:
  void send(const char* pdu, int length) override { sent.emplace_back(pdu, pdu + length); }
  std::vector<std::vector<char>> sent;
};

// A distinct value for every field of a mode, looked up by the command line's name, so a
// row that sends an option to the wrong place reads back someone else's value.
class Given {
 public:
  explicit Given(const Mode& mode) : mode_(mode) {}
  const Field* field(const char* option) {
    for (size_t i = 0; i < mode_.count; ++i)
      if (mode_.fields[i].option && std::strcmp(mode_.fields[i].option, option) == 0)
        return &mode_.fields[i];
    ADD_FAILURE() << mode_.name << " has no field for --" << option;
    return nullptr;
  }
  size_t index(const char* option) {
    const Field* f = field(option);
    return f ? static_cast<size_t>(f - mode_.fields) : 99;
  }
  const float* real(const char* option) { return &reals_.emplace_back(10.5f + index(option)); }
  const DtVector64* vector(const char* option) {
    double base = 100.0 * (index(option) + 1);
    return &vectors_.emplace_back(base + 1, base + 2, base + 3);
  }
  const DtTaitBryan* angles(const char* option) {
    float base = 0.25f * (index(option) + 1);
    return &angles_.emplace_back(base, base + 0.5f, base + 1.0f);
  }
  const DtString* entity(const char* option) {
    return &texts_.emplace_back(("7:8:" + std::to_string(index(option))).c_str());
  }
  const DtGlobalObjectDesignatorList* entities() {
    index("entities");
    return &lists_.emplace_back(DtGlobalObjectDesignatorList{"g1", "g2"});
  }

 private:
  const Mode& mode_;
  std::deque<float> reals_;
  std::deque<DtVector64> vectors_;
  std::deque<DtTaitBryan> angles_;
  std::deque<DtString> texts_;
  std::deque<DtGlobalObjectDesignatorList> lists_;
};

// Each mode's command with every argument the controller takes.
using Send = std::function<void(const DtVistrelRemoteController&, Given&)>;
const std::map<DtViewerCommand, Send>& senders() {
  static const std::map<DtViewerCommand, Send> all = {
      {DtVcAbsolute,
       [](auto& c, Given& g) { c.setAbsoluteMode(g.vector("at"), g.angles("orientation")); }},
      {DtVcTether,
       [](auto& c, Given& g) {
         c.setTetherMode(g.entity("entity"), g.vector("offset"), g.angles("orientation"));
       }},
      {DtVcCompass,
       [](auto& c, Given& g) {
         c.setCompassMode(g.entity("entity"), g.real("radius"), g.real("heading"), g.real("pitch"));
       }},
      {DtVcMimic,
       [](auto& c, Given& g) { c.setMimicMode(g.entity("entity"), g.vector("offset")); }},
      {DtVcOffsetMimic,
       [](auto& c, Given& g) { c.setTurretMode(g.entity("entity"), g.vector("offset")); }},
      {DtVcOrbit,
       [](auto& c, Given& g) {
         c.setOrbitMode(g.entity("entity"), g.real("radius"), g.real("heading"), g.real("pitch"),
                        g.real("rate"));
       }},
      {DtVcTrack, [](auto& c, Given& g) { c.setTrackMode(g.entity("entity"), g.vector("at")); }},
      {DtVcTetherTrack,
       [](auto& c, Given& g) {
         c.setTetherTrackMode(g.entity("entity"), g.entity("track"), g.vector("offset"));
       }},
      {DtVcMimicTrack,
       [](auto& c, Given& g) {
         c.setMimicTrackMode(g.entity("entity"), g.entity("track"), g.vector("offset"));
       }},
      {DtVcGroup,
       [](auto& c, Given& g) {
         c.setGroupMode(g.entities(), g.real("radial"), g.real("heading"), g.real("pitch"));
       }},
      {DtVcPivot,
       [](auto& c, Given& g) {
         c.setPivotMode(g.vector("point"), g.real("radius"), g.real("heading"), g.real("pitch"));
       }},
  };
  return all;
}

TEST(ViewModeFields, RowsAreInWireOrderInsideTheBodyWithDisjointBits) {
  for (const Mode& mode : vcmodes::kModes) {
    SCOPED_TRACE(mode.name);
    EXPECT_EQ(vcmodes::find(mode.command), &mode);
    size_t end = 156;  // right behind the ignore flags
    unsigned long seen = 0;
    for (size_t i = 0; i < mode.count; ++i) {
      const Field& f = mode.fields[i];
      SCOPED_TRACE(f.name);
      EXPECT_GE(f.offset, end) << "overlaps or precedes the field before it";
      end = f.offset + vcmodes::width(f.kind);
      EXPECT_LE(end, static_cast<size_t>(mode.length));
      EXPECT_EQ(seen & f.bit, 0ul) << "bit shared with another field";
      seen |= f.bit;
    }
  }
  EXPECT_EQ(vcmodes::find(DtVcModeless), nullptr);
}

TEST(ViewModeFields, EveryOptionLandsWhereItsRowSaysAndClearsOnlyItsBits) {
  for (const Mode& mode : vcmodes::kModes) {
    SCOPED_TRACE(mode.name);
    auto send = senders().find(mode.command);
    ASSERT_NE(send, senders().end());
    Recorder recorder;
    DtVistrelRemoteController controller(&recorder, DtString("viewer"));
    Given given(mode);
    send->second(controller, given);
    ASSERT_EQ(recorder.sent.size(), 1u);
    const char* b = recorder.sent[0].data();
    // The group's two entities follow its fixed part.
    const int lists = mode.command == DtVcGroup ? 2 * 64 : 0;
    EXPECT_EQ(static_cast<int>(recorder.sent[0].size()), mode.length + lists);
    EXPECT_EQ(wire::u16(b, 146), static_cast<uint32_t>(mode.command));
    unsigned long cleared = 0;
    for (size_t i = 0; i < mode.count; ++i) {
      const Field& f = mode.fields[i];
      if (!f.option) continue;
      SCOPED_TRACE(f.name);
      cleared |= f.bit;
      const size_t o = f.offset;
      const double base = 100.0 * (i + 1);
      const float turn = 0.25f * (i + 1);
      switch (f.kind) {
        case Kind::Real:
          EXPECT_EQ(wire::f32(b, o), 10.5f + i);
          break;
        case Kind::Vector64:
          EXPECT_EQ(wire::f64(b, o), base + 1);
          EXPECT_EQ(wire::f64(b, o + 16), base + 3);
          break;
        case Kind::Vector32:
          EXPECT_EQ(wire::f32(b, o), static_cast<float>(base + 1));
          EXPECT_EQ(wire::f32(b, o + 8), static_cast<float>(base + 3));
          break;
        case Kind::Angles:
          EXPECT_EQ(wire::f32(b, o), turn);
          EXPECT_EQ(wire::f32(b, o + 8), turn + 1.0f);
          break;
        case Kind::Entity:
          EXPECT_EQ(wire::text(b, o, 64), "7:8:" + std::to_string(i));
          break;
        case Kind::Entities:
          // The listed entities replace the group: none removed (-1), two added.
          EXPECT_EQ(wire::i32(b, o), -1);
          EXPECT_EQ(wire::i32(b, o + 4), 2);
          break;
      }
    }
    EXPECT_EQ(wire::u32(b, 152), 0xFFFFFFFFul & ~cleared);
  }
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
  const std::map<std::string, float> wanted = {{"headingOffset", 1.5f}, {"pitchOffset", 2.5f},
                                               {"roll", 3.5f},          {"heading", 1.5f},
                                               {"pitch", 2.5f},         {"orientation", 1.5f}};
  const std::map<DtViewerCommand, const DtVistrelControlPdu*> pdus = {{DtVcOrbit, &orbit},
                                                                      {DtVcCompass, &compass},
                                                                      {DtVcPivot, &pivot},
                                                                      {DtVcGroup, &group},
                                                                      {DtVcMimic, &mimic}};
  int checked = 0;
  for (const auto& [command, pdu] : pdus) {
    const Mode* mode = vcmodes::find(command);
    ASSERT_NE(mode, nullptr);
    SCOPED_TRACE(mode->name);
    for (size_t i = 0; i < mode->count; ++i) {
      const Field& f = mode->fields[i];
      if (f.option) continue;
      SCOPED_TRACE(f.name);
      ASSERT_EQ(wanted.count(f.name), 1u);
      EXPECT_EQ(wire::f32(pdu->packet(), f.offset), wanted.at(f.name));
      ++checked;
    }
  }
  EXPECT_EQ(checked, 3 + 3 + 3 + 2 + 1);
}

}  // namespace
