#include "host/dwg/file/linker.h"

#include <algorithm>
#include <span>
#include <unordered_set>

#include "db/blockbegin.h"
#include "db/entity.h"
#include "host/db/core/extra.h"
#include "host/db/core/loader.h"
#include "host/db/core/store.h"
#include "host/dwg/file/nearlysorted.h"

namespace gc::dwg {

namespace {

class Linker {
 public:
  Linker(RecordContext& context, LoadedLinks& links, GcDbLoadReport& report)
      : m_context(context), m_links(links), m_report(report) {}

  // Anonymous blocks have their number in the name of their begin entity only.
  void nameBlocks() {
    for (LoadedLinks::Owner& owner : m_links.owners) {
      auto* block = GcDbBlockTableRecord::cast(owner.object);
      if (block == nullptr) continue;
      const auto name = m_context.blockNames.find(block->blockBeginId().handle());
      if (name != m_context.blockNames.end() && !name->second.empty() && name->second[0] == GCHAR('*'))
        GcDbLoader::setName(*block, toGcString(name->second));
    }
  }

  void linkTables(const HeaderReferences& header) {
    for (LoadedLinks::Owner& owner : m_links.owners)
      if (auto* table = GcDbSymbolTable::cast(owner.object)) fillTable(*table, owner.links);
    for (int which = 0; which < GcDbDatabase::kTableCount; ++which) {
      const GcDbStub* stub = m_context.database.store().find(header.tables[which]);
      if (stub != nullptr && GcDbSymbolTable::cast(stub->object) != nullptr)
        m_context.database.setTableId(which, stub->object->objectId());
    }
    const GcDbStub* root = m_context.database.store().find(header.of(KnownRecord::kRoot));
    if (root != nullptr && root->object != nullptr)
      m_context.database.setNamedObjectsDictionaryId(root->object->objectId());
  }

  void linkEntities() {
    sortOwned();
    for (LoadedLinks::Owner& owner : m_links.owners) {
      if (GcDbSymbolTable::cast(owner.object) != nullptr) continue;
      const GcDbObjectIdArray parts = partsOf(*owner.object, owner.links);
      if (auto* block = GcDbBlockTableRecord::cast(owner.object))
        fillBlock(*block, parts);
      else
        fillSequence(*owner.object, owner.links, parts);
    }
  }

 private:
  void fillTable(GcDbSymbolTable& table, const RecordLinks& links) {
    std::unordered_set<uint64_t> seen;
    for (const GcDbObjectId id : links.parts) {
      auto* record = id.isValid() ? GcDbSymbolTableRecord::cast(id.stub()->object) : nullptr;
      if (record == nullptr || !record->isKindOf(table.recordClass())) {
        note(m_report, GcDbLoadAction::Skipped, 0, id.handle(), "a table lists it among its records, which it is not");
        continue;
      }
      if (!seen.insert(id.handle()).second) continue;
      GcDbLoader::appendRecord(table, *record);
      ignore(record->ownerId() == table.objectId() ? Gcad::eOk : adoptRecord(*record, table));
    }
  }

  Gcad::ErrorStatus adoptRecord(GcDbSymbolTableRecord& record, const GcDbSymbolTable& table) {
    note(m_report, GcDbLoadAction::Repaired, 0, record.handle(), "its owner was not the table that lists it");
    GcDbLoader::setOwner(record, table.objectId());
    return Gcad::eOk;
  }

  // The entities an owner has, in order: as listed, or along their chain with those the chain misses at its end.
  GcDbObjectIdArray partsOf(const GcDbObject& owner, const RecordLinks& links) {
    GcDbObjectIdArray parts;
    if (m_context.version >= kR2004) {
      for (const GcDbObjectId id : links.parts)
        if (isEntity(id)) parts.append(id);
      return parts;
    }
    const std::span<const LoadedLinks::Owned> owned = ownedBy(owner.handle());
    std::vector<bool> taken(owned.size());
    size_t place = 0;
    for (uint64_t handle = links.firstPart; handle != 0; handle = owned[place].next) {
      place = placeOf(handle, owned, place + 1);
      if (place == owned.size() || taken[place]) break;
      taken[place] = true;
      parts.append(owned[place].id);
      if (handle == links.lastPart) break;
    }
    for (size_t i = 0; i < owned.size(); ++i)
      if (!taken[i]) parts.append(owned[i].id);
    return parts;
  }

