// Closest points: the tree of boxes leaves few parts of the path, on each the feet of perpendiculars are the roots of
// a polynomial in Bernstein form (docs/geometry/closest-point.md).
#include <limits>
#include <numbers>

#include "host/ge/curves/bernstein.h"
#include "host/ge/curves/meet_pair.h"
#include "host/ge/curves/path.h"
#include "host/ge/curves/tree.h"
#include "host/rx/math/elementary.h"

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

class Nearest {
 public:
  Nearest(const GcGePath& path, const GcGeVector3d& p) : m_path(path), m_p(p) {}
  // Looks only for points nearer than the bound and stops at the first.
  Nearest(const GcGePath& path, const GcGeVector3d& p, double bound)
      : m_path(path), m_p(p), m_bestSquared(bound * bound), m_anyWillDo(true) {}

  void search(const GcGeTree& tree) {
    m_tree = &tree;
    if (!tree.leaves.empty()) visit(tree.levels() - 1, 0);
  }

  void searchLeaf(const GcGeTree& tree, int leaf) {
    m_tree = &tree;
    tryLeaf(leaf);
  }

  [[nodiscard]] GcGeOnPath best() const {
    GcGeOnPath best = m_best;
    best.distance = std::sqrt(m_bestSquared);
    return best;
  }

 private:
  void visit(int level, int index) {
    if (m_anyWillDo && m_best.span >= 0) return;
    if (level == 0) return tryLeaf(index);
    const int first = 2 * index, second = first + 1;
    const double toFirst = m_tree->box(level - 1, first).distanceSquared(m_p);
    const bool two = second < m_tree->count(level - 1);
    const double toSecond = two ? m_tree->box(level - 1, second).distanceSquared(m_p) : 0;
    if (!two || toFirst <= toSecond) {
      if (toFirst < m_bestSquared) visit(level - 1, first);
      if (two && toSecond < m_bestSquared) visit(level - 1, second);
    } else {
      if (toSecond < m_bestSquared) visit(level - 1, second);
      if (toFirst < m_bestSquared) visit(level - 1, first);
    }
  }

  void offer(int span, double u) { offer(span, u, m_path.pointOn(span, u)); }
  void offer(int span, double u, const GcGeVector3d& point) {
    const double squared = (point - m_p).lengthSqrd();
    if (!(squared < m_bestSquared)) return;
    m_bestSquared = squared;
    m_best.span = span;
    m_best.u = u;
    m_best.point = point;
  }

  void tryLeaf(int index) {
    const GcGeLeaf& leaf = m_tree->leaves[index];
    const GcGeSpan& s = m_path.spans()[leaf.span];
    if (s.kind == GcGeSpan::Kind::Line) {
      const double squared = s.b.lengthSqrd();
      const double any = std::isfinite(leaf.u0) ? leaf.u0 : std::isfinite(leaf.u1) ? leaf.u1 : 0;
      const double u = squared > 0 ? s.b.dotProduct(m_p - s.a) / squared : any;
      return offer(leaf.span, u > leaf.u1 ? leaf.u1 : u > leaf.u0 ? u : leaf.u0);
    }
    const GcGePole* ends = m_tree->poles.data() + leaf.firstPole;  // the tree has the leaf's ends at hand
    offer(leaf.span, leaf.u0, ends[0].point());
    offer(leaf.span, leaf.u1, ends[s.kind == GcGeSpan::Kind::Arc ? 2 : s.degree].point());
    if (s.kind == GcGeSpan::Kind::Arc && s.circular) return tryCircle(leaf, s);
    tryFeet(index, leaf, s);
  }

  // The point of the circle in the direction of p; with p - centre = q + b, q from the start of the arc, nothing
  // is lost when the centre is far away.
  void tryCircle(const GcGeLeaf& leaf, const GcGeSpan& s) {
    const GcGeVector3d q = m_p - s.a;
    double angle = gc::atan2(q.dotProduct(s.c), s.b.lengthSqrd() + q.dotProduct(s.b));
    const double from = std::min(s.sweep * leaf.u0, s.sweep * leaf.u1);
    angle -= kTwoPi * std::floor((angle - from) / kTwoPi);
    const double u = angle / s.sweep;
    if (!(u > leaf.u0 && u < leaf.u1)) return;
    if (m_anyWillDo && isFartherFromCircle(s, q)) return;
    offer(leaf.span, u);
  }

