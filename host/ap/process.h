// What whoever runs this program lets scripts do: starting other programs (forbidden unless allowed), saving drawings by
// command (not in a dry run).
#pragma once

#include "host/rx/view.h"

namespace ap {

void allowStartingPrograms(bool allowed);
[[nodiscard]] bool mayStartPrograms();
// Nothing is written to drawing files, and what would be counts as done.
void setDryRun(bool dry);
[[nodiscard]] bool isDryRun();

// Starts a program (found along PATH; words behind its name, separated by blanks, are arguments) with one more argument
// unless that is empty, and does not wait for it. No shell is involved. False when there is no such program.
[[nodiscard]] bool startProgram(GcView command, GcView argument);

}  // namespace ap
