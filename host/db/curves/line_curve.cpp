// A line as a curve: parameter and distance are the same.
#include "db/line.h"
#include "host/ge/curves/path.h"

Gcad::ErrorStatus GcDbLine::subPath(GcGePath& path) const {
  path.clear(m_start);
  const double length = m_start.distanceTo(m_end);
  if (!(length > 0)) return Gcad::eDegenerateGeometry;
  path.addLine(m_start, m_end, 0, length);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLine::reverseCurve() {
  assertWriteEnabled();
  const GcGePoint3d start = m_start;
  m_start = m_end;
  m_end = start;
  return Gcad::eOk;
}
