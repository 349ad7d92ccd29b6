// Meetings of paths: known cases, and for generated pairs a slow search that must not find more.
#include "host/ge/curves/meet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>

#include "tests/ge/curves/any_path.h"

namespace {

constexpr double kPi = std::numbers::pi;

GcGePath lineOf(const GcGePoint3d& a, const GcGePoint3d& b) {
  GcGePath path(a);
  path.addLine(a, b, 0, a.distanceTo(b));
  return path;
}

GcGePath arcOf(const GcGePoint3d& center, double radius, double from, double sweep) {
  GcGePath path(center);
  path.addArc(center, {radius, 0, 0}, {0, radius, 0}, from, sweep, from, from + sweep);
  const bool whole = std::abs(sweep) >= 2 * kPi;
  path.setClosed(whole, whole);
  return path;
}

GcGePath circleOf(const GcGePoint3d& center, double radius) { return arcOf(center, radius, 0, 2 * kPi); }

GcGePath ellipseOf(const GcGePoint3d& center, double rx, double ry) {
  GcGePath path(center);
  path.addArc(center, {rx, 0, 0}, {0, ry, 0}, 0, 2 * kPi, 0, 2 * kPi);
  path.setClosed(true, true);
  return path;
}

GcGeMeetings meet(const GcGePath& a, const GcGePath& b) { return gcgeMeet(a, b, gcgeMeetTolerance(a, b)); }

TEST(Meet, LinesCrossTouchAndMiss) {
  const GcGePath a = lineOf({0, 0, 0}, {10, 0, 0});
  const auto crossing = meet(a, lineOf({3, -1, 0}, {3, 1, 0}));
  ASSERT_EQ(crossing.points.size(), 1u);
  EXPECT_DOUBLE_EQ(crossing.points[0].ta, 3);
  EXPECT_DOUBLE_EQ(crossing.points[0].tb, 1);
  EXPECT_EQ(meet(a, lineOf({3, -1, 1}, {3, 1, 1})).points.size(), 0u);   // skew
  EXPECT_EQ(meet(a, lineOf({0, 1, 0}, {10, 1, 0})).points.size(), 0u);   // parallel
  EXPECT_EQ(meet(a, lineOf({10, 0, 0}, {12, 5, 0})).points.size(), 1u);  // common end
  EXPECT_EQ(meet(a, lineOf({4, 0, 0}, {4, 5, 0})).points.size(), 1u);    // T
  EXPECT_EQ(meet(a, lineOf({10.001, 0, 0}, {12, 5, 0})).points.size(), 0u);
}

TEST(Meet, LinesOnEachOtherShareAStretch) {
  const GcGePath a = lineOf({0, 0, 0}, {10, 0, 0});
  const auto shared = meet(a, lineOf({12, 0, 0}, {4, 0, 0}));
  ASSERT_EQ(shared.stretches.size(), 1u);
  EXPECT_EQ(shared.points.size(), 0u);
  EXPECT_DOUBLE_EQ(shared.stretches[0].ta0, 4);
  EXPECT_DOUBLE_EQ(shared.stretches[0].ta1, 10);
  const auto chained = meet(a, lineOf({10, 0, 0}, {14, 0, 0}));
  EXPECT_EQ(chained.stretches.size(), 0u);
  EXPECT_EQ(chained.points.size(), 1u);
}

TEST(Meet, LineAndCircle) {
  const GcGePath circle = circleOf({0, 0, 0}, 5);
  EXPECT_EQ(meet(circle, lineOf({-9, 3, 0}, {9, 3, 0})).points.size(), 2u);
  EXPECT_EQ(meet(circle, lineOf({-9, 5, 0}, {9, 5, 0})).points.size(), 1u);  // tangent
  EXPECT_EQ(meet(circle, lineOf({-9, 5.0001, 0}, {9, 5.0001, 0})).points.size(), 0u);
  EXPECT_EQ(meet(circle, lineOf({-9, 4.9999, 0}, {9, 4.9999, 0})).points.size(), 2u);
  EXPECT_EQ(meet(circle, lineOf({0, 0, 0}, {9, 0, 0})).points.size(), 1u);   // through the seam
  EXPECT_EQ(meet(circle, lineOf({3, 4, -2}, {3, 4, 2})).points.size(), 1u);  // across the plane
  EXPECT_EQ(meet(circle, lineOf({3, 3, -2}, {3, 3, 2})).points.size(), 0u);
}

TEST(Meet, CirclesCrossTouchAndCoincide) {
  const GcGePath circle = circleOf({0, 0, 0}, 5);
  EXPECT_EQ(meet(circle, circleOf({6, 0, 0}, 5)).points.size(), 2u);
  EXPECT_EQ(meet(circle, circleOf({8, 0, 0}, 3)).points.size(), 1u);
  EXPECT_EQ(meet(circle, circleOf({2, 0, 0}, 3)).points.size(), 1u);  // from inside
  EXPECT_EQ(meet(circle, circleOf({2, 0, 0}, 2)).points.size(), 0u);
  EXPECT_EQ(meet(circle, circleOf({0, 0, 1}, 5)).points.size(), 0u);
  const auto shared = meet(arcOf({0, 0, 0}, 5, 0, 2), arcOf({0, 0, 0}, 5, 1, 3));
  ASSERT_EQ(shared.stretches.size(), 1u);
  EXPECT_EQ(shared.points.size(), 0u);
  EXPECT_NEAR(shared.stretches[0].ta0, 1, 1e-12);
  EXPECT_NEAR(shared.stretches[0].ta1, 2, 1e-12);
}

TEST(Meet, CirclesInDifferentPlanes) {
  GcGePath upright((GcGePoint3d()));
  upright.addArc({}, {0, 5, 0}, {0, 0, 5}, 0, 2 * kPi, 0, 2 * kPi);
  upright.setClosed(true, true);
  EXPECT_EQ(meet(circleOf({0, 0, 0}, 5), upright).points.size(), 2u);
}

TEST(Meet, EllipsesMeetFourTimes) {
  const auto found = meet(ellipseOf({0, 0, 0}, 5, 3), ellipseOf({0, 0, 0}, 3, 5));
  ASSERT_EQ(found.points.size(), 4u);
  const double at = std::sqrt(1 / (1 / 25.0 + 1 / 9.0));
  for (const GcGeMeeting& p : found.points) {
    EXPECT_NEAR(std::abs(p.point.x), at, 1e-14);
    EXPECT_NEAR(std::abs(p.point.y), at, 1e-14);
  }
  const auto touching = meet(ellipseOf({0, 0, 0}, 5, 3), circleOf({0, 0, 0}, 3));
  EXPECT_EQ(touching.points.size(), 2u);  // tangent at both ends of the minor axis
  EXPECT_EQ(meet(ellipseOf({0, 0, 0}, 5, 3), circleOf({0, 4, 0}, 1)).points.size(), 1u);
}

TEST(Meet, CoincidentSplinesShareTheirCommonPart) {
  AnyPath any(7);
  const GcGeNurbs whole = any.nurbs(3, 9, false, true);
  const double t0 = whole.startParam(), t1 = whole.endParam();
  GcGePath a, b;
  ASSERT_TRUE(gcgePathOfNurbs(whole, a));
  ASSERT_TRUE(gcgePathOfNurbs(gcgeTrimNurbs(whole, t0 + 0.3 * (t1 - t0), t0 + 0.8 * (t1 - t0)), b));
  const auto found = meet(a, b);
  ASSERT_EQ(found.stretches.size(), 1u);
  EXPECT_NEAR(found.stretches[0].ta0, t0 + 0.3 * (t1 - t0), 1e-8);
  EXPECT_NEAR(found.stretches[0].ta1, t0 + 0.8 * (t1 - t0), 1e-8);
}

// All crossings of two planar paths by brute force: polygons of many corners, refined by nothing.
int polygonCrossings(const GcGePath& a, const GcGePath& b) {
  constexpr int kSteps = 3000;
  const auto corners = [](const GcGePath& path) {
    std::vector<GcGeVector3d> all;
    for (int i = 0; i <= kSteps; ++i) {
      GcGePoint3d p;
      path.pointAt(path.startParam() + (path.endParam() - path.startParam()) * i / kSteps, p);
      all.push_back(p.asVector());
    }
    return all;
  };
  const auto pa = corners(a), pb = corners(b);
  int count = 0;
  for (int i = 0; i < kSteps; ++i) {
    const GcGeVector3d d = pa[i + 1] - pa[i];
    const double lowX = std::min(pa[i].x, pa[i + 1].x), highX = std::max(pa[i].x, pa[i + 1].x);
    for (int j = 0; j < kSteps; ++j) {
      if (std::max(pb[j].x, pb[j + 1].x) < lowX || std::min(pb[j].x, pb[j + 1].x) > highX) continue;
      const GcGeVector3d e = pb[j + 1] - pb[j], r = pb[j] - pa[i];
      const double n = d.crossProduct(e).z;
      const double u = r.crossProduct(e).z / n, v = r.crossProduct(d).z / n;
      if (u >= 0 && u < 1 && v >= 0 && v < 1) ++count;
    }
  }
  return count;
}

GcGePath planarPath(AnyPath& any) {
  switch (any.upTo(4)) {
    case 0: return any.polyline(1 + any.upTo(4));
    case 1:
    case 2: {
      const int degree = 2 + any.upTo(3);
      GcGePath path;
      EXPECT_TRUE(gcgePathOfNurbs(any.nurbs(degree, degree + 3 + any.upTo(6), any.upTo(1) == 0, true), path));
      return path;
    }
    case 3: {
      GcGePath e = any.ellipse();
      GcGeMatrix3d flat;
      flat.setToTranslation({0, 0, -e.origin().z});
      return e.transformed(flat);
    }
    default: {
      GcGePath c = any.arc();
      GcGeMatrix3d flat;
      flat.setToTranslation({0, 0, -c.origin().z});
      return c.transformed(flat);
    }
  }
}

TEST(Meet, AsManyAsPolygonsInThePlane) {
  FOR_SEEDS(120) {
    AnyPath any(seed);
    const GcGePath a = planarPath(any), b = planarPath(any);
    const auto found = meet(a, b);
    EXPECT_EQ(static_cast<int>(found.points.size()), polygonCrossings(a, b));
    EXPECT_EQ(found.stretches.size(), 0u);
  }
}

TEST(Meet, PointsLieOnBothInAnyPosition) {
  FOR_SEEDS(300) {
    AnyPath any(seed);
    const GcGePath localA = planarPath(any), localB = planarPath(any);
    const GcGeMatrix3d place = any.place();
    const GcGePath a = localA.transformed(place), b = localB.transformed(place);
    const auto found = meet(a, b);
    const double rounding = 4e-16 * (a.origin().asVector().length() + b.origin().asVector().length());
    for (const GcGeMeeting& p : found.points) {
      GcGePoint3d onA, onB;
      ASSERT_TRUE(a.pointAt(p.ta, onA));
      ASSERT_TRUE(b.pointAt(p.tb, onB));
      EXPECT_LE(onA.distanceTo(onB), 1e-11 * (a.size() + b.size()) + 4 * rounding);
    }
    // As many as before the move, and as many the other way round.
    EXPECT_EQ(found.points.size(), meet(localA, localB).points.size());
    EXPECT_EQ(found.points.size(), meet(b, a).points.size());
  }
}

// Curves in space through common points, which therefore meet there at least.
TEST(Meet, CurvesInSpaceThroughCommonPoints) {
  FOR_SEEDS(200) {
    AnyPath any(seed);
    const GcGePath a = any.spline().transformed(any.place());
    const double t = any.between(a.startParam(), a.endParam());
    GcGePoint3d through;
    ASSERT_TRUE(a.pointAt(t, through));
    const GcGePath b = lineOf(through + any.unit() * a.size(), through - any.unit() * 0.0 + any.unit() * 0.0);
    const auto found = meet(a, b);
    bool there = false;
    for (const GcGeMeeting& p : found.points)
      there = there || (a.origin() + p.point).distanceTo(through) <= 64 * gcgeMeetTolerance(a, b);
    EXPECT_TRUE(there);
  }
}

TEST(Meet, SelfCrossings) {
  GcGePath eight((GcGePoint3d()));
  eight.addLine({0, 0, 0}, {4, 4, 0}, 0, 1);
  eight.addLine({4, 4, 0}, {4, 0, 0}, 1, 2);
  eight.addLine({4, 0, 0}, {0, 4, 0}, 2, 3);
  eight.addLine({0, 4, 0}, {0, 0, 0}, 3, 4);
  eight.setClosed(true);
  const auto found = gcgeMeetSelf(eight, 1e-10);
  ASSERT_EQ(found.points.size(), 1u);
  EXPECT_NEAR(found.points[0].ta, 0.5, 1e-15);
  EXPECT_NEAR(found.points[0].tb, 2.5, 1e-15);

  GcGeNurbs loop;  // a cubic with a loop
  loop.points = {{0, 0, 0}, {10, 8, 0}, {-6, 8, 0}, {4, 0, 0}};
  loop.knots = {0, 0, 0, 0, 1, 1, 1, 1};
  GcGePath path;
  ASSERT_TRUE(gcgePathOfNurbs(loop, path));
  const auto crossed = gcgeMeetSelf(path, 1e-10);
  ASSERT_EQ(crossed.points.size(), 1u);
  EXPECT_NEAR(crossed.points[0].ta + crossed.points[0].tb, 1, 1e-12);
  EXPECT_EQ(gcgeMeetSelf(ellipseOf({0, 0, 0}, 5, 3), 1e-10).points.size(), 0u);
  EXPECT_EQ(gcgeMeetSelf(circleOf({0, 0, 0}, 5), 1e-10).points.size(), 0u);
}

TEST(Meet, UnboundedLines) {
  GcGePath x((GcGePoint3d()));
  x.addUnbounded({0, 2, 0}, {1, 0, 0}, -std::numeric_limits<double>::infinity(),
                 std::numeric_limits<double>::infinity());
  GcGePath ray((GcGePoint3d()));
  ray.addUnbounded({7, 0, 0}, {0, 1, 0}, 0, std::numeric_limits<double>::infinity());
  EXPECT_EQ(meet(x, ray).points.size(), 1u);
  EXPECT_EQ(meet(x, circleOf({1e6, 0, 0}, 5)).points.size(), 2u);
  EXPECT_EQ(meet(x, ellipseOf({0, 0, 0}, 5, 3)).points.size(), 2u);
  EXPECT_EQ(meet(lineOf({0, 0, 0}, {1, 1, 0}).extended(), lineOf({9, 0, 0}, {8, 1, 0}).extended()).points.size(), 1u);
}

}  // namespace
