#include "db/face.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbFace, "AcDbFace")

const GcDbField GcDbFace::kFields[] = {
    marker("AcDbFace"),
    field<&GcDbFace::m_vertex0>(10, "vertex0", Is::WcsPoint),
    field<&GcDbFace::m_vertex1>(11, "vertex1", Is::WcsPoint),
    field<&GcDbFace::m_vertex2>(12, "vertex2", Is::WcsPoint),
    field<&GcDbFace::m_vertex3>(13, "vertex3", Is::WcsPoint),
    field<&GcDbFace::m_hiddenEdges>(70, "hiddenEdges", Is::Plain, Write::FilesUnlessDefault),
};
GCDB_FIELD_COUNT(GcDbFace);

GcGePoint3d* GcDbFace::vertexAt(uint16_t index) {
  GcGePoint3d* const vertices[] = {&m_vertex0, &m_vertex1, &m_vertex2, &m_vertex3};
  return index < 4 ? vertices[index] : nullptr;
}

Gcad::ErrorStatus GcDbFace::getVertexAt(uint16_t index, GcGePoint3d& point) const {
  const GcGePoint3d* vertex = const_cast<GcDbFace*>(this)->vertexAt(index);
  if (vertex == nullptr) return Gcad::eInvalidIndex;
  point = *vertex;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbFace::setVertexAt(uint16_t index, const GcGePoint3d& point) {
  GcGePoint3d* vertex = vertexAt(index);
  return vertex == nullptr ? Gcad::eInvalidIndex : assign(*vertex, point);
}

bool GcDbFace::subWorldDraw(GcGiWorldDraw* draw) {
  const GcGePoint3d corners[5] = {m_vertex0, m_vertex1, m_vertex2, m_vertex3, m_vertex0};
  for (uint16_t edge = 0; edge < 4; ++edge)
    if (isEdgeVisibleAt(edge) && !(corners[edge] == corners[edge + 1])) draw->geometry().polyline(2, &corners[edge]);
  return true;
}
