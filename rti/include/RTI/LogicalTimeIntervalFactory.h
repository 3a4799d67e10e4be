#ifndef RTI_LogicalTimeIntervalFactory_h
#define RTI_LogicalTimeIntervalFactory_h

#include <RTI/Exception.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/SpecificConfig.h>
#include <string>

namespace rti1516 {
class RTI_EXPORT LogicalTimeIntervalFactory {
 public:
  virtual ~LogicalTimeIntervalFactory();
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> makeLogicalTimeInterval() = 0;
};

class FEDTIME_EXPORT LogicalTimeIntervalFactoryFactory {
 public:
  static RTI_UNIQUE_PTR<LogicalTimeIntervalFactory> makeLogicalTimeIntervalFactory(
      std::wstring const& implementationName);
};
}  // namespace rti1516

#endif
