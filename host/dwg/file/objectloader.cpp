#include "host/dwg/file/objectloader.h"

#include "db/entity.h"
#include "host/db/core/store.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytes.h"

namespace gc::dwg {

namespace {

constexpr uint32_t kLayerType = 0x33;
constexpr uint32_t kApplicationType = 0x43;
// The list of viewport headers of files before AC1018 says nothing that the file does not say elsewhere.
constexpr uint32_t kViewportHeaderTable = 0x46;
constexpr uint32_t kViewportHeader = 0x47;

// Begin and end of a block, end of a sequence: owned, but no parts.
bool isFrame(uint32_t type) { return type >= 4 && type <= 6; }

bool isDropped(uint32_t type) { return type == kViewportHeaderTable || type == kViewportHeader; }

}  // namespace

RecordBits ObjectLoader::cut(const MapEntry& entry) const {
  const std::span<const uint8_t> objects = m_sections.objects;
  if (entry.offset >= objects.size()) return {};
  const auto rest = objects.subspan(entry.offset);
  BitReader in(rest);
  const uint64_t size = in.ms();
  RecordBits bits;
  if (m_context.version >= kR2010) bits.handleBits = in.mc();
  const uint64_t at = in.position() / 8;
  if (in.failed() || size == 0 || size > rest.size() - at) return {};
  bits.body = rest.subspan(at, size);
  bits.behind = rest.size() - at - size;
  return bits;
}

void ObjectLoader::checkSum(const MapEntry& entry, const RecordBits& bits) {
  const auto rest = m_sections.objects.subspan(entry.offset);
  const size_t size = rest.size() - bits.behind;
  if (crc16(rest.first(size), kCrcSeed) != u16(rest, size))
    note(m_report, GcDbLoadAction::Noted, entry.offset, entry.handle, "its checksum is wrong");
}

// Extended data name applications first of all, then layers.
void ObjectLoader::loadAll(const std::vector<MapEntry>& map) {
  std::vector<size_t> layers;
  std::vector<size_t> others;
  others.reserve(map.size());
  if (m_context.version < kR2004) m_links.owned.reserve(map.size());
  constexpr size_t kAhead = 16;
  for (size_t i = 0; i < map.size(); ++i) {
    if (i + kAhead < map.size() && map[i + kAhead].offset < m_sections.objects.size())
      __builtin_prefetch(m_sections.objects.data() + map[i + kAhead].offset);
    const uint32_t type = typeOfRecord(m_context.version, cut(map[i]).body);
    if (isDropped(type)) continue;
    if (type == kApplicationType)
      load(map[i]);
    else
      (type == kLayerType ? layers : others).push_back(i);
  }
  for (const size_t i : layers) load(map[i]);
  for (const size_t i : others) load(map[i]);
}

// Records of a file do not overlap; those of one made to take long may, and each could be as long as the file.
bool ObjectLoader::isBelievable(const MapEntry& entry, const RecordBegin& begin, const RecordBits& bits) {
  if (begin.handle != entry.handle) {
    note(m_report, GcDbLoadAction::Skipped, entry.offset, entry.handle, "the record there is another object's");
    return false;
  }
  m_bytesRead += bits.body.size();
  if (m_bytesRead <= 2 * m_sections.objects.size()) return true;
  note(m_report, GcDbLoadAction::Skipped, entry.offset, entry.handle, "records lie over each other");
  return false;
}

void ObjectLoader::load(const MapEntry& entry) {
  const RecordBits bits = cut(entry);
  if (bits.body.empty()) {
    note(m_report, GcDbLoadAction::Missing, entry.offset, entry.handle, "its record is not in the file");
    return;
  }
  RecordIn record(m_context, 0);
  const RecordBegin begin = beginRecord(record, bits);
  if (!isBelievable(entry, begin, bits)) return;
  checkSum(entry, bits);
  ReadRecord read = readRecord(record, begin, bits);
  if (!read.trouble.empty())
    note(m_report, read.object == nullptr ? GcDbLoadAction::Skipped : GcDbLoadAction::Noted, entry.offset, entry.handle,
         read.trouble + (read.type != 0 ? " (type " + std::to_string(read.type) + ")" : ""));
  if (read.object != nullptr) adopt(entry, std::move(read));
}

void ObjectLoader::adopt(const MapEntry& entry, ReadRecord&& record) {
  GcDbStub* stub = m_context.database.store().need(entry.handle);
  if (stub->object != nullptr || entry.handle == 0) {
    note(m_report, GcDbLoadAction::Skipped, entry.offset, entry.handle, "the handle is used twice");
    return;
  }
  GcDbObject* object = record.object.release();
  if (record.keptRaw) ++m_links.keptRaw;
  m_context.database.store().adopt(stub, object, record.owner);
  if (record.links.hasParts) m_links.owners.push_back({object, std::move(record.links)});
  if (m_context.version >= kR2004 || isFrame(record.type) || !m_context.classes.typeOf(record.type).isEntity) return;
  const uint64_t next = !record.links.consecutive && record.links.next != 0 ? record.links.next : entry.handle + 1;
  m_links.owned.push_back({record.owner.handle(), entry.handle, next, object->objectId()});
}

}  // namespace gc::dwg
