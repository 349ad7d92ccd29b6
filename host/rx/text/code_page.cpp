#include "host/rx/text/code_page.h"

#include <array>
#include <memory>
#include <mutex>

#include "host/rx/text/double_byte.h"
#include "host/rx/text/widen.h"

namespace gc {
namespace {

struct SingleByteTable {
  int page;
  std::uint16_t upperHalf[128];  // 0: no character
};

constexpr SingleByteTable kSingleByteTables[] = {
#include "host/rx/text/single_byte_tables.inc"
};

constexpr std::uint16_t kIsLead = 0xFFFF;  // no character: the byte begins a pair

// Both directions of one page, made when the page is first used and kept.
struct PageMap {
  std::array<std::uint16_t, 128> single{};   // of bytes 0x80..0xFF; 0: none
  std::unique_ptr<std::uint16_t[]> pairs;    // [(lead - 0x80) * 256 + trail]; 0: none; null for single-byte pages
  std::array<std::uint16_t, 65536> bytes{};  // of a character: one byte, or lead << 8 | trail; 0: none

  void addSingle(int byte, std::uint16_t character) {
    single[byte - 0x80] = character;
    if (!bytes[character]) bytes[character] = static_cast<std::uint16_t>(byte);
  }
  void addPair(int lead, int trail, std::uint16_t character) {
    single[lead - 0x80] = kIsLead;
    pairs[(lead - 0x80) * 256 + trail] = character;
    if (!bytes[character]) bytes[character] = static_cast<std::uint16_t>(lead << 8 | trail);
  }
};

void fillSingleByte(const SingleByteTable& table, PageMap& map) {
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    const std::uint16_t character = table.upperHalf[byte - 0x80];
    if (character) {
      map.addSingle(byte, character);
    } else if (byte <= 0x9F) {
      map.addSingle(byte, static_cast<std::uint16_t>(byte));
    }
  }
}

void fillDoubleByte(CodePage page, PageMap& map) {
  map.pairs = std::make_unique<std::uint16_t[]>(128 * 256);
  platform::listDoubleByte(
      page,
      [](void* context, int lead, int trail, char16_t character) {
        if (character < 0x80) return;  // ASCII has its own byte in every page
        auto& target = *static_cast<PageMap*>(context);
        if (trail < 0) {
          target.addSingle(lead, character);
        } else {
          target.addPair(lead, trail, character);
        }
      },
      &map);
}

std::unique_ptr<const PageMap> makeMap(CodePage page) {
  auto map = std::make_unique<PageMap>();
  for (const SingleByteTable& table : kSingleByteTables) {
    if (table.page == static_cast<int>(page)) {
      fillSingleByte(table, *map);
      return map;
    }
  }
  if (page != CodePage::Ascii) fillDoubleByte(page, *map);
  return map;
}

// Maps are made once and live as long as the process. ASCII and pages nobody knows have an empty one.
const PageMap& mapOf(CodePage page) {
  struct Slot {
    std::once_flag once;
    std::unique_ptr<const PageMap> map;
  };
  constexpr CodePage kDoubleByte[] = {CodePage::Ansi932, CodePage::Ansi936, CodePage::Ansi949, CodePage::Ansi950,
                                      CodePage::Johab};
  static std::array<Slot, std::size(kSingleByteTables) + std::size(kDoubleByte) + 1> slots;
  std::size_t index = 0;
  for (const SingleByteTable& table : kSingleByteTables) {
    if (table.page == static_cast<int>(page)) break;
    ++index;
  }
  if (index == std::size(kSingleByteTables)) {
    for (const CodePage wide : kDoubleByte) {
      if (wide == page) break;
      ++index;
    }
  }
  const bool known = index + 1 < slots.size();
  Slot& slot = slots[index];
  std::call_once(slot.once, [&] { slot.map = makeMap(known ? page : CodePage::Ascii); });
  return *slot.map;
}

}  // namespace

bool appendDecoded(CodePage page, std::string_view bytes, GcText& out) {
  if (page == CodePage::Utf8) return appendFromUtf8(bytes, out);
  bool known = true;
  const PageMap* map = nullptr;
  std::size_t at = 0;
  while (at < bytes.size()) {
    const std::size_t ascii = asciiPrefix(bytes.substr(at));
    appendWidened(bytes.substr(at, ascii), out);
    at += ascii;
    if (at < bytes.size() && !map) map = &mapOf(page);
    for (; at < bytes.size() && static_cast<unsigned char>(bytes[at]) >= 0x80; ++at) {
      const auto byte = static_cast<unsigned char>(bytes[at]);
      std::uint16_t character = map->single[byte - 0x80];
      if (character == kIsLead) {
        character = 0;
        if (at + 1 < bytes.size()) {
          character = map->pairs[(byte - 0x80) * 256 + static_cast<unsigned char>(bytes[at + 1])];
        }
        if (character) ++at;
      }
      known &= character != 0;
      out.push_back(character ? static_cast<GCHAR>(character) : strayByte(byte));
    }
  }
  return known;
}

bool appendEncoded(CodePage page, GCHAR unit, std::string& out) {
  if (unit < 0x80) {
    out.push_back(static_cast<char>(unit));
    return true;
  }
  const PageMap& map = mapOf(page);
  if (isStrayByte(unit)) {
    const int byte = unit - 0xDC00;
    if (map.single[byte - 0x80] != 0) return false;  // would be read as a character, or as the lead of the next byte
    out.push_back(static_cast<char>(byte));
    return true;
  }
  const std::uint16_t bytes = map.bytes[unit];
  if (!bytes) return false;
  if (bytes > 0xFF) out.push_back(static_cast<char>(bytes >> 8));
  out.push_back(static_cast<char>(bytes & 0xFF));
  return true;
}

}  // namespace gc
