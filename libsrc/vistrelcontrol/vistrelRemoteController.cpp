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
constexpr unsigned long kIgnoreAll = 0xFFFFFFFFul;

// Starts from "ignore everything" and clears the bits of each argument that is given,
// after writing it: a null argument leaves the viewer's current value alone.
class IgnoreFlags {
 public:
  template <typename T, typename Set>
  void given(const T* arg, unsigned long bits, Set set) {
    if (!arg) return;
    set(*arg);
    flags_ &= ~bits;
  }
  unsigned long value() const { return flags_; }

 private:
  unsigned long flags_ = kIgnoreAll;
};

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

// The ignore bits come from the one description of the modes' fields.
using vcmodes::kAttached;
using vcmodes::kAzimuthRate;
using vcmodes::kBodyHeading;
using vcmodes::kHeading;
using vcmodes::kHeadingOffset;
using vcmodes::kOffset;
using vcmodes::kOrientation;
using vcmodes::kPitch;
using vcmodes::kPitchOffset;
using vcmodes::kPosition;
using vcmodes::kRadialOffset;
using vcmodes::kRadius;
using vcmodes::kTopoUpOffset;
using vcmodes::kTracked;
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

void DtVistrelRemoteController::sendModeless(const DtGlobalObjectDesignatorList* toAdd,
                                             int removeCount,
                                             const DtGlobalObjectDesignatorList* toRemove,
                                             unsigned long flags) const {
  DtModelessVCPdu pdu;
  // The remove count goes first: growing the remove list later would shift the adds.
  pdu.setNumEntitiesToRemove(toRemove ? toRemove->count() : removeCount);
  if (toRemove)
    for (int i = 0; i < toRemove->count(); ++i) pdu.setEntityToRemove(i, toRemove->nth(i));
  pdu.setNumEntitiesToAdd(toAdd ? toAdd->count() : 0);
  if (toAdd)
    for (int i = 0; i < toAdd->count(); ++i) pdu.setEntityToAdd(i, toAdd->nth(i));
  pdu.setIgnoreFlags(flags);
  send(pdu);
}

void DtVistrelRemoteController::setPrimary(const DtString& id) const {
  DtModelessVCPdu pdu;
  pdu.setPrimary(id);
  pdu.setIgnoreFlags(0x600000);
  send(pdu);
}

void DtVistrelRemoteController::setSecondary(const DtString& id) const {
  DtModelessVCPdu pdu;
  pdu.setSecondary(id);
  pdu.setIgnoreFlags(0x500000);
  send(pdu);
}

void DtVistrelRemoteController::setPrimarySecondary(const DtString& primary,
                                                    const DtString& secondary) const {
  DtModelessVCPdu pdu;
  pdu.setPrimary(primary);
  pdu.setSecondary(secondary);
  pdu.setIgnoreFlags(0x400000);
  send(pdu);
}

void DtVistrelRemoteController::setGroup(const DtGlobalObjectDesignatorList& ids) const {
  sendModeless(&ids, -1, nullptr, 0x300000);  // -1 to remove: replace the whole group
}

void DtVistrelRemoteController::addToGroup(const DtGlobalObjectDesignatorList& ids) const {
  sendModeless(&ids, 0, nullptr, 0x300000);
}

void DtVistrelRemoteController::removeFromGroup(const DtGlobalObjectDesignatorList& ids) const {
  sendModeless(nullptr, 0, &ids, 0x300000);
}

// ------------------------------------------------------------------ movement

void DtVistrelRemoteController::reset() const {
  DtMoveVCPdu pdu;
  pdu.setReset(true);
  pdu.setIgnoreFlags(kIgnoreAll);
  send(pdu);
}

void DtVistrelRemoteController::moveEyepoint(Direction direction) const {
  DtMoveVCPdu pdu;
  pdu.setMove(direction);
  pdu.setIgnoreFlags(0xFEFFFFFF);
  send(pdu);
}

void DtVistrelRemoteController::turnEyepoint(Direction direction) const {
  DtMoveVCPdu pdu;
  pdu.setTurn(direction);
  pdu.setIgnoreFlags(0xFF7FFFFF);
  send(pdu);
}

