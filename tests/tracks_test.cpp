// Scripted tracks and the owner's update rule, against geometry worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>

#include "tracks.h"

using namespace vctrack;
using vcgeo::Vec3;

namespace {

constexpr double kPi = 3.14159265358979323846;

void expectNear(const Vec3& got, const Vec3& want, double tol) {
  EXPECT_NEAR(got.x, want.x, tol);
  EXPECT_NEAR(got.y, want.y, tol);
  EXPECT_NEAR(got.z, want.z, tol);
}

std::string writeTemp(const std::string& text) {
  char path[] = "/tmp/vctracksXXXXXX";
  const int fd = mkstemp(path);
  std::FILE* f = fdopen(fd, "w");
  std::fputs(text.c_str(), f);
  std::fclose(f);
  return path;
}

}  // namespace

TEST(Tracks, ACircleIsFlownClockwiseFromTheNorth) {
  const Track t = Track::shape(Track::Circle, 1000, 50, 300);
  EXPECT_NEAR(t.length(), 2 * kPi * 1000, 1e-9);
  Vec3 p, d;
  t.at(0, &p, &d);
  expectNear(p, {0, 1000, 300}, 1e-9);
  expectNear(d, {1, 0, 0}, 1e-12);  // heading east: a right turn round the centre
  t.at(t.length() / 4, &p, &d);
  expectNear(p, {1000, 0, 300}, 1e-9);
  expectNear(d, {0, -1, 0}, 1e-12);
  t.at(t.length() * 3.25, &p, &d);  // laps wrap
  expectNear(p, {1000, 0, 300}, 1e-6);
}

TEST(Tracks, ARacetrackJoinsItsStraightsAndBendsWithoutJumps) {
  const double r = 500;
  const Track t = Track::shape(Track::Racetrack, r, 50, 0);
  EXPECT_NEAR(t.length(), 4 * r + 2 * kPi * r, 1e-9);
  Vec3 p, d;
  t.at(0, &p, &d);
  expectNear(p, {r, r, 0}, 1e-9);
  expectNear(d, {0, -1, 0}, 1e-12);
  t.at(2 * r + kPi * r / 2, &p, &d);  // the bottom of the southern bend
  expectNear(p, {0, -2 * r, 0}, 1e-9);
  expectNear(d, {-1, 0, 0}, 1e-12);
  // Every join: the position and the direction just before equal those just after.
  for (double join : {2 * r, 2 * r + kPi * r, 4 * r + kPi * r, 4 * r + 2 * kPi * r}) {
    SCOPED_TRACE(join);
    Vec3 p1, d1, p2, d2;
    t.at(join - 1e-6, &p1, &d1);
    t.at(join + 1e-6, &p2, &d2);
    expectNear(p1, p2, 1e-5);
    expectNear(d1, d2, 1e-5);
  }
}

TEST(Tracks, WaypointsAreFlownInOrderAndBackToTheFirst) {
  const Track t = Track::through({{0, 0, 0}, {300, 0, 0}, {300, 400, 0}}, 10);
  EXPECT_NEAR(t.length(), 300 + 400 + 500, 1e-9);
  Vec3 p, d;
  t.at(150, &p, &d);
  expectNear(p, {150, 0, 0}, 1e-9);
  t.at(500, &p, &d);
  expectNear(p, {300, 200, 0}, 1e-9);
  expectNear(d, {0, 1, 0}, 1e-12);
  t.at(700 + 250, &p, &d);  // halfway down the closing leg
  expectNear(p, {150, 200, 0}, 1e-9);
  expectNear(d, {-0.6, -0.8, 0}, 1e-12);
}

