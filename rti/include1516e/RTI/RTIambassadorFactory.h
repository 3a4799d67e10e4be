#ifndef RTI_RTIambassadorFactory_h
#define RTI_RTIambassadorFactory_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <memory>
#include <string>
#include <vector>

namespace rti1516e {
class RTIambassador;

// Makes unconnected ambassadors of this RTI; connect() says where they go.
class RTI_EXPORT RTIambassadorFactory {
 public:
  RTIambassadorFactory();
  virtual ~RTIambassadorFactory() noexcept;
  // RTIinternalError
  RTI_UNIQUE_PTR<RTIambassador> createRTIambassador();
};
}  // namespace rti1516e

#endif
