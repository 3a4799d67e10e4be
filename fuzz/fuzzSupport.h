#pragma once
// What every fuzz target shares: output that goes nowhere but is still read byte for
// byte (so a text that runs past its end is caught), and a sink for values the compiler
// must not optimise away.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "dtOutput.h"
#include "dtString.h"
#include "dtVector.h"

namespace fuzzsupport {

// Every value read is folded in here; the sanitizers check each read on the way.
inline volatile std::uint64_t sink;

inline void use(std::uint64_t v) {
  sink = sink * 31 + v;
}
inline void use(double v) {
  std::uint64_t bits;
  std::memcpy(&bits, &v, sizeof bits);
  use(bits);
}
inline void use(const char* text) {
  if (!text) return;
  // strlen walks to the terminator: a text without one is reported by ASan here.
  use(static_cast<std::uint64_t>(std::strlen(text)));
}
inline void use(const DtString& s) {
  use(s.c_str());
}
inline void use(const DtVector64& v) {
  use(v[0]);
  use(v[1]);
  use(v[2]);
}
inline void use(const DtTaitBryan& a) {
  use(a.psi());
  use(a.theta());
  use(a.phi());
}
inline void useBytes(const void* p, std::size_t n) {
  if (!p) return;
  const auto* b = static_cast<const unsigned char*>(p);
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < n; ++i) sum += b[i];
  use(sum);
}

inline void readAll(void*, const char* text, size_t length) {
  useBytes(text, length);
}

// Silences the toolkit's three output streams for the whole run.
inline void silenceOutput() {
  DtInfo.setSink(&readAll, nullptr);
  DtWarn.setSink(&readAll, nullptr);
  DtDumpOut.setSink(&readAll, nullptr);
}

}  // namespace fuzzsupport
