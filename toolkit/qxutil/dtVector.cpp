#include "dtVector.h"

#include <cstdio>

namespace {
DtString vectorText(double a, double b, double c) {
  char text[128];
  std::snprintf(text, sizeof text, "{%f, %f, %f}", a, b, c);
  return DtString(text);
}
}  // namespace

DtString DtVector64::string() const {
  return vectorText(v_[0], v_[1], v_[2]);
}
DtString DtTaitBryan::string() const {
  return vectorText(a_[0], a_[1], a_[2]);
}
