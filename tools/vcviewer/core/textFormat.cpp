#include "textFormat.h"

#include <cstdio>
#include <cstdlib>

namespace vcviewer {

std::string number(double value) {
  if (value == 0.0) value = 0.0;  // no "-0"
  bool single = static_cast<double>(static_cast<float>(value)) == value;
  char text[40];
  if (!single) {
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
  }
  // Seven digits say most floats, but not all: a geocentric coordinate such as 6378137.5
  // is a float that needs nine to come back as itself.
  for (int digits = 7; digits < 9; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    if (std::strtof(text, nullptr) == static_cast<float>(value)) return text;
  }
  std::snprintf(text, sizeof text, "%.9g", value);
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

size_t utf8Sequence(const unsigned char* s, size_t left, unsigned int& codePoint) {
  unsigned char c = s[0];
  size_t n;
  unsigned int min;
  if (c < 0x80) {
    codePoint = c;
    return 1;
  } else if ((c & 0xE0) == 0xC0) {
    n = 2, min = 0x80, codePoint = c & 0x1F;
  } else if ((c & 0xF0) == 0xE0) {
    n = 3, min = 0x800, codePoint = c & 0x0F;
  } else if ((c & 0xF8) == 0xF0) {
    n = 4, min = 0x10000, codePoint = c & 0x07;
  } else {
    return 0;
  }
  if (left < n) return 0;
  for (size_t i = 1; i < n; ++i) {
    if ((s[i] & 0xC0) != 0x80) return 0;
    codePoint = (codePoint << 6) | (s[i] & 0x3F);
  }
  if (codePoint < min || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
    return 0;
  return n;
}

std::string word(const std::string& text) {
  if (text.empty()) return "\"\"";
  for (unsigned char c : text)
    if (c <= 0x20 || c == '"' || c == '\\' || c == 0x7f) return quoted(text);
  return text;
}

}  // namespace vcviewer
