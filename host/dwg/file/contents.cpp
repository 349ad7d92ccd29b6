#include "host/dwg/file/contents.h"

#include <cstring>

#include "db/dictionary.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/classsection.h"
#include "host/dwg/file/datasection.h"
#include "host/dwg/file/headersection.h"

namespace gc::dwg {

namespace {

// Records one after the other: size, [the size of the references], record, checksum.
class RecordSequence {
 public:
  RecordSequence(int version, std::vector<MapEntry>& map, std::vector<uint8_t>& out)
      : m_version(version), m_map(map), m_out(out) {}

  void append(uint64_t handle, std::span<const uint8_t> body, uint64_t handleBits) {
    const size_t begin = m_out.size();
    m_map.push_back({handle, begin});
    m_sizes.clear();
    m_sizes.ms(static_cast<uint32_t>(body.size()));
    if (m_version >= kR2010) m_sizes.mc(handleBits);
    const std::span<const uint8_t> sizes = m_sizes.whole();
    const size_t size = sizes.size() + body.size();
    if (m_out.capacity() - begin < size + kSumSize) m_out.reserve(2 * m_out.capacity() + size + kSumSize);
    m_out.resize(begin + size + kSumSize);
    uint8_t* to = m_out.data() + begin;
    std::memcpy(to, sizes.data(), sizes.size());
    std::memcpy(to + sizes.size(), body.data(), body.size());
    const uint16_t crc = crc16({to, size}, kCrcSeed);
    to[size] = static_cast<uint8_t>(crc);
    to[size + 1] = static_cast<uint8_t>(crc >> 8);
  }

 private:
  static constexpr size_t kSumSize = 2;

  int m_version;
  std::vector<MapEntry>& m_map;
  std::vector<uint8_t>& m_out;
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
RecordView writeOpened(RecordOut& record, const WritePlan& plan, const PlannedObject& planned) {
  GcDbObject* opened = nullptr;
  const bool isMine = gcdbOpenGcDbObject(opened, planned.object->objectId(), GcDb::kForRead) == Gcad::eOk;
  const RecordView written = writeRecord(record, *planned.object, *planned.kind, planned.type, plan.linksOf(planned));
  if (isMine) ignore(opened->close());
  return written;
}

// In a large drawing the next objects are not in the cache; they are asked for while this one is written.
void prefetchLater(const std::vector<PlannedObject>& objects, size_t i) {
  constexpr size_t kAhead = 4;
  constexpr size_t kLine = 64;
  if (i + kAhead >= objects.size()) return;
  const auto* later = reinterpret_cast<const char*>(objects[i + kAhead].object);
  for (size_t line = 0; line < 3; ++line) __builtin_prefetch(later + line * kLine);
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

FileContents makeContents(RecordContext& context) {
  FileContents contents;
  contents.version = context.version;
  contents.codePageNumber = context.codePageNumber;
  contents.handseed = context.database.handseed();
  if (context.version < kR2004) contents.viewportTable = contents.handseed++;
  contents.header = writeHeader(context, contents.handseed);
  contents.classes = writeClasses(context);
  planDataSection(context);
  contents.data = writeDataSection(context);
  pointOut(context, contents);
  return contents;
}

void appendRecords(RecordContext& context, const WritePlan& plan, FileContents& contents, std::vector<uint8_t>& bytes) {
  constexpr size_t kUsualSize = 100;  // of a record: room is taken once for most drawings
  contents.map.reserve(plan.objects.size() + 1);
  bytes.reserve(bytes.size() + plan.objects.size() * kUsualSize);
  RecordSequence records(context.version, contents.map, bytes);
  RecordOut record(context, 0);
  for (size_t i = 0; i < plan.objects.size(); ++i) {
    prefetchLater(plan.objects, i);
    const PlannedObject& planned = plan.objects[i];
    const RecordView written = writeOpened(record, plan, planned);
    records.append(planned.handle, written.body, written.handleBits);
  }
  if (contents.viewportTable != 0) appendViewportTable(contents.viewportTable, records);
}

}  // namespace gc::dwg
