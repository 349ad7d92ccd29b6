// Curves as entities: parameters of each class, failures, what is kept between queries, parallels, pieces, meetings.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numbers>

#include "db/arc.h"
#include "db/circle.h"
#include "db/database.h"
#include "db/ellipse.h"
#include "db/line.h"
#include "db/polyline.h"
#include "db/polyline2d.h"
#include "db/text.h"
#include "db/xline.h"
#include "host/db/core/undo.h"

namespace {

constexpr double kPi = std::numbers::pi;

template <class T>
GcDbObjectId append(GcDbDatabase& database, T* entity, bool keepOpen = false) {
  GcDbBlockTableRecord* space = nullptr;
  EXPECT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  GcDbObjectId id;
  EXPECT_EQ(space->appendGcDbEntity(id, entity), Gcad::eOk);
  EXPECT_EQ(space->close(), Gcad::eOk);
  if (!keepOpen) {
    EXPECT_EQ(entity->close(), Gcad::eOk);
  }
  return id;
}

// Owns what queries hand out.
struct Made {
  GcDbVoidPtrArray all;
  ~Made() {
    for (void* each : all) delete static_cast<GcDbEntity*>(each);
  }
  GcDbCurve* curve(int i) { return GcDbCurve::cast(static_cast<GcDbEntity*>(all[i])); }
};

void expectPoint(const GcGePoint3d& p, double x, double y, double z = 0) {
  EXPECT_NEAR(p.x, x, 1e-12);
  EXPECT_NEAR(p.y, y, 1e-12);
  EXPECT_NEAR(p.z, z, 1e-12);
}

std::unique_ptr<GcDbPolyline> polyline(std::initializer_list<GcDbPolylineVertex> vertices, bool closed) {
  auto made = std::make_unique<GcDbPolyline>();
  for (const GcDbPolylineVertex& v : vertices)
    EXPECT_EQ(made->addVertexAt(made->numVerts(), v.point, v.bulge), Gcad::eOk);
  made->setClosed(closed);
  return made;
}

TEST(Curve, LineIsMeasuredByDistance) {
  const GcDbLine line({1, 2, 0}, {4, 6, 0});
  double end = 0, dist = 0;
  EXPECT_EQ(line.getEndParam(end), Gcad::eOk);
  EXPECT_DOUBLE_EQ(end, 5);
  GcGePoint3d p;
  EXPECT_EQ(line.getPointAtParam(2.5, p), Gcad::eOk);
  expectPoint(p, 2.5, 4);
  GcGeVector3d d;
  EXPECT_EQ(line.getFirstDeriv(1.0, d), Gcad::eOk);
  EXPECT_DOUBLE_EQ(d.length(), 1);
  EXPECT_EQ(line.getDistAtPoint({2.5, 4, 0}, dist), Gcad::eOk);
  EXPECT_DOUBLE_EQ(dist, 2.5);
  EXPECT_EQ(line.getDistAtPoint({2.5, 4.1, 0}, dist), Gcad::eInvalidInput);
  EXPECT_EQ(line.getPointAtParam(5.5, p), Gcad::eInvalidInput);
  double area = 7;
  EXPECT_EQ(line.getArea(area), Gcad::eOk);
  EXPECT_EQ(area, 0);
  EXPECT_TRUE(line.isPlanar());
  EXPECT_FALSE(line.isClosed());
}

TEST(Curve, ArcAndCircleAreMeasuredByAngle) {
  const GcDbArc arc({1, 1, 0}, 2, 3 * kPi / 2, kPi / 2);
  double t0 = 0, t1 = 0;
  EXPECT_EQ(arc.getStartParam(t0), Gcad::eOk);
  EXPECT_EQ(arc.getEndParam(t1), Gcad::eOk);
  EXPECT_DOUBLE_EQ(t0, 3 * kPi / 2);
  EXPECT_DOUBLE_EQ(t1, 5 * kPi / 2);
  GcGePoint3d p;
  EXPECT_EQ(arc.getPointAtParam(2 * kPi, p), Gcad::eOk);
  expectPoint(p, 3, 1);
  double area = 0;
  EXPECT_EQ(arc.getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 2 * kPi, 1e-12);  // closed by its chord: half the disc
  const GcDbCircle circle({5e6, 5e6, 0}, {0, 0, -1}, 3);
  EXPECT_TRUE(circle.isClosed());
  EXPECT_TRUE(circle.isPeriodic());
  EXPECT_EQ(circle.getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 9 * kPi, 1e-12);
  EXPECT_EQ(circle.getPointAtDist(1.5 * kPi, p), Gcad::eOk);
}

TEST(Curve, EllipseIsMeasuredByItsParametricAngle) {
  const GcDbEllipse ellipse({0, 0, 0}, {0, 0, 1}, {4, 0, 0}, 0.5);
  GcGePoint3d p;
  EXPECT_EQ(ellipse.getPointAtParam(kPi / 2, p), Gcad::eOk);
  expectPoint(p, 0, 2);
  double area = 0;
  EXPECT_EQ(ellipse.getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 8 * kPi, 1e-12);
  EXPECT_TRUE(ellipse.isClosed());
}

TEST(Curve, PolylineCountsVertices) {
  const auto p = polyline({{{0, 0}}, {{10, 0}, 1}, {{10, 4}}, {{0, 4}}}, true);
  double end = 0, param = 0, area = 0;
  EXPECT_EQ(p->getEndParam(end), Gcad::eOk);
  EXPECT_EQ(end, 4);
  GcGePoint3d at;
  EXPECT_EQ(p->getPointAtParam(1.5, at), Gcad::eOk);
  expectPoint(at, 12, 2);
  EXPECT_EQ(p->getParamAtDist(10 + kPi, param), Gcad::eOk);
  EXPECT_NEAR(param, 1.5, 1e-14);
  EXPECT_EQ(p->getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 40 + 2 * kPi, 1e-12);
  EXPECT_EQ(p->getClosestPointTo({20, 2, 5}, at), Gcad::eOk);
  expectPoint(at, 12, 2);
}

TEST(Curve, UnboundedLinesHaveNoEnds) {
  GcDbXline line;
  ASSERT_EQ(line.setUnitDir({0, 3, 0}), Gcad::eOk);
  double t = 9;
  EXPECT_EQ(line.getStartParam(t), Gcad::eNotApplicable);
  EXPECT_EQ(t, 9);
  GcGePoint3d p;
  EXPECT_EQ(line.getPointAtParam(-7, p), Gcad::eOk);
  expectPoint(p, 0, -7);
  EXPECT_EQ(line.getClosestPointTo({3, 100, 0}, p), Gcad::eOk);
  expectPoint(p, 0, 100);
  GcDbRay ray;
  EXPECT_EQ(ray.getStartParam(t), Gcad::eOk);
  EXPECT_EQ(t, 0);
  EXPECT_EQ(ray.getPointAtParam(-1, p), Gcad::eInvalidInput);
  EXPECT_EQ(ray.getEndPoint(p), Gcad::eNotApplicable);
}

TEST(Curve, DegenerateOnesFailAndStay) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  GcGePoint3d p(1, 2, 3);
  EXPECT_EQ(GcDbLine({1, 1, 1}, {1, 1, 1}).getStartPoint(p), Gcad::eDegenerateGeometry);
  EXPECT_EQ(GcDbCircle({0, 0, 0}, {0, 0, 1}, 0).getStartPoint(p), Gcad::eDegenerateGeometry);
  EXPECT_NE(GcDbLine({nan, 1, 1}, {1, 1, 1}).getStartPoint(p), Gcad::eOk);
  EXPECT_NE(GcDbCircle({0, nan, 0}, {0, 0, 1}, 1).getClosestPointTo({0, 0, 0}, p), Gcad::eOk);
  EXPECT_EQ(GcDbPolyline().getStartPoint(p), Gcad::eDegenerateGeometry);
  EXPECT_EQ(polyline({{{0, 0}}}, true)->getEndPoint(p), Gcad::eDegenerateGeometry);
  EXPECT_EQ(GcDbLine({0, 0, 0}, {1, 0, 0}).getPointAtParam(nan, p), Gcad::eInvalidInput);
  EXPECT_EQ(GcDbLine({0, 0, 0}, {1, 0, 0}).getClosestPointTo({nan, 0, 0}, p), Gcad::eInvalidInput);
  EXPECT_EQ(p, GcGePoint3d(1, 2, 3));
  const auto doubled = polyline({{{0, 0}}, {{0, 0}, 0.5}, {{4, 0}}, {{4, 0}}}, true);
  double dist = 0;
  EXPECT_EQ(doubled->getDistAtParam(4, dist), Gcad::eOk);
  EXPECT_GT(dist, 8);
  EXPECT_EQ(doubled->getClosestPointTo({2, 9, 0}, p), Gcad::eOk);
  Made made;
  EXPECT_EQ(doubled->getOffsetCurves(0.1, made.all), Gcad::eOk);
}

