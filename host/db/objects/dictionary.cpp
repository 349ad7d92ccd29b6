#include "db/dictionary.h"

#include <iterator>

#include "db/database.h"
#include "host/db/core/names.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbDictionary, "AcDbDictionary")

namespace {

constexpr int kIndexFrom = 16;  // smaller dictionaries are searched one by one

// An entry stands under 360 when the dictionary owns it hard, under 350 when not; files mix both in one
// dictionary, so each entry remembers its own.
GcDbGroup getEntryId(const void* record) {
  const auto& entry = *static_cast<const GcDbDictionaryEntry*>(record);
  return GcDbGroup::ofId(entry.hard ? 360 : 350, entry.id);
}

bool setEntryId(void* record, const GcDbGroup& group) {
  auto& entry = *static_cast<GcDbDictionaryEntry*>(record);
  entry.hard = group.code == 360;
  entry.id = group.id;
  return true;
}

constexpr GcDbField kEntryFields[] = {
    field<&GcDbDictionaryEntry::key>(3, "key", Is::Plain),
    []() {
      GcDbField row = field<&GcDbDictionaryEntry::id>(350, "object", Is::SoftOwner);
      row.alsoCode = 360;
      row.get = getEntryId;
      row.set = setEntryId;
      return row;
    }(),
    field<&GcDbDictionaryEntry::hard>(-1, "hard", Is::Plain),
};

}  // namespace

const GcDbField GcDbDictionary::kFields[] = {
    marker("AcDbDictionary"),
    field<&GcDbDictionary::m_hard>(280, "hardOwner", Is::Plain, Write::UnlessDefault).from(GcDb::kDHL_AC1015),
    field<&GcDbDictionary::m_merge>(281, "mergeStyle", Is::Plain).from(GcDb::kDHL_AC1015),
    each<&GcDbDictionary::m_entries>(-1, "entries", kEntryFields),
};
GCDB_FIELD_COUNT(GcDbDictionary);

GcDbDictionary::~GcDbDictionary() { delete m_index; }

void GcDbDictionary::rebuildIndex() const {
  delete m_index;
  m_index = new GcDbNameIndex;
  for (const GcDbDictionaryEntry& entry : m_entries) m_index->add(view(entry.key), entry.id);
}

int GcDbDictionary::findKey(const GCHAR* key) const {
  if (m_entries.length() >= kIndexFrom) {
    if (m_index == nullptr || m_index->map.size() != static_cast<size_t>(m_entries.length())) rebuildIndex();
    if (m_index->map.find(view(key)) == m_index->map.end()) return -1;
  }
  for (int i = 0; i < m_entries.length(); ++i)
    if (!m_entries[i].id.isErased() && equalNoCase(view(m_entries[i].key), view(key))) return i;
  return -1;
}

Gcad::ErrorStatus GcDbDictionary::getAt(const GCHAR* key, GcDbObjectId& id) const {
  assertReadEnabled();
  id.setNull();
  if (m_entries.length() >= kIndexFrom) {
    if (m_index == nullptr || m_index->map.size() != static_cast<size_t>(m_entries.length())) rebuildIndex();
    id = m_index->find(view(key), false);
    return id.isNull() ? Gcad::eKeyNotFound : Gcad::eOk;
  }
  const int at = findKey(key);
  if (at < 0) return Gcad::eKeyNotFound;
  id = m_entries[at].id;
  return Gcad::eOk;
}

bool GcDbDictionary::has(const GCHAR* key) const {
  GcDbObjectId id;
  return getAt(key, id) == Gcad::eOk;
}

bool GcDbDictionary::has(GcDbObjectId id) const {
  GcString key;
  return nameAt(id, key) == Gcad::eOk;
}

Gcad::ErrorStatus GcDbDictionary::nameAt(GcDbObjectId id, GcString& key) const {
  assertReadEnabled();
  for (const GcDbDictionaryEntry& entry : m_entries)
    if (entry.id == id && !id.isErased()) {
      key = entry.key;
      return Gcad::eOk;
    }
  return Gcad::eKeyNotFound;
}

