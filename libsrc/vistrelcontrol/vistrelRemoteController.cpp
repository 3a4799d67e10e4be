#include "vistrelRemoteController.h"

#include <cstring>
#include <vector>

#include "absoluteVcPdu.h"
#include "compassVcPdu.h"
#include "dtOutput.h"
#include "groupVcPdu.h"
#include "mimicTrackVcPdu.h"
#include "mimicVcPdu.h"
#include "modelessVcPdu.h"
#include "orbitVcPdu.h"
#include "pivotVcPdu.h"
#include "tetherTrackVcPdu.h"
#include "tetherVcPdu.h"
#include "trackVcPdu.h"
#include "vcOutgoingInteraction.h"
#include "viewModeFields.h"

DtCustomRemoteControlSender::~DtCustomRemoteControlSender() = default;

const DtString DtVistrelRemoteController::SEND_TO_ALL("0:0:0");

namespace {
// Every command fills its PDU by the one description of the modes' fields: the rows
// say where each argument goes and which ignore bits it clears.
using vcmodes::Command;

Command fill(DtVistrelControlPdu& pdu, DtViewerCommand command, bool wide = false) {
  return Command(pdu, *vcmodes::find(command, wide));
}

// A designator of the header as it was, given back as reading it as text and writing
// that text again would: cut at 63 bytes and NUL-padded.
class SavedDesignator {
 public:
  SavedDesignator(const DtBaseMsg& pdu, size_t offset) : offset_(offset) {
    pdu.readBytes(offset, bytes_, sizeof bytes_);
  }
  void restore(DtBaseMsg& pdu) const {
    unsigned char text[DtNetGlobalObjectDesignator::kSize] = {};
    std::memcpy(text, bytes_, strnlen(reinterpret_cast<const char*>(bytes_), sizeof text - 1));
    pdu.writeBytes(offset_, text, sizeof text);
  }

 private:
  size_t offset_;
  unsigned char bytes_[DtNetGlobalObjectDesignator::kSize];
};

// Whether the designator at `offset` reads as `id`, without making a text of it.
bool designatorIs(const DtBaseMsg& pdu, size_t offset, const DtString& id) {
  const size_t width = DtNetGlobalObjectDesignator::kSize;
  if (offset > pdu.capacity() || pdu.capacity() - offset < width)
    return pdu.readDesignator(offset) == id;
  const char* text = pdu.packet() + offset;
  size_t n = strnlen(text, width);
  return n == id.length() && std::memcmp(text, id.c_str(), n) == 0;
}

}  // namespace

// A delivery calls the records that matched when the PDU came, in order. Removing a
// record (or deleting the controller) from inside a callback blanks it here first, so it
// is never called after its user data may have been freed; records added meanwhile are
// not in the list and wait for the next PDU.
struct DtVistrelRemoteController::Delivery {
  static constexpr int kInline = 8;
  Delivery* outer = nullptr;
  bool controllerGone = false;
  int count = 0;
  const CbStruct* few[kInline];
  std::vector<const CbStruct*> more;

  const CbStruct*& at(int i) {
    return i < kInline ? few[i] : more[static_cast<size_t>(i - kInline)];
  }
  void add(const CbStruct* record) {
    if (count < kInline)
      few[count] = record;
    else
      more.push_back(record);
    ++count;
  }
};

// ------------------------------------------------------------------ construction

DtVistrelRemoteController::DtVistrelRemoteController(DtCustomRemoteControlSender* sender,
                                                     const DtString& target)
    : targetId_(target), callbacks_(new DtList), sender_(sender) {}

DtVistrelRemoteController::DtVistrelRemoteController(DtExerciseConn* conn, const DtString& target)
    : targetId_(target), callbacks_(new DtList), conn_(conn) {
  connect();
}

DtVistrelRemoteController::DtVistrelRemoteController(const char* execName, const char* federateName,
                                                     DtFomMapper* mapper, const char* fedFileName,
                                                     const DtString& target)
    : targetId_(target),
      callbacks_(new DtList),
      conn_(new DtExerciseConn(execName, federateName, mapper, fedFileName, nullptr)),
      ownsConn_(true) {
  connect();
}

