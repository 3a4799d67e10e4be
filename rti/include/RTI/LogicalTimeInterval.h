#ifndef RTI_LogicalTimeInterval_h
#define RTI_LogicalTimeInterval_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <RTI/VariableLengthData.h>
#include <iosfwd>
#include <string>

namespace rti1516 {
class LogicalTime;

class RTI_EXPORT LogicalTimeInterval {
 public:
  // Abstract, with a body: the time library's classes derive from it.
  virtual ~LogicalTimeInterval() noexcept = 0;

  virtual void setZero() = 0;
  virtual bool isZero() const = 0;
  virtual void setEpsilon() = 0;
  virtual bool isEpsilon() const = 0;

  virtual LogicalTimeInterval& operator=(LogicalTimeInterval const& value) = 0;
  virtual void setToDifference(LogicalTime const& minuend, LogicalTime const& subtrahend) = 0;
  virtual LogicalTimeInterval& operator+=(LogicalTimeInterval const& addend) = 0;
  virtual LogicalTimeInterval& operator-=(LogicalTimeInterval const& subtrahend) = 0;

  virtual bool operator>(LogicalTimeInterval const& value) const = 0;
  virtual bool operator<(LogicalTimeInterval const& value) const = 0;
  virtual bool operator==(LogicalTimeInterval const& value) const = 0;
  virtual bool operator>=(LogicalTimeInterval const& value) const = 0;
  virtual bool operator<=(LogicalTimeInterval const& value) const = 0;

  virtual VariableLengthData encode() const = 0;
  virtual unsigned long encodedLength() const = 0;
  virtual unsigned long encode(void* buffer, unsigned long bufferSize) const = 0;
  virtual void decode(VariableLengthData const& encodedValue) = 0;
  virtual void decode(void* buffer, unsigned long bufferSize) = 0;

  virtual std::wstring toString() const = 0;
  // The name createFederationExecution takes to choose this representation.
  virtual std::wstring implementationName() const = 0;
};

RTI_EXPORT std::wostream& operator<<(std::wostream&, LogicalTimeInterval const&);
}  // namespace rti1516

#endif
