// Circles and arcs as curves: the parameter is the angle in their own plane.
#include "db/arc.h"
#include "db/circle.h"
#include "host/db/entities/planar.h"
#include "host/ge/curves/path.h"

namespace {

Gcad::ErrorStatus arcPath(GcGePath& path, const GcGePoint3d& center, const GcGeVector3d& normal, double radius,
                          double startRad, double sweepRad) {
  path.clear(center);
  if (!(radius > 0) || normal.isZeroLength()) return Gcad::eDegenerateGeometry;
  const GcGeVector3d n = normal.normal(), x = gcgeArbitraryXAxis(n);
  path.addArc(center, x * radius, n.crossProduct(x) * radius, startRad, sweepRad, startRad, startRad + sweepRad);
  return Gcad::eOk;
}

}  // namespace

Gcad::ErrorStatus GcDbCircle::subPath(GcGePath& path) const {
  const Gcad::ErrorStatus status = arcPath(path, center(), m_normal, m_radius, 0, gcplanar::kTwoPi);
  path.setClosed(true, true);
  return status;
}

// An arc whose ends fall together is a whole circle, and closed.
Gcad::ErrorStatus GcDbArc::subPath(GcGePath& path) const {
  const double sweep = sweepAngle();
  const Gcad::ErrorStatus status = arcPath(path, center(), m_normal, m_radius, m_startAngleRad, sweep);
  path.setClosed(sweep >= gcplanar::kTwoPi);
  return status;
}
