// Pairs of leaves without a closed form: halving of Bezier forms, with proofs that nothing is left out.
#include <algorithm>

#include "host/ge/curves/meet_pair.h"

namespace {

constexpr int kMostPoles = GcGeSpan::kMostDegree + 1;

// A part of a leaf's Bezier form with what its control polygon tells: box, chord, deviation, cone of tangents.
struct Part {
  GcGePole poles[kMostPoles];
  GcGeVector3d hull[kMostPoles];
  int degree = 1;
  double v0 = 0, v1 = 1;  // of the leaf
  GcGeBox box;
  GcGeVector3d way;      // unit chord; zero when the ends fall together
  double length = 0;     // of the chord
  double deviation = 0;  // of the hull from the chord's line
  double sine = 0;       // of the largest angle between a leg and the chord; 1 when over a quarter turn
  double extent = 0;

  void measure() {
    box = GcGeBox();
    for (int i = 0; i <= degree; ++i) {
      hull[i] = poles[i].point();
      box.add(hull[i]);
    }
    const GcGeVector3d chord = hull[degree] - hull[0];
    length = chord.length();
    extent = box.diagonal();
    way = length > 0 ? chord / length : GcGeVector3d();
    deviation = sine = 0;
    for (int i = 1; i < degree; ++i) deviation = std::max(deviation, (hull[i] - hull[0]).crossProduct(way).length());
    for (int i = 0; i < degree; ++i) {
      const GcGeVector3d leg = hull[i + 1] - hull[i];
      const double size = leg.length();
      if (size == 0) continue;
      sine = leg.dotProduct(way) <= 0 ? 1 : std::max(sine, leg.crossProduct(way).length() / size);
    }
    if (length == 0) sine = 1;
  }

  void half(int which, Part& out) const {
    out.degree = degree;
    const double middle = (v0 + v1) / 2;
    out.v0 = which == 0 ? v0 : middle;
    out.v1 = which == 0 ? middle : v1;
    which == 0 ? gcgeTrimBezier(poles, degree, 0, 0.5, out.poles) : gcgeTrimBezier(poles, degree, 0.5, 1, out.poles);
    out.measure();
  }
};

// Whether a slab along one direction parts the two hulls.
bool parts(const Part& a, const Part& b, const GcGeVector3d& direction, double tol) {
  double lowA = 1e300, highA = -1e300, lowB = 1e300, highB = -1e300;
  for (int i = 0; i <= a.degree; ++i) {
    const double at = direction.dotProduct(a.hull[i] - a.hull[0]);
    lowA = std::min(lowA, at), highA = std::max(highA, at);
  }
  for (int i = 0; i <= b.degree; ++i) {
    const double at = direction.dotProduct(b.hull[i] - a.hull[0]);
    lowB = std::min(lowB, at), highB = std::max(highB, at);
  }
  return lowA > highB + tol || lowB > highA + tol;
}

// Slabs in the frame of a's chord: along it, towards b's middle, and at right angles to both.
bool chordFrameParts(const Part& a, const Part& b, double tol) {
  if (a.length == 0) return false;
  GcGeVector3d aside = b.box.middle() - a.hull[0];
  aside = aside - a.way * a.way.dotProduct(aside);
  const double size = aside.length();
  if (size > 1e-9 * (a.extent + b.extent)) {
    if (parts(a, b, aside / size, tol)) return true;
  }
  if (parts(a, b, a.way, tol)) return true;
  const GcGeVector3d across = a.way.crossProduct(b.way);
  const double sine = across.length();
  if (sine <= 1e-9) return false;
  if (parts(a, b, across / sine, tol)) return true;  // skew curves
  const GcGeVector3d normal = across.crossProduct(a.way) / sine;
  return parts(a, b, normal, tol);
}

// No chord of one curve is parallel to a chord of the other when the cones of tangents, both ways, share no
// direction: then the curves meet once at most.
bool conesParted(const Part& a, const Part& b) {
  constexpr double kWide = 0.7;
  if (a.sine > kWide || b.sine > kWide) return false;
  const double between = a.way.crossProduct(b.way).length();
  // sin(alpha + beta), both below 45 degrees
  const double sum = a.sine * std::sqrt(1 - b.sine * b.sine) + b.sine * std::sqrt(1 - a.sine * a.sine);
  return between > sum;
}

class Halving {
 public:
  explicit Halving(GcGeMeetPair& pair) : m_pair(pair) {
    gcgeLeafCurve(*pair.a.path, *pair.a.tree, pair.a.leaf, m_curveA);
    gcgeLeafCurve(*pair.b.path, *pair.b.tree, pair.b.leaf, m_curveB);
  }

