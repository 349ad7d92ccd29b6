// The environment of the process.
#pragma once

#include "host/rx/view.h"

namespace gc {

// False when there is no variable of the name.
bool environmentVariable(GcView name, GcText& value);

}  // namespace gc
