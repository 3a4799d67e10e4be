#include "deadReckoning.h"

#include <cmath>

namespace vcdr {

namespace {

using vcgeo::Mat3;
using vcgeo::Vec3;

Mat3 scaled(const Mat3& a, double s) {
  Mat3 r = a;
  for (auto& row : r.m)
    for (double& v : row) v *= s;
  return r;
}

Mat3 sum(const Mat3& a, const Mat3& b, const Mat3& c) {
  Mat3 r;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) r.m[i][j] = a.m[i][j] + b.m[i][j] + c.m[i][j];
  return r;
}

Mat3 outer(const Vec3& w) {
  Mat3 r;
  const double v[3] = {w.x, w.y, w.z};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) r.m[i][j] = v[i] * v[j];
  return r;
}

Mat3 skew(const Vec3& w) {
  Mat3 r;
  r.m[0][0] = 0, r.m[0][1] = -w.z, r.m[0][2] = w.y;
  r.m[1][0] = w.z, r.m[1][1] = 0, r.m[1][2] = -w.x;
  r.m[2][0] = -w.y, r.m[2][1] = w.x, r.m[2][2] = 0;
  return r;
}

const Mat3 kIdentity;

// The body-frame displacement of a body that moves at body velocity v and acceleration a
// while turning at rate w: R1 v + R2 a, with R1 the integral of the rotation over the
// interval and R2 that of the rotation times the time.
Vec3 bodyDisplacement(const Vec3& v, const Vec3& a, const Vec3& w, double t) {
  const double rate = vcgeo::norm(w);
  const double wt = rate * t;
  Mat3 r1, r2;
  if (std::fabs(wt) < 1e-4) {
    // The closed forms cancel badly at small angles; their series do not (terms up to
    // the square of the rotation, the next is below a part in 1e12).
    const Mat3 s = skew(w);
    const Mat3 s2 = s * s;
    r1 = sum(scaled(kIdentity, t), scaled(s, t * t / 2), scaled(s2, t * t * t / 6));
    r2 = sum(scaled(kIdentity, t * t / 2), scaled(s, t * t * t / 3), scaled(s2, t * t * t * t / 8));
  } else {
    const double c = std::cos(wt), sn = std::sin(wt);
    const double w2 = rate * rate, w3 = w2 * rate, w4 = w2 * w2;
    const Mat3 o = outer(w), s = skew(w);
    r1 = sum(scaled(o, (wt - sn) / w3), scaled(kIdentity, sn / rate), scaled(s, (1 - c) / w2));
    r2 = sum(scaled(o, (0.5 * wt * wt - c - wt * sn + 1) / w4),
             scaled(kIdentity, (c + wt * sn - 1) / w2), scaled(s, (sn - wt * c) / w3));
  }
  return r1 * v + r2 * a;
}

}  // namespace

Mat3 rotate(const Mat3& worldToBody, const Vec3& omega, double dt) {
  const double rate = vcgeo::norm(omega);
  if (rate * std::fabs(dt) < 1e-12) return worldToBody;
  const double c = std::cos(rate * dt), sn = std::sin(rate * dt);
  const Mat3 turn = sum(scaled(outer(omega), (1 - c) / (rate * rate)), scaled(kIdentity, c),
                        scaled(skew(omega), -sn / rate));
  return turn * worldToBody;
}

State extrapolate(const vcrpr::Spatial& s, double dt) {
  using vcrpr::DrAlgorithm;
  State out{s.worldLocation, s.orientation};
  const auto a = s.algorithm;
  if (s.isFrozen || a < DrAlgorithm::FPW || a > DrAlgorithm::FVB) return out;
  const bool accelerates = a == DrAlgorithm::RVW || a == DrAlgorithm::FVW ||
                           a == DrAlgorithm::RVB || a == DrAlgorithm::FVB;
  const bool turns = a == DrAlgorithm::RPW || a == DrAlgorithm::RVW || a == DrAlgorithm::RPB ||
                     a == DrAlgorithm::RVB;
  const Vec3 acc = accelerates ? s.acceleration : Vec3{};
  const Vec3 omega = turns ? s.angularVelocity : Vec3{};
  const Mat3 m0 = vcgeo::referenceToBody(s.orientation);
  if (vcrpr::isBodyAxis(a)) {
    out.position = s.worldLocation + m0.transposed() * bodyDisplacement(s.velocity, acc, omega, dt);
  } else {
    out.position = s.worldLocation + s.velocity * dt + acc * (0.5 * dt * dt);
  }
  if (turns) out.orientation = vcgeo::anglesOf(rotate(m0, omega, dt));
  return out;
}

}  // namespace vcdr
