// Parallels of entities of every kind: how far they lie, on which side, what they keep; at any place and scale.
#include <gtest/gtest.h>

#include "tests/db/curves/any_curve.h"

namespace {

struct Parallels {
  GcDbVoidPtrArray made;
  ~Parallels() {
    for (void* each : made) delete static_cast<GcDbEntity*>(each);
  }
  [[nodiscard]] int count() const { return made.length(); }
  [[nodiscard]] GcDbCurve& at(int i) const { return *GcDbCurve::cast(static_cast<GcDbEntity*>(made[i])); }
};

// The part of a curve that is looked at: of one without end some hundred units.
void range(const GcDbCurve& curve, double& from, double& to) {
  constexpr double kFar = 100;
  if (curve.getStartParam(from) != Gcad::eOk) from = -kFar;
  if (curve.getEndParam(to) != Gcad::eOk) to = kFar;
}

constexpr int kSamples = 60;
GcGePoint3d sample(const GcDbCurve& curve, int i) {
  double from = 0, to = 0;
  range(curve, from, to);
  GcGePoint3d p;
  EXPECT_EQ(curve.getPointAtParam(from + (to - from) * i / kSamples, p), Gcad::eOk);
  return p;
}

double distance(const GcDbCurve& curve, const GcGePoint3d& p) {
  GcGePoint3d nearest;
  EXPECT_EQ(curve.getClosestPointTo(p, nearest), Gcad::eOk);
  return nearest.distanceTo(p);
}

bool isPolyline(int kind) {
  return kind == AnyCurve::LwPolyline || kind == AnyCurve::Polyline2d || kind == AnyCurve::Polyline3d ||
         kind == AnyCurve::Leader;
}

// No point is nearer than the distance; but for the corners of polylines none is farther either.
TEST(Parallel, LiesAtTheDistanceWhateverTheKind) {
  int made = 0, onTheDistance = 0, all = 0;
  for (uint32_t seed = 1; seed <= 40; ++seed) {
    GcDbDatabase database;
    for (int kind = 0; kind < AnyCurve::kKinds; ++kind) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      AnyCurve any(30000 + seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind);
      const GcGeMatrix3d place = any.place();
      ASSERT_EQ(curve->transformBy(place), Gcad::eOk);
      const double size = any.between(0.05, 1.5) * place.scale(), sign = seed % 2 == 0 ? 1 : -1;
      Parallels parallels;
      ASSERT_EQ(curve->getOffsetCurves(sign * size, parallels.made), Gcad::eOk);
      const double near = 1e-6 * size + 1e-14 * place.translation().length() + 1e-9 * place.scale();
      for (int k = 0; k < parallels.count(); ++k)
        for (int i = 0; i <= kSamples; ++i) {
          const double away = distance(*curve, sample(parallels.at(k), i));
          ASSERT_GE(away, size - near);
          if (!isPolyline(kind)) {
            ASSERT_LE(away, size + near);
          }
          onTheDistance += away <= size + near ? 1 : 0;
          ++all;
        }
      made += parallels.count();
    }
  }
  EXPECT_GT(made, 300);
  EXPECT_GT(onTheDistance, all * 8 / 10);  // the rest lies in corners
}

// A positive distance lies to the right of the direction of travel seen against the normal, for every kind.
TEST(Parallel, PositiveLiesToTheRight) {
  for (uint32_t seed = 1; seed <= 40; ++seed) {
    GcDbDatabase database;
    for (int kind = 0; kind < AnyCurve::kKinds; ++kind) {
      if (isPolyline(kind) || kind == AnyCurve::Spline) continue;  // crossing themselves they have no one side
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      AnyCurve any(40000 + seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind);
      for (const double size : {0.01, -0.01}) {
        Parallels parallels;
        ASSERT_EQ(curve->getOffsetCurves(size, parallels.made), Gcad::eOk);
        ASSERT_EQ(parallels.count(), 1);
        for (int i = 1; i < kSamples; ++i) {
          const GcGePoint3d p = sample(parallels.at(0), i);
          GcGePoint3d foot;
          double t = 0;
          GcGeVector3d way;
          ASSERT_EQ(curve->getClosestPointTo(p, foot), Gcad::eOk);
          ASSERT_EQ(curve->getParamAtPoint(foot, t), Gcad::eOk);
          ASSERT_EQ(curve->getFirstDeriv(t, way), Gcad::eOk);
          const double right = (p - foot).dotProduct(way.crossProduct(curve->normal())) / way.length();
          ASSERT_NEAR(right, size, 1e-8);
        }
      }
    }
  }
}

// Out and back again gives the curve, where nothing was cut away.
TEST(Parallel, OutAndInAgainIsTheCurve) {
  for (uint32_t seed = 1; seed <= 40; ++seed) {
    GcDbDatabase database;
    for (const int kind : {AnyCurve::Line, AnyCurve::Circle, AnyCurve::Arc, AnyCurve::Ray, AnyCurve::Xline}) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      AnyCurve any(50000 + seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind);
      const double size = any.between(0.1, 3);
      Parallels out, back;
      ASSERT_EQ(curve->getOffsetCurves(size, out.made), Gcad::eOk);
      ASSERT_EQ(out.count(), 1);
      ASSERT_EQ(out.at(0).getOffsetCurves(-size, back.made), Gcad::eOk);
      ASSERT_EQ(back.count(), 1);
      EXPECT_EQ(back.at(0).isA(), curve->isA());
      for (int i = 0; i <= kSamples; ++i) EXPECT_LE(sample(*curve, i).distanceTo(sample(back.at(0), i)), 1e-12);
    }
  }
}

