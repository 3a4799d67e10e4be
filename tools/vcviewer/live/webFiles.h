#pragma once
// The files of the live page as vcviewer serves them: its HTML, style and script, and the
// 3D library with its orbit controls, all built into the program.
#include <vector>

#include "liveServer.h"

namespace vcviewer {

/// Every file the page needs, by the path it is served under.
std::vector<WebFile> pageFiles();

}  // namespace vcviewer
