// The order in which the entities of a block are drawn, changed.
#pragma once

#include "host/ed/editor.h"

namespace ed {

enum class Place : uint8_t { Front, Back, Above, Under };

// Puts the entities, in the order they have among each other, before or behind all others, or above or under the
// references. False when the block cannot be written to.
bool reorder(GcDbObjectId block, const std::vector<GcDbObjectId>& moved, const std::vector<GcDbObjectId>& references,
             Place place);

}  // namespace ed
