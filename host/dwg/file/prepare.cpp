#include "host/dwg/file/prepare.h"

#include <unordered_set>
#include <vector>

#include "db/symboltable.h"
#include "host/db/core/extra.h"
#include "host/db/core/store.h"
#include "host/db/objects/mleaderstyle.h"
#include "host/dwg/record/packrow.h"
#include "host/rx/view.h"

namespace gc::dwg {

namespace {

constexpr int kApplication = 1001;

void registerApplication(GcDbDatabase& database, const GcText& name) {
  GcDbRegAppTable* table = nullptr;
  if (gcdbOpenObject(table, database.regAppTableId(), GcDb::kForWrite) != Gcad::eOk) return;
  if (!table->has(name.c_str())) {
    auto* record = new GcDbRegAppTableRecord;
    if (record->setName(name.c_str()) == Gcad::eOk && table->add(record) == Gcad::eOk)
      ignore(record->close());
    else
      delete record;
  }
  ignore(table->close());
}

void collectApplications(const GcDbObject& object, std::unordered_set<GcText>& names) {
  if (object.extra() == nullptr) return;
  GcDbGroupList::Cursor cursor(object.extra()->xdata);
  for (GcDbGroup group; cursor.next(group);)
    if (group.code == kApplication) names.emplace(group.text);
}

}  // namespace

void prepareToWrite(GcDbDatabase& database, int version) {
  std::unordered_set<GcText> names;
  database.store().forEach([&](GcDbStub* stub) {
    if (stub->object == nullptr || stub->erased) return;
    auto* style = GcDbMLeaderStyle::cast(stub->object);
    if (style != nullptr && version < kR2010) style->markSecondForm();
    collectApplications(*stub->object, names);
  });
  for (const GcText& name : names) registerApplication(database, name);
}

}  // namespace gc::dwg
