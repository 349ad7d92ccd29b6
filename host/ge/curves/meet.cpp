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
    if (!m_a.leaves.empty() && !m_b.leaves.empty()) tryPair(m_a.levels() - 1, 0, m_b.levels() - 1, 0);
  }

 private:
  void visitSelf(int level, int node) {
    if (level == 0) return;
    const int first = 2 * node, second = first + 1;
    visitSelf(level - 1, first);
    if (second >= m_a.count(level - 1)) return;
    visitSelf(level - 1, second);
    tryPair(level - 1, first, level - 1, second);
  }

  void tryPair(int levelA, int a, int levelB, int b) {
    if (m_a.box(levelA, a).meets(m_b.box(levelB, b), m_shift, m_tol)) visit(levelA, a, levelB, b);
  }

  // Nodes whose boxes meet. The higher one is opened until both are of one level, then both together.
  void visit(int levelA, int a, int levelB, int b) {
    if (levelA == levelB) return visitLevel(levelA, a, b);
    if (levelA > levelB) {
      const int first = 2 * a, end = std::min(first + 2, m_a.count(levelA - 1));
      for (int child = first; child < end; ++child) tryPair(levelA - 1, child, levelB, b);
    } else {
      const int first = 2 * b, end = std::min(first + 2, m_b.count(levelB - 1));
      for (int child = first; child < end; ++child) tryPair(levelA, a, levelB - 1, child);
    }
  }

  // The first ones first. Whether the boxes of two children meet is hard to foretell: every pair is put on the stack,
  // which grows by those that do.
  void visitLevel(int level, int a, int b) {
    struct Nodes {
      int level, a, b;
    };
    Nodes stack[3 * kMostLevels + 4];
    stack[0] = {level, a, b};
    for (int top = 1; top > 0;) {
      const Nodes at = stack[--top];
      if (at.level == 0) {
        m_f(at.a, at.b);
        continue;
      }
      const int below = at.level - 1, firstA = 2 * at.a, firstB = 2 * at.b;
      const GcGeBox *boxesA = &m_a.box(below, firstA), *boxesB = &m_b.box(below, firstB);
      const int countA = std::min(2, m_a.count(below) - firstA), countB = std::min(2, m_b.count(below) - firstB);
      const GcGeBox first = boxesB[0].grown(m_shift, m_tol), second = boxesB[countB - 1].grown(m_shift, m_tol);
      const auto put = [&](int i, int j, bool meets) {
        stack[top] = {below, firstA + i, firstB + j};
        top += static_cast<int>(meets);
      };
      put(1, 1, (countA > 1) & (countB > 1) & boxesA[countA - 1].meets(second));
      put(1, 0, (countA > 1) & boxesA[countA - 1].meets(first));
      put(0, 1, (countB > 1) & boxesA[0].meets(second));
      put(0, 0, boxesA[0].meets(first));
    }
  }

  static constexpr int kMostLevels = 32;  // leaves are counted by int
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
  GcGeJet at;
  if (!path.isClosed() || !path.jetAt(t0, at)) return false;
  if ((at.point - path.pointOn(0, path.spans().front().u0)).length() > 2 * tol) return false;  // far from the seam
  const double low = std::min(t0, t1), high = std::max(t0, t1);
  return staysAt(path, path.startParam(), low, tol) && staysAt(path, high, path.endParam(), tol);
}

// A stretch up to the seam of a closed path and the one that goes on behind it are one, which then ends before it
// starts.
void joinAtSeam(const GcGePath& a, std::vector<GcGeSharing>& stretches, double tol) {
  if (!a.isClosed() || stretches.size() < 2) return;
  GcGeSharing &first = stretches.front(), &last = stretches.back();
  if ((last.to - first.from).length() > 8 * tol) return;
  last.ta1 = first.ta1, last.tb1 = first.tb1, last.to = first.to;
  stretches.erase(stretches.begin());
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
  bool rising = true;  // the last one's piece on the second path, which may go on round that one's seam
  for (const GcGeSharing& s : stretches) {
    if ((s.to - s.from).length() <= tol && s.ta1 - s.ta0 <= 0) continue;
    if (!joined.empty() && (joined.back().ta1 >= s.ta0 || (joined.back().to - s.from).length() <= 8 * tol)) {
      GcGeSharing& last = joined.back();
      const bool goesOn = last.ta1 >= s.ta1 || rising == (s.tb1 > s.tb0);
      if (goesOn) {
        if (s.ta1 > last.ta1) last.ta1 = s.ta1, last.tb1 = s.tb1, last.to = s.to;
        continue;
      }
    }
    joined.push_back(s);
    rising = s.tb1 > s.tb0;
  }
  stretches = std::move(joined);
}

