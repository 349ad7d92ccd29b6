#include "host/dwg/file/contents.h"

#include "db/dictionary.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/classsection.h"
#include "host/dwg/file/headersection.h"

namespace gc::dwg {

namespace {

// Records one after the other: size, [the size of the references], record, checksum.
class RecordSequence {
 public:
  RecordSequence(int version, FileContents& contents) : m_version(version), m_contents(contents) {}

  void append(uint64_t handle, std::span<const uint8_t> body, uint64_t handleBits) {
    std::vector<uint8_t>& out = m_contents.objects;
    const size_t begin = out.size();
    m_contents.map.push_back({handle, begin});
    m_sizes.clear();
    m_sizes.ms(static_cast<uint32_t>(body.size()));
    if (m_version >= kR2010) m_sizes.mc(handleBits);
    const std::span<const uint8_t> sizes = m_sizes.whole();
    out.insert(out.end(), sizes.begin(), sizes.end());
    out.insert(out.end(), body.begin(), body.end());
    const uint16_t crc = crc16(std::span<const uint8_t>(out).subspan(begin), kCrcSeed);
    out.push_back(static_cast<uint8_t>(crc));
    out.push_back(static_cast<uint8_t>(crc >> 8));
  }

 private:
  int m_version;
  FileContents& m_contents;
  BitWriter m_sizes;
};

// Files before AC1018 have a table of viewport headers; without any it says as much as with them.
void appendViewportTable(uint64_t handle, RecordSequence& records) {
  constexpr uint32_t kType = 0x46;
  BitWriter out;
  out.bs(static_cast<int>(kType));
  const uint64_t sizeAt = out.position();
  out.rl(0);
  out.h(0, handle);
  out.bs(0);  // extended data
  out.bl(0);  // reactors
  out.bl(0);  // records
  out.patchRl(sizeAt, static_cast<uint32_t>(out.position()));
  out.h(4, 0);  // owner
  out.h(3, 0);  // extension dictionary
  records.append(handle, out.whole(), 0);
}

// Objects that a program holds open for writing are readable as they are.
RecordView writeOpened(RecordOut& record, const PlannedObject& planned) {
  GcDbObject* opened = nullptr;
  const bool isMine = gcdbOpenGcDbObject(opened, planned.object->objectId(), GcDb::kForRead) == Gcad::eOk;
  const RecordView written = writeRecord(record, *planned.object, planned.type, planned.links);
  if (isMine) ignore(opened->close());
  return written;
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
  RecordSequence records(context.version, contents);
  RecordOut record(context, 0);
  for (const PlannedObject& planned : plan.objects) {
    const RecordView written = writeOpened(record, planned);
    records.append(planned.handle, written.body, written.handleBits);
  }
  if (contents.viewportTable != 0) appendViewportTable(contents.viewportTable, records);
  contents.header = writeHeader(context, contents.handseed);
  contents.classes = writeClasses(context);
  pointOut(context, contents);
  return contents;
}

}  // namespace gc::dwg
