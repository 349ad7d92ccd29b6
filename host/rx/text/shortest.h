// The shortest decimal that reads back as a given double.
#pragma once

#include <cstdint>

namespace gc {

// digits * 10^exponent; the digits may end in zeros.
struct ShortestDecimal {
  std::uint64_t digits;
  int exponent;
};

// Of a positive finite value. Source: R. Giulietti, "The Schubfach way to render doubles" (2020), with the closest
// decimal of the shortest length.
[[nodiscard]] ShortestDecimal shortestDecimal(double value);

}  // namespace gc
