#include "host/ge/curves/meet.h"

#include <algorithm>
#include <limits>

#include "host/ge/curves/meet_pair.h"

namespace {

// Both trees from the top, the higher node opened first; calls f(leafA, leafB).
template <class F>
class Descent {
 public:
  Descent(const GcGeTree& a, const GcGeTree& b, const GcGeVector3d& shift, double tol, const F& f)
      : m_a(a), m_b(b), m_shift(shift), m_tol(tol), m_f(f) {}

  // Each pair of different leaves of one tree once, the lower index first.
  void runSelf() {
    if (!m_a.leaves.empty()) visitSelf(m_a.levels() - 1, 0);
  }

  void run() {
    if (!m_a.leaves.empty() && !m_b.leaves.empty()) visit(m_a.levels() - 1, 0, m_b.levels() - 1, 0);
  }

 private:
  void visitSelf(int level, int node) {
    if (level == 0) return;
    const int first = 2 * node, second = first + 1;
    visitSelf(level - 1, first);
    if (second >= m_a.count(level - 1)) return;
    visitSelf(level - 1, second);
    visit(level - 1, first, level - 1, second);
  }

  void visit(int levelA, int a, int levelB, int b) {
    if (!m_a.box(levelA, a).meets(m_b.box(levelB, b), m_shift, m_tol)) return;
    if (levelA == 0 && levelB == 0) return m_f(a, b);
    if (levelA >= levelB) {
      visit(levelA - 1, 2 * a, levelB, b);
      if (2 * a + 1 < m_a.count(levelA - 1)) visit(levelA - 1, 2 * a + 1, levelB, b);
    } else {
      visit(levelA, a, levelB - 1, 2 * b);
      if (2 * b + 1 < m_b.count(levelB - 1)) visit(levelA, a, levelB - 1, 2 * b + 1);
    }
  }

  const GcGeTree &m_a, &m_b;
  GcGeVector3d m_shift;
  double m_tol;
  const F& m_f;
};

// Whether the path stays within the tolerance of one point between two parameters.
bool staysAt(const GcGePath& path, double t0, double t1, double tol) {
  GcGeJet first, other;
  if (!path.jetAt(t0, first)) return false;
  for (const double part : {0.5, 0.25, 0.75, 1.0})
    if (!path.jetAt(t0 + (t1 - t0) * part, other) || (other.point - first.point).length() > tol) return false;
  return true;
}

// The same, round the seam of a closed path.
bool samePlace(const GcGePath& path, double t0, double t1, double tol) {
  if (staysAt(path, t0, t1, tol)) return true;
  if (!path.isClosed()) return false;
  const double low = std::min(t0, t1), high = std::max(t0, t1);
  return staysAt(path, path.startParam(), low, tol) && staysAt(path, high, path.endParam(), tol);
}

void joinStretches(std::vector<GcGeSharing>& stretches, double tol) {
  for (GcGeSharing& s : stretches)
    if (s.ta0 > s.ta1) {
      std::swap(s.ta0, s.ta1);
      std::swap(s.tb0, s.tb1);
      std::swap(s.from, s.to);
    }
  std::sort(stretches.begin(), stretches.end(),
            [](const GcGeSharing& x, const GcGeSharing& y) { return x.ta0 < y.ta0; });
  std::vector<GcGeSharing> joined;
  for (const GcGeSharing& s : stretches) {
    if ((s.to - s.from).length() <= tol && s.ta1 - s.ta0 <= 0) continue;
    if (!joined.empty() && (joined.back().ta1 >= s.ta0 || (joined.back().to - s.from).length() <= 8 * tol)) {
      GcGeSharing& last = joined.back();
      const bool goesOn = last.ta1 >= s.ta1 || (last.tb1 - last.tb0 > 0) == (s.tb1 - s.tb0 > 0);
      if (goesOn) {
        if (s.ta1 > last.ta1) last.ta1 = s.ta1, last.tb1 = s.tb1, last.to = s.to;
        continue;
      }
    }
    joined.push_back(s);
  }
  stretches = std::move(joined);
}

void tidy(const GcGePath& a, const GcGePath& b, double tol, GcGeMeetings& found) {
  joinStretches(found.stretches, tol);
  std::vector<GcGeMeeting>& points = found.points;
  std::sort(points.begin(), points.end(),
            [](const GcGeMeeting& x, const GcGeMeeting& y) { return x.ta != y.ta ? x.ta < y.ta : x.tb < y.tb; });
  const double near = 16 * tol;
  std::vector<GcGeMeeting> kept;
  kept.reserve(points.size());
  for (const GcGeMeeting& p : points) {
    bool drop = false;
    for (const GcGeSharing& s : found.stretches)
      drop = drop || (p.ta >= s.ta0 && p.ta <= s.ta1) || (p.point - s.from).length() <= near ||
             (p.point - s.to).length() <= near;
    for (size_t i = kept.size(); !drop && i-- > 0 && (kept[i].point - p.point).length() <= near;)
      drop = samePlace(a, kept[i].ta, p.ta, near) && samePlace(b, kept[i].tb, p.tb, near);
    if (!drop) kept.push_back(p);
  }
  // The seam of a closed first path: its start met and its end met is one meeting.
  if (kept.size() > 1 && a.isClosed() && (kept.front().point - kept.back().point).length() <= near &&
      samePlace(a, kept.front().ta, kept.back().ta, near) && samePlace(b, kept.front().tb, kept.back().tb, near))
    kept.pop_back();
  points = std::move(kept);
}

// The directions in which a leaf's hull lies as seen from one of its ends: a cone about the chord.
struct Cone {
  GcGeVector3d way;  // unit, away from the end
  double cosine = 1, sine = 0;
};

Cone coneOf(const GcGePath& path, const GcGeTree& tree, int leaf, bool fromEnd) {
  GcGeLeafCurve curve;
  gcgeLeafCurve(path, tree, leaf, curve);
  const int n = curve.degree;
  const GcGeVector3d apex = curve.poles[fromEnd ? n : 0].point();
  Cone cone;
  cone.way = curve.poles[fromEnd ? 0 : n].point() - apex;
  const double length = cone.way.length();
  if (length == 0) return {{}, -1, 0};
  cone.way = cone.way / length;
  for (int i = 1; i < n; ++i) {
    const GcGeVector3d leg = curve.poles[i].point() - apex;
    const double size = leg.length();
    if (size > 0) cone.cosine = std::min(cone.cosine, leg.dotProduct(cone.way) / size);
  }
  cone.sine = std::sqrt(std::max(0.0, 1 - cone.cosine * cone.cosine));
  return cone;
}

// Hulls in cones that share nothing but their apex, the joint, meet nowhere else.
bool partAtJoint(const GcGePath& path, const GcGeTree& tree, int before, int after) {
  const Cone in = coneOf(path, tree, before, true), out = coneOf(path, tree, after, false);
  if (in.cosine <= 0 || out.cosine <= 0) return false;
  constexpr double kClear = 1e-7;
  return in.way.dotProduct(out.way) < in.cosine * out.cosine - in.sine * out.sine - kClear;
}

// Leaves of one span, of spans next to each other, or parted by nothing but short ones: what they have in common may
// be their joint.
bool areNeighbours(const GcGePath& path, const GcGeTree& tree, int i, int j) {
  constexpr int kNext = 3;
  const int si = tree.leaves[i].span, sj = tree.leaves[j].span, count = static_cast<int>(path.spans().size());
  return sj - si <= kNext || (path.isClosed() && si + count - sj <= kNext);
}

// Pairs of leaves that can meet at their joint only.
bool meetAtJointOnly(const GcGePath& path, const GcGeTree& tree, int i, int j) {
  using Kind = GcGeSpan::Kind;
  const int si = tree.leaves[i].span, sj = tree.leaves[j].span;
  const GcGeSpan &a = path.spans()[si], &b = path.spans()[sj];
  if (si == sj) return a.kind != Kind::Bezier || j == i + 1;
  const bool next = sj == si + 1;
  const bool wraps = path.isClosed() && si == 0 && sj == static_cast<int>(path.spans().size()) - 1;
  if (!next && !wraps) return false;
  if (a.kind == Kind::Line && b.kind == Kind::Line)
    return a.b.crossProduct(b.b).lengthSqrd() > 0 || a.b.dotProduct(b.b) > 0;
  const bool touching = next ? j == i + 1 : i == 0 && j == static_cast<int>(tree.leaves.size()) - 1;
  return touching && partAtJoint(path, tree, next ? i : j, next ? j : i);
}

}  // namespace

