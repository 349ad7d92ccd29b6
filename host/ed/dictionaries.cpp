#include "host/ed/dictionaries.h"

#include "db/database.h"

namespace ed {

GcDbObjectId subdictionary(GcDbObjectId dictionaryId, const GCHAR* name, bool make) {
  GcDbObjectId id = entryNamed(dictionaryId, name);
  return id.isNull() && make ? putEntry(dictionaryId, name, new GcDbDictionary) : id;
}

GcDbObjectId dictionaryNamed(GcDbDatabase& database, const GCHAR* name, bool make) {
  return subdictionary(database.namedObjectsDictionaryId(), name, make);
}

GcDbObjectId entryNamed(GcDbObjectId dictionaryId, GcView name) {
  GcDbDictionary* dictionary = nullptr;
  GcDbObjectId id;
  if (gcdbOpenObject(dictionary, dictionaryId, GcDb::kForRead) != Gcad::eOk) return id;
  if (dictionary->getAt(GcText(name).c_str(), id) != Gcad::eOk || id.isErased()) id = {};
  ignore(dictionary->close());
  return id;
}

std::vector<GcDbDictionaryEntry> entriesOf(GcDbObjectId dictionaryId) {
  std::vector<GcDbDictionaryEntry> entries;
  GcDbDictionary* dictionary = nullptr;
  if (gcdbOpenObject(dictionary, dictionaryId, GcDb::kForRead) != Gcad::eOk) return entries;
  for (const GcDbDictionaryEntry& entry : dictionary->entries())
    if (entry.id.isValid() && !entry.id.isErased()) entries.push_back(entry);
  ignore(dictionary->close());
  return entries;
}

GcDbObjectId putEntry(GcDbObjectId dictionaryId, GcView name, GcDbObject* object) {
  GcDbDictionary* dictionary = nullptr;
  GcDbObjectId id;
  if (gcdbOpenObject(dictionary, dictionaryId, GcDb::kForWrite) != Gcad::eOk) {
    delete object;
    return id;
  }
  if (dictionary->setAt(GcText(name).c_str(), object, id) == Gcad::eOk)
    ignore(object->close());
  else
    delete object;
  ignore(dictionary->close());
  return id;
}

GcDbObjectId extensionOf(GcDbObjectId objectId, bool make) {
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, objectId, make ? GcDb::kForWrite : GcDb::kForRead) != Gcad::eOk) return {};
  if (make && object->extensionDictionary().isNull()) ignore(object->createExtensionDictionary());
  const GcDbObjectId id = object->extensionDictionary();
  ignore(object->close());
  return id;
}

void eraseObject(GcDbObjectId id) {
  GcDbObject* object = nullptr;
  if (gcdbOpenGcDbObject(object, id, GcDb::kForWrite) != Gcad::eOk) return;
  ignore(object->erase());
  ignore(object->close());
}

}  // namespace ed
