// Changes of single bytes deep inside the paged files of AC1018 and of AC1024 on, where packing and checksums would hide
// them: a part is unpacked, changed, packed again and given its checksums. For tests and fuzzers.
#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "host/dwg/bits/crc.h"
#include "host/dwg/file/bytes.h"
#include "host/dwg/file/lz.h"
#include "host/dwg/file/pages_r2004.h"

namespace gc::dwg {

template <class T>
void putAt(std::vector<uint8_t>& bytes, uint64_t at, T value) {
  for (unsigned i = 0; i < sizeof(T) && at + i < bytes.size(); ++i)
    bytes[at + i] = static_cast<uint8_t>(static_cast<uint64_t>(value) >> (8 * i));
}

class Repacker {
 public:
  using Change = std::function<void(std::vector<uint8_t>&)>;

  explicit Repacker(std::vector<uint8_t> file) : m_file(std::move(file)) {
    m_header = header();
    m_pageMapAt = u64(m_header, r2004::kPageMapAddressAt) + r2004::kFirstPageAt;
    readPages();
  }

  [[nodiscard]] const std::vector<uint8_t>& file() const { return m_file; }

  // The hidden header, with its checksum made right.
  void changeHeader(const Change& change) {
    std::vector<uint8_t> bytes = header();
    change(bytes);
    bytes.resize(r2004::kHeaderSize);
    putAt(bytes, r2004::kHeaderCrcAt, uint32_t{0});
    putAt(bytes, r2004::kHeaderCrcAt, crc32(bytes, 0));
    r2004::mask(bytes);
    std::copy(bytes.begin(), bytes.end(), m_file.begin() + r2004::kHeaderAt);
  }
  // False when what was made does not fit into the page.
  bool changePageMap(const Change& change) { return changeSystemPage(m_pageMapAt, change); }
  bool changeSectionMap(const Change& change) { return changeSystemPage(sectionMapAt(), change); }
  [[nodiscard]] std::vector<uint8_t> sectionMap() const { return systemPage(sectionMapAt()); }

  // Where the description of a section begins in the section map; its pages follow it. 0 when there is none.
  [[nodiscard]] uint64_t describedAt(const std::string& name) const {
    const std::vector<uint8_t> map = sectionMap();
    uint64_t at = r2004::kSectionMapHeaderSize;
    while (holds(map, at, r2004::kDescriptionSize)) {
      if (std::strncmp(reinterpret_cast<const char*>(map.data() + at + r2004::kNameAt), name.c_str(),
                       r2004::kNameSize) == 0)
        return at;
      at += r2004::kDescriptionSize + uint64_t{u32(map, at + 8)} * r2004::kPageEntrySize;
    }
    return 0;
  }

  // The bytes of one page of a section; its checksums are made right.
  bool changePage(const std::string& section, uint32_t index, const Change& change) {
    const std::vector<uint8_t> map = sectionMap();
    const uint64_t described = describedAt(section);
    if (described == 0 || index >= u32(map, described + 8)) return false;
    const bool isPacked = u32(map, described + 20) == r2004::kPacked;
    const uint64_t entry = described + r2004::kDescriptionSize + index * r2004::kPageEntrySize;
    const auto page =
        std::find_if(m_pages.begin(), m_pages.end(), [&](const Page& p) { return p.id == u32(map, entry); });
    if (page == m_pages.end() || !holds(m_file, page->at, page->size)) return false;
    const uint32_t hide = r2004::dataMask(page->at);
    const auto stored = part(m_file, page->at + r2004::kDataHeaderSize, u32(m_file, page->at + 8) ^ hide);
    std::vector<uint8_t> bytes(stored.begin(), stored.end());
    if (isPacked) {
      bytes.assign(std::min(u32(map, described + 12), r2004::kMostPageSize), 0);
      bytes.resize(decompress(stored, bytes));
    }
    change(bytes);
    return putPage(*page, isPacked ? packed(bytes) : bytes);
  }

