// Parallel curves: the raw parallel is cut where it meets itself, pieces that come too near to the source are dropped,
// the others joined again.
#include "host/ge/curves/offset.h"

#include <algorithm>
#include <iterator>
#include <numbers>
#include <span>

#include "host/ge/curves/meet.h"

namespace {

struct Cut {
  double t;
  int partner;          // index of the cut at the same place on the other branch; -1: none
  bool corner = false;  // where the path leaves or enters the room between a corner's arc and its prolonged sides
};

struct Slice {
  double t0, t1;
  bool valid = false, targeted = false;
  int next = -1;
};

class Trimmer {
 public:
  Trimmer(const GcGePath& source, const GcGeRawOffset& raw, double distance, const GcGeOffsetTol& tol, bool fitted)
      : m_source(source), m_raw(raw.path), m_tooNear(raw.tooNear), m_tol(tol) {
    m_meanStep = range() / static_cast<double>(m_raw.spans().size());
    m_least = std::abs(distance) * (1 - 1e-9) - (fitted ? 3 * tol.fit : 0) - 2 * tol.point;
  }

  void cutAtSelf() {
    const GcGeMeetings found = gcgeMeetSelf(m_raw, m_tol.point, {&m_tooNear});
    for (const GcGeMeeting& p : found.points) addPair(p.ta, p.tb);
    for (const GcGeSharing& s : found.stretches) {
      addPair(s.ta0, s.tb0);
      addPair(s.ta1, s.tb1);
      m_shared.push_back(s);
    }
  }

  void cutAt(const GcGeRawOffset& other) { cutAt(other.path, {&m_tooNear, &other.tooNear}); }
  void cutAt(const GcGePath& other) { cutAt(other, {&m_tooNear}); }
  void cutAt(const GcGePath& other, const GcGeSkip& skip) {
    const GcGeMeetings found = gcgeMeet(m_raw, other, m_tol.point, skip);
    for (const GcGeMeeting& p : found.points) addSingle(p.ta);
    for (const GcGeSharing& s : found.stretches) {
      addSingle(s.ta0);
      addSingle(s.ta1);
    }
  }

  // After the cuts a slice is near to the source or it is not, but for those that run into the room between the arc
  // about a corner and its prolonged sides; these are told by samples that disagree (see cutAtCorners).
  void validate() {
    order();
    m_mixed = false;
    constexpr double kParts[] = {0.5, 0.03, 0.97, 0.25, 0.75, 0.13, 0.37, 0.63, 0.87};
    for (Slice& slice : m_slices) {
      if (holdsTooNear(slice)) continue;
      bool first = true;
      const size_t samples = slice.t1 - slice.t0 > 4 * m_meanStep ? std::size(kParts) : 3;
      for (const double part : std::span(kParts, samples)) {
        GcGePoint3d p;
        const bool there = m_raw.pointAt(wrapped(slice.t0 + (slice.t1 - slice.t0) * part), p);
        slice.valid = there && !m_source.comesNearer(p, m_least);
        m_mixed = m_mixed || (!first && !slice.valid);
        if (!slice.valid) break;
        first = false;
      }
    }
    for (const GcGeSharing& s : m_shared) dropDoubled(s);
    dropCornerRooms();
  }

  [[nodiscard]] bool isMixed() const { return m_mixed; }

  // `rooms`: the arcs' rooms lie on this side of the source.
  void cutAtCorners(const std::vector<GcGePath>& arcs, bool rooms) {
    for (const GcGePath& arc : arcs)
      for (const GcGeMeeting& p : gcgeMeet(m_raw, arc, m_tol.point).points) {
        constexpr double kAtEnd = 1e-6;  // its ends touch the sides that were prolonged
        if (p.tb > kAtEnd && p.tb < 1 - kAtEnd) m_cuts.push_back({p.ta, -1, rooms});
      }
  }

  std::vector<GcGePath> join() {
    link();
    std::vector<GcGePath> results;
    for (size_t i = 0; i < m_slices.size(); ++i)
      if (m_slices[i].valid && !m_slices[i].targeted) follow(static_cast<int>(i), false, results);
    for (size_t i = 0; i < m_slices.size(); ++i)
      if (m_slices[i].valid) follow(static_cast<int>(i), true, results);
    std::sort(results.begin(), results.end(),
              [](const GcGePath& a, const GcGePath& b) { return a.startParam() < b.startParam(); });
    return results;
  }

 private:
  // Of a stretch run through twice in one sense one is left, in both senses none (it encloses nothing).
  void dropDoubled(const GcGeSharing& shared) {
    const bool opposite = shared.tb0 > shared.tb1;
    const double low = std::min(shared.tb0, shared.tb1), high = std::max(shared.tb0, shared.tb1);
    for (Slice& slice : m_slices) {
      const double middle = wrapped((slice.t0 + slice.t1) / 2);
      if (middle > low && middle < high) slice.valid = false;
      if (opposite && middle > shared.ta0 && middle < shared.ta1) slice.valid = false;
    }
  }

