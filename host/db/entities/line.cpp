#include "db/line.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbLine, "AcDbLine")

const GcDbField GcDbLine::kFields[] = {
    marker("AcDbLine"),
    field<&GcDbLine::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),
    field<&GcDbLine::m_start>(10, "start", Is::WcsPoint),
    field<&GcDbLine::m_end>(11, "end", Is::WcsPoint),
    field<&GcDbLine::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbLine);

Gcad::ErrorStatus GcDbLine::setStartPoint(const GcGePoint3d& point) {
  assertWriteEnabled();
  m_start = point;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLine::setEndPoint(const GcGePoint3d& point) {
  assertWriteEnabled();
  m_end = point;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLine::setThickness(double thickness) {
  assertWriteEnabled();
  m_thickness = thickness;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLine::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_normal = normal.normal();
  return Gcad::eOk;
}

bool GcDbLine::subWorldDraw(GcGiWorldDraw* draw) {
  const GcGePoint3d ends[2] = {m_start, m_end};
  draw->geometry().polyline(2, ends);
  return true;
}
