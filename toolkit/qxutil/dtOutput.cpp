#include "dtOutput.h"

#include <unistd.h>

#include <cstdarg>
#include <cstring>
#include <string>

DtOutputStream DtInfo(STDOUT_FILENO);
DtOutputStream DtWarn(STDERR_FILENO);
DtOutputStream DtDumpOut(STDOUT_FILENO);

void DtOutputStream::write(const char* text, size_t length) const {
  if (sink_) {
    sink_(user_, text, length);
    return;
  }
  // Standard output may be buffered by stdio elsewhere in the process; going through
  // the same FILE keeps our lines in order with the application's.
  FILE* file = defaultFd_ == STDERR_FILENO ? stderr : stdout;
  std::fwrite(text, 1, length, file);
}

void DtOutputStream::write(const char* text) const {
  write(text, std::strlen(text));
}

void DtOutputStream::operator()(const char* format, ...) const {
  char small[512];
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  int n = std::vsnprintf(small, sizeof small, format, args);
  va_end(args);
  if (n < 0) {
    va_end(again);
    return;
  }
  if (static_cast<size_t>(n) < sizeof small) {
    write(small, static_cast<size_t>(n));
  } else {
    std::string big(static_cast<size_t>(n) + 1, '\0');
    std::vsnprintf(&big[0], big.size(), format, again);
    write(big.data(), static_cast<size_t>(n));
  }
  va_end(again);
}

void DtOutputStream::setSink(Sink newSink, void* user) {
  sink_ = newSink;
  user_ = newSink ? user : nullptr;
}

DtOutputStream& DtOutputStream::operator<<(const char* text) {
  write(text ? text : "");
  return *this;
}
DtOutputStream& DtOutputStream::operator<<(long value) {
  (*this)("%ld", value);
  return *this;
}
DtOutputStream& DtOutputStream::operator<<(double value) {
  (*this)("%f", value);
  return *this;
}

// Every dump line has the same shape: label, one blank, value, newline.
namespace {
void dumpLine(const char* label, const char* value) {
  DtDumpOut("%s %s\n", label ? label : "", value ? value : "");
}
}  // namespace

void DtDumpString(const char* label, const char* text) {
  dumpLine(label, text);
}

void DtDumpEnum(const char* label, const char* name, long value) {
  char text[256];
  std::snprintf(text, sizeof text, "%s (%ld)", name ? name : "", value);
  dumpLine(label, text);
}

void DtDumpInteger(const char* label, long value) {
  char text[32];
  std::snprintf(text, sizeof text, "%ld", value);
  dumpLine(label, text);
}

void DtDumpFloat(const char* label, double value) {
  char text[512];
  std::snprintf(text, sizeof text, "%f", value);
  dumpLine(label, text);
}

void DtDumpBoolean(const char* label, bool value) {
  dumpLine(label, value ? "true" : "false");
}

void DtDumpHexWord(const char* label, unsigned long value) {
  char text[32];
  std::snprintf(text, sizeof text, "0x%08lx", value);
  dumpLine(label, text);
}

void DtDumpHexBytes(const char* label, const void* bytes, size_t count) {
  std::string text;
  const unsigned char* b = static_cast<const unsigned char*>(bytes);
  static const char digits[] = "0123456789abcdef";
  for (size_t i = 0; i < count; ++i) {
    if (i) text += ' ';
    text += digits[b[i] >> 4];
    text += digits[b[i] & 15];
  }
  dumpLine(label, text.c_str());
}

void DtDumpText(const char* text) {
  DtDumpOut.write(text ? text : "");
}
