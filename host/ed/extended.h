// Extended data of objects, by application.
#pragma once

#include <initializer_list>
#include <vector>

#include "host/db/describe/group.h"
#include "host/ed/editor.h"

namespace ed {

// Replaces what the application keeps with the object; an empty list takes it away. The application is registered where
// the drawing does not know it. False when the object refuses.
bool setExtended(GcDbObjectId id, const GCHAR* application, std::initializer_list<GcDbGroup> groups);

// The texts (1000) and numbers (1070, 1071) the application keeps with the object, in their order.
struct ExtendedValues {
  std::vector<GcText> texts;
  std::vector<int64_t> numbers;
};
[[nodiscard]] ExtendedValues extendedOf(GcDbObjectId id, const GCHAR* application);

}  // namespace ed
