#ifndef RTI_RangeBounds_h
#define RTI_RangeBounds_h

#include <RTI/SpecificConfig.h>

namespace rti1516 {
class RTI_EXPORT RangeBounds {
 public:
  RangeBounds() noexcept : _lowerBound(0), _upperBound(0) {}
  RangeBounds(unsigned long lowerBound, unsigned long upperBound) noexcept
      : _lowerBound(lowerBound), _upperBound(upperBound) {}

  unsigned long getLowerBound() const noexcept { return _lowerBound; }
  unsigned long getUpperBound() const noexcept { return _upperBound; }
  void setLowerBound(unsigned long lowerBound) noexcept { _lowerBound = lowerBound; }
  void setUpperBound(unsigned long upperBound) noexcept { _upperBound = upperBound; }

 private:
  unsigned long _lowerBound;
  unsigned long _upperBound;
};
}  // namespace rti1516

#endif
