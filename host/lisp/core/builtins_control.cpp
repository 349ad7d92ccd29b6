// Evaluation and control: special forms, calls of functions, errors, symbols.
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/compiler.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("Evaluation and control")

namespace lisp {

LISP_SPECIAL("quote", SpecialForm::Quote, "(quote x)", "x itself, unevaluated; also written 'x.")
LISP_SPECIAL("setq", SpecialForm::Setq, "(setq [symbol value]...)", "Sets each symbol in turn; the last value.")
LISP_SPECIAL("if", SpecialForm::If, "(if test then [else])", "then if test is not nil, else otherwise.")
LISP_SPECIAL("progn", SpecialForm::Progn, "(progn [form]...)", "Evaluates the forms in turn; the last value.")
LISP_SPECIAL("while", SpecialForm::While, "(while test [form]...)",
             "Repeats the forms while test is not nil; the last value.")
LISP_SPECIAL("and", SpecialForm::And, "(and [form]...)", "T if no form gives nil; stops at the first that does.")
LISP_SPECIAL("or", SpecialForm::Or, "(or [form]...)", "T if some form gives non-nil; stops there.")
LISP_SPECIAL("cond", SpecialForm::Cond, "(cond [(test form ...)]...)",
             "The forms of the first clause whose test is not nil.")
LISP_SPECIAL("lambda", SpecialForm::Lambda, "(lambda (argument ... / local ...) form...)", "A function without a name.")
LISP_SPECIAL("function", SpecialForm::Function, "(function f)", "Like quote, for functions: a lambda is compiled.")
LISP_SPECIAL("defun", SpecialForm::Defun, "(defun name (argument ... / local ...) form...)",
             "Defines a function; its symbol.")
LISP_SPECIAL("defun-q", SpecialForm::DefunQ, "(defun-q name (argument ... / local ...) form...)",
             "Defines a function that is kept as a list.")
LISP_SPECIAL("foreach", SpecialForm::Foreach, "(foreach symbol list [form]...)",
             "Evaluates the forms for each element; the last value.")
LISP_SPECIAL("repeat", SpecialForm::Repeat, "(repeat count [form]...)",
             "Evaluates the forms count times; the last value.")

LISP_NATIVE("eval", "(eval form) -> value", "Evaluates the value of form once more.", 0) {
  const LispValue form = native.slot(0);
  if (form.isCellSymbol()) return native.done(form.asSymbol()->value);
  if (!form.isPair()) return native.done(form);
  return native.tailCall(LispValue::of(static_cast<Object*>(native.vm().functionOfForm(form))), 0);
}

LISP_NATIVE("apply", "(apply function list) -> value", "Calls the function with the elements of list as arguments.",
            0) {
  uint32_t count = 0;
  LispValue rest = native.slot(1);
  if (!rest.isList()) failType(native.vm(), kListp, rest);
  for (; rest.isPair(); rest = rest.tail(), ++count) native.push(rest.head());
  return native.tailCall(native.slot(0), count);
}

LISP_NATIVE("vl-catch-all-apply", "(vl-catch-all-apply function [list]) -> value | error object",
            "Like apply, but an error ends only this call and is returned as an object.", 0) {
  if (native.state() == 1) return native.done(native.result());
  uint32_t count = 0;
  LispValue rest = native.argCount() > 1 ? native.slot(1) : LispValue::nil();
  if (!rest.isList()) failType(native.vm(), kListp, rest);
  for (; rest.isPair(); rest = rest.tail(), ++count) native.push(rest.head());
  native.state() = 1;
  return native.call(native.slot(0), count);
}

LISP_BUILTIN("vl-catch-all-error-p", "(vl-catch-all-error-p x) -> T | nil", "Whether x is an error object.") {
  return LispValue::boolean(objectOf<CatchError>(args.any(), ObjectType::CatchError));
}

LISP_BUILTIN("vl-catch-all-error-message", "(vl-catch-all-error-message error) -> string",
             "The message of an error object.") {
  const LispValue v = args.any();
  const auto* error = objectOf<CatchError>(v, ObjectType::CatchError);
  if (!error) failType(args.vm(), "vl-catch-all-error-p", v);
  return args.newString(TextView(error->message));
}

namespace {

[[noreturn]] void leave(Args& args) {
  LispError error(ErrorKind::Exit, fromUtf8("quit / exit abort"));
  error.silent = args.more();
  if (args.more()) error.exitCode = args.integer();
  throw error;
}

}  // namespace

LISP_BUILTIN("exit", "(exit [code])",
             "Ends the running program with the error \"quit / exit abort\"; a code is handed to the host.") {
  leave(args);
}
LISP_BUILTIN("quit", "(quit [code])", "The same as exit.") { leave(args); }

LISP_BUILTIN("vl-exit-with-error", "(vl-exit-with-error message)", "Ends the running program with that error.") {
  throw LispError(Text(args.string()));
}

LISP_BUILTIN("vl-exit-with-value", "(vl-exit-with-value x)", "Ends the running program; x is the value of the whole.") {
  args.vm().exitValue = args.any();
  throw LispError(ErrorKind::ExitValue, fromUtf8("quit / exit abort"));
}

LISP_BUILTIN("type", "(type x) -> symbol | nil",
             "INT, REAL, STR, LIST, SYM, SUBR, USUBR, EXRXSUBR, FILE, ENAME, PICKSET ...") {
  return args.vm().typeOf(args.any());
}

LISP_BUILTIN("set", "(set symbol value) -> value", "Sets the symbol that the first argument gives.") {
  Symbol* symbol = args.cellSymbol();
  return symbol->value = args.any();
}

LISP_BUILTIN("boundp", "(boundp symbol) -> T | nil", "Whether the symbol's value is not nil.") {
  const LispValue v = args.any();
  if (!v.isSymbol() && !v.isNil()) failType(args.vm(), kSymbolp, v);
  return LispValue::boolean(v.isCellSymbol() ? static_cast<bool>(v.asSymbol()->value) : v.isTrue());
}

LISP_BUILTIN("vl-symbolp", "(vl-symbolp x) -> T | nil", "Whether x is a symbol; nil is none.") {
  return LispValue::boolean(args.any().isSymbol());
}

LISP_BUILTIN("vl-symbol-name", "(vl-symbol-name symbol) -> string", "The symbol's name, in upper case.") {
  return args.newString(symbolName(args.symbol()));
}

LISP_BUILTIN("vl-symbol-value", "(vl-symbol-value symbol) -> value", "The symbol's current value.") {
  const LispValue v = args.symbol();
  return v.isCellSymbol() ? v.asSymbol()->value : v;
}

LISP_BUILTIN("atoms-family", "(atoms-family format [names]) -> list",
             "All defined symbols, as symbols (0) or names (1); with names, which of them are defined.") {
  Vm& vm = args.vm();
  const bool asNames = args.integer() == 1;
  const auto shown = [&](Symbol& s) { return asNames ? args.newString(s.text()) : LispValue::of(&s); };
  ListBuilder out(vm);
  if (args.moreNotNil()) {
    for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail()) {
      if (!rest.head().isString()) failType(vm, kStringp, rest.head());
      Symbol* symbol = vm.symbols().find(rest.head().asString()->view());
      out.add(symbol && symbol->value ? shown(*symbol) : LispValue::nil());
    }
  } else {
    vm.symbols().forEach([&](Symbol& s) {
      if (s.value) out.add(shown(s));
    });
  }
  return out.list();
}

