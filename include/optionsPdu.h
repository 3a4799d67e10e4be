#pragma once
#include "vistrelControlPdu.h"

/// Numbers of the viewer options. Each has a presence bit in the options PDU, and the
/// viewer applies only the options whose bits are set. Options without a field of their
/// own (step and turn-rate increments, model and texture set cycling, exit) are one-shot
/// commands: the bit is the whole message. Option 49 covers two fields, so the mirror
/// message and broadcasting settings always travel together. 65 is not used.
enum DtVistrelOption : int {
  DtOptOverlay = 0,
  DtOptLocatorRange = 1,
  DtOptSmoothing = 2,
  DtOptSmoothingPeriod = 3,
  DtOptSound = 4,
  DtOptEntityLabels = 5,
  DtOptTrailingEffects = 6,
  DtOptTrajectoryHistory = 7,
  DtOptRecording = 8,
  DtOptAggregateLevel = 9,
  DtOptAggregateHighestOnly = 10,
  DtOptAggregatesAltitudeControlled = 11,
  DtOptNestedAggregates = 12,
  DtOptNestedEntities = 13,
  DtOptGroundClamping = 14,
  DtOptClampRange = 15,
  DtOptFollowGround = 16,
  DtOptConstrainWithFloor = 17,
  DtOptFloor = 18,
  DtOptTimeOfDay = 19,
  DtOptNearClip = 20,
  DtOptFarClip = 21,
  DtOptFov = 22,
  DtOptFog = 23,
  DtOptNearFog = 24,
  DtOptFarFog = 25,
  DtOptTexture = 26,
  DtOptDatabaseToLoad = 27,
  DtOptStepsize = 28,
  DtOptTurnrate = 29,
  DtOptDate = 30,
  DtOptIncrementStepsize = 31,
  DtOptIncrementTurnrate = 32,
  DtOptDecrementStepsize = 33,
  DtOptDecrementTurnrate = 34,
  DtOptXr = 35,
  DtOptHatLabels = 36,
  DtOptShowNextModelSet = 37,
  DtOptShowPrevModelSet = 38,
  DtOptCurrentModelSet = 39,
  DtOptShowPrevTextureSet = 40,
  DtOptShowNextTextureSet = 41,
  DtOptCurrentTextureSet = 42,
  DtOptTerrainScale = 43,
  DtOptObjectScale = 44,
  DtOptClouds = 45,
  DtOptSkyDome = 46,
  DtOptExit = 47,
  DtOptMirroring = 48,
  DtOptMirrorMessageEveryFrame = 49,
  DtOptBroadcasting = 49,
  DtOptClusteringLabels = 50,
  DtOptTacticalGraphicsLabels = 51,
  DtOptTacticalGraphics = 52,
  DtOptShowAggregates = 53,
  DtOptShowEmitters = 54,
  DtOptVideoCaptureCommand = 55,
  DtOptVideoCaptureFilename = 56,
  DtOptVideoCaptureDirectory = 57,
  DtOptVideoCaptureFilenameBase = 58,
  DtOptVideoCaptureRecordInsets = 59,
  DtOptVideoCaptureFramesPerSecond = 60,
  DtOptConstrainedToAll = 61,
  DtOptBlockedDistance = 62,
  DtOptUseNearClipForBlockedDistance = 63,
  DtOptFeatureFilename = 64,
  DtOptFeatureCommand = 66
};

/// The overlay setting; values other than off and on pass through to the viewer.
enum DtOverlayOption : int { DtOverlayOff = 0, DtOverlayOn = 1 };
/// The smoothing setting; its values mean what the viewer makes of them.
enum DtSmoothingOption : int { DtSmoothingOff = 0 };

