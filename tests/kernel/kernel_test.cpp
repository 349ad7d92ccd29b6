// Generated curves beside Open CASCADE: lengths, points at distances, derivatives, areas, nearest points, crossings.
// Both start from the entities' fields; the entity is then moved to any place and scale, the other kernel's answers
// are moved along.
#include <gtest/gtest.h>

#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepGProp.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <GProp_GProps.hxx>
#include <Geom2dAPI_InterCurveCurve.hxx>
#include <GeomAPI.hxx>
#include <GeomAPI_ProjectPointOnCurve.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Pln.hxx>

#include "tests/db/curves/any_curve.h"
#include "tests/kernel/beside.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

GcGePoint3d point(const gp_Pnt& p) { return {p.X(), p.Y(), p.Z()}; }
GcGeVector3d vector(const gp_Vec& v) { return {v.X(), v.Y(), v.Z()}; }

bool isBounded(int kind) { return kind != AnyCurve::Ray && kind != AnyCurve::Xline; }

// What rounding of coordinates does in the curve's place.
double rounding(const GcGeMatrix3d& place) { return 2e-15 * place.translation().length(); }

template <class F>
void forCurves(uint32_t seeds, const F& f) {
  for (uint32_t seed = 1; seed <= seeds; ++seed) {
    GcDbDatabase database;
    for (int kind = 0; kind < AnyCurve::kKinds; ++kind) {
      SCOPED_TRACE(::testing::Message() << "seed " << seed << " kind " << kind);
      AnyCurve any(5000 + seed * 16 + static_cast<uint32_t>(kind), database);
      const AnyCurvePtr curve = any.curve(kind);
      f(any, kind, *curve);
    }
  }
}

TEST(Beside, LengthsAndPointsAtDistances) {
  forCurves(150, [](AnyCurve& any, int kind, GcDbCurve& curve) {
    if (!isBounded(kind)) return;
    const auto pieces = besideOf(curve);
    const GcGeMatrix3d place = any.place();
    ASSERT_EQ(curve.transformBy(place), Gcad::eOk);
    double end = 0, whole = 0, sum = 0;
    ASSERT_EQ(curve.getEndParam(end), Gcad::eOk);
    ASSERT_EQ(curve.getDistAtParam(end, whole), Gcad::eOk);
    const double near = 1e-10 * whole + rounding(place);
    for (const auto& piece : pieces) {
      const GeomAdaptor_Curve adaptor(piece);
      const double length = GCPnts_AbscissaPoint::Length(adaptor, 1e-13);
      for (int i = 0; i < 3 && kind != AnyCurve::Circle; ++i) {  // a circle's start depends on its plane
        const double t = any.between(adaptor.FirstParameter(), adaptor.LastParameter());
        const double before = GCPnts_AbscissaPoint::Length(adaptor, adaptor.FirstParameter(), t, 1e-13);
        GcGePoint3d p;
        ASSERT_EQ(curve.getPointAtDist((sum + before) * place.scale(), p), Gcad::eOk);
        EXPECT_LE(p.distanceTo(place * point(adaptor.Value(t))), near);
      }
      sum += length;
    }
    EXPECT_NEAR(whole, sum * place.scale(), near);
  });
}

TEST(Beside, PointsAndDerivativesOfSplinesAndEllipses) {
  forCurves(150, [](AnyCurve& any, int kind, GcDbCurve& curve) {
    if (kind != AnyCurve::Spline && kind != AnyCurve::Ellipse && kind != AnyCurve::EllipseArc) return;
    const auto other = besideOf(curve).front();
    for (int i = 0; i < 8; ++i) {
      const double t = any.between(other->FirstParameter(), other->LastParameter());
      gp_Pnt at;
      gp_Vec first, second;
      other->D2(t, at, first, second);
      GcGePoint3d p;
      GcGeVector3d d, e;
      ASSERT_EQ(curve.getPointAtParam(t, p), Gcad::eOk);
      ASSERT_EQ(curve.getFirstDeriv(t, d), Gcad::eOk);
      ASSERT_EQ(curve.getSecondDeriv(t, e), Gcad::eOk);
      EXPECT_LE(p.distanceTo(point(at)), 1e-13 * (20 + d.length()));
      EXPECT_LE((d - vector(first)).length(), 1e-12 * (20 + d.length()));
      EXPECT_LE((e - vector(second)).length(), 1e-11 * (20 + e.length()));
    }
  });
}

double areaBeside(const GcDbCurve& curve) {
  BRepBuilderAPI_MakeWire wire;
  for (const auto& piece : besideOf(curve)) wire.Add(BRepBuilderAPI_MakeEdge(piece).Edge());
  const TopoDS_Face face = BRepBuilderAPI_MakeFace(gp_Pln(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1)), wire.Wire()).Face();
  GProp_GProps all;
  BRepGProp::SurfaceProperties(face, all, 1e-12);
  return std::abs(all.Mass());
}

