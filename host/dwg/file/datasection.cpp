#include "host/dwg/file/datasection.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <string_view>

#include "host/db/core/fileparts.h"
#include "host/db/entities/modeler_body.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/bytewriter.h"
#include "host/dwg/file/sections.h"

namespace gc::dwg {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr uint32_t kFileMark = 0x6472616A;  // "jard"
constexpr uint16_t kSegmentMark = 0xD5AC;
constexpr uint64_t kFileHeadSize = 0x80;
constexpr uint64_t kSegmentHeadSize = 0x30;
constexpr uint32_t kUnit = 16;  // bytes that places within a segment count
constexpr uint32_t kStep = 0x80;
constexpr const char* kBodySchema = "AcDb3DSolid_ASM_Data";

// What the section holds of one object.
struct Entry {
  uint64_t handle = 0;
  uint32_t schema = 0;  // which of the section's kinds of data
  Bytes bytes;
};

// ---- reading ---------------------------------------------------------------------------------------------

class SectionReader {
 public:
  explicit SectionReader(Bytes section) : m_section(section) {}

  bool run() {
    if (u32(m_section, 0) != kFileMark) return false;
    readSegments(u32(m_section, 0x18), u32(m_section, 0x20));
    m_schemaIndex = segment(u32(m_section, 0x24), "schidx");
    m_schemaData = segmentNamed("schdat");
    if (m_schemaIndex.empty() || m_schemaData.empty()) return false;
    readSchemas();
    return readEntries(segment(u32(m_section, 0x28), "datidx"));
  }

  std::vector<Entry> entries;
  std::vector<std::string> schemas;  // names by number
  std::vector<std::vector<uint8_t>> joined;

  [[nodiscard]] bool isBody(const Entry& entry) const {
    return entry.schema < schemas.size() && schemas[entry.schema] == kBodySchema;
  }
  [[nodiscard]] Bytes schemaIndex() const { return m_schemaIndex; }
  [[nodiscard]] Bytes schemaData() const { return m_schemaData; }

 private:
  void readSegments(uint64_t at, uint32_t count) {
    const Bytes index = part(m_section, at, m_section.size());
    constexpr uint64_t kEntrySize = 12;
    if (count > index.size() / kEntrySize) count = static_cast<uint32_t>(index.size() / kEntrySize);
    for (uint32_t i = 0; i < count; ++i) {
      const uint64_t entry = kSegmentHeadSize + i * kEntrySize;
      const uint64_t offset = u64(index, entry);
      const uint32_t size = u32(index, entry + 8);
      const bool isThere = offset != 0 && holds(m_section, offset, size) && size >= kSegmentHeadSize;
      m_segments.push_back(isThere ? m_section.subspan(offset, size) : Bytes());
    }
  }

  static bool isNamed(Bytes segment, std::string_view name) {
    return segment.size() >= kSegmentHeadSize && u16(segment, 0) == kSegmentMark &&
           std::memcmp(segment.data() + 2, name.data(), name.size()) == 0;
  }
  [[nodiscard]] Bytes segment(uint32_t number, std::string_view name) const {
    return number < m_segments.size() && isNamed(m_segments[number], name) ? m_segments[number] : Bytes();
  }
  [[nodiscard]] Bytes segmentNamed(std::string_view name) const {
    for (const Bytes each : m_segments)
      if (isNamed(each, name)) return each;
    return {};
  }

  // The names stand one after the other behind their number.
  void readSchemas() {
    Bytes names = part(m_schemaIndex, uint64_t{u32(m_schemaIndex, 0x20)} * kUnit, m_schemaIndex.size());
    uint32_t count = u32(names, 0);
    names = part(names, 4, names.size());
    for (; count > 0 && !names.empty(); --count) {
      const auto end = std::find(names.begin(), names.end(), uint8_t{0});
      schemas.emplace_back(names.begin(), end);
      names = part(names, static_cast<uint64_t>(end - names.begin()) + 1, names.size());
    }
  }

  // The first one of the index is none.
  bool readEntries(Bytes index) {
    if (index.empty()) return false;
    constexpr uint64_t kEntrySize = 12;
    const uint64_t room = (index.size() - kSegmentHeadSize) / kEntrySize;
    const uint64_t count = std::min<uint64_t>(u32(index, kSegmentHeadSize), room);
    bool isWhole = true;
    for (uint64_t i = 0; i < count; ++i) {
      const uint64_t at = kSegmentHeadSize + 8 + i * kEntrySize;
      const Bytes data = segment(u32(index, at), "_data_");
      if (data.empty()) continue;
      isWhole = readEntry(data, u32(index, at + 4), u32(index, at + 8)) && isWhole;
    }
    return isWhole;
  }

