// Runs scripts and expressions as if their top-level forms were typed one after the other.
#pragma once

#include <string>

#include "cli/session.h"

namespace cli {

// Exit code: kDone, kLispError with the back trace told, kCannotRead for a script that is not there, or what (exit N)
// says. `ended` is true when a program ended the run by exit or quit.
int runSource(Session& session, const Source& source, bool& ended);

// The back trace of an error, as lines for standard error.
std::string describeTrace(const lisp::EvalResult& result);

}  // namespace cli
