#include "host/gi/hatchlines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

// Where an edge crosses a line of the family: which line, and how far along it from the line's own origin.
struct Crossing {
  int64_t line;
  double along;
};

class Family {
 public:
  Family(const GcGiHatchFamily& family, int mostPieces, std::vector<GcGePoint2d>& ends)
      : m_family(family),
        m_along(std::cos(family.angleRad), std::sin(family.angleRad)),
        m_spacing(m_along.crossProduct(family.offset)),
        m_shift(m_along.dotProduct(family.offset)),
        m_most(static_cast<std::size_t>(mostPieces)),
        m_ends(ends) {
    for (int i = 0; i < family.dashCount; ++i) m_period += std::fabs(family.dashes[i]);
  }

  [[nodiscard]] bool isUsable(double extent) const { return std::fabs(m_spacing) > extent * 1e-12; }

  // Half-open in the direction across, so that a corner on a line is crossed once or not at all.
  bool addEdge(const GcGePoint2d& a, const GcGePoint2d& b) {
    const double ta = across(a), tb = across(b);
    const double low = std::fmin(ta, tb), high = std::fmax(ta, tb);
    const double first = std::ceil(low), last = std::ceil(high) - 1;
    if (!(last >= first)) return true;
    if (last - first > static_cast<double>(m_most) || m_crossings.size() > 2 * m_most) return false;
    const double sa = m_along.dotProduct(a - m_family.base), sb = m_along.dotProduct(b - m_family.base);
    for (double line = first; line <= last; ++line) {
      const double s = sa + (sb - sa) * (line - ta) / (tb - ta);
      m_crossings.push_back({static_cast<int64_t>(line), s - line * m_shift});
    }
    return true;
  }

  bool emit() {
    std::sort(m_crossings.begin(), m_crossings.end(), [](const Crossing& a, const Crossing& b) {
      return a.line != b.line ? a.line < b.line : a.along < b.along;
    });
    for (std::size_t i = 0; i + 1 < m_crossings.size(); ++i) {
      if (m_crossings[i].line != m_crossings[i + 1].line) continue;
      if (!dash(m_crossings[i], m_crossings[i + 1].along)) return false;
      ++i;
    }
    return true;
  }

 private:
  // In units of the spacing, from the base.
  [[nodiscard]] double across(const GcGePoint2d& p) const {
    return m_along.crossProduct(p - m_family.base) / m_spacing;
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
  bool dash(const Crossing& from, double to) {
    if (!(m_period > 0)) return from.along >= to || piece(from.line, from.along, to);
    if ((to - from.along) / m_period * m_family.dashCount > 4.0 * static_cast<double>(m_most)) return false;
    double at = std::floor(from.along / m_period) * m_period;
    while (at <= to) {
      for (int i = 0; i < m_family.dashCount; ++i) {
        const double end = at + std::fabs(m_family.dashes[i]);
        const bool drawn = m_family.dashes[i] >= 0;
        if (drawn && end >= from.along && at <= to &&
            !piece(from.line, std::fmax(at, from.along), std::fmin(end, to))) {
          return false;
        }
        at = end;
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
  std::vector<Crossing> m_crossings;
  std::vector<GcGePoint2d>& m_ends;
};

}  // namespace

bool gcgiHatchLines(int loopCount, const int* pointCounts, const GcGePoint2d* points, const GcGiHatchFamily& family,
                    int mostPieces, std::vector<GcGePoint2d>& ends) {
  const std::size_t before = ends.size();
  Family lines(family, mostPieces, ends);
  double extent = 0;
  bool good = true;
  const GcGePoint2d* loop = points;
  for (int i = 0; i < loopCount; loop += pointCounts[i++]) {
    for (int k = 0; k < pointCounts[i]; ++k) extent = std::fmax(extent, loop[k].distanceTo(points[0]));
  }
  if (!lines.isUsable(extent)) return false;
  loop = points;
  for (int i = 0; i < loopCount && good; loop += pointCounts[i++]) {
    for (int k = 0; k < pointCounts[i] && good; ++k) good = lines.addEdge(loop[k], loop[(k + 1) % pointCounts[i]]);
  }
  good = good && lines.emit();
  if (!good) ends.resize(before);
  return good;
}