DtVistrelRemoteController::DtVistrelRemoteController(const char* execName, const char* federateName,
                                                     const char* fomMapperName,
                                                     const char* fedFileName, void* fomMapperData,
                                                     const DtString& target)
    : targetId_(target),
      callbacks_(new DtList),
      conn_(new DtExerciseConn(execName, federateName, fomMapperName, fedFileName, fomMapperData,
                               nullptr)),
      ownsConn_(true) {
  connect();
}

void DtVistrelRemoteController::connect() {
  if (conn_) DtVistrelControlInteraction::addCallback(conn_, &processVistrelControlCb, this);
}

DtVistrelRemoteController::~DtVistrelRemoteController() {
  // Deleted by one of our own callbacks: the deliveries under way stop calling.
  for (Delivery* d = delivery_; d; d = d->outer) d->controllerGone = true;
  if (conn_) DtVistrelControlInteraction::removeCallback(conn_, &processVistrelControlCb, this);
  for (int i = 0; i < callbacks_->count(); ++i) delete static_cast<CbStruct*>(callbacks_->nth(i));
  delete callbacks_;
  if (ownsConn_) delete conn_;
}

// ------------------------------------------------------------------ identities, callbacks

void DtVistrelRemoteController::setTargetVistrelId(const DtString& id) {
  targetId_ = id;
}
const DtString& DtVistrelRemoteController::targetVistrelId() const {
  return targetId_;
}
void DtVistrelRemoteController::setControllerId(const DtString& id) {
  controllerId_ = id;
}
const DtString& DtVistrelRemoteController::controllerId() const {
  return controllerId_;
}

void DtVistrelRemoteController::addViewModeChangeCallback(DtViewModeChangeCallback cb, void* usr,
                                                          const DtString& viewerId) {
  callbacks_->add(new CbStruct(viewerId, cb, usr));
}

void DtVistrelRemoteController::removeViewModeChangeCallback(DtViewModeChangeCallback cb, void* usr,
                                                             const DtString& viewerId) {
  for (int i = callbacks_->count() - 1; i >= 0; --i) {
    auto* record = static_cast<CbStruct*>(callbacks_->nth(i));
    if (record->callback == cb && record->usr == usr && record->viewerId == viewerId) {
      forget(record);
      callbacks_->remove(record);
      delete record;
    }
  }
}

void DtVistrelRemoteController::requestCurrentViewMode(const DtString&) const {
  DtRequestStateVCPdu pdu;
  send(pdu);
}

void DtVistrelRemoteController::setIgnoreCommandsSentFromUs(bool ignore) {
  ignoreOwnCommands_ = ignore;
}

// ------------------------------------------------------------------ send and receive

void DtVistrelRemoteController::send(const DtVistrelControlPdu& constPdu) const {
  // The PDU is the caller's; it carries our ids only for the length of this call.
  auto& pdu = const_cast<DtVistrelControlPdu&>(constPdu);
  const SavedDesignator oldViewer(pdu, DtVistrelControlPdu::kViewerIdOffset);
  const SavedDesignator oldSender(pdu, DtVistrelControlPdu::kSenderIdOffset);
  pdu.setViewerId(targetVistrelId());
  pdu.setSenderId(controllerId());
  if (conn_ && conn_->fomMapper() && conn_->fomMapper()->interClassDesc("ViewControl")) {
    DtVcOutgoingInteraction inter(constPdu);
    conn_->sendInteraction(inter);
  }
  if (sender_) sender_->send(constPdu.packet(), constPdu.length());
  oldViewer.restore(pdu);
  oldSender.restore(pdu);
}

void DtVistrelRemoteController::processVistrelControlCb(DtVistrelControlInteraction* inter,
                                                        void* controller) {
  if (controller) static_cast<DtVistrelRemoteController*>(controller)->processVistrelControl(inter);
}

void DtVistrelRemoteController::forget(const CbStruct* record) const {
  for (Delivery* d = delivery_; d; d = d->outer)
    for (int i = 0; i < d->count; ++i)
      if (d->at(i) == record) d->at(i) = nullptr;
}

