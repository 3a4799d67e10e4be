#pragma once
// Name tables shared by several PDU families (internal to the library).

namespace vcnames {
/// Name of a draw type ("DtVdcLine"), or null when the number is not one.
const char* drawType(int type);
}  // namespace vcnames
