#include "host/db/entities/polyline_fit.h"

#include <algorithm>
#include <cmath>

#include "host/rx/math/elementary.h"

namespace gcfit {
namespace {

bool isZero(const GcGeVector2d& v) { return v.x == 0 && v.y == 0; }
GcGeVector2d unit(const GcGeVector2d& v) { return v * (1 / v.length()); }

// The circle through p, q, r touches at q the direction d1 / |d1|^2 + d2 / |d2|^2 (an inversion about q turns the
// circle into the line through the images of p and r).
GcGeVector2d tangentAt(const GcGePoint2d& p, const GcGePoint2d& q, const GcGePoint2d& r) {
  const GcGeVector2d d1 = q - p, d2 = r - q;
  const double s1 = d1.dotProduct(d1), s2 = d2.dotProduct(d2);
  if (s1 == 0 || s2 == 0) return p == r ? GcGeVector2d(1, 0) : unit(r - p);
  const GcGeVector2d sum = d1 * (1 / s1) + d2 * (1 / s2);
  return isZero(sum) ? unit(d1).perpVector() : unit(sum);
}

// The direction at the other end of the one arc that ends along `tangent`.
GcGeVector2d mirrored(const GcGePoint2d& a, const GcGePoint2d& b, const GcGeVector2d& tangent) {
  if (a == b) return tangent;
  const GcGeVector2d chord = unit(b - a);
  return chord * (2 * chord.dotProduct(tangent)) - tangent;
}

double angleBetween(const GcGeVector2d& from, const GcGeVector2d& to) {
  return gc::atan2(from.crossProduct(to), from.dotProduct(to));
}

// The angle between tangent and chord is half of the sweep.
double bulgeFrom(const GcGeVector2d& tangent, const GcGeVector2d& chord) {
  return gc::tan(angleBetween(tangent, chord) / 2);
}

// Both control legs of the two arcs have this length: |v - d (t0 + t1)| = 2 d, as the joint lies half way between the
// legs' ends.
double legLength(const GcGeVector2d& v, const GcGeVector2d& t0, const GcGeVector2d& t1) {
  const double a = 2 * (1 - t0.dotProduct(t1));
  const double b = v.dotProduct(t0 + t1);
  const double c = v.dotProduct(v);
  const double root = std::sqrt(b * b + a * c);
  // The same root in two forms; the sum that does not cancel is taken.
  if (b >= 0) return b + root > 0 ? c / (b + root) : 0;
  return a > 0 ? (root - b) / a : 0;
}

GcGePoint2d deBoor(const std::vector<GcGePoint2d>& points, const std::vector<double>& knots, int degree, int span,
                   double t) {
  std::vector<GcGePoint2d> d(points.begin() + (span - degree), points.begin() + (span + 1));
  for (int r = 1; r <= degree; ++r)
    for (int j = degree; j >= r; --j) {
      const double low = knots[static_cast<size_t>(j + span - degree)];
      const double high = knots[static_cast<size_t>(j + 1 + span - r)];
      const double f = (t - low) / (high - low);
      GcGePoint2d& to = d[static_cast<size_t>(j)];
      to = d[static_cast<size_t>(j - 1)] + (to - d[static_cast<size_t>(j - 1)]) * f;
    }
  return d[static_cast<size_t>(degree)];
}

std::vector<double> clampedKnots(int count, int degree) {
  std::vector<double> knots;
  for (int i = 0; i <= count + degree; ++i) knots.push_back(std::clamp(i - degree, 0, count - degree));
  return knots;
}

}  // namespace

void findTangents(std::vector<Through>& vertices, bool closed) {
  const size_t count = vertices.size();
  if (count < 2) return;
  std::vector<bool> given;
  for (const Through& v : vertices) given.push_back(!isZero(v.tangent));
  for (size_t i = closed ? 0 : 1; i < (closed ? count : count - 1); ++i)
    if (!given[i])
      vertices[i].tangent =
          tangentAt(vertices[(i + count - 1) % count].at, vertices[i].at, vertices[(i + 1) % count].at);
  if (closed) return;
  Through &first = vertices.front(), &last = vertices.back();
  const GcGeVector2d straight = first.at == last.at ? GcGeVector2d(1, 0) : unit(last.at - first.at);
  if (count == 2 && !given[0] && !given[1]) {
    first.tangent = last.tangent = straight;
    return;
  }
  if (!given.front()) first.tangent = mirrored(first.at, vertices[1].at, vertices[1].tangent);
  if (!given.back()) last.tangent = mirrored(vertices[count - 2].at, last.at, vertices[count - 2].tangent);
}

Arcs arcsBetween(const Through& from, const Through& to) {
  constexpr double kSameAngle = 1e-9;
  Arcs arcs;
  const GcGeVector2d chord = to.at - from.at;
  if (isZero(chord)) return arcs;
  const double leaving = angleBetween(from.tangent, chord);
  if (std::fabs(leaving - angleBetween(chord, to.tangent)) < kSameAngle) {
    arcs.firstBulge = gc::tan(leaving / 2);
    return arcs;
  }
  const double leg = legLength(chord, from.tangent, to.tangent);
  const GcGePoint2d a = from.at + from.tangent * leg;
  const GcGePoint2d b = to.at - to.tangent * leg;
  arcs.isSingle = false;
  arcs.joint = a + (b - a) * 0.5;
  arcs.firstBulge = bulgeFrom(from.tangent, arcs.joint - from.at);
  arcs.secondBulge = -bulgeFrom(-to.tangent, arcs.joint - to.at);
  return arcs;
}

std::vector<GcGePoint2d> splinePoints(const std::vector<GcGePoint2d>& control, bool closed, int degree, int perSpan) {
  std::vector<GcGePoint2d> result;
  const int count = static_cast<int>(control.size());
  if (count < 2) return control;
  degree = std::min(degree, closed ? count : count - 1);
  if (!closed) {
    const std::vector<double> knots = clampedKnots(count, degree);
    const int steps = perSpan * (count - 1);
    const int spans = count - degree;
    for (int i = 0; i < steps; ++i) {
      const double t = static_cast<double>(spans) * i / steps;
      result.push_back(deBoor(control, knots, degree, degree + std::min(static_cast<int>(t), spans - 1), t));
    }
    result.push_back(control.back());
    return result;
  }
  // One point before the first, and as many behind the last as the degree needs.
  std::vector<GcGePoint2d> wrapped;
  for (int i = -1; i < count + degree - 1; ++i) wrapped.push_back(control[static_cast<size_t>((i + count) % count)]);
  std::vector<double> knots;
  for (int i = 0; i < count + 2 * degree + 1; ++i) knots.push_back(i);
  for (int i = 0; i < perSpan * count; ++i) {
    const int span = degree + i / perSpan;
    const double t = span + static_cast<double>(i % perSpan) / perSpan;
    result.push_back(deBoor(wrapped, knots, degree, span, t));
  }
  return result;
}

std::vector<GcGePoint3d> splinePoints(const std::vector<GcGePoint3d>& control, bool closed, int degree, int perSpan) {
  std::vector<GcGePoint2d> flat, heights;
  for (const GcGePoint3d& point : control) {
    flat.push_back({point.x, point.y});
    heights.push_back({point.z, 0});
  }
  flat = splinePoints(flat, closed, degree, perSpan);
  heights = splinePoints(heights, closed, degree, perSpan);
  std::vector<GcGePoint3d> points;
  for (size_t i = 0; i < flat.size(); ++i) points.push_back({flat[i].x, flat[i].y, heights[i].x});
  return points;
}

}  // namespace gcfit
