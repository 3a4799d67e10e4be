#include "text.h"

#include <cstdint>

namespace vcrti {

std::string toUtf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (wchar_t wc : text) {
    auto c = static_cast<std::uint32_t>(wc);
    if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

std::wstring fromUtf8(std::string_view text) {
  std::wstring out;
  out.reserve(text.size());
  std::size_t i = 0;
  const std::size_t n = text.size();
  while (i < n) {
    auto b = static_cast<unsigned char>(text[i]);
    std::uint32_t c;
    std::size_t extra;
    std::uint32_t min;
    if (b < 0x80) {
      c = b;
      extra = 0;
      min = 0;
    } else if ((b & 0xE0) == 0xC0) {
      c = b & 0x1F;
      extra = 1;
      min = 0x80;
    } else if ((b & 0xF0) == 0xE0) {
      c = b & 0x0F;
      extra = 2;
      min = 0x800;
    } else if ((b & 0xF8) == 0xF0) {
      c = b & 0x07;
      extra = 3;
      min = 0x10000;
    } else {
      out += wchar_t(0xFFFD);
      ++i;
      continue;
    }
    if (extra && i + extra >= n) {
      out += wchar_t(0xFFFD);
      break;
    }
    bool ok = true;
    for (std::size_t k = 1; k <= extra; ++k) {
      auto cb = static_cast<unsigned char>(text[i + k]);
      if ((cb & 0xC0) != 0x80) {
        ok = false;
        break;
      }
      c = (c << 6) | (cb & 0x3F);
    }
    if (!ok) {
      out += wchar_t(0xFFFD);
      ++i;
      continue;
    }
    if (c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    out += static_cast<wchar_t>(c);
    i += extra + 1;
  }
  return out;
}

std::wstring printable(std::wstring_view text) {
  static const wchar_t digits[] = L"0123456789abcdef";
  std::wstring out;
  out.reserve(text.size());
  for (wchar_t c : text) {
    const auto u = static_cast<std::uint32_t>(c);
    if (u < 0x20 || (u >= 0x7F && u <= 0x9F)) {
      out += L"\\x";
      out += digits[u >> 4];
      out += digits[u & 15];
    } else {
      out += c;
    }
  }
  return out;
}

}  // namespace vcrti
