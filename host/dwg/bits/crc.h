// The checksums of DWG files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace gc::dwg {

// 16-bit CRC of records and sections: polynomial 0x8005, reflected. Usual seed of records: kCrcSeed.
inline constexpr uint16_t kCrcSeed = 0xC0C1;
[[nodiscard]] uint16_t crc16(std::span<const uint8_t> bytes, uint16_t seed);

// 32-bit CRC (reflected 0x04C11DB7, inverted at both ends), of the file header of AC1018 on.
[[nodiscard]] uint32_t crc32(std::span<const uint8_t> bytes, uint32_t seed);

// The page checksum of AC1018 on: two running sums modulo 65521.
[[nodiscard]] uint32_t pageChecksum(std::span<const uint8_t> bytes, uint32_t seed);

}  // namespace gc::dwg
