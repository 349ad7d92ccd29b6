#include "host/gi/textline.h"

#include <cmath>

#include "host/gi/strokefont.h"
#include "host/rx/math/elementary.h"

namespace {

constexpr double kVerticalStep = 1.5;  // from letter to letter in vertical text, of the height
constexpr double kUnderline = -0.2;    // heights of the rules, of the letters' height
constexpr double kOverline = 1.2;
constexpr double kStrikeLine = 0.4;

bool isDigit(GCHAR unit) { return unit >= GC_T('0') && unit <= GC_T('9'); }

// What the code after %% does, `at` standing behind the two signs. Moves `at` behind the code when it is one.
bool readCode(GcView text, std::size_t& at, uint8_t& rules, char32_t& character) {
  character = 0;
  const GCHAR code = at < text.size() ? gcLower(text[at]) : GCHAR(0);
  switch (code) {
    case GC_T('c'): character = 0x00D8; break;
    case GC_T('d'): character = 0x00B0; break;
    case GC_T('p'): character = 0x00B1; break;
    case GC_T('%'): character = U'%'; break;
    case GC_T('u'): rules ^= GcGiTextChar::kUnder; break;
    case GC_T('o'): rules ^= GcGiTextChar::kOver; break;
    case GC_T('k'): rules ^= GcGiTextChar::kStrike; break;
    default: {
      if (at + 3 > text.size() || !isDigit(text[at]) || !isDigit(text[at + 1]) || !isDigit(text[at + 2])) return false;
      character = static_cast<char32_t>((text[at] - GC_T('0')) * 100 + (text[at + 1] - GC_T('0')) * 10 +
                                        (text[at + 2] - GC_T('0')));
      at += 3;
      return character != 0;
    }
  }
  ++at;
  return true;
}

// Turns the strokes of letters into the plane of the text.
class Pen {
 public:
  Pen(const GcGiTextStyle& style, GcGiStrokeSink& sink)
      : m_sink(sink),
        m_scaleX(style.height * style.widthFactor * (style.backward ? -1 : 1)),
        m_scaleY(style.height * (style.upsideDown ? -1 : 1)),
        m_shear(gc::tan(style.obliqueRad) * (style.backward ? -1 : 1) * style.height) {}

  void glyph(const GcGiGlyph& glyph, double left, double base) {
    for (int i = 0; i < glyph.count; ++i) {
      const GcGiStroke& stroke = glyph.first[i];
      if (stroke.kind == GcGiStroke::kControl) {
        const GcGiStroke& end = glyph.first[++i];
        m_sink.quadTo(x(stroke.x + left, stroke.y + base), y(stroke.y + base), x(end.x + left, end.y + base),
                      y(end.y + base));
      } else if (stroke.kind == GcGiStroke::kMove) {
        m_sink.moveTo(x(stroke.x + left, stroke.y + base), y(stroke.y + base));
      } else {
        m_sink.lineTo(x(stroke.x + left, stroke.y + base), y(stroke.y + base));
      }
    }
  }
  void rule(double from, double to, double height) {
    m_sink.moveTo(x(from, height), y(height));
    m_sink.lineTo(x(to, height), y(height));
  }

 private:
  [[nodiscard]] double x(double u, double v) const { return u * m_scaleX + v * m_shear; }
  [[nodiscard]] double y(double v) const { return v * m_scaleY; }
  GcGiStrokeSink& m_sink;
  double m_scaleX;
  double m_scaleY;
  double m_shear;
};

// One rule (underline, ...) along the characters that have it, drawn in as few pieces as possible.
void drawRule(const std::vector<GcGiTextChar>& chars, uint8_t rule, double height, Pen& pen) {
  const GcGiStrokeFont& font = GcGiStrokeFont::plain();
  double at = 0;
  double from = -1;
  for (const GcGiTextChar& c : chars) {
    if ((c.rules & rule) != 0 && from < 0) from = at;
    if ((c.rules & rule) == 0 && from >= 0) {
      pen.rule(from, at - GcGiStrokeFont::kGap, height);
      from = -1;
    }
    at += font.glyph(c.character).advance;
  }
  if (from >= 0) pen.rule(from, at - GcGiStrokeFont::kGap, height);
}

}  // namespace

std::vector<GcGiTextChar> gcgiTextChars(GcView text, uint8_t rules) {
  std::vector<GcGiTextChar> chars;
  chars.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t unit = static_cast<uint16_t>(text[at]);
    if (unit == U'%' && at + 1 < text.size() && text[at + 1] == GC_T('%')) {
      std::size_t after = at + 2;
      char32_t character = 0;
      if (readCode(text, after, rules, character)) {
        if (character != 0) chars.push_back({character, rules});
        at = after;
        continue;
      }
    }
    ++at;
    if (unit >= 0xD800 && unit < 0xDC00 && at < text.size()) {
      const char32_t low = static_cast<uint16_t>(text[at]);
      if (low >= 0xDC00 && low < 0xE000) {
        chars.push_back({0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00), rules});
        ++at;
        continue;
      }
    }
    chars.push_back({unit, rules});
  }
  return chars;
}

GcGiTextBox gcgiTextBox(const GcGiTextStyle& style, double length) {
  if (style.vertical) return {-style.height / 2, style.height / 2, -length, 0};
  GcGiTextBox box;
  (style.backward ? box.left : box.right) = style.backward ? -length : length;
  (style.upsideDown ? box.low : box.high) = style.upsideDown ? -style.height : style.height;
  return box;
}

double gcgiTextLength(GcView text, const GcGiTextStyle& style) {
  const std::vector<GcGiTextChar> chars = gcgiTextChars(text);
  if (chars.empty()) return 0;
  if (style.vertical) return (static_cast<double>(chars.size() - 1) * kVerticalStep + 1) * style.height;
  const GcGiStrokeFont& font = GcGiStrokeFont::plain();
  double length = -GcGiStrokeFont::kGap;
  for (const GcGiTextChar& c : chars) length += font.glyph(c.character).advance;
  return length * style.height * style.widthFactor;
}

void gcgiStrokeText(GcView text, const GcGiTextStyle& style, GcGiStrokeSink& sink) {
  const GcGiStrokeFont& font = GcGiStrokeFont::plain();
  const std::vector<GcGiTextChar> chars = gcgiTextChars(text);
  Pen pen(style, sink);
  if (style.vertical) {
    double base = -1;
    for (const GcGiTextChar& c : chars) {
      const GcGiGlyph& glyph = font.glyph(c.character);
      pen.glyph(glyph, -(glyph.advance - GcGiStrokeFont::kGap) / 2, base);
      base -= kVerticalStep;
    }
    return;
  }
  double left = 0;
  uint8_t rules = 0;
  for (const GcGiTextChar& c : chars) {
    const GcGiGlyph& glyph = font.glyph(c.character);
    pen.glyph(glyph, left, 0);
    left += glyph.advance;
    rules |= c.rules;
  }
  if ((rules & GcGiTextChar::kUnder) != 0) drawRule(chars, GcGiTextChar::kUnder, kUnderline, pen);
  if ((rules & GcGiTextChar::kOver) != 0) drawRule(chars, GcGiTextChar::kOver, kOverline, pen);
  if ((rules & GcGiTextChar::kStrike) != 0) drawRule(chars, GcGiTextChar::kStrike, kStrikeLine, pen);
}
