#include "host/dwg/file/classsection.h"

#include "host/dwg/file/sectionframe.h"

namespace gc::dwg {

namespace {

constexpr int kEntityKind = 0x1F2;
constexpr int kObjectKind = 0x1F3;

// Before AC1018 a class has no counts; the list ends with the section.
template <class Record>
void passClass(Record& record, ClassMap::FileClass& each) {
  each.number = static_cast<uint16_t>(record.bs(static_cast<int>(each.number)));
  each.proxyFlags = static_cast<uint16_t>(record.bs(each.proxyFlags));
  each.appName = record.t(each.appName);
  each.className = record.t(each.className);
  each.dxfName = record.t(each.dxfName);
  each.wasZombie = record.b(each.wasZombie);
  each.isEntity = record.bs(each.isEntity ? kEntityKind : kObjectKind) == kEntityKind;
  if (record.version() < kR2004) return;
  each.instanceCount = record.bl(each.instanceCount);
  each.dwgVersion = record.bl(each.dwgVersion);
  each.maintenanceVersion = record.bl(each.maintenanceVersion);
  record.bl(0);
  record.bl(0);
}

}  // namespace

void readClasses(const Sections& sections, RecordContext& context, GcDbLoadReport& report) {
  RecordIn record(context, 0);
  if (!openFrame(sections, sections.classes, kClassesBegin, "classes", record, report)) return;
  uint32_t most = 0xFFFF;
  if (context.version >= kR2004) {
    most = static_cast<uint16_t>(record.bs(0));
    record.rc(0);
    record.rc(0);
    record.b(true);
  }
  constexpr uint64_t kLeastBits = 40;
  while (record.data.remaining() >= kLeastBits && !record.failed()) {
    ClassMap::FileClass each;
    passClass(record, each);
    if (record.failed() || each.number < kFirstFileClass) break;
    const bool last = each.number >= most;
    if (context.classes.fileClass(each.number) == nullptr)
      context.classes.add(std::move(each));
    else
      note(report, GcDbLoadAction::Skipped, 0, 0, "class " + std::to_string(each.number) + " is described twice");
    if (last) break;
  }
  if (record.failed()) note(report, GcDbLoadAction::Missing, 0, 0, "the list of classes is damaged");
}

std::vector<uint8_t> writeClasses(RecordContext& context) {
  RecordOut record(context, 0);
  if (context.version >= kR2004) {
    const auto& all = context.classes.fileClasses();
    record.bs(static_cast<int>(all.empty() ? kFirstFileClass - 1 : all.back().number));
    record.rc(0);
    record.rc(0);
    record.b(true);
  }
  for (ClassMap::FileClass& each : context.classes.fileClasses()) passClass(record, each);
  return closeFrame(kClassesBegin, record);
}

}  // namespace gc::dwg
