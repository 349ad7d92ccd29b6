#include "host/dxf/write/r12/r12_draw.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/db/entities/planar.h"
#include "host/rx/math/elementary.h"
#include "host/rx/view.h"

namespace gc::dxf {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr int kMostPieces = 1000;  // of one arc or Bezier curve

// Pieces of a chain of chords that leaves the arc by at most the deviation: r (1 - cos(a / 2)).
int piecesOf(double radius, double sweepRad, double deviation) {
  const double ratio = deviation > 0 && radius > 0 ? std::fmin(deviation / radius, 0.25) : 1e-4;
  const double step = 2 * gc::acos(1 - std::fmax(ratio, 1e-8));
  return std::clamp(static_cast<int>(std::ceil(std::fabs(sweepRad) / step)), 4, kMostPieces);
}

// The same for a cubic: a chord of the n-th part lies off by at most 3/4 of the greatest second difference over n^2.
int piecesOf(const GcGePoint3d* poles, double deviation) {
  const auto bend = [](const GcGePoint3d& a, const GcGePoint3d& b, const GcGePoint3d& c) {
    return ((a - b) + (c - b)).length();
  };
  const double most = std::fmax(bend(poles[0], poles[1], poles[2]), bend(poles[1], poles[2], poles[3]));
  if (!(most > 0) || !(deviation > 0)) return most > 0 ? 16 : 1;
  return std::clamp(static_cast<int>(std::ceil(std::sqrt(0.75 * most / deviation))), 1, kMostPieces);
}

GcGePoint3d onCubic(const GcGePoint3d* p, double t) {
  const double s = 1 - t, a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
  return {a * p[0].x + b * p[1].x + c * p[2].x + d * p[3].x, a * p[0].y + b * p[1].y + c * p[2].y + d * p[3].y,
          a * p[0].z + b * p[1].z + c * p[2].z + d * p[3].z};
}

// The normal of the plane of a ring (Newell's sum); zero for a ring without area.
GcGeVector3d normalOf(const std::vector<GcGePoint3d>& ring) {
  GcGeVector3d n;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const GcGePoint3d &p = ring[i], &q = ring[(i + 1) % ring.size()];
    n.x += (p.y - q.y) * (p.z + q.z);
    n.y += (p.z - q.z) * (p.x + q.x);
    n.z += (p.x - q.x) * (p.y + q.y);
  }
  return n;
}

struct Edge {
  double lowX, lowY, highX, highY;
  [[nodiscard]] double xAt(double y) const {
    return highY == lowY ? lowX : lowX + (highX - lowX) * ((y - lowY) / (highY - lowY));
  }
};

}  // namespace

void R12Draw::draw(GcGiDrawable* drawable) {
  if (!drawable || m_depth >= kDeepest) return;
  auto* entity = GcDbEntity::cast(drawable);
  if (entity && entity->visibility() == GcDb::kInvisible) return;
  ++m_depth;
  const bool filled = m_fill;
  m_fill = false;
  drawable->subSetAttributes(this);
  drawable->subWorldDraw(this);
  m_fill = filled;
  --m_depth;
}

void R12Draw::pushModelTransform(const GcGeMatrix3d& toParent) {
  m_transforms.push_back(m_transforms.empty() ? toParent : m_transforms.back() * toParent);
}

void R12Draw::popModelTransform() {
  if (!m_transforms.empty()) m_transforms.pop_back();
}

void R12Draw::put(const std::vector<GcGePoint3d>& points, bool closed) {
  for (const GcGePoint3d& p : points) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return;
  }
  if (m_fill && closed) {
    fill({points});
  } else {
    m_emitter.polyline(points, closed);
  }
}

void R12Draw::polyline(int count, const GcGePoint3d* points, bool closed) {
  std::vector<GcGePoint3d> placed;
  for (int i = 0; i < count; ++i) placed.push_back(place(points[i]));
  put(placed, closed && count > 2);
}

void R12Draw::polygon(int count, const GcGePoint3d* points) { polyPolygon(1, &count, points); }

void R12Draw::polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) {
  std::vector<std::vector<GcGePoint3d>> rings;
  for (int loop = 0; loop < loopCount; points += pointCounts[loop++]) {
    std::vector<GcGePoint3d> ring;
    for (int i = 0; i < pointCounts[loop]; ++i) {
      const GcGePoint3d p = place(points[i]);
      if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return;
      if (ring.empty() || !(ring.back() == p)) ring.push_back(p);
    }
    if (ring.size() > 1 && ring.front() == ring.back()) ring.pop_back();
    if (ring.size() > 2) rings.push_back(std::move(ring));
  }
  fill(rings);
}

