#include "host/db/entities/planar.h"

#include "host/rx/math/elementary.h"

namespace gcplanar {

GcGeVector3d directionAt(double angleRad, const GcGeVector3d& normal) {
  return toWorld(GcGeVector3d(gc::cos(angleRad), gc::sin(angleRad), 0), normal);
}

double angleOf(const GcGeVector3d& worldDirection, const GcGeVector3d& normal) {
  const GcGeVector3d own = toOwn(worldDirection, normal);
  return inFullTurn(gc::atan2(own.y, own.x));
}

GcGeVector3d normalOfImage(const GcGeMatrix3d& transform, const GcGeVector3d& normal) {
  GcGeMatrix3d plane;
  plane.setToPlaneToWorld(normal);
  return (transform * plane.column(0)).crossProduct(transform * plane.column(1)).normal();
}

double inFullTurn(double angleRad) {
  double rest = std::fmod(angleRad, kTwoPi);
  if (rest < 0) rest += kTwoPi;
  return rest > 0 && rest < kTwoPi ? rest : 0;  // a hair below 0 rounds to the whole turn
}

}  // namespace gcplanar
