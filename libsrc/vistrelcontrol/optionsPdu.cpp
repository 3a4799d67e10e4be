#include "optionsPdu.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "dtOutput.h"
#include "vcPduPatterns.h"

namespace {

constexpr size_t kFirstBits = 152;
constexpr size_t kSecondBits = 1274;
constexpr size_t kBitfieldSize = 8;
constexpr int kFirstHighOption = 64;
constexpr int kLastOption = 127;

// How an option's field is read and dumped.
enum class Show { Real, Word, Flag, Text, OneShot, VideoCommand, FeatureCommand };

struct Option {
  DtVistrelOption number;
  Show show;
  size_t offset;
  size_t width;  // bytes on the wire; a one-shot option has no field
  const char* label;
};

// The fields in the order of the body.
constexpr Option kLocatorRange{DtOptLocatorRange, Show::Real, 160, 8, "LocatorRange:"};
constexpr Option kSmoothingPeriod{DtOptSmoothingPeriod, Show::Real, 168, 8, "SmoothingPeriod:"};
constexpr Option kClampRange{DtOptClampRange, Show::Real, 176, 8, "ClampRange:"};
constexpr Option kFloor{DtOptFloor, Show::Real, 184, 8, "Floor:"};
constexpr Option kTimeOfDay{DtOptTimeOfDay, Show::Real, 192, 8, "TimeOfDay:"};
constexpr Option kNearClip{DtOptNearClip, Show::Real, 200, 8, "NearClip:"};
constexpr Option kFarClip{DtOptFarClip, Show::Real, 208, 8, "FarClip:"};
constexpr Option kFov{DtOptFov, Show::Real, 216, 8, "Fov:"};
constexpr Option kNearFog{DtOptNearFog, Show::Real, 224, 8, "NearFog:"};
constexpr Option kFarFog{DtOptFarFog, Show::Real, 232, 8, "FarFog:"};
constexpr Option kOverlay{DtOptOverlay, Show::Word, 240, 4, "Overlay:"};
constexpr Option kSmoothing{DtOptSmoothing, Show::Word, 244, 4, "Smoothing:"};
constexpr Option kAggregateLevel{DtOptAggregateLevel, Show::Word, 248, 4, "AggregateLevel"};
constexpr Option kXr{DtOptXr, Show::Flag, 254, 1, "XR enabled:"};
constexpr Option kHatLabels{DtOptHatLabels, Show::Flag, 255, 1, "HAT labels enabled:"};
constexpr Option kSound{DtOptSound, Show::Flag, 256, 1, "Sound:"};
constexpr Option kEntityLabels{DtOptEntityLabels, Show::Flag, 257, 1, "EntityLabels:"};
constexpr Option kTrailingEffects{DtOptTrailingEffects, Show::Flag, 258, 1, "TrailingEffects:"};
constexpr Option kTrajectoryHistory{DtOptTrajectoryHistory, Show::Flag, 259, 1,
                                    "TrajectoryHistory:"};
constexpr Option kRecording{DtOptRecording, Show::Flag, 260, 1, "Recording:"};
constexpr Option kAggregateHighestOnly{DtOptAggregateHighestOnly, Show::Flag, 261, 1,
                                       "AggregateHighestOnly:"};
constexpr Option kAggregatesAltitudeControlled{DtOptAggregatesAltitudeControlled, Show::Flag, 262,
                                               1, "AggregatesAltitudeControlled:"};
constexpr Option kNestedAggregates{DtOptNestedAggregates, Show::Flag, 263, 1, "NestedAggregates:"};
constexpr Option kNestedEntities{DtOptNestedEntities, Show::Flag, 264, 1, "NestedEntities:"};
constexpr Option kGroundClamping{DtOptGroundClamping, Show::Flag, 265, 1, "GroundClamping:"};
constexpr Option kFollowGround{DtOptFollowGround, Show::Flag, 266, 1, "FollowGround:"};
constexpr Option kConstrainWithFloor{DtOptConstrainWithFloor, Show::Flag, 267, 1,
                                     "ConstrainWithFloor:"};
constexpr Option kFog{DtOptFog, Show::Flag, 268, 1, "Fog:"};
constexpr Option kTexture{DtOptTexture, Show::Flag, 269, 1, "Texture:"};
constexpr Option kDatabaseToLoad{DtOptDatabaseToLoad, Show::Text, 272, 256, "DatabaseToLoad:"};
constexpr Option kDate{DtOptDate, Show::Text, 528, 64, "Date:"};
constexpr Option kTurnrate{DtOptTurnrate, Show::Real, 592, 4, "Turn rate:"};
constexpr Option kStepsize{DtOptStepsize, Show::Real, 596, 4, "Step size:"};
constexpr Option kCurrentModelSet{DtOptCurrentModelSet, Show::Text, 600, 32, "Current model set:"};
constexpr Option kCurrentTextureSet{DtOptCurrentTextureSet, Show::Text, 632, 32,
                                    "Current texture set:"};
constexpr Option kTerrainScale{DtOptTerrainScale, Show::Real, 664, 4, "Terrain scale:"};
constexpr Option kObjectScale{DtOptObjectScale, Show::Real, 668, 4, "Object scale:"};
constexpr Option kSkyDome{DtOptSkyDome, Show::Flag, 672, 1, "Sky Dome:"};
constexpr Option kClouds{DtOptClouds, Show::Flag, 673, 1, "Clouds:"};
constexpr Option kMirroring{DtOptMirroring, Show::Flag, 674, 1, "Mirroring:"};
constexpr Option kMirrorMessageEveryFrame{DtOptMirrorMessageEveryFrame, Show::Flag, 675, 1,
                                          "MirrorMessageEveryFrame:"};
constexpr Option kBroadcasting{DtOptBroadcasting, Show::Flag, 676, 1, "Broadcasting:"};
constexpr Option kClusteringLabels{DtOptClusteringLabels, Show::Flag, 677, 1, "Clustering Labels:"};
constexpr Option kTacticalGraphicsLabels{DtOptTacticalGraphicsLabels, Show::Flag, 678, 1,
                                         "Tactical Graphics Labels:"};
constexpr Option kTacticalGraphics{DtOptTacticalGraphics, Show::Flag, 679, 1, "Tactical Graphics:"};
constexpr Option kShowAggregates{DtOptShowAggregates, Show::Flag, 680, 1, "Show Aggregates:"};
constexpr Option kShowEmitters{DtOptShowEmitters, Show::Flag, 681, 1, "Show Emitters:"};
constexpr Option kVideoCaptureCommand{DtOptVideoCaptureCommand, Show::VideoCommand, 682, 1,
                                      "Video Capture Command: "};
constexpr Option kVideoCaptureRecordInsets{DtOptVideoCaptureRecordInsets, Show::Flag, 683, 1,
                                           "Video Capture Record Insets:"};
constexpr Option kVideoCaptureFps{DtOptVideoCaptureFramesPerSecond, Show::Word, 684, 2,
                                  "Video Capture FPS:"};
constexpr Option kVideoCaptureFilename{DtOptVideoCaptureFilename, Show::Text, 688, 256,
                                       "Video Capture Filename:"};
constexpr Option kVideoCaptureDirectory{DtOptVideoCaptureDirectory, Show::Text, 944, 256,
                                        "Video Capture Directory:"};
constexpr Option kVideoCaptureFilenameBase{DtOptVideoCaptureFilenameBase, Show::Text, 1200, 64,
                                           "Video Capture Filename Base:"};
constexpr Option kBlockedDistance{DtOptBlockedDistance, Show::Real, 1264, 8, "Blocked Distance:"};
constexpr Option kConstrainedToAll{DtOptConstrainedToAll, Show::Flag, 1272, 1,
                                   "Constrained To All:"};
constexpr Option kUseNearClip{DtOptUseNearClipForBlockedDistance, Show::Flag, 1273, 1,
                              "Use Near Clip For Blocked Distance:"};
constexpr Option kFeatureFilename{DtOptFeatureFilename, Show::Text, 1282, 256, "Feature Filename:"};
constexpr Option kFeatureCommand{DtOptFeatureCommand, Show::FeatureCommand, 1538, 1,
                                 "Feature Command: "};

// The one-shot commands, whose bit is the whole message.
constexpr Option kIncrementStepsize{DtOptIncrementStepsize, Show::OneShot, 0, 0,
                                    "Increment stepsize\n"};
constexpr Option kIncrementTurnrate{DtOptIncrementTurnrate, Show::OneShot, 0, 0,
                                    "Increment turnrate\n"};
constexpr Option kDecrementStepsize{DtOptDecrementStepsize, Show::OneShot, 0, 0,
                                    "Decrement stepsize\n"};
constexpr Option kDecrementTurnrate{DtOptDecrementTurnrate, Show::OneShot, 0, 0,
                                    "Decrement turnrate\n"};
constexpr Option kShowNextModelSet{DtOptShowNextModelSet, Show::OneShot, 0, 0,
                                   "Cycle to next model set.\n"};
// Stepping back through model sets prints the texture-set line on purpose: the dump's
// texts are fixed, this one included.
constexpr Option kShowPrevModelSet{DtOptShowPrevModelSet, Show::OneShot, 0, 0,
                                   "Cycle to previous texture set.\n"};
constexpr Option kShowPrevTextureSet{DtOptShowPrevTextureSet, Show::OneShot, 0, 0,
                                     "Cycle to previous texture set.\n"};
constexpr Option kShowNextTextureSet{DtOptShowNextTextureSet, Show::OneShot, 0, 0,
                                     "Cycle to next texture set.\n"};
constexpr Option kExit{DtOptExit, Show::OneShot, 0, 0, "Exit vistrel.\n"};

// The order of the dump, which is not that of the numbers.
const Option* const kDumpOrder[] = {&kOverlay,
                                    &kLocatorRange,
                                    &kSmoothing,
                                    &kSmoothingPeriod,
                                    &kSound,
                                    &kEntityLabels,
                                    &kTrailingEffects,
                                    &kTrajectoryHistory,
                                    &kRecording,
                                    &kShowAggregates,
                                    &kAggregateLevel,
                                    &kAggregateHighestOnly,
                                    &kAggregatesAltitudeControlled,
                                    &kNestedAggregates,
                                    &kNestedEntities,
                                    &kGroundClamping,
                                    &kClampRange,
                                    &kFollowGround,
                                    &kConstrainWithFloor,
                                    &kFloor,
                                    &kTimeOfDay,
                                    &kNearClip,
                                    &kFarClip,
                                    &kFov,
                                    &kFog,
                                    &kNearFog,
                                    &kFarFog,
                                    &kTexture,
                                    &kDatabaseToLoad,
                                    &kDate,
                                    &kTurnrate,
                                    &kStepsize,
                                    &kIncrementStepsize,
                                    &kDecrementStepsize,
                                    &kIncrementTurnrate,
                                    &kDecrementTurnrate,
                                    &kXr,
                                    &kHatLabels,
                                    &kShowNextModelSet,
                                    &kShowPrevModelSet,
                                    &kCurrentModelSet,
                                    &kShowPrevTextureSet,
                                    &kShowNextTextureSet,
                                    &kCurrentTextureSet,
                                    &kTerrainScale,
                                    &kObjectScale,
                                    &kExit,
                                    &kSkyDome,
                                    &kClouds,
                                    &kMirroring,
                                    &kMirrorMessageEveryFrame,
                                    &kBroadcasting,
                                    &kClusteringLabels,
                                    &kTacticalGraphicsLabels,
                                    &kTacticalGraphics,
                                    &kShowEmitters,
                                    &kVideoCaptureCommand,
                                    &kVideoCaptureFilename,
                                    &kVideoCaptureDirectory,
                                    &kVideoCaptureFilenameBase,
                                    &kVideoCaptureRecordInsets,
                                    &kVideoCaptureFps,
                                    &kConstrainedToAll,
                                    &kBlockedDistance,
                                    &kUseNearClip,
                                    &kFeatureFilename,
                                    &kFeatureCommand};

const char* const kVideoCommandTexts[] = {"Stop\n", "Pause\n", "Unpause\n", "Record\n"};
const char* const kFeatureCommandTexts[] = {"Load Features\n", "Clear Features\n"};

double real(const DtBaseMsg& pdu, const Option& o) {
  return o.width == 8 ? pdu.readFloat64(o.offset) : pdu.readFloat32(o.offset);
}

unsigned int word(const DtBaseMsg& pdu, const Option& o) {
  if (o.width == 4) return pdu.readU32(o.offset);
  return o.width == 2 ? pdu.readU16(o.offset) : pdu.readU8(o.offset);
}

bool flag(const DtBaseMsg& pdu, const Option& o) {
  return pdu.readU8(o.offset) != 0;
}

void setReal(DtOptionsPdu& pdu, const Option& o, double value) {
  if (o.width == 8)
    pdu.writeFloat64(o.offset, value);
  else
    pdu.writeFloat32(o.offset, static_cast<float>(value));
  pdu.setOptionPresent(o.number);
}

// Keeps the low bits that fit the field.
void setWord(DtOptionsPdu& pdu, const Option& o, unsigned int value) {
  if (o.width == 4)
    pdu.writeU32(o.offset, value);
  else if (o.width == 2)
    pdu.writeU16(o.offset, value & 0xFFFFu);
  else
    pdu.writeU8(o.offset, value & 0xFFu);
  pdu.setOptionPresent(o.number);
}

void setFlag(DtOptionsPdu& pdu, const Option& o, bool on) {
  pdu.writeU8(o.offset, on ? 1u : 0u);
  pdu.setOptionPresent(o.number);
}

void setText(DtOptionsPdu& pdu, const Option& o, const DtString& text) {
  pdu.writeChars(o.offset, o.width, text.c_str());
  pdu.setOptionPresent(o.number);
}

void setOneShot(DtOptionsPdu& pdu, const Option& o, bool on) {
  if (on)
    pdu.setOptionPresent(o.number);
  else
    pdu.clearOptionPresent(o.number);
}

// A command outside its table prints its label alone.
template <size_t N>
void dumpCommand(const char* label, unsigned int command, const char* const (&texts)[N]) {
  DtDumpText(label);
  DtDumpText(command < N ? texts[command] : "\n");
}

void dumpOption(const DtBaseMsg& pdu, const Option& o) {
  switch (o.show) {
    case Show::Real:
      DtDumpFloat(o.label, real(pdu, o));
      break;
    case Show::Word:
      DtDumpInteger(o.label, static_cast<long>(word(pdu, o)));
      break;
    case Show::Flag:
      DtDumpBoolean(o.label, flag(pdu, o));
      break;
    case Show::Text:
      DtDumpString(o.label, pdu.readChars(o.offset, o.width).c_str());
      break;
    case Show::OneShot:
      DtDumpText(o.label);
      break;
    case Show::VideoCommand:
      dumpCommand(o.label, word(pdu, o), kVideoCommandTexts);
      break;
    case Show::FeatureCommand:
      dumpCommand(o.label, word(pdu, o), kFeatureCommandTexts);
      break;
  }
}

}  // namespace

