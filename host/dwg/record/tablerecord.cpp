#include "host/dwg/record/tablerecord.h"

namespace gc::dwg {

namespace {

constexpr unsigned kSoftOwner = 2;
constexpr unsigned kHardOwner = 3;
constexpr unsigned kHardPointer = 5;

// Two records of these tables stand apart from the others: model and paper space, by block and by layer.
bool keepsTwoApart(const GcDbSymbolTable& table) {
  return table.isKindOf(GcDbBlockTable::desc()) || table.isKindOf(GcDbLinetypeTable::desc());
}

bool isDimStyles(const GcDbSymbolTable& table) { return table.isKindOf(GcDbDimStyleTable::desc()); }

GcDbObjectId named(const GcDbSymbolTable& table, const GCHAR* name) {
  GcDbObjectId id;
  ignore(table.getAt(name, id));
  return id;
}

}  // namespace

void readTable(RecordIn& record, const GcDbSymbolTable& table) {
  const bool isBlocks = table.isKindOf(GcDbBlockTable::desc());
  const int count = record.count(record.data.bl(), 8);
  const unsigned more = isDimStyles(table) && record.version() >= kR2000 ? record.data.rc() : 0u;
  record.links.hasParts = true;
  for (int i = 0; i < count && !record.failed(); ++i) {
    const GcDbObjectId id = record.h(kSoftOwner, {});
    if (!id.isNull()) record.links.parts.append(id);
  }
  if (keepsTwoApart(table)) {
    const GcDbObjectId first = record.h(kHardOwner, {});
    const GcDbObjectId second = record.h(kHardOwner, {});
    const GcDbObjectId ordered[2] = {isBlocks ? first : second, isBlocks ? second : first};
    for (int i = 1; i >= 0; --i)
      if (!ordered[i].isNull()) record.links.parts.insertAt(0, ordered[i]);
    if (isBlocks) {
      record.context.modelSpace = first;
      record.context.paperSpace = second;
    }
  }
  for (unsigned i = 0; i < more; ++i) record.h(kHardPointer, {});
}

void writeTable(RecordOut& record, const GcDbSymbolTable& table) {
  const bool isBlocks = table.isKindOf(GcDbBlockTable::desc());
  GcDbObjectId apart[2];
  if (keepsTwoApart(table)) {
    apart[0] = named(table, isBlocks ? GC_T("*Model_Space") : GC_T("ByBlock"));
    apart[1] = named(table, isBlocks ? GC_T("*Paper_Space") : GC_T("ByLayer"));
  }
  GcDbObjectIdArray living;
  for (const GcDbObjectId id : table.records())
    if (record.context.isWritten(id) && id != apart[0] && id != apart[1]) living.append(id);
  record.data.bl(living.length());
  if (isDimStyles(table) && record.version() >= kR2000) record.data.rc(0);
  for (const GcDbObjectId id : living) record.h(kSoftOwner, id);
  if (!keepsTwoApart(table)) return;
  for (const GcDbObjectId id : apart) record.h(kHardOwner, id);
}

}  // namespace gc::dwg
