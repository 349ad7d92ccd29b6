// Splines and leaders as curves. A spline's parameter is its knots; a leader's the vertex's number plus the part of
// the segment behind it.
#include "db/leader.h"
#include "db/spline.h"
#include "host/ge/curves/nurbs.h"

namespace {

std::vector<GcGePoint3d> listOf(const GcArray<GcGePoint3d>& points) { return {points.begin(), points.end()}; }

// The control points' curve; where a file gives none, the one through the points it was drawn through.
bool nurbsOf(const GcDbSpline& spline, GcGeNurbs& nurbs) {
  nurbs.degree = spline.degree();
  nurbs.knots.assign(spline.knots().begin(), spline.knots().end());
  nurbs.points = listOf(spline.controlPoints());
  nurbs.weights.assign(spline.weights().begin(), spline.weights().end());
  nurbs.closed = spline.isMarkedClosed();
  nurbs.periodic = spline.isMarkedPeriodic();
  if (nurbs.isValid()) return true;
  std::vector<GcGePoint3d> through = listOf(spline.fitPoints());
  // A closed spline may be drawn through its first point again.
  const bool closed = spline.isMarkedClosed();
  while (closed && through.size() > 2 && through.front() == through.back()) through.pop_back();
  return gcgeInterpolate(through, spline.startTangent(), spline.endTangent(), closed, nurbs);
}

}  // namespace

// Closed is what ends where it starts, whatever a file says of it.
Gcad::ErrorStatus GcDbSpline::subPath(GcGePath& path) const {
  GcGeNurbs nurbs;
  if (!nurbsOf(*this, nurbs) || !gcgePathOfNurbs(nurbs, path)) return Gcad::eDegenerateGeometry;
  if (!(path.size() > 0)) return Gcad::eDegenerateGeometry;
  GcGePoint3d start, end;
  const bool hasEnds = path.pointAt(path.startParam(), start) && path.pointAt(path.endParam(), end);
  const bool closed = hasEnds && start.distanceTo(end) <= path.tolerance();
  path.setClosed(closed, closed && isMarkedPeriodic());
  return Gcad::eOk;
}

// Points drawn through and tangents turn round too.
Gcad::ErrorStatus GcDbSpline::reverseCurve() {
  GcGeNurbs nurbs;
  if (!nurbsOf(*this, nurbs)) return Gcad::eDegenerateGeometry;
  assertWriteEnabled();
  const GcGeNurbs turned = gcgeReverseNurbs(nurbs);
  const GcArray<GcGePoint3d> through = m_fitPoints;
  const GcGeVector3d first = m_startTangent;
  GcArray<GcGePoint3d> points;
  GcArray<double> knots, weights;
  for (const GcGePoint3d& p : turned.points) points.append(p);
  for (const double t : turned.knots) knots.append(t);
  for (const double w : turned.weights) weights.append(w);
  m_degree = static_cast<int16_t>(turned.degree);
  m_controlPoints = points;
  m_knots = knots;
  m_weights = weights;
  m_fitPoints.clear();
  for (int i = through.length(); i-- > 0;) m_fitPoints.append(through[i]);
  m_startTangent = -m_endTangent;
  m_endTangent = -first;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLeader::subPath(GcGePath& path) const {
  const int count = m_vertices.length();
  if (count < 2) return Gcad::eDegenerateGeometry;
  GcGeNurbs nurbs;
  GcGePath smooth;
  const bool curved = isSplined() && count > 2 && gcgeInterpolate(listOf(m_vertices), {}, {}, false, nurbs) &&
                      gcgePathOfNurbs(nurbs, smooth) && static_cast<int>(smooth.spans().size()) == count - 1;
  path.clear(curved ? smooth.origin() : m_vertices[0]);
  for (int i = 0; i < count - 1; ++i) {
    if (curved)
      path.addBezier(smooth.poles() + smooth.spans()[static_cast<size_t>(i)].firstPole, nurbs.degree, i, i + 1);
    else
      path.addLine(m_vertices[i], m_vertices[i + 1], i, i + 1);
  }
  return path.size() > 0 ? Gcad::eOk : Gcad::eDegenerateGeometry;
}