DtOptionsPdu::DtOptionsPdu(DtBufferPlaceHolder* holder) {
  vcpdu::build(*this, kLength, DtVcOptions, holder);
}

DtOptionsPdu::DtOptionsPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
                           DtPduFactory* factory) {
  vcpdu::wrap(*this, bytes, holder, factory);
}

DtOptionsPdu::~DtOptionsPdu() = default;

// ------------------------------------------------------------------ presence bits

namespace {
// The byte and bit of an option's presence flag, or false when the PDU cannot carry it:
// the second bitfield belongs to the PDU only when the PDU reaches past its start.
bool presenceBit(const DtBaseMsg& pdu, int option, size_t& byte, unsigned int& mask) {
  if (option < 0 || option > kLastOption) return false;
  if (option < kFirstHighOption) {
    byte = kFirstBits + static_cast<size_t>(option) / 8;
  } else {
    if (pdu.length() <= static_cast<int>(kSecondBits)) return false;
    byte = kSecondBits + static_cast<size_t>(option - kFirstHighOption) / 8;
  }
  mask = 1u << (option % 8);
  return true;
}
}  // namespace

bool DtOptionsPdu::optionPresent(DtVistrelOption option) const {
  size_t byte = 0;
  unsigned int mask = 0;
  return presenceBit(*this, option, byte, mask) && (readU8(byte) & mask) != 0;
}

