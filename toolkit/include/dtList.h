#pragma once
#include <vector>

#include "dtExport.h"
#include "dtString.h"

/// DtList is the toolkit's ordered list of untyped pointers; it never owns what it holds.
class DT_EXPORT DtList {
 public:
  void add(void* item) { items_.push_back(item); }
  /// Removes the first occurrence of `item`; returns whether it was there.
  bool remove(void* item);
  int count() const { return static_cast<int>(items_.size()); }
  /// The item at `index`, or null outside 0..count()-1.
  void* nth(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<size_t>(index)] : nullptr;
  }
  void clear() { items_.clear(); }

 private:
  std::vector<void*> items_;
};

/// DtGlobalObjectDesignatorList is a list of entity identifiers, as texts.
class DT_EXPORT DtGlobalObjectDesignatorList {
 public:
  DtGlobalObjectDesignatorList() = default;
  DtGlobalObjectDesignatorList(std::initializer_list<DtString> ids) : ids_(ids) {}

  void add(const DtString& id) { ids_.push_back(id); }
  int count() const { return static_cast<int>(ids_.size()); }
  /// The id at `index`, or the null string outside 0..count()-1.
  const DtString& nth(int index) const;
  const DtString& operator[](int index) const { return nth(index); }
  void clear() { ids_.clear(); }

 private:
  std::vector<DtString> ids_;
};
