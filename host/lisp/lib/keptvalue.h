// LISP values kept in the drawing: how one is written as an object of the class vlo_VL.
//
//   40    the reals of the value, in the reverse order of their numbers
//   300   the value as prin1 prints it, with (&VLO-R . n) in place of real number n, and (&VLO-H . "handle") in place
//         of an entity
#pragma once

#include "host/db/describe/group.h"
#include "host/lisp/core/vm.h"

namespace lisplib {

// Whether a value can be kept: numbers, strings, symbols, entities and lists of them, not nested too deep.
[[nodiscard]] bool canBeKept(lisp::LispValue value);
// The groups of a value that can be.
[[nodiscard]] GcDbGroupList groupsOfKept(lisp::Vm& vm, lisp::LispValue value);
// The value of such groups; false when they hold no text or one that cannot be read.
[[nodiscard]] bool keptValue(lisp::Vm& vm, const GcDbGroupList& groups, lisp::LispValue& value);

}  // namespace lisplib
