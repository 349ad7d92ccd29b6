// Pairs of leaves in closed form: lines with lines, lines with circles and ellipses, circles with circles.
#include "host/ge/curves/meet_pair.h"

#include <algorithm>
#include <limits>
#include <numbers>

#include "host/rx/math/elementary.h"

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// The turn of an angle that lies in the leaf, or next to it.
double uOfAngle(const GcGeSpan& s, const GcGeLeaf& leaf, double angle) {
  const double middle = s.sweep * (leaf.u0 + leaf.u1) / 2;
  return (angle - kTwoPi * std::round((angle - middle) / kTwoPi)) / s.sweep;
}

// Coordinates of a point in an arc's frame: p = a + x b + y c + z n, on the arc when (1 + x)^2 + y^2 = 1, z = 0.
struct ArcFrame {
  GcGeVector3d start, toX, toY, normal;
  explicit ArcFrame(const GcGeSpan& s, const GcGeVector3d& shift) : start(s.a + shift) {
    const GcGeVector3d n = s.b.crossProduct(s.c);
    const double squared = n.lengthSqrd();
    toX = s.c.crossProduct(n) / squared;
    toY = n.crossProduct(s.b) / squared;
    normal = n / std::sqrt(squared);
  }
};

}  // namespace

double gcgeGrazing(const GcGePath& a, const GcGePath& b, double tol) {
  constexpr double kOfTol = 0.01, kOfPlace = 3 * std::numeric_limits<double>::epsilon();
  return kOfTol * tol + kOfPlace * (a.origin().asVector().length() + b.origin().asVector().length());
}

GcGeOnPath GcGeMeetSide::closestTo(const GcGeVector3d& p) const {
  GcGeOnPath on = gcgeClosestOnLeaf(*path, *tree, leaf, p - shift);
  on.point += shift;
  return on;
}

void GcGeMeetPair::meet(double ua, double ub) { m_found.points.push_back({a.tAt(ua), b.tAt(ub), a.pointAt(ua)}); }

bool GcGeMeetPair::meetIfInside(double ua, double ub) {
  const GcGeLeaf &la = a.range(), &lb = b.range();
  const double heldA = std::clamp(ua, la.u0, la.u1), heldB = std::clamp(ub, lb.u0, lb.u1);
  if (!std::isfinite(heldA) || !std::isfinite(heldB)) return false;
  if (heldA != ua || heldB != ub) {
    const double reach = (heldA != ua ? std::abs(heldA - ua) * gcgeSpeedAt(a.span(), a.path->poles(), heldA) : 0) +
                         (heldB != ub ? std::abs(heldB - ub) * gcgeSpeedAt(b.span(), b.path->poles(), heldB) : 0);
    if (!(reach <= 4 * tol)) return false;
  }
  const GcGeVector3d on = a.pointAt(heldA);
  if (!((on - b.pointAt(heldB)).length() <= 4 * tol)) return false;
  m_found.points.push_back({a.tAt(heldA), b.tAt(heldB), on});
  return true;
}

bool GcGeMeetPair::meetEnds(bool alsoSingly) {
  struct Place {
    double ua, ub;
  };
  Place places[4];
  int count = 0;
  const auto add = [&](double ua, double ub) {
    for (int i = 0; i < count; ++i)
      if ((a.pointAt(places[i].ua) - a.pointAt(ua)).length() <= 4 * tol) return;
    places[count++] = {ua, ub};
  };
  const GcGeLeaf &la = a.range(), &lb = b.range();
  for (const int i : {0, 1}) {
    const double u = i == 0 ? la.u0 : la.u1;
    if (!std::isfinite(u)) continue;
    const GcGeVector3d end = a.endAt(i);
    if (b.tree->boxes[b.leaf].distanceSquared(end - b.shift) > tol * tol) continue;
    const GcGeOnPath on = b.closestTo(end);
    if (on.distance <= tol) add(u, on.u);
  }
  for (const int i : {0, 1}) {
    const double u = i == 0 ? lb.u0 : lb.u1;
    if (!std::isfinite(u)) continue;
    const GcGeVector3d end = b.endAt(i);
    if (a.tree->boxes[a.leaf].distanceSquared(end - a.shift) > tol * tol) continue;
    const GcGeOnPath on = a.closestTo(end);
    if (on.distance <= tol) add(on.u, u);
  }
  if (alsoSingly)
    for (int i = 0; i < count; ++i) meet(places[i].ua, places[i].ub);
  if (count < 2) return false;
  Place from = places[0], to = places[0];
  for (int i = 1; i < count; ++i) {
    if (places[i].ua < from.ua) from = places[i];
    if (places[i].ua > to.ua) to = places[i];
  }
  constexpr int kSamples = 8;
  for (int i = 1; i < kSamples; ++i)
    if (b.closestTo(a.pointAt(from.ua + (to.ua - from.ua) * i / kSamples)).distance > tol) return false;
  m_found.stretches.push_back(
      {a.tAt(from.ua), a.tAt(to.ua), b.tAt(from.ub), b.tAt(to.ub), a.pointAt(from.ua), a.pointAt(to.ua)});
  return true;
}

