// Ellipses as curves: the parameter is the parametric angle.
#include "db/ellipse.h"
#include "host/db/entities/planar.h"
#include "host/ge/curves/path.h"

Gcad::ErrorStatus GcDbEllipse::subPath(GcGePath& path) const {
  path.clear(m_center);
  const GcGeVector3d minor = minorAxis();
  if (!(m_majorAxis.length() > 0) || !(minor.length() > 0)) return Gcad::eDegenerateGeometry;
  double sweep = m_endParam - m_startParam;
  constexpr double kWhole = 1e-9;  // files round the end of a whole ellipse
  if (!(sweep > 0 && sweep <= gcplanar::kTwoPi + kWhole)) sweep = gcplanar::inFullTurn(sweep);
  if (!(sweep > 0)) sweep = gcplanar::kTwoPi;  // ends that fall together
  const bool whole = std::abs(sweep - gcplanar::kTwoPi) <= kWhole;
  if (whole) sweep = gcplanar::kTwoPi;
  path.addArc(m_center, m_majorAxis, minor, m_startParam, sweep, m_startParam, m_startParam + sweep);
  path.setClosed(whole, whole);
  return Gcad::eOk;
}
