// One line of text: its %% codes, its width, its strokes.
// Units:   drawing units; angles in radians.
// System:  the plane of the text: origin at the left end of the base line, x along it, y towards the letters' tops.
#pragma once

#include <cstdint>
#include <vector>

#include "gi/drawable.h"
#include "host/rx/view.h"

// A character to draw and the rules drawn along it.
struct GcGiTextChar {
  enum Rule : uint8_t { kUnder = 1, kOver = 2, kStrike = 4 };
  char32_t character = 0;
  uint8_t rules = 0;
};

// The characters of a text line: %%c diameter, %%d degree, %%p plus-minus, %%% percent, %%nnn by number; %%u, %%o and
// %%k switch underline, overline and strike-through on and off. Any other %% is drawn as it stands. Pairs of
// surrogates become one character. `rules` are those that hold at the start.
std::vector<GcGiTextChar> gcgiTextChars(GcView text, uint8_t rules = 0);

// Length of the line from its first letter's left side to its last letter's right side; for vertical text its height.
double gcgiTextLength(GcView text, const GcGiTextStyle& style);

// The box of a line of that length, from its origin: letters from the base line to their tops.
struct GcGiTextBox {
  double left = 0, right = 0, low = 0, high = 0;
};
GcGiTextBox gcgiTextBox(const GcGiTextStyle& style, double length);

// Receives what the pen draws.
class GcGiStrokeSink {
 public:
  virtual void moveTo(double x, double y) = 0;
  virtual void lineTo(double x, double y) = 0;
  virtual void quadTo(double controlX, double controlY, double x, double y) = 0;

 protected:
  ~GcGiStrokeSink() = default;
};

// Draws the line: height, width factor, oblique angle, backward, upside down and vertical as the style says. Backward
// text runs to the left of its origin, upside-down text hangs below its base line, vertical text runs downwards,
// centred on x = 0.
void gcgiStrokeText(GcView text, const GcGiTextStyle& style, GcGiStrokeSink& sink);
