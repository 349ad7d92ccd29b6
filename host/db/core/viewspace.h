// What views need of the database: their display system, and how far a space reaches.
#pragma once

#include "db/entity.h"

// From display coordinates (the view's own axes, origin at the target, Z towards the eye) to world coordinates.
GcGeMatrix3d gcdbDisplayToWorld(const GcGePoint3d& target, const GcGeVector3d& direction, double twistRad);

// Of all entities of a block; empty when there are none. Objects that are open for writing are measured all the same.
GcDbExtents gcdbExtentsOf(GcDbObjectId block);
