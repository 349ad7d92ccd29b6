// Vertices of the older polylines and of meshes: entities of their own, owned by the polyline.
#pragma once

#include "db/entity.h"

class GcDbVertex : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbVertex);
  static const GcDbField kFields[];
  static const int kFieldCount;

 protected:
  GcDbVertex() = default;
};

// Flags: 1 added by curve fitting, 2 has a tangent, 8 added by spline fitting, 16 control point of a spline.
class GcDb2dVertex : public GcDbVertex {
 public:
  GCRX_DECLARE_MEMBERS(GcDb2dVertex);
  static const GcDbField kFields[];
  static const int kFieldCount;

  enum Vertex2dType : uint8_t { k2dVertex = 0, k2dCurveFitVertex = 1, k2dSplineFitVertex = 8, k2dSplineCtlVertex = 16 };

  GcDb2dVertex() = default;
  explicit GcDb2dVertex(const GcGePoint3d& position, double bulge = 0, double startWidth = 0, double endWidth = 0)
      : m_position(position), m_bulge(bulge), m_startWidth(startWidth), m_endWidth(endWidth) {}

  // In the polyline's own system.
  [[nodiscard]] GcGePoint3d position() const { return m_position; }
  Gcad::ErrorStatus setPosition(const GcGePoint3d& position) { return assign(m_position, position); }
  [[nodiscard]] double bulge() const { return m_bulge; }
  Gcad::ErrorStatus setBulge(double bulge) { return assign(m_bulge, bulge); }
  [[nodiscard]] double startWidth() const { return m_startWidth; }
  Gcad::ErrorStatus setStartWidth(double width) { return assign(m_startWidth, width); }
  [[nodiscard]] double endWidth() const { return m_endWidth; }
  Gcad::ErrorStatus setEndWidth(double width) { return assign(m_endWidth, width); }
  [[nodiscard]] double tangent() const { return m_tangentRad; }
  Gcad::ErrorStatus setTangent(double angleRad) { return assign(m_tangentRad, angleRad); }
  [[nodiscard]] bool isTangentUsed() const { return (m_flags & 2) != 0; }
  [[nodiscard]] Vertex2dType vertexType() const { return static_cast<Vertex2dType>(m_flags & 25); }
  [[nodiscard]] int flags() const { return m_flags; }
  Gcad::ErrorStatus setFlags(int flags) { return assign(m_flags, static_cast<int16_t>(flags)); }

 private:
  friend class GcDb2dPolyline;
  GcGePoint3d m_position;
  double m_bulge = 0;
  double m_startWidth = 0;
  double m_endWidth = 0;
  double m_tangentRad = 0;
  int32_t m_identifier = 0;
  int16_t m_flags = 0;
};

// A vertex that is a point in space with flags: of 3D polylines and of the two kinds of meshes.
class GcDbSpaceVertex : public GcDbVertex {
 public:
  [[nodiscard]] GcGePoint3d position() const { return m_position; }
  Gcad::ErrorStatus setPosition(const GcGePoint3d& position) { return assign(m_position, position); }
  [[nodiscard]] int flags() const { return m_flags; }
  Gcad::ErrorStatus setFlags(int flags) { return assign(m_flags, static_cast<int16_t>(flags)); }

 protected:
  GcDbSpaceVertex(const GcGePoint3d& position, int flags)
      : m_position(position), m_flags(static_cast<int16_t>(flags)) {}
  GcGePoint3d m_position;
  int16_t m_flags;
};

class GcDb3dPolylineVertex : public GcDbSpaceVertex {
 public:
  GCRX_DECLARE_MEMBERS(GcDb3dPolylineVertex);
  static const GcDbField kFields[];
  static const int kFieldCount;
  explicit GcDb3dPolylineVertex(const GcGePoint3d& position = {}) : GcDbSpaceVertex(position, 32) {}
};

class GcDbPolygonMeshVertex : public GcDbSpaceVertex {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPolygonMeshVertex);
  static const GcDbField kFields[];
  static const int kFieldCount;
  explicit GcDbPolygonMeshVertex(const GcGePoint3d& position = {}) : GcDbSpaceVertex(position, 64) {}
};

class GcDbPolyFaceMeshVertex : public GcDbSpaceVertex {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPolyFaceMeshVertex);
  static const GcDbField kFields[];
  static const int kFieldCount;
  explicit GcDbPolyFaceMeshVertex(const GcGePoint3d& position = {}) : GcDbSpaceVertex(position, 192) {}
};

// A face of a polyface mesh: one-based numbers of its vertices, negative where the edge that begins there is hidden.
class GcDbFaceRecord : public GcDbVertex {
 public:
  GCRX_DECLARE_MEMBERS(GcDbFaceRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  // Corner 0 to 3; 0 where there is none.
  [[nodiscard]] int vertexAt(int corner) const;
  Gcad::ErrorStatus setVertexAt(int corner, int vertex);

 private:
  GcGePoint3d m_position;  // files give one; it means nothing
  int16_t m_flags = 128;
  int16_t m_corner0 = 0;
  int16_t m_corner1 = 0;
  int16_t m_corner2 = 0;
  int16_t m_corner3 = 0;
};
