// gcad plot: pictures of a drawing.
#pragma once

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

int plot(Terminal& terminal, const PlotOptions& options);

}  // namespace cli
