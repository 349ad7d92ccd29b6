#include "host/dwg/record/common.h"

#include "host/db/core/extra.h"
#include "host/db/entities/entityaccess.h"
#include "host/dwg/record/lineweights.h"

namespace gc::dwg {

namespace {

using Common = GcDbEntityAccess::Common;

// ---- references all objects have -------------------------------------------------------------------------

constexpr unsigned kSoftPointer = 4;
constexpr unsigned kHardPointer = 5;
constexpr unsigned kHardOwner = 3;

void readReactors(RecordIn& record, GcDbObject& object, int count, bool hasDictionary) {
  for (int i = 0; i < count && !record.failed(); ++i) {
    const GcDbObjectId id = record.h(kSoftPointer, {});
    if (!id.isNull()) object.needExtra().reactors.append(id);
  }
  if (!hasDictionary) return;
  const GcDbObjectId dictionary = record.h(kHardOwner, {});
  if (!dictionary.isNull()) object.needExtra().extensionDictionary = dictionary;
}

void writeIsApart(RecordOut& record) {
  if (record.version() < kR2013) return;
  record.links.bodyIsApart = record.context.inDataSection.count(record.own) != 0;
  record.data.b(record.links.bodyIsApart);
}

void writeReactors(RecordOut& record, const GcDbObject& object, bool hasDictionary) {
  for (const GcDbObjectId id : object.persistentReactors())
    if (record.context.isWritten(id)) record.h(kSoftPointer, id);
  if (hasDictionary) record.h(kHardOwner, object.extensionDictionary());
}

int reactorCount(const RecordOut& record, const GcDbObject& object) {
  int count = 0;
  for (const GcDbObjectId id : object.persistentReactors()) count += record.context.isWritten(id) ? 1 : 0;
  return count;
}

bool writesDictionary(const RecordOut& record, const GcDbObject& object) {
  return record.version() < kR2004 || record.context.isWritten(object.extensionDictionary());
}

// ---- colours of entities ---------------------------------------------------------------------------------

constexpr unsigned kColorIsRgb = 0x80;
constexpr unsigned kColorIsObject = 0x40;
constexpr unsigned kColorIsTransparent = 0x20;

// A colour of its own comes first, the transparency behind it.
GcCmEntityColor readEntityColor(RecordIn& record, GcDbEntity& entity, bool& hasObject) {
  const auto value = static_cast<uint16_t>(record.data.bs());
  const unsigned flags = value >> 8;
  if (record.version() < kR2004) return GcCmEntityColor::fromIndex(value);
  GcCmEntityColor color = GcCmEntityColor::fromIndex(value & 0x1FF);
  hasObject = (flags & kColorIsObject) != 0;
  if (!hasObject && (flags & kColorIsRgb) != 0) {
    const auto bits = static_cast<uint32_t>(record.data.bl());
    const uint32_t method = bits >> 24;
    if (method == GcCmEntityColor::kByColor || method == 0) {
      color = GcCmEntityColor::fromRgb(static_cast<uint8_t>(bits >> 16), static_cast<uint8_t>(bits >> 8),
                                       static_cast<uint8_t>(bits));
    }
  }
  if ((flags & kColorIsTransparent) != 0) entity.needExtra().transparency = record.data.bl();
  if ((flags & 0x41) == 0x41) entity.needExtra().colorBook = toGcString(record.t({}));
  if ((flags & 0x42) == 0x42) {
    const GcText book = record.t({});
    entity.needExtra().colorBook = toGcString(book + GC_T("$") + GcText(view(entity.extra()->colorBook)));
  }
  return color;
}

// Beside a colour of its own stands the nearest one of the palette.
void writeEntityColor(RecordOut& record, const GcDbEntity& entity) {
  const GcCmEntityColor color = entity.color();
  if (record.version() < kR2004) {
    record.data.bs(color.colorIndex());
    return;
  }
  const int32_t transparency = entity.extra() == nullptr ? 0 : entity.extra()->transparency;
  unsigned flags = transparency != 0 ? kColorIsTransparent : 0;
  if (color.isByColor()) flags |= kColorIsRgb;
  record.data.bs(static_cast<int>(flags << 8 | (static_cast<unsigned>(color.colorIndex()) & 0x1FFu)));
  if (color.isByColor()) record.data.bl(static_cast<int32_t>(color.bits()));
  if (transparency != 0) record.data.bl(transparency);
}

// R13 and R14 keep the size of data and references apart in the middle of the record.
void readOldSize(RecordIn& record) {
  const uint32_t size = record.data.rl();
  const uint64_t all = record.data.end();
  if (size > all) {
    record.fail();
    return;
  }
  record.handles.setEnd(all);
  record.handles.seek(size);
  record.data.setEnd(size);
}

enum LinetypeFlag : unsigned { kByLayer = 0, kByBlock = 1, kContinuous = 2, kByHandle = 3 };

struct Properties {
  unsigned linetypeFlags = kByLayer;
  unsigned plotStyleFlags = 0;
  unsigned materialFlags = 0;
  bool hasStyle[3] = {};
  int reactors = 0;
  bool hasDictionary = true;
  bool hasColorObject = false;
  bool isShadowByHandle = false;
};

void readProperties(RecordIn& record, GcDbEntity& entity, Common& common, Properties& p) {
  const int version = record.version();
  record.links.mode = static_cast<RecordLinks::Mode>(record.data.bb() % 3);
  p.reactors = record.count(record.data.bl(), 8);
  if (version < kR2000) p.linetypeFlags = record.data.b() ? kByLayer : kByHandle;
  if (version >= kR2004) p.hasDictionary = !record.data.b();
  if (version < kR2004) record.links.consecutive = record.data.b();
  if (version >= kR2013) record.links.bodyIsApart = record.data.b();
  common.color = readEntityColor(record, entity, p.hasColorObject);
  common.linetypeScale = record.data.bd();
  if (version >= kR2000) {
    p.linetypeFlags = record.data.bb();
    p.plotStyleFlags = record.data.bb();
  }
  if (version >= kR2007) {
    p.materialFlags = record.data.bb();
    const uint8_t shadow = record.data.rc();
    if (shadow != 0) entity.needExtra().shadowFlags = static_cast<int8_t>(shadow);
  }
  if (version >= kR2010)
    for (bool& has : p.hasStyle) has = record.data.b();
  common.invisible = (record.data.bs() & 1) != 0;
  if (version >= kR2000) common.lineWeight = static_cast<int16_t>(lineWeightOf(record.data.rc()));
}

GcDbObjectId readLinetype(RecordIn& record, unsigned flags) {
  if (flags == kByBlock) return record.context.byBlock;
  if (flags == kContinuous) return record.context.continuous;
  if (flags != kByHandle) return {};
  const GcDbObjectId id = record.h(kHardPointer, {});
  return id == record.context.byLayer ? GcDbObjectId() : id;
}

void readEntityReferences(RecordIn& record, GcDbEntity& entity, Common& common, const Properties& p,
                          GcDbObjectId& owner) {
  const int version = record.version();
  if (record.links.mode == RecordLinks::Mode::Owner)
    owner = record.h(kSoftPointer, {});
  else
    owner = record.links.mode == RecordLinks::Mode::PaperSpace ? record.context.paperSpace : record.context.modelSpace;
  readReactors(record, entity, p.reactors, p.hasDictionary);
  if (version < kR2000) {
    common.layer = record.h(kHardPointer, {});
    common.linetype = readLinetype(record, p.linetypeFlags);
  }
  if (version < kR2004 && !record.links.consecutive) {
    record.links.previous = record.handles.h().absolute(record.own);
    record.links.next = record.handles.h().absolute(record.own);
  }
  if (p.hasColorObject) record.h(kHardPointer, {});
  if (version >= kR2000) {
    common.layer = record.h(kHardPointer, {});
    common.linetype = readLinetype(record, p.linetypeFlags);
  }
  if (p.materialFlags == kByHandle) entity.needExtra().material = record.h(kHardPointer, {});
  if (p.materialFlags != 0) entity.needExtra().materialFlags = static_cast<int8_t>(p.materialFlags);
  if (p.plotStyleFlags == kByHandle) entity.needExtra().plotStyle = record.h(kHardPointer, {});
  if (p.plotStyleFlags != 0 && p.plotStyleFlags != kByHandle)
    entity.needExtra().plotStyleFlags = static_cast<int8_t>(p.plotStyleFlags);
  for (int i = 0; i < 3; ++i)
    if (p.hasStyle[i]) entity.needExtra().visualStyles[i] = record.h(kHardPointer, {});
}

void readGraphics(RecordIn& record, GcDbEntity& entity) {
  if (!record.data.b()) return;
  const uint64_t size = record.version() >= kR2010 ? record.data.bll() : record.data.rl();
  GcArray<uint8_t> graphics = record.bytes({}, size);
  if (!graphics.isEmpty()) entity.needExtra().proxyGraphics.swap(graphics);
}

void writeGraphics(RecordOut& record, const GcDbEntity& entity) {
  const bool has = entity.extra() != nullptr && !entity.extra()->proxyGraphics.isEmpty();
  record.data.b(has);
  if (!has) return;
  const auto& graphics = entity.extra()->proxyGraphics;
  const auto size = static_cast<uint32_t>(graphics.length());
  if (record.version() >= kR2010)
    record.data.bll(size);
  else
    record.data.rl(size);
  record.data.bytes({graphics.begin(), size});
}

unsigned linetypeFlags(const RecordContext& context, GcDbObjectId linetype) {
  if (!linetype.isValid() || linetype.isErased() || linetype == context.byLayer) return kByLayer;
  if (linetype == context.byBlock) return kByBlock;
  return linetype == context.continuous ? kContinuous : kByHandle;
}

}  // namespace

void readCommonEntity(RecordIn& record, GcDbEntity& entity, GcDbObjectId& owner) {
  readGraphics(record, entity);
  if (record.version() < kR2000) readOldSize(record);
  Properties properties;
  Common common;
  readProperties(record, entity, common, properties);
  readEntityReferences(record, entity, common, properties, owner);
  common.inPaperSpace = record.links.mode == RecordLinks::Mode::PaperSpace;
  GcDbEntityAccess::set(entity, common);
}

void writeCommonEntity(RecordOut& record, const GcDbEntity& entity, uint64_t& sizePosition) {
  static const GcDbObjectExtra kNone;
  const int version = record.version();
  const GcDbObjectExtra& extra = entity.extra() != nullptr ? *entity.extra() : kNone;
  const bool hasDictionary = writesDictionary(record, entity);
  const unsigned linetype = linetypeFlags(record.context, entity.linetypeId());
  const bool hasPlotStyle = record.context.isWritten(extra.plotStyle);
  const bool hasMaterial = record.context.isWritten(extra.material);
  const unsigned plotStyle = hasPlotStyle ? 3u : static_cast<unsigned>(extra.plotStyleFlags) % 3;
  const unsigned material = hasMaterial ? 3u : static_cast<unsigned>(extra.materialFlags) % 3;

  writeGraphics(record, entity);
  if (version < kR2000) {
    sizePosition = record.data.position();
    record.data.rl(0);
  }
  record.data.bb(static_cast<unsigned>(record.links.mode));
  record.data.bl(reactorCount(record, entity));
  if (version < kR2000) record.data.b(linetype == kByLayer);
  if (version >= kR2004) record.data.b(!hasDictionary);
  if (version < kR2004) record.data.b(record.links.consecutive);
  writeIsApart(record);
  writeEntityColor(record, entity);
  record.data.bd(entity.linetypeScale());
  if (version >= kR2000) {
    record.data.bb(linetype);
    record.data.bb(plotStyle);
  }
  if (version >= kR2007) {
    record.data.bb(material);
    record.data.rc(static_cast<uint8_t>(extra.shadowFlags));
  }
  if (version >= kR2010)
    for (const GcDbObjectId style : extra.visualStyles) record.data.b(record.context.isWritten(style));
  record.data.bs(entity.visibility() == GcDb::kInvisible ? 1 : 0);
  if (version >= kR2000) record.data.rc(codeOfLineWeight(entity.lineWeight()));

  if (record.links.mode == RecordLinks::Mode::Owner) record.h(kSoftPointer, entity.ownerId());
  writeReactors(record, entity, hasDictionary);
  if (version < kR2000) {
    record.h(kHardPointer, entity.layerId());
    if (linetype != kByLayer) record.h(kHardPointer, entity.linetypeId());
  }
  if (version < kR2004 && !record.links.consecutive) {
    record.handles.h(kSoftPointer, record.links.previous);
    record.handles.h(kSoftPointer, record.links.next);
  }
  if (version >= kR2000) {
    record.h(kHardPointer, entity.layerId());
    if (linetype == kByHandle) record.h(kHardPointer, entity.linetypeId());
  }
  if (version >= kR2007 && material == 3) record.h(kHardPointer, extra.material);
  if (version >= kR2000 && plotStyle == 3) record.h(kHardPointer, extra.plotStyle);
  if (version >= kR2010)
    for (const GcDbObjectId style : extra.visualStyles)
      if (record.context.isWritten(style)) record.h(kHardPointer, style);
}

void readCommonObject(RecordIn& record, GcDbObject& object, GcDbObjectId& owner) {
  if (record.version() < kR2000) readOldSize(record);
  const int reactors = record.count(record.data.bl(), 8);
  const bool hasDictionary = record.version() < kR2004 || !record.data.b();
  if (record.version() >= kR2013) record.links.bodyIsApart = record.data.b();
  owner = record.h(kSoftPointer, {});
  readReactors(record, object, reactors, hasDictionary);
}

void writeCommonObject(RecordOut& record, const GcDbObject& object, uint64_t& sizePosition) {
  if (record.version() < kR2000) {
    sizePosition = record.data.position();
    record.data.rl(0);
  }
  const bool hasDictionary = writesDictionary(record, object);
  record.data.bl(reactorCount(record, object));
  if (record.version() >= kR2004) record.data.b(!hasDictionary);
  writeIsApart(record);
  record.h(kSoftPointer, object.ownerId());
  writeReactors(record, object, hasDictionary);
}

}  // namespace gc::dwg
