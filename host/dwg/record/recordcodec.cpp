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

struct Preamble {
  uint32_t type = 0;
  bool ok = false;
};

// Type, sizes, handle: what every record begins with.
Preamble readPreamble(RecordIn& record, std::span<const uint8_t> body, uint64_t handleBits) {
  Preamble preamble;
  const int version = record.version();
  record.data = BitReader(body);
  record.handles = BitReader(body);
  preamble.type = version >= kR2010 ? record.data.ot() : static_cast<uint16_t>(record.data.bs());
  const uint64_t all = body.size() * 8;
  if (version >= kR2010) {
    if (handleBits > all) return preamble;
    splitStreams(record, body, all - handleBits);
  } else if (version >= kR2000) {
    const uint32_t size = record.data.rl();
    if (size > all) return preamble;
    splitStreams(record, body, size);
  }
  record.own = record.data.h().value;
  preamble.ok = !record.failed();
  return preamble;
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

// The part all objects have; leaves the streams at the first field of the class.
void readCommon(RecordIn& record, GcDbObject& object, bool isEntity, ReadRecord& result) {
  GcDbGroupList xdata;
  bool damaged = false;
  readXData(record, xdata, damaged);
  if (damaged) result.trouble = "part of its extended data means nothing and was left out";
  if (!xdata.isEmpty()) object.needExtra().xdata = xdata;
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
ReadRecord readRaw(RecordContext& context, std::span<const uint8_t> body, uint64_t handleBits, const TypeInfo& info) {
  RecordIn record(context, 0);
  ReadRecord result;
  result.type = readPreamble(record, body, handleBits).type;
  result.handle = record.own;
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

RecordHead headOfRecord(int version, std::span<const uint8_t> body) {
  BitReader in(body);
  RecordHead head;
  head.type = version >= kR2010 ? in.ot() : static_cast<uint16_t>(in.bs());
  if (version >= kR2000 && version < kR2010) in.rl();
  head.handle = in.h().value;
  if (in.failed()) head = {};
  return head;
}

ReadRecord readRecord(RecordContext& context, std::span<const uint8_t> body, uint64_t handleBits) {
  RecordIn record(context, 0);
  ReadRecord result;
  const Preamble preamble = readPreamble(record, body, handleBits);
  result.type = preamble.type;
  result.handle = record.own;
  if (!preamble.ok) {
    result.trouble = "its sizes are wrong";
    return result;
  }
  const TypeInfo& info = context.classes.typeOf(preamble.type);
  if (!info.isKnown) {
    result.trouble = "no class has its number";
    return result;
  }
  result.object = makeObject(info);
  if (result.object == nullptr) return readRaw(context, body, handleBits, info);
  const bool isKnown = info.isRead();
  if (isKnown) {
    readCommon(record, *result.object, info.isEntity, result);
    if (!record.failed() && readFields(record, *result.object, info)) {
      result.links = std::move(record.links);
      return result;
    }
  }
  ReadRecord raw = readRaw(context, body, handleBits, info);
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
  const RecordView written = writeRecord(record, object, type, links);
  return {{written.body.begin(), written.body.end()}, written.handleBits};
}

RecordView writeRecord(RecordOut& record, const GcDbObject& object, uint32_t type, const EntityLinks& links) {
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
  static const GcDbGroupList kNone;
  writeXData(record, object.extra() != nullptr ? object.extra()->xdata : kNone);
  if (const auto* entity = GcDbEntity::cast(&object))
    writeCommonEntity(record, *entity, sizePosition);
  else
    writeCommonObject(record, object, sizePosition);

  auto& changeable = const_cast<GcDbObject&>(object);  // the loop over rows is one for both directions
  if (const GcDbZombieData* raw = zombieDataOf(object)) {
    if (isProxied(*raw, version))
      putProxy(record, *raw, record.context.classes.numberFor(*raw));
    else
      putRaw(record, *raw);
  } else if (const auto* table = GcDbSymbolTable::cast(&object)) {
    writeTable(record, *table);
  } else if (const BoundTable* packing = boundTableOf(*object.isA())) {
    uint32_t registers[kRegisters] = {};
    packRows(record, *packing, &changeable, registers);
  } else if (object.isA()->info() != nullptr) {
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

bool hasPacking(const GcDbObject& object) {
  return zombieDataOf(object) != nullptr || GcDbSymbolTable::cast(&object) != nullptr ||
         boundTableOf(*object.isA()) != nullptr || object.isA()->info() == nullptr;
}

}  // namespace gc::dwg
