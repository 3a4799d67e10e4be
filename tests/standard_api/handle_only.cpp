#include "single_headers.h"

#include <RTI/Handle.h>

// Handle.h brings Exception.h along: its encode() throws CouldNotEncode.
std::wstring onlyHandleEncodeIntoNothing() {
  rti1516::ParameterHandle h;
  try {
    h.encode(nullptr, 0);
  } catch (rti1516::CouldNotEncode const&) {
    return L"CouldNotEncode";
  }
  return L"nothing thrown";
}
