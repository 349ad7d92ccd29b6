#include "host/gi/crossings.h"

#include <algorithm>
#include <cmath>

#include "host/rx/math/elementary.h"

namespace {

// A point in the system of the lines: how far along them, and which line it would lie on.
struct Place {
  double along, level;
};

class Crosser {
 public:
  Crosser(const GcGePath& path, const GcGiLevels& levels, std::size_t most, std::vector<GcGiCrossing>& out)
      : m_path(path), m_levels(levels), m_most(most), m_out(out) {
    const GcGeVector2d from = GcGePoint2d(path.origin().x, path.origin().y) - levels.base;
    m_origin = place(from);
  }

  bool run() {
    bool good = true;
    bool first = true;
    Place start{}, last{};
    for (const GcGeSpan& span : m_path.spans()) {
      const Place begin = at(span, span.u0);
      if (first) start = begin;
      // Sides join exactly, whatever rounding says: a line cannot slip through between them.
      good = good && (first || side(last, begin));
      first = false;
      last = at(span, span.u1);
      good = good && curve(span, begin, last);
    }
    return good && (first || side(last, start));
  }

 private:
  [[nodiscard]] Place place(const GcGeVector2d& v) const {
    return {m_levels.along.dotProduct(v), m_levels.along.crossProduct(v) / m_levels.spacing};
  }
  [[nodiscard]] Place at(const GcGeSpan& span, double u) const {
    const GcGeVector3d p = gcgePointAt(span, m_path.poles(), u);
    const Place own = place({p.x, p.y});
    return {m_origin.along + own.along, m_origin.level + own.level};
  }
  // How fast the level rises with u.
  [[nodiscard]] double rise(const GcGeSpan& span, double u) const {
    const GcGeVector3d d = gcgeJetAt(span, m_path.poles(), u).first;
    return place({d.x, d.y}).level;
  }

  // Calls f(n) for every line that is crossed on the way: the lower end belongs to the way, the upper does not.
  template <class F>
  bool eachLevel(double from, double to, const F& f) {
    const double first = std::ceil(std::fmin(from, to));
    const double last = std::ceil(std::fmax(from, to)) - 1;
    if (!(last >= first)) return true;
    if (last - first > static_cast<double>(m_most) || m_out.size() > m_most) return false;
    for (double level = first; level <= last; ++level) m_out.push_back({static_cast<int64_t>(level), f(level)});
    return true;
  }

  bool side(const Place& a, const Place& b) {
    return eachLevel(a.level, b.level, [&](double level) {
      return a.along + (b.along - a.along) * (level - a.level) / (b.level - a.level);
    });
  }

  bool curve(const GcGeSpan& span, const Place& begin, const Place& end) {
    if (span.kind == GcGeSpan::Kind::Line) return side(begin, end);
    double u = span.u0;
    Place from = begin;
    turns(span);
    for (const double next : m_turns) {
      const Place to = at(span, next);
      if (!monotone(span, u, next, from, to)) return false;
      u = next;
      from = to;
    }
    return monotone(span, u, span.u1, from, end);
  }

  // The crossings of a stretch on which the level only rises or only falls.
  bool monotone(const GcGeSpan& span, double u0, double u1, const Place& from, const Place& to) {
    const double sense = to.level > from.level ? 1 : -1;
    double guess = u0;
    double guessLevel = from.level;
    return eachLevel(from.level, to.level, [&](double level) {
      // Lines come in rising order; on a falling stretch the search begins anew from its start each time.
      const double begin = sense > 0 ? guess : u0;
      const double beginLevel = sense > 0 ? guessLevel : from.level;
      const double u = solve(span, level, sense, begin, beginLevel, u1, to.level);
      guess = u;
      guessLevel = level;
      return at(span, u).along;
    });
  }

  // Where the stretch [low, high] reaches the level: Newton steps, halved where they would leave the bracket.
  [[nodiscard]] double solve(const GcGeSpan& span, double level, double sense, double low, double lowLevel, double high,
                             double highLevel) const {
    constexpr int kMostSteps = 60;
    if (lowLevel == level) return low;
    if (highLevel == level) return high;
    const double rounding = 1e-15 * (std::fabs(level) + std::fabs(m_origin.level) + 1);
    double u = low + (high - low) * (level - lowLevel) / (highLevel - lowLevel);
    if (!(u > low && u < high)) u = (low + high) / 2;
    for (int i = 0; i < kMostSteps; ++i) {
      const double off = at(span, u).level - level;
      if (std::fabs(off) <= rounding) return u;
      (off * sense < 0 ? low : high) = u;
      const double next = u - off / rise(span, u);
      const double former = u;
      u = next > low && next < high ? next : (low + high) / 2;
      if (u == former) return u;
    }
    return u;
  }

  // Parameters inside the span where the level turns.
  void turns(const GcGeSpan& span) {
    m_turns.clear();
    if (span.kind == GcGeSpan::Kind::Arc)
      turnsOfArc(span);
    else
      turnsOfBezier(span);
  }

  // The level goes like b cos f + c sin f, f = sweep u.
  void turnsOfArc(const GcGeSpan& span) {
    constexpr double kPi = 3.14159265358979323846;
    const double b = place({span.b.x, span.b.y}).level;
    const double c = place({span.c.x, span.c.y}).level;
    const double turn = gc::atan2(c, b);
    const double f0 = span.sweep * span.u0, f1 = span.sweep * span.u1;
    const double low = std::fmin(f0, f1), high = std::fmax(f0, f1);
    std::vector<double> angles;
    for (double k = std::ceil((low - turn) / kPi); turn + k * kPi < high; ++k)
      if (turn + k * kPi > low) angles.push_back(turn + k * kPi);
    for (const double f : angles) m_turns.push_back(f / span.sweep);
    if (span.sweep < 0) std::reverse(m_turns.begin(), m_turns.end());
  }

  // Sign changes of the rise between samples, halved to the last digit.
  void turnsOfBezier(const GcGeSpan& span) {
    const int samples = span.degree < 2 ? 1 : 16 * span.degree;
    double u = span.u0;
    double r = rise(span, u);
    for (int i = 1; i <= samples; ++i) {
      const double next = span.u0 + (span.u1 - span.u0) * i / samples;
      const double nextRise = rise(span, next);
      if (r * nextRise < 0) m_turns.push_back(turnBetween(span, u, next, r));
      if (nextRise == 0 && i < samples) m_turns.push_back(next);
      u = next;
      r = nextRise;
    }
  }

  [[nodiscard]] double turnBetween(const GcGeSpan& span, double low, double high, double lowRise) const {
    for (;;) {
      const double middle = (low + high) / 2;
      if (!(middle > low && middle < high)) return middle;
      (rise(span, middle) * lowRise > 0 ? low : high) = middle;
    }
  }

  const GcGePath& m_path;
  const GcGiLevels& m_levels;
  Place m_origin{};
  std::size_t m_most;
  std::vector<double> m_turns;
  std::vector<GcGiCrossing>& m_out;
};

}  // namespace

bool gcgiAppendCrossings(const GcGePath& path, const GcGiLevels& levels, std::size_t most,
                         std::vector<GcGiCrossing>& crossings) {
  return Crosser(path, levels, most, crossings).run();
}
