#include "host/dxf/tags/tag.h"

#include <cmath>
#include <cstring>

#include "host/rx/text/number.h"

namespace gc::dxf {
namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

std::int64_t littleEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  const int unused = 64 - 8 * static_cast<int>(bytes.size());
  return unused < 64 ? static_cast<std::int64_t>(value << unused) >> unused : 0;  // sign-extended
}

double realFromBytes(std::string_view bytes) {
  const auto bits = static_cast<std::uint64_t>(littleEndian(bytes));
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

bool isInteger(ValueKind kind) {
  return kind == ValueKind::Int16 || kind == ValueKind::Int32 || kind == ValueKind::Int64 || kind == ValueKind::Bool;
}

bool integralReal(double real, std::int64_t& value) {
  constexpr double kLimit = 9.2e18;
  if (!(std::fabs(real) < kLimit) || real != std::trunc(real)) return false;
  value = static_cast<std::int64_t>(real);
  return true;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

std::string_view Tag::word() const {
  std::string_view trimmed = raw;
  while (!trimmed.empty() && isBlank(trimmed.front())) trimmed.remove_prefix(1);
  while (!trimmed.empty() && isBlank(trimmed.back())) trimmed.remove_suffix(1);
  return trimmed;
}

bool Tag::real(double& value) const {
  if (!isBinaryFile) return parseReal(raw, value);
  if (kind == ValueKind::Real && raw.size() == 8) {
    const double read = realFromBytes(raw);
    if (!std::isfinite(read)) return false;
    value = read;
    return true;
  }
  std::int64_t whole = 0;
  if (!isInteger(kind)) return kind == ValueKind::String && parseReal(raw, value);
  if (!integer(whole)) return false;
  value = static_cast<double>(whole);
  return true;
}

bool Tag::integer(std::int64_t& value) const {
  double read = 0.0;
  if (!isBinaryFile) return parseInt(raw, value) || (parseReal(raw, read) && integralReal(read, value));
  if (isInteger(kind) && !raw.empty() && raw.size() <= 8) {
    value = kind == ValueKind::Bool ? static_cast<unsigned char>(raw[0]) : littleEndian(raw);
    return true;
  }
  if (kind == ValueKind::Real) return real(read) && integralReal(read, value);
  return kind == ValueKind::String && parseInt(raw, value);
}

bool Tag::handle(std::uint64_t& value) const { return parseHex(raw, value); }

bool Tag::bytes(std::string& out) const {
  if (isBinaryFile) {
    out.append(raw);
    return true;
  }
  const std::string_view digits = word();
  if (digits.size() % 2 != 0) return false;
  const std::size_t before = out.size();
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const int high = hexDigit(digits[i]), low = hexDigit(digits[i + 1]);
    if (high < 0 || low < 0) {
      out.resize(before);
      return false;
    }
    out.push_back(static_cast<char>(high << 4 | low));
  }
  return true;
}

}  // namespace gc::dxf
