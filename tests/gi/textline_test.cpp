#include "host/gi/textline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

std::string shown(const char* text) {
  GcText utf16;
  for (const GcGiTextChar& c : gcgiTextChars(fromUtf8(text))) {
    if ((c.rules & GcGiTextChar::kUnder) != 0) utf16 += GC_T('_');
    if ((c.rules & GcGiTextChar::kOver) != 0) utf16 += GC_T('^');
    utf16 += static_cast<GCHAR>(c.character);
  }
  return toUtf8(utf16);
}

struct Box final : GcGiStrokeSink {
  double minX = 1e9, minY = 1e9, maxX = -1e9, maxY = -1e9;
  void moveTo(double x, double y) override { lineTo(x, y); }
  void lineTo(double x, double y) override {
    minX = std::min(minX, x);
    maxX = std::max(maxX, x);
    minY = std::min(minY, y);
    maxY = std::max(maxY, y);
  }
  void quadTo(double, double, double x, double y) override { lineTo(x, y); }
};

Box boxOf(const char* text, const GcGiTextStyle& style) {
  Box box;
  gcgiStrokeText(fromUtf8(text), style, box);
  return box;
}

TEST(TextLine, CodesBecomeSigns) {
  EXPECT_EQ(shown("%%c20 %%p0.5 45%%d"), "Ø20 ±0.5 45°");
  EXPECT_EQ(shown("%%C %%D"), "Ø °");
  EXPECT_EQ(shown("50%%%"), "50%");
  EXPECT_EQ(shown("%%065%%066"), "AB");
}

TEST(TextLine, CodesSwitchRulesOnAndOff) {
  EXPECT_EQ(shown("a%%ub%%uc"), "a_bc");
  EXPECT_EQ(shown("%%uA%%oB"), "_A_^B");
}

TEST(TextLine, OtherPercentSignsStayAsTheyAre) {
  EXPECT_EQ(shown("100%"), "100%");
  EXPECT_EQ(shown("%%"), "%%");
  EXPECT_EQ(shown("%%x%%12"), "%%x%%12");
}

TEST(TextLine, APairOfSurrogatesIsOneCharacter) {
  const auto chars = gcgiTextChars(fromUtf8("\xF0\x9D\x84\x9E"));
  ASSERT_EQ(chars.size(), 1u);
  EXPECT_EQ(chars[0].character, 0x1D11Eu);
}

TEST(TextLine, LengthIsWhatTheStrokesCover) {
  GcGiTextStyle style;
  style.height = 2.5;
  style.widthFactor = 0.8;
  for (const char* text : {"H", "HEH", "MN%%c", "Z"}) {
    const Box box = boxOf(text, style);
    EXPECT_NEAR(box.minX, 0, 1e-6) << text;
    EXPECT_NEAR(box.maxX, gcgiTextLength(fromUtf8(text), style), 1e-6) << text;
  }
  EXPECT_EQ(gcgiTextLength(GcView(), style), 0);
}

TEST(TextLine, HeightObliqueBackwardUpsideDown) {
  GcGiTextStyle style;
  style.height = 10;
  EXPECT_NEAR(boxOf("H", style).maxY, 10, 1e-6);
  style.obliqueRad = std::atan(0.5);
  EXPECT_NEAR(boxOf("I", style).maxX, 5, 1e-6);
  style.obliqueRad = 0;
  style.backward = true;
  EXPECT_NEAR(boxOf("H", style).maxX, 0, 1e-6);
  style.backward = false;
  style.upsideDown = true;
  EXPECT_NEAR(boxOf("H", style).minY, -10, 1e-6);
}

TEST(TextLine, VerticalTextRunsDownwards) {
  GcGiTextStyle style;
  style.height = 2;
  style.vertical = true;
  const Box box = boxOf("HHH", style);
  EXPECT_NEAR(box.maxY, 0, 1e-6);
  EXPECT_NEAR(-box.minY, gcgiTextLength(fromUtf8("HHH"), style), 1e-6);
  EXPECT_NEAR(box.minX, -box.maxX, 1e-6);
}

}  // namespace
