// Builtins that call a function for each element. Their lists lie in argument slots and are shortened step by step.
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("Lists")

namespace lisp {

namespace {

// Pushes the next element of each list in slots [1, n) and shortens the lists; false when one is at its end.
bool pushHeads(Native& native, uint32_t n) {
  for (uint32_t i = 1; i < n; ++i)
    if (!native.slot(i).isPair()) return false;
  for (uint32_t i = 1; i < n; ++i) {
    native.push(native.slot(i).head());
    native.slot(i) = native.slot(i).tail();
  }
  return true;
}

void checkLists(Native& native, uint32_t n) {
  for (uint32_t i = 1; i < n; ++i)
    if (!native.slot(i).isList()) failType(native.vm(), kListp, native.slot(i));
}

// Appends to the list kept in extra slots 0 (first cell) and 1 (last cell).
void collect(Native& native, LispValue value) {
  const LispValue cell = native.vm().heap().cons(value, LispValue::nil());
  if (native.extra(1)) {
    native.extra(1).asCons()->tail = cell;
  } else {
    native.extra(0) = cell;
  }
  native.extra(1) = cell;
}

}  // namespace

LISP_NATIVE("mapcar", "(mapcar function list...) -> list",
            "The results of calling the function with the elements of the lists, as far as the shortest goes.", 2) {
  const uint32_t n = native.argCount();
  if (native.state() == 0) {
    checkLists(native, n);
    native.state() = 1;
  } else {
    collect(native, native.result());
  }
  if (!pushHeads(native, n)) return native.done(native.extra(0));
  return native.call(native.slot(0), n - 1);
}

LISP_NATIVE("vl-some", "(vl-some function list...) -> value | nil", "The first result that is not nil.", 0) {
  const uint32_t n = native.argCount();
  if (native.state() == 0) checkLists(native, n);
  if (native.state() == 1 && native.result()) return native.done(native.result());
  native.state() = 1;
  return pushHeads(native, n) ? native.call(native.slot(0), n - 1) : native.done(LispValue::nil());
}

LISP_NATIVE("vl-every", "(vl-every function list...) -> T | nil", "Whether no result is nil.", 0) {
  const uint32_t n = native.argCount();
  if (native.state() == 0) checkLists(native, n);
  if (native.state() == 1 && !native.result()) return native.done(LispValue::nil());
  native.state() = 1;
  return pushHeads(native, n) ? native.call(native.slot(0), n - 1) : native.done(LispValue::t());
}

namespace {

// Keeps the elements whose test equals `wanted`. Extra slot 2 holds the element under test.
StepResult filter(Native& native, bool wanted) {
  if (native.state() == 0) checkLists(native, 2);
  if (native.state() == 1 && static_cast<bool>(native.result()) == wanted) collect(native, native.extra(2));
  native.state() = 1;
  const LispValue rest = native.slot(1);
  if (!rest.isPair()) return native.done(native.extra(0));
  native.extra(2) = rest.head();
  native.slot(1) = rest.tail();
  native.push(rest.head());
  return native.call(native.slot(0), 1);
}

// The rest of the list from the first element whose test equals `wanted`.
StepResult findTail(Native& native, bool wanted) {
  if (native.state() == 0) {
    checkLists(native, 2);
    native.state() = 1;
  } else if (static_cast<bool>(native.result()) == wanted) {
    return native.done(native.slot(1));
  } else {
    native.slot(1) = native.slot(1).tail();
  }
  if (!native.slot(1).isPair()) return native.done(LispValue::nil());
  native.push(native.slot(1).head());
  return native.call(native.slot(0), 1);
}

}  // namespace

LISP_NATIVE("vl-remove-if", "(vl-remove-if function list) -> list", "The elements for which the function gives nil.",
            3) {
  return filter(native, false);
}
LISP_NATIVE("vl-remove-if-not", "(vl-remove-if-not function list) -> list",
            "The elements for which the function gives non-nil.", 3) {
  return filter(native, true);
}
LISP_NATIVE("vl-member-if", "(vl-member-if function list) -> list | nil",
            "The rest of list from the first element for which the function gives non-nil.", 0) {
  return findTail(native, true);
}
LISP_NATIVE("vl-member-if-not", "(vl-member-if-not function list) -> list | nil",
            "The rest of list from the first element for which the function gives nil.", 0) {
  return findTail(native, false);
}

}  // namespace lisp
