#include "host/ge/curves/arrangement.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "host/ge/curves/append.h"
#include "host/ge/curves/meet.h"
#include "host/rx/math/elementary.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

GcGePoint3d startPoint(const GcGePath& path) { return path.origin() + path.pointOn(0, path.spans().front().u0); }
GcGePoint3d endPoint(const GcGePath& path) {
  const int last = static_cast<int>(path.spans().size()) - 1;
  return path.origin() + path.pointOn(last, path.spans().back().u1);
}

struct Bounds {
  double low[3] = {1e300, 1e300, 1e300}, high[3] = {-1e300, -1e300, -1e300};
  void add(const GcGeVector3d& p) {
    const double v[3] = {p.x, p.y, p.z};
    for (int i = 0; i < 3; ++i) {
      low[i] = std::min(low[i], v[i]);
      high[i] = std::max(high[i], v[i]);
    }
  }
  [[nodiscard]] bool touches(const Bounds& other, double tol) const {
    for (int i = 0; i < 3; ++i)
      if (low[i] > other.high[i] + tol || other.low[i] > high[i] + tol) return false;
    return true;
  }
};

// Around control points: nothing of the path lies outside.
Bounds boundsOf(const GcGePath& path) {
  Bounds box;
  const GcGeVector3d from = path.origin().asVector();
  for (const GcGeSpan& span : path.spans()) {
    if (span.kind == GcGeSpan::Kind::Bezier) {
      for (int i = 0; i <= span.degree; ++i) box.add(from + path.poles()[span.firstPole + i].point());
    } else if (span.kind == GcGeSpan::Kind::Line) {
      box.add(from + gcgePointAt(span, path.poles(), span.u0));
      box.add(from + gcgePointAt(span, path.poles(), span.u1));
    } else {
      const GcGeVector3d reach(std::fabs(span.b.x) + std::fabs(span.c.x), std::fabs(span.b.y) + std::fabs(span.c.y),
                               std::fabs(span.b.z) + std::fabs(span.c.z));
      box.add(from + span.center() + reach);
      box.add(from + span.center() - reach);
    }
  }
  return box;
}

double toleranceOf(const std::vector<GcGePath>& curves) {
  constexpr double kOfSize = 4e-10, kOfReach = 1e-12;
  double size = 0, reach = 0;
  for (const GcGePath& path : curves) {
    size = std::fmax(size, path.size());
    const GcGePoint3d p = startPoint(path);
    reach = std::fmax(reach, std::fmax(std::fabs(p.x), std::fmax(std::fabs(p.y), std::fabs(p.z))));
  }
  return size * kOfSize + reach * kOfReach;
}

// Points that count as one get one number; looked up by cells of a grid.
class Vertices {
 public:
  Vertices(std::vector<GcGePoint3d>& points, double tolerance)
      : m_points(points), m_tolerance(tolerance), m_cell(4 * tolerance) {}

  int at(const GcGePoint3d& p) {
    const int64_t x = cellOf(p.x), y = cellOf(p.y), z = cellOf(p.z);
    for (int64_t dx = -1; dx <= 1; ++dx)
      for (int64_t dy = -1; dy <= 1; ++dy)
        for (int64_t dz = -1; dz <= 1; ++dz) {
          const auto found = m_cells.find(keyOf(x + dx, y + dy, z + dz));
          if (found == m_cells.end()) continue;
          for (const int each : found->second)
            if (m_points[static_cast<size_t>(each)].distanceTo(p) <= 2 * m_tolerance) return each;
        }
    m_points.push_back(p);
    const int made = static_cast<int>(m_points.size()) - 1;
    m_cells[keyOf(x, y, z)].push_back(made);
    return made;
  }

 private:
  [[nodiscard]] int64_t cellOf(double v) const { return std::llround(v / m_cell); }
  // Cells that share a key only cost a look at each other's points.
  static uint64_t keyOf(int64_t x, int64_t y, int64_t z) {
    constexpr uint64_t kMix = 0x9E3779B97F4A7C15u;
    return ((static_cast<uint64_t>(x) * kMix + static_cast<uint64_t>(y)) * kMix + static_cast<uint64_t>(z)) * kMix;
  }
  std::vector<GcGePoint3d>& m_points;
  double m_tolerance, m_cell;
  std::unordered_map<uint64_t, std::vector<int>> m_cells;
};

}  // namespace

struct GcGeArrangement::Finder {
  Vertices vertices;
};

GcGeArrangement::GcGeArrangement(const std::vector<GcGePath>& curves, const GcGeVector3d& normal) : m_normal(normal) {
  if (curves.empty()) return;
  m_tolerance = toleranceOf(curves);
  Finder finder{Vertices(m_vertices, m_tolerance)};
  m_finder = &finder;
  cut(curves);
  m_finder = nullptr;
  sortAboutVertices();
}

