#ifndef RTI_HLAfloat64TimeFactory_H_
#define RTI_HLAfloat64TimeFactory_H_

#include <RTI/LogicalTimeFactory.h>

namespace rti1516e {
class HLAfloat64Time;
class HLAfloat64Interval;

// The name federations give this representation when they are created.
const std::wstring HLAfloat64TimeName(L"HLAfloat64Time");

// Makes HLAfloat64Time times and HLAfloat64Interval intervals.
class RTI_EXPORT HLAfloat64TimeFactory : public LogicalTimeFactory {
 public:
  HLAfloat64TimeFactory();
  virtual ~HLAfloat64TimeFactory() noexcept;

  virtual RTI_UNIQUE_PTR<HLAfloat64Time> makeLogicalTime(double value);
  virtual RTI_UNIQUE_PTR<LogicalTime> makeInitial();
  virtual RTI_UNIQUE_PTR<LogicalTime> makeFinal();
  virtual RTI_UNIQUE_PTR<HLAfloat64Interval> makeLogicalTimeInterval(double value);
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> makeZero();
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> makeEpsilon();
  virtual RTI_UNIQUE_PTR<LogicalTime> decodeLogicalTime(
      VariableLengthData const& encodedLogicalTime);
  virtual RTI_UNIQUE_PTR<LogicalTime> decodeLogicalTime(void* buffer, size_t bufferSize);
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> decodeLogicalTimeInterval(
      VariableLengthData const& encodedValue);
  virtual RTI_UNIQUE_PTR<LogicalTimeInterval> decodeLogicalTimeInterval(void* buffer,
                                                                        size_t bufferSize);
  virtual std::wstring getName() const;
};
}  // namespace rti1516e

#endif
