// gcad info: what is in a drawing.
#pragma once

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

int info(Terminal& terminal, const InfoOptions& options);

}  // namespace cli