// Every curve is cut where it meets another one or itself, and where a common stretch begins or ends.
void GcGeArrangement::cut(const std::vector<GcGePath>& curves) {
  std::vector<std::vector<double>> params(curves.size());
  std::vector<Bounds> boxes;
  boxes.reserve(curves.size());
  for (const GcGePath& curve : curves) boxes.push_back(boundsOf(curve));
  std::vector<size_t> order(curves.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return boxes[a].low[0] < boxes[b].low[0]; });
  const auto take = [&](const GcGeMeetings& found, size_t a, size_t b) {
    for (const GcGeMeeting& each : found.points) {
      params[a].push_back(each.ta);
      params[b].push_back(each.tb);
    }
    for (const GcGeSharing& each : found.stretches) {
      params[a].insert(params[a].end(), {each.ta0, each.ta1});
      params[b].insert(params[b].end(), {each.tb0, each.tb1});
    }
  };
  for (size_t i = 0; i < order.size(); ++i) {
    const size_t a = order[i];
    take(gcgeMeetSelf(curves[a], m_tolerance), a, a);
    for (size_t k = i + 1; k < order.size() && boxes[order[k]].low[0] <= boxes[a].high[0] + m_tolerance; ++k)
      if (boxes[a].touches(boxes[order[k]], m_tolerance))
        take(gcgeMeet(curves[a], curves[order[k]], m_tolerance), a, order[k]);
  }
  for (size_t i = 0; i < curves.size(); ++i) addPieces(curves, static_cast<int>(i), std::move(params[i]));
}

void GcGeArrangement::addPieces(const std::vector<GcGePath>& curves, int curve, std::vector<double> params) {
  const GcGePath& path = curves[static_cast<size_t>(curve)];
  const bool closed = path.isClosed() || startPoint(path).distanceTo(endPoint(path)) <= m_tolerance;
  if (!closed || params.empty()) params.insert(params.end(), {path.startParam(), path.endParam()});
  std::sort(params.begin(), params.end());
  std::vector<double> cuts;
  GcGePoint3d last, here;
  for (const double t : params) {
    if (!path.pointAt(std::clamp(t, path.startParam(), path.endParam()), here)) continue;
    const bool isNew = cuts.empty() || here.distanceTo(last) > m_tolerance ||
                       (t - cuts.back()) > (path.endParam() - path.startParam()) / 2;
    if (!isNew) continue;
    cuts.push_back(std::clamp(t, path.startParam(), path.endParam()));
    last = here;
  }
  for (size_t i = 0; i + 1 < cuts.size(); ++i) addEdge(path.trimmed(cuts[i], cuts[i + 1]), curve);
  const bool reachesRound =
      closed && !cuts.empty() && (cuts.front() > path.startParam() || cuts.back() < path.endParam());
  if (!reachesRound) return;
  // The stretch through the seam.
  GcGePath seam(path.origin());
  if (cuts.back() < path.endParam()) gcgeAppend(path.trimmed(cuts.back(), path.endParam()), seam);
  if (cuts.front() > path.startParam()) gcgeAppend(path.trimmed(path.startParam(), cuts.front()), seam);
  addEdge(std::move(seam), curve);
}

void GcGeArrangement::addEdge(GcGePath path, int curve) {
  if (path.isEmpty() || !(path.length() > m_tolerance)) return;
  Edge edge;
  edge.start = vertexAt(startPoint(path));
  edge.end = vertexAt(endPoint(path));
  GcGePoint3d middle, otherMiddle;
  double t = 0;
  if (!path.paramAtDist(path.length() / 2, t) || !path.pointAt(t, middle)) return;
  // What lies over an edge that is there already becomes a further owner of it.
  for (const int half : m_leaving[static_cast<size_t>(edge.start)]) {
    Edge& other = m_edges[static_cast<size_t>(half / 2)];
    const bool isReversed = other.start != edge.start || (other.start == other.end && half % 2 == 1);
    const int otherEnd = isReversed ? other.start : other.end;
    if (otherEnd != edge.end || !other.path.paramAtDist(other.path.length() / 2, t) ||
        !other.path.pointAt(t, otherMiddle) || otherMiddle.distanceTo(middle) > 100 * m_tolerance)
      continue;
    bool against = isReversed;
    if (edge.start == edge.end) against = path.vectorArea().dotProduct(other.path.vectorArea()) < 0;
    other.owners.push_back({curve, against});
    return;
  }
  edge.owners.push_back({curve, false});
  edge.path = std::move(path);
  const int index = static_cast<int>(m_edges.size());
  m_leaving[static_cast<size_t>(edge.start)].push_back(2 * index);
  m_leaving[static_cast<size_t>(edge.end)].push_back(2 * index + 1);
  m_edges.push_back(std::move(edge));
}

