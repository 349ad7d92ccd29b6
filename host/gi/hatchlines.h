// The lines of a hatch pattern inside loops.
// Units:   drawing units; angles in radians, counter-clockwise.
// System:  the plane of the hatch.
#pragma once

#include <vector>

#include "ge/point.h"

// One family of parallel lines: one goes through the base, the next ones are moved by the offset each.
struct GcGiHatchFamily {
  double angleRad = 0;
  GcGePoint2d base;
  GcGeVector2d offset;
  const double* dashes = nullptr;  // dashes positive, gaps negative, dots zero, beginning at the base; none: solid
  int dashCount = 0;
};

// Appends the visible pieces to `ends`, two points each (equal ones for a dot). Inside is where a line outwards
// crosses the loops an odd number of times; loops are closed by themselves. False, with `ends` as it was, when the
// family is too fine for the area: more than `mostPieces` pieces.
bool gcgiHatchLines(int loopCount, const int* pointCounts, const GcGePoint2d* points, const GcGiHatchFamily& family,
                    int mostPieces, std::vector<GcGePoint2d>& ends);
