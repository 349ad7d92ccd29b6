// Files asked for by name and other programs.
#include "host/ap/paths.h"
#include "host/ap/process.h"
#include "host/ap/profile.h"
#include "host/ed/input/ask.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"

using lisp::LispValue;
using lisplib::hostOf;

LISP_GROUP("The outside")

namespace {

constexpr int kNewFile = 1;       // bits of getfiled
constexpr int kAnyExtension = 4;  // the extension given is only a proposal
constexpr int kFromLibrary = 8;   // the bare name is the answer when the support path leads to the file

// The name with the proposed extension, unless it has one; several proposals are separated by semicolons.
GcText withExtension(GcText name, GcView proposed, int flags) {
  const GcView first = proposed.substr(0, proposed.find(GC_T(';')));
  if (!ap::extensionOf(name).empty() || first.empty() || first == GC_T("*") || (flags & kAnyExtension) != 0)
    return name;
  return name + GC_T(".") + GcText(first);
}

}  // namespace

LISP_BUILTIN(
    "getfiled", "(getfiled title default extension flags) -> string | nil",
    "Asks for a file name; Enter takes the default. Flags: 1 a new file, 4 any extension, 8 search the support "
    "path; without 1 the file must exist.") {
  ed::Editor& editor = hostOf(args.vm()).editor();
  const GcText title(args.string());
  GcText proposed(args.string());
  const GcText extension(args.string());
  const int flags = args.integer();
  ed::Ask ask(ed::Ask::What::Line, "");
  ask.prompt = GC_T("\n") + title + (proposed.empty() ? GcText() : GC_T(" <") + proposed + GC_T(">")) + GC_T(": ");
  args.vm().flush();
  const ed::Answer answer = ed::askPerson(editor, ask);
  if (answer.kind == ed::Answer::Kind::Cancelled) return LispValue::nil();
  const GcText typed = answer.isNone() ? proposed : answer.text;
  if (typed.empty()) return LispValue::nil();
  const GcText name = withExtension(typed, extension, flags);
  if ((flags & kNewFile) != 0) return args.newString(lisp::TextView(name));
  const GcText found = ap::findSupportFile(name, ap::directoryOf(editor.document().fileName()));
  if (found.empty()) return LispValue::nil();
  return args.newString(lisp::TextView((flags & kFromLibrary) != 0 ? name : found));
}

LISP_BUILTIN("startapp", "(startapp program [file]) -> integer | nil",
             "Starts another program and goes on; an error unless starting programs is allowed, nil when it cannot be "
             "started.") {
  const lisp::TextView program = args.string();
  const lisp::TextView file = args.moreNotNil() ? args.string() : lisp::TextView();
  if (!ap::mayStartPrograms()) lisp::fail("starting other programs is not allowed");
  constexpr int kStarted = 33;  // programs test for more than 32
  return ap::startProgram(program, file) ? LispValue::integer(kStarted) : LispValue::nil();
}
