// "vcctl option NAME [VALUE]": the viewer's settings, one options PDU per setting.
#include <map>
#include <string>
#include <vector>

#include "commands.h"
#include "link.h"
#include "values.h"

namespace vcctl {

using DtCmdLine::Type;

namespace {

enum class Kind { None, Switch, Integer, Real, Text, OptionalText };

using Controller = DtVistrelRemoteController;
using Send = void (*)(Controller& c, const Args& a);

struct Setting {
  const char* name;
  const char* summary;
  Kind kind;
  const char* valueHelp;
  Send send;
};

bool on(const Args& a) {
  return switchValue(a);
}
double real(const Args& a) {
  return a.real("value");
}
int whole(const Args& a) {
  return static_cast<int>(a.integer("value"));
}
DtString text(const Args& a) {
  return DtString(a.text("value"));
}

// The options PDU holds its texts in fixed fields of this many bytes.
const std::map<std::string, size_t> kTextRoom = {
    {"database", 256},           {"model-set", 32},
    {"texture-set", 32},         {"video-start", 256},
    {"video-filename-base", 64}, {"video-directory", 256},
    {"load-features", 256},      {"date", 64},
};

// MM/DD/YYYY, a day that exists: a viewer handed 99/99/9999 would guess, or stop.
void checkDate(const Args& a) {
  const std::string word = a.text("value");
  std::vector<std::string> parts = split(word, '/');
  int number[3] = {0, 0, 0};
  bool ok =
      parts.size() == 3 && parts[0].size() == 2 && parts[1].size() == 2 && parts[2].size() == 4;
  for (size_t i = 0; ok && i < 3; ++i) {
    for (char c : parts[i]) ok = ok && c >= '0' && c <= '9';
    if (ok) number[i] = std::stoi(parts[i]);
  }
  const int month = number[0], day = number[1], year = number[2];
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  ok = ok && year >= 1 && month >= 1 && month <= 12 && day >= 1 &&
       day <= kDays[month - 1] + (month == 2 && leap ? 1 : 0);
  if (!ok) a.fail("argument <value>: '" + word + "' is not a date MM/DD/YYYY");
}

// Before anything is joined: a value refused after joining would still have disturbed
// the federation.
void check(const Setting& setting, const Args& a) {
  auto room = kTextRoom.find(setting.name);
  if (room != kTextRoom.end() && a.has("value")) fittingText(a, "value", room->second);
  if (std::string(setting.name) == "date") checkDate(a);
}

// clang-format off
const Setting kSettings[] = {
  {"overlay", "show or hide the overlay", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setOverlayEnabled(on(a)); }},
  {"smoothing", "how eyepoint motion is smoothed", Kind::Integer, "the viewer's number, 0 off",
   [](Controller& c, const Args& a) { c.setSmoothing(static_cast<DtSmoothingOption>(whole(a))); }},
  {"smoothing-period", "period of the smoothing", Kind::Real, "seconds",
   [](Controller& c, const Args& a) { c.setSmoothingPeriod(real(a)); }},
  {"sound", "sound on or off", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setSoundEnabled(on(a)); }},
  {"entity-labels", "labels on entities", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setEntityLabelsEnabled(on(a)); }},
  {"trailing-effects", "trailing effects behind entities", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setTrailingEffectsEnabled(on(a)); }},
  {"trajectory-histories", "trajectory histories of entities", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setTrajectoryHistoriesEnabled(on(a)); }},
  {"aggregate-level", "aggregation level shown", Kind::Integer, "level",
   [](Controller& c, const Args& a) { c.setAggregateLevel(whole(a)); }},
  {"aggregate-highest-only", "show only the highest aggregates", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setAggregateHighestOnly(on(a)); }},
  {"ground-clamping", "clamp entities to the ground", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setGroundClampingEnabled(on(a)); }},
  {"ground-clamp-range", "range of ground clamping", Kind::Real, "metres",
   [](Controller& c, const Args& a) { c.setGroundClampRange(real(a)); }},
  {"time-of-day", "time of day of the scene", Kind::Real, "hours since midnight, 0 to 24",
   [](Controller& c, const Args& a) { c.setTimeOfDay(real(a)); }},
  {"near-clip", "near clipping plane", Kind::Real, "distance in metres",
   [](Controller& c, const Args& a) { c.setNearClippingPlane(real(a)); }},
  {"far-clip", "far clipping plane", Kind::Real, "distance in metres",
   [](Controller& c, const Args& a) { c.setFarClippingPlane(real(a)); }},
  {"fov", "vertical field of view", Kind::Real, "angle",
   [](Controller& c, const Args& a) { c.setVerticalFieldOfView(real(a)); }},
  {"fog", "fog on or off", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setFogEnabled(on(a)); }},
  {"database", "terrain database to load", Kind::Text, "database name",
   [](Controller& c, const Args& a) { c.setDatabaseToLoad(text(a)); }},
  {"date", "date of the scene", Kind::Text, "date as MM/DD/YYYY",
   [](Controller& c, const Args& a) { c.setDate(text(a)); }},
  {"exit", "tell the viewer to quit", Kind::None, "",
   [](Controller& c, const Args&) { c.exit(); }},
  {"clouds", "clouds on or off", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setClouds(on(a)); }},
  {"sky-dome", "sky dome on or off", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setSkyDome(on(a)); }},
  {"mirror-every-frame", "mirror the message every frame", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setMirrorMessageEveryFrame(on(a)); }},
  {"mirroring", "mirroring on or off", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setMirroring(on(a)); }},
  {"broadcasting", "broadcasting on or off", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setBroadcasting(on(a)); }},
  {"clustering-labels", "labels on clusters", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setClusteringLabels(on(a)); }},
  {"tactical-graphics-labels", "labels on tactical graphics", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setTacticalGraphicsLabels(on(a)); }},
  {"show-aggregates", "show aggregates", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setShowAggregates(on(a)); }},
  {"show-emitters", "show emitters", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setShowEmitters(on(a)); }},
  {"xr", "extended-reality display", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setXr(on(a)); }},
  {"hat-labels", "height-above-terrain labels", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setHatLabels(on(a)); }},
  {"model-set", "choose the model set", Kind::Text, "model set name",
   [](Controller& c, const Args& a) { c.setCurrentModelSet(text(a)); }},
  {"next-model-set", "show the next model set", Kind::None, "",
   [](Controller& c, const Args&) { c.setNextModelSet(); }},
  {"prev-model-set", "show the previous model set", Kind::None, "",
   [](Controller& c, const Args&) { c.setPrevModelSet(); }},
  {"texture-set", "choose the texture set", Kind::Text, "texture set name",
   [](Controller& c, const Args& a) { c.setCurrentTextureSet(text(a)); }},
  {"next-texture-set", "show the next texture set", Kind::None, "",
   [](Controller& c, const Args&) { c.setNextTextureSet(); }},
  {"prev-texture-set", "show the previous texture set", Kind::None, "",
   [](Controller& c, const Args&) { c.setPrevTextureSet(); }},
  {"terrain-scale", "scale of the terrain", Kind::Real, "factor",
   [](Controller& c, const Args& a) { c.setTerrainScale(real(a)); }},
  {"object-scale", "scale of the objects", Kind::Real, "factor",
   [](Controller& c, const Args& a) { c.setObjectScale(real(a)); }},
  {"video-start", "start recording video", Kind::OptionalText, "file to record into",
   [](Controller& c, const Args& a) {
     if (a.has("value")) c.startVideoRecording(text(a));
     else c.startVideoRecording();
   }},
  {"video-stop", "stop recording video", Kind::None, "",
   [](Controller& c, const Args&) { c.stopVideoRecording(); }},
  {"video-pause", "pause the recording", Kind::None, "",
   [](Controller& c, const Args&) { c.pauseVideoRecording(); }},
  {"video-resume", "resume a paused recording", Kind::None, "",
   [](Controller& c, const Args&) { c.unpauseVideoRecording(); }},
  {"video-record-insets", "record the insets too", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setVideoCaptureRecordInsets(on(a)); }},
  {"video-fps", "frames per second of the recording", Kind::Integer, "frames per second",
   [](Controller& c, const Args& a) { c.setVideoCaptureFramesPerSecond(whole(a)); }},
  {"video-filename-base", "start of the recording's file names", Kind::Text, "file name base",
   [](Controller& c, const Args& a) { c.setVideoCaptureFilenameBase(text(a)); }},
  {"video-directory", "directory of the recordings", Kind::Text, "directory",
   [](Controller& c, const Args& a) { c.setVideoCaptureDirectory(text(a)); }},
  {"constrain-with-floor", "keep the eyepoint above a floor", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setConstrainWithFloor(on(a)); }},
  {"floor", "height of that floor", Kind::Real, "metres",
   [](Controller& c, const Args& a) { c.setFloor(real(a)); }},
  {"constrain-to-all", "apply the view constraints to every mode", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setConstrainViewToAll(on(a)); }},
  {"blocked-distance", "closest the eyepoint may come to an obstacle", Kind::Real, "metres",
   [](Controller& c, const Args& a) { c.setBlockedDistance(real(a)); }},
  {"near-clip-blocked-distance", "near clipping plane as the blocked distance", Kind::Switch, "",
   [](Controller& c, const Args& a) { c.setUseNearClipForBlockedDistance(on(a)); }},
  {"load-features", "load a feature file", Kind::Text, "feature file",
   [](Controller& c, const Args& a) { c.loadFeatures(text(a)); }},
  {"clear-features", "clear every loaded feature", Kind::None, "",
   [](Controller& c, const Args&) { c.clearFeatures(); }},
};
// clang-format on

}  // namespace

void declareOptionCommands(Command& root, Registry& registry) {
  Command& option = root.command("option", "change one of the viewer's settings");
  option.details("Example: vcctl option fog on");
  for (const Setting& setting : kSettings) {
    const Setting* declared = &setting;
    Command& c =
        registry.add(option, setting.name, setting.summary, [declared](const Args& a, Link& link) {
          check(*declared, a);
          declared->send(link.controller(), a);
          return 0;
        });
    switch (setting.kind) {
      case Kind::None:
        break;
      case Kind::Switch:
        switchArgument(c, "on or off");
        break;
      case Kind::Integer:
        c.argument("value", Type::Integer, setting.valueHelp).range(-2147483648.0, 2147483647.0);
        break;
      case Kind::Real: {
        DtCmdLine::Option value = c.argument("value", Type::Real, setting.valueHelp);
        if (std::string(setting.name) == "time-of-day") value.range(0, 24);
        break;
      }
      case Kind::Text:
        c.argument("value", Type::Text, setting.valueHelp);
        break;
      case Kind::OptionalText:
        c.argument("value", Type::Text, setting.valueHelp).optional();
        break;
    }
  }
}

}  // namespace vcctl
