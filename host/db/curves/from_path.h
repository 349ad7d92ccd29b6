// Entities made from paths.
#pragma once

#include "db/curve.h"
#include "host/ge/curves/path.h"

// A new entity for the path, outside any database: a line, ray, construction line, circle, arc, ellipse, lightweight
// polyline (about the normal, when the path lies in such a plane) or spline, whichever is the simplest; null when
// there is none. The caller owns it.
[[nodiscard]] GcDbCurve* gcdbCurveFromPath(const GcGePath& path, const GcGeVector3d& normal);

// A lightweight polyline even for a single segment; null when the path has other than lines and circular arcs or does not
// lie in a plane of the normal.
[[nodiscard]] GcDbCurve* gcdbPolylineFromPath(const GcGePath& path, const GcGeVector3d& normal);