  bool readEntry(Bytes data, uint32_t offset, uint32_t schema) {
    const uint64_t head = kSegmentHeadSize + uint64_t{offset};
    Entry entry;
    entry.schema = schema;
    entry.handle = u64(data, head + 8);
    const uint64_t at = uint64_t{u32(data, 0x24)} * kUnit + u32(data, head + 16);
    const uint32_t size = u32(data, at);
    constexpr uint32_t kSplit = 0xBB106BB1;
    if (size == kSplit) {
      const std::optional<Bytes> whole = joinedFrom(part(data, at, data.size()));
      if (!whole) return false;
      entry.bytes = *whole;
    } else {
      if (!holds(data, at + 4, size) || !spend(size)) return false;
      entry.bytes = data.subspan(at + 4, size);
    }
    entries.push_back(entry);
    return true;
  }

  // Parts of the section may be named again and again: all entries together are no longer than it.
  bool spend(uint64_t size) {
    m_spent += size;
    return m_spent <= m_section.size();
  }

  // Large data are spread over segments of their own.
  std::optional<Bytes> joinedFrom(Bytes pieces) {
    constexpr uint64_t kPiecesAt = 36, kPieceSize = 8, kBytesAt = kSegmentHeadSize + 32;
    const uint64_t size = u64(pieces, 4);
    const uint32_t count = u32(pieces, 12);
    if (!spend(size) || !holds(pieces, kPiecesAt, count * kPieceSize)) return std::nullopt;
    std::vector<uint8_t> whole;
    for (uint32_t i = 0; i < count; ++i) {
      const Bytes piece = segment(u32(pieces, kPiecesAt + i * kPieceSize), "blob01");
      const uint64_t pieceSize = u32(pieces, kPiecesAt + i * kPieceSize + 4);
      if (!holds(piece, kBytesAt, pieceSize) || whole.size() + pieceSize > size) return std::nullopt;
      whole.insert(whole.end(), piece.begin() + kBytesAt,
                   piece.begin() + static_cast<std::ptrdiff_t>(kBytesAt + pieceSize));
    }
    if (whole.size() != size) return std::nullopt;
    joined.push_back(std::move(whole));
    return Bytes(joined.back());
  }

  Bytes m_section;
  std::vector<Bytes> m_segments;
  Bytes m_schemaIndex, m_schemaData;
  uint64_t m_spent = 0;
};

}  // namespace

void takeBodies(std::span<const uint8_t> section, RecordContext& context, GcDbLoadReport& report) {
  SectionReader reader(section);
  if (!reader.run()) note(report, GcDbLoadAction::Noted, 0, 0, "part of the file's data section cannot be read: kept");
  for (const Entry& entry : reader.entries) {
    GcDbStub* stub = reader.isBody(entry) ? context.database.store().find(entry.handle) : nullptr;
    if (stub == nullptr || stub->object == nullptr || !gcmodeler::hasBody(*stub->object)) continue;
    GcArray<uint8_t> bytes;
    bytes.setLogicalLength(static_cast<int>(entry.bytes.size()));
    std::copy(entry.bytes.begin(), entry.bytes.end(), bytes.begin());
    stub->writing = true;
    const Gcad::ErrorStatus status = gcmodeler::setBytes(*stub->object, bytes);
    stub->writing = stub->recorded = stub->modified = false;
    if (status != Gcad::eOk)
      note(report, GcDbLoadAction::Noted, 0, entry.handle, "its body is no plane area: kept, not measured");
  }
}

// ---- writing ---------------------------------------------------------------------------------------------

