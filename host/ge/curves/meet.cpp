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

  void run() {
    if (!m_a.leaves.empty() && !m_b.leaves.empty()) visit(m_a.levels() - 1, 0, m_b.levels() - 1, 0);
  }

 private:
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
  std::sort(points.begin(), points.end(), [](const GcGeMeeting& x, const GcGeMeeting& y) {
    return x.ta != y.ta ? x.ta < y.ta : x.tb < y.tb;
  });
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

bool isSmoothJoint(const GcGePath& path, int before, int after) {
  const GcGeSpan &s = path.spans()[before], &n = path.spans()[after];
  const GcGeVector3d out = gcgeJetAt(s, path.poles(), s.u1).first, in = gcgeJetAt(n, path.poles(), n.u0).first;
  return out.dotProduct(in) > 0 && out.crossProduct(in).length() <= 1e-6 * out.length() * in.length();
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
  const int before = next ? si : sj, after = next ? sj : si;
  if (a.kind == Kind::Line && b.kind == Kind::Line) return a.b.crossProduct(b.b).lengthSqrd() > 0 || a.b.dotProduct(b.b) > 0;
  const bool touching = next ? j == i + 1 : i == 0 && j == static_cast<int>(tree.leaves.size()) - 1;
  return touching && isSmoothJoint(path, before, after);
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
  const auto pair = [&](int i, int j) {
    if (i >= j || meetAtJointOnly(path, tree, i, j)) return;
    GcGeMeetPair({&path, &tree, i, {}}, {&path, &tree, j, {}}, tol, found).solve();
  };
  Descent(tree, tree, {}, tol, pair).run();
  const double near = 16 * tol;
  std::erase_if(found.points, [&](const GcGeMeeting& p) { return samePlace(path, p.ta, p.tb, near); });
  for (GcGeMeeting& p : found.points)
    if (p.ta > p.tb) std::swap(p.ta, p.tb);
  tidy(path, path, tol, found);
  return found;
}
