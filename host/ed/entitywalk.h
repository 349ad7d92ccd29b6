// Entities in the order of their creation, sub-entities where they stand.
#pragma once

#include "host/ed/editor.h"

namespace ed {

// The entity after `after`; the first of the drawing for a null id. Behind the last entity of model space comes the
// current layout's paper space. Vertices, attributes and the end of a sequence follow their entity; within a block
// definition the walk ends with its last entity. Erased ones are passed
// over. Null at the end.
[[nodiscard]] GcDbObjectId nextEntity(Editor& editor, GcDbObjectId after);

}  // namespace ed
