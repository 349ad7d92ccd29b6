// What goes into a file: which objects, in which order, under which type, with which neighbours; and the classes.
#pragma once

#include <deque>
#include <vector>

#include "host/dwg/record/recordcodec.h"

namespace gc::dwg {

struct PlannedObject {
  const GcDbObject* object = nullptr;
  const ObjectKind* kind = nullptr;
  uint64_t handle = 0;
  uint32_t type = 0;
  EntityLinks links;
};

struct WritePlan {
  std::vector<PlannedObject> objects;  // by handle
  uint64_t leftOut = 0;                // objects that no record of the version can hold
  std::deque<ObjectKind> kinds;        // of the classes there are; never moved
};

// Also numbers the classes of the context and says which objects are left out. Sequences of parts without an end get
// one first, so the database may change.
WritePlan planFile(RecordContext& context);

}  // namespace gc::dwg
