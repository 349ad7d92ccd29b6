#include "cli/page/scene.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace cli::page {

namespace {

constexpr int kLeast = -60, kMost = 200;  // levels; cells of 2^-60 to 2^200 units
constexpr double kDotPixels = 1.5;        // what is smaller than that is a dot
constexpr double kFramePixels = 12;       // what is smaller than that and intricate is a frame
constexpr uint32_t kIntricate = 48;       // steps

double sizeOf(const Box& box) { return std::fmax(box.width(), box.height()); }

int levelOf(const Box& box) {
  const double size = sizeOf(box);
  if (!(size > 0)) return kLeast;
  return std::clamp(static_cast<int>(std::ceil(std::log2(size))), kLeast, kMost);
}

int64_t cellIndex(double at, double size) {
  const double index = std::floor(at / size);
  constexpr double kFarthest = 4e18;
  return static_cast<int64_t>(std::clamp(index, -kFarthest, kFarthest));
}

}  // namespace

void Scene::clear() {
  m_slots.clear();
  m_levels.clear();
  m_count = 0;
}

void Scene::put(ShapeId id, Shape shape) {
  remove(id);
  if (id >= m_slots.size()) m_slots.resize(static_cast<size_t>(id) + 1);
  Slot& slot = m_slots[id];
  slot.level = levelOf(shape.bounds);
  const double size = std::ldexp(1.0, slot.level);
  slot.cell = {cellIndex((shape.bounds.minX + shape.bounds.maxX) / 2, size),
               cellIndex((shape.bounds.minY + shape.bounds.maxY) / 2, size)};
  slot.shape = std::move(shape);
  slot.used = true;
  m_levels[slot.level][slot.cell].push_back(id);
  ++m_count;
}

void Scene::unlink(ShapeId id) {
  const auto level = m_levels.find(m_slots[id].level);
  const auto cell = level->second.find(m_slots[id].cell);
  std::vector<ShapeId>& ids = cell->second;
  *std::find(ids.begin(), ids.end(), id) = ids.back();
  ids.pop_back();
  if (!ids.empty()) return;
  level->second.erase(cell);
  if (level->second.empty()) m_levels.erase(level);
}

void Scene::remove(ShapeId id) {
  if (find(id) == nullptr) return;
  unlink(id);
  m_slots[id] = Slot();
  --m_count;
}

const Shape* Scene::find(ShapeId id) const {
  return id < m_slots.size() && m_slots[id].used ? &m_slots[id].shape : nullptr;
}

Box Scene::extents() const {
  Box box;
  for (const Slot& slot : m_slots) {
    if (!slot.used || slot.shape.window != 0) continue;
    box.add({slot.shape.bounds.minX, slot.shape.bounds.minY});
    box.add({slot.shape.bounds.maxX, slot.shape.bounds.maxY});
  }
  return box;
}

// The cells that may hold something of the region: a shape reaches at most half a cell beyond its own.
template <class Visit>
void Scene::visitCells(const Grid& grid, int level, const Box& region, Visit visit) const {
  const double size = std::ldexp(1.0, level);
  const double half = size / 2;
  const int64_t fromX = cellIndex(region.minX - half, size), toX = cellIndex(region.maxX + half, size);
  const int64_t fromY = cellIndex(region.minY - half, size), toY = cellIndex(region.maxY + half, size);
  const double cells = (static_cast<double>(toX) - static_cast<double>(fromX) + 1) *
                       (static_cast<double>(toY) - static_cast<double>(fromY) + 1);
  if (cells > static_cast<double>(grid.size())) {
    for (const auto& [cell, ids] : grid)
      if (cell.x >= fromX && cell.x <= toX && cell.y >= fromY && cell.y <= toY) visit(ids);
    return;
  }
  for (int64_t y = fromY; y <= toY; ++y) {
    for (int64_t x = fromX; x <= toX; ++x)
      if (const auto at = grid.find({x, y}); at != grid.end()) visit(at->second);
  }
}

std::vector<Seen> Scene::look(const Box& region, double pixel) const {
  std::vector<Seen> seen;
  std::unordered_set<Cell, CellHash> dots;
  for (const auto& [level, grid] : m_levels) {
    visitCells(grid, level, region, [&](const std::vector<ShapeId>& ids) {
      for (const ShapeId id : ids) {
        const Shape& shape = m_slots[id].shape;
        const Box& bounds = shape.bounds;
        if (!overlap(bounds, region)) continue;
        const double size = sizeOf(bounds);
        if (size >= kDotPixels * pixel) {
          const bool coarse = size < kFramePixels * pixel && shape.steps > kIntricate;
          seen.push_back({id, coarse ? Detail::Frame : Detail::Full});
        } else if (dots.insert({cellIndex(bounds.minX, pixel), cellIndex(bounds.minY, pixel)}).second) {
          seen.push_back({id, shape.steps <= 2 ? Detail::Full : Detail::Dot});
        }
      }
    });
  }
  return seen;
}

std::vector<ShapeId> Scene::within(const Box& region) const {
  std::vector<ShapeId> found;
  for (const auto& [level, grid] : m_levels) {
    visitCells(grid, level, region, [&](const std::vector<ShapeId>& ids) {
      for (const ShapeId id : ids)
        if (overlap(m_slots[id].shape.bounds, region)) found.push_back(id);
    });
  }
  return found;
}

}  // namespace cli::page
