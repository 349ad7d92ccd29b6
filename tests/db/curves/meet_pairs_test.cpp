// Meetings of generated pairs of every kind of curve, at drawing scales from 1e-3 to 1e7, in tilted planes, also 5e6 out.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "tests/db/curves/any_curve.h"

namespace {

using Any = AnyCurve;
using Curve = AnyCurvePtr;

GcArray<GcGePoint3d> meet(const GcDbCurve& a, const GcDbCurve& b) {
  GcArray<GcGePoint3d> points;
  EXPECT_EQ(a.intersectWith(&b, GcDb::kOnBothOperands, points), Gcad::eOk);
  return points;
}

// How far a point may lie off a curve: the size of the pair and the rounding of its place.
double nearFor(const GcGeMatrix3d& place, double size) {
  return 1e-9 * size * place.scale() + 1e-14 * place.translation().length();
}

double leastGap(const GcArray<GcGePoint3d>& points) {
  double least = 1e300;
  for (int i = 0; i < points.length(); ++i)
    for (int j = 0; j < i; ++j) least = std::min(least, points[i].distanceTo(points[j]));
  return least;
}

void expectOn(const GcDbCurve& curve, const GcGePoint3d& p, double near) {
  GcGePoint3d nearest;
  ASSERT_EQ(curve.getClosestPointTo(p, nearest), Gcad::eOk);
  EXPECT_LE(nearest.distanceTo(p), near);
}

TEST(CurvePairs, MeetingsLieOnBothInOrderAndOnce) {
  int found = 0;
  GcDbDatabase database;
  for (uint32_t seed = 1; seed <= 170; ++seed)
    for (int first = 0; first < Any::kKinds; ++first)
      for (int second = 0; second < Any::kKinds; ++second) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed << " kinds " << first << ' ' << second);
        Any any(seed * 100 + static_cast<uint32_t>(first * Any::kKinds + second), database);
        const Curve a = any.curve(first), b = any.curve(second);
        const GcArray<GcGePoint3d> flat = meet(*a, *b);
        const GcGeMatrix3d place = any.place();
        ASSERT_EQ(a->transformBy(place), Gcad::eOk);
        ASSERT_EQ(b->transformBy(place), Gcad::eOk);
        const GcArray<GcGePoint3d> points = meet(*a, *b);
        // As many wherever the pair lies and whoever is asked, unless some lie so close that rounding makes them one.
        if (leastGap(flat) * place.scale() > 1000 * nearFor(place, 20)) {
          EXPECT_EQ(points.length(), flat.length());
          EXPECT_EQ(meet(*b, *a).length(), points.length());
        }
        double last = -1e300;
        for (int i = 0; i < points.length(); ++i) {
          // Lines without end may meet far from where they are given.
          const double far = (points[i].asVector() - place.translation()).length();
          const double near = nearFor(place, 20) + 1e-14 * far;
          expectOn(*a, points[i], near);
          expectOn(*b, points[i], near);
          for (int j = 0; j < i; ++j) EXPECT_GT(points[i].distanceTo(points[j]), 0);
          // Where a curve crosses itself its parameter is ambiguous: simple curves tell the order.
          double t = 0;
          const bool simple =
              first <= Any::Ellipse || first == Any::Ray || first == Any::Xline || first == Any::EllipseArc;
          GcGePoint3d on;
          if (!simple || a->getClosestPointTo(points[i], on) != Gcad::eOk || a->getParamAtPoint(on, t) != Gcad::eOk)
            continue;
          EXPECT_GE(t, last - near);
          last = t;
        }
        found += points.length();
      }
  EXPECT_GT(found, 10000);  // the pairs do meet
}

