#include <iterator>

#include "db/blockbegin.h"
#include "db/database.h"
#include "db/symboltable.h"
#include "host/db/core/names.h"
#include "host/db/core/undo.h"
#include "host/db/describe/fieldio.h"
#include "host/rx/view.h"

GCDB_DEFINE_CLASS(GcDbBlockTableRecord, "AcDbBlockTableRecord")
GCDB_DEFINE_CLASS(GcDbBlockBegin, "AcDbBlockBegin")
GCDB_DEFINE_CLASS(GcDbBlockEnd, "AcDbBlockEnd")
GCDB_DEFINE_CLASS(GcDbSequenceEnd, "AcDbSequenceEnd")

struct GcDbBlockFields {
  static constexpr GcDbField name() { return field<&GcDbBlockTableRecord::m_name>(2, "name", Is::Plain); }
  static constexpr GcDbField layout() {
    return field<&GcDbBlockTableRecord::m_layoutId>(340, "layout", Is::HardPointer).from(GcDb::kDHL_AC1015);
  }
  static constexpr GcDbField units() {
    return field<&GcDbBlockTableRecord::m_units>(70, "units", Is::Plain).from(GcDb::kDHL_AC1021);
  }
  static constexpr GcDbField explodable() {
    return field<&GcDbBlockTableRecord::m_explodable>(280, "explodable", Is::Plain).from(GcDb::kDHL_AC1021);
  }
  static constexpr GcDbField scaleUniformly() {
    return field<&GcDbBlockTableRecord::m_scaleUniformly>(281, "scaleUniformly", Is::Plain).from(GcDb::kDHL_AC1021);
  }
  static constexpr GcDbField preview() {
    return field<&GcDbBlockTableRecord::m_preview>(310, "preview", Is::Plain, Write::UnlessDefault)
        .from(GcDb::kDHL_AC1015);
  }
  static constexpr GcDbField blockFlags() {
    return field<&GcDbBlockTableRecord::m_blockFlags>(70, "blockFlags", Is::Plain);
  }
  static constexpr GcDbField origin() { return field<&GcDbBlockTableRecord::m_origin>(10, "origin", Is::WcsPoint); }
  static constexpr GcDbField nameAgain() {
    GcDbField row = field<&GcDbBlockTableRecord::m_name>(3, "nameAgain", Is::Plain);
    row.set = dropIt;
    return row;
  }
  static constexpr GcDbField nameOfBlock() {
    GcDbField row = name();
    row.set = dropIt;
    return row;
  }
  // The block entity repeats the record's name; the record's own counts.
  static bool dropIt(void*, const GcDbGroup&) { return true; }
  static constexpr GcDbField path() { return field<&GcDbBlockTableRecord::m_path>(1, "path", Is::Plain); }
  static constexpr GcDbField comments() {
    return field<&GcDbBlockTableRecord::m_comments>(4, "comments", Is::Plain, Write::UnlessDefault);
  }
};

const GcDbField GcDbBlockTableRecord::kFields[] = {
    marker("AcDbBlockTableRecord"), GcDbBlockFields::name(),       GcDbBlockFields::layout(),
    GcDbBlockFields::units(),       GcDbBlockFields::explodable(), GcDbBlockFields::scaleUniformly(),
    GcDbBlockFields::preview(),
};
GCDB_FIELD_COUNT(GcDbBlockTableRecord);

// Behind the marker of the BLOCK entity. They belong to the record but are filed apart from it in groups; in
// memory copies they follow the record's own rows (see the registry).
const GcDbField GcDbBlockTableRecord::kBlockFields[] = {
    GcDbBlockFields::nameOfBlock(), GcDbBlockFields::blockFlags(), GcDbBlockFields::origin(),
    GcDbBlockFields::nameAgain(),   GcDbBlockFields::path(),       GcDbBlockFields::comments(),
};
const int GcDbBlockTableRecord::kBlockFieldCount = static_cast<int>(std::size(GcDbBlockTableRecord::kBlockFields));

const GcDbField GcDbBlockBegin::kFields[] = {marker("AcDbBlockBegin")};
GCDB_FIELD_COUNT(GcDbBlockBegin);
const GcDbField GcDbBlockEnd::kFields[] = {marker("AcDbBlockEnd")};
GCDB_FIELD_COUNT(GcDbBlockEnd);

Gcad::ErrorStatus GcDbBlockTableRecord::appendGcDbEntity(GcDbEntity* entity) {
  GcDbObjectId id;
  return appendGcDbEntity(id, entity);
}

