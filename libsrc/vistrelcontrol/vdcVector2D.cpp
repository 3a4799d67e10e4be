#include "vdcVector2D.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ostream>
#include <sstream>

const DtVdcVector2D& DtVdcVector2D::zero() {
  static const DtVdcVector2D v(0.0, 0.0);
  return v;
}

const DtVdcVector2D& DtVdcVector2D::i() {
  static const DtVdcVector2D v(1.0, 0.0);
  return v;
}

const DtVdcVector2D& DtVdcVector2D::j() {
  static const DtVdcVector2D v(0.0, 1.0);
  return v;
}

const DtVdcVector2D& DtVdcVector2D::ones() {
  static const DtVdcVector2D v(1.0, 1.0);
  return v;
}

bool DtVdcVector2D::isNormalized() const {
  return std::fabs(magnitudeSquared() - 1.0) <= 1e-6;
}

double DtVdcVector2D::normalize() {
  double m = magnitudeSquared();
  if (m != 0.0 && m != 1.0) {
    double length = std::sqrt(m);
    v_[0] /= length;
    v_[1] /= length;
  }
  return m;
}

double DtVdcVector2D::dotProduct(const DtVdcVector2D& other) const {
  return v_[0] * other.v_[0] + v_[1] * other.v_[1];
}

bool DtVdcVector2D::approxEq(const DtVdcVector2D& other, double tolerance) const {
  return std::fabs(v_[0] - other.v_[0]) <= tolerance && std::fabs(v_[1] - other.v_[1]) <= tolerance;
}

bool DtVdcVector2D::magnitudeIsZero() const {
  return v_[0] == 0.0 && v_[1] == 0.0;
}

namespace {
// The whole-number part as a signed 32-bit value; beyond that range (or NaN) the
// component is certainly not near zero, so it saturates instead of overflowing.
int64_t wholePart(double v) {
  if (std::isnan(v)) return INT64_MAX;
  if (v >= 2147483647.0) return 2147483647;
  if (v <= -2147483648.0) return -2147483648LL;
  return static_cast<int32_t>(v);
}
}  // namespace

bool DtVdcVector2D::magnitudeIsZero(double tolerance) const {
  return tolerance >= static_cast<double>(std::llabs(wholePart(v_[0]))) &&
         tolerance >= static_cast<double>(std::llabs(wholePart(v_[1])));
}

DtVdcVector2D& DtVdcVector2D::operator-=(const DtVdcVector2D& other) {
  v_[0] -= other.v_[0];
  v_[1] -= other.v_[1];
  return *this;
}

DtVdcVector2D& DtVdcVector2D::operator+=(const DtVdcVector2D& other) {
  v_[0] += other.v_[0];
  v_[1] += other.v_[1];
  return *this;
}

DtVector64 DtVdcVector2D::vector3D() const {
  return DtVector64(v_[0], v_[1], 0.0);
}

DtString DtVdcVector2D::string() const {
  std::ostringstream out;
  out << "{" << v_[0] << ", " << v_[1] << "}";
  return DtString(out.str());
}

void DtVdcVector2D::printDataToStream(std::ostream& out) const {
  out << "[ x= " << v_[0] << " y= " << v_[1] << " ]";
}

DtVdcVector2D operator+(const DtVdcVector2D& a, const DtVdcVector2D& b) {
  DtVdcVector2D sum(a);
  return sum += b;
}

DtVdcVector2D operator-(const DtVdcVector2D& a, const DtVdcVector2D& b) {
  DtVdcVector2D difference(a);
  return difference -= b;
}

std::ostream& operator<<(std::ostream& out, const DtVdcVector2D& v) {
  v.printDataToStream(out);
  return out;
}

void DtVecNeg(const DtVdcVector2D& a, DtVdcVector2D& out) {
  out = DtVdcVector2D(-a.x(), -a.y());
}

double DtVecNormalize(const DtVdcVector2D& a, DtVdcVector2D& out) {
  double m = a.magnitudeSquared();
  if (std::fabs(m) <= 1e-9) return m;
  if (std::fabs(m - 1.0) <= 1e-9) {
    out = a;
  } else {
    double length = std::sqrt(m);
    out = DtVdcVector2D(a.x() / length, a.y() / length);
  }
  return m;
}

void DtVecScale(const DtVdcVector2D& a, double s, DtVdcVector2D& out) {
  out = DtVdcVector2D(a.x() * s, a.y() * s);
}

void DtVecSub(const DtVdcVector2D& a, const DtVdcVector2D& b, DtVdcVector2D& out) {
  out = a - b;
}

double DtVecCosProd(const DtVdcVector2D& a, const DtVdcVector2D& b) {
  return a.dotProduct(b) / (std::sqrt(a.magnitudeSquared()) * std::sqrt(b.magnitudeSquared()));
}

double DtVecInfNorm(const DtVdcVector2D& a) {
  return std::fmax(std::fabs(a.x()), std::fabs(a.y()));
}

double DtDistance(const DtVdcVector2D& a, const DtVdcVector2D& b) {
  return std::sqrt(DtDistSqr(a, b));
}

// A 2D vector has no third component to add: the squared distance is the plane one.
double DtDistSqr(const DtVdcVector2D& a, const DtVdcVector2D& b) {
  DtVdcVector2D d = a - b;
  return d.magnitudeSquared();
}
