// What kind of value follows each group code. Source: the group code ranges of the published DXF reference.
#pragma once

#include <array>
#include <cstdint>

namespace gc::dxf {

enum class ValueKind : std::uint8_t {
  String,
  Real,    // in binary files 8 bytes
  Int16,   // 2 bytes
  Int32,   // 4 bytes
  Int64,   // 8 bytes
  Bool,    // 1 byte
  Handle,  // a hexadecimal string
  Binary,  // a hexadecimal string; in binary files a length byte and the bytes
};

constexpr int kLastGroupCode = 1071;
constexpr int kCommentCode = 999;

namespace detail {

struct CodeRange {
  int first, last;
  ValueKind kind;
};

// Codes in no range are strings.
constexpr CodeRange kCodeRanges[] = {
    {5, 5, ValueKind::Handle},       {10, 59, ValueKind::Real},     {60, 79, ValueKind::Int16},
    {90, 99, ValueKind::Int32},      {105, 105, ValueKind::Handle}, {110, 149, ValueKind::Real},
    {160, 169, ValueKind::Int64},    {170, 179, ValueKind::Int16},  {210, 239, ValueKind::Real},
    {270, 289, ValueKind::Int16},    {290, 299, ValueKind::Bool},   {310, 319, ValueKind::Binary},
    {320, 369, ValueKind::Handle},   {370, 389, ValueKind::Int16},  {390, 399, ValueKind::Handle},
    {400, 409, ValueKind::Int16},    {420, 429, ValueKind::Int32},  {440, 459, ValueKind::Int32},
    {460, 469, ValueKind::Real},     {480, 481, ValueKind::Handle}, {1004, 1004, ValueKind::Binary},
    {1005, 1005, ValueKind::Handle}, {1010, 1059, ValueKind::Real}, {1060, 1070, ValueKind::Int16},
    {1071, 1071, ValueKind::Int32},
};

constexpr std::array<ValueKind, kLastGroupCode + 1> makeKinds() {
  std::array<ValueKind, kLastGroupCode + 1> kinds{};
  for (const CodeRange& range : kCodeRanges) {
    for (int code = range.first; code <= range.last; ++code) kinds[code] = range.kind;
  }
  return kinds;
}

inline constexpr std::array<ValueKind, kLastGroupCode + 1> kKinds = makeKinds();

}  // namespace detail

constexpr ValueKind valueKind(int code) {
  return code >= 0 && code <= kLastGroupCode ? detail::kKinds[code] : ValueKind::String;
}

// The codes that carry the first coordinate of a point; 10 and 20 above follow with the others.
constexpr bool isPointCode(int code) {
  return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 || code == 211 ||
         (code >= 1010 && code <= 1013);
}

}  // namespace gc::dxf
