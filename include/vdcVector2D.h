#pragma once
#include <iosfwd>

#include "dtExport.h"
#include "dtString.h"
#include "dtVector.h"

/// Index of the const subscript of DtVdcVector2D: 0 is x, 1 is y.
typedef int DtVdcVector2DOffset;

/// DtVdcVector2D is a pair of doubles, x then y, stored side by side so that the vector
/// passes as a pointer to its first double. 2D drawings take screen positions and
/// sizes in it as fractions 0..1 of the screen.
class DT_EXPORT DtVdcVector2D {
 public:
  DtVdcVector2D() = default;
  DtVdcVector2D(const double& x, const double& y) : v_{x, y} {}

  /// (0, 0), (1, 0), (0, 1), (1, 1).
  static const DtVdcVector2D& zero();
  static const DtVdcVector2D& i();
  static const DtVdcVector2D& j();
  static const DtVdcVector2D& ones();

  double x() const { return v_[0]; }
  double y() const { return v_[1]; }
  /// Unchecked, like a pointer subscript.
  double& operator[](int index) { return v_[index]; }
  const double& operator[](DtVdcVector2DOffset index) const { return v_[index]; }
  operator double*() { return v_; }
  operator const double*() const { return v_; }

  double magnitudeSquared() const { return v_[0] * v_[0] + v_[1] * v_[1]; }
  /// Within 1e-6 of unit length (squared).
  bool isNormalized() const;
  /// Scales to unit length in place, except the zero vector and vectors of squared
  /// length exactly 1, which stay as they are. Returns the squared length it had.
  double normalize();
  double dotProduct(const DtVdcVector2D& other) const;
  /// Each component within `tolerance` of the other's.
  bool approxEq(const DtVdcVector2D& other, double tolerance) const;
  /// Both components exactly zero.
  bool magnitudeIsZero() const;
  /// Both components, cut to whole numbers, within `tolerance` of zero: the cut is
  /// meant, so (0.9, -0.9) counts as zero for any tolerance from 0 up.
  bool magnitudeIsZero(double tolerance) const;

  DtVdcVector2D& operator-=(const DtVdcVector2D& other);
  DtVdcVector2D& operator+=(const DtVdcVector2D& other);

  /// (x, y, 0).
  DtVector64 vector3D() const;
  /// "{x, y}" with the stream's default formatting of doubles.
  DtString string() const;
  /// "[ x= x y= y ]".
  void printDataToStream(std::ostream& out) const;

 private:
  double v_[2] = {0.0, 0.0};
};

DT_EXPORT DtVdcVector2D operator+(const DtVdcVector2D& a, const DtVdcVector2D& b);
DT_EXPORT DtVdcVector2D operator-(const DtVdcVector2D& a, const DtVdcVector2D& b);
DT_EXPORT std::ostream& operator<<(std::ostream& out, const DtVdcVector2D& v);

// Free functions in the style of the toolkit's vector library: results go to the last
// argument.
DT_EXPORT void DtVecNeg(const DtVdcVector2D& a, DtVdcVector2D& out);
/// Leaves `out` untouched when `a` is (nearly) zero; copies `a` when it is (nearly) of
/// unit length. Returns a's squared length.
DT_EXPORT double DtVecNormalize(const DtVdcVector2D& a, DtVdcVector2D& out);
DT_EXPORT void DtVecScale(const DtVdcVector2D& a, double s, DtVdcVector2D& out);
DT_EXPORT void DtVecSub(const DtVdcVector2D& a, const DtVdcVector2D& b, DtVdcVector2D& out);
/// Cosine of the angle between a and b; no guard against a zero vector.
DT_EXPORT double DtVecCosProd(const DtVdcVector2D& a, const DtVdcVector2D& b);
DT_EXPORT double DtVecInfNorm(const DtVdcVector2D& a);
DT_EXPORT double DtDistance(const DtVdcVector2D& a, const DtVdcVector2D& b);
DT_EXPORT double DtDistSqr(const DtVdcVector2D& a, const DtVdcVector2D& b);
