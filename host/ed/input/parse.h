// Typed numbers, angles and points. Lengths in drawing units, angles to radians, points in user coordinates.
#pragma once

#include "ge/point.h"
#include "host/ed/editor.h"

namespace ed {

// A decimal number, a fraction or a mixed number ("2-1/2"), feet and inches ("1'-6 1/2\"") as inches.
[[nodiscard]] bool parseLength(GcView text, double& value);
[[nodiscard]] bool parseInteger(GcView text, int32_t& value);

// An angle in the drawing's units (AUNITS) or with a suffix: 30, 45d30'15", 50g, 1.5r. `fromBase` counts it from
// ANGBASE in the direction ANGDIR, as positions are; without it the angle is a plain difference.
[[nodiscard]] bool parseAngle(Editor& editor, GcView text, bool fromBase, double& radians);

// x,y[,z]  @x,y[,z]  dist<angle  @dist<angle  @  *x,y[,z] (world). Relative forms start at `base`.
[[nodiscard]] bool parsePoint(Editor& editor, GcView text, const GcGePoint3d& base, GcGePoint3d& point);

}  // namespace ed