LISP_BUILTIN("gc", "(gc) -> nil", "Asks for a garbage collection at the next safe point.") {
  args.vm().requestCollection();
  return LispValue::nil();
}

LISP_BUILTIN("ver", "(ver) -> string", "Name and version of the interpreter.") {
  return args.newString(TextView(args.vm().environment().version()));
}

LISP_BUILTIN("vmon", "(vmon) -> nil", "Once let functions be moved out of memory; old programs begin with it.") {
  return LispValue::nil();
}

LISP_BUILTIN("vl-load-com", "(vl-load-com) -> nil", "Makes the vl functions available; they always are.") {
  return LispValue::nil();
}

LISP_BUILTIN("vl-load-reactors", "(vl-load-reactors) -> nil",
             "Makes the functions of reactors available; they always are.") {
  return LispValue::nil();
}

LISP_BUILTIN("vl-load-all", "(vl-load-all file) -> nil", "Loads a file into every document.") {
  const LispValue name = args.stringValue();
  for (Vm* vm : args.vm().shared().members) {
    const LispValue load = vm->symbols().intern("LOAD")->value;
    const LispValue copy = vm->heap().string(name.asString()->view());
    vm->call(load, &copy, 1);
  }
  return LispValue::nil();
}

LISP_BUILTIN("vl-bt", "(vl-bt) -> nil", "Prints the functions that are running, innermost first.") {
  Text text = fromUtf8("\nBacktrace:");
  int level = 0;
  for (const TraceLine& line : args.vm().backTrace(1000)) {
    appendAscii(text, "\n[");
    appendInteger(text, level++);
    appendAscii(text, "] ");
    line.function.empty() ? appendAscii(text, "(top level)") : void(text.append(line.function));
    if (line.line) {
      text.append(GC_T("  ")).append(line.file).push_back(GC_T(':'));
      appendInteger(text, line.line);
    }
  }
  text.push_back(GC_T('\n'));
  args.vm().write(text);
  return LispValue::nil();
}

