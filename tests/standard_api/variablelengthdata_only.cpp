#include "single_headers.h"

#include <RTI/VariableLengthData.h>

unsigned long onlyVariableLengthDataSize() {
  char bytes[5] = {1, 2, 3, 4, 5};
  rti1516::VariableLengthData v(bytes, sizeof bytes);
  return v.size();
}
