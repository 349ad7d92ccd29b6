// Turns program text into values, form by form. Nesting is bounded by memory alone.
// Errors: LispError with the dialect's messages; position() then tells where the broken form began or the culprit lies.
#pragma once

#include "host/lisp/core/error.h"
#include "host/lisp/core/form_positions.h"
#include "host/lisp/core/symbols.h"

namespace lisp {

// Bytes of a program file as text: UTF-8 with or without mark; anything else goes through `legacy`.
using LegacyDecoder = Text (*)(std::string_view bytes);
Text decodeSource(std::string_view bytes, LegacyDecoder legacy = fromWindows1252);

class Reader {
 public:
  // `text` must outlive the reader. `positions` may be null; it is filled anew for each form.
  Reader(TextView text, Heap& heap, SymbolTable& symbols, FormPositions* positions = nullptr);

  // Reads the next form; false at the end of the text.
  bool next(LispValue& form);
  // Line and column of the form read last, or of the error.
  SourcePosition position() const { return m_formAt; }
  // Offset of the first unit not yet read.
  size_t offset() const { return m_at; }

 private:
  struct OpenList {
    Cons* first = nullptr;
    Cons* last = nullptr;
    bool isQuote = false;  // 'x under way: closed by the next value
    uint8_t dotState = 0;  // 1: dot read, tail wanted; 2: tail read
    SourcePosition at;
  };

  bool skipSpace();
  void skipBlockComment();
  SourcePosition here() const { return {m_line, static_cast<uint32_t>(m_at - m_lineStart) + 1}; }
  void countLine(size_t at);
  LispValue readString();
  void readEscape(Text& out);
  LispValue readToken();
  void push(OpenList list) { m_open.push_back(list); }
  bool deliver(LispValue value, LispValue& form);
  void append(OpenList& list, LispValue value);
  LispValue close();
  void readDot();
  bool atLoneDot() const;

  TextView m_text;
  Heap& m_heap;
  SymbolTable& m_symbols;
  FormPositions* m_positions;
  Symbol* m_quote;
  std::vector<OpenList> m_open;
  size_t m_at = 0;
  size_t m_lineStart = 0;
  uint32_t m_line = 1;
  SourcePosition m_formAt;
};

// The value of a token that is no list or string: a number if all of it parses as one, else a symbol.
LispValue tokenValue(TextView token, SymbolTable& symbols);

}  // namespace lisp
