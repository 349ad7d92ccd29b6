// Symbol tables and dictionaries.
#include "db/database.h"
#include "db/dictionary.h"
#include "host/db/core/store.h"
#include "host/db/entlist/entitylist.h"
#include "host/lisp/core/builtin.h"
#include "host/lisp/lib/drawinghost.h"
#include "host/lisp/lib/groupvalues.h"
#include "host/lisp/lib/names.h"

using lisp::LispValue;
using lisplib::hostOf;

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

GcDbDictionary* openDictionary(lisp::Args& args, GcDb::OpenMode mode) {
  GcDbDictionary* dictionary = nullptr;
  ignore(gcdbOpenObject(dictionary, lisplib::idOfWord(args.entityName()), mode));
  return dictionary;
}

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
  GcDbDictionary* dictionary = openDictionary(args, GcDb::kForRead);
  if (dictionary == nullptr) return LispValue::nil();
  GcDbObjectId id;
  const bool found = dictionary->getAt(GcText(args.string()).c_str(), id) == Gcad::eOk;
  int index = 0;
  while (found && index < dictionary->entries().length() && dictionary->entries()[index].id != id) ++index;
  if (found && args.moreNotNil()) hostOf(args.vm()).dictionaryPosition(dictionary->objectId()) = index + 1;
  ignore(dictionary->close());
  return found ? entryList(args.vm(), id) : LispValue::nil();
}

LISP_BUILTIN("dictnext", "(dictnext dictionary [rewind]) -> list | nil",
             "The next object of a dictionary; the first after a rewind.") {
  GcDbDictionary* dictionary = openDictionary(args, GcDb::kForRead);
  if (dictionary == nullptr) return LispValue::nil();
  int& position = hostOf(args.vm()).dictionaryPosition(dictionary->objectId());
  if (args.moreNotNil()) position = 0;
  GcDbObjectId id;
  while (position < dictionary->entries().length() && id.isNull()) {
    const GcDbObjectId each = dictionary->entries()[position++].id;
    if (each.isValid() && !each.isErased()) id = each;
  }
  ignore(dictionary->close());
  return id.isNull() ? LispValue::nil() : entryList(args.vm(), id);
}

LISP_BUILTIN("dictadd", "(dictadd dictionary key object) -> entity | nil",
             "Puts an object without an owner under a new key; nil when the key is taken.") {
  GcDbDictionary* dictionary = openDictionary(args, GcDb::kForWrite);
  if (dictionary == nullptr) return LispValue::nil();
  const GcText key(args.string());
  GcDbObject* object = nullptr;
  GcDbObjectId id = lisplib::idOfWord(args.entityName());
  const bool free = !key.empty() && !dictionary->has(key.c_str());
  const bool added = free && gcdbOpenGcDbObject(object, id, GcDb::kForWrite) == Gcad::eOk &&
                     dictionary->setAt(key.c_str(), object, id) == Gcad::eOk;
  if (object != nullptr) ignore(object->close());
  ignore(dictionary->close());
  return added ? args[2] : LispValue::nil();
}

LISP_BUILTIN("dictremove", "(dictremove dictionary key) -> entity | nil",
             "Takes an entry out; an object the dictionary owns goes with it.") {
  GcDbDictionary* dictionary = openDictionary(args, GcDb::kForWrite);
  if (dictionary == nullptr) return LispValue::nil();
  GcDbObjectId id;
  const bool hard = dictionary->isTreatElementsAsHard();
  const bool removed = dictionary->remove(GcText(args.string()).c_str(), id) == Gcad::eOk;
  ignore(dictionary->close());
  GcDbObject* object = nullptr;
  if (removed && hard && gcdbOpenGcDbObject(object, id, GcDb::kForWrite) == Gcad::eOk) {
    ignore(object->erase());
    ignore(object->close());
  }
  return removed ? lisplib::makeName(args.vm(), id) : LispValue::nil();
}

LISP_BUILTIN("dictrename", "(dictrename dictionary old new) -> new | nil", "Gives an entry another key.") {
  GcDbDictionary* dictionary = openDictionary(args, GcDb::kForWrite);
  if (dictionary == nullptr) return LispValue::nil();
  const GcText from(args.string());
  const GcText to(args.string());
  const bool renamed = dictionary->setName(from.c_str(), to.c_str());
  ignore(dictionary->close());
  return renamed ? args[2] : LispValue::nil();
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
