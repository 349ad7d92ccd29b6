// The peer by Open CASCADE.
#include <BRepAlgoAPI_Section.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepOffsetAPI_MakeOffset.hxx>
#include <Extrema_ExtPC.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <Geom2dAPI_InterCurveCurve.hxx>
#include <Geom2d_BSplineCurve.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TColgp_Array1OfPnt2d.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Wire.hxx>

#include "bench/ge/cases.h"
#include "bench/kernels/peer.h"

namespace peer {

namespace {

struct Knots {
  std::vector<double> values;
  std::vector<int> times;
};

Knots distinct(const std::vector<double>& knots) {
  Knots all;
  for (const double knot : knots) {
    if (all.values.empty() || knot != all.values.back()) all.values.push_back(knot), all.times.push_back(0);
    ++all.times.back();
  }
  return all;
}

template <class Curve, class Points, class Make>
opencascade::handle<Curve> made(const GcGeNurbs& spline, const Make& point) {
  const int count = static_cast<int>(spline.points.size());
  Points points(1, count);
  TColStd_Array1OfReal weights(1, count);
  for (int i = 0; i < count; ++i) {
    points.SetValue(i + 1, point(spline.points[static_cast<size_t>(i)]));
    weights.SetValue(i + 1, spline.weights.empty() ? 1 : spline.weights[static_cast<size_t>(i)]);
  }
  const Knots all = distinct(spline.knots);
  const int knots = static_cast<int>(all.values.size());
  TColStd_Array1OfReal values(1, knots);
  TColStd_Array1OfInteger times(1, knots);
  for (int i = 0; i < knots; ++i) {
    values.SetValue(i + 1, all.values[static_cast<size_t>(i)]);
    times.SetValue(i + 1, all.times[static_cast<size_t>(i)]);
  }
  return new Curve(points, weights, values, times, spline.degree);
}

opencascade::handle<Geom_BSplineCurve> spaceCurve(const GcGeNurbs& spline) {
  return made<Geom_BSplineCurve, TColgp_Array1OfPnt>(spline,
                                                     [](const GcGePoint3d& p) { return gp_Pnt(p.x, p.y, p.z); });
}
opencascade::handle<Geom2d_BSplineCurve> planeCurve(const GcGeNurbs& spline) {
  return made<Geom2d_BSplineCurve, TColgp_Array1OfPnt2d>(spline,
                                                         [](const GcGePoint3d& p) { return gp_Pnt2d(p.x, p.y); });
}

}  // namespace

struct Spline::Kept {
  GeomAdaptor_Curve curve;
  Extrema_ExtPC nearest;
};
Spline::Spline(const GcGeNurbs& spline) : m_kept(std::make_unique<Kept>()) {
  m_kept->curve.Load(spaceCurve(spline));
  m_kept->nearest.Initialize(m_kept->curve, m_kept->curve.FirstParameter(), m_kept->curve.LastParameter());
}
Spline::~Spline() = default;
double Spline::length() const { return GCPnts_AbscissaPoint::Length(m_kept->curve); }
GcGePoint3d Spline::pointAtDistance(double distance) const {
  const GCPnts_AbscissaPoint at(m_kept->curve, distance, m_kept->curve.FirstParameter());
  const gp_Pnt p = m_kept->curve.Value(at.Parameter());
  return {p.X(), p.Y(), p.Z()};
}
double Spline::distanceTo(const GcGePoint3d& point) const {
  Extrema_ExtPC& nearest = m_kept->nearest;
  const gp_Pnt from(point.x, point.y, point.z);
  nearest.Perform(from);
  double first = 0, last = 0;
  gp_Pnt atFirst, atLast;
  nearest.TrimmedSquareDistances(first, last, atFirst, atLast);
  double best = std::min(first, last);
  for (int i = 1; nearest.IsDone() && i <= nearest.NbExt(); ++i) best = std::min(best, nearest.SquareDistance(i));
  return std::sqrt(best);
}

struct Pair::Kept {
  opencascade::handle<Geom2d_BSplineCurve> a, b;
};
Pair::Pair(const GcGeNurbs& a, const GcGeNurbs& b) : m_kept(new Kept{planeCurve(a), planeCurve(b)}) {}
Pair::~Pair() = default;
int Pair::crossings() const { return Geom2dAPI_InterCurveCurve(m_kept->a, m_kept->b, 1e-9).NbPoints(); }

struct Polylines::Kept {
  TopoDS_Wire a, b;
};
Polylines::Polylines(const std::vector<GcGePoint3d>& a, const std::vector<GcGePoint3d>& b) {
  const auto chain = [](const std::vector<GcGePoint3d>& corners) {
    BRepBuilderAPI_MakeWire wire;
    for (size_t i = 1; i < corners.size(); ++i)
      wire.Add(
          BRepBuilderAPI_MakeEdge(gp_Pnt(corners[i - 1].x, corners[i - 1].y, 0), gp_Pnt(corners[i].x, corners[i].y, 0))
              .Edge());
    return wire.Wire();
  };
  m_kept = std::make_unique<Kept>(Kept{chain(a), chain(b)});
}
Polylines::~Polylines() = default;
int Polylines::crossings() const {
  BRepAlgoAPI_Section section(m_kept->a, m_kept->b);
  int count = 0;
  for (TopExp_Explorer at(section.Shape(), TopAbs_VERTEX); at.More(); at.Next()) ++count;
  return count;
}

struct Ring::Kept {
  TopoDS_Wire wire;
};
Ring::Ring() : m_kept(std::make_unique<Kept>()) {
  using namespace gebench;
  const auto corner = [](int i) {
    const GcGePoint3d p = ringCorner(i % kRingCorners);
    return gp_Pnt(p.x, p.y, 0);
  };
  const GcGePath path = ring();
  BRepBuilderAPI_MakeWire wire;
  for (int i = 0; i < kRingCorners; ++i) {
    if (i % 2 == 0) {
      wire.Add(BRepBuilderAPI_MakeEdge(corner(i), corner(i + 1)).Edge());
      continue;
    }
    GcGePoint3d middle;
    path.pointAt(i + 0.5, middle);
    const opencascade::handle<Geom_TrimmedCurve> arc =
        GC_MakeArcOfCircle(corner(i), gp_Pnt(middle.x, middle.y, 0), corner(i + 1)).Value();
    wire.Add(BRepBuilderAPI_MakeEdge(arc).Edge());
  }
  m_kept->wire = wire.Wire();
}
Ring::~Ring() = default;
int Ring::parallel(double distance) const {
  try {
    BRepOffsetAPI_MakeOffset offset(m_kept->wire, GeomAbs_Intersection);
    offset.Perform(distance);
    if (!offset.IsDone() || offset.Shape().IsNull()) return 0;
    int edges = 0;
    for (TopExp_Explorer at(offset.Shape(), TopAbs_EDGE); at.More(); at.Next()) ++edges;
    return edges;
  } catch (const Standard_Failure&) {
    return 0;
  }
}

}  // namespace peer
