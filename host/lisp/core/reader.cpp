#include "host/lisp/core/reader.h"

#include <limits>

namespace lisp {

namespace {

bool isSpace(GCHAR c) { return static_cast<uint16_t>(c) <= 0x20 || static_cast<uint16_t>(c) == 0xFEFF; }

bool endsToken(GCHAR c) {
  return isSpace(c) || c == GC_T('(') || c == GC_T(')') || c == GC_T('\'') || c == GC_T('"') || c == GC_T(';');
}

// An optional sign and digits only.
bool looksInteger(TextView token) {
  size_t i = token[0] == GC_T('+') || token[0] == GC_T('-') ? 1 : 0;
  if (i == token.size()) return false;
  for (; i < token.size(); ++i)
    if (!isDigit(token[i])) return false;
  return true;
}

int hexDigit(GCHAR c) {
  if (isDigit(c)) return c - GC_T('0');
  if (c >= GC_T('a') && c <= GC_T('f')) return c - GC_T('a') + 10;
  if (c >= GC_T('A') && c <= GC_T('F')) return c - GC_T('A') + 10;
  return -1;
}

}  // namespace

Text decodeSource(std::string_view bytes, LegacyDecoder legacy) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return fromUtf8(bytes.substr(3));
  return isValidUtf8(bytes) ? fromUtf8(bytes) : legacy(bytes);
}

LispValue tokenValue(TextView token, SymbolTable& symbols) {
  const bool mayBeNumber = isDigit(token[0]) || token[0] == GC_T('+') || token[0] == GC_T('-') || token[0] == GC_T('.');
  double value = 0;
  if (mayBeNumber && wholeReal(token, value)) {
    const bool fits = value >= std::numeric_limits<int32_t>::min() && value <= std::numeric_limits<int32_t>::max();
    return looksInteger(token) && fits ? LispValue::integer(static_cast<int32_t>(value)) : LispValue::real(value);
  }
  if (equalIgnoringCase(token, GC_T("NIL"))) return LispValue::nil();
  if (token.size() == 1 && (token[0] == GC_T('T') || token[0] == GC_T('t'))) return LispValue::t();
  return LispValue::of(symbols.intern(token));
}

Reader::Reader(TextView text, Heap& heap, SymbolTable& symbols, FormPositions* positions)
    : m_text(text), m_heap(heap), m_symbols(symbols), m_positions(positions), m_quote(symbols.intern("QUOTE")) {}

// LF, CRLF and CR end a line.
void Reader::countLine(size_t at) {
  const GCHAR c = m_text[at];
  if (c == GC_T('\n') || (c == GC_T('\r') && (at + 1 >= m_text.size() || m_text[at + 1] != GC_T('\n')))) {
    ++m_line;
    m_lineStart = at + 1;
  }
}

void Reader::skipBlockComment() {
  m_at += 2;
  while (m_at < m_text.size()) {
    if (m_text[m_at] == GC_T('|') && m_at + 1 < m_text.size() && m_text[m_at + 1] == GC_T(';')) {
      m_at += 2;
      return;
    }
    countLine(m_at++);
  }
}

// Skips white space and comments; false at the end of the text.
bool Reader::skipSpace() {
  while (m_at < m_text.size()) {
    const GCHAR c = m_text[m_at];
    if (isSpace(c)) {
      countLine(m_at++);
    } else if (c == GC_T(';')) {
      if (m_at + 1 < m_text.size() && m_text[m_at + 1] == GC_T('|')) {
        skipBlockComment();
      } else {
        while (m_at < m_text.size() && m_text[m_at] != GC_T('\n') && m_text[m_at] != GC_T('\r')) ++m_at;
      }
    } else {
      return true;
    }
  }
  return false;
}

void Reader::readEscape(Text& out) {
  const GCHAR c = m_text[m_at++];
  switch (c) {
    case GC_T('n'): out.push_back(GC_T('\n')); return;
    case GC_T('r'): out.push_back(GC_T('\r')); return;
    case GC_T('t'): out.push_back(GC_T('\t')); return;
    case GC_T('e'): out.push_back(GCHAR(27)); return;
    default: break;
  }
  if (c >= GC_T('0') && c <= GC_T('7')) {
    uint32_t code = static_cast<uint32_t>(c - GC_T('0'));
    for (int i = 0; i < 2 && m_at < m_text.size() && m_text[m_at] >= GC_T('0') && m_text[m_at] <= GC_T('7'); ++i)
      code = code * 8 + static_cast<uint32_t>(m_text[m_at++] - GC_T('0'));
    if (code) out.push_back(static_cast<GCHAR>(code));
    return;
  }
  if ((c == GC_T('U') || c == GC_T('u')) && m_at + 5 <= m_text.size() && m_text[m_at] == GC_T('+')) {
    uint32_t code = 0;
    bool hex = true;
    for (size_t i = 1; i <= 4; ++i) {
      const int digit = hexDigit(m_text[m_at + i]);
      hex = hex && digit >= 0;
      code = code * 16 + static_cast<uint32_t>(digit & 15);
    }
    if (hex) {
      m_at += 5;
      out.push_back(static_cast<GCHAR>(code));
      return;
    }
  }
  countLine(m_at - 1);
  out.push_back(c);
}

