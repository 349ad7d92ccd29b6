#include "host/rx/text/code_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using gc::CodePage;

const std::vector<std::string> kSingleByteNames = {
    "ANSI_874",  "ANSI_1250", "ANSI_1251", "ANSI_1252", "ANSI_1253", "ANSI_1254", "ANSI_1255", "ANSI_1256", "ANSI_1257",
    "ANSI_1258", "DOS437",    "DOS737",    "DOS775",    "DOS850",    "DOS852",    "DOS855",    "DOS857",    "DOS858",
    "DOS860",    "DOS861",    "DOS862",    "DOS863",    "DOS864",    "DOS865",    "DOS866",    "DOS869",    "ISO8859-1",
    "ISO8859-2", "ISO8859-3", "ISO8859-4", "ISO8859-5", "ISO8859-6", "ISO8859-7", "ISO8859-8", "ISO8859-9", "MACINTOSH",
};
const std::vector<std::string> kDoubleByteNames = {"ANSI_932", "ANSI_936", "ANSI_949", "ANSI_950", "ANSI_1361"};

GcText decoded(CodePage page, std::string_view bytes) {
  GcText text;
  gc::appendDecoded(page, bytes, text);
  return text;
}

std::string encoded(CodePage page, GcView text) {
  std::string bytes;
  for (const GCHAR unit : text) EXPECT_TRUE(gc::appendEncoded(page, unit, bytes)) << std::hex << unsigned(unit);
  return bytes;
}

TEST(CodePage, EveryByteOfEverySingleBytePageComesBack) {
  for (const std::string& name : kSingleByteNames) {
    const CodePage page = gc::codePageByName(name);
    ASSERT_NE(page, CodePage::None) << name;
    std::string all;
    for (int byte = 1; byte <= 0xFF; ++byte) all.push_back(static_cast<char>(byte));
    EXPECT_EQ(encoded(page, decoded(page, all)), all) << name;
    EXPECT_EQ(decoded(page, all).size(), all.size()) << name;
  }
}

TEST(CodePage, EveryPairOfEveryDoubleBytePageKeepsItsCharacter) {
  for (const std::string& name : kDoubleByteNames) {
    const CodePage page = gc::codePageByName(name);
    ASSERT_NE(page, CodePage::None) << name;
    int characters = 0;
    for (int lead = 0x80; lead <= 0xFF; ++lead) {
      for (int trail = 0x30; trail <= 0xFF; ++trail) {
        const char bytes[] = {static_cast<char>(lead), static_cast<char>(trail)};
        const GcText text = decoded(page, {bytes, 2});
        if (text.size() != 1) continue;
        ++characters;
        ASSERT_TRUE(decoded(page, encoded(page, text)) == text) << name << std::hex << ' ' << lead << ' ' << trail;
      }
    }
    EXPECT_GT(characters, 6000) << name;
  }
}

TEST(CodePage, KnownCharactersStandWhereTheyShould) {
  EXPECT_TRUE(decoded(CodePage::Ansi1250, "\xB9\xEA\xB3\x9C\xBF\x9F\xE6\xF1\xF3") == gc::fromUtf8("ąęłśżźćńó"));
  EXPECT_TRUE(decoded(CodePage::Dos852, "\xA5\xA9\x88\x98\xBE\xAB\x86\xE4\xA2") == gc::fromUtf8("ąęłśżźćńó"));
  EXPECT_TRUE(decoded(CodePage::Ansi1252,
                      "m\xB2 \xD8"
                      "20 \x80") == gc::fromUtf8("m² Ø20 €"));
  EXPECT_TRUE(decoded(CodePage::Ansi1251, "\xCF\xF0\xE8\xE2\xE5\xF2") == gc::fromUtf8("Привет"));
  EXPECT_TRUE(decoded(CodePage::Ansi932, "\x90\x7D\x96\xCA \xB1") == gc::fromUtf8("図面 ｱ"));
  EXPECT_TRUE(decoded(CodePage::Ansi936, "\xCD\xBC\xD6\xBD") == gc::fromUtf8("图纸"));
  EXPECT_TRUE(decoded(CodePage::Ansi949, "\xB5\xB5\xB8\xE9") == gc::fromUtf8("도면"));
  EXPECT_TRUE(decoded(CodePage::Ansi950, "\xB9\xCF\xAF\xC8") == gc::fromUtf8("圖紙"));
  EXPECT_TRUE(decoded(CodePage::Johab, "\x88\x61") == gc::fromUtf8("가"));
  EXPECT_TRUE(decoded(CodePage::Macintosh, "\x8E") == gc::fromUtf8("é"));
}

