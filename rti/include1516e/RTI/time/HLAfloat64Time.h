#ifndef RTI_HLAfloat64Time_H_
#define RTI_HLAfloat64Time_H_

#include <RTI/LogicalTime.h>
#include <RTI/time/HLAfloat64Interval.h>

namespace rti1516e {

// A time as an IEEE double. Initial is 0, final the largest double.
class RTI_EXPORT HLAfloat64Time : public LogicalTime {
 public:
  HLAfloat64Time();
  HLAfloat64Time(double value);
  // InvalidLogicalTime when value is of another representation.
  HLAfloat64Time(LogicalTime const& value);
  HLAfloat64Time(HLAfloat64Time const& value);
  virtual ~HLAfloat64Time() noexcept;

  virtual void setInitial();
  virtual bool isInitial() const;
  virtual void setFinal();
  virtual bool isFinal() const;
  virtual LogicalTime& operator=(LogicalTime const& value);
  virtual LogicalTime& operator+=(LogicalTimeInterval const& addend);
  virtual LogicalTime& operator-=(LogicalTimeInterval const& subtrahend);
  virtual bool operator>(LogicalTime const& value) const;
  virtual bool operator<(LogicalTime const& value) const;
  virtual bool operator==(LogicalTime const& value) const;
  virtual bool operator>=(LogicalTime const& value) const;
  virtual bool operator<=(LogicalTime const& value) const;
  // Eight bytes, most significant first.
  virtual VariableLengthData encode() const;
  virtual size_t encode(void* buffer, size_t bufferSize) const;
  virtual size_t encodedLength() const;
  virtual void decode(VariableLengthData const& encodedValue);
  virtual void decode(void* buffer, size_t bufferSize);
  virtual std::wstring toString() const;
  virtual std::wstring implementationName() const;

  virtual double getTime() const;
  virtual void setTime(double value);
  virtual HLAfloat64Time& operator=(HLAfloat64Time const& value);
  operator double() const;

 private:
  friend class HLAfloat64Interval;
  // The value itself; the pointer of the standard's layout is not needed for eight bytes.
  double _value;
};
}  // namespace rti1516e

#endif
