#ifndef RTI_RangeBounds_h
#define RTI_RangeBounds_h

#include <RTI/SpecificConfig.h>

namespace rti1516 {
// The lower and upper bound of a region along one dimension. Both are 0 by default.
class RTI_EXPORT RangeBounds {
 public:
  RangeBounds();
  RangeBounds(unsigned long lowerBound, unsigned long upperBound);
  ~RangeBounds() noexcept;
  RangeBounds(RangeBounds const& rhs);
  RangeBounds& operator=(RangeBounds const& rhs);

  unsigned long getLowerBound() const;
  unsigned long getUpperBound() const;
  void setLowerBound(unsigned long lowerBound);
  void setUpperBound(unsigned long upperBound);

 private:
  unsigned long _lowerBound;
  unsigned long _upperBound;
};
}  // namespace rti1516

#endif
