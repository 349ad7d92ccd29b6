// Arithmetic, comparison and equality of values as the dialect has them: 32-bit integers that wrap, reals, and one
// real among the operands makes the result real.
#pragma once

#include "host/lisp/core/args.h"
#include "host/lisp/core/symbols.h"

namespace lisp {

// id: Add, Subtract, Multiply, Divide.
LispValue arithmetic(Vm& vm, Core id, LispValue left, LispValue right);
// id: Less ... GreaterEqual on numbers or strings; Equal, NotEqual on anything.
bool compare(Vm& vm, Core id, LispValue left, LispValue right);
// The relation = : numbers by value, strings by text, lists by identity.
bool equalAtoms(LispValue left, LispValue right);
// (eq a b): identity, and equality of strings, entity names and numbers of one type.
bool isEq(LispValue left, LispValue right);
// (equal a b fuzz): structure; numbers may differ by `fuzz`. Lists that share their parts can take without end, so the
// program's end is asked for meanwhile.
bool isEqual(Vm& vm, LispValue left, LispValue right, double fuzz = 0.0);

}  // namespace lisp