TEST(Tracks, WaypointFilesAreReadOrRefusedWithTheLine) {
  vcgeo::Geodetic origin;
  std::vector<Vec3> points;
  std::string error;
  const std::string good = writeTemp("# a short hop\n51.0 0.0 100\n\n51.001 0.0 100  # north\n");
  ASSERT_TRUE(readWaypoints(good, &origin, &points, &error)) << error;
  ASSERT_EQ(points.size(), 2u);
  EXPECT_NEAR(origin.lat, 51.0 * kPi / 180, 1e-12);
  EXPECT_NEAR(points[1].y, 111.25, 0.1);  // a thousandth of a degree of latitude at 51 N
  EXPECT_NEAR(points[1].x, 0.0, 1e-6);
  std::remove(good.c_str());

  const std::string bad = writeTemp("51 0 100\n51 0\n");
  EXPECT_FALSE(readWaypoints(bad, &origin, &points, &error));
  EXPECT_NE(error.find(":2: want"), std::string::npos) << error;
  std::remove(bad.c_str());
  const std::string extra = writeTemp("51 0 100\n52 0 100 7\n");
  EXPECT_FALSE(readWaypoints(extra, &origin, &points, &error));
  std::remove(extra.c_str());
  const std::string one = writeTemp("51 0 100\n");
  EXPECT_FALSE(readWaypoints(one, &origin, &points, &error));
  EXPECT_NE(error.find("two points"), std::string::npos);
  std::remove(one.c_str());
  EXPECT_FALSE(readWaypoints("/nonexistent/waypoints", &origin, &points, &error));
}

TEST(Tracks, TruthIsLevelAndAlongThePathOnTheEarth) {
  const vcgeo::Geodetic origin{0.9, 0.1, 1000};
  const Track t = Track::shape(Track::Line, 0, 100, 0);
  const Truth at0 = truthAt(t, origin, 0);
  const vcgeo::Geodetic g = vcgeo::toGeodetic(at0.position);
  EXPECT_NEAR(g.lat, 0.9, 1e-12);
  EXPECT_NEAR(g.height, 1000, 1e-6);
  const vcgeo::Euler local = vcgeo::toLocal(at0.position, at0.orientation);
  EXPECT_NEAR(local.psi, 0.0, 1e-9);  // north
  EXPECT_NEAR(local.theta, 0.0, 1e-9);
  EXPECT_NEAR(vcgeo::norm(at0.velocity), 100, 1e-9);
  const Vec3 north = vcgeo::worldToEnu(at0.position).row(1);
  EXPECT_NEAR(vcgeo::dot(at0.velocity, north), 100, 1e-9);
}

TEST(UpdatePolicy, SendsWhenDeadReckoningStraysOrTheHeartbeatIsDue) {
  const vcgeo::Geodetic origin{0.9, 0.1, 1000};
  const UpdatePolicy policy;
  // A straight line dead-reckoned with its own velocity never strays: only the heartbeat.
  const Track line = Track::shape(Track::Line, 0, 100, 0);
  vcrpr::Spatial sent;
  sent.algorithm = vcrpr::DrAlgorithm::FPW;
  Truth t0 = truthAt(line, origin, 0);
  sent.worldLocation = t0.position, sent.orientation = t0.orientation, sent.velocity = t0.velocity;
  EXPECT_FALSE(policy.due(sent, 0, truthAt(line, origin, 100 * 4.9), 4.9));
  EXPECT_TRUE(policy.due(sent, 0, truthAt(line, origin, 100 * 5.0), 5.0));

  // On a circle of radius R at speed v a straight guess is off by about v^2 t^2 / 2R:
  // for R 2000 m and 100 m/s, 1 m after some 0.63 s.
  const Track circle = Track::shape(Track::Circle, 2000, 100, 0);
  t0 = truthAt(circle, origin, 0);
  sent.worldLocation = t0.position, sent.orientation = t0.orientation, sent.velocity = t0.velocity;
  EXPECT_FALSE(policy.due(sent, 0, truthAt(circle, origin, 100 * 0.6), 0.6));
  EXPECT_TRUE(policy.due(sent, 0, truthAt(circle, origin, 100 * 0.66), 0.66));

  // A turn of more than 3 degrees is due even where the position still agrees.
  sent.algorithm = vcrpr::DrAlgorithm::Static;
  Truth turned = truthAt(line, origin, 0);
  sent.worldLocation = turned.position, sent.orientation = turned.orientation;
  turned.orientation = vcgeo::fromLocal(turned.position, {3.1 * kPi / 180, 0, 0});
  EXPECT_TRUE(policy.due(sent, 0, turned, 0.1));
  turned.orientation = vcgeo::fromLocal(turned.position, {2.9 * kPi / 180, 0, 0});
  EXPECT_FALSE(policy.due(sent, 0, turned, 0.1));
}
