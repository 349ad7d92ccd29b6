#include "host/db/objects/externals.h"

#include "db/symboltable.h"
#include "host/db/core/fileformats.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/rx/text/utf.h"

namespace {

constexpr int kOverlay = 8, kResolved = 32;

const GcDbBlockTableRecord* blockAt(GcDbObjectId id) {
  return id.isValid() && !id.isErased() ? GcDbBlockTableRecord::cast(id.stub()->object) : nullptr;
}

GcDbExternals& externalsOf(GcDbDatabase& database) {
  std::shared_ptr<GcDbExternals>& externals = database.fileParts().externals;
  if (externals == nullptr) externals = std::make_shared<GcDbExternals>();
  return *externals;
}

GcView lastPart(GcView path) {
  const size_t at = path.find_last_of(GC_T("/\\"));
  return at == GcView::npos ? path : path.substr(at + 1);
}

bool findFile(GcDbDatabase& database, GcView path, GcString& found) {
  GcDbHostApplicationServices* services = gcdbHostApplicationServices();
  if (path.empty() || services == nullptr) return false;
  GcText plain(path);
  for (GCHAR& c : plain)
    if (c == GC_T('\\')) c = GC_T('/');
  for (const GcText& name : {GcText(path), plain, GcText(lastPart(path))})
    if (services->findFile(found, name.c_str(), &database) == Gcad::eOk) return true;
  return false;
}

// Whether the file is the drawing itself or one of those that refer to it.
bool isCircular(const GcDbDatabase& database, const GcString& file) {
  for (const GcDbDatabase* each = &database; each != nullptr;) {
    if (equalNoCase(view(each->getFilename()), view(file))) return true;
    each = each->fileParts().referringBlock.isNull() ? nullptr : each->fileParts().referringBlock.database();
  }
  return false;
}

void load(GcDbObjectId blockId, const GcDbBlockTableRecord& block, GcDbExternal& external) {
  using Status = GcDbExternal::Status;
  GcDbDatabase& database = *blockId.database();
  if ((block.blockFlags() & kOverlay) != 0 && !database.fileParts().referringBlock.isNull()) {
    external.status = Status::Hidden;
    return;
  }
  external.status = Status::NotFound;
  if (!findFile(database, view(block.pathName()), external.file)) return;
  external.status = Status::Circular;
  if (isCircular(database, external.file)) return;
  auto made = std::make_unique<GcDbDatabase>(false);
  external.status = Status::Unreadable;
  if (gcdbReadDrawing(*made, gc::toUtf8(view(external.file)), external.message) != Gcad::eOk) return;
  made->setFilename(external.file.c_str());
  made->fileParts().referringBlock = blockId;
  external.database = std::move(made);
  external.status = Status::Loaded;
}

}  // namespace

bool gcdbIsExternal(GcDbObjectId block) {
  const GcDbBlockTableRecord* record = blockAt(block);
  return record != nullptr && record->isFromExternalReference();
}

const GcDbExternal& gcdbNeedExternal(GcDbObjectId blockId) {
  static const GcDbExternal kNone;
  const GcDbBlockTableRecord* block = blockAt(blockId);
  if (block == nullptr || !block->isFromExternalReference()) return kNone;
  const auto [at, isNew] = externalsOf(*blockId.database()).byBlock.try_emplace(uint64_t{blockId.handle()});
  // An unloading that was taken back: the block says that it is loaded.
  const bool isBack =
      !isNew && at->second.status == GcDbExternal::Status::Unloaded && (block->blockFlags() & kResolved) != 0;
  if (isNew || isBack) load(blockId, *block, at->second);
  return at->second;
}

void gcdbForgetExternal(GcDbObjectId block) {
  if (!block.isNull()) externalsOf(*block.database()).byBlock.erase(uint64_t{block.handle()});
}

void gcdbUnloadExternal(GcDbObjectId block) {
  if (block.isNull()) return;
  GcDbExternal& external = externalsOf(*block.database()).byBlock[uint64_t{block.handle()}];
  external = {};
  external.status = GcDbExternal::Status::Unloaded;
}

GcText gcdbDependentName(GcView reference, GcView record) { return GcText(reference) + GC_T("|") + GcText(record); }

namespace {

GcDbObjectId counterpart(const GcDbDatabase& host, GcDbObjectId record, GcView reference) {
  const GcDbDatabase& own = *record.database();
  if (record == own.layerZero()) return host.layerZero();
  if (record == own.byLayerLinetype()) return host.byLayerLinetype();
  if (record == own.byBlockLinetype()) return host.byBlockLinetype();
  if (record == own.continuousLinetype()) return host.continuousLinetype();
  const bool isLayer = record.objectClass() == GcDbLayerTableRecord::desc();
  const GcDbObjectId tableId = isLayer ? host.layerTableId() : host.linetypeTableId();
  GcDbSymbolTable* table = nullptr;
  GcDbObjectId found;
  if (gcdbOpenObject(table, tableId, GcDb::kForRead) != Gcad::eOk) return found;
  const GcText name = gcdbDependentName(reference, gcdbNameOfRecord(record));
  if (table->getAt(name.c_str(), found) != Gcad::eOk) found = {};
  ignore(table->close());
  return found;
}

}  // namespace

GcDbObjectId gcdbHostRecord(const GcDbDatabase& host, GcDbObjectId record) {
  if (record.isNull() || record.database() == &host) return record;
  const GcDbObjectId block = record.database()->fileParts().referringBlock;
  if (block.isNull()) return {};
  const GcDbObjectId nearer = counterpart(*block.database(), record, gcdbNameOfRecord(block));
  return nearer.isNull() ? nearer : gcdbHostRecord(host, nearer);
}
