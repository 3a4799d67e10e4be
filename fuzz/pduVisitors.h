#pragma once
// Reads every accessor of whatever control PDU class it is given and, on request, calls
// every setter with values drawn from the fuzzer's input. One function per family; the
// dispatch goes from the most derived family to the base, so a PDU is visited as every
// class it is.
#include <fuzzer/FuzzedDataProvider.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzzSupport.h"
#include "vistrelControl.h"

namespace pduvisit {

using fuzzsupport::use;

// Values for the setters, taken from the fuzzer's input.
class Values {
 public:
  explicit Values(FuzzedDataProvider& p) : p_(p) {}
  bool b() { return p_.ConsumeBool(); }
  int i() { return p_.ConsumeIntegral<int>(); }
  unsigned u() { return p_.ConsumeIntegral<unsigned>(); }
  unsigned char byte() { return p_.ConsumeIntegral<unsigned char>(); }
  float f() { return p_.ConsumeFloatingPoint<float>(); }
  double d() { return p_.ConsumeFloatingPoint<double>(); }
  // Indices: mostly near the edges of the lists, sometimes anything at all.
  int index() {
    switch (p_.ConsumeIntegralInRange(0, 3)) {
      case 0:
        return p_.ConsumeIntegralInRange(-2, 20);
      case 1:
        return INT_MAX - p_.ConsumeIntegralInRange(0, 2);
      case 2:
        return INT_MIN + p_.ConsumeIntegralInRange(0, 2);
      default:
        return i();
    }
  }
  DtString s(size_t max = 400) { return DtString(p_.ConsumeRandomLengthString(max).c_str()); }
  DtVector64 v() { return DtVector64(d(), d(), d()); }
  DtTaitBryan a() { return DtTaitBryan(d(), d(), d()); }
  bool empty() const { return p_.remaining_bytes() == 0; }

