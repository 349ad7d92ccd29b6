// New entities in the current space.
#pragma once

#include "host/ed/editor.h"

namespace ed {

// Gives the entity the drawing's current layer, colour, linetype, scale and weight, and appends it to the current
// space. Takes the entity over. A null id when the space refuses it.
GcDbObjectId appendWithDefaults(Editor& editor, GcDbEntity* entity);

}  // namespace ed
