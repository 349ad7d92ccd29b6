// Symbol tables and dictionaries.
#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/core/store.h"
#include "host/db/entlist/entitylist.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/groupvalues.h"
#include "host/lisp/lib/names.h"
#include "host/lisp/lib/openobject.h"

using lisp::LispValue;
using lisplib::hostOf;
using lisplib::OpenObject;

LISP_GROUP("Tables and dictionaries")

namespace {

struct TableName {
  GcView name;
  GcDbDatabase::Table table;
};

constexpr TableName kTables[] = {
    {GC_T("LAYER"), GcDbDatabase::kLayers},     {GC_T("LTYPE"), GcDbDatabase::kLinetypes},
    {GC_T("STYLE"), GcDbDatabase::kTextStyles}, {GC_T("BLOCK"), GcDbDatabase::kBlocks},
    {GC_T("APPID"), GcDbDatabase::kRegApps},    {GC_T("DIMSTYLE"), GcDbDatabase::kDimStyles},
    {GC_T("VIEW"), GcDbDatabase::kViews},       {GC_T("UCS"), GcDbDatabase::kUcss},
    {GC_T("VPORT"), GcDbDatabase::kViewports},
};

// The table an argument names; raises an error for another word.
GcDbDatabase::Table tableArgument(lisp::Args& args) {
  const GcText name = upperText(args.string());
  for (const TableName& each : kTables)
    if (each.name == name) return each.table;
  lisp::fail("bad table name: " + lisp::toUtf8(name));
}

// Records programs see: not erased, and of blocks those that are no layout's.
bool isShown(GcDbObjectId id) {
  if (!id.isValid() || id.isErased()) return false;
  const auto* block = GcDbBlockTableRecord::cast(id.stub()->object);
  return block == nullptr || !(block->isModelSpace() || block->isPaperSpace());
}

LispValue recordList(lisp::Vm& vm, GcDbObjectId id) {
  lisplib::GroupValues values(vm);
  return gcdbRecordList(id, values) ? values.list() : LispValue::nil();
}

GcDbObjectId findRecord(lisp::Args& args, GcDbDatabase::Table which, GcView name) {
  GcDbSymbolTable* table = nullptr;
  GcDbObjectId id;
  if (gcdbOpenObject(table, hostOf(args.vm()).database().tableId(which), GcDb::kForRead) != Gcad::eOk) return id;
  ignore(table->getAt(GcText(name).c_str(), id));
  ignore(table->close());
  return id;
}

const GcDbObjectIdArray& recordsOf(GcDbDatabase& database, GcDbDatabase::Table which) {
  return static_cast<GcDbSymbolTable*>(database.tableId(which).stub()->object)->records();
}

GcDbObjectId idArgument(lisp::Args& args) { return lisplib::idOfWord(args.entityName()); }

LispValue entryList(lisp::Vm& vm, GcDbObjectId id) {
  lisplib::GroupValues values(vm);
  return gcdbEntityList(id, nullptr, values) ? values.list() : LispValue::nil();
}

}  // namespace

LISP_BUILTIN("tblsearch", "(tblsearch table name [setnext]) -> list | nil",
             "A record of a symbol table by name, any case; with setnext, tblnext goes on behind it.") {
  const GcDbDatabase::Table which = tableArgument(args);
  const GcDbObjectId id = findRecord(args, which, args.string());
  if (id.isNull()) return LispValue::nil();
  lisplib::DrawingHost& host = hostOf(args.vm());
  if (args.moreNotNil()) host.tablePosition(which) = recordsOf(host.database(), which).find(id) + 1;
  return recordList(args.vm(), id);
}

LISP_BUILTIN("tblobjname", "(tblobjname table name) -> entity | nil", "The name of a record, for entget and entmod.") {
  const GcDbDatabase::Table which = tableArgument(args);
  const GcDbObjectId id = findRecord(args, which, args.string());
  if (id.isNull()) return LispValue::nil();
  const auto* block = GcDbBlockTableRecord::cast(id.stub()->object);
  return lisplib::makeName(args.vm(), block == nullptr ? id : block->blockBeginId());
}

LISP_BUILTIN("tblnext", "(tblnext table [rewind]) -> list | nil",
             "The next record of a table; the first after a rewind.") {
  const GcDbDatabase::Table which = tableArgument(args);
  lisplib::DrawingHost& host = hostOf(args.vm());
  int& position = host.tablePosition(which);
  if (args.moreNotNil()) position = 0;
  const GcDbObjectIdArray& records = recordsOf(host.database(), which);
  while (position < records.length())
    if (const GcDbObjectId id = records[position++]; isShown(id)) return recordList(args.vm(), id);
  return LispValue::nil();
}