namespace {

const GcDbDwgSection* keptSection(const RecordContext& context) {
  for (const GcDbDwgSection& each : context.database.fileParts().dwgSections)
    if (each.name == kDataSection && each.version >= kR2013) return &each;
  return nullptr;
}

// Kinds of data and what files say of them, as every program writes them.
constexpr const char* kSchemas[] = {"AcDb_Thumbnail_Schema",
                                    kBodySchema,
                                    "AcDbDs::TreatedAsObjectDataSchema",
                                    "AcDbDs::LegacySchema",
                                    "AcDbDs::IndexedPropertySchema",
                                    "AcDbDs::HandleAttributeSchema"};
constexpr uint32_t kSchemaCount = 6;
constexpr uint32_t kBodies = 1;  // the number of their kind

struct Plan {
  explicit Plan(const RecordContext& context) {
    const GcDbDwgSection* kept = keptSection(context);
    if (kept != nullptr) take(context, *kept);
    if (unread.empty()) addBodies(context);
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.handle < b.handle; });
  }

  std::vector<Entry> entries;     // by handle
  Bytes schemaIndex, schemaData;  // of the drawing's own file; empty for the usual ones
  Bytes unread;                   // a section that nobody understands goes as it is
  uint32_t bodySchema = kBodies;
  std::vector<std::vector<uint8_t>> owned;

 private:
  static bool isWritten(const RecordContext& context, uint64_t handle) {
    const GcDbStub* stub = context.database.store().find(handle);
    return stub != nullptr && stub->object != nullptr && !stub->erased && context.omitted.count(handle) == 0;
  }

  void take(const RecordContext& context, const GcDbDwgSection& kept) {
    SectionReader reader(kept.bytes);
    const bool isWhole = reader.run();
    const auto bodies = std::find(reader.schemas.begin(), reader.schemas.end(), kBodySchema);
    const bool hasBodies = bodies != reader.schemas.end();
    const bool isUsual = reader.schemas.size() == 1 && reader.schemas[0] == kSchemas[0];
    if (!isWhole || (!hasBodies && !isUsual)) {
      unread = kept.bytes;
      return;
    }
    if (hasBodies) {
      bodySchema = static_cast<uint32_t>(bodies - reader.schemas.begin());
      schemaIndex = reader.schemaIndex();
      schemaData = reader.schemaData();
    }
    for (const Entry& entry : reader.entries)
      if (isWritten(context, entry.handle) && !isHere(context, entry)) entries.push_back(entry);
    owned = std::move(reader.joined);
  }

  // Bodies that objects keep themselves.
  [[nodiscard]] bool isHere(const RecordContext& context, const Entry& entry) const {
    return entry.schema == bodySchema && gcmodeler::hasBody(*context.database.store().find(entry.handle)->object);
  }

  void addBodies(const RecordContext& context) {
    context.database.store().forEach([&](const GcDbStub* stub) {
      if (stub->object == nullptr || !gcmodeler::hasBody(*stub->object) || !isWritten(context, stub->handle)) return;
      GcArray<uint8_t> bytes;
      if (gcmodeler::getBytes(*stub->object, bytes) != Gcad::eOk) return;
      owned.emplace_back(bytes.begin(), bytes.end());
      entries.push_back({stub->handle, bodySchema, owned.back()});
    });
  }
};

class SectionWriter {
 public:
  explicit SectionWriter(const Plan& plan) : m_plan(plan) {}

  std::vector<uint8_t> run() {
    m_out.zeros(kFileHeadSize);
    constexpr uint32_t kSegments = 7;  // with the one of number 0, which is none
    const uint64_t index = begin("segidx", kIndex, 0, 0);
    m_out.zeros(uint64_t{kSegments} * 12);
    finish(index, kIndex);
    writeDataIndex();
    writeData();
    writeSchemas();
    writeSearch();
    for (uint32_t i = 1; i < kSegments; ++i) {
      m_out.patch(index + kSegmentHeadSize + i * 12, m_at[i]);
      m_out.patch(index + kSegmentHeadSize + i * 12 + 8, static_cast<uint32_t>(m_size[i]));
    }
    writeHead(kSegments);
    return std::move(m_out.bytes);
  }

 private:
  enum Segment : uint32_t { kIndex = 1, kDataIndex, kData, kSchemaIndex, kSchemaData, kSearch };

  uint64_t begin(std::string_view name, Segment number, uint32_t namesAt, uint32_t dataAt) {
    const uint64_t at = m_out.size();
    m_out.u16(kSegmentMark);
    m_out.append({reinterpret_cast<const uint8_t*>(name.data()), name.size()});
    m_out.u32(number);
    m_out.u32(0);  // no part of something larger
    m_out.u32(0);  // its size
    m_out.u32(0);
    m_out.u32(kRevision);
    m_out.u32(0);
    m_out.u32(namesAt);
    m_out.u32(dataAt);
    for (int i = 0; i < 8; ++i) m_out.u8(0x55);
    return at;
  }

  static constexpr uint8_t kFilling = 0x70, kInnerFilling = 0x73;
  void fill(uint64_t from, uint32_t step, uint8_t filling) {
    while ((m_out.size() - from) % step != 0) m_out.u8(filling);
  }
  void finish(uint64_t at, Segment number) {
    fill(0, kStep, kFilling);
    m_at[number] = at;
    m_size[number] = m_out.size() - at;
    m_out.patch(at + 16, static_cast<uint32_t>(m_size[number]));
  }

