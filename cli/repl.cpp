#include "cli/repl.h"

#include "cli/entry.h"
#include "cli/exitcode.h"
#include "cli/interrupts.h"
#include "cli/lineeditor.h"
#include "cli/server.h"
#include "cli/session.h"
#include "host/rx/text/utf.h"

namespace cli {

namespace {

class NameCompleter final : public LineEditor::Completer {
 public:
  explicit NameCompleter(Session& session) : m_session(session) {}
  std::vector<std::string> complete(const std::string& typed) override { return namesBeginningWith(m_session, typed); }

 private:
  Session& m_session;
};

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
    const EntryResult result = carryOut(session, entry);
    if (!result.trace.empty()) complain(result.trace);
    ended = result.ended;
    code = result.code;
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
  TimeLimit time(options.timeLimitS);
  time.watch(session.lisp());
  const MemoryLimit memory(session.lisp(), options.memoryLimitMB);
  const int code = options.json ? serve(session) : interact(session);
  time.stopWatching();
  return code;
}

}  // namespace cli
