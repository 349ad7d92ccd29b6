// Picking without a screen: which entity lies at a point.
#pragma once

#include "ge/matrix3d.h"
#include "host/ed/editor.h"

namespace ed {

// The newest entity of the current space that passes within the pick box (PICKBOX pixels of the screen showing the current
// view) of the point, user coordinates. Null when there is none.
[[nodiscard]] GcDbObjectId entityAt(Editor& editor, const GcGePoint3d& user);

// All entities of the current space that pass within that many pixels of the point, newest first.
[[nodiscard]] std::vector<GcDbObjectId> entitiesAt(Editor& editor, const GcGePoint3d& user, int pixels);

// What lies deepest at a point: an entity of the space, an attribute, or a part of a block reference.
struct NestedPick {
  GcDbObjectId entity;                // null when there is none
  GcGeMatrix3d toWorld;               // from the entity's surroundings to the world
  std::vector<GcDbObjectId> parents;  // block references around it, innermost first
};
[[nodiscard]] NestedPick nestedAt(Editor& editor, const GcGePoint3d& user);

}  // namespace ed
