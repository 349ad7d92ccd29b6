#include "host/db/entities/region_loops.h"

#include <cmath>
#include <unordered_map>

#include "host/ge/curves/append.h"
#include "host/ge/curves/meet.h"

namespace gcregion {
namespace {

// Ends of open curves by the cell of a grid in which they lie; looked up with the neighbouring cells.
class Ends {
 public:
  explicit Ends(double tolerance) : m_tolerance(tolerance), m_cell(4 * tolerance) {}

  void add(const GcGePoint3d& at, int end) { m_cells[keyOf(cellOf(at))].push_back({at, end}); }

  // Calls f(end) for all ends within the tolerance.
  template <class F>
  void eachNear(const GcGePoint3d& at, const F& f) const {
    const Cell cell = cellOf(at);
    for (int dx = -1; dx <= 1; ++dx)
      for (int dy = -1; dy <= 1; ++dy)
        for (int dz = -1; dz <= 1; ++dz) {
          const auto found = m_cells.find(keyOf({cell.x + dx, cell.y + dy, cell.z + dz}));
          if (found == m_cells.end()) continue;
          for (const Item& item : found->second)
            if ((item.at - at).length() <= m_tolerance) f(item.end);
        }
  }

 private:
  struct Cell {
    int64_t x, y, z;
  };
  struct Item {
    GcGePoint3d at;
    int end;
  };
  [[nodiscard]] Cell cellOf(const GcGePoint3d& p) const {
    return {std::llround(p.x / m_cell), std::llround(p.y / m_cell), std::llround(p.z / m_cell)};
  }
  // Cells that share a number only cost a look at each other's ends.
  static uint64_t keyOf(const Cell& c) {
    constexpr uint64_t kMix = 0x9E3779B97F4A7C15u;
    return ((static_cast<uint64_t>(c.x) * kMix + static_cast<uint64_t>(c.y)) * kMix + static_cast<uint64_t>(c.z)) *
           kMix;
  }
  double m_tolerance, m_cell;
  std::unordered_map<uint64_t, std::vector<Item>> m_cells;
};

struct Piece {
  GcGePath path;
  GcGePoint3d start, end;
  bool used = false;
};

GcGePoint3d startOf(const GcGePath& path) { return path.origin() + path.pointOn(0, path.spans().front().u0); }
GcGePoint3d endOf(const GcGePath& path) {
  const int last = static_cast<int>(path.spans().size()) - 1;
  return path.origin() + path.pointOn(last, path.spans().back().u1);
}

std::vector<Piece> piecesOf(const std::vector<const GcDbCurve*>& curves) {
  std::vector<Piece> pieces;
  for (const GcDbCurve* curve : curves) {
    GcGePath path;
    if (curve->subPath(path) != Gcad::eOk || path.isEmpty() || !path.isBounded() || !path.isFinite()) continue;
    Piece piece;
    piece.start = startOf(path);
    piece.end = endOf(path);
    piece.path = std::move(path);
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

double toleranceOf(const std::vector<Piece>& pieces) {
  constexpr double kRelative = 1e-8;
  constexpr double kRounding = 1e-13;
  double size = 0, reach = 0;
  for (const Piece& piece : pieces) {
    size = std::fmax(size, piece.path.size());
    for (const GcGePoint3d& p : {piece.start, piece.end})
      reach = std::fmax(reach, std::fmax(std::fabs(p.x), std::fmax(std::fabs(p.y), std::fabs(p.z))));
  }
  return size * kRelative + reach * kRounding;
}

class Joiner {
 public:
  explicit Joiner(std::vector<Piece>& pieces)
      : m_pieces(pieces), m_tolerance(toleranceOf(pieces)), m_ends(m_tolerance) {
    for (size_t i = 0; i < pieces.size(); ++i) {
      if (isClosed(pieces[i])) continue;
      m_ends.add(pieces[i].start, static_cast<int>(2 * i));
      m_ends.add(pieces[i].end, static_cast<int>(2 * i + 1));
    }
  }

  [[nodiscard]] bool isClosed(const Piece& piece) const {
    return piece.path.isClosed() || (piece.start - piece.end).length() <= m_tolerance;
  }

  // The loop that begins with the piece; its pieces are then used. False when it does not close.
  bool loop(size_t first, GcGePath& path) {
    Piece& begin = m_pieces[first];
    begin.used = true;
    path = begin.path;
    if (isClosed(begin)) return true;
    std::vector<int> way = {static_cast<int>(first)};
    GcGePoint3d at = begin.end;
    while ((at - begin.start).length() > m_tolerance) {
      const int end = next(at);
      if (end < 0) {
        for (const int taken : way) m_pieces[static_cast<size_t>(taken)].used = taken == way[0];
        return false;
      }
      Piece& piece = m_pieces[static_cast<size_t>(end / 2)];
      piece.used = true;
      way.push_back(end / 2);
      gcgeAppend(end % 2 == 0 ? piece.path : piece.path.reversed(), path);
      at = end % 2 == 0 ? piece.end : piece.start;
    }
    return true;
  }

 private:
  // The first end near the point that belongs to no loop yet.
  [[nodiscard]] int next(const GcGePoint3d& at) const {
    int found = -1;
    m_ends.eachNear(at, [&](int end) {
      if (!m_pieces[static_cast<size_t>(end / 2)].used && (found < 0 || end < found)) found = end;
    });
    return found;
  }

  std::vector<Piece>& m_pieces;
  double m_tolerance;
  Ends m_ends;
};

// Puts the loop into its plane's sense; false when it bounds no plane area.
bool makeArea(GcGePath path, gcmodeler::PlaneArea& area) {
  GcGeVector3d normal;
  if (!path.isPlanar(normal) || normal.isZeroLength()) return false;
  path.setClosed(true, true);
  const double tol = gcgeMeetTolerance(path, path);
  const GcGeMeetings crossings = gcgeMeetSelf(path, tol);
  if (!crossings.points.empty() || !crossings.stretches.empty()) return false;
  const double size = path.vectorArea().dotProduct(normal);
  if (std::fabs(size) <= tol * path.size()) return false;
  area.normal = normal;
  area.loops.assign(1, size < 0 ? path.reversed() : path);
  return true;
}

}  // namespace

std::vector<gcmodeler::PlaneArea> areasOf(const std::vector<const GcDbCurve*>& curves) {
  std::vector<Piece> pieces = piecesOf(curves);
  std::vector<gcmodeler::PlaneArea> areas;
  if (pieces.empty()) return areas;
  Joiner joiner(pieces);
  for (size_t i = 0; i < pieces.size(); ++i) {
    GcGePath path;
    gcmodeler::PlaneArea area;
    if (!pieces[i].used && joiner.loop(i, path) && makeArea(std::move(path), area)) areas.push_back(std::move(area));
  }
  return areas;
}

}  // namespace gcregion
