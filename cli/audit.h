// gcad audit: what is wrong with a drawing, and mending it.
#pragma once

#include "cli/options.h"
#include "cli/terminal.h"

namespace cli {

int audit(Terminal& terminal, const AuditOptions& options);

}  // namespace cli
