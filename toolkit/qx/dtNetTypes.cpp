#include "dtNetTypes.h"

void DtNetGlobalObjectDesignator::encode(const char* text, unsigned char* out) {
  std::memset(out, 0, kSize);
  if (!text) return;
  size_t n = strnlen(text, kSize - 1);
  std::memcpy(out, text, n);
}

DtString DtNetGlobalObjectDesignator::decode(const unsigned char* in) {
  const char* text = reinterpret_cast<const char*>(in);
  return DtString(text, strnlen(text, kSize));
}

DtNetGlobalObjectDesignator& DtNetGlobalObjectDesignator::operator=(const DtString& text) {
  encode(text.c_str(), bytes_);
  return *this;
}

DtString DtNetGlobalObjectDesignator::string() const {
  return decode(bytes_);
}
