// The time representation of libfedtime1516_64: a double, named "HLAfloat64Time".
// Interactions sent in receive order never use it; it exists so that federates and
// toolkits that create time factories link and run. Like the time classes other RTIs
// ship for the 2000 API, it lives in the global namespace.
#ifndef RTI_HLAfloat64Time_h
#define RTI_HLAfloat64Time_h

#include <RTI/LogicalTime.h>

class HLAfloat64Interval;

// A time that starts at 0 (initial) and ends at the largest double (final). Times and
// intervals of another representation are refused with InvalidLogicalTime /
// InvalidLogicalTimeInterval. Encoded as the IEEE double, most significant byte first.
class RTI_EXPORT_FEDTIME HLAfloat64Time : public rti1516::LogicalTime {
 public:
  HLAfloat64Time();
  HLAfloat64Time(double value);
  HLAfloat64Time(rti1516::LogicalTime const& logicalTime);
  HLAfloat64Time(HLAfloat64Time const& logicalTime);
  ~HLAfloat64Time() noexcept override;

  void setInitial() override;
  bool isInitial() const override;
  void setFinal() override;
  bool isFinal() const override;

  HLAfloat64Time& operator=(rti1516::LogicalTime const& logicalTime) override;
  HLAfloat64Time& operator+=(rti1516::LogicalTimeInterval const& addend) override;
  HLAfloat64Time& operator-=(rti1516::LogicalTimeInterval const& subtrahend) override;

  bool operator>(rti1516::LogicalTime const& value) const override;
  bool operator<(rti1516::LogicalTime const& value) const override;
  bool operator==(rti1516::LogicalTime const& value) const override;
  bool operator>=(rti1516::LogicalTime const& value) const override;
  bool operator<=(rti1516::LogicalTime const& value) const override;

  rti1516::VariableLengthData encode() const override;
  unsigned long encodedLength() const override;
  unsigned long encode(void* buffer, unsigned long bufferSize) const override;
  void decode(rti1516::VariableLengthData const& encodedLogicalTime) override;
  void decode(void* buffer, unsigned long bufferSize) override;

  std::wstring toString() const override;
  std::wstring implementationName() const override;

  double getTime() const;
  void setTime(double value);
  HLAfloat64Time& operator=(HLAfloat64Time const& value);
  operator double() const;

 private:
  double _value;
};

#endif
