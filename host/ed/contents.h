// What blocks and tables hold, and fields of objects set by their group codes.
#pragma once

#include <initializer_list>
#include <vector>

#include "host/db/describe/group.h"
#include "host/ed/editor.h"

namespace ed {

// The entities of a block in drawing order, and the records of a table; erased ones are left out.
[[nodiscard]] std::vector<GcDbObjectId> entitiesOf(GcDbObjectId block);
[[nodiscard]] std::vector<GcDbObjectId> recordsOf(GcDbObjectId table);
// Those of all blocks of the drawing, layouts among them.
[[nodiscard]] std::vector<GcDbObjectId> entitiesOfAllBlocks(GcDbDatabase& database);

// What the entities cover together, world coordinates; empty when they cover nothing.
[[nodiscard]] GcDbExtents extentsOf(const std::vector<GcDbObjectId>& ids);

// Changes fields that have no setter. False when the object refuses.
bool setGroups(GcDbObjectId id, std::initializer_list<GcDbGroup> groups);

// Calls f with every entity that can be opened for writing as a T.
template <class T, class F>
void forEach(const std::vector<GcDbObjectId>& ids, const F& f) {
  for (const GcDbObjectId id : ids) {
    T* object = nullptr;
    if (gcdbOpenObject(object, id, GcDb::kForWrite) != Gcad::eOk) continue;
    f(*object);
    ignore(object->close());
  }
}

}  // namespace ed
