#include "host/gi/strokefont.h"

#include <gtest/gtest.h>

#include "host/rx/view.h"

namespace {

TEST(StrokeFont, EveryLineOfTheDescriptionIsUnderstood) {
  EXPECT_EQ(GcGiStrokeFont::plain().badLines(), 0);
  EXPECT_GT(GcGiStrokeFont::plain().glyphCount(), 450);
}

TEST(StrokeFont, HasWhatDrawingsWrite) {
  const GcText texts[] = {fromUtf8("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
                          fromUtf8(" !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"),
                          fromUtf8("ĄĆĘŁŃÓŚŹŻąćęłńóśźż"),
                          fromUtf8("Ø°±²³µ×÷½§€№⌀∅√≤≥≈≠"),
                          fromUtf8("ΓΔΘΛΞΠΣΦΨΩαβγδεζηθικλμνξοπρστυφχψω"),
                          fromUtf8("ЖИЙЛФЦЧШЩЪЫЬЭЮЯжийлфцчшщъыьэюя")};
  for (const GcText& text : texts) {
    for (const GCHAR unit : text) EXPECT_TRUE(GcGiStrokeFont::plain().has(unit)) << std::hex << static_cast<int>(unit);
  }
}

TEST(StrokeFont, CapitalsStandOnTheBaseLineAndAreOneHigh) {
  for (const char32_t capital : U"ABDEFHIKLMNPRTVWXYZ") {
    if (capital == 0) continue;
    const GcGiGlyph& glyph = GcGiStrokeFont::plain().glyph(capital);
    float low = 9, high = -9;
    for (int i = 0; i < glyph.count; ++i) {
      low = std::min(low, glyph.first[i].y);
      high = std::max(high, glyph.first[i].y);
    }
    EXPECT_FLOAT_EQ(low, 0) << static_cast<char>(capital);
    EXPECT_FLOAT_EQ(high, 1) << static_cast<char>(capital);
  }
}

TEST(StrokeFont, DigitsAreEquallyWide) {
  for (char32_t digit = U'1'; digit <= U'9'; ++digit) {
    EXPECT_EQ(GcGiStrokeFont::plain().glyph(digit).advance, GcGiStrokeFont::plain().glyph(U'0').advance);
  }
}

TEST(StrokeFont, ACharacterItLacksIsABox) {
  const GcGiGlyph& glyph = GcGiStrokeFont::plain().glyph(0x6F22);
  EXPECT_FALSE(GcGiStrokeFont::plain().has(0x6F22));
  EXPECT_GT(glyph.count, 4);
}

TEST(StrokeFont, LinesThatCannotBeUnderstoodAreCounted) {
  const GcGiStrokeFont font("A 12 : 0,0 6,18\nB x : 0,0\nC 3 : 0,0 1\nD 3 = Q 0 0\nE 3 : ~1,1 2,2\nF 3 : 0,0 ~1,1\n");
  EXPECT_EQ(font.badLines(), 5);
  EXPECT_EQ(font.glyphCount(), 1);
}

}  // namespace
