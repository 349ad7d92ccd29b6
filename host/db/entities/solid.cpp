#include "db/solid.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/entities/planar.h"

GCDB_DEFINE_CLASS(GcDbSolid, "AcDbSolid")
GCDB_DEFINE_CLASS(GcDbTrace, "AcDbTrace")

const GcDbField GcDbFilledArea::kFields[] = {
    marker("AcDbTrace"),
    field<&GcDbFilledArea::m_point0>(10, "point0", Is::OcsPoint),
    field<&GcDbFilledArea::m_point1>(11, "point1", Is::OcsPoint),
    field<&GcDbFilledArea::m_point2>(12, "point2", Is::OcsPoint),
    field<&GcDbFilledArea::m_point3>(13, "point3", Is::OcsPoint),
    field<&GcDbFilledArea::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),
    field<&GcDbFilledArea::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbFilledArea);

GcGePoint3d* GcDbFilledArea::pointAt(uint16_t index) {
  GcGePoint3d* const points[] = {&m_point0, &m_point1, &m_point2, &m_point3};
  return index < 4 ? points[index] : nullptr;
}

Gcad::ErrorStatus GcDbFilledArea::getPointAt(uint16_t index, GcGePoint3d& point) const {
  const GcGePoint3d* own = const_cast<GcDbFilledArea*>(this)->pointAt(index);
  if (own == nullptr) return Gcad::eInvalidIndex;
  point = gcplanar::toWorld(*own, m_normal);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbFilledArea::setPointAt(uint16_t index, const GcGePoint3d& point) {
  GcGePoint3d* own = pointAt(index);
  if (own == nullptr) return Gcad::eInvalidIndex;
  return assign(*own, gcplanar::toOwn(point, m_normal));
}

bool GcDbFilledArea::subWorldDraw(GcGiWorldDraw* draw) {
  const GcGePoint3d around[4] = {gcplanar::toWorld(m_point0, m_normal), gcplanar::toWorld(m_point1, m_normal),
                                 gcplanar::toWorld(m_point3, m_normal), gcplanar::toWorld(m_point2, m_normal)};
  draw->geometry().polygon(m_point2 == m_point3 ? 3 : 4, around);
  return true;
}
