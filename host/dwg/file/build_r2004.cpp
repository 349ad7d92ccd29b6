// The paged file of AC1018 and of AC1024 on: a plain header, a hidden one, data pages, the section map and the page map,
// the hidden header once more at the end.
#include <algorithm>
#include <cstring>

#include "host/db/core/dwgversion.h"
#include "host/db/core/fileparts.h"
#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytewriter.h"
#include "host/dwg/file/contents.h"
#include "host/dwg/file/datasection.h"
#include "host/dwg/file/lz.h"
#include "host/dwg/file/pages_r2004.h"
#include "host/dwg/file/sectionframe.h"

namespace gc::dwg {

namespace {

using namespace r2004;

constexpr uint64_t kPageStep = 0x20;
constexpr size_t kLeastPacked = 16;  // shorter ones cannot begin with a run of literals

const char* versionText(int version) {
  switch (version) {
    case kR2004: return "AC1018";
    case kR2010: return "AC1024";
    case kR2013: return "AC1027";
    default: return "AC1032";
  }
}

struct Part {
  int32_t page = 0;
  uint32_t packedSize = 0;
  uint64_t start = 0;
};

struct Section {
  std::string name;
  uint64_t size = 0;
  uint32_t mostPerPage = 0;
  bool isPacked = false;
  uint32_t id = 0;
  std::vector<Part> parts;
};

struct PageEntry {
  int32_t id = 0;
  uint32_t size = 0;
};

class Builder {
 public:
  Builder(RecordContext& context, const WritePlan& plan, FileContents& contents)
      : m_context(context), m_plan(plan), m_contents(contents) {
    m_out.zeros(kFirstPageAt);
  }

  std::vector<uint8_t> run() {
    addSection("", {}, true);
    const std::vector<uint8_t> summary = summarySection(m_context);
    m_summaryAt = m_out.size() + kDataHeaderSize;
    addSection("AcDb:SummaryInfo", summary, false);
    m_previewAt = m_out.size() + kDataHeaderSize;
    addSection("AcDb:Preview", previewSection(m_context, m_previewAt), false);
    addKept("AcDb:AppInfo");
    addKept("AcDb:FileDepList");
    addKept("AcDb:RevHistory");
    if (!m_contents.data.empty()) addSection(kDataSection, m_contents.data, false);
    addSection("AcDb:AcDbObjects", objectsSection(), true);
    addSection("AcDb:ObjFreeSpace", freeSpaceSection(m_context, m_contents, 0), true);
    addSection("AcDb:Template", templateSection(m_context), true);
    addSection("AcDb:Handles", writeObjectMap(m_contents.map), true);
    addSection("AcDb:Classes", m_contents.classes, true);
    addSection("AcDb:AuxHeader", auxiliarySection(m_context, m_contents), true);
    addSection("AcDb:Header", m_contents.header, true);
    writeMaps();
    writeHeaders();
    return std::move(m_out.bytes);
  }

 private:
  // Records are counted from the beginning of their section, which begins with a number of its own.
  std::vector<uint8_t> objectsSection() {
    constexpr uint32_t kMark = 0x0DCA;
    ByteWriter section;
    section.u32(kMark);
    appendRecords(m_context, m_plan, m_contents, section.bytes);
    return std::move(section.bytes);
  }

  // Sections of the drawing's own file that say nothing of its objects. Their texts have the form of a family.
  void addKept(const char* name) {
    for (const GcDbDwgSection& each : m_context.database.fileParts().dwgSections)
      if (each.name == name && (each.version >= kR2007) == (m_context.version >= kR2007))
        addSection(name, each.bytes, false);
  }

  void addSection(const char* name, const std::vector<uint8_t>& bytes, bool pack) {
    Section section;
    section.name = name;
    section.size = bytes.size();
    section.isPacked = pack && (bytes.empty() || bytes.size() >= kLeastPacked);
    section.mostPerPage = section.isPacked || bytes.size() > kUsualPageSize ? kUsualPageSize : roundUp(bytes.size());
    section.id = static_cast<uint32_t>(m_sections.size());
    for (uint64_t at = 0; at < bytes.size(); at += section.mostPerPage) {
      const uint64_t size = std::min<uint64_t>(section.mostPerPage, bytes.size() - at);
      section.parts.push_back(addPage(section, std::span<const uint8_t>(bytes).subspan(at, size), at));
    }
    m_sections.push_back(std::move(section));
  }