  // The packed bytes of a page as they shall stand, whatever they unpack to.
  bool putPacked(const std::string& section, uint32_t index, const std::vector<uint8_t>& bytes) {
    const std::vector<uint8_t> map = sectionMap();
    const uint64_t described = describedAt(section);
    if (described == 0 || index >= u32(map, described + 8)) return false;
    const uint32_t id = u32(map, described + r2004::kDescriptionSize + index * r2004::kPageEntrySize);
    const auto page = std::find_if(m_pages.begin(), m_pages.end(), [&](const Page& p) { return p.id == id; });
    return page != m_pages.end() && putPage(*page, bytes);
  }

 private:
  struct Page {
    uint32_t id = 0;
    uint64_t at = 0;
    uint64_t size = 0;
  };

  static std::vector<uint8_t> packed(const std::vector<uint8_t>& bytes) {
    std::vector<uint8_t> out;
    compress(bytes, out);
    return out;
  }

  [[nodiscard]] std::vector<uint8_t> header() const {
    std::vector<uint8_t> bytes(m_file.begin() + r2004::kHeaderAt,
                               m_file.begin() + r2004::kHeaderAt + r2004::kHeaderSize);
    r2004::mask(bytes);
    return bytes;
  }

  [[nodiscard]] std::vector<uint8_t> systemPage(uint64_t at) const {
    if (!holds(m_file, at, r2004::kSystemHeaderSize)) return {};
    std::vector<uint8_t> bytes(std::min<uint64_t>(u32(m_file, at + 4), 0x1000000));
    bytes.resize(decompress(part(m_file, at + r2004::kSystemHeaderSize, u32(m_file, at + 8)), bytes));
    return bytes;
  }

  [[nodiscard]] uint64_t sectionMapAt() const {
    for (const Page& page : m_pages)
      if (page.id == u32(m_header, r2004::kSectionMapIdAt)) return page.at;
    return m_file.size();
  }

  void readPages() {
    const std::vector<uint8_t> map = systemPage(m_pageMapAt);
    uint64_t address = r2004::kFirstPageAt;
    for (uint64_t i = 0; holds(map, i, 8); i += 8) {
      m_pages.push_back({u32(map, i), address, u32(map, i + 4)});
      address += u32(map, i + 4);
    }
  }

  bool changeSystemPage(uint64_t at, const Change& change) {
    std::vector<uint8_t> bytes = systemPage(at);
    uint64_t room = 0;
    for (const Page& page : m_pages)
      if (page.at == at) room = page.size;
    change(bytes);
    const std::vector<uint8_t> made = packed(bytes);
    if (made.size() + r2004::kSystemHeaderSize > room || !holds(m_file, at, room)) return false;
    putAt(m_file, at + 4, static_cast<uint32_t>(bytes.size()));
    putAt(m_file, at + 8, static_cast<uint32_t>(made.size()));
    std::copy(made.begin(), made.end(), m_file.begin() + static_cast<std::ptrdiff_t>(at + r2004::kSystemHeaderSize));
    const auto head = std::span<const uint8_t>(m_file).subspan(at, r2004::kSystemHeaderSize);
    putAt(m_file, at + 16, r2004::systemChecksum(head, made));
    return true;
  }

  bool putPage(const Page& page, const std::vector<uint8_t>& bytes) {
    if (bytes.size() + r2004::kDataHeaderSize > page.size) return false;
    uint32_t words[8];
    for (unsigned i = 0; i < 8; ++i) words[i] = u32(m_file, page.at + 4 * i) ^ r2004::dataMask(page.at);
    words[2] = static_cast<uint32_t>(bytes.size());
    words[6] = 0;
    words[7] = pageChecksum(bytes, 0);
    std::vector<uint8_t> plain(r2004::kDataHeaderSize);
    for (unsigned i = 0; i < 8; ++i) putAt(plain, 4 * i, words[i]);
    words[6] = pageChecksum(plain, words[7]);
    for (unsigned i = 0; i < 8; ++i) putAt(m_file, page.at + 4 * i, words[i] ^ r2004::dataMask(page.at));
    std::copy(bytes.begin(), bytes.end(),
              m_file.begin() + static_cast<std::ptrdiff_t>(page.at + r2004::kDataHeaderSize));
    return true;
  }

  std::vector<uint8_t> m_file;
  std::vector<uint8_t> m_header;
  std::vector<Page> m_pages;
  uint64_t m_pageMapAt = 0;
};

}  // namespace gc::dwg
