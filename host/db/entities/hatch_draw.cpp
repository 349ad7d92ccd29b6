// Hatches drawn: the pattern's lines, cut off at the loops themselves, or a fill.
#include <algorithm>
#include <cmath>
#include <vector>

#include "db/hatch.h"
#include "gi/drawable.h"
#include "host/db/entities/hatch_edges.h"
#include "host/gi/hatchlines.h"
#include "host/rx/math/elementary.h"
#include "host/rx/view.h"

namespace {

// So dense a pattern cannot be told from a fill, and would take long to draw.
constexpr int kMostPieces = 1000000;

// Which loops bound what is seen: by their depth in one another.
std::vector<GcGePath> seenLoops(const GcArray<GcDbHatchLoop>& loops, GcDbHatch::HatchStyle style) {
  constexpr int kAroundText = 8;
  std::vector<GcGePath> paths;
  for (const GcDbHatchLoop& loop : loops) {
    if (style == GcDbHatch::kIgnore && (loop.flags & kAroundText) != 0) continue;
    GcGePath path = gchatch::pathOf(loop);
    if (!path.isEmpty() && path.isFinite()) paths.push_back(std::move(path));
  }
  if (style == GcDbHatch::kNormal || paths.size() < 2) return paths;
  const int deepest = style == GcDbHatch::kOuter ? 1 : 0;
  const std::vector<int> depths = gcgiLoopDepths(paths);
  std::vector<GcGePath> seen;
  for (size_t i = 0; i < paths.size(); ++i)
    if (depths[i] <= deepest) seen.push_back(std::move(paths[i]));
  return seen;
}

// Appends points of the span but its last, no side further from it than the deviation.
void addPoints(const GcGePath& path, const GcGeSpan& span, double deviation, std::vector<GcGePoint3d>& points) {
  constexpr int kFewest = 4, kMost = 512;
  int sides = 1;
  if (span.kind == GcGeSpan::Kind::Arc) {
    // The height of a side over its arc: r (1 - cos(angle / 2)).
    const double radius = std::fmax(span.b.length(), span.c.length());
    const double angle = radius > deviation ? 2 * gc::acos(1 - deviation / radius) : 1;
    sides = static_cast<int>(std::ceil(std::fabs(span.sweep * (span.u1 - span.u0)) / angle));
  } else if (span.kind == GcGeSpan::Kind::Bezier) {
    sides = span.degree < 2 ? 1 : 16 * span.degree;
  }
  if (span.kind != GcGeSpan::Kind::Line) sides = std::clamp(sides, kFewest, kMost);
  for (int i = 0; i < sides; ++i)
    points.push_back(path.origin() + gcgePointAt(span, path.poles(), span.u0 + (span.u1 - span.u0) * i / sides));
}

class Drawer {
 public:
  Drawer(GcGiWorldDraw& draw, const std::vector<GcGePath>& loops, double elevation, const GcGeVector3d& normal)
      : m_draw(draw), m_loops(loops), m_elevation(elevation) {
    m_toWorld.setToPlaneToWorld(normal);
  }

  // False, with nothing drawn, when there would be too many pieces.
  bool pattern(const GcArray<GcDbHatchPatternLine>& lines) {
    std::vector<GcGePoint2d> ends;
    for (const GcDbHatchPatternLine& line : lines) {
      GcGiHatchFamily family;
      family.angleRad = line.angleRad;
      family.base = {line.baseX, line.baseY};
      family.offset = {line.offsetX, line.offsetY};
      family.dashes = line.dashes.begin();
      family.dashCount = line.dashes.length();
      if (!gcgiHatchLines(m_loops, family, kMostPieces - static_cast<int>(ends.size() / 2), ends)) return false;
    }
    for (size_t i = 0; i < ends.size(); i += 2) {
      const GcGePoint3d stroke[2] = {place({ends[i].x, ends[i].y, 0}), place({ends[i + 1].x, ends[i + 1].y, 0})};
      m_draw.geometry().polyline(2, stroke);
    }
    return true;
  }

