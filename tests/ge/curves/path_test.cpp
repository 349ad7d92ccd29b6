// What holds for every curve: parameter to point and back, length, nearness, area, motion, reversal, trimming.
#include "host/ge/curves/path.h"

#include <gtest/gtest.h>

#include <boost/math/special_functions/ellint_2.hpp>
#include <numbers>

#include "host/ge/curves/measure.h"
#include "tests/ge/curves/any_path.h"

namespace {

constexpr double kPi = std::numbers::pi;

// Rounding of world coordinates: points far out cannot be told closer than this.
double coordinateRounding(const GcGePath& path) { return 4e-16 * path.origin().asVector().length(); }

GcGePath placed(AnyPath& any) {
  const GcGePath local = any.any();
  return local.transformed(any.place());
}

// Richardson-extrapolated length of a polygon with many corners: independent of the quadrature under test.
double sampledLength(const GcGePath& path, double t0, double t1) {
  const auto polygon = [&](int steps) {
    double sum = 0;
    GcGeJet last, next;
    path.jetAt(t0, last);
    for (int i = 1; i <= steps; ++i) {
      path.jetAt(t0 + (t1 - t0) * i / steps, next);
      sum += (next.point - last.point).length();
      last = next;
    }
    return sum;
  };
  const double coarse = polygon(2000), fine = polygon(4000);
  return fine + (fine - coarse) / 3;
}

TEST(Path, ParameterToPointAndBack) {
  FOR_SEEDS(400) {
    AnyPath any(seed);
    const GcGePath path = placed(any);
    const double t = any.between(path.startParam(), path.endParam());
    GcGePoint3d point;
    ASSERT_TRUE(path.pointAt(t, point));
    const GcGeOnPath place = path.closestTo(point);
    ASSERT_GE(place.span, 0);
    EXPECT_LE(place.distance, 1e-13 * path.size() + coordinateRounding(path));
    GcGePoint3d again;
    ASSERT_TRUE(path.pointAt(path.paramOf(place), again));
    EXPECT_LE(again.distanceTo(point), 1e-12 * path.size() + 4 * coordinateRounding(path));
  }
}

TEST(Path, OutsideParametersAreRefused) {
  FOR_SEEDS(100) {
    AnyPath any(seed);
    const GcGePath path = placed(any);
    const double range = path.endParam() - path.startParam();
    GcGePoint3d point(7, 8, 9);
    EXPECT_FALSE(path.pointAt(path.startParam() - 1e-6 * range, point));
    EXPECT_FALSE(path.pointAt(path.endParam() + 1e-6 * range, point));
    EXPECT_FALSE(path.pointAt(std::nan(""), point));
    EXPECT_EQ(point, GcGePoint3d(7, 8, 9));
  }
}

TEST(Path, DistanceToParameterAndBack) {
  FOR_SEEDS(400) {
    AnyPath any(seed);
    const GcGePath path = placed(any);
    const double total = path.length();
    const double dist = any.between(0, total);
    double t = 0, back = 0;
    ASSERT_TRUE(path.paramAtDist(dist, t));
    ASSERT_TRUE(path.distAt(t, back));
    EXPECT_NEAR(back, dist, 1e-12 * total);
    ASSERT_TRUE(path.distAt(path.endParam(), back));
    EXPECT_NEAR(back, total, 1e-12 * total);
    EXPECT_FALSE(path.paramAtDist(total * 1.001, t));
    EXPECT_FALSE(path.paramAtDist(-0.001 * total, t));
  }
}

TEST(Path, LengthAgreesWithPolygons) {
  FOR_SEEDS(60) {
    AnyPath any(seed);
    const GcGePath path = placed(any);
    for (const GcGeSpan& s : path.spans()) {
      const double sampled = sampledLength(path, s.t0(), s.t1() - 1e-14 * std::abs(s.tPerU));
      double d0 = 0, d1 = 0;
      ASSERT_TRUE(path.distAt(s.t0(), d0));
      ASSERT_TRUE(path.distAt(s.t1(), d1));
      EXPECT_NEAR(d1 - d0, sampled, 1e-8 * path.length());
    }
  }
}

TEST(Path, EllipseLengthIsTheEllipticIntegral) {
  FOR_SEEDS(100) {
    AnyPath any(seed);
    const double major = any.between(0.1, 1e4), ratio = any.between(1e-3, 1);
    const double from = any.between(0, 3), to = from + any.between(0.01, 3);
    GcGePath path(GcGePoint3d(5e6, 5e6, 0));
    path.addArc(path.origin(), {major, 0, 0}, {0, major * ratio, 0}, from, to - from, from, to);
    // With the angle from the minor axis the speed is major sqrt(1 - k^2 sin^2).
    const double k = std::sqrt(1 - ratio * ratio);
    const double expected = major * (boost::math::ellint_2(k, to - kPi / 2) - boost::math::ellint_2(k, from - kPi / 2));
    EXPECT_NEAR(path.length(), expected, 1e-12 * major);
    EXPECT_NEAR(path.measure().total(), expected, 1e-12 * major);
  }
}

// Where the terms of the derivative cancel there is no more than rounding to go by: the search for more must end.
TEST(Path, FlatEllipsesAreMeasuredInTime) {
  for (double ratio = 1; ratio > 1e-20; ratio /= 7)
    for (const double from : {0.0, 0.7, 1.5}) {
      GcGePath path((GcGePoint3d()));
      const GcGeVector3d x(1.5, 2, 0), y(-2 * ratio, 1.5 * ratio, 0);
      path.addArc({}, x, y, from, 2 * kPi, 0, 1);
      const double expected = 4 * 2.5 * boost::math::ellint_2(std::sqrt((1 - ratio) * (1 + ratio)));
      EXPECT_NEAR(path.length(), expected, 1e-11 * expected) << ratio;
      EXPECT_NEAR(path.measure().total(), expected, 1e-12 * expected) << ratio;
      EXPECT_LT(path.measure().pieces.size(), 2000u) << ratio;
    }
}

TEST(Path, DerivativesAreLimitsOfDifferences) {
  FOR_SEEDS(200) {
    AnyPath any(seed);
    const GcGePath path = any.any();
    const GcGeSpan& s = path.spans()[any.upTo(static_cast<int>(path.spans().size()) - 1)];
    const double h = 1e-5 * s.tPerU, t = any.between(s.t0() + 2 * h, s.t1() - 2 * h);
    GcGeJet before, at, after;
    ASSERT_TRUE(path.jetAt(t - h, before) && path.jetAt(t, at) && path.jetAt(t + h, after));
    const double scale = at.first.length() + at.second.length() * s.tPerU + path.size() / s.tPerU;
    EXPECT_LE(((after.point - before.point) / (2 * h) - at.first).length(), 1e-7 * scale);
    EXPECT_LE(((after.first - before.first) / (2 * h) - at.second).length(), 1e-7 * scale / s.tPerU);
  }
}

TEST(Path, NothingIsNearerThanTheClosestPoint) {
  FOR_SEEDS(400) {
    AnyPath any(seed);
    const GcGePath local = any.any();
    const GcGeMatrix3d place = any.place();
    const GcGePath path = local.transformed(place);
    const GcGePoint3d from = place * any.point(15);
    const GcGeOnPath best = path.closestTo(from);
    ASSERT_GE(best.span, 0);
    const double reach = (from - path.origin()).length() + path.size();
    EXPECT_NEAR(best.distance, (path.origin() + best.point).distanceTo(from),
                4 * coordinateRounding(path) + 1e-14 * reach);
    for (int i = 0; i <= 1000; ++i) {
      GcGePoint3d other;
      ASSERT_TRUE(path.pointAt(path.startParam() + (path.endParam() - path.startParam()) * i / 1000, other));
      ASSERT_GE(other.distanceTo(from), best.distance - 1e-12 * reach - 4 * coordinateRounding(path)) << i;
    }
  }
}

TEST(Path, ReversedRunsBackwards) {
  FOR_SEEDS(200) {
    AnyPath any(seed);
    const GcGePath path = placed(any), back = path.reversed();
    EXPECT_NEAR(back.length(), path.length(), 1e-12 * path.length());
    EXPECT_DOUBLE_EQ(back.startParam(), path.startParam());
    const double t = any.between(path.startParam(), path.endParam());
    GcGePoint3d a, b;
    ASSERT_TRUE(path.pointAt(t, a));
    ASSERT_TRUE(back.pointAt(path.startParam() + path.endParam() - t, b));
    EXPECT_LE(a.distanceTo(b), 1e-12 * path.size() + 4 * coordinateRounding(path));
  }
}

TEST(Path, TrimmingKeepsLengthAndPoints) {
  FOR_SEEDS(300) {
    AnyPath any(seed);
    const GcGePath path = placed(any);
    double t = any.between(path.startParam(), path.endParam());
    const GcGePath head = path.trimmed(path.startParam(), t), rest = path.trimmed(t, path.endParam());
    EXPECT_NEAR(head.length() + rest.length(), path.length(), 1e-12 * path.length());
    if (!path.isClosed()) continue;
    const double other = path.startParam() + 0.5 * (t - path.startParam());
    const GcGePath inner = path.trimmed(other, t), outer = path.trimmed(t, other);
    EXPECT_NEAR(inner.length() + outer.length(), path.length(), 1e-12 * path.length());
  }
}

TEST(Path, AreasOfKnownShapes) {
  const GcGePoint3d far(5e6, -5e6, 5e6);
  GcGePath square(far);
  const GcGeVector3d x(2, 0, 0), y(0, 3, 0);
  square.addLine(far, far + x, 0, 1);
  square.addLine(far + x, far + x + y, 1, 2);
  square.addLine(far + x + y, far + y, 2, 3);
  square.addLine(far + y, far, 3, 4);
  EXPECT_DOUBLE_EQ(square.vectorArea().z, 6);

  GcGePath ellipse(far);
  ellipse.addArc(far, {0, 0, 4}, {0, 1.5, 0}, 0.3, 2 * kPi, 0, 2 * kPi);
  EXPECT_NEAR(ellipse.vectorArea().x, -6 * kPi, 1e-13 * 6 * kPi);

  GcGePath lens(far);  // two half circles by bulge 1: a circle of radius 1
  lens.addBulge(far, far + x, 1, GcGeVector3d::kZAxis, 0, 1);
  lens.addBulge(far + x, far, 1, GcGeVector3d::kZAxis, 1, 2);
  EXPECT_NEAR(lens.vectorArea().z, kPi, 1e-14 * kPi);
}

TEST(Path, FlatArcsKeepTheirDigits) {
  GcGePath flat(GcGePoint3d(5e6, 5e6, 0));
  const GcGePoint3d end = flat.origin() + GcGeVector3d(100, 0, 0);
  const double bulge = 1e-9;
  flat.addBulge(flat.origin(), end, bulge, GcGeVector3d::kZAxis, 0, 1);
  GcGeJet middle;
  ASSERT_TRUE(flat.jetAt(0.5, middle));
  EXPECT_NEAR(middle.point.x, 50, 1e-12);
  EXPECT_NEAR(middle.point.y, -bulge * 50, 1e-20);                 // the sagitta is bulge times half the chord
  EXPECT_NEAR(flat.vectorArea().z, bulge * 100 * 100 / 3, 1e-18);  // a parabola's 2/3 of chord times sagitta
  EXPECT_NEAR(flat.length(), 100, 1e-12);
}

TEST(Path, AreaIsThatOfThePolygonWithinItsError) {
  FOR_SEEDS(100) {
    AnyPath any(seed);
    const GcGePath local = any.any();
    GcGeVector3d normal;
    if (!local.isPlanar(normal)) continue;
    const GcGeMatrix3d place = any.place();
    const GcGePath path = local.transformed(place);
    GcGeVector3d sum;
    GcGeJet first, last, next;
    ASSERT_TRUE(path.jetAt(path.startParam(), first));
    last = first;
    constexpr int kSteps = 20000;
    for (int i = 1; i <= kSteps; ++i) {
      ASSERT_TRUE(path.jetAt(path.startParam() + (path.endParam() - path.startParam()) * i / kSteps, next));
      sum += (last.point - first.point).crossProduct(next.point - last.point) * 0.5;
      last = next;
    }
    EXPECT_LE((path.vectorArea() - sum).length(), 1e-5 * path.size() * path.size());
  }
}

TEST(Path, PlanesAreFoundInAnyPosition) {
  FOR_SEEDS(200) {
    AnyPath any(seed);
    const GcGeMatrix3d place = any.place();
    GcGeVector3d normal;
    const GcGePath flat = any.polyline(5).transformed(place);
    ASSERT_TRUE(flat.isPlanar(normal));
    EXPECT_LE(normal.crossProduct((place * GcGeVector3d::kZAxis).normal()).length(), 1e-9);
    EXPECT_FALSE(any.polyline3d(6).transformed(place).isPlanar(normal));
    EXPECT_TRUE(any.line().transformed(place).isPlanar(normal));
    EXPECT_EQ(normal, GcGeVector3d());
  }
}

TEST(Path, ExtendedArcsAndLines) {
  GcGePath line((GcGePoint3d()));
  line.addLine({}, {2, 0, 0}, 0, 2);
  EXPECT_LE((line.extended().closestTo({-7, 3, 0}).point - GcGeVector3d(-7, 0, 0)).length(), 1e-15);
  GcGePath arc((GcGePoint3d()));
  arc.addArc({}, {2, 0, 0}, {0, 2, 0}, 0, kPi / 2, 0, kPi / 2);
  EXPECT_LE((arc.extended().closestTo({-7, 0, 0}).point - GcGeVector3d(-2, 0, 0)).length(), 1e-15);
  EXPECT_LE((arc.closestTo({-7, 0, 0}).point - GcGeVector3d(0, 2, 0)).length(), 1e-15);
}

// A foot in the very middle of a leaf, where halving puts an end next to the root.
TEST(Path, PointsInTheMiddleOfTheCurveAreFound) {
  FOR_SEEDS(2000) {
    AnyPath any(seed);
    GcGePath path = any.ellipse();
    if (any.upTo(2) == 0) path = any.spline();
    for (const GcGeSpan& s : path.spans()) {
      const double parts[] = {0.5, 0.25, 0.75, 0.125, 0.375};
      const double t = s.t0() + (s.t1() - s.t0()) * (parts[any.upTo(4)] + any.upTo(2) * 1e-16);
      GcGePoint3d on;
      ASSERT_TRUE(path.pointAt(t, on));
      EXPECT_LE(path.closestTo(on).distance, 1e-13 * path.size());
    }
  }
}

TEST(Path, ClosestAlongADirectionIsClosestInTheView) {
  FOR_SEEDS(200) {
    AnyPath any(seed);
    const GcGePath path = any.any();
    const GcGeVector3d way = any.unit();
    const GcGePoint3d from = any.point(15);
    const auto flat = [&](const GcGeVector3d& v) { return v - way * way.dotProduct(v); };
    const GcGeVector3d off = flat(from - path.origin());
    const GcGeOnPath best = path.flattened(way).closestTo(path.origin() + off);
    const double distance = (flat(path.pointOn(best.span, best.u)) - off).length();
    EXPECT_NEAR(distance, best.distance, 1e-12);
    for (int i = 0; i <= 500; ++i) {
      GcGeJet other;
      ASSERT_TRUE(path.jetAt(path.startParam() + (path.endParam() - path.startParam()) * i / 500, other));
      ASSERT_GE((flat(other.point) - off).length(), distance - 1e-12);
    }
  }
}

}  // namespace
