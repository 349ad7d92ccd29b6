// The entities of a block drawn where a transform puts them.
#pragma once

#include "db/database.h"
#include "gi/drawable.h"

namespace gcblock {

// Attribute definitions that stand for a value of their reference are left out. Nothing for an id that is no block.
void drawContent(GcGiWorldDraw& draw, GcDbObjectId block, const GcGeMatrix3d& transform);

}  // namespace gcblock
