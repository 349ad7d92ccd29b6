#include "host/plot/worlddraw.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "db/entity.h"
#include "db/hatch.h"
#include "host/gi/textline.h"
#include "host/plot/dashes.h"
#include "host/rx/math/elementary.h"

namespace gc::plot {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kFlatRatio = 1e-6;      // an ellipse flatter than this is seen from its edge
constexpr double kGreatestRadius = 1e5;  // mm; greater arcs are drawn as Bezier curves
constexpr double kDeviationMm = 0.01;

bool isFinite(Point p) { return std::isfinite(p.x) && std::isfinite(p.y); }

Point onEllipse(Point center, Point u, Point v, double angle) {
  const double c = gc::cos(angle), s = gc::sin(angle);
  return {center.x + u.x * c + v.x * s, center.y + u.y * c + v.y * s};
}

// Half axes and turn of the ellipse center + u cos t + v sin t; source: singular values of the matrix (u v).
struct Axes {
  double first, second, turnRad;
  bool growing;  // t grows as the angle on the page does
};
Axes axesOf(Point u, Point v) {
  const double e = (u.x + v.y) / 2, f = (u.x - v.y) / 2, g = (u.y + v.x) / 2, h = (u.y - v.x) / 2;
  const double q = gc::hypot(e, h), r = gc::hypot(f, g);
  return {q + r, std::fabs(q - r), (gc::atan2(g, f) + gc::atan2(h, e)) / 2, q > r};
}

// The pen of a line of text: its plane is mapped to the page by three projected vectors.
class TextPen final : public GcGiStrokeSink {
 public:
  TextPen(Path& path, Point origin, Point x, Point y) : m_path(path), m_origin(origin), m_x(x), m_y(y) {}
  void moveTo(double x, double y) override { m_path.moveTo(at(x, y)); }
  void lineTo(double x, double y) override { m_path.lineTo(at(x, y)); }
  void quadTo(double cx, double cy, double x, double y) override { m_path.quadTo(at(cx, cy), at(x, y)); }

 private:
  [[nodiscard]] Point at(double x, double y) const {
    return {m_origin.x + m_x.x * x + m_y.x * y, m_origin.y + m_x.y * x + m_y.y * y};
  }
  Path& m_path;
  Point m_origin, m_x, m_y;
};

}  // namespace

PlotDraw::PlotDraw(Canvas& canvas, Looks& looks, const Projection& projection, bool measuring)
    : m_canvas(canvas), m_looks(looks), m_projection(projection), m_measuring(measuring) {
  m_container = looks.outermost();
  updateTotal();
  const double scale = m_total.column(0).length();
  m_deviation = measuring ? 0 : kDeviationMm / (scale > 0 ? scale : 1);
}

void PlotDraw::draw(GcDbObjectId id) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) return;
  draw(entity);
  ignore(entity->close());
}

void PlotDraw::draw(GcGiDrawable* drawable) {
  if (drawable == nullptr || m_open.size() >= kDeepest) return;
  // A block that contains itself ends here.
  if (std::find(m_open.begin(), m_open.end(), drawable) != m_open.end()) return;
  m_open.push_back(drawable);
  const Traits traits = m_traits;
  const Look container = m_container;
  const bool fill = m_fill;
  if (m_open.size() > 1) m_container = look();
  m_traits = Traits();
  m_lookValid = false;
  m_fill = false;
  m_hasGradient = false;
  if (GcDbEntity* entity = GcDbEntity::cast(drawable); entity != nullptr) {
    drawEntity(*entity);
  } else {
    drawable->subSetAttributes(this);
    drawable->subWorldDraw(this);
  }
  m_traits = traits;
  m_container = container;
  m_fill = fill;
  m_hasGradient = false;
  m_lookValid = false;
  m_open.pop_back();
}

void PlotDraw::drawEntity(GcDbEntity& entity) {
  if (entity.visibility() == GcDb::kInvisible) return;
  entity.subSetAttributes(this);
  if (m_looks.isFrozen(look().layer)) return;
  entity.subWorldDraw(this);
  if (const auto* hatch = GcDbHatch::cast(&entity)) m_denseHatches += hatch->wasTooDense() ? 1 : 0;
}

// Transforms.

void PlotDraw::updateTotal() {
  m_total = m_models.empty() ? m_projection.toPage : m_projection.toPage * m_models.back();
}

void PlotDraw::pushModelTransform(const GcGeMatrix3d& toParent) {
  m_models.push_back(m_models.empty() ? toParent : m_models.back() * toParent);
  updateTotal();
}

void PlotDraw::popModelTransform() {
  if (m_models.empty()) return;
  m_models.pop_back();
  updateTotal();
}

void PlotDraw::pushClip(int count, const GcGePoint3d* outline) {
  Path path;
  for (int i = 0; i < count; ++i) i == 0 ? path.moveTo(project(outline[i])) : path.lineTo(project(outline[i]));
  if (count > 0) path.close();
  m_canvas.pushClip(path);
}

