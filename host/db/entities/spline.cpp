#include "db/spline.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/entities/draw_path.h"
#include "host/ge/curves/nurbs.h"

GCDB_DEFINE_CLASS(GcDbSpline, "AcDbSpline")

// Files give the normal of planar splines only; without one the spline is not known to be planar.
const GcDbField GcDbSpline::kFields[] = {
    marker("AcDbSpline"),
    field<&GcDbSpline::m_normal>(210, "normal", Is::Direction, Write::FilesUnlessDefault).orAxis(2),
    field<&GcDbSpline::m_flags>(70, "flags", Is::Plain),
    field<&GcDbSpline::m_degree>(71, "degree", Is::Plain).orElse(3),
    count<&GcDbSpline::m_knots>(72, "knotCount"),
    count<&GcDbSpline::m_controlPoints>(73, "controlPointCount"),
    count<&GcDbSpline::m_fitPoints>(74, "fitPointCount"),
    field<&GcDbSpline::m_knotTolerance>(42, "knotTolerance", Is::Plain),
    field<&GcDbSpline::m_controlTolerance>(43, "controlTolerance", Is::Plain),
    field<&GcDbSpline::m_fitTolerance>(44, "fitTolerance", Is::Plain, Write::FilesUnlessDefault).orElse(1e-10),
    field<&GcDbSpline::m_startTangent>(12, "startTangent", Is::WcsVector, Write::UnlessDefault),
    field<&GcDbSpline::m_endTangent>(13, "endTangent", Is::WcsVector, Write::UnlessDefault),
    list<&GcDbSpline::m_knots, 40>(-1, "knots"),
    list<&GcDbSpline::m_weights, 41>(-1, "weights"),
    list<&GcDbSpline::m_controlPoints, 10, Is::WcsPoint>(-1, "controlPoints"),
    list<&GcDbSpline::m_fitPoints, 11, Is::WcsPoint>(-1, "fitPoints"),
    field<&GcDbSpline::m_scenario>(-72, "scenario", Is::Plain),
    field<&GcDbSpline::m_method>(-70, "method", Is::Plain),
    field<&GcDbSpline::m_knotParameterization>(-71, "knotParameterization", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbSpline);

Gcad::ErrorStatus GcDbSpline::setNurbsData(int degree, bool rational, bool closed, bool periodic,
                                           const GcArray<GcGePoint3d>& controlPoints, const GcArray<double>& knots,
                                           const GcArray<double>& weights) {
  GcGeNurbs nurbs;
  nurbs.degree = degree;
  nurbs.knots.assign(knots.begin(), knots.end());
  nurbs.points.assign(controlPoints.begin(), controlPoints.end());
  if (rational) nurbs.weights.assign(weights.begin(), weights.end());
  if (!nurbs.isValid()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_degree = static_cast<int16_t>(degree);
  m_controlPoints = controlPoints;
  m_knots = knots;
  m_weights = rational ? weights : GcArray<double>();
  m_fitPoints.clear();
  m_startTangent = m_endTangent = GcGeVector3d();
  GcGePath path;
  GcGeVector3d normal;
  const bool planar = gcgePathOfNurbs(nurbs, path) && path.isPlanar(normal);
  if (planar && normal.lengthSqrd() > 0) m_normal = normal;
  const int kept = m_flags & ~15;
  m_flags = static_cast<int16_t>(kept | (closed ? 1 : 0) | (periodic ? 2 : 0) | (rational ? 4 : 0) | (planar ? 8 : 0));
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbSpline::setFitData(const GcArray<GcGePoint3d>& fitPoints, const GcGeVector3d& startTangent,
                                         const GcGeVector3d& endTangent) {
  if (fitPoints.length() < 2) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_fitPoints = fitPoints;
  m_startTangent = startTangent;
  m_endTangent = endTangent;
  return Gcad::eOk;
}

bool GcDbSpline::subWorldDraw(GcGiWorldDraw* draw) {
  GcGePath path;
  if (subPath(path) == Gcad::eOk) {
    gcdraw::path(*draw, path);
    return true;
  }
  const GcArray<GcGePoint3d>& through = m_fitPoints.isEmpty() ? m_controlPoints : m_fitPoints;
  if (through.length() > 1) draw->geometry().polyline(through.length(), through.begin(), isMarkedClosed());
  return true;
}
