// The canvas on which one entity becomes a shape.
#pragma once

#include "cli/page/shape.h"
#include "host/plot/canvas.h"

namespace cli::page {

class ShapeCanvas final : public gc::plot::Canvas {
 public:
  // `unit`: length of a unit of the scene on the canvas.
  explicit ShapeCanvas(double unit) : m_unit(unit) {}

  // What has been drawn since the last call.
  Shape take();

  void stroke(const gc::plot::Path& path, const gc::plot::Pen& pen) override;
  void fill(const gc::plot::Path& path, uint32_t rgb) override;
  void fill(const gc::plot::Path& path, const gc::plot::Gradient& gradient) override;
  void pushClip(const gc::plot::Path&) override {}
  void popClip() override {}

  // What a part is; the numbers of the messages.
  enum Kind : uint8_t { kStroke = 0, kFill = 1, kGradient = 2 };
  enum Op : uint8_t { kMove = 0, kLine = 1, kQuad = 2, kCubic = 3, kArc = 4, kClose = 5 };

 private:
  void begin(const gc::plot::Path& path, Kind kind, uint32_t rgb, double widthMm, size_t dashes);
  void putPath(const gc::plot::Path& path);
  void putPoint(std::string& floats, gc::plot::Point p);
  void reach(gc::plot::Point p);  // of the bounds
  void putArc(std::string& floats, gc::plot::Point from, const gc::plot::PathStep& step);

  double m_unit;
  Shape m_shape;
  std::string m_ops, m_floats;  // of the path being written
};

}  // namespace cli::page
