#include "cli/page/outline.h"

#include <cmath>
#include <numbers>

#include "cli/page/bytes.h"
#include "cli/page/shapecanvas.h"
#include "host/rx/math/elementary.h"

namespace cli::page {

using gc::plot::Point;

namespace {

constexpr int kCurvePieces = 12;
constexpr double kArcPieceRad = std::numbers::pi / 36;

// Reads the parts of a shape one after the other.
class PartReader {
 public:
  explicit PartReader(const Shape& shape) : m_shape(shape) {}

  void readInto(std::vector<Outline>& outlines) {
    for (uint32_t part = 0; part < m_shape.partCount; ++part) readPart(outlines);
  }

 private:
  uint32_t u32() { return next<uint32_t>(); }
  double f32() { return next<float>(); }
  template <class T>
  T next() {
    const T value = numberAt<T>(m_shape.parts, m_at);
    m_at += sizeof(T);
    return value;
  }
  Point point() {
    const double x = f32();
    return {m_shape.originX + x, m_shape.originY + f32()};
  }

  void readPart(std::vector<Outline>& outlines) {
    const uint32_t head = u32();
    const uint32_t kind = head & 255;
    m_at += 8 + (head >> 8) * 4;  // colour, width, dashes
    if (kind == ShapeCanvas::kGradient) m_at += 24;
    const uint32_t ops = u32();
    const uint32_t floats = u32();
    const size_t opsAt = m_at + floats * 4;
    m_filled = kind != ShapeCanvas::kStroke;
    m_outlines = &outlines;
    for (uint32_t i = 0; i < ops; ++i) readOp(static_cast<uint8_t>(m_shape.parts[opsAt + i]));
    m_at = opsAt + (ops + 3) / 4 * 4;
  }

  void readOp(uint8_t op) {
    if (op == ShapeCanvas::kMove) {
      m_outlines->push_back({{point()}, m_filled});
      return;
    }
    std::vector<Point>& points = m_outlines->back().points;
    const Point from = points.back();
    switch (op) {
      case ShapeCanvas::kLine: points.push_back(point()); break;
      case ShapeCanvas::kQuad: {
        const Point control = point(), to = point();
        addBezier(points, from, mix(from, control, 2.0 / 3), mix(to, control, 2.0 / 3), to);
        break;
      }
      case ShapeCanvas::kCubic: {
        const Point control1 = point(), control2 = point();
        addBezier(points, from, control1, control2, point());
        break;
      }
      case ShapeCanvas::kArc: addArc(points); break;
      default: points.push_back(points.front());
    }
  }

  static Point mix(Point a, Point b, double part) { return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part}; }

  static void addBezier(std::vector<Point>& points, Point a, Point b, Point c, Point d) {
    for (int i = 1; i <= kCurvePieces; ++i) {
      const double t = static_cast<double>(i) / kCurvePieces, s = 1 - t;
      const double wa = s * s * s, wb = 3 * s * s * t, wc = 3 * s * t * t, wd = t * t * t;
      points.push_back({wa * a.x + wb * b.x + wc * c.x + wd * d.x, wa * a.y + wb * b.y + wc * c.y + wd * d.y});
    }
  }

  void addArc(std::vector<Point>& points) {
    const Point center = point();
    const double radiusX = f32(), radiusY = f32(), turn = f32(), from = f32(), to = f32(), side = f32();
    const double sweep = std::fmod(side * (to - from) + 4 * std::numbers::pi, 2 * std::numbers::pi);
    const int pieces = std::max(1, static_cast<int>(std::ceil(sweep / kArcPieceRad)));
    for (int i = 1; i <= pieces; ++i) {
      const double t = from + side * sweep * i / pieces;
      const double u = radiusX * gc::cos(t), v = radiusY * gc::sin(t);
      points.push_back(
          {center.x + gc::cos(turn) * u - gc::sin(turn) * v, center.y + gc::sin(turn) * u + gc::cos(turn) * v});
    }
  }

  const Shape& m_shape;
  size_t m_at = 0;
  bool m_filled = false;
  std::vector<Outline>* m_outlines = nullptr;
};

double distance(Point p, Point a, Point b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double square = dx * dx + dy * dy;
  const double t = square > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0;
  return gc::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

bool isIn(Point p, const Box& box) { return p.x >= box.minX && p.x <= box.maxX && p.y >= box.minY && p.y <= box.maxY; }

// Whether a piece meets the box; source: Liang and Barsky's clipping of a line by its parameter.
bool meets(Point a, Point b, const Box& box) {
  double from = 0, to = 1;
  const auto clip = [&](double way, double low, double high) {
    if (way == 0) return low <= 0 && high >= 0;
    from = std::fmax(from, std::fmin(low / way, high / way));
    to = std::fmin(to, std::fmax(low / way, high / way));
    return from <= to;
  };
  return clip(b.x - a.x, box.minX - a.x, box.maxX - a.x) && clip(b.y - a.y, box.minY - a.y, box.maxY - a.y);
}

bool covers(const std::vector<Outline>& outlines, Point p) {
  bool inside = false;
  for (const Outline& outline : outlines) {
    if (!outline.filled) continue;
    const std::vector<Point>& points = outline.points;
    for (size_t i = 0, j = points.size() - 1; i < points.size(); j = i++) {
      const Point a = points[i], b = points[j];
      if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
    }
  }
  return inside;
}

}  // namespace

std::vector<Outline> outlinesOf(const Shape& shape) {
  std::vector<Outline> outlines;
  PartReader(shape).readInto(outlines);
  return outlines;
}

bool isAt(const Shape& shape, Point point, double reach) {
  const std::vector<Outline> outlines = outlinesOf(shape);
  for (const Outline& outline : outlines) {
    const std::vector<Point>& points = outline.points;
    if (points.size() == 1 && distance(point, points[0], points[0]) <= reach) return true;
    for (size_t i = 1; i < points.size(); ++i)
      if (distance(point, points[i - 1], points[i]) <= reach) return true;
  }
  return covers(outlines, point);
}

bool crosses(const Shape& shape, const Box& box) {
  const std::vector<Outline> outlines = outlinesOf(shape);
  for (const Outline& outline : outlines) {
    const std::vector<Point>& points = outline.points;
    if (points.size() == 1 && isIn(points[0], box)) return true;
    for (size_t i = 1; i < points.size(); ++i)
      if (meets(points[i - 1], points[i], box)) return true;
  }
  return covers(outlines, {box.minX, box.minY});
}

bool liesIn(const Shape& shape, const Box& box) {
  for (const Outline& outline : outlinesOf(shape))
    for (const Point p : outline.points)
      if (!isIn(p, box)) return false;
  return true;
}

}  // namespace cli::page
