#include "host/dxf/read/table_reader.h"

#include "host/db/core/loader.h"
#include "host/db/core/newdrawing.h"
#include "host/db/core/store.h"
#include "host/dxf/table_names.h"

namespace gc::dxf {
namespace {

// What a table refers to by name stands before it.
constexpr int kReadingOrder[] = {GcDbDatabase::kRegApps,   GcDbDatabase::kTextStyles, GcDbDatabase::kLinetypes,
                                 GcDbDatabase::kLayers,    GcDbDatabase::kBlocks,     GcDbDatabase::kUcss,
                                 GcDbDatabase::kDimStyles, GcDbDatabase::kViews,      GcDbDatabase::kViewports};

// The table's own name and the number of its records, which writing makes anew.
class TableHead final : public FieldTaker {
 public:
  bool take(const GcDbGroup& group) override {
    if (group.code == 100) return group.text == GC_T("AcDbSymbolTable");
    return group.code == 2 || group.code == 70;
  }
};

}  // namespace

// Where the tables begin and the section ends, without looking into them.
std::vector<TableReader::Span> TableReader::findTables(std::size_t& end) const {
  std::vector<Span> spans;
  TagReader reader = m_context.reader;
  Tag tag;
  bool inTable = false;
  for (;;) {
    end = reader.offset();
    const ReadStatus status = reader.next(tag);
    if (status == ReadStatus::BadCode && reader.skipToRecord()) continue;
    if (status != ReadStatus::Tag || tag.is(0, "EOF") || tag.is(0, "SECTION")) break;
    if (tag.is(0, "ENDSEC")) {
      end = reader.offset();
      break;
    }
    if (tag.is(0, "ENDTAB")) {
      inTable = false;
    } else if (tag.is(0, "TABLE")) {
      const std::size_t begin = tag.offset;
      while (reader.next(tag) == ReadStatus::Tag) {
        if (tag.code == 2) spans.push_back({std::string(tag.word()), begin, true});
        if (tag.code == 0) reader.pushBack();
        if (tag.code == 0 || tag.code == 2) break;
      }
      inTable = true;
    } else if (tag.code == 0 && !inTable) {
      spans.push_back({std::string(tag.word()), tag.offset, false});
      inTable = true;
    }
  }
  return spans;
}

void TableReader::readSection() {
  std::size_t end = 0;
  const std::vector<Span> spans = findTables(end);
  for (const int which : kReadingOrder) {
    for (const Span& span : spans) {
      if (tableByName(span.name) == which) readTable(span);
    }
    completeTable(which);
  }
  for (const Span& span : spans) {
    if (tableByName(span.name) == GcDbDatabase::kTableCount) {
      m_context.report(GcDbLoadAction::Skipped, span.offset, 0, "table " + span.name + " of an unknown kind");
    }
  }
  m_records.seek(end);
}

void TableReader::completeTables() {
  for (const int which : kReadingOrder) completeTable(which);
}

// Files before R13 leave out what they do not use.
void TableReader::completeTable(int which) {
  GcDbDatabase& database = m_context.database;
  if (!database.tableId(which).isValid() && m_context.version >= GcDb::kDHL_AC1012) {
    m_context.report(GcDbLoadAction::Repaired, 0, 0, std::string("no table ") + kTableNames[which] + ": made");
  }
  gcdbAddMissingTable(database, which);
  gcdbAddStandardRecords(database, which);
}

// The table of the head; one that the file has twice gets all records.
GcDbSymbolTable* TableReader::needTable(const RawRecord& head, int which, bool hasHead) {
  GcDbDatabase& database = m_context.database;
  if (!hasHead) {
    m_context.report(GcDbLoadAction::Repaired, head.offset, 0,
                     std::string(kTableNames[which]) + " records without a table");
  } else if (!database.tableId(which).isValid()) {
    TableHead taker;
    GcDbObject* object = m_objects.read(head, RecordKind::Object, gcdbTableClass(which), &taker);
    database.setTableId(which, object->objectId());
  } else {
    m_context.report(GcDbLoadAction::Repaired, head.offset, database.tableId(which).handle(),
                     std::string(kTableNames[which]) + ": a second table of the kind: joined");
  }
  gcdbAddMissingTable(database, which);
  return GcDbSymbolTable::cast(database.tableId(which).stub()->object);
}

void TableReader::readTable(const Span& span) {
  m_records.seek(span.offset);
  RawRecord record;
  if (!m_records.next(record)) return;
  GcDbSymbolTable* table = needTable(record, tableByName(span.name), span.hasHead);
  if (!span.hasHead) m_records.seek(span.offset);
  while (m_records.next(record)) {
    if (record.type == "ENDTAB" || record.type == "TABLE" || record.type == "ENDSEC" || record.type == "EOF") return;
    readRecord(record, *table);
  }
}

void TableReader::readRecord(const RawRecord& record, GcDbSymbolTable& table) {
  if (record.isCut) {
    m_context.report(GcDbLoadAction::Missing, record.offset, 0, std::string(record.type) + " is damaged or cut off");
    return;
  }
  GcDbObject* object = m_objects.read(record, RecordKind::Object, table.recordClass());
  auto* made = GcDbSymbolTableRecord::cast(object);
  if (!made) {
    m_context.report(GcDbLoadAction::Noted, record.offset, object->handle(), "no record of its table: kept as it is");
    return;
  }
  m_context.setOwner(record.offset, *made, table.objectId());
  GcDbLoader::appendRecord(table, *made);
}

}  // namespace gc::dxf
