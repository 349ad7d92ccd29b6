// The symbols of one interpreter. Names are kept in upper case and compared that way.
// The builtins that the compiler turns into instructions come first, in an array of their own, so that an instruction
// finds out with one comparison whether its symbol still means the builtin.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "host/lisp/core/heap.h"

namespace lisp {

enum class Core : uint8_t {
  Add,
  Subtract,
  Multiply,
  Divide,
  Increment,
  Decrement,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  Equal,
  NotEqual,
  Eq,
  Not,
  Null,
  Car,
  Cdr,
  Caar,
  Cadr,
  Cdar,
  Cddr,
  Caddr,
  Cdddr,
  Cadddr,
  Cons,
  List,
  Atom,
  Listp,
  Count
};
inline constexpr size_t kCoreCount = static_cast<size_t>(Core::Count);
extern const char* const kCoreNames[kCoreCount];

class SymbolTable {
 public:
  explicit SymbolTable(Heap& heap);

  // The symbol of that name, made when new. The name is folded to upper case.
  Symbol* intern(TextView name);
  Symbol* intern(const char* asciiName);
  Symbol* find(TextView name) const;  // null when there is none

  Symbol& core(Core id) { return m_core[static_cast<size_t>(id)]; }
  // Whether the symbol is one the compiler has instructions for.
  bool isCore(const Symbol* s) const { return s >= m_core && s < m_core + kCoreCount; }
  Core coreOf(const Symbol* s) const { return static_cast<Core>(s - m_core); }

  template <class Visit>
  void forEach(Visit visit) {
    for (Symbol* s : m_slots)
      if (s) visit(*s);
  }
  size_t size() const { return m_count; }

 private:
  Symbol* add(TextView upperName, Symbol* place);
  size_t slotOf(TextView upperName) const;
  void grow();

  Heap& m_heap;
  Symbol m_core[kCoreCount];
  std::deque<Symbol> m_others;
  std::vector<Symbol*> m_slots;  // open addressing, a power of two
  size_t m_count = 0;
};

// What (vl-symbol-name s) and the printer show of any symbol, T included.
TextView symbolName(LispValue symbol);

}  // namespace lisp
