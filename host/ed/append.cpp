#include "host/ed/append.h"

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

}  // namespace ed
