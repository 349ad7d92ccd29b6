// Numbers as text, whatever the locale: parsing and shortest formatting that reads back as the same value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rx/gcchar.h"

namespace gc {

// Reads a whole text as a real, correctly rounded. Blanks around it, a leading '+', exponents with 'e', 'E', 'd' or
// 'D', and a missing integer part or fraction (".5", "5.") are taken; infinities, NaN, numbers too great for a double
// and anything else are refused, and `value` is then untouched. Numbers too small for a double become zero.
[[nodiscard]] bool parseReal(std::string_view text, double& value);
[[nodiscard]] bool parseReal(std::basic_string_view<GCHAR> text, double& value);

// Reads a whole text as a decimal integer: blanks around it and a sign are taken.
[[nodiscard]] bool parseInt(std::string_view text, std::int64_t& value);
[[nodiscard]] bool parseInt(std::basic_string_view<GCHAR> text, std::int64_t& value);

// Reads a whole text as a hexadecimal number of at most 64 bits: blanks around it are taken.
[[nodiscard]] bool parseHex(std::string_view text, std::uint64_t& value);

// Room the formatters below need at most.
constexpr std::size_t kRealRoom = 32;
constexpr std::size_t kIntRoom = 20;
constexpr std::size_t kHexRoom = 16;

// Writes the shortest text that reads back as `value`, always with a decimal point: "1.0", "-0.25", "1.5E+20".
// Plain notation from 1e-5 up to 1e16, an exponent outside. Returns the end; nothing is written (returns `to`) for
// infinities and NaN.
[[nodiscard]] char* formatReal(double value, char* to);
[[nodiscard]] char* formatInt(std::int64_t value, char* to);
[[nodiscard]] char* formatHex(std::uint64_t value, char* to);  // upper case, without leading zeros

[[nodiscard]] std::string realText(double value);
[[nodiscard]] std::string hexText(std::uint64_t value);

}  // namespace gc
