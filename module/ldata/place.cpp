#include "module/ldata/place.h"

#include <memory>
#include <new>

#include "module/app/openptr.h"
#include "module/ldata/kelvl.h"
#include "module/ldata/ldatatext.h"
#include "module/ldata/transaction.h"

namespace {

GcDbObjectId namedObjectsId() {
  const GcDbDatabase* database = workingDatabase();
  return database != nullptr ? database->namedObjectsDictionaryId() : GcDbObjectId::kNull;
}

// The id under the key; null when there is none.
GcDbObjectId idAt(const GcDbDictionary& dictionary, const GCHAR* key) {
  GcDbObjectId id;
  if (dictionary.getAt(key, id) != Gcad::eOk) id.setNull();
  return id;
}

GcDbObjectId dictionaryId(const GCHAR* name) {
  const GcDbReadPtr<GcDbDictionary> root(namedObjectsId());
  return root ? idAt(*root, name) : GcDbObjectId::kNull;
}

// The dictionary of the name, made when there is none; null when that is refused.
GcDbObjectId dictionaryIdMade(const GCHAR* name) {
  const GcDbWritePtr<GcDbDictionary> root(namedObjectsId());
  if (!root) return {};
  GcDbObjectId id = idAt(*root, name);
  if (!id.isNull()) return id;
  auto made = std::make_unique<GcDbDictionary>();
  if (root->setAt(name, made.get(), id) != Gcad::eOk) return {};
  ignore(made.release()->close());
  return id;
}

GcString textAt(const GcDbDictionary& dictionary, const GCHAR* key) {
  const GcDbReadPtr<GcDbObject> entry(idAt(dictionary, key));
  return entry ? ldataText(*entry) : GcString();
}

// A new value of the text, not yet in a database; null when memory is exhausted.
std::unique_ptr<CKel_VL> makeValue(const GCHAR* text) {
  std::unique_ptr<CKel_VL> value(new (std::nothrow) CKel_VL);
  if (value == nullptr || value->setLData(text) != Gcad::eOk) return nullptr;
  return value;
}

}  // namespace

// ---- global ----------------------------------------------------------------------------------------------

// Deliberate: a foreign value under the key is left as it is and the put fails, unlike with entities.
bool globalvalues::put(const GCHAR* dictionaryName, const GCHAR* key, const GCHAR* value) {
  const GcDbWritePtr<GcDbDictionary> dictionary(dictionaryIdMade(dictionaryName));
  if (!dictionary) return false;
  const GcDbObjectId there = idAt(*dictionary, key);
  if (!there.isNull()) {
    const GcDbWritePtr<GcDbObject> object(there);
    CKel_VL* own = object ? CKel_VL::cast(object.get()) : nullptr;
    return own != nullptr && own->setLData(value) == Gcad::eOk;
  }
  std::unique_ptr<CKel_VL> made = makeValue(value);
  GcDbObjectId id;
  if (made == nullptr || dictionary->setAt(key, made.get(), id) != Gcad::eOk) return false;
  ignore(made.release()->close());
  return true;
}

GcString globalvalues::get(const GCHAR* dictionaryName, const GCHAR* key) {
  const GcDbReadPtr<GcDbDictionary> dictionary(dictionaryId(dictionaryName));
  return dictionary ? textAt(*dictionary, key) : GcString();
}

// Erases whatever lies under the key. The dictionary stays, empty or not.
bool globalvalues::erase(const GCHAR* dictionaryName, const GCHAR* key) {
  const GcDbReadPtr<GcDbDictionary> dictionary(dictionaryId(dictionaryName));
  if (!dictionary) return false;
  const GcDbWritePtr<GcDbObject> entry(idAt(*dictionary, key));
  return entry && entry->erase() == Gcad::eOk;
}

void globalvalues::list(const GCHAR* dictionaryName, RbChain& entries) {
  const GcDbReadPtr<GcDbDictionary> dictionary(dictionaryId(dictionaryName));
  if (dictionary) appendValues(*dictionary, entries);
}

