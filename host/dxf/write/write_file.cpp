#include <algorithm>
#include <vector>

#include "db/blockbegin.h"
#include "db/dictionary.h"
#include "db/zombie.h"
#include "host/db/core/extra.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/loader.h"
#include "host/db/core/savenotes.h"
#include "host/db/core/store.h"
#include "host/dxf/dxf_file.h"
#include "host/dxf/modeler_section.h"
#include "host/dxf/table_names.h"
#include "host/dxf/write/class_writer.h"
#include "host/dxf/write/header_writer.h"
#include "host/dxf/write/keep_young.h"
#include "host/dxf/write/modeler_records.h"
#include "host/dxf/write/object_writer.h"
#include "host/dxf/write/r12/r12_file.h"

namespace gc::dxf {
namespace {

// The order in which files have their tables.
constexpr int kWritingOrder[] = {GcDbDatabase::kViewports,  GcDbDatabase::kLinetypes, GcDbDatabase::kLayers,
                                 GcDbDatabase::kTextStyles, GcDbDatabase::kViews,     GcDbDatabase::kUcss,
                                 GcDbDatabase::kRegApps,    GcDbDatabase::kDimStyles, GcDbDatabase::kBlocks};

constexpr GcView kPaperSpace = GC_T("*Paper_Space");

bool isWritten(GcDbObjectId id) { return id.isValid() && !id.isErased(); }

// Sequences of parts that lack their end get one before $HANDSEED is written.
void completeSequences(GcDbDatabase& database) {
  std::vector<GcDbEntity*> incomplete;
  database.store().forEach([&](GcDbStub* stub) {
    if (!stub->object || stub->erased || !stub->object->extra()) return;
    const GcDbObjectExtra& extra = *stub->object->extra();
    if (!extra.parts.isEmpty() && !isWritten(extra.sequenceEnd)) {
      if (auto* entity = GcDbEntity::cast(stub->object)) incomplete.push_back(entity);
    }
  });
  for (GcDbEntity* entity : incomplete) {
    auto* sequenceEnd = new GcDbSequenceEnd;
    ignore(sequenceEnd->setLayer(entity->layerId()));
    GcDbObjectId id;
    ignore(database.addGcDbObject(id, sequenceEnd, entity->objectId()));
    ignore(sequenceEnd->close());
    entity->needExtra().sequenceEnd = id;
  }
}

// Definitions made by programs get the entities that begin and end them when they are written.
void completeBlocks(GcDbDatabase& database) {
  const auto& table = static_cast<const GcDbSymbolTable&>(*database.blockTableId().stub()->object);
  const GcDbObjectIdArray records = table.records();
  for (const GcDbObjectId id : records) {
    if (isWritten(id)) GcDbLoader::completeBlock(id);
  }
}

class FileWriter {
 public:
  FileWriter(GcDbDatabase& database, TagWriter& tags, const DrawingText& text, int version, GcDbSaveReport* report)
      : m_database(database),
        m_codePage(codePageNameFor(database, text)),
        m_out(tags, text, version),
        m_objects(m_out),
        m_notes(report, version, typeOf) {}

  void run() {
    for (const GcString& comment : m_database.fileParts().comments) m_out.putText(kCommentCode, view(comment));
    writeHeader(m_out, m_database, m_codePage.c_str(), m_notes);
    writeClasses(m_out, m_database);
    writeTables();
    writeBlocks();
    writeEntities();
    writeObjects();
    for (const GcDbFileSection& kept : m_database.fileParts().sections)
      if (view(kept.name) != modeler::kSection) writeSection(kept);
    writeModelerSection(m_out, m_database);
    m_out.tags().writeString(0, "EOF");
    m_notes.finish();
  }

 private:
  void begin(const char* section) {
    m_out.tags().writeString(0, "SECTION");
    m_out.tags().writeString(2, section);
  }
  void end() { m_out.tags().writeString(0, "ENDSEC"); }

  void write(const GcDbObject& object) {
    m_objects.write(object);
    m_notes.lookInGroups(object);
  }

  void writeTables() {
    begin("TABLES");
    for (const int which : kWritingOrder) {
      const GcDbObjectId id = m_database.tableId(which);
      if (!id.isValid()) continue;
      const auto& table = static_cast<const GcDbSymbolTable&>(*id.stub()->object);
      const auto& records = table.records();
      const auto count = std::count_if(records.begin(), records.end(), isWritten);
      m_objects.writeTableHead(table, kTableNames[which], static_cast<int>(count));
      for (const GcDbObjectId record : records) {
        if (isWritten(record)) write(*record.stub()->object);
      }
      m_out.tags().writeString(0, "ENDTAB");
    }
    end();
  }

  const GcDbObjectIdArray& blocks() const {
    return static_cast<const GcDbSymbolTable&>(*m_database.blockTableId().stub()->object).records();
  }

  // The entities of model space and of the current paper space stand in the ENTITIES section.
  static bool isCurrentSpace(const GcDbBlockTableRecord& block) {
    return block.isModelSpace() || equalNoCase(view(block.getName()), kPaperSpace);
  }

  void writeEntityWithParts(GcDbObjectId id, const GcDbBlockTableRecord& block) {
    if (!isWritten(id)) return;
    const auto* entity = GcDbEntity::cast(id.stub()->object);
    if (!entity) return;
    m_objects.writeEntity(*entity, block);
    m_notes.lookInGroups(*entity);
    const GcDbObjectExtra* extra = entity->extra();
    if (!extra || (extra->parts.isEmpty() && extra->sequenceEnd.isNull())) return;
    for (const GcDbObjectId part : extra->parts) writeEntityWithParts(part, block);
    writeEntityWithParts(extra->sequenceEnd, block);
  }

