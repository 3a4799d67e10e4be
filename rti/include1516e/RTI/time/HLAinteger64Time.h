#ifndef RTI_HLAinteger64Time_H_
#define RTI_HLAinteger64Time_H_

#include <RTI/LogicalTime.h>
#include <RTI/encoding/EncodingConfig.h>
#include <RTI/time/HLAinteger64Interval.h>

namespace rti1516e {

// A time as a 64-bit signed count. Initial is 0, final the largest count.
class RTI_EXPORT HLAinteger64Time : public LogicalTime {
 public:
  HLAinteger64Time();
  HLAinteger64Time(Integer64 value);
  // InvalidLogicalTime when value is of another representation.
  HLAinteger64Time(LogicalTime const& value);
  HLAinteger64Time(HLAinteger64Time const& value);
  virtual ~HLAinteger64Time() noexcept;

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

  virtual Integer64 getTime() const;
  virtual void setTime(Integer64 value);
  virtual HLAinteger64Time& operator=(HLAinteger64Time const& value);
  operator Integer64() const;

 private:
  friend class HLAinteger64Interval;
  // The value itself; the pointer of the standard's layout is not needed for eight bytes.
  Integer64 _value;
};
}  // namespace rti1516e

#endif