TEST(CodePage, AsciiIsAsciiEverywhere) {
  std::string ascii;
  for (char c = 1; c < 0x7F; ++c) ascii.push_back(c);
  for (const auto* names : {&kSingleByteNames, &kDoubleByteNames}) {
    for (const std::string& name : *names) {
      const CodePage page = gc::codePageByName(name);
      EXPECT_EQ(gc::toUtf8(decoded(page, ascii)), ascii) << name;
      EXPECT_EQ(encoded(page, decoded(page, ascii)), ascii) << name;
    }
  }
}

TEST(CodePage, WhatAPageLacksIsRefused) {
  std::string bytes = "kept";
  EXPECT_FALSE(gc::appendEncoded(CodePage::Ansi1250, GCHAR(0x00B2), bytes));  // superscript two
  EXPECT_FALSE(gc::appendEncoded(CodePage::Ansi1250, GCHAR(0x00D8), bytes));  // O with stroke
  EXPECT_FALSE(gc::appendEncoded(CodePage::Ansi1252, GCHAR(0x0105), bytes));  // a with ogonek
  EXPECT_FALSE(gc::appendEncoded(CodePage::Ascii, GCHAR(0x00E9), bytes));
  EXPECT_FALSE(gc::appendEncoded(CodePage::Ansi932, GCHAR(0xD83D), bytes));
  EXPECT_EQ(bytes, "kept");
}

TEST(CodePage, AByteThatBeginsPairsIsNotWrittenAlone) {
  std::string bytes;
  EXPECT_FALSE(gc::appendEncoded(CodePage::Ansi932, gc::strayByte(0x8D), bytes));
  EXPECT_FALSE(gc::appendEncoded(CodePage::Ansi1250, gc::strayByte(0x8D), bytes));
  EXPECT_TRUE(gc::appendEncoded(CodePage::Ansi1253, gc::strayByte(0xFF), bytes));
  EXPECT_EQ(bytes, "\xFF");
}

TEST(CodePage, NamesAreReadHoweverTheyAreSpelt) {
  EXPECT_EQ(gc::codePageByName("ansi_1250"), CodePage::Ansi1250);
  EXPECT_EQ(gc::codePageByName("Ansi 1250"), CodePage::Ansi1250);
  EXPECT_EQ(gc::codePageByName("dos932"), CodePage::Ansi932);
  EXPECT_EQ(gc::codePageByName("ISO-8859-2"), CodePage::Iso8859_2);
  EXPECT_EQ(gc::codePageByName("KSC5601"), CodePage::Ansi949);
  EXPECT_EQ(gc::codePageByName("JOHAB"), CodePage::Johab);
  EXPECT_EQ(gc::codePageByName("utf-8"), CodePage::Utf8);
  EXPECT_EQ(gc::codePageByName(GC_T("ANSI_936")), CodePage::Ansi936);
  for (const char* unknown : {"", "ANSI_", "ANSI_1249", "ISO8859-10", "DOS99999999999", "klingon"}) {
    EXPECT_EQ(gc::codePageByName(unknown), CodePage::None) << unknown;
  }
}

TEST(CodePage, TheNameWrittenIsReadAsTheSamePage) {
  for (int number = 1; number <= 44; ++number) {
    const CodePage page = gc::codePageByDwgNumber(number);
    ASSERT_NE(page, CodePage::None) << number;
    EXPECT_EQ(gc::codePageByName(gc::codePageName(page)), page) << number;
    EXPECT_EQ(gc::codePageByDwgNumber(gc::dwgNumberOf(page)), page) << number;
  }
  EXPECT_EQ(gc::dwgNumberOf(CodePage::Ansi1252), 30);
  EXPECT_EQ(gc::dwgNumberOf(CodePage::Ansi1250), 28);
  EXPECT_EQ(gc::codePageByDwgNumber(45), CodePage::None);
  EXPECT_EQ(gc::codePageByDwgNumber(-1), CodePage::None);
  EXPECT_STREQ(gc::codePageName(CodePage::None), "ANSI_1252");
}

}  // namespace
