// A full circle in a plane.
#pragma once

#include "db/curve.h"

class GcDbCircle : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbCircle);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbCircle() = default;
  GcDbCircle(const GcGePoint3d& center, const GcGeVector3d& normal, double radius);

  // The center in world coordinates.
  [[nodiscard]] GcGePoint3d center() const;
  Gcad::ErrorStatus setCenter(const GcGePoint3d& center);
  [[nodiscard]] double radius() const { return m_radius; }
  Gcad::ErrorStatus setRadius(double radius) { return assign(m_radius, radius); }
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness) { return assign(m_thickness, thickness); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  // Keeps the center. Errors: eInvalidInput for a vector without direction.
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 protected:
  // A scale that differs by direction is refused: eCannotScaleNonUniformly.
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  GcGePoint3d m_center;  // own system
  double m_radius = 1;
  double m_thickness = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
};