void DtVistrelRemoteController::processVistrelControl(DtVistrelControlInteraction* inter) const {
  // An interaction whose bytes were not a control PDU holds none: nothing to report.
  const DtVistrelControlPdu* pdu = inter ? inter->vcPdu() : nullptr;
  if (!pdu) return;
  // Through the accessor: a subclass that names itself otherwise stamps that name on
  // what it sends, so that is the name its echoes carry.
  if (ignoreOwnCommands_ &&
      designatorIs(*pdu, DtVistrelControlPdu::kSenderIdOffset, controllerId()))
    return;
  Delivery delivery;
  for (int i = 0; i < callbacks_->count(); ++i) {
    auto* record = static_cast<const CbStruct*>(callbacks_->nth(i));
    if (record->viewerId == SEND_TO_ALL ||
        designatorIs(*pdu, DtVistrelControlPdu::kViewerIdOffset, record->viewerId))
      delivery.add(record);
  }
  // Unwound however the walk ends, unless the controller (and with it delivery_) is gone.
  struct Active {
    Delivery& d;
    Delivery*& top;
    Active(Delivery& delivery, Delivery*& innermost) : d(delivery), top(innermost) {
      d.outer = top;
      top = &d;
    }
    ~Active() {
      if (!d.controllerGone) top = d.outer;
    }
  } active(delivery, delivery_);
  for (int i = 0; i < delivery.count; ++i) {
    const CbStruct* record = delivery.at(i);
    if (!record) continue;
    record->callback(*pdu, record->usr);
    if (delivery.controllerGone) return;
  }
}

// ------------------------------------------------------------------ group membership

// Edits the group without replacing it: the entities to add join it, those to remove
// leave it.
void DtVistrelRemoteController::sendModeless(const DtGlobalObjectDesignatorList* toAdd,
                                             const DtGlobalObjectDesignatorList* toRemove) const {
  DtModelessVCPdu pdu;
  // The remove count goes first: growing the remove list later would shift the adds.
  pdu.setNumEntitiesToRemove(toRemove ? toRemove->count() : 0);
  if (toRemove)
    for (int i = 0; i < toRemove->count(); ++i) pdu.setEntityToRemove(i, toRemove->nth(i));
  pdu.setNumEntitiesToAdd(toAdd ? toAdd->count() : 0);
  if (toAdd)
    for (int i = 0; i < toAdd->count(); ++i) pdu.setEntityToAdd(i, toAdd->nth(i));
  send(fill(pdu, DtVcModeless).written("entities").pdu());
}

void DtVistrelRemoteController::setPrimary(const DtString& id) const {
  DtModelessVCPdu pdu;
  send(fill(pdu, DtVcModeless).give("primary", &id).pdu());
}

void DtVistrelRemoteController::setSecondary(const DtString& id) const {
  DtModelessVCPdu pdu;
  send(fill(pdu, DtVcModeless).give("secondary", &id).pdu());
}

void DtVistrelRemoteController::setPrimarySecondary(const DtString& primary,
                                                    const DtString& secondary) const {
  DtModelessVCPdu pdu;
  send(fill(pdu, DtVcModeless).give("primary", &primary).give("secondary", &secondary).pdu());
}

void DtVistrelRemoteController::setGroup(const DtGlobalObjectDesignatorList& ids) const {
  DtModelessVCPdu pdu;
  send(fill(pdu, DtVcModeless).give("entities", &ids).pdu());
}

void DtVistrelRemoteController::addToGroup(const DtGlobalObjectDesignatorList& ids) const {
  sendModeless(&ids, nullptr);
}

void DtVistrelRemoteController::removeFromGroup(const DtGlobalObjectDesignatorList& ids) const {
  sendModeless(nullptr, &ids);
}

// ------------------------------------------------------------------ movement

void DtVistrelRemoteController::reset() const {
  DtMoveVCPdu pdu;
  pdu.setReset(true);
  send(fill(pdu, DtVcMove).pdu());
}

void DtVistrelRemoteController::moveEyepoint(Direction direction) const {
  DtMoveVCPdu pdu;
  send(fill(pdu, DtVcMove).give("move", &direction).pdu());
}

void DtVistrelRemoteController::turnEyepoint(Direction direction) const {
  DtMoveVCPdu pdu;
  send(fill(pdu, DtVcMove).give("turn", &direction).pdu());
}

void DtVistrelRemoteController::set(const DtVector64* position,
                                    const DtTaitBryan* orientation) const {
  if (!position && !orientation) return;
  DtMoveVCPdu pdu;
  send(fill(pdu, DtVcMove).give("at", position).give("orientation", orientation).pdu());
}

template <typename Set>
void DtVistrelRemoteController::sendOptions(Set set) const {
  DtOptionsPdu pdu;
  set(pdu);
  send(pdu);
}