// ---- entities --------------------------------------------------------------------------------------------

namespace {

// Stores in what lies under the key, or in a new object put there. Foreign values are replaced; anything else that
// is no value of ours stays and the put fails.
bool putInto(DocumentTransaction& transaction, GcDbDictionary& dictionary, const GCHAR* key, const GCHAR* value) {
  const GcDbObjectId there = idAt(dictionary, key);
  if (!there.isNull()) {
    GcDbObject* object = transaction.get<GcDbObject>(there, GcDb::kForWrite);
    if (object == nullptr) return false;
    if (CKel_VL* own = CKel_VL::cast(object)) return own->setLData(value) == Gcad::eOk;
    if (ldataKind(*object) != LDataKind::Foreign) return false;
  }
  std::unique_ptr<CKel_VL> made = makeValue(value);
  GcDbObjectId id;
  if (made == nullptr || dictionary.setAt(key, made.get(), id) != Gcad::eOk) return false;
  transaction.addNew(made.release());
  return true;
}

}  // namespace

Stored entityvalues::put(GcDbObjectId id, const GCHAR* key, const GCHAR* value) {
  const GcDbWritePtr<GcDbObject> entity(id);
  if (!entity) return Stored::NoEntity;
  if (entity->extensionDictionary().isNull()) ignore(entity->createExtensionDictionary());
  DocumentTransaction transaction;
  auto* dictionary = transaction.get<GcDbDictionary>(entity->extensionDictionary(), GcDb::kForWrite);
  if (dictionary == nullptr || !putInto(transaction, *dictionary, key, value)) return Stored::No;
  return transaction.commit() ? Stored::Yes : Stored::No;
}

Stored entityvalues::get(GcDbObjectId id, const GCHAR* key, GcString& value) {
  const GcDbReadPtr<GcDbObject> entity(id);
  if (!entity) return Stored::NoEntity;
  const GcDbReadPtr<GcDbDictionary> dictionary(entity->extensionDictionary());
  if (!dictionary) return Stored::No;
  value = textAt(*dictionary, key);
  return value.isEmpty() ? Stored::No : Stored::Yes;
}

Stored entityvalues::erase(GcDbObjectId id, const GCHAR* key) {
  const GcDbWritePtr<GcDbObject> entity(id);
  if (!entity) return Stored::NoEntity;
  DocumentTransaction transaction;
  auto* dictionary = transaction.get<GcDbDictionary>(entity->extensionDictionary(), GcDb::kForWrite);
  if (dictionary == nullptr) return Stored::No;
  auto* entry = transaction.get<GcDbObject>(idAt(*dictionary, key), GcDb::kForWrite);
  if (entry == nullptr || entry->erase() != Gcad::eOk) return Stored::No;
  return transaction.commit() ? Stored::Yes : Stored::No;
}

Stored entityvalues::list(GcDbObjectId id, RbChain& entries) {
  const GcDbReadPtr<GcDbObject> entity(id, Erased::Allowed);
  if (!entity) return Stored::NoEntity;
  const GcDbReadPtr<GcDbDictionary> dictionary(entity->extensionDictionary());
  if (dictionary) appendValues(*dictionary, entries);
  return Stored::Yes;
}

void appendValues(const GcDbDictionary& dictionary, RbChain& entries) {
  for (const std::unique_ptr<GcDbDictionaryIterator> at(dictionary.newIterator()); !at->done(); at->next()) {
    const GcDbReadPtr<GcDbObject> entry(at->objectId());
    if (!entry) continue;
    const GcString text = ldataText(*entry);
    if (text.isEmpty() && ldataKind(*entry) != LDataKind::Foreign) continue;
    entries.append(RTLB);
    entries.appendString(at->name());
    entries.appendString(text.c_str());
    entries.append(RTLE);
  }
}
