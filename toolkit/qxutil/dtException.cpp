#include "dtException.h"

namespace {
std::string baseName(const std::string& path) {
  size_t slash = path.find_last_of('/');
  std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  size_t dot = name.find_last_of('.');
  return dot == std::string::npos ? name : name.substr(0, dot);
}

// One line that says what went wrong and where, for a what() printed on its own.
std::string fullText(const std::string& message, const std::string& function,
                     const std::string& file) {
  std::string text = "DtException: " + message;
  if (function.empty() && file.empty()) return text;
  text += " (thrown";
  if (!function.empty()) text += " by " + function;
  if (!file.empty()) text += " in " + file;
  return text + ")";
}
}  // namespace

DtException::DtException(const std::string& message, const std::string& function,
                         const std::string& file)
    : message_(message),
      function_(function),
      file_(baseName(file)),
      text_(fullText(message_, function_, file_)) {}
