// Against the C library with more digits, in units of the last place; special values as the C standard has them.
#include "host/rx/math/elementary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// How far `value` is from `exact`, in units of the last place of the latter.
double unitsOff(double value, long double exact) {
  const double rounded = static_cast<double>(exact);
  const double unit = std::nextafter(std::fabs(rounded), kInfinity) - std::fabs(rounded);
  return static_cast<double>(std::fabs(static_cast<long double>(value) - exact)) / unit;
}

class Worst {
 public:
  explicit Worst(double allowed) : m_allowed(allowed) {}
  void check(double value, long double exact, double x, double y = 0) {
    const double off = unitsOff(value, exact);
    if (off <= m_worst) return;
    m_worst = off;
    EXPECT_LE(off, m_allowed) << "of " << x << ' ' << y;
  }

 private:
  double m_allowed;
  double m_worst = 0;
};

// Numbers of every size up to `most`, both signs.
class Numbers {
 public:
  explicit Numbers(double most) : m_exponents(-40, std::log2(most)) {}
  double next() {
    const double size = std::exp2(m_exponents(m_random));
    return m_random() % 2 ? size : -size;
  }

 private:
  std::mt19937_64 m_random{12345};
  std::uniform_real_distribution<double> m_exponents;
};

#ifndef _WIN32  // the long functions of that library are no better than those here

TEST(Elementary, SinesAndCosines) {
  Worst sine(1), cosine(1), tangent(2);
  Numbers numbers(1e6);
  for (int i = 0; i < 300000; ++i) {
    const double x = numbers.next();
    sine.check(gc::sin(x), sinl(x), x);
    cosine.check(gc::cos(x), cosl(x), x);
    tangent.check(gc::tan(x), tanl(x), x);
  }
}

TEST(Elementary, NearMultiplesOfAQuarterTurn) {
  Worst sine(1), cosine(1);
  for (int i = 1; i < 200000; ++i) {
    const double x = i * 1.5707963267948966;
    sine.check(gc::sin(x), sinl(x), x);
    cosine.check(gc::cos(x), cosl(x), x);
  }
}

TEST(Elementary, LargeAngles) {
  Worst sine(1), cosine(1);
  Numbers numbers(1e15);
  for (int i = 0; i < 200000; ++i) {
    const double x = numbers.next();
    sine.check(gc::sin(x), sinl(x), x);
    cosine.check(gc::cos(x), cosl(x), x);
  }
}

TEST(Elementary, ArcFunctions) {
  Worst tangent(1), quotient(2), sine(3), cosine(3);
  Numbers numbers(1e9);
  for (int i = 0; i < 300000; ++i) {
    const double x = numbers.next(), y = numbers.next();
    tangent.check(gc::atan(x), atanl(x), x);
    quotient.check(gc::atan2(y, x), atan2l(y, x), y, x);
    const double share = x / (std::fabs(x) + std::fabs(y));
    sine.check(gc::asin(share), asinl(share), share);
    cosine.check(gc::acos(share), acosl(share), share);
  }
}

TEST(Elementary, Roots) {
  Worst two(2), three(2);
  Numbers numbers(1e300);
  for (int i = 0; i < 300000; ++i) {
    const double x = numbers.next(), y = i % 2 ? numbers.next() : x * 0.37;
    two.check(gc::hypot(x, y), hypotl(x, y), x, y);
    three.check(gc::cbrt(x), cbrtl(x), x);
  }
  two.check(gc::hypot(3e-320, 4e-320), hypotl(3e-320, 4e-320), 3e-320, 4e-320);
}

#endif

TEST(Elementary, SpecialValues) {
  EXPECT_TRUE(std::signbit(gc::sin(-0.0)) && std::signbit(gc::tan(-0.0)) && std::signbit(gc::atan(-0.0)));
  EXPECT_EQ(gc::cos(0), 1);
  for (const double x : {kInfinity, -kInfinity, kNaN}) {
    EXPECT_TRUE(std::isnan(gc::sin(x)) && std::isnan(gc::cos(x)) && std::isnan(gc::tan(x))) << x;
  }
  EXPECT_TRUE(std::isnan(gc::asin(1.5)) && std::isnan(gc::acos(-1.5)) && std::isnan(gc::atan(kNaN)));
  const double numbers[] = {0.0, -0.0, 1.0, -1.0, kInfinity, -kInfinity};
  for (const double y : numbers) {
    EXPECT_EQ(gc::atan(y), std::atan(y));
    for (const double x : numbers) {
      EXPECT_EQ(gc::atan2(y, x), std::atan2(y, x)) << y << ' ' << x;
      EXPECT_EQ(std::signbit(gc::atan2(y, x)), std::signbit(std::atan2(y, x))) << y << ' ' << x;
      EXPECT_EQ(gc::hypot(y, x), std::hypot(y, x)) << y << ' ' << x;
    }
    EXPECT_EQ(gc::cbrt(y), std::cbrt(y));
  }
  EXPECT_TRUE(std::isnan(gc::atan2(kNaN, 1)) && std::isnan(gc::hypot(kNaN, 1)));
  EXPECT_EQ(gc::hypot(kNaN, kInfinity), kInfinity);
}

// What people look at: the quarter turns and what a drawing is full of.
TEST(Elementary, RoundAngles) {
  EXPECT_EQ(gc::sin(1.5707963267948966), 1);
  EXPECT_EQ(gc::cos(3.141592653589793), -1);
  EXPECT_DOUBLE_EQ(gc::cos(1.5707963267948966), 6.123233995736766e-17);
  EXPECT_DOUBLE_EQ(gc::sin(3.141592653589793), 1.2246467991473532e-16);
  EXPECT_DOUBLE_EQ(gc::sin(0.5235987755982988), 0.5);
  EXPECT_EQ(gc::atan2(1, 1), 0.7853981633974483);
  EXPECT_EQ(gc::atan2(0, -1), 3.141592653589793);
  EXPECT_EQ(gc::acos(0), 1.5707963267948966);
  EXPECT_EQ(gc::hypot(3, 4), 5);
  EXPECT_EQ(gc::cbrt(27), 3);
}

}  // namespace
