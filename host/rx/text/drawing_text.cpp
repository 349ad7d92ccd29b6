#include "host/rx/text/drawing_text.h"

#include <cstdint>
#include <cstring>

#include "host/rx/text/widen.h"

namespace gc {
namespace {

// True when the bytes are the text as it stands: ASCII without escapes.
bool isPlainAscii(std::string_view bytes) {
  const char* at = bytes.data();
  std::size_t left = bytes.size();
#if defined(__SSE2__)
  const __m128i backslash = _mm_set1_epi8('\\'), caret = _mm_set1_epi8('^');
  for (; left >= 16; at += 16, left -= 16) {
    const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
    const __m128i escapes = _mm_or_si128(_mm_cmpeq_epi8(sixteen, backslash), _mm_cmpeq_epi8(sixteen, caret));
    if (_mm_movemask_epi8(_mm_or_si128(escapes, sixteen))) return false;
  }
#endif
  for (; left; ++at, --left) {
    if (static_cast<unsigned char>(*at) >= 0x80 || *at == '\\' || *at == '^') return false;
  }
  return true;
}

// The value of four hex digits at `at`, or -1.
int hex4(const GCHAR* at) {
  int value = 0;
  for (int i = 0; i < 4; ++i) {
    const GCHAR c = at[i];
    const int digit = c >= '0' && c <= '9'   ? c - '0'
                      : c >= 'A' && c <= 'F' ? c - 'A' + 10
                      : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                             : -1;
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

constexpr std::size_t kUnicodeEscape = 7;    // \U+XXXX
constexpr std::size_t kMultiByteEscape = 8;  // \M+nXXXX
constexpr int kBackslash = 0x5C;

bool standsForCharacter(int value) { return value >= 0x80 || (value > 0 && value < 0x20); }

// The character of \M+nXXXX whose n is at `at`; 0 when it is none.
GCHAR multiByteEscape(const GCHAR* at) {
  constexpr CodePage kPages[] = {CodePage::Ansi932, CodePage::Ansi950, CodePage::Ansi949, CodePage::Johab,
                                 CodePage::Ansi936};
  if (at[0] < '1' || at[0] > '5') return 0;
  const int value = hex4(at + 1);
  if (value < 0x80) return 0;
  char bytes[2] = {static_cast<char>(value >> 8), static_cast<char>(value)};
  const std::string_view used = value > 0xFF ? std::string_view(bytes, 2) : std::string_view(bytes + 1, 1);
  GcText character;
  const bool known = appendDecoded(kPages[at[0] - '1'], used, character);
  return known && character.size() == 1 ? character[0] : GCHAR(0);
}

// What stands at a backslash: the character it resolves to and the units it takes; the backslash itself otherwise.
struct Escape {
  GCHAR character;
  std::size_t length;
};

// An escaped backslash counts only before what would be an escape of its own: that is how such a text is kept.
Escape escapeAt(GcView text) {
  const Escape none{'\\', 1};
  if (text.size() < kUnicodeEscape || text[2] != '+') return none;
  const GCHAR kind = text[1];
  if (kind == 'U' || kind == 'u') {
    const int value = hex4(&text[3]);
    if (standsForCharacter(value)) return {static_cast<GCHAR>(value), kUnicodeEscape};
    const GCHAR after = text.size() > kUnicodeEscape + 1 && text[kUnicodeEscape + 1] == '+' ? text[kUnicodeEscape] : 0;
    const bool escapesNext = after == 'U' || after == 'u' || after == 'M' || after == 'm';
    return value == kBackslash && escapesNext ? Escape{'\\', kUnicodeEscape} : none;
  }
  if ((kind == 'M' || kind == 'm') && text.size() >= kMultiByteEscape) {
    if (const GCHAR character = multiByteEscape(&text[3])) return {character, kMultiByteEscape};
  }
  return none;
}

GCHAR caretEscape(GCHAR after) {
  switch (after) {
    case 'I': return '\t';
    case 'J': return '\n';
    case 'M': return '\r';
    case ' ': return '^';
    default: return 0;
  }
}

// Resolves the escapes in place. The text never grows.
void resolveEscapes(GcText& text, Carets carets) {
  std::size_t to = 0;
  const std::size_t size = text.size();
  for (std::size_t from = 0; from < size;) {
    const GCHAR unit = text[from];
    GCHAR resolved = unit;
    std::size_t used = 1;
    if (unit == '\\') {
      const Escape escape = escapeAt(GcView(text).substr(from));
      resolved = escape.character;
      used = escape.length;
    } else if (unit == '^' && carets == Carets::Escaped && from + 1 < size) {
      const GCHAR character = caretEscape(text[from + 1]);
      if (character) resolved = character, used = 2;
    }
    text[to++] = resolved;
    from += used;
  }
  text.resize(to);
}

void appendUnicodeEscape(GCHAR unit, std::string& out) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const char escape[kUnicodeEscape] = {
      '\\', 'U', '+', kDigits[unit >> 12], kDigits[unit >> 8 & 15], kDigits[unit >> 4 & 15], kDigits[unit & 15]};
  out.append(escape, kUnicodeEscape);
}

// False when `unit` is to be written as it is.
bool appendCaretEscape(GCHAR unit, std::string& out) {
  switch (unit) {
    case '\t': out += "^I"; return true;
    case '\n': out += "^J"; return true;
    case '\r': out += "^M"; return true;
    case '^': out += "^ "; return true;
    default: return false;
  }
}

// How many of the first units are written as they are.
std::size_t plainPrefix(GcView text) {
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i caret = _mm_set1_epi16('^'), backslash = _mm_set1_epi16('\\');
  const __m128i highest = _mm_set1_epi16(0x7F), lowest = _mm_set1_epi16(0x20);
  for (; i + 8 <= text.size(); i += 8) {
    const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + i));
    // Signed comparisons: units from 0x8000 on count as negative, that is as too low.
    const __m128i outside = _mm_or_si128(_mm_cmpgt_epi16(eight, highest), _mm_cmplt_epi16(eight, lowest));
    const __m128i escapes = _mm_or_si128(_mm_cmpeq_epi16(eight, caret), _mm_cmpeq_epi16(eight, backslash));
    if (_mm_movemask_epi8(_mm_or_si128(outside, escapes))) break;
  }
#endif
  while (i < text.size() && text[i] >= 0x20 && text[i] < 0x80 && text[i] != '^' && text[i] != '\\') ++i;
  return i;
}

}  // namespace

