// PEDIT of a mesh of rows and columns.
#pragma once

#include "host/ed/command/command.h"

namespace ed {

Task<bool> editMesh(CommandInput& in, GcDbObjectId id);

}  // namespace ed
