// Hatch patterns by name, as families of parallel lines.
#pragma once

#include <string_view>

#include "db/hatch.h"
#include "host/rx/view.h"

namespace gchatch {

// Lines of the two files of patterns every drawing knows, comments left out; null ends them.
extern const char* const kInchPatterns[];
extern const char* const kIsoPatterns[];

// The lines of a pattern, turned and scaled: one of those every drawing knows, or the one of that name in a file
// NAME.pat that the application finds (beside the drawing, along the support path). A metric drawing takes lengths
// given in inches 25.4 times as large. False for other names, and for a file that is none of patterns.
bool patternLines(GcView name, bool metric, double angleRad, double scale, GcArray<GcDbHatchPatternLine>& lines);

// Parallel lines at a distance, crossed by a second family when doubled.
void userLines(double angleRad, double space, bool isDouble, GcArray<GcDbHatchPatternLine>& lines);

// One line of a pattern file, "angle, x, y, along, across, dash, ...": false when it is malformed.
bool parseFamily(std::string_view text, double angleRad, double scale, GcDbHatchPatternLine& line);

}  // namespace gchatch
