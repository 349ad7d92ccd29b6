#include "host/dxf/read/header_reader.h"

#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/names.h"
#include "host/dxf/read/group_cursor.h"

namespace gc::dxf {

namespace {

// The properties come in pairs of variables of always the same names.
bool keepProperty(GcDbFileParts& parts, GcView name, const GcDbGroupList& groups) {
  const bool isName = name == GC_T("$CUSTOMPROPERTYTAG");
  if (!isName && name != GC_T("$CUSTOMPROPERTY")) return false;
  GcDbGroup group;
  const GcString text = GcDbGroupList::Cursor(groups).next(group) ? toGcString(group.text) : GcString();
  if (isName || parts.customProperties.empty()) parts.customProperties.emplace_back();
  (isName ? parts.customProperties.back().name : parts.customProperties.back().value) = text;
  return true;
}

}  // namespace

void readHeader(const LoadContext& context, const RawRecord& section) {
  GroupCursor cursor(context, section.tags);
  GcDbGroup group;
  GcText name;
  GcDbGroupList groups;
  const auto keep = [&] {
    if (!name.empty() && !keepProperty(context.database.fileParts(), name, groups))
      context.database.header().set(name, groups);
  };
  while (cursor.next(group)) {
    if (group.code == 9) {
      keep();
      name = group.text;
      groups.clear();
    } else if (!name.empty()) {
      groups.put(group);
    }
  }
  keep();
}

void connectHeader(GcDbDatabase& database) {
  const GcDbHeader& header = database.header();
  const auto record = [&](GcView name, Is kind) {
    const GcText text = header.text(name);
    return text.empty() ? GcDbObjectId() : gcdbRecordByName(&database, kind, text);
  };
  // A frozen current layer, say, is refused: the standard one stays current.
  const GcDbObjectId layer = record(GC_T("$CLAYER"), Is::LayerName);
  const GcDbObjectId linetype = record(GC_T("$CELTYPE"), Is::LinetypeName);
  const GcDbObjectId textStyle = record(GC_T("$TEXTSTYLE"), Is::TextStyleName);
  const GcDbObjectId dimStyle = record(GC_T("$DIMSTYLE"), Is::DimStyleName);
  if (!layer.isNull()) ignore(database.setClayer(layer));
  if (!linetype.isNull()) ignore(database.setCeltype(linetype));
  if (!textStyle.isNull()) ignore(database.setTextstyle(textStyle));
  if (!dimStyle.isNull()) ignore(database.setDimstyle(dimStyle));
  const std::int64_t color = header.integer(GC_T("$CECOLOR"), 256);
  if (color >= 0 && color <= 256) ignore(database.setCecolor(GcCmColor::fromIndex(static_cast<int>(color))));
  ignore(database.setCeltscale(header.real(GC_T("$CELTSCALE"), 1.0)));
  const std::int64_t weight = header.integer(GC_T("$CELWEIGHT"), GcDb::kLnWtByLayer);
  ignore(database.setCelweight(static_cast<GcDb::LineWeight>(weight)));
}

void readClass(const LoadContext& context, const RawRecord& record) {
  GroupCursor cursor(context, record.tags);
  GcDbClassRecord made;
  GcDbGroup group;
  while (cursor.next(group)) {
    switch (group.code) {
      case 1: made.dxfName = toGcString(group.text); break;
      case 2: made.className = toGcString(group.text); break;
      case 3: made.appName = toGcString(group.text); break;
      case 90: made.proxyFlags = static_cast<std::int32_t>(group.asInt()); break;
      case 91: made.instanceCount = static_cast<std::int32_t>(group.asInt()); break;
      case 280: made.wasZombie = group.asInt() != 0; break;
      case 281: made.isEntity = group.asInt() != 0; break;
      default: break;
    }
  }
  std::vector<GcDbClassRecord>& classes = context.database.fileParts().classes;
  if (context.database.fileParts().findClass(view(made.dxfName))) {
    context.report(GcDbLoadAction::Skipped, record.offset, 0,
                   "class " + toUtf8(view(made.dxfName)) + " is described twice");
    return;
  }
  classes.push_back(std::move(made));
}

void keepSection(LoadContext& context, RecordReader& records, const RawRecord& section) {
  GcDbFileSection kept;
  RawRecord record;
  const RawRecord* current = &section;
  GcDbGroup group;
  do {
    GcDbFileRecord made;
    if (current != &section) made.type = toGcString(context.decoded(current->type));
    GroupCursor cursor(context, current->tags);
    while (cursor.next(group)) {
      if (current == &section && group.code == 2 && kept.name.isEmpty()) {
        kept.name = toGcString(group.text);
      } else {
        made.groups.put(group);
      }
    }
    kept.records.push_back(std::move(made));
    current = &record;
  } while (records.next(record) && record.type != "ENDSEC" && record.type != "EOF");
  if (record.type == "EOF") records.seek(record.offset);
  context.database.fileParts().sections.push_back(std::move(kept));
}

}  // namespace gc::dxf
