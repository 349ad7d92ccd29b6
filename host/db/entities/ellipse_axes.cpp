#include "host/db/entities/ellipse_axes.h"

#include <algorithm>
#include <cmath>

#include "gi/drawable.h"
#include "host/db/entities/planar.h"
#include "host/rx/math/elementary.h"

namespace gcellipse {

Axes principalAxes(const GcGeVector3d& a, const GcGeVector3d& b) {
  Axes axes;
  axes.normal = a.crossProduct(b).normal();
  if (axes.normal.isZeroLength()) return {};
  const double aa = a.lengthSqrd();
  const double bb = b.lengthSqrd();
  const double ab = a.dotProduct(b);
  constexpr double kRightAngle = 1e-12;  // relative to the lengths: rounding of a turn
  const bool square = std::fabs(ab) <= kRightAngle * std::sqrt(aa * bb);
  if (!square)
    axes.shiftRad = 0.5 * gc::atan2(2 * ab, aa - bb);
  else if (bb > aa * (1 + kRightAngle))
    axes.shiftRad = gcplanar::kTwoPi / 4;
  const double c = gc::cos(axes.shiftRad);
  const double s = gc::sin(axes.shiftRad);
  axes.major = axes.shiftRad == 0 ? a : a * c + b * s;
  const GcGeVector3d minor = axes.shiftRad == 0 ? b : b * c - a * s;
  axes.ratio = std::fmin(1.0, minor.length() / axes.major.length());
  return axes;
}

// A cubic arc of sweep w follows the ellipse with handles of 4/3 tan(w/4) of the tangent; at an eighth of a turn
// it lies off by less than 5e-6 of the size.
void draw(GcGiWorldDraw& draw, const GcGePoint3d& center, const GcGeVector3d& a, const GcGeVector3d& b, double startRad,
          double endRad) {
  double span = endRad - startRad;
  if (!(span > 0)) span += gcplanar::kTwoPi;
  constexpr int kMostPieces = 8;
  const int pieces = std::clamp(static_cast<int>(std::ceil(span / (gcplanar::kTwoPi / 8) - 1e-9)), 1, kMostPieces);
  const double step = span / pieces;
  const double handle = 4.0 / 3.0 * gc::tan(step / 4);
  GcGePoint3d points[3 * kMostPieces + 1];
  const auto at = [&](double t) { return center + a * gc::cos(t) + b * gc::sin(t); };
  const auto tangent = [&](double t) { return b * gc::cos(t) - a * gc::sin(t); };
  points[0] = at(startRad);
  for (int i = 0; i < pieces; ++i) {
    const double from = startRad + i * step;
    const double to = startRad + (i + 1) * step;
    points[3 * i + 1] = points[3 * i] + tangent(from) * handle;
    points[3 * i + 3] = at(to);
    points[3 * i + 2] = points[3 * i + 3] - tangent(to) * handle;
  }
  draw.geometry().bezier(3 * pieces + 1, points);
}

}  // namespace gcellipse
