#include "host/lisp/core/units.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace lisp::testing {

namespace {

constexpr double kPi = 3.14159265358979323846;

TEST(Units, LengthsComeBack) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20'000; ++i) {
    const double value = std::ldexp(std::uniform_real_distribution<>(-1, 1)(random), static_cast<int>(random() % 30));
    for (int format = 1; format <= 5; ++format) {
      const int precision = static_cast<int>(random() % 7);
      const Text text = formatLength(value, static_cast<LengthFormat>(format), precision, 0);
      double back = 0;
      ASSERT_TRUE(parseLength(text, static_cast<LengthFormat>(format), back)) << toUtf8(text);
      const double step = format == 1   ? std::abs(value) * std::pow(10.0, -precision)
                          : format >= 4 ? std::ldexp(1.0, -precision)
                                        : std::pow(10.0, -precision);
      ASSERT_NEAR(back, value, step * 0.5 * (1 + 1e-9) + std::abs(value) * 1e-15) << format << " " << toUtf8(text);
    }
  }
}

TEST(Units, AnglesComeBack) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 20'000; ++i) {
    const double angle = std::uniform_real_distribution<>(0, 2 * kPi)(random);
    const double base = i % 2 ? 0.0 : std::uniform_real_distribution<>(0, 2 * kPi)(random);
    const bool clockwise = i % 3 == 0;
    for (int format = 0; format <= 4; ++format) {
      const Text text = formatAngle(angle, static_cast<AngleFormat>(format), 6, base, clockwise);
      double back = 0;
      ASSERT_TRUE(parseAngle(text, static_cast<AngleFormat>(format), base, clockwise, back)) << toUtf8(text);
      const double off = std::remainder(back - angle, 2 * kPi);
      ASSERT_NEAR(off, 0.0, 1e-6) << format << " " << toUtf8(text);
    }
  }
}

// Halves of numbers that are exact in binary go away from zero; anything else goes to the nearest.
TEST(Units, HalvesGoAwayFromZero) {
  for (int i = -4001; i <= 4001; i += 2) {
    const double value = i / 8.0;  // ends in .125, .375, .625 or .875
    const Text text = fixedDigits(value, 2);
    const double expected = (i < 0 ? -1 : 1) * std::floor(std::abs(i) * 12.5 + 0.5) / 100;
    EXPECT_EQ(leadingReal(text), expected) << toUtf8(text);
  }
  EXPECT_EQ(fixedDigits(1.005, 2), Text(GC_T("1.00"))) << "its binary value is below the half";
  EXPECT_EQ(fixedDigits(999999.5, 0), Text(GC_T("1000000")));
  EXPECT_EQ(fixedDigits(-0.4, 0), Text(GC_T("0")));
}

TEST(Units, ZerosAreDroppedAsAsked) {
  const auto shown = [](double v, int zeros) { return toUtf8(formatLength(v, LengthFormat::Decimal, 4, zeros)); };
  EXPECT_EQ(shown(17.5, 8), "17.5");
  EXPECT_EQ(shown(3, 8), "3");
  EXPECT_EQ(shown(0.5, 4), ".5000");
  EXPECT_EQ(shown(0.5, 12), ".5");
  EXPECT_EQ(shown(-0.5, 12), "-.5");
  EXPECT_EQ(shown(100, 8), "100");
  const auto feet = [](double v, int zeros) { return toUtf8(formatLength(v, LengthFormat::Architectural, 4, zeros)); };
  EXPECT_EQ(feet(12, 0), "1'");
  EXPECT_EQ(feet(12, 1), "1'-0\"");
  EXPECT_EQ(feet(6, 1), "0'-6\"");
  EXPECT_EQ(feet(6, 2), "0'-6\"");
  EXPECT_EQ(feet(12, 2), "1'");
  EXPECT_EQ(feet(12, 3), "1'-0\"");
  EXPECT_EQ(feet(6, 3), "6\"");
  EXPECT_EQ(feet(0.5, 0), "1/2\"");
}

}  // namespace

}  // namespace lisp::testing
