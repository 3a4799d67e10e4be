#ifndef RTI_LogicalTime_h
#define RTI_LogicalTime_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <RTI/VariableLengthData.h>
#include <iosfwd>
#include <string>

namespace rti1516 {
class LogicalTimeInterval;

// A point on the federation's time axis. Its representation belongs to the time
// library (libfedtime1516_64), not to the RTI.
class RTI_EXPORT LogicalTime {
 public:
  // Abstract, with a body: the time library's classes derive from it.
  virtual ~LogicalTime() noexcept = 0;

  virtual void setInitial() = 0;
  virtual bool isInitial() const = 0;
  virtual void setFinal() = 0;
  virtual bool isFinal() const = 0;

  virtual LogicalTime& operator=(LogicalTime const& value) = 0;
  virtual LogicalTime& operator+=(LogicalTimeInterval const& addend) = 0;
  virtual LogicalTime& operator-=(LogicalTimeInterval const& subtrahend) = 0;

  virtual bool operator>(LogicalTime const& value) const = 0;
  virtual bool operator<(LogicalTime const& value) const = 0;
  virtual bool operator==(LogicalTime const& value) const = 0;
  virtual bool operator>=(LogicalTime const& value) const = 0;
  virtual bool operator<=(LogicalTime const& value) const = 0;

  virtual VariableLengthData encode() const = 0;
  virtual unsigned long encodedLength() const = 0;
  virtual unsigned long encode(void* buffer, unsigned long bufferSize) const = 0;
  virtual void decode(VariableLengthData const& encodedLogicalTime) = 0;
  virtual void decode(void* buffer, unsigned long bufferSize) = 0;

  virtual std::wstring toString() const = 0;
  // The name createFederationExecution takes to choose this representation.
  virtual std::wstring implementationName() const = 0;
};

RTI_EXPORT std::wostream& operator<<(std::wostream&, LogicalTime const&);
}  // namespace rti1516

#endif