Gcad::ErrorStatus GcDbDictionary::setAt(const GCHAR* key, GcDbObject* object, GcDbObjectId& id) {
  id.setNull();
  if (key == nullptr || key[0] == 0) return Gcad::eInvalidKey;
  if (object == nullptr) return Gcad::eNullObjectPointer;
  if (objectId().isNull()) return Gcad::eNotInDatabase;
  assertWriteEnabled();
  const int at = findKey(key);
  if (object->objectId().isNull()) {
    const Gcad::ErrorStatus status = database()->addGcDbObject(id, object, objectId());
    if (status != Gcad::eOk) return status;
  } else {
    id = object->objectId();
    ignore(object->setOwnerId(objectId()));
  }
  if (at < 0) {
    m_entries.append(GcDbDictionaryEntry{key, id, m_hard});
    return Gcad::eOk;
  }
  GcDbObject* former = nullptr;
  if (m_entries[at].id != id && gcdbOpenGcDbObject(former, m_entries[at].id, GcDb::kForWrite) == Gcad::eOk) {
    ignore(former->erase());
    ignore(former->close());
  }
  m_entries[at].id = id;
  delete m_index;
  m_index = nullptr;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDictionary::remove(const GCHAR* key) {
  GcDbObjectId id;
  return remove(key, id);
}

Gcad::ErrorStatus GcDbDictionary::remove(const GCHAR* key, GcDbObjectId& id) {
  const int at = findKey(key);
  if (at < 0) return Gcad::eKeyNotFound;
  assertWriteEnabled();
  id = m_entries[at].id;
  m_entries.removeAt(at);
  delete m_index;
  m_index = nullptr;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbDictionary::remove(GcDbObjectId id) {
  GcString key;
  const Gcad::ErrorStatus status = nameAt(id, key);
  return status == Gcad::eOk ? remove(key.c_str()) : status;
}

bool GcDbDictionary::setName(const GCHAR* oldKey, const GCHAR* newKey) {
  const int at = findKey(oldKey);
  if (at < 0 || newKey == nullptr || newKey[0] == 0) return false;
  const int other = findKey(newKey);
  if (other >= 0 && other != at) return false;
  assertWriteEnabled();
  m_entries[at].key = newKey;
  delete m_index;
  m_index = nullptr;
  return true;
}

void GcDbDictionary::setTreatElementsAsHard(bool hard) {
  assertWriteEnabled();
  m_hard = hard;
}

uint32_t GcDbDictionary::numEntries() const {
  uint32_t count = 0;
  for (const GcDbDictionaryEntry& entry : m_entries) count += entry.id.isErased() ? 0 : 1;
  return count;
}

void GcDbDictionary::appendEntry(const GcString& key, GcDbObjectId id) {
  m_entries.append(GcDbDictionaryEntry{key, id, m_hard});
}

void GcDbDictionary::replaceEntries(const GcArray<GcDbDictionaryEntry>& entries) {
  m_entries = entries;
  dropNullEntries();
  subLoaded();  // the index
}

void GcDbDictionary::dropNullEntries() {
  for (int i = m_entries.length() - 1; i >= 0; --i)
    if (m_entries[i].id.isNull()) m_entries.removeAt(i);
}

void GcDbDictionary::subOwned(GcDbObjectIdArray& ids) const {
  for (const GcDbDictionaryEntry& entry : m_entries) ids.append(entry.id);
}

void GcDbDictionary::subLoaded() {
  delete m_index;
  m_index = nullptr;
}

// ---- iterator --------------------------------------------------------------------------------------------

GcDbDictionaryIterator* GcDbDictionary::newIterator() const { return new GcDbDictionaryIterator(*this); }

GcDbDictionaryIterator::GcDbDictionaryIterator(const GcDbDictionary& dictionary) : m_dictionary(dictionary) {
  skipErased();
}

void GcDbDictionaryIterator::skipErased() {
  while (!done() && m_dictionary.m_entries[m_at].id.isErased()) ++m_at;
}

bool GcDbDictionaryIterator::done() const { return m_at >= m_dictionary.m_entries.length(); }

bool GcDbDictionaryIterator::next() {
  if (done()) return false;
  ++m_at;
  skipErased();
  return !done();
}

const GCHAR* GcDbDictionaryIterator::name() const { return m_dictionary.m_entries[m_at].key.c_str(); }
GcDbObjectId GcDbDictionaryIterator::objectId() const { return m_dictionary.m_entries[m_at].id; }
Gcad::ErrorStatus GcDbDictionaryIterator::getObject(GcDbObject*& object, GcDb::OpenMode mode) const {
  return gcdbOpenGcDbObject(object, objectId(), mode);
}
