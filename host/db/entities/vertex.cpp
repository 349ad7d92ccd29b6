#include "db/vertex.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbVertex, "AcDbVertex")
GCDB_DEFINE_CLASS(GcDb2dVertex, "AcDb2dVertex")
GCDB_DEFINE_CLASS(GcDb3dPolylineVertex, "AcDb3dPolylineVertex")
GCDB_DEFINE_CLASS(GcDbPolygonMeshVertex, "AcDbPolygonMeshVertex")
GCDB_DEFINE_CLASS(GcDbPolyFaceMeshVertex, "AcDbPolyFaceMeshVertex")
GCDB_DEFINE_CLASS(GcDbFaceRecord, "AcDbFaceRecord")

const GcDbField GcDbVertex::kFields[] = {marker("AcDbVertex")};
GCDB_FIELD_COUNT(GcDbVertex);

// The polyline transforms its 2D vertices: their system is its own.
const GcDbField GcDb2dVertex::kFields[] = {
    marker("AcDb2dVertex"),
    field<&GcDb2dVertex::m_position>(10, "position", Is::OcsPoint),
    field<&GcDb2dVertex::m_startWidth>(40, "startWidth", Is::Length, Write::FilesUnlessDefault),
    field<&GcDb2dVertex::m_endWidth>(41, "endWidth", Is::Length, Write::FilesUnlessDefault),
    field<&GcDb2dVertex::m_bulge>(42, "bulge", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDb2dVertex::m_identifier>(91, "identifier", Is::Plain, Write::FilesUnlessDefault).from(GcDb::kDHL_AC1024),
    field<&GcDb2dVertex::m_flags>(70, "flags", Is::Plain),
    field<&GcDb2dVertex::m_tangentRad>(50, "tangent", Is::Angle, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDb2dVertex);

#define GC_SPACE_VERTEX_ROWS(Class, name)                      \
  const GcDbField Class::kFields[] = {                         \
      marker(name),                                            \
      field<&Class::m_position>(10, "position", Is::WcsPoint), \
      field<&Class::m_flags>(70, "flags", Is::Plain),          \
  };                                                           \
  GCDB_FIELD_COUNT(Class)

GC_SPACE_VERTEX_ROWS(GcDb3dPolylineVertex, "AcDb3dPolylineVertex");
GC_SPACE_VERTEX_ROWS(GcDbPolygonMeshVertex, "AcDbPolygonMeshVertex");
GC_SPACE_VERTEX_ROWS(GcDbPolyFaceMeshVertex, "AcDbPolyFaceMeshVertex");

// Files have the face without the marker of vertices.
const GcDbField GcDbFaceRecord::kFields[] = {
    marker("AcDbFaceRecord"),
    field<&GcDbFaceRecord::m_position>(10, "position", Is::Plain),
    field<&GcDbFaceRecord::m_flags>(70, "flags", Is::Plain),
    field<&GcDbFaceRecord::m_corner0>(71, "corner0", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbFaceRecord::m_corner1>(72, "corner1", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbFaceRecord::m_corner2>(73, "corner2", Is::Plain, Write::FilesUnlessDefault),
    field<&GcDbFaceRecord::m_corner3>(74, "corner3", Is::Plain, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbFaceRecord);

int GcDbFaceRecord::vertexAt(int corner) const {
  const int16_t corners[4] = {m_corner0, m_corner1, m_corner2, m_corner3};
  return corner >= 0 && corner < 4 ? corners[corner] : 0;
}

Gcad::ErrorStatus GcDbFaceRecord::setVertexAt(int corner, int vertex) {
  int16_t* const corners[4] = {&m_corner0, &m_corner1, &m_corner2, &m_corner3};
  if (corner < 0 || corner > 3) return Gcad::eInvalidIndex;
  return assign(*corners[corner], static_cast<int16_t>(vertex));
}