// Triangles and quadrangles go as they are; everything else is cut at the height of every corner into strips, whose
// parts inside (an odd number of edges to their left) are trapezoids.
void R12Draw::fill(const std::vector<std::vector<GcGePoint3d>>& rings) {
  if (rings.empty()) return;
  if (rings.size() == 1 && rings[0].size() <= 4) {
    m_emitter.solid(rings[0]);
    return;
  }
  GcGeVector3d n = normalOf(rings[0]);
  if (!(n.length() > 0)) return;
  n = n.x == 0 && n.y == 0 ? GcGeVector3d::kZAxis : n * (1 / n.length());
  std::vector<Edge> edges;
  std::vector<double> heights;
  double elevation = 0;
  for (const auto& ring : rings) {
    GcGePoint3d last = gcplanar::toOwn(ring.back(), n);
    for (const GcGePoint3d& corner : ring) {
      const GcGePoint3d p = gcplanar::toOwn(corner, n);
      elevation = p.z;
      heights.push_back(p.y);
      if (p.y > last.y) edges.push_back({last.x, last.y, p.x, p.y});
      if (p.y < last.y) edges.push_back({p.x, p.y, last.x, last.y});
      last = p;
    }
  }
  std::sort(heights.begin(), heights.end());
  heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
  for (std::size_t i = 0; i + 1 < heights.size(); ++i) {
    const double low = heights[i], high = heights[i + 1], middle = low + (high - low) / 2;
    std::vector<const Edge*> crossed;
    for (const Edge& edge : edges) {
      if (edge.lowY <= low && edge.highY >= high) crossed.push_back(&edge);
    }
    std::sort(crossed.begin(), crossed.end(),
              [&](const Edge* a, const Edge* b) { return a->xAt(middle) < b->xAt(middle); });
    for (std::size_t k = 0; k + 1 < crossed.size(); k += 2) {
      const Edge &left = *crossed[k], &right = *crossed[k + 1];
      const auto world = [&](double x, double y) { return gcplanar::toWorld(GcGePoint3d(x, y, elevation), n); };
      const GcGePoint3d corners[4] = {world(left.xAt(low), low), world(right.xAt(low), low),
                                      world(right.xAt(high), high), world(left.xAt(high), high)};
      m_emitter.solid(corners);
    }
  }
}

void R12Draw::circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) {
  circularArc(center, radius, normal, gcgeArbitraryXAxis(normal.normal()), 2 * kPi);
}

void R12Draw::circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal,
                          const GcGeVector3d& startVector, double sweepRad) {
  const GcGeVector3d x = startVector.normal() * radius, y = normal.normal().crossProduct(x);
  const GcGeVector3d u = turn(x), v = turn(y);
  const double length = u.length();
  constexpr double kEven = 1e-9;
  const bool isRound = length > 0 && std::fabs(v.length() - length) <= kEven * length &&
                       std::fabs(u.dotProduct(v)) <= kEven * length * length;
  const bool isWhole = std::fabs(sweepRad) >= 2 * kPi;
  if (isRound && !m_fill) {
    const GcGeVector3d n = u.crossProduct(v).normal();
    if (isWhole) {
      m_emitter.circle(place(center), length, n);
      return;
    }
    const double start = gcplanar::angleOf(u, n), end = gcplanar::inFullTurn(start + sweepRad);
    m_emitter.arc(place(center), length, n, sweepRad < 0 ? end : start, sweepRad < 0 ? start : end);
    return;
  }
  std::vector<GcGePoint3d> points;
  const int pieces = piecesOf(std::fmax(length, v.length()), sweepRad, m_deviation);
  for (int i = 0; i < pieces + (isWhole ? 0 : 1); ++i) {
    const double angle = sweepRad * i / pieces;
    points.push_back(place(center) + u * gc::cos(angle) + v * gc::sin(angle));
  }
  put(points, isWhole || m_fill);
}

void R12Draw::text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction,
                   const GCHAR* text, const GcGiTextStyle& style) {
  const GcGeVector3d along = direction.normal(), up = normal.normal().crossProduct(along);
  const GcGeVector3d u = turn(along), v = turn(up);
  GcGiTextStyle scaled = style;
  scaled.height *= v.length();
  if (v.length() > 0) scaled.widthFactor *= u.length() / v.length();
  if (!(scaled.height > 0) || GcView(text).empty()) return;
  m_emitter.text(place(position), u.crossProduct(v).normal(), u, GcView(text), scaled);
}

void R12Draw::endless(const GcGePoint3d& point, const GcGeVector3d& direction, double back) {
  const GcGeVector3d way = turn(direction);
  if (!(way.length() > 0)) return;
  const GcGeVector3d step = way * (m_reach / way.length());
  m_emitter.line(place(point) + step * back, place(point) + step);
}

void R12Draw::xline(const GcGePoint3d& point, const GcGeVector3d& direction) { endless(point, direction, -1); }
void R12Draw::ray(const GcGePoint3d& point, const GcGeVector3d& direction) { endless(point, direction, 0); }

void R12Draw::bezier(int count, const GcGePoint3d* points) {
  if (count < 4) return;
  std::vector<GcGePoint3d> chain{place(points[0])};
  for (int i = 0; i + 3 < count; i += 3) {
    const GcGePoint3d poles[4] = {place(points[i]), place(points[i + 1]), place(points[i + 2]), place(points[i + 3])};
    const int pieces = piecesOf(poles, m_deviation);
    for (int k = 1; k <= pieces; ++k) chain.push_back(k == pieces ? poles[3] : onCubic(poles, double(k) / pieces));
  }
  const bool isClosed = chain.size() > 3 && chain.front() == chain.back();
  if (isClosed) chain.pop_back();
  put(chain, isClosed);
}

}  // namespace gc::dxf
