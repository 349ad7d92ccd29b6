#include "db/mesh.h"

#include <cstdlib>
#include <iterator>

#include "host/db/describe/fieldio.h"
#include "host/db/entities/sequence.h"

GCDB_DEFINE_CLASS(GcDbPolygonMesh, "AcDbPolygonMesh")
GCDB_DEFINE_CLASS(GcDbPolyFaceMesh, "AcDbPolyFaceMesh")

namespace {

constexpr GcDbField originRow() {
  GcDbField row = fixed<10, 0>("origin");
  row.get = [](const void*) { return GcDbGroup::ofPoint(10, {}); };
  return row;
}

}  // namespace

const GcDbField GcDbPolygonMesh::kFields[] = {
    marker("AcDbPolygonMesh"),
    fixed<66, 1>("verticesFollow"),
    originRow(),
    field<&GcDbPolygonMesh::m_flags>(70, "flags", Is::Plain),
    field<&GcDbPolygonMesh::m_mSize>(71, "mSize", Is::Plain),
    field<&GcDbPolygonMesh::m_nSize>(72, "nSize", Is::Plain),
    field<&GcDbPolygonMesh::m_mDensity>(73, "mDensity", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbPolygonMesh::m_nDensity>(74, "nDensity", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbPolygonMesh::m_surfaceType>(75, "surfaceType", Is::Plain, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbPolygonMesh);

const GcDbField GcDbPolyFaceMesh::kFields[] = {
    marker("AcDbPolyFaceMesh"),
    fixed<66, 1>("verticesFollow"),
    originRow(),
    field<&GcDbPolyFaceMesh::m_flags>(70, "flags", Is::Plain),
    field<&GcDbPolyFaceMesh::m_vertexCount>(71, "vertexCount", Is::Plain),
    field<&GcDbPolyFaceMesh::m_faceCount>(72, "faceCount", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbPolyFaceMesh);

Gcad::ErrorStatus GcDbPolygonMesh::appendVertex(GcDbObjectId& id, GcDbPolygonMeshVertex* vertex) {
  return gcsequence::append(*this, vertex, id);
}

GcDbObjectIterator* GcDbPolygonMesh::vertexIterator() const {
  GcDbObjectIdArray ids;
  gcsequence::collect(*this, GcDbPolygonMeshVertex::desc(), ids);
  return new GcDbObjectIterator(ids);
}

bool GcDbPolygonMesh::subWorldDraw(GcGiWorldDraw* draw) {
  constexpr int kControlPoint = 16;
  GcArray<GcGePoint3d> grid;
  const bool smooth = (m_flags & 4) != 0;
  gcsequence::forEach<GcDbPolygonMeshVertex>(*this, [&](const GcDbPolygonMeshVertex& vertex) {
    if (!smooth || (vertex.flags() & kControlPoint) == 0) grid.append(vertex.position());
  });
  const int rows = smooth ? m_mDensity : m_mSize;
  const int columns = smooth ? m_nDensity : m_nSize;
  if (rows < 2 || columns < 2 || grid.length() < rows * columns) return true;
  for (int m = 0; m < rows; ++m) draw->geometry().polyline(columns, &grid[m * columns], isNClosed());
  GcArray<GcGePoint3d> across;
  for (int n = 0; n < columns; ++n) {
    across.clear();
    for (int m = 0; m < rows; ++m) across.append(grid[m * columns + n]);
    draw->geometry().polyline(rows, across.begin(), isMClosed());
  }
  return true;
}

Gcad::ErrorStatus GcDbPolyFaceMesh::appendVertex(GcDbObjectId& id, GcDbPolyFaceMeshVertex* vertex) {
  const Gcad::ErrorStatus status = gcsequence::append(*this, vertex, id);
  if (status == Gcad::eOk) ++m_vertexCount;
  return status;
}

Gcad::ErrorStatus GcDbPolyFaceMesh::appendFaceRecord(GcDbObjectId& id, GcDbFaceRecord* face) {
  const Gcad::ErrorStatus status = gcsequence::append(*this, face, id);
  if (status == Gcad::eOk) ++m_faceCount;
  return status;
}

GcDbObjectIterator* GcDbPolyFaceMesh::vertexIterator() const {
  GcDbObjectIdArray ids;
  gcsequence::collect(*this, GcDbVertex::desc(), ids);
  return new GcDbObjectIterator(ids);
}

bool GcDbPolyFaceMesh::subWorldDraw(GcGiWorldDraw* draw) {
  GcArray<GcGePoint3d> vertices;
  gcsequence::forEach<GcDbPolyFaceMeshVertex>(
      *this, [&](const GcDbPolyFaceMeshVertex& vertex) { vertices.append(vertex.position()); });
  gcsequence::forEach<GcDbFaceRecord>(*this, [&](const GcDbFaceRecord& face) {
    int corners = 0;
    while (corners < 4 && face.vertexAt(corners) != 0) ++corners;
    for (int i = 0; i < corners; ++i) {
      const int from = face.vertexAt(i);
      const int to = std::abs(face.vertexAt((i + 1) % corners));
      if (from <= 0 || from > vertices.length() || to > vertices.length()) continue;
      const GcGePoint3d edge[2] = {vertices[from - 1], vertices[to - 1]};
      draw->geometry().polyline(2, edge);
    }
  });
  return true;
}
