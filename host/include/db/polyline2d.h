// The older polylines, whose vertices are entities of their own: plane with bulges and fitted curves, or in space.
#pragma once

#include "db/curve.h"
#include "db/objectiterator.h"
#include "db/vertex.h"

class GcDbPolyline;

namespace GcDb {
enum Poly2dType : uint8_t { k2dSimplePoly = 0, k2dFitCurvePoly, k2dQuadSplinePoly, k2dCubicSplinePoly };
enum Poly3dType : uint8_t { k3dSimplePoly = 0, k3dQuadSplinePoly, k3dCubicSplinePoly };
}  // namespace GcDb

// Flags: 1 closed, 2 fitted by arcs, 4 fitted by a spline, 128 dashes run on over vertices.
class GcDb2dPolyline : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDb2dPolyline);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDb2dPolyline() = default;

  // Takes a new vertex, which stays open for write. The polyline must be in a database.
  Gcad::ErrorStatus appendVertex(GcDbObjectId& id, GcDb2dVertex* vertex);
  Gcad::ErrorStatus appendVertex(GcDb2dVertex* vertex);
  // Vertices in order, those that only carry a fitted curve included.
  [[nodiscard]] GcDbObjectIterator* vertexIterator() const;
  void vertexIds(GcDbObjectIdArray& ids) const;

  [[nodiscard]] GcDb::Poly2dType polyType() const;
  [[nodiscard]] bool isClosed() const override { return (m_flags & 1) != 0; }
  Gcad::ErrorStatus makeClosed() { return setFlag(1, true); }
  Gcad::ErrorStatus makeOpen() { return setFlag(1, false); }
  [[nodiscard]] bool isLinetypeGenerationOn() const { return (m_flags & 128) != 0; }
  Gcad::ErrorStatus setLinetypeGenerationOn() { return setFlag(128, true); }
  Gcad::ErrorStatus setLinetypeGenerationOff() { return setFlag(128, false); }
  [[nodiscard]] double elevation() const { return m_elevation; }
  Gcad::ErrorStatus setElevation(double elevation);
  [[nodiscard]] double defaultStartWidth() const { return m_startWidth; }
  Gcad::ErrorStatus setDefaultStartWidth(double width) { return assign(m_startWidth, width); }
  [[nodiscard]] double defaultEndWidth() const { return m_endWidth; }
  Gcad::ErrorStatus setDefaultEndWidth(double width) { return assign(m_endWidth, width); }
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness) { return assign(m_thickness, thickness); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] bool isPlanar() const override { return true; }
  [[nodiscard]] int flags() const { return m_flags; }
  Gcad::ErrorStatus setFlags(int flags) { return assign(m_flags, static_cast<int16_t>(flags)); }
  Gcad::ErrorStatus setCurveType(int type) { return assign(m_curveType, static_cast<int16_t>(type)); }

  // Takes the place of a lightweight polyline that is open for write: id, handle, owner, place in the drawing order,
  // common properties, extended data, geometry. This polyline, which must be new, is then open for write; the
  // lightweight one is in no database any more and belongs to the caller. Errors: eNullEntityPointer, eAlreadyInDb,
  // eNotInDatabase, eNotOpenForWrite.
  Gcad::ErrorStatus convertFrom(GcDbPolyline* lightweight);
  // Makes or takes away the vertices of a fitted curve. Fit: arcs through the vertices, with the tangents of vertices
  // that have one. Splines: the vertices become control points and $SPLINESEGS points per span lie on the curve. Back to
  // simple all segments are straight; a simple polyline that stays simple keeps its arcs.
  // [polyline in a database, open for write] Errors: eNotInDatabase, eInvalidInput.
  Gcad::ErrorStatus convertToPolyType(GcDb::Poly2dType type);

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;
  GcDbCurve* subFromPath(const GcGePath& path) const override;

 private:
  Gcad::ErrorStatus setFlag(int bit, bool on);
  [[nodiscard]] double oneWidth() const;
  double m_elevation = 0;
  double m_thickness = 0;
  double m_startWidth = 0;
  double m_endWidth = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  int16_t m_flags = 0;
  int16_t m_curveType = 0;  // 0 none, 5 quadratic, 6 cubic
};

// Flags: 1 closed, 4 fitted by a spline, 8 always.
class GcDb3dPolyline : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDb3dPolyline);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDb3dPolyline() = default;

  Gcad::ErrorStatus appendVertex(GcDbObjectId& id, GcDb3dPolylineVertex* vertex);
  Gcad::ErrorStatus appendVertex(GcDb3dPolylineVertex* vertex);
  [[nodiscard]] GcDbObjectIterator* vertexIterator() const;
  void vertexIds(GcDbObjectIdArray& ids) const;
  [[nodiscard]] GcDb::Poly3dType polyType() const;
  [[nodiscard]] bool isClosed() const override { return (m_flags & 1) != 0; }
  Gcad::ErrorStatus makeClosed();
  Gcad::ErrorStatus makeOpen();

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 private:
  int16_t m_flags = 8;
  int16_t m_curveType = 0;
};