// Segments of a result meet at their ends at most.
TEST(Parallel, DoesNotCrossItself) {
  int checked = 0;
  for (uint32_t seed = 1; seed <= 120; ++seed) {
    GcDbDatabase database;
    for (const int kind : {AnyCurve::LwPolyline, AnyCurve::Polyline2d, AnyCurve::Leader}) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      AnyCurve any(60000 + seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind);
      Parallels parallels;
      ASSERT_EQ(curve->getOffsetCurves(any.between(-1, 1), parallels.made), Gcad::eOk);
      for (int k = 0; k < parallels.count(); ++k) {
        GcDbCurve& parallel = parallels.at(k);
        GcDbVoidPtrArray segments;
        if (GcDbPolyline::cast(&parallel) == nullptr || parallel.explode(segments) != Gcad::eOk) continue;
        Parallels owner;
        owner.made = segments;
        const int count = owner.count();
        for (int i = 0; i < count; ++i)
          for (int j = i + 1; j < count; ++j) {
            GcArray<GcGePoint3d> points;
            ASSERT_EQ(owner.at(i).intersectWith(&owner.at(j), GcDb::kOnBothOperands, points), Gcad::eOk);
            const bool next = j == i + 1 || (parallel.isClosed() && i == 0 && j == count - 1);
            for (const GcGePoint3d& p : points) {
              GcGePoint3d ends[4];
              ASSERT_EQ(owner.at(i).getStartPoint(ends[0]), Gcad::eOk);
              ASSERT_EQ(owner.at(i).getEndPoint(ends[1]), Gcad::eOk);
              ASSERT_EQ(owner.at(j).getStartPoint(ends[2]), Gcad::eOk);
              ASSERT_EQ(owner.at(j).getEndPoint(ends[3]), Gcad::eOk);
              double toEnd = 1e300;
              for (const GcGePoint3d& end : ends) toEnd = std::min(toEnd, end.distanceTo(p));
              // Corners may touch a side, and neighbours meet at their joint.
              EXPECT_LE(toEnd, 1e-6) << i << ' ' << j << (next ? " neighbours" : "");
            }
            ++checked;
          }
      }
    }
  }
  EXPECT_GT(checked, 2000);
}

TEST(Parallel, CollapsesToNothing) {
  GcDbPolyline square;
  for (const GcGePoint2d& p : {GcGePoint2d(0, 0), GcGePoint2d(4, 0), GcGePoint2d(4, 4), GcGePoint2d(0, 4)})
    ignore(square.addVertexAt(square.numVerts(), p));
  square.setClosed(true);
  for (const double inside : {-2.0, -2.001, -50.0}) {
    Parallels none;
    EXPECT_EQ(square.getOffsetCurves(inside, none.made), Gcad::eOk);
    EXPECT_EQ(none.count(), 0) << inside;
  }
  Parallels some;
  EXPECT_EQ(square.getOffsetCurves(-1.999, some.made), Gcad::eOk);
  ASSERT_EQ(some.count(), 1);
  double area = 0;
  EXPECT_EQ(some.at(0).getArea(area), Gcad::eOk);
  EXPECT_NEAR(area, 0.002 * 0.002, 1e-12);
  const GcDbEllipse flat({0, 0, 0}, {0, 0, 1}, {4, 0, 0}, 0.25);
  Parallels collapsed;
  EXPECT_EQ(flat.getOffsetCurves(-1.01, collapsed.made), Gcad::eOk);
  EXPECT_EQ(collapsed.count(), 0);
}

TEST(Parallel, OfAnOlderPolylineKeepsItsWidth) {
  GcDbDatabase database;
  GcDbBlockTableRecord* space = nullptr;
  ASSERT_EQ(gcdbOpenObject(space, database.modelSpaceId(), GcDb::kForWrite), Gcad::eOk);
  auto* source = new GcDb2dPolyline;
  GcDbObjectId id;
  ASSERT_EQ(space->appendGcDbEntity(id, source), Gcad::eOk);
  ASSERT_EQ(space->close(), Gcad::eOk);
  for (const double x : {0.0, 5.0, 9.0}) {
    auto* vertex = new GcDb2dVertex({x, x == 5 ? 2.0 : 0.0, 0}, 0, 0.5, 0.5);
    ASSERT_EQ(source->appendVertex(vertex), Gcad::eOk);
    ASSERT_EQ(vertex->close(), Gcad::eOk);
  }
  Parallels parallels;
  ASSERT_EQ(source->getOffsetCurves(1, parallels.made), Gcad::eOk);
  ASSERT_EQ(parallels.count(), 1);
  const GcDbPolyline* made = GcDbPolyline::cast(&parallels.at(0));
  ASSERT_NE(made, nullptr);
  double width = 0;
  EXPECT_EQ(made->getConstantWidth(width), Gcad::eOk);
  EXPECT_EQ(width, 0.5);
  EXPECT_EQ(source->close(), Gcad::eOk);
}

}  // namespace
