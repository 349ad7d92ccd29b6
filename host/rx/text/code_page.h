// The code pages in which drawings before 2007 keep their text, and the names and numbers files use for them.
//
// A code page maps each character to one or two bytes; bytes below 0x80 are ASCII in all of them. Bytes without a
// meaning are carried as stray bytes (utf.h), except 0x80..0x9F of the single-byte pages, which become the control
// characters of the same number, as Windows has it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/rx/text/utf.h"

namespace gc {

// The value is the usual (Windows) number of the page.
enum class CodePage : std::uint16_t {
  None = 0,
  Dos437 = 437,
  Dos737 = 737,
  Dos775 = 775,
  Dos850 = 850,
  Dos852 = 852,
  Dos855 = 855,
  Dos857 = 857,
  Dos858 = 858,
  Dos860 = 860,
  Dos861 = 861,
  Dos862 = 862,
  Dos863 = 863,
  Dos864 = 864,
  Dos865 = 865,
  Dos866 = 866,
  Dos869 = 869,
  Ansi874 = 874,
  Ansi932 = 932,
  Ansi936 = 936,
  Ansi949 = 949,
  Ansi950 = 950,
  Ansi1250 = 1250,
  Ansi1251,
  Ansi1252,
  Ansi1253,
  Ansi1254,
  Ansi1255,
  Ansi1256,
  Ansi1257,
  Ansi1258,
  Johab = 1361,
  Macintosh = 10000,
  Ascii = 20127,
  Iso8859_1 = 28591,
  Iso8859_2,
  Iso8859_3,
  Iso8859_4,
  Iso8859_5,
  Iso8859_6,
  Iso8859_7,
  Iso8859_8,
  Iso8859_9,
  Utf16 = 1200,
  Utf8 = 65001,
};

// "ANSI_1250", "dos852", "ISO8859-2", "KSC5601", "UTF-8" ...: letter case, '-', '_' and blanks do not count.
// CodePage::None for a name nobody knows.
[[nodiscard]] CodePage codePageByName(std::string_view name);
[[nodiscard]] CodePage codePageByName(GcView name);

// The name a drawing's $DWGCODEPAGE uses, "ANSI_1252" for None.
[[nodiscard]] const char* codePageName(CodePage page);

// The number by which a DWG file's header names a page (30: ANSI_1252), and back; 0 and None when there is none.
[[nodiscard]] CodePage codePageByDwgNumber(int number);
[[nodiscard]] int dwgNumberOf(CodePage page);

// Appends. False when bytes had no meaning in the page (they are kept as stray bytes).
bool appendDecoded(CodePage page, std::string_view bytes, GcText& out);

// Appends the bytes of `unit` in `page` to `out`; false, and nothing appended, when the page lacks it. A stray byte
// is lacking where the page gives that byte a meaning or makes it the first of two.
// Not for Utf8 and Utf16, whose characters may take more than one unit.
bool appendEncoded(CodePage page, GCHAR unit, std::string& out);

}  // namespace gc