TEST(Curve, WhatIsKeptIsNeverStale) {
  GcDbDatabase database;
  const GcDbObjectId id = append(database, polyline({{{0, 0}}, {{10, 0}}}, false).release());
  GcDbPolyline* p = nullptr;
  double dist = 0;
  const auto length = [&] {
    GcDbPolyline* reader = nullptr;
    EXPECT_EQ(gcdbOpenObject(reader, id, GcDb::kForRead), Gcad::eOk);
    double end = 0, sum = 0;
    EXPECT_EQ(reader->getEndParam(end), Gcad::eOk);
    EXPECT_EQ(reader->getDistAtParam(end, sum), Gcad::eOk);
    EXPECT_EQ(reader->close(), Gcad::eOk);
    return sum;
  };
  EXPECT_EQ(length(), 10);
  EXPECT_EQ(length(), 10);
  database.undo().setOn(true);
  database.undo().beginGroup();
  ASSERT_EQ(gcdbOpenObject(p, id, GcDb::kForWrite), Gcad::eOk);
  EXPECT_EQ(p->setPointAt(1, {20, 0}), Gcad::eOk);
  EXPECT_EQ(p->getDistAtParam(1, dist), Gcad::eOk);
  EXPECT_EQ(dist, 20);
  EXPECT_EQ(p->setPointAt(1, {30, 0}), Gcad::eOk);
  EXPECT_EQ(p->getDistAtParam(1, dist), Gcad::eOk);
  EXPECT_EQ(dist, 30);
  GcGeMatrix3d twice;
  twice.setToScaling(2);
  EXPECT_EQ(p->transformBy(twice), Gcad::eOk);
  EXPECT_EQ(p->close(), Gcad::eOk);
  database.undo().endGroup();
  EXPECT_EQ(length(), 60);
  ASSERT_EQ(database.undo().undo(1), 1);
  EXPECT_EQ(length(), 10);
  ASSERT_EQ(database.undo().redo(1), 1);
  EXPECT_EQ(length(), 60);
}

