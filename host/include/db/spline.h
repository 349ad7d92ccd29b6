// A spline (NURBS), by control points and, where it was drawn through points, by these.
#pragma once

#include "db/curve.h"

// Flags: 1 closed, 2 periodic, 4 rational, 8 planar, 16 straight.
class GcDbSpline : public GcDbCurve {
 public:
  GCRX_DECLARE_MEMBERS(GcDbSpline);
  static const GcDbField kFields[];
  static const int kFieldCount;

  GcDbSpline() = default;

  [[nodiscard]] int degree() const { return m_degree; }
  [[nodiscard]] bool isRational() const { return (m_flags & 4) != 0; }
  [[nodiscard]] bool isMarkedClosed() const { return (m_flags & 1) != 0; }
  [[nodiscard]] bool isMarkedPeriodic() const { return (m_flags & 2) != 0; }
  [[nodiscard]] const GcArray<double>& knots() const { return m_knots; }
  [[nodiscard]] const GcArray<GcGePoint3d>& controlPoints() const { return m_controlPoints; }
  // One per control point; empty when all are 1.
  [[nodiscard]] const GcArray<double>& weights() const { return m_weights; }
  [[nodiscard]] const GcArray<GcGePoint3d>& fitPoints() const { return m_fitPoints; }
  [[nodiscard]] int numControlPoints() const { return m_controlPoints.length(); }
  [[nodiscard]] int numFitPoints() const { return m_fitPoints.length(); }
  [[nodiscard]] bool hasFitData() const { return !m_fitPoints.isEmpty(); }
  [[nodiscard]] GcGeVector3d startTangent() const { return m_startTangent; }
  [[nodiscard]] GcGeVector3d endTangent() const { return m_endTangent; }

  // Replaces everything; points drawn through are forgotten, whether it is planar is found out. Errors: eInvalidInput for counts that do not match
  // (knots = points + degree + 1), knots that fall, weights that are not positive.
  Gcad::ErrorStatus setNurbsData(int degree, bool rational, bool closed, bool periodic,
                                 const GcArray<GcGePoint3d>& controlPoints, const GcArray<double>& knots,
                                 const GcArray<double>& weights);
  // Points to draw a curve through; a file reader's form, the control points stay as they are.
  Gcad::ErrorStatus setFitData(const GcArray<GcGePoint3d>& fitPoints, const GcGeVector3d& startTangent,
                               const GcGeVector3d& endTangent);
  [[nodiscard]] GcGeVector3d normal() const override { return m_normal; }

  bool subWorldDraw(GcGiWorldDraw* draw) override;
  Gcad::ErrorStatus subPath(GcGePath& path) const override;
  Gcad::ErrorStatus reverseCurve() override;

 protected:
  [[nodiscard]] bool subKeepsPath() const override { return true; }

 private:
  [[nodiscard]] bool hasTangents() const;
  [[nodiscard]] bool hasStartTangent() const { return m_startTangent.lengthSqrd() != 0; }
  [[nodiscard]] bool hasEndTangent() const { return m_endTangent.lengthSqrd() != 0; }

  GcArray<double> m_knots;
  GcArray<GcGePoint3d> m_controlPoints;
  GcArray<double> m_weights;
  GcArray<GcGePoint3d> m_fitPoints;
  GcGeVector3d m_startTangent;
  GcGeVector3d m_endTangent;
  GcGeVector3d m_normal = GcGeVector3d::kZAxis;
  double m_knotTolerance = 1e-7;
  double m_controlTolerance = 1e-7;
  double m_fitTolerance = 1e-10;
  int16_t m_degree = 3;
  int16_t m_flags = 8;
  // How DWG records say what made it; 0 by what it has.
  int32_t m_method = 0;
  int16_t m_scenario = 0;
  int16_t m_knotParameterization = 0;
};
