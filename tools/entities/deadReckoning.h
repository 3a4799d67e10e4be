#pragma once
// Where an entity is between the updates its owner sends: the dead-reckoning algorithms
// of the Spatial attribute, as distributed simulation defines them.
//
// - Static: stays where it was sent.
// - FPW, FVW: world-axis velocity (and acceleration), orientation held.
// - RPW, RVW: the same for the position, orientation turning at the body-axis angular
//   velocity.
// - FPB, RPB, RVB, FVB: velocity and acceleration in the body axes at the time of the
//   update; with an angular velocity the path curves with the body (the closed forms
//   below integrate the rotation exactly), without one it is straight.
// - A frozen entity, or one whose algorithm has no Spatial alternative, does not move.
// Body-axis acceleration is taken as sent: no centripetal part is removed from it.
#include "geo.h"
#include "rprCodec.h"

namespace vcdr {

struct State {
  vcgeo::Vec3 position;      // geocentric metres
  vcgeo::Euler orientation;  // psi, theta, phi
};

/// The entity's state `dt` seconds after the time its Spatial value describes. A negative
/// dt extrapolates backwards with the same formulas.
State extrapolate(const vcrpr::Spatial& s, double dt);

/// The world-to-body matrix after turning at body rate `omega` for `dt` seconds from
/// `worldToBody`.
vcgeo::Mat3 rotate(const vcgeo::Mat3& worldToBody, const vcgeo::Vec3& omega, double dt);

}  // namespace vcdr
