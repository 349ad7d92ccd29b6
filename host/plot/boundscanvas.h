// A page that keeps nothing but the bounds of what is drawn on it. Pen widths do not count; curves count with their
// control points.
#pragma once

#include "host/plot/canvas.h"

namespace gc::plot {

class BoundsCanvas : public Canvas {
 public:
  [[nodiscard]] const Box& bounds() const { return m_bounds; }
  void stroke(const Path& path, const Pen&) override { add(path); }
  void fill(const Path& path, uint32_t) override { add(path); }
  void fill(const Path& path, const Gradient&) override { add(path); }
  void pushClip(const Path&) override {}
  void popClip() override {}

 private:
  void add(const Path& path) {
    for (const PathStep& step : path.steps()) {
      if (step.kind == PathStep::kClose) continue;
      m_bounds.add(step.to);
      if (step.kind == PathStep::kQuad || step.kind == PathStep::kCubic) m_bounds.add(step.control1);
      if (step.kind == PathStep::kCubic) m_bounds.add(step.control2);
    }
  }
  Box m_bounds;
};

}  // namespace gc::plot
