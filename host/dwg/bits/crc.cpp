#include "host/dwg/bits/crc.h"

#include <array>
#include <utility>

namespace gc::dwg {

namespace {

template <class T, T Polynomial>
constexpr std::array<T, 256> makeTable() {
  std::array<T, 256> table{};
  for (unsigned i = 0; i < 256; ++i) {
    T value = static_cast<T>(i);
    for (int bit = 0; bit < 8; ++bit) value = static_cast<T>((value & 1) != 0 ? (value >> 1) ^ Polynomial : value >> 1);
    table[i] = value;
  }
  return table;
}

constexpr auto kTable32 = makeTable<uint32_t, 0xEDB88320u>();

// What a byte adds to the sum when k more bytes follow it: sixteen bytes are then summed at once.
// Source: M. Kounavis, F. Berry, "A Systematic Approach to Building High Performance Software-Based CRC Generators", 2005.
constexpr size_t kSlices = 16;
constexpr auto kSlices16 = [] {
  std::array<std::array<uint16_t, 256>, kSlices> slices{};
  slices[0] = makeTable<uint16_t, 0xA001>();
  for (size_t k = 1; k < kSlices; ++k)
    for (size_t i = 0; i < 256; ++i)
      slices[k][i] = static_cast<uint16_t>(slices[k - 1][i] >> 8 ^ slices[0][slices[k - 1][i] & 0xFF]);
  return slices;
}();

// What the bytes behind the first two of sixteen add; those two are summed with what came before.
template <size_t... I>
int sumOfOthers(const uint8_t* sixteen, std::index_sequence<I...>) {
  return (0 ^ ... ^ kSlices16[kSlices - 3 - I][sixteen[I + 2]]);
}

// Fewer than sixteen bytes, all at once too.
uint16_t sumOfRest(const uint8_t* at, size_t left, uint16_t crc) {
  if (left == 0) return crc;
  if (left == 1) return static_cast<uint16_t>(crc >> 8 ^ kSlices16[0][(crc ^ at[0]) & 0xFF]);
  int sum = kSlices16[left - 1][(at[0] ^ crc) & 0xFF] ^ kSlices16[left - 2][at[1] ^ (crc >> 8)];
  for (size_t i = 2; i < left; ++i) sum ^= kSlices16[left - 1 - i][at[i]];
  return static_cast<uint16_t>(sum);
}

}  // namespace

uint16_t crc16(std::span<const uint8_t> bytes, uint16_t seed) {
  uint16_t crc = seed;
  const uint8_t* at = bytes.data();
  size_t left = bytes.size();
  for (; left >= kSlices; left -= kSlices, at += kSlices) {
    const int first = kSlices16[kSlices - 1][(at[0] ^ crc) & 0xFF] ^ kSlices16[kSlices - 2][at[1] ^ (crc >> 8)];
    crc = static_cast<uint16_t>(first ^ sumOfOthers(at, std::make_index_sequence<kSlices - 2>()));
  }
  return sumOfRest(at, left, crc);
}

uint32_t crc32(std::span<const uint8_t> bytes, uint32_t seed) {
  uint32_t crc = ~seed;
  for (const uint8_t byte : bytes) crc = crc >> 8 ^ kTable32[(crc ^ byte) & 0xFF];
  return ~crc;
}

uint32_t pageChecksum(std::span<const uint8_t> bytes, uint32_t seed) {
  constexpr uint32_t kModulus = 0xFFF1;
  constexpr size_t kMostBeforeOverflow = 0x15B0;
  uint32_t low = seed & 0xFFFF;
  uint32_t high = seed >> 16;
  for (size_t at = 0; at < bytes.size();) {
    const size_t stop = bytes.size() - at < kMostBeforeOverflow ? bytes.size() : at + kMostBeforeOverflow;
    for (; at + 8 <= stop; at += 8) {  // eight steps of the loop below in one
      const uint8_t* b = bytes.data() + at;
      high += 8 * low + (8u * b[0] + 7u * b[1] + 6u * b[2] + 5u * b[3]) + (4u * b[4] + 3u * b[5] + 2u * b[6] + b[7]);
      low += (uint32_t{b[0]} + b[1] + b[2] + b[3]) + (uint32_t{b[4]} + b[5] + b[6] + b[7]);
    }
    for (; at < stop; ++at) {
      low += bytes[at];
      high += low;
    }
    low %= kModulus;
    high %= kModulus;
  }
  return high << 16 | low;
}

}  // namespace gc::dwg
