#include "db/leader.h"

#include <iterator>

#include "db/blockreference.h"
#include "db/database.h"
#include "db/mtext.h"
#include "db/tolerance.h"
#include "host/db/describe/fieldio.h"
#include "host/db/entities/dimoverride.h"
#include "host/db/entities/draw_path.h"

GCDB_DEFINE_CLASS(GcDbLeader, "AcDbLeader")

const GcDbField GcDbLeader::kFields[] = {
    marker("AcDbLeader"),
    field<&GcDbLeader::m_styleId>(3, "dimensionStyle", Is::DimStyleName),
    field<&GcDbLeader::m_hasArrow>(71, "hasArrow", Is::Plain).orElse(1),
    field<&GcDbLeader::m_pathType>(72, "pathType", Is::Plain),
    field<&GcDbLeader::m_annoType>(73, "annotationType", Is::Plain).orElse(3),
    field<&GcDbLeader::m_hookAlongX>(74, "hookAlongX", Is::Plain),
    field<&GcDbLeader::m_hasHook>(75, "hasHook", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbLeader::m_annoHeight>(40, "annotationHeight", Is::Length),
    field<&GcDbLeader::m_annoWidth>(41, "annotationWidth", Is::Length),
    each<&GcDbLeader::m_vertices>(76, "vertices", gcdescribe::BareRow<GcGePoint3d, 10, Is::WcsPoint>::kRow),
    field<&GcDbLeader::m_byBlockColor>(77, "byBlockColor", Is::Plain, Write::FilesUnlessDefault).orElse(7),
    field<&GcDbLeader::m_annotationId>(340, "annotation", Is::HardPointer, Write::UnlessDefault),
    field<&GcDbLeader::m_normal>(210, "normal", Is::Direction, Write::FilesUnlessDefault).orAxis(2),
    field<&GcDbLeader::m_xDirection>(211, "xDirection", Is::Direction, Write::FilesUnlessDefault).orAxis(0),
    field<&GcDbLeader::m_offsetToBlock>(212, "offsetToBlock", Is::WcsVector, Write::FilesUnlessDefault),
    field<&GcDbLeader::m_offsetToText>(213, "offsetToText", Is::WcsVector, Write::FilesUnlessDefault)
        .from(GcDb::kDHL_AC1014),
    field<&GcDbLeader::m_arrowType>(-71, "arrowType", Is::Plain),
    field<&GcDbLeader::m_endProjection>(-10, "endProjection", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbLeader);

bool GcDbLeader::appendVertex(const GcGePoint3d& point) {
  assertWriteEnabled();
  if (!m_vertices.isEmpty() && m_vertices.last() == point) return false;
  m_vertices.append(point);
  return true;
}

bool GcDbLeader::setVertexAt(int index, const GcGePoint3d& point) {
  if (index < 0 || index >= m_vertices.length()) return false;
  assertWriteEnabled();
  m_vertices[index] = point;
  return true;
}

void GcDbLeader::removeLastVertex() {
  assertWriteEnabled();
  if (!m_vertices.isEmpty()) m_vertices.removeLast();
}

Gcad::ErrorStatus GcDbLeader::setDimensionStyle(GcDbObjectId id) {
  if (id.objectClass() != GcDbDimStyleTableRecord::desc()) return Gcad::eInvalidInput;
  return assign(m_styleId, id);
}

Gcad::ErrorStatus GcDbLeader::attachAnnotation(GcDbObjectId id) {
  const GcRxClass* kind = id.objectClass();
  if (kind == nullptr) return Gcad::eNullObjectId;
  AnnoType type = kNoAnno;
  if (kind->isDerivedFrom(GcDbMText::desc())) type = kMText;
  if (kind->isDerivedFrom(GcDbFcf::desc())) type = kFcf;
  if (kind->isDerivedFrom(GcDbBlockReference::desc())) type = kBlockRef;
  if (type == kNoAnno) return Gcad::eNotThatKindOfClass;
  assertWriteEnabled();
  m_annotationId = id;
  m_annoType = static_cast<int16_t>(type);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLeader::detachAnnotation() {
  assertWriteEnabled();
  m_annotationId.setNull();
  m_annoType = kNoAnno;
  return Gcad::eOk;
}

namespace {

// Where the annotation stands, in world coordinates.
bool placeOf(GcDbObjectId annotation, GcGePoint3d& place) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, annotation, GcDb::kForRead) != Gcad::eOk) return false;
  bool found = true;
  if (const auto* text = GcDbMText::cast(entity))
    place = text->location();
  else if (const auto* frame = GcDbFcf::cast(entity))
    place = frame->location();
  else if (const auto* block = GcDbBlockReference::cast(entity))
    place = block->position();
  else
    found = false;
  ignore(entity->close());
  return found;
}

}  // namespace

Gcad::ErrorStatus GcDbLeader::evaluateLeader() {
  assertWriteEnabled();
  GcGePoint3d place;
  if (m_vertices.length() < 2 || !placeOf(m_annotationId, place)) return Gcad::eOk;
  const GcGeVector3d& offset = m_annoType == kBlockRef ? m_offsetToBlock : m_offsetToText;
  m_vertices.last() = place + offset;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLeader::setDimldrblk(const GCHAR* name) {
  return gcdimoverride::setArrow(*this, gcdimoverride::kLeaderArrow, name);
}

GcDbObjectId GcDbLeader::dimldrblk() const { return gcdimoverride::arrow(*this, gcdimoverride::kLeaderArrow); }

void GcDbLeader::subAppended() {
  if (m_styleId.isNull()) m_styleId = database()->dimstyle();
}

bool GcDbLeader::subWorldDraw(GcGiWorldDraw* draw) {
  const int count = m_vertices.length();
  if (count < 2) return true;
  GcArray<GcGePoint3d> line(m_vertices);
  const GcGeVector3d first = line[1] - line[0];
  const double covered = m_hasArrow ? gcdimoverride::drawArrow(*draw, *this, m_styleId, line[0], line[1], m_normal) : 0;
  GcGePath path;
  if (isSplined() && subPath(path) == Gcad::eOk) {
    gcdraw::path(*draw, path);
    return true;
  }
  if (covered > 0 && covered < first.length()) line[0] = line[0] + first.normal() * covered;
  draw->geometry().polyline(count, line.begin());
  return true;
}
