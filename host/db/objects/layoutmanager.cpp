#include "db/layoutmanager.h"

#include <string>

#include "db/database.h"
#include "db/dictionary.h"
#include "db/viewport.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/db/objects/layouts.h"
#include "host/rx/view.h"

void GcDbLayoutManagerReactor::layoutSwitched(GcDbDatabase*, const GCHAR*) {}
void GcDbLayoutManagerReactor::layoutTabsUpdated(GcDbDatabase*) {}

namespace {

GcDbDatabase* orWorking(const GcDbDatabase* database) {
  return database != nullptr ? const_cast<GcDbDatabase*>(database) : gcdbHostApplicationServices()->workingDatabase();
}

// The layout of a block; found through the dictionary when the block does not say it.
GcDbObjectId layoutOf(const GcDbDatabase& database, GcDbObjectId block) {
  if (!block.isValid()) return {};
  const auto* record = GcDbBlockTableRecord::cast(block.stub()->object);
  const GcDbObjectId own = record == nullptr ? GcDbObjectId() : record->getLayoutId();
  if (own.isValid() && !own.isErased()) return own;
  GcDbObjectId found;
  GcDbDictionary* layouts = nullptr;
  if (gcdbOpenObject(layouts, database.layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk) return found;
  for (const GcDbDictionaryEntry& entry : layouts->entries()) {
    const auto* layout = entry.id.isValid() ? GcDbLayout::cast(entry.id.stub()->object) : nullptr;
    if (layout != nullptr && layout->getBlockTableRecordId() == block) found = entry.id;
  }
  ignore(layouts->close());
  return found;
}

bool isShowingModel(const GcDbDatabase& database) { return database.header().integer(GC_T("$TILEMODE"), 1) != 0; }

// The key a layout has in the dictionary.
GcString keyOf(const GcDbDatabase& database, GcDbObjectId layout) {
  GcString key;
  GcDbDictionary* layouts = nullptr;
  if (gcdbOpenObject(layouts, database.layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk) return key;
  ignore(layouts->nameAt(layout, key));
  ignore(layouts->close());
  return key;
}

}  // namespace

// ---- questions -------------------------------------------------------------------------------------------

GcDbObjectId GcDbLayoutManager::findActiveLayout(bool allowModel, const GcDbDatabase* of) const {
  const GcDbDatabase* database = orWorking(of);
  if (database == nullptr) return {};
  const bool model = allowModel && isShowingModel(*database);
  return layoutOf(*database, model ? database->modelSpaceId() : database->paperSpaceId());
}

// A drawing without layouts (older files) has model space all the same, and one paper space.
GcString GcDbLayoutManager::getActiveLayoutName(bool allowModel, const GcDbDatabase* of) const {
  const GcDbDatabase* database = orWorking(of);
  if (database == nullptr) return {};
  const GcString key = keyOf(*database, findActiveLayout(allowModel, database));
  if (!key.isEmpty()) return key;
  return allowModel && isShowingModel(*database) ? GcString(kModelLayout) : GcString(GC_T("Layout1"));
}

GcDbObjectId GcDbLayoutManager::findLayoutNamed(const GCHAR* name, const GcDbDatabase* of) const {
  GcDbObjectId id;
  const GcDbDatabase* database = orWorking(of);
  GcDbDictionary* layouts = nullptr;
  if (database == nullptr || name == nullptr ||
      gcdbOpenObject(layouts, database->layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk)
    return id;
  ignore(layouts->getAt(name, id));
  ignore(layouts->close());
  return id;
}

GcString GcDbLayoutManager::getNextNewLayoutName(const GcDbDatabase* database) const {
  for (int number = 1;; ++number) {
    GcText name = GC_T("Layout");
    for (const char digit : std::to_string(number)) name += static_cast<GCHAR>(digit);
    if (findLayoutNamed(name.c_str(), database).isNull()) return GcString(name.c_str());
  }
}

int GcDbLayoutManager::countLayouts(const GcDbDatabase* of) const {
  const GcDbDatabase* database = orWorking(of);
  GcDbDictionary* layouts = nullptr;
  if (database == nullptr || gcdbOpenObject(layouts, database->layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk)
    return 0;
  const auto count = static_cast<int>(layouts->numEntries());
  ignore(layouts->close());
  return count;
}

// ---- changes ---------------------------------------------------------------------------------------------

Gcad::ErrorStatus GcDbLayoutManager::setCurrentLayout(const GCHAR* name, GcDbDatabase* of) {
  GcDbDatabase* database = orWorking(of);
  if (database == nullptr) return Gcad::eNoDatabase;
  const GcDbObjectId id = findLayoutNamed(name, database);
  const auto* layout = id.isValid() ? GcDbLayout::cast(id.stub()->object) : nullptr;
  const bool isModel = equalNoCase(view(name), kModelLayout) ||
                       (layout != nullptr && layout->getBlockTableRecordId() == database->modelSpaceId());
  if (layout == nullptr && !isModel) return Gcad::eKeyNotFound;
  if (!isModel && !layout->getBlockTableRecordId().isValid()) return Gcad::eKeyNotFound;
  if (findActiveLayout(true, database) != id) database->undo().recordLayout();
  if (!isModel) {
    gcdbShowPaperBlock(*database, layout->getBlockTableRecordId());
    const auto* block = GcDbBlockTableRecord::cast(layout->getBlockTableRecordId().stub()->object);
    if (block != nullptr) gcdbNumberViewports(*block, true);
    if (!database->undo().isApplying()) gcdbAddSheetViewport(*database, *layout);
  }
  database->header().setInteger(GC_T("$TILEMODE"), isModel ? 1 : 0);
  const GcString shown = getActiveLayoutName(true, database);
  const GcArray<GcDbLayoutManagerReactor*> reactors = m_reactors;
  for (GcDbLayoutManagerReactor* reactor : reactors) reactor->layoutSwitched(database, shown.c_str());
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbLayoutManager::createLayout(const GCHAR* name, GcDbObjectId& layoutId, GcDbObjectId& blockId,
                                                  GcDbDatabase* of) {
  layoutId.setNull();
  blockId.setNull();
  GcDbDatabase* database = orWorking(of);
  if (database == nullptr) return Gcad::eNoDatabase;
  if (!gcdbIsValidRecordName(view(name), false)) return Gcad::eInvalidInput;
  if (!findLayoutNamed(name, database).isNull()) return Gcad::eDuplicateRecordName;
  blockId = gcdbAddPaperBlock(*database);
  layoutId = gcdbAddLayout(*database, name, blockId);
  return layoutId.isNull() ? Gcad::eNoDatabase : Gcad::eOk;
}

Gcad::ErrorStatus GcDbLayoutManager::renameLayout(const GCHAR* oldName, const GCHAR* newName, GcDbDatabase* of) {
  GcDbDatabase* database = orWorking(of);
  if (database == nullptr) return Gcad::eNoDatabase;
  const GcDbObjectId id = findLayoutNamed(oldName, database);
  if (id.isNull()) return Gcad::eKeyNotFound;
  if (!gcdbIsValidRecordName(view(newName), false) || equalNoCase(view(oldName), kModelLayout))
    return Gcad::eInvalidInput;
  const GcDbObjectId other = findLayoutNamed(newName, database);
  if (!other.isNull() && other != id) return Gcad::eDuplicateRecordName;
  GcDbDictionary* layouts = nullptr;
  Gcad::ErrorStatus status = gcdbOpenObject(layouts, database->layoutDictionaryId(), GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  GcDbLayout* layout = nullptr;
  status = gcdbOpenObject(layout, id, GcDb::kForWrite);
  if (status == Gcad::eOk) {
    layouts->setName(oldName, newName);
    ignore(layout->setLayoutName(newName));
    ignore(layout->close());
  }
  ignore(layouts->close());
  return status;
}

Gcad::ErrorStatus GcDbLayoutManager::deleteLayout(const GCHAR* name, GcDbDatabase* of) {
  GcDbDatabase* database = orWorking(of);
  if (database == nullptr) return Gcad::eNoDatabase;
  const GcDbObjectId id = findLayoutNamed(name, database);
  if (id.isNull()) return Gcad::eKeyNotFound;
  const auto* known = GcDbLayout::cast(id.stub()->object);
  const GcDbObjectId blockId = known == nullptr ? GcDbObjectId() : known->getBlockTableRecordId();
  if (blockId == database->modelSpaceId() || equalNoCase(view(name), kModelLayout))
    return Gcad::eCannotBeErasedByCaller;
  if (findActiveLayout(true, database) == id) ignore(setCurrentLayout(kModelLayout, database));
  if (blockId == database->paperSpaceId()) {  // another sheet takes its place, or an empty one is made
    GcDbObjectId next;
    GcDbDictionary* layouts = nullptr;
    if (gcdbOpenObject(layouts, database->layoutDictionaryId(), GcDb::kForRead) == Gcad::eOk) {
      for (const GcDbDictionaryEntry& entry : layouts->entries()) {
        const auto* other =
            entry.id.isValid() && !entry.id.isErased() ? GcDbLayout::cast(entry.id.stub()->object) : nullptr;
        if (other != nullptr && entry.id != id && other->getBlockTableRecordId() != database->modelSpaceId())
          next = other->getBlockTableRecordId();
      }
      ignore(layouts->close());
    }
    if (next.isNull()) {
      GcDbObjectId made;
      ignore(createLayout(getNextNewLayoutName(database).c_str(), made, next, database));
    }
    database->undo().recordLayout();
    gcdbShowPaperBlock(*database, next);
  }
  GcDbDictionary* layouts = nullptr;
  Gcad::ErrorStatus status = gcdbOpenObject(layouts, database->layoutDictionaryId(), GcDb::kForWrite);
  if (status != Gcad::eOk) return status;
  ignore(layouts->remove(name));
  ignore(layouts->close());
  for (const GcDbObjectId each : {blockId, id}) {
    GcDbObject* object = nullptr;
    if (gcdbOpenGcDbObject(object, each, GcDb::kForWrite) != Gcad::eOk) continue;
    if (auto* block = GcDbBlockTableRecord::cast(object)) ignore(block->setLayoutId({}));
    ignore(object->erase());
    ignore(object->close());
  }
  return Gcad::eOk;
}

void GcDbLayoutManager::updateLayoutTabs(GcDbDatabase* of) {
  GcDbDatabase* database = orWorking(of);
  const GcArray<GcDbLayoutManagerReactor*> reactors = m_reactors;
  for (GcDbLayoutManagerReactor* reactor : reactors) reactor->layoutTabsUpdated(database);
}

void GcDbLayoutManager::addReactor(GcDbLayoutManagerReactor* reactor) {
  if (reactor != nullptr && !m_reactors.contains(reactor)) m_reactors.append(reactor);
}

void GcDbLayoutManager::removeReactor(GcDbLayoutManagerReactor* reactor) {
  const int at = m_reactors.find(reactor);
  if (at >= 0) m_reactors.removeAt(at);
}

GcDbLayoutManager* GcDbHostApplicationServices::layoutManager() const {
  static auto* const manager = new GcDbLayoutManager;
  return manager;
}
