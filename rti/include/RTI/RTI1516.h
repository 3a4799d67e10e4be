// Everything a federate needs, in one include, in the order the standard API brings it in.
// The null federate ambassador is not part of it: it has a header of its own.
#ifndef RTI_1516_h
#define RTI_1516_h

#define HLA_SPECIFICATION_NAME "1516"
#define HLA_API_MAJOR_VERSION 2
#define HLA_API_MINOR_VERSION 0

#include <RTI/SpecificConfig.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <RTI/Enums.h>
#include <RTI/Exception.h>
#include <RTI/Handle.h>
#include <RTI/LogicalTime.h>
#include <RTI/LogicalTimeFactory.h>
#include <RTI/LogicalTimeInterval.h>
#include <RTI/RangeBounds.h>
#include <RTI/Typedefs.h>

namespace rti1516 {
std::wstring RTI_EXPORT RTIname();
std::wstring RTI_EXPORT RTIversion();
}  // namespace rti1516

#include <RTI/FederateAmbassador.h>
#include <RTI/RTIambassador.h>
#include <RTI/RTIambassadorFactory.h>

#endif
