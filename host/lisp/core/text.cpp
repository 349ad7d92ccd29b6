#include "host/lisp/core/text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace lisp {

namespace {

constexpr uint32_t kReplacement = 0xFFFD;

// Decodes one sequence at `at`; returns its length, 0 when it is broken.
size_t decodeUtf8(std::string_view bytes, size_t at, uint32_t& codePoint) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const uint8_t first = byte(at);
  if (first < 0x80) {
    codePoint = first;
    return 1;
  }
  const size_t length = first >= 0xF0 && first < 0xF5   ? 4
                        : first >= 0xE0 && first < 0xF0 ? 3
                        : first >= 0xC2 && first < 0xE0 ? 2
                                                        : 0;
  if (length == 0 || at + length > bytes.size()) return 0;
  uint32_t value = first & (0x7Fu >> length);
  for (size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0;
    value = value << 6 | (byte(at + i) & 0x3Fu);
  }
  const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
  const bool surrogate = value >= 0xD800 && value < 0xE000;
  if (overlong || surrogate || value > 0x10FFFF) return 0;
  codePoint = value;
  return length;
}

}  // namespace

void appendCodePoint(Text& text, uint32_t codePoint) {
  if (codePoint < 0x10000) {
    text.push_back(static_cast<GCHAR>(codePoint));
  } else {
    text.push_back(static_cast<GCHAR>(0xD800 + ((codePoint - 0x10000) >> 10)));
    text.push_back(static_cast<GCHAR>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
  }
}

void appendAscii(Text& text, std::string_view ascii) {
  for (const char c : ascii) text.push_back(static_cast<GCHAR>(static_cast<unsigned char>(c)));
}

Text fromUtf8(std::string_view utf8) {
  Text text;
  text.reserve(utf8.size());
  for (size_t at = 0; at < utf8.size();) {
    uint32_t codePoint = kReplacement;
    const size_t length = decodeUtf8(utf8, at, codePoint);
    appendCodePoint(text, codePoint);
    at += length ? length : 1;
  }
  return text;
}

bool isValidUtf8(std::string_view bytes) {
  for (size_t at = 0; at < bytes.size();) {
    uint32_t codePoint = 0;
    const size_t length = decodeUtf8(bytes, at, codePoint);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::string toUtf8(TextView text) {
  std::string bytes;
  bytes.reserve(text.size());
  const auto put = [&](uint32_t byte) { bytes.push_back(static_cast<char>(byte)); };
  for (size_t i = 0; i < text.size(); ++i) {
    uint32_t c = static_cast<uint16_t>(text[i]);
    const bool highHalf = c >= 0xD800 && c < 0xDC00;
    if (highHalf && i + 1 < text.size() && (static_cast<uint16_t>(text[i + 1]) & 0xFC00) == 0xDC00) {
      c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<uint16_t>(text[++i]) - 0xDC00u);
    } else if (c >= 0xD800 && c < 0xE000) {
      c = kReplacement;
    }
    if (c < 0x80) {
      put(c);
    } else if (c < 0x800) {
      put(0xC0 | c >> 6), put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      put(0xE0 | c >> 12), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
    } else {
      put(0xF0 | c >> 18), put(0x80 | (c >> 12 & 0x3F)), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
    }
  }
  return bytes;
}

Text fromWindows1252(std::string_view bytes) {
  // 0x80 to 0x9F; the rest of the page is Latin-1. Unassigned bytes keep their value.
  static constexpr uint16_t kUpper[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                          0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
  Text text;
  text.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text.push_back(static_cast<GCHAR>(byte >= 0x80 && byte < 0xA0 ? kUpper[byte - 0x80] : byte));
  }
  return text;
}

GCHAR toUpper(GCHAR unit) {
  const uint32_t c = static_cast<uint16_t>(unit);
  const auto result = [](uint32_t u) { return static_cast<GCHAR>(u); };
  if (c < 0x80) return c >= 'a' && c <= 'z' ? result(c - 32) : unit;
  if (c < 0x100) return c == 0xFF ? result(0x178) : c >= 0xE0 && c != 0xF7 ? result(c - 32) : unit;
  if (c < 0x180) {
    if (c == 0x131) return GC_T('I');
    if (c == 0x17F) return GC_T('S');
    const bool oddIsUpper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    if (c == 0x130 || c == 0x138 || c == 0x149 || c == 0x178) return unit;
    return oddIsUpper ? (c % 2 == 0 ? result(c - 1) : unit) : (c % 2 == 1 ? result(c - 1) : unit);
  }
  if (c >= 0x3B1 && c <= 0x3CB && c != 0x3C2) return result(c - 32);
  if (c == 0x3AC) return result(0x386);
  if (c >= 0x3AD && c <= 0x3AF) return result(c - 37);
  if (c == 0x3CC) return result(0x38C);
  if (c == 0x3CD || c == 0x3CE) return result(c - 63);
  if (c >= 0x430 && c <= 0x44F) return result(c - 32);
  if (c >= 0x450 && c <= 0x45F) return result(c - 80);
  if ((c >= 0x460 && c <= 0x481) || (c >= 0x48A && c <= 0x4BF) || (c >= 0x4D0 && c <= 0x52F)) return result(c & ~1u);
  if (c >= 0x561 && c <= 0x586) return result(c - 48);
  if (c >= 0x1E00 && c <= 0x1EFF && (c < 0x1E96 || c > 0x1E9F)) return result(c & ~1u);
  return unit;
}

GCHAR toLower(GCHAR unit) {
  const uint32_t c = static_cast<uint16_t>(unit);
  const auto result = [](uint32_t u) { return static_cast<GCHAR>(u); };
  if (c < 0x80) return c >= 'A' && c <= 'Z' ? result(c + 32) : unit;
  if (c < 0x100) return c >= 0xC0 && c <= 0xDE && c != 0xD7 ? result(c + 32) : unit;
  if (c == 0x178) return result(0xFF);
  if (c == 0x130) return GC_T('i');
  if (c < 0x180) {
    const bool oddIsUpper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    if (c == 0x138 || c == 0x149 || c == 0x17F) return unit;
    return oddIsUpper ? (c % 2 == 1 ? result(c + 1) : unit) : (c % 2 == 0 ? result(c + 1) : unit);
  }
  if (c >= 0x391 && c <= 0x3AB && c != 0x3A2) return result(c + 32);
  if (c == 0x386) return result(0x3AC);
  if (c >= 0x388 && c <= 0x38A) return result(c + 37);
  if (c == 0x38C) return result(0x3CC);
  if (c == 0x38E || c == 0x38F) return result(c + 63);
  if (c >= 0x410 && c <= 0x42F) return result(c + 32);
  if (c >= 0x400 && c <= 0x40F) return result(c + 80);
  if ((c >= 0x460 && c <= 0x481) || (c >= 0x48A && c <= 0x4BF) || (c >= 0x4D0 && c <= 0x52F)) return result(c | 1u);
  if (c >= 0x531 && c <= 0x556) return result(c + 48);
  if (c >= 0x1E00 && c <= 0x1EFF && (c < 0x1E96 || c > 0x1E9F)) return result(c | 1u);
  return unit;
}

Text upperCase(TextView text) {
  Text out(text);
  for (GCHAR& c : out) c = toUpper(c);
  return out;
}

Text lowerCase(TextView text) {
  Text out(text);
  for (GCHAR& c : out) c = toLower(c);
  return out;
}

bool isLetter(GCHAR unit) {
  const uint32_t c = static_cast<uint16_t>(unit);
  if (c < 0x80) return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
  if (c < 0x100) return c >= 0xC0 ? c != 0xD7 && c != 0xF7 : c == 0xAA || c == 0xB5 || c == 0xBA;
  // Scripts up to Hangul, less the block of general punctuation and symbols.
  return c < 0x2000 || (c >= 0x2C00 && c < 0x2E00) || (c >= 0x3041 && c < 0xD800) || (c >= 0xF900 && c < 0xFE00);
}

bool equalIgnoringCase(TextView a, TextView b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i] != b[i] && toUpper(a[i]) != toUpper(b[i])) return false;
  return true;
}

