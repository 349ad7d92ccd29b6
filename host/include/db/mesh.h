// Meshes of the older kind: a grid of vertices, or vertices with faces that name them.
#pragma once

#include "db/objectiterator.h"
#include "db/vertex.h"

// Flags: 1 closed in M, 4 smoothed by a surface, 16 always, 32 closed in N.
class GcDbPolygonMesh : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPolygonMesh);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbPolygonMesh() = default;
  Gcad::ErrorStatus appendVertex(GcDbObjectId& id, GcDbPolygonMeshVertex* vertex);
  [[nodiscard]] GcDbObjectIterator* vertexIterator() const;
  [[nodiscard]] int mSize() const { return m_mSize; }
  Gcad::ErrorStatus setMSize(int size) { return assign(m_mSize, static_cast<int16_t>(size)); }
  [[nodiscard]] int nSize() const { return m_nSize; }
  Gcad::ErrorStatus setNSize(int size) { return assign(m_nSize, static_cast<int16_t>(size)); }
  [[nodiscard]] bool isMClosed() const { return (m_flags & 1) != 0; }
  [[nodiscard]] bool isNClosed() const { return (m_flags & 32) != 0; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  int16_t m_flags = 16;
  int16_t m_mSize = 0;
  int16_t m_nSize = 0;
  int16_t m_mDensity = 0;
  int16_t m_nDensity = 0;
  int16_t m_surfaceType = 0;
};

// Flags: 64 always.
class GcDbPolyFaceMesh : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPolyFaceMesh);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbPolyFaceMesh() = default;
  // All vertices come before the first face.
  Gcad::ErrorStatus appendVertex(GcDbObjectId& id, GcDbPolyFaceMeshVertex* vertex);
  Gcad::ErrorStatus appendFaceRecord(GcDbObjectId& id, GcDbFaceRecord* face);
  [[nodiscard]] GcDbObjectIterator* vertexIterator() const;
  [[nodiscard]] int numVertices() const { return m_vertexCount; }
  [[nodiscard]] int numFaces() const { return m_faceCount; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  int16_t m_flags = 64;
  int16_t m_vertexCount = 0;
  int16_t m_faceCount = 0;
};
