// Paths on a page.
// Units:   millimetres; angles in radians.
// System:  the page: origin at its upper left corner, x to the right, y downwards.
#pragma once

#include <cstdint>
#include <vector>

namespace gc::plot {

struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

// An axis-parallel box; empty until a point is added.
struct Box {
  double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
  [[nodiscard]] bool isEmpty() const { return minX > maxX; }
  [[nodiscard]] double width() const { return maxX - minX; }
  [[nodiscard]] double height() const { return maxY - minY; }
  void add(Point p) {
    minX = p.x < minX ? p.x : minX;
    minY = p.y < minY ? p.y : minY;
    maxX = p.x > maxX ? p.x : maxX;
    maxY = p.y > maxY ? p.y : maxY;
  }
};

struct PathStep {
  enum Kind : uint8_t { kMove, kLine, kQuad, kCubic, kArc, kClose };
  Kind kind = kMove;
  bool growing = false;  // kArc: the angle grows, x towards y
  Point to;
  Point control1;  // kQuad, kCubic
  Point control2;  // kCubic
  // kArc, always less than half an ellipse: its half axes and the angle from x to the first one.
  double radiusX = 0, radiusY = 0, turnRad = 0;
};

class Path {
 public:
  [[nodiscard]] bool isEmpty() const { return m_steps.empty(); }
  [[nodiscard]] const std::vector<PathStep>& steps() const { return m_steps; }
  void clear() { m_steps.clear(); }

  void moveTo(Point to) { add(PathStep::kMove, to); }
  void lineTo(Point to) { add(PathStep::kLine, to); }
  void quadTo(Point control, Point to) { add(PathStep::kQuad, to).control1 = control; }
  void cubicTo(Point control1, Point control2, Point to) {
    PathStep& step = add(PathStep::kCubic, to);
    step.control1 = control1;
    step.control2 = control2;
  }
  void arcTo(double radiusX, double radiusY, double turnRad, bool growing, Point to) {
    PathStep& step = add(PathStep::kArc, to);
    step.radiusX = radiusX;
    step.radiusY = radiusY;
    step.turnRad = turnRad;
    step.growing = growing;
  }
  void close() { add(PathStep::kClose, Point()); }

 private:
  PathStep& add(PathStep::Kind kind, Point to) {
    PathStep& step = m_steps.emplace_back();
    step.kind = kind;
    step.to = to;
    return step;
  }
  std::vector<PathStep> m_steps;
};

// Length of the path, curves good to about 1e-6 of their own length.
double lengthOf(const Path& path);

}  // namespace gc::plot
