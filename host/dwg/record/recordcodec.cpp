#include "host/dwg/record/recordcodec.h"

#include "db/zombie.h"
#include "host/db/core/asgroups.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/objects/zombiedata.h"
#include "host/dwg/record/common.h"
#include "host/dwg/record/dwgfiler.h"
#include "host/dwg/record/pieces.h"
#include "host/dwg/record/rawrecord.h"
#include "host/dwg/record/streams.h"
#include "host/dwg/record/tablerecord.h"
#include "host/dwg/record/xdata.h"

namespace gc::dwg {

namespace {

bool isWhole(const BoundTable& packing, const GcDbObject& object, int version) {
  return packing.isWhole == nullptr || packing.isWhole(object, version);
}

// What is behind the last field: less than a byte of filling in the references, nothing in the other streams.
bool endsExactly(const RecordIn& record) {
  return !record.failed() && record.data.remaining() == 0 && record.texts.remaining() == 0 &&
         record.handles.remaining() < 8;
}

bool readFields(RecordIn& record, GcDbObject& object, const TypeInfo& info) {
  if (info.isTable) {
    readTable(record, static_cast<GcDbSymbolTable&>(object));
    return endsExactly(record);
  }
  if (info.packing != nullptr) {
    uint32_t registers[kRegisters] = {};
    unpackRows(record, *info.packing, &object, registers);
    return endsExactly(record);
  }
  if (!info.filesItself) return false;
  FilerIn filer(record);
  return object.dwgInFields(&filer) == Gcad::eOk && endsExactly(record);
}

std::unique_ptr<GcDbObject> makeObject(const TypeInfo& info) {
  return std::unique_ptr<GcDbObject>(info.isMade ? static_cast<GcDbObject*>(info.rxClass->create()) : nullptr);
}

void readExtendedData(RecordIn& record, unsigned firstSize, GcDbObject& object, ReadRecord& result) {
  GcDbGroupList xdata;
  bool damaged = false;
  readXData(record, firstSize, xdata, damaged);
  if (damaged) result.trouble = "part of its extended data means nothing and was left out";
  if (!xdata.isEmpty()) object.needExtra().xdata = std::move(xdata);
}

// The part all objects have; leaves the streams at the first field of the class.
void readCommon(RecordIn& record, GcDbObject& object, bool isEntity, ReadRecord& result) {
  if (const auto size = static_cast<uint16_t>(record.data.bs()); size != 0)
    readExtendedData(record, size, object, result);
  if (isEntity)
    readCommonEntity(record, static_cast<GcDbEntity&>(object), result.owner);
  else
    readCommonObject(record, object, result.owner);
}

// What a proxy stands for, when its class is described and its data are understood.
bool unwrapProxy(RecordIn& record, GcDbZombieData& data) {
  const BitReader before[3] = {record.data, record.texts, record.handles};
  GcDbZombieData inner;
  uint32_t classNumber = 0;
  const bool understood = takeProxy(record, inner, classNumber);
  const ClassMap::FileClass* described = record.context.classes.fileClass(classNumber);
  const TypeInfo fixed = classNumber < kFirstFileClass ? record.context.classes.typeOf(classNumber) : TypeInfo();
  if (!understood || (described == nullptr && !fixed.isKnown)) {
    record.data = before[0];
    record.texts = before[1];
    record.handles = before[2];
    return false;
  }
  inner.dxfName = toGcString(described != nullptr ? described->dxfName : fixed.dxfName);
  inner.recordType = static_cast<uint16_t>(described != nullptr ? 0 : classNumber);
  data = std::move(inner);
  return true;
}

// The record as it is, when its class is unknown or its fields are not as they should be.
ReadRecord readRaw(RecordContext& context, const RecordBits& bits, const TypeInfo& info) {
  RecordIn record(context, 0);
  ReadRecord result;
  const RecordBegin begin = beginRecord(record, bits);
  result.type = begin.type;
  result.handle = begin.handle;
  result.keptRaw = true;
  if (info.isEntity)
    result.object.reset(new GcDbZombieEntity);
  else
    result.object.reset(new GcDbZombieObject);
  readCommon(record, *result.object, info.isEntity, result);
  if (record.failed()) {
    result.object.reset();
    result.trouble = "cut off or damaged";
    return result;
  }
  GcDbZombieData& data = *zombieDataOf(*result.object);
  data.dxfName = toGcString(info.dxfName);
  data.recordType = static_cast<uint16_t>(result.type < kFirstFileClass ? result.type : 0);
  if (result.type == kProxyEntity || result.type == kProxyObject) {
    if (unwrapProxy(record, data)) {
      result.links = std::move(record.links);
      return result;
    }
  }
  keepRaw(record, data);
  result.links = std::move(record.links);
  return result;
}

}  // namespace

uint32_t typeOfRecord(int version, std::span<const uint8_t> body) {
  BitReader in(body);
  const uint32_t type = version >= kR2010 ? in.ot() : static_cast<uint16_t>(in.bs());
  return in.failed() ? 0 : type;
}

RecordBegin beginRecord(RecordIn& record, const RecordBits& bits) {
  RecordBegin begin;
  const int version = record.version();
  record.behind = bits.behind;
  record.data = record.handles = BitReader(bits.body, bits.behind);
  begin.type = version >= kR2010 ? record.data.ot() : static_cast<uint16_t>(record.data.bs());
  const uint64_t all = bits.body.size() * 8;
  uint64_t dataBits = all;
  if (version >= kR2000 && version < kR2010) dataBits = record.data.rl();
  if (version >= kR2010) dataBits = bits.handleBits <= all ? all - bits.handleBits : all + 1;
  begin.handle = record.own = record.data.h().value;
  if (dataBits > all) return begin;
  if (version >= kR2000) splitStreams(record, bits.body, dataBits);
  begin.ok = !record.failed();
  return begin;
}

ReadRecord readRecord(RecordContext& context, std::span<const uint8_t> body, uint64_t handleBits) {
  RecordIn record(context, 0);
  const RecordBits bits{body, handleBits, 0};
  const RecordBegin begin = beginRecord(record, bits);
  return readRecord(record, begin, bits);
}

ReadRecord readRecord(RecordIn& record, const RecordBegin& begin, const RecordBits& bits) {
  RecordContext& context = record.context;
  ReadRecord result;
  result.type = begin.type;
  result.handle = begin.handle;
  if (!begin.ok) {
    result.trouble = "its sizes are wrong";
    return result;
  }
  const TypeInfo& info = context.classes.typeOf(begin.type);
  if (!info.isKnown) {
    result.trouble = "no class has its number";
    return result;
  }
  result.object = makeObject(info);
  if (result.object == nullptr) return readRaw(context, bits, info);
  const bool isKnown = info.isRead();
  if (isKnown) {
    readCommon(record, *result.object, info.isEntity, result);
    if (!record.failed() && readFields(record, *result.object, info)) {
      result.links = std::move(record.links);
      return result;
    }
  }
  ReadRecord raw = readRaw(context, bits, info);
  if (isKnown && raw.trouble.empty()) raw.trouble = "its fields do not end where its record ends: kept as it is";
  return raw;
}

bool readKeptBits(const GcDbZombieData& data, GcDbObject& object) {
  GcDbDatabase* database = object.database();
  if (database == nullptr || data.version == 0 || data.bitCount < 0) return false;
  RecordContext context(*database);
  context.version = data.version;
  const CodePage page = codePageByName(view(database->fileParts().codePage));
  context.text = DrawingText(page, false, Carets::Plain);
  RecordIn record(context, object.handle());
  const std::span<const uint8_t> bits(data.bits.begin(), static_cast<size_t>(data.bits.length()));
  record.data = BitReader(bits);
  splitStreams(record, bits, static_cast<uint64_t>(data.bitCount));
  BitWriter references;
  for (int i = 0; i < data.references.length(); ++i) references.h(data.referenceCodes[i], data.references[i].handle());
  const uint64_t end = references.position();
  const std::vector<uint8_t> kept = references.take();
  record.handles = BitReader(kept, 0, end);
  TypeInfo info;
  info.packing = boundTableOf(*object.isA());
  info.isTable = GcDbSymbolTable::cast(&object) != nullptr;
  info.filesItself = object.isA()->info() == nullptr;
  return !record.failed() && readFields(record, object, info);
}

WrittenRecord writeRecord(RecordContext& context, const GcDbObject& object, uint32_t type, const EntityLinks& links) {
  RecordOut record(context, object.handle());
  const RecordView written = writeRecord(record, object, objectKind(object, context.version), type, links);
  return {{written.body.begin(), written.body.end()}, written.handleBits};
}

ObjectKind objectKind(const GcDbObject& object, int version) {
  ObjectKind kind = classKind(object);
  if (kind.packing != nullptr && !isWhole(*kind.packing, object, version)) kind.packing = nullptr;
  return kind;
}

ObjectKind classKind(const GcDbObject& object) {
  ObjectKind kind;
  kind.isEntity = object.isKindOf(GcDbEntity::desc());
  kind.isTable = object.isKindOf(GcDbSymbolTable::desc());
  kind.isZombie = zombieDataOf(object) != nullptr;
  kind.packing = boundTableOf(*object.isA());
  kind.filesItself = object.isA()->info() == nullptr;
  return kind;
}

RecordView writeRecord(RecordOut& record, const GcDbObject& object, const ObjectKind& kind, uint32_t type,
                       const EntityLinks& links) {
  record.restart(object.handle());
  static_cast<EntityLinks&>(record.links) = links;
  const int version = record.version();
  if (version >= kR2010)
    record.data.ot(type);
  else
    record.data.bs(static_cast<int>(type));
  uint64_t sizePosition = record.data.position();
  if (version >= kR2000 && version < kR2010) record.data.rl(0);
  record.data.h(0, record.own);
  if (object.extra() != nullptr)
    writeXData(record, object.extra()->xdata);
  else
    record.data.bs(0);
  if (kind.isEntity)
    writeCommonEntity(record, static_cast<const GcDbEntity&>(object), sizePosition);
  else
    writeCommonObject(record, object, sizePosition);

  auto& changeable = const_cast<GcDbObject&>(object);  // the loop over rows is one for both directions
  if (kind.isZombie) {
    const GcDbZombieData& raw = *zombieDataOf(object);
    if (isProxied(raw, version))
      putProxy(record, raw, record.context.classes.numberFor(raw));
    else
      putRaw(record, raw);
  } else if (kind.isTable) {
    writeTable(record, static_cast<const GcDbSymbolTable&>(object));
  } else if (kind.packing != nullptr) {
    uint32_t registers[kRegisters] = {};
    packRows(record, *kind.packing, &changeable, registers);
  } else if (!kind.filesItself) {
    GcDbZombieData groups = gcdbAsGroups(object);
    groups.recordType = static_cast<uint16_t>(ClassMap::fixedTypeOf(view(object.isA()->name())));
    putProxy(record, groups, record.context.classes.numberFor(groups));
  } else {
    FilerOut filer(record);
    ignore(object.dwgOutFields(&filer));
  }
  finishStreams(record);
  const uint64_t dataEnd = record.data.position();
  record.data.append(record.handles);
  if (version < kR2010) record.data.patchRl(sizePosition, static_cast<uint32_t>(dataEnd));
  RecordView written;
  written.body = record.data.whole();
  written.handleBits = written.body.size() * 8 - dataEnd;
  return written;
}

bool hasPacking(const GcDbObject& object, int version) { return objectKind(object, version).isWritten(); }

}  // namespace gc::dwg
