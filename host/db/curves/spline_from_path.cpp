#include "host/db/curves/spline_from_path.h"

#include <memory>

#include "db/spline.h"
#include "host/ge/curves/nurbs.h"

GcDbCurve* gcdbSplineFromPath(const GcGePath& path) {
  if (path.isEmpty() || !path.isBounded()) return nullptr;
  const GcGeNurbs nurbs = gcgeNurbsOfPath(path);
  GcArray<GcGePoint3d> points;
  GcArray<double> knots, weights;
  for (const GcGePoint3d& p : nurbs.points) points.append(p);
  for (const double t : nurbs.knots) knots.append(t);
  for (const double w : nurbs.weights) weights.append(w);
  auto spline = std::make_unique<GcDbSpline>();
  const Gcad::ErrorStatus status =
      spline->setNurbsData(nurbs.degree, !weights.isEmpty(), path.isClosed(), false, points, knots, weights);
  return status == Gcad::eOk ? spline.release() : nullptr;
}
