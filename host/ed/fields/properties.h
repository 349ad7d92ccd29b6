// Properties of objects as fields name them: Area, Length, Layer, InsertionPoint …
#pragma once

#include "host/ed/fields/format.h"

namespace ed {

// False when the object is gone or has no such property.
[[nodiscard]] bool fieldProperty(Editor& editor, GcDbObjectId id, GcView name, FieldValue& value);

}  // namespace ed
