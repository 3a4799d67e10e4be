// The implementation's door into handle values: handles are positions in the FDD tables
// (interaction classes, parameters, ...) or federate numbers.
#ifndef VCRTI_HANDLE_ACCESS_H
#define VCRTI_HANDLE_ACCESS_H

#include <RTI/Handle.h>

namespace rti1516 {

struct HandleAccess {
  template <class H>
  static H make(unsigned long long value) noexcept {
    return H(value);
  }
  template <class H>
  static unsigned long long value(const H& h) noexcept {
    return h._value;
  }
};

}  // namespace rti1516

#endif
