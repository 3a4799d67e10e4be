#ifndef RTI_EncodingConfig_h
#define RTI_EncodingConfig_h

#include <utility>
#include <vector>

namespace rti1516e {
// The integer types the encoding helpers hold, by their width in bits.
typedef char Integer8;
typedef short Integer16;
typedef int Integer32;
#if defined(RTI_USE_64BIT_LONGS)
typedef long Integer64;
#else
typedef long long Integer64;
#endif
typedef Integer8 Octet;
// first is the more significant octet.
typedef std::pair<Octet, Octet> OctetPair;
}  // namespace rti1516e

#endif
