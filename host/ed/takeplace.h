// An entity in the place of another.
#pragma once

#include "db/entity.h"

namespace ed {

// The new entity takes over id, handle, place in the drawing order, properties and extended data of the old one, which is
// gone then. False, and the new one still the caller's, for entities with parts of their own.
bool takePlace(GcDbObjectId id, GcDbEntity* made);

}  // namespace ed