  // Whether the slice holds some of a span that is too near; it is so all along then.
  [[nodiscard]] bool holdsTooNear(const Slice& slice) const {
    if (m_tooNear.empty()) return false;
    int first = 0;
    double u = 0;
    if (!m_raw.locate(slice.t0, first, u)) return false;
    const size_t count = m_raw.spans().size();
    double t = slice.t0;  // where the span at hand begins or the slice does
    for (size_t i = first; t < slice.t1; ++i) {
      if (m_tooNear[i % count]) return true;
      t = m_raw.spans()[i % count].t1() + (i >= count ? range() : 0);
    }
    return false;
  }

  // A slice in such a room lies outside the result, though it is far enough from the source.
  void dropCornerRooms() {
    const size_t count = m_slices.size(), cuts = m_sorted.size();
    std::vector<size_t> drop;
    for (size_t i = 0; i < count; ++i) {
      if (!m_slices[i].valid) continue;
      const size_t next = (i + 1) % cuts, before = (i + cuts - 1) % cuts;
      const bool nextBad = next < count && !m_slices[next].valid, lastBad = before < count && !m_slices[before].valid;
      if ((m_sorted[next].corner && nextBad) || (m_sorted[i].corner && lastBad)) drop.push_back(i);
    }
    for (const size_t i : drop) m_slices[i].valid = false;
  }

  void addPair(double ta, double tb) {
    const int first = static_cast<int>(m_cuts.size());
    m_cuts.push_back({ta, first + 1});
    m_cuts.push_back({tb, first});
  }
  void addSingle(double t) { m_cuts.push_back({t, -1}); }

  [[nodiscard]] double range() const { return m_raw.endParam() - m_raw.startParam(); }
  [[nodiscard]] double wrapped(double t) const { return t > m_raw.endParam() ? t - range() : t; }

  // Sorts the cuts along the raw path; slice i begins at cut i. On open paths the ends are cuts too.
  void order() {
    std::vector<Cut> cuts = m_cuts;
    if (!m_raw.isClosed() || cuts.empty()) {
      cuts.push_back({m_raw.startParam(), -1});
      if (!m_raw.isClosed()) cuts.push_back({m_raw.endParam(), -1});
    }
    std::vector<int> at(cuts.size()), place(cuts.size());
    for (size_t i = 0; i < at.size(); ++i) at[i] = static_cast<int>(i);
    std::stable_sort(at.begin(), at.end(), [&](int x, int y) { return cuts[x].t < cuts[y].t; });
    for (size_t i = 0; i < at.size(); ++i) place[at[i]] = static_cast<int>(i);
    m_sorted.clear();
    for (const int i : at)
      m_sorted.push_back({cuts[i].t, cuts[i].partner < 0 ? -1 : place[cuts[i].partner], cuts[i].corner});
    m_slices.clear();
    for (size_t i = 0; i < m_sorted.size(); ++i) {
      const bool last = i + 1 == m_sorted.size();
      if (last && !m_raw.isClosed()) break;
      m_slices.push_back({m_sorted[i].t, last ? m_sorted[0].t + range() : m_sorted[i + 1].t});
    }
  }

  [[nodiscard]] GcGeVector3d pointAt(double t) const {
    GcGeJet jet;
    return m_raw.jetAt(wrapped(t), jet) ? jet.point : GcGeVector3d();
  }

  // What follows each valid slice: the other branch at the cut where it ends, else straight on, else whatever valid
  // slice begins at the same place.
  void link() {
    const int count = static_cast<int>(m_slices.size()), cuts = static_cast<int>(m_sorted.size());
    const auto take = [&](Slice& slice, int target) {
      if (target < 0 || target >= count || !m_slices[target].valid || m_slices[target].targeted) return false;
      slice.next = target;
      m_slices[target].targeted = true;
      return true;
    };
    for (int i = 0; i < count; ++i) {
      Slice& slice = m_slices[i];
      if (!slice.valid) continue;
      const int end = (i + 1) % cuts;
      if (take(slice, m_sorted[end].partner) || (count == cuts || i + 1 < count ? take(slice, end) : false)) continue;
    }
    linkByPlace(take);
  }

