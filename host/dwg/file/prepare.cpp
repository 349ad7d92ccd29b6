#include "host/dwg/file/prepare.h"

#include <unordered_set>
#include <vector>

#include "db/blockbegin.h"
#include "db/entity.h"
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

// Passes over all objects are what takes long in a large drawing: everything is looked for in one.
struct Survey {
  std::unordered_set<GcText> applications;
  GcText lastApplication;
  std::vector<GcDbEntity*> sequences;  // without an end

  void lookAt(GcDbObject& object) {
    const GcDbObjectExtra* extra = object.extra();
    if (extra == nullptr) return;
    if (!extra->xdata.isEmpty()) collectApplications(extra->xdata);
    if (extra->parts.isEmpty() || (extra->sequenceEnd.isValid() && !extra->sequenceEnd.isErased())) return;
    if (auto* entity = GcDbEntity::cast(&object)) sequences.push_back(entity);
  }

  void collectApplications(const GcDbGroupList& xdata) {
    GcDbGroupList::Cursor cursor(xdata);
    for (GcDbGroup group; cursor.next(group);) {
      if (group.code != kApplication || group.text == lastApplication) continue;
      lastApplication = group.text;
      applications.insert(lastApplication);
    }
  }
};

void endSequence(GcDbEntity& entity) {
  auto* end = new GcDbSequenceEnd;
  ignore(end->setLayer(entity.layerId()));
  GcDbObjectId id;
  ignore(entity.database()->addGcDbObject(id, end, entity.objectId()));
  ignore(end->close());
  entity.needExtra().sequenceEnd = id;
}

}  // namespace

void prepareToWrite(GcDbDatabase& database, int version) {
  Survey survey;
  database.store().forEach([&](GcDbStub* stub) {
    if (stub->object == nullptr || stub->erased) return;
    if (version < kR2010)
      if (auto* style = GcDbMLeaderStyle::cast(stub->object)) style->markSecondForm();
    survey.lookAt(*stub->object);
  });
  for (const GcText& name : survey.applications) registerApplication(database, name);
  for (GcDbEntity* entity : survey.sequences) endSequence(*entity);
}

}  // namespace gc::dwg
