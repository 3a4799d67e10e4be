#include "viewState.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "textFormat.h"
#include "viewModeFields.h"

namespace vcviewer {

namespace {

// A vector's mask split into its three bits, lowest first: the viewer ignores a vector
// one component at a time, while the modes' description gives each vector one mask.
constexpr std::array<unsigned long, 3> components(unsigned long mask) {
  std::array<unsigned long, 3> bits{};
  size_t n = 0;
  for (unsigned long b = 1; b != 0 && n < 3; b <<= 1)
    if (mask & b) bits[n++] = b;
  return bits;
}
constexpr std::array<unsigned long, 3> kPositionBits = components(vcmodes::kPosition);
constexpr std::array<unsigned long, 3> kOrientationBits = components(vcmodes::kOrientation);
constexpr std::array<unsigned long, 3> kTopoUpBits = components(vcmodes::kTopoUpOffset);
constexpr std::array<unsigned long, 3> kOffsetBits = components(vcmodes::kOffset);
constexpr unsigned long kAttachedBit = vcmodes::kAttached;
constexpr unsigned long kTrackedBit = vcmodes::kTracked;
// Bits that belong to no single mode's field table.
constexpr unsigned long kGroupListsBit = 0x400000;  // modeless: the entity lists
constexpr unsigned long kTurnBit = 0x800000;
constexpr unsigned long kMoveBit = 0x1000000;

// One parameter as the PDUs carry it: its name in the lines, its ignore bit (one per
// component for vectors) and where the eyepoint keeps it. Offsets appear twice because
// mimic-track flags its offset with the position bits while the others use their own.
struct Field {
  enum Kind { Real, Vector, Entity };
  const char* name;
  Kind kind;
  std::array<unsigned long, 3> bits;
  double EyeParams::*real;
  DtVector64 EyeParams::*vec;
  EntityRef EyeParams::*entity;
};

constexpr Field kLocation{"location", Field::Vector,        kPositionBits,
                          nullptr,    &EyeParams::location, nullptr};
constexpr Field kPivotPoint{"point", Field::Vector,          kPositionBits,
                            nullptr, &EyeParams::pivotPoint, nullptr};
constexpr Field kTopoUpOffset{
    "topupoffset", Field::Vector, kTopoUpBits, nullptr, &EyeParams::topoUpOffset, nullptr};
constexpr Field kOffset{"offset", Field::Vector, kOffsetBits, nullptr, &EyeParams::offset, nullptr};
constexpr Field kTrackOffset{"offset", Field::Vector,      kPositionBits,
                             nullptr,  &EyeParams::offset, nullptr};
constexpr Field kHeading{"heading",           Field::Real, {vcmodes::kHeading},
                         &EyeParams::heading, nullptr,     nullptr};
constexpr Field kPitch{"pitch",           Field::Real, {vcmodes::kPitch},
                       &EyeParams::pitch, nullptr,     nullptr};
constexpr Field kRoll{"roll",           Field::Real, {kOrientationBits[2]},
                      &EyeParams::roll, nullptr,     nullptr};
constexpr Field kRadius{"radius",           Field::Real, {vcmodes::kRadius},
                        &EyeParams::radius, nullptr,     nullptr};
constexpr Field kBodyHeading{"bodyheading",           Field::Real, {vcmodes::kBodyHeading},
                             &EyeParams::bodyHeading, nullptr,     nullptr};
constexpr Field kHeadingOffset{"headingoffset",           Field::Real, {vcmodes::kHeadingOffset},
                               &EyeParams::headingOffset, nullptr,     nullptr};
constexpr Field kPitchOffset{"pitchoffset",           Field::Real, {vcmodes::kPitchOffset},
                             &EyeParams::pitchOffset, nullptr,     nullptr};
constexpr Field kAzimuthRate{"azimuthrate",           Field::Real, {vcmodes::kAzimuthRate},
                             &EyeParams::azimuthRate, nullptr,     nullptr};
constexpr Field kRadialOffset{"radialoffset",           Field::Real, {vcmodes::kRadialOffset},
                              &EyeParams::radialOffset, nullptr,     nullptr};
constexpr Field kAttach{"attach", Field::Entity, {kAttachedBit},
                        nullptr,  nullptr,       &EyeParams::primary};
constexpr Field kTrackOnly{"track", Field::Entity, {kAttachedBit},
                           nullptr, nullptr,       &EyeParams::primary};
constexpr Field kTrackSecond{"track", Field::Entity, {kTrackedBit},
                             nullptr, nullptr,       &EyeParams::secondary};
constexpr Field kPrimary{"primary", Field::Entity, {kAttachedBit},
                         nullptr,   nullptr,       &EyeParams::primary};
constexpr Field kSecondary{"secondary", Field::Entity, {kTrackedBit},
                           nullptr,     nullptr,       &EyeParams::secondary};

EntityRef entity(const DtString& id, const DtString& marking) {
  return {id.stdString(), marking.stdString()};
}
DtVector64 toVector(const DtTaitBryan& a) {
  return DtVector64(a.psi(), a.theta(), a.phi());
}
void readAngles(const DtTaitBryan& a, EyeParams& e) {
  e.heading = a.psi();
  e.pitch = a.theta();
  e.roll = a.phi();
}
DtTaitBryan angles(const EyeParams& e) {
  return DtTaitBryan(e.heading, e.pitch, e.roll);
}
float f32(double v) {
  return static_cast<float>(v);
}

// Per mode: the PDU's fields into the neutral parameters, and a new PDU from them. Each
// reader refuses a PDU of another class, whatever its command says.
bool readAbsolute(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtAbsoluteVCPdu*>(&pdu);
  if (!p) return false;
  e.location = p->worldLocation();
  readAngles(p->orientation(), e);
  return true;
}
DtVistrelControlPdu* writeAbsolute(const EyeParams& e) {
  auto* p = new DtAbsoluteVCPdu;
  p->setWorldLocation(e.location);
  p->setOrientation(angles(e));
  return p;
}

bool readTether(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtTetherVCPdu*>(&pdu);
  if (!p) return false;
  e.primary = entity(p->attachId(), p->markingText());
  e.topoUpOffset = p->topoUpOffset();
  readAngles(p->orientation(), e);
  return true;
}
DtVistrelControlPdu* writeTether(const EyeParams& e) {
  auto* p = new DtTetherVCPdu;
  p->setAttachId(e.primary.id);
  p->setMarkingText(e.primary.marking);
  p->setTopoUpOffset(e.topoUpOffset);
  p->setOrientation(angles(e));
  return p;
}

bool readCompass(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtCompassVCPdu*>(&pdu);
  if (!p) return false;
  e.primary = entity(p->attachId(), p->markingText());
  e.radius = p->radius();
  e.bodyHeading = p->bodyHeading();
  e.pitch = p->pitch();
  e.headingOffset = p->headingOffset();
  e.pitchOffset = p->pitchOffset();
  e.roll = p->roll();
  return true;
}
DtVistrelControlPdu* writeCompass(const EyeParams& e) {
  auto* p = new DtCompassVCPdu;
  p->setAttachId(e.primary.id);
  p->setMarkingText(e.primary.marking);
  p->setRadius(f32(e.radius));
  p->setBodyHeading(f32(e.bodyHeading));
  p->setPitch(f32(e.pitch));
  p->setHeadingOffset(f32(e.headingOffset));
  p->setPitchOffset(f32(e.pitchOffset));
  p->setRoll(f32(e.roll));
  return p;
}

// Offset mimic is a mimic with its own command, so one reader serves both.
bool readMimic(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtMimicVCPdu*>(&pdu);
  if (!p) return false;
  e.primary = entity(p->attachId(), p->markingText());
  e.offset = p->offset();
  readAngles(p->bodyOrientation(), e);
  return true;
}
void fillMimic(DtMimicVCPdu& p, const EyeParams& e) {
  p.setAttachId(e.primary.id);
  p.setMarkingText(e.primary.marking);
  p.setOffset(e.offset);
  p.setBodyOrientation(angles(e));
}
DtVistrelControlPdu* writeMimic(const EyeParams& e) {
  auto* p = new DtMimicVCPdu;
  fillMimic(*p, e);
  return p;
}
DtVistrelControlPdu* writeOffsetMimic(const EyeParams& e) {
  auto* p = new DtOffsetMimicVCPdu;
  fillMimic(*p, e);
  return p;
}

bool readOrbit(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtOrbitVCPdu*>(&pdu);
  if (!p) return false;
  e.primary = entity(p->attachId(), p->markingText());
  e.radius = p->radius();
  e.azimuthRate = p->azimuthRate();
  e.heading = p->heading();
  e.pitch = p->pitch();
  e.headingOffset = p->headingOffset();
  e.pitchOffset = p->pitchOffset();
  e.roll = p->roll();
  return true;
}
DtVistrelControlPdu* writeOrbit(const EyeParams& e) {
  auto* p = new DtOrbitVCPdu;
  p->setAttachId(e.primary.id);
  p->setMarkingText(e.primary.marking);
  p->setRadius(f32(e.radius));
  p->setAzimuthRate(f32(e.azimuthRate));
  p->setHeading(f32(e.heading));
  p->setPitch(f32(e.pitch));
  p->setHeadingOffset(f32(e.headingOffset));
  p->setPitchOffset(f32(e.pitchOffset));
  p->setRoll(f32(e.roll));
  return p;
}

bool readTrack(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtTrackVCPdu*>(&pdu);
  if (!p) return false;
  e.primary = entity(p->trackId(), p->markingText());
  e.location = p->worldLocation();
  return true;
}
DtVistrelControlPdu* writeTrack(const EyeParams& e) {
  auto* p = new DtTrackVCPdu;
  p->setTrackId(e.primary.id);
  p->setMarkingText(e.primary.marking);
  p->setWorldLocation(e.location);
  return p;
}

// Tether-track and mimic-track share their layout but not their class.
template <class P>
bool readTwoEntities(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const P*>(&pdu);
  if (!p) return false;
  e.primary = entity(p->attachId(), p->attachMarkingText());
  e.secondary = entity(p->trackId(), p->trackMarkingText());
  e.offset = p->offset();
  return true;
}
template <class P>
DtVistrelControlPdu* writeTwoEntities(const EyeParams& e) {
  auto* p = new P;
  p->setAttachId(e.primary.id);
  p->setAttachMarkingText(e.primary.marking);
  p->setTrackId(e.secondary.id);
  p->setTrackMarkingText(e.secondary.marking);
  p->setOffset(e.offset);
  return p;
}

bool readGroup(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtGroupVCPdu*>(&pdu);
  if (!p) return false;
  e.radialOffset = p->radialOffset();
  e.heading = p->heading();
  e.pitch = p->pitch();
  e.headingOffset = p->headingOffset();
  e.pitchOffset = p->pitchOffset();
  return true;
}
DtVistrelControlPdu* writeGroup(const EyeParams& e) {
  auto* p = new DtGroupVCPdu;
  p->setRadialOffset(f32(e.radialOffset));
  p->setHeading(f32(e.heading));
  p->setPitch(f32(e.pitch));
  p->setHeadingOffset(f32(e.headingOffset));
  p->setPitchOffset(f32(e.pitchOffset));
  return p;
}

bool readPivot(const DtVistrelControlPdu& pdu, EyeParams& e) {
  auto* p = dynamic_cast<const DtPivotVCPdu*>(&pdu);
  if (!p) return false;
  e.pivotPoint = p->pivotPoint();
  e.radius = p->radius();
  e.bodyHeading = p->bodyHeading();
  e.pitch = p->pitch();
  e.headingOffset = p->headingOffset();
  e.pitchOffset = p->pitchOffset();
  e.roll = p->roll();
  return true;
}
DtVistrelControlPdu* writePivot(const EyeParams& e) {
  auto* p = new DtPivotVCPdu;
  p->setPivotPoint(e.pivotPoint);
  p->setRadius(f32(e.radius));
  p->setBodyHeading(f32(e.bodyHeading));
  p->setPitch(f32(e.pitch));
  p->setHeadingOffset(f32(e.headingOffset));
  p->setPitchOffset(f32(e.pitchOffset));
  p->setRoll(f32(e.roll));
  return p;
}

struct Mode {
  DtViewerCommand command;
  const char* name;
  std::vector<const Field*> fields;
  bool (*read)(const DtVistrelControlPdu&, EyeParams&);
  DtVistrelControlPdu* (*write)(const EyeParams&);
};

const std::vector<Mode>& modes() {
  static const std::vector<Mode> table = {
      {DtVcAbsolute,
       "absolute",
       {&kLocation, &kHeading, &kPitch, &kRoll},
       readAbsolute,
       writeAbsolute},
      {DtVcTether,
       "tether",
       {&kAttach, &kTopoUpOffset, &kHeading, &kPitch, &kRoll},
       readTether,
       writeTether},
      {DtVcCompass,
       "compass",
       {&kAttach, &kRadius, &kBodyHeading, &kPitch, &kHeadingOffset, &kPitchOffset, &kRoll},
       readCompass,
       writeCompass},
      {DtVcMimic, "mimic", {&kAttach, &kOffset, &kHeading, &kPitch, &kRoll}, readMimic, writeMimic},
      {DtVcOffsetMimic,
       "offsetmimic",
       {&kAttach, &kOffset, &kHeading, &kPitch, &kRoll},
       readMimic,
       writeOffsetMimic},
      {DtVcOrbit,
       "orbit",
       {&kAttach, &kRadius, &kAzimuthRate, &kHeading, &kPitch, &kHeadingOffset, &kPitchOffset,
        &kRoll},
       readOrbit,
       writeOrbit},
      {DtVcTrack, "track", {&kTrackOnly, &kLocation}, readTrack, writeTrack},
      {DtVcTetherTrack,
       "tethertrack",
       {&kAttach, &kTrackSecond, &kOffset},
       readTwoEntities<DtTetherTrackVCPdu>,
       writeTwoEntities<DtTetherTrackVCPdu>},
      {DtVcMimicTrack,
       "mimictrack",
       {&kAttach, &kTrackSecond, &kTrackOffset},
       readTwoEntities<DtMimicTrackVCPdu>,
       writeTwoEntities<DtMimicTrackVCPdu>},
      {DtVcGroup,
       "group",
       {&kRadialOffset, &kHeading, &kPitch, &kHeadingOffset, &kPitchOffset},
       readGroup,
       writeGroup},
      {DtVcPivot,
       "pivot",
       {&kPivotPoint, &kRadius, &kBodyHeading, &kPitch, &kHeadingOffset, &kPitchOffset, &kRoll},
       readPivot,
       writePivot},
  };
  return table;
}

const Mode* findMode(DtViewerCommand command) {
  for (const Mode& m : modes())
    if (m.command == command) return &m;
  return nullptr;
}

std::string entityText(const char* name, const EntityRef& e) {
  std::string text = std::string(name) + "=" + word(e.id);
  if (!e.marking.empty()) text += " " + std::string(name) + "marking=" + quoted(e.marking);
  return text;
}

// The field's current value, as "name=value".
std::string show(const Field& f, const EyeParams& e) {
  switch (f.kind) {
    case Field::Real:
      return std::string(f.name) + "=" + number(e.*f.real);
    case Field::Vector:
      return std::string(f.name) + "=" + vector(e.*f.vec);
    case Field::Entity:
      return entityText(f.name, e.*f.entity);
  }
  return {};
}

// Takes what the ignore flags let through from `in` into `eye` and says what happened.
std::string merge(const Field& f, const EyeParams& in, unsigned long flags, EyeParams& eye) {
  const std::string kept = std::string(f.name) + "=(kept)";
  switch (f.kind) {
    case Field::Real:
      if (flags & f.bits[0]) return kept;
      eye.*f.real = in.*f.real;
      break;
    case Field::Entity:
      if (flags & f.bits[0]) return kept;
      eye.*f.entity = in.*f.entity;
      break;
    case Field::Vector: {
      if ((flags & f.bits[0]) && (flags & f.bits[1]) && (flags & f.bits[2])) return kept;
      std::string parts;
      for (int i = 0; i < 3; ++i) {
        if (i) parts += ", ";
        if (flags & f.bits[i]) {
          parts += "kept";
        } else {
          (eye.*f.vec)[i] = (in.*f.vec)[i];
          parts += number((eye.*f.vec)[i]);
        }
      }
      return std::string(f.name) + "=(" + parts + ")";
    }
  }
  return show(f, eye);
}

std::string listText(const std::vector<std::string>& ids) {
  std::string text = "[";
  for (size_t i = 0; i < ids.size(); ++i) text += (i ? ", " : "") + word(ids[i]);
  return text + "]";
}

// How many 64-byte ids can follow the fixed part: a count that claims more than the PDU
// holds is cut to what is there, so a hostile count costs no time.
int fitting(int count, size_t room) {
  if (count < 0) return 0;
  return static_cast<int>(std::min(static_cast<size_t>(count), room / 64));
}

// Group and modeless PDUs edit the group alike: a remove count of -1 replaces the whole
// group, otherwise the named entities leave it; then the added ones join it, once each.
template <class P>
std::string editGroup(const P& pdu, std::vector<std::string>& group) {
  constexpr size_t kFixed = P::kLength;
  size_t whole = pdu.length() > 0 ? static_cast<size_t>(pdu.length()) : 0;
  size_t length = whole > kFixed ? whole - kFixed : 0;
  int removeCount = pdu.numEntitiesToRemove();
  int toRemove = removeCount == -1 ? 0 : fitting(removeCount, length);
  int toAdd = fitting(pdu.numEntitiesToAdd(), length - 64 * static_cast<size_t>(toRemove));
  std::string text;
  if (removeCount == -1) {
    group.clear();
    text += " remove=all";
  } else {
    std::vector<std::string> removed;
    for (int i = 0; i < toRemove; ++i) {
      std::string id = pdu.entityToRemove(i).stdString();
      group.erase(std::remove(group.begin(), group.end(), id), group.end());
      removed.push_back(id);
    }
    text += " remove=" + listText(removed);
  }
  std::vector<std::string> added;
  for (int i = 0; i < toAdd; ++i) {
    std::string id = pdu.entityToAdd(i).stdString();
    if (std::find(group.begin(), group.end(), id) == group.end()) group.push_back(id);
    added.push_back(id);
  }
  return text + " add=" + listText(added) + " members=" + listText(group);
}

const char* directionName(int d) {
  static const char* names[] = {"LEFT", "RIGHT", "UP", "DOWN", "FORWARDS", "BACKWARDS"};
  return d >= 0 && d < 6 ? names[d] : nullptr;
}

std::string directionText(int d) {
  const char* name = directionName(d);
  return name ? name : "unknown(" + std::to_string(d) + ")";
}

constexpr double kPi = 3.14159265358979323846;

}  // namespace

std::string ViewState::apply(const DtVistrelControlPdu& pdu, double stepsize, double turnrate) {
  DtViewerCommand command = pdu.viewerCommand();
  if (command == DtVcMove) {
    auto* move = dynamic_cast<const DtMoveVCPdu*>(&pdu);
    return move ? applyMove(*move, stepsize, turnrate) : std::string();
  }
  if (command == DtVcModeless) {
    auto* modeless = dynamic_cast<const DtModelessVCPdu*>(&pdu);
    return modeless ? applyModeless(*modeless) : std::string();
  }
  const Mode* mode = findMode(command);
  EyeParams in;
  if (!mode || !mode->read(pdu, in)) return {};
  unsigned long flags = pdu.ignoreFlags();
  mode_ = mode->command;
  std::string fields;
  for (const Field* f : mode->fields) fields += " " + merge(*f, in, flags, eye_);
  if (command == DtVcGroup) {
    auto& group = static_cast<const DtGroupVCPdu&>(pdu);
    wideGroup_ = group.groupCmd() != DtGroupVCPdu::GROUP;
    fields += editGroup(group, group_);
  }
  return modeName() + fields;
}

std::string ViewState::applyModeless(const DtModelessVCPdu& pdu) {
  unsigned long flags = pdu.ignoreFlags();
  EyeParams in;
  in.primary = entity(pdu.primary(), "");
  in.secondary = entity(pdu.secondary(), "");
  std::string line =
      "modeless " + merge(kPrimary, in, flags, eye_) + " " + merge(kSecondary, in, flags, eye_);
  if (flags & kGroupListsBit) return line + " group=(kept)";
  return line + editGroup(pdu, group_);
}

std::string ViewState::applyMove(const DtMoveVCPdu& pdu, double stepsize, double turnrate) {
  unsigned long flags = pdu.ignoreFlags();
  std::string line = "move";
  bool acted = false;
  if (pdu.reset()) {
    eye_.location = DtVector64();
    eye_.heading = eye_.pitch = eye_.roll = 0;
    line += " reset";
    acted = true;
  }
  if (!(flags & kMoveBit)) {
    // Heading 0 looks north (+y) and grows clockwise, towards east (+x).
    double h = eye_.heading;
    DtVector64 forward(std::sin(h), std::cos(h), 0), right(std::cos(h), -std::sin(h), 0);
    DtVector64 step;
    switch (pdu.move()) {
      case DtMoveVCPdu::FORWARDS:
        step = forward * stepsize;
        break;
      case DtMoveVCPdu::BACKWARDS:
        step = forward * -stepsize;
        break;
      case DtMoveVCPdu::RIGHT:
        step = right * stepsize;
        break;
      case DtMoveVCPdu::LEFT:
        step = right * -stepsize;
        break;
      case DtMoveVCPdu::UP:
        step = DtVector64(0, 0, stepsize);
        break;
      case DtMoveVCPdu::DOWN:
        step = DtVector64(0, 0, -stepsize);
        break;
    }
    eye_.location = eye_.location + step;
    line += " step=" + directionText(pdu.move());
    acted = true;
  }
  if (!(flags & kTurnBit)) {
    double rate = turnrate * kPi / 180.0;
    switch (pdu.turn()) {
      case DtMoveVCPdu::LEFT:
        eye_.heading -= rate;
        break;
      case DtMoveVCPdu::RIGHT:
        eye_.heading += rate;
        break;
      case DtMoveVCPdu::UP:
        eye_.pitch += rate;
        break;
      case DtMoveVCPdu::DOWN:
        eye_.pitch -= rate;
        break;
      default:
        break;  // an eye does not turn forwards or backwards
    }
    line += " turn=" + directionText(pdu.turn());
    acted = true;
  }
  const DtVector64& position = pdu.position();
  for (int i = 0; i < 3; ++i) {
    if (!(flags & kPositionBits[i])) {
      eye_.location[i] = position[i];
      acted = true;
    }
  }
  if ((flags & vcmodes::kPosition) != vcmodes::kPosition) line += " set-location";
  const DtVector64 orientation = toVector(pdu.orientation());
  double* angle[3] = {&eye_.heading, &eye_.pitch, &eye_.roll};
  for (int i = 0; i < 3; ++i) {
    if (!(flags & kOrientationBits[i])) {
      *angle[i] = orientation[i];
      acted = true;
    }
  }
  if ((flags & vcmodes::kOrientation) != vcmodes::kOrientation) line += " set-orientation";
  if (!acted) line += " nothing";
  return line + " -> " + show(kLocation, eye_) + " " + show(kHeading, eye_) + " " +
         show(kPitch, eye_) + " " + show(kRoll, eye_);
}

std::unique_ptr<DtVistrelControlPdu> ViewState::status() const {
  const Mode* mode = findMode(mode_);
  std::unique_ptr<DtVistrelControlPdu> pdu(mode->write(eye_));
  unsigned long flags = 0xFFFFFFFFul;
  for (const Field* f : mode->fields)
    for (unsigned long bit : f->bits) flags &= ~bit;
  if (mode_ == DtVcGroup) {
    auto& group = static_cast<DtGroupVCPdu&>(*pdu);
    group.setGroupCmd(wideGroup_ ? DtGroupVCPdu::WIDE_GROUP : DtGroupVCPdu::GROUP);
    // -1 to remove: the list that follows is the whole group.
    group.setNumEntitiesToRemove(-1);
    group.setNumEntitiesToAdd(static_cast<int>(group_.size()));
    for (size_t i = 0; i < group_.size(); ++i) group.setEntityToAdd(static_cast<int>(i), group_[i]);
  }
  pdu->setIgnoreFlags(flags);
  pdu->setStatusCommand(true);
  return pdu;
}

std::string ViewState::modeName() const {
  if (mode_ == DtVcGroup && wideGroup_) return "widegroup";
  const Mode* mode = findMode(mode_);
  return mode ? mode->name : "unknown";
}

std::string ViewState::describe() const {
  std::string text = modeName();
  for (const Field* f : findMode(mode_)->fields) text += " " + show(*f, eye_);
  if (mode_ == DtVcGroup) text += " members=" + listText(group_);
  return text;
}

}  // namespace vcviewer
