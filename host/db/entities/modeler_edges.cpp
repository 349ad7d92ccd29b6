#include "host/db/entities/modeler_edges.h"

#include <charconv>
#include <cmath>

#include "ge/matrix3d.h"
#include "host/rx/math/elementary.h"

namespace gcmodeler {

namespace {

constexpr double kTwoPi = 6.28318530717958647692;
constexpr int kHeaderLines = 3;

struct Record {
  std::vector<std::string_view> words;
  [[nodiscard]] std::string_view name() const { return words.empty() ? std::string_view() : words[0]; }
};

// Records end in '#'; how they are broken into lines says nothing.
std::vector<Record> recordsOf(std::string_view text) {
  for (int i = 0; i < kHeaderLines; ++i) {
    const size_t end = text.find('\n');
    if (end == std::string_view::npos) return {};
    text.remove_prefix(end + 1);
  }
  std::vector<Record> records(1);
  while (!text.empty()) {
    const size_t from = text.find_first_not_of(" \t\r\n");
    if (from == std::string_view::npos) break;
    text.remove_prefix(from);
    const std::string_view word = text.substr(0, text.find_first_of(" \t\r\n"));
    text.remove_prefix(word.size());
    if (word == "#")
      records.emplace_back();
    else
      records.back().words.push_back(word);
  }
  return records;
}

// The numbers behind a record's last reference.
std::vector<double> numbersOf(const Record& record) {
  std::vector<double> numbers;
  for (const std::string_view word : record.words) {
    if (word[0] == '$') numbers.clear();
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error == std::errc() && end == word.data() + word.size() && std::isfinite(value)) numbers.push_back(value);
  }
  return numbers;
}

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

class Body {
 public:
  explicit Body(std::string_view text) : m_records(recordsOf(text)) {
    for (const Record& record : m_records)
      if (record.name() == "transform") setTransform(numbersOf(record));
  }

  std::vector<std::vector<GcGePoint3d>> edges() const {
    std::vector<std::vector<GcGePoint3d>> all;
    for (const Record& record : m_records) {
      if (record.name() != "edge") continue;
      std::vector<GcGePoint3d> points = edge(record);
      for (GcGePoint3d& point : points) point = m_transform * point;
      if (points.size() > 1) all.push_back(std::move(points));
    }
    return all;
  }

 private:
  // Rows of the rotation, the move, the scale; points are rows, too.
  void setTransform(std::vector<double> n) {
    constexpr size_t kLeast = 13, kFlags = 3;  // flags are words, and were numbers once
    // Newer records have a number before.
    if (n.size() == kLeast + 1 || n.size() == kLeast + 1 + kFlags) n.erase(n.begin());
    if (n.size() < kLeast) return;
    for (int row = 0; row < 3; ++row)
      for (int column = 0; column < 3; ++column)
        m_transform.entry[row][column] = n[static_cast<size_t>(column * 3 + row)] * n[12];
    for (int row = 0; row < 3; ++row) m_transform.entry[row][3] = n[static_cast<size_t>(9 + row)];
  }

  const Record* at(std::string_view word) const {
    size_t index = 0;
    if (word.size() < 2 || word[0] != '$') return nullptr;
    const auto [end, error] = std::from_chars(word.data() + 1, word.data() + word.size(), index);
    return error == std::errc() && end == word.data() + word.size() && index < m_records.size() ? &m_records[index]
                                                                                                : nullptr;
  }

  bool pointOf(const Record& vertex, GcGePoint3d& point) const {
    for (const std::string_view word : vertex.words) {
      const Record* target = at(word);
      if (target == nullptr || target->name() != "point") continue;
      const std::vector<double> n = numbersOf(*target);
      if (n.size() < 3) return false;
      point = {n[n.size() - 3], n[n.size() - 2], n[n.size() - 1]};
      return true;
    }
    return false;
  }

  std::vector<GcGePoint3d> edge(const Record& record) const {
    std::vector<GcGePoint3d> ends;
    const Record* curve = nullptr;
    const Record* vertices[2] = {};
    bool isReversed = false;
    for (const std::string_view word : record.words) {
      isReversed = isReversed || word == "reversed";
      const Record* target = at(word);
      if (target == nullptr) continue;
      if (endsWith(target->name(), "-curve")) curve = target;
      GcGePoint3d point;
      if (target->name() != "vertex" || ends.size() == 2 || !pointOf(*target, point)) continue;
      vertices[ends.size()] = target;
      ends.push_back(point);
    }
    if (ends.size() < 2 || curve == nullptr) return {};
    if (curve->name() == "ellipse-curve") return arc(*curve, ends[0], ends[1], vertices[0] == vertices[1], isReversed);
    return ends;
  }

  static std::vector<GcGePoint3d> arc(const Record& curve, const GcGePoint3d& start, const GcGePoint3d& end,
                                      bool isWhole, bool isReversed) {
    const std::vector<double> all = numbersOf(curve);
    constexpr size_t kValues = 10;  // centre, normal, major axis, ratio
    if (all.size() < kValues) return {};
    const double* n = all.data();
    const GcGePoint3d center(n[0], n[1], n[2]);
    const GcGeVector3d normal(n[3], n[4], n[5]), major(n[6], n[7], n[8]);
    const GcGeVector3d minor = normal.normal().crossProduct(major) * n[9];
    if (major.isZeroLength() || minor.isZeroLength()) return {};
    const auto angleOf = [&](const GcGePoint3d& p) {
      const GcGeVector3d v = p - center;
      return gc::atan2(v.dotProduct(minor) / minor.lengthSqrd(), v.dotProduct(major) / major.lengthSqrd());
    };
    const double from = angleOf(isReversed ? end : start);
    double sweep = isWhole ? kTwoPi : angleOf(isReversed ? start : end) - from;
    if (sweep <= 0) sweep += kTwoPi;
    constexpr int kPieces = 32;
    std::vector<GcGePoint3d> points;
    for (int i = 0; i <= kPieces; ++i) {
      const double t = from + sweep * i / kPieces;
      points.push_back(center + major * gc::cos(t) + minor * gc::sin(t));
    }
    return points;
  }

  std::vector<Record> m_records;
  GcGeMatrix3d m_transform;
};

}  // namespace

std::vector<std::vector<GcGePoint3d>> edgesOf(std::string_view text) { return Body(text).edges(); }

}  // namespace gcmodeler
