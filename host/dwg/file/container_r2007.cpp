// The paged file of AC1021. Everything is coded by Reed and Solomon's code: blocks of 255 bytes, of which 239 (pages of
// the file's own) or 251 (data) are the message and the rest its checks; the bytes of the blocks of a page take turns.
// The code is systematic. Its check bytes are the checksums of such a file: wrong bytes are corrected as far as they go,
// and told.
#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "host/dwg/bits/reedsolomon.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/lz_r2007.h"
#include "host/dwg/file/sections.h"

namespace gc::dwg {

namespace {

constexpr uint64_t kLeastRoom = 0x1000000;
constexpr uint64_t kMaintenanceAt = 11;
constexpr uint64_t kCodePageAt = 19;
constexpr uint64_t kHeaderAt = 0x80;
constexpr uint64_t kHeaderBlocks = 3;
constexpr uint64_t kFirstPageAt = 0x480;
constexpr uint64_t kBlock = kCodedBlock;
constexpr uint64_t kSystemMessage = kSystemBlocks.messageBytes();
constexpr uint64_t kDataMessage = kDataBlocks.messageBytes();
constexpr uint64_t kHeaderSize = 0x110;
constexpr uint64_t kMostSystemPage = 0x2000000;

// Places in the file header.
enum HeaderPlace : uint64_t {
  kPageMapRepeat = 0x18,
  kPageMapAt = 0x38,
  kPageMapPacked = 0x50,
  kPageMapSize = 0x58,
  kSectionMapPacked = 0xB0,
  kSectionMapId = 0xC0,
  kSectionMapSize = 0xC8,
  kSectionMapRepeat = 0xD8
};

uint64_t roundUp(uint64_t value, uint64_t step) { return (value + step - 1) / step * step; }

// The messages of the blocks, one after the other, with how many blocks had to be corrected or could not be.
struct Message {
  std::vector<uint8_t> bytes;
  uint64_t corrected = 0;
  uint64_t damaged = 0;
};

// Blocks that a cut left without all of their check bytes are taken as they are.
Message messages(std::span<const uint8_t> coded, uint64_t blocks, const BlockCode& code) {
  const size_t size = code.messageBytes();
  Message message;
  if (coded.size() / size < blocks) return message;
  const bool hasChecks = coded.size() / kBlock >= blocks;
  message.bytes.reserve(blocks * size);
  for (uint64_t b = 0; b < blocks; ++b) {
    uint8_t block[kBlock];
    for (uint64_t i = 0; i < (hasChecks ? kBlock : size); ++i) block[i] = coded[b + i * blocks];
    const BlockState state = hasChecks ? correctBlock(block, code) : BlockState::Damaged;
    message.corrected += state == BlockState::Corrected ? 1 : 0;
    message.damaged += state == BlockState::Damaged ? 1 : 0;
    message.bytes.insert(message.bytes.end(), block, block + size);
  }
  return message;
}

// As many of the bytes as there are.
std::vector<uint8_t> unpack(const std::vector<uint8_t>& message, uint64_t packedSize, uint64_t size) {
  std::vector<uint8_t> out(size);
  if (size == 0) return out;
  const auto packed = part(message, 0, packedSize);
  if (packedSize < size) {
    out.resize(decompressR2007(packed, out));
  } else {
    out.resize(std::min<uint64_t>(packed.size(), size));
    std::copy_n(packed.begin(), out.size(), out.begin());
  }
  return out;
}

struct Page {
  uint64_t at = 0;
  uint64_t size = 0;
};

class Opener {
 public:
  Opener(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report)
      : m_file(file), m_sections(sections), m_report(report) {}

  bool run() {
    if (!holds(m_file, 0, kFirstPageAt)) return false;
    m_sections.maintenance = m_file[kMaintenanceAt];
    m_sections.codePageNumber = u16(m_file, kCodePageAt);
    if (!readHeader() || !readPageMap()) return false;
    return readSectionMap();
  }

