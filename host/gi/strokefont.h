// The built-in stroke font: every letter is a few lines and quadratic curves, drawn with the pen of the text.
// Units:   capital height 1, base line at y = 0, x to the right; the scale to a text's height is the caller's.
// System:  the plane of the text.
// Source:  data/fonts/plain.strokes, designed for this program.
#pragma once

#include <cstdint>
#include <vector>

// The text of data/fonts/plain.strokes.
extern const char* const kGcGiPlainStrokes;

// One step of the pen. A curve is two steps: its control point, then its end.
struct GcGiStroke {
  enum Kind : uint8_t { kMove, kLine, kControl };
  float x = 0;
  float y = 0;
  Kind kind = kMove;
};

struct GcGiGlyph {
  double advance = 0;  // to the next letter's origin: the drawn width and kGap
  const GcGiStroke* first = nullptr;
  int count = 0;
};

class GcGiStrokeFont {
 public:
  // Between the drawn widths of neighbours.
  static constexpr double kGap = 4.0 / 18.0;

  // The font made from its description; lines that cannot be understood are left out and counted in badLines().
  explicit GcGiStrokeFont(const char* description);
  GcGiStrokeFont(const GcGiStrokeFont&) = delete;
  GcGiStrokeFont& operator=(const GcGiStrokeFont&) = delete;

  // The program's own font, made at first use.
  static const GcGiStrokeFont& plain();

  // The strokes of a character; a crossed box for one that the font lacks.
  [[nodiscard]] const GcGiGlyph& glyph(char32_t character) const;
  [[nodiscard]] bool has(char32_t character) const;
  [[nodiscard]] int glyphCount() const { return static_cast<int>(m_glyphs.size()); }
  [[nodiscard]] int badLines() const { return m_badLines; }

 private:
  struct Entry {
    char32_t character;
    GcGiGlyph glyph;
  };
  [[nodiscard]] const Entry* find(char32_t character) const;

  std::vector<Entry> m_glyphs;  // by character
  std::vector<GcGiStroke> m_strokes;
  GcGiGlyph m_missing;
  int m_badLines = 0;
};
