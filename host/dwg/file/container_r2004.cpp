// The paged file of AC1018 and of AC1024 on. A header hidden under a fixed sequence of bytes gives the map of pages and
// the map of sections; both are pages themselves. Sections are cut into pages of at most 0x7400 bytes, compressed.
#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/lz.h"
#include "host/dwg/file/pages_r2004.h"
#include "host/dwg/file/sections.h"

namespace gc::dwg {

namespace {

using namespace r2004;

constexpr uint64_t kMaintenanceAt = 11;
constexpr uint64_t kCodePageAt = 19;
constexpr uint32_t kMostSystemPage = 0x4000000;
constexpr uint64_t kLeastRoom = 0x1000000;

struct Page {
  uint64_t at = 0;
  uint64_t size = 0;
};

class Opener {
 public:
  Opener(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report)
      : m_file(file), m_sections(sections), m_report(report) {}

  bool run() {
    if (!holds(m_file, 0, kHeaderAt + kHeaderSize)) return false;
    m_sections.maintenance = m_file[kMaintenanceAt];
    m_sections.codePageNumber = u16(m_file, kCodePageAt);
    std::vector<uint8_t> header(m_file.begin() + kHeaderAt, m_file.begin() + kHeaderAt + kHeaderSize);
    mask(header);
    checkHeader(header);
    if (!readPageMap(u64(header, kPageMapAddressAt) + kFirstPageAt)) return false;
    const auto map = m_pages.find(u32(header, kSectionMapIdAt));
    if (map == m_pages.end()) {
      note(m_report, GcDbLoadAction::Missing, kHeaderAt, 0, "the map of sections is not in the file");
      return false;
    }
    return readSectionMap(systemPage(map->second.at, kSectionMapType, "section map"));
  }

 private:
  void checkHeader(std::vector<uint8_t> header) {
    const uint32_t crc = u32(header, kHeaderCrcAt);
    std::memset(header.data() + kHeaderCrcAt, 0, 4);
    if (crc32(header, 0) != crc)
      note(m_report, GcDbLoadAction::Noted, kHeaderAt, 0, "the checksum of the file header is wrong");
  }

  std::vector<uint8_t> systemPage(uint64_t at, uint32_t type, const char* name) {
    std::vector<uint8_t> bytes;
    if (!holds(m_file, at, kSystemHeaderSize) || u32(m_file, at) != type) {
      note(m_report, GcDbLoadAction::Missing, at, 0, std::string("there is no ") + name);
      return bytes;
    }
    const uint32_t size = u32(m_file, at + 4);
    const uint32_t packedSize = u32(m_file, at + 8);
    const bool isPacked = u32(m_file, at + 12) == kPacked;
    const auto packed = part(m_file, at + kSystemHeaderSize, packedSize);
    if (packed.size() < packedSize || size > kMostSystemPage || size / 256 > m_file.size()) {
      note(m_report, GcDbLoadAction::Missing, at, 0, std::string("the ") + name + " is cut off");
      return bytes;
    }
    if (systemChecksum(m_file.subspan(at, kSystemHeaderSize), packed) != u32(m_file, at + 16))
      note(m_report, GcDbLoadAction::Noted, at, 0, std::string("the checksum of the ") + name + " is wrong");
    bytes.resize(size);
    if (isPacked)
      bytes.resize(decompress(packed, bytes));
    else
      bytes.assign(packed.begin(), packed.end());
    return bytes;
  }

  bool readPageMap(uint64_t at) {
    const std::vector<uint8_t> map = systemPage(at, kPageMapType, "page map");
    uint64_t address = kFirstPageAt;
    for (uint64_t i = 0; holds(map, i, 8);) {
      const auto id = static_cast<int32_t>(u32(map, i));
      const uint32_t size = u32(map, i + 4);
      i += 8;
      if (id < 0) i += kGapRestSize;  // a gap tells its place in a tree of gaps
      if (id > 0 && size >= kDataHeaderSize) m_pages[static_cast<uint32_t>(id)] = {address, size};
      address += size;
      if (address >= m_file.size()) break;
    }
    return !m_pages.empty();
  }

  bool readSectionMap(const std::vector<uint8_t>& map) {
    const uint32_t count = u32(map, 0);
    uint64_t at = kSectionMapHeaderSize;
    for (uint32_t i = 0; i < count && holds(map, at, kDescriptionSize); ++i) {
      const uint32_t pages = u32(map, at + 8);
      const uint64_t pagesAt = at + kDescriptionSize;
      if (pages > map.size() / kPageEntrySize || !holds(map, pagesAt, uint64_t{pages} * kPageEntrySize)) {
        note(m_report, GcDbLoadAction::Missing, 0, 0, "the map of sections is cut off");
        break;
      }
      readSection(map, at, pages);
      at = pagesAt + uint64_t{pages} * kPageEntrySize;
    }
    return !m_sections.objects.empty() || !m_sections.header.empty();
  }

