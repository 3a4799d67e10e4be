// The factory of libfedtime1516_64's time representation, as
// LogicalTimeFactoryFactory::makeLogicalTimeFactory returns it for "" and
// "HLAfloat64Time".
#ifndef RTI_HLAfloat64TimeFactory_h
#define RTI_HLAfloat64TimeFactory_h

#include <RTI/LogicalTimeFactory.h>

class HLAfloat64Interval;
class HLAfloat64Time;

// Makes HLAfloat64Time (initial: 0) and HLAfloat64Interval (zero) values.
class RTI_EXPORT_FEDTIME HLAfloat64TimeFactory : public rti1516::LogicalTimeFactory {
 public:
  HLAfloat64TimeFactory();
  ~HLAfloat64TimeFactory() noexcept override;
  RTI_UNIQUE_PTR<rti1516::LogicalTime> makeLogicalTime() override;
  RTI_UNIQUE_PTR<rti1516::LogicalTimeInterval> makeLogicalTimeInterval() override;
};

#endif