TEST(Curve, VerticesOfTheirOwnAreReadAnew) {
  GcDbDatabase database;
  auto* p = new GcDb2dPolyline;
  const GcDbObjectId id = append(database, p, true);
  GcDbObjectId last;
  for (const double x : {0.0, 5.0, 9.0}) {
    auto* v = new GcDb2dVertex({x, 0, 0});
    ASSERT_EQ(p->appendVertex(last, v), Gcad::eOk);
    ASSERT_EQ(v->close(), Gcad::eOk);
  }
  double dist = 0;
  EXPECT_EQ(p->getDistAtParam(2, dist), Gcad::eOk);
  EXPECT_EQ(dist, 9);
  EXPECT_EQ(p->close(), Gcad::eOk);
  GcDb2dVertex* v = nullptr;
  ASSERT_EQ(gcdbOpenObject(v, last, GcDb::kForWrite), Gcad::eOk);
  EXPECT_EQ(v->setPosition({25, 0, 0}), Gcad::eOk);
  EXPECT_EQ(v->close(), Gcad::eOk);
  ASSERT_EQ(gcdbOpenObject(p, id, GcDb::kForRead), Gcad::eOk);
  EXPECT_EQ(p->getDistAtParam(2, dist), Gcad::eOk);
  EXPECT_EQ(dist, 25);
  EXPECT_EQ(p->close(), Gcad::eOk);
}