TEST(Beside, Areas) {
  const auto check = [](AnyCurve& any, GcDbCurve& curve) {
    const double expected = areaBeside(curve);
    const GcGeMatrix3d place = any.place();
    ASSERT_EQ(curve.transformBy(place), Gcad::eOk);
    double area = 0;
    ASSERT_EQ(curve.getArea(area), Gcad::eOk);
    const double scale = place.scale();
    EXPECT_NEAR(area, expected * scale * scale, 1e-10 * expected * scale * scale + 100 * rounding(place) * scale);
  };
  forCurves(150, [&](AnyCurve& any, int kind, GcDbCurve& curve) {
    if (kind == AnyCurve::Circle || kind == AnyCurve::Ellipse) check(any, curve);
  });
  for (uint32_t seed = 1; seed <= 150; ++seed) {  // polylines that do not cross themselves
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    GcDbDatabase database;
    AnyCurve any(seed, database);
    GcDbPolyline polyline;
    constexpr int kCorners = 9;
    for (int i = 0; i < kCorners; ++i) {
      const double angle = 2 * kPi * (i + any.between(0, 0.5)) / kCorners, radius = any.between(3, 5);
      ignore(polyline.addVertexAt(static_cast<unsigned>(i), {radius * std::cos(angle), radius * std::sin(angle)},
                                  i % 2 == 0 ? 0 : any.between(-0.2, 0.2)));
    }
    polyline.setClosed(true);
    check(any, polyline);
  }
}

TEST(Beside, NothingIsNearer) {
  forCurves(150, [](AnyCurve& any, int kind, GcDbCurve& curve) {
    if (!isBounded(kind)) return;
    const auto pieces = besideOf(curve);
    const GcGeMatrix3d place = any.place();
    ASSERT_EQ(curve.transformBy(place), Gcad::eOk);
    for (int i = 0; i < 6; ++i) {
      const GcGePoint3d from = any.point() + any.unit() * any.between(0, 8);
      double nearest = 1e300;
      for (const auto& piece : pieces) {
        const GeomAPI_ProjectPointOnCurve feet({from.x, from.y, from.z}, piece);
        if (feet.NbPoints() > 0) nearest = std::min(nearest, feet.LowerDistance());
        for (const double t : {piece->FirstParameter(), piece->LastParameter()})
          nearest = std::min(nearest, point(piece->Value(t)).distanceTo(from));
      }
      GcGePoint3d found;
      ASSERT_EQ(curve.getClosestPointTo(place * from, found), Gcad::eOk);
      // The other kernel may miss the nearest foot: what is nearer here must lie on the curve.
      EXPECT_LE(found.distanceTo(place * from), nearest * place.scale() + 1e-12 * place.scale() + 2 * rounding(place));
      double t = 0;
      EXPECT_EQ(curve.getParamAtPoint(found, t), Gcad::eOk);
    }
  });
}

TEST(Beside, NoCrossingIsMissed) {
  int all = 0;
  const gp_Pln plane(gp_Pnt(0, 0, 0), gp_Dir(0, 0, 1));
  for (uint32_t seed = 1; seed <= 40; ++seed) {
    GcDbDatabase database;
    for (int first = 0; first < AnyCurve::kKinds; ++first)
      for (int second = 0; second < AnyCurve::kKinds; ++second) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed << " kinds " << first << ' ' << second);
        AnyCurve any(90000 + seed * 200 + static_cast<uint32_t>(first * AnyCurve::kKinds + second), database);
        const AnyCurvePtr a = any.curve(first), b = any.curve(second);
        std::vector<GcGePoint3d> crossings;
        for (const auto& x : besideOf(*a))
          for (const auto& y : besideOf(*b)) {
            const Geom2dAPI_InterCurveCurve meet(GeomAPI::To2d(x, plane), GeomAPI::To2d(y, plane), 1e-9);
            for (int i = 1; i <= meet.NbPoints(); ++i) {
              const gp_Pnt2d p = meet.Point(i);
              crossings.push_back({p.X(), p.Y(), 0});
            }
          }
        const GcGeMatrix3d place = any.place();
        ASSERT_EQ(a->transformBy(place), Gcad::eOk);
        ASSERT_EQ(b->transformBy(place), Gcad::eOk);
        GcArray<GcGePoint3d> found;
        ASSERT_EQ(a->intersectWith(b.get(), GcDb::kOnBothOperands, found), Gcad::eOk);
        for (const GcGePoint3d& p : crossings) {
          double nearest = 1e300;
          for (const GcGePoint3d& q : found) nearest = std::min(nearest, q.distanceTo(place * p));
          EXPECT_LE(nearest, 1e-5 * place.scale() + 100 * rounding(place)) << p.x << ' ' << p.y;
        }
        all += static_cast<int>(crossings.size());
      }
  }
  EXPECT_GT(all, 3000);
}

}  // namespace