void DtOptionsPdu::setOptionPresent(DtVistrelOption option) {
  size_t byte = 0;
  unsigned int mask = 0;
  if (presenceBit(*this, option, byte, mask)) writeU8(byte, readU8(byte) | mask);
}

void DtOptionsPdu::clearOptionPresent(DtVistrelOption option) {
  size_t byte = 0;
  unsigned int mask = 0;
  if (presenceBit(*this, option, byte, mask)) writeU8(byte, readU8(byte) & ~mask);
}

// ------------------------------------------------------------------ fields

const DtString& DtOptionsPdu::text(size_t offset, size_t width, DtString& cache) const {
  return cache = readChars(offset, width);
}

DtOverlayOption DtOptionsPdu::overlayOption() const {
  return static_cast<DtOverlayOption>(word(*this, kOverlay));
}
void DtOptionsPdu::setOverlayOption(DtOverlayOption option) {
  setWord(*this, kOverlay, static_cast<unsigned int>(option));
}
double DtOptionsPdu::locatorRange() const {
  return real(*this, kLocatorRange);
}
void DtOptionsPdu::setLocatorRange(double range) {
  setReal(*this, kLocatorRange, range);
}
DtSmoothingOption DtOptionsPdu::smoothing() const {
  return static_cast<DtSmoothingOption>(word(*this, kSmoothing));
}
void DtOptionsPdu::setSmoothing(DtSmoothingOption option) {
  setWord(*this, kSmoothing, static_cast<unsigned int>(option));
}
double DtOptionsPdu::smoothingPeriod() const {
  return real(*this, kSmoothingPeriod);
}
void DtOptionsPdu::setSmoothingPeriod(double period) {
  setReal(*this, kSmoothingPeriod, period);
}
bool DtOptionsPdu::sound() const {
  return flag(*this, kSound);
}
void DtOptionsPdu::setSound(bool on) {
  setFlag(*this, kSound, on);
}
bool DtOptionsPdu::entityLabels() const {
  return flag(*this, kEntityLabels);
}
void DtOptionsPdu::setEntityLabels(bool on) {
  setFlag(*this, kEntityLabels, on);
}
bool DtOptionsPdu::trailingEffects() const {
  return flag(*this, kTrailingEffects);
}
void DtOptionsPdu::setTrailingEffects(bool on) {
  setFlag(*this, kTrailingEffects, on);
}
bool DtOptionsPdu::trajectoryHistory() const {
  return flag(*this, kTrajectoryHistory);
}
void DtOptionsPdu::setTrajectoryHistory(bool on) {
  setFlag(*this, kTrajectoryHistory, on);
}
bool DtOptionsPdu::recording() const {
  return flag(*this, kRecording);
}
void DtOptionsPdu::setRecording(bool on) {
  setFlag(*this, kRecording, on);
}
int DtOptionsPdu::aggregateLevel() const {
  return static_cast<int>(word(*this, kAggregateLevel));
}
void DtOptionsPdu::setAggregateLevel(int level) {
  setWord(*this, kAggregateLevel, static_cast<unsigned int>(level));
}
bool DtOptionsPdu::aggregateHighestOnly() const {
  return flag(*this, kAggregateHighestOnly);
}
void DtOptionsPdu::setAggregateHighestOnly(bool on) {
  setFlag(*this, kAggregateHighestOnly, on);
}
bool DtOptionsPdu::aggregatesAltitudeControlled() const {
  return flag(*this, kAggregatesAltitudeControlled);
}
void DtOptionsPdu::setAggregatesAltitudeControlled(bool on) {
  setFlag(*this, kAggregatesAltitudeControlled, on);
}
bool DtOptionsPdu::nestedAggregates() const {
  return flag(*this, kNestedAggregates);
}
void DtOptionsPdu::setNestedAggregates(bool on) {
  setFlag(*this, kNestedAggregates, on);
}
bool DtOptionsPdu::nestedEntities() const {
  return flag(*this, kNestedEntities);
}
void DtOptionsPdu::setNestedEntities(bool on) {
  setFlag(*this, kNestedEntities, on);
}
bool DtOptionsPdu::groundClamping() const {
  return flag(*this, kGroundClamping);
}
void DtOptionsPdu::setGroundClamping(bool on) {
  setFlag(*this, kGroundClamping, on);
}
double DtOptionsPdu::clampRange() const {
  return real(*this, kClampRange);
}
void DtOptionsPdu::setClampRange(double range) {
  setReal(*this, kClampRange, range);
}
bool DtOptionsPdu::followGround() const {
  return flag(*this, kFollowGround);
}
void DtOptionsPdu::setFollowGround(bool on) {
  setFlag(*this, kFollowGround, on);
}
bool DtOptionsPdu::constrainWithFloor() const {
  return flag(*this, kConstrainWithFloor);
}
void DtOptionsPdu::setConstrainWithFloor(bool on) {
  setFlag(*this, kConstrainWithFloor, on);
}
double DtOptionsPdu::floor() const {
  return real(*this, kFloor);
}
void DtOptionsPdu::setFloor(double floor) {
  setReal(*this, kFloor, floor);
}
double DtOptionsPdu::timeOfDay() const {
  return real(*this, kTimeOfDay);
}
void DtOptionsPdu::setTimeOfDay(double time) {
  setReal(*this, kTimeOfDay, time);
}
double DtOptionsPdu::nearClip() const {
  return real(*this, kNearClip);
}
void DtOptionsPdu::setNearClip(double distance) {
  setReal(*this, kNearClip, distance);
}
double DtOptionsPdu::farClip() const {
  return real(*this, kFarClip);
}
void DtOptionsPdu::setFarClip(double distance) {
  setReal(*this, kFarClip, distance);
}
double DtOptionsPdu::fov() const {
  return real(*this, kFov);
}
void DtOptionsPdu::setFov(double fov) {
  setReal(*this, kFov, fov);
}
bool DtOptionsPdu::fog() const {
  return flag(*this, kFog);
}
void DtOptionsPdu::setFog(bool on) {
  setFlag(*this, kFog, on);
}
double DtOptionsPdu::nearFog() const {
  return real(*this, kNearFog);
}
void DtOptionsPdu::setNearFog(double distance) {
  setReal(*this, kNearFog, distance);
}
double DtOptionsPdu::farFog() const {
  return real(*this, kFarFog);
}
void DtOptionsPdu::setFarFog(double distance) {
  setReal(*this, kFarFog, distance);
}
bool DtOptionsPdu::texture() const {
  return flag(*this, kTexture);
}
void DtOptionsPdu::setTexture(bool on) {
  setFlag(*this, kTexture, on);
}
const DtString& DtOptionsPdu::databaseToLoad() const {
  return text(kDatabaseToLoad.offset, kDatabaseToLoad.width, databaseToLoad_);
}
void DtOptionsPdu::setDatabaseToLoad(const DtString& database) {
  setText(*this, kDatabaseToLoad, database);
}
float DtOptionsPdu::stepsize() const {
  return readFloat32(kStepsize.offset);
}
void DtOptionsPdu::setStepsize(float size) {
  setReal(*this, kStepsize, size);
}
float DtOptionsPdu::turnrate() const {
  return readFloat32(kTurnrate.offset);
}
void DtOptionsPdu::setTurnrate(float rate) {
  setReal(*this, kTurnrate, rate);
}
const DtString& DtOptionsPdu::date() const {
  return text(kDate.offset, kDate.width, date_);
}
void DtOptionsPdu::setDate(const DtString& date) {
  setText(*this, kDate, date);
}
bool DtOptionsPdu::xr() const {
  return flag(*this, kXr);
}
void DtOptionsPdu::setXr(bool on) {
  setFlag(*this, kXr, on);
}
bool DtOptionsPdu::hatLabels() const {
  return flag(*this, kHatLabels);
}
void DtOptionsPdu::setHatLabels(bool on) {
  setFlag(*this, kHatLabels, on);
}
const DtString& DtOptionsPdu::currentModelSet() const {
  return text(kCurrentModelSet.offset, kCurrentModelSet.width, currentModelSet_);
}
void DtOptionsPdu::setCurrentModelSet(const DtString& name) {
  setText(*this, kCurrentModelSet, name);
}
const DtString& DtOptionsPdu::currentTextureSet() const {
  return text(kCurrentTextureSet.offset, kCurrentTextureSet.width, currentTextureSet_);
}
void DtOptionsPdu::setCurrentTextureSet(const DtString& name) {
  setText(*this, kCurrentTextureSet, name);
}
float DtOptionsPdu::terrainScale() const {
  return readFloat32(kTerrainScale.offset);
}
void DtOptionsPdu::setTerrainScale(double scale) {
  setReal(*this, kTerrainScale, scale);
}
float DtOptionsPdu::objectScale() const {
  return readFloat32(kObjectScale.offset);
}
void DtOptionsPdu::setObjectScale(double scale) {
  setReal(*this, kObjectScale, scale);
}
bool DtOptionsPdu::skyDome() const {
  return flag(*this, kSkyDome);
}
void DtOptionsPdu::setSkyDome(bool on) {
  setFlag(*this, kSkyDome, on);
}
bool DtOptionsPdu::clouds() const {
  return flag(*this, kClouds);
}
void DtOptionsPdu::setClouds(bool on) {
  setFlag(*this, kClouds, on);
}
bool DtOptionsPdu::mirroring() const {
  return flag(*this, kMirroring);
}
void DtOptionsPdu::setMirroring(bool on) {
  setFlag(*this, kMirroring, on);
}
bool DtOptionsPdu::mirrorMessageEveryFrame() const {
  return flag(*this, kMirrorMessageEveryFrame);
}
void DtOptionsPdu::setMirrorMessageEveryFrame(bool on) {
  setFlag(*this, kMirrorMessageEveryFrame, on);
}
bool DtOptionsPdu::broadcasting() const {
  return flag(*this, kBroadcasting);
}
void DtOptionsPdu::setBroadcasting(bool on) {
  setFlag(*this, kBroadcasting, on);
}
bool DtOptionsPdu::clusteringLabels() const {
  return flag(*this, kClusteringLabels);
}
void DtOptionsPdu::setClusteringLabels(bool on) {
  setFlag(*this, kClusteringLabels, on);
}
bool DtOptionsPdu::tacticalGraphicsLabels() const {
  return flag(*this, kTacticalGraphicsLabels);
}
void DtOptionsPdu::setTacticalGraphicsLabels(bool on) {
  setFlag(*this, kTacticalGraphicsLabels, on);
}
bool DtOptionsPdu::tacticalGraphics() const {
  return flag(*this, kTacticalGraphics);
}
void DtOptionsPdu::setTacticalGraphics(bool on) {
  setFlag(*this, kTacticalGraphics, on);
}
bool DtOptionsPdu::showAggregates() const {
  return flag(*this, kShowAggregates);
}
void DtOptionsPdu::setShowAggregates(bool on) {
  setFlag(*this, kShowAggregates, on);
}
bool DtOptionsPdu::showEmitters() const {
  return flag(*this, kShowEmitters);
}
void DtOptionsPdu::setShowEmitters(bool on) {
  setFlag(*this, kShowEmitters, on);
}
DtOptionsPdu::DtVistrelControlVideoCaptureCommand DtOptionsPdu::videoCaptureCommand() const {
  return static_cast<DtVistrelControlVideoCaptureCommand>(word(*this, kVideoCaptureCommand));
}
void DtOptionsPdu::setVideoCaptureCommand(DtVistrelControlVideoCaptureCommand command) {
  setWord(*this, kVideoCaptureCommand, static_cast<unsigned int>(command));
}
bool DtOptionsPdu::videoCaptureRecordInsets() const {
  return flag(*this, kVideoCaptureRecordInsets);
}
void DtOptionsPdu::setVideoCaptureRecordInsets(bool on) {
  setFlag(*this, kVideoCaptureRecordInsets, on);
}
int DtOptionsPdu::videoCaptureFramesPerSecond() const {
  return static_cast<int>(word(*this, kVideoCaptureFps));
}
void DtOptionsPdu::setVideoCaptureFramesPerSecond(int framesPerSecond) {
  setWord(*this, kVideoCaptureFps, static_cast<unsigned int>(framesPerSecond));
}
const DtString& DtOptionsPdu::videoCaptureFilename() const {
  return text(kVideoCaptureFilename.offset, kVideoCaptureFilename.width, videoCaptureFilename_);
}
void DtOptionsPdu::setVideoCaptureFilename(const DtString& name) {
  setText(*this, kVideoCaptureFilename, name);
}
const DtString& DtOptionsPdu::videoCaptureDirectory() const {
  return text(kVideoCaptureDirectory.offset, kVideoCaptureDirectory.width, videoCaptureDirectory_);
}
void DtOptionsPdu::setVideoCaptureDirectory(const DtString& name) {
  setText(*this, kVideoCaptureDirectory, name);
}
const DtString& DtOptionsPdu::videoCaptureFilenameBase() const {
  return text(kVideoCaptureFilenameBase.offset, kVideoCaptureFilenameBase.width,
              videoCaptureFilenameBase_);
}
void DtOptionsPdu::setVideoCaptureFilenameBase(const DtString& name) {
  setText(*this, kVideoCaptureFilenameBase, name);
}
double DtOptionsPdu::blockedDistance() const {
  return real(*this, kBlockedDistance);
}
void DtOptionsPdu::setBlockedDistance(double distance) {
  setReal(*this, kBlockedDistance, distance);
}
bool DtOptionsPdu::constrainedToAll() const {
  return flag(*this, kConstrainedToAll);
}
void DtOptionsPdu::setConstrainToAll(bool on) {
  setFlag(*this, kConstrainedToAll, on);
}
bool DtOptionsPdu::useNearClipForBlockedDistance() const {
  return flag(*this, kUseNearClip);
}
void DtOptionsPdu::setUseNearClipForBlockedDistance(bool on) {
  setFlag(*this, kUseNearClip, on);
}
const DtString& DtOptionsPdu::featureFilename() const {
  return text(kFeatureFilename.offset, kFeatureFilename.width, featureFilename_);
}
void DtOptionsPdu::setFeatureFilename(const DtString& name) {
  setText(*this, kFeatureFilename, name);
}
DtOptionsPdu::DtVistrelControlFeatureCommand DtOptionsPdu::featureCommand() const {
  return static_cast<DtVistrelControlFeatureCommand>(word(*this, kFeatureCommand));
}
void DtOptionsPdu::setFeatureCommand(DtVistrelControlFeatureCommand command) {
  setWord(*this, kFeatureCommand, static_cast<unsigned int>(command));
}