  static uint32_t roundUp(uint64_t size) {
    const uint64_t rounded = (size + kPageStep - 1) / kPageStep * kPageStep;
    return static_cast<uint32_t>(rounded < 0x80 ? 0x80 : rounded);
  }

  // Pages of packed sections are packed as whole pages: what lies behind the end of the section is zero.
  Part addPage(const Section& section, std::span<const uint8_t> bytes, uint64_t start) {
    std::vector<uint8_t> packed;
    if (section.isPacked) {
      std::vector<uint8_t> whole(bytes.begin(), bytes.end());
      whole.resize(section.mostPerPage);
      compress(whole, packed);
    } else {
      packed.assign(bytes.begin(), bytes.end());
      packed.resize(roundUp(packed.size()));
    }
    const uint64_t address = m_out.size();
    const uint32_t pageSize = roundUp(kDataHeaderSize + packed.size());
    uint32_t header[8] = {kDataPageType,
                          section.id,
                          static_cast<uint32_t>(packed.size()),
                          pageSize,
                          static_cast<uint32_t>(start),
                          0,
                          0,
                          pageChecksum(packed, 0)};
    header[6] = pageChecksum(headerBytes(header).bytes, header[7]);
    for (uint32_t& word : header) word ^= dataMask(address);
    m_out.append(headerBytes(header).bytes);
    m_out.append(packed);
    m_out.zeros(pageSize - kDataHeaderSize - packed.size());
    m_pages.push_back({static_cast<int32_t>(m_pages.size()) + 1, pageSize});
    return {m_pages.back().id, static_cast<uint32_t>(packed.size()), start};
  }

  static ByteWriter headerBytes(const uint32_t (&header)[8]) {
    ByteWriter out;
    for (const uint32_t word : header) out.u32(word);
    return out;
  }

  // Appends a page of the file's own: size, packed size, kind of packing, checksum.
  void addSystemPage(uint32_t type, const std::vector<uint8_t>& bytes, uint64_t pageSize) {
    std::vector<uint8_t> packed;
    compress(bytes, packed);
    ByteWriter header;
    header.u32(type);
    header.u32(static_cast<uint32_t>(bytes.size()));
    header.u32(static_cast<uint32_t>(packed.size()));
    header.u32(kPacked);
    header.u32(0);
    header.patch(16, systemChecksum(header.bytes, packed));
    const uint64_t begin = m_out.size();
    m_out.append(header.bytes);
    m_out.append(packed);
    m_out.zeros(pageSize - (m_out.size() - begin));
  }

  static uint64_t systemPageSize(const std::vector<uint8_t>& bytes) {
    std::vector<uint8_t> packed;
    compress(bytes, packed);
    return roundUp(kSystemHeaderSize + packed.size());
  }

  std::vector<uint8_t> sectionMap() const {
    ByteWriter map;
    const auto count = static_cast<uint32_t>(m_sections.size());
    map.u32(count);
    map.u32(2);
    map.u32(kUsualPageSize);
    map.u32(0);
    map.u32(count);
    for (const Section& section : m_sections) {
      map.u64(section.size);
      map.u32(static_cast<uint32_t>(section.parts.size()));
      map.u32(section.mostPerPage);
      map.u32(1);
      map.u32(section.isPacked ? kPacked : 1);
      map.u32(section.id);
      map.u32(0);
      char name[kNameSize] = {};
      std::memcpy(name, section.name.data(), std::min(section.name.size(), kNameSize - 1));
      map.append({reinterpret_cast<const uint8_t*>(name), kNameSize});
      for (const Part& part : section.parts) {
        map.u32(static_cast<uint32_t>(part.page));
        map.u32(part.packedSize);
        map.u64(part.start);
      }
    }
    return std::move(map.bytes);
  }

  std::vector<uint8_t> pageMap() const {
    ByteWriter map;
    for (const PageEntry& page : m_pages) {
      map.u32(static_cast<uint32_t>(page.id));
      map.u32(page.size);
    }
    return std::move(map.bytes);
  }

