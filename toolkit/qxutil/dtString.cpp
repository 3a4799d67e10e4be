#include "dtString.h"

#include <ostream>

std::ostream& operator<<(std::ostream& out, const DtString& s) {
  return out << s.stdString();
}
