#include "host/db/objects/filters.h"

#include <iterator>

#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbSpatialFilter, "AcDbSpatialFilter")
GCDB_DEFINE_CLASS(GcDbFieldList, "AcDbFieldList")
GCDB_DEFINE_CLASS(GcDbLayerFilter, "AcDbLayerFilter")
GCDB_DEFINE_CLASS(GcDbIdBuffer, "AcDbIdBuffer")

const GcDbField GcDbSpatialFilter::kFields[] = {
    marker("AcDbFilter"),
    marker("AcDbSpatialFilter"),
    list<&GcDbSpatialFilter::m_clip, 10>(70, "clip"),
    field<&GcDbSpatialFilter::m_normal>(210, "normal", Is::Direction),
    field<&GcDbSpatialFilter::m_origin>(11, "origin", Is::Plain),
    field<&GcDbSpatialFilter::m_isShown>(71, "isShown", Is::Plain),
    field<&GcDbSpatialFilter::m_hasFront>(72, "hasFront", Is::Plain),
    field<&GcDbSpatialFilter::m_front>(40, "front", Is::Plain).when<&GcDbSpatialFilter::clipsFront>(),
    field<&GcDbSpatialFilter::m_hasBack>(73, "hasBack", Is::Plain),
    field<&GcDbSpatialFilter::m_back>(41, "back", Is::Plain).when<&GcDbSpatialFilter::clipsBack>(),
    list<&GcDbSpatialFilter::m_matrices, 40>(-1, "matrices"),
};
GCDB_FIELD_COUNT(GcDbSpatialFilter);

namespace {

constexpr int kEntries = 12;  // three rows of four

void appendRows(const GcGeMatrix3d& matrix, GcArray<double>& entries) {
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 4; ++column) entries.append(matrix.entry[row][column]);
}

GcGeMatrix3d matrixAt(const GcArray<double>& entries, int first) {
  GcGeMatrix3d matrix;
  for (int i = 0; i < kEntries; ++i) matrix.entry[i / 4][i % 4] = entries[first + i];
  return matrix;
}

}  // namespace

Gcad::ErrorStatus GcDbSpatialFilter::setClip(const GcArray<GcGePoint2d>& outline, const GcGeMatrix3d& toWorld,
                                             const GcGeMatrix3d& reference) {
  if (outline.length() < 2) return Gcad::eInvalidInput;
  assertWriteEnabled();
  m_clip = outline;
  m_normal = toWorld.column(2).normal();
  m_origin = toWorld * GcGePoint3d();
  m_isShown = 1;
  m_matrices.clear();
  appendRows(reference.inverse(), m_matrices);
  appendRows(toWorld.inverse(), m_matrices);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbSpatialFilter::setDepth(bool hasFront, double front, bool hasBack, double back) {
  assertWriteEnabled();
  m_hasFront = hasFront ? 1 : 0;
  m_front = hasFront ? front : 0;
  m_hasBack = hasBack ? 1 : 0;
  m_back = hasBack ? back : 0;
  return Gcad::eOk;
}

GcGeMatrix3d GcDbSpatialFilter::outlineToBlock() const {
  if (m_matrices.length() != 2 * kEntries) return {};
  return matrixAt(m_matrices, 0) * matrixAt(m_matrices, kEntries).inverse();
}

const GcDbField GcDbFieldList::kFields[] = {
    marker("AcDbIdSet"),
    list<&GcDbFieldList::m_fields, 330, Is::SoftPointer>(90, "fields"),
    marker("AcDbFieldList"),
};
GCDB_FIELD_COUNT(GcDbFieldList);

const GcDbField GcDbLayerFilter::kFields[] = {
    marker("AcDbFilter"),
    marker("AcDbLayerFilter"),
    list<&GcDbLayerFilter::m_names, 8>(-1, "names"),
};
GCDB_FIELD_COUNT(GcDbLayerFilter);

const GcDbField GcDbIdBuffer::kFields[] = {
    marker("AcDbIdBuffer"),
    list<&GcDbIdBuffer::m_ids, 330, Is::SoftPointer>(-1, "ids"),
};
GCDB_FIELD_COUNT(GcDbIdBuffer);
