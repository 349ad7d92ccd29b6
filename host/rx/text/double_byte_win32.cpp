#ifdef _WIN32

#include <windows.h>

#include "host/rx/text/double_byte.h"

namespace gc::platform {
namespace {

// 0 when the bytes are no complete sequence or give more than one unit.
char16_t decodeOne(UINT page, const char* bytes, int count) {
  wchar_t units[4] = {};
  const int length = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes, count, units, 4);
  return length == 1 ? static_cast<char16_t>(units[0]) : u'\0';
}

}  // namespace

bool listDoubleByte(CodePage page, FoundCharacter found, void* context) {
  const UINT number = static_cast<UINT>(page);
  if (!IsValidCodePage(number)) return false;
  for (int lead = 0x80; lead <= 0xFF; ++lead) {
    char bytes[2] = {static_cast<char>(lead), 0};
    const bool isLead = IsDBCSLeadByteEx(number, static_cast<BYTE>(lead)) != 0;
    if (!isLead) {
      const char16_t single = decodeOne(number, bytes, 1);
      if (single) found(context, lead, -1, single);
      continue;
    }
    for (int trail = 0x30; trail <= 0xFF; ++trail) {
      bytes[1] = static_cast<char>(trail);
      const char16_t character = decodeOne(number, bytes, 2);
      if (character) found(context, lead, trail, character);
    }
  }
  return true;
}

}  // namespace gc::platform

#endif
