// Coordinate systems as LISP and plug-ins name them.
#pragma once

#include "host/ed/coordinates.h"

namespace ed {

enum class System : uint8_t { World = 0, User = 1, Display = 2, Paper = 3 };

// The system's matrix to world coordinates.
[[nodiscard]] GcGeMatrix3d systemToWorld(const Editor& editor, System system);
// The system of an entity's own coordinates: its normal's plane for planar ones, the world's for others. False when
// there is no such entity.
[[nodiscard]] bool entitySystem(GcDbObjectId entity, GcGeMatrix3d& toWorld);

}  // namespace ed
