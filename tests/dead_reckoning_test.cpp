// Dead reckoning and the earth's frames against closed forms worked out independently of
// the formulas under test (circles, parabolas, integrals done by parts, WGS 84 figures).
#include <gtest/gtest.h>

#include <cmath>

#include "deadReckoning.h"
#include "geo.h"

using namespace vcgeo;
using vcrpr::DrAlgorithm;
using vcrpr::Spatial;

namespace {

constexpr double kPi = 3.14159265358979323846;

Spatial moving(DrAlgorithm a) {
  Spatial s;
  s.algorithm = a;
  s.worldLocation = {6378137.0, 0.0, 0.0};
  return s;
}

void expectNear(const Vec3& got, const Vec3& want, double tol) {
  EXPECT_NEAR(got.x, want.x, tol);
  EXPECT_NEAR(got.y, want.y, tol);
  EXPECT_NEAR(got.z, want.z, tol);
}

}  // namespace

TEST(DeadReckoningWorldAxes, StraightLinesParabolasAndHeldEntities) {
  Spatial s = moving(DrAlgorithm::FPW);
  s.velocity = {10.0, -20.0, 5.0};
  s.acceleration = {1.0, 1.0, 1.0};  // not carried by FPW: must not count
  expectNear(vcdr::extrapolate(s, 3.0).position, {6378167.0, -60.0, 15.0}, 1e-9);
  expectNear(vcdr::extrapolate(s, -1.0).position, {6378127.0, 20.0, -5.0}, 1e-9);

  for (DrAlgorithm a : {DrAlgorithm::FVW, DrAlgorithm::RVW}) {
    s.algorithm = a;
    s.acceleration = {2.0, 0.0, -4.0};
    // P0 + V t + a t^2 / 2 at t = 3: x 30 + 9, z 15 - 18.
    expectNear(vcdr::extrapolate(s, 3.0).position, {6378137.0 + 39.0, -60.0, -3.0}, 1e-9);
  }

  s.isFrozen = true;
  expectNear(vcdr::extrapolate(s, 100.0).position, s.worldLocation, 0.0);
  s.isFrozen = false;
  s.algorithm = DrAlgorithm::Static;
  expectNear(vcdr::extrapolate(s, 100.0).position, s.worldLocation, 0.0);
  s.algorithm = DrAlgorithm::Other;
  expectNear(vcdr::extrapolate(s, 100.0).position, s.worldLocation, 0.0);
}

TEST(DeadReckoningWorldAxes, RotatingAlgorithmsTurnAboutTheBodyAxes) {
  Spatial s = moving(DrAlgorithm::RPW);
  s.orientation = {0.3, 0.0, 0.0};
  s.angularVelocity = {0.0, 0.0, 0.1};  // yaw right
  EXPECT_NEAR(vcdr::extrapolate(s, 2.0).orientation.psi, 0.5, 1e-12);
  EXPECT_NEAR(vcdr::extrapolate(s, 2.0).orientation.theta, 0.0, 1e-12);

  s.orientation = {0.0, 0.0, 0.0};
  s.angularVelocity = {0.2, 0.0, 0.0};  // roll right
  EXPECT_NEAR(vcdr::extrapolate(s, 2.0).orientation.phi, 0.4, 1e-12);
  s.angularVelocity = {0.0, 0.25, 0.0};  // nose up
  EXPECT_NEAR(vcdr::extrapolate(s, 2.0).orientation.theta, 0.5, 1e-12);

  // A roll rate on a body headed 90 degrees still rolls the body, not the world's X:
  // heading stays, roll grows.
  s.orientation = {kPi / 2, 0.0, 0.0};
  s.angularVelocity = {0.1, 0.0, 0.0};
  const auto after = vcdr::extrapolate(s, 3.0).orientation;
  EXPECT_NEAR(after.psi, kPi / 2, 1e-12);
  EXPECT_NEAR(after.phi, 0.3, 1e-12);

  // Orientation is held by the fixed-orientation algorithms whatever rate is sent.
  s.algorithm = DrAlgorithm::FVW;
  EXPECT_NEAR(vcdr::extrapolate(s, 3.0).orientation.phi, 0.0, 0.0);
}

