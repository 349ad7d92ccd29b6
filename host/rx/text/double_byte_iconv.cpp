#ifndef _WIN32

#include <iconv.h>

#include <cstdint>

#include "host/rx/text/double_byte.h"

namespace gc::platform {
namespace {

const char* iconvName(CodePage page) {
  switch (page) {
    case CodePage::Ansi932: return "CP932";
    case CodePage::Ansi936: return "CP936";
    case CodePage::Ansi949: return "CP949";
    case CodePage::Ansi950: return "CP950";
    case CodePage::Johab: return "JOHAB";
    default: return nullptr;
  }
}

// 0 when the bytes are no complete sequence or give more than one unit.
char16_t decodeOne(iconv_t converter, char* bytes, std::size_t count) {
  std::uint16_t units[4] = {};
  char* in = bytes;
  char* out = reinterpret_cast<char*>(units);
  std::size_t outLeft = sizeof units;
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  if (iconv(converter, &in, &count, &out, &outLeft) == static_cast<std::size_t>(-1)) return 0;
  return count == 0 && outLeft == sizeof units - 2 ? static_cast<char16_t>(units[0]) : u'\0';
}

}  // namespace

bool listDoubleByte(CodePage page, FoundCharacter found, void* context) {
  const char* name = iconvName(page);
  if (!name) return false;
  const iconv_t converter = iconv_open("UTF-16LE", name);
  if (converter == reinterpret_cast<iconv_t>(-1)) return false;
  for (int lead = 0x80; lead <= 0xFF; ++lead) {
    char bytes[2] = {static_cast<char>(lead), 0};
    const char16_t single = decodeOne(converter, bytes, 1);
    if (single) {
      found(context, lead, -1, single);
      continue;
    }
    for (int trail = 0x30; trail <= 0xFF; ++trail) {
      bytes[1] = static_cast<char>(trail);
      const char16_t character = decodeOne(converter, bytes, 2);
      if (character) found(context, lead, trail, character);
    }
  }
  iconv_close(converter);
  return true;
}

}  // namespace gc::platform

#endif
