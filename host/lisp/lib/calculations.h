// Numbers and points between LISP and the geometry calculator.
#pragma once

#include "host/ap/documentpart.h"
#include "host/lisp/core/args.h"

namespace lisplib {

[[nodiscard]] ap::LispNumber numberOf(lisp::LispValue value);
[[nodiscard]] lisp::LispValue valueOf(lisp::Vm& vm, const ap::LispNumber& number);

}  // namespace lisplib
