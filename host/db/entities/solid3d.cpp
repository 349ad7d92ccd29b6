#include "host/db/entities/solid3d.h"

#include <iterator>
#include <string>

#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"
#include "host/db/entities/modeler_edges.h"
#include "host/db/entities/modeler_rows.h"
#include "host/db/entities/modeler_text.h"

GCDB_DEFINE_CLASS(GcDbModelerGeometry, "AcDbModelerGeometry")
GCDB_DEFINE_CLASS(GcDb3dSolid, "AcDb3dSolid")
GCDB_DEFINE_CLASS(GcDbBody, "AcDbBody")
GCDB_DEFINE_CLASS(GcDbSurface, "AcDbSurface")

struct GcDbModelerFiling {
  using Revision = gcmodeler::RevisionFiling<&GcDbModelerGeometry::m_revisionId>;
};

const GcDbField GcDbModelerGeometry::kFields[] = {
    marker("AcDbModelerGeometry"),
    field<&GcDbModelerGeometry::m_hasRevision>(290, "hasRevision", Is::Plain).from(GcDb::kDHL_AC1027),
    field<&GcDbModelerGeometry::m_revisionId>(gcmodeler::kRevisionCode, "revisionId", Is::Plain)
        .filedAs(GcDbModelerFiling::Revision::get, GcDbModelerFiling::Revision::set)
        .from(GcDb::kDHL_AC1027),
    field<&GcDbModelerGeometry::m_version>(70, "version", Is::Plain).orElse(1).until(GcDb::kDHL_AC1027),
    field<&GcDbModelerGeometry::m_version>(70, "textVersion", Is::Plain)
        .orElse(1)
        .from(GcDb::kDHL_AC1027)
        .inFilesWhen<&GcDbModelerGeometry::hasText>()
        .echo(),
    each<&GcDbModelerGeometry::m_lines>(-1, "lines", gcmodeler::kLineFields).until(GcDb::kDHL_AC1027),
    each<&GcDbModelerGeometry::m_lines>(-1, "textLines", gcmodeler::kLineFields)
        .from(GcDb::kDHL_AC1027)
        .inFilesWhen<&GcDbModelerGeometry::hasText>()
        .echo(),
    gcmodeler::notInGroups(field<&GcDbModelerGeometry::m_bytes>(310, "bytes", Is::Plain)),
    gcmodeler::notInGroups(field<&GcDbModelerGeometry::m_picture>(-1, "picture", Is::Plain)),
    gcmodeler::notInGroups(field<&GcDbModelerGeometry::m_second>(311, "second", Is::Plain)),
};
GCDB_FIELD_COUNT(GcDbModelerGeometry);

const GcDbField GcDb3dSolid::kFields[] = {
    marker("AcDb3dSolid").from(GcDb::kDHL_AC1021),
    field<&GcDb3dSolid::m_history>(350, "history", Is::SoftOwner).from(GcDb::kDHL_AC1021),
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

void GcDbModelerGeometry::setBytes(const GcArray<uint8_t>& bytes) {
  assertWriteEnabled();
  m_bytes = bytes;
}

bool GcDbModelerGeometry::subWorldDraw(GcGiWorldDraw* draw) {
  std::string text;
  if (hasText())
    text = gcmodeler::textOf(m_lines);
  else
    gcmodeler::textOfBinary({reinterpret_cast<const char*>(m_bytes.begin()), static_cast<size_t>(m_bytes.length())},
                            text);
  for (const std::vector<GcGePoint3d>& edge : gcmodeler::edgesOf(text))
    draw->geometry().polyline(static_cast<int>(edge.size()), edge.data());
  return true;
}