/// DtOptionsPdu (command 11, 1539 bytes) changes any subset of the viewer's display and
/// behaviour settings. Its body has no ignore flags: it starts with the presence bits of
/// options 0 to 63 (byte 152, option k in byte 152 + k / 8, bit k mod 8 counted from the
/// least significant), and the bits of options 64 to 127 sit at byte 1274. A PDU from a
/// sender that stops before that second bitfield carries none of those options.
///
/// Every setter writes its field and sets its option's bit. Character fields keep at most
/// their width, without a terminator when the text fills them. The text form is the whole
/// PDU, header included, in lower-case hexadecimal.
class DT_EXPORT DtOptionsPdu : public DtVistrelControlPdu {
 public:
  using DtVistrelOption = ::DtVistrelOption;
  using DtOverlayOption = ::DtOverlayOption;
  using DtSmoothingOption = ::DtSmoothingOption;
  enum DtVistrelControlVideoCaptureCommand : int {
    DtVideoCaptureStop = 0,
    DtVideoCapturePause = 1,
    DtVideoCaptureUnpause = 2,
    DtVideoCaptureRecord = 3
  };
  enum DtVistrelControlFeatureCommand : int { DtLoadFeatures = 0, DtClearFeatures = 1 };

  static constexpr int kLength = 1539;

  explicit DtOptionsPdu(DtBufferPlaceHolder* holder = nullptr);
  DtOptionsPdu(const DtNetViewControlPdu* bytes, DtBufferPlaceHolder* holder,
               DtPduFactory* factory);
  ~DtOptionsPdu() override;

  /// Options 64 and above are absent from a PDU of 1274 bytes or less, and setting or
  /// clearing them there does nothing. Numbers outside 0 to 127 are never present.
  bool optionPresent(DtVistrelOption option) const;
  void setOptionPresent(DtVistrelOption option);
  void clearOptionPresent(DtVistrelOption option);

  DtOverlayOption overlayOption() const;
  void setOverlayOption(DtOverlayOption option);
  double locatorRange() const;
  void setLocatorRange(double range);
  DtSmoothingOption smoothing() const;
  void setSmoothing(DtSmoothingOption option);
  double smoothingPeriod() const;
  void setSmoothingPeriod(double period);
  bool sound() const;
  void setSound(bool on);
  bool entityLabels() const;
  void setEntityLabels(bool on);
  bool trailingEffects() const;
  void setTrailingEffects(bool on);
  bool trajectoryHistory() const;
  void setTrajectoryHistory(bool on);
  bool recording() const;
  void setRecording(bool on);
  int aggregateLevel() const;
  void setAggregateLevel(int level);
  bool aggregateHighestOnly() const;
  void setAggregateHighestOnly(bool on);
  bool aggregatesAltitudeControlled() const;
  void setAggregatesAltitudeControlled(bool on);
  bool nestedAggregates() const;
  void setNestedAggregates(bool on);
  bool nestedEntities() const;
  void setNestedEntities(bool on);
  bool groundClamping() const;
  void setGroundClamping(bool on);
  double clampRange() const;
  void setClampRange(double range);
  bool followGround() const;
  void setFollowGround(bool on);
  bool constrainWithFloor() const;
  void setConstrainWithFloor(bool on);
  double floor() const;
  void setFloor(double floor);
  double timeOfDay() const;
  void setTimeOfDay(double time);
  double nearClip() const;
  void setNearClip(double distance);
  double farClip() const;
  void setFarClip(double distance);
  double fov() const;
  void setFov(double fov);
  bool fog() const;
  void setFog(bool on);
  double nearFog() const;
  void setNearFog(double distance);
  double farFog() const;
  void setFarFog(double distance);
  bool texture() const;
  void setTexture(bool on);
  /// 256 characters at most.
  const DtString& databaseToLoad() const;
  void setDatabaseToLoad(const DtString& database);
  float stepsize() const;
  void setStepsize(float size);
  float turnrate() const;
  void setTurnrate(float rate);
  /// 64 characters at most.
  const DtString& date() const;
  void setDate(const DtString& date);
  bool xr() const;
  void setXr(bool on);
  bool hatLabels() const;
  void setHatLabels(bool on);
  /// 32 characters at most.
  const DtString& currentModelSet() const;
  void setCurrentModelSet(const DtString& name);
  /// 32 characters at most.
  const DtString& currentTextureSet() const;
  void setCurrentTextureSet(const DtString& name);
  /// The scales travel as singles.
  float terrainScale() const;
  void setTerrainScale(double scale);
  float objectScale() const;
  void setObjectScale(double scale);
  bool skyDome() const;
  void setSkyDome(bool on);
  bool clouds() const;
  void setClouds(bool on);
  bool mirroring() const;
  void setMirroring(bool on);
  /// Shares option 49 with broadcasting().
  bool mirrorMessageEveryFrame() const;
  void setMirrorMessageEveryFrame(bool on);
  /// Shares option 49 with mirrorMessageEveryFrame().
  bool broadcasting() const;
  void setBroadcasting(bool on);
  bool clusteringLabels() const;
  void setClusteringLabels(bool on);
  bool tacticalGraphicsLabels() const;
  void setTacticalGraphicsLabels(bool on);
  bool tacticalGraphics() const;
  void setTacticalGraphics(bool on);
  bool showAggregates() const;
  void setShowAggregates(bool on);
  bool showEmitters() const;
  void setShowEmitters(bool on);
  /// One byte on the wire.
  DtVistrelControlVideoCaptureCommand videoCaptureCommand() const;
  void setVideoCaptureCommand(DtVistrelControlVideoCaptureCommand command);
  bool videoCaptureRecordInsets() const;
  void setVideoCaptureRecordInsets(bool on);
  /// Sixteen bits on the wire: larger values wrap.
  int videoCaptureFramesPerSecond() const;
  void setVideoCaptureFramesPerSecond(int framesPerSecond);
  /// 256 characters at most.
  const DtString& videoCaptureFilename() const;
  void setVideoCaptureFilename(const DtString& name);
  /// 256 characters at most.
  const DtString& videoCaptureDirectory() const;
  void setVideoCaptureDirectory(const DtString& name);
  /// 64 characters at most.
  const DtString& videoCaptureFilenameBase() const;
  void setVideoCaptureFilenameBase(const DtString& name);
  double blockedDistance() const;
  void setBlockedDistance(double distance);
  bool constrainedToAll() const;
  void setConstrainToAll(bool on);
  bool useNearClipForBlockedDistance() const;
  void setUseNearClipForBlockedDistance(bool on);
  /// 256 characters at most.
  const DtString& featureFilename() const;
  void setFeatureFilename(const DtString& name);
  /// One byte on the wire.
  DtVistrelControlFeatureCommand featureCommand() const;
  void setFeatureCommand(DtVistrelControlFeatureCommand command);

