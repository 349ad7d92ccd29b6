#include "host/rx/text/drawing_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using gc::CodePage;
using gc::DrawingText;

std::string encoded(const DrawingText& codec, const std::string& utf8) {
  std::string bytes;
  codec.encode(gc::fromUtf8(utf8), bytes);
  return bytes;
}

std::string decoded(const DrawingText& codec, std::string_view bytes) {
  GcText text;
  EXPECT_TRUE(codec.decode(bytes, text)) << bytes;
  return gc::toUtf8(text);
}

TEST(DrawingText, PolishAndTechnicalTextComesBackInEveryPage) {
  const std::string texts[] = {"m²", "Ø20", "ąęłśżźćńó ĄĘŁŚŻŹĆŃÓ", "50%%c %%d \\P{\\fArial;x}", "日本 中 한 😀"};
  for (int number = 1; number <= 44; ++number) {
    const CodePage page = gc::codePageByDwgNumber(number);
    for (const bool utf8 : {false, true}) {
      const DrawingText codec(page, utf8);
      for (const std::string& text : texts) {
        const std::string bytes = encoded(codec, text);
        EXPECT_EQ(decoded(codec, bytes), text) << gc::codePageName(page) << ' ' << bytes;
        EXPECT_TRUE(!utf8 || bytes == text) << bytes;
      }
    }
  }
}

TEST(DrawingText, WhatThePageLacksIsEscaped) {
  const DrawingText codec(CodePage::Ansi1250, false);
  EXPECT_EQ(encoded(codec, "m²"), "m\\U+00B2");
  EXPECT_EQ(encoded(codec, "Ø20"), "\\U+00D820");
  EXPECT_EQ(encoded(codec, "łą"), "\xB3\xB9");
  EXPECT_EQ(encoded(codec, "😀"), "\\U+D83D\\U+DE00");
  EXPECT_EQ(decoded(codec, "\\U+D83D\\U+DE00 \\u+017c"), "😀 ż");
}

TEST(DrawingText, EscapesOfAsciiAndHalfEscapesStay) {
  const DrawingText codec(CodePage::Ansi1252, false);
  for (const char* text :
       {"\\U+007B", "\\U+00B", "\\U+00BG", "\\U+0000", "\\M+0AAAA", "\\M+6AAAA", "\\M+1", "\\U", "\\", "C:\\Users"}) {
    EXPECT_EQ(decoded(codec, text), text);
    EXPECT_EQ(encoded(codec, text), text);
  }
}

TEST(DrawingText, TextThatLooksLikeAnEscapeIsKept) {
  for (const bool utf8 : {false, true}) {
    const DrawingText codec(CodePage::Ansi1252, utf8);
    EXPECT_EQ(encoded(codec, "a \\U+00B2"), "a \\U+005CU+00B2");
    for (const char* text : {"\\U+00B2", "12345678\\U+00B2", "\\U+005CU+00B2", "\\U+005CU+", "\\U+005CU+005CU+00B2",
                             "\\M+1907D", "\\U+005CM+1907D", "\\\\U+00B2", "\\U+00\\U+00B2", "\\u+D83D\\u+DE00"}) {
      EXPECT_EQ(decoded(codec, encoded(codec, text)), text) << encoded(codec, text);
    }
  }
}

TEST(DrawingText, MultiByteEscapesNameTheirPage) {
  const DrawingText codec(CodePage::Ansi1252, false);
  EXPECT_EQ(decoded(codec, "\\M+1907D\\M+196CA"), "図面");
  EXPECT_EQ(decoded(codec, "\\M+2B9CF"), "圖");
  EXPECT_EQ(decoded(codec, "\\M+3B5B5"), "도");
  EXPECT_EQ(decoded(codec, "\\M+48861"), "가");
  EXPECT_EQ(decoded(codec, "\\M+5CDBC"), "图");
}

TEST(DrawingText, EscapesAreSoughtInCharactersNotInBytes) {
  const DrawingText codec(CodePage::Ansi932, false);
  // The second byte of the first character is 0x5C, that of the second 0x5E.
  EXPECT_EQ(decoded(codec, "\x95\x5CU+00B2"), "表U+00B2");
  EXPECT_EQ(decoded(codec, "\x83\x5EJ"), "タJ");
  EXPECT_EQ(encoded(codec, "表タ"), "\x95\x5C\x83\x5E");
}

