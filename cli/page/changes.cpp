#include "cli/page/changes.h"

#include "db/entity.h"
#include "db/layout.h"
#include "db/symboltable.h"
#include "host/db/core/store.h"
#include "host/db/objects/standard.h"

namespace cli::page {

void Changes::listenTo(GcDbDatabase* database) {
  if (m_database != nullptr) m_database->removeReactor(this);
  m_database = database;
  if (m_database != nullptr) m_database->addReactor(this);
  m_entities.clear();
  m_looks = false;
}

std::vector<GcDbObjectId> Changes::takeEntities() {
  std::vector<GcDbObjectId> taken(m_entities.begin(), m_entities.end());
  m_entities.clear();
  return taken;
}

void Changes::note(const GcDbObject& object) {
  if (object.isKindOf(GcDbEntity::desc())) {
    GcDbObjectId id = object.objectId();
    // A vertex or an attribute is shown with what it belongs to.
    for (GcDbObjectId owner = object.ownerId();
         owner.isValid() && owner.objectClass()->isDerivedFrom(GcDbEntity::desc());) {
      id = owner;
      owner = owner.stub()->object == nullptr ? GcDbObjectId() : owner.stub()->object->ownerId();
    }
    m_entities.insert(id);
    return;
  }
  // Of records, those that say how things look; a block's changes with each entity, which are told by themselves.
  const auto is = [&](const GcRxClass* kind) { return object.isKindOf(kind); };
  m_looks = m_looks || is(GcDbLayerTableRecord::desc()) || is(GcDbLinetypeTableRecord::desc()) ||
            is(GcDbTextStyleTableRecord::desc()) || is(GcDbDimStyleTableRecord::desc()) || is(GcDbLayout::desc()) ||
            is(GcDbSortentsTable::desc());
}

}  // namespace cli::page
