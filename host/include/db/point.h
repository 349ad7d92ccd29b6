// A point entity.
#pragma once

#include "db/entity.h"

class GcDbPoint : public GcDbEntity {
 public:
  GCRX_DECLARE_MEMBERS(GcDbPoint);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbPoint() = default;
  explicit GcDbPoint(const GcGePoint3d& position) : m_position(position) {}

  [[nodiscard]] GcGePoint3d position() const { return m_position; }
  Gcad::ErrorStatus setPosition(const GcGePoint3d& position) { return assign(m_position, position); }
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness) { return assign(m_thickness, thickness); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal) { return assign(m_normal, normal); }
  // The turn of the displayed mark, radians.
  [[nodiscard]] double ecsRotation() const { return m_rotationRad; }
  Gcad::ErrorStatus setEcsRotation(double angleRad) { return assign(m_rotationRad, angleRad); }
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;

 private:
  GcGePoint3d m_position;
  double m_thickness = 0;
  double m_rotationRad = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
};