TEST(DrawingText, CaretsStandForControlCharacters) {
  const DrawingText codec(CodePage::Ansi1252, true);
  EXPECT_EQ(decoded(codec, "a^Jb^Ic^Md^ e"), "a\nb\tc\rd^e");
  EXPECT_EQ(encoded(codec, "a\nb\tc\rd^e"), "a^Jb^Ic^Md^ e");
  EXPECT_EQ(decoded(codec, "H7^h6^"), "H7^h6^");
  EXPECT_EQ(decoded(codec, encoded(codec, "^J ^ \\S1^2; \x01\x1F")), "^J ^ \\S1^2; \x01\x1F");
  const DrawingText plain(CodePage::Ansi1252, true, gc::Carets::Plain);
  EXPECT_EQ(decoded(plain, "a^Jb"), "a^Jb");
  EXPECT_EQ(encoded(plain, "a\nb^"), "a\nb^");
}

TEST(DrawingText, AFileOf2007ThatIsNoUtf8IsReadInItsPageAndSaysSo) {
  const DrawingText codec(CodePage::Ansi1250, true);
  GcText text;
  EXPECT_FALSE(codec.decode("za\xBF\xF3\xB3\xE6", text));
  EXPECT_EQ(gc::toUtf8(text), "zażółć");
}

TEST(DrawingText, BytesWithoutMeaningSurvive) {
  const DrawingText codec(CodePage::Ansi1253, false);
  GcText text;
  EXPECT_FALSE(codec.decode("a\xFFz", text));
  std::string bytes;
  codec.encode(text, bytes);
  EXPECT_EQ(bytes, "a\xFFz");
  const DrawingText modern(CodePage::Ansi1253, true);
  bytes.clear();
  modern.encode(text, bytes);
  EXPECT_EQ(bytes, "a\\U+DCFFz");
  GcText again;
  EXPECT_TRUE(modern.decode(bytes, again));
  EXPECT_TRUE(again == text);
}

TEST(DrawingText, ADamagedPairSurvivesBesideAnything) {
  for (const CodePage page :
       {CodePage::Ansi932, CodePage::Ansi936, CodePage::Ansi949, CodePage::Ansi950, CodePage::Johab}) {
    const DrawingText codec(page, false);
    for (const char* bytes : {"a\xA4", "\x8D\n", "\xFF\xFF", "\xA4 b", "\x8D\x80z"}) {
      GcText text, again;
      codec.decode(bytes, text);
      std::string written;
      codec.encode(text, written);
      codec.decode(written, again);
      EXPECT_TRUE(again == text) << gc::codePageName(page) << ' ' << bytes;
    }
  }
}

// Texts of what escapes are made of, at random: each comes back, and bytes that were read once are written the same
// from then on.
TEST(DrawingText, TextsMadeOfEscapesComeBack) {
  constexpr GCHAR kUnits[] = {'\\', '\\', 'U', 'u', 'M', 'm', '+',  '+',  '0',    '0',    '1',    '5',
                              'C',  'c',  '8', '^', 'J', ' ', 0x01, '\n', 0x20AC, 0xD83D, 0xDE00, 0xDC85};
  std::mt19937 random(20240611);
  for (int round = 0; round < 200000; ++round) {
    GcText text;
    for (unsigned length = 1 + random() % 24; length > 0; --length) text += kUnits[random() % std::size(kUnits)];
    for (const gc::Carets carets : {gc::Carets::Plain, gc::Carets::Escaped}) {
      for (const bool utf8 : {false, true}) {
        const DrawingText codec(CodePage::Ansi1250, utf8, carets);
        std::string bytes, bytesAgain;
        GcText again, third;
        codec.encode(text, bytes);
        codec.decode(bytes, again);
        ASSERT_TRUE(again == text) << gc::toUtf8(text) << " became " << gc::toUtf8(again) << " by " << bytes;
        // The same units as bytes of a file.
        bytes = gc::toUtf8(text);
        codec.decode(bytes, again);
        codec.encode(again, bytesAgain);
        codec.decode(bytesAgain, third);
        ASSERT_TRUE(again == third) << bytes << " became " << gc::toUtf8(third) << " by " << bytesAgain;
      }
    }
  }
}

TEST(DrawingText, AZeroEndsTheText) {
  const DrawingText codec(CodePage::Ansi1252, true);
  std::string bytes;
  codec.encode(GcText(GC_T("ab\0cd"), 5), bytes);
  EXPECT_EQ(bytes, "ab");
}

}  // namespace
