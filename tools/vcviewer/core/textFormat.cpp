#include "textFormat.h"

#include <cstdio>

namespace vcviewer {

std::string number(double value) {
  if (value == 0.0) value = 0.0;  // no "-0"
  bool single = static_cast<double>(static_cast<float>(value)) == value;
  char text[40];
  std::snprintf(text, sizeof text, single ? "%.7g" : "%.10g", value);
  return text;
}

std::string vector(const DtVector64& value) {
  return "(" + number(value.x()) + ", " + number(value.y()) + ", " + number(value.z()) + ")";
}

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
    } else if (c < 0x20 || c == 0x7f) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02x", c);
      out += hex;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out + "\"";
}

std::string word(const std::string& text) {
  if (text.empty()) return "\"\"";
  for (unsigned char c : text)
    if (c <= 0x20 || c == '"' || c == '\\' || c == 0x7f) return quoted(text);
  return text;
}

}  // namespace vcviewer
