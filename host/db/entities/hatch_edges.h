// Edges of hatch loops: made from curves, turned round, put in order, and as geometry.
// System:  the hatch's own plane, as X and Y.
#pragma once

#include "db/hatch.h"
#include "host/ge/curves/path.h"

class GcDbEntity;

namespace gchatch {

// The same edge followed from its end.
void reverse(GcDbHatchEdge& edge);
GcGePoint2d startOf(const GcDbHatchEdge& edge);
GcGePoint2d endOf(const GcDbHatchEdge& edge);
// Appends the edge to a path; nothing for a spline that is none.
void appendTo(GcGePath& path, const GcDbHatchEdge& edge);
// The whole loop.
GcGePath pathOf(const GcDbHatchLoop& loop);

// Edges along a curve of the drawing, as seen along the normal of the hatch's plane; or, for a closed polyline that is
// to be a loop by itself (`alone`), vertices. False for what bounds nothing.
bool appendCurve(GcDbEntity& entity, const GcGeVector3d& normal, bool alone, GcDbHatchLoop& loop);

// The loop along a closed path, as it looks along the normal: vertices for lines and circular arcs, else edges. False for
// a path without end.
bool appendPath(const GcGePath& path, const GcGeVector3d& normal, GcDbHatchLoop& loop);

// Orders and turns the edges so that each begins where the one before ends. `pieces` says how many edges each curve
// gave: they stay together. Closed curves stay rings of their own. False when what is left open does not close.
bool chain(GcArray<GcDbHatchEdge>& edges, const GcArray<int>& pieces);

}  // namespace gchatch
