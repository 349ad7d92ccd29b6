#include "db/point.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbPoint, "AcDbPoint")

const GcDbField GcDbPoint::kFields[] = {
    marker("AcDbPoint"),
    field<&GcDbPoint::m_position>(10, "position", Is::WcsPoint),
    field<&GcDbPoint::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),
    field<&GcDbPoint::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
    field<&GcDbPoint::m_rotationRad>(50, "rotation", Is::Plain, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbPoint);

// A line of no length is a dot.
bool GcDbPoint::subWorldDraw(GcGiWorldDraw* draw) {
  const GcGePoint3d dot[2] = {m_position, m_position};
  draw->geometry().polyline(2, dot);
  return true;
}
