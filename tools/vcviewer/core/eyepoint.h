#pragma once
// Where the stand-in's eye is, every frame, from its view state and the entities'
// dead-reckoned states. Frames and angle conventions are those of geo.h. What a PDU leaves
// open is settled here as follows:
//
// - Lengths are metres, angles radians, the azimuth rate radians per second.
// - absolute: the eye at the location, heading/pitch/roll relative to its local horizon.
// - tether: the entity's position plus the offset in the entity's local east-north-up
//   frame; the eye keeps the orientation the PDU gave (relative to its local horizon).
// - mimic, offset mimic: the entity's position plus the offset in its body frame; the eye
//   takes the entity's orientation turned further by the PDU's body orientation.
// - track: the eye at the location, looking at the tracked entity (roll zero).
// - tether-track, mimic-track: placed as tether and mimic on the attached entity, looking
//   at the tracked one.
// - compass: on a sphere of the radius around the entity, in the direction opposite to a
//   look along bearing bodyHeading + headingOffset (from north) and elevation
//   pitch + pitchOffset, looking at the entity with the roll given.
// - orbit: as compass with bearing heading + headingOffset, advancing at the azimuth rate
//   from the moment orbit mode began.
// - pivot: as compass around the pivot point instead of an entity.
// - group: looking at the centre of the group's entities along bearing heading +
//   headingOffset and elevation pitch + pitchOffset, from the distance that frames them
//   in a 60 degree field of view, plus the radial offset.
// - modeless and move leave the eye to the mode in force.
// When the entity a mode names is not known, the eye stays where it was last and the
// eyepoint says which designator was not found.
#include <string>

#include "entities.h"
#include "geo.h"
#include "viewState.h"

namespace vcviewer {

struct Eyepoint {
  bool placed = false;       // false until a mode could place it
  vcgeo::Vec3 position;      // geocentric metres
  vcgeo::Euler orientation;  // psi, theta, phi (geocentric)
  vcgeo::Euler local;        // heading, pitch, roll at the eye's own horizon
  std::string entity;        // the entity it follows, as its label, or ""
  std::string problem;       // why it could not follow what the mode names, or ""
};

/// Follows a view state over time: it remembers when orbit mode began, and where the eye
/// was when what a mode names goes missing.
class EyepointTracker {
 public:
  const Eyepoint& update(const ViewState& view, const Entities& entities, double now);
  const Eyepoint& current() const { return eye_; }

 private:
  Eyepoint eye_;
  DtViewerCommand lastMode_ = DtVcAbsolute;
  bool started_ = false;
  double orbitSince_ = 0;
};

/// The direction of a look along `bearing` (from north, clockwise) and `elevation` (up
/// positive) at `world`, in geocentric components.
vcgeo::Vec3 lookDirection(const vcgeo::Vec3& world, double bearing, double elevation);
/// psi/theta/phi of an eye at `from` looking at `to`, with `roll` about the look.
vcgeo::Euler lookingAt(const vcgeo::Vec3& from, const vcgeo::Vec3& to, double roll);

}  // namespace vcviewer
