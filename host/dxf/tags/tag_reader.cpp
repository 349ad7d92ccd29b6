#include "host/dxf/tags/tag_reader.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace gc::dxf {
namespace {

constexpr std::size_t kSentinelSize = sizeof kBinarySentinel;
constexpr unsigned char kLongCodeMark = 255;  // before a two-byte code in files with one-byte codes
constexpr int kMaxCode = 32767;

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

std::size_t markSize(std::string_view file) { return file.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0; }

// The byte that ends lines: LF, unless the first line ends with a CR that no LF follows.
char lineEndOf(std::string_view file) {
  const std::size_t first = file.find_first_of("\r\n");
  if (first == std::string_view::npos || file[first] == '\n') return '\n';
  const std::size_t after = file.find_first_not_of('\r', first);
  const bool doubled = after == std::string_view::npos ? false : file[after] == '\n';
  return doubled ? '\n' : '\r';
}

// A name as records have: a letter, a digit or '*' first, printable throughout.
bool isRecordName(std::string_view name) {
  if (name.size() < 2 || name.size() > 255) return false;
  const char first = name.front();
  const bool starts = (first >= 'A' && first <= 'Z') || isDigit(first) || first == '_';
  if (!starts) return false;
  bool letters = false;
  for (const char c : name) {
    const bool upper = c >= 'A' && c <= 'Z';
    if (!upper && !isDigit(c) && c != '_' && c != '-' && c != '$' && !(c >= 'a' && c <= 'z')) return false;
    letters |= upper;
  }
  return letters;
}

// A carriage return before the text is none of the line's: where codes are read it makes the line no code either.
std::string_view trimmed(const char* from, const char* to) {
  while (from < to && isBlank(*from)) ++from;
  while (to > from && (isBlank(to[-1]) || to[-1] == '\r')) --to;
  return {from, static_cast<std::size_t>(to - from)};
}

// The size of a binary value at `at`: bytes before it (a length), the value, bytes after it (a zero).
struct Extent {
  std::size_t before, size, after;
  bool fits;
};

Extent extentOf(ValueKind kind, const char* at, std::size_t left) {
  const auto fixed = [left](std::size_t size) { return Extent{0, size, 0, size <= left}; };
  switch (kind) {
    case ValueKind::Real: return fixed(8);
    case ValueKind::Int16: return fixed(2);
    case ValueKind::Int32: return fixed(4);
    case ValueKind::Int64: return fixed(8);
    case ValueKind::Bool: return fixed(1);
    case ValueKind::Binary: {
      if (left == 0) return {0, 0, 0, false};
      const std::size_t size = static_cast<unsigned char>(*at);
      return {1, size, 0, 1 + size <= left};
    }
    case ValueKind::String:
    case ValueKind::Handle: break;
  }
  const void* zero = left ? std::memchr(at, 0, left) : nullptr;
  if (!zero) return {0, 0, 0, false};
  return {0, static_cast<std::size_t>(static_cast<const char*>(zero) - at), 1, true};
}

}  // namespace

FileForm formOf(std::string_view file) {
  if (file.size() < kSentinelSize || std::memcmp(file.data(), kBinarySentinel, kSentinelSize) != 0) {
    return FileForm::Ascii;
  }
  // The first tag is 0 or 999: two-byte codes begin 00 00 or E7 03, one-byte codes 00 and a letter or FF.
  const std::string_view codes = file.substr(kSentinelSize, 2);
  if (codes.size() == 2 && (codes == std::string_view("\0\0", 2) || codes == "\xE7\x03")) return FileForm::Binary16;
  return FileForm::Binary8;
}

TagReader::TagReader(std::string_view file)
    : m_begin(file.data()), m_end(file.data() + file.size()), m_form(formOf(file)) {
  m_at = m_last = m_begin + (m_form == FileForm::Ascii ? markSize(file) : kSentinelSize);
  if (m_form == FileForm::Ascii) m_lineEnd = lineEndOf(file);
}

void TagReader::moveTo(std::size_t offset) {
  m_at = m_last = m_begin + std::min(offset, static_cast<std::size_t>(m_end - m_begin));
}

ReadStatus TagReader::next(Tag& tag) { return m_form == FileForm::Ascii ? nextAscii(tag) : nextBinary(tag); }

ReadStatus TagReader::fail(ReadStatus status, const char* at) {
  m_errorOffset = static_cast<std::size_t>(at - m_begin);
  return status;
}

// The line end at or after `from`, or the end of the file. Most lines are short.
inline const char* TagReader::lineEnd(const char* from) const {
#if defined(__SSE2__)
  const __m128i wanted = _mm_set1_epi8(m_lineEnd);
  while (m_end - from >= 16) {
    const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const int found = _mm_movemask_epi8(_mm_cmpeq_epi8(sixteen, wanted));
    if (found) return from + __builtin_ctz(static_cast<unsigned>(found));
    from += 16;
  }
#endif
  const void* end = from < m_end ? std::memchr(from, m_lineEnd, static_cast<std::size_t>(m_end - from)) : nullptr;
  return end ? static_cast<const char*>(end) : m_end;
}

