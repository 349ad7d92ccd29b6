// Changes to one entity as a whole: erase, copy, move, turn, mirror.
// Copies always go to model space, wherever the source lies and whatever space is current.
#include "module/app/argreader.h"
#include "module/app/functions.h"
#include "module/app/openptr.h"
#include "module/app/results.h"
#include "module/geometry/clone.h"

int deleteEntity() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbWritePtr<GcDbObject> object(id);
  if (!object) return RTERROR;
  ignore(object->erase(true));
  return ret::nothing();
}

// Deliberate: the one function that reports the empty call as a wrong number of arguments.
int copyEntity() {
  ArgReader args(rules::kCounted);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  return ret::name(cloneIntoModelSpace(id));
}

int mirrorEntity() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcGePoint3d first = args.point();
  const GcGePoint3d second = args.point();
  if (args.failed()) return args.status();
  GcGeMatrix3d mirroring;
  mirroring.setToMirroring(GcGeLine3d(first, second));
  const GcDbObjectId copyId = cloneIntoModelSpace(id);
  GcDbWritePtr<GcDbEntity> copy(copyId);
  if (!copy) return ret::nil();
  ignore(copy->transformBy(mirroring));
  return ret::name(copyId);
}

namespace {

int transformEntity(GcDbObjectId id, const GcGeMatrix3d& transform) {
  const GcDbWritePtr<GcDbEntity> entity(id);
  if (!entity) return RTERROR;
  ignore(entity->transformBy(transform));
  return ret::nothing();
}

}  // namespace

int moveEntity() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcGePoint3d from = args.point();
  const GcGePoint3d to = args.point();
  if (args.failed()) return args.status();
  GcGeMatrix3d translation;
  return transformEntity(id, translation.setToTranslation(to - from));
}

// The axis is always the world's Z direction through the base point.
int rotateEntity() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  const GcGePoint3d base = args.point();
  const double angleRad = args.real();
  if (args.failed()) return args.status();
  GcGeMatrix3d rotation;
  return transformEntity(id, rotation.setToRotation(angleRad, GcGeVector3d::kZAxis, base));
}

// Deliberate: opens and closes the entity and computes nothing.
int getBoundingBox() {
  ArgReader args(rules::kEntityFirst);
  const GcDbObjectId id = args.entityName();
  if (args.failed()) return args.status();
  const GcDbReadPtr<GcDbObject> object(id);
  return ret::nothing();
}