LispValue Reader::readString() {
  const SourcePosition start = here();
  ++m_at;
  Text out;
  while (m_at < m_text.size()) {
    const GCHAR c = m_text[m_at];
    if (c == GC_T('"')) {
      ++m_at;
      return m_heap.string(out);
    }
    if (c == GC_T('\\') && m_at + 1 < m_text.size()) {
      ++m_at;
      readEscape(out);
    } else if (c == GC_T('\r') && m_at + 1 < m_text.size() && m_text[m_at + 1] == GC_T('\n')) {
      ++m_at;  // a line end in a string is one newline, however the file spells it
    } else {
      countLine(m_at++);
      out.push_back(c == GC_T('\r') ? GC_T('\n') : c);
    }
  }
  m_formAt = start;
  fail("malformed string on input");
}

LispValue Reader::readToken() {
  const size_t start = m_at;
  while (m_at < m_text.size() && !endsToken(m_text[m_at])) ++m_at;
  return tokenValue(m_text.substr(start, m_at - start), m_symbols);
}

bool Reader::atLoneDot() const {
  return m_text[m_at] == GC_T('.') && (m_at + 1 == m_text.size() || endsToken(m_text[m_at + 1]));
}

void Reader::readDot() {
  const bool wellPlaced =
      !m_open.empty() && !m_open.back().isQuote && m_open.back().first && m_open.back().dotState == 0;
  if (!wellPlaced) {
    m_formAt = here();
    fail("misplaced dot on input");
  }
  m_open.back().dotState = 1;
  ++m_at;
}

void Reader::append(OpenList& list, LispValue value) {
  if (list.dotState == 2) {
    m_formAt = here();
    fail("misplaced dot on input");
  }
  if (list.dotState == 1) {
    list.last->tail = value;
    list.dotState = 2;
    return;
  }
  Cons* cell = m_heap.cons(value, LispValue::nil()).asCons();
  if (list.last) {
    list.last->tail = LispValue::of(cell);
  } else {
    list.first = cell;
    if (m_positions) m_positions->set(cell, list.at);
  }
  list.last = cell;
}

LispValue Reader::close() {
  const OpenList list = m_open.back();
  m_open.pop_back();
  if (list.dotState == 1) {
    m_formAt = here();
    fail("misplaced dot on input");
  }
  return list.first ? LispValue::of(list.first) : LispValue::nil();
}

// Puts a finished value where it belongs; true when it is the whole form.
bool Reader::deliver(LispValue value, LispValue& form) {
  while (!m_open.empty() && m_open.back().isQuote) {
    append(m_open.back(), value);
    value = close();
  }
  if (m_open.empty()) {
    form = value;
    return true;
  }
  append(m_open.back(), value);
  return false;
}

bool Reader::next(LispValue& form) {
  m_open.clear();
  if (m_positions) m_positions->clear();
  bool started = false;
  while (skipSpace()) {
    if (!started) m_formAt = here();
    started = true;
    const GCHAR c = m_text[m_at];
    LispValue value;
    if (c == GC_T('(')) {
      push({.at = here()});
      ++m_at;
      continue;
    }
    if (c == GC_T('\'')) {
      push({.isQuote = true, .at = here()});
      append(m_open.back(), LispValue::of(m_quote));
      ++m_at;
      continue;
    }
    if (c == GC_T(')')) {
      if (m_open.empty() || m_open.back().isQuote) {
        m_formAt = here();
        ++m_at;
        fail("extra right paren on input");
      }
      ++m_at;
      value = close();
    } else if (c == GC_T('"')) {
      value = readString();
    } else if (atLoneDot()) {
      readDot();
      continue;
    } else {
      value = readToken();
    }
    if (deliver(value, form)) return true;
  }
  if (!m_open.empty()) {
    m_formAt = m_open.front().at;
    fail("malformed list on input");
  }
  return false;
}

}  // namespace lisp
