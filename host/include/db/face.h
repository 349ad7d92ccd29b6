// A face in space with three or four corners, whose edges may be hidden one by one.
#pragma once

#include "db/entity.h"

class GcDbFace : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbFace);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbFace() = default;
  GcDbFace(const GcGePoint3d& p0, const GcGePoint3d& p1, const GcGePoint3d& p2, const GcGePoint3d& p3)
      : m_vertex0(p0), m_vertex1(p1), m_vertex2(p2), m_vertex3(p3) {}

  // Vertices 0 to 3. Errors: eInvalidIndex.
  Gcad::ErrorStatus getVertexAt(uint16_t index, GcGePoint3d& point) const;
  Gcad::ErrorStatus setVertexAt(uint16_t index, const GcGePoint3d& point);
  // Edge 0 leads from vertex 0 to vertex 1, and so on.
  [[nodiscard]] bool isEdgeVisibleAt(uint16_t index) const { return (m_hiddenEdges >> index & 1) == 0; }
  Gcad::ErrorStatus setHiddenEdges(int bits) { return assign(m_hiddenEdges, static_cast<int16_t>(bits)); }

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  [[nodiscard]] GcGePoint3d* vertexAt(uint16_t index);
  GcGePoint3d m_vertex0, m_vertex1, m_vertex2, m_vertex3;
  int16_t m_hiddenEdges = 0;
};
