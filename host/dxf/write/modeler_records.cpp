#include "host/dxf/write/modeler_records.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "db/database.h"
#include "host/db/core/fileparts.h"
#include "host/db/core/store.h"
#include "host/db/entities/modeler_body.h"
#include "host/dxf/modeler_section.h"

namespace gc::dxf {
namespace {

using namespace modeler;

// A schema whose one value says something of values of other schemas.
struct Attribute {
  GcView schema;
  GcView value;
  int kind;
  bool isOfHandles;  // it comes with values that are handles
};
constexpr Attribute kAttributes[] = {
    {GC_T("AcDbDs::TreatedAsObjectDataSchema"), GC_T("AcDbDs::TreatedAsObjectData"), 1, false},
    {GC_T("AcDbDs::LegacySchema"), GC_T("AcDbDs::Legacy"), 1, false},
    {GC_T("AcDbDs::IndexedPropertySchema"), GC_T("AcDs:Indexable"), 1, false},
    {GC_T("AcDbDs::HandleAttributeSchema"), GC_T("AcDbDs::HandleAttribute"), 7, true},
};

class SectionWriter {
 public:
  SectionWriter(GroupWriter& out, const GcDbDatabase& database) : m_out(out) {
    for (const GcDbFileSection& section : database.fileParts().sections)
      if (view(section.name) == kSection) m_kept = &section;
    database.store().forEach([&](const GcDbStub* stub) {
      if (!stub->object || stub->erased || !gcmodeler::hasBody(*stub->object)) return;
      if (out.version() >= GcDb::kDHL_AC1027 || !gcmodeler::hasText(*stub->object)) m_bodies.push_back(stub);
    });
    std::sort(m_bodies.begin(), m_bodies.end(),
              [](const GcDbStub* a, const GcDbStub* b) { return a->handle < b->handle; });
  }

  void run() {
    const bool hasBodies = std::any_of(m_bodies.begin(), m_bodies.end(), [](const GcDbStub* stub) {
      GcArray<std::uint8_t> bytes;
      return gcmodeler::getBytes(*stub->object, bytes) == Gcad::eOk;
    });
    if (m_kept == nullptr && !hasBodies) return;
    m_out.tags().writeString(0, "SECTION");
    m_out.putText(kValueName, kSection);
    readSchemas();
    writeHead();
    if (hasBodies) completeSchemas();
    if (m_kept != nullptr) writeKeptRecords();
    for (const GcDbStub* stub : m_bodies)
      if (!m_written.contains(stub)) writeBody(*stub);
    m_out.tags().writeString(0, "ENDSEC");
  }

 private:
  void integer(int code, std::int64_t value) { m_out.put(GcDbGroup::ofInt(code, value)); }
  void begin(GcView type) { m_out.putText(0, type); }

  // The numbers that the file's own schemas have.
  void readSchemas() {
    for (const GcDbFileRecord& record : m_kept ? m_kept->records : std::vector<GcDbFileRecord>()) {
      if (view(record.type) != kSchema) continue;
      int number = -1;
      bool isNamed = false;
      GcDbGroupList::Cursor cursor(record.groups);
      for (GcDbGroup group; cursor.next(group) && !isNamed;) {
        if (group.code == kSchemaNumber) number = static_cast<int>(group.integer);
        isNamed = group.code == kSchemaName;
        if (isNamed) m_numbers[GcText(group.text)] = number;
      }
      m_next = std::max(m_next, number + 1);
    }
  }

  void writeHead() {
    if (m_kept == nullptr) {
      integer(70, 2);
      integer(71, 2);
      return;
    }
    writeKept(GcView());
    writeKept(kSchema);
  }

  void writeKept(GcView type) {
    for (const GcDbFileRecord& record : m_kept->records)
      if (view(record.type) == type) writeRecord(record);
  }
  void writeRecord(const GcDbFileRecord& record) {
    if (!record.type.isEmpty()) begin(view(record.type));
    m_out.put(record.groups);
  }

  // Bodies stand where their records did.
  void writeKeptRecords() {
    for (const GcDbFileRecord& record : m_kept->records) {
      if (record.type.isEmpty() || view(record.type) == kSchema) continue;
      if (!isEmptyBody(record))
        writeRecord(record);
      else if (const GcDbStub* stub = bodyOf(record); stub != nullptr && m_written.insert(stub).second)
        writeBody(*stub);
    }
  }

