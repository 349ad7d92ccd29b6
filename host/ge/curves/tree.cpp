#include "host/ge/curves/tree.h"

#include <numbers>

#include "host/rx/math/elementary.h"

namespace {

// Whether the control polygon turns away from its chord by less than an eighth of a turn everywhere, so that the
// curve bends by a quarter turn at most and cannot meet itself.
bool isTame(const GcGePole* poles, int degree, bool rational) {
  GcGeVector3d points[GcGeSpan::kMostDegree + 1];
  for (int i = 0; i <= degree; ++i) points[i] = rational ? poles[i].point() : poles[i].numerator();
  const GcGeVector3d chord = points[degree] - points[0];
  constexpr double kCosSquared = 0.5;
  for (int i = 0; i < degree; ++i) {
    const GcGeVector3d leg = points[i + 1] - points[i];
    const double along = leg.dotProduct(chord);
    if (along < 0 || along * along < kCosSquared * leg.lengthSqrd() * chord.lengthSqrd()) return false;
  }
  return true;
}

class Maker {
 public:
  Maker(const GcGePath& path, GcGeTree& tree) : m_path(path), m_tree(tree) {}

  void add(int index) {
    const GcGeSpan& s = m_path.spans()[index];
    switch (s.kind) {
      case GcGeSpan::Kind::Line: addLine(index, s); break;
      case GcGeSpan::Kind::Arc: addArc(index, s); break;
      case GcGeSpan::Kind::Bezier: {
        GcGePole poles[GcGeSpan::kMostDegree + 1];
        const GcGePole* own = m_path.poles() + s.firstPole;
        if (s.u0 == 0 && s.u1 == 1)
          std::copy(own, own + s.degree + 1, poles);
        else
          gcgeTrimBezier(own, s.degree, s.u0, s.u1, poles);
        addBezier(index, poles, s.degree, s.rational, s.u0, s.u1, 0);
      }
    }
  }

 private:
  void addLine(int index, const GcGeSpan& s) {
    GcGeBox box;
    const double ends[2] = {s.u0, s.u1};
    for (const double u : ends) {
      if (std::isfinite(u)) {
        box.add(s.a + s.b * u);
        continue;
      }
      const double d[3] = {s.b.x, s.b.y, s.b.z}, at[3] = {s.a.x, s.a.y, s.a.z};
      for (int k = 0; k < 3; ++k) {  // u * 0 would be NaN
        const double reach = d[k] == 0 ? at[k] : d[k] * u;
        box.lo[k] = std::min(box.lo[k], reach);
        box.hi[k] = std::max(box.hi[k], reach);
      }
    }
    m_tree.boxes.push_back(box);
    m_tree.leaves.push_back({index, -1, s.u0, s.u1});
  }

  // A quarter turn at most as a rational quadratic: ends, the tangents' meeting point, weights 1, cos(h), 1.
  void addArc(int index, const GcGeSpan& s) {
    const double angle = std::abs(s.sweep * (s.u1 - s.u0));
    const int parts = std::max(1, static_cast<int>(std::ceil(angle / (std::numbers::pi / 2) - 1e-9)));
    double from = s.u0;
    GcGeVector3d start = gcgePointAt(s, nullptr, from);
    for (int i = 0; i < parts; ++i) {
      const double to = i + 1 == parts ? s.u1 : s.u0 + (s.u1 - s.u0) * (i + 1) / parts;
      const auto [sine, weight] = gc::sinCos(s.sweep * (to - from) / 2);
      const GcGeJet jet = gcgeJetAt(s, nullptr, from);
      const GcGeVector3d end = gcgePointAt(s, nullptr, to);
      const GcGeVector3d corner = s.sweep == 0 ? start : jet.point + jet.first * (sine / (weight * s.sweep));
      const GcGeVector3d middle = corner * weight;
      const int first = static_cast<int>(m_tree.poles.size());
      m_tree.poles.push_back({start.x, start.y, start.z, 1});
      m_tree.poles.push_back({middle.x, middle.y, middle.z, weight});
      m_tree.poles.push_back({end.x, end.y, end.z, 1});
      GcGeBox box;
      box.add(start);
      box.add(corner);
      box.add(end);
      m_tree.boxes.push_back(box);
      m_tree.leaves.push_back({index, first, from, to});
      from = to;
      start = end;
    }
  }

