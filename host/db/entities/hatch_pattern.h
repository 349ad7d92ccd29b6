// Hatch patterns by name, as families of parallel lines.
#pragma once

#include "db/hatch.h"
#include "host/rx/view.h"

namespace gchatch {

// The lines of a pattern every drawing knows, turned and scaled (millimetres at scale 1). False for other names.
bool patternLines(GcView name, double angleRad, double scale, GcArray<GcDbHatchPatternLine>& lines);

// Parallel lines at a distance, crossed by a second family when doubled.
void userLines(double angleRad, double space, bool isDouble, GcArray<GcDbHatchPatternLine>& lines);

}  // namespace gchatch
