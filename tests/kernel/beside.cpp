#include "tests/kernel/beside.h"

#include <GC_MakeArcOfCircle.hxx>
#include <GC_MakeSegment.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_Circle.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <gp_Circ.hxx>
#include <gp_Elips.hxx>

#include "tests/db/curves/any_curve.h"

namespace {

using Pieces = std::vector<opencascade::handle<Geom_Curve>>;

gp_Pnt pnt(const GcGePoint3d& p) { return {p.x, p.y, p.z}; }
gp_Ax2 level(const GcGePoint3d& center, const gp_Dir& x) { return {pnt(center), gp_Dir(0, 0, 1), x}; }

void segment(const GcGePoint3d& a, const GcGePoint3d& b, Pieces& out) {
  out.emplace_back(GC_MakeSegment(pnt(a), pnt(b)).Value());
}

// The arc's middle lies aside of the chord by half the chord times the bulge, to the right.
void segment(const GcGePoint3d& a, const GcGePoint3d& b, double bulge, Pieces& out) {
  if (bulge == 0) return segment(a, b, out);
  const GcGeVector3d half = (b - a) * 0.5;
  const GcGePoint3d middle = a + half + GcGeVector3d(half.y, -half.x, 0) * bulge;
  out.emplace_back(GC_MakeArcOfCircle(pnt(a), pnt(middle), pnt(b)).Value());
}

opencascade::handle<Geom_Curve> splineOf(const GcDbSpline& spline) {
  const int count = spline.controlPoints().length();
  TColgp_Array1OfPnt points(1, count);
  TColStd_Array1OfReal weights(1, count);
  for (int i = 0; i < count; ++i) {
    points.SetValue(i + 1, pnt(spline.controlPoints()[i]));
    weights.SetValue(i + 1, spline.weights().isEmpty() ? 1 : spline.weights()[i]);
  }
  std::vector<double> values;
  std::vector<int> times;
  for (const double knot : spline.knots()) {
    if (values.empty() || knot != values.back()) values.push_back(knot), times.push_back(0);
    ++times.back();
  }
  const int knots = static_cast<int>(values.size());
  TColStd_Array1OfReal at(1, knots);
  TColStd_Array1OfInteger multiplicity(1, knots);
  for (int i = 0; i < knots; ++i) {
    at.SetValue(i + 1, values[static_cast<size_t>(i)]);
    multiplicity.SetValue(i + 1, times[static_cast<size_t>(i)]);
  }
  return new Geom_BSplineCurve(points, weights, at, multiplicity, spline.degree());
}

struct Corner {
  GcGePoint3d point;
  double bulge;
};

template <class Vertex, class Curve>
std::vector<Corner> cornersOf(const Curve& curve) {
  std::vector<Corner> corners;
  GcDbObjectIdArray ids;
  curve.vertexIds(ids);
  for (const GcDbObjectId id : ids) {
    Vertex* vertex = nullptr;
    if (gcdbOpenObject(vertex, id, GcDb::kForRead) != Gcad::eOk) std::abort();
    double bulge = 0;
    if constexpr (requires { vertex->bulge(); }) bulge = vertex->bulge();
    corners.push_back({vertex->position(), bulge});
    ignore(vertex->close());
  }
  return corners;
}

std::vector<Corner> cornersOf(const GcDbPolyline& polyline) {
  std::vector<Corner> corners;
  for (unsigned i = 0; i < polyline.numVerts(); ++i) {
    GcGePoint2d p;
    double bulge = 0;
    ignore(polyline.getPointAt(i, p));
    ignore(polyline.getBulgeAt(i, bulge));
    corners.push_back({{p.x, p.y, 0}, bulge});
  }
  return corners;
}

Pieces chain(const std::vector<Corner>& corners, bool closed) {
  Pieces out;
  for (size_t i = 0; i + (closed ? 0 : 1) < corners.size(); ++i)
    segment(corners[i].point, corners[(i + 1) % corners.size()].point, corners[i].bulge, out);
  return out;
}

}  // namespace

Pieces besideOf(const GcDbCurve& curve) {
  constexpr double kFar = 1000;
  Pieces out;
  if (const GcDbLine* line = GcDbLine::cast(&curve)) {
    segment(line->startPoint(), line->endPoint(), out);
  } else if (const GcDbCircle* circle = GcDbCircle::cast(&curve)) {
    out.emplace_back(new Geom_Circle(level(circle->center(), {1, 0, 0}), circle->radius()));
  } else if (const GcDbArc* arc = GcDbArc::cast(&curve)) {
    const opencascade::handle<Geom_Circle> whole = new Geom_Circle(level(arc->center(), {1, 0, 0}), arc->radius());
    out.emplace_back(new Geom_TrimmedCurve(whole, arc->startAngle(), arc->endAngle()));
  } else if (const GcDbEllipse* ellipse = GcDbEllipse::cast(&curve)) {
    const GcGeVector3d major = ellipse->majorAxis();
    const opencascade::handle<Geom_Ellipse> whole = new Geom_Ellipse(
        level(ellipse->center(), {major.x, major.y, 0}), major.length(), major.length() * ellipse->radiusRatio());
    double from = 0, to = 0;
    ignore(ellipse->getStartParam(from));
    ignore(ellipse->getEndParam(to));
    if (ellipse->isClosed())
      out.emplace_back(whole);
    else
      out.emplace_back(new Geom_TrimmedCurve(whole, from, to));
  } else if (const GcDbPolyline* polyline = GcDbPolyline::cast(&curve)) {
    out = chain(cornersOf(*polyline), polyline->isClosed());
  } else if (const GcDb2dPolyline* heavy = GcDb2dPolyline::cast(&curve)) {
    out = chain(cornersOf<GcDb2dVertex>(*heavy), heavy->isClosed());
  } else if (const GcDb3dPolyline* spatial = GcDb3dPolyline::cast(&curve)) {
    out = chain(cornersOf<GcDb3dPolylineVertex>(*spatial), spatial->isClosed());
  } else if (const GcDbSpline* spline = GcDbSpline::cast(&curve)) {
    out.push_back(splineOf(*spline));
  } else if (const GcDbRay* ray = GcDbRay::cast(&curve)) {
    segment(ray->basePoint(), ray->basePoint() + ray->unitDir() * kFar, out);
  } else if (const GcDbXline* endless = GcDbXline::cast(&curve)) {
    segment(endless->basePoint() - endless->unitDir() * kFar, endless->basePoint() + endless->unitDir() * kFar, out);
  } else if (const GcDbLeader* leader = GcDbLeader::cast(&curve)) {
    for (int i = 0; i + 1 < leader->numVertices(); ++i) segment(leader->vertexAt(i), leader->vertexAt(i + 1), out);
  }
  return out;
}
