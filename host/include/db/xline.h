// Lines without ends: the construction line (both ways) and the ray (one way).
#pragma once

#include "db/curve.h"

class GcDbXline : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbXline);
  static const GcDbField kFields[];
  static const int kFieldCount;

  [[nodiscard]] GcGePoint3d basePoint() const { return m_base; }
  Gcad::ErrorStatus setBasePoint(const GcGePoint3d& point) { return assign(m_base, point); }
  [[nodiscard]] GcGeVector3d unitDir() const { return m_direction; }
  // Kept as a unit vector. Errors: eInvalidInput for a vector without direction.
  Gcad::ErrorStatus setUnitDir(const GcGeVector3d& direction);
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 private:
  GcGePoint3d m_base;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
};

class GcDbRay : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbRay);
  static const GcDbField kFields[];
  static const int kFieldCount;

  [[nodiscard]] GcGePoint3d basePoint() const { return m_base; }
  Gcad::ErrorStatus setBasePoint(const GcGePoint3d& point) { return assign(m_base, point); }
  [[nodiscard]] GcGeVector3d unitDir() const { return m_direction; }
  Gcad::ErrorStatus setUnitDir(const GcGeVector3d& direction);
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 private:
  GcGePoint3d m_base;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
};
