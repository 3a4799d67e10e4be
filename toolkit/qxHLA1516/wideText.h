#pragma once
// The RTI's names are wide strings; the toolkit's are narrow ASCII.
#include <string>

namespace dtwide {
inline std::wstring widen(const std::string& s) {
  return std::wstring(s.begin(), s.end());
}
inline std::string narrow(const std::wstring& s) {
  std::string out;
  out.reserve(s.size());
  for (wchar_t c : s) out += (c >= 0 && c < 128) ? static_cast<char>(c) : '?';
  return out;
}
}  // namespace dtwide
