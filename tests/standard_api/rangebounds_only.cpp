#include "single_headers.h"

#include <RTI/RangeBounds.h>

unsigned long onlyRangeBoundsUpper() {
  rti1516::RangeBounds b(3, 4);
  b.setUpperBound(b.getLowerBound() + 40);
  return b.getUpperBound();
}