 private:
  FuzzedDataProvider& p_;
};

inline void useColor(const unsigned char* rgba) {
  fuzzsupport::useBytes(rgba, 4);
}

// ------------------------------------------------------------------ view control

inline void readBase(const DtVistrelControlPdu& p) {
  use(p.viewerId());
  use(p.senderId());
  use(static_cast<std::uint64_t>(p.viewerCommand()));
  use(static_cast<std::uint64_t>(p.ignoreFlags()));
  use(static_cast<std::uint64_t>(p.statusCommand()));
  use(static_cast<std::uint64_t>(p.length()));
  use(static_cast<std::uint64_t>(p.pduKind() + p.protocolVersion() + p.exerciseId() +
                                 p.protocolFamily() + p.timeStamp()));
  use(DtEnumString(p.viewerCommand()));
  fuzzsupport::useBytes(p.packet(), static_cast<size_t>(p.length()));
}

inline void setBase(DtVistrelControlPdu& p, Values& v) {
  p.setViewerId(v.s(100));
  p.setSenderId(v.s(100));
  p.setIgnoreFlags(static_cast<unsigned long>(v.u()) << (v.b() ? 32 : 0) | v.u());
  p.setStatusCommand(v.b());
  p.setTimeStamp(v.u());
}

template <typename Pdu>
void readEntityLists(const Pdu& p, Values& v) {
  int remove = p.numEntitiesToRemove();
  int add = p.numEntitiesToAdd();
  use(static_cast<std::uint64_t>(remove) + static_cast<std::uint64_t>(add));
  auto before = [](int n) { return n == INT_MIN ? n : n - 1; };
  for (int i : {-1, 0, 1, before(remove), remove, before(add), add, INT_MAX, INT_MIN, v.index()}) {
    use(p.entityToRemove(i));
    use(p.entityToAdd(i));
  }
}

template <typename Pdu>
void setEntityLists(Pdu& p, Values& v) {
  p.setNumEntitiesToRemove(v.index());
  p.setNumEntitiesToAdd(v.index());
  p.setEntityToRemove(v.index(), v.s(100));
  p.setEntityToAdd(v.index(), v.s(100));
  readEntityLists(p, v);
}

inline void readView(const DtVistrelControlPdu& pdu, Values& v) {
  if (auto* p = dynamic_cast<const DtAbsoluteVCPdu*>(&pdu)) {
    use(p->worldLocation());
    use(p->orientation());
  }
  if (auto* p = dynamic_cast<const DtTetherVCPdu*>(&pdu)) {
    use(p->topoUpOffset());
    use(p->orientation());
    use(p->attachId());
    use(p->markingText());
  }
  if (auto* p = dynamic_cast<const DtCompassVCPdu*>(&pdu)) {
    use(p->radius() + p->bodyHeading() + p->pitch() + p->headingOffset() + p->pitchOffset() +
        p->roll());
    use(p->attachId());
    use(p->markingText());
  }
  if (auto* p = dynamic_cast<const DtMimicVCPdu*>(&pdu)) {
    use(p->offset());
    use(p->bodyOrientation());
    use(p->attachId());
    use(p->markingText());
  }
  if (auto* p = dynamic_cast<const DtOrbitVCPdu*>(&pdu)) {
    use(p->radius() + p->azimuthRate() + p->heading() + p->pitch() + p->headingOffset() +
        p->pitchOffset() + p->roll());
    use(p->attachId());
    use(p->markingText());
  }
  if (auto* p = dynamic_cast<const DtTrackVCPdu*>(&pdu)) {
    use(p->worldLocation());
    use(p->trackId());
    use(p->markingText());
  }
  if (auto* p = dynamic_cast<const DtTetherTrackVCPdu*>(&pdu)) {
    use(p->offset());
    use(p->attachId());
    use(p->trackId());
    use(p->attachMarkingText());
    use(p->trackMarkingText());
  }
  if (auto* p = dynamic_cast<const DtMimicTrackVCPdu*>(&pdu)) {
    use(p->offset());
    use(p->attachId());
    use(p->trackId());
    use(p->attachMarkingText());
    use(p->trackMarkingText());
  }
  if (auto* p = dynamic_cast<const DtGroupVCPdu*>(&pdu)) {
    use(p->radialOffset() + p->heading() + p->pitch() + p->headingOffset() + p->pitchOffset());
    use(static_cast<std::uint64_t>(p->groupCmd()));
    readEntityLists(*p, v);
  }
  if (auto* p = dynamic_cast<const DtModelessVCPdu*>(&pdu)) {
    use(p->primary());
    use(p->secondary());
    readEntityLists(*p, v);
  }
  if (auto* p = dynamic_cast<const DtMoveVCPdu*>(&pdu)) {
    use(static_cast<std::uint64_t>(p->turn()) + static_cast<std::uint64_t>(p->move()));
    use(p->position());
    use(p->orientation());
    use(static_cast<std::uint64_t>(p->reset()));
  }
  if (auto* p = dynamic_cast<const DtPivotVCPdu*>(&pdu)) {
    use(p->radius() + p->bodyHeading() + p->pitch() + p->headingOffset() + p->pitchOffset() +
        p->roll());
    use(p->pivotPoint());
  }
}

inline void setView(DtVistrelControlPdu& pdu, Values& v) {
  if (auto* p = dynamic_cast<DtAbsoluteVCPdu*>(&pdu)) {
    p->setWorldLocation(v.v());
    p->setOrientation(v.a());
  }
  if (auto* p = dynamic_cast<DtTetherVCPdu*>(&pdu)) {
    p->setTopoUpOffset(v.v());
    p->setOrientation(v.a());
    p->setAttachId(v.s());
    p->setMarkingText(v.s());
  }
  if (auto* p = dynamic_cast<DtCompassVCPdu*>(&pdu)) {
    p->setRadius(v.f());
    p->setBodyHeading(v.f());
    p->setPitch(v.f());
    p->setHeadingOffset(v.f());
    p->setPitchOffset(v.f());
    p->setRoll(v.f());
    p->setAttachId(v.s());
    p->setMarkingText(v.s());
  }
  if (auto* p = dynamic_cast<DtMimicVCPdu*>(&pdu)) {
    p->setOffset(v.v());
    p->setBodyOrientation(v.a());
    p->setAttachId(v.s());
    p->setMarkingText(v.s());
  }
  if (auto* p = dynamic_cast<DtOrbitVCPdu*>(&pdu)) {
    p->setRadius(v.f());
    p->setAzimuthRate(v.f());
    p->setHeading(v.f());
    p->setPitch(v.f());
    p->setHeadingOffset(v.f());
    p->setPitchOffset(v.f());
    p->setRoll(v.f());
    p->setAttachId(v.s());
    p->setMarkingText(v.s());
  }
  if (auto* p = dynamic_cast<DtTrackVCPdu*>(&pdu)) {
    p->setWorldLocation(v.v());
    p->setTrackId(v.s());
    p->setMarkingText(v.s());
  }
  if (auto* p = dynamic_cast<DtTetherTrackVCPdu*>(&pdu)) {
    p->setOffset(v.v());
    p->setAttachId(v.s());
    p->setTrackId(v.s());
    p->setAttachMarkingText(v.s());
    p->setTrackMarkingText(v.s());
  }
  if (auto* p = dynamic_cast<DtMimicTrackVCPdu*>(&pdu)) {
    p->setOffset(v.v());
    p->setAttachId(v.s());
    p->setTrackId(v.s());
    p->setAttachMarkingText(v.s());
    p->setTrackMarkingText(v.s());
  }
  if (auto* p = dynamic_cast<DtGroupVCPdu*>(&pdu)) {
    p->setRadialOffset(v.f());
    p->setHeading(v.f());
    p->setPitch(v.f());
    p->setHeadingOffset(v.f());
    p->setPitchOffset(v.f());
    p->setGroupCmd(v.i());
    setEntityLists(*p, v);
  }
  if (auto* p = dynamic_cast<DtModelessVCPdu*>(&pdu)) {
    p->setPrimary(v.s());
    p->setSecondary(v.s());
    setEntityLists(*p, v);
  }
  if (auto* p = dynamic_cast<DtMoveVCPdu*>(&pdu)) {
    p->setTurn(static_cast<DtMoveVCPdu::Direction>(v.i()));
    p->setMove(static_cast<DtMoveVCPdu::Direction>(v.i()));
    p->setPosition(v.v());
    p->setOrientation(v.a());
    p->setReset(v.b());
  }
  if (auto* p = dynamic_cast<DtPivotVCPdu*>(&pdu)) {
    p->setRadius(v.f());
    p->setBodyHeading(v.f());
    p->setPitch(v.f());
    p->setHeadingOffset(v.f());
    p->setPitchOffset(v.f());
    p->setRoll(v.f());
    p->setPivotPoint(v.v());
  }
}

// ------------------------------------------------------------------ options

inline void readOptions(const DtOptionsPdu& p, Values& v) {
  for (int o = -2; o < 70; ++o)
    use(static_cast<std::uint64_t>(p.optionPresent(static_cast<DtVistrelOption>(o))));
  use(static_cast<std::uint64_t>(p.optionPresent(static_cast<DtVistrelOption>(v.i()))));
  use(static_cast<std::uint64_t>(p.overlayOption()) + static_cast<std::uint64_t>(p.smoothing()) +
      static_cast<std::uint64_t>(p.aggregateLevel()) +
      static_cast<std::uint64_t>(p.videoCaptureCommand()) +
      static_cast<std::uint64_t>(p.videoCaptureFramesPerSecond()) +
      static_cast<std::uint64_t>(p.featureCommand()));
  use(p.locatorRange() + p.smoothingPeriod() + p.clampRange() + p.floor() + p.timeOfDay() +
      p.nearClip() + p.farClip() + p.fov() + p.nearFog() + p.farFog() + p.stepsize() +
      p.turnrate() + p.terrainScale() + p.objectScale() + p.blockedDistance());
  const bool flags[] = {p.sound(),
                        p.entityLabels(),
                        p.trailingEffects(),
                        p.trajectoryHistory(),
                        p.recording(),
                        p.aggregateHighestOnly(),
                        p.aggregatesAltitudeControlled(),
                        p.nestedAggregates(),
                        p.nestedEntities(),
                        p.groundClamping(),
                        p.followGround(),
                        p.constrainWithFloor(),
                        p.fog(),
                        p.texture(),
                        p.xr(),
                        p.hatLabels(),
                        p.skyDome(),
                        p.clouds(),
                        p.mirroring(),
                        p.mirrorMessageEveryFrame(),
                        p.broadcasting(),
                        p.clusteringLabels(),
                        p.tacticalGraphicsLabels(),
                        p.tacticalGraphics(),
                        p.showAggregates(),
                        p.showEmitters(),
                        p.videoCaptureRecordInsets(),
                        p.constrainedToAll(),
                        p.useNearClipForBlockedDistance(),
                        p.incrementStepsize(),
                        p.incrementTurnrate(),
                        p.decrementStepsize(),
                        p.decrementTurnrate(),
                        p.showNextModelSet(),
                        p.showPrevModelSet(),
                        p.showNextTextureSet(),
                        p.showPrevTextureSet(),
                        p.exit()};
  for (bool f : flags) use(static_cast<std::uint64_t>(f));
  use(p.databaseToLoad());
  use(p.date());
  use(p.currentModelSet());
  use(p.currentTextureSet());
  use(p.videoCaptureFilename());
  use(p.videoCaptureDirectory());
  use(p.videoCaptureFilenameBase());
  use(p.featureFilename());
}

inline void setOptions(DtOptionsPdu& p, Values& v) {
  p.setOptionPresent(static_cast<DtVistrelOption>(v.i()));
  p.clearOptionPresent(static_cast<DtVistrelOption>(v.i()));
  p.setOverlayOption(static_cast<DtOverlayOption>(v.i()));
  p.setLocatorRange(v.d());
  p.setSmoothing(static_cast<DtSmoothingOption>(v.i()));
  p.setSmoothingPeriod(v.d());
  p.setSound(v.b());
  p.setEntityLabels(v.b());
  p.setTrailingEffects(v.b());
  p.setTrajectoryHistory(v.b());
  p.setRecording(v.b());
  p.setAggregateLevel(v.i());
  p.setAggregateHighestOnly(v.b());
  p.setAggregatesAltitudeControlled(v.b());
  p.setNestedAggregates(v.b());
  p.setNestedEntities(v.b());
  p.setGroundClamping(v.b());
  p.setClampRange(v.d());
  p.setFollowGround(v.b());
  p.setConstrainWithFloor(v.b());
  p.setFloor(v.d());
  p.setTimeOfDay(v.d());
  p.setNearClip(v.d());
  p.setFarClip(v.d());
  p.setFov(v.d());
  p.setFog(v.b());
  p.setNearFog(v.d());
  p.setFarFog(v.d());
  p.setTexture(v.b());
  p.setDatabaseToLoad(v.s(600));
  p.setStepsize(v.f());
  p.setTurnrate(v.f());
  p.setDate(v.s(600));
  p.setXr(v.b());
  p.setHatLabels(v.b());
  p.setCurrentModelSet(v.s(600));
  p.setCurrentTextureSet(v.s(600));
  p.setTerrainScale(v.d());
  p.setObjectScale(v.d());
  p.setSkyDome(v.b());
  p.setClouds(v.b());
  p.setMirroring(v.b());
  p.setMirrorMessageEveryFrame(v.b());
  p.setBroadcasting(v.b());
  p.setClusteringLabels(v.b());
  p.setTacticalGraphicsLabels(v.b());
  p.setTacticalGraphics(v.b());
  p.setShowAggregates(v.b());
  p.setShowEmitters(v.b());
  p.setVideoCaptureCommand(static_cast<DtVistrelControlVideoCaptureCommand>(v.i()));
  p.setVideoCaptureRecordInsets(v.b());
  p.setVideoCaptureFramesPerSecond(v.i());
  p.setVideoCaptureFilename(v.s(600));
  p.setVideoCaptureDirectory(v.s(600));
  p.setVideoCaptureFilenameBase(v.s(600));
  p.setBlockedDistance(v.d());
  p.setConstrainToAll(v.b());
  p.setUseNearClipForBlockedDistance(v.b());
  p.setFeatureFilename(v.s(600));
  p.setFeatureCommand(static_cast<DtVistrelControlFeatureCommand>(v.i()));
  p.setIncrementStepsize(v.b());
  p.setIncrementTurnrate(v.b());
  p.setDecrementStepsize(v.b());
  p.setDecrementTurnrate(v.b());
  p.setShowNextModelSet(v.b());
  p.setShowPrevModelSet(v.b());
  p.setShowNextTextureSet(v.b());
  p.setShowPrevTextureSet(v.b());
  p.setExit(v.b());
}

// ------------------------------------------------------------------ draw control

inline void readDraw(const DtVistrelDrawControlPdu& p, Values& v) {
  use(static_cast<std::uint64_t>(p.objectId()) + p.type() + p.paramVersion());
  use(DtVistrelDrawControlPdu::typeString(static_cast<int>(static_cast<unsigned>(p.type()))));
  use(p.internalText(v.i(), static_cast<unsigned long>(v.u())));
  use(p.internalText(p.length(), 0));

  if (auto* a = dynamic_cast<const DtVdcAttachablePdu*>(&p)) {
    use(DtVdcAttachablePdu::typeString(a->attachmentType()));
    for (int i : {-1, 0, 1, 2, v.index()}) {
      use(static_cast<std::uint64_t>(a->relativeLocation(i)));
      use(a->attachEntityId(i));
      use(static_cast<std::uint64_t>(a->attachObjectId(i)));
      use(a->position(i));
    }
    use(a->offset());
    useColor(a->color());
    use(static_cast<std::uint64_t>(a->flashing()));
  }
  if (auto* c = dynamic_cast<const DtVdcCommandPduBase*>(&p))
    use(static_cast<std::uint64_t>(c->layerId()));
  if (auto* l = dynamic_cast<const DtVdcLinePdu*>(&p)) {
    unsigned n = l->numSegments();
    for (unsigned s : {0u, 1u, n - 1, n, n + 1, 255u, 256u, 0xFFFFFFFFu, v.u()}) {
      use(l->typeString(l->arrowStyle(s)));
      use(l->typeString(l->appearance(s)));
      use(static_cast<std::uint64_t>(l->thickness(s)) + l->pattern(s) + l->percentage(s));
      useColor(l->color(s));
    }
    use(static_cast<std::uint64_t>(l->checkLos()) + l->projected());
  }
  if (auto* o = dynamic_cast<const DtVdcPolyObjectPduBase*>(&p)) {
    use(static_cast<std::uint64_t>(o->fill()) + o->pattern());
    use(o->scale());
    use(o->rotation());
  }
  if (auto* t = dynamic_cast<const DtVdcTrianglePduBase*>(&p))
    for (int i : {-1, 0, 1, 2, 3, v.index()}) use(t->point(i));
  if (auto* a = dynamic_cast<const DtVdcAreaPduBase*>(&p)) {
    int n = a->numPoints();
    const long long wide = n;
    for (long long i : {-1LL, 0LL, wide - 1, wide, wide + 1, 16LL, static_cast<long long>(INT_MAX),
                        static_cast<long long>(v.index())})
      if (i >= INT_MIN && i <= INT_MAX) use(a->point(static_cast<int>(i)));
    use(a->textureDirectory());
    use(a->textureFilename());
    use(static_cast<std::uint64_t>(a->numTextureTiles()));
  }
  if (auto* t = dynamic_cast<const DtVdcTextPduBase*>(&p)) use(t->text());
  if (auto* a = dynamic_cast<const DtVdcAttributePduBase*>(&p)) {
    use(a->name());
    use(static_cast<std::uint64_t>(a->attributeGroupId()) + a->hasRange());
    use(a->rangeMin() + a->rangeMax());
  }
  if (auto* u = dynamic_cast<const DtVdcAttributeUpdatePduBase*>(&p)) {
    use(u->text());
    use(static_cast<std::uint64_t>(u->groupId()));
    use(u->valueX() + u->valueY());
  }
  if (auto* l = dynamic_cast<const DtVdcLayerPduBase*>(&p)) use(l->name());
}

inline DtVector64 anyPoint(Values& v) {
  return v.v();
}

inline void setDraw(DtVistrelDrawControlPdu& p, Values& v) {
  p.setObjectId(v.u());
  p.setType(v.u());
  p.setParamVersion(v.u());
  // Offsets anywhere, including past the largest length a PDU can have.
  p.setInternalText(v.s(), v.b() ? v.u() : static_cast<unsigned long>(v.index()));

  if (auto* a = dynamic_cast<DtVdcAttachablePdu*>(&p)) {
    const char percent[2] = {static_cast<char>(v.byte()), static_cast<char>(v.byte())};
    switch (v.byte() % 16) {
      case 0:
        a->attachTo(percent);
        break;
      case 1:
        a->attachTo(percent, percent);
        break;
      case 2:
        a->attachTo(anyPoint(v));
        break;
      case 3:
        a->attachTo(DtNetU32(v.u()));
        break;
      case 4:
        a->attachTo(v.s());
        break;
      case 5:
        a->attachTo(DtNetU32(v.u()), DtNetU32(v.u()));
        break;
      case 6:
        a->attachTo(v.s(), v.s());
        break;
      case 7:
        a->attachTo(anyPoint(v), anyPoint(v));
        break;
      case 8:
        a->attachTo(v.s(), DtNetU32(v.u()));
        break;
      case 9:
        a->attachTo(DtNetU32(v.u()), v.s());
        break;
      case 10:
        a->attachTo(v.s(), anyPoint(v));
        break;
      case 11:
        a->attachTo(anyPoint(v), v.s());
        break;
      case 12:
        a->attachTo(DtNetU32(v.u()), anyPoint(v));
        break;
      case 13:
        a->attachTo(anyPoint(v), DtNetU32(v.u()));
        break;
      default:
        a->setAttachmentType(static_cast<DtVdcAttachablePdu::DtVcObjectAttachment>(v.i()));
    }
    a->setRelativeLocation(v.byte(), v.b() ? v.index() : v.i() % 2);
    a->setOffset(v.v());
    unsigned char rgba[4] = {v.byte(), v.byte(), v.byte(), v.byte()};
    a->setColor(rgba);
    a->setColor(nullptr);
    a->setFlashing(v.b());
  }
  if (auto* c = dynamic_cast<DtVdcCommandPduBase*>(&p)) c->setLayerId(v.u());
  if (auto* l = dynamic_cast<DtVdcLinePdu*>(&p)) {
    l->setNumSegments(v.byte());
    unsigned seg = v.b() ? v.u() : v.byte();
    l->setArrowStyle(static_cast<DtVdcLinePdu::DtVdcLineArrowStyle>(v.i()));
    l->setArrowStyle(seg, static_cast<DtVdcLinePdu::DtVdcLineArrowStyle>(v.i()));
    l->setAppearance(static_cast<DtVdcLinePdu::DtVdcLineAppearance>(v.i()));
    l->setAppearance(seg, static_cast<DtVdcLinePdu::DtVdcLineAppearance>(v.i()));
    l->setThickness(v.byte());
    l->setThickness(seg, v.byte());
    l->setPattern(v.u());
    l->setPattern(seg, v.u());
    unsigned char rgba[4] = {v.byte(), v.byte(), v.byte(), v.byte()};
    l->setColor(seg, rgba);
    l->setColor(seg, nullptr);
    l->setPercentage(seg, v.byte());
    l->setCheckLos(v.b());
    l->setProjected(v.b());
  }
  if (auto* o = dynamic_cast<DtVdcPolyObjectPduBase*>(&p)) {
    o->setFill(v.b());
    o->setPattern(v.u());
    o->setScale(v.v());
    o->setRotation(v.a());
  }
  if (auto* t = dynamic_cast<DtVdcTrianglePduBase*>(&p)) t->setPoint(v.index(), v.v());
  if (auto* a = dynamic_cast<DtVdcAreaPduBase*>(&p)) {
    a->setNumPoints(v.index());
    a->setPoint(v.index(), v.v());
    a->setTextureDirectory(v.s(600));
    a->setTextureFilename(v.s(600));
    a->setNumTextureTiles(v.i());
  }
  if (auto* t = dynamic_cast<DtVdcTextPduBase*>(&p)) t->setText(v.s(2000));
  if (auto* a = dynamic_cast<DtVdcAttributePduBase*>(&p)) {
    a->setName(v.s(600));
    a->setAttributeGroupId(v.u());
    a->setRange(v.d(), v.d());
  }
  if (auto* u = dynamic_cast<DtVdcAttributeUpdatePduBase*>(&p)) {
    u->setText(v.s(600));
    u->setGroupId(v.u());
    u->setValueX(v.d());
    u->setValueY(v.d());
  }
  if (auto* l = dynamic_cast<DtVdcLayerPduBase*>(&p)) l->setName(v.s(600));
}

// ------------------------------------------------------------------ every family

inline void readAll(const DtVistrelControlPdu& pdu, Values& v, bool print = true) {
  readBase(pdu);
  readView(pdu, v);
  if (auto* o = dynamic_cast<const DtOptionsPdu*>(&pdu)) readOptions(*o, v);
  if (auto* d = dynamic_cast<const DtVistrelDrawControlPdu*>(&pdu)) readDraw(*d, v);
  if (print) pdu.print();
  use(pdu.string());
}

inline void setAll(DtVistrelControlPdu& pdu, Values& v) {
  setBase(pdu, v);
  setView(pdu, v);
  if (auto* o = dynamic_cast<DtOptionsPdu*>(&pdu)) setOptions(*o, v);
  if (auto* d = dynamic_cast<DtVistrelDrawControlPdu*>(&pdu)) setDraw(*d, v);
}

// Copies and assigns the PDU as its own class, then reads the copies. Returns false for
// a class this list does not know, so a new class cannot slip by unvisited.
template <typename Pdu>
bool copyAs(const DtVistrelControlPdu& pdu, Values& v) {
  if (typeid(pdu) != typeid(Pdu)) return false;
  const Pdu& p = static_cast<const Pdu&>(pdu);
  Pdu copy(p);
  Pdu assigned;
  assigned.setViewerId("overwritten");
  assigned = p;
  Pdu& same = assigned;
  assigned = same;  // assignment to itself keeps the bytes
  // Copies own equal bytes and read the same.
  const std::string text = p.string();
  for (const Pdu* c : {&copy, &assigned}) {
    if (c->length() != p.length() || c->packet() == p.packet() ||
        std::memcmp(c->packet(), p.packet(), static_cast<size_t>(p.length())) != 0 ||
        text != c->string())
      std::abort();
    readAll(*c, v, false);
  }
  return true;
}

template <typename... Pdus>
bool copyAny(const DtVistrelControlPdu& pdu, Values& v) {
  return (copyAs<Pdus>(pdu, v) || ...);
}

inline bool copyAndAssign(const DtVistrelControlPdu& pdu, Values& v) {
  return copyAny<DtAbsoluteVCPdu, DtTetherVCPdu, DtCompassVCPdu, DtMimicVCPdu, DtOffsetMimicVCPdu,
                 DtOrbitVCPdu, DtTrackVCPdu, DtTetherTrackVCPdu, DtMimicTrackVCPdu, DtGroupVCPdu,
                 DtModelessVCPdu, DtOptionsPdu, DtPivotVCPdu, DtMoveVCPdu, DtRequestStateVCPdu,
                 DtVdcCommandPdu, DtVdcCommandPduV0, DtVdcLinePdu, DtVdcLinePduV0,
                 DtVdcSegmentedLinePduV0, DtVdcPolyObjectPdu, DtVdcPolyObjectPduV0,
                 DtVdcTrianglePdu, DtVdcTrianglePduV0, DtVdcAreaPdu, DtVdcAreaPduV0, DtVdcTextPdu,
                 DtVdcTextPduV0, DtVdcAttributePdu, DtVdcAttributePduV0, DtVdcAttributeUpdatePdu,
                 DtVdcAttributeUpdatePduV0, DtVdcLayerPdu, DtVdcLayerPduV0>(pdu, v);
}

}  // namespace pduvisit
