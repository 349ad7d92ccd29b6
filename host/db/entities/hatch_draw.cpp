// Hatches drawn: loops become polygons of short sides, the area inside (odd number of crossings) is cut into strips or
// filled with the pattern's lines.
#include <algorithm>
#include <cmath>
#include <vector>

#include "db/hatch.h"
#include "gi/drawable.h"
#include "host/db/entities/bulge.h"
#include "host/db/entities/planar.h"
#include "host/ge/curves/nurbs.h"

namespace {

using Ring = std::vector<GcGePoint2d>;

constexpr int kSidesPerTurn = 96;

void addArcPoints(Ring& ring, const GcGePoint2d& center, const GcGeVector2d& a, const GcGeVector2d& b, double startRad,
                  double sweepRad) {
  const int sides = std::max(2, static_cast<int>(std::ceil(std::fabs(sweepRad) / gcplanar::kTwoPi * kSidesPerTurn)));
  for (int i = 0; i <= sides; ++i) {
    const double angle = startRad + sweepRad * i / sides;
    ring.push_back(center + a * std::cos(angle) + b * std::sin(angle));
  }
}

void addSplinePoints(Ring& ring, const GcDbHatchEdge& edge) {
  GcGeNurbs nurbs;
  nurbs.degree = edge.degree;
  nurbs.knots.assign(edge.knots.begin(), edge.knots.end());
  for (const GcDbHatchSplinePoint& point : edge.controlPoints) {
    nurbs.points.push_back({point.point.x, point.point.y, 0});
    if (edge.isRational) nurbs.weights.push_back(point.weight);
  }
  GcGePath path;
  if (!nurbs.isValid() || !gcgePathOfNurbs(nurbs, path)) return;
  constexpr int kSidesPerSpan = 16;
  for (const GcGeSpan& span : path.spans())
    for (int i = 0; i <= kSidesPerSpan; ++i) {
      const double u = span.u0 + (span.u1 - span.u0) * i / kSidesPerSpan;
      const GcGePoint3d at = path.origin() + gcgePointAt(span, path.poles(), u);
      ring.push_back({at.x, at.y});
    }
}

void addEdgePoints(Ring& ring, const GcDbHatchEdge& edge) {
  const size_t before = ring.size();
  const double sense = edge.isCounterClockwise ? 1 : -1;
  double sweep = edge.endRad - edge.startRad;
  if (sweep <= 0) sweep += gcplanar::kTwoPi;
  switch (edge.type) {
    case GcDbHatchEdge::kArc:
      addArcPoints(ring, edge.start, {edge.radius, 0}, {0, edge.radius}, sense * edge.startRad, sense * sweep);
      break;
    case GcDbHatchEdge::kEllipse:
      addArcPoints(ring, edge.start, edge.majorAxis, edge.majorAxis.perpVector() * edge.radius, sense * edge.startRad,
                   sense * sweep);
      break;
    case GcDbHatchEdge::kSpline: addSplinePoints(ring, edge); break;
    default: ring.push_back(edge.start); ring.push_back(edge.end);
  }
  // Edges may be listed against the way round: the end that lies nearer to what came before goes first.
  if (before > 0 && ring.size() > before &&
      ring[before - 1].distanceTo(ring.back()) < ring[before - 1].distanceTo(ring[before]))
    std::reverse(ring.begin() + static_cast<std::ptrdiff_t>(before), ring.end());
}

Ring ringOf(const GcDbHatchLoop& loop) {
  Ring ring;
  const int count = loop.vertices.length();
  for (int i = 0; i < count; ++i) {
    const GcDbHatchVertex& from = loop.vertices[i];
    const GcGePoint2d& to = loop.vertices[(i + 1) % count].point;
    if (from.bulge == 0 || from.point == to) {
      ring.push_back(from.point);
      continue;
    }
    const gcbulge::Arc arc = gcbulge::arcOf(from.point, to, from.bulge);
    addArcPoints(ring, arc.center, {arc.radius, 0}, {0, arc.radius}, arc.startRad, arc.sweepRad);
  }
  for (const GcDbHatchEdge& edge : loop.edges) addEdgePoints(ring, edge);
  return ring;
}

// A side that rises from its lower to its upper end.
struct Side {
  GcGePoint2d low, high;
  [[nodiscard]] double xAt(double y) const {
    return high.y == low.y ? low.x : low.x + (high.x - low.x) * ((y - low.y) / (high.y - low.y));
  }
};

std::vector<Side> sidesOf(const std::vector<Ring>& rings, double c, double s) {
  std::vector<Side> sides;
  for (const Ring& ring : rings)
    for (size_t i = 0; i < ring.size(); ++i) {
      const GcGePoint2d& p = ring[i];
      const GcGePoint2d& q = ring[(i + 1) % ring.size()];
      GcGePoint2d from(c * p.x + s * p.y, c * p.y - s * p.x);
      GcGePoint2d to(c * q.x + s * q.y, c * q.y - s * q.x);
      if (from.y == to.y) continue;
      if (from.y > to.y) std::swap(from, to);
      sides.push_back({from, to});
    }
  std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) { return a.low.y < b.low.y; });
  return sides;
}

