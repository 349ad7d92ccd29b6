#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "host/db/entities/modeler_text.h"
#include "host/ge/curves/append.h"
#include "host/ge/curves/nurbs.h"
#include "host/rx/math/elementary.h"
#include "host/rx/text/number.h"

namespace gcmodeler {
namespace {

using Words = std::vector<std::string_view>;

constexpr double kTwoPi = 6.28318530717958647692;
constexpr int kMostEdges = 100000;

// The records behind the three lines of the head, as words.
std::vector<Words> recordsOf(std::string_view text) {
  std::vector<Words> records(1);
  for (int line = 0; line < 3; ++line) {
    const size_t end = text.find('\n');
    if (end == std::string_view::npos) return {};
    text.remove_prefix(end + 1);
  }
  for (size_t at = 0; at < text.size();) {
    const size_t begin = text.find_first_not_of(" \t\r\n", at);
    if (begin == std::string_view::npos) break;
    const size_t end = std::min(text.find_first_of(" \t\r\n", begin), text.size());
    const std::string_view word = text.substr(begin, end - begin);
    if (word == "#")
      records.emplace_back();
    else
      records.back().push_back(word);
    at = end;
  }
  return records;
}

// Versions add words in the middle of records: what is looked for is found by its kind, not by its place.
class Reader {
 public:
  explicit Reader(std::string_view text) : m_records(recordsOf(text)) {}

  bool run(PlaneArea& area) {
    bool any = false;
    for (const Words& record : m_records) {
      PlaneArea part;
      if (!is(record, "face") || !face(record, part)) continue;
      if (!any)
        area = std::move(part);
      else if (lieInOnePlane(area, part))
        addTo(area, part);
      any = true;
    }
    return any;
  }

 private:
  static bool is(const Words& record, std::string_view kind) { return !record.empty() && record[0] == kind; }
  static bool ends(const Words& record, std::string_view kind) {
    return !record.empty() && record[0].size() >= kind.size() &&
           record[0].substr(record[0].size() - kind.size()) == kind;
  }

  static GcGePoint3d startOf(const PlaneArea& area) {
    return area.loops[0].origin() + area.loops[0].pointOn(0, area.loops[0].spans()[0].u0);
  }
  static bool lieInOnePlane(const PlaneArea& a, const PlaneArea& b) {
    constexpr double kSlope = 1e-9;  // sine of an angle that still counts as none
    const GcGeVector3d between = startOf(b) - startOf(a);
    return a.normal.crossProduct(b.normal).length() <= kSlope &&
           std::fabs(between.dotProduct(a.normal)) <= kSlope * (between.length() + a.loops[0].size());
  }
  static void addTo(PlaneArea& area, const PlaneArea& part) {
    const bool isTurnedOver = area.normal.dotProduct(part.normal) < 0;
    for (const GcGePath& loop : part.loops) area.loops.push_back(isTurnedOver ? loop.reversed() : loop);
  }

  [[nodiscard]] const Words* at(std::string_view pointer) const {
    if (pointer.size() < 2 || pointer[0] != '$') return nullptr;
    int64_t index = kNone;
    if (!gc::parseInt(pointer.substr(1), index) || index < 0 || index >= static_cast<int64_t>(m_records.size()))
      return nullptr;
    return &m_records[static_cast<size_t>(index)];
  }

  // The nth record of the kind that the record points to; `place` receives where its pointer stands.
  const Words* linked(const Words& record, std::string_view kind, int nth = 0, size_t* place = nullptr) const {
    for (size_t i = 1; i < record.size(); ++i) {
      const Words* other = at(record[i]);
      if (other == nullptr || !ends(*other, kind) || nth-- > 0) continue;
      if (place != nullptr) *place = i;
      return other;
    }
    return nullptr;
  }

  // The numbers behind the last pointer.
  static std::vector<double> numbers(const Words& record) {
    size_t from = 1;
    for (size_t i = 1; i < record.size(); ++i)
      if (record[i][0] == '$') from = i + 1;
    std::vector<double> values;
    double value = 0;
    for (size_t i = from; i < record.size(); ++i)
      if (gc::parseReal(record[i], value)) values.push_back(value);
    return values;
  }
  static GcGePoint3d point(const std::vector<double>& n, size_t from) { return {n[from], n[from + 1], n[from + 2]}; }

  bool face(const Words& record, PlaneArea& area) {
    const Words* surface = linked(record, "-surface");
    if (surface == nullptr || !is(*surface, "plane-surface")) return false;
    const std::vector<double> n = numbers(*surface);
    if (n.size() < 6) return false;
    area.normal = point(n, 3).asVector();
    if (area.normal.isZeroLength()) return false;
    area.normal = area.normal.normal();
    size_t sense = 0;
    linked(record, "-surface", 0, &sense);
    if (sense + 1 < record.size() && record[sense + 1] == "reversed") area.normal = -area.normal;
    area.loops.clear();
    int budget = kMostEdges;
    for (const Words* loop = linked(record, "loop"); loop != nullptr && budget > 0; loop = linked(*loop, "loop"))
      if (!this->loop(*loop, area, budget)) return false;
    return !area.loops.empty();
  }

