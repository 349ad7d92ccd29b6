// How binary bodies say what a value is: a byte before each. Integers and reals are little-endian.
// Source: the published descriptions of the format; bodies in drawings of 2013 and 2018.
#pragma once

#include <string_view>

namespace gcmodeler::tags {

enum Tag : int {
  kInteger = 0x04,
  kReal = 0x06,
  kText8 = 0x07,  // length in one byte, in two, in four
  kText16 = 0x08,
  kText32 = 0x09,
  kTrue = 0x0A,
  kFalse = 0x0B,
  kReference = 0x0C,
  kKind = 0x0D,     // the last word of a kind
  kSubKind = 0x0E,  // one before
  kOpen = 0x0F,
  kClose = 0x10,
  kEnd = 0x11,
  kLongText = 0x12,  // length in four bytes
  kPlace = 0x13,
  kVector = 0x14,
  kChoice = 0x15,
  kReal2 = 0x17
};

// What files begin with; the last character of the second kind says how many bytes integers have.
inline constexpr std::string_view kOlder = "ACIS BinaryFile";
inline constexpr std::string_view kNewer = "ASM BinaryFile";

// And what they end with: "End-of-ACIS-data", "End-of-ASM-data" as words of a kind.
inline constexpr std::string_view kEndOlder =
    "\x0E\x03"
    "End\x0E\x02of\x0E\x04"
    "ACIS\x0D\x04"
    "data";
inline constexpr std::string_view kEndNewer =
    "\x0E\x03"
    "End\x0E\x02of\x0E\x03"
    "ASM\x0D\x04"
    "data";

}  // namespace gcmodeler::tags