// ------------------------------------------------------------------ one-shot commands

bool DtOptionsPdu::incrementStepsize() const {
  return optionPresent(DtOptIncrementStepsize);
}
void DtOptionsPdu::setIncrementStepsize(bool on) {
  setOneShot(*this, kIncrementStepsize, on);
}
bool DtOptionsPdu::incrementTurnrate() const {
  return optionPresent(DtOptIncrementTurnrate);
}
void DtOptionsPdu::setIncrementTurnrate(bool on) {
  setOneShot(*this, kIncrementTurnrate, on);
}
bool DtOptionsPdu::decrementStepsize() const {
  return optionPresent(DtOptDecrementStepsize);
}
void DtOptionsPdu::setDecrementStepsize(bool on) {
  setOneShot(*this, kDecrementStepsize, on);
}
bool DtOptionsPdu::decrementTurnrate() const {
  return optionPresent(DtOptDecrementTurnrate);
}
void DtOptionsPdu::setDecrementTurnrate(bool on) {
  setOneShot(*this, kDecrementTurnrate, on);
}
bool DtOptionsPdu::showNextModelSet() const {
  return optionPresent(DtOptShowNextModelSet);
}
void DtOptionsPdu::setShowNextModelSet(bool on) {
  setOneShot(*this, kShowNextModelSet, on);
}
bool DtOptionsPdu::showPrevModelSet() const {
  return optionPresent(DtOptShowPrevModelSet);
}
void DtOptionsPdu::setShowPrevModelSet(bool on) {
  setOneShot(*this, kShowPrevModelSet, on);
}
bool DtOptionsPdu::showNextTextureSet() const {
  return optionPresent(DtOptShowNextTextureSet);
}
void DtOptionsPdu::setShowNextTextureSet(bool on) {
  setOneShot(*this, kShowNextTextureSet, on);
}
bool DtOptionsPdu::showPrevTextureSet() const {
  return optionPresent(DtOptShowPrevTextureSet);
}
void DtOptionsPdu::setShowPrevTextureSet(bool on) {
  setOneShot(*this, kShowPrevTextureSet, on);
}
bool DtOptionsPdu::exit() const {
  return optionPresent(DtOptExit);
}
void DtOptionsPdu::setExit(bool on) {
  setOneShot(*this, kExit, on);
}