  bool loop(const Words& record, PlaneArea& area, int& budget) {
    const Words* first = linked(record, "coedge");
    GcGePath path;
    const Words* coedge = first;
    do {
      if (coedge == nullptr || --budget < 0 || !this->coedge(*coedge, path)) return false;
      coedge = linked(*coedge, "coedge");
    } while (coedge != first);
    path.setClosed(true, true);
    area.loops.push_back(std::move(path));
    return true;
  }

  static bool isReversedBehind(const Words& record, size_t place) {
    return place + 1 < record.size() && record[place + 1] == "reversed";
  }

  bool coedge(const Words& record, GcGePath& path) {
    size_t place = 0;
    const Words* edge = linked(record, "edge", skipCoedges(record), &place);
    if (edge == nullptr) return false;
    GcGePath own;
    if (!this->edge(*edge, own)) return false;
    if (isReversedBehind(record, place)) own = own.reversed();
    if (path.isEmpty()) path.clear(own.origin());
    gcgeAppend(own, path);
    return true;
  }
  // "coedge" ends in "edge" too: pointers to neighbours come first.
  int skipCoedges(const Words& record) const {
    int count = 0;
    while (linked(record, "coedge", count) != nullptr) ++count;
    return count;
  }

  bool vertex(const Words& edge, int which, GcGePoint3d& place) const {
    const Words* record = linked(edge, "vertex", which);
    const Words* own = record != nullptr ? linked(*record, "point") : nullptr;
    if (own == nullptr) return false;
    const std::vector<double> n = numbers(*own);
    if (n.size() < 3) return false;
    place = point(n, n.size() - 3);
    return true;
  }

  bool edge(const Words& record, GcGePath& path) {
    GcGePoint3d from, to;
    size_t place = 0;
    const Words* curve = linked(record, "-curve", 0, &place);
    if (curve == nullptr || !vertex(record, 0, from)) return false;
    if (!vertex(record, 1, to)) to = from;
    const bool backwards = isReversedBehind(record, place);
    if (is(*curve, "straight-curve")) {
      path.clear(from);
      path.addLine(from, to, 0, 1);
      return true;
    }
    if (is(*curve, "ellipse-curve")) return ellipse(numbers(*curve), from, to, backwards, path);
    if (!spline(*curve, path)) return false;
    if (backwards) path = path.reversed();
    return true;
  }

  static bool ellipse(const std::vector<double>& n, const GcGePoint3d& from, const GcGePoint3d& to, bool backwards,
                      GcGePath& path) {
    if (n.size() < 10) return false;
    const GcGePoint3d center = point(n, 0);
    const GcGeVector3d major = point(n, 6).asVector();
    const GcGeVector3d minor = point(n, 3).asVector().crossProduct(major) * n[9];
    if (major.isZeroLength() || minor.isZeroLength()) return false;
    const auto angleOf = [&](const GcGePoint3d& p) {
      const GcGeVector3d v = p - center;
      return gc::atan2(v.dotProduct(minor) / minor.lengthSqrd(), v.dotProduct(major) / major.lengthSqrd());
    };
    const double start = angleOf(from);
    double sweep = from == to ? kTwoPi : angleOf(to) - start;
    if (sweep <= 0) sweep += kTwoPi;
    if (backwards) sweep -= kTwoPi;
    if (backwards && from == to) sweep = -kTwoPi;
    path.clear(from);
    path.addArc(center, major, minor, start, sweep, 0, 1);
    return true;
  }

  // "nubs" or "nurbs", degree, closure, count of knots, each knot with its multiplicity, control points.
  static bool spline(const Words& record, GcGePath& path) {
    size_t i = 0;
    while (i < record.size() && record[i] != "nubs" && record[i] != "nurbs") ++i;
    if (i + 4 >= record.size()) return false;
    const bool rational = record[i] == "nurbs";
    GcGeNurbs nurbs;
    int64_t degree = 0, knots = 0;
    if (!gc::parseInt(record[i + 1], degree) || !gc::parseInt(record[i + 3], knots)) return false;
    if (degree < 1 || degree > GcGeSpan::kMostDegree || knots < 2 || knots > kMostEdges) return false;
    nurbs.degree = static_cast<int>(degree);
    i += 4;
    double value = 0;
    for (int64_t k = 0; k < knots; ++k, i += 2) {
      int64_t times = 0;
      if (i + 1 >= record.size() || !gc::parseReal(record[i], value) || !gc::parseInt(record[i + 1], times) ||
          times < 1 || times > degree)
        return false;
      if (k == 0 || k + 1 == knots) ++times;  // files leave one out at either end
      nurbs.knots.insert(nurbs.knots.end(), static_cast<size_t>(times), value);
    }
    if (nurbs.knots.size() < static_cast<size_t>(degree) + 2) return false;
    const size_t count = nurbs.knots.size() - static_cast<size_t>(degree) - 1;
    for (size_t k = 0; k < count; ++k) {
      double c[4] = {0, 0, 0, 1};
      for (int j = 0; j < (rational ? 4 : 3); ++j, ++i)
        if (i >= record.size() || !gc::parseReal(record[i], c[j])) return false;
      nurbs.points.push_back({c[0], c[1], c[2]});
      if (rational) nurbs.weights.push_back(c[3]);
    }
    return nurbs.isValid() && gcgePathOfNurbs(nurbs, path);
  }

  static constexpr int kNone = -1;
  std::vector<Words> m_records;
};

}  // namespace

bool read(std::string_view text, PlaneArea& area) { return Reader(text).run(area); }

}  // namespace gcmodeler
