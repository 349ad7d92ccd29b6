#include <algorithm>

#include "host/db/audit/auditor.h"
#include "host/rx/view.h"

namespace {

constexpr const char* kTables[GcDbDatabase::kTableCount] = {
    "blocks", "layers", "text styles", "linetypes", "views", "UCSs", "viewports", "applications", "dimension styles"};

bool hasRecord(const GcDbDatabase& database, int table, const GCHAR* name) {
  const auto* records = gcdbLive<GcDbSymbolTable>(database.tableId(table));
  if (records == nullptr) return false;
  return std::any_of(records->records().begin(), records->records().end(), [&](GcDbObjectId id) {
    const auto* record = gcdbLive<GcDbSymbolTableRecord>(id);
    return record != nullptr && equalNoCase(view(record->getName()), name);
  });
}

void auditRecords(GcDbAuditor& auditor) {
  struct Wanted {
    int table;
    const GCHAR* name;
  };
  constexpr Wanted kWanted[] = {
      {GcDbDatabase::kLayers, GC_T("0")},           {GcDbDatabase::kLinetypes, GC_T("ByBlock")},
      {GcDbDatabase::kLinetypes, GC_T("ByLayer")},  {GcDbDatabase::kLinetypes, GC_T("Continuous")},
      {GcDbDatabase::kRegApps, GC_T("ACAD")},       {GcDbDatabase::kTextStyles, GC_T("Standard")},
      {GcDbDatabase::kDimStyles, GC_T("Standard")}, {GcDbDatabase::kBlocks, GC_T("*Model_Space")},
      {GcDbDatabase::kBlocks, GC_T("*Paper_Space")}};
  bool make = false;
  for (int table = 0; table < GcDbDatabase::kTableCount; ++table) {
    if (!gcdbIsLive(auditor.database().tableId(table)))
      make |= auditor.found(GcDbDefect::MissingRecord, nullptr, std::string("the table of ") + kTables[table]);
  }
  for (const Wanted& wanted : kWanted) {
    if (gcdbIsLive(auditor.database().tableId(wanted.table)) &&
        !hasRecord(auditor.database(), wanted.table, wanted.name))
      make |= auditor.found(GcDbDefect::MissingRecord, nullptr, toUtf8(view(wanted.name)));
  }
  if (!gcdbIsLive(auditor.database().namedObjectsDictionaryId()))
    make |= auditor.found(GcDbDefect::MissingRecord, nullptr, "the root dictionary");
  if (make) auditor.database().completeAfterLoad();
}

void auditEnds(GcDbAuditor& auditor) {
  bool make = false;
  auditor.forEach([&](GcDbObject& object) {
    const auto* block = GcDbBlockTableRecord::cast(&object);
    if (block != nullptr && (!gcdbIsLive(block->blockBeginId()) || !gcdbIsLive(block->blockEndId())))
      make |= auditor.found(GcDbDefect::BlockWithoutEnds, block, toUtf8(view(block->getName())));
  });
  if (make) auditor.database().completeAfterLoad();
}

void auditSeed(GcDbAuditor& auditor) {
  GcDbStore& store = auditor.database().store();
  uint64_t greatest = 0;
  store.forEach([&](const GcDbStub* stub) { greatest = std::max(greatest, stub->handle); });
  if (greatest < store.handseed()) return;
  if (auditor.found(GcDbDefect::HandleSeed, nullptr)) store.raiseHandseed(greatest + 1);
}

}  // namespace

void gcdbAuditFrame(GcDbAuditor& auditor) {
  auditSeed(auditor);
  auditRecords(auditor);
  auditEnds(auditor);
}
