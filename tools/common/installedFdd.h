#pragma once
// Where the tools find the federation object model when --fdd is not given.
#include <string>

namespace vctools {

// The object model installed with the executable that is running: found relative to the
// executable itself (share/vistrelcontrol/fom/VistrelControl.xml beside its bin/, or
// VistrelControl-1516e.xml for the tools of the IEEE 1516-2010 flavour), so that
// an installed tool works wherever its prefix was put and a build tree runs on the copy
// the build lays out the same way. Empty when the executable cannot be located. For the
// 1516-2010 flavour it is a list, separated by commas: the RPR modules installed in
// rpr-fom-2.0/ beside it, then VistrelControl-1516e.xml.
std::string installedFdd();

}  // namespace vctools
