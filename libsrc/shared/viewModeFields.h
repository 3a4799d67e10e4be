#pragma once
// The eyepoint modes and the fields of their commands, described once as data: which
// command, class and length a mode has, and per field what it holds, where it lies, which
// ignore bit leaves it out, in which frame and unit it counts, and what the command line
// calls it. The library's controller fills its commands from these rows, vcctl declares
// and reads its options from them, the viewer stand-in reads, reports and describes its
// state by them and places its eyepoint by their frames, so a mode cannot gain or move a
// field in one of them and not in the others.
//
// Ignore bits. A set bit keeps the viewer's current value of its field; the same value
// means the same kind of field in every mode. Two readings are settled here:
// - Orientation is the three bits 0x38, one per angle in wire order: heading 0x8, pitch
//   0x10 and so roll 0x20. A lone roll (compass, orbit, pivot) is therefore left out by
//   0x20, and mimic's body orientation, three angles like any other, by all of 0x38.
// - Every vector is left out component by component, its mask's bits lowest first (x,
//   y, z; heading, pitch, roll), so a viewer may keep one component and take the others.
//
// Units: lengths in metres, angles in radians, the azimuth rate in radians per second;
// world positions are geocentric. The library passes the numbers through unchanged.
//
// Header-only and built on public headers alone, so the tools can use it without
// reaching into the library's internals. Not installed.
#include <array>
#include <cstddef>
#include <cstring>

#include "vistrelControl.h"

