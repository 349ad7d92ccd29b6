#include "host/db/entities/solid3d.h"

#include <iterator>
#include <string>

#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"
#include "host/db/entities/modeler_edges.h"
#include "host/db/entities/modeler_text.h"

GCDB_DEFINE_CLASS(GcDbModelerGeometry, "AcDbModelerGeometry")
GCDB_DEFINE_CLASS(GcDb3dSolid, "AcDb3dSolid")
GCDB_DEFINE_CLASS(GcDbBody, "AcDbBody")
GCDB_DEFINE_CLASS(GcDbSurface, "AcDbSurface")

const GcDbField GcDbModelerGeometry::kFields[] = {
    marker("AcDbModelerGeometry"),
    rest<&GcDbModelerGeometry::m_data>("data"),
};
GCDB_FIELD_COUNT(GcDbModelerGeometry);

const GcDbField GcDb3dSolid::kFields[] = {
    marker("AcDb3dSolid").when<&GcDb3dSolid::hasSolidData>().readAnyway(),
    rest<&GcDb3dSolid::m_solidData>("solidData"),
};
GCDB_FIELD_COUNT(GcDb3dSolid);

const GcDbField GcDbSurface::kFields[] = {
    marker("AcDbSurface"),
    rest<&GcDbSurface::m_surfaceData>("surfaceData"),
};
GCDB_FIELD_COUNT(GcDbSurface);

#define GC_SURFACE(Class, name)               \
  GCDB_DEFINE_CLASS(Class, name)              \
  const GcDbField Class::kFields[] = {        \
      marker(name),                           \
      rest<&Class::m_shapeData>("shapeData"), \
  };                                          \
  GCDB_FIELD_COUNT(Class)
GC_SURFACE(GcDbPlaneSurface, "AcDbPlaneSurface");
GC_SURFACE(GcDbExtrudedSurface, "AcDbExtrudedSurface");
GC_SURFACE(GcDbRevolvedSurface, "AcDbRevolvedSurface");
GC_SURFACE(GcDbSweptSurface, "AcDbSweptSurface");
GC_SURFACE(GcDbLoftedSurface, "AcDbLoftedSurface");
GC_SURFACE(GcDbNurbSurface, "AcDbNurbSurface");
#undef GC_SURFACE

Gcad::ErrorStatus GcDbModelerGeometry::subTransformBy(const GcGeMatrix3d&) { return Gcad::eNotApplicable; }

bool GcDbModelerGeometry::subWorldDraw(GcGiWorldDraw* draw) {
  constexpr int kLine = 1, kContinued = 3;
  std::string text;
  GcDbGroupList::Cursor cursor(m_data);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.code != kLine && group.code != kContinued) continue;
    if (group.code == kLine && !text.empty()) text += '\n';
    text += gcmodeler::cipher(toUtf8(group.text));
  }
  for (const std::vector<GcGePoint3d>& edge : gcmodeler::edgesOf(text))
    draw->geometry().polyline(static_cast<int>(edge.size()), edge.data());
  return true;
}
