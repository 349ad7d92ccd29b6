// A straight segment between two points.
#pragma once

#include "db/curve.h"

class GcDbLine : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbLine);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbLine() = default;
  GcDbLine(const GcGePoint3d& start, const GcGePoint3d& end) : m_start(start), m_end(end) {}

  [[nodiscard]] GcGePoint3d startPoint() const { return m_start; }
  [[nodiscard]] GcGePoint3d endPoint() const { return m_end; }
  Gcad::ErrorStatus setStartPoint(const GcGePoint3d& point);
  Gcad::ErrorStatus setEndPoint(const GcGePoint3d& point);
  [[nodiscard]] double thickness() const { return m_thickness; }
  Gcad::ErrorStatus setThickness(double thickness);
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }
  Gcad::ErrorStatus setNormal(const GcGeVector3d& normal);

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;
  Gcad::ErrorStatus reverseCurve() override;

 private:
  GcGePoint3d m_start;
  GcGePoint3d m_end;
  double m_thickness = 0;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
};
