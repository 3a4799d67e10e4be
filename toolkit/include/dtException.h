#pragma once
#include <exception>
#include <string>

#include "dtExport.h"

/// DtException is the toolkit's exception. Its text, what(), is "DtException: " followed
/// by the message and then the signature of the function that threw and the name of its
/// source file, which DT_THROW fills in:
///   `DtException: vdc object not found (thrown by <signature> in vdcRemoteDrawer)`
/// The three parts are also kept apart in message(), function() and file().
class DT_EXPORT DtException : public std::exception {
 public:
  DtException(const std::string& message, const std::string& function = std::string(),
              const std::string& file = std::string());

  const char* what() const noexcept override { return text_.c_str(); }
  const std::string& message() const { return message_; }
  const std::string& function() const { return function_; }
  /// Base name of the source file without its directory or extension ("vdcColor").
  const std::string& file() const { return file_; }

 private:
  std::string message_;
  std::string function_;
  std::string file_;
  std::string text_;
};

#define DT_THROW(message) throw DtException((message), __PRETTY_FUNCTION__, __FILE__)
