#include "host/db/clone/block.h"

#include "db/entity.h"
#include "host/db/core/loader.h"

Gcad::ErrorStatus gcdbNeedEmptyBlock(GcDbDatabase& database, const GCHAR* name, GcDbBlockTableRecord*& block) {
  block = nullptr;
  GcDbBlockTable* table = nullptr;
  Gcad::ErrorStatus status = database.getSymbolTable(table, GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  GcDbObjectId id;
  if (table->getAt(name, id) == Gcad::eOk) {
    ignore(table->close());
    status = gcdbOpenObject(block, id, GcDb::kForWrite);
    if (status != Gcad::eOk) return status;
    for (const GcDbObjectId entity : block->entities()) {
      GcDbEntity* former = nullptr;
      if (gcdbOpenObject(former, entity, GcDb::kForWrite) != Gcad::eOk) continue;
      ignore(former->erase());
      ignore(former->close());
    }
    return Gcad::eOk;
  }
  auto* made = new GcDbBlockTableRecord;
  status = made->setName(name);
  if (status == Gcad::eOk) status = table->add(id, made);
  ignore(table->close());
  if (status != Gcad::eOk) {
    delete made;
    return status;
  }
  ignore(made->close());
  GcDbLoader::completeBlock(id);
  return gcdbOpenObject(block, id, GcDb::kForWrite);
}
