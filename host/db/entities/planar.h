// Points of entities that keep them in a plane's own system, and what a transformation makes of angles there.
#pragma once

#include "ge/matrix3d.h"

namespace gcplanar {

inline GcGePoint3d toWorld(const GcGePoint3d& own, const GcGeVector3d& normal) {
  if (normal == GcGeVector3d::kZAxis) return own;
  GcGeMatrix3d matrix;
  return matrix.setToPlaneToWorld(normal) * own;
}

inline GcGePoint3d toOwn(const GcGePoint3d& world, const GcGeVector3d& normal) {
  if (normal == GcGeVector3d::kZAxis) return world;
  GcGeMatrix3d matrix;
  return matrix.setToWorldToPlane(normal) * world;
}

inline GcGeVector3d toWorld(const GcGeVector3d& own, const GcGeVector3d& normal) {
  if (normal == GcGeVector3d::kZAxis) return own;
  GcGeMatrix3d matrix;
  return matrix.setToPlaneToWorld(normal) * own;
}

inline GcGeVector3d toOwn(const GcGeVector3d& world, const GcGeVector3d& normal) {
  if (normal == GcGeVector3d::kZAxis) return world;
  GcGeMatrix3d matrix;
  return matrix.setToWorldToPlane(normal) * world;
}

// The direction at an angle (radians) in the plane, in world coordinates.
GcGeVector3d directionAt(double angleRad, const GcGeVector3d& normal);

// The angle of a world direction in the plane, radians in [0, 2 pi).
double angleOf(const GcGeVector3d& worldDirection, const GcGeVector3d& normal);

// The normal of the image of the plane: the cross product of the images of its axes, so that a figure keeps its
// sense of turning about its normal.
GcGeVector3d normalOfImage(const GcGeMatrix3d& transform, const GcGeVector3d& normal);

inline constexpr double kTwoPi = 6.28318530717958647692;

// The angle in [0, 2 pi).
double inFullTurn(double angleRad);

}  // namespace gcplanar
