// gcad run: scripts in one document.
#pragma once

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

int run(Terminal& terminal, const RunOptions& options);

}  // namespace cli
