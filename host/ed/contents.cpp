#include "host/ed/contents.h"

#include "db/database.h"
#include "host/db/entlist/entitymake.h"

namespace ed {

namespace {

std::vector<GcDbObjectId> living(const GcDbObjectIdArray& ids) {
  std::vector<GcDbObjectId> found;
  for (const GcDbObjectId id : ids)
    if (id.isValid() && !id.isErased()) found.push_back(id);
  return found;
}

}  // namespace

std::vector<GcDbObjectId> entitiesOf(GcDbObjectId block) {
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, block, GcDb::kForRead) != Gcad::eOk) return {};
  std::vector<GcDbObjectId> found = living(record->entities());
  ignore(record->close());
  return found;
}

std::vector<GcDbObjectId> recordsOf(GcDbObjectId tableId) {
  GcDbSymbolTable* table = nullptr;
  if (gcdbOpenObject(table, tableId, GcDb::kForRead) != Gcad::eOk) return {};
  std::vector<GcDbObjectId> found = living(table->records());
  ignore(table->close());
  return found;
}

std::vector<GcDbObjectId> entitiesOfAllBlocks(GcDbDatabase& database) {
  std::vector<GcDbObjectId> found;
  for (const GcDbObjectId block : recordsOf(database.blockTableId())) {
    const std::vector<GcDbObjectId> held = entitiesOf(block);
    found.insert(found.end(), held.begin(), held.end());
  }
  return found;
}

GcDbExtents extentsOf(const std::vector<GcDbObjectId>& ids) {
  GcDbExtents all;
  for (const GcDbObjectId id : ids) {
    GcDbEntity* entity = nullptr;
    GcDbExtents each;
    if (gcdbOpenObject(entity, id, GcDb::kForRead) != Gcad::eOk) continue;
    if (entity->getGeomExtents(each) == Gcad::eOk) all.addExt(each);
    ignore(entity->close());
  }
  return all;
}

bool setGroups(GcDbObjectId id, std::initializer_list<GcDbGroup> groups) {
  GcDbGroupList list;
  list.put(GcDbGroup::ofId(-1, id));
  for (const GcDbGroup& group : groups) list.put(group);
  return gcdbEntityModify(list) == Gcad::eOk;
}

}  // namespace ed
