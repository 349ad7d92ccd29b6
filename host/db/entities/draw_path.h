// Paths of the curve kernel drawn with the primitives of drawables.
#pragma once

#include "gi/drawable.h"
#include "host/ge/curves/path.h"

namespace gcdraw {

// Bounded spans only: lines and cubics as they are, other curves as cubic arcs that touch them at 16 places a span.
void path(GcGiWorldDraw& draw, const GcGePath& path);

}  // namespace gcdraw