  static constexpr uint32_t kEntryHeadSize = 20;

  void writeDataIndex() {
    const uint64_t at = begin("datidx", kDataIndex, 0, 0);
    m_out.u32(static_cast<uint32_t>(m_plan.entries.size()) + 1);
    m_out.u32(0);
    for (int i = 0; i < 3; ++i) m_out.u32(0);
    for (uint32_t i = 0; i < m_plan.entries.size(); ++i) {
      m_out.u32(kData);
      m_out.u32(i * kEntryHeadSize);
      m_out.u32(m_plan.entries[i].schema);
    }
    finish(at, kDataIndex);
  }

  void writeData() {
    const uint64_t heads = kSegmentHeadSize + m_plan.entries.size() * uint64_t{kEntryHeadSize};
    const auto dataAt = static_cast<uint32_t>((heads + kUnit - 1) / kUnit);
    const uint64_t at = begin("_data_", kData, 0, dataAt);
    uint32_t offset = 0;
    for (const Entry& entry : m_plan.entries) {
      m_out.u32(kEntryHeadSize);
      m_out.u32(1);
      m_out.u64(entry.handle);
      m_out.u32(offset);
      offset += static_cast<uint32_t>(entry.bytes.size()) + 4;
    }
    fill(at, kUnit, kInnerFilling);
    for (const Entry& entry : m_plan.entries) {
      m_out.u32(static_cast<uint32_t>(entry.bytes.size()));
      m_out.append(entry.bytes);
    }
    finish(at, kData);
  }

  void writeSchemas() {
    if (!m_plan.schemaIndex.empty()) {
      writeKept(m_plan.schemaIndex, kSchemaIndex);
      writeKept(m_plan.schemaData, kSchemaData);
      return;
    }
    writeSchemaIndex();
    writeSchemaData();
  }

  // The places in an index name the segment of the data by its number, which is another one now.
  void writeKept(Bytes segment, Segment number) {
    const uint64_t at = m_out.size();
    m_out.append(segment);
    m_out.patch(at + 8, static_cast<uint32_t>(number));
    if (number == kSchemaIndex) {
      constexpr uint64_t kPlaceSize = 12;
      uint64_t list = at + kSegmentHeadSize;
      for (int lists = 0; lists < 2; ++lists) {
        const uint32_t count = u32(m_out.bytes, list);
        list += 8;
        for (uint32_t i = 0; i < count && list + kPlaceSize <= m_out.size(); ++i, list += kPlaceSize)
          m_out.patch(list + (lists == 0 ? 4 : 0), static_cast<uint32_t>(kSchemaData));
        list += 8;  // a mark of the program's
      }
    }
    finish(at, number);
  }

  void names(std::initializer_list<const char*> all) {
    m_out.u32(static_cast<uint32_t>(all.size()));
    for (const char* each : all) m_out.append({reinterpret_cast<const uint8_t*>(each), std::strlen(each) + 1});
  }

  // Where each schema begins in the segment of their data, then which value says what of which schema.
  void writeSchemaIndex() {
    constexpr uint32_t kPlaces[kSchemaCount] = {0x40, 0x80, 0xC0, 0xD2, 0xE4, 0xF6};
    constexpr uint32_t kNamesAt = 0x0F;
    constexpr uint64_t kMark = 0x0AF10C;
    const uint64_t at = begin("schidx", kSchemaIndex, kNamesAt, 0);
    m_out.u32(kSchemaCount);
    m_out.u32(0);
    for (uint32_t i = 0; i < kSchemaCount; ++i) triple(i, kSchemaData, kPlaces[i]);
    m_out.u64(kMark);
    constexpr uint32_t kAttributes = 8;
    m_out.u32(kAttributes);
    m_out.u32(0);
    for (uint32_t i = 0; i < kAttributes; ++i) triple(kSchemaData, 8 * i, 2 + i % 4);
    fill(at, kUnit, kInnerFilling);
    names({kSchemas[0], kSchemas[1], kSchemas[2], kSchemas[3], kSchemas[4], kSchemas[5]});
    finish(at, kSchemaIndex);
  }
  void triple(uint32_t first, uint32_t second, uint32_t third) {
    m_out.u32(first);
    m_out.u32(second);
    m_out.u32(third);
  }

