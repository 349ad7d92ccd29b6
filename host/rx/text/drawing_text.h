// Text as drawing files hold it, and text as the system holds it.
//
// A file before 2007 keeps text in the drawing's code page, with \U+XXXX (four hex digits: a UTF-16 unit) for what the
// page lacks and, in old East Asian drawings, \M+nXXXX (n: 1 = 932, 2 = 950, 3 = 949, 4 = 1361, 5 = 936; XXXX the two
// bytes). From 2007 (AC1021) on files are UTF-8 whatever $DWGCODEPAGE says; where such a text is no UTF-8 the code page
// is tried. %% codes belong to the text and are left alone, and so is \U+XXXX of an ASCII character, which nobody
// writes without a reason (an escaped brace in formatted text, say).
//
// DXF files write a line feed, a carriage return and a tab as ^J, ^M and ^I, and a caret as "^ ". Other control
// characters go out as \U+XXXX; a caret before any other character is just a caret.
// A text that itself holds what would be such an escape goes out with its backslash as \U+005C, which is resolved there
// and nowhere else. Every text encodes to a text that decodes to the same; the zero character ends a text.
#pragma once

#include "host/rx/text/code_page.h"

namespace gc {

enum class Carets { Plain, Escaped };  // DWG and memory; DXF

class DrawingText {
 public:
  // `page` is the code page of the drawing, `utf8` says that the file is of 2007 or later.
  explicit DrawingText(CodePage page = CodePage::Ansi1252, bool utf8 = true, Carets carets = Carets::Escaped)
      : m_page(page == CodePage::None ? CodePage::Ansi1252 : page), m_utf8(utf8), m_carets(carets) {}

  [[nodiscard]] CodePage page() const { return m_page; }
  [[nodiscard]] bool isUtf8() const { return m_utf8; }

  // Replaces `out`. False when bytes were met that mean nothing (kept as stray bytes, utf.h).
  bool decode(std::string_view bytes, GcText& out) const;

  // Appends to `out`. Never fails: what the page lacks is escaped.
  void encode(GcView text, std::string& out) const;

 private:
  CodePage m_page;
  bool m_utf8;
  Carets m_carets;
};

}  // namespace gc
