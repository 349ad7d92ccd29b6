#include "host/db/core/names.h"

#include "db/database.h"
#include "host/db/core/loadreport.h"
#include "host/db/core/store.h"

void GcDbNameIndex::remove(GcView name, GcDbObjectId id) {
  const auto range = map.equal_range(name);
  for (auto at = range.first; at != range.second; ++at)
    if (at->second == id) {
      map.erase(at);
      return;
    }
}

GcDbObjectId GcDbNameIndex::find(GcView name, bool erased) const {
  GcDbObjectId other;
  const auto range = map.equal_range(name);
  for (auto at = range.first; at != range.second; ++at) {
    if (!at->second.isErased()) return at->second;
    other = at->second;
  }
  return erased ? other : GcDbObjectId();
}

GcView gcdbNameOfRecord(GcDbObjectId id) {
  if (!id.isValid()) return {};
  const GcDbStub* stub = id.stub();
  const auto* record = GcDbSymbolTableRecord::cast(stub->object);
  return record == nullptr ? GcView() : view(record->getName());
}

bool gcdbIsValidRecordName(GcView name, bool allowSpecial) {
  if (name.empty() || name.size() > 255) return false;
  for (size_t i = 0; i < name.size(); ++i) {
    const GCHAR unit = name[i];
    if (unit < 32) return false;
    if (GcView(GC_T("<>/\\\":;?,=`")).find(unit) != GcView::npos) return false;
    if ((unit == '*' || unit == '|') && !allowSpecial) return false;
  }
  return true;
}

namespace {

GcDbObjectId tableFor(GcDbDatabase& database, Is kind) {
  switch (kind) {
    case Is::LayerName: return database.layerTableId();
    case Is::LinetypeName: return database.linetypeTableId();
    case Is::TextStyleName: return database.textStyleTableId();
    case Is::DimStyleName: return database.dimStyleTableId();
    default: return database.blockTableId();
  }
}

}  // namespace

GcDbObjectId gcdbRecordByName(GcDbDatabase* database, Is kind, GcView name) {
  GcDbObjectId id;
  if (database == nullptr || name.empty()) return id;
  const GcDbObjectId tableId = tableFor(*database, kind);
  if (!tableId.isValid()) return id;
  auto* table = GcDbSymbolTable::cast(tableId.stub()->object);
  GcDbObject* opened = nullptr;
  const bool wasOpen = tableId.stub()->isOpen();
  if (!wasOpen && gcdbOpenGcDbObject(opened, tableId, GcDb::kForWrite) != Gcad::eOk) return id;
  const GcText text(name);
  if (table->getAt(text.c_str(), id) != Gcad::eOk && table->isWriteEnabled()) {
    auto* record = static_cast<GcDbSymbolTableRecord*>(table->recordClass()->create());
    GcDbLoadReport& report = database->loadReport();
    if (record->setName(text.c_str()) == Gcad::eOk && table->add(id, record) == Gcad::eOk) {
      ignore(record->close());
      report.add(
          {GcDbLoadAction::Repaired, 0, 0, id.handle(), "\"" + toUtf8(name) + "\" is used but not defined: defined"});
    } else {
      delete record;
      report.add({GcDbLoadAction::Noted, 0, 0, 0, "\"" + toUtf8(name) + "\" is used but cannot be a name"});
    }
  }
  if (!wasOpen) ignore(opened->close());
  return id;
}
