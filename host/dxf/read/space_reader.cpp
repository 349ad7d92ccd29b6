#include "host/dxf/read/space_reader.h"

#include "db/blockbegin.h"
#include "host/db/core/extra.h"
#include "host/db/core/loader.h"
#include "host/db/core/store.h"
#include "host/rx/text/number.h"

namespace gc::dxf {
namespace {

constexpr GcView kModelSpace = GC_T("*Model_Space");
constexpr GcView kPaperSpace = GC_T("*Paper_Space");

// Files before R13 write the spaces with a dollar sign.
GcText spaceName(GcView name) {
  if (equalNoCase(name, GC_T("$MODEL_SPACE"))) return GcText(kModelSpace);
  if (equalNoCase(name, GC_T("$PAPER_SPACE"))) return GcText(kPaperSpace);
  return GcText(name);
}

GcText nameIn(const LoadContext& context, const RawRecord& record) {
  const Tag* tag = record.find(2);
  GcText name;
  if (tag) (void)context.text.decode(tag->raw, name);
  return spaceName(name);
}

// The groups by which a BLOCK tells of the definition.
class BlockFields final : public FieldTaker {
 public:
  BlockFields(GcDbBlockTableRecord& block, int version)
      : m_reader(&block, rows(), GcDbBlockTableRecord::kBlockFieldCount, version, block.database()) {}
  bool take(const GcDbGroup& group) override { return group.code != 100 && m_reader.take(group); }

