#include <algorithm>

#include "db/dictionary.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/dxf/dxf_file.h"
#include "host/dxf/read/after_load.h"
#include "host/dxf/read/head.h"
#include "host/dxf/read/header_reader.h"
#include "host/dxf/read/object_reader.h"
#include "host/dxf/read/space_reader.h"
#include "host/dxf/read/table_reader.h"
#include "host/rx/text/number.h"

namespace gc::dxf {
namespace {

constexpr std::size_t kScanAtMost = std::size_t{1} << 26;      // larger files are trusted about their handles
constexpr std::uint64_t kMostHandle = std::uint64_t{1} << 60;  // beyond it a number is no handle

// The greatest handle that an object of the file has.
std::uint64_t greatestHandle(std::string_view file) {
  TagReader reader(file);
  Tag tag;
  std::uint64_t greatest = 0, handle = 0;
  bool inHeader = false;  // where group 5 is $HANDSEED
  for (;;) {
    const ReadStatus status = reader.next(tag);
    if (status == ReadStatus::BadCode && reader.skipToRecord()) continue;
    if (status != ReadStatus::Tag) return greatest;
    if (tag.code == 0) inHeader = tag.word() == "SECTION";
    const bool isHandle = !inHeader && (tag.code == 5 || tag.code == 105);
    if (isHandle && tag.handle(handle) && handle < kMostHandle) greatest = std::max(greatest, handle);
  }
}

class FileReader {
 public:
  FileReader(GcDbDatabase& database, std::string_view file)
      : m_file(file),
        m_head(readHead(file)),
        m_reader(file),
        m_context{database, m_reader, m_head.text, m_head.version},
        m_records(m_context),
        m_objects(m_context) {}

  void run() {
    start();
    RawRecord record;
    bool ended = false;
    while (!ended && m_records.next(record)) {
      if (record.type == "SECTION") {
        readSection(record);
      } else if (record.type == "EOF") {
        ended = true;
      } else if (record.type != "ENDSEC") {
        m_context.report(GcDbLoadAction::Skipped, record.offset, 0, std::string(record.type) + " stands in no section");
      }
    }
    if (!ended)
      m_context.report(GcDbLoadAction::Missing, m_file.size(), 0, "the file ends without EOF: it may be cut off");
    finish();
  }

 private:
  void start() {
    GcDbDatabase& database = m_context.database;
    database.setOriginalFileVersion(static_cast<GcDb::GcDbDwgVersion>(m_head.version));
    database.fileParts().codePage = toGcString(fromUtf8(m_head.codePageText));
    if (!m_head.versionText.empty() && versionOf(m_head.versionText) == GcDb::kDHL_Unknown) {
      m_context.report(GcDbLoadAction::Noted, 0, 0, "unknown version " + m_head.versionText + ": read as the latest");
    }
    if (!m_head.codePageText.empty() && codePageByName(m_head.codePageText) == CodePage::None) {
      m_context.report(GcDbLoadAction::Noted, 0, 0, "unknown code page " + m_head.codePageText + ": ANSI_1252 taken");
    }
    GcDbStore& store = database.store();
    if (m_head.handseed < kMostHandle) store.raiseHandseed(m_head.handseed);
    if (m_head.handseed == 0 || m_file.size() <= kScanAtMost) {
      const std::uint64_t greatest = greatestHandle(m_file);
      if (m_head.handseed != 0 && greatest >= m_head.handseed) {
        m_context.report(GcDbLoadAction::Repaired, 0, greatest,
                         "$HANDSEED " + hexText(m_head.handseed) + " is taken: raised");
      }
      store.raiseHandseed(greatest + 1);
    }
  }

  void readSection(const RawRecord& section) {
    const Tag* tag = section.find(2);
    const std::string name = tag ? std::string(tag->word()) : std::string();
    if (name == "HEADER") {
      readHeader(m_context, section);
    } else if (name == "CLASSES") {
      readClasses();
    } else if (name == "TABLES") {
      TableReader(m_context, m_records, m_objects).readSection();
      m_tablesAreComplete = true;
    } else if (name == "BLOCKS") {
      completeTables();
      SpaceReader(m_context, m_records, m_objects).readBlocks();
    } else if (name == "ENTITIES") {
      completeTables();
      SpaceReader(m_context, m_records, m_objects).readEntities();
    } else if (name == "OBJECTS") {
      completeTables();
      readObjects();
    } else {
      keepSection(m_context, m_records, section);
    }
  }

  void completeTables() {
    if (!m_tablesAreComplete) TableReader(m_context, m_records, m_objects).completeTables();
    m_tablesAreComplete = true;
  }

  // Reads records up to the section's end; false there.
  bool nextInSection(RawRecord& record) {
    if (!m_records.next(record) || record.type == "ENDSEC") return false;
    if (record.type != "SECTION" && record.type != "EOF") return true;
    m_records.seek(record.offset);
    return false;
  }

  void readClasses() {
    RawRecord record;
    while (nextInSection(record)) {
      if (record.type == "CLASS") readClass(m_context, record);
    }
  }

  void readObjects() {
    RawRecord record;
    while (nextInSection(record)) {
      if (record.isCut) {
        m_context.report(GcDbLoadAction::Missing, record.offset, 0,
                         std::string(record.type) + " is damaged or cut off");
        continue;
      }
      // Entities of unknown classes may be kept by dictionaries.
      const RecordKind kind = record.type == "ACAD_PROXY_ENTITY" ? RecordKind::Entity : RecordKind::Object;
      GcDbObject* object = m_objects.read(record, kind);
      const bool isRoot = m_context.database.namedObjectsDictionaryId().isNull() && GcDbDictionary::cast(object);
      if (isRoot) m_context.database.setNamedObjectsDictionaryId(object->objectId());
    }
  }

  void finish() {
    completeTables();
    m_context.database.completeAfterLoad();
    connectHeader(m_context.database);
    afterLoad(m_context);
  }

  std::string_view m_file;
  Head m_head;
  TagReader m_reader;
  LoadContext m_context;
  RecordReader m_records;
  ObjectReader m_objects;
  bool m_tablesAreComplete = false;
};

}  // namespace

bool isDxf(std::string_view file) {
  if (formOf(file) != FileForm::Ascii) return true;
  TagReader reader(file);
  Tag tag;
  ReadStatus status;
  while ((status = reader.next(tag)) == ReadStatus::Tag && tag.code == kCommentCode) {
  }
  return status == ReadStatus::Tag && tag.is(0, "SECTION");
}

Gcad::ErrorStatus read(GcDbDatabase& database, std::string_view file) {
  if (!isDxf(file)) return Gcad::eBadDxfFile;
  FileReader(database, file).run();
  return Gcad::eOk;
}

}  // namespace gc::dxf
