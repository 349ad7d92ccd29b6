// RECTANG.
#pragma once

#include "host/ed/command/command.h"

namespace ed {

Task<bool> drawRectangle(CommandInput& in);

}  // namespace ed
