#include "host/plot/path.h"

#include <cmath>

#include "host/rx/math/elementary.h"

namespace gc::plot {

namespace {

double distance(Point a, Point b) { return gc::hypot(b.x - a.x, b.y - a.y); }

// Length of a curve given by its speed over [0, 1]: five-point Gauss rule on `pieces` equal parts.
template <class Speed>
double integrate(const Speed& speed, int pieces) {
  static constexpr double kAt[5] = {-0.9061798459386640, -0.5384693101056831, 0, 0.5384693101056831,
                                    0.9061798459386640};
  static constexpr double kWeight[5] = {0.2369268850561891, 0.4786286704993665, 0.5688888888888889, 0.4786286704993665,
                                        0.2369268850561891};
  double sum = 0;
  for (int piece = 0; piece < pieces; ++piece) {
    for (int i = 0; i < 5; ++i) sum += kWeight[i] * speed((piece + 0.5 + 0.5 * kAt[i]) / pieces);
  }
  return sum / (2 * pieces);
}

double cubicLength(Point a, Point b, Point c, Point d) {
  return integrate(
      [&](double t) {
        const double u = 1 - t;
        const double wa = 3 * u * u, wb = 6 * u * t, wc = 3 * t * t;
        return gc::hypot(wa * (b.x - a.x) + wb * (c.x - b.x) + wc * (d.x - c.x),
                         wa * (b.y - a.y) + wb * (c.y - b.y) + wc * (d.y - c.y));
      },
      4);
}

double quadLength(Point a, Point b, Point c) {
  const auto third = [](Point p, Point q) { return Point{p.x + (q.x - p.x) * 2 / 3, p.y + (q.y - p.y) * 2 / 3}; };
  return cubicLength(a, third(a, b), third(c, b), c);
}

// The arc's ends are turned to its own axes and scaled to the unit circle, where the chord gives the angle.
double arcLength(Point from, const PathStep& arc) {
  if (arc.radiusX <= 0 || arc.radiusY <= 0) return distance(from, arc.to);
  const double c = gc::cos(arc.turnRad), s = gc::sin(arc.turnRad);
  const double dx = arc.to.x - from.x, dy = arc.to.y - from.y;
  const double ux = (c * dx + s * dy) / arc.radiusX, uy = (-s * dx + c * dy) / arc.radiusY;
  const double half = gc::asin(std::fmin(1, gc::hypot(ux, uy) / 2));
  const double sign = arc.growing ? 1 : -1;
  // The chord of a growing arc points a quarter turn ahead of the arc's middle.
  const double middle = gc::atan2(uy, ux) - sign * 1.5707963267948966;
  return integrate(
             [&](double t) {
               const double angle = middle + sign * half * (2 * t - 1);
               return gc::hypot(arc.radiusX * gc::sin(angle), arc.radiusY * gc::cos(angle));
             },
             4) *
         2 * half;
}

}  // namespace

double lengthOf(const Path& path) {
  double length = 0;
  Point at, start;
  for (const PathStep& step : path.steps()) {
    switch (step.kind) {
      case PathStep::kMove: start = step.to; break;
      case PathStep::kLine: length += distance(at, step.to); break;
      case PathStep::kQuad: length += quadLength(at, step.control1, step.to); break;
      case PathStep::kCubic: length += cubicLength(at, step.control1, step.control2, step.to); break;
      case PathStep::kArc: length += arcLength(at, step); break;
      case PathStep::kClose: length += distance(at, start); break;
    }
    at = step.kind == PathStep::kClose ? start : step.to;
  }
  return length;
}

}  // namespace gc::plot
