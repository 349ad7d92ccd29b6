// What a page is drawn on. Everything is drawn in order, later over earlier.
// Units and system: those of path.h.
#pragma once

#include <cstdint>
#include <span>

#include "host/plot/path.h"

namespace gc::plot {

struct Pen {
  uint32_t rgb = 0;  // 0xRRGGBB
  double widthMm = 0.25;
  // Lengths of dashes and gaps in turn, a dash first, a dot as 0; none for a solid line.
  std::span<const double> dashes;
};

// From one colour to another along a line; before and after it the end colours.
struct Gradient {
  Point from, to;
  uint32_t rgbFrom = 0, rgbTo = 0;
  bool mirrored = false;  // to the second colour half way, then back
};

class Canvas {
 public:
  virtual ~Canvas() = default;
  virtual void stroke(const Path& path, const Pen& pen) = 0;
  // Inside is where a line outwards crosses the path an odd number of times.
  virtual void fill(const Path& path, uint32_t rgb) = 0;
  virtual void fill(const Path& path, const Gradient& gradient) = 0;
  // Until popClip, only what lies inside the path is shown.
  virtual void pushClip(const Path& path) = 0;
  virtual void popClip() = 0;
};

}  // namespace gc::plot
