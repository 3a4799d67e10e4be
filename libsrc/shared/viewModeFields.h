#pragma once
// The eyepoint modes and the fields of their commands, described once as data: which
// command and body length a mode has, and per field where it lies, what it holds, which
// ignore bit leaves it out and what the command line calls it. The library's controller
// takes its ignore bits from here; the tools take their options and the viewer its state
// from the same rows, so a mode cannot gain a field in one of them and not the others.
// Header-only and built on public headers alone, so the tools can use it without
// reaching into the library's internals. Not installed.
#include <array>
#include <cstddef>

#include "vistrelControlPdu.h"

namespace vcmodes {

// Ignore bits; the same value means the same kind of field in every mode.
constexpr unsigned long kPosition = 0x7;
constexpr unsigned long kHeading = 0x8;
constexpr unsigned long kPitch = 0x10;
constexpr unsigned long kOrientation = 0x38;
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
/// A field no bit leaves out: senders fill it or leave it zero.
constexpr unsigned long kNoBit = 0;

enum class Kind {
  Entity,    // 64-byte designator, followed later in the body by its marking text
  Real,      // one single
  Vector32,  // three singles
  Vector64,  // three doubles
  Angles,    // heading, pitch, roll as singles
  Entities   // the counted lists that close the group body
};

struct Field {
  const char* name;  // as the viewer's state and the scene document call it
  Kind kind;
  size_t offset;       // from the start of the PDU
  unsigned long bit;   // ignore bits, kNoBit when none
  const char* option;  // vcctl's option or argument, nullptr when it offers none
};

struct Mode {
  DtViewerCommand command;
  const char* name;  // vcctl's command
  int length;        // whole PDU; the group's without its entity lists
  const Field* fields;
  size_t count;  // fields, in wire order
};

namespace rows {
// clang-format off
inline constexpr Field kAbsolute[] = {
  {"location",      Kind::Vector64, 160, kPosition,      "at"},
  {"orientation",   Kind::Angles,   184, kOrientation,   "orientation"}};
inline constexpr Field kTether[] = {
  {"topoUpOffset",  Kind::Vector32, 156, kTopoUpOffset,  "offset"},
  {"orientation",   Kind::Angles,   168, kOrientation,   "orientation"},
  {"attached",      Kind::Entity,   180, kAttached,      "entity"}};
// Compass and pivot put the eye on the same sphere; only what is in its centre differs.
inline constexpr Field kSphere[] = {
  {"radius",        Kind::Real,     156, kRadius,        "radius"},
  {"bodyHeading",   Kind::Real,     160, kBodyHeading,   "heading"},
  {"pitch",         Kind::Real,     164, kPitch,         "pitch"},
  {"headingOffset", Kind::Real,     168, kHeadingOffset, nullptr},
  {"pitchOffset",   Kind::Real,     172, kPitchOffset,   nullptr},
  {"roll",          Kind::Real,     176, kNoBit,         nullptr}};
constexpr std::array<Field, 7> sphereAround(Field centre) {
  return {kSphere[0], kSphere[1], kSphere[2], kSphere[3], kSphere[4], kSphere[5], centre};
}
inline constexpr std::array<Field, 7> kCompass =
    sphereAround({"attached",   Kind::Entity,   180, kAttached,      "entity"});
// Mimic and offset mimic share this body.
inline constexpr Field kMimic[] = {
  {"offset",        Kind::Vector32, 156, kOffset,        "offset"},
  {"orientation",   Kind::Angles,   168, kOrientation,   nullptr},
  {"attached",      Kind::Entity,   180, kAttached,      "entity"}};
inline constexpr Field kOrbit[] = {
  {"radius",        Kind::Real,     156, kRadius,        "radius"},
  {"azimuthRate",   Kind::Real,     160, kAzimuthRate,   "rate"},
  {"heading",       Kind::Real,     164, kHeading,       "heading"},
  {"pitch",         Kind::Real,     168, kPitch,         "pitch"},
  {"headingOffset", Kind::Real,     172, kHeadingOffset, nullptr},
  {"pitchOffset",   Kind::Real,     176, kPitchOffset,   nullptr},
  {"roll",          Kind::Real,     180, kNoBit,         nullptr},
  {"attached",      Kind::Entity,   184, kAttached,      "entity"}};
inline constexpr Field kTrack[] = {
  {"location",      Kind::Vector64, 160, kPosition,      "at"},
  {"attached",      Kind::Entity,   184, kAttached,      "entity"}};
// Tether-track and mimic-track share the body but not the bit of their offset.
inline constexpr Field kTetherTrack[] = {
  {"offset",        Kind::Vector32, 156, kOffset,        "offset"},
  {"attached",      Kind::Entity,   168, kAttached,      "entity"},
  {"tracked",       Kind::Entity,   232, kTracked,       "track"}};
inline constexpr Field kMimicTrack[] = {
  {"offset",        Kind::Vector32, 156, kPosition,      "offset"},
  {"attached",      Kind::Entity,   168, kAttached,      "entity"},
  {"tracked",       Kind::Entity,   232, kTracked,       "track"}};
// The command line's heading and pitch of a group are its offsets.
inline constexpr Field kGroup[] = {
  {"radialOffset",  Kind::Real,     156, kRadialOffset,  "radial"},
  {"heading",       Kind::Real,     160, kHeading,       nullptr},
  {"pitch",         Kind::Real,     164, kPitch,         nullptr},
  {"headingOffset", Kind::Real,     168, kHeadingOffset, "heading"},
  {"pitchOffset",   Kind::Real,     172, kPitchOffset,   "pitch"},
  {"entities",      Kind::Entities, 180, kNoBit,         "entities"}};
inline constexpr std::array<Field, 7> kPivot =
    sphereAround({"pivotPoint", Kind::Vector64, 180, kPosition,      "point"});
// clang-format on
}  // namespace rows

template <size_t N>
constexpr Mode mode(DtViewerCommand command, const char* name, int length,
                    const Field (&fields)[N]) {
  return Mode{command, name, length, fields, N};
}
template <size_t N>
constexpr Mode mode(DtViewerCommand command, const char* name, int length,
                    const std::array<Field, N>& fields) {
  return Mode{command, name, length, fields.data(), N};
}

inline constexpr Mode kModes[] = {mode(DtVcAbsolute, "absolute", 196, rows::kAbsolute),
                                  mode(DtVcTether, "tether", 308, rows::kTether),
                                  mode(DtVcCompass, "compass", 308, rows::kCompass),
                                  mode(DtVcMimic, "mimic", 308, rows::kMimic),
                                  mode(DtVcOffsetMimic, "turret", 308, rows::kMimic),
                                  mode(DtVcOrbit, "orbit", 312, rows::kOrbit),
                                  mode(DtVcTrack, "track", 312, rows::kTrack),
                                  mode(DtVcTetherTrack, "tether-track", 424, rows::kTetherTrack),
                                  mode(DtVcMimicTrack, "mimic-track", 424, rows::kMimicTrack),
                                  mode(DtVcGroup, "group", 188, rows::kGroup),
                                  mode(DtVcPivot, "pivot", 204, rows::kPivot)};

/// The mode with this command, or nullptr.
inline const Mode* find(DtViewerCommand command) {
  for (const Mode& m : kModes)
    if (m.command == command) return &m;
  return nullptr;
}

/// Bytes a field of this kind takes, the group's lists counted as their two counts.
constexpr size_t width(Kind kind) {
  switch (kind) {
    case Kind::Entity:
      return 64;
    case Kind::Real:
      return 4;
    case Kind::Vector32:
      return 12;
    case Kind::Vector64:
      return 24;
    case Kind::Angles:
      return 12;
    case Kind::Entities:
      return 8;
  }
  return 0;
}

}  // namespace vcmodes
