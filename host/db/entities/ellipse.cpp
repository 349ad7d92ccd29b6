#include "db/ellipse.h"

#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/entities/ellipse_axes.h"
#include "host/db/entities/planar.h"

GCDB_DEFINE_CLASS(GcDbEllipse, "AcDbEllipse")

const GcDbField GcDbEllipse::kFields[] = {
    marker("AcDbEllipse"),
    field<&GcDbEllipse::m_center>(10, "center", Is::WcsPoint),
    field<&GcDbEllipse::m_majorAxis>(11, "majorAxis", Is::WcsVector),
    field<&GcDbEllipse::m_normal>(210, "normal", Is::Normal),
    field<&GcDbEllipse::m_ratio>(40, "radiusRatio", Is::Plain).orElse(1),
    field<&GcDbEllipse::m_startParam>(41, "startParam", Is::Plain),
    field<&GcDbEllipse::m_endParam>(42, "endParam", Is::Plain).orElse(6.28318530717958647692),
};
GCDB_FIELD_COUNT(GcDbEllipse);

GcDbEllipse::GcDbEllipse(const GcGePoint3d& center, const GcGeVector3d& unitNormal, const GcGeVector3d& majorAxis,
                         double radiusRatio, double startParam, double endParam)
    : m_center(center),
      m_majorAxis(majorAxis),
      m_normal(unitNormal.normal()),
      m_ratio(radiusRatio),
      m_startParam(startParam),
      m_endParam(endParam) {}

GcGeVector3d GcDbEllipse::minorAxis() const { return m_normal.crossProduct(m_majorAxis) * m_ratio; }

Gcad::ErrorStatus GcDbEllipse::set(const GcGePoint3d& center, const GcGeVector3d& unitNormal,
                                   const GcGeVector3d& majorAxis, double radiusRatio, double startParam,
                                   double endParam) {
  if (majorAxis.isZeroLength() || unitNormal.isZeroLength() || !(radiusRatio > 0 && radiusRatio <= 1))
    return Gcad::eInvalidInput;
  constexpr double kRightAngle = 1e-6;  // cosine of what still counts as a right angle
  const double skew = majorAxis.normal().dotProduct(unitNormal.normal());
  if (std::fabs(skew) > kRightAngle) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_center = center;
  m_majorAxis = majorAxis;
  m_normal = unitNormal.normal();
  m_ratio = radiusRatio;
  m_startParam = startParam;
  m_endParam = endParam;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbEllipse::subTransformBy(const GcGeMatrix3d& transform) {
  const GcGeVector3d major = transform * m_majorAxis;
  const GcGeVector3d minor = transform * minorAxis();
  const gcellipse::Axes axes = gcellipse::principalAxes(major, minor);
  if (axes.normal.lengthSqrd() == 0) return Gcad::eCannotScaleNonUniformly;
  const double span = m_endParam - m_startParam;
  m_center = transform * m_center;
  m_majorAxis = axes.major;
  m_ratio = axes.ratio;
  m_normal = axes.normal;
  if (axes.shiftRad != 0 && std::fabs(span) < gcplanar::kTwoPi) {
    m_startParam = gcplanar::inFullTurn(m_startParam - axes.shiftRad);
    m_endParam = m_startParam + span;
  }
  return Gcad::eOk;
}

bool GcDbEllipse::subWorldDraw(GcGiWorldDraw* draw) {
  gcellipse::draw(*draw, m_center, m_majorAxis, minorAxis(), m_startParam, m_endParam);
  return true;
}
