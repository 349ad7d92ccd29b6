#include "host/dwg/bits/crc.h"

#include <array>

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

// What a byte adds to the sum when k more bytes follow it: eight bytes are then summed at once.
// Source: M. Kounavis, F. Berry, "A Systematic Approach to Building High Performance Software-Based CRC Generators", 2005.
constexpr int kSlices = 8;
constexpr auto kSlices16 = [] {
  std::array<std::array<uint16_t, 256>, kSlices> slices{};
  slices[0] = makeTable<uint16_t, 0xA001>();
  for (size_t k = 1; k < kSlices; ++k)
    for (size_t i = 0; i < 256; ++i)
      slices[k][i] = static_cast<uint16_t>(slices[k - 1][i] >> 8 ^ slices[0][slices[k - 1][i] & 0xFF]);
  return slices;
}();

}  // namespace

uint16_t crc16(std::span<const uint8_t> bytes, uint16_t seed) {
  uint16_t crc = seed;
  const uint8_t* at = bytes.data();
  size_t left = bytes.size();
  for (; left >= kSlices; left -= kSlices, at += kSlices) {
    crc = static_cast<uint16_t>(kSlices16[7][(at[0] ^ crc) & 0xFF] ^ kSlices16[6][at[1] ^ (crc >> 8)] ^
                                kSlices16[5][at[2]] ^ kSlices16[4][at[3]] ^ kSlices16[3][at[4]] ^ kSlices16[2][at[5]] ^
                                kSlices16[1][at[6]] ^ kSlices16[0][at[7]]);
  }
  for (; left > 0; --left, ++at) crc = static_cast<uint16_t>(crc >> 8 ^ kSlices16[0][(crc ^ *at) & 0xFF]);
  return crc;
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