  void writeBlocks() {
    begin("BLOCKS");
    for (const GcDbObjectId id : blocks()) {
      if (!isWritten(id)) continue;
      const auto& block = static_cast<const GcDbBlockTableRecord&>(*id.stub()->object);
      m_objects.writeBlockBegin(*GcDbEntity::cast(block.blockBeginId().stub()->object), block);
      if (!isCurrentSpace(block)) {
        for (const GcDbObjectId entity : block.entities()) writeEntityWithParts(entity, block);
      }
      m_objects.writeEntity(*GcDbEntity::cast(block.blockEndId().stub()->object), block);
    }
    end();
  }

  void writeEntities() {
    begin("ENTITIES");
    for (const GcDbObjectId id : {m_database.modelSpaceId(), m_database.paperSpaceId()}) {
      if (!isWritten(id)) continue;
      const auto& block = static_cast<const GcDbBlockTableRecord&>(*id.stub()->object);
      if (!isCurrentSpace(block)) continue;
      for (const GcDbObjectId entity : block.entities()) writeEntityWithParts(entity, block);
    }
    end();
  }

  // Entities stand with their blocks (or with the entity they are part of), but for those an object keeps.
  static bool isWrittenElsewhere(const GcDbObject& object) {
    const GcRxClass* descriptor = object.isA();
    if (descriptor->isDerivedFrom(GcDbEntity::desc())) {
      const GcDbStub* owner = object.ownerId().stub();
      if (!owner || !owner->object || !GcDbZombieEntity::cast(&object)) return true;
      return GcDbSymbolTableRecord::cast(owner->object) || GcDbEntity::cast(owner->object);
    }
    return descriptor->isDerivedFrom(GcDbSymbolTable::desc()) ||
           descriptor->isDerivedFrom(GcDbSymbolTableRecord::desc());
  }

  // The root dictionary first, the others by handle.
  void writeObjects() {
    begin("OBJECTS");
    std::vector<const GcDbStub*> stubs;
    const GcDbStub* root = m_database.namedObjectsDictionaryId().stub();
    m_database.store().forEach([&](const GcDbStub* stub) {
      if (!stub->object || stub->erased || stub == root) return;
      if (!isWrittenElsewhere(*stub->object) && !typeOf(*stub->object).empty()) stubs.push_back(stub);
    });
    std::sort(stubs.begin(), stubs.end(), [](const GcDbStub* a, const GcDbStub* b) { return a->handle < b->handle; });
    if (root && root->object) write(*root->object);
    for (const GcDbStub* stub : stubs) write(*stub->object);
    end();
  }

  void writeSection(const GcDbFileSection& section) {
    m_out.tags().writeString(0, "SECTION");
    m_out.putText(2, view(section.name));
    for (const GcDbFileRecord& record : section.records) {
      if (!record.type.isEmpty()) m_out.putText(0, view(record.type));
      m_out.put(record.groups);
    }
    end();
  }

  GcDbDatabase& m_database;
  std::string m_codePage;
  GroupWriter m_out;
  ObjectWriter m_objects;
  SaveNotes m_notes;
};

class FileSink final : public ByteSink {
 public:
  explicit FileSink(AtomicFile& file) : m_file(file) {}
  bool write(const char* bytes, std::size_t count) override {
    m_status = m_file.write(bytes, count);
    return m_status.ok();
  }
  [[nodiscard]] const FileStatus& status() const { return m_status; }

 private:
  AtomicFile& m_file;
  FileStatus m_status;
};

}  // namespace

bool isWritable(GcDb::GcDbDwgVersion version) {
  return version == GcDb::kDHL_AC1009 || (version >= GcDb::kDHL_AC1015 && version <= GcDb::kDHL_AC1032);
}

Gcad::ErrorStatus write(GcDbDatabase& database, ByteSink& sink, const WriteOptions& options) {
  if (!isWritable(options.version)) return Gcad::eUnsupportedVersion;
  CodePage page = codePageByName(view(database.fileParts().codePage));
  if (page == CodePage::Utf8 || page == CodePage::Utf16) page = CodePage::None;
  const DrawingText text(page, options.version >= GcDb::kDHL_AC1021);
  const bool isR12 = options.version < GcDb::kDHL_AC1012;
  completeSequences(database);
  completeBlocks(database);
  const GcDbRoundTrip young = isR12 ? GcDbRoundTrip() : collectYoung(database, options.version);
  const GcDbRoundTrip::Stored stored(young, database);
  const FileForm binary = isR12 ? FileForm::Binary8 : FileForm::Binary16;
  TagWriter tags(sink, options.binary ? binary : FileForm::Ascii);
  tags.setDecimals(options.decimals);
  if (isR12) {
    writeR12(database, tags, text, options.report);
  } else {
    FileWriter(database, tags, text, options.version, options.report).run();
  }
  return tags.finish() ? Gcad::eOk : Gcad::eFileWriteError;
}

Gcad::ErrorStatus writeFile(GcDbDatabase& database, const std::string& path, const WriteOptions& options,
                            std::string& message) {
  if (!isWritable(options.version)) return Gcad::eUnsupportedVersion;
  AtomicFile file;
  FileStatus status = file.open(path, options.backup);
  if (status.ok()) {
    FileSink sink(file);
    ignore(write(database, sink, options));
    status = sink.status().ok() ? file.commit() : sink.status();
  }
  message = status.message();
  return status.ok() ? Gcad::eOk : Gcad::eFileWriteError;
}

}  // namespace gc::dxf
