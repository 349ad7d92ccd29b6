#include <unordered_set>

#include "db/blockbegin.h"
#include "db/dictionary.h"
#include "host/db/audit/auditor.h"
#include "host/db/core/extra.h"
#include "host/db/core/loader.h"

namespace {

const GcDbStub* ownerOf(const GcDbStub* stub) {
  const GcDbObjectId owner = stub->object->ownerId();
  return owner.isValid() ? owner.stub() : nullptr;
}

// True when the chain of owners comes back. A cycle of others is met by the second pointer, which goes half as fast.
bool ownsItself(const GcDbStub* stub) {
  const GcDbStub* slow = stub;
  bool moveSlow = false;
  for (const GcDbStub* at = ownerOf(stub); at != nullptr; at = ownerOf(at), moveSlow = !moveSlow) {
    if (at == stub) return true;
    if (moveSlow) slow = ownerOf(slow);
    if (at == slow) return false;
  }
  return false;
}

void auditCycles(GcDbAuditor& auditor) {
  auditor.forEach([&](GcDbObject& object) {
    if (ownsItself(object.objectId().stub()) && auditor.found(GcDbDefect::OwnerCycle, &object))
      GcDbLoader::setOwner(object, GcDbObjectId());
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

// What dictionaries own, extension dictionaries and table records.
void auditHolders(GcDbAuditor& auditor) {
  auditor.forEach([&](GcDbObject& object) {
    if (const auto* table = GcDbSymbolTable::cast(&object))
      for (const GcDbObjectId record : table->records()) expectOwner(auditor, record, object);
    if (const GcDbObjectExtra* extra = object.extra(); extra != nullptr && !extra->extensionDictionary.isNull())
      expectOwner(auditor, extra->extensionDictionary, object);
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
