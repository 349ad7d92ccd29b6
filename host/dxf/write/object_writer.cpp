#include "host/dxf/write/object_writer.h"

#include "db/database.h"
#include "db/dictionary.h"
#include "db/symboltable.h"
#include "db/zombie.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/db/objects/zombiedata.h"
#include "host/dxf/proxy.h"
#include "host/dxf/write/out_filer.h"

namespace gc::dxf {
namespace {

constexpr int kMarkerCode = 100;
constexpr int kBraceCode = 102;
constexpr int kPaperSpaceCode = 67;
constexpr GcView kEntityMarker = GC_T("AcDbEntity");

const GcDbZombieData* zombieDataOf(const GcDbObject& object) {
  if (const auto* entity = GcDbZombieEntity::cast(&object)) return &entity->data();
  if (const auto* plain = GcDbZombieObject::cast(&object)) return &plain->data();
  return nullptr;
}

// Groups in braces belong before the owner; others that came before any marker, after the fields.
bool isBraced(const GcDbGroupList& groups) {
  GcDbGroup first;
  return GcDbGroupList::Cursor(groups).next(first) && first.code == kBraceCode;
}

}  // namespace

GcView typeOf(const GcDbObject& object) {
  if (const GcDbZombieData* zombie = zombieDataOf(object)) {
    if (!isProxied(*zombie)) return view(zombie->dxfName);
    return GcDbEntity::cast(&object) ? kProxyEntityType : kProxyObjectType;
  }
  return view(object.isA()->dxfName());
}

// Passes fields on and puts, at the end of each section, the groups kept of that section behind them.
class ObjectWriter::Sections final : public GcDbGroupSink {
 public:
  Sections(GroupWriter& out, const GcDbObject& object, const GcDbBlockTableRecord* block)
      : m_out(out), m_object(object), m_block(block), m_foreign(object.extra() ? &object.extra()->foreign : nullptr) {}

  void put(const GcDbGroup& group) override {
    if (group.code == kMarkerCode) {
      endSection();
      if (m_foreign) m_section = group.text;
      m_out.put(group);
      m_inEntity = group.text == kEntityMarker;
      if (m_inEntity && m_block && m_block->isPaperSpace()) m_out.tags().writeInt(kPaperSpaceCode, 1);
    } else if (!m_inEntity || group.code != kPaperSpaceCode) {  // the space is the block's to say
      m_out.put(group);
    }
  }

  // The last section, and the sections no description knows.
  void finish() {
    endSection();
    if (!m_foreign) return;
    for (const GcDbForeignGroups& groups : *m_foreign) {
      if (groups.ownMarker) {
        m_out.putText(kMarkerCode, view(groups.section));
        m_out.put(groups.groups);
      } else if (groups.section.isEmpty() && !isBraced(groups.groups)) {
        m_out.put(groups.groups);
      }
    }
  }

 private:
  // Behind the common part: how the entity looks to programs that do not know its class.
  void putGraphics() {
    const GcDbObjectExtra* extra = m_object.extra();
    if (!extra || extra->proxyGraphics.isEmpty()) return;
    const GcArray<std::uint8_t>& graphics = extra->proxyGraphics;
    m_out.tags().writeInt(m_out.version() >= GcDb::kDHL_AC1024 ? 160 : 92, graphics.length());
    m_out.tags().writeBinary(
        310, {reinterpret_cast<const char*>(graphics.begin()), static_cast<std::size_t>(graphics.length())});
  }

  void endSection() {
    if (m_inEntity) putGraphics();
    m_inEntity = false;
    if (!m_foreign || m_section.empty()) return;
    for (const GcDbForeignGroups& groups : *m_foreign) {
      if (!groups.ownMarker && view(groups.section) == GcView(m_section)) m_out.put(groups.groups);
    }
    m_section.clear();
  }

