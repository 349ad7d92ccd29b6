// Runs scripts and expressions as if their top-level forms were typed one after the other.
#pragma once

#include <optional>
#include <string>

#include "cli/session.h"

namespace cli {

// Exit code: kDone, kLispError with the back trace told, kCannotRead for a script that is not there, or what (exit N)
// says. `ended` is true when a program ended the run by exit or quit.
int runSource(Session& session, const Source& source, bool& ended);

// Runs between two forms: what has been printed goes out, queued text runs, undo begins a new group. The forms stay in
// their document; one that a command has opened becomes current behind the last form.
class BetweenForms final : public lisp::FormObserver {
 public:
  explicit BetweenForms(Session& session);
  ~BetweenForms() override;
  BetweenForms(const BetweenForms&) = delete;
  BetweenForms& operator=(const BetweenForms&) = delete;
  bool formDone(lisp::LispValue value) override;

 private:
  Session& m_session;
  ap::Document& m_document;
  std::optional<ap::Document::Use> m_use;
  // Of the document the forms belong to; one of them may open another.
  ed::CommandLine& m_line;
  lisp::Interpreter& m_lisp;
};

// The back trace of an error: "file:line: function", innermost first.
std::vector<std::string> traceLines(const lisp::EvalResult& result);
// The same with the message, as text for standard error.
std::string describeTrace(const lisp::EvalResult& result);

}  // namespace cli