void GcGeMeetPair::solve() {
  using Kind = GcGeSpan::Kind;
  const Kind ka = a.span().kind, kb = b.span().kind;
  if (ka == Kind::Line && kb == Kind::Line) return lineLine();
  if (solveClipped()) return;
  if (ka == Kind::Line && kb == Kind::Arc && lineArc(true)) return;
  if (ka == Kind::Arc && kb == Kind::Line && lineArc(false)) return;
  if (ka == Kind::Arc && kb == Kind::Arc && circleCircle()) return;
  general();
}

bool GcGeMeetPair::solveClipped() {
  const bool openA = !a.span().isBounded(), openB = !b.span().isBounded();
  if (openA == openB) return false;
  const GcGeMeetSide &open = openA ? a : b, &other = openA ? b : a;
  const GcGeBox& box = other.tree->boxes[other.leaf];
  GcGeSpan cut = open.span();
  const double speed = cut.b.length(), reach = (box.diagonal() + tol) / speed;
  const GcGeVector3d to = box.middle() + other.shift - open.shift - cut.a;
  const double middle = to.dotProduct(cut.b) / (speed * speed);
  cut.u0 = std::max(cut.u0, middle - reach);
  cut.u1 = std::min(cut.u1, middle + reach);
  if (!(cut.u1 > cut.u0)) return true;
  GcGePath path(open.path->origin());
  path.addSpan(cut, nullptr);
  const GcGeMeetSide side{&path, &path.tree(), 0, open.shift};
  openA ? GcGeMeetPair(side, b, tol, m_found).solve() : GcGeMeetPair(a, side, tol, m_found).solve();
  return true;
}

// The nearest points of the two lines, held within the leaves.
void GcGeMeetPair::lineLine() {
  const GcGeSpan &sa = a.span(), &sb = b.span();
  const GcGeLeaf &la = a.range(), &lb = b.range();
  const GcGeVector3d &d = sa.b, &e = sb.b;
  const GcGeVector3d r = (sb.a + b.shift) - sa.a - a.shift;
  const double dd = d.lengthSqrd(), ee = e.lengthSqrd();
  if (dd == 0 || ee == 0) {
    meetEnds(true);
    return;
  }
  const GcGeVector3d n = d.crossProduct(e);
  const double nn = n.lengthSqrd();
  const bool bounded = std::isfinite(lb.u0) && std::isfinite(lb.u1);
  const double reach = lb.u1 - lb.u0;
  bool along = false;
  if (!bounded || reach * reach * nn <= 4 * tol * tol * dd) {  // else its ends are too far from each other's parallel
    const auto off = [&](double v) { return (r + e * v).crossProduct(d).length(); };  // times |d|
    const double near = tol * std::sqrt(dd);
    along = bounded ? off(lb.u0) <= near && off(lb.u1) <= near : nn <= 1e-24 * dd * ee && off(0) <= near;
  }
  constexpr double kParallel = 1e-28;  // squared sine below which directions are equal to the last digits
  if (along || nn <= kParallel * dd * ee) {
    if (along && !std::isfinite(la.u0 + la.u1) && !std::isfinite(lb.u0 + lb.u1)) {
      // Two unbounded lines on each other: the ends that exist.
      meetEnds(true);
      return;
    }
    if (along) meetEnds(true);
    return;
  }
  const double u = r.crossProduct(e).dotProduct(n) / nn, v = r.crossProduct(d).dotProduct(n) / nn;
  // Far from their bases lines are apart by what rounding did to their directions.
  constexpr double kRounding = 8 * std::numeric_limits<double>::epsilon();
  const double gap = r.dotProduct(n);
  if (gap * gap > tol * tol * nn) {
    const double apart = tol + kRounding * (std::abs(u) * std::sqrt(dd) + std::abs(v) * std::sqrt(ee));
    if (gap * gap > apart * apart * nn) return;
  }
  if (u >= la.u0 && u <= la.u1 && v >= lb.u0 && v <= lb.u1) return meet(u, v);
  // Just outside: an end that touches the other line.
  const double heldU = std::clamp(u, la.u0, la.u1);
  const double backV = std::clamp((sa.a + a.shift + d * heldU - sb.a - b.shift).dotProduct(e) / ee, lb.u0, lb.u1);
  const double backU = std::clamp((sb.a + b.shift + e * backV - sa.a - a.shift).dotProduct(d) / dd, la.u0, la.u1);
  if ((a.pointAt(backU) - b.pointAt(backV)).length() <= tol) meet(backU, backV);
}

