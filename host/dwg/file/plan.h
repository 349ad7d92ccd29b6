// What goes into a file: which objects, in which order, under which type, with which neighbours; and the classes.
#pragma once

#include <deque>
#include <vector>

#include "host/dwg/record/recordcodec.h"

namespace gc::dwg {

struct PlannedObject {
  static constexpr uint32_t kNobody = UINT32_MAX;

  const GcDbObject* object = nullptr;
  const ObjectKind* kind = nullptr;
  uint64_t handle = 0;
  uint32_t type = 0;
  uint32_t previous = kNobody;  // places in the plan of the neighbours in the owner's chain; R13..R2000
  uint32_t next = kNobody;
  EntityLinks::Mode mode = EntityLinks::Mode::Owner;
  bool consecutive = true;
};

struct WritePlan {
  std::vector<PlannedObject> objects;  // by handle
  uint64_t leftOut = 0;                // objects that no record of the version can hold
  std::deque<ObjectKind> kinds;        // of the classes there are; never moved

  [[nodiscard]] EntityLinks linksOf(const PlannedObject& planned) const;
};

// Also numbers the classes of the context and says which objects are left out.
WritePlan planFile(RecordContext& context);

}  // namespace gc::dwg