double gcgeMeetTolerance(const GcGePath& a, const GcGePath& b) {
  const double sizeA = a.isBounded() ? a.size() : b.size(), sizeB = b.isBounded() ? b.size() : a.size();
  constexpr double kOfSize = 1e-10, kOfPlace = 8 * std::numeric_limits<double>::epsilon();
  const double places = a.origin().asVector().length() + b.origin().asVector().length();
  return kOfSize * std::min(sizeA, sizeB) + kOfPlace * (places + std::max(sizeA, sizeB));
}

GcGeMeetings gcgeMeet(const GcGePath& a, const GcGePath& b, double tol) {
  GcGeMeetings found;
  const GcGeVector3d shift = b.origin() - a.origin();
  const GcGeTree &treeA = a.tree(), &treeB = b.tree();
  const auto pair = [&](int i, int j) {
    GcGeMeetPair({&a, &treeA, i, {}}, {&b, &treeB, j, shift}, tol, found).solve();
  };
  Descent(treeA, treeB, shift, tol, pair).run();
  tidy(a, b, tol, found);
  return found;
}

GcGeMeetings gcgeMeetSelf(const GcGePath& path, double tol) {
  GcGeMeetings found;
  const GcGeTree& tree = path.tree();
  const double near = 16 * tol;
  const auto pair = [&](int i, int j) {
    if (meetAtJointOnly(path, tree, i, j)) return;
    const size_t before = found.points.size();
    GcGeMeetPair({&path, &tree, i, {}}, {&path, &tree, j, {}}, tol, found).solve();
    if (found.points.size() > before && areNeighbours(path, tree, i, j))
      found.points.erase(std::remove_if(found.points.begin() + static_cast<long>(before), found.points.end(),
                                        [&](const GcGeMeeting& p) { return samePlace(path, p.ta, p.tb, near); }),
                         found.points.end());
  };
  Descent(tree, tree, {}, tol, pair).runSelf();
  for (GcGeMeeting& p : found.points)
    if (p.ta > p.tb) std::swap(p.ta, p.tb);
  tidy(path, path, tol, found);
  return found;
}