 private:
  bool missing(const char* what) {
    note(m_report, GcDbLoadAction::Missing, 0, 0, std::string(what) + " cannot be read");
    return false;
  }

  // Tells of blocks that were wrong.
  std::vector<uint8_t> checked(Message&& message, uint64_t at, const std::string& what) {
    const auto tell = [&](GcDbLoadAction action, uint64_t blocks, const char* state) {
      if (blocks > 0) note(m_report, action, at, 0, what + ": " + std::to_string(blocks) + " blocks " + state);
    };
    tell(GcDbLoadAction::Repaired, message.corrected, "with wrong bytes are corrected");
    tell(GcDbLoadAction::Noted, message.damaged, "do not fit their check bytes");
    return std::move(message.bytes);
  }

  bool readHeader() {
    constexpr uint64_t kPackedSizeAt = 24;
    constexpr uint64_t kPackedAt = 32;
    const auto coded = part(m_file, kHeaderAt, kHeaderBlocks * kBlock);
    const std::vector<uint8_t> message = checked(messages(coded, kHeaderBlocks, kSystemBlocks), kHeaderAt, "header");
    if (message.empty()) return missing("the file header");
    const auto packedSize = static_cast<int32_t>(u32(message, kPackedSizeAt));
    const auto body = part(message, kPackedAt, message.size());
    m_header.resize(kHeaderSize);
    if (packedSize > 0)
      decompressR2007(part(body, 0, static_cast<uint64_t>(packedSize)), m_header);
    else
      std::memcpy(m_header.data(), body.data(), kHeaderSize < body.size() ? kHeaderSize : body.size());
    return true;
  }

  [[nodiscard]] uint64_t field(HeaderPlace place) const { return u64(m_header, place); }

  // A page of the file's own; its message is written several times over.
  std::vector<uint8_t> systemPage(uint64_t at, uint64_t packedSize, uint64_t size, uint64_t repeat, const char* what) {
    std::vector<uint8_t> none;
    if (size > kMostSystemPage || size / 256 > m_file.size() || packedSize > m_file.size() || repeat == 0 ||
        repeat > 64)
      return none;
    const uint64_t blocks = roundUp(roundUp(packedSize, 8) * repeat, kSystemMessage) / kSystemMessage;
    if (blocks == 0 || !holds(m_file, at, blocks * kBlock)) return none;
    return unpack(checked(messages(part(m_file, at, blocks * kBlock), blocks, kSystemBlocks), at, what), packedSize,
                  size);
  }

  bool readPageMap() {
    const std::vector<uint8_t> map = systemPage(kFirstPageAt + field(kPageMapAt), field(kPageMapPacked),
                                                field(kPageMapSize), field(kPageMapRepeat), "page map");
    uint64_t address = kFirstPageAt;
    for (uint64_t i = 0; holds(map, i, 16); i += 16) {
      const uint64_t size = u64(map, i);
      const auto id = static_cast<int64_t>(u64(map, i + 8));
      if (size > m_file.size()) break;
      if (id > 0 && size > 0) m_pages[static_cast<uint64_t>(id)] = {address, size};
      address += size;
      if (address >= m_file.size()) break;
    }
    return !m_pages.empty() || missing("the page map");
  }

  bool readSectionMap() {
    constexpr uint64_t kSectionHead = 64;
    constexpr uint64_t kPageEntry = 56;
    const auto at = m_pages.find(field(kSectionMapId));
    if (at == m_pages.end()) return missing("the section map");
    const std::vector<uint8_t> map = systemPage(at->second.at, field(kSectionMapPacked), field(kSectionMapSize),
                                                field(kSectionMapRepeat), "section map");
    for (uint64_t i = 0; holds(map, i, kSectionHead);) {
      const uint64_t size = u64(map, i);
      const uint64_t nameBytes = roundUp(u64(map, i + 32), 2);
      const uint64_t pages = u64(map, i + 56);
      const uint64_t nameAt = i + kSectionHead;
      if (!holds(map, nameAt, nameBytes) || pages > map.size() / kPageEntry ||
          !holds(map, nameAt + nameBytes, pages * kPageEntry))
        break;
      std::string name;
      for (uint64_t c = 0; c + 1 < nameBytes && u16(map, nameAt + c) != 0; c += 2)
        name.push_back(static_cast<char>(u16(map, nameAt + c)));
      readSection(name, size, part(map, nameAt + nameBytes, pages * kPageEntry));
      i = nameAt + nameBytes + pages * kPageEntry;
    }
    return !m_sections.objects.empty() || !m_sections.header.empty() || missing("the sections");
  }

