#include "single_headers.h"

#include <RTI/Typedefs.h>

unsigned long onlyTypedefsSetSize() {
  rti1516::AttributeHandleSet set;
  set.insert(rti1516::AttributeHandle());
  rti1516::FederateHandleSaveStatusPairVector statuses;
  statuses.emplace_back(rti1516::FederateHandle(), rti1516::FEDERATE_SAVING);
  return static_cast<unsigned long>(set.size() + statuses.size());
}
