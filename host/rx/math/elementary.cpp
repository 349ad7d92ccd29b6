#include "host/rx/math/elementary.h"

#include <cmath>
#include <limits>

namespace gc {
namespace {

constexpr double kPi = 3.14159265358979311600e+00;
constexpr double kPiLow = 1.22464679914735317720e-16;  // pi less kPi
constexpr double kHalfPi = 1.57079632679489655800e+00;
constexpr double kHalfPiLow = 6.12323399573676588614e-17;

// ---- sine and cosine -------------------------------------------------------------------------------------

// A number as the sum of two: together twice the digits.
struct Pair {
  double high, low;
};

// a - b without a loss (Knuth's sum of two).
Pair difference(double a, double b) {
  const double high = a - b;
  const double taken = a - high;
  return {high, (a - (high + taken)) + (taken - b)};
}

// a * b without a loss (Dekker's product; a fused multiplication is not exact in every C library).
Pair product(double a, double b) {
  constexpr double kSplit = 134217729;  // 2^27 + 1
  const double aLarge = a * kSplit - (a * kSplit - a), aSmall = a - aLarge;
  const double bLarge = b * kSplit - (b * kSplit - b), bSmall = b - bLarge;
  const double high = a * b;
  return {high, aSmall * bSmall - (((high - aLarge * bLarge) - aSmall * bLarge) - aLarge * bSmall)};
}

// An angle less the multiples of a quarter turn nearest to it.
struct Reduced {
  Pair angle;  // within an eighth turn
  int quarters;
};

// Half of pi in pieces of 33 bits: a piece times a count below 2^20 has no rounding (Cody and Waite).
constexpr double kQuarter1 = 1.57079632673412561417e+00;
constexpr double kQuarter2 = 6.07710050630396597660e-11;
constexpr double kQuarter3 = 2.02226624871116645580e-21;
constexpr double kQuarter4 = 8.47842766036889956997e-32;  // the rest

Reduced reduceSmall(Pair angle) {
  const double count = std::nearbyint(angle.high * (2 / kPi));
  const Pair first = difference(angle.high, count * kQuarter1);
  const Pair second = difference(first.high, count * kQuarter2);
  const Pair third = difference(second.high, count * kQuarter3);
  const double low = ((first.low + second.low) + third.low) + (angle.low - count * kQuarter4);
  const double high = third.high + low;
  return {{high, (third.high - high) + low}, static_cast<int>(static_cast<long long>(count) & 3)};
}

Reduced reduce(double angle) {
  constexpr double kEighth = kPi / 4, kSmall = 1e6, kTurn = 2 * kPi;
  // 2 pi less kTurn, in two numbers.
  constexpr double kTurnLow = 2.44929359829470635445e-16, kTurnLower = -5.98953961943667933e-33;
  if (std::fabs(angle) <= kEighth) return {{angle, 0}, 0};
  if (std::fabs(angle) <= kSmall) return reduceSmall({angle, 0});
  const double rest = std::remainder(angle, kTurn);  // exact
  const double turns = std::nearbyint((angle - rest) / kTurn);
  const Pair over = product(turns, kTurnLow);
  const Pair less = difference(rest, over.high);
  return reduceSmall({less.high, less.low - over.low - turns * kTurnLower});
}

// Polynomials for an eighth turn each way (coefficients: Remez fits as in the freely published math library of 1993).
double sinOf(Pair x) {
  const double square = x.high * x.high, cube = square * x.high;
  const double rest = 8.33333333332248946124e-03 +
                      square * (-1.98412698298579493134e-04 +
                                square * (2.75573137070700676789e-06 + square * (-2.50507602534068634195e-08 +
                                                                                 square * 1.58969099521155010221e-10)));
  return x.high - ((square * (0.5 * x.low - cube * rest) - x.low) - cube * -1.66666666666666324348e-01);
}

double cosOf(Pair x) {
  const double square = x.high * x.high;
  const double rest =
      square *
      (4.16666666666666019037e-02 +
       square * (-1.38888888888741095749e-03 +
                 square * (2.48015872894767294178e-05 +
                           square * (-2.75573143513906633035e-07 +
                                     square * (2.08757232129817482790e-09 + square * -1.13596475577881948265e-11)))));
  const double half = 0.5 * square, most = 1 - half;
  return most + (((1 - most) - half) + (square * rest - x.high * x.low));
}

// ---- arc tangent -----------------------------------------------------------------------------------------

// atan(x) for x within 7/16 each way, less x.
double atanRest(double x) {
  const double square = x * x, fourth = square * square;
  const double odd =
      square *
      (3.33333333333329318027e-01 +
       fourth * (1.42857142725034663711e-01 +
                 fourth * (9.09088713343650656196e-02 +
                           fourth * (6.66107313738753120669e-02 +
                                     fourth * (4.97687799461593236017e-02 + fourth * 1.62858201153657823623e-02)))));
  const double even =
      fourth * (-1.99999999998764832476e-01 +
                fourth * (-1.11111104054623557880e-01 +
                          fourth * (-7.69187620504482999495e-02 +
                                    fourth * (-5.83357013379057348645e-02 + fourth * -3.65315727442169155270e-02))));
  return x * (odd + even);
}

// atan(x) = atan(c) + atan((x - c) / (1 + c x)), with atan(c) in two numbers.
double atanFrom(Pair base, double rest) { return base.high - ((atanRest(rest) - base.low) - rest); }

double atanPositive(double x) {
  constexpr Pair kAtanHalf{4.63647609000806093515e-01, 2.26987774529616870924e-17};
  constexpr Pair kAtan1{7.85398163397448278999e-01, 3.06161699786838301793e-17};
  constexpr Pair kAtan15{9.82793723247329054082e-01, 1.39033110312309984516e-17};
  if (x < 0.4375) return x - atanRest(x);
  if (x < 0.6875) return atanFrom(kAtanHalf, (2 * x - 1) / (2 + x));
  if (x < 1.1875) return atanFrom(kAtan1, (x - 1) / (x + 1));
  if (x < 2.4375) return atanFrom(kAtan15, (x - 1.5) / (1 + 1.5 * x));
  return atanFrom({kHalfPi, kHalfPiLow}, -1 / x);
}

// Where the quotient says nothing: on an axis, at the origin, at infinity.
bool isSpecial(double y, double x) { return y == 0 || x == 0 || std::isinf(y) || std::isinf(x); }

double atan2Special(double y, double x) {
  double angle = 0;
  if (std::isinf(y) && std::isinf(x))
    angle = x > 0 ? kPi / 4 : 3 * (kPi / 4);
  else if (y == 0 || std::isinf(x))
    angle = std::signbit(x) ? kPi : 0;
  else
    angle = kHalfPi;
  return std::copysign(angle, y);
}

}  // namespace

SinCos sinCos(double angle) {
  if (!std::isfinite(angle))
    return {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};
  const Reduced reduced = reduce(angle);
  const double s = sinOf(reduced.angle), c = cosOf(reduced.angle);
  switch (reduced.quarters) {
    case 0: return {s, c};
    case 1: return {c, -s};
    case 2: return {-s, -c};
    default: return {-c, s};
  }
}

double sin(double angle) { return angle == 0 ? angle : sinCos(angle).sin; }
double cos(double angle) { return sinCos(angle).cos; }

double tan(double angle) {
  if (angle == 0) return angle;
  const SinCos both = sinCos(angle);
  return both.sin / both.cos;
}

double atan(double x) {
  if (std::isnan(x)) return x;
  return x < 0 || std::signbit(x) ? -atanPositive(-x) : atanPositive(x);
}

double atan2(double y, double x) {
  if (std::isnan(y) || std::isnan(x)) return x + y;
  if (isSpecial(y, x)) return atan2Special(y, x);
  const double angle = atanPositive(std::fabs(y / x));
  return std::copysign(x > 0 ? angle : kPi - (angle - kPiLow), y);
}

double asin(double x) { return atan2(x, std::sqrt((1 - x) * (1 + x))); }
double acos(double x) { return atan2(std::sqrt((1 - x) * (1 + x)), x); }

double hypot(double x, double y) {
  if (std::isinf(x) || std::isinf(y)) return std::numeric_limits<double>::infinity();
  const double a = std::fabs(x), b = std::fabs(y);
  const double greater = a > b ? a : b, less = a > b ? b : a;
  // Squares that are finite and lose nothing that counts.
  if (greater < 1e150 && less > 1e-150) return std::sqrt(greater * greater + less * less);
  if (!(greater > 0)) return greater + less;
  const int exponent = std::ilogb(greater);
  const double p = std::ldexp(greater, -exponent), q = std::ldexp(less, -exponent);
  return std::ldexp(std::sqrt(p * p + q * q), exponent);
}

double cbrt(double x) {
  if (x == 0 || !std::isfinite(x)) return x;
  int exponent = 0;
  double m = std::frexp(std::fabs(x), &exponent);
  const int over = ((exponent % 3) + 3) % 3;
  m = std::ldexp(m, over);  // [0.5, 4)
  double root = 0.7 + 0.3 * m / (1 + 0.1 * m);
  // Halley's step triples the digits.
  for (int i = 0; i < 4; ++i) {
    const double cube = root * root * root;
    root *= (cube + 2 * m) / (2 * cube + m);
  }
  root -= (root * root * root - m) / (3 * root * root);
  return std::copysign(std::ldexp(root, (exponent - over) / 3), x);
}

}  // namespace gc
