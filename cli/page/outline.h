// A shape as straight pieces, and what a person points at.
#pragma once

#include <vector>

#include "cli/page/shape.h"

namespace cli::page {

struct Outline {
  std::vector<gc::plot::Point> points;
  bool filled = false;  // a loop of an area; the loops of one area count together
};

// Curves by pieces of a few degrees.
[[nodiscard]] std::vector<Outline> outlinesOf(const Shape& shape);

// Whether it passes within `reach` of the point, or covers it.
[[nodiscard]] bool isAt(const Shape& shape, gc::plot::Point point, double reach);
// Whether any of it lies in the box, edges included.
[[nodiscard]] bool crosses(const Shape& shape, const Box& box);
// Whether all of it does.
[[nodiscard]] bool liesIn(const Shape& shape, const Box& box);

}  // namespace cli::page
