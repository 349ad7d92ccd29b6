// Filled three- and four-sided areas: SOLID and its older twin TRACE, which files describe alike.
#pragma once

#include "db/entity.h"

// Points in the order of files: the third and fourth lie opposite the second and first (a bow tie order).
class GcDbFilledArea : public GcDbEntity {
 public:
  static const GcDbField kFields[];
  static const int kFieldCount;

  // Points 0 to 3 in world coordinates. Errors: eInvalidIndex.
  Gcad::ErrorStatus getPointAt(uint16_t index, GcGePoint3d& point) const;
  Gcad::ErrorStatus setPointAt(uint16_t index, const GcGePoint3d& point);
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness) { return assign(m_thickness, thickness); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal) { return assign(m_normal, normal); }
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 protected:
  GcDbFilledArea() = default;
  GcDbFilledArea(const GcGePoint3d& p0, const GcGePoint3d& p1, const GcGePoint3d& p2, const GcGePoint3d& p3)
      : m_point0(p0), m_point1(p1), m_point2(p2), m_point3(p3) {}

 private:
  [[nodiscard]] GcGePoint3d* pointAt(uint16_t index);
  // Own system.
  GcGePoint3d m_point0, m_point1, m_point2, m_point3;
  double m_thickness = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
};

class GcDbSolid : public GcDbFilledArea {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSolid);
  GcDbSolid() = default;
  GcDbSolid(const GcGePoint3d& p0, const GcGePoint3d& p1, const GcGePoint3d& p2, const GcGePoint3d& p3)
      : GcDbFilledArea(p0, p1, p2, p3) {}
  GcDbSolid(const GcGePoint3d& p0, const GcGePoint3d& p1, const GcGePoint3d& p2) : GcDbFilledArea(p0, p1, p2, p2) {}
};

class GcDbTrace : public GcDbFilledArea {
 public:
  GCRX_DECLARE_MEMBERS(GcDbTrace);
  GcDbTrace() = default;
  GcDbTrace(const GcGePoint3d& p0, const GcGePoint3d& p1, const GcGePoint3d& p2, const GcGePoint3d& p3)
      : GcDbFilledArea(p0, p1, p2, p3) {}
};