// ------------------------------------------------------------------ dump and text form

void DtOptionsPdu::printData() const {
  DtVistrelControlPdu::printData();
  unsigned char bits[kBitfieldSize] = {0};
  readBytes(kFirstBits, bits, sizeof bits);
  DtDumpHexBytes("Options Bitfield:", bits, sizeof bits);
  unsigned char high[kBitfieldSize] = {0};
  if (length() > static_cast<int>(kSecondBits)) readBytes(kSecondBits, high, sizeof high);
  DtDumpHexBytes("Options Bitfield2:", high, sizeof high);
  for (const Option* o : kDumpOrder)
    if (optionPresent(o->number)) dumpOption(*this, *o);
}

const char* DtOptionsPdu::string() const {
  static const char digits[] = "0123456789abcdef";
  std::string hex;
  hex.reserve(2 * static_cast<size_t>(length()));
  for (int i = 0; i < length(); ++i) {
    unsigned int b = readU8(static_cast<size_t>(i));
    hex += digits[b >> 4];
    hex += digits[b & 15];
  }
  hex_ = DtString(hex);
  return hex_.c_str();
}

void DtOptionsPdu::setFromString(const char* text) {
  const char* t = text ? text : "";
  std::vector<unsigned char> bytes(std::strlen(t) / 2);
  for (size_t i = 0; i < bytes.size(); ++i) {
    const char pair[3] = {t[2 * i], t[2 * i + 1], '\0'};
    bytes[i] = static_cast<unsigned char>(std::strtol(pair, nullptr, 16));
  }
  // The bytes are taken as a received PDU, which reads as many as its header claims: a
  // text shorter than that leaves the rest zero instead of reading past the array. A
  // text that ends inside the header may still hold the length field.
  size_t needed = static_cast<size_t>(headerLength(bytes.data(), bytes.size()));
  if (needed < static_cast<size_t>(kHeaderSize)) needed = kHeaderSize;
  if (bytes.size() < needed) bytes.resize(needed, 0);
  DtOptionsPdu received(reinterpret_cast<const DtNetViewControlPdu*>(bytes.data()), nullptr,
                        nullptr);
  *this = received;
}
