// An unbounded line in space.
#pragma once

#include "ge/point.h"

class GcGeLine3d {
 public:
  GcGeLine3d() = default;
  GcGeLine3d(const GcGePoint3d& point, const GcGeVector3d& direction) : m_point(point), m_direction(direction) {}
  GcGeLine3d(const GcGePoint3d& point, const GcGePoint3d& other) : m_point(point), m_direction(other - point) {}

  [[nodiscard]] GcGePoint3d pointOnLine() const { return m_point; }
  [[nodiscard]] GcGeVector3d direction() const { return m_direction; }  // not normalised

 private:
  GcGePoint3d m_point;
  GcGeVector3d m_direction = GcGeVector3d::kXAxis;
};
