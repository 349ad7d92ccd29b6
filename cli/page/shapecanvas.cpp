#include "cli/page/shapecanvas.h"

#include <cmath>
#include <numbers>

#include "cli/page/bytes.h"
#include "host/rx/math/elementary.h"

namespace cli::page {

using gc::plot::Path;
using gc::plot::PathStep;
using gc::plot::Point;

namespace {
constexpr double kPi = std::numbers::pi;
}

Shape ShapeCanvas::take() { return std::exchange(m_shape, Shape()); }

void ShapeCanvas::begin(const Path& path, Kind kind, uint32_t rgb, double widthMm, size_t dashes) {
  if (m_shape.partCount++ == 0) {
    const Point at = path.steps().front().to;
    m_shape.originX = at.x / m_unit;
    m_shape.originY = at.y / m_unit;
    m_shape.rgb = rgb;
  }
  m_shape.steps += static_cast<uint32_t>(path.steps().size());
  putU32(m_shape.parts, kind | static_cast<uint32_t>(dashes) << 8);
  putU32(m_shape.parts, rgb);
  putF32(m_shape.parts, widthMm);
}

void ShapeCanvas::putPoint(std::string& floats, Point p) {
  putF32(floats, p.x / m_unit - m_shape.originX);
  putF32(floats, p.y / m_unit - m_shape.originY);
}

// From the arc between two points to its centre: where the ends lie on the unit circle of the arc's own axes gives
// centre and angles.
void ShapeCanvas::putArc(std::string& floats, Point from, const PathStep& step) {
  const double c = gc::cos(step.turnRad), s = gc::sin(step.turnRad);
  const auto toUnit = [&](Point p) {
    return Point{(c * p.x + s * p.y) / step.radiusX, (-s * p.x + c * p.y) / step.radiusY};
  };
  const Point a = toUnit(from), b = toUnit(step.to);
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double half = gc::hypot(dx, dy) / 2;
  const double away = half > 0 && half < 1 ? std::sqrt(1 - half * half) / half : 0;
  const double side = step.growing ? 1 : -1;
  const Point center{(a.x + b.x) / 2 - side * away * dy / 2, (a.y + b.y) / 2 + side * away * dx / 2};
  const double x = center.x * step.radiusX, y = center.y * step.radiusY;
  const Point middle{c * x - s * y, s * x + c * y};
  const double from0 = gc::atan2(a.y - center.y, a.x - center.x), to0 = gc::atan2(b.y - center.y, b.x - center.x);
  putPoint(floats, middle);
  for (const double number : {step.radiusX / m_unit, step.radiusY / m_unit, step.turnRad, from0, to0, side})
    putF32(floats, number);
  // Its outermost points, where they lie on the arc: x and y each have two on the whole ellipse.
  for (const double t :
       {gc::atan2(-step.radiusY * s, step.radiusX * c), gc::atan2(step.radiusY * c, step.radiusX * s)}) {
    for (const double at : {t, t + kPi}) {
      const double way = std::fmod(side * (at - from0) + 4 * kPi, 2 * kPi);
      if (way > std::fmod(side * (to0 - from0) + 4 * kPi, 2 * kPi)) continue;
      const double u = step.radiusX * gc::cos(at), v = step.radiusY * gc::sin(at);
      reach({middle.x + c * u - s * v, middle.y + s * u + c * v});
    }
  }
}

void ShapeCanvas::reach(Point p) { m_shape.bounds.add({p.x / m_unit, p.y / m_unit}); }

void ShapeCanvas::putPath(const Path& path) {
  m_ops.clear();
  m_floats.clear();
  Point at, start;
  for (const PathStep& step : path.steps()) {
    m_ops.push_back(static_cast<char>(step.kind));
    switch (step.kind) {
      case PathStep::kCubic:
        putPoint(m_floats, step.control1);
        putPoint(m_floats, step.control2);
        reach(step.control1);
        reach(step.control2);
        break;
      case PathStep::kQuad:
        putPoint(m_floats, step.control1);
        reach(step.control1);
        break;
      case PathStep::kArc: putArc(m_floats, at, step); break;
      default: break;
    }
    if (step.kind == PathStep::kMove) start = step.to;
    if (step.kind == PathStep::kClose) {
      at = start;
      continue;
    }
    if (step.kind != PathStep::kArc) putPoint(m_floats, step.to);
    reach(step.to);
    at = step.to;
  }
  putU32(m_shape.parts, static_cast<uint32_t>(m_ops.size()));
  putU32(m_shape.parts, static_cast<uint32_t>(m_floats.size() / sizeof(float)));
  m_shape.parts += m_floats;
  while (m_ops.size() % 4 != 0) m_ops.push_back(0);
  m_shape.parts += m_ops;
}

static_assert(static_cast<int>(PathStep::kMove) == ShapeCanvas::kMove &&
              static_cast<int>(PathStep::kLine) == ShapeCanvas::kLine &&
              static_cast<int>(PathStep::kQuad) == ShapeCanvas::kQuad &&
              static_cast<int>(PathStep::kCubic) == ShapeCanvas::kCubic &&
              static_cast<int>(PathStep::kArc) == ShapeCanvas::kArc &&
              static_cast<int>(PathStep::kClose) == ShapeCanvas::kClose);

void ShapeCanvas::stroke(const Path& path, const gc::plot::Pen& pen) {
  if (path.isEmpty()) return;
  const size_t dashes = std::min<size_t>(pen.dashes.size(), 255);
  begin(path, kStroke, pen.rgb, pen.widthMm, dashes);
  for (size_t i = 0; i < dashes; ++i) putF32(m_shape.parts, pen.dashes[i] / m_unit);
  putPath(path);
}

void ShapeCanvas::fill(const Path& path, uint32_t rgb) {
  if (path.isEmpty()) return;
  begin(path, kFill, rgb, 0, 0);
  putPath(path);
}

void ShapeCanvas::fill(const Path& path, const gc::plot::Gradient& gradient) {
  if (path.isEmpty()) return;
  begin(path, kGradient, gradient.rgbFrom, 0, 0);
  putU32(m_shape.parts, gradient.rgbTo);
  putU32(m_shape.parts, gradient.mirrored ? 1 : 0);
  putPoint(m_shape.parts, gradient.from);
  putPoint(m_shape.parts, gradient.to);
  putPath(path);
}

}  // namespace cli::page
