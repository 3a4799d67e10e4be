#pragma once
// Where things are, for the tools that follow a federation's entities.
//
// Frames and angle conventions, written down once; everything under tools/ that places an
// entity or an eyepoint uses these and no others.
//
// - World: geocentric (earth-centred, earth-fixed) Cartesian metres on WGS 84. X points
//   from the earth's centre to latitude 0, longitude 0; Y to latitude 0, longitude 90 E;
//   Z to the north pole. Entities' WorldLocation, the viewer's eyepoint and every world
//   position a PDU carries are in this frame.
// - Local east-north-up (ENU) at a point: x east, y north, z up along the ellipsoid
//   normal. A tether's offset is in the entity's ENU frame.
// - Local north-east-down (NED) at a point: the frame heading, pitch and roll are
//   measured from; heading clockwise from north, pitch positive nose up, roll positive
//   right wing down.
// - Body: x forward (out of the nose), y right, z down. A mimic's offset, and the
//   velocity, acceleration and angular velocity of the body-axis dead-reckoning
//   algorithms, are in the entity's body frame.
// - Orientation psi, theta, phi (the entity's Orientation): the Euler angles that turn the
//   world axes into the body axes, first psi about Z, then theta about the new Y, then phi
//   about the new X; radians. They are relative to the geocentric axes, not to the local
//   horizon: heading/pitch/roll relative to NED are converted with toEuler()/fromEuler().
// - The PDUs' own orientations (absolute, tether, mimic, orbit...) are taken to be
//   heading, pitch, roll relative to the eyepoint's local NED frame: a user writes "look
//   north, 10 degrees down", not geocentric angles.
#include <cmath>

namespace vcgeo {

struct Vec3 {
  double x = 0.0, y = 0.0, z = 0.0;
  Vec3() = default;
  Vec3(double ax, double ay, double az) : x(ax), y(ay), z(az) {}
  friend Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
  friend Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
  friend Vec3 operator*(const Vec3& a, double s) { return {a.x * s, a.y * s, a.z * s}; }
  friend Vec3 operator*(double s, const Vec3& a) { return a * s; }
};

inline double dot(const Vec3& a, const Vec3& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double norm(const Vec3& a) {
  return std::sqrt(dot(a, a));
}
inline bool finite(const Vec3& a) {
  return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

/// A 3x3 matrix, row-major. Rotations here are written as the matrix that takes a
/// vector's components in one frame to its components in another.
struct Mat3 {
  double m[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  Vec3 operator*(const Vec3& v) const {
    return {m[0][0] * v.x + m[0][1] * v.y + m[0][2] * v.z,
            m[1][0] * v.x + m[1][1] * v.y + m[1][2] * v.z,
            m[2][0] * v.x + m[2][1] * v.y + m[2][2] * v.z};
  }
  Mat3 operator*(const Mat3& b) const;
  Mat3 transposed() const;
  Vec3 row(int i) const { return {m[i][0], m[i][1], m[i][2]}; }
};

/// Euler angles psi, theta, phi in radians (heading, pitch, roll when the reference
/// frame is a local NED frame).
struct Euler {
  double psi = 0.0, theta = 0.0, phi = 0.0;
};

/// The matrix that takes reference-frame components to body components for the given
/// angles (z-y-x order, see above).
Mat3 referenceToBody(const Euler& e);
/// The angles of a reference-to-body matrix; theta in [-pi/2, pi/2], psi and phi in
/// (-pi, pi].
Euler anglesOf(const Mat3& referenceToBody);

/// Geodetic position on WGS 84: latitude and longitude in radians, height above the
/// ellipsoid in metres.
struct Geodetic {
  double lat = 0.0, lon = 0.0, height = 0.0;
};

constexpr double kWgs84A = 6378137.0;
constexpr double kWgs84F = 1.0 / 298.257223563;

Vec3 toGeocentric(const Geodetic& g);
Geodetic toGeodetic(const Vec3& world);

/// Rows are the east, north and up unit vectors of the local ENU frame at `world`, so
/// the matrix takes geocentric components to ENU components.
Mat3 worldToEnu(const Vec3& world);
/// Takes geocentric components to NED components at `world`.
Mat3 worldToNed(const Vec3& world);

/// psi/theta/phi of a body at `world` whose heading, pitch and roll (relative to the local
/// NED frame there) are given, and the way back.
Euler fromLocal(const Vec3& world, const Euler& headingPitchRoll);
Euler toLocal(const Vec3& world, const Euler& psiThetaPhi);

/// The body's forward (x) axis in geocentric components.
Vec3 forwardOf(const Euler& psiThetaPhi);

}  // namespace vcgeo
