#include "settings.h"

#include "textFormat.h"

namespace vcviewer {

namespace {

using P = const DtOptionsPdu&;
using Reader = std::string (*)(P);

std::string onOff(bool on) {
  return on ? "on" : "off";
}
std::string text(const DtString& s) {
  return quoted(s.stdString());
}

std::string overlayText(P p) {
  int v = p.overlayOption();
  return v == DtOverlayOff ? "off" : v == DtOverlayOn ? "on" : std::to_string(v);
}
std::string captureText(P p) {
  static const char* names[] = {"stop", "pause", "unpause", "record"};
  int v = p.videoCaptureCommand();
  return v >= 0 && v < 4 ? names[v] : std::to_string(v);
}
std::string featureText(P p) {
  int v = p.featureCommand();
  return v == 0 ? "load" : v == 1 ? "clear" : std::to_string(v);
}

// The options that carry a value, in option order. Option 49 has two rows: its one bit
// brings both the mirror-message and the broadcasting byte.
struct ValueOption {
  int option;
  const char* name;
  Reader read;
};

const ValueOption kValueOptions[] = {
    {DtOptOverlay, "overlay", overlayText},
    {DtOptLocatorRange, "locatorrange", [](P p) { return number(p.locatorRange()); }},
    {DtOptSmoothing, "smoothing",
     [](P p) { return std::to_string(static_cast<int>(p.smoothing())); }},
    {DtOptSmoothingPeriod, "smoothingperiod", [](P p) { return number(p.smoothingPeriod()); }},
    {DtOptSound, "sound", [](P p) { return onOff(p.sound()); }},
    {DtOptEntityLabels, "entitylabels", [](P p) { return onOff(p.entityLabels()); }},
    {DtOptTrailingEffects, "trailingeffects", [](P p) { return onOff(p.trailingEffects()); }},
    {DtOptTrajectoryHistory, "trajectoryhistory", [](P p) { return onOff(p.trajectoryHistory()); }},
    {DtOptRecording, "recording", [](P p) { return onOff(p.recording()); }},
    {DtOptAggregateLevel, "aggregatelevel", [](P p) { return std::to_string(p.aggregateLevel()); }},
    {DtOptAggregateHighestOnly, "aggregatehighestonly",
     [](P p) { return onOff(p.aggregateHighestOnly()); }},
    {DtOptAggregatesAltitudeControlled, "aggregatesaltitudecontrolled",
     [](P p) { return onOff(p.aggregatesAltitudeControlled()); }},
    {DtOptNestedAggregates, "nestedaggregates", [](P p) { return onOff(p.nestedAggregates()); }},
    {DtOptNestedEntities, "nestedentities", [](P p) { return onOff(p.nestedEntities()); }},
    {DtOptGroundClamping, "groundclamping", [](P p) { return onOff(p.groundClamping()); }},
    {DtOptClampRange, "clamprange", [](P p) { return number(p.clampRange()); }},
    {DtOptFollowGround, "followground", [](P p) { return onOff(p.followGround()); }},
    {DtOptConstrainWithFloor, "constrainwithfloor",
     [](P p) { return onOff(p.constrainWithFloor()); }},
    {DtOptFloor, "floor", [](P p) { return number(p.floor()); }},
    {DtOptTimeOfDay, "timeofday", [](P p) { return number(p.timeOfDay()); }},
    {DtOptNearClip, "nearclip", [](P p) { return number(p.nearClip()); }},
    {DtOptFarClip, "farclip", [](P p) { return number(p.farClip()); }},
    {DtOptFov, "fov", [](P p) { return number(p.fov()); }},
    {DtOptFog, "fog", [](P p) { return onOff(p.fog()); }},
    {DtOptNearFog, "nearfog", [](P p) { return number(p.nearFog()); }},
    {DtOptFarFog, "farfog", [](P p) { return number(p.farFog()); }},
    {DtOptTexture, "texture", [](P p) { return onOff(p.texture()); }},
    {DtOptDatabaseToLoad, "databasetoload", [](P p) { return text(p.databaseToLoad()); }},
    {DtOptStepsize, "stepsize", [](P p) { return number(p.stepsize()); }},
    {DtOptTurnrate, "turnrate", [](P p) { return number(p.turnrate()); }},
    {DtOptDate, "date", [](P p) { return text(p.date()); }},
    {DtOptXr, "xr", [](P p) { return onOff(p.xr()); }},
    {DtOptHatLabels, "hatlabels", [](P p) { return onOff(p.hatLabels()); }},
    {DtOptCurrentModelSet, "currentmodelset", [](P p) { return text(p.currentModelSet()); }},
    {DtOptCurrentTextureSet, "currenttextureset", [](P p) { return text(p.currentTextureSet()); }},
    {DtOptTerrainScale, "terrainscale", [](P p) { return number(p.terrainScale()); }},
    {DtOptObjectScale, "objectscale", [](P p) { return number(p.objectScale()); }},
    {DtOptClouds, "clouds", [](P p) { return onOff(p.clouds()); }},
    {DtOptSkyDome, "skydome", [](P p) { return onOff(p.skyDome()); }},
    {DtOptMirroring, "mirroring", [](P p) { return onOff(p.mirroring()); }},
    {DtOptMirrorMessageEveryFrame, "mirrormessageeveryframe",
     [](P p) { return onOff(p.mirrorMessageEveryFrame()); }},
    {DtOptBroadcasting, "broadcasting", [](P p) { return onOff(p.broadcasting()); }},
    {DtOptClusteringLabels, "clusteringlabels", [](P p) { return onOff(p.clusteringLabels()); }},
    {DtOptTacticalGraphicsLabels, "tacticalgraphicslabels",
     [](P p) { return onOff(p.tacticalGraphicsLabels()); }},
    {DtOptTacticalGraphics, "tacticalgraphics", [](P p) { return onOff(p.tacticalGraphics()); }},
    {DtOptShowAggregates, "showaggregates", [](P p) { return onOff(p.showAggregates()); }},
    {DtOptShowEmitters, "showemitters", [](P p) { return onOff(p.showEmitters()); }},
    {DtOptVideoCaptureCommand, "videocapturecommand", captureText},
    {DtOptVideoCaptureFilename, "videocapturefilename",
     [](P p) { return text(p.videoCaptureFilename()); }},
    {DtOptVideoCaptureDirectory, "videocapturedirectory",
     [](P p) { return text(p.videoCaptureDirectory()); }},
    {DtOptVideoCaptureFilenameBase, "videocapturefilenamebase",
     [](P p) { return text(p.videoCaptureFilenameBase()); }},
    {DtOptVideoCaptureRecordInsets, "videocapturerecordinsets",
     [](P p) { return onOff(p.videoCaptureRecordInsets()); }},
    {DtOptVideoCaptureFramesPerSecond, "videocaptureframespersecond",
     [](P p) { return std::to_string(p.videoCaptureFramesPerSecond()); }},
    {DtOptConstrainedToAll, "constrainedtoall", [](P p) { return onOff(p.constrainedToAll()); }},
    {DtOptBlockedDistance, "blockeddistance", [](P p) { return number(p.blockedDistance()); }},
    {DtOptUseNearClipForBlockedDistance, "usenearclipforblockeddistance",
     [](P p) { return onOff(p.useNearClipForBlockedDistance()); }},
    {DtOptFeatureFilename, "featurefilename", [](P p) { return text(p.featureFilename()); }},
    {DtOptFeatureCommand, "featurecommand", featureText},
};

}  // namespace

void Settings::set(const std::string& name, const std::string& value, std::string& line) {
  values_[name] = value;
  line += " " + name + "=" + value;
}

std::string Settings::apply(const DtOptionsPdu& pdu) {
  std::string line = "option";
  bool any = false;
  for (int k = 0; k < 128; ++k) {
    auto option = static_cast<DtVistrelOption>(k);
    if (!pdu.optionPresent(option)) continue;
    any = true;
    bool known = false;
    for (const ValueOption& v : kValueOptions) {
      if (v.option != k) continue;
      known = true;
      set(v.name, v.read(pdu), line);
    }
    // One-shot commands, and the settings that others depend on.
    switch (k) {
      case DtOptStepsize:
        stepsize_ = pdu.stepsize();
        break;
      case DtOptTurnrate:
        turnrate_ = pdu.turnrate();
        break;
      case DtOptCurrentModelSet:
        modelSetStep_ = 0;
        break;
      case DtOptCurrentTextureSet:
        textureSetStep_ = 0;
        break;
      case DtOptIncrementStepsize:
      case DtOptDecrementStepsize:
        stepsize_ = k == DtOptIncrementStepsize ? stepsize_ * 2 : stepsize_ / 2;
        line += k == DtOptIncrementStepsize ? " incrementstepsize" : " decrementstepsize";
        set("stepsize", number(stepsize_), line);
        known = true;
        break;
      case DtOptIncrementTurnrate:
      case DtOptDecrementTurnrate:
        turnrate_ = k == DtOptIncrementTurnrate ? turnrate_ * 2 : turnrate_ / 2;
        line += k == DtOptIncrementTurnrate ? " incrementturnrate" : " decrementturnrate";
        set("turnrate", number(turnrate_), line);
        known = true;
        break;
      case DtOptShowNextModelSet:
      case DtOptShowPrevModelSet:
        modelSetStep_ += k == DtOptShowNextModelSet ? 1 : -1;
        line += k == DtOptShowNextModelSet ? " nextmodelset" : " prevmodelset";
        set("modelsetstep", std::to_string(modelSetStep_), line);
        known = true;
        break;
      case DtOptShowNextTextureSet:
      case DtOptShowPrevTextureSet:
        textureSetStep_ += k == DtOptShowNextTextureSet ? 1 : -1;
        line += k == DtOptShowNextTextureSet ? " nexttextureset" : " prevtextureset";
        set("texturesetstep", std::to_string(textureSetStep_), line);
        known = true;
        break;
      case DtOptExit:
        exit_ = true;
        line += " exit";
        known = true;
        break;
      default:
        break;
    }
    if (!known) line += " unknown" + std::to_string(k);
  }
  if (!any) line += " none";
  return line;
}

std::string Settings::value(const std::string& name) const {
  auto it = values_.find(name);
  return it == values_.end() ? std::string() : it->second;
}

}  // namespace vcviewer
