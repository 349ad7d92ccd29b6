#include "db/circle.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/entities/planar.h"

GCDB_DEFINE_CLASS(GcDbCircle, "AcDbCircle")

const GcDbField GcDbCircle::kFields[] = {
    marker("AcDbCircle"),
    field<&GcDbCircle::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),
    field<&GcDbCircle::m_center>(10, "center", Is::OcsPoint),
    field<&GcDbCircle::m_radius>(40, "radius", Is::Length).orElse(1),
    field<&GcDbCircle::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbCircle);

GcDbCircle::GcDbCircle(const GcGePoint3d& center, const GcGeVector3d& normal, double radius)
    : m_center(gcplanar::toOwn(center, normal.normal())), m_radius(radius), m_normal(normal.normal()) {}

GcGePoint3d GcDbCircle::center() const { return gcplanar::toWorld(m_center, m_normal); }

Gcad::ErrorStatus GcDbCircle::setCenter(const GcGePoint3d& center) {
  return assign(m_center, gcplanar::toOwn(center, m_normal));
}

Gcad::ErrorStatus GcDbCircle::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  const GcGePoint3d kept = center();
  m_normal = normal.normal();
  m_center = gcplanar::toOwn(kept, m_normal);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbCircle::subTransformBy(const GcGeMatrix3d& transform) {
  if (!transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  return GcDbCurve::subTransformBy(transform);
}

bool GcDbCircle::subWorldDraw(GcGiWorldDraw* draw) {
  draw->geometry().circle(center(), m_radius, m_normal);
  return true;
}
