// The curves that are measured, for our kernel and for the peers alike: plain numbers, the same on every run.
#pragma once

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "host/ge/curves/nurbs.h"
#include "host/ge/curves/path.h"

namespace gebench {

constexpr double kPi = std::numbers::pi;

// A cubic of 20 poles that runs up and down along the X axis.
inline GcGeNurbs wave(double phase, bool rational) {
  constexpr int kPoles = 20;
  std::mt19937_64 engine(42 + static_cast<uint64_t>(phase * 100));
  std::uniform_real_distribution<double> shake(-2, 2), weight(0.5, 2);
  GcGeNurbs spline;
  for (int i = 0; i < kPoles; ++i) {
    spline.points.push_back({i * 5.0, 20 * std::sin(i * 0.9 + phase) + shake(engine), 0});
    if (rational) spline.weights.push_back(weight(engine));
  }
  spline.knots.assign(4, 0);
  for (int i = 1; i < kPoles - 3; ++i) spline.knots.push_back(i);
  spline.knots.insert(spline.knots.end(), 4, kPoles - 3);
  return spline;
}

inline std::vector<GcGePoint3d> pointsAround(int count) {
  std::mt19937_64 engine(7);
  std::uniform_real_distribution<double> x(-10, 105), y(-40, 40);
  std::vector<GcGePoint3d> points;
  for (int i = 0; i < count; ++i) {
    const double at = x(engine);
    points.push_back({at, y(engine), 0});
  }
  return points;
}

// A zigzag of `strokes` strokes between -reach and reach, its segments evenly shared out over them, shaken a little;
// `upright`: strokes along Y that step along X, else the other way round.
inline std::vector<GcGePoint3d> zigzag(int segments, int strokes, double reach, bool upright, uint64_t seed) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> shake(-0.002, 0.002);
  std::vector<GcGePoint3d> corners;
  for (int i = 0; i <= segments; ++i) {
    const double turns = static_cast<double>(i) * strokes / segments, part = turns - std::floor(turns);
    const bool forth = static_cast<int>(turns) % 2 == 0;
    const double along = reach * (forth ? 2 * part - 1 : 1 - 2 * part);
    const double across = 100 * (turns / strokes - 0.5) + shake(engine);
    corners.push_back(upright ? GcGePoint3d(across, along, 0) : GcGePoint3d(along, across, 0));
  }
  return corners;
}

// Two polylines of 1,000 segments each that cross 89 times, and two that cross 3,861 times (39 by 99 strokes).
struct Polylines {
  const char* name;
  std::vector<GcGePoint3d> a, b;
};
inline Polylines fewCrossings() {
  Polylines pair{"89 crossings", zigzag(1000, 89, 30, true, 1), zigzag(1000, 1, 60, false, 2)};
  for (GcGePoint3d& corner : pair.b) corner.y *= 0.3;
  return pair;
}
inline Polylines manyCrossings() {
  return {"3,861 crossings", zigzag(1000, 99, 60, true, 3), zigzag(1000, 39, 60, false, 4)};
}

inline GcGePath pathOf(const GcGeNurbs& spline) {
  GcGePath path;
  if (!gcgePathOfNurbs(spline, path)) std::abort();
  return path;
}

inline GcGePath pathOf(const std::vector<GcGePoint3d>& corners) {
  GcGePath path(corners.front());
  path.reserve(corners.size(), 0);
  for (size_t i = 1; i < corners.size(); ++i)
    path.addLine(corners[i - 1], corners[i], static_cast<double>(i) - 1, static_cast<double>(i));
  return path;
}

// The corners of a closed polyline around the origin; every second segment is an arc of this bulge.
constexpr int kRingCorners = 1000;
constexpr double kRingBulge = 0.15;
inline GcGePoint3d ringCorner(int i) {
  const double angle = 2 * kPi * i / kRingCorners, radius = 100 + 4 * std::sin(angle * 25);
  return {radius * std::cos(angle), radius * std::sin(angle), 0};
}
inline GcGePath ring() {
  GcGePath path((GcGePoint3d()));
  for (int i = 0; i < kRingCorners; ++i)
    path.addBulge(ringCorner(i), ringCorner((i + 1) % kRingCorners), i % 2 == 0 ? 0 : kRingBulge, GcGeVector3d::kZAxis,
                  i, i + 1);
  path.setClosed(true, true);
  return path;
}

}  // namespace gebench