  void readSection(const std::vector<uint8_t>& map, uint64_t at, uint32_t pages) {
    const uint64_t size = u64(map, at);
    const uint32_t mostPerPage = u32(map, at + 12);
    const bool isPacked = u32(map, at + 20) == kPacked;
    const auto* text = reinterpret_cast<const char*>(map.data() + at + kNameAt);
    const std::string name(text, strnlen(text, kNameSize));
    if (name.empty()) return;
    // What pages can hold bounds what the section can be, whatever it says.
    if (mostPerPage == 0 || mostPerPage > kMostPageSize || size > uint64_t{pages} * mostPerPage || size > m_room ||
        pages > m_pages.size()) {
      note(m_report, GcDbLoadAction::Skipped, 0, 0, "section " + name + " gives a wrong size: " + std::to_string(size));
      return;
    }
    m_room -= size;
    std::vector<uint8_t> bytes(size);
    uint64_t told = 0;  // what pages take and what they give: work is bounded by the first, loss shows in the second
    uint64_t filled = 0;
    for (uint32_t i = 0; i < pages && told <= size; ++i) {
      const uint64_t entry = at + kDescriptionSize + uint64_t{i} * kPageEntrySize;
      const uint64_t start = u64(map, entry + 8);
      if (start >= size) continue;
      const auto room = std::span<uint8_t>(bytes).subspan(start, std::min<uint64_t>(size - start, mostPerPage));
      told += room.size();
      filled += dataPage(u32(map, entry), name, isPacked, room);
    }
    if (filled < size) {
      note(m_report, GcDbLoadAction::Missing, 0, 0,
           "section " + name + " has " + std::to_string(filled) + " of its " + std::to_string(size) + " bytes");
    }
    m_sections.owned.push_back(std::move(bytes));
    place(name, m_sections.owned.back());
  }

  // Fills the room; how much of it.
  uint64_t dataPage(uint32_t id, const std::string& name, bool isPacked, std::span<uint8_t> room) {
    const auto at = m_pages.find(id);
    if (at == m_pages.end() || !holds(m_file, at->second.at, kDataHeaderSize)) {
      note(m_report, GcDbLoadAction::Missing, 0, 0,
           "page " + std::to_string(id) + " of section " + name + " is missing");
      return 0;
    }
    const uint64_t address = at->second.at;
    const uint32_t hide = dataMask(address);
    if ((u32(m_file, address) ^ hide) != kDataPageType) {
      note(m_report, GcDbLoadAction::Missing, address, 0, "page " + std::to_string(id) + " is no page of data");
      return 0;
    }
    const uint32_t packedSize = u32(m_file, address + 8) ^ hide;
    const auto packed = part(m_file, address + kDataHeaderSize, packedSize);
    if (packed.size() < packedSize)
      note(m_report, GcDbLoadAction::Missing, address, 0, "page " + std::to_string(id) + " is cut off");
    else if (pageChecksum(packed, 0) != (u32(m_file, address + kDataChecksumAt) ^ hide))
      note(m_report, GcDbLoadAction::Noted, address, 0, "the checksum of page " + std::to_string(id) + " is wrong");
    if (isPacked) return decompress(packed, room);
    const uint64_t size = std::min(room.size(), packed.size());
    std::copy_n(packed.begin(), size, room.begin());
    return size;
  }

  void place(const std::string& name, std::span<const uint8_t> bytes) {
    if (name == "AcDb:Header")
      m_sections.header = bytes;
    else if (name == "AcDb:Classes")
      m_sections.classes = bytes;
    else if (name == "AcDb:Handles")
      m_sections.handles = bytes;
    else if (name == "AcDb:AcDbObjects")
      m_sections.objects = bytes;
    else
      m_sections.others.push_back({name, bytes});
  }

  std::span<const uint8_t> m_file;
  Sections& m_sections;
  GcDbLoadReport& m_report;
  std::unordered_map<uint32_t, Page> m_pages;
  // What all sections together may take. A byte of packed data can tell of 255; whole drawings pack to a tenth at best.
  uint64_t m_room = std::max<uint64_t>(kLeastRoom, 64 * m_file.size());
};

}  // namespace

bool openR2004(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report) {
  return Opener(file, sections, report).run();
}

}  // namespace gc::dwg
