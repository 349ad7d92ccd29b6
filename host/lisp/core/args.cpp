#include "host/lisp/core/args.h"

#include "host/lisp/core/vm.h"

namespace lisp {

void failType(Vm& vm, std::string_view predicate, LispValue culprit) {
  Text message = fromUtf8("bad argument type: ");
  appendAscii(message, predicate);
  message.push_back(GC_T(' '));
  appendValue(message, culprit, PrintStyle::Quoted, vm);
  throw LispError(std::move(message));
}

LispValue Args::list() {
  const LispValue v = any();
  if (!v.isList()) failType(m_vm, kListp, v);
  return v;
}

LispValue Args::pair() {
  const LispValue v = any();
  if (!v.isPair()) failType(m_vm, kConsp, v);
  return v;
}

LispValue Args::number() {
  const LispValue v = any();
  if (!v.isNumber()) failType(m_vm, kNumberp, v);
  return v;
}

int32_t Args::integer() {
  const LispValue v = any();
  if (!v.isInteger()) failType(m_vm, kFixnump, v);
  return v.asInteger();
}

double Args::real() { return number().asDouble(); }

LispValue Args::stringValue() {
  const LispValue v = any();
  if (!v.isString()) failType(m_vm, kStringp, v);
  return v;
}

TextView Args::string() { return stringValue().asString()->view(); }

LispValue Args::symbol() {
  const LispValue v = any();
  if (!v.isSymbol()) failType(m_vm, kSymbolp, v);
  return v;
}

Symbol* Args::cellSymbol() {
  const LispValue v = any();
  if (!v.isCellSymbol()) failType(m_vm, kSymbolp, v);
  return v.asSymbol();
}

uint64_t Args::entityName() {
  const LispValue v = any();
  const auto* e = objectOf<EntityName>(v, ObjectType::EntityName);
  if (!e) failType(m_vm, kLentityp, v);
  return e->id;
}

SelectionSet& Args::selectionSet() {
  const LispValue v = any();
  auto* s = objectOf<SelectionSet>(v, ObjectType::SelectionSet);
  if (!s) failType(m_vm, kLselsetp, v);
  return *s;
}

File& Args::file() {
  const LispValue v = any();
  auto* f = objectOf<File>(v, ObjectType::File);
  if (!f) failType(m_vm, "streamp", v);
  return *f;
}

int pointOf(LispValue v, double xyz[3]) {
  xyz[2] = 0;
  int count = 0;
  for (; v.isPair() && count < 3; v = v.tail(), ++count) {
    if (!v.head().isNumber()) return 0;
    xyz[count] = v.head().asDouble();
  }
  return count >= 2 && v.isNil() ? count : 0;
}

int Args::point(double xyz[3]) {
  const LispValue v = any();
  const int count = pointOf(v, xyz);
  if (count == 0) {
    Text message = fromUtf8("bad argument type: 2D/3D point: ");
    appendValue(message, v, PrintStyle::Quoted, m_vm);
    throw LispError(std::move(message));
  }
  return count;
}

LispValue Args::cons(LispValue head, LispValue tail) const { return m_vm.heap().cons(head, tail); }

LispValue Args::newString(TextView text) const { return m_vm.heap().string(text); }

LispValue Args::newString(std::string_view ascii) const { return m_vm.heap().string(fromUtf8(ascii)); }

LispValue Args::newPoint(const double* xyz, int count) const {
  LispValue list;
  for (int i = count; i-- > 0;) list = cons(LispValue::real(xyz[i]), list);
  return list;
}

void ListBuilder::add(LispValue value) {
  const LispValue cell = m_vm.heap().cons(value, LispValue::nil());
  m_last ? void(m_last->tail = cell) : void(m_first = cell);
  m_last = cell.asCons();
}

void ListBuilder::closeWith(LispValue tail) { m_last ? void(m_last->tail = tail) : void(m_first = tail); }

}  // namespace lisp