TEST(DeadReckoningBodyAxes, AConstantTurnIsACircle) {
  // Heading 0 about the geocentric axes: body x is world X, body y world Y.
  const double v = 50.0, r = 0.1;
  Spatial s = moving(DrAlgorithm::RPB);
  s.velocity = {v, 0.0, 0.0};
  s.angularVelocity = {0.0, 0.0, r};
  for (double t : {0.5, 5.0, kPi / r, 2 * kPi / r}) {
    SCOPED_TRACE(t);
    const Vec3 d = vcdr::extrapolate(s, t).position - s.worldLocation;
    expectNear(d, {v / r * std::sin(r * t), v / r * (1 - std::cos(r * t)), 0.0}, 1e-6);
  }
  // Half a turn: a circle of radius v/r, the far side 2v/r to the right.
  expectNear(vcdr::extrapolate(s, kPi / r).position - s.worldLocation, {0.0, 2 * v / r, 0.0}, 1e-6);
  EXPECT_NEAR(std::fabs(vcdr::extrapolate(s, kPi / r).orientation.psi), kPi, 1e-9);

  // The same turn begun heading along world Y: body x is Y, body y is -X.
  s.orientation = {kPi / 2, 0.0, 0.0};
  const Vec3 d = vcdr::extrapolate(s, kPi / r).position - s.worldLocation;
  expectNear(d, {-2 * v / r, 0.0, 0.0}, 1e-6);
}

TEST(DeadReckoningBodyAxes, AcceleratingThroughATurnMatchesTheIntegralByParts) {
  const double v = 20.0, a = 3.0, r = 0.2;
  Spatial s = moving(DrAlgorithm::RVB);
  s.velocity = {v, 0.0, 0.0};
  s.acceleration = {a, 0.0, 0.0};
  s.angularVelocity = {0.0, 0.0, r};
  for (double t : {1.0, 4.0, 12.0}) {
    SCOPED_TRACE(t);
    // Integrals of (v + a tau)(cos r tau, sin r tau) from 0 to t.
    const double x = (v + a * t) * std::sin(r * t) / r + a * (std::cos(r * t) - 1) / (r * r);
    const double y = -(v + a * t) * std::cos(r * t) / r + v / r + a * std::sin(r * t) / (r * r);
    expectNear(vcdr::extrapolate(s, t).position - s.worldLocation, {x, y, 0.0}, 1e-6);
  }
}

TEST(DeadReckoningBodyAxes, StraightBodyMotionFollowsTheNose) {
  Spatial s = moving(DrAlgorithm::FPB);
  s.orientation = {0.0, kPi / 6, 0.0};  // 30 degrees nose up about world Y
  s.velocity = {10.0, 0.0, 0.0};
  // Body x in world axes is (cos theta, 0, -sin theta).
  expectNear(vcdr::extrapolate(s, 2.0).position - s.worldLocation,
             {20.0 * std::cos(kPi / 6), 0.0, -10.0}, 1e-9);
  s.algorithm = DrAlgorithm::FVB;
  s.acceleration = {0.0, 2.0, 0.0};  // body y is world Y here
  expectNear(vcdr::extrapolate(s, 2.0).position - s.worldLocation,
             {20.0 * std::cos(kPi / 6), 4.0, -10.0}, 1e-9);
  s.angularVelocity = {0.0, 0.0, 1.0};  // not carried by FVB
  expectNear(vcdr::extrapolate(s, 2.0).position - s.worldLocation,
             {20.0 * std::cos(kPi / 6), 4.0, -10.0}, 1e-9);
}

