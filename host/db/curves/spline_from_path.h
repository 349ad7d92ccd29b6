// Spline entities made from paths.
#pragma once

#include "db/curve.h"
#include "host/ge/curves/path.h"

// A new spline for the path, outside any database; null for unbounded paths. The caller owns it.
[[nodiscard]] GcDbCurve* gcdbSplineFromPath(const GcGePath& path);