// Places where a level line crosses the sides, in order.
void crossingsAt(const std::vector<Side>& sides, double y, std::vector<double>& xs) {
  xs.clear();
  for (const Side& side : sides) {
    if (side.low.y > y) break;
    if (side.high.y > y) xs.push_back(side.xAt(y));
  }
  std::sort(xs.begin(), xs.end());
}

class Filler {
 public:
  Filler(GcGiWorldDraw& draw, double elevation, const GcGeVector3d& normal) : m_draw(draw), m_elevation(elevation) {
    m_toWorld.setToPlaneToWorld(normal);
  }

  // Strips between the heights of all corners; within one no sides begin or end.
  void fill(const std::vector<Ring>& rings) {
    if (rings.size() == 1 && isConvex(rings[0])) {
      std::vector<GcGePoint3d> points;
      for (const GcGePoint2d& p : rings[0]) points.push_back(place(p));
      m_draw.geometry().polygon(static_cast<int>(points.size()), points.data());
      return;
    }
    const std::vector<Side> sides = sidesOf(rings, 1, 0);
    std::vector<double> levels;
    for (const Side& side : sides) {
      levels.push_back(side.low.y);
      levels.push_back(side.high.y);
    }
    std::sort(levels.begin(), levels.end());
    levels.erase(std::unique(levels.begin(), levels.end()), levels.end());
    std::vector<const Side*> cut;
    for (size_t i = 0; i + 1 < levels.size(); ++i) {
      const double middle = (levels[i] + levels[i + 1]) / 2;
      cut.clear();
      for (const Side& side : sides) {
        if (side.low.y > middle) break;
        if (side.high.y > middle) cut.push_back(&side);
      }
      std::sort(cut.begin(), cut.end(), [&](const Side* a, const Side* b) { return a->xAt(middle) < b->xAt(middle); });
      for (size_t k = 0; k + 1 < cut.size(); k += 2) strip(*cut[k], *cut[k + 1], levels[i], levels[i + 1]);
    }
  }

  // The dashes of one family inside the rings. False when there would be too many of them.
  bool pattern(const std::vector<Ring>& rings, const GcDbHatchPatternLine& line, int& budget) {
    const double c = std::cos(line.angleRad);
    const double s = std::sin(line.angleRad);
    const double along = c * line.offsetX + s * line.offsetY;
    const double across = c * line.offsetY - s * line.offsetX;
    const double baseAlong = c * line.baseX + s * line.baseY;
    const double baseAcross = c * line.baseY - s * line.baseX;
    if (across == 0) return true;
    const std::vector<Side> sides = sidesOf(rings, c, s);
    if (sides.empty()) return true;
    double low = sides[0].low.y;
    double high = low;
    for (const Side& side : sides) high = std::max(high, side.high.y);
    const double atLow = (low - baseAcross) / across;
    const double atHigh = (high - baseAcross) / across;
    const double first = std::ceil(std::min(atLow, atHigh));
    const double last = std::floor(std::max(atLow, atHigh));
    if (!(last - first < budget)) return false;
    std::vector<double> xs;
    for (double n = first; n <= last; ++n) {
      const double y = baseAcross + n * across;
      crossingsAt(sides, y, xs);
      for (size_t k = 0; k + 1 < xs.size(); k += 2)
        if (!dashes(line, baseAlong + n * along, xs[k], xs[k + 1], y, c, s, budget)) return false;
    }
    return true;
  }

