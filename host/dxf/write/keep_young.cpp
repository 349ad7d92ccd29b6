#include "host/dxf/write/keep_young.h"

#include <memory>
#include <vector>

#include "db/database.h"
#include "db/symboltable.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/db/describe/fieldloss.h"
#include "host/dxf/write/header_writer.h"

namespace gc::dxf {
namespace {

// What the block's begin says.
void readBlockFields(const GcDbObject& written, GcDbBlockTableRecord& read, int version) {
  std::vector<const GcDbField*> rows;
  for (int i = 0; i < GcDbBlockTableRecord::kBlockFieldCount; ++i)
    rows.push_back(&GcDbBlockTableRecord::kBlockFields[i]);
  GcDbGroupList groups;
  gcdbRowsOut(&written, rows[0], static_cast<int>(rows.size()), groups, version, written.database());
  GcDbFieldReader reader(&read, rows.data(), static_cast<int>(rows.size()), version, written.database());
  GcDbGroupList::Cursor cursor(groups);
  for (GcDbGroup group; cursor.next(group);) (void)reader.take(group);
}

// The object as one that reads the version's groups has it.
GcDbGroupList groupsInVersion(const GcDbObject& object, int version) {
  const std::unique_ptr<GcDbObject> fresh(static_cast<GcDbObject*>(object.isA()->create()));
  GcDbGroupList written;
  gcdbFieldsOut(object, written, version);
  const GcDbClassInfo& info = *gcdbInfoOf(object);
  GcDbFieldReader reader(fresh.get(), info.rows, info.rowCount, version, object.database());
  GcDbGroupList::Cursor cursor(written);
  for (GcDbGroup group; cursor.next(group);) (void)reader.take(group);
  if (auto* block = GcDbBlockTableRecord::cast(fresh.get())) readBlockFields(object, *block, version);
  fresh->subLoaded();
  return gcdbGroupsToCompare(*fresh);
}

void keepFields(const GcDbDatabase& database, int version, GcDbRoundTrip& kept) {
  GcDbLossFinder losses(version, GcDbLossOf::Everything);
  database.store().forEach([&](const GcDbStub* stub) {
    if (stub->object == nullptr || stub->erased || losses.find(*stub->object).empty()) return;
    (void)kept.changes(stub->object->objectId(), gcdbGroupsToCompare(*stub->object),
                       groupsInVersion(*stub->object, version));
  });
}

}  // namespace

GcDbRoundTrip collectYoung(const GcDbDatabase& database, int version) {
  GcDbRoundTrip kept;
  for (const GcDbHeader::Variable& variable : database.header().variables())
    if (variableSince(variable.name) > version) kept.variable(variable.name, variable.groups);
  if (version < GcDb::kDHL_AC1018)
    for (const GcDbCustomProperty& property : database.fileParts().customProperties) kept.property(property);
  if (version < GcDb::kDHL_Current) keepFields(database, version, kept);
  return kept;
}

}  // namespace gc::dxf
