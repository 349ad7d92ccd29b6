// Leaders: a line of points with an arrowhead, leading to a text, a block or nothing.
#pragma once

#include "db/curve.h"

class GcDbLeader : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLeader);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum AnnoType : uint8_t { kMText = 0, kFcf = 1, kBlockRef = 2, kNoAnno = 3 };

  GcDbLeader() = default;

  [[nodiscard]] int numVertices() const { return m_vertices.length(); }
  [[nodiscard]] GcGePoint3d vertexAt(int index) const { return m_vertices[index]; }
  [[nodiscard]] const GcArray<GcGePoint3d>& vertices() const { return m_vertices; }
  bool appendVertex(const GcGePoint3d& point);
  bool setVertexAt(int index, const GcGePoint3d& point);
  void removeLastVertex();
  [[nodiscard]] GcGePoint3d firstVertex() const { return m_vertices.isEmpty() ? GcGePoint3d() : m_vertices[0]; }
  [[nodiscard]] GcGePoint3d lastVertex() const { return m_vertices.isEmpty() ? GcGePoint3d() : m_vertices.last(); }
  [[nodiscard]] bool isArrowHeadEnabled() const { return m_hasArrow; }
  Gcad::ErrorStatus enableArrowHead() { return assign(m_hasArrow, true); }
  Gcad::ErrorStatus disableArrowHead() { return assign(m_hasArrow, false); }
  [[nodiscard]] bool isSplined() const { return m_pathType == 1; }
  [[nodiscard]] bool hasHookLine() const { return m_hasHook; }
  [[nodiscard]] GcDbObjectId dimensionStyle() const { return m_styleId; }
  Gcad::ErrorStatus setDimensionStyle(GcDbObjectId id);
  [[nodiscard]] AnnoType annoType() const { return static_cast<AnnoType>(m_annoType); }
  [[nodiscard]] GcDbObjectId annotationObjId() const { return m_annotationId; }
  // Errors: eNotThatKindOfClass for anything but paragraph text, a tolerance or a block reference.
  Gcad::ErrorStatus attachAnnotation(GcDbObjectId id);
  Gcad::ErrorStatus detachAnnotation();
  // Moves the last vertex to where the annotation stands. eOk too without one.
  Gcad::ErrorStatus evaluateLeader();
  // The arrowhead block of this leader, whatever its style says; an empty name is the closed filled arrow.
  // Errors: eKeyNotFound for a block the drawing lacks and no arrowhead is called by.
  Gcad::ErrorStatus setDimldrblk(const GCHAR* name);
  [[nodiscard]] GcDbObjectId dimldrblk() const;
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  void subAppended() override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 protected:
  [[nodiscard]] bool subKeepsPath() const override { return true; }

 private:
  GcArray<GcGePoint3d> m_vertices;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  GcGeVector3d m_xDirection = GcGeVector3d::kXAxis;
  GcGeVector3d m_offsetToBlock;
  GcGeVector3d m_offsetToText;
  GcGePoint3d m_endProjection;  // in DWG records only
  double m_annoHeight = 0;
  double m_annoWidth = 0;
  GcDbObjectId m_styleId;
  GcDbObjectId m_annotationId;
  int16_t m_pathType = 0;
  int16_t m_annoType = kNoAnno;
  int16_t m_byBlockColor = 7;
  int16_t m_arrowType = 0;  // in DWG records only
  bool m_hasArrow = true;
  bool m_hookAlongX = false;
  bool m_hasHook = false;
};
