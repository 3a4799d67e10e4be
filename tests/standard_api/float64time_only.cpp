#include "single_headers.h"

#include <RTI/HLAfloat64Time.h>

double onlyFloat64TimeSum() {
  HLAfloat64Time t(1.25);
  t.setTime(t.getTime() + 2.0);
  return t.getTime();
}
