#include "host/rx/text/number.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace {

double parsed(std::string_view text) {
  double value = -12345.0;
  EXPECT_TRUE(gc::parseReal(text, value)) << '[' << text << ']';
  return value;
}

std::uint64_t seed() {
  const char* wanted = std::getenv("GC_SEED");
  return wanted ? std::strtoull(wanted, nullptr, 10) : std::random_device{}();
}

// The text must read back as the same bits, be no longer than the shortest digits there are, and hold a point.
void expectRoundTrip(double value) {
  const std::string text = gc::realText(value);
  ASSERT_LE(text.size(), gc::kRealRoom);
  double back = 0.0;
  ASSERT_TRUE(gc::parseReal(text, back)) << text;
  ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value)) << text;
  ASSERT_NE(text.find('.'), std::string::npos) << text;
  char shortest[64];
  const char* end = std::to_chars(shortest, shortest + 64, value, std::chars_format::scientific).ptr;
  const auto digits = [](std::string_view number) {
    std::string all;
    for (const char c : number.substr(0, number.find_first_of("eE"))) {
      if (c >= '0' && c <= '9') all.push_back(c);
    }
    all.erase(0, all.find_first_not_of('0'));
    while (!all.empty() && all.back() == '0') all.pop_back();
    return all;
  };
  ASSERT_EQ(digits(text), digits({shortest, static_cast<std::size_t>(end - shortest)})) << text;
}

TEST(Number, RealsReadBack) {
  const std::uint64_t start = seed();
  SCOPED_TRACE("GC_SEED=" + std::to_string(start));
  std::mt19937_64 random(start);
  for (int i = 0; i < 300000; ++i) {
    const auto any = std::bit_cast<double>(random());
    if (std::isfinite(any)) expectRoundTrip(any);
    expectRoundTrip(std::uniform_real_distribution<>(-1e7, 1e7)(random));
    expectRoundTrip(std::round(std::uniform_real_distribution<>(-1e9, 1e9)(random)) / 1000.0);
    expectRoundTrip(static_cast<double>(static_cast<std::int64_t>(random()) >> (random() % 64)));
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(Number, RealsAtTheEdgesReadBack) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0,
                             -0.0,
                             1.0,
                             Limits::min(),
                             Limits::max(),
                             Limits::denorm_min(),
                             Limits::epsilon(),
                             0.1,
                             1.0 / 3.0,
                             5e-324,
                             1e15,
                             1e16,
                             123456789012345.0,
                             999999999999999.9,
                             1e-5,
                             1e-6,
                             9.5e-7,
                             9007199254740993.0,
                             1e22,
                             1e23,
                             4.35,
                             0.000001,
                             0.0000015,
                             2.2250738585072011e-308}) {
    expectRoundTrip(value);
    expectRoundTrip(-value);
  }
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    expectRoundTrip(power);
    expectRoundTrip(std::nextafter(power, 0.0));
    expectRoundTrip(std::nextafter(power, Limits::max()));
  }
}

TEST(Number, RealsLookAsDrawingsHaveThem) {
  EXPECT_EQ(gc::realText(0.0), "0.0");
  EXPECT_EQ(gc::realText(-0.0), "-0.0");
  EXPECT_EQ(gc::realText(1.0), "1.0");
  EXPECT_EQ(gc::realText(-20.5), "-20.5");
  EXPECT_EQ(gc::realText(0.1), "0.1");
  EXPECT_EQ(gc::realText(100000.0), "100000.0");
  EXPECT_EQ(gc::realText(1e15), "1000000000000000.0");
  EXPECT_EQ(gc::realText(1e16), "1.0E+16");
  EXPECT_EQ(gc::realText(1e20), "1.0E+20");
  EXPECT_EQ(gc::realText(1.5e300), "1.5E+300");
  EXPECT_EQ(gc::realText(0.00001), "0.00001");
  EXPECT_EQ(gc::realText(0.00000125), "1.25E-06");
  EXPECT_EQ(gc::realText(-1e-20), "-1.0E-20");
  EXPECT_EQ(gc::realText(35.46180555555556), "35.46180555555556");
}

// Leaves letters where the next call has its variables.
[[gnu::noinline]] void fillStackWith(char letter) {
  volatile char area[1024];
  for (volatile char& each : area) each = letter;
}

TEST(Number, WhatLayInMemoryBeforeDoesNotMatter) {
  for (const double value : {80977.52814739, 0.1 + 0.2, 1e-7 / 3}) {
    const std::string text = gc::realText(value);
    char again[gc::kRealRoom];
    fillStackWith('e');
    EXPECT_EQ(std::string(again, gc::formatReal(value, again)), text);
    double back = 0;
    EXPECT_TRUE(gc::parseReal(text, back));
    EXPECT_EQ(back, value);
  }
}

TEST(Number, InfinitiesAndNanAreNotWritten) {
  EXPECT_EQ(gc::realText(std::numeric_limits<double>::infinity()), "");
  EXPECT_EQ(gc::realText(-std::numeric_limits<double>::infinity()), "");
  EXPECT_EQ(gc::realText(std::numeric_limits<double>::quiet_NaN()), "");
}

