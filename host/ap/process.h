// Starting other programs, which is forbidden unless whoever runs this one has allowed it.
#pragma once

#include "host/rx/view.h"

namespace ap {

void allowStartingPrograms(bool allowed);
[[nodiscard]] bool mayStartPrograms();

// Starts a program (found along PATH; words behind its name, separated by blanks, are arguments) with one more argument
// unless that is empty, and does not wait for it. No shell is involved. False when there is no such program.
[[nodiscard]] bool startProgram(GcView command, GcView argument);

}  // namespace ap
