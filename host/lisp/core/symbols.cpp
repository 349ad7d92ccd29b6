#include "host/lisp/core/symbols.h"

namespace lisp {

const char* const kCoreNames[kCoreCount] = {
    "+",    "-",   "*",   "/",    "1+",   "1-",   "<",    ">",     "<=",    ">=",     "=",    "/=",   "EQ",   "NOT",
    "NULL", "CAR", "CDR", "CAAR", "CADR", "CDAR", "CDDR", "CADDR", "CDDDR", "CADDDR", "CONS", "LIST", "ATOM", "LISTP"};

namespace {

size_t hashOf(TextView name) {
  uint64_t h = 0xcbf29ce484222325;
  for (const GCHAR c : name) h = (h ^ static_cast<uint16_t>(c)) * 0x100000001b3;
  return static_cast<size_t>(h ^ h >> 29);
}

}  // namespace

SymbolTable::SymbolTable(Heap& heap) : m_heap(heap), m_slots(4096) {
  for (size_t i = 0; i < kCoreCount; ++i) add(fromUtf8(kCoreNames[i]), &m_core[i]);
}

size_t SymbolTable::slotOf(TextView upperName) const {
  const size_t mask = m_slots.size() - 1;
  size_t slot = hashOf(upperName) & mask;
  while (m_slots[slot] && m_slots[slot]->text() != upperName) slot = (slot + 1) & mask;
  return slot;
}

void SymbolTable::grow() {
  std::vector<Symbol*> old(m_slots.size() * 2);
  old.swap(m_slots);
  for (Symbol* s : old)
    if (s) m_slots[slotOf(s->text())] = s;
}

Symbol* SymbolTable::add(TextView upperName, Symbol* place) {
  if (m_count * 2 >= m_slots.size()) grow();
  place->name = m_heap.string(upperName).asString();
  // A keyword evaluates to itself.
  if (upperName.size() > 1 && upperName[0] == GC_T(':')) place->value = LispValue::of(place);
  m_slots[slotOf(upperName)] = place;
  ++m_count;
  return place;
}

Symbol* SymbolTable::intern(TextView name) {
  const Text upper = upperCase(name);
  if (Symbol* known = m_slots[slotOf(upper)]) return known;
  m_others.emplace_back();
  return add(upper, &m_others.back());
}

Symbol* SymbolTable::intern(const char* asciiName) { return intern(fromUtf8(asciiName)); }

Symbol* SymbolTable::find(TextView name) const { return m_slots[slotOf(upperCase(name))]; }

TextView symbolName(LispValue symbol) {
  if (symbol.isTrue()) return GC_T("T");
  if (symbol.isNil()) return GC_T("nil");
  return symbol.isCellSymbol() ? symbol.asSymbol()->text() : TextView();
}

}  // namespace lisp
