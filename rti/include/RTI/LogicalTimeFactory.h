#ifndef RTI_LogicalTimeFactory_h
#define RTI_LogicalTimeFactory_h

#include <RTI/Exception.h>
#include <RTI/LogicalTime.h>
#include <RTI/SpecificConfig.h>
#include <string>

namespace rti1516 {
class RTI_EXPORT LogicalTimeFactory {
 public:
  virtual ~LogicalTimeFactory();
  virtual RTI_UNIQUE_PTR<LogicalTime> makeLogicalTime() = 0;
};

// Implemented by the time library (libfedtime1516_64), which decides the
// representation. An empty name selects its default.
class FEDTIME_EXPORT LogicalTimeFactoryFactory {
 public:
  static RTI_UNIQUE_PTR<LogicalTimeFactory> makeLogicalTimeFactory(
      std::wstring const& implementationName);
};
}  // namespace rti1516

#endif
