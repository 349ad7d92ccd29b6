// A part of a circle, counter-clockwise about its normal from the start to the end angle.
#pragma once

#include "db/curve.h"

class GcDbArc : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbArc);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbArc() = default;
  GcDbArc(const GcGePoint3d& center, double radius, double startAngleRad, double endAngleRad);
  GcDbArc(const GcGePoint3d& center, const GcGeVector3d& normal, double radius, double startAngleRad,
          double endAngleRad);

  // The center in world coordinates; angles from the X axis of the arc's own system.
  [[nodiscard]] GcGePoint3d center() const;
  Gcad::ErrorStatus setCenter(const GcGePoint3d& center);
  [[nodiscard]] double radius() const { return m_radius; }
  Gcad::ErrorStatus setRadius(double radius) { return assign(m_radius, radius); }
  [[nodiscard]] double startAngle() const { return m_startAngleRad; }
  Gcad::ErrorStatus setStartAngle(double angleRad) { return assign(m_startAngleRad, angleRad); }
  [[nodiscard]] double endAngle() const { return m_endAngleRad; }
  Gcad::ErrorStatus setEndAngle(double angleRad) { return assign(m_endAngleRad, angleRad); }
  // From start to end, in (0, 2 pi].
  [[nodiscard]] double sweepAngle() const;
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness) { return assign(m_thickness, thickness); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;

 private:
  GcGePoint3d m_center;  // own system
  double m_radius = 1;
  double m_startAngleRad = 0;
  double m_endAngleRad = 0;
  double m_thickness = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
};