LISP_BUILTIN("namedobjdict", "(namedobjdict) -> entity", "The drawing's root dictionary.") {
  return lisplib::makeName(args.vm(), hostOf(args.vm()).database().namedObjectsDictionaryId());
}

LISP_BUILTIN("dictsearch", "(dictsearch dictionary key [setnext]) -> list | nil",
             "The object under a key, as entget gives it.") {
  const OpenObject<GcDbDictionary> dictionary(idArgument(args), GcDb::kForRead);
  if (!dictionary) return LispValue::nil();
  GcDbObjectId id;
  const bool found = dictionary->getAt(GcText(args.string()).c_str(), id) == Gcad::eOk;
  int index = 0;
  while (found && index < dictionary->entries().length() && dictionary->entries()[index].id != id) ++index;
  if (found && args.moreNotNil()) hostOf(args.vm()).dictionaryPosition(dictionary->objectId()) = index + 1;
  return found ? entryList(args.vm(), id) : LispValue::nil();
}

LISP_BUILTIN("dictnext", "(dictnext dictionary [rewind]) -> list | nil",
             "The next object of a dictionary; the first after a rewind.") {
  const OpenObject<GcDbDictionary> dictionary(idArgument(args), GcDb::kForRead);
  if (!dictionary) return LispValue::nil();
  int& position = hostOf(args.vm()).dictionaryPosition(dictionary->objectId());
  if (args.moreNotNil()) position = 0;
  GcDbObjectId id;
  while (position < dictionary->entries().length() && id.isNull()) {
    const GcDbObjectId each = dictionary->entries()[position++].id;
    if (each.isValid() && !each.isErased()) id = each;
  }
  return id.isNull() ? LispValue::nil() : entryList(args.vm(), id);
}

LISP_BUILTIN("dictadd", "(dictadd dictionary key object) -> entity | nil",
             "Puts an object without an owner under a new key; nil when the key is taken.") {
  const GcDbObjectId dictionaryId = idArgument(args);
  const GcText key(args.string());
  GcDbObjectId id = idArgument(args);
  bool added = false;
  if (const OpenObject<GcDbDictionary> dictionary(dictionaryId, GcDb::kForWrite); dictionary) {
    const OpenObject<GcDbObject> object(id, GcDb::kForWrite);
    added = !key.empty() && !dictionary->has(key.c_str()) && object &&
            dictionary->setAt(key.c_str(), object.get(), id) == Gcad::eOk;
  }
  return lisplib::settled(args, added ? args[2] : LispValue::nil());
}

LISP_BUILTIN("dictremove", "(dictremove dictionary key) -> entity | nil",
             "Takes an entry out; an object the dictionary owns goes with it.") {
  const GcDbObjectId dictionaryId = idArgument(args);
  const GcText key(args.string());
  GcDbObjectId id;
  bool hard = false;
  if (const OpenObject<GcDbDictionary> dictionary(dictionaryId, GcDb::kForWrite); dictionary) {
    hard = dictionary->isTreatElementsAsHard();
    if (dictionary->remove(key.c_str(), id) != Gcad::eOk) id.setNull();
  }
  if (id.isNull()) return LispValue::nil();
  if (const OpenObject<GcDbObject> object(hard ? id : GcDbObjectId(), GcDb::kForWrite); object) ignore(object->erase());
  return lisplib::settled(args, lisplib::makeName(args.vm(), id));
}

LISP_BUILTIN("dictrename", "(dictrename dictionary old new) -> new | nil", "Gives an entry another key.") {
  const GcDbObjectId dictionaryId = idArgument(args);
  const GcText from(args.string());
  const GcText to(args.string());
  bool renamed = false;
  if (const OpenObject<GcDbDictionary> dictionary(dictionaryId, GcDb::kForWrite); dictionary)
    renamed = dictionary->setName(from.c_str(), to.c_str());
  return lisplib::settled(args, renamed ? args[2] : LispValue::nil());
}

LISP_BUILTIN("layoutlist", "(layoutlist) -> list", "The names of the layouts, model space left out.") {
  lisp::ListBuilder names(args.vm());
  GcDbDictionary* layouts = nullptr;
  if (gcdbOpenObject(layouts, hostOf(args.vm()).database().layoutDictionaryId(), GcDb::kForRead) != Gcad::eOk)
    return names.list();
  for (const GcDbDictionaryEntry& entry : layouts->entries())
    if (!entry.id.isErased() && !equalNoCase(view(entry.key), GC_T("Model")))
      names.add(args.newString(view(entry.key)));
  ignore(layouts->close());
  return names.list();
}
