// System variables.
#include "host/ed/variables/variables.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/printer.h"
#include "host/lisp/lib/drawinghost.h"

using lisp::LispValue;

LISP_GROUP("System variables")

namespace {

// A name as text or symbol.
lisp::Text nameArgument(lisp::Args& args) {
  const LispValue value = args.any();
  if (value.isString()) return lisp::Text(value.asString()->view());
  if (value.isCellSymbol()) return lisp::Text(value.asSymbol()->text());
  if (value.isTrue()) return GC_T("T");
  lisp::failType(args.vm(), lisp::kStringp, value);
}

LispValue toLisp(lisp::Args& args, const ed::VariableValue& value) {
  switch (value.kind) {
    case ed::VariableKind::Integer: return LispValue::integer(value.integer);
    case ed::VariableKind::Real: return LispValue::real(value.real);
    case ed::VariableKind::Text: return args.newString(value.text);
    case ed::VariableKind::Point2d: return args.newPoint(value.point, 2);
    case ed::VariableKind::Point3d: return args.newPoint(value.point, 3);
  }
  return LispValue::nil();
}

bool fromLisp(LispValue given, ed::VariableValue& value) {
  double at[3];
  if (given.isInteger()) {
    value = ed::VariableValue::of(given.asInteger());
  } else if (given.isReal()) {
    value = ed::VariableValue::of(given.asReal());
  } else if (given.isString()) {
    value = ed::VariableValue::of(given.asString()->view());
  } else if (lisp::pointOf(given, at) != 0) {
    value = ed::VariableValue::ofPoint(at[0], at[1], at[2]);
  } else {
    return false;
  }
  return true;
}

[[noreturn]] void refuse(lisp::Args& args, const lisp::Text& name, LispValue given) {
  lisp::Text message = lisp::fromUtf8("variable setting rejected: ") + lisp::upperCase(name) + GC_T(" ");
  lisp::appendValue(message, given, lisp::PrintStyle::Quoted, args.vm());
  throw lisp::LispError(std::move(message));
}

}  // namespace

LISP_BUILTIN("getvar", "(getvar name) -> value | nil", "Value of a system variable; nil when there is none.") {
  ed::VariableValue value;
  const lisp::Text name = nameArgument(args);
  return ed::getVariable(lisplib::hostOf(args.vm()).editor(), name, value) ? toLisp(args, value) : LispValue::nil();
}

LISP_BUILTIN("setvar", "(setvar name value) -> value",
             "Sets a system variable. An error for a wrong type or range, and for variables that are read-only.") {
  const lisp::Text name = nameArgument(args);
  const LispValue given = args.any();
  ed::VariableValue value;
  ed::Editor& editor = lisplib::hostOf(args.vm()).editor();
  if (!fromLisp(given, value) || ed::setVariable(editor, name, value) != ed::VariableStatus::Done)
    refuse(args, name, given);
  return given;
}
