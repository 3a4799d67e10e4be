// The time representation of libfedtime1516_64: a double. Interactions sent in receive
// order never use it; it exists so that federates and toolkits that create time
// factories link and run.
#ifndef RTI_HLAfloat64Time_h
#define RTI_HLAfloat64Time_h

#include <RTI/LogicalTime.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/LogicalTimeIntervalFactory.h>

namespace rti1516 {
class FEDTIME_EXPORT HLAfloat64Interval : public LogicalTimeInterval {
 public:
  explicit HLAfloat64Interval(double value = 0.0) : _value(value) {}
  double getInterval() const { return _value; }
  void setInterval(double value) { _value = value; }

  void setZero() override;
  bool isZero() const override;
  void setEpsilon() override;
  bool isEpsilon() const override;
  LogicalTimeInterval& operator=(LogicalTimeInterval const& value) override;
  void setToDifference(LogicalTime const& minuend, LogicalTime const& subtrahend) override;
  LogicalTimeInterval& operator+=(LogicalTimeInterval const& addend) override;
  LogicalTimeInterval& operator-=(LogicalTimeInterval const& subtrahend) override;
  bool operator>(LogicalTimeInterval const& value) const override;
  bool operator<(LogicalTimeInterval const& value) const override;
  bool operator==(LogicalTimeInterval const& value) const override;
  bool operator>=(LogicalTimeInterval const& value) const override;
  bool operator<=(LogicalTimeInterval const& value) const override;
  VariableLengthData encode() const override;
  unsigned long encodedLength() const override;
  unsigned long encode(void* buffer, unsigned long bufferSize) const override;
  void decode(VariableLengthData const& encodedValue) override;
  void decode(void* buffer, unsigned long bufferSize) override;
  std::wstring toString() const override;

 private:
  double _value;
};

class FEDTIME_EXPORT HLAfloat64Time : public LogicalTime {
 public:
  explicit HLAfloat64Time(double value = 0.0) : _value(value) {}
  double getTime() const { return _value; }
  void setTime(double value) { _value = value; }

  void setInitial() override;
  bool isInitial() const override;
  void setFinal() override;
  bool isFinal() const override;
  LogicalTime& operator=(LogicalTime const& value) override;
  LogicalTime& operator+=(LogicalTimeInterval const& addend) override;
  LogicalTime& operator-=(LogicalTimeInterval const& subtrahend) override;
  bool operator>(LogicalTime const& value) const override;
  bool operator<(LogicalTime const& value) const override;
  bool operator==(LogicalTime const& value) const override;
  bool operator>=(LogicalTime const& value) const override;
  bool operator<=(LogicalTime const& value) const override;
  VariableLengthData encode() const override;
  unsigned long encodedLength() const override;
  unsigned long encode(void* buffer, unsigned long bufferSize) const override;
  void decode(VariableLengthData const& encodedLogicalTime) override;
  void decode(void* buffer, unsigned long bufferSize) override;
  std::wstring toString() const override;

 private:
  double _value;
};
}  // namespace rti1516

#endif
