// Parallel curves: known shapes; for generated ones every result point lies at the distance, and every point of the
// parallel that is not too near to the source is on a result.
#include "host/ge/curves/offset.h"

#include <gtest/gtest.h>

#include <numbers>

#include "tests/ge/curves/any_path.h"

namespace {

constexpr double kPi = std::numbers::pi;
const GcGeVector3d kUp(0, 0, 1);

GcGePath chain(const std::vector<GcGePoint3d>& points, bool closed) {
  GcGePath path(points[0]);
  const int count = static_cast<int>(points.size());
  for (int i = 0; i + (closed ? 0 : 1) < count; ++i) path.addLine(points[i], points[(i + 1) % count], i, i + 1);
  path.setClosed(closed);
  return path;
}

double totalLength(const std::vector<GcGePath>& paths) {
  double sum = 0;
  for (const GcGePath& p : paths) sum += p.length();
  return sum;
}

TEST(Offset, LineGoesToTheRight) {
  const auto found = gcgeOffset(chain({{0, 0, 0}, {10, 0, 0}}, false), kUp, 2);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].pointOn(0, 0) + GcGeVector3d(0, 2, 0), GcGeVector3d());
  EXPECT_DOUBLE_EQ(found[0].length(), 10);
}

TEST(Offset, CircleGrowsShrinksAndVanishes) {
  GcGePath circle(GcGePoint3d(5e6, 1, 2));
  circle.addArc(circle.origin(), {5, 0, 0}, {0, 5, 0}, 0, 2 * kPi, 0, 2 * kPi);
  circle.setClosed(true, true);
  ASSERT_EQ(gcgeOffset(circle, kUp, 2).size(), 1u);
  EXPECT_NEAR(totalLength(gcgeOffset(circle, kUp, 2)), 14 * kPi, 1e-12);
  EXPECT_NEAR(totalLength(gcgeOffset(circle, kUp, -2)), 6 * kPi, 1e-12);
  EXPECT_TRUE(gcgeOffset(circle, kUp, -5).empty());
  EXPECT_TRUE(gcgeOffset(circle, kUp, -6).empty());
}

