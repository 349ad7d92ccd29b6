// The arguments of a builtin, read in order. The first wrong one raises the dialect's error.
#pragma once

#include "host/lisp/core/error.h"
#include "host/lisp/core/objects.h"

namespace lisp {

class Vm;

// "bad argument type: <predicate> <culprit>", the culprit printed as prin1 does.
[[noreturn]] void failType(Vm& vm, std::string_view predicate, LispValue culprit);
inline constexpr std::string_view kNumberp = "numberp:";
inline constexpr std::string_view kFixnump = "fixnump:";
inline constexpr std::string_view kStringp = "stringp";
inline constexpr std::string_view kConsp = "consp";
inline constexpr std::string_view kListp = "listp";
inline constexpr std::string_view kSymbolp = "symbolp";
inline constexpr std::string_view kLentityp = "lentityp";
inline constexpr std::string_view kLselsetp = "lselsetp";

class Args {
 public:
  Args(Vm& vm, const LispValue* values, uint32_t count) : m_vm(vm), m_values(values), m_count(count) {}

  uint32_t count() const { return m_count; }
  // Whether another argument is there / is there and not nil.
  bool more() const { return m_at < m_count; }
  bool moreNotNil() const { return more() && m_values[m_at]; }
  LispValue operator[](uint32_t i) const { return i < m_count ? m_values[i] : LispValue::nil(); }
  const LispValue* values() const { return m_values; }

  // Each takes the next argument; a missing one counts as nil.
  LispValue any() { return m_at < m_count ? m_values[m_at++] : LispValue::nil(); }
  void skip() { ++m_at; }
  LispValue peek() const { return (*this)[m_at]; }  // without taking it
  LispValue list();
  LispValue pair();
  LispValue number();
  int32_t integer();
  double real();  // integers count as reals
  TextView string();
  LispValue stringValue();
  LispValue symbol();  // T and the null symbol included
  Symbol* cellSymbol();
  uint64_t entityName();
  SelectionSet& selectionSet();
  File& file();
  // A point of two or three numbers; returns how many. z is 0 for two.
  int point(double xyz[3]);

  Vm& vm() const { return m_vm; }
  LispValue cons(LispValue head, LispValue tail) const;
  LispValue newString(TextView text) const;
  LispValue newString(std::string_view ascii) const;
  LispValue newPoint(const double* xyz, int count) const;

 private:
  Vm& m_vm;
  const LispValue* m_values;
  uint32_t m_count;
  uint32_t m_at = 0;
};

// Builds a list from front to back.
class ListBuilder {
 public:
  explicit ListBuilder(Vm& vm) : m_vm(vm) {}
  void add(LispValue value);
  void closeWith(LispValue tail);  // a dotted or shared tail
  LispValue list() const { return m_first; }

 private:
  Vm& m_vm;
  LispValue m_first;
  Cons* m_last = nullptr;
};

// Reads `v` as a point; 0 when it is none, else the number of coordinates.
int pointOf(LispValue v, double xyz[3]);

}  // namespace lisp
