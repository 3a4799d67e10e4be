#pragma once
#include "dtException.h"
#include "dtExport.h"

/// DtVdcColor is the colour of a drawing: red, green, blue and alpha (0..255, alpha 255
/// opaque), with the same colour kept as hue (degrees, 0..359), saturation and value
/// (0.0..1.0). Every RGB setter recomputes HSV and every HSV setter recomputes RGB;
/// alpha belongs to neither. The subscript reaches red, green, blue and alpha directly
/// and recomputes nothing. Drawing PDUs carry the four channels as bytes.
class DT_EXPORT DtVdcColor {
 public:
  static const DtVdcColor DtVdcWhite;
  static const DtVdcColor DtVdcBlack;
  static const DtVdcColor DtVdcRed;
  static const DtVdcColor DtVdcGreen;
  static const DtVdcColor DtVdcBlue;
  static const DtVdcColor DtVdcYellow;
  static const DtVdcColor DtVdcPurple;
  static const DtVdcColor DtVdcOrange;

  /// Opaque black.
  DtVdcColor();
  DtVdcColor(unsigned int red, unsigned int green, unsigned int blue, unsigned int alpha = 255);

  unsigned int red() const { return red_; }
  unsigned int green() const { return green_; }
  unsigned int blue() const { return blue_; }
  unsigned int alpha() const { return alpha_; }
  unsigned int hue() const { return hue_; }
  double saturation() const { return saturation_; }
  double value() const { return value_; }

  void setRed(unsigned int red);
  void setGreen(unsigned int green);
  void setBlue(unsigned int blue);
  void setAlpha(unsigned int alpha) { alpha_ = alpha; }
  void setHSV(unsigned int hue, double saturation, double value, unsigned int alpha);
  void setHue(unsigned int hue);
  void setSaturation(double saturation);
  void setValue(double value);

  /// 0 red, 1 green, 2 blue, 3 alpha; any other index throws DtException.
  unsigned int& operator[](int index);
  const unsigned int& operator[](int index) const;

  /// RGB and alpha only: two colours that differ in HSV alone are equal.
  bool operator==(const DtVdcColor& other) const;
  bool operator!=(const DtVdcColor& other) const { return !(*this == other); }

  /// Recomputes RGB from HSV, truncating each channel.
  void fromHSV();
  /// Recomputes HSV from RGB; the hue is truncated to whole degrees.
  void toHSV();

 private:
  unsigned int red_ = 0;
  unsigned int green_ = 0;
  unsigned int blue_ = 0;
  unsigned int alpha_ = 255;
  unsigned int hue_ = 0;
  double saturation_ = 0.0;
  double value_ = 0.0;
};
