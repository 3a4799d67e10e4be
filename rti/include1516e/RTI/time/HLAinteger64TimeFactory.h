#ifndef RTI_HLAinteger64TimeFactory_H_
#define RTI_HLAinteger64TimeFactory_H_

#include <RTI/LogicalTimeFactory.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {
class HLAinteger64Time;
class HLAinteger64Interval;

// The name federations give this representation when they are created.
const std::wstring HLAinteger64TimeName(L"HLAinteger64Time");

// Makes HLAinteger64Time times and HLAinteger64Interval intervals.
class RTI_EXPORT HLAinteger64TimeFactory : public LogicalTimeFactory {
 public:
  HLAinteger64TimeFactory();
  virtual ~HLAinteger64TimeFactory() noexcept;

  virtual RTI_UNIQUE_PTR<HLAinteger64Time> makeLogicalTime(Integer64 value);
  virtual RTI_UNIQUE_PTR<LogicalTime> makeInitial();
  virtual RTI_UNIQUE_PTR<LogicalTime> makeFinal();
  virtual RTI_UNIQUE_PTR<HLAinteger64Interval> makeLogicalTimeInterval(Integer64 value);
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
