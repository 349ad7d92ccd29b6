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

ObjectLoader::Cut ObjectLoader::cut(const MapEntry& entry, bool checkSum) {
  Cut result;
  const auto rest = part(m_sections.objects, entry.offset, m_sections.objects.size());
  BitReader in(rest);
  const uint64_t size = in.ms();
  if (m_context.version >= kR2010) result.handleBits = in.mc();
  const uint64_t at = in.position() / 8;
  if (in.failed() || size == 0 || !holds(rest, at, size)) return result;
  result.body = rest.subspan(at, size);
  result.ok = true;
  if (checkSum && crc16(rest.first(at + size), kCrcSeed) != u16(rest, at + size))
    note(m_report, GcDbLoadAction::Noted, entry.offset, entry.handle, "its checksum is wrong");
  return result;
}

// Extended data name applications first of all, then layers.
void ObjectLoader::loadAll(const std::vector<MapEntry>& map) {
  std::vector<size_t> layers;
  std::vector<size_t> others;
  others.reserve(map.size());
  if (m_context.version < kR2004) m_links.owned.reserve(map.size());
  for (size_t i = 0; i < map.size(); ++i) {
    const Cut record = cut(map[i], false);
    const uint32_t type = record.ok ? typeOfRecord(m_context.version, record.body) : 0;
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
bool ObjectLoader::isBelievable(const MapEntry& entry, const Cut& record) {
  if (headOfRecord(m_context.version, record.body).handle != entry.handle) {
    note(m_report, GcDbLoadAction::Skipped, entry.offset, entry.handle, "the record there is another object's");
    return false;
  }
  m_bytesRead += record.body.size();
  if (m_bytesRead <= 2 * m_sections.objects.size()) return true;
  note(m_report, GcDbLoadAction::Skipped, entry.offset, entry.handle, "records lie over each other");
  return false;
}

void ObjectLoader::load(const MapEntry& entry) {
  Cut record = cut(entry, false);
  if (record.ok && !isBelievable(entry, record)) return;
  record = cut(entry, true);
  if (!record.ok) {
    note(m_report, GcDbLoadAction::Missing, entry.offset, entry.handle, "its record is not in the file");
    return;
  }
  ReadRecord read = readRecord(m_context, record.body, record.handleBits);
  if (!read.trouble.empty())
    note(m_report, read.object == nullptr ? GcDbLoadAction::Skipped : GcDbLoadAction::Noted, entry.offset, entry.handle,
         read.trouble + (read.type != 0 ? " (type " + std::to_string(read.type) + ")" : ""));
  if (read.object == nullptr) return;
  adopt(entry, std::move(read));
}

void ObjectLoader::adopt(const MapEntry& entry, ReadRecord record) {
  GcDbStub* stub = m_context.database.store().need(entry.handle);
  if (stub->object != nullptr || entry.handle == 0) {
    note(m_report, GcDbLoadAction::Skipped, entry.offset, entry.handle, "the handle is used twice");
    return;
  }
  GcDbObject* object = record.object.release();
  m_context.database.store().adopt(stub, object, record.owner);
  if (record.links.hasParts) m_links.owners.push_back({object, std::move(record.links)});
  if (m_context.version >= kR2004 || isFrame(record.type) || !m_context.classes.typeOf(record.type).isEntity) return;
  const uint64_t next = !record.links.consecutive && record.links.next != 0 ? record.links.next : entry.handle + 1;
  m_links.owned.push_back({record.owner.handle(), entry.handle, next, object->objectId()});
}

}  // namespace gc::dwg
