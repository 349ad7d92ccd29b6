// gcad batch: one script over many drawings, each in a process of its own, several at a time.
#pragma once

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

// The exit code: kDone, kUsage, kCannotRead (an input that is not there), kSomeFailed, kInterrupted.
int batch(Terminal& terminal, const BatchOptions& options);

}  // namespace cli