// In order along both paths; sorted by short keys, for the meetings themselves are long.
void sortAlong(std::vector<GcGeMeeting>& points) {
  struct Key {
    double ta, tb;
    size_t index;
  };
  std::vector<Key> keys;
  keys.reserve(points.size());
  for (const GcGeMeeting& p : points) keys.push_back({p.ta, p.tb, keys.size()});
  std::sort(keys.begin(), keys.end(),
            [](const Key& x, const Key& y) { return x.ta != y.ta ? x.ta < y.ta : x.tb < y.tb; });
  std::vector<GcGeMeeting> sorted;
  sorted.reserve(points.size());
  for (const Key& key : keys) sorted.push_back(points[key.index]);
  points = std::move(sorted);
}

bool isWithin(double ta, const GcGeSharing& s) {
  return s.ta0 <= s.ta1 ? ta >= s.ta0 && ta <= s.ta1 : ta >= s.ta0 || ta <= s.ta1;
}

void tidy(const GcGePath& a, const GcGePath& b, double tol, GcGeMeetings& found) {
  joinStretches(found.stretches, tol);
  if (&a != &b) joinAtSeam(a, found.stretches, tol);
  std::vector<GcGeMeeting>& points = found.points;
  sortAlong(points);
  const double near = 16 * tol;
  std::vector<GcGeMeeting> kept;
  kept.reserve(points.size());
  for (const GcGeMeeting& p : points) {
    bool drop = false;
    for (const GcGeSharing& s : found.stretches)
      drop = drop || isWithin(p.ta, s) || (p.point - s.from).length() <= near || (p.point - s.to).length() <= near;
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

// Whether a meeting of a span with the one behind it is their joint: the way there is no longer than `near`. For lines and
// arcs, whose speed hardly changes; false leaves it open.
bool isAtJoint(const GcGePath& path, int before, const GcGeMeeting& p, double near) {
  const GcGeSpan &a = path.spans()[before], &b = path.spans()[before + 1];
  const auto mostSpeed = [](const GcGeSpan& s) {
    return s.kind == GcGeSpan::Kind::Line ? s.b.length() : std::abs(s.sweep) * std::max(s.b.length(), s.c.length());
  };
  if (a.kind == GcGeSpan::Kind::Bezier || b.kind == GcGeSpan::Kind::Bezier) return false;
  const double wayA = std::abs(a.t1() - p.ta) / std::abs(a.tPerU), wayB = std::abs(p.tb - b.t0()) / std::abs(b.tPerU);
  return wayA * mostSpeed(a) + wayB * mostSpeed(b) <= near;
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

// A parameter between two others, the shorter way round a closed path.
double between(const GcGePath& path, double from, double to, double part) {
  const double range = path.endParam() - path.startParam();
  if (path.isClosed() && std::abs(to - from) > range / 2) to += to < from ? range : -range;
  const double t = from + (to - from) * part;
  return !path.isClosed() ? t : t < path.startParam() ? t + range : t > path.endParam() ? t - range : t;
}

// Whether the paths stay within the distance of each other between two meetings, so that they touch there and do not
// cross twice.
bool touchesBetween(const GcGePath& a, const GcGePath& b, const GcGeMeeting& p, const GcGeMeeting& q, double distance) {
  const double chord = (p.point - q.point).lengthSqrd();
  for (const double part : {0.5, 0.25, 0.75}) {
    GcGeJet ja, jb;
    if (!a.jetAt(between(a, p.ta, q.ta, part), ja) || !b.jetAt(between(b, p.tb, q.tb, part), jb)) return false;
    const GcGeVector3d off = a.origin() + ja.point - (b.origin() + jb.point);
    const double speed = jb.first.length();
    if (!(speed > 0) || off.crossProduct(jb.first).length() > distance * speed) return false;
    if (off.lengthSqrd() > chord + distance * distance) return false;
  }
  return true;
}

bool areLinesAt(const GcGePath& a, double ta, const GcGePath& b, double tb) {
  int i = 0, j = 0;
  double u = 0, v = 0;
  return a.locate(ta, i, u) && b.locate(tb, j, v) && a.spans()[i].kind == GcGeSpan::Kind::Line &&
         b.spans()[j].kind == GcGeSpan::Kind::Line;
}

// Far out rounding lets curves that touch seem to cross: neighbouring meetings with no room between them are one.
void joinTouching(const GcGePath& a, const GcGePath& b, double tol, std::vector<GcGeMeeting>& points) {
  const double grazing = gcgeGrazing(a, b, tol);
  const double sizeA = a.isBounded() ? a.size() : b.size(), sizeB = b.isBounded() ? b.size() : a.size();
  // A chord of a curve that bends with a thousand times its own size rises over it by no more than the distance.
  constexpr double kFlat = 8e3, kMostNear = 0.02;
  const double size = std::min(sizeA, sizeB), near = std::min(kMostNear * size, std::sqrt(kFlat * size * grazing));
  const auto joins = [&](GcGeMeeting& p, const GcGeMeeting& q) {
    if ((p.point - q.point).lengthSqrd() > near * near || areLinesAt(a, p.ta, b, p.tb)) return false;
    GcGeJet middle;
    const double ta = between(a, p.ta, q.ta, 0.5);
    if (!touchesBetween(a, b, p, q, grazing) || !a.jetAt(ta, middle)) return false;
    p = {ta, between(b, p.tb, q.tb, 0.5), middle.point};
    return true;
  };
  size_t kept = 0;
  for (size_t i = 0; i < points.size(); ++i)
    if (kept == 0 || !joins(points[kept - 1], points[i])) points[kept++] = points[i];
  points.resize(kept);
  if (kept > 1 && a.isClosed() && joins(points.back(), points.front())) {  // round the seam
    const GcGeMeeting joined = points.back();
    points.pop_back();
    if (joined.ta > points.front().ta) std::rotate(points.begin(), points.begin() + 1, points.end());
    (joined.ta > points.front().ta ? points.back() : points.front()) = joined;
  }
}

}  // namespace

double gcgeMeetTolerance(const GcGePath& a, const GcGePath& b) {
  const double sizeA = a.isBounded() ? a.size() : b.size(), sizeB = b.isBounded() ? b.size() : a.size();
  constexpr double kOfSize = 1e-10, kOfPlace = 8 * std::numeric_limits<double>::epsilon();
  const double places = a.origin().asVector().length() + b.origin().asVector().length();
  return kOfSize * std::min(sizeA, sizeB) + kOfPlace * (places + std::max(sizeA, sizeB));
}

GcGeMeetings gcgeMeet(const GcGePath& a, const GcGePath& b, double tol, const GcGeSkip& skip) {
  GcGeMeetings found;
  const GcGeVector3d shift = b.origin() - a.origin();
  const GcGeTree &treeA = a.tree(), &treeB = b.tree();
  const auto pair = [&](int i, int j) {
    if (skip.ofA(treeA.leaves[i].span) || skip.ofB(treeB.leaves[j].span)) return;
    GcGeMeetPair({&a, &treeA, i, {}}, {&b, &treeB, j, shift}, tol, found).solve();
  };
  Descent(treeA, treeB, shift, tol, pair).run();
  tidy(a, b, tol, found);
  joinTouching(a, b, tol, found.points);
  return found;
}

GcGeMeetings gcgeMeetSelf(const GcGePath& path, double tol, const GcGeSkip& skip) {
  GcGeMeetings found;
  const GcGeTree& tree = path.tree();
  const double near = 16 * tol;
  const auto pair = [&](int i, int j) {
    if (skip.ofA(tree.leaves[i].span) || skip.ofA(tree.leaves[j].span) || meetAtJointOnly(path, tree, i, j)) return;
    const size_t before = found.points.size();
    GcGeMeetPair({&path, &tree, i, {}}, {&path, &tree, j, {}}, tol, found).solve();
    if (found.points.size() == before || !areNeighbours(path, tree, i, j)) return;
    const int si = tree.leaves[i].span;
    const bool next = tree.leaves[j].span == si + 1;
    found.points.erase(std::remove_if(found.points.begin() + static_cast<long>(before), found.points.end(),
                                      [&](const GcGeMeeting& p) {
                                        return (next && isAtJoint(path, si, p, near)) ||
                                               samePlace(path, p.ta, p.tb, near);
                                      }),
                       found.points.end());
  };
  Descent(tree, tree, {}, tol, pair).runSelf();
  for (GcGeMeeting& p : found.points)
    if (p.ta > p.tb) std::swap(p.ta, p.tb);
  tidy(path, path, tol, found);
  return found;
}