int GcGeArrangement::vertexAt(const GcGePoint3d& point) {
  const int index = m_finder->vertices.at(point);
  m_leaving.resize(m_vertices.size());
  return index;
}

void GcGeArrangement::sortAboutVertices() {
  const GcGeVector3d x = m_normal.perpVector().normal();
  const GcGeVector3d y = m_normal.crossProduct(x);
  m_place.resize(2 * m_edges.size());
  for (size_t v = 0; v < m_leaving.size(); ++v) {
    std::vector<int>& leaving = m_leaving[v];
    constexpr double kNear = 0.1;  // of the shortest edge: where the order of the edges is looked at
    double radius = 1e300;
    for (const int half : leaving)
      radius = std::min(radius, kNear * m_edges[static_cast<size_t>(half / 2)].path.length());
    std::vector<std::pair<double, int>> turns;
    for (const int half : leaving) {
      const GcGePath& path = m_edges[static_cast<size_t>(half / 2)].path;
      const double along = half % 2 == 0 ? radius : path.length() - radius;
      double t = 0;
      GcGePoint3d at = m_vertices[v];
      if (path.paramAtDist(along, t)) static_cast<void>(path.pointAt(t, at));
      const GcGeVector3d way = at - m_vertices[v];
      turns.emplace_back(gc::atan2(way.dotProduct(y), way.dotProduct(x)), half);
    }
    std::sort(turns.begin(), turns.end());
    for (size_t i = 0; i < turns.size(); ++i) {
      leaving[i] = turns[i].second;
      m_place[static_cast<size_t>(leaving[i])] = static_cast<int>(i);
    }
  }
}

// The first half-edge in use clockwise from where this one came in: it bounds the same area on the left.
int GcGeArrangement::next(int half, const std::vector<bool>& isUsed) const {
  const int back = half ^ 1;
  const std::vector<int>& leaving = m_leaving[static_cast<size_t>(startOf(back))];
  const int count = static_cast<int>(leaving.size());
  const int place = m_place[static_cast<size_t>(back)];
  for (int i = 1; i <= count; ++i) {
    const int candidate = leaving[static_cast<size_t>((place - i + 2 * count) % count)];
    if (isUsed[static_cast<size_t>(candidate)]) return candidate;
  }
  return -1;
}

std::vector<GcGeArrangement::Loop> GcGeArrangement::trace(const std::vector<bool>& isUsed) const {
  std::vector<Loop> loops;
  std::vector<bool> isDone(isUsed.size(), false);
  for (size_t first = 0; first < isUsed.size(); ++first) {
    if (!isUsed[first] || isDone[first]) continue;
    Loop loop;
    int half = static_cast<int>(first);
    while (half >= 0 && !isDone[static_cast<size_t>(half)]) {
      isDone[static_cast<size_t>(half)] = true;
      loop.push_back(half);
      half = next(half, isUsed);
    }
    if (half == static_cast<int>(first)) loops.push_back(std::move(loop));
  }
  return loops;
}

std::vector<GcGeArrangement::Loop> GcGeArrangement::areas() const {
  std::vector<bool> isUsed(2 * m_edges.size(), true);
  for (;;) {
    std::vector<Loop> loops = trace(isUsed);
    std::vector<int> loopOf(isUsed.size(), -1);
    for (size_t i = 0; i < loops.size(); ++i)
      for (const int half : loops[i]) loopOf[static_cast<size_t>(half)] = static_cast<int>(i);
    bool changes = false;
    for (size_t e = 0; e < m_edges.size(); ++e) {
      if (!isUsed[2 * e] || loopOf[2 * e] != loopOf[2 * e + 1]) continue;
      isUsed[2 * e] = isUsed[2 * e + 1] = false;
      changes = true;
    }
    if (!changes) return loops;
  }
}

GcGePath GcGeArrangement::pathOf(const Loop& loop) const {
  GcGePath path(loop.empty() ? GcGePoint3d() : m_edges[static_cast<size_t>(loop[0] / 2)].path.origin());
  for (const int half : loop) {
    const GcGePath& piece = m_edges[static_cast<size_t>(half / 2)].path;
    gcgeAppend(half % 2 == 0 ? piece : piece.reversed(), path);
  }
  path.setClosed(true, true);
  return gcgeSimplified(path, m_tolerance);
}

// ---- inside -----------------------------------------------------------------------------------------------