void DtVistrelRemoteController::setStepsize(float value) const {
  sendOptions([&](DtOptionsPdu& p) { p.setStepsize(value); });
}
void DtVistrelRemoteController::setTurnrate(float value) const {
  sendOptions([&](DtOptionsPdu& p) { p.setTurnrate(value); });
}
void DtVistrelRemoteController::increaseStepsize() const {
  sendOptions([](DtOptionsPdu& p) { p.setIncrementStepsize(true); });
}
void DtVistrelRemoteController::increaseTurnrate() const {
  sendOptions([](DtOptionsPdu& p) { p.setIncrementTurnrate(true); });
}
void DtVistrelRemoteController::decreaseStepsize() const {
  sendOptions([](DtOptionsPdu& p) { p.setDecrementStepsize(true); });
}
void DtVistrelRemoteController::decreaseTurnrate() const {
  sendOptions([](DtOptionsPdu& p) { p.setDecrementTurnrate(true); });
}

void DtVistrelRemoteController::setMode(DtViewerCommand mode, const DtVector64* position,
                                        const DtTaitBryan* orientation) const {
  switch (mode) {
    case DtVcAbsolute:
      setAbsoluteMode(nullptr, nullptr);
      break;
    case DtVcTether:
      setTetherMode(nullptr, nullptr, nullptr);
      break;
    case DtVcCompass:
      setCompassMode(nullptr, nullptr, nullptr, nullptr);
      break;
    case DtVcMimic:
      setMimicMode(nullptr, nullptr);
      break;
    case DtVcOrbit:
      setOrbitMode(nullptr, nullptr, nullptr, nullptr, nullptr);
      break;
    case DtVcTrack:
      setTrackMode(nullptr, nullptr);
      break;
    case DtVcTetherTrack:
      setTetherTrackMode(nullptr, nullptr, nullptr);
      break;
    case DtVcMimicTrack:
      setMimicTrackMode(nullptr, nullptr, nullptr);
      break;
    case DtVcGroup:
      setGroupMode(nullptr, nullptr, nullptr, nullptr);
      break;
    case DtVcPivot:
      setPivotMode(nullptr, nullptr, nullptr, nullptr);
      break;
    default:
      DtDumpEnum("Cannot change mode to ", DtEnumString(mode), mode);
      break;
  }
  set(position, orientation);
}

// ------------------------------------------------------------------ view modes
// Each argument goes by the name vcctl's option gives it.

void DtVistrelRemoteController::setAbsoluteMode(const DtVector64* location,
                                                const DtTaitBryan* orientation) const {
  DtAbsoluteVCPdu pdu;
  send(fill(pdu, DtVcAbsolute).give("at", location).give("orientation", orientation).pdu());
}

void DtVistrelRemoteController::setCompassMode(const DtString* attachId, const float* radius,
                                               const float* bodyHeading, const float* pitch) const {
  DtCompassVCPdu pdu;
  send(fill(pdu, DtVcCompass)
           .give("entity", attachId)
           .give("radius", radius)
           .give("heading", bodyHeading)
           .give("pitch", pitch)
           .pdu());
}

void DtVistrelRemoteController::setMimicMode(const DtString* attachId,
                                             const DtVector64* offset) const {
  DtMimicVCPdu pdu;
  send(fill(pdu, DtVcMimic).give("entity", attachId).give("offset", offset).pdu());
}

void DtVistrelRemoteController::setTurretMode(const DtString* attachId,
                                              const DtVector64* offset) const {
  DtOffsetMimicVCPdu pdu;
  send(fill(pdu, DtVcOffsetMimic).give("entity", attachId).give("offset", offset).pdu());
}

void DtVistrelRemoteController::setOrbitMode(const DtString* attachId, const float* radius,
                                             const float* heading, const float* pitch,
                                             const float* azimuthRate) const {
  DtOrbitVCPdu pdu;
  send(fill(pdu, DtVcOrbit)
           .give("entity", attachId)
           .give("radius", radius)
           .give("heading", heading)
           .give("pitch", pitch)
           .give("rate", azimuthRate)
           .pdu());
}

void DtVistrelRemoteController::setPivotMode(const DtVector64* pivotPoint, const float* radius,
                                             const float* bodyHeading, const float* pitch) const {
  DtPivotVCPdu pdu;
  send(fill(pdu, DtVcPivot)
           .give("point", pivotPoint)
           .give("radius", radius)
           .give("heading", bodyHeading)
           .give("pitch", pitch)
           .pdu());
}