  // A place that the bytes of an object were taken from.
  static bool isEmptyBody(const GcDbFileRecord& record) {
    bool isBody = false;
    GcDbGroupList::Cursor cursor(record.groups);
    for (GcDbGroup group; cursor.next(group);) {
      if (group.code == kBytes) return false;
      isBody = isBody || (group.code == kValueName && group.text == kBytesName);
    }
    return isBody;
  }
  [[nodiscard]] const GcDbStub* bodyOf(const GcDbFileRecord& record) const {
    std::uint64_t handle = 0;
    GcDbGroupList::Cursor cursor(record.groups);
    for (GcDbGroup group; cursor.next(group);)
      if (group.code == kHandle) handle = static_cast<std::uint64_t>(group.integer);
    const auto at = std::lower_bound(m_bodies.begin(), m_bodies.end(), handle,
                                     [](const GcDbStub* stub, std::uint64_t than) { return stub->handle < than; });
    return at != m_bodies.end() && (*at)->handle == handle ? *at : nullptr;
  }

  // The schema of bodies, and those of the attributes it refers to.
  void completeSchemas() {
    std::vector<const Attribute*> missing;
    const bool lacksBodies = !m_numbers.contains(GcText(kBodySchema));
    if (lacksBodies) m_numbers[GcText(kBodySchema)] = m_next++;
    for (const Attribute& each : kAttributes) {
      if (m_numbers.contains(GcText(each.schema))) continue;
      m_numbers[GcText(each.schema)] = m_next++;
      missing.push_back(&each);
    }
    if (lacksBodies) writeBodySchema();
    for (const Attribute* each : missing) writeAttributeSchema(*each);
  }

  void beginSchema(GcView name) {
    begin(kSchema);
    integer(kSchemaNumber, m_numbers[GcText(name)]);
    m_out.putText(kSchemaName, name);
  }

  void writeAttributeSchema(const Attribute& each) {
    beginSchema(each.schema);
    m_out.putText(kValueName, each.value);
    integer(kValueKind, each.kind);
    integer(91, each.isOfHandles ? 1 : 0);
    if (each.isOfHandles) integer(284, 1);
  }

  void writeBodySchema() {
    constexpr int kAttributeRecord = 101, kOfSchema = 95, kOn = 291, kOnHandle = 282;
    beginSchema(kBodySchema);
    m_out.putText(kValueName, kOwnerName);
    integer(kValueKind, kHandleKind);
    integer(91, 8);
    m_out.putText(kValueName, kBytesName);
    integer(kValueKind, kBytesKind);
    integer(91, 0);
    for (const Attribute& each : kAttributes) {
      const bool isOfSchema = &each < kAttributes + 2;  // the others are of the handle
      m_out.putText(kAttributeRecord, kRecord);
      if (isOfSchema)
        integer(kOfSchema, m_numbers[GcText(kBodySchema)]);
      else
        m_out.putText(kSchemaName, kOwnerName);
      integer(kSchemaNumber, m_numbers[GcText(each.schema)]);
      m_out.putText(kValueName, each.value);
      integer(kValueKind, each.kind);
      integer(each.isOfHandles ? kOnHandle : kOn, 1);
    }
  }

  void writeBody(const GcDbStub& stub) {
    constexpr int kMostInGroup = 127;
    GcArray<std::uint8_t> bytes;
    if (gcmodeler::getBytes(*stub.object, bytes) != Gcad::eOk) return;
    begin(kRecord);
    integer(kSchemaNumber, m_numbers[GcText(kBodySchema)]);
    m_out.putText(kValueName, kOwnerName);
    integer(kValueKind, kHandleKind);
    GcDbGroup owner = GcDbGroup::ofInt(kHandle, static_cast<std::int64_t>(stub.handle));
    owner.kind = GcDbGroupKind::Handle;
    m_out.put(owner);
    m_out.putText(kValueName, kBytesName);
    integer(kValueKind, kBytesKind);
    integer(kSize, bytes.length());
    const std::span<const std::uint8_t> all(bytes.begin(), static_cast<std::size_t>(bytes.length()));
    for (std::size_t at = 0; at < all.size(); at += kMostInGroup)
      m_out.put(GcDbGroup::ofBinary(kBytes, all.subspan(at, std::min<std::size_t>(kMostInGroup, all.size() - at))));
  }

  GroupWriter& m_out;
  const GcDbFileSection* m_kept = nullptr;
  std::vector<const GcDbStub*> m_bodies;
  std::set<const GcDbStub*> m_written;
  std::map<GcText, int> m_numbers;
  int m_next = 0;
};

}  // namespace

void writeModelerSection(GroupWriter& out, const GcDbDatabase& database) { SectionWriter(out, database).run(); }

}  // namespace gc::dxf