  // By owner, then by handle, as files of most programs have them already.
  void sortOwned() {
    sortNearlySorted(m_links.owned, [](const LoadedLinks::Owned& a, const LoadedLinks::Owned& b) {
      return a.owner != b.owner ? a.owner < b.owner : a.handle < b.handle;
    });
  }

  [[nodiscard]] std::span<const LoadedLinks::Owned> ownedBy(uint64_t owner) const {
    const auto begin = std::lower_bound(m_links.owned.begin(), m_links.owned.end(), owner,
                                        [](const LoadedLinks::Owned& a, uint64_t b) { return a.owner < b; });
    const auto end = std::upper_bound(begin, m_links.owned.end(), owner,
                                      [](uint64_t a, const LoadedLinks::Owned& b) { return a < b.owner; });
    return {begin, end};
  }

  // The place of a handle, which is most often the expected one; the end when it is not there.
  static size_t placeOf(uint64_t handle, std::span<const LoadedLinks::Owned> owned, size_t expected) {
    if (expected < owned.size() && owned[expected].handle == handle) return expected;
    const auto at = std::lower_bound(owned.begin(), owned.end(), handle,
                                     [](const LoadedLinks::Owned& a, uint64_t b) { return a.handle < b; });
    return at != owned.end() && at->handle == handle ? static_cast<size_t>(at - owned.begin()) : owned.size();
  }

  static bool isEntity(GcDbObjectId id) { return id.isValid() && id.stub()->object->isKindOf(GcDbEntity::desc()); }
  // Begin and end of a block, end of a sequence: owned, but no parts.
  static bool isFrame(GcDbObjectId id) {
    const GcRxClass* rxClass = id.objectClass();
    return rxClass == GcDbBlockBegin::desc() || rxClass == GcDbBlockEnd::desc() || rxClass == GcDbSequenceEnd::desc();
  }

  void fillBlock(GcDbBlockTableRecord& block, const GcDbObjectIdArray& parts) {
    for (const GcDbObjectId id : parts) {
      if (isFrame(id)) continue;
      GcDbLoader::appendEntity(block, id);
      setOwner(id, block.objectId());
    }
    setOwner(block.blockBeginId(), block.objectId());
    setOwner(block.blockEndId(), block.objectId());
  }

  void fillSequence(GcDbObject& owner, const RecordLinks& links, const GcDbObjectIdArray& parts) {
    const bool hasEnd = isEntity(links.sequenceEnd);
    if (parts.isEmpty() && !hasEnd) return;
    GcDbObjectExtra& extra = owner.needExtra();
    extra.parts = parts;
    for (const GcDbObjectId id : parts) setOwner(id, owner.objectId());
    if (!hasEnd) return;
    extra.sequenceEnd = links.sequenceEnd;
    setOwner(links.sequenceEnd, owner.objectId());
  }

  void setOwner(GcDbObjectId id, GcDbObjectId owner) {
    if (!id.isValid() || id.stub()->object->ownerId() == owner) return;
    GcDbLoader::setOwner(*id.stub()->object, owner);
  }

  RecordContext& m_context;
  LoadedLinks& m_links;
  GcDbLoadReport& m_report;
};

}  // namespace

void linkObjects(RecordContext& context, const HeaderReferences& header, LoadedLinks& links, GcDbLoadReport& report) {
  Linker linker(context, links, report);
  linker.nameBlocks();
  linker.linkTables(header);
  linker.linkEntities();
}

}  // namespace gc::dwg