  void run() {
    Part a, b;
    start(m_curveA, m_pair.a.shift, a);
    start(m_curveB, m_pair.b.shift, b);
    search(a, b, 0);
  }

 private:
  static void start(const GcGeLeafCurve& curve, const GcGeVector3d& shift, Part& part) {
    part.degree = curve.degree;
    for (int i = 0; i <= curve.degree; ++i) {
      const GcGePole& p = curve.poles[i];
      part.poles[i] = {p.x + p.w * shift.x, p.y + p.w * shift.y, p.z + p.w * shift.z, p.w};
    }
    part.measure();
  }

  void search(const Part& a, const Part& b, int depth) {
    const double tol = m_pair.tol;
    if (m_shared || !a.box.meets(b.box, {}, tol)) return;
    if (chordFrameParts(a, b, tol) || chordFrameParts(b, a, tol)) return;
    const bool single = conesParted(a, b);
    if (single && a.deviation <= 0.1 * a.length && b.deviation <= 0.1 * b.length && newton(a, b)) return;
    if (!single && depth >= 2 && !m_testedShared && a.deviation < 0.2 * a.length && b.deviation < 0.2 * b.length) {
      m_testedShared = true;
      m_shared = m_pair.meetEnds(false);
      if (m_shared) return;
    }
    constexpr int kMostDepth = 110;
    const bool tiny = a.extent <= tol && b.extent <= tol;
    const bool flat = a.deviation <= tol / 4 && b.deviation <= tol / 4;
    if (tiny || flat || depth > kMostDepth || ++m_pairs > kMostPairs) return touch(a, b);
    const Part& longer = a.extent >= b.extent ? a : b;
    Part first, second;
    longer.half(0, first);
    longer.half(1, second);
    if (&longer == &a) {
      search(first, b, depth + 1);
      search(second, b, depth + 1);
    } else {
      search(a, first, depth + 1);
      search(a, second, depth + 1);
    }
  }

  // Gauss-Newton on the spans' own functions, from the nearest points of the chords. True when a meeting inside both
  // parts was found (it is the only one).
  bool newton(const Part& a, const Part& b) {
    const GcGeVector3d r = b.hull[0] - a.hull[0], d = a.way * a.length, e = b.way * b.length;
    const GcGeVector3d n = d.crossProduct(e);
    const double nn = n.lengthSqrd();
    const double sa = std::clamp(r.crossProduct(e).dotProduct(n) / nn, 0.0, 1.0);
    const double sb = std::clamp(r.crossProduct(d).dotProduct(n) / nn, 0.0, 1.0);
    const double a0 = m_curveA.uAt(a.v0), a1 = m_curveA.uAt(a.v1), b0 = m_curveB.uAt(b.v0), b1 = m_curveB.uAt(b.v1);
    double ua = m_curveA.uAt(a.v0 + (a.v1 - a.v0) * sa), ub = m_curveB.uAt(b.v0 + (b.v1 - b.v0) * sb);
    constexpr int kMostSteps = 10;
    for (int i = 0; i < kMostSteps; ++i) {
      const GcGeJet ja = m_pair.a.jetAt(ua), jb = m_pair.b.jetAt(ub);
      const GcGeVector3d off = ja.point - jb.point;
      const double aa = ja.first.lengthSqrd(), bb = jb.first.lengthSqrd(), ab = ja.first.dotProduct(jb.first);
      const double det = aa * bb - ab * ab;
      if (!(det > 0)) return false;
      const double fa = -ja.first.dotProduct(off), fb = jb.first.dotProduct(off);
      const double stepA = (fa * bb + fb * ab) / det, stepB = (fa * ab + fb * aa) / det;
      ua += stepA;
      ub += stepB;
      if (!(std::abs(ua - a0) <= 3 * (a1 - a0)) || !(std::abs(ub - b0) <= 3 * (b1 - b0))) return false;
      if (std::abs(stepA) > 1e-8 * (a1 - a0) || std::abs(stepB) > 1e-8 * (b1 - b0)) continue;
      // One more step would change nothing: the last one has squared its error.
      if (ua < a0 - 1e-9 * (a1 - a0) || ua > a1 + 1e-9 * (a1 - a0)) return false;
      if (ub < b0 - 1e-9 * (b1 - b0) || ub > b1 + 1e-9 * (b1 - b0)) return false;
      return m_pair.meetIfInside(ua, ub);
    }
    return false;
  }