// Traits.

void PlotDraw::setColor(const GcCmEntityColor& color) {
  m_traits.color = color;
  m_lookValid = false;
}

void PlotDraw::setLayer(const GcDbObjectId& layerId) {
  m_traits.layer = m_looks.ownRecord(layerId);
  m_lookValid = false;
}

void PlotDraw::setLineType(const GcDbObjectId& linetypeId) {
  m_traits.linetype = m_looks.ownRecord(linetypeId);
  m_lookValid = false;
}

void PlotDraw::setLineTypeScale(double scale) {
  m_traits.linetypeScale = scale;
  m_lookValid = false;
}

void PlotDraw::setLineWeight(int hundredthsOfMm) {
  m_traits.lineWeight = hundredthsOfMm;
  m_lookValid = false;
}

void PlotDraw::setGradient(const GcGiGradient* gradient) {
  m_hasGradient = gradient != nullptr;
  if (m_hasGradient) m_gradient = *gradient;
}

const Look& PlotDraw::look() {
  if (!m_lookValid) m_look = m_looks.resolve(m_traits, m_container);
  m_lookValid = true;
  return m_look;
}

// Geometry.

void PlotDraw::polyline(int count, const GcGePoint3d* points, bool closed) {
  if (count <= 0) return;
  m_path.moveTo(project(points[0]));
  for (int i = 1; i < count; ++i) m_path.lineTo(project(points[i]));
  if (closed && count > 2) m_path.close();
  if (m_fill && closed) {
    fillPath();
  } else {
    strokePath();
  }
}

void PlotDraw::polygon(int count, const GcGePoint3d* points) { polyPolygon(1, &count, points); }

void PlotDraw::polyPolygon(int loopCount, const int* pointCounts, const GcGePoint3d* points) {
  for (int loop = 0; loop < loopCount; points += pointCounts[loop++]) {
    if (pointCounts[loop] < 2) continue;
    m_path.moveTo(project(points[0]));
    for (int i = 1; i < pointCounts[loop]; ++i) m_path.lineTo(project(points[i]));
    m_path.close();
  }
  fillPath();
}

void PlotDraw::circle(const GcGePoint3d& center, double radius, const GcGeVector3d& normal) {
  circularArc(center, radius, normal, gcgeArbitraryXAxis(normal.normal()), 2 * kPi);
}

void PlotDraw::circularArc(const GcGePoint3d& center, double radius, const GcGeVector3d& normal,
                           const GcGeVector3d& startVector, double sweepRad) {
  const GcGeVector3d u = startVector.normal() * radius;
  const GcGeVector3d v = normal.normal().crossProduct(u);
  const GcGeVector3d pageU = m_total * u, pageV = m_total * v;
  addArc(project(center), {pageU.x, pageU.y}, {pageV.x, pageV.y}, 0, sweepRad);
  if (m_fill) {
    m_path.close();
    fillPath();
  } else {
    strokePath();
  }
}

void PlotDraw::addArc(Point center, Point u, Point v, double fromRad, double sweepRad) {
  const Axes axes = axesOf(u, v);
  m_path.moveTo(onEllipse(center, u, v, fromRad));
  const bool flat = axes.second <= kFlatRatio * axes.first;
  if (!m_measuring && !flat && axes.first <= kGreatestRadius) {
    const int pieces = static_cast<int>(std::fabs(sweepRad) / (0.9 * kPi)) + 1;
    for (int i = 1; i <= pieces; ++i) {
      m_path.arcTo(axes.first, axes.second, axes.turnRad, axes.growing == (sweepRad > 0),
                   onEllipse(center, u, v, fromRad + sweepRad * i / pieces));
    }
    return;
  }
  // A cubic piece of the angle a lies off the circle by r (a / 4)^6 / 13.5. Bounds by control points want them close.
  const double perRadian = m_measuring ? 4 : std::pow(std::fmax(axes.first, 1) / (13.5 * kDeviationMm), 1.0 / 6) / 4;
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::fabs(sweepRad) * std::fmax(perRadian, 2 / kPi))));
  const double step = sweepRad / pieces;
  const double k = 4.0 / 3 * gc::tan(step / 4);
  for (int i = 0; i < pieces; ++i) {
    const double a = fromRad + step * i, b = a + step;
    const Point from = onEllipse(center, u, v, a), to = onEllipse(center, u, v, b);
    const Point fromWay = onEllipse({}, u, v, a + kPi / 2), toWay = onEllipse({}, u, v, b + kPi / 2);
    m_path.cubicTo({from.x + k * fromWay.x, from.y + k * fromWay.y}, {to.x - k * toWay.x, to.y - k * toWay.y}, to);
  }
}

