#include "vdcColor.h"

#include <algorithm>
#include <cmath>

#include "dtException.h"

const DtVdcColor DtVdcColor::DtVdcWhite(255, 255, 255, 255);
const DtVdcColor DtVdcColor::DtVdcBlack(0, 0, 0, 255);
const DtVdcColor DtVdcColor::DtVdcRed(255, 0, 0, 255);
const DtVdcColor DtVdcColor::DtVdcGreen(0, 255, 0, 255);
const DtVdcColor DtVdcColor::DtVdcBlue(0, 0, 255, 255);
const DtVdcColor DtVdcColor::DtVdcYellow(255, 255, 0, 255);
const DtVdcColor DtVdcColor::DtVdcPurple(255, 0, 255, 255);
const DtVdcColor DtVdcColor::DtVdcOrange(255, 128, 0, 255);

namespace {
// Channels and hues are truncated, never rounded; a saturation or value outside
// 0..1 must not turn into a wrapped huge channel.
unsigned int truncated(double v) {
  if (!(v > 0.0)) return 0;
  return v >= 4294967295.0 ? 4294967295u : static_cast<unsigned int>(v);
}
}  // namespace

DtVdcColor::DtVdcColor() = default;

DtVdcColor::DtVdcColor(unsigned int red, unsigned int green, unsigned int blue, unsigned int alpha)
    : red_(red), green_(green), blue_(blue), alpha_(alpha) {
  toHSV();
}

void DtVdcColor::setRed(unsigned int red) {
  red_ = red;
  toHSV();
}

void DtVdcColor::setGreen(unsigned int green) {
  green_ = green;
  toHSV();
}

void DtVdcColor::setBlue(unsigned int blue) {
  blue_ = blue;
  toHSV();
}

void DtVdcColor::setHSV(unsigned int hue, double saturation, double value, unsigned int alpha) {
  hue_ = hue;
  saturation_ = saturation;
  value_ = value;
  alpha_ = alpha;
  fromHSV();
}

void DtVdcColor::setHue(unsigned int hue) {
  hue_ = hue;
  fromHSV();
}

void DtVdcColor::setSaturation(double saturation) {
  saturation_ = saturation;
  fromHSV();
}

void DtVdcColor::setValue(double value) {
  value_ = value;
  fromHSV();
}

const unsigned int& DtVdcColor::operator[](int index) const {
  switch (index) {
    case 0:
      return red_;
    case 1:
      return green_;
    case 2:
      return blue_;
    case 3:
      return alpha_;
  }
  DT_THROW("Invalid index (should be 0..3)");
}

unsigned int& DtVdcColor::operator[](int index) {
  return const_cast<unsigned int&>(static_cast<const DtVdcColor&>(*this)[index]);
}

bool DtVdcColor::operator==(const DtVdcColor& other) const {
  return red_ == other.red_ && green_ == other.green_ && blue_ == other.blue_ &&
         alpha_ == other.alpha_;
}

void DtVdcColor::toHSV() {
  double r = red_ / 255.0, g = green_ / 255.0, b = blue_ / 255.0;
  double max = std::max({r, g, b});
  double delta = max - std::min({r, g, b});
  value_ = max;
  if (delta == 0.0) {
    saturation_ = 0.0;
    hue_ = 0;
    return;
  }
  saturation_ = delta / max;
  double h;
  if (r == max)
    h = (g - b) / delta;
  else if (g == max)
    h = (b - r) / delta + 2.0;
  else
    h = (r - g) / delta + 4.0;
  h *= 60.0;
  if (h < 0.0) h += 360.0;
  hue_ = truncated(h);
}

void DtVdcColor::fromHSV() {
  if (saturation_ == 0.0) {
    red_ = green_ = blue_ = truncated(255.0 * value_);
    return;
  }
  double h = hue_ == 360 ? 0.0 : static_cast<double>(hue_);
  double sector = std::floor(h / 60.0);
  double f = h / 60.0 - sector;
  double s = saturation_;
  unsigned int v = truncated(255.0 * value_);
  unsigned int p = truncated(255.0 * (1.0 - s) * value_);
  unsigned int q = truncated(255.0 * (1.0 - s * f) * value_);
  unsigned int t = truncated(255.0 * (1.0 - (1.0 - f) * s) * value_);
  unsigned int rgb[6][3] = {{v, t, p}, {q, v, p}, {p, v, t}, {p, q, v}, {t, p, v}, {v, p, q}};
  const unsigned int* pick = rgb[sector >= 0.0 && sector < 5.0 ? static_cast<int>(sector) : 5];
  red_ = pick[0];
  green_ = pick[1];
  blue_ = pick[2];
}