  GroupWriter& m_out;
  const GcDbObject& m_object;
  const GcDbBlockTableRecord* m_block;
  const GcArray<GcDbForeignGroups>* m_foreign;
  GcText m_section;
  bool m_inEntity = false;
};

void ObjectWriter::writeIdentity(const GcDbObject& object, int handleCode) {
  TagWriter& tags = m_out.tags();
  tags.writeHandle(handleCode, object.handle());
  const GcDbObjectExtra* extra = object.extra();
  if (!extra) return;
  for (const GcDbForeignGroups& groups : extra->foreign) {
    if (!groups.ownMarker && groups.section.isEmpty() && isBraced(groups.groups)) m_out.put(groups.groups);
  }
  bool open = false;
  for (const GcDbObjectId id : extra->reactors) {
    if (id.isErased()) continue;
    if (!open) tags.writeString(kBraceCode, "{ACAD_REACTORS");
    open = true;
    m_out.putHandle(330, id);
  }
  if (open) tags.writeString(kBraceCode, "}");
  if (extra->extensionDictionary.isNull() || extra->extensionDictionary.isErased()) return;
  tags.writeString(kBraceCode, "{ACAD_XDICTIONARY");
  m_out.putHandle(360, extra->extensionDictionary);
  tags.writeString(kBraceCode, "}");
}

void ObjectWriter::writeHead(const GcDbObject& object, GcView type) {
  m_out.putText(0, type);
  writeIdentity(object, type == GC_T("DIMSTYLE") ? 105 : 5);
  m_out.putHandle(330, object.ownerId());
}

// Entries whose objects are erased stay behind.
void ObjectWriter::writeDictionaryEntries(const GcDbDictionary& dictionary) {
  class Living final : public GcDbGroupSink {
   public:
    explicit Living(Sections& to) : m_to(to) {}
    void put(const GcDbGroup& group) override {
      if (group.code == 3) {
        m_key = group;
        return;
      }
      const bool isEntry = group.kind == GcDbGroupKind::Id && m_key.code == 3;
      if (isEntry && !group.id.isErased()) m_to.put(m_key);
      if (!isEntry || !group.id.isErased()) m_to.put(group);
      m_key.code = 0;
    }

   private:
    Sections& m_to;
    GcDbGroup m_key;
  };
  Sections sections(m_out, dictionary, nullptr);
  Living living(sections);
  gcdbFieldsOut(dictionary, living, m_out.version());
  sections.finish();
}

// `told`: the block that a BLOCK speaks of.
void ObjectWriter::writeFields(const GcDbObject& object, const GcDbBlockTableRecord* block,
                               const GcDbBlockTableRecord* told) {
  if (const auto* dictionary = GcDbDictionary::cast(&object)) {
    writeDictionaryEntries(*dictionary);
    return;
  }
  Sections sections(m_out, object, block);
  if (object.isA()->info()) {
    gcdbFieldsOut(object, sections, m_out.version());
  } else {
    if (GcDbEntity::cast(&object)) {
      gcdbRowsOut(&object, GcDbEntity::kFields, GcDbEntity::kFieldCount, sections, m_out.version(), object.database());
    }
    OutFiler filer(m_out);
    GcDbStub* stub = object.objectId().stub();
    ++stub->readers;
    ignore(object.dxfOutFields(&filer));
    --stub->readers;
  }
  if (told) {
    gcdbRowsOut(told, GcDbBlockTableRecord::kBlockFields, GcDbBlockTableRecord::kBlockFieldCount, sections,
                m_out.version(), object.database());
  }
  sections.finish();
  const GcDbZombieData* zombie = zombieDataOf(object);
  if (zombie && isProxied(*zombie)) writeProxied(object, *zombie);
}

void ObjectWriter::writeProxied(const GcDbObject& object, const GcDbZombieData& data) {
  int number = data.recordType;
  if (number == 0) {
    const GcDbFileParts& parts = object.database()->fileParts();
    const GcDbClassRecord* described = parts.findClass(view(data.dxfName));
    if (described) number = kFirstClassNumber + static_cast<int>(described - parts.classes.data());
  }
  writeProxy(m_out, data, GcDbEntity::cast(&object) != nullptr, number);
}

void ObjectWriter::writeTail(const GcDbObject& object) {
  if (object.extra()) m_out.put(object.extra()->xdata);
}

void ObjectWriter::write(const GcDbObject& object) {
  writeHead(object, typeOf(object));
  writeFields(object, nullptr, nullptr);
  writeTail(object);
}

void ObjectWriter::writeEntity(const GcDbEntity& entity, const GcDbBlockTableRecord& block) {
  writeHead(entity, typeOf(entity));
  writeFields(entity, &block, nullptr);
  writeTail(entity);
}

void ObjectWriter::writeBlockBegin(const GcDbEntity& begin, const GcDbBlockTableRecord& block) {
  writeHead(begin, typeOf(begin));
  writeFields(begin, &block, &block);
  writeTail(begin);
}

void ObjectWriter::writeTableHead(const GcDbObject& table, const char* name, int count) {
  TagWriter& tags = m_out.tags();
  tags.writeString(0, "TABLE");
  tags.writeString(2, name);
  writeIdentity(table, 5);
  m_out.putHandle(330, table.ownerId());
  tags.writeString(kMarkerCode, "AcDbSymbolTable");
  tags.writeInt(70, count);
  Sections sections(m_out, table, nullptr);
  sections.finish();
  writeTail(table);
}

}  // namespace gc::dxf
