#include "host/db/core/names.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/db/audit/auditor.h"
#include "host/db/core/store.h"

namespace {

GcText upper(GcView name) {
  GcText text(name);
  for (GCHAR& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<GCHAR>(c - 'a' + 'A');
  return text;
}

// The name with what it may not have replaced, and a number behind it when it is taken.
// `counts`: where the counting stopped for a name.
GcText properName(GcView name, const std::unordered_set<GcText>& taken, std::unordered_map<GcText, int>& counts) {
  GcText made(name);
  for (GCHAR& c : made)
    if (!gcdbIsValidRecordName(GcView(&c, 1), false)) c = '_';
  if (made.empty()) made = GC_T("unnamed");
  const GcText first = made;
  for (int& i = counts[upper(first)]; taken.contains(upper(made));) made = first + fromUtf8("$" + std::to_string(++i));
  return made;
}

void rename(GcDbSymbolTableRecord& record, const GcText& name) {
  const GcDbMending mending(record);
  ignore(record.setName(name.c_str()));
}

// Several records may be the parts of one tiled view, and the words for records of other drawings are kept.
bool mayRepeat(const GcDbSymbolTableRecord& record) { return GcDbViewportTableRecord::cast(&record) != nullptr; }

// The records of a table, before all others those the drawing goes by: these keep their names.
GcDbObjectIdArray inOrderOfRight(const GcDbSymbolTable& table) {
  const GcDbDatabase& database = *table.database();
  const GcDbObjectId known[] = {database.layerZero(), database.byLayerLinetype(), database.byBlockLinetype(),
                                database.continuousLinetype()};
  GcDbObjectIdArray records = table.records();
  std::stable_partition(records.begin(), records.end(), [&](GcDbObjectId id) {
    return std::find(std::begin(known), std::end(known), id) != std::end(known);
  });
  return records;
}

void auditTable(GcDbAuditor& auditor, const GcDbSymbolTable& table) {
  std::unordered_set<GcText> taken;
  std::unordered_map<GcText, int> counts;
  std::vector<std::pair<GcDbSymbolTableRecord*, GcText>> renamed;
  const GcDbObjectIdArray records = inOrderOfRight(table);
  for (const GcDbObjectId id : records) {
    auto* record = gcdbLive<GcDbSymbolTableRecord>(id);
    if (record == nullptr) continue;
    const GcText name(view(record->getName()));
    // Shape files have no name: they go by their file.
    const auto* style = GcDbTextStyleTableRecord::cast(record);
    if (name.empty() && style != nullptr && style->isShapeFile()) continue;
    if (!gcdbIsValidRecordName(name, true)) {
      const GcText proper = properName(name, taken, counts);
      if (auditor.found(GcDbDefect::RecordName, record, '"' + toUtf8(GcView(name)) + '"')) rename(*record, proper);
      taken.insert(upper(proper));
    } else if (!taken.insert(upper(name)).second && !mayRepeat(*record)) {
      const GcText proper = properName(name, taken, counts);
      if (auditor.found(GcDbDefect::DuplicateName, record, toUtf8(GcView(name)))) renamed.emplace_back(record, proper);
      taken.insert(upper(proper));
    }
  }
  // The last first: among thousands of one name the index finds the one that came last soonest.
  for (auto each = renamed.rbegin(); each != renamed.rend(); ++each) rename(*each->first, each->second);
}

}  // namespace

void gcdbAuditNames(GcDbAuditor& auditor) {
  for (int table = 0; table < GcDbDatabase::kTableCount; ++table)
    if (const auto* records = gcdbLive<GcDbSymbolTable>(auditor.database().tableId(table)))
      auditTable(auditor, *records);
}
