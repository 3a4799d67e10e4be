#ifndef RTI_1516_h
#define RTI_1516_h

// Everything of the 1516-2010 API but the null federate ambassador and the time
// library's classes.
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
#include <RTI/VariableLengthData.h>

namespace rti1516e {
// What an application prints to say which RTI it runs on.
RTI_EXPORT std::wstring rtiName();
RTI_EXPORT std::wstring rtiVersion();
}  // namespace rti1516e

#include <RTI/FederateAmbassador.h>
#include <RTI/RTIambassador.h>
#include <RTI/RTIambassadorFactory.h>

#endif
