#include "host/gi/mtext_tokens.h"

#include <charconv>
#include <numbers>
#include <string>

#include "host/gi/textline.h"
#include "host/rx/text/drawing_text.h"

namespace {

// Values of codes are short ASCII; anything longer is no number.
double toNumber(GcView text, double fallback) {
  std::string ascii;
  for (const GCHAR unit : text) {
    if (unit > 126 || ascii.size() > 40) return fallback;
    if (unit != GC_T(' ') && unit != GC_T('+')) ascii.push_back(static_cast<char>(unit));
  }
  double value = 0;
  const auto [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), value);
  return error == std::errc() && end != ascii.data() ? value : fallback;
}

int hexDigit(GCHAR unit) {
  if (unit >= GC_T('0') && unit <= GC_T('9')) return unit - GC_T('0');
  const GCHAR lower = gcLower(unit);
  return lower >= GC_T('a') && lower <= GC_T('f') ? lower - GC_T('a') + 10 : -1;
}

class Tokenizer {
 public:
  Tokenizer(GcView contents, const GcGiMTextLook& start) : m_rest(contents), m_unit(start.height), m_look(start) {}

  std::vector<GcGiMTextToken> run() {
    while (!m_rest.empty()) {
      const GCHAR unit = take();
      if (unit == GC_T('\\') && !m_rest.empty()) {
        code();
      } else if (unit == GC_T('{')) {
        flush();
        m_scopes.push_back(m_look);
      } else if (unit == GC_T('}') && !m_scopes.empty()) {
        flush();
        m_look = m_scopes.back();
        m_scopes.pop_back();
      } else {
        plain(unit);
      }
    }
    flush();
    return std::move(m_tokens);
  }

 private:
  GCHAR take() {
    const GCHAR unit = m_rest.front();
    m_rest.remove_prefix(1);
    return unit;
  }
  // The value of a code, up to its semicolon.
  GcView value() {
    const std::size_t end = m_rest.find(GC_T(';'));
    const GcView found = m_rest.substr(0, end);
    m_rest.remove_prefix(end == GcView::npos ? m_rest.size() : end + 1);
    return found;
  }
  GcGiMTextToken& add(GcGiMTextToken::Kind kind) {
    flush();
    GcGiMTextToken& token = m_tokens.emplace_back();
    token.kind = kind;
    token.look = m_look;
    token.paragraph = m_paragraph;
    return token;
  }
  void flush() {
    if (m_word.empty()) return;
    GcText word;
    word.swap(m_word);
    add(GcGiMTextToken::kWord).text = std::move(word);
  }
  void plain(GCHAR unit) {
    if (unit == GC_T(' ')) {
      add(GcGiMTextToken::kBlank);
    } else if (unit == GC_T('\t')) {
      add(GcGiMTextToken::kTab);
    } else if (unit == GC_T('\n')) {
      add(GcGiMTextToken::kLineEnd);
    } else if (unit != GC_T('\r')) {
      m_word.push_back(unit);
    }
  }