void DtVistrelRemoteController::set(const DtVector64* position,
                                    const DtTaitBryan* orientation) const {
  if (!position && !orientation) return;
  DtMoveVCPdu pdu;
  IgnoreFlags flags;
  flags.given(position, kPosition, [&](const DtVector64& v) { pdu.setPosition(v); });
  flags.given(orientation, kOrientation, [&](const DtTaitBryan& o) { pdu.setOrientation(o); });
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
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

void DtVistrelRemoteController::setAbsoluteMode(const DtVector64* location,
                                                const DtTaitBryan* orientation) const {
  DtAbsoluteVCPdu pdu;
  IgnoreFlags flags;
  flags.given(location, kPosition, [&](const DtVector64& v) { pdu.setWorldLocation(v); });
  flags.given(orientation, kOrientation, [&](const DtTaitBryan& o) { pdu.setOrientation(o); });
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
}

void DtVistrelRemoteController::setCompassMode(const DtString* attachId, const float* radius,
                                               const float* bodyHeading, const float* pitch) const {
  DtCompassVCPdu pdu;
  IgnoreFlags flags;
  flags.given(attachId, kAttached, [&](const DtString& id) { pdu.setAttachId(id); });
  flags.given(radius, kRadius, [&](float v) { pdu.setRadius(v); });
  flags.given(bodyHeading, kBodyHeading, [&](float v) { pdu.setBodyHeading(v); });
  flags.given(pitch, kPitch, [&](float v) { pdu.setPitch(v); });
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
}

namespace {
template <typename Pdu>
void fillMimic(Pdu& pdu, const DtString* attachId, const DtVector64* offset, IgnoreFlags& flags) {
  flags.given(attachId, kAttached, [&](const DtString& id) { pdu.setAttachId(id); });
  flags.given(offset, kOffset, [&](const DtVector64& v) { pdu.setOffset(v); });
  pdu.setIgnoreFlags(flags.value());
}
}  // namespace

void DtVistrelRemoteController::setMimicMode(const DtString* attachId,
                                             const DtVector64* offset) const {
  DtMimicVCPdu pdu;
  IgnoreFlags flags;
  fillMimic(pdu, attachId, offset, flags);
  send(pdu);
}

void DtVistrelRemoteController::setTurretMode(const DtString* attachId,
                                              const DtVector64* offset) const {
  DtOffsetMimicVCPdu pdu;
  IgnoreFlags flags;
  fillMimic(pdu, attachId, offset, flags);
  send(pdu);
}

void DtVistrelRemoteController::setOrbitMode(const DtString* attachId, const float* radius,
                                             const float* heading, const float* pitch,
                                             const float* azimuthRate) const {
  DtOrbitVCPdu pdu;
  IgnoreFlags flags;
  flags.given(attachId, kAttached, [&](const DtString& id) { pdu.setAttachId(id); });
  flags.given(radius, kRadius, [&](float v) { pdu.setRadius(v); });
  flags.given(heading, kHeading, [&](float v) { pdu.setHeading(v); });
  flags.given(pitch, kPitch, [&](float v) { pdu.setPitch(v); });
  flags.given(azimuthRate, kAzimuthRate, [&](float v) { pdu.setAzimuthRate(v); });
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
}

void DtVistrelRemoteController::setPivotMode(const DtVector64* pivotPoint, const float* radius,
                                             const float* bodyHeading, const float* pitch) const {
  DtPivotVCPdu pdu;
  IgnoreFlags flags;
  flags.given(pivotPoint, kPosition, [&](const DtVector64& v) { pdu.setPivotPoint(v); });
  flags.given(radius, kRadius, [&](float v) { pdu.setRadius(v); });
  flags.given(bodyHeading, kBodyHeading, [&](float v) { pdu.setBodyHeading(v); });
  flags.given(pitch, kPitch, [&](float v) { pdu.setPitch(v); });
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
}

void DtVistrelRemoteController::setTetherMode(const DtString* attachId,
                                              const DtVector64* topoUpOffset,
                                              const DtTaitBryan* orientation) const {
  DtTetherVCPdu pdu;
  IgnoreFlags flags;
  flags.given(attachId, kAttached, [&](const DtString& id) { pdu.setAttachId(id); });
  flags.given(topoUpOffset, kTopoUpOffset, [&](const DtVector64& v) { pdu.setTopoUpOffset(v); });
  flags.given(orientation, kOrientation, [&](const DtTaitBryan& o) { pdu.setOrientation(o); });
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
}

void DtVistrelRemoteController::setTrackMode(const DtString* trackId,
                                             const DtVector64* location) const {
  DtTrackVCPdu pdu;
  IgnoreFlags flags;
  flags.given(trackId, kAttached, [&](const DtString& id) { pdu.setTrackId(id); });
  flags.given(location, kPosition, [&](const DtVector64& v) { pdu.setWorldLocation(v); });
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
}

namespace {
// Mimic-track and tether-track share a body but not the bit of their offset.
template <typename Pdu>
void fillTwoEntity(Pdu& pdu, const DtString* attachId, const DtString* trackId,
                   const DtVector64* offset, unsigned long offsetBits) {
  IgnoreFlags flags;
  flags.given(attachId, kAttached, [&](const DtString& id) { pdu.setAttachId(id); });
  flags.given(trackId, kTracked, [&](const DtString& id) { pdu.setTrackId(id); });
  flags.given(offset, offsetBits, [&](const DtVector64& v) { pdu.setOffset(v); });
  pdu.setIgnoreFlags(flags.value());
}
}  // namespace

void DtVistrelRemoteController::setMimicTrackMode(const DtString* attachId, const DtString* trackId,
                                                  const DtVector64* offset) const {
  DtMimicTrackVCPdu pdu;
  fillTwoEntity(pdu, attachId, trackId, offset, kPosition);
  send(pdu);
}

void DtVistrelRemoteController::setTetherTrackMode(const DtString* attachId,
                                                   const DtString* trackId,
                                                   const DtVector64* offset) const {
  DtTetherTrackVCPdu pdu;
  fillTwoEntity(pdu, attachId, trackId, offset, kOffset);
  send(pdu);
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
  IgnoreFlags flags;
  flags.given(radialOffset, kRadialOffset, [&](float v) { pdu.setRadialOffset(v); });
  flags.given(headingOffset, kHeadingOffset, [&](float v) { pdu.setHeadingOffset(v); });
  flags.given(pitchOffset, kPitchOffset, [&](float v) { pdu.setPitchOffset(v); });
  if (ids) {
    // -1 to remove: the listed entities become the whole group.
    pdu.setNumEntitiesToAdd(ids->count());
    pdu.setNumEntitiesToRemove(-1);
    for (int i = 0; i < ids->count(); ++i) pdu.setEntityToAdd(i, ids->nth(i));
  } else {
    pdu.setNumEntitiesToAdd(0);
    pdu.setNumEntitiesToRemove(0);
  }
  pdu.setIgnoreFlags(flags.value());
  send(pdu);
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
