// Named user coordinate systems.
#pragma once

#include "db/symboltablerecord.h"
#include "ge/point.h"

// Where one of the six orthographic views of a system has its origin.
struct GcDbUCSOrthoOrigin {
  int16_t view = 0;  // 1 top, 2 bottom, 3 front, 4 back, 5 left, 6 right
  GcGePoint3d origin;
};

class GcDbUCSTableRecord : public GcDbSymbolTableRecord {
 public:
  GCRX_DECLARE_MEMBERS(GcDbUCSTableRecord);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbUCSTableRecord() = default;

  [[nodiscard]] GcGePoint3d origin() const { return m_origin; }
  void setOrigin(const GcGePoint3d& origin) { ignore(assign(m_origin, origin)); }
  [[nodiscard]] GcGeVector3d xAxis() const { return m_xAxis; }
  void setXAxis(const GcGeVector3d& axis) { ignore(assign(m_xAxis, axis)); }
  [[nodiscard]] GcGeVector3d yAxis() const { return m_yAxis; }
  void setYAxis(const GcGeVector3d& axis) { ignore(assign(m_yAxis, axis)); }
  // The origin of the system's orthographic view: 1 top, 2 bottom, 3 front, 4 back, 5 left, 6 right.
  // Errors: eInvalidInput for another view.
  Gcad::ErrorStatus setUcsBaseOrigin(const GcGePoint3d& origin, int view);
  [[nodiscard]] GcGePoint3d ucsBaseOrigin(int view) const;  // the system's own origin when the view has none

 private:
  GcGePoint3d m_origin;
  GcGeVector3d m_xAxis = GcGeVector3d::kXAxis;
  GcGeVector3d m_yAxis = GcGeVector3d::kYAxis;
  double m_elevation = 0;
  GcDbObjectId m_baseId;
  GcArray<GcDbUCSOrthoOrigin> m_orthoOrigins;
  int16_t m_orthoView = 0;
};
