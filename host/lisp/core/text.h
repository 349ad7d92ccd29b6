// UTF-16 text, its conversions and character classes. Nothing here follows the locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "rx/gcchar.h"

namespace lisp {

using Text = std::basic_string<GCHAR>;
using TextView = std::basic_string_view<GCHAR>;

// ASCII or UTF-8 to UTF-16; broken sequences become U+FFFD.
Text fromUtf8(std::string_view utf8);
// UTF-16 to UTF-8; unpaired surrogates become U+FFFD.
std::string toUtf8(TextView text);
bool isValidUtf8(std::string_view bytes);
// Bytes of code page 1252 to UTF-16.
Text fromWindows1252(std::string_view bytes);

// Appends a code point as one or two units.
void appendCodePoint(Text& text, uint32_t codePoint);
// Appends pure ASCII.
void appendAscii(Text& text, std::string_view ascii);

// Case of single units: ASCII, Latin, Greek, Cyrillic, Armenian. Other units are returned unchanged.
GCHAR toUpper(GCHAR c);
GCHAR toLower(GCHAR c);
Text upperCase(TextView text);
Text lowerCase(TextView text);
bool isLetter(GCHAR c);
inline bool isDigit(GCHAR c) { return c >= GC_T('0') && c <= GC_T('9'); }
bool equalIgnoringCase(TextView a, TextView b);

// Six significant digits, always with a point: 1.0, 0.1, 1.0e+06.
void appendReal(Text& text, double value);
void appendInteger(Text& text, int64_t value);
// Reads the longest number at the start of `text` (leading blanks allowed); 0 when there is none.
double leadingReal(TextView text);
int32_t leadingInteger(TextView text);
// The whole of `text` as a number in the form [sign] digits [. digits] [e [sign] digits]; false when it is none.
bool wholeReal(TextView text, double& value);

}  // namespace lisp