  // Ends without a cut in common: to a valid slice that begins within a few tolerances.
  template <class Take>
  void linkByPlace(const Take& take) {
    struct Start {
      GcGeVector3d at;
      int slice;
    };
    const int count = static_cast<int>(m_slices.size());
    std::vector<Start> starts;
    for (int j = 0; j < count; ++j)
      if (m_slices[j].valid && !m_slices[j].targeted) starts.push_back({pointAt(m_slices[j].t0), j});
    std::sort(starts.begin(), starts.end(), [](const Start& p, const Start& q) { return p.at.x < q.at.x; });
    const double near = 64 * m_tol.point;
    for (Slice& slice : m_slices) {
      if (!slice.valid || slice.next >= 0) continue;
      const GcGeVector3d end = pointAt(slice.t1);
      auto start = std::lower_bound(starts.begin(), starts.end(), end.x - near,
                                    [](const Start& p, double x) { return p.at.x < x; });
      int best = -1;  // the first along the path
      for (; start != starts.end() && start->at.x <= end.x + near; ++start)
        if (!m_slices[start->slice].targeted && (start->at - end).length() <= near && (best < 0 || start->slice < best))
          best = start->slice;
      take(slice, best);
    }
  }

  void follow(int first, bool loop, std::vector<GcGePath>& results) {
    GcGePath path(m_raw.origin());
    int at = first;
    bool closed = false;
    while (at >= 0 && m_slices[at].valid) {
      m_slices[at].valid = false;
      append(path, m_slices[at]);
      at = m_slices[at].next;
      closed = loop && at == first;
    }
    if (path.isEmpty()) return;
    const bool whole = closed && m_slices.size() == 1;
    path.setClosed(closed || whole);
    if (path.length() > 8 * m_tol.point && isWide(path)) results.push_back(std::move(path));
  }

  // What is left of a loop that rounding made is thinner than the tolerance everywhere.
  [[nodiscard]] bool isWide(const GcGePath& path) const {
    if (!path.isClosed()) return true;
    return path.vectorArea().length() > 4 * m_tol.point * path.length();
  }

  // Parts of one span that follow each other become one again.
  void append(GcGePath& path, const Slice& slice) const {
    const double from = slice.t0, to = slice.t1;
    const GcGePath part = to > m_raw.endParam() ? m_raw.trimmed(from, to - range()) : m_raw.trimmed(from, to);
    for (const GcGeSpan& s : part.spans()) path.addJoined(s, part.poles(), m_tol.point);
  }

  const GcGePath& m_source;
  const GcGePath& m_raw;
  const std::vector<bool>& m_tooNear;
  GcGeOffsetTol m_tol;
  double m_least = 0, m_meanStep = 1;
  bool m_mixed = false;
  std::vector<Cut> m_cuts, m_sorted;
  std::vector<Slice> m_slices;
  std::vector<GcGeSharing> m_shared;
};

GcGePath circleAbout(const GcGePoint3d& origin, const GcGeVector3d& center, const GcGeVector3d& normal, double radius) {
  GcGePath circle(origin);
  const GcGeVector3d x = gcgeArbitraryXAxis(normal);
  circle.addArc(origin + center, x * radius, normal.crossProduct(x) * radius, 0, 2 * std::numbers::pi, 0, 1);
  circle.setClosed(true, true);
  return circle;
}

bool isFitted(const GcGePath& path) {
  for (const GcGeSpan& s : path.spans())
    if (s.kind == GcGeSpan::Kind::Bezier) return true;
  return false;
}

}  // namespace

std::vector<GcGePath> gcgeOffset(const GcGePath& path, const GcGeVector3d& normal, double distance, GcGeOffsetTol tol) {
  std::vector<GcGePath> results;
  if (path.isEmpty() || !std::isfinite(distance)) return results;
  if (tol.point <= 0) tol.point = path.tolerance() + 1e-12 * std::abs(distance);
  if (tol.fit <= 0) tol.fit = std::max(1e-7 * std::abs(distance), tol.point);
  GcGeRawOffset raw = gcgeRawOffset(path, normal, distance, tol), far;
  if (raw.path.isEmpty()) return results;
  if (!path.isBounded()) {
    results.push_back(std::move(raw.path));
    return results;
  }
  Trimmer trimmer(path, raw, distance, tol, isFitted(raw.path));
  trimmer.cutAtSelf();
  const int last = static_cast<int>(path.spans().size()) - 1;
  if (last > 0 || path.spans()[0].kind != GcGeSpan::Kind::Line) {
    // Other places where nearness may begin: the parallel on the far side, the circles about free ends.
    if (last > 0 || !path.spans()[0].circular) {
      far = gcgeRawOffset(path, normal, -distance, tol);
      trimmer.cutAt(far);
    }
    const GcGeVector3d ends[2] = {path.pointOn(0, path.spans().front().u0), path.pointOn(last, path.spans()[last].u1)};
    for (const GcGeVector3d& end : ends)
      if (!path.isClosed()) trimmer.cutAt(circleAbout(path.origin(), end, normal, std::abs(distance)));
  }
  trimmer.validate();
  if (trimmer.isMixed()) {
    trimmer.cutAtCorners(raw.cornerArcs, true);
    trimmer.cutAtCorners(far.cornerArcs, false);
    trimmer.validate();
  }
  return trimmer.join();
}