 private:
  static const GcDbField* const* rows() {
    static const auto* const all = [] {
      auto* made = new const GcDbField*[static_cast<std::size_t>(GcDbBlockTableRecord::kBlockFieldCount)];
      for (int i = 0; i < GcDbBlockTableRecord::kBlockFieldCount; ++i) made[i] = &GcDbBlockTableRecord::kBlockFields[i];
      return made;
    }();
    return all;
  }
  GcDbFieldReader m_reader;
};

bool isPart(std::string_view type) { return type == "VERTEX" || type == "ATTRIB" || type == "SEQEND"; }

bool attributesFollow(const RawRecord& record) {
  std::int64_t flag = 0;
  const Tag* tag = record.find(66);
  return tag && tag->integer(flag) && flag != 0;
}

}  // namespace

bool SpaceReader::isCut(const RawRecord& record) {
  if (!record.isCut) return false;
  std::uint64_t handle = 0;
  const Tag* tag = record.findHead(5);
  if (tag) (void)tag->handle(handle);
  m_context.report(GcDbLoadAction::Missing, record.offset, handle, std::string(record.type) + " is damaged or cut off");
  return true;
}

GcDbBlockTableRecord* SpaceReader::blockByName(GcView name) {
  auto* table = static_cast<GcDbSymbolTable*>(m_context.database.blockTableId().stub()->object);
  GcDbObjectId id;
  GcDbStub* stub = table->objectId().stub();
  ++stub->readers;
  const bool found = table->getAt(GcText(name).c_str(), id) == Gcad::eOk;
  --stub->readers;
  return found ? GcDbBlockTableRecord::cast(id.stub()->object) : nullptr;
}

GcDbBlockTableRecord* SpaceReader::newBlock(GcView name) {
  auto* block = new GcDbBlockTableRecord;
  GcDbStore& store = m_context.database.store();
  auto* table = static_cast<GcDbSymbolTable*>(m_context.database.blockTableId().stub()->object);
  store.adopt(store.fresh(), block, table->objectId());
  GcDbLoader::setName(*block, toGcString(name));
  GcDbLoader::appendRecord(*table, *block);
  return block;
}

// The definition a BLOCK speaks of: its owner, else the one of its name, else a new one.
GcDbBlockTableRecord* SpaceReader::blockOf(const RawRecord& head) {
  const GcText name = nameIn(m_context, head);
  std::uint64_t owner = 0;
  const Tag* tag = head.findHead(330);
  GcDbBlockTableRecord* block = nullptr;
  if (tag && tag->handle(owner) && owner != 0) {
    GcDbStub* stub = m_context.database.store().find(owner);
    block = stub && stub->object ? GcDbBlockTableRecord::cast(stub->object) : nullptr;
  }
  if (!block) block = blockByName(name);
  if (block && block->blockBeginId().isNull()) return block;
  GcText fresh = name;
  // Where the counting stopped for the name: a file may define it ten thousand times.
  for (int& i = m_renamed[name]; blockByName(fresh);) fresh = name + fromUtf8("$" + std::to_string(++i));
  if (block) {
    m_context.report(GcDbLoadAction::Repaired, head.offset, owner,
                     "block " + toUtf8(GcView(name)) + " is defined twice: the second named " + toUtf8(GcView(fresh)));
  } else if (m_context.version >= GcDb::kDHL_AC1012) {
    m_context.report(GcDbLoadAction::Repaired, head.offset, owner,
                     "block " + toUtf8(GcView(name)) + " has no block record: made");
  }
  return newBlock(fresh);
}

// Files before R13 have no block records: all definitions are made first, so that inserts find them.
void SpaceReader::defineBlocks() {
  TagReader reader = m_context.reader;
  Tag tag;
  bool inHead = false;
  for (;;) {
    const ReadStatus status = reader.next(tag);
    if (status == ReadStatus::BadCode && reader.skipToRecord()) continue;
    if (status != ReadStatus::Tag || tag.is(0, "ENDSEC") || tag.is(0, "EOF")) return;
    if (tag.code == 0) inHead = tag.word() == "BLOCK";
    if (!inHead || tag.code != 2) continue;
    GcText name;
    (void)m_context.text.decode(tag.raw, name);
    name = spaceName(name);
    if (!name.empty() && !blockByName(name)) newBlock(name);
    inHead = false;
  }
}

void SpaceReader::readBlocks() {
  if (m_context.version < GcDb::kDHL_AC1012) defineBlocks();
  RawRecord record;
  while (m_records.next(record)) {
    if (record.type == "ENDSEC") return;
    if (record.type == "EOF" || record.type == "SECTION") {
      m_records.seek(record.offset);
      return;
    }
    if (record.type == "BLOCK") {
      readBlock(record);
    } else {
      m_context.report(GcDbLoadAction::Skipped, record.offset, 0, std::string(record.type) + " stands in no block");
    }
  }
}

void SpaceReader::readBlock(const RawRecord& head) {
  if (isCut(head)) return;
  GcDbBlockTableRecord* block = blockOf(head);
  BlockFields fields(*block, m_context.version);
  GcDbObject* begin = m_objects.read(head, RecordKind::Entity, GcDbBlockBegin::desc(), &fields);
  m_context.setOwner(head.offset, *begin, block->objectId());
  GcDbLoader::setBlockBegin(*block, begin->objectId());
  RawRecord record;
  while (m_records.next(record)) {
    if (record.type == "BLOCK" || record.type == "ENDSEC" || record.type == "EOF" || record.type == "SECTION") {
      m_records.seek(record.offset);
      m_context.report(GcDbLoadAction::Repaired, record.offset, block->handle(),
                       "block " + toUtf8(view(block->getName())) + " has no end: ended");
      break;
    }
    if (record.type == "ENDBLK") {
      GcDbObject* end = m_objects.read(record, RecordKind::Entity, GcDbBlockEnd::desc());
      m_context.setOwner(record.offset, *end, block->objectId());
      GcDbLoader::setBlockEnd(*block, end->objectId());
      break;
    }
    readEntity(record, block);
  }
  endSequence(m_context.reader.offset());
}

void SpaceReader::readEntities() {
  m_modelSpace = blockByName(kModelSpace);
  m_paperSpace = blockByName(kPaperSpace);
  if (!m_modelSpace) m_modelSpace = newBlock(kModelSpace);
  if (!m_paperSpace) m_paperSpace = newBlock(kPaperSpace);
  RawRecord record;
  while (m_records.next(record) && record.type != "ENDSEC") {
    if (record.type == "EOF" || record.type == "SECTION") {
      m_records.seek(record.offset);
      break;
    }
    readEntity(record, nullptr);
  }
  endSequence(m_context.reader.offset());
}

// The block an entity of the ENTITIES section is in: its owner's, else the space its group 67 names.
GcDbBlockTableRecord* SpaceReader::spaceOf(const RawRecord& record, const GcDbObject& entity) {
  const GcDbObjectId owner = entity.ownerId();
  if (!owner.isNull() && owner == m_lastOwner) return m_lastSpace;
  if (owner.isValid()) {
    auto* block = GcDbBlockTableRecord::cast(owner.stub()->object);
    if (block) {
      m_lastOwner = owner;
      m_lastSpace = block;
      return block;
    }
  }
  if (!owner.isNull()) {
    m_context.report(
        GcDbLoadAction::Repaired, record.offset, entity.handle(),
        std::string(record.type) + ": its owner " + hexText(owner.handle()) + " is no block: its space taken");
  }
  std::int64_t inPaperSpace = 0;
  const Tag* tag = record.find(67);
  return tag && tag->integer(inPaperSpace) && inPaperSpace == 1 ? m_paperSpace : m_modelSpace;
}

void SpaceReader::readEntity(const RawRecord& record, GcDbBlockTableRecord* into) {
  if (isCut(record)) return;
  if (isPart(record.type)) {
    readPart(record);
    return;
  }
  endSequence(record.offset);
  GcDbObject* entity = m_objects.read(record, RecordKind::Entity);
  GcDbBlockTableRecord* block = into ? into : spaceOf(record, *entity);
  if (into) {
    m_context.setOwner(record.offset, *entity, block->objectId());
  } else {
    GcDbLoader::setOwner(*entity, block->objectId());
  }
  GcDbLoader::appendEntity(*block, entity->objectId());
  const bool isPolyline = record.type == "POLYLINE";
  if (isPolyline || record.type == "INSERT") {
    m_parent = entity;
    m_parentNeedsEnd = isPolyline || attributesFollow(record);
  }
}

void SpaceReader::readPart(const RawRecord& record) {
  if (!m_parent) {
    m_context.report(GcDbLoadAction::Skipped, record.offset, 0,
                     std::string(record.type) + " follows nothing it belongs to");
    return;
  }
  GcDbObject* part = m_objects.read(record, RecordKind::Entity);
  m_context.setOwner(record.offset, *part, m_parent->objectId());
  if (record.type == "SEQEND") {
    m_parent->needExtra().sequenceEnd = part->objectId();
    m_parent = nullptr;
  } else {
    m_parent->needExtra().parts.append(part->objectId());
  }
}

void SpaceReader::endSequence(std::size_t offset) {
  if (m_parent && m_parentNeedsEnd) {
    m_context.report(GcDbLoadAction::Repaired, offset, m_parent->handle(), "a sequence without its end: ended");
  }
  m_parent = nullptr;
}

}  // namespace gc::dxf
