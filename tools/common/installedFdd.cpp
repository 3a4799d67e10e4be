#include "installedFdd.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>

namespace vctools {

std::string installedFdd() {
  // argv[0] may be a bare name found on PATH or a symbolic link; the kernel knows the file.
  char self[PATH_MAX];
  const ssize_t n = ::readlink("/proc/self/exe", self, sizeof self - 1);
  if (n <= 0) return {};
  const std::string exe(self, static_cast<std::size_t>(n));
  const auto slash = exe.rfind('/');
  if (slash == std::string::npos) return {};
  const std::string fdd = exe.substr(0, slash + 1) + VC_FDD_FROM_BINDIR;
  // Shown in --help: the plain path reads better than one through bin/..
  char resolved[PATH_MAX];
  const std::string own = ::realpath(fdd.c_str(), resolved) ? std::string(resolved) : fdd;
  // The 1516-2010 flavour's modules that ours builds on, in the same folder, first.
  const std::string folder = own.substr(0, own.rfind('/') + 1);
  std::string all;
  const std::string before = VC_MODULES_BEFORE;
  for (std::size_t from = 0, comma; (comma = before.find(',', from)) != std::string::npos;
       from = comma + 1)
    all += folder + before.substr(from, comma - from) + ",";
  return all + own;
}

}  // namespace vctools
