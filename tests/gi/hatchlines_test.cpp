#include "host/gi/hatchlines.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Area {
  std::vector<GcGePath> loops;
  void loop(const std::vector<GcGePoint2d>& corners) {
    GcGePath path(GcGePoint3d(corners[0].x, corners[0].y, 0));
    for (std::size_t i = 0; i < corners.size(); ++i) {
      const GcGePoint2d &a = corners[i], &b = corners[(i + 1) % corners.size()];
      path.addLine({a.x, a.y, 0}, {b.x, b.y, 0}, static_cast<double>(i), static_cast<double>(i + 1));
    }
    loops.push_back(path);
  }
  void ellipse(const GcGePoint2d& center, const GcGeVector2d& a, const GcGeVector2d& b) {
    GcGePath path(GcGePoint3d(center.x, center.y, 0));
    path.addArc({center.x, center.y, 0}, {a.x, a.y, 0}, {b.x, b.y, 0}, 0, 2 * kPi, 0, 1);
    loops.push_back(path);
  }
};

std::vector<GcGePoint2d> hatch(const Area& area, const GcGiHatchFamily& family, int most = 100000,
                               bool* good = nullptr) {
  std::vector<GcGePoint2d> ends;
  const bool done = gcgiHatchLines(area.loops, family, most, ends);
  if (good != nullptr) *good = done;
  return ends;
}

double lengthOf(const std::vector<GcGePoint2d>& ends) {
  double length = 0;
  for (std::size_t i = 0; i < ends.size(); i += 2) length += ends[i].distanceTo(ends[i + 1]);
  return length;
}

Area square(double from, double to) {
  Area area;
  area.loop({{from, from}, {to, from}, {to, to}, {from, to}});
  return area;
}

TEST(HatchLines, FillASquareWithSolidLines) {
  GcGiHatchFamily family;
  family.base = {0, 0.5};
  family.offset = {0, 1};
  const auto ends = hatch(square(0, 10), family);
  EXPECT_EQ(ends.size(), 20u);
  EXPECT_NEAR(lengthOf(ends), 100, 1e-9);
}

TEST(HatchLines, LeaveHolesOut) {
  Area area = square(0, 10);
  area.loop({{2, 2}, {2, 8}, {8, 8}, {8, 2}});
  GcGiHatchFamily family;
  family.base = {0, 0.5};
  family.offset = {0, 1};
  EXPECT_NEAR(lengthOf(hatch(area, family)), 100 - 36, 1e-9);
}

TEST(HatchLines, LengthTimesSpacingIsTheAreaWhateverTheAngle) {
  for (const double angle : {0.3, kPi / 4, 1.2, -0.7}) {
    GcGiHatchFamily family;
    family.angleRad = angle;
    family.base = {0.123, 0.456};
    family.offset = {-0.01 * std::sin(angle), 0.01 * std::cos(angle)};
    EXPECT_NEAR(lengthOf(hatch(square(-3, 4), family)) * 0.01, 49, 0.05) << angle;
  }
}

TEST(HatchLines, DashesStandInLineWithTheBase) {
  const double dashes[] = {0.5, -0.25, 0, -0.25};
  GcGiHatchFamily family;
  family.offset = {0.5, 1};  // every second line starts half a period later
  family.dashes = dashes;
  family.dashCount = 4;
  Area area;
  area.loop({{0.1, -0.1}, {2, -0.1}, {2, 1.1}, {0.1, 1.1}});
  const auto ends = hatch(area, family);
  ASSERT_FALSE(ends.empty());
  EXPECT_NEAR(ends[0].x, 0.1, 1e-12);
  EXPECT_NEAR(ends[1].x, 0.5, 1e-12);
  EXPECT_EQ(ends[2], ends[3]);  // the dot
  EXPECT_NEAR(ends[2].x, 0.75, 1e-12);
  bool found = false;
  for (std::size_t i = 0; i < ends.size(); i += 2) {
    found = found || (ends[i].y > 0.5 && std::fabs(ends[i].x - 0.5) < 1e-12 && std::fabs(ends[i + 1].x - 1) < 1e-12);
  }
  EXPECT_TRUE(found);
}

