#include "host/db/curves/spline_from_path.h"

GcDbCurve* gcdbSplineFromPath(const GcGePath&) { return nullptr; }
