#include "tests/ge/curves/any_path.h"

#include <numbers>

namespace {
constexpr double kPi = std::numbers::pi;
}

AnyPath::AnyPath(uint32_t seed) : m_engine(seed * 2654435761u + 17) {}

double AnyPath::between(double low, double high) {
  return low + (high - low) * (static_cast<double>(m_engine() >> 11) * 0x1p-53);
}
int AnyPath::upTo(int most) { return static_cast<int>(m_engine() % static_cast<uint64_t>(most + 1)); }
GcGePoint3d AnyPath::point(double reach) {
  const double x = between(-reach, reach), y = between(-reach, reach), z = between(-reach, reach);
  return {x, y, z};
}
GcGeVector3d AnyPath::unit() {
  for (;;) {
    const GcGeVector3d v = point(1).asVector();
    if (v.length() > 0.1 && v.length() < 1) return v / v.length();
  }
}

GcGePath AnyPath::line() {
  const GcGePoint3d a = point(10), b = point(10);
  GcGePath path(a);
  path.addLine(a, b, 0, a.distanceTo(b));
  return path;
}

GcGePath AnyPath::arc() {
  const GcGePoint3d center = point(5);
  const double radius = between(0.5, 8), start = between(0, 2 * kPi), sweep = between(0.1, 6.1);
  GcGePath path(center);
  path.addArc(center, {radius, 0, 0}, {0, radius, 0}, start, sweep, start, start + sweep);
  return path;
}

GcGePath AnyPath::circle() {
  const GcGePoint3d center = point(5);
  const double radius = between(0.5, 8);
  GcGePath path(center);
  path.addArc(center, {radius, 0, 0}, {0, radius, 0}, 0, 2 * kPi, 0, 2 * kPi);
  path.setClosed(true, true);
  return path;
}

GcGePath AnyPath::ellipse() {
  const GcGePoint3d center = point(5);
  const double major = between(1, 8), minor = major * between(0.05, 1), turn = between(0, kPi);
  const bool whole = upTo(1) == 0;
  const double start = whole ? 0 : between(0, 6), sweep = whole ? 2 * kPi : between(0.1, 6.1);
  GcGePath path(center);
  path.addArc(center, {major * std::cos(turn), major * std::sin(turn), 0},
              {-minor * std::sin(turn), minor * std::cos(turn), 0}, start, sweep, start, start + sweep);
  path.setClosed(whole, whole);
  return path;
}

GcGePath AnyPath::polyline(int segments) {
  std::vector<GcGePoint3d> vertices;
  for (int i = 0; i <= segments; ++i) {
    const GcGePoint3d p = point(10);
    vertices.push_back({p.x, p.y, 0});
  }
  GcGePath path(vertices[0]);
  const bool closed = upTo(1) == 0;
  for (int i = 0; i < segments + (closed ? 1 : 0); ++i) {
    const double bulge = upTo(1) == 0 ? 0 : between(-1.5, 1.5);
    path.addBulge(vertices[i], vertices[(i + 1) % (segments + 1)], bulge, GcGeVector3d::kZAxis, i, i + 1);
  }
  path.setClosed(closed, closed);
  return path;
}

GcGePath AnyPath::polyline3d(int segments) {
  GcGePoint3d at = point(10);
  GcGePath path(at);
  for (int i = 0; i < segments; ++i) {
    const GcGePoint3d next = point(10);
    path.addLine(at, next, i, i + 1);
    at = next;
  }
  return path;
}

GcGeNurbs AnyPath::nurbs(int degree, int poles, bool rational, bool planar) {
  GcGeNurbs spline;
  spline.degree = degree;
  GcGePoint3d at = point(3);
  for (int i = 0; i < poles; ++i) {  // a walk, so that the curve bends without tangling
    const GcGeVector3d step = unit() * between(0.5, 3);
    at = at + step;
    spline.points.push_back({at.x, at.y, planar ? 0 : at.z});
    if (rational) spline.weights.push_back(between(0.3, 3));
  }
  double knot = between(-2, 2);
  spline.knots.assign(degree + 1, knot);
  for (int i = 0; i < poles - degree - 1; ++i) {
    if (upTo(5) != 0 || i == 0) knot += between(0.2, 2);  // some knots twice
    spline.knots.push_back(knot);
  }
  spline.knots.insert(spline.knots.end(), degree + 1, knot + 1);
  return spline;
}

GcGePath AnyPath::spline() {
  const int degree = 1 + upTo(4), poles = degree + 1 + upTo(12);
  const bool rational = upTo(1) == 0, planar = upTo(1) == 0;
  GcGePath path;
  if (!gcgePathOfNurbs(nurbs(degree, poles, rational, planar), path)) std::abort();
  return path;
}

GcGePath AnyPath::any() {
  switch (upTo(6)) {
    case 0: return line();
    case 1: return arc();
    case 2: return circle();
    case 3: return ellipse();
    case 4: return polyline(1 + upTo(12));
    case 5: return polyline3d(1 + upTo(6));
    default: return spline();
  }
}

GcGeMatrix3d AnyPath::place() {
  GcGeMatrix3d turn, scale, move;
  turn.setToRotation(between(0, 2 * kPi), unit());
  scale.setToScaling(std::pow(10.0, between(-3, 4)));
  const double out = upTo(2) == 0 ? 5e6 : 100;
  move.setToTranslation(unit() * out);
  return move * turn * scale;
}
