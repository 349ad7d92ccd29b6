#include "host/db/core/loader.h"

#include <utility>

#include "db/blockbegin.h"
#include "host/db/core/store.h"

void GcDbLoader::appendRecord(GcDbSymbolTable& table, const GcDbSymbolTableRecord& record) {
  table.m_records.append(record.objectId());
  table.indexRecord(record);
}

void GcDbLoader::appendEntity(GcDbBlockTableRecord& block, GcDbObjectId entity) { block.m_entities.append(entity); }
void GcDbLoader::setEntities(GcDbBlockTableRecord& block, const GcDbObjectIdArray& entities) {
  block.m_entities = entities;
}
void GcDbLoader::setBlockBegin(GcDbBlockTableRecord& block, GcDbObjectId begin) { block.m_beginId = begin; }
void GcDbLoader::setBlockEnd(GcDbBlockTableRecord& block, GcDbObjectId end) { block.m_endId = end; }
void GcDbLoader::setOwner(GcDbObject& object, GcDbObjectId owner) { object.m_ownerId = owner; }
void GcDbLoader::setName(GcDbSymbolTableRecord& record, const GcString& name) { record.m_name = name; }

void GcDbLoader::swapNames(GcDbDatabase& database, GcDbObjectId first, GcDbObjectId second) {
  auto& table = static_cast<GcDbSymbolTable&>(*database.blockTableId().stub()->object);
  auto& a = static_cast<GcDbSymbolTableRecord&>(*first.stub()->object);
  auto& b = static_cast<GcDbSymbolTableRecord&>(*second.stub()->object);
  table.unindexRecord(a);
  table.unindexRecord(b);
  std::swap(a.m_name, b.m_name);
  table.indexRecord(a);
  table.indexRecord(b);
}

namespace {

GcDbObjectId addPart(GcDbDatabase& database, GcDbEntity* part, GcDbObjectId owner) {
  GcDbObjectId id;
  ignore(part->setLayer(database.layerZero()));
  ignore(database.addGcDbObject(id, part, owner));
  ignore(part->close());
  return id;
}

}  // namespace

void GcDbLoader::completeBlock(GcDbObjectId block) {
  const auto* known = block.isValid() ? GcDbBlockTableRecord::cast(block.stub()->object) : nullptr;
  if (known && known->m_beginId.isValid() && known->m_endId.isValid()) return;
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, block, GcDb::kForWrite) != Gcad::eOk) return;
  completeBlock(*record);
  ignore(record->close());
}

void GcDbLoader::completeBlock(GcDbBlockTableRecord& record) {
  GcDbDatabase& database = *record.objectId().database();
  if (!record.m_beginId.isValid()) record.m_beginId = addPart(database, new GcDbBlockBegin, record.objectId());
  if (!record.m_endId.isValid()) record.m_endId = addPart(database, new GcDbBlockEnd, record.objectId());
}
