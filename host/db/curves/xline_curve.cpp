// Rays and construction lines as curves: the parameter is the distance from the base point.
#include <limits>

#include "db/xline.h"
#include "host/ge/curves/path.h"

namespace {

constexpr double kEndless = std::numeric_limits<double>::infinity();

Gcad::ErrorStatus endless(GcGePath& path, const GcGePoint3d& base, const GcGeVector3d& direction, double from) {
  path.clear(base);
  const double size = direction.length();
  if (!(size > 0)) return Gcad::eDegenerateGeometry;
  path.addUnbounded(base, direction / size, from, kEndless);
  return Gcad::eOk;
}

}  // namespace

Gcad::ErrorStatus GcDbXline::subPath(GcGePath& path) const { return endless(path, m_base, m_direction, -kEndless); }
Gcad::ErrorStatus GcDbRay::subPath(GcGePath& path) const { return endless(path, m_base, m_direction, 0); }
