#include "host/ed/drawingorder.h"

#include <algorithm>
#include <unordered_set>

#include "db/dictionary.h"
#include "host/db/objects/draworder.h"

namespace ed {

namespace {

using Ids = std::vector<GcDbObjectId>;

// The table of a block's drawing order, made when there is none.
GcDbObjectId needSortTable(GcDbObjectId blockId) {
  GcDbBlockTableRecord* block = nullptr;
  GcDbObjectId id = gcdbSortTableOf(blockId);
  if (!id.isNull() || gcdbOpenObject(block, blockId, GcDb::kForWrite) != Gcad::eOk) return id;
  ignore(block->createExtensionDictionary());
  GcDbDictionary* dictionary = nullptr;
  const GcDbObjectId extension = block->extensionDictionary();
  ignore(block->close());
  if (gcdbOpenObject(dictionary, extension, GcDb::kForWrite) != Gcad::eOk) return id;
  auto* table = new GcDbSortentsTable;
  if (dictionary->setAt(kSortTable, table, id) == Gcad::eOk) {
    ignore(table->setBlockId(blockId));
    ignore(table->close());
  } else {
    delete table;
  }
  ignore(dictionary->close());
  return id;
}

bool setDrawingOrder(GcDbObjectId block, const std::vector<GcDbSortPair>& former, const Ids& wanted) {
  std::vector<int64_t> handles;
  for (const GcDbSortPair& each : former) handles.push_back(each.sortedAs);
  std::sort(handles.begin(), handles.end());
  GcArray<GcDbSortPair> pairs;
  for (size_t i = 0; i < wanted.size(); ++i)
    if (static_cast<int64_t>(static_cast<uint64_t>(wanted[i].handle())) != handles[i])
      pairs.append({wanted[i], handles[i]});
  GcDbSortentsTable* table = nullptr;
  if (gcdbOpenObject(table, needSortTable(block), GcDb::kForWrite) != Gcad::eOk) return false;
  const bool good = table->setPairs(pairs) == Gcad::eOk;
  ignore(table->close());
  return good;
}

}  // namespace

bool reorder(GcDbObjectId block, const Ids& moved, const Ids& references, Place place) {
  const std::vector<GcDbSortPair> former = gcdbDrawingOrder(block);
  std::unordered_set<GcDbStub*> moving, beside;
  for (const GcDbObjectId id : moved) moving.insert(id.stub());
  for (const GcDbObjectId id : references) beside.insert(id.stub());
  Ids wanted, taken;
  for (const GcDbSortPair& each : former) (moving.contains(each.entity.stub()) ? taken : wanted).push_back(each.entity);
  const auto isBeside = [&](GcDbObjectId id) { return beside.contains(id.stub()); };
  auto at = place == Place::Back ? wanted.begin() : wanted.end();
  if (place == Place::Under) at = std::find_if(wanted.begin(), wanted.end(), isBeside);
  if (place == Place::Above) at = std::find_if(wanted.rbegin(), wanted.rend(), isBeside).base();
  wanted.insert(at, taken.begin(), taken.end());
  return setDrawingOrder(block, former, wanted);
}

}  // namespace ed
