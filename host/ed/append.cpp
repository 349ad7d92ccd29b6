#include "host/ed/append.h"

#include "db/idmapping.h"
#include "host/ed/coordinates.h"

namespace ed {

GcDbObjectId appendWithDefaults(Editor& editor, GcDbEntity* entity) {
  GcDbObjectId id;
  GcDbBlockTableRecord* space = nullptr;
  if (gcdbOpenObject(space, editor.currentSpace(), GcDb::kForWrite) != Gcad::eOk) {
    delete entity;
    return id;
  }
  entity->setDatabaseDefaults(&editor.database());
  if (space->appendGcDbEntity(id, entity) == Gcad::eOk)
    ignore(entity->close());
  else
    delete entity;
  ignore(space->close());
  return id;
}

GcDbObjectId appendFromUser(Editor& editor, GcDbEntity* entity) {
  if (!ucsIsWorld(editor)) ignore(entity->transformBy(ucsToWorld(editor)));
  return appendWithDefaults(editor, entity);
}

void eraseEntity(GcDbObjectId id) {
  GcDbEntity* entity = nullptr;
  if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) return;
  ignore(entity->erase());
  ignore(entity->close());
}

void transformEntities(const std::vector<GcDbObjectId>& ids, const GcGeMatrix3d& matrix) {
  for (const GcDbObjectId id : ids) {
    GcDbEntity* entity = nullptr;
    if (gcdbOpenObject(entity, id, GcDb::kForWrite) != Gcad::eOk) continue;
    ignore(entity->transformBy(matrix));
    ignore(entity->close());
  }
}

std::vector<GcDbObjectId> copyEntities(Editor& editor, const std::vector<GcDbObjectId>& ids) {
  GcDbObjectIdArray sources;
  for (const GcDbObjectId id : ids) sources.append(id);
  GcDbIdMapping map;
  std::vector<GcDbObjectId> copies;
  if (editor.database().deepCloneObjects(sources, editor.currentSpace(), map) != Gcad::eOk) return copies;
  for (const GcDbObjectId id : ids)
    if (const GcDbObjectId copy = map.valueOf(id); !copy.isNull()) copies.push_back(copy);
  return copies;
}

}  // namespace ed
