#pragma once
// Helpers of the draw-control text forms. The readers find the fields of a subclass by
// counting blanks in the whole line, which the viewers' tools rely on, so the counts are
// fixed numbers and do not follow the writers.
#include <cstring>

#include "vistrelControlPdu.h"

namespace vdctext {

/// The text just behind the `count`-th blank from the start, or the end of the text
/// when it has fewer blanks.
inline const char* afterBlanks(const char* text, int count) {
  const char* p = text;
  for (int seen = 0; seen < count; ++p) {
    if (*p == '\0') return p;
    if (*p == ' ') ++seen;
  }
  return p;
}

/// The `count`-th blank counted back from the end of the text, or the start of the text
/// when it has fewer blanks.
inline const char* atBlankFromEnd(const char* text, int count) {
  const char* p = text + std::strlen(text);
  int seen = 0;
  while (p != text) {
    --p;
    if (*p == ' ' && ++seen == count) return p;
  }
  return text;
}

/// A scanned word. A text form never exceeds the text area, so neither does a word.
struct Word {
  static constexpr size_t kSize = DtVistrelControlPdu::kTextSize;
  char text[kSize] = {0};
};
#define VDC_WORD "%399s"
static_assert(Word::kSize == 400, "VDC_WORD must leave room for the terminator");

/// Scan buffer of an entity designator: 63 characters and the terminator.
struct EntityName {
  char text[64] = {0};
};
#define VDC_ENTITY "%63s"

}  // namespace vdctext