TEST(HatchLines, CornersOnALineAreCrossedOnce) {
  Area area;
  area.loop({{0, 0}, {5, 5}, {10, 0}, {5, -5}});  // corners on the line through the base
  GcGiHatchFamily family;
  family.offset = {0, 5};
  EXPECT_NEAR(lengthOf(hatch(area, family)), 10, 1e-9);
}

TEST(HatchLines, FamiliesThatAreTooFineAreRefused) {
  GcGiHatchFamily family;
  family.offset = {0, 1e-7};
  bool good = true;
  EXPECT_TRUE(hatch(square(0, 10), family, 1000, &good).empty());
  EXPECT_FALSE(good);
  family.offset = {1, 0};  // moved along itself: no spacing
  hatch(square(0, 10), family, 1000, &good);
  EXPECT_FALSE(good);
  const double dashes[] = {1e-6, -1e-6};
  family.offset = {0, 1};
  family.dashes = dashes;
  family.dashCount = 2;
  hatch(square(0, 10), family, 1000, &good);
  EXPECT_FALSE(good);
}

// Ends lie on the ellipse itself, whatever its turn and the lines' angle; far out too.
TEST(HatchLines, EndOnTheCurve) {
  for (const GcGePoint2d center : {GcGePoint2d(3, -2), GcGePoint2d(5e6, -5e6)}) {
    for (const double angle : {0.0, 0.5, 2.5}) {
      const GcGeVector2d a(7 * std::cos(1.1), 7 * std::sin(1.1)), b = a.perpVector() * 0.4;
      Area area;
      area.ellipse(center, a, b);
      GcGiHatchFamily family;
      family.angleRad = angle;
      family.base = center;
      family.offset = {-0.3 * std::sin(angle), 0.3 * std::cos(angle)};
      const auto ends = hatch(area, family);
      EXPECT_GT(ends.size(), 20u);
      for (const GcGePoint2d& end : ends) {
        const GcGeVector2d v = end - center;
        const double x = v.dotProduct(a) / a.dotProduct(a), y = v.dotProduct(b) / b.dotProduct(b);
        EXPECT_NEAR(x * x + y * y, 1, 1e-8 * (1 + std::fabs(center.x) * 1e-3));
      }
    }
  }
}

TEST(HatchLines, SplineLoopsAreCutOnTheSpline) {
  // A quarter circle's cubic, closed by its chord: lines end within the cubic's own error of the circle.
  const double k = 0.5522847498307936;
  const GcGePole poles[] = {{1, 0, 0, 1}, {1, k, 0, 1}, {k, 1, 0, 1}, {0, 1, 0, 1}};
  Area area;
  GcGePath path(GcGePoint3d(0, 0, 0));
  path.addBezier(poles, 3, 0, 1);
  area.loops.push_back(path);
  GcGiHatchFamily family;
  family.base = {0, 0.005};
  family.offset = {0, 0.01};
  const auto ends = hatch(area, family);
  ASSERT_EQ(ends.size(), 200u);
  for (std::size_t i = 0; i < ends.size(); i += 2) {
    EXPECT_NEAR(ends[i].x + ends[i].y, 1, 1e-12);
    EXPECT_NEAR(std::hypot(ends[i + 1].x, ends[i + 1].y), 1, 3e-4);
  }
}

TEST(HatchLines, DepthsOfLoops) {
  Area area = square(0, 10);
  area.ellipse({5, 5}, {3, 0}, {0, 3});
  area.loop({{4, 4}, {6, 4}, {6, 6}, {4, 6}});
  area.loop({{20, 0}, {21, 0}, {21, 1}});
  EXPECT_EQ(gcgiLoopDepths(area.loops), (std::vector<int>{0, 1, 2, 0}));
}

}  // namespace
