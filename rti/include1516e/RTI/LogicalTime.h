#ifndef RTI_LogicalTime_h
#define RTI_LogicalTime_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <RTI/VariableLengthData.h>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace rti1516e {
class LogicalTimeInterval;

// A point on a federation's time axis; the time library (libfedtime1516e) provides the
// representations. Operations between two representations throw InvalidLogicalTime.
class RTI_EXPORT LogicalTime {
 public:
  virtual ~LogicalTime() noexcept = 0;
  virtual void setInitial() = 0;
  virtual bool isInitial() const = 0;
  virtual void setFinal() = 0;
  virtual bool isFinal() const = 0;
  virtual LogicalTime& operator=(LogicalTime const& value) = 0;
  // IllegalTimeArithmetic when the result leaves the representation's range.
  virtual LogicalTime& operator+=(LogicalTimeInterval const& addend) = 0;
  virtual LogicalTime& operator-=(LogicalTimeInterval const& subtrahend) = 0;
  virtual bool operator>(LogicalTime const& value) const = 0;
  virtual bool operator<(LogicalTime const& value) const = 0;
  virtual bool operator==(LogicalTime const& value) const = 0;
  virtual bool operator>=(LogicalTime const& value) const = 0;
  virtual bool operator<=(LogicalTime const& value) const = 0;
  virtual VariableLengthData encode() const = 0;
  // CouldNotEncode when the buffer is too small.
  virtual size_t encode(void* buffer, size_t bufferSize) const = 0;
  virtual size_t encodedLength() const = 0;
  // CouldNotDecode when the bytes are not an encoded time of this representation.
  virtual void decode(VariableLengthData const& encodedLogicalTime) = 0;
  virtual void decode(void* buffer, size_t bufferSize) = 0;
  virtual std::wstring toString() const = 0;
  virtual std::wstring implementationName() const = 0;
};

RTI_EXPORT std::wostream& operator<<(std::wostream&, LogicalTime const&);
}  // namespace rti1516e

#endif
