// Meshes of faces that can be subdivided to smoother ones.
#pragma once

#include "db/entity.h"
#include "host/db/describe/group.h"
#include "host/db/describe/recordof.h"

struct GcDbMeshEdge {
  int32_t from = 0, to = 0;  // vertices
};

class GcDbSubDMesh : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSubDMesh);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbSubDMesh() = default;
  // The edges of its faces, each once, before any subdivision.
  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  friend struct GcDbRecordOf<GcDbSubDMesh>;

  int16_t m_version = 2;
  bool m_blendCrease = false;
  int32_t m_level = 0;  // how often it is subdivided when it is shown
  GcArray<GcGePoint3d> m_vertices;
  GcArray<int32_t> m_faces;  // of each face the number of its vertices and their indexes
  GcArray<GcDbMeshEdge> m_edges;
  GcArray<double> m_creases;  // of each edge
  GcDbGroupList m_overrides;  // looks of single faces, edges and vertices, as they came
};
