// Compiled functions of lists that are used as functions: quoted lambdas, defun-q lists, forms given to eval.
// Lists never change, so an entry is good as long as its list lives; the collector drops the others.
#pragma once

#include <vector>

#include "host/lisp/core/heap.h"

namespace lisp {

class FunctionCache {
 public:
  Function* find(const Cons* list) const;
  void add(const Cons* list, Function* function);

  // For the collector: marks functions of marked lists; true when that marked anything new.
  bool markLiving(Marker& marker) const;
  void dropDead(const Marker& marker);

 private:
  struct Entry {
    const Cons* list = nullptr;
    Function* function = nullptr;
  };
  size_t slotOf(const Cons* list) const;
  void insertAll(const std::vector<Entry>& entries, size_t slots);

  std::vector<Entry> m_entries = std::vector<Entry>(256);
  size_t m_count = 0;
};

}  // namespace lisp
