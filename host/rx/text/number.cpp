#include "host/rx/text/number.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "host/rx/text/powers_of_ten.h"
#include "host/rx/text/shortest.h"

namespace gc {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Powers of ten that a double holds exactly.
constexpr int kExactPower = 22;
constexpr double kPowers[kExactPower + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t kExactMantissa = std::uint64_t{1} << 53;

// The parts of a decimal number: mantissa * 10^exponent. `digits` counts the significant ones read into the mantissa.
struct Decimal {
  std::uint64_t mantissa = 0;
  int digits = 0;
  int exponent = 0;
  bool negative = false;
  bool isShort = true;  // all digits went into the mantissa
};

bool isDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

const char* readDigits(const char* at, const char* end, Decimal& number, int exponentStep) {
  for (; at < end && isDigit(*at); ++at) {
    if (number.digits < 19) {
      number.mantissa = number.mantissa * 10 + static_cast<unsigned char>(*at - '0');
      number.digits += number.mantissa != 0;
      number.exponent += exponentStep;
    } else {
      number.isShort = false;
    }
  }
  return at;
}

const char* readExponent(const char* at, const char* end, Decimal& number) {
  const bool negative = at < end && *at == '-';
  if (at < end && (*at == '-' || *at == '+')) ++at;
  if (at == end || !isDigit(*at)) return nullptr;
  int exponent = 0;
  for (; at < end && isDigit(*at); ++at) {
    if (exponent < 100000) exponent = exponent * 10 + (*at - '0');
  }
  number.exponent += negative ? -exponent : exponent;
  return at;
}

// False when the text is no decimal number. Digits after the nineteenth are passed over.
bool readDecimal(std::string_view text, Decimal& number) {
  const char* at = text.data();
  const char* end = at + text.size();
  if (at < end && (*at == '+' || *at == '-')) number.negative = *at++ == '-';
  const char* firstDigit = at;
  at = readDigits(at, end, number, 0);
  std::ptrdiff_t digits = at - firstDigit;
  if (at < end && *at == '.') {
    const char* fraction = ++at;
    at = readDigits(at, end, number, -1);
    digits += at - fraction;
  }
  if (digits == 0) return false;
  if (at < end && (*at == 'e' || *at == 'E' || *at == 'd' || *at == 'D')) at = readExponent(at + 1, end, number);
  return at == end;
}

// mantissa * 10^exponent by one wide product, for results that are normal numbers. False when the product is too close
// to the middle between two doubles to tell which is nearer: it is good to one unit of its 128 bits.
bool multiplied(std::uint64_t mantissa, int exponent, double& value) {
  if (mantissa == 0 || exponent < kFirstPowerOfTen || exponent > kLastPowerOfTen) return false;
  const WidePower& power = powerOfTen(exponent);
  const int zeros = std::countl_zero(mantissa);
  mantissa <<= zeros;
  const Uint128 low = static_cast<Uint128>(mantissa) * power.low;
  const Uint128 product = static_cast<Uint128>(mantissa) * power.high + static_cast<std::uint64_t>(low >> 64);
  const bool isLong = product >> 127 != 0;
  const int cut = isLong ? 75 : 74;  // bits beyond the 53 of a double
  const Uint128 half = static_cast<Uint128>(1) << (cut - 1);
  const Uint128 rest = product & (2 * half - 1);
  if (rest >= half - 1 && rest <= half + 1) return false;
  const std::uint64_t rounded = static_cast<std::uint64_t>(product >> cut) + (rest > half);
  const int scale = floorLog2OfPower10(exponent) - 127 + 64 - zeros + cut;  // the value is rounded * 2^scale
  if (scale < -1022 - 52 || scale > 1023 - 53) return false;
  value = static_cast<double>(rounded) * std::bit_cast<double>(static_cast<std::uint64_t>(1023 + scale / 2) << 52) *
          std::bit_cast<double>(static_cast<std::uint64_t>(1023 + scale - scale / 2) << 52);
  return true;
}

// The general, correctly rounded way; the text has been checked by readDecimal.
bool parseLong(std::string_view text, double& value) {
  if (text.front() == '+') text.remove_prefix(1);
  std::string copy(text);
  for (char& c : copy) {
    if (c == 'd' || c == 'D') c = 'e';
  }
  double parsed = 0.0;
  const auto [end, error] = std::from_chars(copy.data(), copy.data() + copy.size(), parsed);
  if (error == std::errc::result_out_of_range) {
    const std::size_t exponent = copy.find_first_of("eE");
    const bool tiny = exponent == std::string::npos ? copy.find_first_of("123456789") > copy.find('.')
                                                    : exponent + 1 < copy.size() && copy[exponent + 1] == '-';
    if (!tiny) return false;
    value = copy.front() == '-' ? -0.0 : 0.0;
    return true;
  }
  if (error != std::errc() || end != copy.data() + copy.size()) return false;
  value = parsed;
  return true;
}

// Narrows a short text; empty when it is no number anyway.
struct Narrow {
  std::array<char, 400> bytes;
  std::size_t size = 0;
  explicit Narrow(std::basic_string_view<GCHAR> text) {
    if (text.size() > bytes.size()) return;
    for (const GCHAR unit : text) bytes[size++] = unit < 0x80 ? static_cast<char>(unit) : '?';
  }
  std::string_view view() const { return {bytes.data(), size}; }
};

constexpr char kPairs[] =
    "0001020304050607080910111213141516171819202122232425262728293031323334353637383940414243444546474849"
    "5051525354555657585960616263646566676869707172737475767778798081828384858687888990919293949596979899";

// The digits of a number at the end of a text that ends at `end`; returns where they begin.
char* digitsBefore(std::uint64_t value, char* end) {
  while (value >= 100) {
    end -= 2;
    std::memcpy(end, kPairs + 2 * (value % 100), 2);
    value /= 100;
  }
  if (value < 10) {
    *--end = static_cast<char>('0' + value);
    return end;
  }
  end -= 2;
  std::memcpy(end, kPairs + 2 * value, 2);
  return end;
}

// Plain notation of mantissa / 10^decimals, without trailing zeros but with a decimal point.
char* writePlain(std::uint64_t mantissa, int decimals, char* to) {
  while (decimals > 1 && mantissa % 10 == 0) mantissa /= 10, --decimals;
  char text[kIntRoom];
  const char* digits = digitsBefore(mantissa, text + kIntRoom);
  const int count = static_cast<int>(text + kIntRoom - digits);
  int whole = count - decimals;
  if (whole <= 0) {
    *to++ = '0';
    *to++ = '.';
    for (; whole < 0; ++whole) *to++ = '0';
    std::memcpy(to, digits, count);
    return to + count;
  }
  std::memcpy(to, digits, whole);
  to += whole;
  *to++ = '.';
  std::memcpy(to, digits + whole, decimals);
  return to + decimals;
}

// Coordinates mostly have few decimals. When value * 10^6 rounds to an integer of at most 15 digits that, divided by
// 10^6 again, is the value, its decimal text is the only one of at most 15 digits that reads back (a double tells all
// of those apart), so it is the shortest.
constexpr int kFewDecimals = 6;
constexpr double kFewScale = 1e6;
constexpr double kFifteenDigits = 1e15;

// Lays the digits and the exponent of scientific notation out: d.ddd * 10^exponent.
char* layOut(const char* digits, int count, int exponent, char* to) {
  if (exponent < -5 || exponent > 15) {
    *to++ = digits[0];
    *to++ = '.';
    if (count == 1) *to++ = '0';
    std::memcpy(to, digits + 1, count - 1);
    to += count - 1;
    *to++ = 'E';
    *to++ = exponent < 0 ? '-' : '+';
    const int size = exponent < 0 ? -exponent : exponent;
    if (size < 10) *to++ = '0';
    return std::to_chars(to, to + 4, size).ptr;
  }
  if (exponent < 0) {
    *to++ = '0';
    *to++ = '.';
    for (int i = exponent + 1; i < 0; ++i) *to++ = '0';
    std::memcpy(to, digits, count);
    return to + count;
  }
  const int whole = exponent + 1;
  for (int i = 0; i < whole; ++i) *to++ = i < count ? digits[i] : '0';
  *to++ = '.';
  if (count <= whole) {
    *to++ = '0';
    return to;
  }
  std::memcpy(to, digits + whole, count - whole);
  return to + (count - whole);
}

}  // namespace

bool parseReal(std::string_view text, double& value) {
  text = trimmed(text);
  Decimal number;
  if (!readDecimal(text, number)) return false;
  // Both operands are exact, so one operation rounds correctly.
  if (number.isShort && number.mantissa <= kExactMantissa && number.exponent >= -kExactPower &&
      number.exponent <= kExactPower) {
    double magnitude = static_cast<double>(number.mantissa);
    magnitude = number.exponent < 0 ? magnitude / kPowers[-number.exponent] : magnitude * kPowers[number.exponent];
    value = number.negative ? -magnitude : magnitude;
    return true;
  }
  double magnitude = 0.0;
  if (number.isShort && multiplied(number.mantissa, number.exponent, magnitude)) {
    value = number.negative ? -magnitude : magnitude;
    return true;
  }
  return parseLong(text, value);
}

bool parseReal(std::basic_string_view<GCHAR> text, double& value) { return parseReal(Narrow(text).view(), value); }

bool parseInt(std::string_view text, std::int64_t& value) {
  text = trimmed(text);
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') return false;
  }
  std::int64_t parsed = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  value = parsed;
  return true;
}

