// Entries of the host's profile, by name without regard to case: what was set in this process, else the entry of the
// process's environment. "ACAD" is the support path: folders separated by semicolons.
#pragma once

#include <vector>

#include "host/rx/view.h"

namespace ap {

[[nodiscard]] bool profileEntry(GcView name, GcText& value);
void setProfileEntry(GcView name, GcView value);

// The folders of the support path, in order.
[[nodiscard]] std::vector<GcText> supportPath();
// A file by its full name, in the folder `beside` (empty: none), or along the support path; empty when absent. Either
// separator will do.
[[nodiscard]] GcText findSupportFile(GcView name, GcView beside);

}  // namespace ap
