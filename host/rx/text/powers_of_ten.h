// The powers of ten that doubles reach, with 128 bits of precision.
#pragma once

#include <cstdint>

namespace gc {

// A number of 128 bits with the highest set.
struct WidePower {
  std::uint64_t high, low;
};

constexpr int kFirstPowerOfTen = -292;
constexpr int kLastPowerOfTen = 324;

extern const WidePower kPowersOfTen[kLastPowerOfTen - kFirstPowerOfTen + 1];

// 10^exponent = power * 2^(floorLog2OfPower10(exponent) - 127), the power rounded up (exact for 0 to 55).
inline const WidePower& powerOfTen(int exponent) { return kPowersOfTen[exponent - kFirstPowerOfTen]; }

// floor(exponent * log2(10)) for the exponents of the table.
constexpr int floorLog2OfPower10(int exponent) { return exponent * 1741647 >> 19; }

__extension__ using Uint128 = unsigned __int128;

}  // namespace gc
