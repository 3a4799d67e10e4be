#include "output.h"

#include <cstdarg>
#include <cstdio>

#include "dtOutput.h"

namespace vcctl {

namespace {

void toStdout(void*, const char* text, size_t length) {
  std::fwrite(text, 1, length, stdout);
  std::fflush(stdout);
}

void toStderr(void*, const char* text, size_t length) {
  std::fflush(stdout);
  std::fwrite(text, 1, length, stderr);
}

}  // namespace

void routeLibraryOutput() {
  DtDumpOut.setSink(&toStdout, nullptr);
  DtInfo.setSink(&toStderr, nullptr);
}

void out(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::vfprintf(stdout, format, args);
  va_end(args);
  std::fflush(stdout);
}

void complain(const char* format, ...) {
  std::fflush(stdout);
  std::fputs("vcctl: ", stderr);
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fputc('\n', stderr);
}

}  // namespace vcctl
