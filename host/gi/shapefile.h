// Compiled files of shapes (.shx): symbols drawn by a pen, with a number and a name each.
// Units:   those of the shapes; the pen starts at (0, 0).
// Source:  the published description of shape definitions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ge/point.h"
#include "host/rx/view.h"

class GcGiShapeFile {
 public:
  // Nothing for what is no file of shapes (fonts of letters by Unicode number are none) or is cut off.
  static std::optional<GcGiShapeFile> parse(std::string_view bytes);

  // 0 when there is no shape of that name; letters of either case.
  [[nodiscard]] int numberOf(GcView name) const;
  // Empty when there is no such shape.
  [[nodiscard]] GcText nameOf(int number) const;
  // What the pen draws; arcs as chains of chords.
  [[nodiscard]] std::vector<std::vector<GcGePoint2d>> strokes(int number) const;

 private:
  friend class ShapePen;
  struct Shape {
    int number = 0;
    std::string name;
    std::vector<uint8_t> codes;
  };
  [[nodiscard]] const Shape* find(int number) const;

  std::vector<Shape> m_shapes;
};
