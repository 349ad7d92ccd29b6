// An ellipse or a part of one; parameters are radians of its parametric angle.
#pragma once

#include "db/curve.h"

class GcDbEllipse : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbEllipse);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbEllipse() = default;
  // The ratio of the minor to the major axis lies in (0, 1].
  GcDbEllipse(const GcGePoint3d& center, const GcGeVector3d& unitNormal, const GcGeVector3d& majorAxis,
              double radiusRatio, double startParam = 0, double endParam = 6.28318530717958647692);

  [[nodiscard]] GcGePoint3d center() const { return m_center; }
  Gcad::ErrorStatus setCenter(const GcGePoint3d& center) { return assign(m_center, center); }
  [[nodiscard]] GcGeVector3d majorAxis() const { return m_majorAxis; }
  [[nodiscard]] GcGeVector3d minorAxis() const;
  [[nodiscard]] double radiusRatio() const { return m_ratio; }
  Gcad::ErrorStatus setRadiusRatio(double ratio) { return assign(m_ratio, ratio); }
  [[nodiscard]] double startParam() const { return m_startParam; }
  [[nodiscard]] double endParam() const { return m_endParam; }
  Gcad::ErrorStatus setStartParam(double param) { return assign(m_startParam, param); }
  Gcad::ErrorStatus setEndParam(double param) { return assign(m_endParam, param); }
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  // Errors: eInvalidInput for axes without length, a ratio outside (0, 1] or a normal not at right angles.
  Gcad::ErrorStatus set(const GcGePoint3d& center, const GcGeVector3d& unitNormal, const GcGeVector3d& majorAxis,
                        double radiusRatio, double startParam = 0, double endParam = 6.28318530717958647692);
  [[nodiscard]] bool isPlanar() const override { return true; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;

 protected:
  Gcad::ErrorStatus subTransformBy(const GcGeMatrix3d& transform) override;
  [[nodiscard]] bool subKeepsPath() const override { return true; }

 private:
  GcGePoint3d m_center;
  GcGeVector3d m_majorAxis = GcGeVector3d::kXAxis;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_ratio = 1;
  double m_startParam = 0;
  double m_endParam = 6.28318530717958647692;
};