TEST(Offset, SquareKeepsItsCorners) {
  const GcGePath square = chain({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, true);
  const auto outside = gcgeOffset(square, kUp, 1);
  ASSERT_EQ(outside.size(), 1u);
  EXPECT_TRUE(outside[0].isClosed());
  EXPECT_EQ(outside[0].spans().size(), 4u);
  EXPECT_NEAR(outside[0].vectorArea().z, 144, 1e-10);
  const auto inside = gcgeOffset(square, kUp, -1);
  ASSERT_EQ(inside.size(), 1u);
  EXPECT_NEAR(inside[0].vectorArea().z, 64, 1e-10);
  EXPECT_EQ(inside[0].spans().size(), 4u);
  EXPECT_TRUE(gcgeOffset(square, kUp, -5.5).empty());
}

TEST(Offset, DumbbellFallsIntoTwo) {
  const GcGePath bell = chain({{0, 0, 0},
                               {10, 0, 0},
                               {10, 4, 0},
                               {20, 4, 0},
                               {20, 0, 0},
                               {30, 0, 0},
                               {30, 10, 0},
                               {20, 10, 0},
                               {20, 6, 0},
                               {10, 6, 0},
                               {10, 10, 0},
                               {0, 10, 0}},
                              true);
  const auto inside = gcgeOffset(bell, kUp, -2);
  ASSERT_EQ(inside.size(), 2u);
  for (const GcGePath& part : inside) {
    EXPECT_TRUE(part.isClosed());
    EXPECT_NEAR(part.vectorArea().z, 36, 1e-9);
  }
  EXPECT_EQ(gcgeOffset(bell, kUp, 2).size(), 1u);
}

TEST(Offset, OpenPolylineBothSides) {
  const GcGePath corner = chain({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, false);
  const auto right = gcgeOffset(corner, kUp, 1), left = gcgeOffset(corner, kUp, -1);
  ASSERT_EQ(right.size(), 1u);
  ASSERT_EQ(left.size(), 1u);
  EXPECT_NEAR(right[0].length(), 22, 1e-10);
  EXPECT_NEAR(left[0].length(), 18, 1e-10);
}

TEST(Offset, EllipseBecomesACurveAtTheDistance) {
  GcGePath ellipse((GcGePoint3d()));
  ellipse.addArc({}, {8, 0, 0}, {0, 3, 0}, 0, 2 * kPi, 0, 2 * kPi);
  ellipse.setClosed(true, true);
  for (const double d : {2.0, -0.5, -2.0}) {  // at -2 the ends of the major axis have cusps to be cut away
    const auto found = gcgeOffset(ellipse, kUp, d);
    ASSERT_EQ(found.size(), 1u) << d;
    EXPECT_TRUE(found[0].isClosed());
    for (int i = 0; i < 500; ++i) {
      GcGePoint3d p;
      ASSERT_TRUE(found[0].pointAt(found[0].startParam() + (found[0].endParam() - found[0].startParam()) * i / 500, p));
      ASSERT_NEAR(ellipse.closestTo(p).distance, std::abs(d), 1e-6 * std::abs(d));
    }
  }
  EXPECT_TRUE(gcgeOffset(ellipse, kUp, -3.5).empty());
}

// The curve in the plane z = 0 that a generated one is.
GcGePath inPlane(GcGePath path) {
  GcGeMatrix3d down;
  down.setToTranslation({0, 0, -path.origin().z});
  return path.transformed(down);
}

GcGePath planar(AnyPath& any) {
  switch (any.upTo(3)) {
    case 0: return inPlane(any.arc());
    case 1: return inPlane(any.ellipse());
    case 2: {
      GcGePath path;
      EXPECT_TRUE(gcgePathOfNurbs(any.nurbs(3, 4 + any.upTo(5), false, true), path));
      return inPlane(path);
    }
    default: return any.polyline(1 + any.upTo(9));
  }
}

// Whether the point lies over the arc about a corner that prolonged sides replace: what is within those sides is no part
// of the result, though it is far enough away.
bool isBeyondCorner(const GcGePath& source, double d, const GcGePoint3d& p) {
  const GcGeRawOffset raw = gcgeRawOffset(source, kUp, d, {1e-7 * std::abs(d), source.tolerance()});
  for (const GcGePath& path : raw.cornerArcs) {
    const GcGeSpan& arc = path.spans()[0];
    const GcGeVector3d off = p - (path.origin() + arc.center());
    double angle = std::atan2(off.dotProduct(arc.c), off.dotProduct(arc.b)) * (arc.sweep > 0 ? 1 : -1);
    if (angle < 0) angle += 2 * kPi;
    if (angle < std::abs(arc.sweep) && off.length() < 10 * std::abs(d)) return true;
  }
  return false;
}

void checkOffset(const GcGePath& source, double d, const std::vector<GcGePath>& found) {
  const double fit = 1e-6 * std::abs(d) + 1e-9 * source.size();
  for (const GcGePath& path : found)
    for (const GcGeSpan& s : path.spans())
      for (int i = 1; i < 8; ++i) {
        const GcGeVector3d p = gcgePointAt(s, path.poles(), s.u0 + (s.u1 - s.u0) * i / 8);
        ASSERT_GE(source.closestTo(path.origin() + p).distance, std::abs(d) - fit);
      }
  for (const GcGeSpan& s : source.spans())
    for (int i = 1; i < 40; ++i) {
      const double u = s.u0 + (s.u1 - s.u0) * i / 40;
      const GcGeJet jet = gcgeJetAt(s, source.poles(), u);
      const GcGePoint3d p = source.origin() + jet.point + jet.first.crossProduct(kUp) * (d / jet.first.length());
      if (source.comesNearer(p, std::abs(d) * (1 - 1e-7))) continue;
      double nearest = 1e300;
      for (const GcGePath& path : found) nearest = std::min(nearest, path.closestTo(p).distance);
      ASSERT_TRUE(nearest <= fit || isBeyondCorner(source, d, p)) << "u " << u << " off by " << nearest;
    }
}

TEST(Offset, ResultsLieAtTheDistanceAndNothingIsMissing) {
  FOR_SEEDS(400) {
    AnyPath any(seed);
    const GcGePath source = planar(any);
    const double d = any.between(0.02, 3) * (any.upTo(1) == 0 ? 1 : -1);
    checkOffset(source, d, gcgeOffset(source, kUp, d));
  }
}

TEST(Offset, SameAfterMotion) {
  FOR_SEEDS(200) {
    AnyPath any(seed);
    const GcGePath source = planar(any);
    const double d = any.between(0.02, 2);
    const GcGeMatrix3d place = any.place();
    const double scale = place.scale();
    const auto here = gcgeOffset(source, kUp, d);
    const auto there = gcgeOffset(source.transformed(place), (place * kUp).normal(), d * scale);
    EXPECT_EQ(here.size(), there.size());
    EXPECT_NEAR(totalLength(here) * scale, totalLength(there), 1e-5 * scale * (source.length() + d));
  }
}

// Arcs bulging outwards on a wavy ring; those that the distance turns over leave chords that hold the path together.
// Near the radius, where the chords are short and hardly too near, the result must hang together as well.
TEST(Offset, ArcsThatCollapse) {
  constexpr int kCorners = 60;
  const auto corner = [](int i) {
    const double angle = 2 * kPi * (i % kCorners) / kCorners, radius = 20 + std::sin(5 * angle);
    return GcGePoint3d(radius * std::cos(angle), radius * std::sin(angle), 0);
  };
  for (const double bulge : {0.05, 0.4, 1.0, 2.5}) {
    GcGePath ring((GcGePoint3d()));
    for (int i = 0; i < kCorners; ++i) ring.addBulge(corner(i), corner(i + 1), i % 2 == 0 ? 0 : bulge, kUp, i, i + 1);
    ring.setClosed(true, true);
    const double radius = ring.spans()[1].b.length();
    for (const double of : {0.5, 0.999, 0.9999999, 1.0, 1.0000001, 1.0005, 1.1, 2.0, 3.0}) {
      const auto found = gcgeOffset(ring, kUp, -radius * of);
      SCOPED_TRACE(testing::Message() << "bulge " << bulge << ", radii " << of);
      // At the radius itself the parallel arc is a point, alone at the distance.
      if (std::abs(of - 1) > 1e-6) checkOffset(ring, -radius * of, found);
      for (const GcGePath& path : found) EXPECT_TRUE(path.isClosed());
    }
  }
}

TEST(Offset, ZigzagOfTenThousandVertices) {
  AnyPath any(3);
  std::vector<GcGePoint3d> points;
  for (int i = 0; i < 10000; ++i) points.push_back({i * 0.1, any.between(-1, 1), 0});
  const GcGePath source = chain(points, false);
  const auto found = gcgeOffset(source, kUp, 0.05);
  ASSERT_FALSE(found.empty());
  checkOffset(source, 0.05, found);
}

}  // namespace
