// Where the lists of one top-level form were written: first cell of a list -> line and column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/lisp/core/value.h"

namespace lisp {

struct SourcePosition {
  uint32_t line = 0;    // from 1; 0: unknown
  uint32_t column = 0;  // from 1, in UTF-16 units
};

class FormPositions {
 public:
  void clear();
  void set(const Cons* list, SourcePosition at);
  SourcePosition find(const Cons* list) const;

 private:
  struct Entry {
    const Cons* list = nullptr;
    SourcePosition at;
  };
  size_t slotOf(const Cons* list) const;

  std::vector<Entry> m_entries = std::vector<Entry>(64);
  size_t m_count = 0;
};

}  // namespace lisp
