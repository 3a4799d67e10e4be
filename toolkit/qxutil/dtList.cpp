#include "dtList.h"

#include <algorithm>

bool DtList::remove(void* item) {
  auto it = std::find(items_.begin(), items_.end(), item);
  if (it == items_.end()) return false;
  items_.erase(it);
  return true;
}

const DtString& DtGlobalObjectDesignatorList::nth(int index) const {
  static const DtString null;
  return index >= 0 && index < count() ? ids_[static_cast<size_t>(index)] : null;
}
