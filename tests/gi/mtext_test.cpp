#include "host/gi/mtext.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "host/gi/textline.h"

namespace {

GcGiMTextLayout layOut(const char* contents, double width = 0, int attachment = 1) {
  const GcText text = fromUtf8(contents);
  GcGiMText in;
  in.contents = text;
  in.style.height = 3;
  in.width = width;
  in.attachment = attachment;
  return gcgiLayOutMText(in);
}

// Runs as "text@baseline", one after the other.
std::string runsOf(const GcGiMTextLayout& layout) {
  std::string all;
  for (const GcGiMTextRun& run : layout.runs) {
    if (!all.empty()) all += " | ";
    all += toUtf8(run.text) + "@" + std::to_string(static_cast<int>(std::lround(run.y * 10)));
  }
  return all;
}

// Japanese, traditional and simplified Chinese and Korean code pages; a page there is none of.
TEST(MText, LettersOfEastAsianCodePagesAreThemselves) {
  EXPECT_EQ(runsOf(layOut("a\\M+193FAb")), "a\u65e5b@-30");
  EXPECT_EQ(runsOf(layOut("\\M+2A4A4\\M+5D6D0\\M+3B0A1")), "\u4e2d\u4e2d\uac00@-30");
  EXPECT_EQ(runsOf(layOut("\\M+9A4A4")), "\ufffd@-30");
}

TEST(MText, LinesBreakAtCodes) {
  EXPECT_EQ(runsOf(layOut("one two\\Pthree")), "one two@-30 | three@-80");
  EXPECT_EQ(layOut("one\\P\\Ptwo").lineCount, 3);
  EXPECT_EQ(layOut("one\\P").lineCount, 2);
  EXPECT_EQ(layOut("").lineCount, 0);
}

TEST(MText, LinesBreakAtTheWidth) {
  GcGiTextStyle style;
  style.height = 3;
  const double width = gcgiTextLength(fromUtf8("aaaa bbbb"), style);
  EXPECT_EQ(runsOf(layOut("aaaa bbbb cccc", width)), "aaaa bbbb@-30 | cccc@-80");
  EXPECT_EQ(runsOf(layOut("aaaa bbbb cccc", width * 0.99)), "aaaa@-30 | bbbb@-80 | cccc@-130");
  // A word that is too long stays whole on a line of its own.
  EXPECT_EQ(runsOf(layOut("x aaaaaaaaaaaaaaaa y", 5)), "x@-30 | aaaaaaaaaaaaaaaa@-80 | y@-130");
}

TEST(MText, AttachmentMovesTheWhole) {
  const GcGiMTextLayout topLeft = layOut("HH\\PHHHH", 0, 1);
  const GcGiMTextLayout middleCentre = layOut("HH\\PHHHH", 0, 5);
  const GcGiMTextLayout bottomRight = layOut("HH\\PHHHH", 0, 9);
  EXPECT_NEAR(topLeft.runs[0].x, 0, 1e-9);
  EXPECT_NEAR(middleCentre.runs[0].x, -middleCentre.runs[0].length / 2, 1e-9);
  EXPECT_NEAR(middleCentre.runs[1].y, -middleCentre.height / 2, 1e-9);
  EXPECT_NEAR(bottomRight.runs[0].x, -bottomRight.runs[0].length, 1e-9);
  EXPECT_NEAR(bottomRight.runs[1].y, 0, 1e-9);
}

TEST(MText, CodesChangeTheLookWithinTheirScope) {
  const GcGiMTextLayout layout = layOut("a{\\H2x;\\C1;b}c");
  ASSERT_EQ(layout.runs.size(), 3u);
  EXPECT_EQ(layout.runs[1].style.height, 6);
  EXPECT_TRUE(layout.runs[1].hasColor);
  EXPECT_EQ(layout.runs[1].color.colorIndex(), 1);
  EXPECT_EQ(layout.runs[2].style.height, 3);
  EXPECT_FALSE(layout.runs[2].hasColor);
  // The line stands lower by what its highest letters need.
  EXPECT_NEAR(layout.runs[0].y, -6, 1e-9);
}

TEST(MText, TrueColourIsBlueGreenRed) {
  const GcGiMTextLayout layout = layOut("\\c255;a");
  EXPECT_EQ(layout.runs[0].color.red(), 255);
  EXPECT_EQ(layout.runs[0].color.blue(), 0);
}

TEST(MText, StacksAreSmallerAboveAndBelow) {
  const GcGiMTextLayout layout = layOut("1\\S3/4;");
  ASSERT_EQ(layout.runs.size(), 3u);
  EXPECT_NEAR(layout.runs[1].style.height, 2.1, 1e-9);
  EXPECT_GT(layout.runs[1].y, layout.runs[0].y);
  EXPECT_LT(layout.runs[2].y, layout.runs[0].y);
  EXPECT_EQ(layout.rules.size(), 1u);
  EXPECT_EQ(layOut("\\S+0.1^ -0.1;").rules.size(), 0u);
  EXPECT_EQ(toUtf8(layOut("\\S+0.1^ -0.1;").runs[1].text), "-0.1");
  EXPECT_EQ(layOut("\\S1#2;").rules.size(), 1u);
}

TEST(MText, RulesRunAlongTheText) {
  const GcGiMTextLayout layout = layOut("a \\Lb c\\l d");
  ASSERT_EQ(layout.rules.size(), 1u);
  EXPECT_NEAR(layout.rules[0].x1, layout.runs[1].x, 1e-9);
  EXPECT_LT(layout.rules[0].y1, layout.runs[1].y);
}

// A dot is as wide as its pen, so nothing tells it from the end of its line but that it is no blank.
TEST(MText, ADotAloneAtTheEndOfALineIsDrawn) {
  for (const char* contents : {"{\\Kstruck}.", "{\\C1;red}.\\Pmore", "a {\\H2x;b} ."}) {
    std::string all;
    for (const auto& run : layOut(contents).runs) all += toUtf8(run.text);
    EXPECT_NE(all.find('.'), std::string::npos) << contents;
  }
  EXPECT_EQ(toUtf8(layOut("a   ").runs[0].text), "a");
}

TEST(MText, ParagraphAlignmentAndIndent) {
  const GcGiMTextLayout layout = layOut("\\pqr;HH\\P\\pi2,ql;HH\\P\\pqc;HH", 60);
  EXPECT_NEAR(layout.runs[0].x, 60 - layout.runs[0].length, 1e-9);
  EXPECT_NEAR(layout.runs[1].x, 6, 1e-9);
}

TEST(MText, BracesBackslashesAndUnknownCodes) {
  EXPECT_EQ(toUtf8(gcgiPlainMText(fromUtf8("\\{a\\}\\\\b\\~c"))),
            "{a}\\b\xC2\xA0"
            "c");
  EXPECT_EQ(toUtf8(gcgiPlainMText(fromUtf8("C:\\zzz"))), "C:\\zzz");
  EXPECT_EQ(toUtf8(gcgiPlainMText(fromUtf8("{\\fArial|b0|i0|c238|p34;Rzut} \\U+0105"))), "Rzut ą");
  EXPECT_EQ(toUtf8(gcgiPlainMText(fromUtf8("a\\P{\\H1.5x;b}\\S1/2;"))), "a\nb1/2");
}

TEST(MText, CutOffCodesDoNoHarm) {
  for (const char* contents : {"\\", "{", "}", "\\S", "\\S1", "\\S1/", "\\H", "\\Hx;", "\\C", "\\U+12", "\\p", "\\f",
                               "}}{{", "\\H1e999;a", "\\W-1;a", "\\M+1"}) {
    layOut(contents);
    layOut(contents, 10);
  }
}

}  // namespace
