// Curves fitted to polylines: what they must hold, for any vertices.
#include "host/db/entities/polyline_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr unsigned kSeed = 20;

std::vector<gcfit::Through> anyVertices(std::mt19937& random, int count) {
  std::uniform_real_distribution<double> at(-1000, 1000);
  std::vector<gcfit::Through> vertices;
  for (int i = 0; i < count; ++i) vertices.push_back({{at(random), at(random)}, {}});
  return vertices;
}

// The direction an arc leaves its start along, and arrives at its end along.
GcGeVector2d turned(const GcGeVector2d& v, double angle) {
  return {v.x * std::cos(angle) - v.y * std::sin(angle), v.x * std::sin(angle) + v.y * std::cos(angle)};
}
GcGeVector2d leaving(const GcGePoint2d& a, const GcGePoint2d& b, double bulge) {
  return turned((b - a) * (1 / a.distanceTo(b)), -2 * std::atan(bulge));
}
GcGeVector2d arriving(const GcGePoint2d& a, const GcGePoint2d& b, double bulge) {
  return turned((b - a) * (1 / a.distanceTo(b)), 2 * std::atan(bulge));
}

void expectSame(const GcGeVector2d& a, const GcGeVector2d& b) {
  EXPECT_NEAR(a.x, b.x, 1e-7);
  EXPECT_NEAR(a.y, b.y, 1e-7);
}

TEST(PolylineFit, ArcsLeaveAndArriveAlongTheTangentsAndJoinSmoothly) {
  std::mt19937 random(kSeed);
  for (int round = 0; round < 300; ++round) {
    const bool closed = round % 2 == 0;
    std::vector<gcfit::Through> vertices = anyVertices(random, 3 + round % 7);
    gcfit::findTangents(vertices, closed);
    const size_t count = vertices.size();
    for (size_t i = 0; i + 1 < count || (closed && i < count); ++i) {
      const gcfit::Through &from = vertices[i], &to = vertices[(i + 1) % count];
      const gcfit::Arcs arcs = gcfit::arcsBetween(from, to);
      const GcGePoint2d joint = arcs.isSingle ? to.at : arcs.joint;
      expectSame(leaving(from.at, joint, arcs.firstBulge), from.tangent);
      if (arcs.isSingle) {
        expectSame(arriving(from.at, joint, arcs.firstBulge), to.tangent);
        continue;
      }
      expectSame(arriving(from.at, joint, arcs.firstBulge), leaving(joint, to.at, arcs.secondBulge));
      expectSame(arriving(joint, to.at, arcs.secondBulge), to.tangent);
    }
  }
}

TEST(PolylineFit, PointsOfACircleGiveThatCircle) {
  std::vector<gcfit::Through> vertices;
  for (const double angle : {0.1, 0.9, 2.0, 4.0, 5.5})
    vertices.push_back({{5 * std::cos(angle), 5 * std::sin(angle)}, {}});
  gcfit::findTangents(vertices, true);
  for (size_t i = 0; i < vertices.size(); ++i) {
    const gcfit::Through &from = vertices[i], &to = vertices[(i + 1) % vertices.size()];
    const gcfit::Arcs arcs = gcfit::arcsBetween(from, to);
    EXPECT_TRUE(arcs.isSingle);
    const double chord = from.at.distanceTo(to.at);
    EXPECT_NEAR(chord * (1 + arcs.firstBulge * arcs.firstBulge) / (4 * arcs.firstBulge), 5, 1e-9);
  }
}

TEST(PolylineFit, SplinesBeginAndEndAtTheControlPointsAndStayInTheirHull) {
  std::mt19937 random(kSeed);
  for (int degree = 2; degree <= 3; ++degree)
    for (int count = 2; count < 9; ++count) {
      std::vector<GcGePoint2d> control;
      for (const gcfit::Through& v : anyVertices(random, count)) control.push_back(v.at);
      const std::vector<GcGePoint2d> open = gcfit::splinePoints(control, false, degree, 8);
      ASSERT_EQ(open.size(), static_cast<size_t>(8 * (count - 1) + 1));
      EXPECT_EQ(open.front(), control.front());
      EXPECT_EQ(open.back(), control.back());
      const std::vector<GcGePoint2d> closed = gcfit::splinePoints(control, true, degree, 8);
      ASSERT_EQ(closed.size(), static_cast<size_t>(8 * count));
      for (const GcGePoint2d& p : closed) EXPECT_LE(std::fabs(p.x), 1000);
    }
}

// The cubic closed curve comes next to a vertex at (p + 4 q + r) / 6.
TEST(PolylineFit, ClosedCubicSplinesAreTheUniformOnes) {
  const std::vector<GcGePoint2d> control = {{0, 0}, {6, 0}, {6, 6}, {0, 6}};
  const std::vector<GcGePoint2d> points = gcfit::splinePoints(control, true, 3, 2);
  EXPECT_NEAR(points[0].x, 1, 1e-12);
  EXPECT_NEAR(points[0].y, 1, 1e-12);
}

// Control points in a plane give points in it, and their shadow is the plane curve of the shadows.
TEST(PolylineFit, SplinesInSpaceKeepToThePlaneOfTheirControlPoints) {
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> at(-100, 100);
  for (const bool closed : {false, true}) {
    std::vector<GcGePoint3d> control;
    std::vector<GcGePoint2d> shadow;
    for (int i = 0; i < 9; ++i) {
      const double x = at(random), y = at(random);
      control.push_back({x, y, 2 * x - 3 * y + 5});
      shadow.push_back({x, y});
    }
    const std::vector<GcGePoint3d> points = gcfit::splinePoints(control, closed, 3, 8);
    const std::vector<GcGePoint2d> flat = gcfit::splinePoints(shadow, closed, 3, 8);
    ASSERT_EQ(points.size(), flat.size());
    ASSERT_GT(points.size(), 40u);
    for (size_t i = 0; i < points.size(); ++i) {
      EXPECT_NEAR(points[i].x, flat[i].x, 1e-9);
      EXPECT_NEAR(points[i].y, flat[i].y, 1e-9);
      EXPECT_NEAR(points[i].z, 2 * points[i].x - 3 * points[i].y + 5, 1e-9);
    }
  }
}

}  // namespace
