#include "db/xline.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbXline, "AcDbXline")
GCDB_DEFINE_CLASS(GcDbRay, "AcDbRay")

const GcDbField GcDbXline::kFields[] = {
    marker("AcDbXline"),
    field<&GcDbXline::m_base>(10, "basePoint", Is::WcsPoint),
    field<&GcDbXline::m_direction>(11, "unitDirection", Is::Direction),
};
GCDB_FIELD_COUNT(GcDbXline);

const GcDbField GcDbRay::kFields[] = {
    marker("AcDbRay"),
    field<&GcDbRay::m_base>(10, "basePoint", Is::WcsPoint),
    field<&GcDbRay::m_direction>(11, "unitDirection", Is::Direction),
};
GCDB_FIELD_COUNT(GcDbRay);

Gcad::ErrorStatus GcDbXline::setUnitDir(const GcGeVector3d& direction) {
  if (direction.isZeroLength()) return Gcad::eInvalidInput;
  return assign(m_direction, direction.normal());
}

Gcad::ErrorStatus GcDbRay::setUnitDir(const GcGeVector3d& direction) {
  if (direction.isZeroLength()) return Gcad::eInvalidInput;
  return assign(m_direction, direction.normal());
}

bool GcDbXline::subWorldDraw(GcGiWorldDraw* draw) {
  draw->geometry().xline(m_base, m_direction);
  return true;
}

bool GcDbRay::subWorldDraw(GcGiWorldDraw* draw) {
  draw->geometry().ray(m_base, m_direction);
  return true;
}
