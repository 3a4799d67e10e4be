#ifndef RTI_RTIambassadorFactory_h
#define RTI_RTIambassadorFactory_h

#include <RTI/Exception.h>
#include <RTI/SpecificConfig.h>
#include <memory>
#include <string>
#include <vector>

namespace rti1516 {
class RTIambassador;

class RTI_EXPORT RTIambassadorFactory {
 public:
  RTIambassadorFactory();
  virtual ~RTIambassadorFactory();

  // Returns std::unique_ptr where the 2000 API returned std::auto_ptr (removed in
  // C++17); keep the result with `auto` to stay source-compatible with both.
  //
  // This RTI takes no arguments; the federation execution name chooses where the
  // federation lives (thread://Name, rti://host:port/Name, or a plain Name for the hub
  // on this host at its default port).
  // BadInitializationParameter, RTIinternalError
  RTI_UNIQUE_PTR<RTIambassador> createRTIambassador(std::vector<std::wstring>& args);
};
}  // namespace rti1516

#endif