TEST(Curve, ParallelsLieToTheRight) {
  Made made;
  ASSERT_EQ(GcDbLine({0, 0, 0}, {10, 0, 0}).getOffsetCurves(2, made.all), Gcad::eOk);
  ASSERT_EQ(GcDbCircle({0, 0, 0}, {0, 0, 1}, 5).getOffsetCurves(2, made.all), Gcad::eOk);
  ASSERT_EQ(GcDbCircle({0, 0, 0}, {0, 0, -1}, 5).getOffsetCurves(2, made.all), Gcad::eOk);
  ASSERT_EQ(GcDbArc({0, 0, 0}, 5, 0, 1).getOffsetCurves(-2, made.all), Gcad::eOk);
  GcDbXline endless;
  ASSERT_EQ(endless.getOffsetCurves(3, made.all), Gcad::eOk);
  ASSERT_EQ(made.all.length(), 5);
  GcGePoint3d p;
  EXPECT_EQ(made.curve(0)->getStartPoint(p), Gcad::eOk);
  expectPoint(p, 0, -2);
  EXPECT_NEAR(GcDbCircle::cast(made.curve(1))->radius(), 7, 1e-12);
  EXPECT_NEAR(GcDbCircle::cast(made.curve(2))->radius(), 7, 1e-12);
  const GcDbArc* arc = GcDbArc::cast(made.curve(3));
  ASSERT_NE(arc, nullptr);
  EXPECT_NEAR(arc->radius(), 3, 1e-12);
  EXPECT_NEAR(arc->startAngle(), 0, 1e-12);
  EXPECT_NEAR(arc->endAngle(), 1, 1e-12);
  expectPoint(GcDbXline::cast(made.curve(4))->basePoint(), 0, -3);
  Made none;
  EXPECT_EQ(GcDbCircle({0, 0, 0}, {0, 0, 1}, 5).getOffsetCurves(-6, none.all), Gcad::eOk);
  EXPECT_EQ(none.all.length(), 0);
}

TEST(Curve, ParallelOfAPolylineIsAPolyline) {
  auto square = polyline({{{0, 0}}, {{10, 0}, 0.5}, {{10, 10}}, {{0, 10}}}, true);
  ASSERT_EQ(square->setNormal({0.6, 0, 0.8}), Gcad::eOk);
  ASSERT_EQ(square->setElevation(3), Gcad::eOk);
  ASSERT_EQ(square->setConstantWidth(0.25), Gcad::eOk);
  Made made;
  ASSERT_EQ(square->getOffsetCurves(1, made.all), Gcad::eOk);
  ASSERT_EQ(made.all.length(), 1);
  const GcDbPolyline* out = GcDbPolyline::cast(made.curve(0));
  ASSERT_NE(out, nullptr);
  EXPECT_TRUE(out->isClosed());
  EXPECT_EQ(out->numVerts(), 4u);
  EXPECT_NEAR(out->elevation(), 3, 1e-12);
  double width = 0, area = 0, before = 0;
  EXPECT_EQ(out->getConstantWidth(width), Gcad::eOk);
  EXPECT_EQ(width, 0.25);
  EXPECT_EQ(out->getArea(area), Gcad::eOk);
  EXPECT_EQ(square->getArea(before), Gcad::eOk);
  EXPECT_GT(area, before);
}

TEST(Curve, PiecesHaveTheWholesLength) {
  const auto p = polyline({{{0, 0}}, {{10, 0}, 1}, {{10, 4}}, {{0, 4}}}, true);
  GcArray<double> cuts;
  cuts.append(0.5);
  cuts.append(1.25);
  cuts.append(3.0);
  Made made;
  ASSERT_EQ(p->getSplitCurves(cuts, made.all), Gcad::eOk);
  ASSERT_EQ(made.all.length(), 3);
  double whole = 0, sum = 0;
  EXPECT_EQ(p->getDistAtParam(4, whole), Gcad::eOk);
  for (int i = 0; i < 3; ++i) {
    double end = 0, length = 0;
    EXPECT_EQ(made.curve(i)->getEndParam(end), Gcad::eOk);
    EXPECT_EQ(made.curve(i)->getDistAtParam(end, length), Gcad::eOk);
    sum += length;
  }
  EXPECT_NEAR(sum, whole, 1e-12);
}

