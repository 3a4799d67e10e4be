#pragma once
#include <cstddef>
#include <cstdio>

#include "dtExport.h"

/// DtOutputStream is a printf-style output channel whose destination can be redirected.
/// The toolkit has three: DtInfo (information, standard output), DtWarn (warnings,
/// standard error) and DtDumpOut (the lines of the DtDump functions, standard output).
/// An application or a test installs a sink to catch what they print.
class DT_EXPORT DtOutputStream {
 public:
  using Sink = void (*)(void* user, const char* text, size_t length);

  constexpr explicit DtOutputStream(int defaultFd) : defaultFd_(defaultFd) {}
  DtOutputStream(const DtOutputStream&) = delete;
  DtOutputStream& operator=(const DtOutputStream&) = delete;

  /// Formats like printf and writes the result.
  void operator()(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  /// Writes `length` bytes as they are.
  void write(const char* text, size_t length) const;
  void write(const char* text) const;

  /// Sends everything written from now on to `sink`; a null sink restores the default.
  void setSink(Sink newSink, void* user);
  Sink sink() const { return sink_; }
  void* sinkUser() const { return user_; }

  DtOutputStream& operator<<(const char* text);
  DtOutputStream& operator<<(long value);
  DtOutputStream& operator<<(double value);

 private:
  int defaultFd_;
  Sink sink_ = nullptr;
  void* user_ = nullptr;
};

DT_EXPORT extern DtOutputStream DtInfo;
DT_EXPORT extern DtOutputStream DtWarn;
DT_EXPORT extern DtOutputStream DtDumpOut;

// The dump functions print one labelled line each to DtDumpOut, in the one format of
// the toolkit: the label, a blank, the value, a newline.
DT_EXPORT void DtDumpString(const char* label, const char* text);
DT_EXPORT void DtDumpEnum(const char* label, const char* name, long value);
DT_EXPORT void DtDumpInteger(const char* label, long value);
DT_EXPORT void DtDumpFloat(const char* label, double value);
DT_EXPORT void DtDumpBoolean(const char* label, bool value);
DT_EXPORT void DtDumpHexWord(const char* label, unsigned long value);
/// The bytes as two lower-case hexadecimal digits each, separated by blanks.
DT_EXPORT void DtDumpHexBytes(const char* label, const void* bytes, size_t count);
/// A line of text printed as it stands (labels that are whole messages).
DT_EXPORT void DtDumpText(const char* text);