namespace vcmodes {

constexpr unsigned long kPosition = 0x7;
constexpr unsigned long kHeading = 0x8;
constexpr unsigned long kPitch = 0x10;
constexpr unsigned long kRoll = 0x20;
constexpr unsigned long kOrientation = kHeading | kPitch | kRoll;
constexpr unsigned long kTopoUpOffset = 0x1C0;
constexpr unsigned long kRadius = 0x200;
constexpr unsigned long kBodyHeading = 0x400;
constexpr unsigned long kHeadingOffset = 0x800;
constexpr unsigned long kPitchOffset = 0x1000;
constexpr unsigned long kOffset = 0xE000;
constexpr unsigned long kAzimuthRate = 0x40000;
constexpr unsigned long kRadialOffset = 0x80000;
constexpr unsigned long kAttached = 0x100000;
constexpr unsigned long kTracked = 0x200000;
constexpr unsigned long kGroupLists = 0x400000;  // modeless: the entity lists
constexpr unsigned long kTurn = 0x800000;        // move: the turn direction
constexpr unsigned long kStep = 0x1000000;       // move: the move direction
/// A field no bit leaves out: senders fill it or leave it zero.
constexpr unsigned long kNoBit = 0;
/// What a command leaves out before its arguments are given.
constexpr unsigned long kIgnoreAll = 0xFFFFFFFF;

/// The form a field takes on the wire.
enum class Kind {
  Entity,      // 64-byte designator; its marking text closes the body (see marking())
  Designator,  // 64-byte designator without a marking text
  Real,        // one single
  Vector32,    // three singles
  Vector64,    // three doubles
  Angles,      // heading, pitch, roll as singles
  Angles64,    // heading, pitch, roll as doubles
  Direction,   // one byte, a DtMoveVCPdu::Direction
  Flag,        // one byte, non-zero for yes
  Entities     // the two counts of the lists that close the body
};

/// What a field holds, whichever mode carries it: the viewer keeps one value of each, so
/// switching from tether to orbit without an entity keeps the entity the eye was on.
enum class What {
  Location,
  Orientation,
  TopoUpOffset,
  Offset,
  PivotPoint,
  Radius,
  Heading,
  BodyHeading,
  Pitch,
  HeadingOffset,
  PitchOffset,
  Roll,
  AzimuthRate,
  RadialOffset,
  Attached,  // the entity the eye is on, or the one track mode looks at
  Tracked,   // the entity the two-entity modes look at
  Group,     // the group's entity lists
  Turn,
  Step,
  Reset
};

/// The axes a position or an orientation counts in.
enum class Frame {
  None,   // not a position or an orientation
  World,  // geocentric; orientations relative to the eye's own horizon
  Local,  // east, north, up at the entity; orientations relative to the horizon
  Body    // the entity's body axes (x forward, y right, z down)
};

/// One field of a command's body: everything any of the tools needs to know of it.
struct Field {
  const char* name;  // the viewer's word for it in its lines
  What what;
  Kind kind;
  Frame frame;
  size_t offset;      // from the start of the PDU
  unsigned long bit;  // ignore bits, kNoBit when none
  // vcctl's option or argument, and the name the controller gives the matching parameter
  // of its command; nullptr when neither offers it.
  const char* option;
  const char* help;  // vcctl's help, before the unit
};

/// One command's body as its fields; for the modes also what vcctl says of it.
struct Mode {
  DtViewerCommand command;
  const char* name;     // vcctl's command and the viewer's word for the mode
  const char* summary;  // vcctl's one-line help
  int length;           // whole PDU; the group's and modeless's without their entity lists
  const Field* fields;
  size_t count;                    // fields, in wire order
  DtVistrelControlPdu* (*make)();  // a new PDU of the mode's class
  bool wide;                       // the wide group: the group PDU with group command 1
  unsigned long ignoreAll;         // the flags before any argument is given
};

namespace rows {
constexpr Kind E = Kind::Entity, R = Kind::Real, V32 = Kind::Vector32, V64 = Kind::Vector64,
               A = Kind::Angles;
constexpr Frame N = Frame::None, W = Frame::World, L = Frame::Local, B = Frame::Body;
// clang-format off
inline constexpr Field kAbsolute[] = {
  {"location",      What::Location,      V64, W, 160, kPosition,      "at",          "world location"},
  {"orientation",   What::Orientation,   A,   W, 184, kOrientation,   "orientation", "where the eye looks"}};
inline constexpr Field kTether[] = {
  {"topoupoffset",  What::TopoUpOffset,  V32, L, 156, kTopoUpOffset,  "offset",      "topo-up offset from the entity"},
  {"orientation",   What::Orientation,   A,   W, 168, kOrientation,   "orientation", "where the eye looks"},
  {"attach",        What::Attached,      E,   N, 180, kAttached,      "entity",      "entity to follow"}};
// Compass and pivot put the eye on the same sphere; only what is in its centre differs.
inline constexpr Field kSphere[] = {
  {"radius",        What::Radius,        R,   N, 156, kRadius,        "radius",      "distance from the centre"},
  {"bodyheading",   What::BodyHeading,   R,   N, 160, kBodyHeading,   "heading",     "body heading"},
  {"pitch",         What::Pitch,         R,   N, 164, kPitch,         "pitch",       "pitch"},
  {"headingoffset", What::HeadingOffset, R,   N, 168, kHeadingOffset, nullptr,       nullptr},
  {"pitchoffset",   What::PitchOffset,   R,   N, 172, kPitchOffset,   nullptr,       nullptr},
  {"roll",          What::Roll,          R,   N, 176, kRoll,          nullptr,       nullptr}};
constexpr std::array<Field, 7> sphereAround(Field centre) {
  return {kSphere[0], kSphere[1], kSphere[2], kSphere[3], kSphere[4], kSphere[5], centre};
}
inline constexpr std::array<Field, 7> kCompass = sphereAround(
  {"attach",        What::Attached,      E,   N, 180, kAttached,      "entity",      "entity in the centre"});
inline constexpr std::array<Field, 7> kPivot = sphereAround(
  {"pivotpoint",    What::PivotPoint,    V64, W, 180, kPosition,      "point",       "world location of the centre"});
// Mimic and offset mimic share this body.
inline constexpr Field kMimic[] = {
  {"offset",        What::Offset,        V32, B, 156, kOffset,        "offset",      "eye offset on the entity"},
  {"orientation",   What::Orientation,   A,   B, 168, kOrientation,   nullptr,       nullptr},
  {"attach",        What::Attached,      E,   N, 180, kAttached,      "entity",      "entity to ride on"}};
inline constexpr Field kOrbit[] = {
  {"radius",        What::Radius,        R,   N, 156, kRadius,        "radius",      "distance from the centre"},
  {"azimuthrate",   What::AzimuthRate,   R,   N, 160, kAzimuthRate,   "rate",        "azimuth rate"},
  {"heading",       What::Heading,       R,   N, 164, kHeading,       "heading",     "heading"},
  {"pitch",         What::Pitch,         R,   N, 168, kPitch,         "pitch",       "pitch"},
  {"headingoffset", What::HeadingOffset, R,   N, 172, kHeadingOffset, nullptr,       nullptr},
  {"pitchoffset",   What::PitchOffset,   R,   N, 176, kPitchOffset,   nullptr,       nullptr},
  {"roll",          What::Roll,          R,   N, 180, kRoll,          nullptr,       nullptr},
  {"attach",        What::Attached,      E,   N, 184, kAttached,      "entity",      "entity in the centre"}};
inline constexpr Field kTrack[] = {
  {"location",      What::Location,      V64, W, 160, kPosition,      "at",          "world location of the eye"},
  {"track",         What::Attached,      E,   N, 184, kAttached,      "entity",      "entity to keep in view"}};
// Tether-track and mimic-track share the body but neither the bit nor the frame of their
// offset.
inline constexpr Field kTetherTrack[] = {
  {"offset",        What::Offset,        V32, L, 156, kOffset,        "offset",      "offset from the followed entity"},
  {"attach",        What::Attached,      E,   N, 168, kAttached,      "entity",      "entity to follow"},
  {"track",         What::Tracked,       E,   N, 232, kTracked,       "track",       "entity to keep in view"}};
inline constexpr Field kMimicTrack[] = {
  {"offset",        What::Offset,        V32, B, 156, kPosition,      "offset",      "eye offset on the entity"},
  {"attach",        What::Attached,      E,   N, 168, kAttached,      "entity",      "entity to ride on"},
  {"track",         What::Tracked,       E,   N, 232, kTracked,       "track",       "entity to keep in view"}};
// The command line's heading and pitch of a group are its offsets.
inline constexpr Field kGroup[] = {
  {"radialoffset",  What::RadialOffset,  R,   N, 156, kRadialOffset,  "radial",      "radial offset from the group"},
  {"heading",       What::Heading,       R,   N, 160, kHeading,       nullptr,       nullptr},
  {"pitch",         What::Pitch,         R,   N, 164, kPitch,         nullptr,       nullptr},
  {"headingoffset", What::HeadingOffset, R,   N, 168, kHeadingOffset, "heading",     "heading offset"},
  {"pitchoffset",   What::PitchOffset,   R,   N, 172, kPitchOffset,   "pitch",       "pitch offset"},
  {"members",       What::Group,         Kind::Entities, N, 180, kNoBit, "entities", "entities of the group"}};
// Neither of these changes the mode: modeless names the entities and edits the group,
// move steps, turns or places the eye in the mode in force.
inline constexpr Field kModeless[] = {
  {"primary",       What::Attached,      Kind::Designator, N, 156, kAttached, "primary",   "entity id"},
  {"secondary",     What::Tracked,       Kind::Designator, N, 220, kTracked,  "secondary", "entity id"},
  {"group",         What::Group,         Kind::Entities,   N, 284, kGroupLists, "entities", "entity ids"}};
inline constexpr Field kMove[] = {
  {"turn",          What::Turn,          Kind::Direction,  N, 156, kTurn,     "turn",   nullptr},
  {"step",          What::Step,          Kind::Direction,  N, 157, kStep,     "move",   nullptr},
  {"reset",         What::Reset,         Kind::Flag,       N, 158, kNoBit,    nullptr,  nullptr},
  {"location",      What::Location,      V64,              W, 160, kPosition, "at",     "world location"},
  {"orientation",   What::Orientation,   Kind::Angles64,   W, 184, kOrientation, "orientation", "where the eye looks"}};
// clang-format on
}  // namespace rows

template <class P>
DtVistrelControlPdu* make() {
  return new P;
}

template <class P, size_t N>
constexpr Mode mode(DtViewerCommand command, const char* name, const char* summary, int length,
                    const Field (&fields)[N], bool wide = false,
                    unsigned long ignoreAll = kIgnoreAll) {
  return Mode{command, name, summary, length, fields, N, &make<P>, wide, ignoreAll};
}
template <class P, size_t N>
constexpr Mode mode(DtViewerCommand command, const char* name, const char* summary, int length,
                    const std::array<Field, N>& fields) {
  return Mode{command, name, summary, length, fields.data(), N, &make<P>, false, kIgnoreAll};
}

// clang-format off
inline constexpr Mode kModes[] = {
  mode<DtAbsoluteVCPdu>(DtVcAbsolute, "absolute", "put the eyepoint at a fixed place", 196, rows::kAbsolute),
  mode<DtTetherVCPdu>(DtVcTether, "tether", "follow an entity at an offset, keeping its own orientation", 308, rows::kTether),
  mode<DtCompassVCPdu>(DtVcCompass, "compass", "circle an entity at a fixed compass heading", 308, rows::kCompass),
  mode<DtMimicVCPdu>(DtVcMimic, "mimic", "ride on an entity, looking where it looks", 308, rows::kMimic),
  mode<DtOffsetMimicVCPdu>(DtVcOffsetMimic, "turret", "ride on an entity at an offset (offset mimic)", 308, rows::kMimic),
  mode<DtOrbitVCPdu>(DtVcOrbit, "orbit", "circle around an entity", 312, rows::kOrbit),
  mode<DtTrackVCPdu>(DtVcTrack, "track", "stay at a place and keep an entity in view", 312, rows::kTrack),
  mode<DtTetherTrackVCPdu>(DtVcTetherTrack, "tether-track", "follow one entity and keep another in view", 424, rows::kTetherTrack),
  mode<DtMimicTrackVCPdu>(DtVcMimicTrack, "mimic-track", "ride on one entity and keep another in view", 424, rows::kMimicTrack),
  mode<DtGroupVCPdu>(DtVcGroup, "group", "look at a group of entities", 188, rows::kGroup),
  mode<DtGroupVCPdu>(DtVcGroup, "wide-group", "look at a group of entities from further out", 188, rows::kGroup, true),
  mode<DtPivotVCPdu>(DtVcPivot, "pivot", "circle around a fixed point", 204, rows::kPivot)};
// Modeless starts from its own three bits rather than from every bit.
inline constexpr Mode kModeless =
  mode<DtModelessVCPdu>(DtVcModeless, "modeless", "name entities and edit the group", 292, rows::kModeless,
                        false, kAttached | kTracked | kGroupLists);
inline constexpr Mode kMove =
  mode<DtMoveVCPdu>(DtVcMove, "move", "step, turn or place the eyepoint", 208, rows::kMove);
// clang-format on

/// The fields of this command (the wide group's when `wide`): a mode, modeless or move;
/// nullptr for any other command.
inline const Mode* find(DtViewerCommand command, bool wide = false) {
  for (const Mode& m : kModes)
    if (m.command == command && m.wide == (command == DtVcGroup && wide)) return &m;
  if (command == kModeless.command) return &kModeless;
  if (command == kMove.command) return &kMove;
  return nullptr;
}

/// The mode a PDU switches to, the group's command telling the wide group apart.
inline const Mode* find(const DtVistrelControlPdu& pdu) {
  const DtViewerCommand command = pdu.viewerCommand();
  const auto* group = command == DtVcGroup ? dynamic_cast<const DtGroupVCPdu*>(&pdu) : nullptr;
  return find(command, group && group->groupCmd() != DtGroupVCPdu::GROUP);
}

/// The row `option` names, or nullptr.
inline const Field* field(const Mode& mode, const char* option) {
  for (size_t i = 0; i < mode.count; ++i)
    if (mode.fields[i].option && std::strcmp(mode.fields[i].option, option) == 0)
      return &mode.fields[i];
  return nullptr;
}

/// A new PDU of the mode, the wide group's command set.
inline DtVistrelControlPdu* newPdu(const Mode& mode) {
  DtVistrelControlPdu* pdu = mode.make();
  if (mode.wide) static_cast<DtGroupVCPdu*>(pdu)->setGroupCmd(DtGroupVCPdu::WIDE_GROUP);
  return pdu;
}

/// Bytes a field of this kind takes, the lists counted as their two counts.
constexpr size_t width(Kind kind) {
  switch (kind) {
    case Kind::Entity:
    case Kind::Designator:
      return 64;
    case Kind::Real:
      return 4;
    case Kind::Vector32:
    case Kind::Angles:
      return 12;
    case Kind::Vector64:
    case Kind::Angles64:
      return 24;
    case Kind::Direction:
    case Kind::Flag:
      return 1;
    case Kind::Entities:
      return 8;
  }
  return 0;
}

/// Where the marking text of an entity field lies: the marking texts close the body, one
/// for each entity in the order of their designators. 0 for a field of another kind.
inline size_t marking(const Mode& mode, const Field& entity) {
  if (entity.kind != Kind::Entity) return 0;
  size_t entities = 0, rank = 0;
  for (size_t i = 0; i < mode.count; ++i) {
    if (mode.fields[i].kind != Kind::Entity) continue;
    if (&mode.fields[i] == &entity) rank = entities;
    ++entities;
  }
  return static_cast<size_t>(mode.length) - 64 * (entities - rank);
}

/// The unit of a quantity in words, or nullptr for those without one.
constexpr const char* unit(What what) {
  switch (what) {
    case What::Location:
    case What::TopoUpOffset:
    case What::Offset:
    case What::PivotPoint:
    case What::Radius:
    case What::RadialOffset:
      return "metres";
    case What::Orientation:
    case What::Heading:
    case What::BodyHeading:
    case What::Pitch:
    case What::HeadingOffset:
    case What::PitchOffset:
    case What::Roll:
      return "radians";
    case What::AzimuthRate:
      return "radians per second";
    default:
      return nullptr;
  }
}

/// A vector field's mask split into the bits of its components, lowest first.
constexpr std::array<unsigned long, 3> components(unsigned long mask) {
  std::array<unsigned long, 3> bits{};
  size_t n = 0;
  for (unsigned long b = 1; b != 0 && n < 3; b <<= 1)
    if (mask & b) bits[n++] = b;
  return bits;
}

/// Builds one command: from the mode's starting flags, each value given is written where
/// its row says and clears the row's bits; a value not given (null) leaves its field as
/// the PDU was built and its bits set. A row is named by its option.
class Command {
 public:
  Command(DtVistrelControlPdu& pdu, const Mode& mode) : pdu_(pdu), mode_(mode) {}