bool GcGeMeetPair::lineArc(bool lineIsA) {
  const GcGeMeetSide &line = lineIsA ? a : b, &arc = lineIsA ? b : a;
  const GcGeSpan &sl = line.span(), &sa = arc.span();
  const GcGeLeaf &ll = line.range(), &la = arc.range();
  const double radius = std::max(sa.b.length(), sa.c.length());
  if (!(radius > 0) || sl.b.lengthSqrd() == 0 || sa.b.crossProduct(sa.c).lengthSqrd() == 0) return false;
  const ArcFrame frame(sa, arc.shift);
  const GcGeVector3d q = sl.a + line.shift - frame.start, d = sl.b;
  const double x0 = q.dotProduct(frame.toX), y0 = q.dotProduct(frame.toY), z0 = q.dotProduct(frame.normal);
  const double dx = d.dotProduct(frame.toX), dy = d.dotProduct(frame.toY), dz = d.dotProduct(frame.normal);
  const auto give = [&](double u) {
    const double angle = gc::atan2(y0 + dy * u, 1 + x0 + dx * u);
    const double v = uOfAngle(sa, la, angle);
    lineIsA ? meetIfInside(u, v) : meetIfInside(v, u);
  };
  const bool bounded = std::isfinite(ll.u0) && std::isfinite(ll.u1);
  const bool inPlane = bounded ? std::abs(z0 + dz * ll.u0) <= tol && std::abs(z0 + dz * ll.u1) <= tol
                               : std::abs(dz) <= 1e-12 * d.length() && std::abs(z0) <= tol;
  if (!inPlane) {
    constexpr double kSteep = 1e-3;
    if (std::abs(dz) < kSteep * d.length()) return false;
    give(-z0 / dz);
    return true;
  }
  const double dd = dx * dx + dy * dy;
  const double nearest = -(x0 * dx + y0 * dy + dx) / dd;
  const double x = x0 + dx * nearest, y = y0 + dy * nearest;
  const double depth = x * x + y * y + 2 * x;  // distance from the centre squared less one
  // What a distance from the ellipse is in depth, where the line comes nearest.
  const double grazing = 2 * this->grazing() * (frame.toX * (1 + x) + frame.toY * y).length();
  if (depth > grazing) return meetEnds(true), true;
  if (depth > -grazing) {
    give(nearest);
  } else {
    const double half = std::sqrt(-depth / dd);
    give(nearest - half);
    give(nearest + half);
  }
  meetEnds(true);
  return true;
}

bool GcGeMeetPair::circleCircle() {
  const GcGeSpan &sa = a.span(), &sb = b.span();
  if (!sa.circular || !sb.circular || sa.sweep == 0 || sb.sweep == 0) return false;
  const double ra = sa.b.length(), rb = sb.b.length();
  constexpr double kFlat = 1e3;  // centres of flatter arcs are too far away to compute with
  const double leafA = std::abs(sa.sweep * (a.range().u1 - a.range().u0));
  const double leafB = std::abs(sb.sweep * (b.range().u1 - b.range().u0));
  if (ra > kFlat * rb || rb > kFlat * ra || leafA * kFlat < 1 || leafB * kFlat < 1) return false;
  const GcGeVector3d na = sa.b.crossProduct(sa.c) / (ra * ra), nb = sb.b.crossProduct(sb.c) / (rb * rb);
  const GcGeVector3d between = (sb.center() + b.shift) - (sa.center() + a.shift);
  if (na.crossProduct(nb).length() * rb > tol || std::abs(na.dotProduct(between)) > tol) return false;
  const double apart = between.length();
  if (apart <= tol && std::abs(ra - rb) <= tol) return meetEnds(true), true;
  const double grazing = this->grazing();
  if (apart > ra + rb + grazing || apart < std::abs(ra - rb) - grazing) return meetEnds(true), true;
  // x along the line of centres, y aside.
  const GcGeVector3d e = between / apart, f = na.crossProduct(e);
  const double x = std::clamp((apart + (ra - rb) * (ra + rb) / apart) / 2, -ra, ra);
  const bool touching = std::abs(apart - ra - rb) <= grazing || std::abs(apart - std::abs(ra - rb)) <= grazing;
  const double y = touching ? 0 : std::sqrt((ra - x) * (ra + x));
  for (int side = -1; side <= (touching ? -1 : 1); side += 2) {
    const GcGeVector3d at = e * x + f * (y * side), from = at - between;
    const double ua = uOfAngle(sa, a.range(), gc::atan2(at.dotProduct(sa.c), at.dotProduct(sa.b)));
    const double ub = uOfAngle(sb, b.range(), gc::atan2(from.dotProduct(sb.c), from.dotProduct(sb.b)));
    meetIfInside(ua, ub);
  }
  meetEnds(true);
  return true;
}
