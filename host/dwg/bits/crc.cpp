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

constexpr auto kTable16 = makeTable<uint16_t, 0xA001>();
constexpr auto kTable32 = makeTable<uint32_t, 0xEDB88320u>();

}  // namespace

uint16_t crc16(std::span<const uint8_t> bytes, uint16_t seed) {
  uint16_t crc = seed;
  for (const uint8_t byte : bytes) crc = static_cast<uint16_t>(crc >> 8 ^ kTable16[(crc ^ byte) & 0xFF]);
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
