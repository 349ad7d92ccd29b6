// Planes cut up by curves: areas put together, areas counted, points inside.
#include "host/ge/curves/arrangement.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/ge/curves/any_path.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
const GcGeVector3d kZ = GcGeVector3d::kZAxis;

GcGePath circle(const GcGePoint3d& center, double radius) {
  GcGePath path(center);
  path.addArc(center, {radius, 0, 0}, {0, radius, 0}, 0, 2 * kPi, 0, 1);
  path.setClosed(true, true);
  return path;
}

GcGePath polygon(const std::vector<GcGePoint3d>& corners) {
  GcGePath path(corners[0]);
  for (size_t i = 0; i < corners.size(); ++i)
    path.addLine(corners[i], corners[(i + 1) % corners.size()], static_cast<double>(i), static_cast<double>(i + 1));
  path.setClosed(true, true);
  return path;
}

GcGePath rectangle(double x0, double y0, double x1, double y1) {
  return polygon({{x0, y0, 0}, {x1, y0, 0}, {x1, y1, 0}, {x0, y1, 0}});
}

// Star-shaped about a point, so that it does not cross itself.
GcGePath star(AnyPath& any) {
  const GcGePoint3d center(any.between(-5, 5), any.between(-5, 5), 0);
  const int count = 3 + any.upTo(9);
  std::vector<GcGePoint3d> corners;
  for (int i = 0; i < count; ++i) {
    const double angle = 2 * kPi * i / count, reach = any.between(1, 6);
    corners.push_back(center + GcGeVector3d(std::cos(angle), std::sin(angle), 0) * reach);
  }
  return polygon(corners);
}

// On a coarse grid, so that edges and corners often lie over each other.
GcGePath gridRectangle(AnyPath& any) {
  const double x = any.upTo(4), y = any.upTo(4);
  return rectangle(x, y, x + 1 + any.upTo(3), y + 1 + any.upTo(3));
}

GcGePath shape(AnyPath& any) {
  switch (any.upTo(2)) {
    case 0: return star(any);
    case 1: return gridRectangle(any);
    default: return circle({double(any.upTo(4)), double(any.upTo(4)), 0}, 1 + any.upTo(3));
  }
}

double areaOf(const std::vector<GcGePath>& loops) {
  double area = 0;
  for (const GcGePath& loop : loops) area += loop.vectorArea().dotProduct(kZ);
  return area;
}

std::vector<GcGePath> combine(const GcGePath& a, const GcGePath& b, GcGeCombination how) {
  return gcgeCombine({a}, {b}, kZ, how);
}

}  // namespace

TEST(Arrangement, UnionAndIntersectionTogetherAreBothAreas) {
  FOR_SEEDS(400) {
    AnyPath any(seed);
    const GcGePath a = shape(any), b = shape(any);
    const double whole = areaOf({a}) + areaOf({b});
    const double united = areaOf(combine(a, b, GcGeCombination::Union));
    const double common = areaOf(combine(a, b, GcGeCombination::Intersection));
    EXPECT_NEAR(united + common, whole, 1e-8);
    EXPECT_NEAR(areaOf(combine(a, b, GcGeCombination::Difference)), areaOf({a}) - common, 1e-8);
    EXPECT_NEAR(areaOf(combine(b, a, GcGeCombination::Union)), united, 1e-8);
  }
}

TEST(Arrangement, PointsAreInsideAsTheOperandsSay) {
  FOR_SEEDS(200) {
    AnyPath any(seed);
    const GcGePath a = shape(any), b = shape(any);
    const std::vector<GcGePath> minus = combine(a, b, GcGeCombination::Difference);
    for (int i = 0; i < 20; ++i) {
      const GcGePoint3d at(any.between(-6, 9), any.between(-6, 9), 0);
      bool inside = false;
      for (const GcGePath& loop : minus) inside = inside != gcgeEncloses(loop, kZ, at);
      EXPECT_EQ(inside, gcgeEncloses(a, kZ, at) && !gcgeEncloses(b, kZ, at));
    }
  }
}

TEST(Arrangement, NeighboursLoseTheirCommonEdge) {
  const auto united = combine(rectangle(0, 0, 10, 10), rectangle(10, 0, 20, 10), GcGeCombination::Union);
  ASSERT_EQ(united.size(), 1U);
  EXPECT_EQ(united[0].spans().size(), 4U);
  EXPECT_DOUBLE_EQ(united[0].length(), 60);
}

TEST(Arrangement, ADiscLessItselfIsNothing) {
  EXPECT_TRUE(combine(circle({0, 0, 0}, 1), circle({0, 0, 0}, 1), GcGeCombination::Difference).empty());
}

TEST(Arrangement, DiscsThatTouchKeepTwoLoops) {
  EXPECT_EQ(combine(circle({0, 0, 0}, 1), circle({2, 0, 0}, 1), GcGeCombination::Union).size(), 2U);
}

TEST(Arrangement, LinesThatCrossBoundTheAreaBetweenThem) {
  std::vector<GcGePath> lines;
  for (const double at : {0.0, 10.0}) {
    GcGePath across({-5, at, 0}), up({at, -5, 0});
    across.addLine({-5, at, 0}, {15, at, 0}, 0, 1);
    up.addLine({at, -5, 0}, {at, 15, 0}, 0, 1);
    lines.push_back(across);
    lines.push_back(up);
  }
  // A bridge to a circle within counts for neither.
  lines.push_back(circle({5, 5, 0}, 2));
  GcGePath bridge({0, 5, 0});
  bridge.addLine({0, 5, 0}, {3, 5, 0}, 0, 1);
  lines.push_back(bridge);
  const GcGeArrangement arrangement(lines, kZ);
  std::vector<double> areas;
  for (const GcGeArrangement::Loop& loop : arrangement.areas())
    areas.push_back(arrangement.pathOf(loop).vectorArea().dotProduct(kZ));
  std::sort(areas.begin(), areas.end());
  ASSERT_EQ(areas.size(), 4U);
  EXPECT_NEAR(areas[0], -100, 1e-9);
  EXPECT_NEAR(areas[1], -4 * kPi, 1e-9);
  EXPECT_NEAR(areas[2], 4 * kPi, 1e-9);
  EXPECT_NEAR(areas[3], 100, 1e-9);
}

TEST(Arrangement, TangentCirclesKeepTheirOrder) {
  // Three circles through one point with one tangent: rings between them.
  std::vector<GcGePath> circles;
  for (const double radius : {1.0, 2.0, 3.0}) circles.push_back(circle({radius, 0, 0}, radius));
  const GcGeArrangement arrangement(circles, kZ);
  std::vector<double> areas;
  for (const GcGeArrangement::Loop& loop : arrangement.areas())
    areas.push_back(arrangement.pathOf(loop).vectorArea().dotProduct(kZ));
  std::sort(areas.begin(), areas.end());
  ASSERT_EQ(areas.size(), 4U);
  EXPECT_NEAR(areas[0], -9 * kPi, 1e-8);
  EXPECT_NEAR(areas[1], kPi, 1e-8);
  EXPECT_NEAR(areas[2], 3 * kPi, 1e-8);
  EXPECT_NEAR(areas[3], 5 * kPi, 1e-8);
}