// Lines through common points: what a curve passes, another one passing there meets.
TEST(CurvePairs, NothingIsMissedWhereACurveIsCutByChords) {
  GcDbDatabase database;
  for (uint32_t seed = 1; seed <= 600; ++seed)
    for (const int kind : {Any::Circle, Any::Arc, Any::Ellipse, Any::EllipseArc, Any::Spline, Any::LwPolyline,
                           Any::Polyline2d, Any::Polyline3d}) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      Any any(9000 + seed * 10 + static_cast<uint32_t>(kind), database);
      const Curve curve = any.curve(kind);
      const GcGeMatrix3d place = any.place();
      ASSERT_EQ(curve->transformBy(place), Gcad::eOk);
      double from = 0, to = 0;
      ASSERT_EQ(curve->getStartParam(from), Gcad::eOk);
      ASSERT_EQ(curve->getEndParam(to), Gcad::eOk);
      GcGePoint3d p, q;
      const double s = any.between(0.05, 0.45), t = any.between(0.55, 0.95);
      // A chord of one segment of a polyline may lie on it.
      const bool inSegments = kind == Any::LwPolyline || kind == Any::Polyline2d || kind == Any::Polyline3d;
      if (inSegments && std::floor(from + (to - from) * s) == std::floor(from + (to - from) * t)) continue;
      ASSERT_EQ(curve->getPointAtParam(from + (to - from) * s, p), Gcad::eOk);
      ASSERT_EQ(curve->getPointAtParam(from + (to - from) * t, q), Gcad::eOk);
      const GcGeVector3d over = (q - p) * 0.1;
      const GcDbLine chord(p + over * -1.0, q + over);
      const GcArray<GcGePoint3d> points = meet(*curve, chord);
      const double near = nearFor(place, 20);
      for (const GcGePoint3d& passed : {p, q}) {
        double nearest = 1e300;
        for (const GcGePoint3d& m : points) nearest = std::min(nearest, m.distanceTo(passed));
        EXPECT_LE(nearest, 1000 * near);  // at a flat angle the place is unsure
      }
    }
}

GcArray<GcGePoint3d> meet(const GcDbCurve& a, const GcDbCurve& b, GcDb::Intersect mode) {
  GcArray<GcGePoint3d> points;
  EXPECT_EQ(a.intersectWith(&b, mode, points), Gcad::eOk);
  return points;
}

// The whole curve of which a line or an arc is a part: what extending one gives.
Curve wholeOf(const GcDbCurve& part) {
  if (const GcDbLine* line = GcDbLine::cast(&part)) {
    auto whole = std::make_unique<GcDbXline>();
    ignore(whole->setBasePoint(line->startPoint()));
    ignore(whole->setUnitDir(line->endPoint() - line->startPoint()));
    return Curve(whole.release());
  }
  if (const GcDbRay* ray = GcDbRay::cast(&part)) {
    auto whole = std::make_unique<GcDbXline>();
    ignore(whole->setBasePoint(ray->basePoint()));
    ignore(whole->setUnitDir(ray->unitDir()));
    return Curve(whole.release());
  }
  if (const GcDbArc* arc = GcDbArc::cast(&part))
    return Curve(new GcDbCircle(arc->center(), arc->normal(), arc->radius()));
  const GcDbEllipse* ellipse = GcDbEllipse::cast(&part);
  return Curve(new GcDbEllipse(ellipse->center(), ellipse->normal(), ellipse->majorAxis(), ellipse->radiusRatio()));
}

bool holds(const GcArray<GcGePoint3d>& points, const GcGePoint3d& wanted, double near) {
  for (const GcGePoint3d& p : points)
    if (p.distanceTo(wanted) <= near + 1e-13 * p.asVector().length()) return true;
  return false;
}

