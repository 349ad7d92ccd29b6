#include "host/dxf/write/r12/r12_file.h"

#include <algorithm>
#include <vector>

#include "db/blockreference.h"
#include "db/dictionary.h"
#include "db/dimension.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/describe/fieldio.h"
#include "host/dxf/table_names.h"
#include "host/dxf/write/header_writer.h"
#include "host/dxf/write/object_writer.h"
#include "host/dxf/write/r12/r12_entities.h"
#include "host/dxf/write/r12/r12_header.h"

namespace gc::dxf {
namespace {

constexpr int kWritingOrder[] = {GcDbDatabase::kViewports,  GcDbDatabase::kLinetypes, GcDbDatabase::kLayers,
                                 GcDbDatabase::kTextStyles, GcDbDatabase::kViews,     GcDbDatabase::kUcss,
                                 GcDbDatabase::kRegApps,    GcDbDatabase::kDimStyles};

bool isWritten(GcDbObjectId id) { return id.isValid() && !id.isErased(); }

const GcDbEntity* entityAt(GcDbObjectId id) { return isWritten(id) ? GcDbEntity::cast(id.stub()->object) : nullptr; }

const GcDbBlockTableRecord* blockAt(GcDbObjectId id) {
  return isWritten(id) ? GcDbBlockTableRecord::cast(id.stub()->object) : nullptr;
}

// The block an entity refers to; null for most.
const GcDbBlockTableRecord* referredBlock(const GcDbEntity& entity) {
  if (const auto* reference = GcDbBlockReference::cast(&entity)) return blockAt(reference->blockTableRecord());
  if (const auto* dimension = GcDbDimension::cast(&entity)) return blockAt(dimension->dimBlockId());
  return nullptr;
}

// Definitions before those that refer to them: readers of that time go through a file once.
class BlockOrder {
 public:
  explicit BlockOrder(const GcDbObjectIdArray& all) {
    for (const GcDbObjectId id : all) {
      if (const auto* block = blockAt(id)) add(*block);
    }
  }
  [[nodiscard]] const std::vector<const GcDbBlockTableRecord*>& order() const { return m_order; }

 private:
  struct Step {
    const GcDbBlockTableRecord* block;
    int next;  // its entity to look at
  };

  void add(const GcDbBlockTableRecord& first) {
    std::vector<Step> steps;
    if (m_seen.insert(&first).second) steps.push_back({&first, 0});
    while (!steps.empty()) {
      Step& step = steps.back();
      const GcDbObjectIdArray& entities = step.block->entities();
      if (step.next == entities.length()) {
        m_order.push_back(step.block);
        steps.pop_back();
        continue;
      }
      const GcDbEntity* entity = entityAt(entities[step.next++]);
      const GcDbBlockTableRecord* wanted = entity ? referredBlock(*entity) : nullptr;
      if (wanted && m_seen.insert(wanted).second) steps.push_back({wanted, 0});
    }
  }

  std::unordered_set<const GcDbBlockTableRecord*> m_seen;
  std::vector<const GcDbBlockTableRecord*> m_order;
};

class R12Writer {
 public:
  R12Writer(GcDbDatabase& database, TagWriter& tags, const DrawingText& text, GcDbSaveReport* report,
            std::uint64_t handseed)
      : m_database(database),
        m_codePage(codePageNameFor(database, text)),
        m_out(tags, text, GcDb::kDHL_AC1009),
        m_notes(report, GcDb::kDHL_AC1009, typeOf),
        m_names(database, text.page(), m_notes),
        m_entities(m_out, m_names, database, m_notes, database.handseed()),
        m_handseed(handseed) {}

  // Answers the first handle that was not given.
  std::uint64_t run() {
    for (const GcString& comment : m_database.fileParts().comments) m_out.putText(kCommentCode, view(comment));
    writeR12Header(m_out, m_database, m_names, m_codePage.c_str(), m_handseed, m_notes);
    writeTables();
    writeBlocks();
    writeEntities();
    m_out.tags().writeString(0, "EOF");
    tellRest();
    m_notes.finish();
    return m_entities.nextHandle();
  }

 private:
  void begin(const char* section) {
    m_out.tags().writeString(0, "SECTION");
    m_out.tags().writeString(2, section);
  }
  void end() { m_out.tags().writeString(0, "ENDSEC"); }

  // Linetypes ByLayer and ByBlock are words of R12, not records.
  [[nodiscard]] bool isRecord(GcDbObjectId id) const {
    return isWritten(id) && id != m_database.byLayerLinetype() && id != m_database.byBlockLinetype();
  }

  void writeTables() {
    begin("TABLES");
    TagWriter& tags = m_out.tags();
    for (const int which : kWritingOrder) {
      const GcDbObjectId id = m_database.tableId(which);
      if (!id.isValid()) continue;
      const GcDbObjectIdArray& records = static_cast<const GcDbSymbolTable&>(*id.stub()->object).records();
      tags.writeString(0, "TABLE");
      tags.writeString(2, kTableNames[which]);
      tags.writeHandle(5, id.handle());
      tags.writeInt(70, std::count_if(records.begin(), records.end(), [this](GcDbObjectId r) { return isRecord(r); }));
      for (const GcDbObjectId record : records) {
        if (isRecord(record)) writeRecord(*record.stub()->object, kTableNames[which]);
      }
      tags.writeString(0, "ENDTAB");
    }
    end();
  }

