#include "host/db/entities/hatch_pattern.h"

#include <cmath>

namespace gchatch {
namespace {

constexpr int kMostDashes = 6;
constexpr double kNone = 1e9;  // ends a list of dashes

// A family: angle in degrees, a point of its first line, the step from line to line along and across the lines' own
// direction, dashes; inches at scale 1.
struct Family {
  double angleDeg;
  double x, y;
  double along, across;
  double dashes[kMostDashes] = {kNone, kNone, kNone, kNone, kNone, kNone};
};

constexpr int kMostFamilies = 6;

struct Pattern {
  const GCHAR* name;
  int count;
  Family families[kMostFamilies];
};

// Each figure is worked out from its drawing: ANSI31 is iron's 45 degree lines an eighth of an inch apart, and so on.
constexpr Pattern kPatterns[] = {
    {GC_T("LINE"), 1, {{0, 0, 0, 0, .125}}},
    {GC_T("ANSI31"), 1, {{45, 0, 0, 0, .125}}},
    {GC_T("ANSI32"), 2, {{45, 0, 0, 0, .375}, {45, .176776695, 0, 0, .375}}},
    {GC_T("ANSI33"), 2, {{45, 0, 0, 0, .25}, {45, .176776695, 0, 0, .25, {.125, -.0625, kNone}}}},
    {GC_T("ANSI34"),
     4,
     {{45, 0, 0, 0, .75}, {45, .176776695, 0, 0, .75}, {45, .353553391, 0, 0, .75}, {45, .530330086, 0, 0, .75}}},
    {GC_T("ANSI35"), 2, {{45, 0, 0, 0, .25}, {45, .176776695, 0, 0, .25, {.3125, -.0625, 0, -.0625, kNone}}}},
    {GC_T("ANSI36"), 1, {{45, 0, 0, .21875, .125, {.3125, -.0625, 0, -.0625, kNone}}}},
    {GC_T("ANSI37"), 2, {{45, 0, 0, 0, .125}, {135, 0, 0, 0, .125}}},
    {GC_T("ANSI38"), 2, {{45, 0, 0, 0, .125}, {135, 0, 0, .25, .125, {.3125, -.1875, kNone}}}},
    {GC_T("NET"), 2, {{0, 0, 0, 0, .125}, {90, 0, 0, 0, .125}}},
    {GC_T("NET3"), 3, {{0, 0, 0, 0, .125}, {60, 0, 0, 0, .125}, {120, 0, 0, 0, .125}}},
    {GC_T("ANGLE"), 2, {{0, 0, 0, 0, .275, {.2, -.075, kNone}}, {90, 0, 0, 0, .275, {.2, -.075, kNone}}}},
    {GC_T("BRICK"),
     3,
     {{0, 0, 0, 0, .25}, {90, 0, 0, 0, .5, {.25, -.25, kNone}}, {90, .25, 0, 0, .5, {-.25, .25, kNone}}}},
    {GC_T("BOX"),
     6,
     {{90, 0, 0, 0, 1},
      {90, .25, 0, 0, 1},
      {0, 0, 0, 0, 1, {-.25, .25, kNone}},
      {0, 0, .25, 0, 1, {-.25, .25, kNone}},
      {0, 0, .5, 0, 1, {.25, -.25, kNone}},
      {0, 0, .75, 0, 1, {.25, -.25, kNone}}}},
    {GC_T("CROSS"),
     2,
     {{0, 0, 0, .25, .25, {.125, -.375, kNone}}, {90, .0625, -.0625, .25, .25, {.125, -.375, kNone}}}},
    {GC_T("DASH"), 1, {{0, 0, 0, .125, .125, {.125, -.125, kNone}}}},
    {GC_T("DOTS"), 1, {{0, 0, 0, .03125, .0625, {0, -.0625, kNone}}}},
    {GC_T("EARTH"),
     6,
     {{0, 0, 0, .25, .25, {.25, -.25, kNone}},
      {0, 0, .09375, .25, .25, {.25, -.25, kNone}},
      {0, 0, .1875, .25, .25, {.25, -.25, kNone}},
      {90, .03125, .21875, .25, .25, {.25, -.25, kNone}},
      {90, .125, .21875, .25, .25, {.25, -.25, kNone}},
      {90, .21875, .21875, .25, .25, {.25, -.25, kNone}}}},
    {GC_T("GRATE"), 2, {{0, 0, 0, 0, .03125}, {90, 0, 0, 0, .125}}},
    {GC_T("HEX"),
     3,
     {{0, 0, 0, 0, .216506351, {.125, -.25, kNone}},
      {120, 0, 0, 0, .216506351, {.125, -.25, kNone}},
      {60, .125, 0, 0, .216506351, {.125, -.25, kNone}}}},
    {GC_T("HONEY"),
     3,
     {{0, 0, 0, .1875, .108253175, {.125, -.25, kNone}},
      {120, 0, 0, .1875, .108253175, {.125, -.25, kNone}},
      {60, 0, 0, .1875, .108253175, {-.25, .125, kNone}}}},
    {GC_T("SQUARE"), 2, {{0, 0, 0, 0, .125, {.125, -.125, kNone}}, {90, 0, 0, 0, .125, {.125, -.125, kNone}}}},
    {GC_T("STEEL"), 2, {{45, 0, 0, 0, .125}, {45, 0, .0625, 0, .125}}},
    {GC_T("TRANS"), 2, {{0, 0, 0, 0, .25}, {0, 0, .125, 0, .25, {.125, -.125, kNone}}}},
    {GC_T("TRIANG"),
     3,
     {{60, 0, 0, .1875, .324759526, {.1875, -.1875, kNone}},
      {120, 0, 0, .1875, .324759526, {.1875, -.1875, kNone}},
      {0, -.09375, .162379763, .1875, .324759526, {.1875, -.1875, kNone}}}},
    {GC_T("ZIGZAG"), 2, {{0, 0, 0, .125, .125, {.125, -.125, kNone}}, {90, .125, 0, .125, .125, {.125, -.125, kNone}}}},
};

constexpr double kRadPerDegree = 0.017453292519943295769;
constexpr double kMillimetresPerInch = 25.4;

GcDbHatchPatternLine placed(const Family& family, double angleRad, double scale) {
  GcDbHatchPatternLine line;
  line.angleRad = std::fmod(family.angleDeg * kRadPerDegree + angleRad, 360 * kRadPerDegree);
  const double c = std::cos(angleRad) * scale;
  const double s = std::sin(angleRad) * scale;
  line.baseX = c * family.x - s * family.y;
  line.baseY = s * family.x + c * family.y;
  const double lc = std::cos(line.angleRad) * scale;
  const double ls = std::sin(line.angleRad) * scale;
  line.offsetX = lc * family.along - ls * family.across;
  line.offsetY = ls * family.along + lc * family.across;
  for (const double dash : family.dashes) {
    if (dash == kNone) break;
    line.dashes.append(dash * scale);
  }
  return line;
}

}  // namespace

bool patternLines(GcView name, double angleRad, double scale, GcArray<GcDbHatchPatternLine>& lines) {
  for (const Pattern& pattern : kPatterns) {
    if (!equalNoCase(view(pattern.name), name)) continue;
    lines.clear();
    for (int i = 0; i < pattern.count; ++i)
      lines.append(placed(pattern.families[i], angleRad, scale * kMillimetresPerInch));
    return true;
  }
  return false;
}

void userLines(double angleRad, double space, bool isDouble, GcArray<GcDbHatchPatternLine>& lines) {
  lines.clear();
  lines.append(placed({0, 0, 0, 0, 1}, angleRad, space));
  if (isDouble) lines.append(placed({90, 0, 0, 0, 1}, angleRad, space));
}

}  // namespace gchatch