  // Whether the circle is clearly no nearer than the best: its distance is that of the radii, but for their rounding.
  [[nodiscard]] bool isFartherFromCircle(const GcGeSpan& s, const GcGeVector3d& q) const {
    const double radius = s.b.length(), away = (q + s.b).length();
    const double least = std::abs(away - radius) - 1e-12 * (away + radius);
    return least > 0 && least * least > m_bestSquared;
  }

  void tryFeet(int index, const GcGeLeaf& leaf, const GcGeSpan& s) {
    GcGeLeafCurve curve;
    gcgeLeafCurve(m_path, *m_tree, index, curve);
    double polynomial[kGcGeMostBernstein + 1];
    const int degree = gcgeFootPolynomial(curve.poles, curve.degree, curve.rational, m_p, polynomial);
    double roots[kGcGeMostBernstein + 1];
    const int count = gcgeBernsteinRoots(polynomial, degree, roots, kGcGeMostBernstein + 1);
    for (int i = 0; i < count; ++i) polish(leaf, s, curve.uAt(roots[i]));
  }

  // Newton on (C - p) . C' with the span's own functions.
  void polish(const GcGeLeaf& leaf, const GcGeSpan& s, double u) {
    constexpr int kMostSteps = 3;
    for (int i = 0; i < kMostSteps; ++i) {
      const GcGeJet jet = gcgeJetAt(s, m_path.poles(), u);
      const GcGeVector3d off = jet.point - m_p;
      const double slope = jet.first.lengthSqrd() + off.dotProduct(jet.second);
      offer(leaf.span, u, jet.point);
      if (!(slope > 0)) return;  // a farthest point, or a flat one
      const double step = off.dotProduct(jet.first) / slope;
      const double next = u - step;
      if (!(next >= leaf.u0 && next <= leaf.u1)) return;
      if (std::abs(step) <= 1e-9 * (leaf.u1 - leaf.u0)) {  // the next one would be below rounding
        return offer(leaf.span, next);
      }
      u = next;
    }
    offer(leaf.span, u);
  }

  const GcGePath& m_path;
  const GcGeTree* m_tree = nullptr;
  GcGeVector3d m_p;
  GcGeOnPath m_best;
  double m_bestSquared = std::numeric_limits<double>::infinity();
  bool m_anyWillDo = false;
};

}  // namespace

GcGeOnPath GcGePath::closestTo(const GcGePoint3d& point) const {
  Nearest nearest(*this, point - m_origin);
  nearest.search(tree());
  return nearest.best();
}

bool GcGePath::comesNearer(const GcGePoint3d& point, double distance) const {
  Nearest nearest(*this, point - m_origin, distance);
  nearest.search(tree());
  return nearest.best().span >= 0;
}

GcGeOnPath GcGePath::closestOnSpan(int span, const GcGePoint3d& point) const {
  Nearest nearest(*this, point - m_origin);
  const GcGeTree& leaves = tree();
  const auto begin = std::lower_bound(leaves.leaves.begin(), leaves.leaves.end(), span,
                                      [](const GcGeLeaf& leaf, int wanted) { return leaf.span < wanted; });
  for (auto leaf = begin; leaf != leaves.leaves.end() && leaf->span == span; ++leaf)
    nearest.searchLeaf(leaves, static_cast<int>(leaf - leaves.leaves.begin()));
  return nearest.best();
}

GcGeOnPath gcgeClosestOnLeaf(const GcGePath& path, const GcGeTree& tree, int leaf, const GcGeVector3d& p) {
  Nearest nearest(path, p);
  nearest.searchLeaf(tree, leaf);
  return nearest.best();
}
