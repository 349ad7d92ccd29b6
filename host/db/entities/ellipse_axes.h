// Axes of ellipses from conjugate half diameters, and ellipses drawn as cubic Bezier arcs.
#pragma once

#include "ge/point.h"

class GcGiWorldDraw;

namespace gcellipse {

struct Axes {
  GcGeVector3d major;   // the longer half axis
  GcGeVector3d normal;  // unit; zero when the half diameters are parallel
  double ratio = 1;     // shorter to longer
  double shiftRad = 0;  // parameter, in terms of the half diameters, of the end of `major`
};

// The ellipse center + a cos t + b sin t. Half diameters already at right angles with a the longer keep their
// parameters (shift 0).
// Source: t0 = atan2(2 a.b, a.a - b.b) / 2 is where |a cos t + b sin t| is extreme.
Axes principalAxes(const GcGeVector3d& a, const GcGeVector3d& b);

// The part from start to end parameter (end behind start, at most a full turn).
void draw(GcGiWorldDraw& draw, const GcGePoint3d& center, const GcGeVector3d& a, const GcGeVector3d& b, double startRad,
          double endRad);

}  // namespace gcellipse