void DtVistrelRemoteController::setTetherMode(const DtString* attachId,
                                              const DtVector64* topoUpOffset,
                                              const DtTaitBryan* orientation) const {
  DtTetherVCPdu pdu;
  send(fill(pdu, DtVcTether)
           .give("entity", attachId)
           .give("offset", topoUpOffset)
           .give("orientation", orientation)
           .pdu());
}

void DtVistrelRemoteController::setTrackMode(const DtString* trackId,
                                             const DtVector64* location) const {
  DtTrackVCPdu pdu;
  send(fill(pdu, DtVcTrack).give("entity", trackId).give("at", location).pdu());
}

void DtVistrelRemoteController::setMimicTrackMode(const DtString* attachId, const DtString* trackId,
                                                  const DtVector64* offset) const {
  DtMimicTrackVCPdu pdu;
  send(fill(pdu, DtVcMimicTrack)
           .give("entity", attachId)
           .give("track", trackId)
           .give("offset", offset)
           .pdu());
}

void DtVistrelRemoteController::setTetherTrackMode(const DtString* attachId,
                                                   const DtString* trackId,
                                                   const DtVector64* offset) const {
  DtTetherTrackVCPdu pdu;
  send(fill(pdu, DtVcTetherTrack)
           .give("entity", attachId)
           .give("track", trackId)
           .give("offset", offset)
           .pdu());
}

void DtVistrelRemoteController::setGroupMode(const DtGlobalObjectDesignatorList* ids,
                                             const float* radialOffset, const float* headingOffset,
                                             const float* pitchOffset) const {
  sendGroupPdu(ids, radialOffset, headingOffset, pitchOffset, 0);
}

void DtVistrelRemoteController::setWideGroupMode(const DtGlobalObjectDesignatorList* ids,
                                                 const float* radialOffset,
                                                 const float* headingOffset,
                                                 const float* pitchOffset) const {
  sendGroupPdu(ids, radialOffset, headingOffset, pitchOffset, 1);
}

void DtVistrelRemoteController::sendGroupPdu(const DtGlobalObjectDesignatorList* ids,
                                             const float* radialOffset, const float* headingOffset,
                                             const float* pitchOffset, int groupCmd) const {
  DtGroupVCPdu pdu;
  pdu.setGroupCmd(groupCmd);
  send(fill(pdu, DtVcGroup, groupCmd != 0)
           .give("entities", ids)
           .give("radial", radialOffset)
           .give("heading", headingOffset)
           .give("pitch", pitchOffset)
           .pdu());
}

// ------------------------------------------------------------------ viewer options
// Each sends one options PDU carrying the one setting (two for the forms with a file).

#define VC_OPTION(signature, body)               \
  void DtVistrelRemoteController::signature {    \
    sendOptions([&](DtOptionsPdu& p) { body; }); \
  }

VC_OPTION(setOverlayEnabled(bool enabled) const,
          p.setOverlayOption(static_cast<DtOverlayOption>(enabled ? 1 : 0)))
