// Where a closed path in the XY plane crosses equally spaced parallel lines.
#pragma once

#include <cstdint>
#include <vector>

#include "ge/point.h"
#include "host/ge/curves/path.h"

// Line n goes along the unit direction, n times the spacing (which may be negative) to the left of the base.
struct GcGiLevels {
  GcGePoint2d base;
  GcGeVector2d along;
  double spacing = 1;
};

struct GcGiCrossing {
  int64_t level;
  double along;  // from the foot of the base on that line
};

// Appends every crossing; an open path is closed by a straight line. Each line is crossed an even number of times: a
// corner that touches a line counts twice or not at all. False when there are more than `most` crossings.
bool gcgiAppendCrossings(const GcGePath& path, const GcGiLevels& levels, std::size_t most,
                         std::vector<GcGiCrossing>& crossings);
