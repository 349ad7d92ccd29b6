// Non-uniform rational B-splines: knots and poles, their Bezier pieces, and back.
#pragma once

#include <vector>

#include "host/ge/curves/path.h"

struct GcGeNurbs {
  int degree = 3;
  std::vector<double> knots;        // poles + degree + 1, not falling
  std::vector<GcGePoint3d> points;  // poles, world
  std::vector<double> weights;      // one per pole, or none when all are 1
  bool closed = false, periodic = false;

  // Degree 1 to GcGeSpan::kMostDegree, counts that match, knots that do not fall and do rise between
  // knots[degree] and knots[points.size()], weights above zero, everything finite.
  [[nodiscard]] bool isValid() const;
  [[nodiscard]] double startParam() const { return knots[degree]; }
  [[nodiscard]] double endParam() const { return knots[points.size()]; }
};

// One Bezier span per knot interval that is not empty; the parameter is the knot. Returns false, path untouched,
// when the spline is not valid.
[[nodiscard]] bool gcgePathOfNurbs(const GcGeNurbs& spline, GcGePath& path);

// The part between two parameters of its domain, t0 < t1, its knots as they were; clamped ends.
[[nodiscard]] GcGeNurbs gcgeTrimNurbs(const GcGeNurbs& spline, double t0, double t1);

[[nodiscard]] GcGeNurbs gcgeReverseNurbs(const GcGeNurbs& spline);

// A clamped spline over the path's own parameters (those behind a leap move up to it), of the highest degree among its spans (a line has 1, an arc 2).
// Knots of full multiplicity at corners; one less where the derivative is continuous. Arcs become rational quadratics,
// whose parameter agrees with the path's at the ends of their parts only.
[[nodiscard]] GcGeNurbs gcgeNurbsOfPath(const GcGePath& path);

// The cubic spline through points with chord-length knots; tangents at the ends where given (not zero length), else
// the natural condition. Closed: through the first point again with continuous second derivative.
// Returns false with fewer than two different points.
[[nodiscard]] bool gcgeInterpolate(const std::vector<GcGePoint3d>& points, const GcGeVector3d& startTangent,
                                   const GcGeVector3d& endTangent, bool closed, GcGeNurbs& spline);
