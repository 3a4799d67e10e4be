#pragma once
// A PDU of the toolkit's base class alone, of kind 77, for tests of the buffer machinery
// that no real PDU class should colour.
#include <cstddef>

#include "dtPdu.h"

class KindPdu : public DtPdu {
 public:
  explicit KindPdu(int length, DtBufferPlaceHolder* holder = nullptr) { initPdu(length, holder); }
  KindPdu(const void* bytes, size_t available) { initPdu(bytes, available, nullptr, nullptr); }
  int internalGetPduKind() const override { return 77; }
  unsigned char* exposed(size_t offset, size_t count) const { return writableBytes(offset, count); }
};
