#ifndef RTI_LogicalTimeFactory_h
#define RTI_LogicalTimeFactory_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <cstddef>
#include <memory>
#include <string>

namespace rti1516e {
class LogicalTime;
class LogicalTimeInterval;
class VariableLengthData;

// Makes the times and intervals of one representation, named by getName().
class RTI_EXPORT LogicalTimeFactory {
 public:
  virtual ~LogicalTimeFactory() noexcept = 0;
  virtual RTI_UNIQUE_PTR<LogicalTime> makeInitial() = 0;
  virtual RTI_UNIQUE_PTR<LogicalTime> makeFinal() = 0;
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> makeZero() = 0;
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> makeEpsilon() = 0;
  // CouldNotDecode when the bytes are not an encoded value of this representation.
  virtual RTI_UNIQUE_PTR<LogicalTime> decodeLogicalTime(
      VariableLengthData const& encodedLogicalTime) = 0;
  virtual RTI_UNIQUE_PTR<LogicalTime> decodeLogicalTime(void* buffer, size_t bufferSize) = 0;
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> decodeLogicalTimeInterval(
      VariableLengthData const& encodedValue) = 0;
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> decodeLogicalTimeInterval(void* buffer,
                                                                        size_t bufferSize) = 0;
  virtual std::wstring getName() const = 0;
};

// The standard's representations by name: "HLAfloat64Time", "HLAinteger64Time"; a null
// pointer for any other name.
class RTI_EXPORT HLAlogicalTimeFactoryFactory {
 public:
  static RTI_UNIQUE_PTR<LogicalTimeFactory> makeLogicalTimeFactory(
      std::wstring const& implementationName);
};

// The time library's own representations by name; "" is HLAfloat64Time. A null pointer
// for a name it does not know.
class RTI_EXPORT_FEDTIME LogicalTimeFactoryFactory {
 public:
  static RTI_UNIQUE_PTR<LogicalTimeFactory> makeLogicalTimeFactory(
      std::wstring const& implementationName);
};
}  // namespace rti1516e

#endif
