#ifndef RTI_HLAinteger64Interval_H_
#define RTI_HLAinteger64Interval_H_

#include <RTI/LogicalTimeInterval.h>
#include <RTI/encoding/EncodingConfig.h>

namespace rti1516e {

// An interval as a 64-bit signed count. Epsilon is 1.
class RTI_EXPORT HLAinteger64Interval : public LogicalTimeInterval {
 public:
  HLAinteger64Interval();
  HLAinteger64Interval(Integer64 value);
  // InvalidLogicalTimeInterval when value is of another representation.
  HLAinteger64Interval(LogicalTimeInterval const& value);
  HLAinteger64Interval(HLAinteger64Interval const& value);
  virtual ~HLAinteger64Interval() noexcept;

  virtual void setZero();
  virtual bool isZero() const;
  virtual void setEpsilon();
  virtual bool isEpsilon() const;
  virtual LogicalTimeInterval& operator=(LogicalTimeInterval const& value);
  virtual LogicalTimeInterval& operator+=(LogicalTimeInterval const& addend);
  virtual LogicalTimeInterval& operator-=(LogicalTimeInterval const& subtrahend);
  virtual bool operator>(LogicalTimeInterval const& value) const;
  virtual bool operator<(LogicalTimeInterval const& value) const;
  virtual bool operator==(LogicalTimeInterval const& value) const;
  virtual bool operator>=(LogicalTimeInterval const& value) const;
  virtual bool operator<=(LogicalTimeInterval const& value) const;
  virtual void setToDifference(LogicalTime const& minuend, LogicalTime const& subtrahend);
  // Eight bytes, most significant first.
  virtual VariableLengthData encode() const;
  virtual size_t encode(void* buffer, size_t bufferSize) const;
  virtual size_t encodedLength() const;
  virtual void decode(VariableLengthData const& encodedValue);
  virtual void decode(void* buffer, size_t bufferSize);
  virtual std::wstring toString() const;
  virtual std::wstring implementationName() const;

  virtual Integer64 getInterval() const;
  virtual void setInterval(Integer64 value);
  virtual HLAinteger64Interval& operator=(HLAinteger64Interval const& value);
  operator Integer64() const;

 private:
  Integer64 _value;
};
}  // namespace rti1516e

#endif
