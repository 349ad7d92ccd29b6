// The option Edit vertex of PEDIT.
#pragma once

#include "host/ed/command/command.h"

namespace ed {

Task<bool> editPolylineVertices(CommandInput& in, GcDbObjectId id);

}  // namespace ed
