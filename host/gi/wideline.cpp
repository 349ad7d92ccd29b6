#include "host/gi/wideline.h"

#include <algorithm>
#include <cmath>

#include "host/rx/math/elementary.h"

namespace {

constexpr double kMitreLimit = 4;  // longest mitre, in half widths
constexpr int kMostPieces = 720;   // of one arc

// A place on the middle line: where, which way, half as wide.
struct Station {
  GcGePoint2d point;
  GcGeVector2d way;  // unit
  double half;
};
using Segment = std::vector<Station>;

GcGeVector2d unit(const GcGeVector2d& v) {
  const double length = v.length();
  return length > 0 ? v * (1 / length) : GcGeVector2d(1, 0);
}

Segment stationsOf(const GcGiWideVertex& from, const GcGePoint2d& to, double deviation) {
  const GcGeVector2d chord = to - from.point;
  const auto half = [&](double t) { return (from.startWidth + (from.endWidth - from.startWidth) * t) / 2; };
  Segment stations;
  if (std::fabs(from.bulge) < 1e-9) {
    stations = {{from.point, unit(chord), half(0)}, {to, unit(chord), half(1)}};
    return stations;
  }
  // Source: bulge = tan(sweep / 4); the centre lies left of the chord by (1 - b^2) / (4 b) of its length.
  const double sweep = 4 * gc::atan(from.bulge);
  const double b = from.bulge;
  const GcGePoint2d center = from.point + chord * 0.5 + chord.perpVector() * ((1 - b * b) / (4 * b));
  const double radius = from.point.distanceTo(center);
  const double outer = radius + std::fmax(from.startWidth, from.endWidth) / 2;
  const double step = 2 * gc::acos(std::clamp(1 - deviation / outer, 0.0, 1.0));
  const int pieces = std::clamp(static_cast<int>(std::ceil(std::fabs(sweep) / std::fmax(step, 1e-3))), 2, kMostPieces);
  const double start = (from.point - center).angle();
  for (int i = 0; i <= pieces; ++i) {
    const double t = static_cast<double>(i) / pieces, angle = start + sweep * t;
    const GcGeVector2d out(gc::cos(angle), gc::sin(angle));
    stations.push_back({i == 0        ? from.point
                        : i == pieces ? to
                                      : center + out * radius,
                        out.perpVector() * (b > 0 ? 1 : -1), half(t)});
  }
  return stations;
}

// How far the edges of two segments run on (or stop short) along the first one's way to meet at their corner; NaN
// when they do not mitre: different widths, a turn too sharp, or no turn at all.
double mitre(const Station& end, const Station& start) {
  if (std::fabs(end.half - start.half) > 1e-9 * (end.half + start.half)) return NAN;
  const double sine = end.way.crossProduct(start.way), cosine = end.way.dotProduct(start.way);
  if (std::fabs(sine) < 1e-9 || cosine < -0.9) return NAN;
  const double tangent = sine / (1 + cosine);  // of half the turn
  return std::fabs(tangent) <= kMitreLimit ? tangent : NAN;
}

void addSegment(const Segment& stations, double startMitre, double endMitre, GcGiWideArea& area) {
  const auto edge = [&](std::size_t i, double side) {
    const Station& station = stations[i];
    const GcGeVector2d out = station.way.perpVector() * (side * station.half);
    double along = 0;
    if (i == 0 && !std::isnan(startMitre)) along = side * startMitre * station.half;
    if (i + 1 == stations.size() && !std::isnan(endMitre)) along = -side * endMitre * station.half;
    return station.point + out + station.way * along;
  };
  for (std::size_t i = 0; i < stations.size(); ++i) area.points.push_back(edge(i, 1));
  for (std::size_t i = stations.size(); i-- > 0;) area.points.push_back(edge(i, -1));
  area.counts.push_back(static_cast<int>(2 * stations.size()));
}

}  // namespace

GcGiWideArea gcgiWideLine(const GcGiWideVertex* vertices, int count, bool closed, double deviation) {
  GcGiWideArea area;
  std::vector<Segment> segments;
  const int segmentCount = closed ? count : count - 1;
  for (int i = 0; i < segmentCount; ++i) {
    const GcGiWideVertex& from = vertices[i];
    const GcGePoint2d& to = vertices[(i + 1) % count].point;
    if (from.point == to) continue;
    segments.push_back(stationsOf(from, to, deviation));
  }
  const std::size_t size = segments.size();
  for (std::size_t i = 0; i < size; ++i) {
    const bool first = i == 0, last = i + 1 == size;
    const double startMitre =
        first && !closed ? NAN : mitre(segments[(i + size - 1) % size].back(), segments[i].front());
    const double endMitre = last && !closed ? NAN : mitre(segments[i].back(), segments[(i + 1) % size].front());
    const bool wide = segments[i].front().half > 0 || segments[i].back().half > 0;
    if (wide) addSegment(segments[i], startMitre, endMitre, area);
  }
  return area;
}