LISP_BUILTIN("defun-q-list-ref", "(defun-q-list-ref symbol) -> list | nil",
             "The list of a function made with defun-q.") {
  const LispValue value = args.cellSymbol()->value;
  return value.isPair() ? value : LispValue::nil();
}

LISP_BUILTIN("defun-q-list-set", "(defun-q-list-set symbol list) -> symbol", "Defines a function by its list.") {
  Symbol* symbol = args.cellSymbol();
  symbol->value = args.list();
  return LispValue::of(symbol);
}

// ---- tracing

namespace {

LispValue quoted(Args& args, LispValue x) {
  return args.cons(LispValue::of(args.vm().names().quote), args.cons(x, LispValue::nil()));
}

// (trace f g) -> (%trace 'f 'g)
LispValue quoteAll(Args& args, const char* function) {
  ListBuilder out(args.vm());
  out.add(LispValue::of(args.vm().symbols().intern(function)));
  for (LispValue rest = args.any().tail(); rest.isPair(); rest = rest.tail()) out.add(quoted(args, rest.head()));
  return out.list();
}

LispValue traceAll(Args& args, bool on) {
  LispValue last;
  while (args.more()) {
    last = args.any();
    if (!last.isCellSymbol()) failType(args.vm(), kSymbolp, last);
    args.vm().traceFunction(last.asSymbol(), on);
  }
  return last;
}

void printTraced(Vm& vm, const char* verb, Symbol* name, LispValue shown) {
  Text line(vm.atLineStart() ? 0 : 1, GC_T('\n'));
  line.append(static_cast<size_t>(vm.printDepth()) * 2, GC_T(' '));
  appendAscii(line, verb);
  name ? void(line.append(name->text())) : appendAscii(line, "-lambda-");
  appendAscii(line, ": ");
  appendValue(line, shown, PrintStyle::Quoted, vm);
  line.push_back(GC_T('\n'));
  vm.write(line);
}

}  // namespace

LISP_MACRO("trace", "(trace function...) -> symbol", "Prints arguments and results of the functions from now on.") {
  return quoteAll(args, "%trace");
}
LISP_MACRO("untrace", "(untrace function...) -> symbol", "Ends trace.") { return quoteAll(args, "%untrace"); }
LISP_BUILTIN("%trace", "(%trace symbol...) -> symbol", "What trace becomes.") { return traceAll(args, true); }
LISP_BUILTIN("%untrace", "(%untrace symbol...) -> symbol", "What untrace becomes.") { return traceAll(args, false); }

// The body of every traced function: the slot behind the arguments holds the stand-in.
LISP_NATIVE("%traced-call", "(%traced-call [x]...) -> value", "Calls a traced function.", 1) {
  Vm& vm = native.vm();
  const auto* standIn = objectOf<Function>(native.extra(0), ObjectType::Function);
  if (native.state() == 1) {
    --vm.printDepth();
    printTraced(vm, "Leaving ", standIn->name, native.result());
    return native.done(native.result());
  }
  ListBuilder shown(vm);
  for (uint32_t i = 0; i < native.argCount(); ++i) shown.add(native.slot(i));
  printTraced(vm, "Entering ", standIn->name, shown.list());
  ++vm.printDepth();
  for (uint32_t i = 0; i < native.argCount(); ++i) native.push(native.slot(i));
  native.state() = 1;
  return native.call(standIn->source, native.argCount());
}

void Vm::traceFunction(Symbol* symbol, bool on) {
  auto* function = objectOf<Function>(symbol->value, ObjectType::Function);
  const bool traced = function && function->paramCount == Function::kAnyCount;
  if (on == traced) return;
  if (!on) {
    symbol->value = function->source;
    return;
  }
  Function* standIn = m_heap.create<Function>(ObjectType::Function);
  standIn->paramCount = Function::kAnyCount;
  standIn->name = symbol;
  standIn->source = symbol->value;
  symbol->value = LispValue::of(static_cast<Object*>(standIn));
}

}  // namespace lisp
