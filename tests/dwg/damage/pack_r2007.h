// Makes paged files of AC1021, which the program itself does not write: nothing is packed, every part of the file's own
// can be changed before it gets its check bytes. For tests.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/dwg/bits/reedsolomon.h"
#include "host/dwg/file/contents.h"
#include "host/dwg/record/packrow.h"

namespace gc::dwg {

// The check bytes of a message: the coefficients x^(254 - n) .. x^254 that make a^1 .. a^n roots of the block. Found by
// long division of the reversed block, whose roots are a^-1 .. a^-n.
inline std::vector<uint8_t> codedBlock(std::vector<uint8_t> message, const BlockCode& code) {
  const size_t checkBytes = code.checkBytes;
  const auto times = [&](unsigned a, unsigned b) {
    unsigned product = 0;
    for (; b != 0; b >>= 1, a = (a & 0x80) != 0 ? a << 1 ^ code.field : a << 1)
      if ((b & 1) != 0) product ^= a;
    return product;
  };
  unsigned root = 1;
  unsigned inverse = 1;  // of x: x * inverse = 1
  while (times(2, inverse) != 1) ++inverse;
  std::vector<unsigned> generator = {1};  // the highest power first
  for (size_t j = 0; j < checkBytes; ++j) {
    root = times(root, inverse);
    generator.push_back(0);
    for (size_t i = generator.size() - 1; i > 0; --i) generator[i] ^= times(generator[i - 1], root);
  }
  message.resize(kCodedBlock - checkBytes);
  std::vector<uint8_t> rest = message;
  rest.resize(kCodedBlock);
  for (size_t i = 0; i < message.size(); ++i)
    for (size_t k = 1; rest[i] != 0 && k <= checkBytes; ++k)
      rest[i + k] = static_cast<uint8_t>(rest[i + k] ^ times(rest[i], generator[k]));
  std::copy(message.begin(), message.end(), rest.begin());
  return rest;
}

class PackerR2007 {
 public:
  using Change = std::function<void(std::vector<uint8_t>&)>;
  Change changeHeader = [](auto&) {};
  Change changePageMap = [](auto&) {};
  Change changeSectionMap = [](auto&) {};

  void add(const std::string& name, std::vector<uint8_t> bytes) { m_sections.push_back({name, std::move(bytes)}); }

  [[nodiscard]] std::vector<uint8_t> file() {
    m_pages.clear();
    m_pageMap.clear();
    std::vector<uint8_t> sectionMap = sections();
    changeSectionMap(sectionMap);
    const uint64_t sectionMapId = page(coded(sectionMap, kSystemBlocks));
    page(std::vector<uint8_t>(((m_pageMap.size() + 16 + 8) / kSystemMessage + 1) * kCodedBlock));
    changePageMap(m_pageMap);
    const std::vector<uint8_t> map = coded(m_pageMap, kSystemBlocks);
    std::copy(map.begin(), map.end(), m_pages.end() - static_cast<std::ptrdiff_t>(m_lastSize));
    return head(sectionMapId, m_pageMap.size(), sectionMap.size());
  }

 private:
  static constexpr uint64_t kSystemMessage = kSystemBlocks.messageBytes();
  static constexpr uint64_t kMostPerPage = 0xF800;

  static uint64_t roundUp(uint64_t value, uint64_t step) { return (value + step - 1) / step * step; }

  static void put(std::vector<uint8_t>& out, uint64_t value) {
    for (unsigned i = 0; i < 8; ++i) out.push_back(static_cast<uint8_t>(value >> (8 * i)));
  }
  static void putAt(std::vector<uint8_t>& out, uint64_t at, uint64_t value) {
    for (unsigned i = 0; i < 8; ++i) out[at + i] = static_cast<uint8_t>(value >> (8 * i));
  }

  // Blocks whose bytes take turns.
  static std::vector<uint8_t> coded(const std::vector<uint8_t>& bytes, const BlockCode& code) {
    const uint64_t message = code.messageBytes();
    const uint64_t blocks = std::max<uint64_t>(1, roundUp(roundUp(bytes.size(), 8), message) / message);
    std::vector<uint8_t> out(blocks * kCodedBlock);
    for (uint64_t b = 0; b < blocks; ++b) {
      const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(std::min<uint64_t>(b * message, bytes.size()));
      const auto to = bytes.begin() + static_cast<std::ptrdiff_t>(std::min<uint64_t>((b + 1) * message, bytes.size()));
      const std::vector<uint8_t> block = codedBlock({from, to}, code);
      for (uint64_t i = 0; i < kCodedBlock; ++i) out[b + i * blocks] = block[i];
    }
    return out;
  }

