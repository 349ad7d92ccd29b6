#include "host/ed/xrefs.h"

#include "db/blockreference.h"
#include "db/idmapping.h"
#include "host/ap/output.h"
#include "host/ap/paths.h"
#include "host/db/core/header.h"
#include "host/db/core/loader.h"
#include "host/db/core/undo.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/draworder.h"
#include "host/ed/append.h"
#include "host/ed/contents.h"
#include "host/ed/purge.h"
#include "host/ed/records.h"
#include "host/rx/text/utf.h"

namespace ed {

namespace {

using Ids = std::vector<GcDbObjectId>;
using Status = GcDbExternal::Status;

constexpr int kReference = 4, kOverlay = 8, kResolved = 32;
constexpr int16_t kDependent = 16 | kResolved;
constexpr int kPathCode = 1;

void setFlags(GcDbObjectId block, int on, int off) {
  forEach<GcDbBlockTableRecord>(
      {block}, [&](GcDbBlockTableRecord& record) { ignore(record.setBlockFlags((record.blockFlags() | on) & ~off)); });
}

// Layers of a drawing that is referred to have records of their own here; VISRETAIN keeps what was set there.
void copyLayer(GcDbLayerTableRecord& to, const GcDbLayerTableRecord& from, GcDbDatabase& host) {
  ignore(to.setColor(from.color()));
  ignore(to.setIsOff(from.isOff()));
  ignore(to.setIsFrozen(from.isFrozen()));
  ignore(to.setIsLocked(from.isLocked()));
  ignore(to.setLineWeight(static_cast<GcDb::LineWeight>(from.lineWeight())));
  const GcDbObjectId linetype = gcdbHostRecord(host, from.linetypeObjectId());
  ignore(to.setLinetypeObjectId(linetype.isNull() ? host.continuousLinetype() : linetype));
}

GcDbObjectId needDependentLayer(GcDbDatabase& host, const GcText& name, bool& isNew) {
  GcDbObjectId id = recordNamed(host.layerTableId(), name);
  isNew = id.isNull();
  GcDbLayerTable* table = nullptr;
  if (!isNew || host.getSymbolTable(table, GcDb::kForWrite) != Gcad::eOk) return id;
  auto* made = new GcDbLayerTableRecord;
  made->keepName(toGcString(name));  // a name with a bar, which nobody may give
  if (table->add(id, made) == Gcad::eOk) {
    ignore(made->setFlags(kDependent));
    ignore(made->close());
  } else {
    delete made;
    id = {};
  }
  ignore(table->close());
  return id;
}

void makeDependents(Editor& editor, GcDbObjectId block, GcDbDatabase& external) {
  GcDbDatabase& host = editor.database();
  const GcText reference = nameOfRecord(block);
  const bool keeps = integerVariable(editor, "VISRETAIN") != 0;
  for (const GcDbObjectId source : recordsOf(external.layerTableId())) {
    if (source == external.layerZero() || nameOfRecord(source).find(GC_T('|')) != GcText::npos) continue;
    bool isNew = false;
    const GcDbObjectId id = needDependentLayer(host, gcdbDependentName(reference, nameOfRecord(source)), isNew);
    if (!isNew && keeps) continue;
    GcDbLayerTableRecord* from = nullptr;
    if (gcdbOpenObject(from, source, GcDb::kForRead) != Gcad::eOk) continue;
    forEach<GcDbLayerTableRecord>({id}, [&](GcDbLayerTableRecord& to) { copyLayer(to, *from, host); });
    ignore(from->close());
  }
}

Ids dependentLayers(GcDbDatabase& host, GcDbObjectId block) {
  Ids found;
  const GcText start = gcdbDependentName(nameOfRecord(block), {});
  for (const GcDbObjectId id : recordsOf(host.layerTableId())) {
    const GcText name = nameOfRecord(id);
    if (name.size() > start.size() && equalNoCase(GcView(name).substr(0, start.size()), start)) found.push_back(id);
  }
  return found;
}

void tell(Editor& editor, GcDbObjectId block, const GcDbExternal& external) {
  const std::string name = gc::toUtf8(nameOfRecord(block));
  std::string path;
  GcDbBlockTableRecord* record = nullptr;
  if (gcdbOpenObject(record, block, GcDb::kForRead) == Gcad::eOk) {
    path = gc::toUtf8(view(record->pathName()));
    ignore(record->close());
  }
  std::string told = "\nXref \"" + name + "\": " + path;
  switch (external.status) {
    case Status::Loaded:
      if (integerVariable(editor, "CMDECHO") == 0) return;
      told += "\n\"" + name + "\" loaded.";
      break;
    case Status::NotFound: told += "\n\"" + name + "\" cannot find " + path; break;
    case Status::Unreadable: told += "\n\"" + name + "\" cannot be read: " + external.message; break;
    case Status::Circular: told += "\n\"" + name + "\" refers to this drawing itself and is not shown."; break;
    case Status::Unloaded:
    case Status::Hidden: return;
  }
  ap::print(gc::fromUtf8(told + "\n"));
}

// Files that refer back to the drawing are known by its name.
void knowOwnFile(Editor& editor) {
  const GcView name = editor.document().fileName();
  const GcText file = name.empty() ? GcText() : ap::absolutePath(name);
  editor.database().setFilename(file.c_str());
}

// All names of a drawing that is to be bound get a part in front, so that they meet none of the other's.
void prefixNames(GcDbDatabase& external, const GcText& prefix) {
  using Table = GcDbDatabase::Table;
  for (const Table table : {GcDbDatabase::kLayers, GcDbDatabase::kLinetypes, GcDbDatabase::kTextStyles,
                            GcDbDatabase::kDimStyles, GcDbDatabase::kBlocks}) {
    for (const GcDbObjectId id : recordsOf(external.tableId(table))) {
      const GcText name = nameOfRecord(id);
      const bool isCommon = id == external.layerZero() || id == external.continuousLinetype() ||
                            id == external.byLayerLinetype() || id == external.byBlockLinetype();
      if (isCommon || name.empty() || name[0] == GC_T('*')) continue;
      forEach<GcDbSymbolTableRecord>(
          {id}, [&](GcDbSymbolTableRecord& record) { ignore(record.setName((prefix + name).c_str())); });
    }
  }
}

// Layers as the other drawing shows them.
void takeLayerStates(GcDbDatabase& host, GcDbDatabase& external) {
  for (const GcDbObjectId id : recordsOf(external.layerTableId())) {
    GcDbLayerTableRecord* shown = nullptr;
    const GcDbObjectId own = id == external.layerZero() ? GcDbObjectId() : gcdbHostRecord(host, id);
    if (gcdbOpenObject(shown, own, GcDb::kForRead) != Gcad::eOk) continue;
    forEach<GcDbLayerTableRecord>({id}, [&](GcDbLayerTableRecord& layer) {
      ignore(layer.setColor(shown->color()));
      ignore(layer.setIsOff(shown->isOff()));
      ignore(layer.setIsFrozen(shown->isFrozen()));
      ignore(layer.setIsLocked(shown->isLocked()));
    });
    ignore(shown->close());
  }
}

// References within the drawing become its own first; what is missing stays a reference.
void bindNested(GcDbDatabase& external, bool insert);

bool bindInto(GcDbDatabase& host, GcDbObjectId block, bool insert) {
  const GcDbExternal& found = gcdbNeedExternal(block);
  if (found.database == nullptr) return false;
  GcDbDatabase& external = *found.database;
  takeLayerStates(host, external);
  bindNested(external, insert);
  if (!insert) prefixNames(external, nameOfRecord(block) + GC_T("$0$"));
  for (const GcDbObjectId id : dependentLayers(host, block)) eraseRecord(id);
  GcDbObjectIdArray ids;
  for (const GcDbSortPair& each : gcdbDrawingOrder(external.modelSpaceId())) ids.append(each.entity);
  setFlags(block, 0, kReference | kOverlay | kResolved);
  setXrefPath(block, {});
  GcDbIdMapping map;
  const bool good = ids.isEmpty() || external.wblockCloneObjects(ids, block, map, GcDb::kDrcIgnore) == Gcad::eOk;
  gcdbForgetExternal(block);
  return good;
}

void bindNested(GcDbDatabase& external, bool insert) {
  for (const GcDbObjectId block : xrefsOf(external)) static_cast<void>(bindInto(external, block, insert));
}

}  // namespace

std::vector<GcDbObjectId> xrefsOf(GcDbDatabase& database) {
  Ids found;
  for (const GcDbObjectId id : recordsOf(database.blockTableId()))
    if (gcdbIsExternal(id)) found.push_back(id);
  return found;
}

bool setXrefPath(GcDbObjectId block, GcView path) {
  bool good = false;
  forEach<GcDbBlockTableRecord>({block}, [&](GcDbBlockTableRecord& record) {
    for (int i = 0; i < GcDbBlockTableRecord::kBlockFieldCount; ++i) {
      const GcDbField& row = GcDbBlockTableRecord::kBlockFields[i];
      if (row.code != kPathCode || row.at == nullptr) continue;
      record.assertWriteEnabled();
      good = gcdbSetValue(row, row.at(&record), GcDbGroup::ofText(kPathCode, path), record.database());
    }
  });
  return good;
}

GcDbObjectId makeXref(GcDbDatabase& database, GcView name, GcView path, bool overlay) {
  GcDbBlockTable* blocks = nullptr;
  GcDbObjectId id = recordNamed(database.blockTableId(), name);
  if (!id.isNull() || database.getSymbolTable(blocks, GcDb::kForWrite) != Gcad::eOk) return {};
  auto* made = new GcDbBlockTableRecord;
  const bool good = made->setName(GcText(name).c_str()) == Gcad::eOk && blocks->add(id, made) == Gcad::eOk;
  ignore(blocks->close());
  if (!good) {
    delete made;
    return {};
  }
  ignore(made->setBlockFlags(kReference | (overlay ? kOverlay : 0)));
  ignore(made->close());
  GcDbLoader::completeBlock(id);
  setXrefPath(id, path);
  return id;
}

bool loadXref(Editor& editor, GcDbObjectId block) {
  knowOwnFile(editor);
  gcdbForgetExternal(block);
  const GcDbExternal& external = gcdbNeedExternal(block);
  const bool isLoaded = external.database != nullptr;
  if (isLoaded) {
    const GcGePoint3d base = external.database->header().point(GC_T("$INSBASE"));
    forEach<GcDbBlockTableRecord>({block}, [&](GcDbBlockTableRecord& record) {
      if (!(record.origin() == base)) ignore(record.setOrigin(base));
    });
    makeDependents(editor, block, *external.database);
  }
  setFlags(block, isLoaded ? kResolved : 0, isLoaded ? 0 : kResolved);
  tell(editor, block, external);
  return isLoaded;
}

void unloadXref(Editor&, GcDbObjectId block) {
  gcdbUnloadExternal(block);
  setFlags(block, 0, kResolved);
}

void detachXref(Editor& editor, GcDbObjectId block) {
  GcDbDatabase& database = editor.database();
  for (const GcDbObjectId id : entitiesOfAllBlocks(database)) {
    GcDbBlockReference* reference = nullptr;
    if (gcdbOpenObject(reference, id, GcDb::kForRead) != Gcad::eOk) continue;
    const bool shows = reference->blockTableRecord() == block;
    ignore(reference->close());
    if (shows) eraseEntity(id);
  }
  for (const GcDbObjectId id : dependentLayers(database, block)) eraseRecord(id);
  eraseRecord(block);
  gcdbForgetExternal(block);
}

bool bindXref(Editor& editor, GcDbObjectId block, bool insert) { return bindInto(editor.database(), block, insert); }

void resolveXrefs(Editor& editor) {
  knowOwnFile(editor);
  for (const GcDbObjectId block : xrefsOf(editor.database())) {
    const GcDbExternal& external = gcdbNeedExternal(block);
    if (external.database != nullptr)
      makeDependents(editor, block, *external.database);
    else
      tell(editor, block, external);
  }
}

}  // namespace ed
