#include "single_headers.h"

#include <RTI/Exception.h>

std::wstring onlyExceptionThrowAndCatch() {
  try {
    throw rti1516::InternalError(L"from one header");
  } catch (rti1516::Exception const& e) {
    return e.what();
  }
}