  // One-shot commands: true sets the option's bit, false clears it; the getters tell
  // whether the bit is set.
  bool incrementStepsize() const;
  void setIncrementStepsize(bool on);
  bool incrementTurnrate() const;
  void setIncrementTurnrate(bool on);
  bool decrementStepsize() const;
  void setDecrementStepsize(bool on);
  bool decrementTurnrate() const;
  void setDecrementTurnrate(bool on);
  bool showNextModelSet() const;
  void setShowNextModelSet(bool on);
  bool showPrevModelSet() const;
  void setShowPrevModelSet(bool on);
  bool showNextTextureSet() const;
  void setShowNextTextureSet(bool on);
  bool showPrevTextureSet() const;
  void setShowPrevTextureSet(bool on);
  bool exit() const;
  void setExit(bool on);

  /// The two bitfields, then one line for every option that is present.
  void printData() const override;
  /// Takes two hexadecimal digits per byte, as string() writes them, and replaces the
  /// whole PDU by the bytes. A trailing odd digit is ignored.
  void setFromString(const char* text) override;
  /// Two lower-case hexadecimal digits for each of the PDU's bytes; valid until the next
  /// call.
  const char* string() const override;

 private:
  const DtString& text(size_t offset, size_t width, DtString& cache) const;

  mutable DtString hex_;
  mutable DtString databaseToLoad_;
  mutable DtString date_;
  mutable DtString currentModelSet_;
  mutable DtString currentTextureSet_;
  mutable DtString videoCaptureFilename_;
  mutable DtString videoCaptureDirectory_;
  mutable DtString videoCaptureFilenameBase_;
  mutable DtString featureFilename_;
};

using DtVistrelControlVideoCaptureCommand = DtOptionsPdu::DtVistrelControlVideoCaptureCommand;
using DtVistrelControlFeatureCommand = DtOptionsPdu::DtVistrelControlFeatureCommand;
