// The interval of libfedtime1516_64's time representation (see HLAfloat64Time.h).
#ifndef RTI_HLAfloat64Interval_h
#define RTI_HLAfloat64Interval_h

#include <RTI/LogicalTimeInterval.h>

class HLAfloat64Time;

// A difference of two HLAfloat64Time values; epsilon is the smallest positive double.
// Encoded as the IEEE double, most significant byte first.
class RTI_EXPORT_FEDTIME HLAfloat64Interval : public rti1516::LogicalTimeInterval {
 public:
  HLAfloat64Interval();
  HLAfloat64Interval(double value);
  HLAfloat64Interval(rti1516::LogicalTimeInterval const& logicalTimeInterval);
  HLAfloat64Interval(HLAfloat64Interval const& logicalTimeInterval);
  ~HLAfloat64Interval() noexcept override;

  void setZero() override;
  bool isZero() const override;
  void setEpsilon() override;
  bool isEpsilon() const override;

  HLAfloat64Interval& operator=(rti1516::LogicalTimeInterval const& value) override;
  void setToDifference(rti1516::LogicalTime const& minuend,
                       rti1516::LogicalTime const& subtrahend) override;
  HLAfloat64Interval& operator+=(rti1516::LogicalTimeInterval const& addend) override;
  HLAfloat64Interval& operator-=(rti1516::LogicalTimeInterval const& subtrahend) override;

  bool operator>(rti1516::LogicalTimeInterval const& value) const override;
  bool operator<(rti1516::LogicalTimeInterval const& value) const override;
  bool operator==(rti1516::LogicalTimeInterval const& value) const override;
  bool operator>=(rti1516::LogicalTimeInterval const& value) const override;
  bool operator<=(rti1516::LogicalTimeInterval const& value) const override;

  rti1516::VariableLengthData encode() const override;
  unsigned long encodedLength() const override;
  unsigned long encode(void* buffer, unsigned long bufferSize) const override;
  void decode(rti1516::VariableLengthData const& encodedValue) override;
  void decode(void* buffer, unsigned long bufferSize) override;

  std::wstring toString() const override;
  std::wstring implementationName() const override;

  double getInterval() const;
  void setInterval(double value);
  HLAfloat64Interval& operator=(HLAfloat64Interval const& value);
  operator double() const;

 private:
  double _value;
};

#endif
