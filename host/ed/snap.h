// Object snap: the characteristic points of the entities near a point.
#pragma once

#include "host/ed/editor.h"

namespace ed {

// The snap point for the modes ("_end,_mid" …: endpoint, midpoint, center, node, quadrant, intersection, insertion,
// perpendicular, tangent, nearest) of the entities within APERTURE pixels of the point. User coordinates. The point
// nearest to the given one wins; nearest counts only where no other mode has a point. Perpendicular and tangent are
// seen from LASTPOINT. False when there is none.
[[nodiscard]] bool snapPoint(Editor& editor, const GcGePoint3d& user, GcView modes, GcGePoint3d& snapped);

}  // namespace ed