  void code() {
    const GCHAR unit = take();
    switch (unit) {
      case GC_T('P'):
      case GC_T('N'):
      case GC_T('X'): add(GcGiMTextToken::kLineEnd); break;
      case GC_T('~'): m_word.push_back(static_cast<GCHAR>(0xA0)); break;
      case GC_T('L'): rule(GcGiTextChar::kUnder, true); break;
      case GC_T('l'): rule(GcGiTextChar::kUnder, false); break;
      case GC_T('O'): rule(GcGiTextChar::kOver, true); break;
      case GC_T('o'): rule(GcGiTextChar::kOver, false); break;
      case GC_T('K'): rule(GcGiTextChar::kStrike, true); break;
      case GC_T('k'): rule(GcGiTextChar::kStrike, false); break;
      case GC_T('S'): stack(); break;
      case GC_T('p'): paragraph(value()); break;
      case GC_T('T'):
        flush();
        value();
        break;
      case GC_T('F'):
      case GC_T('f'):
        flush();
        font(value());
        break;
      case GC_T('H'):
      case GC_T('W'):
      case GC_T('Q'):
      case GC_T('A'):
        flush();
        measure(unit, value());
        break;
      case GC_T('C'):
      case GC_T('c'):
        flush();
        color(unit, value());
        break;
      case GC_T('U'):
      case GC_T('M'): character(unit); break;
      default:
        if (unit != GC_T('\\') && unit != GC_T('{') && unit != GC_T('}')) m_word.push_back(GC_T('\\'));
        m_word.push_back(unit);
    }
  }
  void rule(uint8_t which, bool on) {
    flush();
    m_look.rules = static_cast<uint8_t>(on ? m_look.rules | which : m_look.rules & ~which);
  }
  void measure(GCHAR unit, GcView text) {
    const bool relative = !text.empty() && gcLower(text.back()) == GC_T('x');
    if (relative) text.remove_suffix(1);
    const double number = toNumber(text, 0);
    if (unit == GC_T('H') && number > 0) m_look.height = relative ? m_look.height * number : number;
    if (unit == GC_T('W') && number > 0) m_look.widthFactor = relative ? m_look.widthFactor * number : number;
    if (unit == GC_T('Q')) m_look.obliqueRad = number * std::numbers::pi / 180;
    if (unit == GC_T('A')) m_look.shift = static_cast<uint8_t>(number >= 0 && number <= 2 ? number : 0);
  }
  // "Arial|b0|i1|c238|p34": of a font this program has only its slope to show.
  void font(GcView text) {
    m_look.italic = false;
    for (std::size_t bar = text.find(GC_T('|')); bar != GcView::npos; bar = text.find(GC_T('|'), bar + 1)) {
      if (bar + 2 < text.size() && gcLower(text[bar + 1]) == GC_T('i')) m_look.italic = text[bar + 2] == GC_T('1');
    }
  }
  void color(GCHAR unit, GcView text) {
    const int number = static_cast<int>(toNumber(text, 256));
    m_look.hasColor = number != 256;
    if (unit == GC_T('C')) {
      m_look.color.setColorIndex(number >= 0 && number <= 256 ? number : 7);
    } else {  // blue, green, red from the high byte down
      m_look.color = GcCmEntityColor::fromRgb(static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8),
                                              static_cast<uint8_t>(number >> 16));
    }
  }
  // A letter as text files of East Asian code pages spell it; one that its page lacks is a missing letter.
  static GcText multiByteLetter(GcView plusAndDigits) {
    std::string escape = "\\M";
    for (const GCHAR unit : plusAndDigits) escape.push_back(static_cast<char>(unit));
    GcText letter;
    const gc::DrawingText files(gc::CodePage::Ansi1252, false, gc::Carets::Plain);
    const bool isLetter = files.decode(escape, letter) && letter.size() < escape.size();
    return isLetter ? letter : GcText(1, static_cast<GCHAR>(0xFFFD));
  }
  // \U+XXXX; \M+nXXXX names a code page and the two bytes of a character in it.
  void character(GCHAR unit) {
    const std::size_t digits = unit == GC_T('U') ? 4 : 5;
    char32_t code = 0;
    bool good = m_rest.size() > digits && m_rest[0] == GC_T('+');
    for (std::size_t i = 1; good && i <= digits; ++i) {
      const int digit = hexDigit(m_rest[i]);
      good = digit >= 0;
      code = code * 16 + static_cast<char32_t>(digit);
    }
    if (!good) {
      m_word.push_back(GC_T('\\'));
      m_word.push_back(unit);
      return;
    }
    if (unit == GC_T('U'))
      m_word.push_back(static_cast<GCHAR>(code));
    else
      m_word += multiByteLetter(m_rest.substr(0, digits + 1));
    m_rest.remove_prefix(digits + 1);
  }
  // \S upper / lower ; the sign may be / # ^, and \ takes the next sign as it stands.
  void stack() {
    GcText parts[2];
    int part = 0;
    GCHAR sign = 0;
    while (!m_rest.empty()) {
      GCHAR unit = take();
      if (unit == GC_T(';')) break;
      const bool literal = unit == GC_T('\\') && !m_rest.empty();
      if (literal) unit = take();
      if (!literal && part == 0 && (unit == GC_T('/') || unit == GC_T('#') || unit == GC_T('^'))) {
        part = 1;
        sign = unit;
      } else {
        parts[part].push_back(unit);
      }
    }
    if (sign == 0) {
      m_word += parts[0];
      return;
    }
    if (!parts[1].empty() && parts[1].front() == GC_T(' ')) parts[1].erase(0, 1);
    if (!parts[0].empty() && parts[0].back() == GC_T(' ')) parts[0].pop_back();
    GcGiMTextToken& token = add(GcGiMTextToken::kStack);
    token.stackSign = sign;
    token.text = std::move(parts[0]);
    token.below = std::move(parts[1]);
  }
  // "i-2,l4,qc,t8,...": indents are given in units of the text's own height.
  void paragraph(GcView text) {
    flush();
    while (!text.empty()) {
      const std::size_t comma = text.find(GC_T(','));
      GcView item = text.substr(0, comma);
      text.remove_prefix(comma == GcView::npos ? text.size() : comma + 1);
      while (!item.empty() && (item.front() == GC_T('x') || item.front() == GC_T(' '))) item.remove_prefix(1);
      if (item.empty()) continue;
      const GcView rest = item.substr(1);
      switch (item.front()) {
        case GC_T('i'): m_paragraph.firstIndent = toNumber(rest, 0) * m_unit; break;
        case GC_T('l'): m_paragraph.leftIndent = toNumber(rest, 0) * m_unit; break;
        case GC_T('r'): m_paragraph.rightIndent = toNumber(rest, 0) * m_unit; break;
        case GC_T('q'): align(rest); break;
        default: break;  // tabs, spacing: not drawn
      }
    }
  }
  void align(GcView rest) {
    const GCHAR unit = rest.empty() ? GCHAR(0) : rest.front();
    m_paragraph.align = unit == GC_T('l')                        ? GcGiMTextAlign::kLeft
                        : unit == GC_T('c')                      ? GcGiMTextAlign::kCenter
                        : unit == GC_T('r')                      ? GcGiMTextAlign::kRight
                        : unit == GC_T('j') || unit == GC_T('d') ? GcGiMTextAlign::kJustified
                                                                 : GcGiMTextAlign::kDefault;
  }

  GcView m_rest;
  double m_unit;
  GcGiMTextLook m_look;
  GcGiMTextParagraph m_paragraph;
  std::vector<GcGiMTextLook> m_scopes;
  std::vector<GcGiMTextToken> m_tokens;
  GcText m_word;
};

}  // namespace

std::vector<GcGiMTextToken> gcgiMTextTokens(GcView contents, const GcGiMTextLook& start) {
  return Tokenizer(contents, start).run();
}
