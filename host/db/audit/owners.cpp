#include <unordered_set>

#include "db/blockbegin.h"
#include "db/dictionary.h"
#include "host/db/audit/auditor.h"
#include "host/db/core/extra.h"
#include "host/db/core/loader.h"
#include "host/db/core/ownercycles.h"
#include "host/rx/text/number.h"

namespace {

void auditCycles(GcDbAuditor& auditor) {
  GcDbOwnerCycles cycles;
  auditor.forEach([&](GcDbObject& object) {
    cycles.search(object.objectId().stub(), [&](GcDbObject& ofCycle) {
      const bool mended = auditor.found(GcDbDefect::OwnerCycle, &ofCycle);
      if (mended) GcDbLoader::setOwner(ofCycle, GcDbObjectId());
      return mended;
    });
  });
}

void expectOwner(GcDbAuditor& auditor, GcDbObjectId held, const GcDbObject& holder) {
  auto* object = gcdbLive<GcDbObject>(held);
  if (object == nullptr || object->ownerId() == holder.objectId()) return;
  if (auditor.found(GcDbDefect::WrongOwner, object)) GcDbLoader::setOwner(*object, holder.objectId());
}

// Lists of blocks: each entity once, by the block that owns it.
void auditLists(GcDbAuditor& auditor, std::unordered_set<const GcDbObject*>& listed) {
  auditor.forEach([&](GcDbObject& object) {
    auto* block = GcDbBlockTableRecord::cast(&object);
    if (block == nullptr) return;
    GcDbObjectIdArray kept;
    bool changed = false;
    for (const GcDbObjectId id : block->entities()) {
      const auto* entity = gcdbLive<GcDbEntity>(id);
      const bool isTwice = entity != nullptr && !listed.insert(entity).second;
      if (isTwice && auditor.found(GcDbDefect::EntityTwice, entity)) {
        changed = true;
        continue;
      }
      kept.append(id);
      if (!isTwice) expectOwner(auditor, id, *block);
    }
    if (changed) GcDbLoader::setEntities(*block, kept);
  });
}

void auditParts(GcDbAuditor& auditor, GcDbEntity& entity, std::unordered_set<const GcDbObject*>& listed) {
  GcDbObjectExtra* extra = entity.extra();
  if (extra == nullptr) return;
  for (const GcDbObjectId part : extra->parts) {
    listed.insert(gcdbLive<GcDbObject>(part));
    expectOwner(auditor, part, entity);
  }
  listed.insert(gcdbLive<GcDbObject>(extra->sequenceEnd));
  expectOwner(auditor, extra->sequenceEnd, entity);
  if (extra->parts.isEmpty() || gcdbIsLive(extra->sequenceEnd)) return;
  if (!auditor.found(GcDbDefect::SequenceEnd, &entity)) return;
  auto* end = new GcDbSequenceEnd;
  GcDbObjectId id;
  ignore(end->setLayer(entity.layerId()));
  ignore(auditor.database().addGcDbObject(id, end, entity.objectId()));
  ignore(end->close());
  entity.needExtra().sequenceEnd = id;
  listed.insert(end);
}

bool isBlockEnd(const GcDbEntity& entity) {
  return GcDbBlockBegin::cast(&entity) != nullptr || GcDbBlockEnd::cast(&entity) != nullptr ||
         GcDbSequenceEnd::cast(&entity) != nullptr;
}

// Entities that no list has: those of a block are listed, those of nothing go into model space. Entities that objects
// own are theirs.
void auditUnlisted(GcDbAuditor& auditor, const std::unordered_set<const GcDbObject*>& listed) {
  auditor.forEach([&](GcDbObject& object) {
    auto* entity = GcDbEntity::cast(&object);
    if (entity == nullptr || listed.contains(entity) || isBlockEnd(*entity)) return;
    auto* owner = gcdbLive<GcDbObject>(entity->ownerId());
    if (auto* block = owner != nullptr ? GcDbBlockTableRecord::cast(owner) : nullptr) {
      if (auditor.found(GcDbDefect::NotListed, entity)) GcDbLoader::appendEntity(*block, entity->objectId());
      return;
    }
    auto* model = gcdbLive<GcDbBlockTableRecord>(auditor.database().modelSpaceId());
    if (owner != nullptr || !auditor.found(GcDbDefect::NoOwner, entity) || model == nullptr) return;
    GcDbLoader::setOwner(*entity, model->objectId());
    GcDbLoader::appendEntity(*model, entity->objectId());
  });
}

// Two objects cannot have one extension dictionary: it stays with the one it names.
void auditExtensionDictionary(GcDbAuditor& auditor, GcDbObject& object) {
  GcDbObjectExtra* extra = object.extra();
  if (extra == nullptr || extra->extensionDictionary.isNull()) return;
  const auto* dictionary = gcdbLive<GcDbObject>(extra->extensionDictionary);
  const auto* owner = dictionary != nullptr ? gcdbLive<GcDbObject>(dictionary->ownerId()) : nullptr;
  const GcDbObjectExtra* ofOwner = owner != nullptr && owner != &object ? owner->extra() : nullptr;
  if (ofOwner == nullptr || ofOwner->extensionDictionary != extra->extensionDictionary)
    expectOwner(auditor, extra->extensionDictionary, object);
  else if (auditor.found(GcDbDefect::ExtensionDictionary, &object, gc::hexText(dictionary->objectId().handle())))
    extra->extensionDictionary.setNull();
}

// What dictionaries own, extension dictionaries and table records.
void auditHolders(GcDbAuditor& auditor) {
  auditor.forEach([&](GcDbObject& object) {
    if (const auto* table = GcDbSymbolTable::cast(&object))
      for (const GcDbObjectId record : table->records()) expectOwner(auditor, record, object);
    auditExtensionDictionary(auditor, object);
    const auto* dictionary = GcDbDictionary::cast(&object);
    if (dictionary == nullptr) return;
    for (const GcDbDictionaryEntry& entry : dictionary->entries()) {
      auto* held = gcdbLive<GcDbObject>(entry.id);
      // An object that another holder owns may have a second entry.
      if (held != nullptr && !gcdbIsLive(held->ownerId()) && held->objectId() != dictionary->objectId())
        expectOwner(auditor, entry.id, object);
    }
  });
}

}  // namespace

void gcdbAuditOwners(GcDbAuditor& auditor) {
  auditCycles(auditor);
  std::unordered_set<const GcDbObject*> listed;
  auditLists(auditor, listed);
  auditor.forEach([&](GcDbObject& object) {
    if (auto* entity = GcDbEntity::cast(&object)) auditParts(auditor, *entity, listed);
  });
  auditUnlisted(auditor, listed);
  auditHolders(auditor);
}
