#include "host/gi/hatchlines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "host/gi/crossings.h"
#include "host/rx/math/elementary.h"

namespace {

class Family {
 public:
  Family(const GcGiHatchFamily& family, int mostPieces, std::vector<GcGePoint2d>& ends)
      : m_family(family),
        m_along(gc::cos(family.angleRad), gc::sin(family.angleRad)),
        m_spacing(m_along.crossProduct(family.offset)),
        m_shift(m_along.dotProduct(family.offset)),
        m_most(static_cast<std::size_t>(mostPieces)),
        m_ends(ends) {
    for (int i = 0; i < family.dashCount; ++i) m_period += std::fabs(family.dashes[i]);
  }

  [[nodiscard]] bool isUsable(double extent) const { return std::fabs(m_spacing) > extent * 1e-12; }

  bool fill(const std::vector<GcGePath>& loops) {
    const GcGiLevels levels{m_family.base, m_along, m_spacing};
    for (const GcGePath& loop : loops)
      if (!gcgiAppendCrossings(loop, levels, 2 * m_most, m_crossings)) return false;
    return emit();
  }

 private:
  bool emit() {
    std::sort(m_crossings.begin(), m_crossings.end(), [](const GcGiCrossing& a, const GcGiCrossing& b) {
      return a.level != b.level ? a.level < b.level : a.along < b.along;
    });
    for (std::size_t i = 0; i + 1 < m_crossings.size(); ++i) {
      if (m_crossings[i].level != m_crossings[i + 1].level) continue;
      if (!dash(m_crossings[i], m_crossings[i + 1].along)) return false;
      ++i;
    }
    return true;
  }

  [[nodiscard]] GcGePoint2d at(int64_t line, double along) const {
    return m_family.base + m_family.offset * static_cast<double>(line) + m_along * along;
  }
  bool piece(int64_t line, double from, double to) {
    if (m_ends.size() / 2 >= m_most) return false;
    m_ends.push_back(at(line, from));
    m_ends.push_back(at(line, to));
    return true;
  }
  // Distances of a crossing are counted from the base's foot on its line; dashes from the line's own origin.
  bool dash(const GcGiCrossing& from, double until) {
    const double shift = static_cast<double>(from.level) * m_shift;
    const double start = from.along - shift, end = until - shift;
    if (!(m_period > 0)) return start >= end || piece(from.level, start, end);
    if ((end - start) / m_period * m_family.dashCount > 4.0 * static_cast<double>(m_most)) return false;
    double at = std::floor(start / m_period) * m_period;
    while (at <= end) {
      for (int i = 0; i < m_family.dashCount; ++i) {
        const double next = at + std::fabs(m_family.dashes[i]);
        const bool drawn = m_family.dashes[i] >= 0;
        if (drawn && next >= start && at <= end && !piece(from.level, std::fmax(at, start), std::fmin(next, end)))
          return false;
        at = next;
      }
    }
    return true;
  }

  const GcGiHatchFamily& m_family;
  GcGeVector2d m_along;
  double m_spacing;
  double m_shift;
  double m_period = 0;
  std::size_t m_most;
  std::vector<GcGiCrossing> m_crossings;
  std::vector<GcGePoint2d>& m_ends;
};

double extentOf(const std::vector<GcGePath>& loops) {
  double extent = 0;
  for (const GcGePath& loop : loops)
    if (!loop.isEmpty()) extent = std::fmax(extent, loop.size() + (loop.origin() - loops[0].origin()).length());
  return extent;
}

// How often a ray from the point in the direction of X crosses the loop is odd.
bool contains(const GcGePath& loop, const GcGePoint2d& point, std::vector<GcGiCrossing>& crossings) {
  const double beyond = 4 * (loop.size() + gc::hypot(loop.origin().x - point.x, loop.origin().y - point.y)) + 1;
  crossings.clear();
  gcgiAppendCrossings(loop, GcGiLevels{point, {1, 0}, beyond}, 1u << 20, crossings);
  int right = 0;
  for (const GcGiCrossing& crossing : crossings) right += crossing.level == 0 && crossing.along > 0 ? 1 : 0;
  return right % 2 == 1;
}

}  // namespace

bool gcgiHatchLines(const std::vector<GcGePath>& loops, const GcGiHatchFamily& family, int mostPieces,
                    std::vector<GcGePoint2d>& ends) {
  const std::size_t before = ends.size();
  Family lines(family, mostPieces, ends);
  const bool good = lines.isUsable(extentOf(loops)) && lines.fill(loops);
  if (!good) ends.resize(before);
  return good;
}

std::vector<int> gcgiLoopDepths(const std::vector<GcGePath>& loops) {
  std::vector<int> depths(loops.size(), 0);
  std::vector<GcGiCrossing> crossings;
  for (std::size_t i = 0; i < loops.size(); ++i) {
    if (loops[i].isEmpty()) continue;
    const GcGePoint3d at = loops[i].origin() + loops[i].pointOn(0, loops[i].spans()[0].u0);
    for (std::size_t k = 0; k < loops.size(); ++k)
      if (k != i && !loops[k].isEmpty() && contains(loops[k], {at.x, at.y}, crossings)) ++depths[i];
  }
  return depths;
}