// In each mode the meetings are those of the whole curves, and the other way round the same.
TEST(CurvePairs, ExtendedCurvesMeetAsTheWholeOnesDo) {
  GcDbDatabase database;
  int found = 0;
  for (uint32_t seed = 1; seed <= 300; ++seed)
    for (const int kind : {Any::Line, Any::Ray, Any::Arc, Any::EllipseArc})
      for (int second = 0; second < Any::kKinds; ++second) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed << " kinds " << kind << ' ' << second);
        Any any(70000 + seed * 64 + static_cast<uint32_t>(kind * Any::kKinds + second), database);
        const Curve a = any.curve(kind), b = any.curve(second);
        const GcGeMatrix3d place = any.place();
        ASSERT_EQ(a->transformBy(place), Gcad::eOk);
        ASSERT_EQ(b->transformBy(place), Gcad::eOk);
        const Curve whole = wholeOf(*a);
        const double near = 1000 * nearFor(place, 20);
        for (const bool both : {false, true}) {
          const auto extended = meet(*a, *b, both ? GcDb::kExtendBoth : GcDb::kExtendThis);
          const auto expected = meet(*whole, *b, both ? GcDb::kExtendArg : GcDb::kOnBothOperands);
          const auto turned = meet(*b, *a, both ? GcDb::kExtendBoth : GcDb::kExtendArg);
          for (const GcGePoint3d& p : expected) {
            // Where they graze each other the place is unsure by the root of the rounding.
            EXPECT_TRUE(holds(extended, p, near) || leastGap(expected) < 1e-3 * place.scale()) << p.x;
            EXPECT_TRUE(holds(turned, p, near) || leastGap(expected) < 1e-3 * place.scale()) << p.x;
          }
          if (leastGap(expected) * 1 > 1e-3 * place.scale()) {
            EXPECT_EQ(extended.length(), expected.length());
            EXPECT_EQ(turned.length(), expected.length());
          }
          found += expected.length();
        }
      }
  EXPECT_GT(found, 10000);
}