  void addBezier(int index, const GcGePole* poles, int degree, bool rational, double u0, double u1, int depth) {
    constexpr int kMostHalvings = 12;
    if (depth < kMostHalvings && !isTame(poles, degree, rational)) {
      GcGePole half[GcGeSpan::kMostDegree + 1];
      const double middle = (u0 + u1) / 2;
      gcgeTrimBezier(poles, degree, 0, 0.5, half);
      addBezier(index, half, degree, rational, u0, middle, depth + 1);
      gcgeTrimBezier(poles, degree, 0.5, 1, half);
      return addBezier(index, half, degree, rational, middle, u1, depth + 1);
    }
    GcGeBox box;
    for (int i = 0; i <= degree; ++i) box.add(rational ? poles[i].point() : poles[i].numerator());
    m_tree.leaves.push_back({index, static_cast<int>(m_tree.poles.size()), u0, u1});
    m_tree.poles.insert(m_tree.poles.end(), poles, poles + degree + 1);
    m_tree.boxes.push_back(box);
  }

  const GcGePath& m_path;
  GcGeTree& m_tree;
};

}  // namespace

GcGeTree::GcGeTree(const GcGePath& path) {
  const int count = static_cast<int>(path.spans().size());
  leaves.reserve(count);
  boxes.reserve(2 * static_cast<size_t>(count) + 8);
  Maker maker(path, *this);
  for (int i = 0; i < count; ++i) maker.add(i);
  levelStart.push_back(0);
  levelStart.push_back(static_cast<int>(boxes.size()));
  while (this->count(levels() - 1) > 1) {
    const int begin = levelStart[levels() - 1], end = levelStart[levels()];
    for (int i = begin; i < end; i += 2) {
      GcGeBox box = boxes[i];
      if (i + 1 < end) box.add(boxes[i + 1]);
      boxes.push_back(box);
    }
    levelStart.push_back(static_cast<int>(boxes.size()));
  }
}

double GcGeLeafCurve::uAt(double v) const {
  if (v == 1) return u1;
  if (halfSweep == 0) return u0 + (u1 - u0) * v;
  const double angle = 2 * gc::atan2(v * gc::sin(halfSweep), 1 - v + v * gc::cos(halfSweep));
  return u0 + (u1 - u0) * (angle / (2 * halfSweep));
}

void gcgeLeafCurve(const GcGePath& path, const GcGeTree& tree, int leaf, GcGeLeafCurve& out) {
  const GcGeLeaf& from = tree.leaves[leaf];
  const GcGeSpan& s = path.spans()[from.span];
  out.u0 = from.u0;
  out.u1 = from.u1;
  out.halfSweep = 0;
  if (s.kind == GcGeSpan::Kind::Line) {
    const GcGeVector3d start = s.a + s.b * from.u0, end = s.a + s.b * from.u1;
    out.line[0] = {start.x, start.y, start.z, 1};
    out.line[1] = {end.x, end.y, end.z, 1};
    out.poles = out.line;
    out.degree = 1;
    out.rational = false;
    return;
  }
  out.poles = tree.poles.data() + from.firstPole;
  out.degree = s.kind == GcGeSpan::Kind::Arc ? 2 : s.degree;
  out.rational = s.kind == GcGeSpan::Kind::Arc || s.rational;
  if (s.kind == GcGeSpan::Kind::Arc) out.halfSweep = s.sweep * (from.u1 - from.u0) / 2;
}
