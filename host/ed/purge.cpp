#include "host/ed/purge.h"

#include <unordered_set>

#include "host/db/core/extra.h"
#include "host/db/core/header.h"
#include "host/db/core/memoryfiler.h"
#include "host/db/core/store.h"
#include "host/ed/append.h"
#include "host/ed/records.h"

namespace ed {

namespace {

bool isErased(const GcDbStub* stub) { return stub == nullptr || stub->object == nullptr || stub->erased; }

// An object that is there, in an owner that is there.
bool isLive(const GcDbStub* stub) {
  if (isErased(stub)) return false;
  const GcDbObjectId owner = stub->object->ownerId();
  return owner.isNull() || !isErased(owner.stub());
}

using Used = std::unordered_set<const GcDbStub*>;

void collect(GcDbDatabase& database, const GcDbObject& object, Used& used) {
  GcDbObject* opened = nullptr;  // a program may have it open already
  ignore(gcdbOpenGcDbObject(opened, object.objectId(), GcDb::kForRead));
  GcDbMemoryFiler filer(GcDb::kWblockCloneFiler);
  if (object.isReadEnabled()) ignore(object.dwgOutFields(&filer));
  if (opened != nullptr) ignore(opened->close());
  for (const GcDbReferencePlace& place : filer.references()) {
    if (place.kind != GcDbReferenceKind::HardPointer) continue;
    if (const GcDbObjectId id = filer.referenceAt(place); !id.isNull()) used.insert(id.stub());
  }
  if (object.extra() == nullptr) return;
  constexpr int kApplicationName = 1001;
  GcDbGroup group;
  for (GcDbGroupList::Cursor at(object.extra()->xdata); at.next(group);)
    if (group.code == kApplicationName) used.insert(recordNamed(database.regAppTableId(), group.text).stub());
}

// Records that the settings name.
void collectSettings(GcDbDatabase& database, Used& used) {
  for (const GcDbObjectId id : {database.clayer(), database.celtype(), database.textstyle(), database.dimstyle()})
    if (!id.isNull()) used.insert(id.stub());
  constexpr struct {
    const GCHAR* setting;
    GcDbDatabase::Table table;
  } kNamed[] = {
      {GC_T("$DIMTXSTY"), GcDbDatabase::kTextStyles}, {GC_T("$DIMBLK"), GcDbDatabase::kBlocks},
      {GC_T("$DIMBLK1"), GcDbDatabase::kBlocks},      {GC_T("$DIMBLK2"), GcDbDatabase::kBlocks},
      {GC_T("$DIMLDRBLK"), GcDbDatabase::kBlocks},    {GC_T("$UCSNAME"), GcDbDatabase::kUcss},
      {GC_T("$UCSBASE"), GcDbDatabase::kUcss},
  };
  for (const auto& each : kNamed) {
    const GcDbObjectId id = recordNamed(database.tableId(each.table), database.header().text(each.setting));
    if (!id.isNull()) used.insert(id.stub());
  }
}

bool belongsToEveryDrawing(GcDbObjectId id, GcView name) {
  if (const auto* block = GcDbBlockTableRecord::cast(id.stub()->object))
    return block->isModelSpace() || block->isPaperSpace();
  for (const GCHAR* kept : {GC_T("0"), GC_T("ByLayer"), GC_T("ByBlock"), GC_T("Continuous"), GC_T("Standard"),
                            GC_T("ACAD"), GC_T("*Active"), GC_T("DEFPOINTS")})
    if (equalNoCase(name, kept)) return true;
  return false;
}

}  // namespace

std::vector<GcDbObjectId> unusedRecords(Editor& editor, GcDbDatabase::Table table) {
  GcDbDatabase& database = editor.database();
  Used used;
  database.store().forEach([&](const GcDbStub* stub) {
    if (isLive(stub)) collect(database, *stub->object, used);
  });
  collectSettings(database, used);
  std::vector<GcDbObjectId> unused;
  const auto* records = static_cast<const GcDbSymbolTable*>(database.tableId(table).stub()->object);
  for (const GcDbObjectId id : records->records()) {
    if (isErased(id.stub()) || used.count(id.stub()) != 0) continue;
    const auto* record = static_cast<const GcDbSymbolTableRecord*>(id.stub()->object);
    if (!belongsToEveryDrawing(id, view(record->getName())) && !record->isDependent()) unused.push_back(id);
  }
  return unused;
}

void eraseRecord(GcDbObjectId id) {
  GcDbBlockTableRecord* block = nullptr;
  if (id.objectClass() == GcDbBlockTableRecord::desc() && gcdbOpenObject(block, id, GcDb::kForRead) == Gcad::eOk) {
    const GcDbObjectIdArray entities = block->entities();
    ignore(block->close());
    for (const GcDbObjectId entity : entities) eraseEntity(entity);
  }
  GcDbObject* record = nullptr;
  if (gcdbOpenGcDbObject(record, id, GcDb::kForWrite) != Gcad::eOk) return;
  ignore(record->erase());
  ignore(record->close());
}

}  // namespace ed
