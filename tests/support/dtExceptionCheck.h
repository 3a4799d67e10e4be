#pragma once
// Checks a DtException completely: its text, the signature of the function that threw
// it and the base name of that function's source file.
#include <gtest/gtest.h>

#include <string>

#include "dtException.h"

namespace vctest {

template <typename Call>
::testing::AssertionResult throwsDtException(Call call, const std::string& message,
                                             const std::string& function, const std::string& file) {
  try {
    call();
  } catch (const DtException& e) {
    if (e.message() != message)
      return ::testing::AssertionFailure() << "message \"" << e.message() << "\"";
    if (e.function().find(function) == std::string::npos)
      return ::testing::AssertionFailure() << "thrown by \"" << e.function() << "\"";
    if (e.file() != file) return ::testing::AssertionFailure() << "thrown in " << e.file();
    // The text alone tells what and where: a log that keeps only what() loses nothing.
    std::string what = e.what();
    if (what != "DtException: " + message + " (thrown by " + e.function() + " in " + file + ")")
      return ::testing::AssertionFailure() << "text \"" << what << "\"";
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << "nothing thrown";
}

}  // namespace vctest
