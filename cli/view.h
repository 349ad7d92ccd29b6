// gcad view: the drawing, the command line and drags on a page in the browser.
#pragma once

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

int view(Terminal& terminal, const RunOptions& run, const ViewOptions& options);

}  // namespace cli
