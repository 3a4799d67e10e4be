#ifndef RTI_RangeBounds_h
#define RTI_RangeBounds_h

#include <RTI/SpecificConfig.h>

namespace rti1516e {
// A region's extent along one dimension, [lower, upper). Default: [0, 0].
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
}  // namespace rti1516e

#endif
