#pragma once
// Places worked out by hand on the WGS 84 ellipsoid at 45 N 0 E, where the local axes are
//   north (-s, 0, s), east (0, 1, 0), up (s, 0, s)   with s = sqrt(2)/2,
// for the viewer's tests of eyepoints and of what hangs on entities.
#include <gtest/gtest.h>

#include <cmath>

#include "geo.h"

namespace vctest {

constexpr double kPi = 3.14159265358979323846;
inline const double s = std::sqrt(0.5);
inline const vcgeo::Vec3 kNorth{-s, 0, s}, kEast{0, 1, 0}, kUp{s, 0, s};

inline void expectNear(const vcgeo::Vec3& got, const vcgeo::Vec3& want, double tol) {
  EXPECT_NEAR(got.x, want.x, tol);
  EXPECT_NEAR(got.y, want.y, tol);
  EXPECT_NEAR(got.z, want.z, tol);
}

}  // namespace vctest
