#include "host/db/entities/solid3d.h"

#include <iterator>
#include <string>

#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"
#include "host/db/entities/modeler_body.h"
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

// All forms of the body are moved, or none. A picture would be the former one: programs draw it anew.
Gcad::ErrorStatus GcDbModelerGeometry::subTransformBy(const GcGeMatrix3d& transform) {
  if (!transform.isUniScaledOrtho()) return Gcad::eCannotScaleNonUniformly;
  GcArray<GcDbModelerLine> lines = m_lines;
  GcArray<uint8_t> bytes = m_bytes, second = m_second;
  if (!gcmodeler::moveBody(lines, bytes, transform) || !gcmodeler::moveBytes(second, transform))
    return Gcad::eNotApplicable;
  m_lines = std::move(lines);
  m_bytes = std::move(bytes);
  m_second = std::move(second);
  m_picture.clear();
  return Gcad::eOk;
}

namespace {

// The codes of what a kind of surface is made by: points, ways and matrices from where it was made to the world.
struct Making {
  const GcRxClass* (*kind)();
  int16_t point, way;  // 0: none
  int16_t matrices[2];
};
constexpr Making kMakings[] = {
    {[]() -> const GcRxClass* { return GcDbExtrudedSurface::desc(); }, 0, 10, {40, 0}},
    {[]() -> const GcRxClass* { return GcDbSweptSurface::desc(); }, 0, 0, {40, 41}},
    {[]() -> const GcRxClass* { return GcDbRevolvedSurface::desc(); }, 10, 11, {42, 0}},
    {[]() -> const GcRxClass* { return GcDbLoftedSurface::desc(); }, 0, 0, {40, 0}},
};

// Sixteen reals by rows.
class GroupMatrix {
 public:
  static constexpr int kSize = 16;
  void put(double value) {
    if (m_count < kSize) m_matrix.entry[m_count / 4][m_count % 4] = value;
    ++m_count;
  }
  [[nodiscard]] bool isWhole() const { return m_count == kSize; }
  [[nodiscard]] const GcGeMatrix3d& matrix() const { return m_matrix; }

 private:
  GcGeMatrix3d m_matrix;
  int m_count = 0;
};

GroupMatrix matrixIn(const GcDbGroupList& groups, int code) {
  GroupMatrix found;
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);)
    if (group.code == code && group.kind == GcDbGroupKind::Real) found.put(group.real);
  return found;
}

GcDbGroupList moved(const GcDbGroupList& groups, const Making& making, const GcGeMatrix3d& transform) {
  GcGeMatrix3d matrices[2];
  bool isMatrix[2] = {};
  for (int i = 0; i < 2; ++i) {
    const GroupMatrix found = matrixIn(groups, making.matrices[i]);
    isMatrix[i] = making.matrices[i] != 0 && found.isWhole();
    matrices[i] = transform * found.matrix();
  }
  GcDbGroupList made;
  int done[2] = {};
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) {
    if (group.kind == GcDbGroupKind::Point3d && group.code == making.point) group.point = transform * group.point;
    if (group.kind == GcDbGroupKind::Point3d && group.code == making.way)
      group.point = GcGePoint3d() + transform * group.point.asVector();
    for (int i = 0; i < 2; ++i) {
      if (!isMatrix[i] || group.code != making.matrices[i] || group.kind != GcDbGroupKind::Real) continue;
      group.real = matrices[i].entry[done[i] / 4][done[i] % 4];
      ++done[i];
    }
    made.put(group);
  }
  return made;
}

}  // namespace

Gcad::ErrorStatus GcDbSurface::subTransformBy(const GcGeMatrix3d& transform) {
  const Gcad::ErrorStatus status = GcDbModelerGeometry::subTransformBy(transform);
  if (status != Gcad::eOk) return status;
  for (const Making& making : kMakings)
    if (isA() == making.kind()) m_shapeData = moved(m_shapeData, making, transform);
  return Gcad::eOk;
}

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
