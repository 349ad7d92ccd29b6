// gcad repl: LISP and commands, line by line. With --json it serves a program: each line of standard input is a
// request, each line of standard output its answer (cli/server.h).
#pragma once

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

int repl(Terminal& terminal, const RunOptions& options);

}  // namespace cli
