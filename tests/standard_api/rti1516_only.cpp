#include "single_headers.h"

#include <RTI/RTI1516.h>

std::wstring onlyRti1516Name() {
  return rti1516::RTIname();
}
