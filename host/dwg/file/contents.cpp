#include "host/dwg/file/contents.h"

#include "db/dictionary.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/classsection.h"
#include "host/dwg/file/headersection.h"

namespace gc::dwg {

namespace {

// Size, [the size of the references], record, checksum.
void appendRecord(const WrittenRecord& record, int version, std::vector<uint8_t>& out) {
  BitWriter head;
  head.ms(static_cast<uint32_t>(record.body.size()));
  if (version >= kR2010) head.mc(record.handleBits);
  const std::vector<uint8_t> size = head.take();
  const size_t begin = out.size();
  out.insert(out.end(), size.begin(), size.end());
  out.insert(out.end(), record.body.begin(), record.body.end());
  const uint16_t crc = crc16(std::span<const uint8_t>(out).subspan(begin), kCrcSeed);
  out.push_back(static_cast<uint8_t>(crc));
  out.push_back(static_cast<uint8_t>(crc >> 8));
}

// Files before AC1018 have a table of viewport headers; without any it says as much as with them.
void appendViewportTable(FileContents& contents) {
  constexpr uint32_t kType = 0x46;
  BitWriter out;
  out.bs(static_cast<int>(kType));
  const uint64_t sizeAt = out.position();
  out.rl(0);
  out.h(0, contents.viewportTable);
  out.bs(0);  // extended data
  out.bl(0);  // reactors
  out.bl(0);  // records
  out.patchRl(sizeAt, static_cast<uint32_t>(out.position()));
  out.h(4, 0);  // owner
  out.h(3, 0);  // extension dictionary
  WrittenRecord record;
  record.body = out.take();
  contents.map.push_back({contents.viewportTable, contents.objects.size()});
  appendRecord(record, kR2000, contents.objects);
}

// Objects that a program holds open for writing are readable as they are.
WrittenRecord writeOpened(RecordContext& context, const PlannedObject& planned) {
  GcDbObject* opened = nullptr;
  const bool isMine = gcdbOpenGcDbObject(opened, planned.object->objectId(), GcDb::kForRead) == Gcad::eOk;
  WrittenRecord record = writeRecord(context, *planned.object, planned.type, planned.links);
  if (isMine) ignore(opened->close());
  return record;
}

void pointOut(const RecordContext& context, FileContents& contents) {
  GcDbDatabase& database = context.database;
  const auto entry = [&](const GCHAR* key) {
    GcDbObjectId id;
    GcDbDictionary* root = nullptr;
    if (gcdbOpenObject(root, database.namedObjectsDictionaryId(), GcDb::kForRead) == Gcad::eOk) {
      ignore(root->getAt(key, id));
      ignore(root->close());
    }
    return uint64_t(id.handle());
  };
  contents.pointedOut = {contents.handseed,
                         database.blockTableId().handle(),
                         database.layerTableId().handle(),
                         database.textStyleTableId().handle(),
                         database.linetypeTableId().handle(),
                         database.viewTableId().handle(),
                         database.UCSTableId().handle(),
                         database.viewportTableId().handle(),
                         database.regAppTableId().handle(),
                         database.dimStyleTableId().handle(),
                         contents.viewportTable,
                         database.namedObjectsDictionaryId().handle(),
                         entry(GC_T("ACAD_MLINESTYLE")),
                         entry(GC_T("ACAD_GROUP"))};
}

}  // namespace

FileContents makeContents(RecordContext& context, const WritePlan& plan) {
  FileContents contents;
  contents.version = context.version;
  contents.codePageNumber = context.codePageNumber;
  contents.handseed = context.database.handseed();
  if (context.version < kR2004) contents.viewportTable = contents.handseed++;
  contents.map.reserve(plan.objects.size() + 1);
  for (const PlannedObject& planned : plan.objects) {
    const WrittenRecord record = writeOpened(context, planned);
    contents.map.push_back({planned.object->handle(), contents.objects.size()});
    appendRecord(record, context.version, contents.objects);
  }
  if (contents.viewportTable != 0) appendViewportTable(contents);
  contents.header = writeHeader(context, contents.handseed);
  contents.classes = writeClasses(context);
  pointOut(context, contents);
  return contents;
}

}  // namespace gc::dwg
