#include "db/arc.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/entities/planar.h"

GCDB_DEFINE_CLASS(GcDbArc, "AcDbArc")

const GcDbField GcDbArc::kFields[] = {
    marker("AcDbCircle"),
    field<&GcDbArc::m_thickness>(39, "thickness", Is::Length, Write::UnlessDefault),
    field<&GcDbArc::m_center>(10, "center", Is::OcsPoint),
    field<&GcDbArc::m_radius>(40, "radius", Is::Length).orElse(1),
    field<&GcDbArc::m_normal>(210, "normal", Is::Normal, Write::FilesUnlessDefault),
    marker("AcDbArc"),
    field<&GcDbArc::m_startAngleRad>(50, "startAngle", Is::Angle),
    field<&GcDbArc::m_endAngleRad>(51, "endAngle", Is::Angle),
};
GCDB_FIELD_COUNT(GcDbArc);

GcDbArc::GcDbArc(const GcGePoint3d& center, double radius, double startAngleRad, double endAngleRad)
    : m_center(center), m_radius(radius), m_startAngleRad(startAngleRad), m_endAngleRad(endAngleRad) {}

GcDbArc::GcDbArc(const GcGePoint3d& center, const GcGeVector3d& normal, double radius, double startAngleRad,
                 double endAngleRad)
    : m_center(gcplanar::toOwn(center, normal.normal())),
      m_radius(radius),
      m_startAngleRad(startAngleRad),
      m_endAngleRad(endAngleRad),
      m_normal(normal.normal()) {}

GcGePoint3d GcDbArc::center() const { return gcplanar::toWorld(m_center, m_normal); }

Gcad::ErrorStatus GcDbArc::setCenter(const GcGePoint3d& center) {
  return assign(m_center, gcplanar::toOwn(center, m_normal));
}

double GcDbArc::sweepAngle() const {
  const double sweep = gcplanar::inFullTurn(m_endAngleRad - m_startAngleRad);
  return sweep == 0 ? gcplanar::kTwoPi : sweep;
}

Gcad::ErrorStatus GcDbArc::setNormal(const GcGeVector3d& normal) {
  if (normal.isZeroLength()) return Gcad::eInvalidInput;
  assertWriteEnabled();
  const GcGePoint3d kept = center();
  m_normal = normal.normal();
  m_center = gcplanar::toOwn(kept, m_normal);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbArc::subTransformBy(const GcGeMatrix3d& transform) {
  if (!transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  return GcDbCurve::subTransformBy(transform);
}

bool GcDbArc::subWorldDraw(GcGiWorldDraw* draw) {
  draw->geometry().circularArc(center(), m_radius, m_normal, gcplanar::directionAt(m_startAngleRad, m_normal),
                               sweepAngle());
  return true;
}
