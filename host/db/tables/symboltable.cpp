#include "db/symboltable.h"

#include <iterator>

#include "db/database.h"
#include "host/db/core/loader.h"
#include "host/db/core/names.h"
#include "host/db/core/store.h"
#include "host/db/core/undo.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbSymbolTableRecord, "AcDbSymbolTableRecord")
GCDB_DEFINE_CLASS(GcDbSymbolTable, "AcDbSymbolTable")
GCDB_DEFINE_CLASS(GcDbRegAppTableRecord, "AcDbRegAppTableRecord")

// Name and flags stand in files behind the marker of the record's own class, so each class has them in its rows.
const GcDbField GcDbSymbolTableRecord::kFields[] = {
    marker("AcDbSymbolTableRecord"),
};
GCDB_FIELD_COUNT(GcDbSymbolTableRecord);

struct GcDbRegAppFields {
  static constexpr GcDbField name() { return field<&GcDbRegAppTableRecord::m_name>(2, "name", Is::Plain); }
  static constexpr GcDbField flags() { return field<&GcDbRegAppTableRecord::m_flags>(70, "flags", Is::Plain); }
};

const GcDbField GcDbRegAppTableRecord::kFields[] = {
    marker("AcDbRegAppTableRecord"),
    GcDbRegAppFields::name(),
    GcDbRegAppFields::flags(),
};
GCDB_FIELD_COUNT(GcDbRegAppTableRecord);

#define GC_DEFINE_TABLE(Table, rxName, Record) \
  GCDB_DEFINE_CLASS(Table, rxName)             \
  GcRxClass* Table::recordClass() const { return gcrxFindGcRxClass(GC_T(Record)); }

GC_DEFINE_TABLE(GcDbLayerTable, "AcDbLayerTable", "AcDbLayerTableRecord")
GC_DEFINE_TABLE(GcDbBlockTable, "AcDbBlockTable", "AcDbBlockTableRecord")
GC_DEFINE_TABLE(GcDbLinetypeTable, "AcDbLinetypeTable", "AcDbLinetypeTableRecord")
GC_DEFINE_TABLE(GcDbTextStyleTable, "AcDbTextStyleTable", "AcDbTextStyleTableRecord")
GC_DEFINE_TABLE(GcDbDimStyleTable, "AcDbDimStyleTable", "AcDbDimStyleTableRecord")
GC_DEFINE_TABLE(GcDbRegAppTable, "AcDbRegAppTable", "AcDbRegAppTableRecord")
GC_DEFINE_TABLE(GcDbViewTable, "AcDbViewTable", "AcDbViewTableRecord")
GC_DEFINE_TABLE(GcDbViewportTable, "AcDbViewportTable", "AcDbViewportTableRecord")
GC_DEFINE_TABLE(GcDbUCSTable, "AcDbUCSTable", "AcDbUCSTableRecord")

// ---- records ---------------------------------------------------------------------------------------------

