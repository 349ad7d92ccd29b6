// Named groups of entities, in the drawing's dictionary of groups.
#pragma once

#include <vector>

#include "host/ed/editor.h"

class GcDbEntityGroup;

namespace ed {

// Null when the drawing has no group of this name.
[[nodiscard]] GcDbObjectId groupNamed(GcDbDatabase& database, GcView name);
// The group's entities that are not erased, in its order.
[[nodiscard]] std::vector<GcDbObjectId> groupMembers(GcDbObjectId group);
// A new group; an empty name gives an anonymous one. Null when the name is taken or no key.
GcDbObjectId makeGroup(GcDbDatabase& database, GcView name, GcView description,
                       const std::vector<GcDbObjectId>& members);

}  // namespace ed
