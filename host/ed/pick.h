// Picking without a screen: which entity lies at a point.
#pragma once

#include "host/ed/editor.h"

namespace ed {

// The newest entity of the current space that passes within the pick box (PICKBOX pixels of a 1080 pixel screen showing
// the current view) of the point, user coordinates. Null when there is none.
[[nodiscard]] GcDbObjectId entityAt(Editor& editor, const GcGePoint3d& user);

// All entities of the current space that pass within that many pixels of the point, newest first.
[[nodiscard]] std::vector<GcDbObjectId> entitiesAt(Editor& editor, const GcGePoint3d& user, int pixels);

}  // namespace ed