namespace {

// Points along a span so close that the chords lie within the deviation.
int chordsOf(const GcGeSpan& span, const GcGePath& path, double deviation) {
  constexpr double kMost = 1e5;
  if (span.kind == GcGeSpan::Kind::Line) return 1;
  const double sweep = std::fabs(span.sweep * (span.u1 - span.u0));
  if (span.kind == GcGeSpan::Kind::Arc) {
    const double radius = std::fmax(span.b.length(), span.c.length());
    const double step = deviation < radius ? 2 * gc::acos(1 - deviation / radius) : kPi / 2;
    return static_cast<int>(std::clamp(std::ceil(sweep / std::fmin(step, kPi / 2)), 1.0, kMost));
  }
  // A chord lies off a curve by an eighth of the second derivative.
  double bend = 0;
  for (int i = 0; i + 2 <= span.degree; ++i) {
    const GcGePole* p = path.poles() + span.firstPole + i;
    bend = std::fmax(bend, (p[0].point() + p[2].point() - p[1].point() * 2).length());
  }
  constexpr double kWeights = 4;  // room for weights that differ
  const double second = bend * span.degree * (span.degree - 1) * (span.rational ? kWeights : 1);
  return static_cast<int>(std::clamp(std::ceil(std::sqrt(second / (8 * deviation))) + 1, 2.0, kMost));
}

}  // namespace

bool gcgeEncloses(const GcGePath& loop, const GcGeVector3d& normal, const GcGePoint3d& point) {
  const GcGeOnPath nearest = loop.closestTo(point);
  if (nearest.span < 0 || !(nearest.distance > loop.tolerance())) return false;
  const GcGeVector3d x = normal.perpVector().normal();
  const GcGeVector3d y = normal.crossProduct(x);
  const GcGeVector3d from = point - loop.origin();
  bool within = false, isFirst = true;
  double lastX = 0, lastY = 0;
  const auto visit = [&](const GcGeVector3d& p) {
    const double px = (p - from).dotProduct(x), py = (p - from).dotProduct(y);
    if (!isFirst && (lastY > 0) != (py > 0) && 0 < lastX - lastY * (px - lastX) / (py - lastY)) within = !within;
    isFirst = false;
    lastX = px;
    lastY = py;
  };
  for (const GcGeSpan& span : loop.spans()) {
    const int count = chordsOf(span, loop, nearest.distance / 4);
    for (int i = 0; i < count; ++i) visit(gcgePointAt(span, loop.poles(), span.u0 + (span.u1 - span.u0) * i / count));
  }
  visit(loop.pointOn(0, loop.spans().front().u0));
  return within;
}

// ---- areas put together -----------------------------------------------------------------------------------

namespace {

// How often loops go around a point, odd or even.
bool isWithin(const std::vector<GcGePath>& loops, const GcGeVector3d& normal, const GcGePoint3d& point) {
  bool within = false;
  for (const GcGePath& loop : loops) within = within != gcgeEncloses(loop, normal, point);
  return within;
}

bool combined(GcGeCombination how, bool a, bool b) {
  switch (how) {
    case GcGeCombination::Union: return a || b;
    case GcGeCombination::Difference: return a && !b;
    case GcGeCombination::Intersection: return a && b;
  }
  return false;
}

}  // namespace

std::vector<GcGePath> gcgeCombine(const std::vector<GcGePath>& a, const std::vector<GcGePath>& b,
                                  const GcGeVector3d& normal, GcGeCombination how) {
  std::vector<GcGePath> curves = a;
  curves.insert(curves.end(), b.begin(), b.end());
  const GcGeArrangement arrangement(curves, normal);
  const auto& edges = arrangement.edges();
  std::vector<bool> isUsed(2 * edges.size(), false);
  for (size_t e = 0; e < edges.size(); ++e) {
    // Whether each operand lies to the left and to the right of the edge.
    bool isOwned[2] = {false, false}, left[2] = {false, false}, right[2] = {false, false};
    for (const GcGeArrangement::Edge::Owner& owner : edges[e].owners) {
      const int which = static_cast<size_t>(owner.curve) < a.size() ? 0 : 1;
      isOwned[which] = true;
      (owner.isReversed ? right : left)[which] = true;
    }
    double t = 0;
    GcGePoint3d middle;
    const GcGePath& path = edges[e].path;
    if (!path.paramAtDist(path.length() / 2, t) || !path.pointAt(t, middle)) continue;
    for (int which = 0; which < 2; ++which)
      if (!isOwned[which]) left[which] = right[which] = isWithin(which == 0 ? a : b, normal, middle);
    const bool onLeft = combined(how, left[0], left[1]), onRight = combined(how, right[0], right[1]);
    if (onLeft != onRight) isUsed[2 * e + (onLeft ? 0 : 1)] = true;
  }
  std::vector<GcGePath> result;
  for (const GcGeArrangement::Loop& loop : arrangement.trace(isUsed)) result.push_back(arrangement.pathOf(loop));
  return result;
}