void appendReal(Text& text, double value) {
  if (value != value) return appendAscii(text, "nan");
  if (value - value != 0) return appendAscii(text, value > 0 ? "inf" : "-inf");
  char buffer[40];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6).ptr;
  const auto digits = std::string_view(buffer, static_cast<size_t>(end - buffer));
  const auto exponent = digits.find('e');
  const auto mantissa = digits.substr(0, exponent);
  appendAscii(text, mantissa);
  if (mantissa.find('.') == std::string_view::npos) appendAscii(text, ".0");
  if (exponent != std::string_view::npos) appendAscii(text, digits.substr(exponent));
}

void appendInteger(Text& text, int64_t value) {
  char buffer[24];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  appendAscii(text, std::string_view(buffer, static_cast<size_t>(end - buffer)));
}

namespace {

// Length of the number at `at`, 0 when there is none. Digits are wanted on one side of the point at least.
size_t numberLength(TextView text, size_t at) {
  const auto peek = [&](size_t i) { return i < text.size() ? text[i] : GCHAR(0); };
  size_t i = at;
  size_t digits = 0;
  if (peek(i) == GC_T('+') || peek(i) == GC_T('-')) ++i;
  while (isDigit(peek(i))) ++i, ++digits;
  if (peek(i) == GC_T('.')) {
    ++i;
    while (isDigit(peek(i))) ++i, ++digits;
  }
  if (digits == 0) return 0;
  if (peek(i) == GC_T('e') || peek(i) == GC_T('E')) {
    size_t j = i + 1;
    if (peek(j) == GC_T('+') || peek(j) == GC_T('-')) ++j;
    if (isDigit(peek(j))) {
      while (isDigit(peek(j))) ++j;
      i = j;
    }
  }
  return i - at;
}

double parseReal(TextView number) {
  std::string ascii;
  for (const GCHAR c : number) ascii.push_back(static_cast<char>(c));
  const size_t skip = ascii[0] == '+' ? 1 : 0;
  double value = 0;
  const auto done = std::from_chars(ascii.data() + skip, ascii.data() + ascii.size(), value);
  if (done.ec != std::errc::result_out_of_range) return value;
  // Out of range: too small gives zero, too large the largest real, so that no infinity enters from text.
  const auto exponent = ascii.find_first_of("eE");
  const bool tiny = exponent != std::string::npos ? ascii[exponent + 1] == '-' : ascii.find('.') != std::string::npos;
  const double large = std::numeric_limits<double>::max();
  return tiny ? 0.0 : ascii[0] == '-' ? -large : large;
}

size_t skipBlanks(TextView text) {
  size_t at = 0;
  while (at < text.size() && (text[at] == GC_T(' ') || (text[at] >= GC_T('\t') && text[at] <= GC_T('\r')))) ++at;
  return at;
}

}  // namespace

double leadingReal(TextView text) {
  const size_t at = skipBlanks(text);
  const size_t length = numberLength(text, at);
  return length ? parseReal(text.substr(at, length)) : 0.0;
}

int32_t leadingInteger(TextView text) {
  size_t at = skipBlanks(text);
  const bool negative = at < text.size() && text[at] == GC_T('-');
  if (at < text.size() && (text[at] == GC_T('-') || text[at] == GC_T('+'))) ++at;
  int64_t value = 0;
  for (; at < text.size() && isDigit(text[at]); ++at)
    if (value <= std::numeric_limits<int32_t>::max()) value = value * 10 + (text[at] - GC_T('0'));
  if (negative) value = -value;
  if (value > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  if (value < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(value);
}

bool wholeReal(TextView text, double& value) {
  const size_t length = numberLength(text, 0);
  if (length == 0 || length != text.size()) return false;
  value = parseReal(text);
  return true;
}

}  // namespace lisp