bool DrawingText::decode(std::string_view bytes, GcText& out) const {
  if (isPlainAscii(bytes)) {
    out.resize(bytes.size());
    widen(bytes.data(), bytes.size(), out.data());
    return true;
  }
  out.clear();
  const bool asUtf8 = m_utf8 && gc::isUtf8(bytes);
  const bool known = appendDecoded(asUtf8 ? CodePage::Utf8 : m_page, bytes, out) && asUtf8 == m_utf8;
  resolveEscapes(out, m_carets);
  return known;
}

void DrawingText::encode(GcView text, std::string& out) const {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t plain = plainPrefix(text.substr(at));
    appendNarrowed(text.substr(at, plain), out);
    at += plain;
    if (at == text.size()) break;
    const GCHAR unit = text[at++];
    if (unit == 0) break;
    if (unit == '\\') {
      if (escapeAt(text.substr(at - 1)).length > 1)
        appendUnicodeEscape(unit, out);
      else
        out.push_back('\\');
    } else if (unit < 0x80) {
      if (m_carets == Carets::Escaped && appendCaretEscape(unit, out)) continue;
      if (m_carets == Carets::Escaped && unit < 0x20) {
        appendUnicodeEscape(unit, out);
      } else {
        out.push_back(static_cast<char>(unit));
      }
    } else if (!m_utf8) {
      if (!appendEncoded(m_page, unit, out)) appendUnicodeEscape(unit, out);
    } else if (isHighSurrogate(unit) && at < text.size() && isLowSurrogate(text[at])) {
      appendToUtf8(text.substr(at - 1, 2), out);
      ++at;
    } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
      appendUnicodeEscape(unit, out);
    } else {
      appendToUtf8(text.substr(at - 1, 1), out);
    }
  }
}

}  // namespace gc
