#include "host/lisp/core/function_cache.h"

namespace lisp {

size_t FunctionCache::slotOf(const Cons* list) const {
  const size_t mask = m_entries.size() - 1;
  size_t slot = (reinterpret_cast<uintptr_t>(list) >> 4) * 0x9E3779B97F4A7C15u >> 20 & mask;
  while (m_entries[slot].list && m_entries[slot].list != list) slot = (slot + 1) & mask;
  return slot;
}

Function* FunctionCache::find(const Cons* list) const { return m_entries[slotOf(list)].function; }

void FunctionCache::insertAll(const std::vector<Entry>& entries, size_t slots) {
  m_entries.assign(slots, Entry{});
  m_count = 0;
  for (const Entry& e : entries) {
    if (!e.list) continue;
    m_entries[slotOf(e.list)] = e;
    ++m_count;
  }
}

void FunctionCache::add(const Cons* list, Function* function) {
  if (m_count * 2 >= m_entries.size()) {
    const std::vector<Entry> old = m_entries;
    insertAll(old, old.size() * 2);
  }
  Entry& entry = m_entries[slotOf(list)];
  if (!entry.list) ++m_count;
  entry = {list, function};
}

bool FunctionCache::markLiving(Marker& marker) const {
  bool any = false;
  for (const Entry& e : m_entries)
    if (e.list && marker.isMarked(LispValue::of(const_cast<Cons*>(e.list))))
      any |= marker.mark(LispValue::of(static_cast<Object*>(e.function)));
  return any;
}

void FunctionCache::dropDead(const Marker& marker) {
  std::vector<Entry> living;
  for (const Entry& e : m_entries)
    if (e.list && marker.isMarked(LispValue::of(const_cast<Cons*>(e.list)))) living.push_back(e);
  if (living.size() == m_count) return;
  size_t slots = 256;
  while (slots < living.size() * 3) slots *= 2;
  insertAll(living, slots);
}

}  // namespace lisp
