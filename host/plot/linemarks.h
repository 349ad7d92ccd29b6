// Letters that stand in the pattern of a linetype.
#pragma once

#include <vector>

#include "db/objectid.h"
#include "gi/drawable.h"
#include "host/plot/path.h"

namespace gc::plot {

// One of the letters' places within one period of the pattern. Lengths are in drawing units before the linetype's scale.
struct LineMark {
  double at = 0;  // from where the pattern's first dash begins
  GcString text;
  GcGiTextStyle style;  // with the height the letters have
  double turnRad = 0;
  bool isAbsolute = false;  // the turn is that of the page, not of the line
  double offsetX = 0;       // along the line and to its left
  double offsetY = 0;
};

std::vector<LineMark> marksOf(GcDbObjectId linetype);

// Where marks of a period lie on a path.
// Units: millimetres on the page.
struct MarkSpacing {
  double period = 0;   // of the pattern as it is fitted to the path
  double scale = 1;    // drawing units to millimetres, the linetype's scale included
  double stretch = 1;  // of places along the path, by fitting
};

// The letters' strokes along every run of the path.
Path markStrokes(const Path& path, const std::vector<LineMark>& marks, const MarkSpacing& spacing);

}  // namespace gc::plot
