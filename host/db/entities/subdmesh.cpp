#include "host/db/entities/subdmesh.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "gi/drawable.h"
#include "host/db/describe/fieldio.h"
#include "host/db/describe/rest.h"

GCDB_DEFINE_CLASS(GcDbSubDMesh, "AcDbSubDMesh")

namespace {

constexpr GcDbField kEdgeFields[] = {
    field<&GcDbMeshEdge::from>(90, "from", Is::Plain),
    field<&GcDbMeshEdge::to>(90, "to", Is::Plain),
};

}  // namespace

const GcDbField GcDbSubDMesh::kFields[] = {
    marker("AcDbSubDMesh"),
    field<&GcDbSubDMesh::m_version>(71, "version", Is::Plain),
    field<&GcDbSubDMesh::m_blendCrease>(72, "blendCrease", Is::Plain),
    field<&GcDbSubDMesh::m_level>(91, "level", Is::Plain),
    list<&GcDbSubDMesh::m_vertices, 10, Is::WcsPoint>(92, "vertices"),
    list<&GcDbSubDMesh::m_faces, 90>(93, "faces"),
    each<&GcDbSubDMesh::m_edges>(94, "edges", kEdgeFields),
    list<&GcDbSubDMesh::m_creases, 140>(95, "creases"),
    rest<&GcDbSubDMesh::m_overrides>("overrides"),
};
GCDB_FIELD_COUNT(GcDbSubDMesh);

bool GcDbSubDMesh::subWorldDraw(GcGiWorldDraw* draw) {
  std::set<std::pair<int32_t, int32_t>> drawn;
  const auto isVertex = [&](int32_t index) { return index >= 0 && index < m_vertices.length(); };
  for (int at = 0; at < m_faces.length();) {
    const int32_t size = m_faces[at++];
    if (size < 2 || size > m_faces.length() - at) break;  // damaged: what follows is no face
    for (int32_t i = 0; i < size; ++i) {
      const int32_t a = m_faces[at + i], b = m_faces[at + (i + 1) % size];
      if (!isVertex(a) || !isVertex(b) || !drawn.insert(std::minmax(a, b)).second) continue;
      const GcGePoint3d ends[2] = {m_vertices[a], m_vertices[b]};
      draw->geometry().polyline(2, ends);
    }
    at += size;
  }
  return true;
}
