#include "host/ed/described.h"

#include "host/db/describe/fieldio.h"

namespace ed {

void fill(GcDbEntity& entity, std::initializer_list<GcDbGroup> groups) {
  GcDbFieldReader reader(entity, GcDb::kDHL_Current);
  for (const GcDbGroup& group : groups) static_cast<void>(reader.take(group));
}

}  // namespace ed
