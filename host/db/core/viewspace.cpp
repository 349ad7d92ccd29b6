#include "host/db/core/viewspace.h"

#include "db/symboltable.h"
#include "host/db/core/store.h"

GcGeMatrix3d gcdbDisplayToWorld(const GcGePoint3d& target, const GcGeVector3d& direction, double twistRad) {
  const GcGeVector3d z = direction.isZeroLength() ? GcGeVector3d::kZAxis : direction.normal();
  const GcGeVector3d x = gcgeArbitraryXAxis(z).normal();
  GcGeMatrix3d plane;
  plane.setCoordSystem(target, x, z.crossProduct(x), z);
  GcGeMatrix3d twist;
  twist.setToRotation(-twistRad, GcGeVector3d::kZAxis);
  return plane * twist;
}

GcDbExtents gcdbExtentsOf(GcDbObjectId block) {
  GcDbExtents all;
  if (!block.isValid()) return all;
  const auto* space = GcDbBlockTableRecord::cast(block.stub()->object);
  if (space == nullptr) return all;
  for (const GcDbObjectId id : space->entities()) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    GcDbExtents own;
    if (entity->getGeomExtents(own) == Gcad::eOk) all.addExt(own);
    ignore(entity->close());
  }
  return all;
}