  // The page map lists itself: its own size is found first.
  void writeMaps() {
    const std::vector<uint8_t> sections = sectionMap();
    const uint64_t sectionsSize = systemPageSize(sections);
    m_sectionMapId = static_cast<uint32_t>(m_pages.size()) + 1;
    addSystemPage(kSectionMapType, sections, sectionsSize);
    m_pages.push_back({static_cast<int32_t>(m_sectionMapId), static_cast<uint32_t>(sectionsSize)});
    m_pageMapAt = m_out.size();
    m_pages.push_back({static_cast<int32_t>(m_pages.size()) + 1, 0});
    uint64_t size = 0;
    for (uint64_t tried = systemPageSize(pageMap()) + kPageStep; size == 0; tried += kPageStep) {
      m_pages.back().size = static_cast<uint32_t>(tried);
      if (systemPageSize(pageMap()) <= tried) size = tried;
    }
    addSystemPage(kPageMapType, pageMap(), size);
  }

  void writeHeaders() {
    ByteWriter hidden;
    hidden.append({reinterpret_cast<const uint8_t*>("AcFssFcAJMB"), 12});
    hidden.u32(0);
    hidden.u32(static_cast<uint32_t>(kHeaderSize));
    hidden.u32(4);
    hidden.u32(0);  // gaps: there are none
    hidden.u32(0);
    hidden.u32(0);
    hidden.u32(1);
    hidden.u32(static_cast<uint32_t>(m_pages.back().id));
    hidden.u64(m_out.size() - kFirstPageAt);
    hidden.u64(m_out.size());  // where this header is repeated
    hidden.u32(0);
    hidden.u32(static_cast<uint32_t>(m_pages.size()));
    hidden.u32(0x20);
    hidden.u32(0x80);
    hidden.u32(0x40);
    hidden.u32(static_cast<uint32_t>(m_pages.back().id));
    hidden.u64(m_pageMapAt - kFirstPageAt);
    hidden.u32(m_sectionMapId);
    hidden.u32(static_cast<uint32_t>(m_pages.size()));
    hidden.u32(0);
    hidden.u32(0);
    hidden.patch(kHeaderCrcAt, crc32(hidden.bytes, 0));
    mask(hidden.bytes);
    m_out.append(hidden.bytes);
    std::copy(hidden.bytes.begin(), hidden.bytes.end(), m_out.bytes.begin() + kHeaderAt);
    // The rest of the sequence that hides the header fills the room behind it.
    std::vector<uint8_t> sequence(kHeaderSize + kRoomBehind);
    mask(sequence);
    std::copy(sequence.begin() + kHeaderSize, sequence.end(), m_out.bytes.begin() + kHeaderAt + kHeaderSize);
    writePlainHeader();
  }

  void writePlainHeader() {
    const auto number = static_cast<unsigned>(gcdbDwgNumberOfVersion(m_context.version));
    const auto maintenance = static_cast<unsigned>(maintenanceToWrite(m_context.version));
    ByteWriter head;
    head.append({reinterpret_cast<const uint8_t*>(versionText(m_context.version)), 6});
    head.zeros(5);
    head.u8(maintenance);
    head.u8(3);
    head.u32(static_cast<uint32_t>(m_previewAt));
    head.u8(number);
    head.u8(maintenance);
    head.u16(static_cast<unsigned>(m_contents.codePageNumber));
    head.u8(0);
    head.u8(number);
    head.u8(maintenance);
    head.u32(0);
    head.u32(0);
    head.u32(static_cast<uint32_t>(m_summaryAt));
    head.u32(0);
    head.u32(static_cast<uint32_t>(kHeaderAt));
    std::copy(head.bytes.begin(), head.bytes.end(), m_out.bytes.begin());
  }

  static constexpr uint64_t kRoomBehind = kFirstPageAt - kHeaderAt - kHeaderSize;

  RecordContext& m_context;
  const WritePlan& m_plan;
  FileContents& m_contents;
  ByteWriter m_out;
  std::vector<Section> m_sections;
  std::vector<PageEntry> m_pages;
  uint64_t m_previewAt = 0;
  uint64_t m_summaryAt = 0;
  uint64_t m_pageMapAt = 0;
  uint32_t m_sectionMapId = 0;
};

}  // namespace

std::vector<uint8_t> buildR2004(RecordContext& context, const WritePlan& plan, FileContents& contents) {
  return Builder(context, plan, contents).run();
}

}  // namespace gc::dwg
