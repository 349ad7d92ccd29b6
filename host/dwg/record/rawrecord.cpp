#include "host/dwg/record/rawrecord.h"

#include "db/zombie.h"
#include "host/db/objects/zombiedata.h"

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

// The zombie's own texts are part of its bits: the record as a whole then has none of its own to append.
void putRaw(RecordOut& record, const GcDbZombieData& data) {
  const std::span<const uint8_t> bytes(data.bits.begin(), static_cast<size_t>(data.bits.length()));
  const auto count = static_cast<uint64_t>(data.bitCount < 0 ? 0 : data.bitCount);
  const bool endsWithFlag = record.version() >= kR2007 && count > 0;
  BitReader bits(bytes, 0, count);
  if (endsWithFlag) {  // the flag is written with the end of the record
    bits.setEnd(count - 1);
    const bool hasTexts = BitReader(bytes, count - 1, count).b();
    record.data.rest(bits);
    record.rawTexts = hasTexts;
    record.isRaw = true;
  } else {
    record.data.rest(bits);
  }
  for (int i = 0; i < data.references.length(); ++i) record.h(data.referenceCodes[i], data.references[i]);
}

bool rawFits(int keptVersion, int fileVersion) {
  const auto family = [](int version) { return version < kR2000 ? 0 : version < kR2007 ? 1 : 2; };
  return keptVersion == fileVersion || (keptVersion != 0 && family(keptVersion) == family(fileVersion));
}

}  // namespace gc::dwg
