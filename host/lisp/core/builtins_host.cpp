// Small calls of the surrounding program that need no drawing.
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/diesel.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("The outside")

namespace lisp {

LISP_BUILTIN("menugroup", "(menugroup name) -> name | nil", "Whether a menu is loaded; there are none, so nil.") {
  (void)args.string();
  return LispValue::nil();
}

LISP_BUILTIN("menucmd", "(menucmd string) -> string | nil",
             "\"M=text\" gives the text with its $(...) macros evaluated.") {
  const TextView text = args.string();
  const size_t at = text.find(GC_T('='));
  if (at == TextView::npos || toUpper(text[0]) != GC_T('M')) return LispValue::nil();
  return args.newString(TextView(evaluateMacro(text.substr(at + 1), args.vm().environment())));
}

LISP_BUILTIN("textscr", "(textscr) -> nil", "Shows the text screen, where there is one.") { return LispValue::nil(); }
LISP_BUILTIN("textpage", "(textpage) -> nil", "Shows the text screen, where there is one.") { return LispValue::nil(); }
LISP_BUILTIN("graphscr", "(graphscr) -> nil", "Shows the drawing, where there is a screen.") {
  return LispValue::nil();
}

}  // namespace lisp
