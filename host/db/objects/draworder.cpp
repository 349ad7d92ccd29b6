#include "host/db/objects/draworder.h"

#include <algorithm>
#include <unordered_map>

#include "db/dictionary.h"
#include "db/entity.h"
#include "db/symboltable.h"
#include "host/db/core/store.h"

GcDbObjectId gcdbSortTableOf(GcDbObjectId blockId) {
  GcDbObjectId id;
  GcDbBlockTableRecord* block = nullptr;
  if (gcdbOpenObject(block, blockId, GcDb::kForRead) != Gcad::eOk) return id;
  const GcDbObjectId extension = block->extensionDictionary();
  ignore(block->close());
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, extension, GcDb::kForRead) != Gcad::eOk) return id;
  ignore(dictionary->getAt(kSortTable, id));
  ignore(dictionary->close());
  return id;
}

std::vector<GcDbSortPair> gcdbDrawingOrder(GcDbObjectId blockId) {
  std::unordered_map<GcDbStub*, int64_t> sorted;
  GcDbSortentsTable* table = nullptr;
  if (gcdbOpenObject(table, gcdbSortTableOf(blockId), GcDb::kForRead) == Gcad::eOk) {
    for (const GcDbSortPair& pair : table->pairs()) sorted[pair.entity.stub()] = pair.sortedAs;
    ignore(table->close());
  }
  std::vector<GcDbSortPair> order;
  GcDbBlockTableRecord* block = nullptr;
  if (gcdbOpenObject(block, blockId, GcDb::kForRead) != Gcad::eOk) return order;
  for (const GcDbObjectId id : block->entities()) {
    if (!id.isValid() || id.isErased()) continue;
    const auto at = sorted.find(id.stub());
    order.push_back({id, at != sorted.end() ? at->second : static_cast<int64_t>(static_cast<uint64_t>(id.handle()))});
  }
  ignore(block->close());
  // Without a table, the order in which they stand is that of files.
  if (sorted.empty()) return order;
  std::stable_sort(order.begin(), order.end(),
                   [](const GcDbSortPair& a, const GcDbSortPair& b) { return a.sortedAs < b.sortedAs; });
  return order;
}

void gcdbSortAsDrawn(std::vector<GcDbObjectId>& ids) {
  const GcDbEntity* first = nullptr;
  if (ids.empty() || !ids[0].isValid() || (first = GcDbEntity::cast(ids[0].stub()->object)) == nullptr) return;
  const GcDbObjectId block = first->ownerId();
  if (gcdbSortTableOf(block).isNull()) return;
  std::unordered_map<GcDbStub*, size_t> ranks;
  for (const GcDbSortPair& each : gcdbDrawingOrder(block)) ranks.emplace(each.entity.stub(), ranks.size());
  const auto rankOf = [&](GcDbObjectId id) {
    const auto at = ranks.find(id.stub());
    return at != ranks.end() ? at->second : ranks.size();
  };
  std::stable_sort(ids.begin(), ids.end(), [&](GcDbObjectId a, GcDbObjectId b) { return rankOf(a) < rankOf(b); });
}
