#pragma once
#include "dtExport.h"
#include "dtString.h"

/// DtVector64 is a three-component vector of doubles: world positions, offsets, scales.
/// Its text form "{x, y, z}" (six decimals) is the one used by every dump.
class DT_EXPORT DtVector64 {
 public:
  DtVector64() = default;
  DtVector64(double x, double y, double z) : v_{x, y, z} {}

  double x() const { return v_[0]; }
  double y() const { return v_[1]; }
  double z() const { return v_[2]; }
  void setX(double x) { v_[0] = x; }
  void setY(double y) { v_[1] = y; }
  void setZ(double z) { v_[2] = z; }
  /// Components 0, 1, 2; any other index is clamped into that range.
  double operator[](int i) const { return v_[clampIndex(i)]; }
  double& operator[](int i) { return v_[clampIndex(i)]; }

  /// "{x, y, z}" with each component in fixed notation and six decimals.
  DtString string() const;

  friend bool operator==(const DtVector64& a, const DtVector64& b) {
    return a.v_[0] == b.v_[0] && a.v_[1] == b.v_[1] && a.v_[2] == b.v_[2];
  }
  friend bool operator!=(const DtVector64& a, const DtVector64& b) { return !(a == b); }
  friend DtVector64 operator+(const DtVector64& a, const DtVector64& b) {
    return DtVector64(a.v_[0] + b.v_[0], a.v_[1] + b.v_[1], a.v_[2] + b.v_[2]);
  }
  friend DtVector64 operator-(const DtVector64& a, const DtVector64& b) {
    return DtVector64(a.v_[0] - b.v_[0], a.v_[1] - b.v_[1], a.v_[2] - b.v_[2]);
  }
  friend DtVector64 operator*(const DtVector64& a, double s) {
    return DtVector64(a.v_[0] * s, a.v_[1] * s, a.v_[2] * s);
  }

 private:
  static int clampIndex(int i) { return i < 0 ? 0 : (i > 2 ? 2 : i); }
  double v_[3] = {0.0, 0.0, 0.0};
};

/// DtTaitBryan is an orientation as heading (psi), pitch (theta) and roll (phi) in
/// radians. Its text form lists them in that order, like a vector.
class DT_EXPORT DtTaitBryan {
 public:
  DtTaitBryan() = default;
  DtTaitBryan(double psi, double theta, double phi) : a_{psi, theta, phi} {}

  double psi() const { return a_[0]; }
  double theta() const { return a_[1]; }
  double phi() const { return a_[2]; }
  double heading() const { return a_[0]; }
  double pitch() const { return a_[1]; }
  double roll() const { return a_[2]; }
  void setPsi(double v) { a_[0] = v; }
  void setTheta(double v) { a_[1] = v; }
  void setPhi(double v) { a_[2] = v; }
  double operator[](int i) const { return a_[i < 0 ? 0 : (i > 2 ? 2 : i)]; }
  double& operator[](int i) { return a_[i < 0 ? 0 : (i > 2 ? 2 : i)]; }

  /// "{psi, theta, phi}" in the vector text form.
  DtString string() const;

  friend bool operator==(const DtTaitBryan& a, const DtTaitBryan& b) {
    return a.a_[0] == b.a_[0] && a.a_[1] == b.a_[1] && a.a_[2] == b.a_[2];
  }
  friend bool operator!=(const DtTaitBryan& a, const DtTaitBryan& b) { return !(a == b); }

 private:
  double a_[3] = {0.0, 0.0, 0.0};
};
