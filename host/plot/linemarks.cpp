#include "host/plot/linemarks.h"

#include <algorithm>
#include <cmath>

#include "db/linetype.h"
#include "db/textstyle.h"
#include "host/gi/textline.h"
#include "host/rx/math/elementary.h"

namespace gc::plot {

namespace {

constexpr double kFinestHeightMm = 0.1;  // smaller letters are not seen
constexpr int kChordsPerCurve = 32;

using Run = std::vector<Point>;

double distance(Point a, Point b) { return gc::hypot(b.x - a.x, b.y - a.y); }

Point onCubic(Point a, Point b, Point c, Point d, double t) {
  const double u = 1 - t;
  const double wa = u * u * u, wb = 3 * u * u * t, wc = 3 * u * t * t, wd = t * t * t;
  return {wa * a.x + wb * b.x + wc * c.x + wd * d.x, wa * a.y + wb * b.y + wc * c.y + wd * d.y};
}

// The arc in its own axes scaled to the unit circle, as arcLength does; its middle lies on the chord's outer side.
void addArc(Run& run, const PathStep& arc) {
  const Point from = run.back();
  if (arc.radiusX <= 0 || arc.radiusY <= 0) {
    run.push_back(arc.to);
    return;
  }
  const double c = gc::cos(arc.turnRad), s = gc::sin(arc.turnRad);
  const auto toUnit = [&](Point p) {
    return Point{(c * p.x + s * p.y) / arc.radiusX, (-s * p.x + c * p.y) / arc.radiusY};
  };
  const Point a = toUnit(from), b = toUnit(arc.to);
  const double half = gc::asin(std::fmin(1, distance(a, b) / 2));
  const double sign = arc.growing ? 1 : -1;
  const double middle = gc::atan2(b.y - a.y, b.x - a.x) - sign * 1.5707963267948966;
  const double fromAngle = middle - sign * half;
  const Point center{a.x - gc::cos(fromAngle), a.y - gc::sin(fromAngle)};
  for (int i = 1; i <= kChordsPerCurve; ++i) {
    const double angle = fromAngle + sign * 2 * half * i / kChordsPerCurve;
    const double x = (center.x + gc::cos(angle)) * arc.radiusX, y = (center.y + gc::sin(angle)) * arc.radiusY;
    run.push_back({c * x - s * y, s * x + c * y});
  }
}

void addStep(Run& run, const PathStep& step) {
  const Point from = run.back();
  const auto third = [](Point p, Point q) { return Point{p.x + (q.x - p.x) * 2 / 3, p.y + (q.y - p.y) * 2 / 3}; };
  const auto addCubic = [&](Point b, Point c) {
    for (int i = 1; i <= kChordsPerCurve; ++i)
      run.push_back(onCubic(from, b, c, step.to, static_cast<double>(i) / kChordsPerCurve));
  };
  switch (step.kind) {
    case PathStep::kQuad: addCubic(third(from, step.control1), third(step.to, step.control1)); break;
    case PathStep::kCubic: addCubic(step.control1, step.control2); break;
    case PathStep::kArc: addArc(run, step); break;
    case PathStep::kClose: run.push_back(run.front()); break;
    default: run.push_back(step.to); break;
  }
}

// The path as chains of points, one for each move of the pen.
std::vector<Run> runsOf(const Path& path) {
  std::vector<Run> runs;
  for (const PathStep& step : path.steps()) {
    if (step.kind == PathStep::kMove)
      runs.push_back({step.to});
    else if (!runs.empty())
      addStep(runs.back(), step);
  }
  return runs;
}

// Walks forwards along a run.
class Walker {
 public:
  explicit Walker(const Run& run) : m_run(run) {}
  // False when the run ends before the distance; distances must not fall.
  bool goTo(double length, Point& at, Point& along) {
    for (; m_segment + 1 < m_run.size(); ++m_segment) {
      const Point& a = m_run[m_segment];
      const Point& b = m_run[m_segment + 1];
      const double segment = distance(a, b);
      if (segment > 0 && length <= m_before + segment) {
        const double t = (length - m_before) / segment;
        at = {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
        along = {(b.x - a.x) / segment, (b.y - a.y) / segment};
        return true;
      }
      m_before += segment;
    }
    return false;
  }

 private:
  const Run& m_run;
  size_t m_segment = 0;
  double m_before = 0;
};

class MarkPen final : public GcGiStrokeSink {
 public:
  MarkPen(Path& path, Point origin, Point x) : m_path(path), m_origin(origin), m_x(x) {}
  void moveTo(double x, double y) override { m_path.moveTo(at(x, y)); }
  void lineTo(double x, double y) override { m_path.lineTo(at(x, y)); }
  void quadTo(double cx, double cy, double x, double y) override { m_path.quadTo(at(cx, cy), at(x, y)); }

