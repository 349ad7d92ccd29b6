#include "cli/repl.h"

#include <algorithm>

#include "cli/exitcode.h"
#include "cli/functions.h"
#include "cli/interrupts.h"
#include "cli/lineeditor.h"
#include "cli/script.h"
#include "cli/server.h"
#include "cli/session.h"
#include "host/lisp/core/builtin.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

std::string lowered(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return text;
}

class NameCompleter final : public LineEditor::Completer {
 public:
  explicit NameCompleter(Session& session) : m_session(session) {}
  // Everything that has a value: builtins, functions of plug-ins, the program's own names.
  std::vector<std::string> complete(const std::string& typed) override {
    std::vector<std::string> found;
    const std::string start = lowered(typed);
    m_session.lisp().vm().symbols().forEach([&](lisp::Symbol& symbol) {
      if (!symbol.value) return;
      const std::string name = lowered(gc::toUtf8(symbol.text()));
      if (name.compare(0, start.size(), start) == 0) found.push_back(name);
    });
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
  }

 private:
  Session& m_session;
};

// Parentheses still open at the end of the text; strings and comments are passed over.
int openParentheses(GcView text) {
  int depth = 0;
  bool inText = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const GCHAR unit = text[i];
    if (inText) {
      if (unit == GC_T('\\')) ++i;
      inText = unit != GC_T('"');
    } else if (unit == GC_T(';')) {
      i = std::min(text.find(GC_T('\n'), i), text.size());
    } else {
      inText = unit == GC_T('"');
      depth += unit == GC_T('(') ? 1 : unit == GC_T(')') ? -1 : 0;
    }
  }
  return inText ? std::max(depth, 1) : depth;
}

// A line that Ctrl-C broke off makes the entry empty; false at the end of input.
bool readEntry(LineEditor& editor, GcText& entry) {
  editor.setPrompt("Command: ");
  entry.clear();
  bool good = editor.readLine(entry);
  editor.setPrompt("       > ");
  for (GcText line; good && openParentheses(entry) > 0;) {
    good = editor.readLine(line);
    if (good) entry += GC_T("\n") + line;
  }
  editor.setPrompt("");
  if (!editor.interrupted()) return good || openParentheses(entry) > 0;
  entry.clear();
  return true;
}

// Evaluates forms and variables (!NAME), tells about functions (?NAME); anything else is typed at the command line.
int carryOut(Session& session, GcText entry, bool& ended) {
  const bool variable = !entry.empty() && entry[0] == GC_T('!');
  if (variable) entry.erase(0, 1);
  if (!entry.empty() && entry[0] == GC_T('?')) {
    const std::string text = functionReference(gc::toUtf8(GcView(entry).substr(1)));
    ap::print(gc::fromUtf8(text.empty() ? "No function has this name.\n" : text));
    return kDone;
  }
  BetweenForms between(session);
  if (!variable && (session.commandLine().isBusy() || entry.empty() || entry[0] != GC_T('('))) {
    session.commandLine().type(entry + GC_T("\n"));
    return kDone;
  }
  const lisp::EvalResult result = session.lisp().evalFormsFrom(entry, GC_T("typed"), &between);
  ended = result.status == lisp::EvalStatus::Exit;
  if (result.status == lisp::EvalStatus::Done)
    ap::print(session.lisp().print(result.value) + GC_T("\n"));
  else if (!ended)
    complain(describeTrace(result));
  return result.exitCode;
}

int interact(Session& session) {
  NameCompleter completer(session);
  const std::unique_ptr<LineEditor> editor = LineEditor::make(&completer);
  session.commandLine().setSource(editor.get());
  const Interrupts interrupts(session.lisp());
  bool ended = false;
  int code = kDone;
  for (GcText entry; !ended && readEntry(*editor, entry);) {
    session.lisp().vm().clearInterrupts();
    Interrupts::forget();
    code = carryOut(session, entry, ended);
    session.lisp().flush();
    session.terminal().flush();
  }
  session.commandLine().setSource(nullptr);
  return ended ? code : static_cast<int>(kDone);
}

}  // namespace

int repl(Terminal& terminal, const RunOptions& options) {
  Session session(terminal, options);
  if (const int code = session.loadPlugIn(); code != kDone) return code;
  if (const int code = session.openDrawing(); code != kDone) return code;
  if (const int code = session.openScreenLog(); code != kDone) return code;
  return options.json ? serve(session) : interact(session);
}

}  // namespace cli
