#include "host/dxf/proxy.h"

#include <algorithm>

#include "host/db/core/dwgversion.h"

namespace gc::dxf {
namespace {

constexpr int kProxyEntityNumber = 498, kProxyObjectNumber = 499;
constexpr int kChunkBytes = 127;
enum Code : int {
  kIdEnd = 94,
  kClass = 90,
  kApplicationClass = 91,
  kBitCount = 93,
  kFormat = 95,
  kIsFromDxf = 70,
  kBits = 310,
  kGraphicsSize = 92
};

// Codes of references in DWG (2 soft owner, 3 hard owner, 4 soft pointer, 5 hard pointer) and here.
int groupOfReference(unsigned code) {
  switch (code) {
    case 2: return 350;
    case 3: return 360;
    case 5: return 340;
    default: return 330;
  }
}

uint8_t referenceOfGroup(int group) {
  switch (group) {
    case 350: return 2;
    case 360: return 3;
    case 340: return 5;
    default: return 4;
  }
}

// What the groups of a proxy say, as far as it goes.
struct Told {
  int classNumber = 0, format = 0;
  int64_t bitCount = -1;
  bool isFromDxf = true;  // until it is said not to be
  bool hasGraphics = false;
  GcDbZombieData data;

  void take(const GcDbGroup& group) {
    switch (group.code) {
      case kApplicationClass: classNumber = static_cast<int>(group.asInt()); return;
      case kFormat: format = static_cast<int>(group.asInt() & 0xFFFF); return;
      case kIsFromDxf: isFromDxf = group.asInt() != 0; return;
      case kGraphicsSize: hasGraphics = group.asInt() != 0; return;
      case kBitCount: bitCount = group.asInt(); return;
      case kBits:
        if (bitCount >= 0)  // before, it is the picture of the proxy
          for (const uint8_t byte : group.bytes) data.bits.append(byte);
        return;
      case 330:
      case 340:
      case 350:
      case 360:
        data.references.append(group.id);
        data.referenceCodes.append(referenceOfGroup(group.code));
        return;
      default: return;
    }
  }
  // All bits are there, and no more.
  [[nodiscard]] bool isWhole() const {
    return !isFromDxf && !hasGraphics && bitCount >= 0 && data.bits.length() == (bitCount + 7) / 8;
  }
};

}  // namespace

void writeProxy(GroupWriter& out, const GcDbZombieData& data, bool isEntity, int classNumber) {
  TagWriter& tags = out.tags();
  tags.writeString(100, isEntity ? "AcDbProxyEntity" : "AcDbProxyObject");
  tags.writeInt(kClass, isEntity ? kProxyEntityNumber : kProxyObjectNumber);
  tags.writeInt(kApplicationClass, classNumber);
  tags.writeInt(kFormat, gcdbDwgNumberOfVersion(data.version));
  tags.writeInt(kIsFromDxf, 0);
  tags.writeInt(kBitCount, data.bitCount);
  for (int at = 0; at < data.bits.length(); at += kChunkBytes) {
    const auto size = static_cast<std::size_t>(std::min(kChunkBytes, data.bits.length() - at));
    out.put(GcDbGroup::ofBinary(kBits, {data.bits.begin() + at, size}));
  }
  for (int i = 0; i < data.references.length(); ++i)
    out.putHandle(groupOfReference(data.referenceCodes[i]), data.references[i]);
  tags.writeInt(kIdEnd, 0);
}

bool unwrapProxy(GcDbZombieData& data, const std::vector<GcDbClassRecord>& classes) {
  Told told;
  GcDbGroupList::Cursor cursor(data.groups);
  for (GcDbGroup group; cursor.next(group);) told.take(group);
  const int version = gcdbVersionOfDwgNumber(told.format);
  if (version == 0 || !told.isWhole()) return false;
  GcDbZombieData inner = std::move(told.data);
  if (told.classNumber >= kFirstClassNumber) {
    const auto place = static_cast<std::size_t>(told.classNumber - kFirstClassNumber);
    if (place >= classes.size()) return false;
    inner.dxfName = classes[place].dxfName;
  } else if (told.classNumber > 0) {
    inner.dxfName = data.dxfName;
    inner.recordType = static_cast<uint16_t>(told.classNumber);
  } else {
    return false;
  }
  inner.bitCount = static_cast<int32_t>(told.bitCount);
  inner.version = static_cast<uint8_t>(version);
  data = std::move(inner);
  return true;
}

}  // namespace gc::dxf