 private:
  // The page's y points down: a quarter turn to the left is (y, -x).
  [[nodiscard]] Point at(double x, double y) const {
    return {m_origin.x + m_x.x * x + m_x.y * y, m_origin.y + m_x.y * x - m_x.x * y};
  }
  Path& m_path;
  Point m_origin, m_x;
};

void strokeMark(Path& strokes, const LineMark& mark, Point at, Point along, double scale) {
  const double x = mark.offsetX * scale, y = mark.offsetY * scale;
  const Point origin{at.x + along.x * x + along.y * y, at.y + along.y * x - along.x * y};
  const double c = gc::cos(mark.turnRad), s = gc::sin(mark.turnRad);
  const Point base = mark.isAbsolute ? Point{1, 0} : along;
  MarkPen pen(strokes, origin, {(base.x * c + base.y * s) * scale, (base.y * c - base.x * s) * scale});
  gcgiStrokeText(view(mark.text), mark.style, pen);
}

LineMark markOf(const GcDbLinetypeDash& dash, double at) {
  LineMark mark{at, dash.text, {}, dash.rotationRad, (dash.flags & 1) != 0, dash.offsetX, dash.offsetY};
  GcDbTextStyleTableRecord* style = nullptr;
  if (gcdbOpenObject(style, dash.styleId, GcDb::kForRead) == Gcad::eOk) {
    style->look(mark.style);
    mark.style.height = (style->textSize() > 0 ? style->textSize() : 1) * dash.scale;
    ignore(style->close());
  } else {
    mark.style.height = dash.scale;
  }
  return mark;
}

}  // namespace

std::vector<LineMark> marksOf(GcDbObjectId linetype) {
  std::vector<LineMark> marks;
  GcDbLinetypeTableRecord* record = nullptr;
  if (gcdbOpenObject(record, linetype, GcDb::kForRead) != Gcad::eOk) return marks;
  // Dashes at the pattern's end run into its first one, which so begins that much earlier.
  double at = 0;
  for (int i = record->numDashes() - 1; i > 0 && record->dashLengthAt(i) >= 0; --i) at += record->dashLengthAt(i);
  for (const GcDbLinetypeDash& dash : record->dashes()) {
    at += std::fabs(dash.length);
    if (dash.isText() && !dash.text.isEmpty() && dash.scale > 0) marks.push_back(markOf(dash, at));
  }
  ignore(record->close());
  return marks;
}

Path markStrokes(const Path& path, const std::vector<LineMark>& marks, const MarkSpacing& spacing) {
  Path strokes;
  if (!(spacing.period > 0)) return strokes;
  for (const LineMark& mark : marks) {
    if (mark.style.height * spacing.scale < kFinestHeightMm) continue;
    const double first = std::fmod(mark.at * spacing.scale * spacing.stretch, spacing.period);
    for (const Run& run : runsOf(path)) {
      Walker walker(run);
      Point at, along;
      for (double length = first; walker.goTo(length, at, along); length += spacing.period)
        strokeMark(strokes, mark, at, along, spacing.scale);
    }
  }
  return strokes;
}

}  // namespace gc::plot
