// read, load, autoload.
#include "host/lisp/core/builtin.h"
#include "host/lisp/core/file_handle.h"
#include "host/lisp/core/reader.h"
#include "host/lisp/core/vm.h"

LISP_GROUP("Evaluation and control")

namespace lisp {

LISP_BUILTIN("read", "(read [string]) -> value", "The first value written in the string; nil if there is none.") {
  if (!args.more()) return LispValue::nil();
  Reader reader(args.string(), args.vm().heap(), args.vm().symbols());
  LispValue value;
  reader.next(value);
  return value;
}

namespace {

// A file being loaded, form by form.
struct LoadJob {
  Text text;
  FormPositions positions;
  CompileSource source;
  Reader reader;
  LoadJob(Vm& vm, Text content, const Text& name)
      : text(std::move(content)),
        source{std::make_shared<const Text>(name), &positions},
        reader(text, vm.heap(), vm.symbols(), &positions) {}

  // False at the end of the file; an error says where in it.
  bool next(LispValue& form) {
    try {
      return reader.next(form);
    } catch (LispError& error) {
      error.file = *source.file;
      error.line = reader.position().line;
      error.column = reader.position().column;
      throw;
    }
  }
};

const OpaqueType kLoadJobType = {"LOAD", [](uint64_t, Text&) {},
                                 [](uint64_t payload) { delete reinterpret_cast<LoadJob*>(payload); }};

Text findProgram(Vm& vm, TextView name) {
  Text found = vm.environment().findFile(name);
  if (found.empty()) found = vm.environment().findFile(Text(name) + GC_T(".lsp"));
  return found;
}

// Programs that were compiled or scrambled by their makers have bytes near their start that no text has.
bool isProtected(std::string_view bytes) {
  for (const char c : bytes.substr(0, 512))
    if (static_cast<unsigned char>(c) < 32 && c != '\t' && c != '\n' && c != '\r' && c != '\f' && c != '\x1A')
      return true;
  return false;
}

LispValue openJob(Vm& vm, const Text& path) {
  std::string bytes;
  if (!files::readWhole(path, bytes)) return LispValue::nil();
  if (isProtected(bytes))
    fail("protected files cannot be loaded: " + toUtf8(files::baseOf(path) + files::extensionOf(path)));
  Text text = isValidUtf8(bytes) ? decodeSource(bytes) : vm.environment().decodeLegacy(bytes);
  auto* opaque = vm.heap().create<Opaque>(ObjectType::Opaque);
  opaque->kind = &kLoadJobType;
  opaque->payload = reinterpret_cast<uint64_t>(new LoadJob(vm, std::move(text), path));
  return LispValue::of(static_cast<Object*>(opaque));
}

}  // namespace

// Slots: 0 name, 1 what to do when the file is missing; extra 0: the job, extra 1: the last form's value.
LISP_NATIVE("load", "(load name [onfailure]) -> value",
            "Evaluates the forms of a file; the value of the last. Looks for the name, and for name.lsp.", 2) {
  Vm& vm = native.vm();
  if (native.state() == 0) {
    if (!native.slot(0).isString()) failType(vm, kStringp, native.slot(0));
    const TextView name = native.slot(0).asString()->view();
    native.extra(0) = openJob(vm, findProgram(vm, name));
    if (native.extra(0).isNil()) {
      if (native.argCount() < 2) {
        Text message = fromUtf8("LOAD failed: ");
        appendValue(message, native.slot(0), PrintStyle::Quoted, vm);
        throw LispError(std::move(message));
      }
      const LispValue other = native.slot(1);
      const bool calls = objectOf<Subr>(other, ObjectType::Subr) || objectOf<Function>(other, ObjectType::Function) ||
                         (other.isPair() && other.head() == LispValue::of(vm.names().lambda));
      return calls ? native.tailCall(other, 0) : native.done(other);
    }
    native.state() = 1;
  } else {
    native.extra(1) = native.result();
  }
  auto& job = *reinterpret_cast<LoadJob*>(objectOf<Opaque>(native.extra(0), ObjectType::Opaque)->payload);
  LispValue form;
  if (!job.next(form)) return native.done(native.extra(1));
  return native.call(LispValue::of(static_cast<Object*>(compileForm(vm, form, job.source))), 0);
}

// (autoload "file" '("name" ...)) defines each name so that its first call loads the file.
LISP_BUILTIN("autoload", "(autoload file names) -> nil", "Makes commands known that load the file when first called.") {
  Vm& vm = args.vm();
  const LispValue file = args.stringValue();
  for (LispValue rest = args.list(); rest.isPair(); rest = rest.tail()) {
    if (!rest.head().isString()) failType(vm, kStringp, rest.head());
    Text name(GC_T("C:"));
    name.append(rest.head().asString()->view());
    Symbol* symbol = vm.symbols().intern(name);
    if (symbol->value) continue;
    // (() (load file) (name)), callable as it is
    const LispValue load =
        vm.heap().cons(LispValue::of(vm.symbols().intern("LOAD")), args.cons(file, LispValue::nil()));
    const LispValue call = args.cons(LispValue::of(symbol), LispValue::nil());
    symbol->value = args.cons(LispValue::nil(), args.cons(load, args.cons(call, LispValue::nil())));
  }
  return LispValue::nil();
}

}  // namespace lisp