Gcad::ErrorStatus GcDbSymbolTableRecord::getName(GcString& name) const {
  assertReadEnabled();
  name = m_name;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbSymbolTableRecord::getName(GCHAR*& name) const {
  assertReadEnabled();
  return gcutNewString(m_name.c_str(), name);
}

namespace {

// Records that the format knows by their name.
bool hasFixedName(const GcDbSymbolTableRecord& record) {
  const GcDbDatabase* database = record.database();
  if (database == nullptr) return false;
  const GcDbObjectId id = record.objectId();
  return id == database->layerZero() || id == database->byLayerLinetype() || id == database->byBlockLinetype() ||
         id == database->continuousLinetype();
}

}  // namespace

Gcad::ErrorStatus GcDbSymbolTableRecord::setName(const GCHAR* name) {
  if (!gcdbIsValidRecordName(view(name),
                             isDependent() || isKindOf(GcDbBlockTableRecord::desc()) || view(name) == GC_T("*Active")))
    return Gcad::eInvalidInput;
  if (hasFixedName(*this) && !equalNoCase(view(name), view(m_name))) return Gcad::eInvalidInput;
  assertWriteEnabled();
  // The table's index follows however the table is open, by its caller for writing, say.
  GcDbObject* owner = ownerId().isNull() ? nullptr : ownerId().stub()->object;
  GcDbSymbolTable* table = GcDbSymbolTable::cast(owner);
  if (table == nullptr) {  // not in a table yet
    m_name = name;
    return Gcad::eOk;
  }
  const GcDbObjectId other = table->m_index == nullptr ? GcDbObjectId() : table->m_index->find(view(name), false);
  const bool taken = !other.isNull() && other != objectId();
  if (!taken) {
    table->unindexRecord(*this);
    m_name = name;
    table->indexRecord(*this);
  }
  return taken ? Gcad::eDuplicateRecordName : Gcad::eOk;
}

void GcDbSymbolTableRecord::subJoined() {}

Gcad::ErrorStatus GcDbSymbolTableRecord::setFlags(int16_t flags) {
  assertWriteEnabled();
  m_flags = flags;
  return Gcad::eOk;
}

// ---- the table -------------------------------------------------------------------------------------------

GcDbSymbolTable::~GcDbSymbolTable() { delete m_index; }

void GcDbSymbolTable::indexRecord(const GcDbSymbolTableRecord& record) {
  if (m_index == nullptr) m_index = new GcDbNameIndex;
  m_index->add(view(record.m_name), record.objectId());
}

void GcDbSymbolTable::unindexRecord(const GcDbSymbolTableRecord& record) {
  if (m_index != nullptr) m_index->remove(view(record.m_name), record.objectId());
}

Gcad::ErrorStatus GcDbSymbolTable::getAt(const GCHAR* name, GcDbObjectId& id, bool getErased) const {
  assertReadEnabled();
  id = m_index == nullptr ? GcDbObjectId() : m_index->find(view(name), getErased);
  return id.isNull() ? Gcad::eKeyNotFound : Gcad::eOk;
}

bool GcDbSymbolTable::has(const GCHAR* name) const {
  GcDbObjectId id;
  return getAt(name, id) == Gcad::eOk;
}

Gcad::ErrorStatus GcDbSymbolTable::add(GcDbSymbolTableRecord* record) {
  GcDbObjectId id;
  return add(id, record);
}

Gcad::ErrorStatus GcDbSymbolTable::add(GcDbObjectId& id, GcDbSymbolTableRecord* record) {
  if (record == nullptr) return Gcad::eNullObjectPointer;
  if (!record->isKindOf(recordClass())) return Gcad::eNotThatKindOfClass;
  if (!record->objectId().isNull()) return Gcad::eAlreadyInDb;
  assertWriteEnabled(false);
  const GcView name = view(record->m_name);
  if (name.empty()) return Gcad::eInvalidInput;
  const bool mayRepeat = isKindOf(GcDbViewportTable::desc());
  if (!mayRepeat && has(record->m_name.c_str())) return Gcad::eDuplicateRecordName;
  const Gcad::ErrorStatus status = database()->addGcDbObject(id, record, objectId());
  if (status != Gcad::eOk) return status;
  m_records.append(id);
  indexRecord(*record);
  record->subJoined();
  // A definition has its ends from the start: a save that made them would change the drawing.
  if (auto* block = GcDbBlockTableRecord::cast(record)) GcDbLoader::completeBlock(*block);
  return Gcad::eOk;
}

void GcDbSymbolTable::subOwned(GcDbObjectIdArray& ids) const { ids.append(m_records); }

Gcad::ErrorStatus GcDbSymbolTable::newIterator(GcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipErased) const {
  assertReadEnabled();
  iterator = new GcDbSymbolTableIterator(m_records, atBeginning, skipErased);
  return Gcad::eOk;
}

// ---- iterators -------------------------------------------------------------------------------------------

GcDbSymbolTableIterator::GcDbSymbolTableIterator(const GcDbObjectIdArray& ids, bool atBeginning, bool skipErased)
    : m_ids(ids) {
  start(atBeginning, skipErased);
}

void GcDbSymbolTableIterator::start(bool atBeginning, bool skipErased) {
  m_at = atBeginning ? 0 : m_ids.length() - 1;
  skip(atBeginning ? 1 : -1, skipErased);
}

void GcDbSymbolTableIterator::skip(int direction, bool skipErased) {
  while (skipErased && !done() && m_ids[m_at].isErased()) m_at += direction;
}

void GcDbSymbolTableIterator::step(bool forwards, bool skipErased) {
  if (done()) return;
  m_at += forwards ? 1 : -1;
  skip(forwards ? 1 : -1, skipErased);
}

Gcad::ErrorStatus GcDbSymbolTableIterator::getRecordId(GcDbObjectId& id) const {
  if (done()) return Gcad::eInvalidIndex;
  id = m_ids[m_at];
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbSymbolTableIterator::getRecord(GcDbSymbolTableRecord*& record, GcDb::OpenMode mode,
                                                     bool openErased) const {
  record = nullptr;
  return done() ? Gcad::eInvalidIndex : gcdbOpenObject(record, m_ids[m_at], mode, openErased);
}