// Touching, overlapping and chained curves, and pairs that pass each other in space: as many meetings in any place.
TEST(CurvePairs, SpecialPositionsInAnyPlace) {
  using Make = std::function<Curve()>;
  struct Case {
    const char* name;
    Make a, b;
    int meetings;
  };
  const GcGeVector3d up(0, 0, 1);
  std::vector<Case> cases;
  const auto add = [&](const char* name, Make a, Make b, int meetings) { cases.push_back({name, a, b, meetings}); };
  const auto line = [&](double x0, double y0, double x1, double y1, double z0 = 0, double z1 = 0) -> Make {
    return [=] { return Curve(new GcDbLine({x0, y0, z0}, {x1, y1, z1})); };
  };
  const auto circle = [&](double x, double y, double r, double z = 0) -> Make {
    return [=] { return Curve(new GcDbCircle({x, y, z}, up, r)); };
  };
  const auto arc = [&](double from, double to) -> Make {
    return [=] { return Curve(new GcDbArc({0, 0, 0}, up, 2, from, to)); };
  };
  const auto ellipse = [&](double x, double y, double major, double ratio) -> Make {
    return [=] { return Curve(new GcDbEllipse({x, y, 0}, up, {major, 0, 0}, ratio)); };
  };
  const Make upright = [] { return Curve(new GcDbCircle({0, 0, 0}, {1, 0, 0}, 2)); };
  add("line touching a circle", line(-3, 2, 3, 2), circle(0, 0, 2), 1);
  add("line touching an ellipse", line(-3, 1, 3, 1), ellipse(0, 0, 2, 0.5), 1);
  add("line ending on a circle", line(2, 0, 5, 1), circle(0, 0, 2), 1);
  add("circles touching outside", circle(0, 0, 2), circle(3, 0, 1), 1);
  add("circles touching inside", circle(0, 0, 2), circle(1, 0, 1), 1);
  add("circle in an ellipse, touching twice", circle(0, 0, 1), ellipse(0, 0, 2, 0.5), 2);
  add("ellipses touching at one end", ellipse(0, 0, 2, 0.5), ellipse(3, 0, 1, 0.5), 1);
  add("lines with a common end", line(0, 0, 2, 1), line(2, 1, 3, -1), 1);
  add("lines meeting in a T", line(0, 0, 4, 0), line(1, 0, 1, 3), 1);
  add("lines one behind the other", line(0, 0, 2, 1), line(2, 1, 4, 2), 1);
  add("lines overlapping", line(0, 0, 4, 2), line(6, 3, 2, 1), 2);
  add("line upon itself", line(0, 0, 4, 2), line(0, 0, 4, 2), 2);
  add("lines side by side", line(0, 0, 4, 2), line(0, 0.001, 4, 2.001), 0);
  add("skew lines", line(0, 0, 4, 0), line(2, -1, 2, 1, 0.001, 0.001), 0);
  add("arcs of one circle overlapping", arc(0, 2), arc(1, 3), 2);
  add("arcs of one circle in a chain", arc(0, 2), arc(2, 3), 1);
  add("arcs making a circle", arc(0, 2), arc(2, 0), 2);
  add("circles one in the other", circle(0, 0, 2), circle(0, 0, 1), 0);
  add("circles above each other", circle(0, 0, 2), circle(0, 0, 2, 0.001), 0);
  add("circles in planes at right angles", circle(0, 0, 2), upright, 2);
  add("line through a circle's plane, on it", line(2, 0, 2, 0, -1, 1), circle(0, 0, 2), 1);
  add("line through a circle's plane, inside", line(1, 0, 1, 0, -1, 1), circle(0, 0, 2), 0);
  using Corner = std::array<double, 3>;  // x, y, bulge
  const auto polyline = [](std::vector<Corner> corners, bool closed) -> Make {
    return [=] {
      auto made = std::make_unique<GcDbPolyline>();
      for (const Corner& c : corners) ignore(made->addVertexAt(made->numVerts(), GcGePoint2d(c[0], c[1]), c[2]));
      made->setClosed(closed);
      return Curve(made.release());
    };
  };
  const auto bow = [](double y) -> Make {  // a cubic with its top at three quarters of its inner poles' height
    return [=] {
      auto made = std::make_unique<GcDbSpline>();
      GcArray<GcGePoint3d> points;
      GcArray<double> knots;
      for (const double x : {-3, -1, 1, 3}) points.append({x, std::abs(x) == 1 ? y + 4 : y, 0});
      for (const double k : {0, 0, 0, 0, 1, 1, 1, 1}) knots.append(k);
      ignore(made->setNurbsData(3, false, false, false, points, knots, GcArray<double>()));
      return Curve(made.release());
    };
  };
  const Make square = polyline({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}, true);
  const Make slot = polyline({{0, 0, 0}, {4, 0, 1}, {4, 2, 0}, {0, 2, 1}}, true);
  add("line through a corner", line(-1, 1, 1, -1), square, 1);
  add("line through two corners", line(-1, -1, 3, 3), square, 2);
  add("line along a side", line(-1, 0, 3, 0), square, 2);
  add("line along a part of a side", line(0.5, 0, 1.5, 0), square, 2);
  add("line from the seam", line(0, 0, -1, -1), square, 1);
  add("squares with a common side", square, polyline({{2, 0, 0}, {4, 0, 0}, {4, 2, 0}, {2, 2, 0}}, true), 2);
  add("squares with a common corner", square, polyline({{2, 2, 0}, {4, 2, 0}, {4, 4, 0}, {2, 4, 0}}, true), 1);
  add("line where a side goes over into an arc", line(4, 0, 4, -1), slot, 1);
  add("line touching a polyline's arc", line(5, -1, 5, 3), slot, 1);
  add("circle upon a polyline's arc", circle(4, 1, 1), slot, 2);
  add("line touching a spline", line(-3, 3, 3, 3), bow(0), 1);
  add("splines above each other", bow(0), bow(3), 0);
  add("spline with a line at its end", line(3, 0, 5, 2), bow(0), 1);
  add("spline and the same a little higher", bow(0), bow(1), 0);
  for (const Case& each : cases)
    for (uint32_t seed = 0; seed <= 60; ++seed) {
      SCOPED_TRACE(::testing::Message() << each.name << ", seed " << seed);
      GcDbDatabase database;
      Any any(400 + seed, database);
      GcGeMatrix3d place;
      if (seed > 0) place = any.place();
      // Far out what is a thousandth apart must still be told from what touches.
      if (nearFor(place, 20) > 1e-5 * place.scale()) continue;
      const Curve a = each.a(), b = each.b();
      ASSERT_EQ(a->transformBy(place), Gcad::eOk);
      ASSERT_EQ(b->transformBy(place), Gcad::eOk);
      EXPECT_EQ(meet(*a, *b).length(), each.meetings);
      EXPECT_EQ(meet(*b, *a).length(), each.meetings);
    }
}

}  // namespace