  void readSection(const std::string& name, uint64_t size, std::span<const uint8_t> pages) {
    constexpr uint64_t kPageEntry = 56;
    constexpr uint64_t kMostPerPage = 0x100000;
    const uint64_t count = pages.size() / kPageEntry;
    if (name.empty() || size == 0) return;
    if (size > count * kMostPerPage || size > m_room || count > m_pages.size()) {
      note(m_report, GcDbLoadAction::Skipped, 0, 0, "section " + name + " gives a wrong size");
      return;
    }
    m_room -= size;
    std::vector<uint8_t> bytes(size);
    uint64_t told = 0;  // what pages take and what they give: work is bounded by the first, loss shows in the second
    uint64_t filled = 0;
    for (uint64_t i = 0; i < count && told <= size; ++i) {
      const auto entry = pages.subspan(i * kPageEntry, kPageEntry);
      const uint64_t start = u64(entry, 0);
      const uint64_t unpacked = u64(entry, 24);
      if (start >= size || unpacked > kMostPerPage) continue;
      told += unpacked;
      const std::vector<uint8_t> page = dataPage(u64(entry, 16), u64(entry, 32), unpacked, name);
      const uint64_t room = size - start;
      const uint64_t given = std::min<uint64_t>(page.size(), room);
      std::copy_n(page.begin(), given, bytes.begin() + static_cast<std::ptrdiff_t>(start));
      filled += given;
    }
    if (filled < size) {
      note(m_report, GcDbLoadAction::Missing, 0, 0,
           "section " + name + " has " + std::to_string(filled) + " of its " + std::to_string(size) + " bytes");
    }
    m_sections.owned.push_back(std::move(bytes));
    place(name, m_sections.owned.back());
  }

  // Pages that were not worth packing may also stand as they are: only their size tells.
  std::vector<uint8_t> dataPage(uint64_t id, uint64_t packedSize, uint64_t size, const std::string& name) {
    const auto at = m_pages.find(id);
    const uint64_t blocks = roundUp(roundUp(packedSize, 8), kDataMessage) / kDataMessage;
    if (at == m_pages.end() || packedSize > at->second.size || !holds(m_file, at->second.at, at->second.size)) {
      note(m_report, GcDbLoadAction::Missing, 0, 0,
           "page " + std::to_string(id) + " of section " + name + " is missing");
      return {};
    }
    const auto coded = part(m_file, at->second.at, at->second.size);
    const bool isCoded = packedSize != size || at->second.size == roundUp(blocks * kBlock, 32);
    if (!isCoded) return {coded.begin(), coded.begin() + static_cast<std::ptrdiff_t>(packedSize)};
    return unpack(checked(messages(coded, blocks, kDataBlocks), at->second.at, "section " + name), packedSize, size);
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
  std::vector<uint8_t> m_header;
  std::unordered_map<uint64_t, Page> m_pages;
  // What all sections together may take. A byte of packed data can tell of 255; whole drawings pack to a tenth at best.
  uint64_t m_room = std::max<uint64_t>(kLeastRoom, 64 * m_file.size());
};

}  // namespace

bool openR2007(std::span<const uint8_t> file, Sections& sections, GcDbLoadReport& report) {
  return Opener(file, sections, report).run();
}

}  // namespace gc::dwg
