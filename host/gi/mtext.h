// Paragraph text: inline codes, wrapping, stacked fractions; laid out as lines of text and rules.
// Units:   drawing units; angles in radians.
// System:  the plane of the text: origin at the insertion point, x along the text, y upwards.
#pragma once

#include <vector>

#include "cm/color.h"
#include "gi/drawable.h"
#include "host/rx/view.h"

// What is to be laid out.
struct GcGiMText {
  GcView contents;            // with inline codes
  GcGiTextStyle style;        // at the start of the text; its height is the text height
  double width = 0;           // of the column, 0: lines break at \P only
  int attachment = 1;         // 1..9: top, middle, bottom rows of left, centre, right
  double lineSpacing = 1;     // factor on the distance of base lines, 5/3 of the height
  bool exactSpacing = false;  // the distance stays although a line has larger letters
};

// A piece of one line in one look. The text holds no inline codes but may hold %% codes.
struct GcGiMTextRun {
  GcText text;
  GcGiTextStyle style;
  double x = 0;
  double y = 0;           // base line
  double length = 0;      // along x
  bool hasColor = false;  // else the entity's own
  GcCmEntityColor color;
};

// A straight line: fraction bar, underline, overline, strike-through.
struct GcGiMTextRule {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  bool hasColor = false;
  GcCmEntityColor color;
};

struct GcGiMTextLayout {
  std::vector<GcGiMTextRun> runs;
  std::vector<GcGiMTextRule> rules;
  double width = 0;   // of the longest line
  double height = 0;  // from the first line's letter tops to the last base line
  int lineCount = 0;
};

// Inline codes: \P \N line end, \~ fixed blank, \\ \{ \} themselves, { } scope, \L \l \O \o \K \k rules, \H height,
// \W width factor, \Q oblique angle, \T tracking (skipped), \C \c colour, \f \F font, \A baseline shift, \S stacked
// text (/ # ^), \p paragraph alignment and indents, \U+XXXX and \M+nXXXX characters. A code nobody knows is drawn
// as it stands.
GcGiMTextLayout gcgiLayOutMText(const GcGiMText& text);

// Draws a layout whose origin stands at `position` in the plane given by the text's direction and normal.
void gcgiDrawMText(const GcGiMTextLayout& layout, const GcGePoint3d& position, const GcGeVector3d& direction,
                   const GcGeVector3d& normal, const GcCmEntityColor& ownColor, GcGiWorldDraw& draw);

// The contents without inline codes, lines separated by \n: what searches and lists show.
GcText gcgiPlainMText(GcView contents);
