#ifndef RTI_LogicalTimeFactory_h
#define RTI_LogicalTimeFactory_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <memory>
#include <string>

namespace rti1516 {
class LogicalTime;
class LogicalTimeInterval;

// Makes the time values of one representation: a time at its initial value and an
// interval of zero.
class RTI_EXPORT LogicalTimeFactory {
 public:
  virtual ~LogicalTimeFactory() noexcept = 0;
  virtual RTI_UNIQUE_PTR<LogicalTime> makeLogicalTime() = 0;
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> makeLogicalTimeInterval() = 0;
};

// Implemented by the time library (libfedtime1516_64), which decides the
// representation. An empty name selects its default; a name it does not know yields a
// null pointer.
class RTI_EXPORT_FEDTIME LogicalTimeFactoryFactory {
 public:
  static RTI_UNIQUE_PTR<LogicalTimeFactory> makeLogicalTimeFactory(
      std::wstring const& implementationName);
};
}  // namespace rti1516

#endif
