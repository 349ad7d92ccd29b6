#include "host/dwg/record/rawrecord.h"
#include "host/db/core/dwgversion.h"

#include "db/zombie.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/packing/groupbytes.h"

namespace gc::dwg {

GcDbZombieData* zombieDataOf(const GcDbObject& object) {
  if (const auto* zombie = GcDbZombieObject::cast(&object)) return &zombie->data();
  if (const auto* zombie = GcDbZombieEntity::cast(&object)) return &zombie->data();
  return nullptr;
}

void keepRaw(RecordIn& record, GcDbZombieData& data) {
  BitWriter bits;
  bits.rest(record.data);
  if (record.version() >= kR2007) {
    if (record.hasTexts) {
      const uint64_t size = record.texts.remaining();
      bits.rest(record.texts);
      if (size >= 0x8000) bits.rs(static_cast<unsigned>(size >> 15));
      bits.rs(static_cast<unsigned>(size & 0x7FFF) | (size >= 0x8000 ? 0x8000u : 0u));
    }
    bits.b(record.hasTexts);
  }
  data.bitCount = static_cast<int32_t>(bits.position());
  const std::vector<uint8_t> bytes = bits.take();
  data.bits.setLogicalLength(static_cast<int>(bytes.size()));
  if (!bytes.empty()) std::memcpy(data.bits.begin(), bytes.data(), bytes.size());
  data.version = static_cast<uint8_t>(record.version());
  while (record.handles.remaining() >= 8) {
    unsigned code = 0;
    const GcDbObjectId id = record.h(0, {}, code);
    if (record.handles.failed()) break;
    const bool isRelative = code == 6 || code >= 8;  // the offset has become a handle of its own
    data.references.append(id);
    data.referenceCodes.append(static_cast<uint8_t>(isRelative ? 4 : code));
  }
}

namespace {

// The zombie's own texts are part of its bits, and so is the bit that says whether there are any: in a file of AC1021 or
// later that bit is the record's own.
void putBits(RecordOut& record, const GcDbZombieData& data) {
  const std::span<const uint8_t> bytes(data.bits.begin(), static_cast<size_t>(data.bits.length()));
  const auto count = static_cast<uint64_t>(data.bitCount < 0 ? 0 : data.bitCount);
  BitReader bits(bytes, 0, count);
  if (record.version() >= kR2007 && data.version >= kR2007 && count > 0) {
    bits.setEnd(count - 1);
    record.rawTexts = BitReader(bytes, count - 1, count).b();
    record.isRaw = true;
  }
  record.data.rest(bits);
  for (int i = 0; i < data.references.length(); ++i) record.h(data.referenceCodes[i], data.references[i]);
}

}  // namespace

void putRaw(RecordOut& record, const GcDbZombieData& data) { putBits(record, data); }

bool isProxied(const GcDbZombieData& data, int fileVersion) { return data.version != fileVersion; }

void putProxy(RecordOut& record, const GcDbZombieData& data, uint32_t classNumber) {
  const bool fromGroups = data.version == 0;
  const int innerVersion = fromGroups ? record.version() : data.version;
  record.data.bl(static_cast<int32_t>(classNumber));
  record.data.bl(gcdbDwgNumberOfVersion(innerVersion));
  if (record.version() >= kR2018) record.data.bl(0);  // maintenance release, in the number above before
  if (record.version() >= kR2000) record.data.b(fromGroups);
  if (!fromGroups) {
    putBits(record, data);
    return;
  }
  BitWriter groups;
  packing::putGroups(record, data.groups, groups);
  const std::vector<uint8_t> bytes = groups.take();
  record.data.bl(static_cast<int32_t>(bytes.size()));
  record.data.bytes(bytes);
  GcDbGroupList::Cursor cursor(data.groups);
  for (GcDbGroup group; cursor.next(group);)
    if (group.kind == GcDbGroupKind::Id) record.h(packing::referenceCode(group.code), group.id);
}

bool takeProxy(RecordIn& record, GcDbZombieData& data, uint32_t& classNumber) {
  classNumber = static_cast<uint32_t>(record.data.bl());
  const int inner = gcdbVersionOfDwgNumber(record.data.bl() & 0xFFFF);
  if (record.version() >= kR2018) record.data.bl();
  const bool fromGroups = record.version() >= kR2000 && record.data.b();
  if (record.failed() || (inner == 0 && !fromGroups)) return false;
  if (!fromGroups) {
    keepRaw(record, data);
    // A record of an older version has no bit for texts at its end; the file's record has.
    if (record.version() >= kR2007 && inner < kR2007 && data.bitCount > 0) {
      --data.bitCount;
      data.bits.setLogicalLength((data.bitCount + 7) / 8);
    }
    data.version = static_cast<uint8_t>(inner);
    return !record.failed();
  }
  const int size = record.count(record.data.bl(), 8);
  const uint64_t from = record.data.position();
  BitReader bytes = record.data;
  record.data.skip(static_cast<uint64_t>(size) * 8);
  bytes.setEnd(from + static_cast<uint64_t>(size) * 8);
  if (record.failed() || !packing::takeGroups(record, bytes, data.groups)) return false;
  data.version = 0;
  return true;
}

}  // namespace gc::dwg
