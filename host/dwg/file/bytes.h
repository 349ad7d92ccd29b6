// Little-endian numbers at byte places, with the bounds checked.
#pragma once

#include <cstdint>
#include <span>

namespace gc::dwg {

inline bool holds(std::span<const uint8_t> bytes, uint64_t at, uint64_t size) {
  return at <= bytes.size() && size <= bytes.size() - at;
}

// The part of the bytes, cut where they end.
inline std::span<const uint8_t> part(std::span<const uint8_t> bytes, uint64_t at, uint64_t size) {
  if (at >= bytes.size()) return {};
  return bytes.subspan(at, size < bytes.size() - at ? size : bytes.size() - at);
}

// Zero where the bytes end.
template <class T>
T le(std::span<const uint8_t> bytes, uint64_t at) {
  T value = 0;
  if (!holds(bytes, at, sizeof(T))) return value;
  for (unsigned i = 0; i < sizeof(T); ++i) value = static_cast<T>(value | static_cast<T>(T{bytes[at + i]} << (8 * i)));
  return value;
}

inline uint16_t u16(std::span<const uint8_t> bytes, uint64_t at) { return le<uint16_t>(bytes, at); }
inline uint32_t u32(std::span<const uint8_t> bytes, uint64_t at) { return le<uint32_t>(bytes, at); }
inline uint64_t u64(std::span<const uint8_t> bytes, uint64_t at) { return le<uint64_t>(bytes, at); }
inline uint16_t u16be(std::span<const uint8_t> bytes, uint64_t at) {
  return static_cast<uint16_t>(u16(bytes, at) >> 8 | u16(bytes, at) << 8);
}

}  // namespace gc::dwg