  // Appends a page and gives its number.
  uint64_t page(std::vector<uint8_t> bytes) {
    bytes.resize(roundUp(bytes.size(), 32));
    m_lastSize = bytes.size();
    m_pages.insert(m_pages.end(), bytes.begin(), bytes.end());
    const uint64_t id = m_pageMap.size() / 16 + 1;
    put(m_pageMap, bytes.size());
    put(m_pageMap, id);
    return id;
  }

  std::vector<uint8_t> sections() {
    std::vector<uint8_t> map;
    for (const auto& [name, bytes] : m_sections) {
      const uint64_t pages = roundUp(bytes.size(), kMostPerPage) / kMostPerPage;
      for (const uint64_t value : {uint64_t{bytes.size()}, kMostPerPage, uint64_t{0}, uint64_t{0},
                                   uint64_t{2 * name.size() + 2}, uint64_t{0}, uint64_t{1}, pages})
        put(map, value);
      for (const char c : name + '\0') {
        map.push_back(static_cast<uint8_t>(c));
        map.push_back(0);
      }
      for (uint64_t start = 0; start < bytes.size(); start += kMostPerPage) {
        const uint64_t size = std::min<uint64_t>(kMostPerPage, bytes.size() - start);
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(start);
        const uint64_t id = page(coded({from, from + static_cast<std::ptrdiff_t>(size)}, kDataBlocks));
        for (const uint64_t value : {start, m_lastSize, id, size, size, uint64_t{0}, uint64_t{0}}) put(map, value);
      }
    }
    return map;
  }

  // The plain part, the header of the file and the pages behind it.
  std::vector<uint8_t> head(uint64_t sectionMapId, uint64_t pageMapSize, uint64_t sectionMapSize) {
    std::vector<uint8_t> header(0x110);
    for (const auto& [at, value] :
         std::initializer_list<std::pair<uint64_t, uint64_t>>{{0x18, 1},
                                                              {0x38, m_pages.size() - m_lastSize},
                                                              {0x50, pageMapSize},
                                                              {0x58, pageMapSize},
                                                              {0xB0, sectionMapSize},
                                                              {0xC0, sectionMapId},
                                                              {0xC8, sectionMapSize},
                                                              {0xD8, 1}})
      putAt(header, at, value);
    changeHeader(header);
    std::vector<uint8_t> message(24);
    put(message, static_cast<uint32_t>(-static_cast<int32_t>(header.size())));
    message.insert(message.end(), header.begin(), header.end());
    message.resize(2 * kSystemMessage + 8);  // three blocks
    std::vector<uint8_t> file(0x80);
    std::copy_n("AC1021", 6, file.begin());
    file[19] = 30;  // code page 1252
    const std::vector<uint8_t> blocks = coded(message, kSystemBlocks);
    file.insert(file.end(), blocks.begin(), blocks.end());
    file.resize(0x480);
    file.insert(file.end(), m_pages.begin(), m_pages.end());
    return file;
  }

  std::vector<std::pair<std::string, std::vector<uint8_t>>> m_sections;
  std::vector<uint8_t> m_pages;
  std::vector<uint8_t> m_pageMap;
  uint64_t m_lastSize = 0;
};

// The parts of a drawing as a file of AC1021 has them.
inline PackerR2007 packerOf(GcDbDatabase& database) {
  RecordContext context(database);
  context.version = kR2007;
  context.text = DrawingText(CodePage::Ansi1252, false, Carets::Plain);
  context.byLayer = database.byLayerLinetype();
  context.byBlock = database.byBlockLinetype();
  context.continuous = database.continuousLinetype();
  context.modelSpace = database.modelSpaceId();
  context.paperSpace = database.paperSpaceId();
  const WritePlan plan = planFile(context);
  FileContents contents = makeContents(context);
  std::vector<uint8_t> objects;
  appendRecords(context, plan, contents, objects);
  PackerR2007 packer;
  packer.add("AcDb:Header", contents.header);
  packer.add("AcDb:Classes", contents.classes);
  packer.add("AcDb:Handles", writeObjectMap(contents.map));
  packer.add("AcDb:AcDbObjects", objects);
  return packer;
}

}  // namespace gc::dwg
