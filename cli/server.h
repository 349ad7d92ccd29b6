// The REPL for programs: JSON lines in, JSON lines out.
//
// Request:  {"eval": "(form) …", "input": ["typed line", …]}     input answers prompts and may be left out
// Answer:   {"status": "done" | "error" | "exit" | "cancelled" | "time limit" | "memory limit",
//            "printed": text on the command line, "value": as prin1 shows it, "message": of the error,
//            "trace": ["file:line: function", …], "exit": code, "open": [{"function": name, "objects": [handle, …]}, …]}
// "open" lists the functions that left objects open since the last answer. The service ends with its input, whatever
// programs do: what (exit 3) asks for stands in the answer.
#pragma once

#include "cli/session.h"

namespace cli {

int serve(Session& session);

}  // namespace cli