TEST(Curve, ReversedPolylineRunsBackwards) {
  for (const bool closed : {false, true}) {
    const auto p = polyline({{{0, 0}}, {{10, 0}, 1}, {{10, 4}, -0.3}, {{0, 4}, 0.2}}, closed);
    const auto back = polyline({{{0, 0}}, {{10, 0}, 1}, {{10, 4}, -0.3}, {{0, 4}, 0.2}}, closed);
    ASSERT_EQ(back->reverseCurve(), Gcad::eOk);
    double end = 0;
    ASSERT_EQ(p->getEndParam(end), Gcad::eOk);
    for (double t = 0; t <= end; t += 0.125) {
      // A closed one starts at what was the last vertex.
      double from = closed ? end - 1 - t : end - t;
      if (from < 0) from += end;
      GcGePoint3d a, b;
      ASSERT_EQ(p->getPointAtParam(from, a), Gcad::eOk);
      ASSERT_EQ(back->getPointAtParam(t, b), Gcad::eOk);
      EXPECT_LE(a.distanceTo(b), 1e-12) << t;
    }
  }
}

TEST(Curve, MeetingsInTheFourModes) {
  const GcDbLine a({0, 0, 0}, {4, 0, 0}), b({6, -1, 0}, {6, -3, 0});
  const auto count = [](const GcDbEntity& x, const GcDbEntity& y, GcDb::Intersect mode) {
    GcArray<GcGePoint3d> points;
    EXPECT_EQ(x.intersectWith(&y, mode, points), Gcad::eOk);
    return points.length();
  };
  EXPECT_EQ(count(a, b, GcDb::kOnBothOperands), 0);
  EXPECT_EQ(count(a, b, GcDb::kExtendThis), 0);
  EXPECT_EQ(count(a, b, GcDb::kExtendArg), 0);
  EXPECT_EQ(count(a, b, GcDb::kExtendBoth), 1);
  const GcDbArc arc({0, 0, 0}, 5, 0.1, 0.2);
  EXPECT_EQ(count(arc, GcDbLine({-9, 0, 0}, {9, 0, 0}), GcDb::kOnBothOperands), 0);
  EXPECT_EQ(count(arc, GcDbLine({-9, 0, 0}, {9, 0, 0}), GcDb::kExtendThis), 2);
}

TEST(Curve, MeetingsAreInOrderAlongTheFirst) {
  const auto comb = polyline({{{0, -1}}, {{0, 1}}, {{2, 1}}, {{2, -1}}, {{4, -1}}, {{4, 1}}}, false);
  GcArray<GcGePoint3d> points;
  const GcDbLine line({9, 0, 0}, {-9, 0, 0});
  ASSERT_EQ(line.intersectWith(comb.get(), GcDb::kOnBothOperands, points), Gcad::eOk);
  ASSERT_EQ(points.length(), 3);
  expectPoint(points[0], 4, 0);
  expectPoint(points[1], 2, 0);
  expectPoint(points[2], 0, 0);
}

TEST(Curve, SharedStretchesGiveTheirEnds) {
  GcArray<GcGePoint3d> points;
  ASSERT_EQ(GcDbLine({0, 0, 0}, {4, 0, 0})
                .intersectWith(polyline({{{1, 0}}, {{2, 0}}, {{3, 0}}}, false).get(), GcDb::kOnBothOperands, points),
            Gcad::eOk);
  ASSERT_EQ(points.length(), 2);
  expectPoint(points[0], 1, 0);
  expectPoint(points[1], 3, 0);
}

TEST(Curve, TextMeetsByItsBox) {
  GcDbText text;
  ASSERT_EQ(text.setTextString(GC_T("ABC")), Gcad::eOk);
  ASSERT_EQ(text.setHeight(2), Gcad::eOk);
  GcArray<GcGePoint3d> points;
  ASSERT_EQ(GcDbLine({-5, 1, 0}, {50, 1, 0}).intersectWith(&text, GcDb::kOnBothOperands, points), Gcad::eOk);
  EXPECT_EQ(points.length(), 2);
}

}  // namespace
