// Functions that programs call and that a program without windows cannot have: automation objects, dialog boxes,
// some kinds of reactors. Their names stay unbound, so that a program that looks first finds nothing; a call is an error
// that says why.
#pragma once

#include "host/lisp/core/text.h"

namespace lisplib {

// Why there is no function of this name (upper case); empty when there is no special reason.
[[nodiscard]] const char* reasonUnavailable(lisp::TextView name);

}  // namespace lisplib