  Command& give(const char* option, const float* value) {
    if (const Field* f = take(option, value, Kind::Real)) pdu_.writeFloat32(f->offset, *value);
    return *this;
  }
  Command& give(const char* option, const DtVector64* value) {
    if (const Field* f = take(option, value, Kind::Vector32)) pdu_.writeVector32(f->offset, *value);
    if (const Field* f = take(option, value, Kind::Vector64)) pdu_.writeVector64(f->offset, *value);
    return *this;
  }
  Command& give(const char* option, const DtTaitBryan* value) {
    if (const Field* f = take(option, value, Kind::Angles))
      pdu_.writeEulerAngles(f->offset, *value);
    if (const Field* f = take(option, value, Kind::Angles64))
      pdu_.writeVector64(f->offset, DtVector64(value->psi(), value->theta(), value->phi()));
    return *this;
  }
  Command& give(const char* option, const DtString* value) {
    if (const Field* f = take(option, value, Kind::Entity)) pdu_.writeDesignator(f->offset, *value);
    if (const Field* f = take(option, value, Kind::Designator))
      pdu_.writeDesignator(f->offset, *value);
    return *this;
  }
  Command& give(const char* option, const DtMoveVCPdu::Direction* value) {
    if (const Field* f = take(option, value, Kind::Direction))
      pdu_.writeU8(f->offset, static_cast<unsigned int>(*value));
    return *this;
  }
  /// The listed entities become the whole group: -1 to remove, then each to add. Without
  /// a list both counts stay as built, zero.
  Command& give(const char* option, const DtGlobalObjectDesignatorList* ids) {
    if (!take(option, ids, Kind::Entities)) return *this;
    if (auto* group = dynamic_cast<DtGroupVCPdu*>(&pdu_)) replace(*group, *ids);
    if (auto* modeless = dynamic_cast<DtModelessVCPdu*>(&pdu_)) replace(*modeless, *ids);
    return *this;
  }
  /// Clears the bits of a field whose value the caller wrote through the PDU's class.
  Command& written(const char* option) {
    if (const Field* f = field(mode_, option)) flags_ &= ~f->bit;
    return *this;
  }

  /// Stores the flags; the PDU is then ready to send.
  DtVistrelControlPdu& pdu() {
    pdu_.setIgnoreFlags(flags_);
    return pdu_;
  }

 private:
  // The row of `option` when a value is given for it and the row is of `kind`; its bits
  // are cleared.
  template <typename T>
  const Field* take(const char* option, const T* value, Kind kind) {
    const Field* f = value ? field(mode_, option) : nullptr;
    if (!f || f->kind != kind) return nullptr;
    flags_ &= ~f->bit;
    return f;
  }

  template <class P>
  static void replace(P& pdu, const DtGlobalObjectDesignatorList& ids) {
    // The remove count first: growing the remove list later would shift the adds.
    pdu.setNumEntitiesToRemove(-1);
    pdu.setNumEntitiesToAdd(ids.count());
    for (int i = 0; i < ids.count(); ++i) pdu.setEntityToAdd(i, ids.nth(i));
  }

  DtVistrelControlPdu& pdu_;
  const Mode& mode_;
  unsigned long flags_ = mode_.ignoreAll;
};

}  // namespace vcmodes
