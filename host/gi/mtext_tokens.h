// Paragraph text taken apart: words, blanks, line ends, stacked pieces, each with the look that holds there.
#pragma once

#include <cstdint>
#include <vector>

#include "cm/color.h"
#include "host/rx/view.h"

enum class GcGiMTextAlign : uint8_t { kDefault, kLeft, kCenter, kRight, kJustified };

// The look at one place of the text; heights in drawing units.
struct GcGiMTextLook {
  double height = 1;
  double widthFactor = 1;
  double obliqueRad = 0;
  uint8_t rules = 0;  // GcGiTextChar::Rule
  uint8_t shift = 0;  // of smaller letters in the line: 0 base line, 1 centre, 2 top
  bool italic = false;
  bool hasColor = false;
  GcCmEntityColor color;
};

struct GcGiMTextParagraph {
  GcGiMTextAlign align = GcGiMTextAlign::kDefault;
  double firstIndent = 0;  // drawing units, from the left indent
  double leftIndent = 0;
  double rightIndent = 0;
};

struct GcGiMTextToken {
  enum Kind : uint8_t { kWord, kBlank, kTab, kStack, kLineEnd };
  Kind kind = kWord;
  GCHAR stackSign = 0;  // / # ^
  GcText text;
  GcText below;  // the second part of a stack
  GcGiMTextLook look;
  GcGiMTextParagraph paragraph;
};

std::vector<GcGiMTextToken> gcgiMTextTokens(GcView contents, const GcGiMTextLook& start);
