#pragma once
// The toolkit meets the RTI through one of the two IEEE 1516 C++ APIs, chosen when the
// library is built: the 1516-2000 API (namespace rti1516, libvistrelControlToolkitHLA1516)
// or the 1516-2010 "Evolved" API (namespace rti1516e, libvistrelControlToolkitHLA1516e).
// The two name their handles, value maps and exceptions alike, so the toolkit and the
// library are written once against dtrti and compiled for either; the few calls whose
// shapes differ (connecting, creating and joining, the federate ambassador's callbacks)
// live in dtRtiSession.h.
//
// An application of the Evolved flavour is compiled with VC_HLA_EVOLVED=1 and the Evolved
// API's headers first on its include path; the package's CMake target and pkg-config file
// for that flavour pass both. Built with the other API's headers, the names used through
// dtrti do not exist, and the compiler says so.
#include <RTI/Handle.h>
#include <RTI/Typedefs.h>

#if defined(VC_HLA_EVOLVED) && VC_HLA_EVOLVED
namespace rti1516e {
class RTIambassador;
}
namespace dtrti = rti1516e;
#else
namespace rti1516 {
class RTIambassador;
}
namespace dtrti = rti1516;
#endif
