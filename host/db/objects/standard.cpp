#include "host/db/objects/standard.h"

#include <iterator>

#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"

GCDB_DEFINE_CLASS(GcDbDictionaryWithDefault, "AcDbDictionaryWithDefault")
GCDB_DEFINE_CLASS(GcDbPlaceHolder, "AcDbPlaceHolder")
GCDB_DEFINE_CLASS(GcDbDictionaryVar, "AcDbDictionaryVar")
GCDB_DEFINE_CLASS(GcDbEntityGroup, "AcDbGroup")
GCDB_DEFINE_CLASS(GcDbScale, "AcDbScale")
GCDB_DEFINE_CLASS(GcDbSortentsTable, "AcDbSortentsTable")

const GcDbField GcDbDictionaryWithDefault::kFields[] = {
    marker("AcDbDictionaryWithDefault"),
    field<&GcDbDictionaryWithDefault::m_defaultId>(340, "default", Is::HardPointer),
};
GCDB_FIELD_COUNT(GcDbDictionaryWithDefault);

const GcDbField GcDbDictionaryVar::kFields[] = {
    marker("DictionaryVariables"),
    field<&GcDbDictionaryVar::m_schema>(280, "schema", Is::Plain),
    field<&GcDbDictionaryVar::m_value>(1, "value", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbDictionaryVar);

const GcDbField GcDbEntityGroup::kFields[] = {
    marker("AcDbGroup"),
    field<&GcDbEntityGroup::m_description>(300, "description", Is::Plain),
    field<&GcDbEntityGroup::m_unnamed>(70, "unnamed", Is::Plain),
    field<&GcDbEntityGroup::m_selectable>(71, "selectable", Is::Plain),
    list<&GcDbEntityGroup::m_entities, 340, Is::HardPointer>(-1, "entities"),
};
GCDB_FIELD_COUNT(GcDbEntityGroup);

Gcad::ErrorStatus GcDbEntityGroup::append(GcDbObjectId entity) {
  assertWriteEnabled();
  if (!m_entities.contains(entity)) m_entities.append(entity);
  return Gcad::eOk;
}

const GcDbField GcDbScale::kFields[] = {
    marker("AcDbScale"),
    field<&GcDbScale::m_flags>(70, "flags", Is::Plain),
    field<&GcDbScale::m_name>(300, "name", Is::Plain),
    field<&GcDbScale::m_paperUnits>(140, "paperUnits", Is::Plain),
    field<&GcDbScale::m_drawingUnits>(141, "drawingUnits", Is::Plain),
    field<&GcDbScale::m_isUnit>(290, "isUnit", Is::Plain),
};
GCDB_FIELD_COUNT(GcDbScale);

namespace {

GcDbGroup getSortedAs(const void* record) {
  GcDbGroup group;
  group.code = 5;
  group.kind = GcDbGroupKind::Handle;
  group.integer = static_cast<const GcDbSortPair*>(record)->sortedAs;
  return group;
}

bool setSortedAs(void* record, const GcDbGroup& group) {
  static_cast<GcDbSortPair*>(record)->sortedAs = group.asInt();
  return true;
}

constexpr GcDbField kPairFields[] = {
    field<&GcDbSortPair::entity>(331, "entity", Is::SoftPointer),
    field<&GcDbSortPair::sortedAs>(5, "sortedAs", Is::Plain).filedAs(getSortedAs, setSortedAs),
};

}  // namespace

const GcDbField GcDbSortentsTable::kFields[] = {
    marker("AcDbSortentsTable"),
    field<&GcDbSortentsTable::m_blockId>(330, "block", Is::SoftPointer),
    each<&GcDbSortentsTable::m_pairs>(-1, "pairs", kPairFields),
};
GCDB_FIELD_COUNT(GcDbSortentsTable);
