#ifndef RTI_HLAfloat64Interval_H_
#define RTI_HLAfloat64Interval_H_

#include <RTI/LogicalTimeInterval.h>

namespace rti1516e {

// An interval as an IEEE double. Epsilon is the smallest positive double.
class RTI_EXPORT HLAfloat64Interval : public LogicalTimeInterval {
 public:
  HLAfloat64Interval();
  HLAfloat64Interval(double value);
  // InvalidLogicalTimeInterval when value is of another representation.
  HLAfloat64Interval(LogicalTimeInterval const& value);
  HLAfloat64Interval(HLAfloat64Interval const& value);
  virtual ~HLAfloat64Interval() noexcept;

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

  virtual double getInterval() const;
  virtual void setInterval(double value);
  virtual HLAfloat64Interval& operator=(HLAfloat64Interval const& value);
  operator double() const;

 private:
  double _value;
};
}  // namespace rti1516e

#endif
