// What the page draws of one entity, ready to be sent.
// Units and system: those of the scene: drawing units of the space that is shown, x to the right, y upwards.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/plot/path.h"

namespace cli::page {

using Box = gc::plot::Box;
using ShapeId = uint32_t;

inline bool overlap(const Box& a, const Box& b) {
  return a.minX <= b.maxX && b.minX <= a.maxX && a.minY <= b.maxY && b.minY <= a.maxY;
}

struct Shape {
  uint32_t order = 0;   // later over earlier
  uint32_t window = 0;  // of the scene's windows, by which it is clipped; 0 is the sheet itself
  uint32_t rgb = 0;     // of its first part
  uint32_t steps = 0;   // of all paths together
  uint32_t partCount = 0;
  double originX = 0, originY = 0;  // what the coordinates in `parts` count from
  Box bounds;
  std::string parts;  // as docs/view.md describes them
  [[nodiscard]] bool isEmpty() const { return partCount == 0; }
};

}  // namespace cli::page
