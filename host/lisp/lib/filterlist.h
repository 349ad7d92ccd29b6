// Filter lists of ssget: ((0 . "LINE,CIRCLE") (-4 . "<OR") … (-4 . "OR>") (-3 ("APP*"))).
#pragma once

#include "host/ed/selectionfilter.h"
#include "host/lisp/core/interpreter.h"

namespace lisplib {

// Raises "bad SSGET list" for an element that is none, an unknown operator or brackets that do not match.
ed::SelectionFilter filterOf(lisp::Vm& vm, lisp::LispValue list);

}  // namespace lisplib
