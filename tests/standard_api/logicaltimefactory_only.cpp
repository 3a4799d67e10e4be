#include "single_headers.h"

#include <RTI/LogicalTimeFactory.h>

bool onlyLogicalTimeFactoryDefault() {
  auto factory = rti1516::LogicalTimeFactoryFactory::makeLogicalTimeFactory(L"");
  return factory != nullptr;
}