TEST(DeadReckoningBodyAxes, TinyTurnRatesJoinTheStraightLineSmoothly) {
  // The series used at small angles and the closed form used above them must agree
  // where they meet, and both must tend to the straight line.
  Spatial s = moving(DrAlgorithm::RVB);
  s.velocity = {100.0, 5.0, -3.0};
  s.acceleration = {1.0, -2.0, 0.5};
  const double t = 10.0;
  Spatial straight = s;
  straight.algorithm = DrAlgorithm::FVB;
  const Vec3 line = vcdr::extrapolate(straight, t).position;
  s.angularVelocity = {1e-12, 0.0, 1e-12};
  expectNear(vcdr::extrapolate(s, t).position, line, 1e-6);
  for (double rate : {0.99e-5, 1.01e-5}) {  // either side of w t = 1e-4
    s.angularVelocity = {0.0, rate, rate};
    const Vec3 d = vcdr::extrapolate(s, t).position - line;
    EXPECT_LT(norm(d), 0.1) << rate;
    EXPECT_GT(norm(d), 0.01) << rate;  // a turn this slow still bends the path a little
  }
  Spatial below = s, above = s;
  below.angularVelocity = {0.0, 0.0, 0.999e-5};
  above.angularVelocity = {0.0, 0.0, 1.001e-5};
  const Vec3 gap = vcdr::extrapolate(above, t).position - vcdr::extrapolate(below, t).position;
  EXPECT_LT(norm(gap), 1e-3);
}

TEST(EarthFrames, Wgs84FiguresAndRoundTrips) {
  expectNear(toGeocentric({0, 0, 0}), {6378137.0, 0, 0}, 1e-6);
  expectNear(toGeocentric({kPi / 2, 0, 0}), {0, 0, 6356752.314245}, 1e-5);
  expectNear(toGeocentric({0, kPi / 2, 100}), {0, 6378237.0, 0}, 1e-6);
  for (const Geodetic g : {Geodetic{0.8988, -0.0021, 1000.0}, Geodetic{-0.6, 2.5, -50.0},
                           Geodetic{1.5707, 1.0, 10000.0}, Geodetic{0.0, kPi, 0.0}}) {
    const Geodetic back = toGeodetic(toGeocentric(g));
    EXPECT_NEAR(back.lat, g.lat, 1e-11);
    EXPECT_NEAR(back.lon, g.lon, 1e-11);
    EXPECT_NEAR(back.height, g.height, 1e-4);
  }
}

TEST(EarthFrames, LocalAxesAndAnglesAtKnownPlaces) {
  // At latitude 0, longitude 0: east is world Y, north world Z, up world X.
  const Mat3 enu = worldToEnu({6378137.0, 0, 0});
  expectNear(enu.row(0), {0, 1, 0}, 1e-12);
  expectNear(enu.row(1), {0, 0, 1}, 1e-12);
  expectNear(enu.row(2), {1, 0, 0}, 1e-12);

  // Flying north there, the nose points along world Z: theta is -90 degrees.
  const Euler north = fromLocal({6378137.0, 0, 0}, {0, 0, 0});
  expectNear(forwardOf(north), {0, 0, 1}, 1e-12);
  EXPECT_NEAR(north.theta, -kPi / 2, 1e-9);
  // At longitude 90 E, flying east points along world -X: psi 180, theta 0.
  const Euler east = fromLocal({0, 6378137.0, 0}, {kPi / 2, 0, 0});
  expectNear(forwardOf(east), {-1, 0, 0}, 1e-12);
  EXPECT_NEAR(std::fabs(east.psi), kPi, 1e-9);
  EXPECT_NEAR(east.theta, 0.0, 1e-9);
  // At the north pole on the Greenwich meridian, "north" is back along -X.
  const Euler pole = fromLocal(toGeocentric({kPi / 2 - 1e-9, 0, 0}), {0, 0, 0});
  expectNear(forwardOf(pole), {-1, 0, 0}, 1e-6);

  const Vec3 here = toGeocentric({0.7, 0.2, 300});
  const Euler hpr{1.2, 0.3, -0.4};
  const Euler back = toLocal(here, fromLocal(here, hpr));
  EXPECT_NEAR(back.psi, hpr.psi, 1e-12);
  EXPECT_NEAR(back.theta, hpr.theta, 1e-12);
  EXPECT_NEAR(back.phi, hpr.phi, 1e-12);
}