  // Parts that cannot be told from parallel lines, or from points: the place where the tangents are parallel, if it is
  // near, else the nearest of the ends.
  void touch(const Part& a, const Part& b) {
    double ua = m_curveA.uAt((a.v0 + a.v1) / 2), ub = m_curveB.uAt((b.v0 + b.v1) / 2);
    const GcGeLeaf &la = m_pair.a.range(), &lb = m_pair.b.range();
    double refinedA = ua, refinedB = ub;
    if (parallelPlace(refinedA, refinedB)) {
      const double clampedA = std::clamp(refinedA, la.u0, la.u1), clampedB = std::clamp(refinedB, lb.u0, lb.u1);
      const double moved = (m_pair.a.pointAt(clampedA) - m_pair.a.pointAt(ua)).length();
      const double gap = (m_pair.a.pointAt(clampedA) - m_pair.b.pointAt(clampedB)).length();
      if (moved <= 8 * (a.extent + b.extent) && gap <= m_pair.tol) return m_pair.meet(clampedA, clampedB);
    }
    meetNearest(a, b);
  }

  // The nearest of: ends and middle of one part against the other leaf, and the other way round.
  void meetNearest(const Part& a, const Part& b) {
    double best = m_pair.tol, bestA = 0, bestB = 0;
    bool found = false;
    for (const double part : {0.5, 0.0, 1.0}) {
      const double ua = m_curveA.uAt(a.v0 + (a.v1 - a.v0) * part), ub = m_curveB.uAt(b.v0 + (b.v1 - b.v0) * part);
      const GcGeOnPath onB = m_pair.b.closestTo(m_pair.a.pointAt(ua)), onA = m_pair.a.closestTo(m_pair.b.pointAt(ub));
      if (onB.distance <= best) best = onB.distance, bestA = ua, bestB = onB.u, found = true;
      if (onA.distance <= best) best = onA.distance, bestA = onA.u, bestB = ub, found = true;
    }
    if (found) m_pair.meet(bestA, bestB);
  }

  // Newton on: tangents parallel, and the difference at right angles to them.
  bool parallelPlace(double& ua, double& ub) const {
    constexpr int kMostSteps = 12;
    for (int i = 0; i < kMostSteps; ++i) {
      const GcGeJet ja = m_pair.a.jetAt(ua), jb = m_pair.b.jetAt(ub);
      const double aa = ja.first.lengthSqrd(), bb = jb.first.lengthSqrd();
      if (!(aa > 0) || !(bb > 0)) return false;
      const GcGeVector3d bend = ja.second / aa - jb.second / bb;
      const GcGeVector3d n = ja.first.crossProduct(bend);
      if (n.lengthSqrd() == 0) return false;
      const GcGeVector3d off = ja.point - jb.point;
      const double f = n.dotProduct(ja.first.crossProduct(jb.first)), g = off.dotProduct(ja.first);
      const double fa = n.dotProduct(ja.second.crossProduct(jb.first));
      const double fb = n.dotProduct(ja.first.crossProduct(jb.second));
      const double ga = aa + off.dotProduct(ja.second), gb = -jb.first.dotProduct(ja.first);
      const double det = fa * gb - fb * ga;
      if (det == 0) return false;
      const double stepA = (f * gb - fb * g) / det, stepB = (fa * g - f * ga) / det;
      ua -= stepA;
      ub -= stepB;
      if (!std::isfinite(ua) || !std::isfinite(ub)) return false;
      if (std::abs(stepA) <= 1e-10 && std::abs(stepB) <= 1e-10) return true;
    }
    return false;
  }

  static constexpr int kMostPairs = 200000;
  GcGeMeetPair& m_pair;
  GcGeLeafCurve m_curveA, m_curveB;
  bool m_testedShared = false, m_shared = false;
  int m_pairs = 0;
};

}  // namespace

void GcGeMeetPair::general() {
  if (!a.span().isBounded() || !b.span().isBounded()) return;  // bounded before (see meet.cpp)
  Halving(*this).run();
}
