#include "host/rx/text/shortest.h"

#include <bit>

#include "host/rx/text/powers_of_ten.h"

namespace gc {
namespace {

constexpr int kSignificandBits = 52;
constexpr int kExponentBias = 1075;  // of the significand taken as an integer

// floor(exponent * log10(2)), and the same for 3/4 of the power, in the doubles' range.
int floorLog10OfPower2(int exponent) { return exponent * 1262611 >> 22; }
int floorLog10OfThreeQuarters(int exponent) { return (exponent * 1262611 - 524031) >> 22; }

// power * factor / 2^128, the lowest bit set when anything was cut off.
std::uint64_t productRoundedToOdd(const WidePower& power, std::uint64_t factor) {
  const Uint128 low = static_cast<Uint128>(power.low) * factor;
  const Uint128 high = static_cast<Uint128>(power.high) * factor + static_cast<std::uint64_t>(low >> 64);
  return static_cast<std::uint64_t>(high >> 64) | (static_cast<std::uint64_t>(high) > 1);
}

}  // namespace

ShortestDecimal shortestDecimal(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t fraction = bits & ((std::uint64_t{1} << kSignificandBits) - 1);
  const int biased = static_cast<int>(bits >> kSignificandBits);
  const bool isNormal = biased != 0;
  const std::uint64_t significand = isNormal ? fraction | std::uint64_t{1} << kSignificandBits : fraction;
  const int exponent = (isNormal ? biased : 1) - kExponentBias;
  const bool isWhole =
      exponent <= 0 && exponent > -kSignificandBits - 1 && (significand & ((std::uint64_t{1} << -exponent) - 1)) == 0;
  if (isWhole) return {significand >> -exponent, 0};

  // The value and the ends of the interval that rounds to it, times four, scaled by 10^-decimal.
  const bool lowerIsCloser = fraction == 0 && biased > 1;
  const int decimal = lowerIsCloser ? floorLog10OfThreeQuarters(exponent) : floorLog10OfPower2(exponent);
  const WidePower& power = powerOfTen(-decimal);
  const int shift = exponent + floorLog2OfPower10(-decimal) + 1;
  const std::uint64_t isOdd = significand & 1;
  const std::uint64_t lower = productRoundedToOdd(power, (4 * significand - 2 + lowerIsCloser) << shift) + isOdd;
  const std::uint64_t middle = productRoundedToOdd(power, (4 * significand) << shift);
  const std::uint64_t upper = productRoundedToOdd(power, (4 * significand + 2) << shift) - isOdd;

  const std::uint64_t digits = middle / 4;
  if (digits >= 10) {  // one digit less, if exactly one such decimal is inside
    const std::uint64_t fewer = digits / 10;
    const bool downInside = lower <= 40 * fewer, upInside = 40 * fewer + 40 <= upper;
    if (downInside != upInside) return {fewer + upInside, decimal + 1};
  }
  const bool downInside = lower <= 4 * digits, upInside = 4 * digits + 4 <= upper;
  if (downInside != upInside) return {digits + upInside, decimal};
  const std::uint64_t half = 4 * digits + 2;
  const bool roundsUp = middle > half || (middle == half && (digits & 1) != 0);
  return {digits + roundsUp, decimal};
}

}  // namespace gc