TEST(Number, RealsAreTakenAsFilesWriteThem) {
  EXPECT_EQ(parsed("1"), 1.0);
  EXPECT_EQ(parsed("  1.5\t"), 1.5);
  EXPECT_EQ(parsed("+2.5"), 2.5);
  EXPECT_EQ(parsed("-.5"), -0.5);
  EXPECT_EQ(parsed("5."), 5.0);
  EXPECT_EQ(parsed("1e3"), 1000.0);
  EXPECT_EQ(parsed("1.D+03"), 1000.0);
  EXPECT_EQ(parsed("1.25d-2"), 0.0125);
  EXPECT_EQ(parsed("1E+020"), 1e20);
  EXPECT_EQ(parsed("0000000000000000000000000000001.5"), 1.5);
  EXPECT_EQ(parsed("0.00000000000000000000000000000000000000015e40"), 1.5);
  EXPECT_EQ(parsed("+1.00000000000000000000000000000000000000001"), 1.0);
  EXPECT_EQ(parsed("123456789012345678901234567890"), 123456789012345678901234567890.0);
  EXPECT_EQ(parsed("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(parsed("9007199254740993.00000000000000000001"), 9007199254740994.0);
  EXPECT_EQ(parsed("1e-400"), 0.0);
  EXPECT_EQ(parsed("-0.0000000000001e-390"), 0.0);
  EXPECT_EQ(parsed("0e999999999999"), 0.0);
  EXPECT_EQ(parsed("4.9406564584124654e-324"), 4.9406564584124654e-324);
  double wide = 0.0;
  EXPECT_TRUE(gc::parseReal(GC_T(" 2.5 "), wide));
  EXPECT_EQ(wide, 2.5);
}

TEST(Number, WhatIsNoRealIsRefused) {
  for (const char* text : {"",       " ",   "+",    "-",    ".",   "e5",  "1e",  "1e+",   "nan",   "inf",     "-INF",
                           "1.#INF", "1,5", "1.5x", "0x10", "1 2", "--1", "+-1", "1.2.3", "1e400", "-1e99999"}) {
    double value = 7.0;
    EXPECT_FALSE(gc::parseReal(text, value)) << text;
    EXPECT_EQ(value, 7.0) << text;
  }
  double value = 7.0;
  EXPECT_FALSE(gc::parseReal(GC_T("1\u0661"), value));
}

TEST(Number, ReadingAgreesWithTheLibraryOnRandomDecimals) {
  const std::uint64_t start = seed();
  SCOPED_TRACE("GC_SEED=" + std::to_string(start));
  std::mt19937_64 random(start);
  for (int i = 0; i < 300000; ++i) {
    std::string text = random() % 2 ? "-" : "";
    const int digits = 1 + static_cast<int>(random() % 25), point = static_cast<int>(random() % (digits + 1));
    for (int d = 0; d < digits; ++d) {
      if (d == point) text += '.';
      text += static_cast<char>('0' + random() % 10);
    }
    if (random() % 3 == 0) text += "e" + std::to_string(static_cast<int>(random() % 600) - 300);
    double expected = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), expected);
    if (error == std::errc::result_out_of_range) continue;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(parsed(text)), std::bit_cast<std::uint64_t>(expected)) << text;
  }
}

TEST(Number, Integers) {
  std::int64_t value = 0;
  EXPECT_TRUE(gc::parseInt("     42 ", value));
  EXPECT_EQ(value, 42);
  EXPECT_TRUE(gc::parseInt("+7", value));
  EXPECT_EQ(value, 7);
  EXPECT_TRUE(gc::parseInt(GC_T("-9223372036854775808"), value));
  EXPECT_EQ(value, std::numeric_limits<std::int64_t>::min());
  for (const char* text : {"", " ", "-", "+-1", "1.0", "9223372036854775808", "12a", "1 2"}) {
    EXPECT_FALSE(gc::parseInt(text, value)) << text;
  }
  char text[gc::kIntRoom + 1];
  EXPECT_EQ(std::string(text, gc::formatInt(std::numeric_limits<std::int64_t>::min(), text)), "-9223372036854775808");
}

TEST(Number, HexadecimalNumbers) {
  std::uint64_t value = 0;
  EXPECT_TRUE(gc::parseHex(" 1aF ", value));
  EXPECT_EQ(value, 0x1AFu);
  EXPECT_TRUE(gc::parseHex("FFFFFFFFFFFFFFFF", value));
  EXPECT_EQ(value, std::numeric_limits<std::uint64_t>::max());
  for (const char* text : {"", "G", "-1", "0x1", "10000000000000000"}) EXPECT_FALSE(gc::parseHex(text, value)) << text;
  EXPECT_EQ(gc::hexText(0), "0");
  EXPECT_EQ(gc::hexText(0x1AF), "1AF");
  EXPECT_EQ(gc::hexText(0x10), "10");
  EXPECT_EQ(gc::hexText(std::numeric_limits<std::uint64_t>::max()), "FFFFFFFFFFFFFFFF");
}

}  // namespace
