// The lightweight polyline: straight and circular segments in a plane, all vertices in one object.
#pragma once

#include "db/curve.h"

// The bulge is the tangent of a quarter of the segment's sweep, positive counter-clockwise; widths are those at the
// two ends of the segment that begins here.
struct GcDbPolylineVertex {
  GcGePoint2d point;  // own system
  double bulge = 0;
  double startWidth = 0;
  double endWidth = 0;
  int32_t identifier = 0;
};

class GcDbPolyline : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPolyline);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbPolyline() = default;
  explicit GcDbPolyline(unsigned vertexCount) { m_vertices.reserve(static_cast<int>(vertexCount)); }

  [[nodiscard]] unsigned numVerts() const { return static_cast<unsigned>(m_vertices.length()); }
  // Inserts before the vertex of the index; an index past the end is refused. A negative width stands for the width
  // all segments have (0 when they differ). Errors: eInvalidIndex.
  Gcad::ErrorStatus addVertexAt(unsigned index, const GcGePoint2d& point, double bulge = 0, double startWidth = -1,
                                double endWidth = -1, int32_t identifier = 0);
  Gcad::ErrorStatus removeVertexAt(unsigned index);
  Gcad::ErrorStatus getPointAt(unsigned index, GcGePoint2d& point) const;  // own system
  Gcad::ErrorStatus getPointAt(unsigned index, GcGePoint3d& point) const;  // world
  Gcad::ErrorStatus setPointAt(unsigned index, const GcGePoint2d& point);
  Gcad::ErrorStatus getBulgeAt(unsigned index, double& bulge) const;
  Gcad::ErrorStatus setBulgeAt(unsigned index, double bulge);
  Gcad::ErrorStatus getWidthsAt(unsigned index, double& startWidth, double& endWidth) const;
  Gcad::ErrorStatus setWidthsAt(unsigned index, double startWidth, double endWidth);
  // Errors: eInvalidInput (differing widths; a negative width to set).
  Gcad::ErrorStatus getConstantWidth(double& width) const;
  Gcad::ErrorStatus setConstantWidth(double width);
  [[nodiscard]] bool isConstantWidth() const;
  [[nodiscard]] const GcArray<GcDbPolylineVertex>& vertices() const { return m_vertices; }

  [[nodiscard]] bool isClosed() const override { return (m_flags & 1) != 0; }
  void setClosed(bool closed);
  // Dashes run on over vertices instead of beginning anew.
  [[nodiscard]] bool hasPlinegen() const { return (m_flags & 128) != 0; }
  void setPlinegen(bool on);
  [[nodiscard]] bool hasBulges() const;
  [[nodiscard]] bool isOnlyLines() const { return !hasBulges(); }
  [[nodiscard]] bool hasWidth() const;
  [[nodiscard]] double elevation() const { return m_elevation; }
  Gcad::ErrorStatus setElevation(double elevation) { return assign(m_elevation, elevation); }
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness) { return assign(m_thickness, thickness); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;
  Gcad::ErrorStatus reverseCurve() override;
  void subLoaded() override;
  // Lines and arcs.
  Gcad::ErrorStatus explode(GcDbVoidPtrArray& entities) const override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;
  GcDbCurve* subFromPath(const GcGePath& path) const override;
  [[nodiscard]] bool subKeepsPath() const override { return true; }

 private:
  [[nodiscard]] bool hasVertex(unsigned index) const { return index < numVerts(); }
  [[nodiscard]] bool hasDifferingWidths() const { return !isConstantWidth(); }
  [[nodiscard]] double commonWidth() const { return m_vertices.isEmpty() ? m_constantWidth : m_vertices[0].startWidth; }

  GcArray<GcDbPolylineVertex> m_vertices;
  double m_constantWidth = 0;  // of vertices that are read without widths; of the first one to come
  double m_elevation = 0;
  double m_thickness = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  int16_t m_flags = 0;
};
