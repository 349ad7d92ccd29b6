// What a person types at the command line, whole: read by the REPL and by the page.
#pragma once

#include <string>
#include <vector>

#include "cli/session.h"

namespace cli {

// Parentheses still open at the end of the text; strings and comments are passed over. An open string counts as one.
int openParentheses(GcView text);

struct EntryResult {
  bool ended = false;  // a program asked to end
  int code = 0;        // then
  std::string trace;   // of an error: message and back trace, lines
};

// Evaluates forms and variables (!NAME), tells about functions (?NAME); anything else is typed at the command line.
EntryResult carryOut(Session& session, GcText entry);

// Everything that has a value and begins so, whatever the case: builtins, functions of plug-ins, the program's own names.
std::vector<std::string> namesBeginningWith(Session& session, const std::string& start);

}  // namespace cli
