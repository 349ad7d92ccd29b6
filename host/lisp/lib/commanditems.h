// LISP values as items of a command's input.
#pragma once

#include "host/ed/input/inputitem.h"
#include "host/lisp/core/interpreter.h"

namespace lisplib {

// Strings, numbers, points, entity names, (entity point) lists, selection sets; nil is Esc and the string "\\" (the value
// of pause) leaves the question to the person. False for anything else.
[[nodiscard]] bool toItem(lisp::Vm& vm, lisp::LispValue value, ed::InputItem& item);

}  // namespace lisplib