  void writeRecord(const GcDbObject& record, const char* type) {
    m_out.tags().writeString(0, type);
    m_out.tags().writeHandle(std::string_view(type) == "DIMSTYLE" ? 105 : 5, record.handle());
    R12Groups groups(m_out, m_names, type);
    gcdbFieldsOut(record, groups, GcDb::kDHL_AC1009);
    if (record.extra()) putR12XData(m_out, m_names, record.extra()->xdata);
    m_notes.look(record);
    if (!groups.dropped().empty()) m_notes.mapped(record, "R12 has no " + groups.dropped());
  }

  [[nodiscard]] const GcDbObjectIdArray& blocks() const {
    return static_cast<const GcDbSymbolTable&>(*m_database.blockTableId().stub()->object).records();
  }

  [[nodiscard]] static bool isCurrentSpace(const GcDbBlockTableRecord& block) {
    return block.isModelSpace() || equalNoCase(view(block.getName()), GC_T("*Paper_Space"));
  }

  void writeBlocks() {
    begin("BLOCKS");
    m_entities.writeHatchBlocks();
    const BlockOrder sorted(blocks());
    for (const GcDbBlockTableRecord* block : sorted.order()) writeBlock(*block);
    end();
  }

  void writeBlock(const GcDbBlockTableRecord& block) {
    if (block.isPaperSpace() && !isCurrentSpace(block)) {
      leaveOutLayout(block);
      return;
    }
    const GcDbEntity* first = entityAt(block.blockBeginId());
    const GcDbEntity* last = entityAt(block.blockEndId());
    if (!first || !last) return;
    m_entities.writeBlockBegin(*first, block);
    if (!isCurrentSpace(block)) writeEntitiesOf(block);
    m_entities.writeBlockEnd(*last, block);
    m_notes.look(block);
  }

  void leaveOutLayout(const GcDbBlockTableRecord& block) {
    m_notes.leftOut(block, "R12 has one paper space: this layout is another one");
    for (const GcDbObjectId id : block.entities()) {
      if (const GcDbEntity* entity = entityAt(id)) m_notes.leftOut(*entity, "stands in a layout that is left out");
    }
  }

  void writeEntitiesOf(const GcDbBlockTableRecord& block) {
    for (const GcDbObjectId id : block.entities()) {
      if (const GcDbEntity* entity = entityAt(id)) m_entities.write(*entity, block);
    }
  }

  void writeEntities() {
    begin("ENTITIES");
    for (const GcDbObjectId id : {m_database.modelSpaceId(), m_database.paperSpaceId()}) {
      const GcDbBlockTableRecord* block = blockAt(id);
      if (block && isCurrentSpace(*block)) writeEntitiesOf(*block);
    }
    end();
  }

  // Objects beside entities and tables, and sections that hold no objects.
  void tellRest() {
    if (!m_notes.isWanted()) return;
    m_database.store().forEach([this](const GcDbStub* stub) {
      if (!stub->object || stub->erased) return;
      const GcDbObject& object = *stub->object;
      const GcRxClass* kind = object.isA();
      const bool isToldElsewhere = kind->isDerivedFrom(GcDbEntity::desc()) ||
                                   kind->isDerivedFrom(GcDbSymbolTable::desc()) ||
                                   kind->isDerivedFrom(GcDbSymbolTableRecord::desc());
      const auto* dictionary = GcDbDictionary::cast(&object);
      if (dictionary && dictionary->numEntries() == 0) return;  // says nothing
      if (!isToldElsewhere && !typeOf(object).empty())
        m_notes.together(GcDbSaveAction::LeftOut, object, "R12 has no objects beside entities and table records");
    });
    for (const GcDbFileSection& section : m_database.fileParts().sections)
      m_notes.ofDrawing(GcDbSaveAction::LeftOut, "section " + toUtf8(view(section.name)));
  }

  GcDbDatabase& m_database;
  std::string m_codePage;
  GroupWriter m_out;
  SaveNotes m_notes;
  R12Names m_names;
  R12Entities m_entities;
  std::uint64_t m_handseed;
};

class NoSink final : public ByteSink {
 public:
  bool write(const char*, std::size_t) override { return true; }
};

}  // namespace

// $HANDSEED stands at the beginning and counts the handles of everything that is made on the way: so the drawing is
// written twice, the first time into nothing.
void writeR12(GcDbDatabase& database, TagWriter& tags, const DrawingText& text, GcDbSaveReport* report) {
  NoSink none;
  TagWriter counting(none, tags.form());
  const std::uint64_t handseed = R12Writer(database, counting, text, nullptr, 0).run();
  R12Writer(database, tags, text, report, handseed).run();
}

}  // namespace gc::dxf
