#include <algorithm>

#include "host/db/core/fileparts.h"
#include "host/db/core/header.h"
#include "host/db/core/life.h"
#include "host/db/core/roundtrip.h"
#include "host/db/core/store.h"
#include "host/dwg/file/classsection.h"
#include "host/dwg/file/datasection.h"
#include "host/dwg/file/dwgfile.h"
#include "host/dwg/file/headersection.h"
#include "host/dwg/file/linker.h"

namespace gc::dwg {

namespace {

bool openSections(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report) {
  if (sections.version < kR2004) return openR2000(file, sections, report);
  return sections.version == kR2007 ? openR2007(file, sections, report) : openR2004(file, sections, report);
}

void setCodePage(const Sections& sections, RecordContext& context) {
  const CodePage page = codePageByDwgNumber(sections.codePageNumber);
  context.codePageNumber = sections.codePageNumber;
  context.text = DrawingText(page, false, Carets::Plain);
  const std::string name = codePageName(page);
  GcText wide;
  for (const char c : name) wide.push_back(static_cast<GCHAR>(c));
  context.database.fileParts().codePage = toGcString(wide);
}

// The records entities refer to without a handle.
void setKnown(const HeaderReferences& header, RecordContext& context) {
  context.byLayer = context.idOf(header.of(KnownRecord::kByLayer));
  context.byBlock = context.idOf(header.of(KnownRecord::kByBlock));
  context.continuous = context.idOf(header.of(KnownRecord::kContinuous));
  context.modelSpace = context.idOf(header.of(KnownRecord::kModelSpace));
  context.paperSpace = context.idOf(header.of(KnownRecord::kPaperSpace));
}

void keepClasses(const RecordContext& context) {
  for (const ClassMap::FileClass& each : context.classes.fileClasses()) {
    GcDbClassRecord record;
    record.dxfName = toGcString(each.dxfName);
    record.className = toGcString(each.className);
    record.appName = toGcString(each.appName);
    record.proxyFlags = each.proxyFlags;
    record.instanceCount = each.instanceCount;
    record.wasZombie = each.wasZombie;
    record.isEntity = each.isEntity;
    record.dwgVersion = each.dwgVersion;
    record.maintenanceVersion = each.maintenanceVersion;
    record.number = static_cast<int32_t>(each.number);
    context.database.fileParts().classes.push_back(std::move(record));
  }
}

void keepOthers(const Sections& sections, GcDbDatabase& database) {
  for (const Sections::Named& other : sections.others)
    database.fileParts().dwgSections.push_back(
        {other.name, std::vector<uint8_t>(other.bytes.begin(), other.bytes.end()), sections.version});
}

void takeBodies(const Sections& sections, RecordContext& context, GcDbLoadReport& report) {
  for (const Sections::Named& other : sections.others)
    if (other.name == kDataSection) takeBodies(other.bytes, context, report);
}

// A handle that was only referred to must not be given to a new object.
void raiseHandseed(GcDbDatabase& database, uint64_t fromHeader) {
  constexpr uint64_t kMostBelievable = uint64_t{1} << 56;
  if (fromHeader < kMostBelievable) database.store().raiseHandseed(fromHeader);
}

void setVersionSettings(GcDbDatabase& database, const Sections& sections) {
  static constexpr const GCHAR* kNames[] = {GC_T("AC1012"), GC_T("AC1014"), GC_T("AC1015"), GC_T("AC1018"),
                                            GC_T("AC1021"), GC_T("AC1024"), GC_T("AC1027"), GC_T("AC1032")};
  database.setOriginalFileVersion(static_cast<GcDb::GcDbDwgVersion>(sections.version));
  database.header().setText(GC_T("$ACADVER"), kNames[sections.version - kR13], 1);
  database.header().setText(GC_T("$DWGCODEPAGE"), view(database.fileParts().codePage), 3);
}

}  // namespace

bool isDwg(std::string_view bytes) {
  return versionOfBytes({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}) != GcDb::kDHL_Unknown;
}

// The template part: the length of a description (16 bits), its characters, then $MEASUREMENT (16 bits).
void takeMeasurement(const Sections& sections, GcDbDatabase& database) {
  for (const Sections::Named& other : sections.others) {
    if (other.name != "AcDb:Template" || other.bytes.size() < 4) continue;
    const auto u16 = [&](size_t at) { return static_cast<size_t>(other.bytes[at] | other.bytes[at + 1] << 8); };
    const size_t at = 2 + u16(0) * (sections.version < kR2007 ? 1 : 2);
    if (at + 2 <= other.bytes.size() && u16(at) <= 1)
      database.header().setInteger(GC_T("$MEASUREMENT"), static_cast<int>(u16(at)));
  }
}

Gcad::ErrorStatus read(GcDbDatabase& database, std::string_view bytes) {
  const std::span<const uint8_t> file(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  GcDbLoadReport& report = database.loadReport();
  Sections sections;
  sections.version = versionOfBytes(file);
  if (sections.version == GcDb::kDHL_Unknown) return Gcad::eBadDwgFile;
  if (sections.version < kR13) {
    note(report, GcDbLoadAction::Missing, 0, 0, "drawings of R11 and older are not read: save them in a newer version");
    return Gcad::eUnsupportedVersion;
  }
  if (!openSections(file, sections, report)) return Gcad::eBadDwgFile;
  if (sections.objects.empty()) note(report, GcDbLoadAction::Missing, 0, 0, "there are no records of objects");

  RecordContext context(database);
  context.version = sections.version;
  setCodePage(sections, context);
  setVersionSettings(database, sections);
  HeaderReferences header;
  const bool hasHeader = readHeader(sections, context, header, report);
  takeMeasurement(sections, database);
  readClasses(sections, context, report);
  const std::vector<MapEntry> map = readObjectMap(sections.handles, mostRecordsIn(sections.objects.size()), report);
  if (!hasHeader && map.empty()) return Gcad::eBadDwgFile;
  setKnown(header, context);

  LoadedLinks links;
  ObjectLoader(sections, context, report, links).loadAll(map);
  keepClasses(context);
  keepOthers(sections, database);
  takeBodies(sections, context, report);
  linkObjects(context, header, links, report);
  raiseHandseed(database, header.handseed);
  if (links.keptRaw > 0) gcdbWakeZombies(database);
  database.store().forEach([](GcDbStub* stub) {
    if (stub->object != nullptr) stub->object->subLoaded();
  });
  database.completeAfterLoad();
  connectHeader(context, header);
  gcdbTakeRoundTrip(database);
  return Gcad::eOk;
}

}  // namespace gc::dwg
