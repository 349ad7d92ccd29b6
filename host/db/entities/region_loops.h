// Closed plane loops that curves make together.
// System:  world.
#pragma once

#include <vector>

#include "db/curve.h"
#include "host/db/entities/modeler_text.h"

namespace gcregion {

// One area per loop, in order of the loop's first curve. Closed curves are loops by themselves; open ones are joined
// where their ends lie within the tolerance (1e-8 of all curves' size and the rounding of coordinates). What stays
// open, crosses itself, lies in no plane or has no area is left out.
std::vector<gcmodeler::PlaneArea> areasOf(const std::vector<const GcDbCurve*>& curves);

}  // namespace gcregion
