#pragma once
#include <cstddef>
#include <iosfwd>
#include <string>

#include "dtExport.h"

/// DtString is the toolkit's text value: an owned, NUL-terminated character string with
/// value semantics. It converts to `const char*` so it can be handed to C interfaces and
/// printf-style formats directly; an empty DtString is the toolkit's null string.
class DT_EXPORT DtString {
 public:
  DtString() = default;
  DtString(const char* text) : text_(text ? text : "") {}  // NOLINT: implicit by design
  DtString(const char* text, size_t length) : text_(text ? std::string(text, length) : "") {}
  DtString(const std::string& text) : text_(text) {}  // NOLINT: implicit by design

  const char* string() const { return text_.c_str(); }
  const char* c_str() const { return text_.c_str(); }
  operator const char*() const { return text_.c_str(); }
  const std::string& stdString() const { return text_; }

  size_t length() const { return text_.size(); }
  bool isNull() const { return text_.empty(); }
  /// True when the text holds the character `c`.
  bool contains(char c) const { return text_.find(c) != std::string::npos; }

  DtString& operator+=(const DtString& other) {
    text_ += other.text_;
    return *this;
  }
  DtString& operator+=(const char* other) {
    if (other) text_ += other;
    return *this;
  }
  void clear() { text_.clear(); }

  friend bool operator==(const DtString& a, const DtString& b) { return a.text_ == b.text_; }
  friend bool operator!=(const DtString& a, const DtString& b) { return a.text_ != b.text_; }
  friend bool operator==(const DtString& a, const char* b) { return a.text_ == (b ? b : ""); }
  friend bool operator!=(const DtString& a, const char* b) { return !(a == b); }
  friend bool operator==(const char* a, const DtString& b) { return b == a; }
  friend bool operator!=(const char* a, const DtString& b) { return !(b == a); }
  friend bool operator<(const DtString& a, const DtString& b) { return a.text_ < b.text_; }
  friend DtString operator+(const DtString& a, const DtString& b) {
    return DtString(a.text_ + b.text_);
  }

 private:
  std::string text_;
};

DT_EXPORT std::ostream& operator<<(std::ostream& out, const DtString& s);
