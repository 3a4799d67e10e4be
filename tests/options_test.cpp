// The options PDU: field offsets, presence bits (the shared bit 49, the second bitfield
// on short PDUs, one-shot commands), the hexadecimal text form and the dump.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "outputCapture.h"
#include "vistrelControl.h"
#include "wireBytes.h"

namespace {

bool bitOnWire(const DtOptionsPdu& pdu, int option) {
  size_t byte = option < 64 ? 152 + option / 8 : 1274 + (option - 64) / 8;
  return (wire::u8(pdu.packet(), byte) >> (option % 8)) & 1;
}

std::string bodyDumpOf(const DtVistrelControlPdu& pdu) {
  OutputCapture cap(DtDumpOut);
  pdu.printData();
  const std::string& all = cap.text();
  return all.substr(all.find('\n', all.find("IgnoreFlags")) + 1);
}

TEST(Options, FreshPdu) {
  DtOptionsPdu pdu;
  EXPECT_EQ(pdu.length(), 1539);
  EXPECT_EQ(wire::u16(pdu.packet(), 8), 1539u);
  EXPECT_EQ(wire::u16(pdu.packet(), 146), 11u);
  EXPECT_TRUE(wire::zero(pdu.packet(), 152, 1539 - 152));
}

// Every field at its offset, and every setter setting exactly its own bit.
TEST(Options, EachSetterWritesItsFieldAndBit) {
  using Check = std::function<bool(const char*)>;
  struct Case {
    int option;
    std::function<void(DtOptionsPdu&)> set;
    Check onWire;
  };
  auto f64 = [](size_t o, double v) {
    return Check([=](const char* b) { return wire::f64(b, o) == v; });
  };
  auto f32 = [](size_t o, float v) {
    return Check([=](const char* b) { return wire::f32(b, o) == v; });
  };
  auto u32 = [](size_t o, uint32_t v) {
    return Check([=](const char* b) { return wire::u32(b, o) == v; });
  };
  auto u8 = [](size_t o) { return Check([=](const char* b) { return wire::u8(b, o) == 1; }); };
  auto text = [](size_t o, size_t w, const char* v) {
    return Check([=](const char* b) { return wire::text(b, o, w) == v; });
  };
  std::vector<Case> cases = {
      {0, [](DtOptionsPdu& p) { p.setOverlayOption(DtOverlayOn); }, u32(240, 1)},
      {1, [](DtOptionsPdu& p) { p.setLocatorRange(1.5); }, f64(160, 1.5)},
      {2, [](DtOptionsPdu& p) { p.setSmoothing(static_cast<DtSmoothingOption>(7)); }, u32(244, 7)},
      {3, [](DtOptionsPdu& p) { p.setSmoothingPeriod(2.5); }, f64(168, 2.5)},
      {4, [](DtOptionsPdu& p) { p.setSound(true); }, u8(256)},
      {5, [](DtOptionsPdu& p) { p.setEntityLabels(true); }, u8(257)},
      {6, [](DtOptionsPdu& p) { p.setTrailingEffects(true); }, u8(258)},
      {7, [](DtOptionsPdu& p) { p.setTrajectoryHistory(true); }, u8(259)},
      {8, [](DtOptionsPdu& p) { p.setRecording(true); }, u8(260)},
      {9, [](DtOptionsPdu& p) { p.setAggregateLevel(-2); }, u32(248, 0xFFFFFFFEu)},
      {10, [](DtOptionsPdu& p) { p.setAggregateHighestOnly(true); }, u8(261)},
      {11, [](DtOptionsPdu& p) { p.setAggregatesAltitudeControlled(true); }, u8(262)},
      {12, [](DtOptionsPdu& p) { p.setNestedAggregates(true); }, u8(263)},
      {13, [](DtOptionsPdu& p) { p.setNestedEntities(true); }, u8(264)},
      {14, [](DtOptionsPdu& p) { p.setGroundClamping(true); }, u8(265)},
      {15, [](DtOptionsPdu& p) { p.setClampRange(3.5); }, f64(176, 3.5)},
      {16, [](DtOptionsPdu& p) { p.setFollowGround(true); }, u8(266)},
      {17, [](DtOptionsPdu& p) { p.setConstrainWithFloor(true); }, u8(267)},
      {18, [](DtOptionsPdu& p) { p.setFloor(-4.5); }, f64(184, -4.5)},
      {19, [](DtOptionsPdu& p) { p.setTimeOfDay(12.25); }, f64(192, 12.25)},
      {20, [](DtOptionsPdu& p) { p.setNearClip(0.1); }, f64(200, 0.1)},
      {21, [](DtOptionsPdu& p) { p.setFarClip(9000); }, f64(208, 9000)},
      {22, [](DtOptionsPdu& p) { p.setFov(45); }, f64(216, 45)},
      {23, [](DtOptionsPdu& p) { p.setFog(true); }, u8(268)},
      {24, [](DtOptionsPdu& p) { p.setNearFog(10); }, f64(224, 10)},
      {25, [](DtOptionsPdu& p) { p.setFarFog(20); }, f64(232, 20)},
      {26, [](DtOptionsPdu& p) { p.setTexture(true); }, u8(269)},
      {27, [](DtOptionsPdu& p) { p.setDatabaseToLoad("db.flt"); }, text(272, 256, "db.flt")},
      {28, [](DtOptionsPdu& p) { p.setStepsize(0.1f); }, f32(596, 0.1f)},
      {29, [](DtOptionsPdu& p) { p.setTurnrate(0.2f); }, f32(592, 0.2f)},
      {30, [](DtOptionsPdu& p) { p.setDate("2024-01-02"); }, text(528, 64, "2024-01-02")},
      {35, [](DtOptionsPdu& p) { p.setXr(true); }, u8(254)},
      {36, [](DtOptionsPdu& p) { p.setHatLabels(true); }, u8(255)},
      {39, [](DtOptionsPdu& p) { p.setCurrentModelSet("models"); }, text(600, 32, "models")},
      {42, [](DtOptionsPdu& p) { p.setCurrentTextureSet("tex"); }, text(632, 32, "tex")},
      {43, [](DtOptionsPdu& p) { p.setTerrainScale(0.1); }, f32(664, 0.1f)},
      {44, [](DtOptionsPdu& p) { p.setObjectScale(2); }, f32(668, 2)},
      {45, [](DtOptionsPdu& p) { p.setClouds(true); }, u8(673)},
      {46, [](DtOptionsPdu& p) { p.setSkyDome(true); }, u8(672)},
      {48, [](DtOptionsPdu& p) { p.setMirroring(true); }, u8(674)},
      {49, [](DtOptionsPdu& p) { p.setMirrorMessageEveryFrame(true); }, u8(675)},
      {49, [](DtOptionsPdu& p) { p.setBroadcasting(true); }, u8(676)},
      {50, [](DtOptionsPdu& p) { p.setClusteringLabels(true); }, u8(677)},
      {51, [](DtOptionsPdu& p) { p.setTacticalGraphicsLabels(true); }, u8(678)},
      {52, [](DtOptionsPdu& p) { p.setTacticalGraphics(true); }, u8(679)},
      {53, [](DtOptionsPdu& p) { p.setShowAggregates(true); }, u8(680)},
      {54, [](DtOptionsPdu& p) { p.setShowEmitters(true); }, u8(681)},
      {55, [](DtOptionsPdu& p) { p.setVideoCaptureCommand(DtOptionsPdu::DtVideoCaptureUnpause); },
       Check([](const char* b) { return wire::u8(b, 682) == 2; })},
      {56, [](DtOptionsPdu& p) { p.setVideoCaptureFilename("f.avi"); }, text(688, 256, "f.avi")},
      {57, [](DtOptionsPdu& p) { p.setVideoCaptureDirectory("/v"); }, text(944, 256, "/v")},
      {58, [](DtOptionsPdu& p) { p.setVideoCaptureFilenameBase("cap"); }, text(1200, 64, "cap")},
      {59, [](DtOptionsPdu& p) { p.setVideoCaptureRecordInsets(true); }, u8(683)},
      {60, [](DtOptionsPdu& p) { p.setVideoCaptureFramesPerSecond(65537); },
       Check([](const char* b) { return wire::u16(b, 684) == 1; })},
      {61, [](DtOptionsPdu& p) { p.setConstrainToAll(true); }, u8(1272)},
      {62, [](DtOptionsPdu& p) { p.setBlockedDistance(7.5); }, f64(1264, 7.5)},
      {63, [](DtOptionsPdu& p) { p.setUseNearClipForBlockedDistance(true); }, u8(1273)},
      {64, [](DtOptionsPdu& p) { p.setFeatureFilename("feat.shp"); }, text(1282, 256, "feat.shp")},
      {66, [](DtOptionsPdu& p) { p.setFeatureCommand(DtOptionsPdu::DtClearFeatures); },
       Check([](const char* b) { return wire::u8(b, 1538) == 1; })},
  };
  for (const Case& c : cases) {
    DtOptionsPdu pdu;
    c.set(pdu);
    EXPECT_TRUE(c.onWire(pdu.packet())) << "option " << c.option;
    for (int k = 0; k < 128; ++k)
      EXPECT_EQ(bitOnWire(pdu, k), k == c.option) << "option " << c.option << " bit " << k;
  }
}

TEST(Options, GettersReadBackWhatTheWireHolds) {
  DtOptionsPdu pdu;
  pdu.setTerrainScale(0.1);
  pdu.setVideoCaptureFramesPerSecond(70000);
  pdu.setAggregateLevel(5);
  pdu.setVideoCaptureCommand(DtOptionsPdu::DtVideoCaptureRecord);
  EXPECT_EQ(pdu.terrainScale(), 0.1f);
  EXPECT_EQ(pdu.videoCaptureFramesPerSecond(), 70000 - 65536);
  EXPECT_EQ(pdu.aggregateLevel(), 5);
  EXPECT_EQ(pdu.videoCaptureCommand(), DtOptionsPdu::DtVideoCaptureRecord);
  std::vector<unsigned char> bytes = wire::controlPdu(11, 1539);
  bytes[256] = 0x80;  // any non-zero byte is on
  DtOptionsPdu received(reinterpret_cast<const DtNetViewControlPdu*>(bytes.data()), nullptr,
                        nullptr);
  EXPECT_TRUE(received.sound());
}

TEST(Options, CharacterFieldsAreCutAtTheirWidth) {
  DtOptionsPdu pdu;
  std::string longName(300, 'd');
  pdu.setDatabaseToLoad(longName.c_str());
  EXPECT_EQ(wire::text(pdu.packet(), 272, 256), longName.substr(0, 256));
  EXPECT_EQ(wire::u8(pdu.packet(), 528), 0u);  // the date behind it is untouched
  EXPECT_EQ(pdu.databaseToLoad().length(), 256u);
  pdu.setCurrentModelSet(std::string(40, 'm').c_str());
  EXPECT_EQ(pdu.currentModelSet().length(), 32u);
  EXPECT_EQ(wire::u8(pdu.packet(), 632), 0u);
}

TEST(OptionBits, SharedBitAndOneShots) {
  DtOptionsPdu pdu;
  pdu.setBroadcasting(true);
  EXPECT_TRUE(pdu.optionPresent(DtOptMirrorMessageEveryFrame));
  DtOptionsPdu other;
  other.setMirrorMessageEveryFrame(false);
  EXPECT_TRUE(other.optionPresent(static_cast<DtVistrelOption>(49)));
  EXPECT_EQ(wire::u8(other.packet(), 158), 0x02u);  // 49 = byte 6, bit 1

  int oneShots[] = {31, 32, 33, 34, 37, 38, 40, 41, 47};
  std::vector<std::function<void(DtOptionsPdu&, bool)>> setters = {
      [](DtOptionsPdu& p, bool on) { p.setIncrementStepsize(on); },
      [](DtOptionsPdu& p, bool on) { p.setIncrementTurnrate(on); },
      [](DtOptionsPdu& p, bool on) { p.setDecrementStepsize(on); },
      [](DtOptionsPdu& p, bool on) { p.setDecrementTurnrate(on); },
      [](DtOptionsPdu& p, bool on) { p.setShowNextModelSet(on); },
      [](DtOptionsPdu& p, bool on) { p.setShowPrevModelSet(on); },
      [](DtOptionsPdu& p, bool on) { p.setShowPrevTextureSet(on); },
      [](DtOptionsPdu& p, bool on) { p.setShowNextTextureSet(on); },
      [](DtOptionsPdu& p, bool on) { p.setExit(on); }};
  for (size_t i = 0; i < setters.size(); ++i) {
    DtOptionsPdu p;
    setters[i](p, true);
    EXPECT_TRUE(bitOnWire(p, oneShots[i])) << oneShots[i];
    setters[i](p, false);
    EXPECT_TRUE(wire::zero(p.packet(), 152, 8)) << oneShots[i];
  }
  pdu.setExit(true);
  EXPECT_TRUE(pdu.exit());
  EXPECT_FALSE(pdu.incrementStepsize());
}

TEST(OptionBits, HighOptionsAbsentOnShortPdu) {
  std::vector<unsigned char> bytes = wire::controlPdu(11, 1274);
  bytes[152] = 0x01;
  DtOptionsPdu shortPdu(reinterpret_cast<const DtNetViewControlPdu*>(bytes.data()), nullptr,
                        nullptr);
  EXPECT_EQ(shortPdu.length(), 1274);
  shortPdu.writeU8(1274, 0xFF);  // whatever lies behind the PDU's end
  EXPECT_TRUE(shortPdu.optionPresent(DtOptOverlay));
  EXPECT_FALSE(shortPdu.optionPresent(DtOptFeatureFilename));
  EXPECT_FALSE(shortPdu.optionPresent(DtOptFeatureCommand));
  shortPdu.setFeatureCommand(DtOptionsPdu::DtLoadFeatures);
  EXPECT_EQ(shortPdu.length(), 1274);  // not grown
  shortPdu.changeSize(1275);
  EXPECT_TRUE(shortPdu.optionPresent(DtOptFeatureFilename));
  shortPdu.clearOptionPresent(DtOptFeatureCommand);
  EXPECT_EQ(wire::u8(shortPdu.packet(), 1274), 0xFBu);
  EXPECT_FALSE(shortPdu.optionPresent(static_cast<DtVistrelOption>(128)));
  EXPECT_FALSE(shortPdu.optionPresent(static_cast<DtVistrelOption>(-1)));
}

TEST(OptionsText, HexImageBothWays) {
  DtOptionsPdu pdu;
  pdu.setViewerId("v1");
  pdu.setFov(45);
  pdu.setFeatureFilename("f");
  std::string hex = pdu.string();
  EXPECT_EQ(hex.size(), 3078u);
  EXPECT_EQ(hex.substr(0, 12), "0601ca810000");
  EXPECT_EQ(hex.substr(16, 4), "0603");  // length 1539
  EXPECT_EQ(hex.find_first_not_of("0123456789abcdef"), std::string::npos);

  DtOptionsPdu copy;
  copy.setFromString(hex.c_str());
  EXPECT_EQ(copy.length(), 1539);
  EXPECT_EQ(std::string(copy.packet(), 1539), std::string(pdu.packet(), 1539));
  EXPECT_EQ(copy.fov(), 45);
  copy.setFromString(copy.string());  // its own text, read while it is replaced
  EXPECT_EQ(copy.featureFilename(), "f");

  copy.setFromString((hex.substr(0, 400) + "z").c_str());  // the header claims more
  EXPECT_EQ(copy.length(), 1539);
  EXPECT_EQ(copy.fov(), 0);
  copy.setFromString("0");
  EXPECT_EQ(copy.length(), 0);
}

TEST(OptionsDump, LabelsInTheirOrder) {
  DtOptionsPdu pdu;
  EXPECT_EQ(bodyDumpOf(pdu),
            "Options Bitfield: 00 00 00 00 00 00 00 00\n"
            "Options Bitfield2: 00 00 00 00 00 00 00 00\n");
  pdu.setShowPrevModelSet(true);
  pdu.setAggregateLevel(3);
  pdu.setTurnrate(0.5f);
  pdu.setStepsize(2);
  pdu.setVideoCaptureCommand(DtOptionsPdu::DtVideoCaptureRecord);
  pdu.setFeatureCommand(DtOptionsPdu::DtClearFeatures);
  pdu.setShowAggregates(true);
  pdu.setSound(false);
  EXPECT_EQ(bodyDumpOf(pdu),
            "Options Bitfield: 10 02 00 30 40 00 a0 00\n"
            "Options Bitfield2: 04 00 00 00 00 00 00 00\n"
            "Sound: false\n"
            "Show Aggregates: true\n"
            "AggregateLevel 3\n"
            "Turn rate: 0.500000\n"
            "Step size: 2.000000\n"
            "Cycle to previous texture set.\n"
            "Video Capture Command: Record\n"
            "Feature Command: Clear Features\n");
}

TEST(OptionsDump, EveryOptionInOrder) {
  DtOptionsPdu pdu;
  for (int k = 0; k < 128; ++k) pdu.setOptionPresent(static_cast<DtVistrelOption>(k));
  pdu.setVideoCaptureCommand(static_cast<DtOptionsPdu::DtVistrelControlVideoCaptureCommand>(9));
  const char* labels[] = {
      "Overlay:",
      "LocatorRange:",
      "Smoothing:",
      "SmoothingPeriod:",
      "Sound:",
      "EntityLabels:",
      "TrailingEffects:",
      "TrajectoryHistory:",
      "Recording:",
      "Show Aggregates:",
      "AggregateLevel",
      "AggregateHighestOnly:",
      "AggregatesAltitudeControlled:",
      "NestedAggregates:",
      "NestedEntities:",
      "GroundClamping:",
      "ClampRange:",
      "FollowGround:",
      "ConstrainWithFloor:",
      "Floor:",
      "TimeOfDay:",
      "NearClip:",
      "FarClip:",
      "Fov:",
      "Fog:",
      "NearFog:",
      "FarFog:",
      "Texture:",
      "DatabaseToLoad:",
      "Date:",
      "Turn rate:",
      "Step size:",
      "Increment stepsize\n",
      "Decrement stepsize\n",
      "Increment turnrate\n",
      "Decrement turnrate\n",
      "XR enabled:",
      "HAT labels enabled:",
      "Cycle to next model set.\n",
      "Cycle to previous texture set.\n",
      "Current model set:",
      "Cycle to previous texture set.\n",
      "Cycle to next texture set.\n",
      "Current texture set:",
      "Terrain scale:",
      "Object scale:",
      "Exit vistrel.\n",
      "Sky Dome:",
      "Clouds:",
      "Mirroring:",
      "MirrorMessageEveryFrame:",
      "Broadcasting:",
      "Clustering Labels:",
      "Tactical Graphics Labels:",
      "Tactical Graphics:",
      "Show Emitters:",
      "Video Capture Command: \n",  // a command outside the table prints no text
      "Video Capture Filename:",
      "Video Capture Directory:",
      "Video Capture Filename Base:",
      "Video Capture Record Insets:",
      "Video Capture FPS:",
      "Constrained To All:",
      "Blocked Distance:",
      "Use Near Clip For Blocked Distance:",
      "Feature Filename:",
      "Feature Command: Load Features\n"};
  std::string dump = bodyDumpOf(pdu);
  size_t at = 0;
  for (const char* label : labels) {
    size_t found = dump.find(std::string("\n") + label, at);
    ASSERT_NE(found, std::string::npos) << label;
    at = found + 1;
  }
}

}  // namespace
