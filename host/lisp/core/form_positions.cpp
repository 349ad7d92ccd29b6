#include "host/lisp/core/form_positions.h"

namespace lisp {

void FormPositions::clear() {
  if (m_count == 0) return;
  m_entries.assign(m_entries.size() > 4096 ? 64 : m_entries.size(), Entry{});
  m_count = 0;
}

size_t FormPositions::slotOf(const Cons* list) const {
  const size_t mask = m_entries.size() - 1;
  size_t slot = (reinterpret_cast<uintptr_t>(list) >> 4) * 0x9E3779B97F4A7C15u >> 20 & mask;
  while (m_entries[slot].list && m_entries[slot].list != list) slot = (slot + 1) & mask;
  return slot;
}

void FormPositions::set(const Cons* list, SourcePosition at) {
  if (m_count * 2 >= m_entries.size()) {
    std::vector<Entry> old(m_entries.size() * 2);
    old.swap(m_entries);
    for (const Entry& e : old)
      if (e.list) m_entries[slotOf(e.list)] = e;
  }
  Entry& entry = m_entries[slotOf(list)];
  if (!entry.list) ++m_count;
  entry = {list, at};
}

SourcePosition FormPositions::find(const Cons* list) const { return m_entries[slotOf(list)].at; }

}  // namespace lisp