Gcad::ErrorStatus GcDbBlockTableRecord::appendGcDbEntity(GcDbObjectId& id, GcDbEntity* entity) {
  if (entity == nullptr) return Gcad::eNullEntityPointer;
  if (!entity->objectId().isNull()) return Gcad::eAlreadyInDb;
  assertWriteEnabled(false);
  if (entity->layerId().isNull()) entity->setDatabaseDefaults(database());
  const Gcad::ErrorStatus status = database()->addGcDbObject(id, entity, objectId());
  if (status != Gcad::eOk) return status;
  m_entities.append(id);
  entity->subAppended();
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockTableRecord::adoptEntity(GcDbObjectId id) {
  if (!id.isValid() || !id.objectClass()->isDerivedFrom(GcDbEntity::desc())) return Gcad::eNotThatKindOfClass;
  assertWriteEnabled(false);
  m_entities.append(id);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockTableRecord::newIterator(GcDbBlockTableRecordIterator*& iterator, bool atBeginning,
                                                    bool skipErased) const {
  assertReadEnabled();
  iterator = new GcDbBlockTableRecordIterator(m_entities, atBeginning, skipErased);
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockTableRecord::setOrigin(const GcGePoint3d& origin) {
  assertWriteEnabled();
  m_origin = origin;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockTableRecord::comments(GcString& text) const {
  assertReadEnabled();
  text = m_comments;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockTableRecord::setComments(const GCHAR* text) {
  assertWriteEnabled();
  m_comments = text;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockTableRecord::setLayoutId(GcDbObjectId id) {
  assertWriteEnabled();
  m_layoutId = id;
  return Gcad::eOk;
}

Gcad::ErrorStatus GcDbBlockTableRecord::setBlockFlags(int flags) {
  assertWriteEnabled();
  m_blockFlags = static_cast<int16_t>(flags);
  return Gcad::eOk;
}

bool GcDbBlockTableRecord::isLayout() const { return !m_layoutId.isNull() || isModelSpace() || isPaperSpace(); }

bool GcDbBlockTableRecord::isModelSpace() const { return equalNoCase(view(m_name), GC_T("*Model_Space")); }

bool GcDbBlockTableRecord::isPaperSpace() const {
  constexpr GcView kPrefix = GC_T("*Paper_Space");
  return m_name.length() >= kPrefix.size() && equalNoCase(view(m_name).substr(0, kPrefix.size()), kPrefix);
}

bool GcDbBlockTableRecord::hasAttributeDefinitions() const {
  const GcRxClass* definition = gcrxFindGcRxClass(GC_T("AcDbAttributeDefinition"));
  for (const GcDbObjectId id : m_entities)
    if (!id.isErased() && id.isValid() && id.objectClass() == definition) return true;
  return false;
}

void GcDbBlockTableRecord::subOwned(GcDbObjectIdArray& ids) const {
  if (!m_beginId.isNull()) ids.append(m_beginId);
  ids.append(m_entities);
  if (!m_endId.isNull()) ids.append(m_endId);
}

void GcDbBlockTableRecord::subSetOwned(const GcDbObjectIdArray& ids) {
  m_beginId.setNull();
  m_endId.setNull();
  m_entities.clear();
  for (const GcDbObjectId id : ids) {
    if (!id.isValid()) continue;
    if (id.objectClass() == GcDbBlockBegin::desc())
      m_beginId = id;
    else if (id.objectClass() == GcDbBlockEnd::desc())
      m_endId = id;
    else
      m_entities.append(id);
  }
}

// Model space and the paper spaces of layouts stay.
Gcad::ErrorStatus GcDbBlockTableRecord::subErase(bool erasing) {
  return erasing && (!m_layoutId.isNull() || isModelSpace()) ? Gcad::eCannotBeErasedByCaller : Gcad::eOk;
}

GcDbBlockTableRecordIterator::GcDbBlockTableRecordIterator(const GcDbObjectIdArray& ids, bool atBeginning,
                                                           bool skipErased)
    : m_ids(ids) {
  start(atBeginning, skipErased);
}

void GcDbBlockTableRecordIterator::start(bool atBeginning, bool skipErased) {
  m_at = atBeginning ? 0 : m_ids.length() - 1;
  skip(atBeginning ? 1 : -1, skipErased);
}

void GcDbBlockTableRecordIterator::skip(int direction, bool skipErased) {
  while (skipErased && !done() && m_ids[m_at].isErased()) m_at += direction;
}

void GcDbBlockTableRecordIterator::step(bool forwards, bool skipErased) {
  if (done()) return;
  m_at += forwards ? 1 : -1;
  skip(forwards ? 1 : -1, skipErased);
}

Gcad::ErrorStatus GcDbBlockTableRecordIterator::getEntityId(GcDbObjectId& id) const {
  if (done()) return Gcad::eInvalidIndex;
  id = m_ids[m_at];
  return Gcad::eOk;
}