  void writeSchemaData() {
    constexpr uint32_t kNamesAt = 0x14;
    const uint64_t at = begin("schdat", kSchemaData, kNamesAt, 0);
    for (const uint32_t isOn : {1u, 1u, 1u, 0u, 1u, 1u, 1u, 0u}) {
      m_out.u32(8);
      m_out.u32(isOn);
    }
    writeValueSchema({4, 5}, 0, {6, 7}, 1);
    writeValueSchema({0, 1}, 2, {2, 3}, 3);
    writeAttributeSchema(0, 4, 1);
    writeAttributeSchema(0, 5, 1);
    writeAttributeSchema(0, 6, 1);
    writeAttributeSchema(8, 7, 7);
    fill(at, kUnit, kInnerFilling);
    names({"AcDbDs::ID", "Thumbnail_Data", "AcDbDs::ID", "ASM_Data", "AcDbDs::TreatedAsObjectData", "AcDbDs::Legacy",
           "AcDs:Indexable", "AcDbDs::HandleAttribute"});
    finish(at, kSchemaData);
  }

  // A handle and the bytes that belong to it, with what is said of both.
  void writeValueSchema(std::initializer_list<uint64_t> ofSchema, uint32_t handleName,
                        std::initializer_list<uint64_t> ofHandle, uint32_t bytesName) {
    constexpr uint32_t kHandle = 0x0A, kBytes = 0x0F;
    indexes(ofSchema);
    m_out.u16(2);
    m_out.u32(0);
    m_out.u32(handleName);
    m_out.u32(kHandle);
    indexes(ofHandle);
    m_out.u32(0);
    m_out.u32(bytesName);
    m_out.u32(kBytes);
    m_out.u16(0);
  }
  void indexes(std::initializer_list<uint64_t> all) {
    m_out.u16(static_cast<unsigned>(all.size()));
    for (const uint64_t each : all) m_out.u64(each);
  }
  void writeAttributeSchema(uint32_t flags, uint32_t name, uint32_t kind) {
    m_out.u16(0);
    m_out.u16(1);
    m_out.u32(flags);
    m_out.u32(name);
    m_out.u32(kind);
    if (flags != 0) m_out.u32(1);
    m_out.u16(flags != 0 ? 1 : 0);
    if (flags != 0) m_out.u8(0);
  }

  // Of each schema: its entries, then the entry of each handle.
  void writeSearch() {
    const uint64_t at = begin("search", kSearch, 0, 0);
    std::map<uint32_t, std::vector<uint32_t>> bySchema;
    for (uint32_t i = 0; i < m_plan.entries.size(); ++i) bySchema[m_plan.entries[i].schema].push_back(i);
    m_out.u32(static_cast<uint32_t>(bySchema.size()));
    for (const auto& [schema, all] : bySchema) {
      m_out.u32(schema);
      m_out.u64(all.size());
      for (const uint32_t i : all) m_out.u64(uint64_t{i} + 1);
      m_out.u32(1);
      m_out.u32(0);
      m_out.u32(static_cast<uint32_t>(all.size()));
      for (const uint32_t i : all) {
        m_out.u64(m_plan.entries[i].handle);
        m_out.u64(1);
        m_out.u64(uint64_t{i} + 1);
      }
    }
    finish(at, kSearch);
  }

  void writeHead(uint32_t segments) {
    ByteWriter head;
    const uint32_t size = static_cast<uint32_t>(m_out.size());
    for (const uint32_t value :
         {kFileMark, static_cast<uint32_t>(kFileHeadSize), 8u, 2u, 0u, kRevision, static_cast<uint32_t>(m_at[kIndex]),
          0u, segments, uint32_t{kSchemaIndex}, uint32_t{kDataIndex}, uint32_t{kSearch}, 0u, size})
      head.u32(value);
    std::copy(head.bytes.begin(), head.bytes.end(), m_out.bytes.begin());
  }

  static constexpr uint32_t kRevision = 1;
  const Plan& m_plan;
  ByteWriter m_out;
  uint64_t m_at[7] = {};
  uint64_t m_size[7] = {};
};

}  // namespace

void planDataSection(RecordContext& context) {
  if (context.version < kR2013) return;
  const Plan plan(context);
  for (const Entry& entry : plan.entries) context.inDataSection.insert(entry.handle);
}

std::vector<uint8_t> writeDataSection(const RecordContext& context) {
  if (context.version < kR2013) return {};
  const Plan plan(context);
  if (!plan.unread.empty()) return {plan.unread.begin(), plan.unread.end()};
  if (plan.entries.empty()) {
    const GcDbDwgSection* kept = keptSection(context);
    return kept == nullptr ? std::vector<uint8_t>() : kept->bytes;
  }
  return SectionWriter(plan).run();
}

}  // namespace gc::dwg