  void fill() {
    std::vector<GcGePoint3d> points;
    std::vector<int> counts;
    for (const GcGePath& loop : m_loops) {
      const size_t before = points.size();
      for (const GcGeSpan& span : loop.spans()) addPoints(loop, span, m_draw.deviation(), points);
      const GcGeSpan& last = loop.spans().back();
      const GcGePoint3d end = loop.origin() + gcgePointAt(last, loop.poles(), last.u1);
      if (!(end - points[before]).isZeroLength()) points.push_back(end);
      counts.push_back(static_cast<int>(points.size() - before));
    }
    for (GcGePoint3d& point : points) point = place(point);
    m_draw.geometry().polyPolygon(static_cast<int>(counts.size()), counts.data(), points.data());
  }

  // Colours run across the loops at the gradient's angle, from end to end.
  [[nodiscard]] GcGiGradient gradient(const GcDbHatchGradient& own) const {
    const GcGeVector3d way(gc::cos(own.angleRad), gc::sin(own.angleRad), 0);
    double low = 1e300, high = -1e300;
    std::vector<GcGePoint3d> points;
    for (const GcGePath& loop : m_loops)
      for (const GcGeSpan& span : loop.spans()) addPoints(loop, span, m_draw.deviation(), points);
    for (const GcGePoint3d& point : points) {
      const double at = way.dotProduct(point.asVector());
      low = std::fmin(low, at);
      high = std::fmax(high, at);
    }
    const GcGeVector3d aside = points[0].asVector() - way * way.dotProduct(points[0].asVector());
    GcGiGradient gradient;
    gradient.from = place(GcGePoint3d() + (aside + way * low));
    gradient.to = place(GcGePoint3d() + (aside + way * high));
    const bool inverted = view(own.name).substr(0, 3) == GC_T("INV");
    gradient.colorFrom = colorOf(own, inverted ? 1 : 0);
    gradient.colorTo = colorOf(own, inverted ? 0 : 1);
    gradient.mirrored = !(own.name == GcString(GC_T("LINEAR")));
    return gradient;
  }

 private:
  [[nodiscard]] GcGePoint3d place(const GcGePoint3d& p) const { return m_toWorld * GcGePoint3d(p.x, p.y, m_elevation); }

  // A single colour runs to its tint: white for 1, black for 0.
  static GcCmEntityColor colorOf(const GcDbHatchGradient& own, int which) {
    if (which < own.colors.length()) {
      const GcDbHatchGradientColor& color = own.colors[which];
      if (color.color.isByColor()) return color.color;
      return GcCmEntityColor::fromIndex(color.colorIndex == 0 ? 7 : color.colorIndex);
    }
    const auto level = static_cast<uint8_t>(std::lround(255 * std::clamp(own.tint, 0.0, 1.0)));
    return GcCmEntityColor::fromRgb(level, level, level);
  }

  GcGiWorldDraw& m_draw;
  const std::vector<GcGePath>& m_loops;
  double m_elevation;
  GcGeMatrix3d m_toWorld;
};

}  // namespace

bool GcDbHatch::subWorldDraw(GcGiWorldDraw* draw) {
  const std::vector<GcGePath> loops = seenLoops(m_loops, hatchStyle());
  if (loops.empty()) return true;
  Drawer drawer(*draw, loops, m_elevation, m_normal);
  m_wasTooDense = !m_isSolid && !drawer.pattern(m_lines);
  if (!m_isSolid && !m_wasTooDense) return true;
  draw->subEntityTraits().setFill(true);
  const bool shaded = !m_gradient.isEmpty() && m_gradient[0].isGradient != 0;
  if (shaded) {
    const GcGiGradient gradient = drawer.gradient(m_gradient[0]);
    draw->subEntityTraits().setGradient(&gradient);
  }
  drawer.fill();
  if (shaded) draw->subEntityTraits().setGradient(nullptr);
  return true;
}
