#include "host/rx/text/utf.h"

#include <gtest/gtest.h>

namespace {

using gc::fromUtf8;
using gc::toUtf8;

TEST(Utf, EveryCharacterComesBack) {
  for (char32_t c = 1; c <= 0x10FFFF; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    GcText text;
    if (c < 0x10000) {
      text.push_back(static_cast<GCHAR>(c));
    } else {
      text.push_back(static_cast<GCHAR>(0xD7C0 + (c >> 10)));
      text.push_back(static_cast<GCHAR>(0xDC00 + (c & 0x3FF)));
    }
    const std::string bytes = toUtf8(text);
    ASSERT_TRUE(gc::isUtf8(bytes)) << std::hex << static_cast<unsigned>(c);
    ASSERT_EQ(bytes.size(), c < 0x80 ? 1u : c < 0x800 ? 2u : c < 0x10000 ? 3u : 4u);
    ASSERT_TRUE(fromUtf8(bytes) == text) << std::hex << static_cast<unsigned>(c);
  }
}

TEST(Utf, PolishTextIsWhatItIsInUtf16) {
  EXPECT_TRUE(fromUtf8("zażółć m² Ø20 😀") == GC_T("za\u017C\u00F3\u0142\u0107 m\u00B2 \u00D820 \U0001F600"));
}

TEST(Utf, LongAsciiTextOfEveryLength) {
  std::string bytes;
  for (int i = 0; i < 100; ++i) {
    const GcText text = fromUtf8(bytes + "ż");
    ASSERT_EQ(text.size(), bytes.size() + 1);
    ASSERT_EQ(toUtf8(text), bytes + "ż");
    ASSERT_EQ(gc::asciiPrefix(std::string_view(bytes + "ż").substr(0)), bytes.size());
    ASSERT_EQ(gc::asciiPrefix(text), bytes.size());
    bytes.push_back(static_cast<char>('!' + i % 90));
  }
}

TEST(Utf, MalformedBytesAreKept) {
  const std::string cases[] = {
      "\x80",
      "a\xFFz",
      "\xC0\x80",
      "\xC1\xBF",
      "\xE0\x80\x80",
      "\xED\xA0\x80",
      "\xF0\x80\x80\x80",
      "\xF4\x90\x80\x80",
      "\xF5\x80\x80\x80",
      "\xC5",
      "\xE2\x82",
      "\xF0\x9F\x98",
      "ab\xC5zż",
      "m\xB2",
  };
  for (const std::string& bytes : cases) {
    EXPECT_FALSE(gc::isUtf8(bytes));
    GcText text;
    EXPECT_FALSE(gc::appendFromUtf8(bytes, text));
    EXPECT_EQ(toUtf8(text), bytes);
  }
}

TEST(Utf, LoneSurrogatesBecomeTheReplacementCharacter) {
  std::string out;
  GcText text = GC_T("a_b_c");
  text[1] = static_cast<GCHAR>(0xD83D);
  text[3] = static_cast<GCHAR>(0xDE00);
  EXPECT_FALSE(gc::appendToUtf8(text, out));
  EXPECT_EQ(out,
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD"
            "c");
}

}  // namespace