VC_OPTION(setSmoothing(DtSmoothingOption value) const, p.setSmoothing(value))
VC_OPTION(setSmoothingPeriod(double value) const, p.setSmoothingPeriod(value))
VC_OPTION(setSoundEnabled(bool value) const, p.setSound(value))
VC_OPTION(setEntityLabelsEnabled(bool value) const, p.setEntityLabels(value))
VC_OPTION(setTrailingEffectsEnabled(bool value) const, p.setTrailingEffects(value))
VC_OPTION(setTrajectoryHistoriesEnabled(bool value) const, p.setTrajectoryHistory(value))
VC_OPTION(setAggregateLevel(int value) const, p.setAggregateLevel(value))
VC_OPTION(setAggregateHighestOnly(bool value) const, p.setAggregateHighestOnly(value))
VC_OPTION(setGroundClampingEnabled(bool value) const, p.setGroundClamping(value))
VC_OPTION(setGroundClampRange(double value) const, p.setClampRange(value))
VC_OPTION(setTimeOfDay(double value) const, p.setTimeOfDay(value))
VC_OPTION(setNearClippingPlane(double value) const, p.setNearClip(value))
VC_OPTION(setFarClippingPlane(double value) const, p.setFarClip(value))
VC_OPTION(setVerticalFieldOfView(double value) const, p.setFov(value))
VC_OPTION(setFogEnabled(bool value) const, p.setFog(value))
VC_OPTION(setDatabaseToLoad(const DtString& value) const, p.setDatabaseToLoad(value))
VC_OPTION(setDate(const DtString& value) const, p.setDate(value))
VC_OPTION(exit(), p.setExit(true))
VC_OPTION(setClouds(bool value), p.setClouds(value))
VC_OPTION(setSkyDome(bool value), p.setSkyDome(value))
VC_OPTION(setMirrorMessageEveryFrame(bool value), p.setMirrorMessageEveryFrame(value))
VC_OPTION(setMirroring(bool value), p.setMirroring(value))
VC_OPTION(setBroadcasting(bool value), p.setBroadcasting(value))
VC_OPTION(setClusteringLabels(bool value), p.setClusteringLabels(value))
VC_OPTION(setTacticalGraphicsLabels(bool value), p.setTacticalGraphicsLabels(value))
VC_OPTION(setShowAggregates(bool value), p.setShowAggregates(value))
VC_OPTION(setShowEmitters(bool value), p.setShowEmitters(value))
VC_OPTION(setXr(bool value), p.setXr(value))
VC_OPTION(setHatLabels(bool value), p.setHatLabels(value))
VC_OPTION(setCurrentModelSet(const DtString& value), p.setCurrentModelSet(value))
VC_OPTION(setNextModelSet(), p.setShowNextModelSet(true))
VC_OPTION(setPrevModelSet(), p.setShowPrevModelSet(true))
VC_OPTION(setCurrentTextureSet(const DtString& value), p.setCurrentTextureSet(value))
VC_OPTION(setNextTextureSet(), p.setShowNextTextureSet(true))
VC_OPTION(setPrevTextureSet(), p.setShowPrevTextureSet(true))
VC_OPTION(setTerrainScale(double value), p.setTerrainScale(value))
VC_OPTION(setObjectScale(double value), p.setObjectScale(value))
VC_OPTION(startVideoRecording(),
          p.setVideoCaptureCommand(DtOptionsPdu::DtVistrelControlVideoCaptureCommand(3)))
VC_OPTION(startVideoRecording(const DtString& filename),
          p.setVideoCaptureCommand(DtOptionsPdu::DtVistrelControlVideoCaptureCommand(3));
          p.setVideoCaptureFilename(filename))
VC_OPTION(stopVideoRecording(),
          p.setVideoCaptureCommand(DtOptionsPdu::DtVistrelControlVideoCaptureCommand(0)))
VC_OPTION(pauseVideoRecording(),
          p.setVideoCaptureCommand(DtOptionsPdu::DtVistrelControlVideoCaptureCommand(1)))
VC_OPTION(unpauseVideoRecording(),
          p.setVideoCaptureCommand(DtOptionsPdu::DtVistrelControlVideoCaptureCommand(2)))
VC_OPTION(setVideoCaptureRecordInsets(bool value), p.setVideoCaptureRecordInsets(value))
VC_OPTION(setVideoCaptureFramesPerSecond(int value), p.setVideoCaptureFramesPerSecond(value))
VC_OPTION(setVideoCaptureFilenameBase(const DtString& value), p.setVideoCaptureFilenameBase(value))
VC_OPTION(setVideoCaptureDirectory(const DtString& value), p.setVideoCaptureDirectory(value))
VC_OPTION(setConstrainWithFloor(bool value), p.setConstrainWithFloor(value))
VC_OPTION(setFloor(double value), p.setFloor(value))
VC_OPTION(setConstrainViewToAll(bool value), p.setConstrainToAll(value))
VC_OPTION(setBlockedDistance(double value), p.setBlockedDistance(value))
VC_OPTION(setUseNearClipForBlockedDistance(bool value), p.setUseNearClipForBlockedDistance(value))
VC_OPTION(loadFeatures(const DtString& filename), p.setFeatureFilename(filename);
          p.setFeatureCommand(DtOptionsPdu::DtVistrelControlFeatureCommand(0)))
VC_OPTION(clearFeatures(), p.setFeatureCommand(DtOptionsPdu::DtVistrelControlFeatureCommand(1)))

#undef VC_OPTION
