// The lines of a hatch pattern inside loops.
// Units:   drawing units; angles in radians, counter-clockwise.
// System:  the plane of the hatch, as X and Y.
#pragma once

#include <vector>

#include "ge/point.h"
#include "host/ge/curves/path.h"

// One family of parallel lines: one goes through the base, the next ones are moved by the offset each.
struct GcGiHatchFamily {
  double angleRad = 0;
  GcGePoint2d base;
  GcGeVector2d offset;
  const double* dashes = nullptr;  // dashes positive, gaps negative, dots zero, beginning at the base; none: solid
  int dashCount = 0;
};

// Appends the visible pieces to `ends`, two points each (equal ones for a dot). Inside is where a line outwards
// crosses the loops an odd number of times; loops are closed by a straight line. Lines end on the curves themselves,
// not on chords of them. False, with `ends` as it was, when the family is too fine for the area: more than
// `mostPieces` pieces.
bool gcgiHatchLines(const std::vector<GcGePath>& loops, const GcGiHatchFamily& family, int mostPieces,
                    std::vector<GcGePoint2d>& ends);

// For every loop how many of the others it lies in, judged by its first point.
std::vector<int> gcgiLoopDepths(const std::vector<GcGePath>& loops);
