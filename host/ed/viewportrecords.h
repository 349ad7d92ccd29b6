// The tiled viewport of the screen and its record, named "*Active", in the drawing's viewport table.
#pragma once

#include "host/ed/editor.h"

namespace ed {

// Writes what the screen shows, and the user coordinate system it works in, to the record; makes the record when the
// drawing has none. Errors: those of opening.
Gcad::ErrorStatus storeViewports(Editor& editor);
// Shows what the record says, and works in its system. Errors: eKeyNotFound without a record, those of opening.
Gcad::ErrorStatus loadViewports(Editor& editor);

}  // namespace ed