ReadStatus TagReader::nextAscii(Tag& tag) {
  const char* at = m_at;
  while (at < m_end && isBlank(*at)) ++at;
  const char* digits = at;
  int code = 0;
  const bool negative = at < m_end && *at == '-';
  at += negative;
  const char* firstDigit = at;
  for (; at < m_end && isDigit(*at) && code <= kMaxCode; ++at) code = code * 10 + (*at - '0');
  const bool hasDigits = at > firstDigit;
  while (at < m_end && (isBlank(*at) || (*at == '\r' && m_lineEnd == '\n'))) ++at;
  if (!hasDigits || code > kMaxCode || (at < m_end && *at != m_lineEnd)) {
    constexpr char kBlanksAndEndMark[] = " \t\r\n\x1A";
    const std::string_view rest(m_at, static_cast<std::size_t>(m_end - m_at));
    if (rest.find_first_not_of(std::string_view(kBlanksAndEndMark, 5)) == std::string_view::npos)
      return ReadStatus::End;
    return fail(digits == m_end ? ReadStatus::Truncated : ReadStatus::BadCode, m_at);
  }
  if (at == m_end || at + 1 == m_end) return fail(ReadStatus::Truncated, m_at);
  const char* value = at + 1;
  const char* end = lineEnd(value);
  const char* valueEnd = end;
  while (valueEnd > value && valueEnd[-1] == '\r') --valueEnd;
  tag.code = negative ? -code : code;
  tag.kind = valueKind(tag.code);
  tag.isBinaryFile = false;
  tag.raw = {value, static_cast<std::size_t>(valueEnd - value)};
  tag.offset = static_cast<std::size_t>(m_at - m_begin);
  m_last = m_at;
  m_at = end < m_end ? end + 1 : end;
  return ReadStatus::Tag;
}

ReadStatus TagReader::nextBinary(Tag& tag) {
  const char* at = m_at;
  const auto left = [&] { return static_cast<std::size_t>(m_end - at); };
  if (left() == 0) return ReadStatus::End;
  const auto byte = [&at](int i) { return static_cast<unsigned char>(at[i]); };
  int code = byte(0);
  if (m_form == FileForm::Binary8) {
    at += 1;
    if (code == kLongCodeMark) {
      if (left() < 2) return fail(ReadStatus::Truncated, m_at);
      code = byte(0) | byte(1) << 8;
      at += 2;
    }
  } else {
    if (left() < 2) return fail(ReadStatus::Truncated, m_at);
    code |= byte(1) << 8;
    at += 2;
  }
  if (code > kLastGroupCode) return fail(ReadStatus::BadCode, m_at);
  const ValueKind kind = valueKind(code);
  const Extent extent = extentOf(kind, at, left());
  if (!extent.fits) return fail(ReadStatus::Truncated, m_at);
  tag.code = code;
  tag.kind = kind;
  tag.isBinaryFile = true;
  tag.raw = {at + extent.before, extent.size};
  tag.offset = static_cast<std::size_t>(m_at - m_begin);
  m_last = m_at;
  m_at = at + extent.before + extent.size + extent.after;
  return ReadStatus::Tag;
}

bool TagReader::skipLine() {
  const char* end = lineEnd(m_at);
  if (m_form != FileForm::Ascii || end == m_end) return false;
  m_at = m_last = end + 1;
  return true;
}

bool TagReader::skipToRecord() { return m_form == FileForm::Ascii ? skipToAsciiRecord() : skipToBinaryRecord(); }

bool TagReader::skipToAsciiRecord() {
  const char* line = m_at;
  const char* end = lineEnd(line);
  while (end < m_end) {
    const char* next = end + 1;
    const char* nextEnd = lineEnd(next);
    if (trimmed(line, end) == "0" && isRecordName(trimmed(next, nextEnd))) {
      m_at = m_last = line;
      return true;
    }
    line = next;
    end = nextEnd;
  }
  m_at = m_last = m_end;
  return false;
}

bool TagReader::skipToBinaryRecord() {
  const std::size_t codeSize = m_form == FileForm::Binary8 ? 1 : 2;
  for (const char* at = m_at; m_end - at > static_cast<std::ptrdiff_t>(codeSize); ++at) {
    if (at[0] != 0 || at[codeSize - 1] != 0) continue;
    const char* name = at + codeSize;
    const auto room = std::min<std::size_t>(static_cast<std::size_t>(m_end - name), 256);
    const void* zero = std::memchr(name, 0, room);
    if (zero && isRecordName({name, static_cast<std::size_t>(static_cast<const char*>(zero) - name)})) {
      m_at = m_last = at;
      return true;
    }
  }
  m_at = m_last = m_end;
  return false;
}

std::size_t TagReader::lineAt(std::size_t offset) {
  if (m_form != FileForm::Ascii) return 0;
  offset = std::min(offset, static_cast<std::size_t>(m_end - m_begin));
  if (offset < m_countedTo) m_countedTo = m_lines = 0;
  m_lines += static_cast<std::size_t>(std::count(m_begin + m_countedTo, m_begin + offset, m_lineEnd));
  m_countedTo = offset;
  return m_lines + 1;
}

bool TagReader::lastLineIsOpen() const {
  return m_form == FileForm::Ascii && m_end > m_begin && m_end[-1] != m_lineEnd && m_end[-1] != '\x1A';
}

}  // namespace gc::dxf
