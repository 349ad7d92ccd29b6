// 4x4 transformations of space, row-major, acting on column vectors: the last column is the translation.
#pragma once

#include "ge/point.h"

class GcGeLine3d;

class GcGeMatrix3d {
 public:
  double entry[4][4];

  GcGeMatrix3d() { setToIdentity(); }
  static const GcGeMatrix3d kIdentity;

  GcGeMatrix3d& setToIdentity();
  GcGeMatrix3d& setToTranslation(const GcGeVector3d& offset);
  // Right-handed rotation by the angle (radians) about the axis through the point.
  GcGeMatrix3d& setToRotation(double angleRad, const GcGeVector3d& axis,
                              const GcGePoint3d& center = GcGePoint3d::kOrigin);
  GcGeMatrix3d& setToScaling(double scale, const GcGePoint3d& center = GcGePoint3d::kOrigin);
  GcGeMatrix3d& setToScaling(const GcGeScale3d& scale);
  // Half turn of space about the line: mirrors a drawing in the line within any plane through it.
  // A line without direction leaves the identity.
  GcGeMatrix3d& setToMirroring(const GcGeLine3d& line);
  GcGeMatrix3d& setToMirroring(const GcGePoint3d& point);
  // From the system given by origin and axes (its coordinates) to world coordinates.
  GcGeMatrix3d& setCoordSystem(const GcGePoint3d& origin, const GcGeVector3d& x, const GcGeVector3d& y,
                               const GcGeVector3d& z);
  // From a plane's system (arbitrary axis rule, origin at world origin) to world coordinates, and back.
  GcGeMatrix3d& setToPlaneToWorld(const GcGeVector3d& normal);
  GcGeMatrix3d& setToWorldToPlane(const GcGeVector3d& normal);

  GcGeMatrix3d& preMultBy(const GcGeMatrix3d& left) { return *this = left * *this; }
  GcGeMatrix3d& postMultBy(const GcGeMatrix3d& right) { return *this = *this * right; }
  // The inverse; a singular matrix gives the identity (see isSingular).
  [[nodiscard]] GcGeMatrix3d inverse() const;
  [[nodiscard]] bool isSingular(const GcGeTol& tol = GcGeContext::gTol) const;
  [[nodiscard]] double det() const;  // of the upper left 3x3 part
  // True when lengths in all directions change by one factor (rotation, mirroring, uniform scale).
  [[nodiscard]] bool isUniScaledOrtho(const GcGeTol& tol = GcGeContext::gTol) const;
  // The cube root of the volume factor, without sign.
  [[nodiscard]] double scale() const;
  [[nodiscard]] GcGeVector3d column(int index) const { return {entry[0][index], entry[1][index], entry[2][index]}; }
  [[nodiscard]] GcGeVector3d translation() const { return column(3); }
  [[nodiscard]] bool isEqualTo(const GcGeMatrix3d& other, const GcGeTol& tol = GcGeContext::gTol) const;

  friend GcGeMatrix3d operator*(const GcGeMatrix3d& a, const GcGeMatrix3d& b);
  friend GcGePoint3d operator*(const GcGeMatrix3d& m, const GcGePoint3d& p) {
    return {m.entry[0][0] * p.x + m.entry[0][1] * p.y + m.entry[0][2] * p.z + m.entry[0][3],
            m.entry[1][0] * p.x + m.entry[1][1] * p.y + m.entry[1][2] * p.z + m.entry[1][3],
            m.entry[2][0] * p.x + m.entry[2][1] * p.y + m.entry[2][2] * p.z + m.entry[2][3]};
  }
  friend GcGeVector3d operator*(const GcGeMatrix3d& m, const GcGeVector3d& v) {
    return {m.entry[0][0] * v.x + m.entry[0][1] * v.y + m.entry[0][2] * v.z,
            m.entry[1][0] * v.x + m.entry[1][1] * v.y + m.entry[1][2] * v.z,
            m.entry[2][0] * v.x + m.entry[2][1] * v.y + m.entry[2][2] * v.z};
  }
};

// The X axis of the system that a normal alone determines: world Y x normal when the normal lies within
// 1/64 of the world Z axis (|nx| and |ny| below it), else world Z x normal; unit length.
// Source: DXF reference, arbitrary axis algorithm.
GcGeVector3d gcgeArbitraryXAxis(const GcGeVector3d& normal);
