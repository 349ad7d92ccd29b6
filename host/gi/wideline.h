// The area of a line with a width: straight and arc segments, widths that change along a segment, mitred corners.
// Units:   drawing units.
// System:  the plane of the line.
#pragma once

#include <vector>

#include "ge/point.h"

struct GcGiWideVertex {
  GcGePoint2d point;
  double bulge = 0;  // tangent of a quarter of the sweep of the segment that begins here, counter-clockwise positive
  double startWidth = 0;
  double endWidth = 0;
};

// Filled loops, one per segment that has a width; they may overlap, so each is to be filled on its own. Arcs are
// followed within the deviation (greater than 0).
struct GcGiWideArea {
  std::vector<GcGePoint2d> points;
  std::vector<int> counts;
};
GcGiWideArea gcgiWideLine(const GcGiWideVertex* vertices, int count, bool closed, double deviation);
