// Entities filled in by the groups their descriptions name, for what has no setter.
#pragma once

#include <initializer_list>

#include "db/entity.h"
#include "host/db/describe/group.h"

namespace ed {

// Gives the fields of an entity that is not yet in a drawing the values of the groups, which come in the order of entity
// lists: subclass markers (100) before what they hold.
void fill(GcDbEntity& entity, std::initializer_list<GcDbGroup> groups);

inline GcDbGroup markerGroup(const GCHAR* subclass) { return GcDbGroup::ofText(100, subclass); }

}  // namespace ed
