#include "host/ed/strokes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "db/objectid.h"
#include "host/gi/clipping.h"
#include "host/gi/listener.h"
#include "host/rx/math/elementary.h"
#include "host/rx/view.h"

namespace ed {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kFar = 1e7;  // how long rays and construction lines are drawn
constexpr int kBezierPieces = 16;

class Collector final : public GcGiListener, public GcGiClipping {
 public:
  Collector(std::vector<Stroke>& strokes, double deviation) : m_strokes(strokes), m_deviation(deviation) {}

  [[nodiscard]] double deviation() const override { return m_deviation; }

  void pushClip(int count, const GcGePoint3d* outline) override {
    Clip& clip = m_clips.emplace_back();
    clip.first = m_strokes.size();
    for (int i = 0; i < count; ++i) clip.outline.push_back(!isMoved() ? outline[i] : transform() * outline[i]);
  }
  // What has been drawn since is cut to the outline as seen from above.
  void popClip() override {
    if (m_clips.empty()) return;
    const Clip clip = std::move(m_clips.back());
    m_clips.pop_back();
    std::vector<Stroke> drawn(m_strokes.begin() + static_cast<ptrdiff_t>(clip.first), m_strokes.end());
    m_strokes.resize(clip.first);
    for (const Stroke& stroke : drawn) {
      const size_t count = stroke.closed ? stroke.points.size() : std::max<size_t>(stroke.points.size(), 1) - 1;
      for (size_t i = 0; i < count; ++i)
        cutSegment(stroke.points[i], stroke.points[(i + 1) % stroke.points.size()], clip.outline);
    }
  }

 private:
  struct Clip {
    size_t first = 0;  // stroke drawn within it
    std::vector<GcGePoint3d> outline;
  };

  static bool isInside(const std::vector<GcGePoint3d>& outline, double x, double y) {
    bool within = false;
    for (size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
      const GcGePoint3d &a = outline[i], &b = outline[j];
      if ((a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x) within = !within;
    }
    return within;
  }

  // The stretches of a segment within the outline, each a stroke.
  void cutSegment(const GcGePoint3d& from, const GcGePoint3d& to, const std::vector<GcGePoint3d>& outline) {
    const GcGeVector3d way = to - from;
    std::vector<double> cuts{0, 1};
    for (size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
      const GcGeVector3d edge = outline[i] - outline[j], gap = outline[j] - from;
      const double across = way.x * edge.y - way.y * edge.x;
      const double t = across == 0 ? -1 : (gap.x * edge.y - gap.y * edge.x) / across;
      if (t > 0 && t < 1) cuts.push_back(t);
    }
    std::sort(cuts.begin(), cuts.end());
    for (size_t i = 0; i + 1 < cuts.size(); ++i) {
      const GcGePoint3d middle = from + way * ((cuts[i] + cuts[i + 1]) / 2);
      if (isInside(outline, middle.x, middle.y))
        m_strokes.push_back({{from + way * cuts[i], from + way * cuts[i + 1]}, false, false});
    }
  }

  void add(int count, const GcGePoint3d* points, bool closed, bool filled) {
    Stroke& stroke = m_strokes.emplace_back();
    stroke.closed = closed;
    stroke.filled = filled;
    for (int i = 0; i < count; ++i) stroke.points.push_back(!isMoved() ? points[i] : transform() * points[i]);
  }
  void polyline(int count, const GcGePoint3d* points, bool closed) override { add(count, points, closed, false); }
  void polygon(int count, const GcGePoint3d* points) override { add(count, points, true, true); }
  void polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) override {
    for (int loop = 0; loop < loopCount; points += pointCounts[loop++]) add(pointCounts[loop], points, true, true);
  }
  void circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) override {
    circularArc(center, radius, normal, gcgeArbitraryXAxis(normal), kTurn);
  }
  void circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal, const GcGeVector3d& start,
                   double sweepRad) override {
    const double ratio = radius > 0 ? std::clamp(1 - m_deviation / radius, -1.0, 1.0) : 1;
    const double step = std::clamp(2 * gc::acos(ratio), kTurn / 720, kTurn / 16);
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::fabs(sweepRad) / step)));
    const GcGeVector3d x = start.normal() * radius;
    const GcGeVector3d y = normal.normal().crossProduct(x);
    std::vector<GcGePoint3d> points;
    for (int i = 0; i <= pieces; ++i) {
      const double angle = sweepRad * i / pieces;
      points.push_back(center + x * gc::cos(angle) + y * gc::sin(angle));
    }
    add(static_cast<int>(points.size()), points.data(), false, false);
  }
  // The box of the text: as wide as its letters are on average.
  void text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction, const GCHAR* text,
            const GcGiTextStyle& style) override {
    const auto letters = static_cast<double>(view(text).size());
    const GcGeVector3d along = direction.normal() * (letters * style.height * style.widthFactor * 0.8);
    const GcGeVector3d up = normal.normal().crossProduct(direction.normal()) * style.height;
    const GcGePoint3d box[] = {position, position + along, position + along + up, position + up};
    add(4, box, true, true);
  }
  void xline(const GcGePoint3d& point, const GcGeVector3d& direction) override {
    const GcGePoint3d ends[] = {point + direction.normal() * -kFar, point + direction.normal() * kFar};
    add(2, ends, false, false);
  }
  void ray(const GcGePoint3d& point, const GcGeVector3d& direction) override {
    const GcGePoint3d ends[] = {point, point + direction.normal() * kFar};
    add(2, ends, false, false);
  }
  void bezier(int count, const GcGePoint3d* points) override {
    std::vector<GcGePoint3d> curve;
    for (int first = 0; first + 3 < count; first += 3) {
      for (int i = first == 0 ? 0 : 1; i <= kBezierPieces; ++i) {
        const double t = static_cast<double>(i) / kBezierPieces;
        const double s = 1 - t;
        const GcGeVector3d at =
            points[first].asVector() * (s * s * s) + points[first + 1].asVector() * (3 * s * s * t) +
            points[first + 2].asVector() * (3 * s * t * t) + points[first + 3].asVector() * (t * t * t);
        curve.push_back({at.x, at.y, at.z});
      }
    }
    add(static_cast<int>(curve.size()), curve.data(), false, false);
  }

  std::vector<Stroke>& m_strokes;
  std::vector<Clip> m_clips;
  double m_deviation;
};

}  // namespace

std::vector<Stroke> strokesOf(GcDbEntity& entity, double deviation) {
  std::vector<Stroke> strokes;
  Collector collector(strokes, deviation);
  entity.subWorldDraw(&collector);
  return strokes;
}

}  // namespace ed