void PlotDraw::text(const GcGePoint3d& position, const GcGeVector3d& normal, const GcGeVector3d& direction,
                    const GCHAR* text, const GcGiTextStyle& style) {
  const GcGeVector3d along = direction.normal();
  const GcGeVector3d up = normal.normal().crossProduct(along);
  const GcGeVector3d pageX = m_total * along, pageY = m_total * up;
  TextPen pen(m_path, project(position), {pageX.x, pageX.y}, {pageY.x, pageY.y});
  gcgiStrokeText(view(text), style, pen);
  strokePath(false);
}

void PlotDraw::xline(const GcGePoint3d& point, const GcGeVector3d& direction) { addEndless(point, direction, true); }

void PlotDraw::ray(const GcGePoint3d& point, const GcGeVector3d& direction) { addEndless(point, direction, false); }

// The part of the line inside what is visible; source: Liang and Barsky's clipping of a line by its parameter.
void PlotDraw::addEndless(const GcGePoint3d& point, const GcGeVector3d& direction, bool bothWays) {
  const Point at = project(point);
  if (m_measuring) {
    m_path.moveTo(at);
    strokePath();
    return;
  }
  const GcGeVector3d page = m_total * direction;
  const Box& box = m_projection.visible;
  double from = bothWays ? -1e300 : 0, to = 1e300;
  const auto clip = [&](double way, double low, double high) {
    if (way == 0) {
      if (low > 0 || high < 0) to = from - 1;
      return;
    }
    from = std::fmax(from, std::fmin(low / way, high / way));
    to = std::fmin(to, std::fmax(low / way, high / way));
  };
  clip(page.x, box.minX - at.x, box.maxX - at.x);
  clip(page.y, box.minY - at.y, box.maxY - at.y);
  if (!(from < to)) return;
  m_path.moveTo({at.x + page.x * from, at.y + page.y * from});
  m_path.lineTo({at.x + page.x * to, at.y + page.y * to});
  strokePath();
}

void PlotDraw::bezier(int count, const GcGePoint3d* points) {
  if (count < 4) return;
  m_path.moveTo(project(points[0]));
  for (int i = 1; i + 2 < count; i += 3) {
    m_path.cubicTo(project(points[i]), project(points[i + 1]), project(points[i + 2]));
  }
  strokePath();
}

// Paths to the canvas.

void PlotDraw::strokePath(bool mayDash) {
  ++m_primitives;
  const bool shown = m_looks.isShown(look().layer);
  const bool good = std::all_of(m_path.steps().begin(), m_path.steps().end(), [](const PathStep& step) {
    return isFinite(step.to) && isFinite(step.control1) && isFinite(step.control2);
  });
  if (shown && good && !m_path.isEmpty()) {
    Pen pen;
    pen.rgb = m_look.rgb;
    pen.widthMm = m_look.widthMm;
    std::vector<double> fitted;
    if (mayDash && !m_measuring) {
      const double scale = m_projection.dashScale * m_look.linetypeScale;
      if (m_dashesOf != m_look.linetype || m_dashesScale != scale) {
        m_dashes = alternateDashes(m_looks.linetypeElements(m_look.linetype), scale);
        m_dashesOf = m_look.linetype;
        m_dashesScale = scale;
      }
      if (!m_dashes.empty()) fitted = fitDashes(m_dashes, lengthOf(m_path), m_projection.finestPeriodMm);
      pen.dashes = fitted;
    }
    m_canvas.stroke(m_path, pen);
    if (!fitted.empty()) strokeMarks(fitted, pen);
  }
  m_path.clear();
}

void PlotDraw::strokeMarks(const std::vector<double>& fitted, Pen pen) {
  const std::vector<LineMark>& marks = m_looks.linetypeMarks(m_look.linetype);
  if (marks.empty()) return;
  const double period = std::accumulate(fitted.begin(), fitted.end(), 0.0);
  const double unfitted = std::accumulate(m_dashes.begin(), m_dashes.end(), 0.0);
  pen.dashes = {};
  const Path strokes = markStrokes(m_path, marks, {period, m_dashesScale, period / unfitted});
  if (!strokes.isEmpty()) m_canvas.stroke(strokes, pen);
}

void PlotDraw::fillPath() {
  ++m_primitives;
  const bool good =
      std::all_of(m_path.steps().begin(), m_path.steps().end(), [](const PathStep& step) { return isFinite(step.to); });
  if (good && !m_path.isEmpty() && m_looks.isShown(look().layer)) {
    if (m_hasGradient) {
      Gradient gradient;
      gradient.from = project(m_gradient.from);
      gradient.to = project(m_gradient.to);
      gradient.rgbFrom = m_looks.rgbOf(m_gradient.colorFrom, m_look.layer, m_container);
      gradient.rgbTo = m_looks.rgbOf(m_gradient.colorTo, m_look.layer, m_container);
      gradient.mirrored = m_gradient.mirrored;
      m_canvas.fill(m_path, gradient);
    } else {
      m_canvas.fill(m_path, m_look.rgb);
    }
  }
  m_path.clear();
}

}  // namespace gc::plot
