#include "geo.h"

namespace vcgeo {

namespace {
constexpr double kE2 = kWgs84F * (2.0 - kWgs84F);  // first eccentricity squared
}

Mat3 Mat3::operator*(const Mat3& b) const {
  Mat3 r;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      r.m[i][j] = m[i][0] * b.m[0][j] + m[i][1] * b.m[1][j] + m[i][2] * b.m[2][j];
  return r;
}

Mat3 Mat3::transposed() const {
  Mat3 r;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) r.m[i][j] = m[j][i];
  return r;
}

Mat3 referenceToBody(const Euler& e) {
  const double cp = std::cos(e.psi), sp = std::sin(e.psi);
  const double ct = std::cos(e.theta), st = std::sin(e.theta);
  const double cf = std::cos(e.phi), sf = std::sin(e.phi);
  Mat3 r;
  r.m[0][0] = ct * cp;
  r.m[0][1] = ct * sp;
  r.m[0][2] = -st;
  r.m[1][0] = sf * st * cp - cf * sp;
  r.m[1][1] = sf * st * sp + cf * cp;
  r.m[1][2] = sf * ct;
  r.m[2][0] = cf * st * cp + sf * sp;
  r.m[2][1] = cf * st * sp - sf * cp;
  r.m[2][2] = cf * ct;
  return r;
}

Euler anglesOf(const Mat3& r) {
  Euler e;
  // Rounding may push the sine a hair past one when the nose points straight up or down.
  const double s = -r.m[0][2];
  e.theta = std::asin(s > 1.0 ? 1.0 : (s < -1.0 ? -1.0 : s));
  if (std::fabs(s) > 1.0 - 1e-12) {
    // Gimbal lock: only psi - phi (or psi + phi) is defined; roll is put at zero.
    e.phi = 0.0;
    e.psi = std::atan2(-r.m[1][0], r.m[1][1]);
  } else {
    e.psi = std::atan2(r.m[0][1], r.m[0][0]);
    e.phi = std::atan2(r.m[1][2], r.m[2][2]);
  }
  return e;
}

Vec3 toGeocentric(const Geodetic& g) {
  const double sl = std::sin(g.lat), cl = std::cos(g.lat);
  const double n = kWgs84A / std::sqrt(1.0 - kE2 * sl * sl);
  return {(n + g.height) * cl * std::cos(g.lon), (n + g.height) * cl * std::sin(g.lon),
          (n * (1.0 - kE2) + g.height) * sl};
}

Geodetic toGeodetic(const Vec3& w) {
  Geodetic g;
  g.lon = std::atan2(w.y, w.x);
  const double p = std::hypot(w.x, w.y);
  // Fixed-point iteration on the latitude: converges to well under a millimetre in a few
  // steps anywhere outside the earth's core, which is all a viewer ever sees.
  double lat = std::atan2(w.z, p * (1.0 - kE2));
  double n = kWgs84A;
  for (int i = 0; i < 6; ++i) {
    const double sl = std::sin(lat);
    n = kWgs84A / std::sqrt(1.0 - kE2 * sl * sl);
    lat = std::atan2(w.z + kE2 * n * sl, p);
  }
  g.lat = lat;
  const double sl = std::sin(lat), cl = std::cos(lat);
  // Near the poles p/cos(lat) loses precision; the z form does not.
  g.height = std::fabs(cl) > 1e-3 ? p / cl - n : w.z / sl - n * (1.0 - kE2);
  return g;
}

Mat3 worldToEnu(const Vec3& world) {
  const Geodetic g = toGeodetic(world);
  const double sl = std::sin(g.lat), cl = std::cos(g.lat);
  const double so = std::sin(g.lon), co = std::cos(g.lon);
  Mat3 r;
  r.m[0][0] = -so, r.m[0][1] = co, r.m[0][2] = 0.0;            // east
  r.m[1][0] = -sl * co, r.m[1][1] = -sl * so, r.m[1][2] = cl;  // north
  r.m[2][0] = cl * co, r.m[2][1] = cl * so, r.m[2][2] = sl;    // up
  return r;
}

Mat3 worldToNed(const Vec3& world) {
  const Mat3 enu = worldToEnu(world);
  Mat3 r;
  for (int j = 0; j < 3; ++j) {
    r.m[0][j] = enu.m[1][j];   // north
    r.m[1][j] = enu.m[0][j];   // east
    r.m[2][j] = -enu.m[2][j];  // down
  }
  return r;
}

Euler fromLocal(const Vec3& world, const Euler& hpr) {
  return anglesOf(referenceToBody(hpr) * worldToNed(world));
}

Euler toLocal(const Vec3& world, const Euler& ptp) {
  return anglesOf(referenceToBody(ptp) * worldToNed(world).transposed());
}

Vec3 forwardOf(const Euler& e) {
  return referenceToBody(e).row(0);
}

}  // namespace vcgeo