bool parseInt(std::basic_string_view<GCHAR> text, std::int64_t& value) { return parseInt(Narrow(text).view(), value); }

bool parseHex(std::string_view text, std::uint64_t& value) {
  text = trimmed(text);
  std::uint64_t parsed = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed, 16);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  value = parsed;
  return true;
}

char* formatReal(double value, char* to) {
  if (!std::isfinite(value)) return to;
  if (std::signbit(value)) {
    *to++ = '-';
    value = -value;
  }
  const double scaled = value * kFewScale;
  if (scaled < kFifteenDigits) {
    const auto mantissa = static_cast<std::uint64_t>(scaled + 0.5);
    if (static_cast<double>(mantissa) / kFewScale == value) return writePlain(mantissa, kFewDecimals, to);
  }
  const ShortestDecimal shortest = shortestDecimal(value);
  char text[kIntRoom];
  char* end = text + kIntRoom;
  const char* digits = digitsBefore(shortest.digits, end);
  const int exponent = shortest.exponent + static_cast<int>(end - digits) - 1;
  while (end - digits > 1 && end[-1] == '0') --end;
  return layOut(digits, static_cast<int>(end - digits), exponent, to);
}

char* formatInt(std::int64_t value, char* to) { return std::to_chars(to, to + kIntRoom + 1, value).ptr; }

char* formatHex(std::uint64_t value, char* to) {
  const int digits = value ? (67 - __builtin_clzll(value)) / 4 : 1;
  for (int i = digits - 1; i >= 0; --i, value >>= 4) to[i] = "0123456789ABCDEF"[value & 15];
  return to + digits;
}

std::string realText(double value) {
  char text[kRealRoom];
  return {text, formatReal(value, text)};
}

std::string hexText(std::uint64_t value) {
  char text[kHexRoom];
  return {text, formatHex(value, text)};
}

}  // namespace gc
