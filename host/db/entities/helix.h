// Helices: a spline that follows what the axis, radii and turns say.
#pragma once

#include "db/spline.h"

class GcDbHelix : public GcDbSpline {
 public:
  GCRX_DECLARE_MEMBERS(GcDbHelix);
  static const GcDbField kFields[];
  static const int kFieldCount;

 private:
  int32_t m_majorVersion = 29;
  int32_t m_maintenanceVersion = 63;
  GcGePoint3d m_axisBase;
  GcGePoint3d m_start;
  GcGeVector3d m_axis = GcGeVector3d::kZAxis;
  double m_radius = 1;  // at the top
  double m_turns = 3;
  double m_turnHeight = 1;
  bool m_isCounterClockwise = true;
  uint8_t m_constraint = 1;  // 0 the height of a turn, 1 the turns, 2 the height is kept when it is stretched
};
