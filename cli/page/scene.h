// The shapes of the space that is shown, found by place and size.
//
// Each shape lies in one cell of a grid whose cells are as large as it or up to twice that, so that a look at a region
// touches few cells of each size, and shapes too small to be seen need not be looked at one by one. Not thread-safe.
#pragma once

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "cli/page/shape.h"

namespace cli::page {

// How much of a shape is shown, by its size on the screen.
enum class Detail : uint8_t { None, Dot, Frame, Full };

struct Seen {
  ShapeId id;
  Detail detail;
};

class Scene {
 public:
  void clear();
  // Replaces what the id had.
  void put(ShapeId id, Shape shape);
  void remove(ShapeId id);
  // Null for an id that has no shape.
  [[nodiscard]] const Shape* find(ShapeId id) const;
  [[nodiscard]] size_t size() const { return m_count; }
  // Of all shapes but those seen through windows, which are clipped; empty when there are none.
  [[nodiscard]] Box extents() const;

  // The shapes whose bounds overlap the region, large ones first; of those smaller than `pixel` one for each pixel.
  [[nodiscard]] std::vector<Seen> look(const Box& region, double pixel) const;
  // All of them, whatever their size.
  [[nodiscard]] std::vector<ShapeId> within(const Box& region) const;

 private:
  struct Cell {
    int64_t x, y;
    friend bool operator==(const Cell&, const Cell&) = default;
  };
  struct CellHash {
    size_t operator()(const Cell& cell) const {
      const uint64_t mixed = static_cast<uint64_t>(cell.x) * 0x9E3779B97F4A7C15U ^
                             (static_cast<uint64_t>(cell.y) * 0xC2B2AE3D27D4EB4FU + 0x165667B19E3779F9U);
      return mixed ^ (mixed >> 29);
    }
  };
  using Grid = std::unordered_map<Cell, std::vector<ShapeId>, CellHash>;
  struct Slot {
    Shape shape;
    int level = 0;
    Cell cell = {};
    bool used = false;
  };
  template <class Visit>
  void visitCells(const Grid& grid, int level, const Box& region, Visit visit) const;
  void unlink(ShapeId id);

  std::vector<Slot> m_slots;
  std::map<int, Grid, std::greater<>> m_levels;  // cells of 2^level; the largest first
  size_t m_count = 0;
};

}  // namespace cli::page