 private:
  [[nodiscard]] GcGePoint3d place(const GcGePoint2d& p) const { return m_toWorld * GcGePoint3d(p.x, p.y, m_elevation); }

  static bool isConvex(const Ring& ring) {
    if (ring.size() < 3) return false;
    double sense = 0;
    double turned = 0;
    for (size_t i = 0; i < ring.size(); ++i) {
      const GcGeVector2d a = ring[(i + 1) % ring.size()] - ring[i];
      const GcGeVector2d b = ring[(i + 2) % ring.size()] - ring[(i + 1) % ring.size()];
      const double cross = a.crossProduct(b);
      if (cross * sense < 0) return false;
      if (cross != 0) sense = cross;
      turned += std::atan2(cross, a.dotProduct(b));
    }
    return std::fabs(turned) < gcplanar::kTwoPi * 1.5;  // once round
  }

  void strip(const Side& left, const Side& right, double low, double high) {
    const GcGePoint3d corners[4] = {place({left.xAt(low), low}), place({right.xAt(low), low}),
                                    place({right.xAt(high), high}), place({left.xAt(high), high})};
    m_draw.geometry().polygon(4, corners);
  }

  void stroke(double from, double to, double y, double c, double s) {
    const GcGePoint3d ends[2] = {place({c * from - s * y, s * from + c * y}), place({c * to - s * y, s * to + c * y})};
    m_draw.geometry().polyline(2, ends);
  }

  bool dashes(const GcDbHatchPatternLine& line, double phase, double from, double to, double y, double c, double s,
              int& budget) {
    double period = 0;
    for (const double dash : line.dashes) period += std::fabs(dash);
    if (line.dashes.isEmpty() || period <= 0) {
      stroke(from, to, y, c, s);
      return --budget > 0;
    }
    double at = phase + std::floor((from - phase) / period) * period;
    while (at < to) {
      for (const double dash : line.dashes) {
        const double end = at + std::fabs(dash);
        if (dash >= 0 && end >= from && at <= to) {
          stroke(std::max(at, from), std::min(end, to), y, c, s);
          if (--budget <= 0) return false;
        }
        at = end;
      }
    }
    return true;
  }

  GcGiWorldDraw& m_draw;
  double m_elevation;
  GcGeMatrix3d m_toWorld;
};

}  // namespace

bool GcDbHatch::subWorldDraw(GcGiWorldDraw* draw) {
  std::vector<Ring> rings;
  constexpr int kAroundText = 8;
  for (const GcDbHatchLoop& loop : m_loops) {
    if (m_style == kIgnore && !rings.empty()) break;
    if ((loop.flags & kAroundText) != 0 && m_style == kIgnore) continue;
    Ring ring = ringOf(loop);
    if (ring.size() > 1) rings.push_back(std::move(ring));
  }
  if (rings.empty()) return true;
  Filler filler(*draw, m_elevation, m_normal);
  // So dense a pattern cannot be told from a fill, and would take long to draw.
  int budget = 200000;
  bool dense = m_isSolid;
  for (const GcDbHatchPatternLine& line : m_lines)
    if (!dense && !filler.pattern(rings, line, budget)) dense = true;
  if (!dense) return true;
  draw->subEntityTraits().setFill(true);
  filler.fill(rings);
  return true;
}
