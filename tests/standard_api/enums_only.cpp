#include "single_headers.h"

#include <RTI/Enums.h>

int onlyEnumsBestEffort() {
  return rti1516::BEST_EFFORT;
}
