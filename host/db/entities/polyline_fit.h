// Curves through and along the vertices of a polyline.
// Units:   drawing units; directions are unit vectors.
// System:  the polyline's plane.
#pragma once

#include <vector>

#include "ge/point.h"

namespace gcfit {

// A vertex that a curve of arcs passes through.
struct Through {
  GcGePoint2d at;
  GcGeVector2d tangent;  // zero length: to be found
};

// Finds the tangents that are not given: of the circle through a vertex and its neighbours; at the ends of an open
// polyline the one that makes a single arc with the neighbour's.
void findTangents(std::vector<Through>& vertices, bool closed);

// One or two arcs from `from` to `to`, leaving and arriving along the tangents: bulges, and the joint of two.
struct Arcs {
  bool isSingle = true;
  GcGePoint2d joint;
  double firstBulge = 0, secondBulge = 0;
};
Arcs arcsBetween(const Through& from, const Through& to);

// Points of the B-spline of the control points, evenly in its parameter: `perSpan` for each span between two control
// points. Open: uniform, from the first control point to the last. Closed: uniform and periodic, without a repeated
// point at its end. The degree is lowered where there are too few points.
std::vector<GcGePoint2d> splinePoints(const std::vector<GcGePoint2d>& control, bool closed, int degree, int perSpan);
// In space: each coordinate is a combination of the control points' with the same weights.
std::vector<GcGePoint3d> splinePoints(const std::vector<GcGePoint3d>& control, bool closed, int degree, int perSpan);

}  // namespace gcfit
